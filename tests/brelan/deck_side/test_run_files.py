"""brelan run: which files it wrote and deleted, where it puts them, what it takes from standard input, and what it
tells programs."""
import json
import os
import signal
import subprocess
import time

from harness import BRELAN, Case, main

BLOCK = "2 0\n1 1\n0 0\n{width} 1 0.5\n4 1 0.5\n0\n"  # a base mesh of width times 4 squares


class RunCase(Case):
    # Of the starter deck of a dam with shells.
    FIXED_SLOPES = "HWATER 15: with shells the nodes of both slopes below the water"
    CUT_CORE = "the core is drawn with an area of 180 and comes out with 132.9: by the rules"

    def said(self, *arguments, warned=(), **options):
        """The summary's entries by their names, behind warnings of which each holds the text given here."""
        ran = self.brelan("run", *arguments, **options)
        self.assertEqual(ran.returncode, 0, ran.stderr)
        self.assertEqual(len(ran.stderr.splitlines()), len(warned), ran.stderr)
        for line, text in zip(ran.stderr.splitlines(), warned):
            self.assertIn("warning: " + text, line)
        return {line[2:13].strip(): line[13:] for line in ran.stdout.splitlines()[1:]}

    def report(self, *arguments, status=0, **options):
        ran = self.brelan("run", "--json", *arguments, **options)
        self.assertEqual(ran.returncode, status, ran.stderr)
        return json.loads(ran.stdout)

    def nodes(self, mesh):
        return self.counts(mesh)[0]

    def dam(self, shells, kind="displacement"):
        """The starter deck of a dam, with slopes from templates or without."""
        deck = self.starter("dam", kind)
        text = deck.read_text()
        card = "  2       1      1     0 "
        self.assertEqual(text.count(card), 1)
        deck.rename(self.project / "dam.dat").write_text(text.replace(card, card[:-2] + f"{shells} "))
        return "dam.dat"


class Lists(RunCase):
    def test_only_files_that_the_run_wrote_are_listed(self):
        self.starter("groups")
        script = f"'{BRELAN}' run groups.dat > run.log; echo done >> run.log; cat run.log"
        ran = subprocess.run(["bash", "-c", script], cwd=self.project, env=self.environment, text=True,
                             capture_output=True)
        self.assertIn("\n  also       Bmesh.dat, DV-BRELAN.dat, Group.Pos\n", ran.stdout)
        # Somebody else is at work in the project meanwhile.
        program = self.fake_program("echo 1 > ../notes.txt; echo 1 >> ../run.log; echo 2 > ../Group.Pos\n")
        self.assertEqual(self.said("groups.dat", "--program", program)["also"], "Group.Pos")

    def test_a_list_of_an_earlier_run_is_not_listed(self):
        self.starter("groups")
        self.write("Boundary.Man", "of a run of the head kind")
        self.assertNotIn("Boundary.Man", self.said("groups.dat")["also"])

    def test_a_dam_with_shells_says_what_it_deleted_and_whose_numbers_the_lists_have(self):
        first = self.said(self.dam(shells=0))
        self.assertEqual(first["result"], "EarthDam.Mes")
        self.assertEqual(first["also"], "Bmesh.dat, DV-BRELAN.dat, EarthDam.Meg, Group.Pos")
        self.assertFalse({"deleted", "remark"} & first.keys())
        second = self.said(self.dam(shells=1), warned=[self.FIXED_SLOPES, self.CUT_CORE])
        self.assertEqual(second["result"], "Earth_Dam.Mes")
        self.assertEqual(second["also"], "Bmesh.dat, Group.Pos")
        self.assertEqual(second["deleted"], "EarthDam.Meg, EarthDam.Mes")
        self.assertFalse((self.project / "EarthDam.Mes").exists())
        self.assertTrue(second["remark"].startswith("Group.Pos has the numbers of EarthDam.Mes"), second)
        # The head kind has flow sections too. Nothing of an earlier run is there to be deleted.
        third = self.said(self.dam(shells=1, kind="head"), "--kind", "head", warned=[self.CUT_CORE])
        self.assertEqual(third["also"], "Bmesh.dat, Boundary.Man, Group.Pos")
        self.assertTrue(third["remark"].startswith("Boundary.Man and Group.Pos have the numbers of"), third)
        # The sound cut draws core and wall last: the list of the groups is that of the finished dam.
        fourth = self.said("dam.dat", "--kind", "head", "--cut", "sound")
        self.assertEqual(fourth["also"], "Bmesh.dat, Boundary.Man, Group.Pos")
        self.assertTrue(fourth["remark"].startswith("Boundary.Man has the numbers of"), fourth)
        self.assertFalse((self.project / "Dam_Joined.Mes").exists())
        self.assertNotIn("deleted", third)

    def test_a_deck_that_the_run_would_delete_is_refused(self):
        deck = self.project / self.dam(shells=1)
        text = deck.read_text()
        deck = deck.rename(self.project / "earthdam.MEG")
        self.assert_one_message(self.brelan("run", deck.name), 2, "in the place of the deck")
        self.assertEqual(deck.read_text(), text)


