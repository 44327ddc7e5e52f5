"""brelan run: what it leaves, what it says, and how it ends."""
import fcntl
import json
import os
import pty
import re
import select
import shutil
import signal
import subprocess
import time

from harness import BRELAN, SOURCE, Case, main, plain

EDIT = """  1     0
{source}
{result}
  1     1
  0
  0.0  0.0  {x}  0.0
  1.0  1.0
"""
BASE = """  2     0
  1     1
  0.0   0.0
  {width}  1.0   0.5
  4.0   1.0   0.5
  1
Bmesh.dat
{result}
  1     1
  0
  0.0  0.0  {width}  0.0
  1.0  1.0
"""


class Results(Case):
    def test_the_summary_tells_files_counts_materials_and_soundness(self):
        self.starter("groups")
        ran = self.brelan("run", "groups.dat")
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        self.assertRegex(ran.stdout, r"^groups\.dat: finished in \d+\.\d s, edition 1 \(displacement\)\n")
        lines = {line[2:13].strip(): line[13:] for line in ran.stdout.splitlines()[1:]}
        self.assertEqual(lines["result"], "Pit.Mes")
        self.assertEqual(lines["also"], "Bmesh.dat, DV-BRELAN.dat, Group.Pos")
        nodes, continuum, beams, trusses = self.counts("Pit.Mes")
        self.assertIn(f"{nodes} nodes", lines["mesh"])
        self.assertIn(f"10 joints, {beams} beams, {trusses} truss", lines["mesh"])
        # A wall of 10 m with nodes a metre apart: ten joints and beams; stage 1 covers 3 m by 13 m and a
        # triangle of 3 m, stage 2 covers 3 m by 13 m.
        self.assertEqual(beams, 10)
        self.assertIn("joint 7 Joint of the wall: 10, beam 1 Sheet piles: 10, truss 1 Strut: 1\n", ran.stdout)
        self.assertIn("3 Second cut: 39", lines["materials"])
        self.assertIn(f"{40 * 20 + 3 * 13 + 4.5 + 3 * 13:g}", lines["area"])
        self.assertEqual(lines["soundness"], "sound")
        self.assert_nothing_left()

    def test_a_hanging_node_is_told_with_its_place_and_the_way_to_see_it(self):
        # A square, and on its right two halves of one: node 7 in the middle of its right side is not its own.
        nodes = {1: (0, 0), 2: (1, 0), 3: (2, 0), 4: (0, 1), 5: (1, 1), 6: (2, 1), 7: (1, 0.5), 8: (2, 0.5)}
        solids = {1: (5, 4, 1, 2), 2: (6, 5, 7, 8), 3: (8, 7, 2, 3)}
        self.write("Start.Mes", "\n".join(
            ["Start.Mes", "  NUMNP   NCONT   NBEAM   NTRUS", "  8  3  0  0", "  NODAL COORDINATES",
             "  NODE  IDX  IDY  IDT  IEX  IEY  XC  YC"] +
            [f"  {n}  0 0 1 1 1  {x} {y}" for n, (x, y) in nodes.items()] +
            ["  CONTINUUM ELEMENT INDEX", "  NEL I1 I2 I3 I4 M5 M6 M7 M8 MATC THIC DEN"] +
            [f"  {e}  {i} {j} {k} {m}  0 0 0 0  1  1.0  2.3" for e, (i, j, k, m) in solids.items()]) + "\n")
        self.write("move.dat", EDIT.format(source="Start.Mes", result="Moved.Mes", x=10.0))
        ran = self.brelan("run", "move.dat")
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        self.assertRegex(ran.stdout, r"soundness +unsound: 1 hanging node .*node 7 .*element 1 .*\(11, 0\.5\)")
        self.assertIn("brelan info Moved.Mes; brelan plot Moved.Mes", ran.stdout)

    # A wall with a joint 0.2 wide that ends in ground of 1 m elements: below its foot a wedge of 0.2 x 1 / 2 is open.
    WALL = """2 0
1 1 1 1 0 1
0.0 0.0
{width} 1.0 0.5
20.0 1.0 0.5
1
Bmesh.dat
Wall.Mes
1 1
4
0
0
0
1 0
0 0
-2 0 0
7 0.0 -0.2 2 1 0 0
2 1 0 0 0
1 10.0 12.0
2 10.0 20.0
1
1 1 0 2
"""

    def test_warnings_of_the_check_come_first_and_the_sound_cut_is_named(self):
        self.write("wall.dat", self.WALL.format(width="20.0") + "left over\n")
        ran = self.brelan("run", "wall.dat", "--cut", "rules")
        self.assertEqual(ran.returncode, 0)
        self.assertRegex(ran.stderr, r"^brelan: wall\.dat, line 23: warning: .*\n$")
        self.assertRegex(ran.stdout, r"soundness +unsound: 1 open wedge at a joint \(between nodes \d+ and \d+, area 0\.1 "
                                     r"at \((10|9\.8), 12\)\)\n")
        self.assertIn("to see where: brelan info Wall.Mes; brelan plot Wall.Mes", ran.stdout)
        self.assertIn("brelan run --cut sound wall.dat\n", ran.stdout)
        # The mesh is that of the check's dry run, which leaves nothing.
        (self.project / "Wall.Mes").unlink()
        before = sorted(p.name for p in self.project.iterdir())
        dry = self.brelan("check", "-q", "--dry-run", "wall.dat")
        self.assertEqual(dry.returncode, 1)
        told = [line for line in ran.stdout.splitlines() if line.startswith("  soundness")]
        self.assertEqual([line for line in dry.stdout.splitlines() if line.startswith("  soundness")], told)
        self.assertEqual(sorted(p.name for p in self.project.iterdir()), before)
        self.assert_nothing_left()

    def test_remarks_stand_behind_the_soundness_but_for_what_is_drawn_so(self):
        # 150 rows of a metre: the bottom is missed. A base mesh is not cut, so no other cut is named.
        self.write("base.dat", "2 0\n1 1\n0 0\n20 1 0.5\n150 1 0.5\n0\n")
        ran = self.brelan("run", "base.dat")
        self.assertRegex(ran.stdout, r"soundness +sound\n  remarks +19 free nodes on sides of which others are fixed \(first: ")
        self.assertNotIn("--cut", ran.stdout)
        # Stages and a strut are no remarks.
        self.starter("groups")
        self.assertNotIn("remarks", self.brelan("run", "groups.dat").stdout)

    # A wall of beams from y 12.4 to the surface, and ground below y 12, which takes the wall's foot along where its
    # nodes may move.
    FOOT = """2 0
1 1 1 1 0 1
0.0 0.0
40.0 1.0 0.5
24.0 1.0 0.5
1
Bmesh.dat
Wall.Mes
1 1
4
0
0
0
2 0
0 0
2 0 0
2 1
2 {moves} 0 0 0
1 20.2 12.4
2 20.2 24.0
1
1 1 0 2
3 0 0
3 2.3 0 0
4 1 0 0 0
1 0 0
2 40 0
3 40 12
4 0 12
4
1 1 0 2
2 1 0 2
3 1 0 2
4 1 0 2
"""

    def test_a_line_that_came_out_longer_than_drawn_is_remarked(self):
        self.write("foot.dat", self.FOOT.format(moves=0))
        ran = self.brelan("run", "foot.dat")
        remark = "beam 1: the deck draws 1 line of 11.6 within the ground, and the mesh has 12.0"
        self.assertRegex(ran.stdout, "\n  remark +" + remark + r"\d+; element \d+ at \(20\.[12]\d*, 12\.\d+\) leaves the line\n")
        self.assertIn(remark, json.loads(self.brelan("run", "--json", "foot.dat").stdout)["remarks"][0])
        self.assertIn(remark, self.brelan("check", "-q", "--dry-run", "foot.dat").stdout)
        self.assertIn(remark, json.loads(
            self.brelan("check", "--json", "--dry-run", "foot.dat").stdout)["dry_run"]["remarks"][0])
        # Frozen, the wall stays as drawn.
        self.write("foot.dat", self.FOOT.format(moves=1))
        self.assertNotIn("remark", self.brelan("run", "foot.dat").stdout)

    def test_a_line_of_the_mesh_before_the_run_that_has_changed_is_remarked(self):
        # The stage of a second deck takes the foot of the wall along, and the sound cut does not.
        wall, stage = self.FOOT.format(moves=0).split("3 0 0\n3 2.3 0 0\n")
        head, tail = wall.split("2 0\n0 0\n2 0 0\n")
        self.write("wall.dat", head + "1 0\n0 0\n2 0 0\n" + tail)
        edit = "1 0\nWall.Mes\nStage.Mes\n1 1\n4\n0\n0\n0\n1 0\n0 0\n"
        self.write("stage.dat", edit + "3 0 0\n3 2.3 0 0\n" + stage)
        self.assertNotIn("remark", self.brelan("run", "wall.dat").stdout)
        self.assertRegex(self.brelan("run", "stage.dat").stdout,
                         r"\n  remark +beam 1: the mesh before the run has 11.6 of it, and the mesh has 12.0\d+\n")
        self.assertNotIn("remark", self.brelan("run", "--cut", "sound", "stage.dat").stdout)
        # A second wall of the material: both lengths count.
        self.write("stage.dat", edit + "2 0 0\n2 1\n2 0 0 0 0\n1 30.0 12.0\n2 30.0 24.0\n1\n1 1 0 2\n")
        self.assertNotIn("remark", self.brelan("run", "stage.dat").stdout)

    def test_lines_are_as_long_as_drawn_whatever_cuts_them(self):
        def told(rule, cut, points, count):
            segments = "".join(f"{k} 1 0 {rule}\n" for k in range(1, count))
            self.write("line.dat", "2 0\n1 1 1 1 0 1\n0 0\n40 1 0.5\n24 1 0.5\n1\nBmesh.dat\nLine.Mes\n1 1\n4\n0\n0\n0\n"
                       f"1 0\n0 0\n2 0 0\n2 1\n{count} 1 0 0 0\n{points}{count - 1}\n{segments}")
            return [line for line in self.brelan("run", "--cut", cut, "line.dat").stdout.splitlines() if "remark " in line]

        slope = "1 10.0 10.0\n2 20.0 18.0\n"
        for rule in (2, 0, -2):
            self.assertEqual(told(rule, "sound" if rule == 2 else "rules", slope, 2), [], rule)
        # It takes the nodes that happen to lie on it: no line was drawn there.
        self.assertEqual(told(3, "rules", slope, 2), [])
        # Its beginning is not placed: the line stops short of it, at the first side that it crosses.
        self.assertRegex(told(7, "sound", slope.replace("10.0 10.0", "10.3 10.4"), 2)[0],
                         r"the deck draws 1 line of 12.323 within the ground, and the mesh has 11\.\d+$")
        # A branch is gone forth and back, and has one line.
        self.assertEqual(told(2, "sound", "1 10 12\n2 20 12\n3 20 18\n4 20 12\n5 30 12\n", 5), [])

    def test_inverted_elements_are_counted_and_the_first_is_named(self):
        # Corners 1, 4, 3, 2: the six squares of material 2, elements 1, 4, 7 and so on, run clockwise.
        self.edited_starter("edit-6", ("2       2    3    4    1    4 ", "2       1    4    3    2    4 "))
        ran = self.brelan("run", "edit-6.dat")
        self.assertEqual(ran.returncode, 0)
        self.assertRegex(ran.stdout, r"soundness +.*6 inverted elements.*element 1\b")
        self.assertIn("brelan info Rebuilt.Mes; brelan plot Rebuilt.Mes", ran.stdout)

    def test_quiet_says_nothing_of_a_run_that_finishes(self):
        self.starter("base-mesh")
        ran = self.brelan("-q", "run", "base-mesh.dat")
        self.assertEqual((ran.returncode, ran.stdout, ran.stderr), (0, "", ""))
        self.assertTrue((self.project / "Bmesh.dat").is_file())

    def test_the_project_may_be_another_directory_than_that_of_the_deck(self):
        deck = self.starter("edit-0", directory=self.root / "decks")
        shutil.move(self.root / "decks/Start.Mes", self.project / "Start.Mes")
        ran = self.brelan("run", deck, "--project", self.project, cwd=self.root)
        self.assertEqual(ran.returncode, 0, ran.stderr)
        self.assertTrue((self.project / "Mirror.Mes").is_file())
        self.assertFalse((self.root / "decks/Mirror.Mes").exists())

    def test_long_and_odd_names(self):
        directory = self.project / ("d" * 100) / "with blank and \\ and 'quotes'"
        directory.mkdir(parents=True)
        deck = self.starter("base-mesh", directory=directory)
        deck.rename(directory / " my deck.dat")
        ran = self.brelan("run", directory / " my deck.dat", cwd=self.root)
        self.assertEqual(ran.returncode, 0, ran.stderr)
        self.assertTrue((directory / "Bmesh.dat").is_file())

    def test_the_working_directory_stays_when_asked_to(self):
        self.starter("base-mesh")
        kept = self.brelan("run", "base-mesh.dat", "--keep")
        directory = next(p for p in self.project.iterdir() if p.name.startswith(".brelan-"))
        self.assertIn(str(directory), kept.stderr)
        self.assertTrue((directory / "BRELAN.TMP").is_file())
        self.assertEqual(self.brelan("run", "base-mesh.dat", "--work", "w").returncode, 0)
        self.assertTrue((self.project / "w/BRELAN.TMP").is_file())
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--work", "../w"), 2, "../w")

    def test_the_project_s_own_unit_file_and_line_up_file_are_used(self):
        self.starter("edit-4")
        units = (SOURCE / "data/Vork/Qx/Qxdata/UNIT.DAT").read_text()
        ran = self.brelan("run", "edit-4.dat")
        self.assertEqual(ran.returncode, 0)
        before = (self.project / "Group.Pos").read_text()
        lines = units.splitlines()
        title = next(i for i, line in enumerate(lines) if "BRELAN-2D" in line)
        lines[title] = lines[title].replace("BRELAN-2D", "MY-QUAY-7")
        self.write("unit.dat", "\n".join(lines) + "\n")
        self.write("LineUp.dat", "0\n")
        self.assertEqual(self.brelan("run", "edit-4.dat", "--work", "w").returncode, 0)
        self.assertIn("MY-QUAY-7", (self.project / "Group.Pos").read_text())
        self.assertNotIn("MY-QUAY-7", before)
        self.assertTrue((self.project / "w/LineUp.dat").is_file())


