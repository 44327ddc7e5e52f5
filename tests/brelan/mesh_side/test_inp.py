#!/usr/bin/env python3
"""What brelan convert writes for CalculiX, card by card, and what it refuses."""
import re
import unittest

from support import Case, Mesh, SOURCE, sample


def cards_of(text):
    """Each card of a file as (line, data lines); comments are passed over."""
    cards = []
    for line in text.splitlines():
        if line.startswith("**"):
            continue
        if line.startswith("*"):
            cards.append((line, []))
        else:
            cards[-1][1].append(line)
    return cards


def sets_of(text, word):
    """Sets by name, as lists of what stands in them."""
    found = {}
    for line, data in cards_of(text):
        name = re.search(rf"{word}=([^,]+)", line)
        if name and (line.startswith(f"*{word}") or line.startswith("*ELEMENT")):
            rows = [row.split(", ")[:1] if line.startswith("*ELEMENT") else row.split(", ") for row in data]
            found.setdefault(name[1], []).extend(int(w) if w.isdigit() else w for row in rows for w in row)
    return found


def small(kind="displacement"):
    """Three solids of two materials, a beam, a truss; held as a base mesh is."""
    mesh = Mesh(kind)
    free = [0] * (2 if kind == "coupled" else 0)
    for number, x, y, ix, iy, rotation in ((1, 0.0, 0.0, 1, 1, 1), (2, 1.0, 0.0, 0, 1, 1), (3, 2.0, 0.0, 1, 1, 1),
                                           (4, 0.0, 1.0, 1, 0, 1), (5, 1.0, 1.0, 0, 0, 0), (6, 2.0, 1.0, 1, 0, 1),
                                           (7, 1.0, 2.0, 0, 0, 1)):
        mesh.node(number, x, y, [ix, iy, *free, rotation])
    mesh.solid(10, (5, 4, 1, 2), 1)
    mesh.solid(11, (6, 5, 2, 3), 2)
    mesh.solid(12, (7, 5, 6), 2)  # clockwise is 5 7 6
    mesh.beams.append((20, 2, 5, 1))
    mesh.trusses.append((21, 4, 7, 3))
    return mesh


