#!/usr/bin/env python3
"""Makes every call of the real programs that reaches a file fail, one at a time, and every allocation.

    faults.py [--sample COUNT] [--seed SEED] [--case WORD] [--kind KIND] [--every-allocation]

Each case runs once without a fault, which counts its calls; then once for each call of each kind and each way to fail,
or for a sample of them. Of allocations that the same chain of calls leads to, from main on, the first and the last fail, in
the first case that has them. What is wrong is shown with its case, whose last lines tell how many were tried. The exit
status is 0 when nothing is wrong.
"""
import argparse
import collections
import ctypes
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile

import cases

PROGRAMS = {"brelan": os.environ["BRELAN"], "brelan2d": os.environ["BRELAN2D"]}
LIBRARY = os.environ["FAILING_CALLS"]
WAYS = {
    "open": ["error", "before", "after"],
    "read": ["error", "short", "before"],
    "write": ["error", "always", "space", "short", "before", "after"],
    "flush": ["error", "before", "after"],
    "close": ["error", "before", "after"],
    "rename": ["error", "space", "before", "after"],
    "truncate": ["error", "before", "after"],
    "unlink": ["error", "before", "after"],
    "make": ["error", "space", "before", "after"],
    "allocate": ["error", "always"],
}
PART = re.compile(r"\.brelan-\d+-\d+\.part$")
# Copies of the user's files, and what the command says of those that stay until the user has seen to them.
COPIES = re.compile(r"/\.brelan-(kept|aside|made)-")
OF_COPIES = re.compile(r"kept as|cannot be put back from|what stood there before")
KILLED = -9
REACHED_WITHIN = 4  # trials


def without_date(text):
    """A PDF holds the second in which it was drawn, compressed or not."""
    return b"a drawing of the time" if text.startswith(b"%PDF") and text.rstrip().endswith(b"%%EOF") else text


def tree(root):
    """Content of every file, by its path from the root; None for a directory, and where a link leads."""
    found = {}
    for directory, names, files in os.walk(root):
        at = pathlib.Path(directory)
        for name in files:
            path = at / name
            text = os.readlink(path).encode() if path.is_symlink() else path.read_bytes()
            found[str(path.relative_to(root))] = without_date(text)
        for name in names:
            path = at / name
            found[str(path.relative_to(root))] = os.readlink(path).encode() if path.is_symlink() else None
    return found


def is_scratch(path):
    """Working files, and what the command has beside them."""
    parts = pathlib.PurePath(path).parts
    return parts[:1] in (("tmp",), ("home",)) or (len(parts) > 2 and parts[1] == cases.WORK) or \
        any(part.startswith(".brelan-") for part in parts)


def adopt_orphans():
    """The batch program goes on when the command that started it is killed; it becomes a child of this process."""
    PR_SET_CHILD_SUBREAPER = 36
    if ctypes.CDLL(None, use_errno=True).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "prctl")


def wait_for_orphans():
    try:
        while True:
            os.waitpid(-1, 0)
    except ChildProcessError:
        return


class Trial:
    """One run of a case in a directory of its own."""

    def __init__(self, case, shelf):
        self.case, self.shelf = case, shelf
        self.root = shelf / "root"
        self.template = shelf / "template"

    def lay_out(self):
        shutil.rmtree(self.root, ignore_errors=True)
        shutil.copytree(self.template, self.root, symlinks=True)

    def run(self, **settings):
        environment = {k: v for k, v in os.environ.items() if k not in ("XDG_DATA_HOME", "NO_COLOR")}
        environment.update(BRELAN_DRIVE_C=str(self.root / "drive"), HOME=str(self.root / "home"),
                           TMPDIR=str(self.root / "tmp"), TERM="dumb", ASAN_OPTIONS="verify_asan_link_order=0")
        if settings:
            environment.update(LD_PRELOAD=LIBRARY, FAULT_ROOT=str(self.root),
                               **{"FAULT_" + name: str(value) for name, value in settings.items()})
        program = PROGRAMS["brelan2d" if self.case.is_batch else "brelan"]
        command = self.case.command(program)
        if not self.case.is_batch and command[1] == "run":
            command += ["--program", PROGRAMS["brelan2d"]]
        result = subprocess.run(command, cwd=self.case.directory(self.root), env=environment, input="deck.dat\n",
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, errors="replace", timeout=60)
        wait_for_orphans()
        return result


