#!/usr/bin/env python3
"""Holds the command brelan of another system against this machine's, to the byte.

    everywhere_command.py BRELAN OTHER...      OTHER...: a program, or what runs it in front, such as qemu-aarch64 -L DIR

Decks are those of the examples and all that `brelan new` writes, meshes those of the examples and what the decks make, which
this machine's batch program runs. They are run by each command's own batch program, checked, described, compared, drawn, and
carried to other programs and back. Ends at the first difference in exit status, words or files with status 1. Pictures by cairo (PNG, PDF) have the fonts of the
machine: that they are made is all that is asked.
"""
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(__file__).resolve().parent.parent
KINDS = ("displacement", "coupled", "temperature", "head")
NOT_COMPARED = (".png", ".pdf")
PROGRAM = "batch-program"


def run(command, directory):
    # HOME: settings of the user's make no difference.
    done = subprocess.run(command, cwd=directory, capture_output=True, timeout=300, stdin=subprocess.DEVNULL,
                          env=dict(os.environ, LC_ALL="C.UTF-8", HOME=str(directory)))
    return done.returncode, done.stdout, done.stderr


def lay_out(brelan, directory):
    """A directory of decks and meshes."""
    for path in (SOURCE / "examples").iterdir():
        shutil.copy(path, directory)
    names = run([brelan, "new", "--list"], directory)[1].decode().split("\n")
    for name in (line.split()[0] for line in names if line.strip()):
        for kind in KINDS:
            place = directory / f"{name}_{kind}"
            run([brelan, "new", name, "--kind", kind, "-o", place], directory)
    for deck in sorted(directory.rglob("*.dat")):
        run([brelan, "-q", "run", "--cut", "rules", deck.name], deck.parent)


def batch_program(command, place):
    """A script that stands for the batch program beside a command: what starts the one starts the other."""
    program = os.path.join(os.path.dirname(command[-1]), "brelan2d")
    place.write_text("#!/bin/sh\nexec " + shlex.join([*command[:-1], program]) + ' "$@"\n')
    place.chmod(0o755)


def jobs(directory):
    for deck in sorted(path.relative_to(directory) for path in directory.glob("*.dat")):
        yield ["-q", "run", "--program", PROGRAM, deck]
    meshes = sorted(path.relative_to(directory) for path in directory.rglob("*.Mes"))
    for deck in sorted(path.relative_to(directory) for path in directory.rglob("*.dat")):
        yield ["check", deck]
        yield ["check", "--json", deck]
    for number, mesh in enumerate(meshes):
        yield ["info", mesh]
        yield ["info", "--json", mesh]
        yield ["diff", meshes[number - 1], mesh]
        for name in ("a.vtu", "a.msh", "a.svg", "a.html"):
            yield ["plot" if name.endswith(("svg", "html")) else "convert", mesh, *["-o"] * (name[2] in "sh"), name]
        for name in ("a.vtu", "a.msh"):
            yield ["convert", name, "back.Mes"]
    for name in ("a.png", "a.pdf"):
        yield ["plot", meshes[0], "-o", name]
    yield ["new", "--list"]
    yield ["--version"]


def left(directory, known):
    """The files that are not as they were known to be, and all as they are known now."""
    now = {path: path.stat() for path in directory.iterdir() if path.is_file() and path.name != PROGRAM}
    now = {path: (about.st_mtime_ns, about.st_size, about.st_ino) for path, about in now.items()}
    return {path.name: b"" if path.suffix in NOT_COMPARED else path.read_bytes()
            for path, about in now.items() if known.get(path) != about}, now


def main(brelan, *other):
    brelan = os.path.abspath(brelan)
    other = [os.path.abspath(word) if os.path.exists(word) else word for word in other]
    with tempfile.TemporaryDirectory(prefix="brelan-everywhere-") as shelf:
        given, there = pathlib.Path(shelf, "one"), pathlib.Path(shelf, "other")
        given.mkdir()
        lay_out(brelan, given)
        shutil.copytree(given, there)
        batch_program([brelan], given / PROGRAM)
        batch_program(other, there / PROGRAM)
        count = statuses = size = 0
        known, known_there = left(given, {})[1], left(there, {})[1]
        for job in jobs(given):
            words = [str(word) for word in job]
            ends = run([brelan, *words], given), run([*other, *words], there)
            made, known = left(given, known)
            made_there, known_there = left(there, known_there)
            # A made picture is no file of 0 bytes.
            empty = [path for path in there.iterdir() if path.suffix in NOT_COMPARED and path.stat().st_size < 1000]
            if ends[0] != ends[1] or made != made_there or empty:
                print(f"brelan {' '.join(words)}: not the same:", *ends, empty, sep="\n  ", file=sys.stderr)
                return 1
            count, statuses = count + 1, statuses + (ends[0][0] == 0)
            size += len(ends[0][1]) + sum(map(len, made.values()))
        print(f"{count} commands, {statuses} of them with status 0, {size} bytes of words and files: no difference")
        return 0 if statuses * 2 > count else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
