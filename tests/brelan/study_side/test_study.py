"""Studies on the cores of this machine."""
import csv
import io
import os
import pathlib
import shutil
import signal
import subprocess
import time

from study_case import BRELAN, SOURCE, StudyCase, main

MANY = "width = { from = 10, to = 29, step = 1 }\nheight = { from = 10, to = 13, step = 1 }"


class Results(StudyCase):
    def test_every_combination_is_a_case_whose_values_can_be_counted_by_hand(self):
        self.write_study("width = [2, 3]\nheight = { from = 1, to = 3, step = 1 }")
        out, _ = self.study("s.toml")
        self.assertIn("6 of 6 cases, 6 finished", out)
        by_hand = [(k + 1, w, h, (w + 1) * (h + 1), w * h, float(w * h))
                   for k, (w, h) in enumerate((w, h) for w in (2, 3) for h in (1, 2, 3))]
        self.assertEqual(self.rows('number, "p width", "p height", "v nodes", "v elements", "v area"'), by_hand)
        table = list(csv.reader(io.StringIO(self.study("csv", "s.toml")[0])))
        self.assertEqual(table[0], ["case", "width", "height", "state", "cut", "seconds", "nodes", "elements", "area", "message"])
        self.assertEqual([row[1:3] + row[6:9] for row in table[1:]],
                         [[str(w), str(h), str(n), str(e), f"{a:g}"] for _, w, h, n, e, a in by_hand])

    def test_a_folder_of_a_case_runs_by_itself_to_the_same_mesh(self):
        self.write_study("width = 3\nheight = 2", more='convert = ["vtu", "inp"]')
        self.study("s.toml")
        folder = self.folder(1)
        self.assertEqual(sorted(p.name for p in folder.iterdir()), ["Out.Mes", "Out.inp", "Out.vtu", "case.txt", "messages.txt", "s.dat"])
        made = (folder / "Out.Mes").read_bytes()
        (folder / "Out.Mes").unlink()
        subprocess.run([BRELAN, "-q", "run", "s.dat"], cwd=folder, check=True)
        self.assertEqual((folder / "Out.Mes").read_bytes(), made)

    def test_what_new_writes_runs_as_it_is(self):
        self.study("new", "wall")
        out, _ = self.study("wall.toml", "-j", "2")
        self.assertIn("45 of 45 cases, 45 finished", out)
        _, err = self.study("new", "wall", status=2)
        self.assertIn("wall.toml: there is a file of this name", err)

    def test_a_case_that_fails_is_a_result_with_its_message_and_card(self):
        self.write_study('width = 3\nheight = ["2", "2 x", "3"]')
        out, _ = self.study("s.toml", status=1)
        self.assertIn("3 of 3 cases, 2 finished, 1 stopped", out)
        [(message, details)] = self.rows("message, details")[1:2]
        self.assertIn("s.dat, line 5: ", message)
        self.assertIn("2 x 1.0 0.5", details)
        self.assertIn(message, (self.folder(2) / "messages.txt").read_text())

    def hanging_study(self, more=""):
        """The deck of the first case is a pipe that nobody reads: its worker waits for ever."""
        self.write_study("width = 3\nheight = [1, 2, 3]", more)
        self.folder(1).mkdir(parents=True)
        os.mkfifo(self.folder(1) / "s.dat")

    def test_a_case_that_hangs_is_a_result(self):
        self.hanging_study("time_limit = 0.5")
        out, _ = self.study("s.toml", "-j", "1", status=1)
        self.assertIn("3 of 3 cases, 2 finished, 1 time limit", out)
        self.assertEqual(self.rows("state, message")[0], ("time limit", "ended after 0.5 s, the study's time_limit"))
        (self.folder(1) / "s.dat").unlink()
        self.assertIn("3 finished", self.study("s.toml", "--again")[0])

    def test_a_worker_that_dies_takes_its_case_alone_with_it(self):
        self.hanging_study()
        process = self.start("s.toml", "-j", "1")
        workers = pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children")
        while not workers.read_text():
            time.sleep(0.01)
        os.kill(int(workers.read_text()), signal.SIGKILL)
        out, err = process.communicate(timeout=30)
        self.assertEqual(process.returncode, 1, err)
        self.assertIn("3 of 3 cases, 1 crashed, 2 finished", out)
        self.assertIn("ended by signal 9", self.rows("message")[0][0])


