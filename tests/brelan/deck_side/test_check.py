"""brelan check: the verdict, the cards, and each of the warnings."""
import json

from harness import KINDS, SOURCE, Case, main

# Identifier of the warning, starter deck, text that is replaced, what comes in its place, fragment of the message.
# The warning is to stand at the first line that the replacement changes, or at the last line of the text given.
OUTLINE = "  4       1     0     0.0   0.0"
DOUBTS = [
    # codes
    ("unknown-code", "edit-0", "  0\n* Card 3.3.1.1", "  9\n* Card 3.3.1.1", "IEDIT 9"),
    ("unknown-code", "edit-1", "  2\n* Card 3.3.2.2.2", "  5\n* Card 3.3.2.2.2", "ILOC 5: nothing is selected"),
    ("unknown-code", "edit-2", "  0\n* Card 3.3.3.2.1", "  3\n* Card 3.3.3.2.1", "ILOC 3: nothing is selected"),
    ("unknown-code", "edit-3", "  0\n* Card 3.3.4.4", "  2\n* Card 3.3.4.4", "ISIDE 2: the edit acts on nothing"),
    ("unknown-code", "combination", "INTERFACE\n  0\n", "INTERFACE\n  2\n", "INTERFACE 2"),
    ("unknown-code", "base-mesh", "  1         0       1\n", "  1         7       1\n", "IB_TOP 7"),
    ("unknown-code", "groups", "  -2     0       0", "  -6     0       0", "MTYPE -6"),
    ("unknown-code", "groups", "  3     1\n* NPOINT", "  7     1\n* NPOINT", "LTP 7"),
    ("unknown-code", "edit-4", "  4      1      0      2\n", "  4      4      0      2\n", "LTYPE 4"),
    ("unknown-code", "edit-4", "  4      1      0      2\n", "  4      1      0      5\n", "IEND 5"),
    # numbers
    ("cut-number", "edit-0", "  1      1       0       0", "  1.5    1       0       0", "NSNEL 1.5"),
    ("too-large", "edit-0", "  1      1       0       0", "  1      100000  0       0", "NSNODE 100000"),
    ("bad-number", "edit-0", "  1      1       0       0", "  0      1       0       0", "NSNEL 0"),
    ("lost-digits", "edit-0", "  6.0    0.0    6.0    0.0", "  1234.567 0.0    6.0    0.0", "1234.6"),
    ("odd-separator", "edit-0", "  6.0    0.0    6.0    0.0", "  6.0,,0.0,6.0,0.0", ",,"),
    ("odd-separator", "edit-0", "  6.0    0.0    6.0    0.0", "  2*6.0  0.0 0.0 0.0", "*"),
    ("long-line", "edit-0", "  6.0    0.0    6.0    0.0", "  6.0    0.0    6.0    0.0" + " " * 110 + "9.0", "126"),
    # counts and lengths
    ("counts-disagree", "edit-3", "  1   -9    21", "  1   -9    21   22", "4 stand there"),
    ("bad-range", "edit-3", "  1   -9    21", "  -9   1    21", "cannot begin with a range"),
    ("bad-range", "edit-3", "  1   -9    21", "  9   -4    21", "nothing in it"),
    ("no-range", "edit-1", "  1    25", "  1   -25", "knows no ranges"),
    ("bad-count", "edit-3", "  3\n  1   -9    21\n", "  0\n", "NSEL 0"),
    ("empty-window", "edit-2", "  2.0    2.0    4.0    3.5", "  4.0    2.0    2.0    3.5", "no area"),
    ("empty-window", "edit-2", "  2.0    2.0    4.0    3.5", "  7.0    2.0    9.0    3.5", "no element"),
    ("bad-length", "edit-0", "  -1.0   1.0", "  0.0    1.0", "scale of 0"),
    ("bad-length", "base-mesh", "  10.0   1.0    0.5", "  10.0   0.0    0.5", "DX 0"),
    ("bad-length", "base-mesh", "  10.0   1.0    0.5", "  -10.0  1.0    0.5", "W -10"),
    ("bad-grading", "base-mesh", "  10.0   1.0    0.5", "  10.0   1.0    0.1", "AX 0.1: taken for 0.3"),
    ("bad-grading", "base-mesh", "  10.0   1.0    0.5", "  10.0   1.0    0.9", "even"),
    # The middle of the first column lies 0.35 times 13 m from its right end, 8.45 m from its left one.
    ("middle-on-zero", "base-mesh", "  0.0    0.0\n", "  -8.45  0.0\n", "coordinate 0", "  13.0   1.0    -0.35"),
    ("surplus-lines", "edit-0", "  -1.0   1.0\n", "  -1.0   1.0\n  3\n", "from here on nothing is read"),
    # files
    ("no-file", "edit-0", "Start.Mes\n* Card 3.1-2", "Other.Mes\n* Card 3.1-2", "Other.Mes"),
    ("own-name", "edit-0", "Mirror.Mes\n* Card 3.2", "Edit-0.DAT\n* Card 3.2", "take the place of this deck"),
    ("other-mesh", "groups", "Bmesh.dat\n", "Start.Mes\n", "Start.Mes is edited"),
    # the mesh
    ("no-material", "edit-3", "  3      2      0", "  3      8      0", "MATX1 8"),
    ("no-material", "edit-6", "  1       2    1    -10", "  4       2    1    -10", "MATold 4: no beam"),
    ("no-such-number", "edit-1", "  1    25", "  1    29", "no node 29"),
    ("no-such-number", "edit-3", "  1   -9    21", "  1   -9    40", "no element 40"),
    ("bad-number", "edit-0", "  1      1       0       0", "  1      99980   0       0", "would get the number 100007"),
    ("bad-number", "edit-3", "  1      1       0       0", "  99975  1       0       0", "would get the number 99995"),
    # outlines and lines
    ("too-large", "edit-4", "  3      1      0      2\n", "  3      1      -2002  2\n", "NDIV -2002"),
    ("crosses-itself", "edit-4", "  3      4.0    2.0\n  4      5.0    3.0", "  3      5.0    3.0\n  4      4.0    2.0",
     "crosses itself", OUTLINE),
    ("counts-disagree", "edit-4", "  4\n* SEGNO", "  3\n* SEGNO", "closed outline"),
    ("counts-disagree", "edit-4", "  3      4.0    2.0", "  2      4.0    2.0", "NP 2: the point is given twice"),
    ("counts-disagree", "edit-4", "  4      1      0      2\n", "  7      1      0      2\n", "SEGNO 7"),
    ("bad-number", "edit-4", "  3      4.0    2.0", "  1101   4.0    2.0", "NP 1101"),
    ("outside-mesh", "edit-4", "  4      5.0    3.0", "  4      5.0    3.5", "1 of 4 points lies outside the mesh",
     OUTLINE),
    ("no-length", "edit-4", "  4      5.0    3.0", "  4      4.0    2.0", "begins and ends at (4, 2)",
     "  3      1      0      2"),
    ("uncut", "edit-4", "  3      1      0      2\n", "  3      1      0      0\n", "IEND 0: the mesh is not cut"),
    ("uncut", "edit-4", "  3      1      0      2\n", "  3      1      0      3\n", "IEND 3: the mesh is not cut"),
    ("divided-otherwise", "edit-4", "  3      1      0      2\n", "  3      1      8      2\n", "NDIV 8"),
    ("divided-otherwise", "groups", "  1      1      1      0\n", "  1      1      4      0\n", "2 of 5 points"),
    ("no-material", "groups", "  3     1\n* NPOINT", "  3     0\n* NPOINT", "material 0"),
]