class LineUp(RunCase):
    # Trusses along y = 0 from x = 0 to 3, and over the middle one an element of material 7 that leans to the right
    # by 0.25: line-up moves nodes 2 and 3 to the right as far.
    MESH = """Row.Mes
  NUMNP   NCONT   NBEAM   NTRUS
  6  1  0  3
  NODAL COORDINATES
  NODE  IDX  IDY  IDT  IEX  IEY  XC  YC
  1  0 0 1 1 1  0.0  0.0
  2  0 0 1 1 1  1.0  0.0
  3  0 0 1 1 1  2.0  0.0
  4  0 0 1 1 1  3.0  0.0
  5  0 0 1 1 1  2.25 1.0
  6  0 0 1 1 1  1.25 1.0
  CONTINUUM ELEMENT INDEX
  NEL I1 I2 I3 I4 M5 M6 M7 M8 MATC THIC DEN
  1  2 3 5 6  0 0 0 0  7  1.0  1.0
  TRUSS ELEMENT
  NEL I J MATT NODEK
  11  1 2 5 2
  12  2 3 5 3
  13  3 4 5 4
     0
     0
"""
    DECK = "1 0\nRow.Mes\nLined.Mes\n1 1\n4\n0\n0\n0\n0 1\n0 0 0\n"

    def places(self):
        lines = (self.project / "Lined.Mes").read_text().splitlines()[5:9]
        return [float(line.split()[6]) for line in lines]

    def test_it_works_once_and_is_set_back_as_by_a_plain_run(self):
        self.write("Row.Mes", self.MESH)
        self.write("line.dat", self.DECK)
        self.write("LineUp.dat", "1\n")
        self.assertIn("LineUp.dat", self.said("line.dat")["also"])
        self.assertEqual(self.places(), [0.0, 1.25, 2.25, 3.0])
        self.assertEqual((self.project / "LineUp.dat").read_text().split(), ["0"])
        self.assertNotIn("LineUp.dat", self.said("line.dat")["also"])
        self.assertEqual(self.places(), [0.0, 1.0, 2.0, 3.0])
        self.assertEqual((self.project / "LineUp.dat").read_text().split(), ["0"])

    def test_below_0_it_works_in_every_run(self):
        self.write("Row.Mes", self.MESH)
        self.write("line.dat", self.DECK)
        self.write("lineup.DAT", "-1\n")
        for _ in range(2):
            self.assertEqual(self.report("line.dat")["status"], 0)
            self.assertEqual(self.places(), [0.0, 1.25, 2.25, 3.0])
        self.assertEqual((self.project / "lineup.DAT").read_text(), "-1\n")
        self.assertFalse((self.project / "LineUp.dat").exists())

    def test_a_run_that_fails_behind_it_has_used_it_up(self):
        self.write("Row.Mes", self.MESH)
        self.write("line.dat", self.DECK)
        (self.project / "Group.Pos").mkdir()
        self.write("LineUp.dat", "1\n")
        self.assertEqual(self.brelan("run", "line.dat").returncode, 2)
        self.assertEqual((self.project / "LineUp.dat").read_text().split(), ["0"])