class Sound:
    """A case without a fault: its calls, what it leaves, and all that ever stood in a place meanwhile."""

    def __init__(self, case, shelf):
        self.case = case
        self.trial = Trial(case, shelf)
        case.lay_out(self.trial.template)
        self.before = tree(self.trial.template)
        self.trial.lay_out()
        plain = self.trial.run()
        assert plain.returncode == case.status, (case.name, plain.returncode, plain.stdout, plain.stderr)
        self.after = tree(self.trial.root)
        self.result = plain
        self.counts = {program: self.count(program) for program in case.programs}
        self.may_be = collections.defaultdict(set)
        for state in (self.before, self.after):
            for path, text in state.items():
                self.may_be[path].add(text)
        for path in {*self.before, *self.after}:
            if path not in self.before or path not in self.after:
                self.may_be[path].add("none")
        for program in case.programs:
            self.note_places(program)
        self.note_mesh_before_outputs()

    def count(self, program):
        self.trial.lay_out()
        counts = self.trial.shelf / "counts"
        counts.unlink(missing_ok=True)
        self.trial.run(PROGRAM=program, COUNTS=counts)
        assert self.known(tree(self.trial.root)) == self.known(self.after), "the library changes the run: " + self.case.name
        found = collections.Counter()
        for line in counts.read_text().splitlines():
            kind, number = line.split()
            found[kind] = max(found[kind], int(number))
        return found

    def allocations(self, program, known):
        """The allocations that fail: the first and the last of each chain of calls that no case before has."""
        self.trial.lay_out()
        stacks = self.trial.shelf / "stacks"
        stacks.unlink(missing_ok=True)
        self.trial.run(PROGRAM=program, STACKS=stacks)
        chosen = set()
        for process in stacks.read_text().split("begin\n")[1:]:
            chains = process.split()
            first = {chain: number for number, chain in reversed(list(enumerate(chains, 1)))}
            last = {chain: number for number, chain in enumerate(chains, 1)}
            for chain in first.keys() - known:
                chosen.update((first[chain], last[chain]))
            known.update(chains)
        return sorted(chosen)

    def note_places(self, program):
        self.trial.lay_out()
        record = self.trial.shelf / "record"
        shutil.rmtree(record, ignore_errors=True)
        record.mkdir()
        self.trial.run(PROGRAM=program, RECORD=record)
        if not (record / "list").exists():
            return
        for line in (record / "list").read_text().splitlines():
            copy, place = line.split("\t")
            path = os.path.relpath(place, self.trial.root)
            self.may_be[path].add(without_date(pathlib.Path(copy).read_bytes()) if copy else "none")

    def note_mesh_before_outputs(self):
        """The mesh of a deck is whole before its outputs number its materials anew: one that fails there leaves it."""
        self.trial.lay_out()
        (self.trial.root / "drive" / "Vork" / "Qx" / "Qxdata" / "UNIT.DAT").unlink()
        self.trial.run()
        for path, text in self.known(tree(self.trial.root)).items():
            if path.startswith("project") and path in self.may_be and text not in self.may_be[path]:
                if path.endswith(".Mes"):
                    subprocess.run([PROGRAMS["brelan"], "info", self.trial.root / path], check=True,
                                   stdout=subprocess.DEVNULL)
                self.may_be[path].add(text)

    @staticmethod
    def known(state):
        return {path: text for path, text in state.items() if not is_scratch(path)}


class Fault(collections.namedtuple("Fault", "program kind way at")):
    def __str__(self):
        return f"{self.program}: {self.kind} {self.at} {self.way}"


