"""brelan run after one that was killed: what that had kept of the user's files goes back, or goes away."""
import os
import pathlib
import shutil
import signal
import subprocess
import time

from harness import BRELAN, Case, main

PROGRAM = pathlib.Path(BRELAN).parent / "brelan2d"

# A base mesh, with its file's name alone.
BASE = "2 0\n1 1\n0 0\n3 1 0.5\n4 1 0.5\n0\n"
APART = ("--apart", "out", "--cut", "rules")


class AfterAKill(Case):
    def setUp(self):
        super().setUp()
        self.write("base.dat", BASE)
        self.write("Bmesh.dat", "mine")

    def wait_for(self, mark):
        for _ in range(2000):
            if mark.exists():
                return
            time.sleep(0.01)
        self.fail("the run does not begin")

    def killed(self, script, *arguments):
        """A run whose batch program runs the script, and is killed together with it once that has come to its end."""
        mark = self.root / "mark"
        mark.unlink(missing_ok=True)
        program = self.fake_program(f"{script}\necho > {mark}\nexec sleep 60\n")
        process = subprocess.Popen([BRELAN, "run", "base.dat", *arguments, "--program", program], cwd=self.project,
                                   env=self.environment, stdin=subprocess.DEVNULL, start_new_session=True)
        self.wait_for(mark)
        os.killpg(process.pid, signal.SIGKILL)
        self.assertEqual(process.wait(timeout=20), -signal.SIGKILL)
        self.assertEqual(len(self.left()), 1)
        return self.left()[0]

    def left(self):
        return [path.name for path in self.project.iterdir() if path.name.startswith((".brelan-kept-", ".brelan-aside-"))]

    def run_again(self, *arguments):
        """Of a deck that touches none of the files."""
        shutil.copy(pathlib.Path(os.environ["BRELAN_SOURCE"]) / "examples/Row.Mes", self.project)
        self.write("move.dat", "1 0\nRow.Mes\nMoved.Mes\n1 1\n0\n0 0 10 0\n1 1\n")
        ran = self.brelan("run", "move.dat", *arguments)
        self.assertEqual(ran.returncode, 0, ran.stderr)
        # What the killed run had started may not be quite dead.
        return [line for line in ran.stderr.splitlines() if "another run is at work" not in line]

    def test_a_copy_of_what_stands_in_its_place_goes_away(self):
        for arguments in ((), APART):
            with self.subTest(arguments):
                self.killed("", *arguments)
                self.assertEqual(self.run_again(), [])
                self.assertEqual((self.project / "Bmesh.dat").read_text(), "mine")
                self.assert_nothing_left()

    def test_a_copy_whose_place_is_empty_goes_back(self):
        for arguments in ((), APART):
            with self.subTest(arguments):
                self.write("Bmesh.dat", "mine")
                self.killed("rm ../Bmesh.dat", *arguments)
                lines = self.run_again()
                self.assertEqual(len(lines), 1, lines)
                self.assertIn("Bmesh.dat: put back; a run that was killed had not done so", lines[0])
                self.assertEqual((self.project / "Bmesh.dat").read_text(), "mine")
                self.assert_nothing_left()

    def test_a_file_that_the_run_was_to_replace_gives_way_to_the_new_one(self):
        self.killed("echo new > ../Bmesh.dat")
        self.assertEqual(self.run_again(), [])
        self.assertEqual((self.project / "Bmesh.dat").read_text(), "new\n")
        self.assert_nothing_left()

    def test_a_file_that_the_run_was_not_to_touch_stays_beside_the_new_one(self):
        left = self.killed("echo new > ../Bmesh.dat", *APART)
        for _ in range(2):
            lines = self.run_again()
            self.assertEqual(len(lines), 1, lines)
            name = lines[0].partition("is kept as ")[2]
            self.assertIn("Bmesh.dat: what stood there before a run that was killed is kept as ", lines[0])
            self.assertEqual((self.project / name).read_text(), "mine")
            self.assertEqual((self.project / "Bmesh.dat").read_text(), "new\n")
        # The user has made up his mind.
        shutil.move(self.project / name, self.project / "Bmesh.dat")
        self.assertEqual(self.run_again(), [])
        self.assertEqual(self.left(), [])

    def test_copies_are_those_of_the_project_they_lie_in(self):
        self.killed("rm ../Bmesh.dat", *APART)
        given = self.project
        self.project = self.root / "copy"
        shutil.copytree(given, self.project)
        self.assertEqual(len(self.run_again()), 1)
        self.assertEqual((self.project / "Bmesh.dat").read_text(), "mine")
        self.assertFalse((given / "Bmesh.dat").exists())

    def test_copies_of_a_run_that_lives_are_left_alone(self):
        mark, end = self.root / "mark", self.root / "end"
        program = self.fake_program(f"rm ../Bmesh.dat\necho > {mark}\nwhile [ ! -e {end} ]; do sleep 0.02; done\n")
        process = subprocess.Popen([BRELAN, "run", "base.dat", *APART, "--program", program],
                                   cwd=self.project, env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL)
        self.addCleanup(process.kill)
        self.addCleanup(end.touch)
        self.wait_for(mark)
        waits = subprocess.Popen([BRELAN, "run", "base.dat"], cwd=self.project, env=self.environment,
                                 stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        self.addCleanup(waits.kill)
        self.assertIn("another run is at work in this project", waits.stderr.readline())
        self.assertEqual(len(self.left()), 1)
        self.assertFalse((self.project / "Bmesh.dat").exists())
        end.touch()
        self.assertEqual(process.wait(timeout=20), 0)
        self.assertEqual((waits.wait(timeout=20), waits.stderr.read()), (0, ""))
        waits.stderr.close()
        self.assertEqual(self.left(), [])

    def test_a_list_reaches_nothing_outside_of_the_project(self):
        """It may have come with somebody else's project."""
        for place in ("../evil", str(self.root / "evil"), "link/evil"):
            with self.subTest(place):
                left = self.project / ".brelan-aside-abcdef"
                left.mkdir()
                (left / "places").write_text(place + "\0")
                (left / "0-evil").write_text("evil")
                if place.startswith("link"):
                    (self.project / "link").symlink_to(self.root)
                lines = self.run_again()
                self.assertEqual(len(lines), 1, lines)
                self.assertIn(f"is kept as ./{left.name}/0-evil", lines[0])
                self.assertFalse((self.root / "evil").exists())
                shutil.rmtree(left)

    def test_what_another_user_has_made_is_no_copy(self):
        if os.geteuid() != 0:
            self.skipTest("only the super-user can give a directory away")
        left = self.killed("rm ../Bmesh.dat", *APART)
        os.chown(self.project / left, 12345, 12345)
        self.assertEqual(self.run_again(), [])
        self.assertFalse((self.project / "Bmesh.dat").exists())
        self.assertEqual(self.left(), [left])


if __name__ == "__main__":
    main()