class KeptApart(RunCase):
    def stamp(self, name):
        about = os.stat(self.project / name)
        return about.st_ino, about.st_mtime_ns, (self.project / name).read_text()

    def test_each_deck_has_its_own_and_the_project_keeps_what_it_had(self):
        self.write("Bmesh.dat", "mine")
        self.write("group.pos", "mine too")
        before = [self.stamp("Bmesh.dat"), self.stamp("group.pos")]
        self.starter("groups")
        pit = self.said("groups.dat", "--apart", "out/pit")
        self.assertEqual(pit["result"], "Pit.Mes")
        self.assertEqual(pit["also"], "out/pit/Bmesh.dat, DV-BRELAN.dat, out/pit/Group.Pos")
        for width in (3, 5):
            self.write("base.dat", BLOCK.format(width=width))
            said = self.said("base.dat", "--apart", self.project / "out" / str(width))
            self.assertEqual(said["result"], str(self.project / "out" / str(width) / "Bmesh.dat"))
        self.assertEqual((self.nodes("out/3/Bmesh.dat"), self.nodes("out/5/Bmesh.dat")), (4 * 5, 6 * 5))
        base = json.loads(self.brelan("info", "--json", "out/pit/Bmesh.dat").stdout)[0]
        self.assertAlmostEqual(base["area"], 40 * 20, 6)
        self.assertEqual([self.stamp("Bmesh.dat"), self.stamp("group.pos")], before)
        self.assert_nothing_left()
        # What was in the directory before is replaced.
        self.write("base.dat", BLOCK.format(width=7))
        self.said("base.dat", "--apart", "out/5")
        self.assertEqual(self.nodes("out/5/Bmesh.dat"), 8 * 5)

    def test_the_mesh_is_the_same_as_without(self):
        self.starter("groups")
        self.said("groups.dat")
        names = ("Pit.Mes", "Bmesh.dat", "Group.Pos")
        texts = [(self.project / name).read_bytes() for name in names]
        (self.project / "Pit.Mes").unlink()
        self.said("groups.dat", "--apart", "out")
        self.assertEqual([(self.project / place).read_bytes()
                          for place in ("Pit.Mes", "out/Bmesh.dat", "out/Group.Pos")], texts)

    def test_a_result_that_a_card_names_stays_where_the_card_says(self):
        self.write("Bmesh.dat", "old")
        self.write("same.dat", BLOCK.format(width=3).replace("\n0\n", "\n1\n") +
                   "Bmesh.dat\n..\\bmesh.DAT\n1 1\n0\n0 0 0 0\n1 1\n")
        self.assertEqual(self.said("same.dat", "--apart", "out")["result"], "Bmesh.dat")
        self.assertEqual(self.nodes("Bmesh.dat"), 4 * 5)
        self.assertFalse((self.project / "out/Bmesh.dat").exists())

    def test_a_dam_leaves_that_of_an_earlier_run(self):
        self.said(self.dam(shells=0))
        before = [self.stamp(name) for name in ("EarthDam.Mes", "EarthDam.Meg", "Bmesh.dat", "Group.Pos")]
        said = self.said(self.dam(shells=1), "--apart", "out", warned=[self.FIXED_SLOPES, self.CUT_CORE])
        self.assertEqual(said["result"], "out/Earth_Dam.Mes")
        self.assertNotIn("deleted", said)
        self.assertEqual([self.stamp(name) for name in ("EarthDam.Mes", "EarthDam.Meg", "Bmesh.dat", "Group.Pos")],
                         before)
        self.assertEqual(sorted(p.name for p in (self.project / "out").iterdir()),
                         ["Bmesh.dat", "Earth_Dam.Mes", "Group.Pos"])

    def test_a_run_that_fails_or_is_interrupted_gives_the_files_back(self):
        self.write("Bmesh.dat", "mine")
        before = self.stamp("Bmesh.dat")
        self.write("base.dat", BLOCK.format(width=3))
        program = self.fake_program("echo half > ../Bmesh.dat; exit 2\n")
        self.assertEqual(self.brelan("run", "base.dat", "--apart", "out", "--program", program).returncode, 2)
        self.assertEqual((self.project / "out/Bmesh.dat").read_text(), "half\n")
        self.assertEqual(self.stamp("Bmesh.dat"), before)
        mark = self.root / "mark"
        program = self.fake_program(f"echo half > ../Bmesh.dat; echo > {mark}; exec sleep 60\n")
        process = subprocess.Popen([BRELAN, "run", "base.dat", "--apart", "out", "--program", program],
                                   cwd=self.project, env=self.environment, stdin=subprocess.DEVNULL)
        while not mark.exists():
            time.sleep(0.01)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(timeout=20), -signal.SIGTERM)
        self.assertEqual(self.stamp("Bmesh.dat"), before)
        self.assert_nothing_left()

    def test_places_that_will_not_do(self):
        self.write("base.dat", BLOCK.format(width=3))
        self.assert_one_message(self.brelan("run", "base.dat", "--apart", "."), 2, "another directory than the project")
        self.assert_one_message(self.brelan("run", "base.dat", "--apart", "base.dat"), 2, "base.dat", "a directory")
        (self.project / "out/Bmesh.dat").mkdir(parents=True)
        self.write("Bmesh.dat", "mine")
        self.assert_one_message(self.brelan("run", "base.dat", "--apart", "out"), 2, "out/Bmesh.dat: cannot be written")
        self.assertEqual((self.project / "Bmesh.dat").read_text(), "mine")
        self.assert_nothing_left()


