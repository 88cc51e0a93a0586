"""What the rules of the Snakefile do.

Whether a result is fresh follows from its place, not from what the engine remembers. A group of alignments has a folder named
by the hash of all that decides its bytes, and so has the join of all groups. Its `members.tsv` is written before anything is
submitted, and a job reads nothing else: the program, its sha256 and the name of the list; the options; then path, size, time
and group of each alignment. What a job makes is called `made` when it is whole.
"""
import atexit
import contextlib
import fcntl
import os
import re
import shlex
import shutil
import subprocess
from hashlib import sha256
from pathlib import Path

from snakemake.exceptions import WorkflowError as Refused  # with one sentence for the person who asked

NOT_TAKEN = re.compile(r"--(match|table|keep-going|into|strict|join|species|min-|occupancy|codon)|[^-]|.*[\t\r\n]")
ALONE = re.compile("-[acw]=|--columns", re.IGNORECASE)  # what the join says anew, or nothing of
JOIN_ONLY = re.compile("-[acw]=|--(match|name|partitions|model)", re.IGNORECASE)


@contextlib.contextmanager
def plainly(folder=None):
    """Says the sentence of a refusal last. That of a job is left in its folder for the main process."""
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
    beside = file.with_name(f"{file.name}.{os.getpid()}")
    beside.write_bytes(os.fsencode("".join("\t".join(line) + "\n" for line in lines)))
    beside.rename(file)


def read(file):
    return [line.split("\t") for line in os.fsdecode(file.read_bytes()).split("\n")[:-1]]


def read_table(file):
    """{alignment: its line, as a dict}"""
    header, *lines = read(file)
    return {line[0]: dict(zip(header, line)) for line in lines}


def stamp(path):
    """Size and time of a file that can be read."""
    return [str(os.stat(path).st_size), str(os.stat(path).st_mtime_ns)] if os.access(path, os.R_OK) else ["-", "-"]


# Before anything is submitted.


def read_options(text, match, program):
    """The options as words. What the program would refuse is refused here."""
    words = shlex.split(text)
    if any(map(NOT_TAKEN.match, words)) or not any(word.startswith("-t=") for word in words):
        raise Refused("options: they have to say -t=P, -t=D or -t=C (protein, DNA, codons), and may name no file or folder, "
                      "nor say --match (a setting), --keep-going, --strict or --table (which the workflow decides) or filter")
    words += [f"--match={match}"] + ["--format=fasta"] * (not any(word.startswith("--format=") for word in words))
    # Status 1 says that there is no such file.
    if (tried := subprocess.run([program, "/dev/null/none", *words], input=b"", capture_output=True)).returncode != 1:
        raise Refused(f"options: {os.fsdecode(tried.stderr).split(chr(10))[0] or text + ' would trim nothing'}")
    return words


def read_paths(name):
    """The paths in a paths file, no two of the same file."""
    paths = [path for path in os.fsdecode(Path(name).read_bytes()).split("\n") if path]
    if any("\t" in path for path in paths) or not any(os.access(path, os.R_OK) for path in paths):
        raise Refused(f"paths file {name}: no line is the path of a file seen from {os.getcwd()}, or one has a tab")
    listed = {}
    for path in paths:
        if listed.setdefault(os.path.realpath(path), path) is not path:
            raise Refused(f"paths file {name}: {path} and {listed[os.path.realpath(path)]} are the same file: leave one out")
    return paths


def divide(paths, size, bit=0):
    """Groups of at most `size`, by the bits of the hash of each path: one path more changes one group."""
    sides = ([path for path in paths if int(sha256(os.fsencode(path)).hexdigest(), 16) >> bit & 1 == side] for side in (0, 1))
    return [group for side in sides for group in divide(side, size, bit + 1)] if len(paths) > size else [paths][:len(paths)]


def write_members(parent, program, options, members):
    """Returns the folder of these members. Where the program is does not decide anything, and is not in its name."""
    folder = parent / sha256(repr([program[1:], options, *members]).encode()).hexdigest()[:20]
    folder.mkdir(parents=True, exist_ok=True)
    write(folder / "members.tsv", [program, options, *members])
    (folder / "refused").unlink(missing_ok=True)
    return folder


