"""What the rules of the Snakefile do.

Whether a result is fresh follows from its place, not from what the engine remembers. A group of alignments has a folder named
by the hash of all that decides its bytes, and so has the join of all groups. Its `members.tsv` is written before anything is
submitted, and a job reads nothing else: the program and its sha256, for the join also the name of the list and the folders of
the groups; the options; then path, size and time of each alignment. What a job makes is renamed to `made` once it is whole.
"""
import atexit
import contextlib
import fcntl
import gc
import os
import re
import shlex
import shutil
import subprocess
from hashlib import sha256
from pathlib import Path

from snakemake.exceptions import WorkflowError as Refused  # with one sentence for the person who asked

NOT_TAKEN = re.compile(r"--(match|table|keep-going|into|strict|join|species|min-|occupancy|codon)|[^-]|.*[\t\r\n]")


@contextlib.contextmanager
def plainly(folder=None):
    """Prints the sentence of a refusal last. A job leaves it in its folder as well, for the main process to print."""
    try:
        yield
    except (Refused, OSError, ValueError) as reason:
        fault = reason.__context__  # of a setting, when the schema does not allow it
        sentence = ": ".join(["settings", *fault.path, fault.message]) if hasattr(fault, "path") else str(reason)
        sentence = f"{reason.filename or folder}: {reason.strerror}" if isinstance(reason, OSError) else sentence
        atexit.register(os.write, 2, os.fsencode(f"{sentence}\n"))
        if folder:
            shutil.rmtree(folder / "part", ignore_errors=True)  # so that a full disk can hold the sentence
            write(folder / "refused", [[sentence]])
        raise Refused("") from None


def write(file, lines):
    """The file is there only when it is whole."""
    beside = file.with_name(f"{file.name}.{os.getpid()}")
    beside.write_bytes(os.fsencode("".join("\t".join(line) + "\n" for line in lines)))
    beside.rename(file)


def read(file):
    return [line.split("\t") for line in os.fsdecode(file.read_bytes()).split("\n")[:-1]]


def read_table(file):
    header, *lines = read(file)
    return [dict(zip(header, line)) for line in lines]


def look(path):
    """Size and time of a file that can be read, and what tells it from other files."""
    status = os.access(path, os.R_OK) and os.stat(path)
    return [str(status.st_size), str(status.st_mtime_ns), status[1:3]] if status else ["-", "-", path]


def place(path):
    """Where the link to an alignment is, and so its results, below the folder alignments."""
    return path.lstrip("/").replace("../", "__/")


# Before anything is submitted.


def read_options(text, match, program):
    """The options as words. What the program would refuse is refused here."""
    words = shlex.split(text)
    if any(map(NOT_TAKEN.match, words)) or not any(word.startswith("-t=") for word in words):
        raise Refused("options: they have to say -t=P, -t=D or -t=C (protein, DNA, codons), and may name no file or folder, "
                      "nor say --match (a setting), --keep-going, --strict or --table (which the workflow decides) or filter")
    words += [f"--match={match}"] + ["--format=fasta"] * (not any(word.startswith("--format=") for word in words))
    # If it takes the options, it ends with status 1, since there is no such file.
    if (tried := subprocess.run([program, "/dev/null/none", *words], input=b"", capture_output=True)).returncode != 1:
        raise Refused(f"options: {os.fsdecode(tried.stderr).split(chr(10))[0] or text + ' would trim nothing'}")
    return words


def read_paths(name):
    """{path: what members.tsv says of it}, from a list as trimora-run reads it, with no two paths of the same file."""
    lines = map(bytes.strip, Path(name).read_bytes().split(b"\n"))
    paths, members, listed = [os.fsdecode(line) for line in lines if line and line[:1] != b"#"], {}, {}
    for path in paths:
        *members[path], file = path, *look(path)
        for key, fault in (file, "are the same file: leave one out"), (place(path), "would have their results in the same place"):
            if listed.setdefault(key, path) is not path:
                raise Refused(f"paths file {name}: {path} and {listed[key]} {fault}")
    if any("\t" in path for path in paths) or all(size == "-" for _, size, _ in members.values()):
        raise Refused(f"paths file {name}: no line is the path of a file seen from {os.getcwd()}, or one has a tab")
    return members


def divide(paths, size, bit=0):
    """Groups of at most `size` of {hash of the path: path}, by the bits of the hash: one path more changes one group."""
    sides = ({number: path for number, path in paths.items() if number >> bit & 1 == side} for side in (0, 1))
    return [group for side in sides for group in divide(side, size, bit + 1)] if len(paths) > size else [paths.values()]