class Editions(Case):
    def heading(self, mesh="Bmesh.dat"):
        return (self.project / mesh).read_text().splitlines()[4]

    def test_kind_and_edition_decide_the_records(self):
        self.write("base.dat", "2 0\n1 1\n0 0\n4 1 0.5\n4 1 0.5\n0\n")
        for option, word in (("--kind=coupled", "ISX"), ("--kind=head", " H "), ("--kind=temperature", " T "),
                             ("--kind=displacement", "IDX"), ("--edition=11", "ISX"), ("--edition=6", " T "),
                             ("--edition=10", " H "), ("--edition=7", "IDX")):
            self.assertEqual(self.brelan("run", "base.dat", option).returncode, 0)
            self.assertIn(word, self.heading(), option)
        self.assertEqual(self.brelan("run", "base.dat").returncode, 0)
        self.assertIn("IDX", self.heading())

    def test_the_mesh_that_is_read_decides_where_nothing_else_does(self):
        self.starter("edit-0", "head")
        self.write("move.dat", EDIT.format(source="Start.Mes", result="Moved.Mes", x=3.0))
        ran = self.brelan("run", "move.dat")
        self.assertIn("edition 9 (head)", ran.stdout)
        self.assertIn(" H ", self.heading("Moved.Mes"))

    def test_a_mesh_of_another_kind_is_told(self):
        self.starter("edit-0", "head")
        ran = self.brelan("run", "edit-0.dat", "--kind", "displacement")
        self.assertIn("Start.Mes is a mesh of the head kind", ran.stderr)

    def test_a_deck_whose_comment_names_another_kind_is_told(self):
        """A head that becomes a water level, or a temperature, has no error of its own."""
        self.edited_starter("base-mesh", ("  0.0    0.0    10.0", "  0.0    0.0    12.5"), kind="head")
        for kind, meaning in (("coupled", "Ywater"), ("temperature", "T")):
            ran = self.brelan("run", "base-mesh.dat", "--kind", kind)
            self.assertEqual(ran.returncode, 0, ran.stderr)
            self.assertIn(f"({kind}) by --kind, but its comment names the head kind, in which 12.5 on Card 4.2 is H; "
                          f"here it is {meaning}\n", ran.stderr)
        ran = self.brelan("run", "base-mesh.dat")
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))

    def test_a_base_mesh_of_another_kind_is_told_before_it_is_replaced(self):
        self.write("base.dat", "2 0\n1 1\n0 0 12.5\n4 1 0.5\n4 1 0.5\n0\n")
        self.assertEqual(self.brelan("run", "base.dat", "--kind", "head").stderr, "")
        said = self.brelan("run", "base.dat", "--kind", "coupled").stderr
        self.assertIn("by --kind, but Bmesh.dat, which is made anew, is a mesh of the head kind, in which 12.5 on Card 4.2 "
                      "is H; here it is Ywater\n", said)
        self.assertEqual(self.brelan("run", "base.dat", "--kind", "coupled").stderr, "")
        self.write("base.dat", "2 0\n1 1\n0 0\n4 1 0.5\n4 1 0.5\n0\n")  # no value that could change its meaning
        self.assertEqual(self.brelan("run", "base.dat", "--kind", "head").stderr, "")

    def test_wrong_editions(self):
        self.starter("base-mesh")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--edition", "13"), 2, "13")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--edition", "1", "--kind", "head"), 2)


