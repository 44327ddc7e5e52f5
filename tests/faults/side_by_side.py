#!/usr/bin/env python3
"""Runs beside each other and beside a reader, and disks that are full or must not be written.

    side_by_side.py [--runs COUNT]      so many runs share one data directory; 20 unless given
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest

import cases

RUNS = 20
SOUND = {case.name: case for case in cases.CASES}


class Beside(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-beside-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)

    def lay_out(self, name, at="one"):
        root = self.root / at
        SOUND[name].lay_out(root)
        return root

    def start(self, root, drive=None):
        environment = dict(os.environ, BRELAN_DRIVE_C=str(drive or root / "drive"))
        return subprocess.Popen([os.environ["BRELAN2D"]], cwd=root / "project" / cases.WORK, env=environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def end(self, run):
        out, err = run.communicate(timeout=120)
        return run.returncode, out, err

    def results(self, root):
        return {path.name: path.read_bytes() for path in (root / "project").iterdir() if path.is_file()}

    def expected(self, name):
        root = self.lay_out(name, "expected")
        self.assertEqual(self.end(self.start(root)), (0, "", ""))
        return root


class SideBySide(Beside):
    def test_two_runs_in_one_directory_come_one_after_the_other(self):
        expected = self.results(self.expected("dam"))
        root = self.lay_out("dam")
        ends = [self.end(run) for run in [self.start(root) for _ in range(2)]]
        self.assertEqual([(status, out) for status, out, _ in ends], [(0, "")] * 2)
        waits = "brelan2d: another run is at work in this directory; waiting for it to end\n"
        self.assertEqual(sorted(err for _, _, err in ends), ["", waits])
        self.assertEqual(self.results(root), expected)

    def test_runs_with_one_data_directory_do_not_hurt_each_other(self):
        name = "groups with outputs"
        alone = self.expected(name)
        roots = [self.lay_out(name, f"run-{i}") for i in range(RUNS)]
        drive = self.root / "expected" / "drive"
        known = {path: path.read_bytes() for path in drive.rglob("*") if path.is_file()}
        for run in [self.start(root, drive) for root in roots]:
            self.assertEqual(self.end(run), (0, "", ""))
        for root in roots:
            self.assertEqual(self.results(root), self.results(alone))
        self.assertEqual({path: path.read_bytes() for path in drive.rglob("*") if path.is_file()}, known)

    def test_a_reader_finds_the_old_mesh_or_the_new_one(self):
        root = self.lay_out("groups with outputs")
        place = root / "project" / "PitLeft.Mes"
        seen, ended = set(), threading.Event()

        def read():
            while not ended.is_set():
                seen.add(place.read_bytes())

        reader = threading.Thread(target=read)
        reader.start()
        try:
            for _ in range(10):
                self.assertEqual(self.end(self.start(root)), (0, "", ""))
        finally:
            ended.set()
            reader.join()
        self.assertLessEqual(seen, {cases.EARLIER.encode(), place.read_bytes()})
        self.assertIn(place.read_bytes(), seen)


class Disks(Beside):
    def mount(self, *options):
        place = self.root / "disk"
        place.mkdir()
        if os.geteuid() != 0 or subprocess.run(["mount", "-t", "tmpfs", "-o", ",".join(options), "none", place],
                                               stderr=subprocess.DEVNULL).returncode != 0:
            self.skipTest("no file system can be mounted here")
        self.addCleanup(subprocess.run, ["umount", place], check=True)
        return place

    def put_on(self, disk, name):
        SOUND[name].lay_out(disk / "of")
        return disk / "of"

    def test_a_full_disk_leaves_every_file_whole(self):
        expected = self.results(self.expected("base mesh with groups"))
        failed = 0
        disk = self.mount("size=1m")
        for free in (0, 4, 8, 12, 16, 24, 32, 48, 64, 96):
            root = self.put_on(disk, "base mesh with groups")
            before = self.results(root)
            filler = disk / "filler"
            with filler.open("wb", buffering=0) as stream:
                try:
                    while True:
                        stream.write(b"0" * 4096)
                except OSError:
                    stream.truncate(max(stream.tell() - free * 1024, 0))
            status, _, err = self.end(self.start(root))
            self.assertIn(status, (0, 2))
            self.assertEqual(len(err.splitlines()), 0 if status == 0 else 1, err)
            failed += status == 2
            for file, text in self.results(root).items():
                self.assertIn(text, (before.get(file), expected.get(file)), file)
            if status == 0:
                self.assertEqual(self.results(root), expected)
            else:
                self.assertIn("No space left on device", err)
            shutil.rmtree(root)
            filler.unlink()
        self.assertGreater(failed, 3)

    def test_a_disk_that_must_not_be_written_is_told(self):
        disk = self.mount("size=1m")
        root = self.put_on(disk, "edit")
        before = self.results(root)
        subprocess.run(["mount", "-o", "remount,ro", disk], check=True)
        status, _, err = self.end(self.start(root))
        self.assertEqual((status, len(err.splitlines())), (2, 1))
        self.assertIn("Read-only file system", err)
        self.assertEqual(self.results(root), before)


if __name__ == "__main__":
    if "--runs" in sys.argv:
        at = sys.argv.index("--runs")
        RUNS = int(sys.argv[at + 1])
        del sys.argv[at:at + 2]
    unittest.main()