def write_members(parent, program, options, members):
    """Returns the folder of these members. Where the program is decides nothing, so it is not in the hash."""
    folder = parent / sha256(repr([program[1:], options, *members]).encode()).hexdigest()[:20]
    folder.mkdir(parents=True, exist_ok=True)
    write(folder / "members.tsv", [program, options, *members])
    (folder / "refused").unlink(missing_ok=True)
    return folder


def plan(settings, results, home):
    """Writes the members of all groups and of their join. Returns their folders, that of the join last."""
    places = f"{os.environ.get('PATH')}:{home}/../build/release:{home}/../../../bin"  # built, installed with the workflow
    program = os.path.abspath(shutil.which(settings["program"], path=places) or settings["program"])
    options, members = read_options(settings["options"], settings["match"], program), read_paths(settings["paths"])
    # A group is not made anew when only the options of the join change.
    trimming = [word for word in options if not re.match("(?i)-[acw]=|--(match|name|partitions|model)", word)]
    program = [program, sha256(Path(program).read_bytes()).hexdigest()]
    hashes = {int(sha256(os.fsencode(path)).hexdigest(), 16): path for path in sorted(members) if members[path][1] != "-"}
    folders = [write_members(results / "groups", program, trimming, [members[path] for path in group])
               for group in divide(hashes, settings["group_size"]) if group]
    program += [Path(settings["paths"]).name, *(folder.name for folder in folders)]  # which the join depends on, too
    folders.append(write_members(results / "joins", program, options, members.values()))
    show(folders[-1])
    atexit.register(lambda: [os.write(2, file.read_bytes()) for folder in folders for file in folder.glob("refused")])
    return folders


# The jobs. Each has the folder that its log is in.


def memory(folder, most):
    """Megabytes for the largest alignment of a folder, or for the sum of all."""
    return 1000 + 3 * most(int(size) for _, size, _ in read(folder / "members.tsv")[2:] if size != "-") // 1_000_000


def groups_of(join):
    names = read(join / "members.tsv")[0][3:] if (join / "members.tsv").exists() else []
    return [join.parent.parent / "groups" / name for name in names]


def make(folder):
    """What is made by trim() or join() is renamed when it is whole.

    The lock ends with the process: of two equal jobs one waits for the other, and remove() knows who is at work.
    """
    gc.disable()  # it would look at all lines of the tables again and again
    made, part, step = folder / "made", folder / "part", {"groups": trim, "joins": join}[folder.parent.name]
    with plainly(folder), open(folder / "lock", "a") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not made.exists():
            shutil.rmtree(part, ignore_errors=True)
            part.mkdir()
            program, options, *members = read(folder / "members.tsv")
            step(part, program, options, members)
            (part / "list").unlink(missing_ok=True)
            changed = [path for path, *was in members if look(path)[:2] != was]
            if changed or sha256(Path(program[0]).read_bytes()).hexdigest() != program[1]:
                raise Refused(f"{[*changed, program[0]][0]} has changed since the workflow was started: start it again")
            part.rename(made)
        if step is join:
            show(folder)
            if failed := [row["status"] for row in read_table(made / "table.tsv")].count("failed"):
                raise Refused(f"{failed} of the alignments failed; {folder.parent.parent}/table.tsv says which and why")


def run(part, program, options, files, start="."):
    """Runs a batch over files seen from the folder `start`. Concatenations are beside part/list. Returns the table."""
    write(part / "list", [[file] for file in files])
    command = [program, f"{part.absolute()}/list", *options, "--keep-going", "--quiet", f"--table={part.absolute()}/table.tsv"]
    done = subprocess.run(command, cwd=start, stdin=subprocess.DEVNULL, capture_output=True)
    (part.parent / "log").write_bytes(done.stderr)
    table = read_table(part / "table.tsv") if (part / "table.tsv").exists() else []
    failed = [row["message"] for row in table if row["status"] == "failed"]
    unwritten = [message for message in failed if "could not be written" in message]  # no alignment is to blame
    if [row["alignment"] for row in table] != files or done.returncode != bool(failed) or unwritten:
        how = f"was killed by signal {-done.returncode}" if done.returncode < 0 else f"ended with status {done.returncode}"
        raise Refused(f"{part.parent}: {program} {how}: {[*unwritten, os.fsdecode(done.stderr).strip().split(chr(10))[-1]][0]}")
    return table


