#!/usr/bin/env python3
"""Carries out the commands of the tutorial, and compares what they say and draw with what the tutorial shows.

    run_tutorial.py --brelan build/release/brelan --pictures build/tutorial     makes the pictures there
    run_tutorial.py --brelan build/release/brelan --check                       compares texts and pictures

The blocks of `console` of a chapter are carried out in one directory, one after the other. Lines with "$ " are
commands; the lines below are what they say, where "..." stands for any lines. How long a run took is not compared.
"""
import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

TUTORIAL = pathlib.Path(__file__).resolve().parent


def commands_of(chapter):
    """Commands of a chapter, each with the lines that are shown below it."""
    commands = []
    in_block = False
    for line in chapter.read_text().splitlines():
        if line.startswith("```"):
            in_block = line == "```console"
        elif in_block and line.startswith("$ "):
            commands.append((line[2:], []))
        elif in_block:
            commands[-1][1].append(line)
    return commands


def alike(expected, found):
    """True when the lines are the same, "..." standing for any lines."""
    if not expected:
        return not found
    if expected[0] == "...":
        return any(alike(expected[1:], found[i:]) for i in range(len(found) + 1))
    return bool(found) and expected[0] == found[0] and alike(expected[1:], found[1:])


def without_times(text):
    return re.sub(r"finished in \d+\.\d s", "finished in - s", text)


def run_chapter(chapter, brelan, pictures):
    """Runs a chapter. Its complaints."""
    complaints = []
    with tempfile.TemporaryDirectory(prefix="brelan-tutorial-") as directory:
        path = f"{brelan.parent}:{os.environ['PATH']}"
        environment = dict(os.environ, PATH=path, LC_ALL="C.UTF-8", HOME=directory,
                           BRELAN_EXAMPLES=str(TUTORIAL.parent.parent / "examples"))
        for name in ("BRELAN_DRIVE_C", "XDG_DATA_HOME"):
            environment.pop(name, None)
        for command, expected in commands_of(chapter):
            done = subprocess.run(["bash", "-c", command], cwd=directory, env=environment, text=True,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            found = without_times(done.stdout).splitlines()
            if not alike(without_times("\n".join(expected)).splitlines(), found):
                complaints.append(f"{chapter.name}: $ {command}\n" + done.stdout)
        for drawn in sorted(pathlib.Path(directory).glob("*.svg")):
            shutil.copy(drawn, pictures / drawn.name)
    return complaints


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--brelan", type=pathlib.Path, required=True)
    parser.add_argument("--pictures", type=pathlib.Path)
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    complaints = []
    with tempfile.TemporaryDirectory(prefix="brelan-pictures-") as temporary:
        pictures = options.pictures or pathlib.Path(temporary)
        pictures.mkdir(parents=True, exist_ok=True)
        for chapter in sorted(TUTORIAL.glob("[0-9]*.md")):
            complaints += run_chapter(chapter, options.brelan.resolve(), pictures)
            for name in re.findall(r"\(pictures/(.*?)\)", chapter.read_text()):
                shown = TUTORIAL / "pictures" / name
                if not (pictures / name).is_file():
                    complaints.append(f"{chapter.name}: {name} is shown, but no command draws it")
                elif options.check and (not shown.is_file()
                                        or shown.read_bytes() != (pictures / name).read_bytes()):
                    complaints.append(f"{shown}: not the picture that the tutorial's commands draw; "
                                      f"{sys.argv[0]} --pictures {shown.parent} makes it anew")
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