def plan(settings, results, home):
    """Writes the members of all groups and of their join. Returns their folders, that of the join last."""
    places = f"{os.environ.get('PATH')}:{home}/../build/release:{home}/../../../bin"  # built, installed with the workflow
    program = os.path.abspath(shutil.which(settings["program"], path=places) or settings["program"])
    options, paths = read_options(settings["options"], settings["match"], program), read_paths(settings["paths"])
    trimming = [word for word in options if not JOIN_ONLY.match(word)]  # which treats each alignment as if it were alone
    digest = sha256(Path(program).read_bytes()).hexdigest()
    members, folders = {path: [path, *stamp(path)] for path in paths}, []
    for group in divide(sorted(path for path in paths if members[path][1] != "-"), settings["group_size"]):
        folders.append(write_members(results / "groups", [program, digest], trimming, [members[path] for path in group]))
        members.update((path, [*members[path], folders[-1].name]) for path in group)
    folders.append(write_members(results / "joins", [program, digest, Path(settings["paths"]).name], options, members.values()))
    show(folders[-1])
    atexit.register(lambda: [os.write(2, file.read_bytes()) for folder in folders for file in folder.glob("refused")])
    return folders


# The jobs. Each has the folder that its log is in.


def memory(folder, most):
    """Megabytes for the largest alignment of a folder, or for the sum of all."""
    return 1000 + 3 * most(int(size) for _, size, *_ in read(folder / "members.tsv")[2:] if size != "-") // 1_000_000


def groups_of(join):
    """{alignment: the folder of its group}"""
    members = read(join / "members.tsv")[2:] if (join / "members.tsv").exists() else []
    return {path: join.parent.parent / "groups" / group[0] for path, _, _, *group in members if group}


def make(log):
    """What is made by trim() or join() is renamed when it is whole.

    The lock ends with the process: of two equal jobs one waits for the other, and gc() knows who is at work.
    """
    folder = Path(log[0]).parent
    made, part, step = folder / "made", folder / "part", {"groups": trim, "joins": join}[folder.parent.name]
    with plainly(folder), open(folder / "lock", "a") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not made.exists():
            shutil.rmtree(part, ignore_errors=True)
            part.mkdir()
            program, options, *members = read(folder / "members.tsv")
            step(part, program, options, members)
            (part / "list").unlink(missing_ok=True)
            changed = [path for path, *was in members if stamp(path) != was[:2]]
            if changed or sha256(Path(program[0]).read_bytes()).hexdigest() != program[1]:
                raise Refused(f"{[*changed, program[0]][0]} has changed since the workflow was started: start it again")
            part.rename(made)
        if step is join:
            show(folder)
            if failed := [line["status"] for line in read_table(made / "table.tsv").values()].count("failed"):
                raise Refused(f"{failed} of the alignments failed; {folder.parent.parent}/table.tsv says which and why")


def place_of(path):
    return path.lstrip("/").replace("../", "__/")  # of its results, below alignments


def run(part, program, options, files):
    """A batch over links in part/alignments, so that what it writes beside an alignment is there.

    `files` has the file to read for each path. Returns {path: its line of the table}.
    """
    places = {place_of(path): path for path in files}
    for folder in set(map(os.path.dirname, places)):
        os.makedirs(f"{part}/alignments/{folder}", exist_ok=True)
    for place, path in places.items():
        os.symlink(os.path.abspath(files[path]), f"{part}/alignments/{place}")
    write(part / "list", [[place] for place in places])
    command = [program, "../list", *options, "--keep-going", "--table=../table.tsv"]
    done = subprocess.run(command, cwd=part / "alignments", stdin=subprocess.DEVNULL, capture_output=True)
    (part.parent / "log").write_bytes(done.stderr)
    table = read_table(part / "table.tsv") if (part / "table.tsv").exists() else {}
    if list(table) != list(places) or done.returncode != any(line["status"] == "failed" for line in table.values()):
        how = f"was killed by signal {-done.returncode}" if done.returncode < 0 else f"ended with status {done.returncode}"
        raise Refused(f"{program} {how} in {part.parent}: {os.fsdecode(done.stderr).strip().split(chr(10))[-1]}")
    for line in table.values():  # no alignment is to blame
        if line["status"] == "failed" and "could not be written" in line["message"]:
            raise Refused(f"{part.parent}: {line['message']}")
    subprocess.run(["find", part, "-type", "l", "-delete"], check=True)
    return dict(zip(places.values(), table.values()))