class Warnings(Case):
    def warn(self, identifier, name, old, new, fragment, at=None):
        before = self.starter(name).read_text().splitlines()
        deck = self.edited_starter(name, (old, new))
        lines = deck.read_text().splitlines()
        line = next(i for i, text in enumerate(lines) if i == len(before) or text != before[i])
        if at:
            line = max(i for i, text in enumerate(lines) if text == at)
        _, report = self.check(deck.name)
        found = [w for w in report["warnings"] if w["id"] == identifier and fragment in w["message"]]
        self.assertEqual([w["line"] for w in found], [line + 1], report["warnings"])


def add_cases():
    for row, case in enumerate(DOUBTS):
        def test(self, case=case):
            self.warn(*case)
        setattr(Warnings, f"test_{row:02d}_{case[0].replace('-', '_')}_in_{case[1].replace('-', '_')}", test)


add_cases()

class Verdict(Case):
    def test_an_accepted_deck_shows_its_cards_and_ends_with_0(self):
        self.starter("edit-0")
        checked = self.brelan("check", "edit-0.dat")
        self.assertEqual((checked.returncode, checked.stderr), (0, ""))
        lines = checked.stdout.splitlines()
        self.assertIn("   11 1.1           mode: IMOD 1 (edit)  JK 0", lines)
        self.assertIn("   13 3.1-1         FILEA: Start.Mes", lines)
        self.assertTrue(any(line.endswith("first numbers: NSNEL 1  NSNODE 1  NSBEAM 0  NSTRUS 0") for line in lines))
        self.assertTrue(any("IEDIT 0 (move, scale, mirror)  MATX1 0 default" in line for line in lines))
        self.assertEqual(lines[-1], "edit-0.dat: accepted by the checker; 7 cards, no warnings, edition 1 "
                                    "(displacement)")

    def test_a_wrong_card_ends_with_1_and_is_marked(self):
        self.edited_starter("edit-0", ("  -1.0   1.0\n", "  -1.0   1.0  1.0\n"))
        checked = self.brelan("check", "edit-0.dat")
        self.assertEqual(checked.returncode, 1)
        self.assertNotIn("accepted", checked.stdout)
        self.assertIn("expected 2 values on Card 3.3.1.2 (SCX, SCY), found 3", checked.stderr)
        self.assertIn("    > (3rd)     1.0          one too many", checked.stderr)
        result, report = self.check("edit-0.dat")
        self.assertEqual((result.returncode, report["accepted"]), (1, False))
        refusal = report["refusal"]
        self.assertEqual([refusal[key] for key in ("card", "minimum", "maximum", "found")], ["3.3.1.2", 2, 2, 3])

    def test_a_deck_that_is_cut_off_ends_with_1(self):
        text = self.starter("edit-0").read_text().splitlines()
        self.write("cut.dat", "\n".join(text[:-1]) + "\n")
        checked = self.brelan("check", "cut.dat")
        self.assertEqual(checked.returncode, 1)
        self.assertRegex(checked.stderr, r"^brelan: cut\.dat, line \d+: the file ends here; expected Card 3\.3\.1\.2\n$")
        self.assertEqual(self.check("cut.dat")[1]["accepted"], False)

    def test_quiet_and_strict(self):
        self.edited_starter("edit-0", ("  -1.0   1.0\n", "  0.0    1.0\n"))
        quiet = self.brelan("check", "-q", "edit-0.dat")
        self.assertEqual((quiet.returncode, quiet.stderr, len(quiet.stdout.splitlines())), (0, "", 1))
        self.assertIn("warning: a scale of 0", quiet.stdout)
        self.assertEqual(self.brelan("check", "-q", "--strict", "edit-0.dat").returncode, 1)

    def test_nothing_is_written(self):
        self.starter("groups")
        before = sorted(self.project.iterdir())
        self.assertEqual(self.brelan("check", "groups.dat").returncode, 0)
        self.assertEqual(sorted(self.project.iterdir()), before)
        self.assert_nothing_left()

    def test_json_holds_every_card_with_fields_by_name(self):
        self.starter("edit-3")
        _, report = self.check("edit-3.dat")
        self.assertEqual([report[key] for key in ("deck", "edition", "kind", "accepted", "warnings")],
                         ["edit-3.dat", 1, "displacement", True, []])
        cards = {(card["card"], "list" in card): card for card in report["cards"]}
        edit = {field["name"]: field["value"] for field in cards["3.3", False]["fields"]}
        self.assertEqual(edit, {"IEDIT": 3, "MATX1": 2, "MATX2": 0, "MATX3": 0, "MATXB": 0, "MATXT": 0})
        self.assertEqual(cards["3.3.4.2.2", True]["list"], [1, -9, 21])
        self.assertEqual(cards["3.1-2", False]["file"], "Layers.Mes")
        deck = (self.project / "edit-3.dat").read_text().splitlines()
        for card in report["cards"]:
            self.assertFalse(deck[card["line"] - 1].startswith("*"))

    def test_names_of_fields_go_by_kind(self):
        names = {"coupled": ["ISX", "ISY", "IFX", "IFY", "IRZ"], "temperature": ["ID", "IDF"],
                 "head": ["ID", "IDF"], "displacement": ["IDX", "IDY", "IDT"]}
        for kind in KINDS:
            self.starter("edit-1", kind)
            _, report = self.check("edit-1.dat")
            self.assertEqual([field["name"] for field in report["cards"][-1]["fields"]], names[kind])

    def test_a_base_mesh_that_cannot_be_is_told(self):
        self.edited_starter("base-mesh", ("  10.0   1.0    0.5", "  10.0   -1.0   0.5"))
        _, report = self.check("base-mesh.dat")
        self.assertIn("no-base-mesh", [w["id"] for w in report["warnings"] if w["ends_run"]])
        self.assertEqual(self.brelan("run", "base-mesh.dat").returncode, 2)

    def test_wrong_meshes_are_told(self):
        self.starter("edit-0")
        whole = (self.project / "Start.Mes").read_text()
        for text in ("", "nothing", whole[:len(whole) // 2], "\0\1\2" * 100):
            self.write("Start.Mes", text)
            result, report = self.check("edit-0.dat", "--kind", "displacement")
            self.assertEqual((result.returncode, report["accepted"]), (1, False))
            self.assertIn("bad-mesh", [w["id"] for w in report["warnings"] if w["ends_run"]], repr(text[:20]))

    def test_a_mesh_of_another_kind_is_told(self):
        self.starter("edit-0", "head")
        _, report = self.check("edit-0.dat", "--kind", "coupled")
        said = [w["message"] for w in report["warnings"] if w["id"] == "other-kind"]
        self.assertIn("Start.Mes is a mesh of the head kind, and this run one of the coupled kind", said)
        self.assertIn("this run is one of the coupled kind, but its comment names the head kind", said)

    def test_a_base_mesh_whose_head_becomes_a_water_level_is_told(self):
        self.write("base.dat", "2 0\n1 1\n0 0 12.5\n4 1 0.5\n4 1 0.5\n0\n")
        _, report = self.check("base.dat", "--kind", "coupled")
        self.assertEqual(report["warnings"], [])
        self.assertEqual(self.brelan("run", "base.dat", "--kind", "head").returncode, 0)
        _, report = self.check("base.dat", "--kind", "coupled")
        self.assertEqual([(w["id"], w["message"]) for w in report["warnings"]], [
            ("other-kind", "this run is one of the coupled kind, but Bmesh.dat, which is made anew, is a mesh of the head "
                           "kind, in which 12.5 on Card 4.2 is H; here it is Ywater")])

    def test_combinations_without_common_nodes_and_with_spoilt_numbers(self):
        self.starter("combination")
        self.write("move.dat", "1 0\nRight.Mes\nRight.Mes\n10 1\n0\n0 0 50 0\n1 1\n")
        self.assertEqual(self.brelan("run", "move.dat").returncode, 0)
        _, report = self.check("combination.dat")
        self.assertEqual([w["id"] for w in report["warnings"]], ["no-common-node"])
        self.starter("edit-0")
        self.write("both.dat", "0 0\nLeft.Mes\nStart.Mes\nBoth.Mes\n0\n")
        _, report = self.check("both.dat")
        self.assertIn("element-numbers", [w["id"] for w in report["warnings"]])
        self.assertNotEqual(self.brelan("run", "both.dat").returncode, 0)
        self.write("both.dat", "0 0\nStart.Mes\nLeft.Mes\nBoth.Mes\n0\n")
        _, report = self.check("both.dat")
        ran = self.brelan("run", "both.dat")
        self.assertEqual("element-numbers" in [w["id"] for w in report["warnings"]], ran.returncode != 0, ran.stderr)

    def warned_dam(self, old, new, kind="displacement"):
        """The warnings of the starter dam with one text replaced, and whether its mesh is sound."""
        deck = self.edited_starter("dam", (old, new), kind=kind)
        _, report = self.check(deck.name)
        self.assertTrue(report["accepted"], report)
        ran = self.brelan("run", deck.name)
        self.assertEqual(ran.returncode, 0, ran.stderr)
        return [(w["id"], w["message"]) for w in report["warnings"]], "soundness  sound" in ran.stdout

    PROFILE = "20.0   15.0    40.0   40.0   8.0     8.0"

    def test_profiles_of_dams_that_may_come_out_unsound(self):
        wall = "42.0   0.0    42.0   -11.0  46.0   -11.0  46.0   0.0"
        # The elements are 1 by 1.
        for width, warned in ((0.4, False), (0.5, True), (0.7, True), (0.8, False)):
            right = 43.0 + width
            warnings, _ = self.warned_dam(wall, f"43.0 0.0 43.0 -11.0 {right} -11.0 {right} 0.0")
            self.assertEqual([w[0] for w in warnings], ["may-be-unsound"] if warned else [], width)
            if warned:
                self.assertIn("elements are 1 wide here, 0.75 and above is safe", warnings[0][1])
        for level, kind, warned in (("0.4", "head", True), ("0.6", "head", False), ("0.4", "displacement", False)):
            warnings, _ = self.warned_dam(self.PROFILE, self.PROFILE.replace("15.0", level, 1), kind)
            self.assertEqual([w[0] for w in warnings], ["may-be-unsound"] if warned else [], (level, kind))
            if warned:
                self.assertIn("0, or 0.5 and above, are safe", warnings[0][1])

    def test_profiles_of_dams_whose_zones_are_not_cut_to_their_end_are_sound(self):
        core, wall = "42.0   18.0   46.0   18.0", "42.0   -11.0  46.0   -11.0"
        for old, new in ((core, "42.0   19.7   46.0   19.7"), (core, "40.3   20.0   47.7   20.0"),
                         (wall, "42.0   -13.6  46.0   -13.6"),
                         (self.PROFILE, "20.0   15.0   40.0   38.0   8.0     10.0"),
                         (self.PROFILE, "20.0   15.0   40.3   40.0   7.7     8.0")):
            self.assertEqual(self.warned_dam(old, new), ([], True), new)

    def test_slopes_of_shells_that_the_water_level_fixes(self):
        shells = ("2       1      1     0 ", "2       1      1     1 ")
        for kind, words in (("displacement", "IDX and IDY"), ("coupled", "ISX and ISY"), ("head", None),
                            ("temperature", None)):
            warnings, _ = self.warned_dam(*shells, kind)
            warnings = [w for w in warnings if w[0] != "zone-cut-off"]
            self.assertEqual([w[0] for w in warnings], ["slopes-held"] if words else [], kind)
            if words:
                self.assertIn(f"get 1 in {words}, which fixes them", warnings[0][1])
        # The warning is right: left slope 1 : 2, the level at 15; free above it.
        self.warned_dam(*shells)
        codes = {}
        for line in (self.project / "Earth_Dam.Mes").read_text().splitlines()[5:]:
            words = line.split()
            if len(words) != 8:
                break
            x, y = float(words[6]), float(words[7])
            if abs(x - 2.0 * y) < 1e-3 and abs(y - 15.0) > 1e-3 and y < 19.9:
                codes.setdefault(y < 15.0, set()).add((words[1], words[2]))
        self.assertEqual(codes, {True: {("1", "1")}, False: {("0", "0")}})
        self.assertEqual(self.warned_dam(self.PROFILE, self.PROFILE)[0], [])

    # Drawn: a core of 180, half of 18 x (16 + 4), and a wall of 4 x 10, its left side an element's part from the side
    # of the middle block.
    def test_zones_that_shells_cut_off_are_told_with_the_areas_of_the_run(self):
        deck = self.edited_starter("dam", ("2       1      1     0 ", "2       1      1     1 "),
                                   ("42.0   0.0    42.0   -11.0  46.0   -11.0  46.0   0.0",
                                    "41.0   0.0    41.0   -10.0  45.0   -10.0  45.0   0.0"), kind="head")
        warnings = self.check(deck.name)[1]["warnings"]
        self.assertEqual([w["id"] for w in warnings], ["zone-cut-off"] * 2)
        for cut, right in (("rules", False), ("sound", True)):
            ran = self.brelan("run", "--cut", cut, deck.name)
            self.assertEqual(ran.returncode, 0, ran.stderr)
            self.assertEqual(ran.stderr.count("comes out with"), 0 if right else 2)
            areas = {m["material"]: m["area"] for m in
                     json.loads(self.brelan("info", "--json", "Earth_Dam.Mes").stdout)[0]["materials"]}
            for material, drawn, warning in zip((4, 5), (180.0, 40.0), warnings):
                told = f"drawn with an area of {drawn:g} and comes out with {areas[material]:.4g}"
                self.assertEqual(told in warning["message"], not right, warning)
                self.assertEqual(abs(areas[material] - drawn) < 1e-4 * drawn, right)
        self.assertIn(" and ends at y = -10.62 instead of -10: ", warnings[1]["message"])
        # A core and a wall within the middle block are cut as they are drawn.
        self.edited_starter("dam", ("2       1      1     0 ", "2       1      1     1 "),
                            ("36.0   0.0    42.0   18.0   46.0   18.0   52.0   0.0",
                             "42.0   0.0    43.0   16.0   45.0   16.0   46.0   0.0"), kind="head")
        self.assertEqual(self.check(deck.name)[1]["warnings"], [])

    def test_the_examples_of_the_package(self):
        for example in (SOURCE / "examples").iterdir():
            self.write(example.name, example.read_bytes())
        for deck in ("pit_left.dat", "pit_right.dat", "pit_join.dat", "pit_stages.dat", "stage.dat", "dam.dat"):
            self.assertEqual(self.brelan("run", "-q", deck).returncode, 0)
            _, report = self.check(deck)
            expected = ["slopes-held"] if deck == "dam.dat" else []
            self.assertEqual((report["accepted"], [w["id"] for w in report["warnings"]]), (True, expected), deck)


class DryRun(Case):
    def starters(self):
        return [line.split()[0] for line in self.brelan("new", "--list").stdout.splitlines() if line.strip()]

    def test_says_of_every_starter_deck_what_a_run_says_and_leaves_no_file(self):
        for kind in KINDS:
            for name in self.starters():
                directory = self.root / kind / name
                deck = self.starter(name, kind, directory)
                before = {p.name: p.read_bytes() for p in directory.iterdir()}
                checked, report = self.check("--dry-run", deck)
                self.assertEqual({p.name: p.read_bytes() for p in directory.iterdir()}, before, deck)
                ran = json.loads(self.brelan("run", "--json", deck).stdout)
                dry = report["dry_run"]
                self.assertEqual((dry["status"], dry["message"]), (ran["status"], ran["message"]), deck)
                if ran["mesh"] is None:
                    self.assertIsNone(dry["mesh"], deck)
                    continue
                self.assertEqual(checked.returncode, 0 if ran["mesh"]["sound"] else 1, deck)
                self.assertEqual(dict(dry["mesh"], file="", name=""), dict(ran["mesh"], file="", name=""), deck)
        self.assert_nothing_left()

    def test_a_run_that_ends_with_a_message_is_told_by_it(self):
        # A second joint on the line of the first, neither of a width.
        deck = self.starter("groups")
        text = deck.read_text().replace("  4       1\n* Xref", "  5       1\n* Xref", 1)
        wall = text[text.index("Wall\n"):text.index("* Group No = 2")]
        deck.write_text(text.rstrip("\n") + "\n" + wall)
        dry = self.brelan("check", "-q", "--dry-run", deck)
        self.assertEqual(dry.returncode, 1)
        ran = self.brelan("run", "-q", deck)
        self.assertEqual(ran.returncode, 2)
        self.assertEqual(dry.stderr.splitlines()[0], ran.stderr.splitlines()[0])

    def test_a_deck_that_is_refused_is_not_run(self):
        self.edited_starter("edit-0", ("  -1.0   1.0\n", "  -1.0\n"))
        result, report = self.check("--dry-run", "edit-0.dat")
        self.assertEqual((result.returncode, report["accepted"], report["dry_run"]), (1, False, None))


if __name__ == "__main__":
    main()
