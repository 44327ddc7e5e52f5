"""The real command in directories of its own. Each test gets a fresh one, with TMPDIR and HOME in it."""
import json
import os
import pathlib
import re
import shutil
import stat
import subprocess
import tempfile
import unittest

BRELAN = os.environ["BRELAN"]
SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])
KINDS = {"coupled": 2, "temperature": 5, "head": 9, "displacement": 1}


class Case(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-test-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        self.project = self.root / "project"
        self.temporary = self.root / "tmp"
        for directory in (self.project, self.temporary, self.root / "home"):
            directory.mkdir()
        self.environment = {k: v for k, v in os.environ.items()
                            if k not in ("BRELAN_DRIVE_C", "XDG_DATA_HOME", "NO_COLOR")}
        self.environment.update(TMPDIR=str(self.temporary), HOME=str(self.root / "home"), TERM="xterm")

    def brelan(self, *arguments, cwd=None, stdin="", **environment):
        """`stdin` is a text."""
        return subprocess.run([BRELAN, *map(str, arguments)], cwd=cwd or self.project, text=True,
                              capture_output=True, input=stdin, timeout=120,
                              env=dict(self.environment, **environment))

    def write(self, name, text):
        path = self.project / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def starter(self, name, kind="displacement", directory=None):
        made = self.brelan("-q", "new", name, "--kind", kind, "-o", directory or self.project, "--force")
        self.assertEqual((made.returncode, made.stdout, made.stderr), (0, "", ""))
        return (pathlib.Path(directory) if directory else self.project) / (name + ".dat")

    def edited_starter(self, name, *changes, kind="displacement"):
        """A starter deck with texts replaced, each of which must be there exactly once."""
        path = self.starter(name, kind)
        text = path.read_text()
        for old, new in changes:
            self.assertEqual(text.count(old), 1, f"{old!r} in {name}")
            text = text.replace(old, new)
        path.write_text(text)
        return path

    def check(self, *arguments, **environment):
        """The report of `brelan check --json`."""
        result = self.brelan("check", "--json", *arguments, **environment)
        return result, json.loads(result.stdout)

    def assert_one_message(self, result, status, *fragments):
        """Nothing on standard output, one line on standard error."""
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertEqual(result.stdout, "")
        lines = result.stderr.splitlines()
        self.assertEqual(len(lines), 1, result.stderr)
        self.assertTrue(lines[0].startswith("brelan: "), lines[0])
        for fragment in fragments:
            self.assertIn(fragment, lines[0])

    def assert_nothing_left(self):
        """No working directory in the project, nothing in the place for temporary files."""
        self.assertEqual([p.name for p in self.project.iterdir() if p.name.startswith(".")], [])
        self.assertEqual(list(self.temporary.iterdir()), [])

    def fake_program(self, text):
        """A shell script in place of the batch program; it starts in the working directory."""
        path = self.root / "program"
        path.write_text("#!/bin/sh\n" + text)
        path.chmod(path.stat().st_mode | stat.S_IXUSR)
        return path

    def counts(self, mesh):
        """NUMNP, NCONT, NBEAM, NTRUS of a mesh file of the project."""
        return tuple(map(int, (self.project / mesh).read_text().splitlines()[2].split()))


def plain(text):
    """Without colour and what moves the cursor."""
    return re.sub(r"\x1b\[[0-9;]*[A-Za-z]", "", text)


def main():
    unittest.main(verbosity=1)
