"""brelan check and brelan run agree on a deck."""
import shutil

from harness import Case, main

BOM = b"\xef\xbb\xbf"
# A joint along x = 1.5 from the top to y = 1, and a second group to come; the mesh is six squares by three.
TWO_GROUPS = "1 0\nStart.Mes\nOut.Mes\n1 1\n4\n0\n0\n0\n2\n0 0\n"
LINE = "{mtype}\n{material}\n2 0 0 0 0\n1 {ends[0]} {ends[1]}\n2 {ends[2]} {ends[3]}\n1\n1 1 {NDIV} {IEND}\n"


class Agreement(Case):
    """What check says of a deck, and what becomes of its run."""

    def both(self, deck, *options):
        """True when the run finishes, as check has said it will; and the warnings."""
        checked, report = self.check(deck, *options)
        ran = self.brelan("-q", "run", deck, *options)
        self.assertEqual(report["accepted"], ran.returncode == 0, (report["warnings"], ran.stderr))
        self.assertEqual(checked.returncode, 0 if report["accepted"] else 1)
        text = self.brelan("check", deck, *options)
        self.assertEqual(text.returncode, checked.returncode)
        self.assertEqual("accepted by the checker" in text.stdout, report["accepted"])
        return report["accepted"], report["warnings"]

    def ends(self, deck, identifier, *options):
        accepted, warnings = self.both(deck, *options)
        self.assertFalse(accepted, warnings)
        self.assertIn(identifier, [w["id"] for w in warnings if w["ends_run"]])
        return next(w["message"] for w in warnings if w["id"] == identifier)

    def finishes(self, deck, *options):
        accepted, warnings = self.both(deck, *options)
        self.assertTrue(accepted, warnings)
        return [w["id"] for w in warnings]

    def test_a_source_in_the_working_directory(self):
        self.edited_starter("edit-0", ("\nStart.Mes\n", "\nold\\Start.Mes\n"))
        self.assertIn("a file of the project is ..\\old\\Start.Mes", self.ends("edit-0.dat", "no-file"))
        ran = self.brelan("run", "edit-0.dat")
        self.assertIn("old\\Start.Mes is taken from the working directory", ran.stderr)
        self.ends("edit-0.dat", "no-file", "--work", "w")
        (self.project / "w/old").mkdir()
        shutil.copy(self.project / "Start.Mes", self.project / "w/old")
        self.assertEqual(self.finishes("edit-0.dat", "--work", "w"), [])
        (self.project / "old").mkdir()
        shutil.copy(self.project / "Start.Mes", self.project / "old")
        self.edited_starter("edit-0", ("\nStart.Mes\n", "\n..\\old\\Start.Mes\n"))
        self.assertEqual(self.finishes("edit-0.dat"), [])

    def test_a_result_in_the_working_directory(self):
        self.edited_starter("edit-0", ("\nMirror.Mes\n", "\n.\\Mirror.Mes\n"))
        self.assertEqual(self.finishes("edit-0.dat"), ["lost-result"])
        self.assertIn("goes when the run ends", self.brelan("run", "edit-0.dat").stderr)
        self.assertEqual(self.finishes("edit-0.dat", "--work", "w"), [])
        self.assertTrue((self.project / "w/Mirror.Mes").is_file())

    def test_a_result_that_cannot_be_written(self):
        for name in ("..\\none\\Mirror.Mes", "..\\tmp"):
            (self.project / "tmp").mkdir(exist_ok=True)
            self.edited_starter("edit-0", ("\nMirror.Mes\n", f"\n{name}\n"))
            self.ends("edit-0.dat", "bad-result")

    def test_a_deck_of_a_name_that_the_run_writes(self):
        self.starter("base-mesh").rename(self.project / "BMESH.dat")
        self.assertIn("in the place of this deck", self.ends("BMESH.dat", "own-name"))
        self.assertEqual(self.finishes("BMESH.dat", "--project", self.temporary), [])

    def test_pairs_are_single_numbers(self):
        self.starter("combination")
        deck = "0 0\nLeft.Mes\nRight.Mes\nBoth.Mes\n1\n2\n{}\n{}\n"
        for first, second, identifier in (("1 -3", "1 2", "bad-number"), ("1 2", "1 -3", "bad-number"),
                                          ("1 999", "1 2", "no-such-number")):
            self.write("pairs.dat", deck.format(first, second))
            self.ends("pairs.dat", identifier)
        self.write("pairs.dat", deck.format("1 2", "1 999"))
        self.assertIn("no-such-number", self.finishes("pairs.dat"))

    def second_group(self, first, second):
        self.starter("edit-4")
        self.write("two.dat", TWO_GROUPS + first + second)
        return "two.dat"

    def line(self, *ends, mtype=-2, width=0.0, NDIV=0, IEND=2):
        material = "0 0" if mtype == 2 else f"5 2.0 {width} 0 0 0 0"
        return LINE.format(mtype=mtype, material=material, ends=ends, NDIV=NDIV, IEND=IEND)

    def test_joints_that_meet_a_joint_of_no_width(self):
        wall = self.line(1.5, 3, 1.5, 1)
        for second in (wall,                                    # on it
                       self.line(1.5, 1, 1.5, 0),               # behind its end
                       self.line(0, 1.5, 6, 1.5),               # across
                       self.line(1.5, 1.5, 6, 1.5),             # from it
                       self.line(1.5, 1, 4, 1),                 # from its end
                       self.line(0, 1.5, 6, 1.5, width=0.1),    # whatever its own width
                       self.line(0, 2, 6, 2, IEND=3)):          # uncut, at a node of it
            message = self.ends(self.second_group(wall, second), "joint-on-joint")
            self.assertRegex(message, r"^group 2: no joint can be made at \(1\.5, [\d.]+\), where two nodes .*group 1")
        for first, second in ((wall, self.line(3, 3, 3, 0)),    # apart
                              (wall, self.line(0, 1.5, 6, 1.5, IEND=3)),
                              (wall, self.line(0, 1.5, 6, 1.5, mtype=2)),
                              (self.line(1.5, 3, 1.5, 1, width=0.1), self.line(1.5, 1, 1.5, 0))):
            self.assertNotIn("joint-on-joint", self.finishes(self.second_group(first, second)))

    def test_a_joint_that_meets_the_mesh_s_own(self):
        self.finishes(self.second_group(self.line(1.5, 3, 1.5, 1), "0\n"))
        shutil.move(self.project / "Out.Mes", self.project / "Start.Mes")
        for ends in ((0, 2, 3, 2), (0, 1.5, 3, 1.5)):
            self.write("two.dat", TWO_GROUPS + self.line(*ends) + "0\n")
            self.assertIn("the mesh has a joint of no width there", self.ends("two.dat", "joint-on-joint"))
        self.write("two.dat", TWO_GROUPS + self.line(3, 3, 3, 0) + "0\n")
        self.assertEqual(self.finishes("two.dat"), [])

    def test_no_groups_are_no_matter(self):
        self.starter("edit-4")
        self.write("none.dat", "1 0\nStart.Mes\nOut.Mes\n1 1\n4\n0\n0\n0\n0\n0 0\n")
        self.assertEqual(self.finishes("none.dat"), [])

    def test_text_in_place_of_a_number(self):
        self.edited_starter("edit-4", ("  3      4.0    2.0", "  3      8.O    2.0"))
        self.assertEqual(self.both("edit-4.dat"), (False, []))
        _, report = self.check("edit-4.dat")
        self.assertEqual(report["cards"][-1]["fields"],
                         [{"name": "NP", "value": 3, "given": True},
                          {"name": "X", "value": None, "text": "8.O", "given": True},
                          {"name": "Y", "value": None, "text": "2.0", "given": True}])

    def test_a_tab_that_does_not_separate_is_named(self):
        self.edited_starter("base-mesh", ("  10.0   1.0    0.5", "  10.0   1.0\t0.5"))
        self.assertEqual(self.both("base-mesh.dat"), (False, []))
        for command in ("check", "run"):
            told = self.brelan("-q", command, "base-mesh.dat").stderr
            self.assertIn("found 2; there is a tab in column 13, which does not separate\n", told)
            self.assertIn("      DX        1.0<tab>0.5\n", told)
            self.assertNotIn("?", told)

    def test_a_byte_order_mark_in_front_of_a_deck(self):
        deck = self.starter("edit-0")
        deck.write_bytes(BOM + deck.read_bytes())
        self.assertEqual(self.finishes("edit-0.dat"), ["byte-order-mark"])
        ran = self.brelan("run", "edit-0.dat")
        self.assertEqual(ran.stderr, "brelan: edit-0.dat, line 1: a byte order mark stands in front of the text; it is "
                                     "passed over\n")
        self.assertEqual(deck.read_bytes()[:3], BOM)

    def test_a_byte_order_mark_in_front_of_a_mesh(self):
        self.starter("edit-0")
        mesh = self.project / "Start.Mes"
        mesh.write_bytes(BOM + mesh.read_bytes())
        self.assertIn("byte order mark", self.ends("edit-0.dat", "bad-mesh"))
        self.assertIn("Start.Mes, line 1: expected text, found a byte order mark", self.brelan("run", "edit-0.dat").stderr)

    def test_an_arc_without_length(self):
        self.edited_starter("edit-4", ("  3      1      0      2\n", "  3      2      0      2\n  4.5 2.5 0 0 0 90\n"))
        self.assertEqual(self.both("edit-4.dat"), (False, []))
        for command in ("check", "run"):
            told = self.brelan("-q", command, "edit-4.dat").stderr
            self.assertIn("Card 3.3.5.4.3.1-1 (Rx): expected a half axis other than 0, found 0: the arc has no length",
                          told)
            self.assertIn("    > Rx        0            not possible\n", told)

    def test_a_fixed_side_whose_nodes_stay_free(self):
        # 150 rows of a metre in sums of 32 bits miss the bottom by more than 0.0001; 20 rows of 20 m do not.
        deck = "2 0\n1 1\n0 0\n20 1 0.5\n{} 1 0.5\n0\n"
        self.write("base.dat", deck.format(150))
        self.assertEqual(self.finishes("base.dat"), ["free-side"])
        bottom = [line.split() for line in (self.project / "Bmesh.dat").read_text().splitlines()[5:5 + 21 * 151]]
        lowest = [row for row in bottom if abs(float(row[-1])) < 0.01]
        free = sum(row[2] == "0" for row in lowest)
        self.assertEqual((len(lowest), free), (21, 19))
        said = "line 2: warning: IB_BOTTOM 1: 19 of 21 nodes of the bottom side stay free"
        self.assertIn(said, self.brelan("check", "-q", "base.dat").stdout)
        self.assertIn(said, self.brelan("run", "base.dat").stderr)
        # The sound cut's base mesh knows the side by its row.
        for command in ("check", "run"):
            sound = self.brelan(command, "--cut", "sound", "base.dat")
            self.assertEqual(sound.returncode, 0)
            self.assertNotIn("stay free", sound.stdout + sound.stderr)
        self.write("base.dat", deck.format(20))
        self.assertEqual(self.finishes("base.dat"), [])
        self.write("base.dat", deck.format(150).replace("1 1\n0 0", "1 1 1 1 0 0\n0 0"))
        self.assertEqual(self.finishes("base.dat"), [])


if __name__ == "__main__":
    main()
