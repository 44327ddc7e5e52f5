#!/usr/bin/env python3
"""Runs decks by the batch programs of several compilers and systems, and compares what they leave, to the byte.

    everywhere.py --target NAME=PROGRAM ... [--recorded DIR] [--whole N] [--count N] [--seed N] [--spoil NAME]

The first target is what the others are held against: exit status, console, messages and every file of project and drive.
A program that ends in .exe runs under wine, one below a directory "aarch64" under qemu-aarch64. Decks are those of the
examples, of the whole runs that the tests recorded (BRELAN_RECORD_RUNS=DIR; --whole of them), and N random ones of each
kind from the seed on. Ends at the first difference with status 1, naming deck and file; the table tells what was compared.
--spoil changes a byte of what the named target leaves, so that one sees the comparison fail.
"""
import argparse
import concurrent.futures
import hashlib
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

SOURCE = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(SOURCE / "tests" / "independent"))
import compare  # noqa: E402
import compare_groups  # noqa: E402
import compare_outputs  # noqa: E402

TIME_LIMIT = 900
STARTS = 3  # of wine, for one run
PAUSE = 60  # seconds between two lines that tell how far it is
MESSAGES = "(messages)"


# --- decks -------------------------------------------------------------------------------------------------------------


class Folder:
    """A run that stands on disk: a directory with the drive and the project, below it where the program is started."""

    drive, work = "C", "project/work"

    def __init__(self, name, root, arguments=(), typed=b""):
        self.name, self.root, self.arguments, self.typed = name, root, list(arguments), typed

    def lay_out(self, to):
        shutil.copytree(self.root, to, symlinks=True)


class Random:
    """A random deck of the independent calculation."""

    drive, work = "drive", "project/run"

    def __init__(self, name, case, arguments=()):
        self.name, self.arguments, self.typed, self.lay_out = name, list(arguments), case.typed, case.lay_out


def examples(shelf, reference):
    """The decks of the examples, by the rules and with the sound cut. Meshes that a deck names are made by those before."""
    project = shelf / "project"
    shutil.copytree(SOURCE / "data", shelf / "C")
    shutil.copytree(SOURCE / "examples", project)
    (project / "work").mkdir()
    decks = sorted((SOURCE / "examples").glob("*.dat"), key=lambda d: (d.name == "pit_join.dat", d.name))
    for deck in decks:
        (project / "work" / "TFNAME.TMP").write_text(f"..\\{deck.name}\n")
        yield Folder(deck.name, shelf)
        yield Folder(f"{deck.name} --sound", shelf, ["--sound"])
        reference.start(Folder(deck.name, shelf), shelf)


