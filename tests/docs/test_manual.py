#!/usr/bin/env python3
"""Runs the decks of the manual, and compares the files that it shows with those that the program writes.

    test_manual.py build/release/brelan2d

A block of `deck` is run; a number behind that word is the exit status, 0 where there is none. A block that bears the
name of a file shows lines of it in their order, with others between them. Each chapter has a project of its own, in
which the meshes of the examples stand; "work/" is the directory in which the program is started.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent


def blocks_of(chapter):
    """The line of the file, the words behind the fence, and the lines of each block that has such words."""
    blocks, words = [], None
    for number, line in enumerate(chapter.read_text().splitlines(), 1):
        if line.startswith("```") and words is None:
            words = line[3:].split()
            begin, lines = number, []
        elif line.startswith("```"):
            if words and words[0] not in ("sh", "python"):
                blocks.append((begin, words, lines))
            words = None
        elif words is not None:
            lines.append(line)
    return blocks


def missing_line(shown, found):
    """The first line that does not stand in the file behind the one before it; None where all do."""
    rest = iter(line.rstrip() for line in found)
    return next((line for line in shown if line.rstrip() not in rest), None)


def complaints_of(chapter, program):
    complaints, compared = [], 0
    with tempfile.TemporaryDirectory(prefix="brelan-manual-") as root:
        root = pathlib.Path(root)
        project, work = root / "project", root / "project" / "work"
        work.mkdir(parents=True)
        shutil.copytree(SOURCE / "data", root / "C")
        for mesh in (SOURCE / "examples").glob("*.Mes"):
            shutil.copy(mesh, project)
        for number, words, lines in blocks_of(chapter):
            place = f"{chapter.name}, line {number}"
            compared += 1
            if words[0] == "deck":
                status = int(words[1]) if len(words) > 1 else 0
                (project / "deck.dat").write_text("\n".join(lines) + "\n")
                (work / "TFNAME.TMP").write_text("..\\deck.dat\n")
                ran = subprocess.run([program], cwd=work, text=True, capture_output=True, stdin=subprocess.DEVNULL,
                                     timeout=60, env=dict(os.environ, BRELAN_DRIVE_C=str(root / "C")))
                if ran.returncode != status:
                    complaints.append(f"{place}: exit status {ran.returncode}: {ran.stdout}{ran.stderr}")
                continue
            file = project / words[0]
            if not file.is_file():
                complaints.append(f"{place}: there is no {words[0]}")
                continue
            line = missing_line(lines, file.read_text().splitlines())
            if line is not None:
                complaints.append(f"{place}: {words[0]} has not, in this order: {line}")
    return complaints, compared


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    chapters = sorted((SOURCE / "docs" / "manual").glob("*.md"))
    complaints, compared = [], 0
    for chapter in chapters:
        found, count = complaints_of(chapter, program)
        complaints += found
        compared += count
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    print(f"{compared} blocks of {len(chapters)} chapters, {len(complaints)} complaints")
    return 0 if compared > 0 and not complaints else 1


if __name__ == "__main__":
    sys.exit(main())