class WrongDecks(Case):
    def test_a_card_with_too_many_values(self):
        shutil.copy(SOURCE / "examples/Row.Mes", self.project)
        self.write("quay.dat", "* a deck\n  1     0\nRow.Mes\nNew.Mes\n  1  1  1  1  1\n  0\n0 0 0 0\n1 1\n")
        ran = self.brelan("run", "quay.dat")
        self.assertEqual((ran.returncode, ran.stdout), (1, ""))
        self.assertEqual(ran.stderr.splitlines(), [
            "brelan: quay.dat, line 5: expected 2 to 4 values on Card 3.2 (NSNEL, NSNODE, NSBEAM, NSTRUS), found 5",
            "       5 |   1  1  1  1  1",
            "         |               ^",
            "    Card 3.2, first numbers: 2 to 4 values",
            "      NSNEL     1",
            "      NSNODE    1",
            "      NSBEAM    1",
            "      NSTRUS    1",
            "    > (5th)     1            one too many"])
        self.assertFalse((self.project / "New.Mes").exists())
        self.assert_nothing_left()

    def test_a_card_with_too_few_values(self):
        deck = self.edited_starter("base-mesh", ("  6.0    1.0    0.5\n", "  6.0    1.0\n"))
        line = deck.read_text().splitlines().index("  6.0    1.0") + 1
        ran = self.brelan("run", "base-mesh.dat")
        self.assertEqual(ran.returncode, 1)
        lines = ran.stderr.splitlines()
        self.assertEqual(lines[0], f"brelan: base-mesh.dat, line {line}: expected 3 values on Card 4.4 (H, DY, AY), "
                                   "found 2")
        self.assertEqual(lines[-1], "    > AY                     missing")

    def test_text_in_place_of_a_number(self):
        self.edited_starter("edit-0", ("  -1.0   1.0\n", "  -1.0   one\n"))
        ran = self.brelan("run", "edit-0.dat")
        self.assertEqual((ran.returncode, ran.stdout), (2, ""))
        self.assertIn('expected a number in Card 3.3.1.2, found "one"', ran.stderr)
        self.assertIn("    > SCY       one          no number\n", ran.stderr)

    def test_a_mesh_that_is_not_there(self):
        self.starter("edit-0")
        (self.project / "Start.Mes").unlink()
        ran = self.brelan("run", "edit-0.dat")
        self.assertEqual((ran.returncode, ran.stdout), (2, ""))
        self.assertIn("brelan: Start.Mes: expected a file, but there is none of this name\n", ran.stderr)
        self.assertRegex(ran.stderr, r"edit-0\.dat, line \d+:\n +\d+ \| Start\.Mes\n    Card 3\.1-1, FILEA\n")

    def test_a_mesh_that_is_wrong_is_shown_at_its_line(self):
        self.starter("edit-0")
        lines = (self.project / "Start.Mes").read_text().splitlines()
        lines[7] = "      3  oops"
        self.write("Start.Mes", "\n".join(lines) + "\n")
        ran = self.brelan("run", "edit-0.dat")
        self.assertEqual(ran.returncode, 2)
        self.assertIn("brelan: Start.Mes, line 8: ", ran.stderr)
        self.assertIn("       8 |       3  oops\n", ran.stderr)

    def test_a_clash_of_element_numbers(self):
        self.starter("combination")
        self.write("combination.dat", "0 0\nLeft.Mes\nLeft.Mes\nBoth.Mes\n0\n")
        self.write("Two.Mes", "none\n  NUMNP   NCONT   NBEAM   NTRUS\n     0       0       0       0\n    A\n    B\n")
        self.write("empty.dat", "0 0\nTwo.Mes\nTwo.Mes\nBoth.Mes\n0\n")
        ran = self.brelan("run", "empty.dat")
        self.assertEqual((ran.returncode, ran.stdout), (1, ""))
        self.assertIn("the lowest element numbers of Two.Mes and Two.Mes are the same", ran.stderr)

    def test_a_base_mesh_beyond_all_bounds(self):
        self.edited_starter("base-mesh", ("  10.0   1.0    0.5\n", "  10.0   0.001  0.5\n"),
                            ("  6.0    1.0    0.5\n", "  6.0    0.0001 0.5\n"))
        ran = self.brelan("run", "base-mesh.dat")
        self.assertEqual((ran.returncode, ran.stdout), (1, ""))
        self.assertIn("larger than the program can hold", ran.stderr)

    def test_files_that_are_no_deck(self):
        self.write("empty.dat", "")
        self.write("binary.dat", bytes(range(256)) * 8)
        (self.project / "directory.dat").mkdir()
        for name, fragment in (("none.dat", "no file of this name"), ("empty.dat", "empty file"),
                               ("binary.dat", "zero byte"), ("directory.dat", "no ordinary file")):
            for command in ("run", "check"):
                self.assert_one_message(self.brelan(command, name), 2, name, fragment)
        self.assert_nothing_left()

    def test_a_deck_that_is_cut_off(self):
        lines = self.starter("groups").read_text().splitlines()
        for last in (12, 30, 60, 90, len(lines) - 1):
            self.write("cut.dat", "\n".join(lines[:last]) + "\n")
            ran = self.brelan("run", "cut.dat")
            self.assertEqual((ran.returncode, ran.stdout), (2, ""), last)
            self.assertRegex(ran.stderr, r"^brelan: cut\.dat, line \d+: the file ends here; expected ", last)
            self.assertEqual(sum(line.startswith("brelan:") for line in ran.stderr.splitlines()), 1)
            self.assertFalse((self.project / "Pit.Mes").exists())

    def test_a_deck_that_would_replace_itself(self):
        self.starter("edit-0")
        (self.project / "link.Mes").symlink_to("self.dat")
        for result in ("SELF.dat", ".\\..\\self.dat", "sub\\..\\..\\Self.dat", "..\\.\\self.dat", "link.Mes"):
            deck = self.write("self.dat", EDIT.format(source="Start.Mes", result=result, x=1.0))
            before = deck.read_text()
            self.assert_one_message(self.brelan("run", "self.dat"), 2, "self.dat", "in the place of the deck")
            self.assertEqual(deck.read_text(), before)
        base = self.starter("base-mesh").rename(self.project / "BMESH.dat")
        before = base.read_text()
        self.assert_one_message(self.brelan("run", "BMESH.dat"), 2, "in the place of the deck")
        self.assertEqual(base.read_text(), before)

    def test_the_old_result_stays_when_a_run_fails(self):
        self.edited_starter("edit-0", ("  -1.0   1.0\n", "  -1.0\n"))
        self.write("Mirror.Mes", "old")
        self.assertEqual(self.brelan("run", "edit-0.dat").returncode, 1)
        self.assertEqual((self.project / "Mirror.Mes").read_text(), "old")


