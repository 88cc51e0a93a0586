"""Parts of a batch, made as the batch over the whole list makes them.

In a batch everything that one alignment does not settle by itself comes from the first one that can be read: the format,
the @@
A record says what a job has done: a row for each alignment, as in the table of the program, with the files written for it
and their sizes.
"""
import contextlib
import functools
import glob
import hashlib
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

OWN = ("--match", "--table", "--keep-going", "--into", "--strict")  # what the workflow gives by itself, or cannot bear
NO_FILES = ["-s=n", "-p=n", "-k=n", "-d=n", "-n=n", "-u=n"]
LONGEST_PATH = 188  # of a line in a paths file


class Refused(Exception):
    """What the user asked for cannot be done."""


class Broken(Exception):
    """A run that says nothing about its alignments: killed, out of memory, no table. It may be tried again."""


def readpaths(name):
    """The paths of a paths file. Refuses what the program would leave out or cut."""
    try:
        lines = pathlib.Path(name).read_bytes().split(b"\n")
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


@functools.cache
def status(path):
    """Of a file, as it was when it was first looked at: device, inode, time, size, mode. None where there is no file."""
    with contextlib.suppress(OSError):
        found = os.stat(path)
        return found.st_dev, found.st_ino, found.st_mtime_ns, found.st_size, found.st_mode


def identity(path):
    """The same for all paths of one file: through links, `./` and `..`."""
    return (status(path) or (os.path.normpath(path),))[:2]


def checkpaths(name, paths, endings):
    """Refuses an alignment that is listed twice, and results that are listed as alignments."""
    listed = {}
    for path in paths:
        other = listed.setdefault(identity(path), path)
        if other is not path:
            raise Refused(f"paths file {name}: {other} and {path} are the same file: leave one out")
    for path in paths:
        for ending in endings:
            other = listed.get(identity(path + ending))
            if other:
                raise Refused(f"paths file {name}: {other} is a result of {path}, which would be replaced: leave it out")


def readoptions(text, match):
    try:
        words = shlex.split(text)
    except ValueError as error:
        raise Refused(f"options: {error}")
    for word in words:
        if word.startswith(OWN):
            raise Refused(f"options: {word} is not for the workflow; match is a setting, the others it gives by itself")
    return [*words, f"--match={match}"]


def findprogram(name, *folders):
    for place in (name, *(os.path.join(folder, name) for folder in folders)):
        if shutil.which(place):
            return os.path.abspath(shutil.which(place))
    raise Refused(f"{name} not found: neither on the PATH nor in {folders[0]}")


def stamp(paths):
    """Changes when one of the files does: is replaced, even by an older one, goes, or may no longer be read."""
    return hashlib.sha256(repr([(path, status(path)) for path in paths]).encode()).hexdigest()


def memory(paths, concatenations=0):
    """Megabytes for a run over `paths`: one alignment at a time, all of them for each concatenation."""
    sizes = [found[3] for found in map(status, paths) if found]
    return 1000 + (3 * max(sizes) + concatenations * sum(sizes)) // 1_000_000


def size(path):
    with contextlib.suppress(OSError):
        return os.stat(path).st_size


def remove(paths):
    for path in paths:
        with contextlib.suppress(FileNotFoundError):
            os.unlink(path)


def run(program, options, paths, scratch, name, links):
    """A batch over `paths`, whose list in the folder `scratch` is called `name`. It goes on behind those that fail.

    Returns the lines of its table, each as a dict, and what it said. `links` says of the links among the paths what they
    stand for, which is named in their place.
    """
    listed, table = os.path.join(scratch, name), os.path.join(scratch, "table of the batch")
    pathlib.Path(listed).write_bytes(b"".join(os.fsencode(path) + b"\n" for path in paths))
    command = [program, listed, *options, "--keep-going", f"--table={table}"]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    said, text = os.fsdecode(done.stderr), ""
    with contextlib.suppress(FileNotFoundError):
        text = os.fsdecode(pathlib.Path(table).read_bytes())
    for link, path in links.items():
        said, text = said.replace(link, path), text.replace(link, path)
    if done.returncode == 2:
        raise Refused(said.strip())
    header, *lines = [line.split("\t") for line in text.split("\n")[:-1]] or [[]]
    rows = [dict(zip(header, line)) for line in lines]
    if done.returncode not in (0, 1) or [row["alignment"] for row in rows] != [links.get(path, path) for path in paths]:
        how = f"was killed by signal {-done.returncode}" if done.returncode < 0 else f"ended with status {done.returncode}"
        raise Broken(f"{program} {how}: {said.strip()}")
    return rows, said


def discover(program, options, paths, name):
    """The first alignment that can be read; the endings of the files written for each; the names of concatenations.

    What a run writes is learnt from one over that alignment alone, in a folder of its own.
    """
    why = []
    for path in filter(os.path.isfile, paths):
        with tempfile.TemporaryDirectory(prefix="trimora-") as scratch:
            into, link = os.path.join(scratch, "into"), os.path.join(scratch, "alignment")
            os.mkdir(into)
            os.symlink(os.path.abspath(path), link)
            try:
                (row,), _ = run(program, [*options, f"--into={into}"], [link], scratch, "list", {link: path})
            except Broken as reason:
                row = {"status": "failed", "message": reason}
            if row["status"] == "ok":
                written = sorted(os.listdir(into))
                endings = [file.removeprefix("alignment") for file in written if file.startswith("alignment")]
                return path, endings, [name + file.removeprefix("list") for file in written if file.startswith("list")]
            why.append(f"{path}: {row['message']}")
    raise Refused(f"none of the alignments can be trimmed: {why[0] if why else 'none of them is there'}")


@contextlib.contextmanager
def logged(name):
    """The log of a job; an error ends the job with its reason there and in the log of the workflow."""
    with open(name, "w", errors="surrogateescape") as log:
        try:
            yield log
        except (Refused, Broken, OSError) as reason:
            log.write(f"{reason}\n")
            sys.exit(f"{reason}")


def review(results, groups, files):
    """Drop the records that no longer hold, so that their jobs are done again: files are missing or differ.

    Returns the files that earlier runs have left and that are none of `files`. They stand in leftovers.txt, so that they
    are known as long as they exist.
    """
    leftovers, known = os.path.join(results, "leftovers.txt"), set()
    with contextlib.suppress(FileNotFoundError):
        known.update(pathlib.Path(leftovers).read_text(errors="surrogateescape").split("\n"))
    for name in glob.glob(os.path.join(glob.escape(results), "groups", "*.json")):
        group, rows = os.path.splitext(os.path.basename(name))[0], []
        with contextlib.suppress(ValueError):
            rows = json.loads(pathlib.Path(name).read_text())
        written = [file for row in rows for file in row["files"].items()]
        known.update(path for path, _ in written)
        fits = group == "concatenations" or [row["alignment"] for row in rows] == groups.get(group)
        if not fits or any(count is None or size(path) != count for path, count in written):
            os.unlink(name)
    left = sorted(path for path in known.difference(files) if path and os.path.lexists(path))
    remove([leftovers])
    if left:
        pathlib.Path(leftovers).write_text("".join(f"{path}\n" for path in left), errors="surrogateescape")
    return left
