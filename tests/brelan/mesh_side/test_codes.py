"""Physical curves and points of Gmsh as node codes: by their names, and by brelan convert --code."""
import subprocess
import unittest

from support import Case

# A square of 4 by 4 quadrilaterals; curves at the bottom (1), right (2), top (3) and left (4).
SQUARE = """
Point(1) = {0, 0, 0}; Point(2) = {4, 0, 0}; Point(3) = {4, 4, 0}; Point(4) = {0, 4, 0};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4}; Line(4) = {4, 1};
Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1};
Transfinite Curve {1, 2, 3, 4} = 5; Transfinite Surface {1}; Recombine Surface {1};
Physical Surface("material 1", 1) = {1};
"""
FORMATS = [("msh22", 0), ("msh22", 1), ("msh41", 0), ("msh41", 1)]


class Codes(Case):
    # Gmsh passes over a last line that has no end.
    def drawn(self, groups, version="msh41", binary=0, order=1):
        self.write("a.geo", SQUARE + groups + "\n")
        done = subprocess.run(["gmsh", "-nopopup", "a.geo", "-2", "-order", str(order), "-format", version, "-setnumber",
                               "Mesh.Binary", str(binary), "-o", "a.msh"], cwd=self.root, capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def convert(self, *options, kind="displacement", said=()):
        result = self.brelan("convert", "--kind", kind, *options, "a.msh", "a.Mes")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stderr, "".join(f"brelan: a.msh: {line}\n" for line in said))
        return self.nodes()

    def nodes(self):
        """Values behind the number of each node, by its place."""
        lines = self.path("a.Mes").read_text().split("\n")
        records = [line.split() for line in lines[5:5 + int(lines[2].split()[0])]]
        codes = 2 if len(records[0]) == 7 else len(records[0]) - 5
        at = codes + 1 if len(records[0]) == 7 else codes + 3
        return {(float(r[at]), float(r[at + 1])): [int(c) for c in r[1:codes + 1]] + [float(v) for v in r[at + 2:]] for r in records}

    def test_names_fix_nodes_in_both_versions_as_text_and_binary(self):
        groups = """Physical Curve("fix x") = {2, 4}; Physical Curve("Fixed_Y") = {1}; Physical Point("fixed", 9) = {3};"""
        for version, binary in FORMATS:
            self.drawn(groups, version, binary)
            for kind, rest in (("displacement", [1]), ("coupled", [0, 0, 1])):
                with self.subTest(version=version, binary=binary, kind=kind):
                    expected = {(x, y): [int(x in (0, 4)), int(y == 0 or (x, y) == (4, 4))] + rest
                                for x in range(5) for y in range(5)}
                    self.assertEqual(self.convert(kind=kind), expected)

    def test_names_give_heads_and_temperatures(self):
        for version, binary in FORMATS:
            self.drawn("""Physical Curve("head 12.5") = {4}; Physical Point("Head -3e1") = {2};""", version, binary)
            nodes = self.convert(kind="head")
            self.assertEqual({p: v for p, v in nodes.items() if v != [0, 0, 0.0, 1.0]},
                             {**{(0, y): [1, 0, 12.5, 1.0] for y in range(5)}, (4, 0): [1, 0, -30.0, 1.0]})
        self.drawn("""Physical Curve("temperature 20") = {3};""")
        nodes = self.convert(kind="temperature")
        self.assertEqual({p for p, v in nodes.items() if v == [-100, 0, 20.0, 1.0]}, {(x, 4) for x in range(5)})

    def test_code_goes_by_name_and_by_tag(self):
        groups = """Physical Curve("left", 11) = {4}; Physical Curve("right") = {2}; Physical Curve(7) = {1};
                    Physical Point("apex") = {3};"""
        for version, binary in FORMATS:
            with self.subTest(version=version, binary=binary):
                self.drawn(groups, version, binary)
                nodes = self.convert("--code", "left, right: IDX", "--code", "7: idx=0 IDY", "--code", "apex:IDT=0,IDX=3")
                expected = {(x, y): [int(x in (0, 4) and y > 0), int(y == 0), 1] for x in range(5) for y in range(5)}
                expected[4, 4] = [3, 0, 0]
                self.assertEqual(nodes, expected)
        nodes = self.convert("--code", "left: ID H=12.5", "--code", "right: ID H=8 CF=0.5", "--code", "7,apex: IDF=0",
                             kind="head")
        self.assertEqual((nodes[0, 2], nodes[4, 2], nodes[2, 0]), ([1, 0, 12.5, 1.0], [1, 0, 8.0, 0.5], [0, 0, 0.0, 1.0]))

    def test_what_came_of_nothing_is_told(self):
        self.drawn("""Physical Curve("left") = {4}; Physical Curve("river", 5) = {2}; Physical Point(3) = {3};
                      Physical Curve("head 3") = {1};""")
        points = "points and lines are no elements and were left out"
        self.convert(said=[f"13 {points}", *(f"physical {group} became nothing: no elements, and no codes (see --code)" for group
                                             in ("point 3", 'curve "head 3"', 'curve "river"', 'curve "left"'))])
        self.convert("--code", "left,5,lift: IDX", "--code", "head 3: IDY", said=[
            "1 point or line is no element and was left out", "physical point 3 became nothing: no elements, and no codes (see --code)",
            '--code: there is no physical group "lift"'])

    def test_a_curve_may_be_a_beam_and_fixed(self):
        """Gmsh 4.1 has the groups of a curve with the curve; version 2.2 has its lines once for each group."""
        self.drawn("""Physical Curve("fix y") = {1}; Physical Curve("beam 2: Slab") = {1};""", "msh41")
        nodes = self.convert()
        self.assertEqual({p for p, v in nodes.items() if v == [0, 1, 0]}, {(x, 0) for x in range(5)})
        self.assertEqual(self.info("a.Mes")["beams"], 4)
        self.drawn("""Physical Curve("fix y") = {1}; Physical Curve("beam 2: Slab") = {1};""", "msh22")
        self.assertEqual(self.convert(), nodes)
        self.assertEqual(self.info("a.Mes")["beams"], 4)

    def test_midside_nodes_get_codes_where_the_kind_has_them(self):
        self.drawn("""Physical Curve("fix x") = {4}; Physical Curve("head 2") = {4};""", order=2)
        nothing = "became nothing: no elements, and no codes (see --code)"
        nodes = self.convert(said=[f'physical curve "head 2" {nothing}', "16 centre nodes of quadrilaterals were left out"])
        self.assertEqual({p[1] for p, v in nodes.items() if v[0] == 1}, {k / 2 for k in range(9)})
        self.assertEqual(len(self.convert(kind="head", said=[
            f'physical curve "fix x" {nothing}', "16 centre nodes of quadrilaterals were left out",
            "40 midside nodes that no element can name were left out"])), 25)

    def test_codes_that_are_none(self):
        self.drawn("""Physical Curve("left") = {4};""")
        for text, said in (
                ("left", "--code: expected names of physical groups, a colon and codes, as in 'left,right: IDX', found \"left\""),
                (": IDX", 'found ": IDX"'), ("left:", 'found "left:"'),
                ("left: IDX=a", '--code: expected a number behind "IDX=", found "a"'),
                ("left: IDX=1.5", "IDX: expected a whole number, found 1.5"), ("left: IDX=1e12", "IDX: expected a whole number"),
                ("left: ISX", 'expected codes of the displacement kind (IDX, IDY, IDT), found "ISX"')):
            with self.subTest(text):
                self.failed(self.brelan("convert", "--kind", "displacement", "--code", text, "a.msh", "a.Mes"), said)
        self.failed(self.brelan("convert", "--kind", "head", "--code", "left: H", "a.msh", "a.Mes"),
                    "H: expected a value, as in H=12.5")
        self.failed(self.brelan("convert", "--kind", "head", "--code", "left: H=1e300", "a.msh", "a.Mes"),
                    "H: expected a 32-bit number")
        self.square(3)
        self.failed(self.brelan("convert", "--code", "left: IDX", "Bmesh.dat", "a.Mes"), "Bmesh.dat: expected a Gmsh file")

    def test_a_mesh_with_codes_by_name_runs(self):
        self.drawn("""Physical Curve("fix x") = {2, 4}; Physical Curve("fixed") = {1};""")
        before = self.convert()
        self.run_deck("1\na.Mes\nMoved.Mes\n1 1\n0\n0. 0. 0. 0.\n1. 1.\n")
        self.path("Moved.Mes").rename(self.path("a.Mes"))
        self.assertEqual(self.nodes(), before)


if __name__ == "__main__":
    unittest.main()