class DataDirectories(Case):
    def drive(self, edition=9, manual=0, hubplot=0):
        drive = self.root / "C"
        shutil.copytree(SOURCE / "data", drive)
        files = drive / "Vork/Qx/Qxdata"
        for name, number in (("PROGRAM", edition), ("MANUAL", manual), ("HUBPLOT", hubplot)):
            (files / f"{name}.DAT").write_text(f"{number}\n")
        return drive, files

    def test_an_existing_one_decides_the_edition_and_stays_as_it_is(self):
        drive, files = self.drive()
        self.write("base.dat", "2 0\n1 1\n0 0\n4 1 0.5\n4 1 0.5\n0\n")
        before = {p: p.read_bytes() for p in drive.rglob("*") if p.is_file()}
        for named in (drive, files):
            ran = self.brelan("run", "base.dat", "--data", named)
            self.assertEqual(ran.returncode, 0, ran.stderr)
            self.assertIn("edition 9 (head)", ran.stdout)
        self.assertEqual((files / "BRELAN2D.DAT").read_text().split(), ["0"])
        self.assertEqual({p: p.read_bytes() for p in before}, before)

    def test_one_that_makes_the_program_ask_gets_its_answer(self):
        drive, _ = self.drive(manual=1, hubplot=0)
        self.write("base.dat", "2 0\n1 1\n0 0\n4 1 0.5\n4 1 0.5\n0\n")
        self.assertEqual(self.brelan("run", "base.dat", "--data", drive).returncode, 0)
        self.write("wrong.dat", "2 0\n1 1 1 1 1 1 1\n")
        ran = self.brelan("run", "wrong.dat", "--data", drive)
        self.assertEqual(ran.returncode, 1)
        self.assertTrue(ran.stderr.startswith("brelan: wrong.dat, line 2: expected 2 to 6 values on Card 4.1"))

    def test_wrong_ones(self):
        self.starter("base-mesh")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--data", "none"), 2, "none")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--data", "."), 2, "PROGRAM.DAT")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--data", ".", "--kind", "head"), 2, "--kind")

    def test_the_rest_of_the_user_s_drive_is_seen(self):
        drive, _ = self.drive()
        (drive / "Meshes").mkdir()
        self.starter("edit-0")
        shutil.move(self.project / "Start.Mes", drive / "Meshes/Start.Mes")
        self.write("far.dat", EDIT.format(source="C:\\Meshes\\Start.Mes", result="C:\\meshes\\Moved.Mes", x=2.0))
        ran = self.brelan("run", "far.dat", "--kind", "displacement", BRELAN_DRIVE_C=str(drive))
        self.assertEqual(ran.returncode, 0, ran.stderr)
        self.assertTrue((drive / "Meshes/Moved.Mes").is_file())
        self.write("root.dat", EDIT.format(source="C:\\Meshes\\Start.Mes", result="C:\\Moved.Mes", x=2.0))
        self.assert_one_message(self.brelan("run", "root.dat", BRELAN_DRIVE_C=str(drive)), 2, "root of drive C:")