def trim(part, program, options, members):
    table = run(part, program[0], options, {path: path for path, *_ in members})
    # When the disk is full, no alignment is to blame.
    largest = max((int(size) for path, size, _ in members if table[path]["status"] == "failed"), default=0)
    (part / "list").write_bytes(bytes(2 * largest))


def concatenate(part, program, options, table, groups):
    """Puts together what the groups have made. What they have not written in FASTA the program selects once more."""
    said = {key.lower(): value for key, _, value in (word.partition("=") for word in options)}
    yes = {key for key, value in {"-s": "y", **said}.items() if value[:1].lower() == "y"}
    common = [word for word in options if not ALONE.match(word)] + ["-s=n", "-p=n", "-k=n", "-d=n", "-n=n", "-u=n"]
    fasta = "fasta" in said["--format"].lower().split(",") and {line["selected"] for line in table.values()} - {"0", "NA"}
    name, species, frame = said.get("--name", program[2]), 0, "" if said["-t"][0] in "cC" else "-u"  # which codons would lose
    for option, written, ending in ("-a", "-s", said.get("-e", "-tr")), ("-w", frame, "--"), ("-c", "", ""):
        join = bool(fasta and written in yes)
        how = ["--join", f"--name={name}{ending}"] if join else [f"{option}=y", f"--name={name}"]
        files = {path: f"{groups[path]}/made/alignments/{place_of(path)}{ending}.fasta" if join else path
                 for path, line in table.items() if line["status"] == "ok" and option in yes}
        lines = run(part, program[0], [*common, *how], files) if files else {}
        for path, line in lines.items():
            if line["status"] == "failed":
                table[path].update(status="failed", message=line["message"])
            elif line["positions"] != "0":
                species = int(line["species"]) + int(line["absent_before"]) // int(line["positions"])
    for line in (line for line in table.values() if species and line["status"] == "ok"):
        absent = species - int(line["species"])  # which only all together know
        line.update(absent_before=str(absent * int(line["positions"])), absent=str(absent * int(line["selected"])))


def join(part, program, options, members):
    """One table, the concatenations of what went through, and links to what was made of each alignment."""
    groups = groups_of(part.parent)
    done = {place: line for group in {*groups.values()} for place, line in read_table(group / "made" / "table.tsv").items()}
    none = {**dict.fromkeys(next(iter(done.values())), "NA"), "status": "failed", "message": "there is no such file to read"}
    table = {path: {**done.get(place_of(path), none), "alignment": path} for path, *_ in members}
    concatenate(part, program, options, table, groups)
    write(part / "table.tsv", [none, *(line.values() for line in table.values())])
    for group, (folder, _, files) in ((g, walk) for g in {*groups.values()} for walk in os.walk(g / "made/alignments")):
        links = os.path.join(part, os.path.relpath(folder, group / "made"))
        os.makedirs(links, exist_ok=True)
        target = os.path.relpath(folder, links)
        for file in files:
            os.symlink(f"{target}/{file}", f"{links}/{file}")


def show(folder):
    """Makes the results of this join the current ones, if it is made. No old one is left beside a new one."""
    made, results = folder / "made", folder.parent.parent
    for link in filter(Path.is_symlink, list(results.iterdir()) if made.exists() else []):
        link.unlink()
    for file in made.glob("*"):
        (results / file.name).symlink_to(file.relative_to(results))


def gc(results, planned):
    """Removes the folders that neither this run reads nor the current results come from."""
    current = (results / "table.tsv").resolve().parent.parent
    kept = {folder.name for folder in [*planned, current, *groups_of(current).values()]}
    with plainly(planned[-1]):
        for folder in [*(results / "groups").iterdir(), *(results / "joins").iterdir()]:
            if folder.name not in kept and subprocess.run(["flock", "-n", folder / "lock", "rm", "-r", folder]).returncode:
                raise Refused(f"a job is at work in {folder}: wait for its end, or cancel it")


if "snakemake" in globals():  # when this is the script of a rule
    make(snakemake.log) if snakemake.log else gc(snakemake.params.results, snakemake.params.planned)
