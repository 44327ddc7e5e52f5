"""brelan run --cut: which mesh stands there, and why."""
import json
import pathlib
import signal
import subprocess
import time

from harness import BRELAN, Case, main

PROGRAM = pathlib.Path(BRELAN).parent / "brelan2d"

# A cut with two slopes: by the rules a node hangs and an element is inverted where the left slope meets the surface.
SLOPES = """2 0
1 1 1 1 0 1
0.0 0.0
40.0 1.0 0.5
24.0 1.0 0.5
1
Bmesh.dat
Out.Mes
1 1
4
0
0
1
0.0 0.0 40.0 24.0
1 0
0.0 0.0
1
0 0
4 0 0 0.0 0.0
1 2.2451 24.0000
2 13.092 18.576
3 18.076 18.576
4 21.785 24.0000
4
1 1 0 2
2 1 0 2
3 1 0 2
4 1 0 2
"""
FILES = ("Out.Mes", "Bmesh.dat", "Group.Pos", "DV-BRELAN.dat", "LineUp.dat")


class Cuts(Case):
    def setUp(self):
        super().setUp()
        self.write("slopes.dat", SLOPES)

    def sound_by(self, script):
        """A batch program that runs the script with --sound; without, the real one."""
        return self.fake_program(f'echo "${{1-rules}}" >> {self.root}/asked\n'
                                 f'test "$1" = --sound || exec {PROGRAM} "$@"\n{script}\n')

    def sound_mesh(self):
        """The deck's base mesh stands for what the sound cut makes."""
        self.assertEqual(self.brelan("run", "slopes.dat", "--cut", "rules").returncode, 0)
        return (self.project / "Bmesh.dat").rename(self.root / "sound.mes")

    def asked(self):
        path = self.root / "asked"
        return path.read_text().split() if path.exists() else []

    def finished(self, *arguments):
        ran = self.brelan("run", "--json", "slopes.dat", *arguments)
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        self.assert_nothing_left()
        return json.loads(ran.stdout)

    def texts(self):
        return {name: (self.project / name).read_text() for name in FILES if (self.project / name).exists()}

    def test_an_unsound_mesh_by_the_rules_gives_way_to_a_sound_one(self):
        program = self.sound_by(f"cp {self.sound_mesh()} ../Out.Mes")
        ran = self.brelan("run", "slopes.dat", "--program", program)
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        self.assertEqual(self.asked(), ["rules", "--sound"])
        lines = [line for line in ran.stdout.splitlines() if line.startswith("  cut ")]
        self.assertEqual(len(lines), 1)
        self.assertRegex(lines[0], r"^  cut        sound; by the rules the mesh is unsound: .*1 hanging node")
        self.assertRegex(ran.stdout, r"soundness +sound\n")
        report = self.finished("--program", program)
        self.assertEqual((report["cut"], report["mesh"]["sound"]), ("sound", True))
        self.assertIn("hanging", report["cut_reason"])
        self.assertIn("Out.Mes", report["result"])

    def test_the_mesh_by_the_rules_comes_back_when_the_sound_cut_fails(self):
        self.assertEqual(self.brelan("run", "slopes.dat", "--cut", "rules").returncode, 0)
        rules = self.texts()
        for name in rules:
            (self.project / name).unlink()
        # What a run that fails may leave half done: files replaced, written new, deleted.
        program = self.sound_by("echo a > ../Out.Mes; echo b > ../Boundary.Man; rm -f ../Group.Pos\n"
                                "echo 'brelan2d: group 1, segment 2: no' >&2; exit 2")
        report = self.finished("--program", program)
        self.assertEqual(self.asked(), ["rules", "--sound"])
        self.assertEqual((report["cut"], report["status"], report["mesh"]["sound"]), ("rules", 0, False))
        self.assertEqual(report["cut_reason"], "the sound cut ended with: group 1, segment 2: no")
        self.assertEqual(self.texts(), rules)
        self.assertFalse((self.project / "Boundary.Man").exists())
        self.assertEqual(report["also"], ["Bmesh.dat", "DV-BRELAN.dat", "Group.Pos"])

    def test_the_mesh_by_the_rules_comes_back_when_the_other_is_no_better(self):
        program = self.sound_by(f"exec {PROGRAM}")
        report = self.finished("--program", program)
        self.assertEqual((report["cut"], report["mesh"]["sound"]), ("rules", False))
        self.assertRegex(report["cut_reason"], "the mesh of the sound cut is no better, unsound: .*hanging")
        report = self.finished("--program", self.sound_by("rm ../Out.Mes"))
        self.assertEqual(report["cut_reason"], "the sound cut left no mesh that can be read")

    def test_the_second_run_starts_from_the_files_of_the_first(self):
        # The result takes the place of the mesh that the deck reads, and the line-up works once.
        self.write("Bmesh.dat", "before\n")
        self.write("LineUp.dat", "1\n")
        self.finished("--program", self.sound_by(
            "cat ../Bmesh.dat LineUp.dat ../LineUp.dat > ../seen; echo 0 > LineUp.dat; exit 7"))
        self.assertEqual((self.project / "seen").read_text().split(), ["before", "1", "1"])
        self.assertEqual((self.project / "LineUp.dat").read_text().split(), ["0"])
        self.assertNotEqual((self.project / "Bmesh.dat").read_text(), "before\n")

    def test_files_that_are_kept_apart_are_those_of_the_mesh_that_stands(self):
        self.write("Group.Pos", "the project's own\n")
        report = self.finished("--apart", "apart", "--program", self.sound_by("echo half > ../Group.Pos; exit 2"))
        self.assertEqual(report["cut"], "rules")
        self.assertNotEqual((self.project / "apart/Group.Pos").read_text(), "half\n")
        self.assertEqual((self.project / "Group.Pos").read_text(), "the project's own\n")

    def test_a_choice_runs_once(self):
        program = self.sound_by(f"cp {self.sound_mesh()} ../Out.Mes")
        self.assertEqual(self.finished("--cut", "rules", "--program", program)["cut_reason"], None)
        self.assertEqual(self.asked(), ["rules"])
        ran = self.brelan("run", "slopes.dat", "--cut", "sound", "--program", program)
        self.assertEqual(self.asked(), ["rules", "--sound"])
        self.assertIn("\n  cut        sound\n", ran.stdout)
        failed = self.brelan("run", "slopes.dat", "--cut", "sound", "--program", self.sound_by("exit 7"))
        self.assertEqual((failed.returncode, failed.stdout), (7, ""))
        self.assert_one_message(self.brelan("run", "slopes.dat", "--cut", "other"), 2, "--cut")

    def test_a_sound_mesh_and_a_deck_that_cuts_nothing_run_once(self):
        program = self.sound_by("exit 7")
        self.starter("groups")
        ran = self.brelan("run", "groups.dat", "--program", program)
        self.assertEqual((ran.returncode, self.asked()), (0, ["rules"]))
        self.assertNotIn("  cut ", ran.stdout)
        # A node hangs in the mesh that an edit moves.
        self.assertEqual(self.brelan("run", "slopes.dat", "--cut", "rules").returncode, 0)
        self.write("move.dat", "1 0\nOut.Mes\nMoved.Mes\n1 1\n0\n0 0 10 0\n1 1\n")
        ran = self.brelan("run", "move.dat", "--program", program)
        self.assertEqual((ran.returncode, self.asked()), (0, ["rules", "rules"]))
        self.assertIn("1 hanging node", ran.stdout)

    def test_an_interrupted_second_run_leaves_the_mesh_by_the_rules(self):
        self.assertEqual(self.brelan("run", "slopes.dat", "--cut", "rules").returncode, 0)
        rules = self.texts()
        program = self.sound_by("echo half > ../Out.Mes; touch ../second; exec sleep 20")
        process = subprocess.Popen([BRELAN, "run", "slopes.dat", "--program", program], cwd=self.project,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.environment)
        for _ in range(500):
            if (self.project / "second").exists():
                break
            time.sleep(0.02)
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=20)
        self.assertEqual(process.returncode, -signal.SIGTERM)
        self.assertEqual(self.texts(), rules)
        self.assert_nothing_left()


if __name__ == "__main__":
    main()
