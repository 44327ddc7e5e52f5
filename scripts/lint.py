#!/usr/bin/env python3
"""clang-tidy over the sources of all trees, those of a few directories at a time.

    lint.py BUILD

The headers of the standard library cost clang-tidy more than a source of ours, so the sources of some directories are
included into one and looked at together.  Where two of them have a name of their own in common that does not compile:
such a lot is looked at by directories, and one of those is halved until it does.

The analyzer walks the paths of functions in the main file alone, so in a lot only its checks of syntax are made.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREES = ("lib", "batch", "brelan", "python")
# Directories whose sources have no names of their own in common.
TOGETHER = (
    ("lib/blocks", "lib/dam", "lib/plane", "lib/run", "lib/text"),
    ("lib/deck", "lib/output", "lib/group"),
    ("lib/mesh", "lib/analysis"),
    ("brelan/commands/studying", "brelan/commands/editing", "brelan/commands/batch", "brelan/cli", "brelan/study"),
    ("brelan/formats", "brelan/commands"),
)


def lots_of(commands):
    """Sources that are looked at together and compiled alike; the longest first: no process is left with it."""
    alike = {}
    for command in commands:
        words = shlex.split(command["command"])
        # Without what clang does not know: g++'s parameters.
        flags = without_precompiled(word for word in words[1:words.index("-o")]
                                    if not word.startswith(("-O", "--param")))
        for path in compiled_together(pathlib.Path(command["file"])):
            if path.is_relative_to(ROOT) and path.relative_to(ROOT).parts[0] in TREES:
                alike.setdefault((company_of(path), tuple(flags)), []).append(path)
    return sorted(((flags, paths) for (_, flags), paths in alike.items()),
                  key=lambda lot: -sum(path.stat().st_size for path in lot[1]))


def company_of(path):
    """The directories that a source is looked at with."""
    directory = path.parent.relative_to(ROOT).as_posix()
    return next((company for company in TOGETHER if directory in company), (directory,))


def parts_of(paths):
    """A lot that does not compile in smaller ones."""
    by_directory = {}
    for path in paths:
        by_directory.setdefault(path.parent, []).append(path)
    half = len(paths) // 2
    return list(by_directory.values()) if len(by_directory) > 1 else [paths[:half], paths[half:]]


def compiled_together(path):
    """The sources that a source of a unity build includes; of any other, itself."""
    if path.parent.name != "Unity":
        return [path]
    return [pathlib.Path(name) for name in re.findall(r'^#include "(.*)"$', path.read_text(), re.M)]


def without_precompiled(words):
    """The headers that g++ has compiled are none for clang."""
    words = iter(words)
    return [word for word in words
            if word != "-Winvalid-pch" and not (word == "-include" and next(words).endswith("cmake_pch.hxx"))]


def lint(flags, paths, directory):
    """What clang-tidy says of the sources; empty when it is content."""
    handle, name = tempfile.mkstemp(suffix=".cpp", dir=directory)
    with os.fdopen(handle, "w") as lot:
        lot.writelines('#include "%s"\n' % path for path in paths)
    checked = subprocess.run(
        ["clang-tidy", "--quiet", "--config-file=%s" % (ROOT / ".clang-tidy"), "--checks=-bugprone-suspicious-include",
         name, "--", *flags, "-Wno-unknown-warning-option"],
        text=True, capture_output=True)
    if len(paths) > 1 and "[clang-diagnostic-error" in checked.stdout:
        return "".join(lint(flags, part, directory) for part in parts_of(paths))
    return checked.stdout + checked.stderr if checked.returncode else ""


def main():
    commands = json.loads((pathlib.Path(sys.argv[1]) / "compile_commands.json").read_text())
    with tempfile.TemporaryDirectory() as directory, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        said = list(pool.map(lambda lot: lint(*lot, directory), lots_of(commands)))
    print("".join(said), end="")
    return 1 if any(said) else 0


if __name__ == "__main__":
    sys.exit(main())
