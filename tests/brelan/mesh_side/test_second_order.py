"""Elements with midside nodes: from Gmsh and meshio with 6, 8 and 9 nodes, and to them with 6 and 8."""
import json
import subprocess
import unittest

from support import Case, Mesh, python_with, records

MESHIO = python_with("meshio")

# Two fields side by side, triangles on the left and quadrilaterals on the right, and an arc above them.
DRAWN = """
Point(1) = {0, 0, 0, 1}; Point(2) = {3, 0, 0, 1}; Point(3) = {6, 0, 0, 1}; Point(4) = {6, 2, 0, 1}; Point(5) = {3, 2, 0, 1};
Point(6) = {0, 2, 0, 1}; Point(7) = {4.5, 0, 0, 1};
Line(1) = {1, 2}; Line(2) = {2, 5}; Line(3) = {5, 6}; Line(4) = {6, 1}; Line(5) = {2, 3}; Line(6) = {3, 4}; Circle(7) = {4, 7, 5};
Curve Loop(1) = {1, 2, 3, 4}; Curve Loop(2) = {5, 6, 7, -2}; Plane Surface(1) = {1}; Plane Surface(2) = {2};
Transfinite Curve {2, 6} = 4; Transfinite Curve {5, 7} = 5; Transfinite Surface {2}; Recombine Surface {2};
Physical Surface("material 1", 1) = {1}; Physical Surface("material 2", 2) = {2};
"""
FINDINGS = ("stray_midside_nodes", "unshared_midside_nodes", "missing_midside_nodes", "coincident_nodes", "hanging_nodes")