class Programs(RunCase):
    FIELDS = ["deck", "project", "edition", "kind", "cut", "cut_reason", "seconds", "decks", "pass", "status", "message", "details",
              "result", "also", "deleted", "remarks", "mesh"]

    def test_a_finished_run_as_an_object(self):
        self.starter("groups")
        for arguments in (["groups.dat"], ["-q", "groups.dat", "--kind", "head", "--project", self.project]):
            report = self.report(*arguments)
            self.assertEqual(list(report), self.FIELDS)
            self.assertGreater(report.pop("seconds"), 0.0)
            info = json.loads(self.brelan("info", "--json", "Pit.Mes").stdout)[0]
            mesh = report.pop("mesh")
            # The deck names its materials, the mesh that the batch program writes does not.
            self.assertEqual(mesh["materials"][0]["name"], "Ground")
            for row in mesh["materials"]:
                row["name"] = None
            self.assertEqual(dict(mesh, file="Pit.Mes"), info)
        remarks = report["remarks"]
        report["remarks"] = remarks[:1]
        # The whole of it for the second: DV-BRELAN.dat was there, and in the head kind the strut is a flow section.
        self.assertEqual(report, {
            "deck": "groups.dat", "project": str(self.project), "edition": 9, "kind": "head", "cut": "rules", "cut_reason": None,
            "decks": 1, "pass": "43",
            "status": 0, "message": None, "details": [], "result": str(self.project / "Pit.Mes"),
            "also": [str(self.project / name) for name in ("Bmesh.dat", "Boundary.Man", "Group.Pos")],
            "deleted": [], "remarks": remarks[:1]})
        # Behind the kind what the check says: the weight of the displacement kind's deck stands where IH is read.
        self.assertEqual(remarks[0], "edition 9 (head) by --kind, but its comment names the displacement kind")
        self.assertEqual(len(remarks), 3)
        for remark in remarks[1:]:
            self.assertIn("warning: IH 1.9", remark)

    def test_a_run_that_fails_as_an_object(self):
        self.edited_starter("edit-0", ("  -1.0   1.0\n", "  -1.0\n"))
        ran = self.brelan("run", "--json", "edit-0.dat")
        report = json.loads(ran.stdout)
        self.assertEqual(list(report), self.FIELDS)
        self.assertEqual((ran.returncode, report["status"], report["result"], report["mesh"]), (1, 1, None, None))
        lines = ran.stderr.splitlines()
        self.assertEqual(lines[0], "brelan: " + report["message"])
        self.assertEqual(lines[1:], report["details"])
        self.assertIn("expected 2 values on Card 3.3.1.2", report["message"])

    def test_free_sides_are_remarked_also_of_a_base_mesh_kept_apart(self):
        # 150 rows of a metre in sums of 32 bits miss the bottom; the project's own Bmesh.dat is of 20 x 2 squares.
        self.write("base.dat", "2 0\n1 1\n0 0\n20 1 0.5\n2 1 0.5\n0\n")
        self.assertEqual(self.report("base.dat")["remarks"], [])
        self.write("base.dat", "2 0\n1 1\n0 0\n20 1 0.5\n150 1 0.5\n0\n")
        remarks = self.report("base.dat", "--apart", "out")["remarks"]
        self.assertEqual(len(remarks), 1)
        self.assertIn("base.dat, line 2: warning: IB_BOTTOM 1: 19 of 21 nodes", remarks[0])
        self.assertEqual(self.nodes("Bmesh.dat"), 21 * 3)

    def test_a_lost_result_is_remarked(self):
        self.edited_starter("edit-0", ("\nMirror.Mes\n", "\n.\\Mirror.Mes\n"))
        report = self.report("edit-0.dat")
        self.assertEqual((report["result"], len(report["remarks"])), (None, 1))
        self.assertIn("goes when the run ends", report["remarks"][0])
        report = self.report("edit-0.dat", "--work", "w")
        self.assertEqual((report["result"], report["remarks"]), ("w/Mirror.Mes", []))

    def test_what_is_deleted_and_remarked(self):
        self.said(self.dam(shells=0))
        report = self.report(self.dam(shells=1))
        self.assertEqual((report["decks"], report["deleted"]), (5, ["EarthDam.Meg", "EarthDam.Mes"]))
        self.assertEqual(len(report["remarks"]), 3)
        self.assertIn("warning: " + self.FIXED_SLOPES, report["remarks"][0])
        self.assertIn("warning: " + self.CUT_CORE, report["remarks"][1])
        self.assertIn("Group.Pos has the numbers of EarthDam.Mes", report["remarks"][2])
        self.starter("edit-0", "head")
        report = self.report("edit-0.dat", "--kind", "displacement", status=2)
        self.assertIn("Start.Mes is a mesh of the head kind", report["remarks"][0])