# Faults that a case did not survive once are part of every sample: a full disk under both runs of a deck, when the message
# told of one of the two files alone.
ONCE_LOST = {"run --cut auto": [Fault("brelan", "write", "always", 33), Fault("brelan", "rename", "space", 25)]}


def faults_of(sound, options, known):
    for program, counts in sound.counts.items():
        for kind, ways in WAYS.items():
            # Cairo does not survive a want of memory: it crashes or never ends.
            if options.kind and kind not in options.kind or \
                    kind == "allocate" and sound.case.name in ("plot png", "plot pdf"):
                continue
            numbers = range(1, counts[kind] + 1)
            if kind == "allocate" and not options.every_allocation:
                numbers = sound.allocations(program, known[program])
            for at in numbers:
                for way in ways:
                    yield Fault(program, kind, way, at)


def faults_found(sound, fault):
    """What is wrong after the fault; nothing for one that was survived."""
    trial = sound.trial
    told = trial.shelf / "told"
    told.unlink(missing_ok=True)
    # Two processes that run side by side do not make as many calls each time: one that was not reached is tried again.
    for _ in range(REACHED_WITHIN):
        trial.lay_out()
        try:
            result = trial.run(PROGRAM=fault.program, KIND=fault.kind, HOW=fault.way, AT=fault.at, TOLD=told)
        except subprocess.TimeoutExpired:
            return ["it does not end"]
        if told.exists():
            break
    state = tree(trial.root)
    wrong = []
    reached = told.read_text().splitlines()[:1] if told.exists() else [""]
    path = PART.sub("", os.path.relpath(reached[0], trial.root)) if reached[0] else ""
    was_killed = fault.way in ("before", "after")
    if was_killed and fault.program == ("brelan2d" if sound.case.is_batch else "brelan"):
        if told.exists() and result.returncode != KILLED:
            wrong.append(f"killed, but the status is {result.returncode}")
    else:
        wrong += wrong_end(sound, result, state, path, fault)
    wrong += wrong_files(sound, state)
    # What must not be removed, or a directory looked through for it, is the next run's, which can.
    was_left = was_killed or fault.kind in ("unlink", "allocate") or \
        (fault.kind == "open" and is_scratch(path) and result.returncode == sound.case.status)
    wrong += left_over(sound, state, was_left, result.stderr)
    if was_left and not wrong and left_over(sound, state, False, ""):
        following = trial.run()
        if following.returncode == 0:
            wrong += ["after the next run: " + text
                      for text in left_over(sound, tree(trial.root), False, result.stderr + following.stderr)]
    return [f"{text} [{path}]\n      status {result.returncode}, {result.stderr.strip()!r}" for text in wrong]


def without_times(text):
    return re.sub(r"[\d.]+ s\b", "TIME", text)


def wrong_end(sound, result, state, path, fault):
    # Where the sound cut fails, or it is not known whether one is needed, the mesh by the rules stands, and the summary
    # says why.
    if result.returncode == 0 and re.search("the sound cut ended with|is not known, nor tried the sound cut|"
                                            "the sound cut left no mesh that can be read", result.stdout):
        return []
    if result.returncode == sound.case.status:
        if Sound.known(state) != Sound.known(sound.after):
            changed = sorted(p for p in {*state, *sound.after}
                             if not is_scratch(p) and state.get(p, "none") != sound.after.get(p, "none"))
            return [f"the status of a sound run, but not what that leaves: {changed}"]
        # The summary says what it cannot show.
        if "cannot be shown" in result.stdout and os.path.basename(path) in result.stdout:
            return []
        if without_times(result.stdout) != without_times(sound.result.stdout):
            return ["the status of a sound run, but other words: " + result.stdout]
        return []
    # The checker's finding is that a mesh cannot be read.
    if sound.case.name == "check" and result.returncode == 1 and os.path.basename(path) in result.stdout:
        return []
    if result.returncode != 2:
        return [f"the status is {result.returncode}"]
    messages = [line for line in result.stderr.splitlines() if line.startswith(("brelan: ", "brelan2d: "))]
    others = [line for line in result.stderr.splitlines() if line not in messages and not line.startswith("    ")]
    if len(messages) != 1 or others:
        return [f"{len(messages)} messages and {len(others)} other lines"]
    # A directory stands for the files in it, and what the command has in places of its own for what it is made of.
    name = os.path.basename(path)
    is_named = name.lower() in messages[0].lower() or sound.before.get(path) is None or \
        (is_scratch(path) and not sound.case.is_batch)
    if fault.kind == "allocate" or is_named or "brelan2d was ended by signal 9" in messages[0]:
        return []
    return [f"the message does not name {name}"]


