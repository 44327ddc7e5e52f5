#!/usr/bin/env python3
"""Prints what gcovr has counted: coverage.py COUNTED.json [show [PART]]. See scripts/coverage."""
import json
import sys
from pathlib import Path


class Counts:
    def __init__(self):
        self.lines = self.reached_lines = self.branches = self.taken = 0

    def add(self, lines):
        for line in lines:
            if line["gcovr/noncode"]:
                continue
            self.lines += 1
            self.reached_lines += line["count"] > 0
            # Branches of a line that is not reached would count against it a second time.
            if line["count"] > 0:
                self.branches += len(line["branches"])
                self.taken += sum(branch["count"] > 0 for branch in line["branches"])

    def __str__(self):
        def share(part, whole):
            return f"{100 * part / whole:8.2f} %" if whole else f"{'-':>10}"
        return (f"{self.lines:8}{share(self.reached_lines, self.lines)}"
                f"{self.branches:10}{share(self.taken, self.branches)}")


def folder_of(name):
    parts = Path(name).parts
    return "/".join(parts[:2]) if len(parts) > 2 else parts[0]


def main():
    files = json.loads(Path(sys.argv[1]).read_text())["files"]
    folders, trees = {}, {}
    for file in files:
        folders.setdefault(folder_of(file["file"]), Counts()).add(file["lines"])
        trees.setdefault(Path(file["file"]).parts[0], Counts()).add(file["lines"])
    if len(sys.argv) > 2:
        part = sys.argv[3] if len(sys.argv) > 3 else ""
        for file in sorted(files, key=lambda file: file["file"]):
            name = file["file"]
            if part not in name or (not part and name.startswith("brelan/")):
                continue
            source = Path(name).read_text().splitlines()
            for line in file["lines"]:
                missed = [n for n, branch in enumerate(line["branches"]) if branch["count"] == 0]
                if line["gcovr/noncode"] or (line["count"] > 0 and not missed):
                    continue
                what = "line" if line["count"] == 0 else f"branch {','.join(map(str, missed))} of {len(line['branches'])}"
                print(f"{name}:{line['line_number']}: {what}: {source[line['line_number'] - 1].strip()}")
        print()
    print(f"{'':24}{'lines':>8}{'reached':>10}{'branches':>10}{'taken':>10}")
    for name in sorted(folders):
        print(f"{name:24}{folders[name]}")
    for name in sorted(trees):
        print(f"{'all of ' + name:24}{trees[name]}")


if __name__ == "__main__":
    main()
