"""Parts of a batch, made as the batch over the whole paths file makes them.

In a batch everything that one alignment does not settle by itself comes from the first one of the list: the format, the
type of sequence, whether b1 and b2 are accepted, the number of sequences where b1 and b2 are fixed. So every part is a
batch whose first path is a link to that first alignment, the reference; what it writes for the link is thrown away.
The reference is the first alignment of the list that can be read. Thus the results are those of one batch over the
alignments that go through: over the whole list, when none fails.
"""
import hashlib
import os
import re
import shutil
import subprocess
import tempfile
from collections import namedtuple

NO_FILES = ["-s=n", "-p=n", "-k=n", "-d=n", "-n=n", "-u=n"]
NO_CONCATENATIONS = ["-a=n", "-c=n", "-w=n"]  # behind -a=y the parameters of the first alignment stay fixed
LONGEST_PATH = 188  # of a line in a paths file

HEADER = re.compile(r"\n(\d+) sequences and (\d+) positions in the first alignment file:")
RESULT = re.compile(
    r"Original alignment: (?P<positions>\d+) positions\n"
    r"(?:Ungapped alignment: (?P<ungapped>\d+) positions\n)?"
    r"Trimora alignment:  (?P<selected>\d+) positions \((?P<percent>\d+) %\) in (?P<blocks>\d+) selected block\(s\)\n\n"
)
TERMINATED = "\nExecution terminated\n"

Row = namedtuple("Row", "alignment sequences positions selected percent blocks partition status message")


class Refused(Exception):
    """What the user asked for cannot be done."""


class Broken(Exception):
    """A run that says nothing about its alignments: killed, out of memory, files not written. It may be tried again."""


def readpaths(name):
    """The paths of a paths file. Refuses what the program would leave out or cut."""
    try:
        with open(name, "rb") as file:
            lines = file.read().split(b"\n")
    except OSError as error:
        raise Refused(f"paths file {name}: {error.strerror}")
    if not any(lines):
        raise Refused(f"paths file {name}: it names no alignment")
    if lines[-1]:
        raise Refused(f"paths file {name}: the last line has no line end; the program would leave its path out")
    if not lines[-2]:
        raise Refused(f"paths file {name}: an empty line follows the last path; the program would leave that path out")
    for number, line in enumerate(lines, 1):
        if len(line) > LONGEST_PATH:
            raise Refused(f"paths file {name}, line {number}: longer than {LONGEST_PATH} bytes")
        if re.search(rb"[\r\t\0]", line):
            raise Refused(f"paths file {name}, line {number}: a carriage return, tab or NUL in a path")
    return [os.fsdecode(line) for line in lines if line]


def findprogram(name, folder):
    found = shutil.which(name) or shutil.which(os.path.join(folder, name))
    if not found:
        raise Refused(f"{name} not found: neither on the PATH nor in {folder}")
    return os.path.abspath(found)


def readable(path):
    try:
        with open(path, "rb") as file:
            file.read(1)
        return True
    except OSError:
        return False


def stamped(paths):
    """The paths, each with what changes when its file does."""

    def stamp(path):
        try:
            status = os.stat(path)
            return path, status.st_mtime_ns, status.st_size, os.access(path, os.R_OK)
        except OSError:
            return path, None, None, False

    return [stamp(path) for path in paths]


def digest(paths):
    return hashlib.sha256(repr(stamped(paths)).encode()).hexdigest()


def memory(paths, concatenations=0):
    """Megabytes for a run over `paths`: one alignment at a time, all of them for each concatenation."""
    sizes = [size or 0 for _, _, size, _ in stamped(paths)]
    return 1000 + (3 * max(sizes) + concatenations * sum(sizes)) // 1_000_000


def run(program, options, paths, pathsfile=None):
    """A batch over `paths`: what it printed, whether it went through, and what stands on standard error."""
    with tempfile.TemporaryDirectory(prefix="trimora-") as scratch:
        pathsfile = pathsfile or os.path.join(scratch, "paths")
        with open(pathsfile, "wb") as file:
            file.writelines(os.fsencode(path) + b"\n" for path in paths)
        done = subprocess.run([program, pathsfile, *options], stdin=subprocess.DEVNULL, capture_output=True)
    text, errors = os.fsdecode(done.stdout), os.fsdecode(done.stderr)
    if done.returncode == 2:
        raise Refused(errors.strip())
    terminated = done.returncode == 1 and text.endswith(TERMINATED)
    if (done.returncode != 0 and not terminated) or "Memory allocation failure" in text:
        raise Broken(f"{program} ended with status {done.returncode}: {errors.strip()} {message(text)}")
    return text, not terminated, errors