class StandardInput(RunCase):
    def test_a_deck_comes_through_a_pipe(self):
        said = self.said("-", stdin=BLOCK.format(width=3))
        self.assertEqual((said["result"], self.nodes("Bmesh.dat")), ("Bmesh.dat", 4 * 5))
        other = self.root / "other"
        other.mkdir()
        self.assertEqual(self.report("-", "--project", other, stdin=BLOCK.format(width=5))["deck"], "standard input")
        self.assertEqual(self.nodes(other / "Bmesh.dat"), 6 * 5)
        # The kind is that of the comment in front.
        head = self.starter("base-mesh", "head").read_text()
        self.assertEqual(self.report("-", stdin=head)["kind"], "head")
        self.assert_nothing_left()

    def test_messages_name_it(self):
        wrong = BLOCK.format(width=3).replace("4 1 0.5", "4 1")
        ran = self.brelan("run", "-", stdin=wrong)
        self.assertEqual(ran.returncode, 1)
        self.assertTrue(ran.stderr.startswith("brelan: standard input, line 5: expected 3 values on Card 4.4"), ran.stderr)
        self.assertIn("       5 | 4 1\n", ran.stderr)
        for command in ("run", "check"):
            self.assert_one_message(self.brelan(command, "-"), 2, "standard input: expected a card deck")

    def test_check_says_of_it_what_it_says_of_the_file(self):
        self.starter("edit-0")
        text = self.starter("groups").read_text().replace("0.5 ", "0.5" + " " * 130 + "x", 1)
        for deck in (text, (self.project / "edit-0.dat").read_text(), BLOCK.format(width=3) + "7 8\n"):
            self.write("a.dat", deck)
            for arguments in ([], ["-q"], ["--json"]):
                of_file = self.brelan("check", "a.dat", *arguments)
                of_stream = self.brelan("check", "-", *arguments, stdin=deck)
                self.assertEqual(of_stream.returncode, of_file.returncode)
                self.assertEqual(of_stream.stdout, of_file.stdout.replace("a.dat", "standard input"))

    def test_a_byte_order_mark_is_passed_over(self):
        marked = "\ufeff" + BLOCK.format(width=3)
        said = "standard input, line 1: a byte order mark stands in front of the text; it is passed over"
        ran = self.brelan("-q", "run", "-", stdin=marked)
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        self.assertEqual(self.brelan("run", "-", stdin=marked).stderr, f"brelan: {said}\n")
        self.assertEqual(self.report("-", stdin=marked)["remarks"], [said])
        self.assertEqual(self.nodes("Bmesh.dat"), 4 * 5)
        # The comment behind the mark still tells the kind.
        head = self.starter("base-mesh", "head").read_text()
        self.assertEqual(self.report("-", stdin="\ufeff" + head)["kind"], "head")
        checked, report = self.check("-", stdin=marked)
        self.assertEqual((checked.returncode, report["accepted"]), (0, True))
        self.assertEqual([w["id"] for w in report["warnings"]], ["byte-order-mark"])

    def test_a_starter_deck_goes_there(self):
        self.assertEqual(self.brelan("-q", "new", "base-mesh", "-o", "-").stdout,
                         self.brelan("-q", "new", "base-mesh").stdout)
        self.assertEqual(list(self.project.iterdir()), [])


if __name__ == "__main__":
    main()