def wrong_files(sound, state):
    wrong = []
    for path in sorted({*sound.may_be, *state}):
        if is_scratch(path) or PART.search(path):
            continue
        text = state.get(path, "none")
        if path not in sound.may_be:
            wrong.append(f"{path} is new")
        elif text not in sound.may_be[path]:
            was = sound.before.get(path)
            wrong.append(f"{path} is neither old nor new: " + ("gone" if text == "none" else
                         f"{len(text)} bytes, {len(was) if was is not None else 'none'} before"))
    return wrong


def left_over(sound, state, may_be_left, said):
    parts = [path for path in state if PART.search(path) and not COPIES.search(path)]
    wrong = []
    if len(parts) > (1 if may_be_left else 0):
        wrong.append(f"left: {parts}")
    if not may_be_left:
        made = sorted(p for p in state if is_scratch(p) and p not in sound.after and
                      not (COPIES.search(p) and OF_COPIES.search(said)) and
                      not (sound.case.is_batch and p.startswith(os.path.join("project", cases.WORK))))
        if made:
            wrong.append(f"left: {made[:4]}")
    return wrong


def group_of(kind):
    """What a line of the table is about."""
    return "allocations" if kind == "allocate" else "calls"


def sample_of(faults, options, name):
    if not options.sample:
        return faults
    by_kind = collections.defaultdict(list)
    for fault in faults:
        by_kind[fault.program, fault.kind].append(fault)
    chosen = random.Random(f"{options.seed} {name}")
    sample = [fault for some in by_kind.values() for fault in chosen.sample(some, min(options.sample, len(some)))]
    return sample + [fault for fault in ONCE_LOST.get(name, []) if fault in faults and fault not in sample]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--sample", type=int, help="so many of each kind alone, of each program in each case")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--case", action="append", help="the cases alone whose name begins so")
    parser.add_argument("--kind", action="append")
    parser.add_argument("--every-allocation", action="store_true", help="those too that the same calls lead to: half a day")
    options = parser.parse_args()
    adopt_orphans()
    tried, survived, known = collections.Counter(), collections.Counter(), collections.defaultdict(set)
    for case in cases.CASES:
        if options.case and not case.name.startswith(tuple(options.case)):
            continue
        shelf = pathlib.Path(os.path.realpath(tempfile.mkdtemp(prefix="brelan-faults-")))
        try:
            sound = Sound(case, shelf)
            for fault in sample_of(list(faults_of(sound, options, known)), options, case.name):
                of_table = (case.name, fault.program, group_of(fault.kind))
                tried[of_table] += 1
                wrong = faults_found(sound, fault)
                if not wrong:
                    survived[of_table] += 1
                for text in wrong:
                    print(f"{case.name}: {fault}: {text}", flush=True)
        finally:
            shutil.rmtree(shelf, ignore_errors=True)
        for of_case in (of_table for of_table in tried if of_table[0] == case.name):
            print("{:24} {:9} {:12}".format(*of_case), f"{tried[of_case]:7} tried {survived[of_case]:7} survived",
                  flush=True)
    print(f"{sum(tried.values())} faults tried, {sum(survived.values())} survived")
    return 0 if tried == survived and tried else 1


if __name__ == "__main__":
    sys.exit(main())