class Inp(Case):
    def convert(self, mesh, *options):
        self.write("m.Mes", mesh if isinstance(mesh, str) else mesh.text())
        result = self.brelan("convert", "m.Mes", "m.inp", *options)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.remarks = result.stderr
        return self.path("m.inp").read_text()

    def refused(self, mesh, *fragments, options=()):
        self.write("m.Mes", mesh if isinstance(mesh, str) else mesh.text())
        self.failed(self.brelan("convert", "m.Mes", "m.inp", *options), *fragments)
        self.assertFalse(self.path("m.inp").exists())

    def test_elements_of_all_classes(self):
        text = self.convert(small())
        elements = [(line, data) for line, data in cards_of(text) if line.startswith("*ELEMENT")]
        self.assertEqual(elements, [
            ("*ELEMENT, TYPE=CPE4, ELSET=MATERIAL_1", ["10, 5, 4, 1, 2"]),
            ("*ELEMENT, TYPE=CPE4, ELSET=MATERIAL_2", ["11, 6, 5, 2, 3"]),
            ("*ELEMENT, TYPE=CPE3, ELSET=MATERIAL_2", ["12, 7, 5, 6"]),
            ("*ELEMENT, TYPE=B21, ELSET=BEAM_1", ["20, 2, 5"]),
            ("*ELEMENT, TYPE=T2D2, ELSET=TRUSS_3", ["21, 4, 7"])])
        self.assertIn("\n7, 1.0, 2.0\n", text)

    def test_clockwise_solids_are_turned(self):
        mesh = small()
        mesh.solids[2] = (12, [5, 7, 6, 0], [0] * 4, 2, [1.0, 2.3])
        self.assertIn("\n12, 5, 6, 7\n", self.convert(mesh))
        self.assertIn("1 clockwise element was turned", self.remarks)

    def test_sets_by_material_name_class_and_code(self):
        text = self.convert(small().text().replace("  NUMNP", "* material 2: Sand, dense (ä)\n* material 1: Sets\n"
                                                   "* beam 1: SOLIDS\n  NUMNP"))
        elements = sets_of(text, "ELSET")
        self.assertEqual(elements["MATERIAL_2"], [11, 12])
        self.assertEqual(elements["SAND_DENSE"], ["MATERIAL_2"])
        self.assertEqual(elements["SETS"], ["MATERIAL_1"])
        # A name that another set has already gets a number.
        self.assertEqual(elements["SOLIDS"], ["BEAM_1"])
        self.assertEqual(elements["SOLIDS_2"], ["MATERIAL_1", "MATERIAL_2"])
        nodes = sets_of(text, "NSET")
        self.assertEqual(nodes["IDX_1"], [1, 3, 4, 6])
        self.assertEqual(nodes["IDY_1"], [1, 2, 3])
        self.assertEqual(nodes["ROTATION_HELD"], [2])  # of the beam's nodes only 2 has IDT 1
        self.assertEqual(nodes["TRUSS_NODES"], [4, 7])

    def test_supports_are_the_codes(self):
        held = dict(cards_of(self.convert(small())))["*BOUNDARY"]
        self.assertEqual(held, ["IDX_1, 1, 1", "IDY_1, 2, 2", "ROTATION_HELD, 6, 6", "TRUSS_NODES, 3, 3"])

    def test_any_code_but_0_holds(self):
        mesh = small()
        mesh.nodes[6] = (7, [5, -2, 1], 1.0, 2.0, [])
        text = self.convert(mesh)
        self.assertIn("IDX_5, 1, 1\n", text)
        self.assertIn("IDY_MINUS_2, 2, 2\n", text)
        self.assertIn("codes other than 0 and 1 hold their nodes too: IDX 5, IDY -2", self.remarks)

    def test_coupled_kind(self):
        text = self.convert(small("coupled"))
        self.assertEqual(sets_of(text, "NSET")["ISX_1"], [1, 3, 4, 6])
        self.assertIn("ROTATION_HELD, 6, 6", text)
        self.assertIn("have no place in .inp", self.remarks)

    def test_properties_of_the_table(self):
        table = ("# site A\nmaterial, class ,E,nu,density,area,inertia\n1,solid,4e4,0.25,,,\n2,Solid,6e4,,1.8,,\n"
                 "1,beam,3e7,0.2,2.5,0.6,0.018\n3,truss,2e8,0.3,7.8,0.004,\n4,truss,1,,,,\n")
        self.write("t.csv", table)
        text = self.convert(small(), "--materials", "t.csv")
        self.assertIn("NAME=MATERIAL_1\n*ELASTIC\n40000., 0.25\n*DENSITY\n2.3\n", text)
        # The placeholder 0.3 for nu, and the mesh's density under that of the table.
        self.assertIn("NAME=MATERIAL_2\n*ELASTIC\n60000., 0.3\n*DENSITY\n1.8\n", text)
        self.assertIn("placeholders stand for properties of material 2; --materials gives them", self.remarks)
        # b h = 0.6 and b h^3 / 12 = 0.018 give h = 0.6, b = 1.
        self.assertIn("SECTION=RECT\n1., 0.6\n0., 0., -1.\n", text)
        self.assertIn("ELSET=TRUSS_3, MATERIAL=TRUSS_3\n0.004\n", text)
        self.assertIn("t.csv, line 7: the mesh has no elements of truss 4", self.remarks)

    def test_thickness_and_density_of_the_mesh(self):
        mesh = small()
        mesh.solids[2] = (12, [7, 5, 6, 0], [0] * 4, 2, [0.5, 1.9])
        text = self.convert(mesh)
        self.assertEqual(sets_of(text, "ELSET")["MATERIAL_2"], ["MATERIAL_2_PART_1", "MATERIAL_2_PART_2"])
        self.assertIn("ELSET=MATERIAL_2_PART_1, MATERIAL=MATERIAL_2_PART_1\n0.5\n", text)
        self.assertIn("NAME=MATERIAL_2_PART_1\n*ELASTIC\n50000., 0.3\n*DENSITY\n1.9\n", text)

    def test_gravity(self):
        self.assertIn("SOLIDS, GRAV, 9.81, 0., -1., 0.\nBEAMS, GRAV", self.convert(small()))
        self.assertIn("GRAV, 1., 0.", self.convert(small(), "--gravity", "1"))
        self.assertNotIn("*DLOAD", self.convert(small(), "--gravity", "0"))

    def test_a_table_to_be_filled_in(self):
        self.write("m.Mes", small().text().replace("  NUMNP", '* material 2: Sand, "dense"\n  NUMNP'))
        self.good("convert", "m.Mes", "t.csv")
        self.assertEqual(self.path("t.csv").read_text(),
                         "class,material,name,E,nu,density,area,inertia,kn,ks\nsolid,1,,50000,0.3,2.3,,,,\n"
                         'solid,2,"Sand, ""dense""",50000,0.3,2.3,,,,\nbeam,1,,30000000,0.2,2.5,0.5,0.0104,,\n'
                         "truss,3,,210000000,0.3,7.85,0.01,,,\n")
        result = self.brelan("convert", "m.Mes", "m.inp", "--materials", "t.csv")
        self.assertEqual((result.returncode, result.stderr), (0, ""))  # nothing is left to say

    def test_faults_of_a_table(self):
        self.write("m.Mes", small().text())
        for table, *fragments in (
                ("", "expected a header row"),
                ("class,material,young\n", "line 1, column 3", '"young"'),
                ("class,E\n", 'line 1: expected a column "material"'),
                ("class,material,E,E\n", "line 1, column 4", "each column once"),
                ("class,material,E\nsolid,1,0\n", "line 2, column 3 (E): expected a number above 0, found \"0\""),
                ("class,material,E\nsolid,1,1e4x\n", "line 2, column 3 (E)", "1e4x"),
                ("class,material,nu\n\nsolid,1,0.5\n", "line 3, column 3 (nu): expected a number between -1 and 0.5"),
                ("class,material,density\nsolid,1,-1\n", "a number of 0 or more"),
                ("class,material,E\nsolid,one,1\n", "column 2 (material): expected a whole number"),
                ("class,material,E\nplate,1,1\n", "column 1 (class): expected solid, joint, beam or truss"),
                ("class,material,E\nsolid,1,1,2\n", "line 2, column 4: expected 3 cells"),
                ("class,material,E\nsolid,1,1\nsolid,1,2\n", "line 3: expected one row for material 1, but line 2")):
            self.write("t.csv", table)
            self.failed(self.brelan("convert", "m.Mes", "m.inp", "--materials", "t.csv"), "t.csv", *fragments)
        self.assertFalse(self.path("m.inp").exists())

    # --- joints ----------------------------------------------------------------------------------

    def jointed(self, closing=False):
        """Two squares with a joint between them; the lower ends one node where it closes."""
        mesh = Mesh()
        for number, x, y, ix in ((1, 0, 0, 1), (2, 1, 0, 0), (3, 1, 1, 0), (4, 0, 1, 1), (5, 1, 0, 0), (6, 1, 1, 1),
                                 (7, 2, 0, 0), (8, 2, 1, 0)):
            mesh.node(number, x, y, (ix, int(y == 0), 1))
        low = 2 if closing else 5
        mesh.solid(1, (3, 4, 1, 2)).solid(2, (8, 6, low, 7))
        return mesh.joint(3, (2, 3, 6, low), 7)

    def test_joints_are_refused_without_a_choice(self):
        self.refused(self.jointed(), "expected --joints tie or --joints spring:KN,KS", "(1)")
        self.refused(self.jointed(), "--joints", '"glue"', options=("--joints", "glue"))
        for wrong in ("spring", "spring:1e6", "spring:1e6,0", "spring:1,2,3", "spring:a,b"):
            self.refused(self.jointed(), f'found "{wrong}"', options=("--joints", wrong))

    def test_ties_follow_the_node_that_is_held(self):
        text = self.convert(self.jointed(), "--joints", "tie")
        ties = [data for line, data in cards_of(text) if line == "*EQUATION"]
        # Nodes 2 and 5 are both held in y; 6 is held in x and 3 is not.
        self.assertEqual(ties, [["2", "5, 1, 1., 2, 1, -1."], ["2", "3, 1, 1., 6, 1, -1."],
                                ["2", "6, 2, 1., 3, 2, -1."]])

    def test_springs_in_the_direction_of_the_joint(self):
        text = self.convert(self.jointed(), "--joints", "spring:1e6,2e5")
        self.assertIn("*ORIENTATION, NAME=JOINT_DIRECTION_1\n-1., 0., 0., 0., 1., 0.\n", text)
        # Half of the length of 1 for each pair.
        self.assertIn("*ELEMENT, TYPE=SPRING2, ELSET=ACROSS_JOINT\n4, 2, 5\n6, 3, 6\n*SPRING, ELSET=ACROSS_JOINT, "
                      "ORIENTATION=JOINT_DIRECTION_1\n1, 1\n500000.\n", text)
        self.assertIn("ELSET=ALONG_JOINT\n5, 2, 5\n7, 3, 6\n", text)
        self.assertIn("2, 2\n100000.\n", text)
        self.assertEqual(sets_of(text, "ELSET")["JOINT_7"], [4, 5, 6, 7])

    def test_stiffness_of_a_joint_from_the_table(self):
        self.write("t.csv", "class,material,kn,ks\njoint,7,4e6,\n")
        text = self.convert(self.jointed(), "--joints", "spring:1e6,2e5", "--materials", "t.csv")
        self.assertIn("1, 1\n2000000.\n", text)
        self.assertIn("2, 2\n100000.\n", text)

    def test_joint_that_closes_at_its_end(self):
        text = self.convert(self.jointed(closing=True), "--joints", "spring:1e6,2e5")
        self.assertIn("ELSET=ACROSS_JOINT\n4, 3, 6\n*SPRING", text)
        self.assertNotIn("2, 2, 2", self.convert(self.jointed(closing=True), "--joints", "tie"))

    # --- what cannot be written ------------------------------------------------------------------

    def test_kinds_of_heads_and_temperatures(self):
        for kind in ("head", "temperature"):
            self.refused(sample(kind), "displacement or coupled kind", f"the {kind} kind", "--kind displacement",
                         options=("--joints", "tie"))

    def test_axisymmetric(self):
        self.refused(small(), "without beams for --axisymmetric", options=("--axisymmetric",))
        mesh = small()
        mesh.beams.clear()
        self.refused(mesh, "without trusses for --axisymmetric", options=("--axisymmetric",))
        mesh.trusses.clear()
        text = self.convert(mesh, "--axisymmetric")
        self.assertIn("TYPE=CAX4", text)
        self.assertIn("TYPE=CAX3", text)
        mesh.node(8, -1.0, 0.0)
        self.path("m.inp").unlink()
        self.refused(mesh, "an x of 0 or more", options=("--axisymmetric",))
        self.refused(self.jointed(), "--joints tie with --axisymmetric",
                     options=("--axisymmetric", "--joints", "spring:1,1"))

    def test_some_midside_nodes(self):
        mesh = small()
        mesh.node(8, 0.5, 1.0)
        mesh.solids[0] = (10, [5, 4, 1, 2], [8, 0, 0, 0], 1, [1.0, 2.3])
        self.refused(mesh, "element 10 has 1 of 4")

    def test_midside_nodes_of_one_neighbour(self):
        mesh = small()
        for number, x, y in ((8, 0.5, 1.0), (9, 0.0, 0.5), (13, 0.5, 0.0), (14, 1.0, 0.5)):
            mesh.node(number, x, y)
        mesh.solids[0] = (10, [5, 4, 1, 2], [8, 9, 13, 14], 1, [1.0, 2.3])
        self.refused(mesh, "elements 10 and 11 have nodes 14 and 0")
        # Alone it is of second order, and so is the beam on its side.
        del mesh.solids[1:]
        text = self.convert(mesh)
        self.assertIn("TYPE=CPE8, ELSET=MATERIAL_1\n10, 5, 4, 1, 2, 8, 9, 13, 14\n", text)
        self.assertIn("TYPE=B32, ELSET=BEAM_1\n20, 2, 14, 5\n", text)
        self.assertIn("BEAM_NODES, 3, 5\n", text)

    def test_nodes_that_are_not_there(self):
        mesh = small()
        mesh.solids[0] = (10, [5, 4, 1, 99], [0] * 4, 1, [1.0, 2.3])
        self.refused(mesh, "element 10 names node 99")

    def test_options_of_other_formats(self):
        self.write("m.Mes", small().text())
        for option in (["--joints", "tie"], ["--materials", "t.csv"], ["--gravity", "1"], ["--axisymmetric"]):
            self.failed(self.brelan("convert", "m.Mes", "m.vtu", *option), "ends in .inp", option[0])
        self.failed(self.brelan("convert", "m.Mes", "m.msh", "--deck", "m.dat"), "--deck")

    # --- stages ----------------------------------------------------------------------------------

    def staged(self):
        self.write("stage.dat", (SOURCE / "examples" / "stage.dat").read_text())
        self.good("-q", "run", "stage.dat")
        self.good("-q", "convert", "Stage.Mes", "m.inp", "--deck", "stage.dat")
        return self.path("m.inp").read_text()

    def test_steps_of_the_stages(self):
        """The pit of chapter 8 of the manual: ground goes at step 2, fill comes at 6, the wall at 1."""
        text = self.staged()
        elements = sets_of(text, "ELSET")
        self.assertEqual(elements["SOLIDS_GO_2"], [1, 3])
        self.assertEqual(elements["SOLIDS_COME_6"], [9, 10])
        self.assertEqual(elements["BEAMS_COME_1"], [11, 12])
        steps = [dict(cards_of("*STEP" + step)) for step in text.split("*STEP")[1:]]
        remove, add = "*MODEL CHANGE, TYPE=ELEMENT, REMOVE", "*MODEL CHANGE, TYPE=ELEMENT, ADD=STRAINFREE"
        self.assertEqual([(step.get(remove), step.get(add)) for step in steps],
                         [(None, None), (["SOLIDS_COME_6", "BEAMS_COME_1"], None), (None, ["BEAMS_COME_1"]),
                          (["SOLIDS_GO_2"], None), (None, ["SOLIDS_COME_6"])])
        self.assertEqual(["*DLOAD" in step for step in steps], [False, True, False, False, False])
        # A beam that is away leaves a soft one in its place.
        self.assertEqual(elements["STAND_INS_OF_BEAM_1"], [13, 14])
        self.assertIn("NAME=STAND_INS_OF_BEAM_1\n*ELASTIC\n30., 0.2\n*DENSITY\n0.\n", text)

    def test_new_materials_have_the_properties_of_the_old(self):
        self.staged()
        self.write("t.csv", "class,material,E,nu,density\nsolid,1,1e4,0.3,2\nsolid,2,2e4,0.3,2\nsolid,5,5e4,0.3,2\n"
                   "solid,7,7e4,0.3,2\n")
        self.good("convert", "Stage.Mes", "m.inp", "--deck", "stage.dat", "--materials", "t.csv")
        text = self.path("m.inp").read_text()
        self.assertIn("** material 6 (was material 2)\n*MATERIAL, NAME=MATERIAL_6\n*ELASTIC\n20000., 0.3\n", text)
        self.assertIn("NAME=MATERIAL_7\n*ELASTIC\n70000., 0.3\n", text)

    def test_names_come_from_the_deck(self):
        self.staged()
        deck = self.path("stage.dat").read_text()
        self.write("stage.dat", deck + "* material 2: Clay\n* beam 1: Wall\n")
        self.good("-q", "convert", "Stage.Mes", "m.inp", "--deck", "stage.dat")
        elements = sets_of(self.path("m.inp").read_text(), "ELSET")
        self.assertEqual((elements["CLAY"], elements["WALL"]), (["MATERIAL_6"], ["BEAM_1"]))

    def test_joints_that_come_later(self):
        """Joints from step 1 to 3: springs would pull the ground back to where it was, were they to come at step 1."""
        deck = self.good("new", "groups")
        wall = "  7     0.0   0.0    2    1    0    0\n"
        deck = deck.replace("  -2     0       0\n", "  -2     1       0\n")
        deck = deck.replace(wall, wall + "  0  0\n" * 2 + "  1  3\n" + "  0  0\n" * 3 + "  0\n" * 7)
        self.write("pit.dat", deck)
        self.good("-q", "run", "pit.dat")
        result = self.brelan("convert", "Pit.Mes", "m.inp", "--deck", "pit.dat", "--joints", "spring:1e6,1e5")
        self.assertIn("10 joints that come later have their springs from the start", result.stderr)
        text = self.path("m.inp").read_text()
        self.assertEqual(len(sets_of(text, "ELSET")["JOINTS_GO_3"]), 40)
        self.assertNotIn("ADD=", text)
        self.assertEqual(text.count("REMOVE\nJOINTS_GO_3\n"), 1)
        result = self.brelan("convert", "Pit.Mes", "m.inp", "--deck", "pit.dat", "--joints", "tie")
        self.assertIn("10 joints that come or go are tied in all steps", result.stderr)
        self.assertNotIn("MODEL CHANGE", self.path("m.inp").read_text())

    def test_deck_of_another_mesh(self):
        self.staged()
        self.path("m.inp").unlink()
        mesh = self.path("Stage.Mes").read_text()
        self.write("Moved.Mes", mesh.replace("  0.100000E+01  0.200000E+01", "  0.110000E+01  0.200000E+01"))
        for name, fragment in (("Moved.Mes", "node 4 at another place"), ("Bmesh.dat", "12 elements instead of")):
            self.failed(self.brelan("convert", name, "m.inp", "--deck", "stage.dat"), "stage.dat",
                        "expected the deck that made " + name, fragment)
        self.failed(self.brelan("convert", "Stage.Mes", "m.inp", "--deck", "none.dat"), "none.dat")
        self.assertFalse(self.path("m.inp").exists())


if __name__ == "__main__":
    unittest.main()