class SecondOrder(Case):
    def gmsh(self, *arguments):
        done = subprocess.run(["gmsh", "-nopopup", "-v", "4", *map(str, arguments)], cwd=self.root, text=True, capture_output=True)
        said = done.stdout + done.stderr
        self.assertEqual(done.returncode, 0, said)
        self.assertNotIn("Warning", said)
        self.assertNotIn("Error", said)

    def drawn(self, incomplete=1, version="msh41", binary=0):
        self.write("a.geo", DRAWN)
        self.gmsh("a.geo", "-2", "-order", "2", "-setnumber", "Mesh.SecondOrderIncomplete", incomplete, "-setnumber",
                  "Mesh.Binary", binary, "-format", version, "-o", "a.msh")

    def python(self, script):
        self.assertIsNotNone(MESHIO, "python3-meshio is not installed")
        # meshio greets on standard output as it reads a file of Gmsh.
        quiet = "import contextlib, io, json, meshio\nwith contextlib.redirect_stdout(io.StringIO()):\n    "
        done = subprocess.run([MESHIO, "-c", quiet + script], cwd=self.root, text=True, capture_output=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def cells(self, *names):
        """Of each file as meshio reads it: by type the places of its cells' nodes, each a list of points, in thousandths;
        no node lies near the edge of one."""
        script = """ms = [meshio.read(name) for name in %r]
print(json.dumps([[[c.type, [[[round(1000 * float(x) + 0.317) for x in m.points[n][:2]] for n in cell] for cell in c.data]]
                   for c in m.cells] for m in ms]))""" % (names,)
        return json.loads(self.python(script))

    def shapes(self, *names):
        """Of each file its cells by type and points: first to last corner and then the midside nodes, turned to begin
        with the lowest; centres are left out."""
        every = []
        for blocks in self.cells(*names):
            found = set()
            for kind, cells in blocks:
                corners = {"triangle6": 3, "quad8": 4, "quad9": 4}.get(kind, 0)
                for points in cells if corners else []:
                    k = points.index(min(points[:corners]))
                    turned = [points[(k + i) % corners + part] for part in (0, corners) for i in range(corners)]
                    found.add((kind.replace("9", "8"), str(turned)))
            every.append(found)
        return every

    def check_sound(self, name):
        told = self.info(name, 0)
        for finding in FINDINGS:
            self.assertEqual(told["soundness"]["findings"].get(finding, {"count": 0})["count"], 0, finding)
        return told

    def test_six_and_eight_nodes_from_gmsh_and_back_again(self):
        for version, binary in (("msh22", 0), ("msh41", 1)):
            with self.subTest(version=version, binary=binary):
                self.drawn(1, version, binary)
                self.good("convert", "--kind", "displacement", "a.msh", "a.Mes")
                told = self.check_sound("a.Mes")
                self.assertGreater(told["triangles"], 10)
                self.assertEqual(told["quadrilaterals"], 12)
                text = self.path("a.Mes").read_text()
                for name, options in (("b.vtu", []), ("b.msh", []), ("c.msh", ["--to", "msh2", "--bare"])):
                    self.good("convert", *options, "a.Mes", name)
                    self.good("convert", "--kind", "displacement", name, "back.Mes")
                    self.assertEqual(records(self.path("back.Mes").read_text()), records(text))
                self.gmsh("b.msh", "-0", "-format", "msh41", "-o", "g.msh")
                first, *others = self.shapes("a.msh", "b.vtu", "b.msh", "c.msh", "g.msh")
                self.assertEqual({kind for kind, _ in first}, {"triangle6", "quad8"})
                for shapes in others:
                    self.assertEqual(shapes, first)

    def test_of_nine_nodes_the_centre_goes_and_what_meshio_writes_is_read(self):
        self.drawn(incomplete=0)
        result = self.brelan("convert", "--kind", "coupled", "a.msh", "a.Mes")
        self.assertIn("a.msh: 12 centre nodes of quadrilaterals were left out\n", result.stderr)
        self.check_sound("a.Mes")
        self.good("convert", "a.Mes", "a.vtu")
        self.python("""m = meshio.read('a.msh')
    assert 'quad9' in [c.type for c in m.cells]
    for name, form in (('m.vtu', 'vtu'), ('m4.msh', 'gmsh'), ('m2.msh', 'gmsh22')):
        m.write(name, file_format=form)""")
        for name in ("m.vtu", "m4.msh", "m2.msh"):
            with self.subTest(name):
                self.good("convert", "--kind", "displacement", name, "b.Mes")
                self.assertEqual(self.check_sound("b.Mes")["area"], self.info("a.Mes", 0)["area"])
                self.good("convert", "b.Mes", name + ".vtu")
        first, *others = self.shapes("a.msh", "a.vtu", "m.vtu.vtu", "m4.msh.vtu", "m2.msh.vtu")
        for shapes in others:
            self.assertEqual(shapes, first)

    def test_kinds_without_midside_nodes_become_linear(self):
        self.drawn()
        self.good("convert", "--kind", "displacement", "a.msh", "a.Mes")
        for source in ("a.msh", "a.Mes"):
            for kind in ("head", "temperature"):
                with self.subTest(source=source, kind=kind):
                    result = self.brelan("convert", "--kind", kind, source, "b.Mes")
                    self.assertEqual(result.returncode, 0, result.stderr)
                    self.assertRegex(result.stderr, rf"{source}: \d+ midside nodes that no element can name were left out\n")
                    told = self.check_sound("b.Mes")
                    self.assertEqual(told["elements"]["count"], self.info("a.Mes", 0)["elements"]["count"])
                    self.assertEqual(told["soundness"]["findings"]["unused_nodes"]["count"], 0)
                    self.good("convert", "b.Mes", f"{kind}.vtu")
        for blocks in self.cells("head.vtu", "temperature.vtu"):
            self.assertEqual({kind for kind, _ in blocks}, {"triangle", "quad"})

    def test_midside_nodes_on_some_sides_alone_are_told(self):
        mesh = Mesh()
        for number, (x, y) in enumerate([(0, 0), (1, 0), (1, 1), (0, 1), (.5, 0)], 1):
            mesh.node(number, float(x), float(y))
        mesh.solid(1, (1, 2, 3, 4), 1, None, (5, 0, 0, 0))
        self.write("a.Mes", mesh.text())
        result = self.brelan("convert", "a.Mes", "a.vtu")
        self.assertEqual(result.stderr, "brelan: a.Mes: 1 element has midside nodes on some of its sides alone and is written "
                         "with straight sides\n")
        self.assertEqual(self.brelan("convert", "a.vtu", "b.Mes").stderr, "")
        self.assertEqual(records(self.path("b.Mes").read_text()), records(mesh.text()))


if __name__ == "__main__":
    unittest.main()