def recorded(shelf, most):
    """The runs that the tests recorded, those that are alike once; at most so many, spread over all."""
    seen = set()
    folders = sorted(shelf.iterdir())
    for folder in folders[::-(-len(folders) // most) or 1]:
        arguments = (folder / "arguments").read_text().split("\n")[:-1]
        run = Folder(folder.name, folder / "files", arguments, (folder / "typed").read_bytes())
        content = hashlib.sha256(repr((arguments, run.typed, sorted(tree_of(run.root).items()))).encode()).digest()
        if content not in seen:
            seen.add(content)
            yield run


def random_decks(kind, seeds):
    for seed in seeds:
        if kind == "modes":
            road = random.Random(seed).choices(compare.ROAD, compare.WEIGHT)[0]
            yield Random(f"seed {seed}, {road}", compare.Case(seed, road))
        elif kind == "outputs":
            yield Random(f"seed {seed}", compare_outputs.new_case(seed))
        else:
            sound = ["--sound"] if kind == "groups --sound" else []
            yield Random(f"seed {seed}", compare_groups.GroupCase(seed), sound)


# --- runs --------------------------------------------------------------------------------------------------------------


def tree_of(root):
    """What every name below a directory stands for: a file's bytes, a link's place, a directory."""
    found = {}
    for place, directories, names in os.walk(root):
        for name in directories + names:
            full = os.path.join(place, name)
            path = os.path.relpath(full, root)
            if os.path.islink(full):
                found[path] = b"link to " + os.fsencode(os.readlink(full))
            elif os.path.isdir(full):
                found[path] = b"directory"
            elif os.path.isfile(full):
                with open(full, "rb") as stream:
                    found[path] = b"file " + stream.read()
    return found


class Target:
    """A batch program, and how this machine runs it."""

    leaves_out = staticmethod(lambda tree: None)  # why a project cannot stand there
    starter = ()
    failed_starts = 0

    def __init__(self, name, program, shelf):
        # A copy: a build may replace the program meanwhile.
        self.name, self.program = name, os.path.join(shelf, re.sub(r"\W", "_", name) + pathlib.Path(program).suffix)
        shutil.copy(program, self.program)

    def own_words(self, expected, found):
        """True where a message says the same as another in words that the system chose."""
        return False

    def environment(self, drive):
        return dict(os.environ, BRELAN_DRIVE_C=drive, LC_ALL="C.UTF-8", WINEDEBUG="-all")

    def start(self, deck, root):
        """The exit status, and what was written to the console and as messages."""
        # Files, no pipes: what wine leaves running in the background keeps a pipe open.
        with tempfile.TemporaryFile() as typed, tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            typed.write(deck.typed)
            typed.seek(0)
            done = subprocess.run([*self.starter, self.program, *deck.arguments], cwd=os.path.join(root, deck.work),
                                  env=self.environment(os.path.join(root, deck.drive)), stdin=typed, stdout=out,
                                  stderr=err, timeout=TIME_LIMIT)
            out.seek(0)
            err.seek(0)
            return done.returncode, out.read(), err.read()

    def run(self, deck, root):
        """What the run leaves: all of it by name."""
        deck.lay_out(root)
        status, console, messages = self.start(deck, root)
        return {"(exit status)": b"%d" % status, "(console)": console, MESSAGES: messages, **tree_of(root)}


class UnderQemu(Target):
    starter = ("qemu-aarch64", "-L", "/usr/aarch64-linux-gnu")  # where the cross compiler's libraries are


class UnderWine(Target):
    """Drive C: is that of the prefix, where links stand for the directories of a deck's own drive."""

    starter = ("wine",)

    def __init__(self, name, program, shelf):
        super().__init__(name, program, shelf)
        self.prefix = os.environ["WINEPREFIX"]

    @staticmethod
    def leaves_out(tree):
        if any(content.startswith(b"link to ") for content in tree.values()):
            return "symbolic links"
        if len({path.lower() for path in tree}) < len(tree):
            return "names that differ in case only"
        if any(re.search(r'[<>:"|?*\x00-\x1f\\]|[ .]($|/)', path) for path in tree):
            return "names that Windows does not have"
        return None

    def own_words(self, expected, found):
        # The reason behind the last colon is the system's. Windows has more drives than C:.
        return (expected.rpartition(b": ")[0] == found.rpartition(b": ")[0] != b"brelan2d" or
                b"expected drive C:" in expected and b"expected a file, but there is none" in found)

    def start(self, deck, root):
        drive, own = os.path.join(self.prefix, "drive_c"), os.path.join(root, deck.drive)
        before, names = set(os.listdir(drive)), os.listdir(own)
        for name in names:
            os.symlink(os.path.join(own, name), os.path.join(drive, name))
        try:
            return self.start_until_it_runs(deck, root)
        finally:
            for name in names:
                os.unlink(os.path.join(drive, name))
            for name in set(os.listdir(drive)) - before:
                shutil.move(os.path.join(drive, name), own)


    def start_until_it_runs(self, deck, root):
        # The program says why it ends with another status than 0. Wine on a busy machine may end with one and without a
        # word, before the program has run.
        given = tree_of(root)
        for again in range(STARTS):
            status, console, messages = super().start(deck, root)
            if status == 0 or console or messages or again + 1 == STARTS or tree_of(root) != given:
                break
            self.failed_starts += 1
        return status, console, messages


def target_of(text, shelf):
    name, program = text.split("=", 1)
    kind = UnderWine if program.endswith(".exe") else UnderQemu if "aarch64" in program else Target
    return kind(name, program, shelf)


# --- comparison --------------------------------------------------------------------------------------------------------


def first_difference(expected, found):
    """The name of the first file that is not the same, and how it differs; None where all are."""
    for name in sorted(set(expected) | set(found)):
        one, other = expected.get(name), found.get(name)
        if one == other:
            continue
        if one is None or other is None:
            return name, "only with the " + ("other" if one is None else "first")
        lines, others = one.split(b"\n"), other.split(b"\n")
        number = next((k for k, (a, b) in enumerate(zip(lines, others)) if a != b), min(len(lines), len(others)))
        shown = [side[number] if number < len(side) else b"(end)" for side in (lines, others)]
        return name, f"line {number + 1}: {shown[0]!r}, and {shown[1]!r}"
    return None


class Column:
    """What was compared of one target."""

    def __init__(self):
        self.decks, self.files, self.bytes, self.notes = {}, 0, 0, {}

    def note(self, what):
        self.notes[what] = self.notes.get(what, 0) + 1

    def count(self, kind, left):
        self.decks[kind] = self.decks.get(kind, 0) + 1
        self.files += len(left)
        self.bytes += sum(map(len, left.values()))


class Comparison:
    def __init__(self, targets, spoiled, goes_on):
        self.targets, self.spoiled, self.goes_on = targets, spoiled, goes_on
        self.columns = {target.name: Column() for target in targets}
        self.kinds, self.differences = [], []
        self.pool = concurrent.futures.ThreadPoolExecutor(os.cpu_count())

    def left_by(self, target, deck, directory):
        left = target.run(deck, os.path.join(directory, re.sub(r"\W", "_", target.name)))
        if target.name == self.spoiled:
            left[max(left)] += b"!"
        return left

    def run(self, kind, deck):
        """Runs a deck by all targets; false at a difference."""
        directory, running = tempfile.mkdtemp(prefix="brelan-everywhere-"), {}
        try:
            deck.lay_out(os.path.join(directory, "given"))
            given = tree_of(os.path.join(directory, "given"))
            for target in self.targets:
                if target.leaves_out(given) is None:
                    running[target.name] = self.pool.submit(self.left_by, target, deck, directory)
            left = {name: result.result() for name, result in running.items()}
            expected = left[self.targets[0].name]
            good = True
            for target in self.targets:
                column = self.columns[target.name]
                # A run may make what another system cannot hold.
                if (reason := target.leaves_out({**given, **expected})) is not None:
                    column.note("left out: " + reason)
                    continue
                here = left[target.name]
                if here[MESSAGES] != expected[MESSAGES] and target.own_words(expected[MESSAGES], here[MESSAGES]):
                    column.note("messages with the system's words")
                    here[MESSAGES] = expected[MESSAGES]
                if found := first_difference(expected, here):
                    self.differences.append(f"{kind}, {deck.name}: {target.name}: {found[0]}: {found[1]}")
                    print(self.differences[-1], flush=True)
                    good = False
                else:
                    column.count(kind, here)
            return good or self.goes_on
        finally:
            concurrent.futures.wait(running.values())
            shutil.rmtree(directory, ignore_errors=True)

    def run_all(self, kind, decks):
        self.kinds.append(kind)
        begun = told = time.monotonic()
        count = 0
        for deck in decks:
            if not self.run(kind, deck):
                return False
            count += 1
            if time.monotonic() - told > PAUSE:
                told = time.monotonic()
                print(f"  {kind}: {count} decks so far, {told - begun:.0f} s", flush=True)
        print(f"{kind}: {count} decks, {time.monotonic() - begun:.0f} s", flush=True)
        return True

    def table(self):
        yield f"{'decks, all files of each compared':42}" + "".join(f"{t.name:>14}" for t in self.targets)
        columns = [self.columns[target.name] for target in self.targets]
        for kind in self.kinds:
            yield f"{kind:42}" + "".join(f"{c.decks.get(kind, 0):14}" for c in columns)
        yield f"{'files':42}" + "".join(f"{c.files:14}" for c in columns)
        yield f"{'bytes':42}" + "".join(f"{c.bytes:14}" for c in columns)
        for what in sorted({note for c in columns for note in c.notes}):
            yield f"{what:42}" + "".join(f"{c.notes.get(what, 0):14}" for c in columns)
        if any(target.failed_starts for target in self.targets):
            yield f"{'started again, as nothing had run':42}" + "".join(f"{t.failed_starts:14}" for t in self.targets)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--target", action="append", required=True, metavar="NAME=PROGRAM")
    parser.add_argument("--recorded", type=pathlib.Path, metavar="DIR")
    parser.add_argument("--whole", type=int, default=1000000)
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=700000)
    parser.add_argument("--spoil", metavar="NAME")
    parser.add_argument("--all", action="store_true", help="go on after a difference, and show all of them")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="brelan-everywhere-") as shelf:
        targets = [target_of(text, shelf) for text in options.target]
        if options.spoil and options.spoil not in [target.name for target in targets]:
            parser.error(f"there is no target {options.spoil} to spoil")
        return compare_all(Comparison(targets, options.spoil, options.all), options, pathlib.Path(shelf))


def compare_all(comparison, options, shelf):
    seeds = range(options.seed, options.seed + options.count)
    good = comparison.run_all("examples", examples(shelf / "examples", comparison.targets[0]))
    if good and options.recorded:
        good = comparison.run_all("whole runs of the tests", recorded(options.recorded, options.whole))
    for kind in ("modes", "groups", "groups --sound", "outputs"):
        good = good and comparison.run_all(kind, random_decks(kind, seeds))
    print(*comparison.table(), sep="\n")
    print(*(comparison.differences or ["no difference"]), sep="\n")
    return 1 if comparison.differences else 0


if __name__ == "__main__":
    sys.exit(main())