def message(text):
    """Why a run ended early, on one line."""
    ends = [match.end() for match in RESULT.finditer(text)]
    return " ".join(text[ends[-1] if ends else 0 :].replace(TERMINATED, "").split())


def notes(errors, path):
    """What the program has noted about an alignment, on one line."""
    lead = f"trimora-run: {path}: "
    return "; ".join(dict.fromkeys(line[len(lead) :] for line in errors.split("\n") if line.startswith(lead)))


def dimensions(program, path):
    """Numbers of sequences and positions, as text; NA when the alignment cannot be read by itself."""
    header = readable(path) and HEADER.match(run(program, NO_FILES, [path])[0])
    return header.groups() if header else ("NA", "NA")


def findreference(program, options, paths):
    for path in paths:
        # A batch whose first path cannot be opened takes the paths file itself for an alignment.
        if readable(path) and run(program, options + NO_FILES + NO_CONCATENATIONS, [path])[1]:
            return path
    raise Refused("none of the alignments can be read")


def trim(program, options, reference, members):
    """Write the files of the alignments `members`; yields a row for each."""
    with tempfile.TemporaryDirectory(prefix="trimora-") as scratch:
        link = os.path.join(scratch, "reference")
        os.symlink(os.path.abspath(reference), link)
        while members:
            text, wentthrough, errors = run(program, options + NO_CONCATENATIONS, [link, *members])
            results = list(RESULT.finditer(text))
            if not results:
                raise Broken(f"{reference}, which settles what holds for all, can no longer be read: {message(text)}")
            results = results[1:]
            # Results are printed before the files are opened: is it these, or the next alignment?
            if message(text) == "File not opened" and all(map(readable, members[len(results) : len(results) + 1])):
                raise Broken(f"the files of {members[len(results) - 1]} cannot be opened for writing")
            for path, result in zip(members, results):
                numbers = result.group("positions", "selected", "percent", "blocks")
                yield Row(path, dimensions(program, path)[0], *numbers, "NA", "ok", notes(errors, path))
            members = members[len(results) :]
            if not wentthrough:
                yield Row(members[0], *dimensions(program, members[0]), *["NA"] * 4, "failed", message(text))
                members = members[1:]


def writetable(name, rows):
    lines = [os.fsencode("\t".join(row)) + b"\n" for row in rows]  # all of them first: a file is there once it is whole
    with open(name, "wb") as file:
        file.writelines(lines)


def readtable(name):
    """The rows of a table, or of a part of it."""
    with open(name, "rb") as file:
        rows = [Row(*os.fsdecode(line).split("\t")) for line in file.read().split(b"\n")[:-1]]
    return [row for row in rows if row != Row(*Row._fields)]


def lastvalue(options, letter, default=""):
    """The value of an option: of those given the last one counts."""
    values = [text[3:] for text in options if text[:3].lower() == f"-{letter}="]
    return values[-1] if values else default


def isprotein(options, reference):
    """What the option says, or the reference: FASTA is protein, NBRF/PIR says itself what it is."""
    with open(reference, "rb") as file:
        line = next(line for line in file if line != b"\n")
    kind = "D" if line[1:2] == b"D" and line[3:4] == b";" else "P"
    return lastvalue(options, "t", kind)[:1].upper() == "P"


def concatenations(pathsname, options):
    """The concatenations that the options ask for: name of the file, and which positions it holds."""
    names = [
        ("a", pathsname + lastvalue(options, "e", "-tr") + ".seq", "selected"),
        ("c", pathsname + ".seq", "positions"),
        ("w", pathsname + "--.seq", "ungapped"),
    ]
    wanted = [(name, kind) for letter, name, kind in names if lastvalue(options, letter)[:1].upper() == "Y"]
    if len({name for name, _ in wanted}) < len(wanted):
        raise Refused("two concatenations of the same name: take another suffix (-e)")
    return dict(wanted)


def partitionnames(paths):
    """Names that tree programs take: ASCII letters, digits and underscores, unique whatever their case."""
    taken = {"all", "remainder", "constant", "gapped", "missambig", "uninf"}  # character sets that NEXUS has by itself
    for path in paths:
        stem = re.sub("[^A-Za-z0-9_]+", "_", os.path.splitext(os.path.basename(path))[0]).strip("_")
        stem = stem if stem[:1].isalpha() else "p_" + stem
        name, number = stem, 1
        while name.lower() in taken:
            number += 1
            name = f"{stem}_{number}"
        taken.add(name.lower())
        yield name