class Continuation(StudyCase):
    def wait_for_cases(self, count):
        deadline = time.monotonic() + 30
        while not (self.root / "s.study").exists() or len(self.begun_at()) < count:
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.005)

    def ended_by(self, number):
        self.write_study(MANY)
        process = self.start("s.toml", "-j", "2")
        self.wait_for_cases(5)
        process.send_signal(number)
        process.communicate(timeout=20)
        self.assertEqual(process.returncode, -number)
        time.sleep(0.1)  # the workers are gone with it
        done = self.begun_at()
        self.assertLess(len(done), 80)
        self.study("s.toml")
        self.assertEqual(self.rows("count(*), sum(state = 'finished')"), [(80, 80)])
        after = self.begun_at()
        self.assertEqual({name: after[name] for name in done}, done)

    def test_a_killed_study_goes_on_with_what_is_missing(self):
        self.ended_by(signal.SIGKILL)

    def test_an_interrupted_study_goes_on_with_what_is_missing(self):
        self.ended_by(signal.SIGINT)

    def test_two_invocations_run_no_case_twice(self):
        self.write_study(MANY)
        both = [self.start("s.toml", "-j", "1") for _ in range(2)]
        while all(process.poll() is None for process in both):
            time.sleep(0.002)
        first = self.begun_at()
        said = [process.communicate(timeout=60) for process in both]
        self.assertEqual([process.returncode for process in both], [0, 0], said)
        self.assertEqual(sum("waiting for it" in err for _, err in said), 1, said)
        self.assertEqual(len(first), 80)
        self.assertEqual(self.begun_at(), first)

    def test_cases_whose_deck_has_changed_are_run_again_and_no_others(self):
        self.write_study("width = [2, 3, 4]\nheight = 1")
        self.study("s.toml")
        before = self.begun_at()
        self.write_study("width = [2, 5, 4]\nheight = 1")
        _, err = self.study("s.toml")
        self.assertIn("1 case was since then changed", err)
        after = self.begun_at()
        self.assertEqual([name for name in before if before[name] != after[name]], ["000002"])
        self.assertEqual(self.rows('"v elements"'), [(2,), (5,), (4,)])
        self.write_study("width = [2]\nheight = 1")
        self.study("s.toml")
        self.assertEqual(self.rows("count(*)"), [(1,)])

    def test_a_file_that_runs_read_and_that_has_changed_runs_them_again(self):
        self.write_study("width = 2\nheight = 1")
        self.study("s.toml")
        before = self.begun_at()
        shutil.copy(SOURCE / "data/Vork/Qx/Qxdata/UNIT.DAT", self.root)
        _, err = self.study("s.toml")
        self.assertIn("1 case was since then changed", err)
        self.assertNotEqual(self.begun_at(), before)
        self.assertTrue((self.folder(1) / "UNIT.DAT").exists())


class Wrong(StudyCase):
    def test_what_is_wrong_is_told_with_file_and_line(self):
        for values, more, told in [
                ("width = 3", "", "s.dat, line 5: there is no parameter \"height\""),
                ("width = 3\nheight = 2\ndepth = 1", "", "s.toml, line 7: depth: no placeholder of s.dat names it"),
                ("width = { from = 1, to = 2 }\nheight = 1", "", "s.toml, line 5: width: expected step or count"),
                ("width = 3\nheight = []", "", "s.toml, line 6: height: expected at least one value"),
                ("width = 3\nheight = 2", "cutt = 1", "s.toml, line 3: \"cutt\": expected an entry of the study"),
                ("width = 3\nheight = 2", 'cut = "fine"', "s.toml, line 3: cut: expected one of rules, sound, auto"),
                ("width = 3\nheight = ", "", "s.toml, line 6: "),
                ("width = 3\nheight = 2", "time_limit = 0", "s.toml, line 3: time_limit: expected seconds above 0")]:
            with self.subTest(told):
                self.write_study(values, more)
                _, err = self.study("s.toml", status=2)
                self.assertIn(told, err)
                self.assertEqual(len(err.splitlines()), 1, err)

    def test_a_path_that_no_mesh_has_is_told(self):
        self.write_study("width = 3\nheight = 2")
        self.write("s.toml", (self.root / "s.toml").read_text().replace('"area"', '"quality.angle"'))
        _, err = self.study("s.toml", status=2)
        self.assertIn('s.toml, line 2: gather: "quality.angle": there is no "angle"; expected one of solids, smallest_angle', err)


if __name__ == "__main__":
    main()
