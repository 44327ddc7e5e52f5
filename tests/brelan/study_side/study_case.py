"""The real command on studies in directories of their own."""
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

BRELAN = os.environ["BRELAN"]
SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])
sys.path.insert(0, str(SOURCE / "tests/brelan/mesh_side"))

# A base mesh of elements of 1 by 1.
DECK = """  2  0
  1 1 1 1 0 1
  0.0 0.0
  {width} 1.0 0.5
  {height} 1.0 0.5
  1
Bmesh.dat
Out.Mes
  1 1
  0
  0 0 0 0
  1 1
  0 0
"""


class StudyCase(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-study-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        self.environment = {k: v for k, v in os.environ.items() if k not in ("BRELAN_DRIVE_C", "NO_COLOR")}

    def start(self, *arguments, **environment):
        return subprocess.Popen([BRELAN, "study", *map(str, arguments)], cwd=self.root, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, stdin=subprocess.DEVNULL,
                                env=dict(self.environment, **environment))

    def study(self, *arguments, status=0, **environment):
        process = self.start(*arguments, **environment)
        out, err = process.communicate(timeout=60)
        self.assertEqual(process.returncode, status, out + err)
        return out, err

    def write(self, name, text):
        (self.root / name).write_text(text)

    def write_study(self, values, more="", deck=DECK):
        self.write("s.dat", deck)
        self.write("s.toml", f'deck = "s.dat"\ngather = ["nodes", "elements", "area"]\n{more}\n[values]\n{values}\n')

    def rows(self, columns="*"):
        connection = sqlite3.connect(self.root / "s.study/study.sqlite")
        try:
            return connection.execute(f"SELECT {columns} FROM cases ORDER BY number").fetchall()
        finally:
            connection.close()

    def folder(self, number):
        return self.root / f"s.study/cases/{number // 1000:05}/{number:06}"

    def begun_at(self):
        """When each case was run, by its record."""
        return {path.parent.name: path.stat().st_mtime_ns for path in (self.root / "s.study/cases").rglob("case.txt")}


def main():
    unittest.main(verbosity=1)