def trim(part, program, options, members):
    """A batch over links, so that what is written beside an alignment is in part/alignments."""
    for folder in {os.path.dirname(place(path)) for path, *_ in members}:
        os.makedirs(f"{part}/alignments/{folder}", exist_ok=True)
    for path, *_ in members:
        os.symlink(os.path.abspath(path), f"{part}/alignments/{place(path)}")
    run(part, program[0], options, [place(path) for path, *_ in members], part / "alignments")
    subprocess.run(["find", part, "-type", "l", "-delete"], check=True)


def concatenate(part, program, options, table):
    """Puts together what the groups have made. What they have not written in FASTA the program selects once more."""
    given = {key.lower(): value for key, _, value in (word.partition("=") for word in options)}
    wanted = {key for key, value in {"-s": "y", **given}.items() if value[:1].lower() == "y"}
    common = [word for word in options if not re.match("(?i)-[acw]=|--columns", word)] + [f"-{file}=n" for file in "spkdnu"]
    fasta = "fasta" in given["--format"].lower().split(",") and {row["selected"] for row in table.values()} - {"0", "NA"}
    # Ungapped codons are always selected once more: their files have lost the reading frame.
    name, species, ungapped = given.get("--name", program[2]), 0, "" if given["-t"][0] in "cC" else "-u"
    for option, written, ending in ("-a", "-s", given.get("-e", "-tr")), ("-w", ungapped, "--"), ("-c", "", ""):
        how = ["--join", f"--name={name}{ending}"] if fasta and written in wanted else [f"{option}=y", f"--name={name}"]
        paths = [path for path, row in table.items() if row["status"] == "ok" and option in wanted]
        files = [f"{table[path]['alignment']}{ending}.fasta" for path in paths] if "--join" in how else paths
        for path, row in zip(paths, run(part, program[0], [*common, *how], files) if files else []):
            if row["status"] == "failed":
                table[path].update(status="failed", message=row["message"])
            elif row["positions"] != "0":
                species = species or int(row["species"]) + int(row["absent_before"]) // int(row["positions"])
    for row in (row for row in table.values() if species and row["status"] == "ok"):
        absent = species - int(row["species"])  # a group does not know the species of the others
        row.update(absent_before=str(absent * int(row["positions"])), absent=str(absent * int(row["selected"])))


def join(part, program, options, members):
    """One table, the concatenations of what went through, and links to what was made of each alignment."""
    done = {}
    for group in groups_of(part.parent):
        for row in read_table(group / "made/table.tsv"):
            done[row["alignment"]] = {**row, "alignment": f"{group}/made/alignments/{row['alignment']}"}
        for folder, _, files in os.walk(group / "made/alignments"):
            links = part / os.path.relpath(folder, group / "made")
            links.mkdir(exist_ok=True)
            target = os.path.relpath(folder, links)
            for file in files:
                os.symlink(f"{target}/{file}", f"{links}/{file}")
    # With the columns of any row above.
    none = {**dict.fromkeys(row, "NA"), "status": "failed", "message": "there is no such file to read"}
    table = {path: done.get(place(path), none) for path, *_ in members}
    concatenate(part, program, options, table)
    write(part / "table.tsv", [none.keys(), *({**row, "alignment": path}.values() for path, row in table.items())])


def show(folder):
    """Makes the results of this join the current ones, if it is made. No old one is left beside a new one."""
    made, results = folder / "made", folder.parent.parent
    for link in filter(Path.is_symlink, list(results.iterdir()) if made.exists() else []):
        link.unlink()
    for file in made.glob("*"):
        (results / file.name).symlink_to(file.relative_to(results))


def remove(results, planned):
    """Removes the folders that neither this run reads nor the current results come from."""
    current = (results / "table.tsv").resolve().parent.parent
    kept = {folder.name for folder in [*planned, current, *groups_of(current)]}
    with plainly(planned[-1]):
        for folder in [*(results / "groups").iterdir(), *(results / "joins").iterdir()]:
            if folder.name not in kept and subprocess.run(["flock", "-n", folder / "lock", "rm", "-r", folder]).returncode:
                raise Refused(f"a job is at work in {folder}: wait for its end, or cancel it")


if "snakemake" in globals():  # when this is the script of a rule
    make(Path(snakemake.log[0]).parent) if snakemake.log else remove(snakemake.params.results, snakemake.params.planned)