class Processes(Case):
    def start(self, *arguments, **options):
        return subprocess.Popen([BRELAN, *map(str, arguments)], cwd=self.project, env=self.environment, text=True,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)

    def test_runs_at_once_in_one_project_do_not_disturb_each_other(self):
        # All go by way of the project's Bmesh.dat, each with one of its own.
        widths = [8, 13, 21, 34, 55, 40]
        for width in widths:
            self.write(f"{width}.dat", BASE.format(width=float(width), result=f"{width}.Mes"))
        running = [self.start("run", f"{width}.dat") for width in widths * 2]
        for process in running:
            out, err = process.communicate(timeout=120)
            self.assertEqual(process.returncode, 0, out + err)
        for width in widths:
            self.assertEqual(self.counts(f"{width}.Mes"), ((width + 1) * 5, width * 4, 0, 0))
            last = (self.project / f"{width}.Mes").read_text()
            self.assertEqual(self.brelan("run", f"{width}.dat").returncode, 0)
            self.assertEqual((self.project / f"{width}.Mes").read_text(), last)
        self.assert_nothing_left()

    def test_a_second_run_waits_and_says_so(self):
        self.starter("base-mesh")
        holder = os.open(self.project, os.O_RDONLY)
        fcntl.flock(holder, fcntl.LOCK_EX)
        process = self.start("run", "base-mesh.dat")
        self.assertIn("another run is at work in this project", process.stderr.readline())
        time.sleep(0.2)
        self.assertIsNone(process.poll())
        self.assertFalse((self.project / "Bmesh.dat").exists())
        os.close(holder)
        process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0)
        self.assertTrue((self.project / "Bmesh.dat").is_file())

    def test_an_interrupted_run_leaves_nothing(self):
        self.starter("base-mesh")
        mark = self.root / "mark"
        program = self.fake_program(f"echo $$ > {mark}.new; mv {mark}.new {mark}; exec sleep 60\n")
        for number in (signal.SIGINT, signal.SIGTERM):
            mark.unlink(missing_ok=True)
            process = self.start("run", "base-mesh.dat", "--program", program)
            while not mark.exists():
                time.sleep(0.01)
            process.send_signal(number)
            process.communicate(timeout=20)
            self.assertEqual(process.returncode, -number)
            self.assertFalse(os.path.exists(f"/proc/{mark.read_text().strip()}"))
            self.assert_nothing_left()

    def test_a_run_that_waits_can_be_interrupted(self):
        self.starter("base-mesh")
        holder = os.open(self.project, os.O_RDONLY)
        self.addCleanup(os.close, holder)
        fcntl.flock(holder, fcntl.LOCK_EX)
        process = self.start("run", "base-mesh.dat")
        process.stderr.readline()
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=20)
        self.assertEqual(process.returncode, -signal.SIGTERM)
        self.assert_nothing_left()

    def test_programs_that_are_not_there_or_die(self):
        self.starter("base-mesh")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--program", "none"), 2, "none")
        text = self.write("text", "no program")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--program", text), 2, "text")
        self.assert_one_message(self.brelan("run", "base-mesh.dat", "--program", self.fake_program("kill -SEGV $$\n")),
                                2, "signal 11")
        silent = self.brelan("run", "base-mesh.dat", "--program", self.fake_program("exit 7\n"))
        self.assertEqual((silent.returncode, silent.stdout), (7, ""))
        self.assertIn("exit status 7", silent.stderr)
        self.assert_nothing_left()

    # --- terminals -------------------------------------------------------------------------------

    def on_terminal(self, *arguments, **environment):
        """Exit status and what a terminal gets of both streams."""
        parent, child = pty.openpty()
        process = subprocess.Popen([BRELAN, *map(str, arguments)], cwd=self.project, stdin=subprocess.DEVNULL,
                                   stdout=child, stderr=child, env=dict(self.environment, **environment))
        os.close(child)
        text = b""
        while True:
            ready, _, _ = select.select([parent], [], [], 60)
            try:
                piece = os.read(parent, 65536) if ready else b""
            except OSError:
                piece = b""
            if not piece:
                break
            text += piece
        os.close(parent)
        return process.wait(timeout=60), text.decode()

    SLOW = """printf '  Start debugging ... \\n  Pass 1 \\n  Pass 3 ...\\n' > Brelan_P1.deb
sleep 0.8
printf '  Pass 14.2 \\n' >> Brelan_P1.deb
sleep 0.2
printf '  Pass 3 ...\\n  Pass 43 \\n' >> Brelan_P1.deb
"""

    def test_a_terminal_sees_the_passes_and_then_the_summary_alone(self):
        self.starter("base-mesh")
        status, text = self.on_terminal("run", "base-mesh.dat", "--program", self.fake_program(self.SLOW))
        self.assertEqual(status, 0)
        self.assertIn("\r\x1b[K", text)
        self.assertIn("pass 3, cards are checked", text)
        self.assertIn("pass 14.2, groups are drawn over the mesh", text)
        # What is left on the line when each \r\x1b[K has done its work.
        shown = [line.rsplit("\x1b[K", 1)[-1] for line in text.split("\n")]
        self.assertTrue(shown[0].startswith("base-mesh.dat: finished in"), shown)

    def test_a_terminal_sees_the_group_in_work(self):
        self.starter("base-mesh")
        # The descriptor is inherited; what is no line of the program's shows no group.
        status, text = self.on_terminal("run", "base-mesh.dat", "--program", self.fake_program(
            """[ "$BRELAN_PROGRESS" -gt 2 ] || exit 7
say() { eval "printf '%s\\\\n' \\"$1\\" >&$BRELAN_PROGRESS"; sleep 0.4; }
say '1 3 3 0 0 '
say '2 3 14.2 2 20 Sand \x1b[2J bed'
say '2 3 14.2 x 20 Clay'
say '2 3 14.3 0 0 '
"""))
        self.assertEqual(status, 0, text)
        self.assertIn("base-mesh.dat, deck 2 of 3: pass 14.2, group 2 of 20: Sand ?[2J bed  ", text)
        self.assertNotIn("Clay", text)
        self.assertIn("base-mesh.dat, deck 2 of 3: pass 14.3, groups are listed  ", text)

    def test_a_short_run_shows_no_passes(self):
        self.starter("base-mesh")
        status, text = self.on_terminal("run", "base-mesh.dat")
        self.assertEqual(status, 0)
        self.assertNotIn("pass", text)
        self.assertNotIn("\r\x1b", text)

    def test_a_long_run_shows_its_groups_and_leaves_the_same_files(self):
        """Circles over circles: slow enough to be seen in their order."""
        groups = 40
        deck = ["2 0", "1 1 1 1 0 1", "0. 0.", "250. 1. 0.5", "250. 1. 0.5", "1", "Bmesh.dat", "b.Mes", "1 1",
                "4", "0", "0", "0", f"{groups} 1", "0. 0. 0."]
        for g in range(groups):
            deck += [f"Ring {g + 1}", "3 0 0", f"{g + 2} 2. 0 0", "0 0 0 0. 0.", "1", "1 2 -360 2",
                     f"125. 125. {120 - g} {120 - g} 0. 360."]
        self.write("rings.dat", "\n".join(deck) + "\n")
        status, text = self.on_terminal("run", "rings.dat", "--cut", "rules")
        self.assertEqual(status, 0, text)
        seen = [int(number) for number in re.findall(r"group (\d+) of 40: Ring", text)]
        self.assertTrue(seen, text)
        self.assertEqual(seen, sorted(seen))
        mesh = (self.project / "b.Mes").read_bytes()
        ran = self.brelan("run", "rings.dat", "--cut", "rules", BRELAN_PROGRESS="1")
        self.assertEqual(ran.returncode, 0, ran.stderr)
        self.assertNotIn("14.2", ran.stdout + ran.stderr)
        self.assertEqual((self.project / "b.Mes").read_bytes(), mesh)

    def test_no_terminal_and_quiet_see_no_passes(self):
        self.starter("base-mesh")
        program = self.fake_program(self.SLOW)
        ran = self.brelan("run", "base-mesh.dat", "--program", program)
        self.assertEqual(ran.stderr, "")
        self.assertNotIn("\x1b", ran.stdout)
        status, text = self.on_terminal("-q", "run", "base-mesh.dat", "--program", program)
        self.assertEqual((status, text), (0, ""))
        status, text = self.on_terminal("run", "base-mesh.dat", "--program", program, "--json")
        self.assertEqual(status, 0)
        self.assertNotIn("\x1b", text)

    def test_colour_only_on_a_terminal_that_wants_it(self):
        self.edited_starter("edit-0", ("  -1.0   1.0\n", "  -1.0\n"))
        colour = "\x1b[31m"
        for environment, wanted in (({}, True), ({"NO_COLOR": "1"}, False), ({"NO_COLOR": ""}, True),
                                    ({"TERM": "dumb"}, False)):
            for command in ("run", "check"):
                status, text = self.on_terminal(command, "edit-0.dat", **environment)
                self.assertEqual(status, 1)
                self.assertEqual(colour in text, wanted, (command, environment))
                self.assertIn("expected 2 values on Card 3.3.1.2", plain(text))
        self.assertNotIn("\x1b", self.brelan("run", "edit-0.dat").stderr)


if __name__ == "__main__":
    main()
