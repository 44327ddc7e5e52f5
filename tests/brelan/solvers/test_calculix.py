#!/usr/bin/env python3
"""Meshes of brelan convert solved by CalculiX: weights, closed solutions, patch tests over meshes that were cut, stages,
joints."""
import math
import os
import random
import re
import shutil
import subprocess
import unittest

from calculix import CCX, MeshFile, Mesh, SOURCE, SolverCase, area_shares, border_nodes

GRAVITY = 9.81
LONG = "BRELAN_LONG" in os.environ
YOUNG, POISSON = 5.0e4, 0.3


def table_rows(mesh, line_young=3.0e7, soft=(), density=None):
    """One stiffness for all solids but those of soft materials, 2.5 t/m3 and 7.85 t/m3 for beams and trusses."""
    rows = [f"solid,{m},{YOUNG * 1e-10 if m in soft else YOUNG},{POISSON},{(density or {}).get(m, '')},,"
            for m in sorted({s.material for s in mesh.solids.values()})]
    rows += [f"beam,{m},{line_young},0.2,2.5,0.5,0.0104" for m in sorted({b.material for b in mesh.beams.values()})]
    rows += [f"truss,{m},{line_young},0.3,7.85,0.01," for m in sorted({t.material for t in mesh.trusses.values()})]
    return rows


@unittest.skipUnless(CCX, "needs calculix-ccx")
class OwnWeight(SolverCase):
    """The vertical reactions are the weight. The solver's forces at a held node are those of the elements alone, without
    the weight that rests on the node itself: that is added here."""

    density = {}  # by material, over that of the mesh

    def heavy(self, solid):
        return solid.thickness * self.density.get(solid.material, solid.density) * GRAVITY

    def reactions(self, mesh, step, there):
        held = {n for n, codes in mesh.codes.items() if codes[1] != 0}
        force = sum(step["forces"][n][1] for n in held)
        for number, solid in mesh.solids.items():
            if there(number, solid):
                shares = area_shares(mesh.points(solid.corners))
                force += sum(share * self.heavy(solid) for corner, share in zip(solid.corners, shares) if corner in held)
        return force

    def weight(self, mesh, there):
        solids = sum(sum(area_shares(mesh.points(s.corners))) * self.heavy(s)
                     for n, s in mesh.solids.items() if there(n, s))
        beams = sum(mesh.length(b) * 0.5 * 2.5 for n, b in mesh.beams.items() if there(n, b))
        trusses = sum(mesh.length(t) * 0.01 * 7.85 for n, t in mesh.trusses.items() if there(n, t))
        return solids + GRAVITY * (beams + trusses)

    def hold(self, name, *options, steps=None):
        mesh = MeshFile(self.path(name))
        self.good("-q", "convert", name, "mesh.inp", "--materials", self.table(table_rows(mesh, density=self.density)), *options)
        solved = self.solve("mesh.inp")
        steps = steps or [lambda number, element: True]
        solved = solved[-len(steps):]
        for step, there in zip(solved, steps):
            weight = self.weight(mesh, there)
            self.assertGreater(weight, 0)
            self.assertAlmostEqual(self.reactions(mesh, step, there) / weight, 1.0, delta=1e-4)
        return mesh, solved

    def test_base_mesh(self):
        self.run_deck("2 0\n2 2 1 1 0 1\n0. 0.\n20. 1. -0.35\n10. 1. 0.5\n6. 0.7 0.5\n14. 1. 0.35\n0\n")
        mesh, solved = self.hold("Bmesh.dat")
        # Without a table the density is that of the mesh, 2.3.
        self.assertAlmostEqual(self.weight(mesh, lambda n, e: True), 30 * 20 * 2.3 * GRAVITY, delta=0.1)

    def test_pit_with_walls_struts_and_tunnel(self):
        self.pit()
        self.hold("PitStages.Mes", "--joints", "tie")

    def test_dam(self):
        self.run_deck((SOURCE / "examples" / "dam.dat").read_text())
        # Its cards give no density to most of its materials: the table does.
        self.density = {m: 1.5 + 0.1 * m for m in range(1, 10)}
        mesh, solved = self.hold("Earth_Dam.Mes")
        self.assertIn(0.0, {s.density for s in mesh.solids.values()})

    def test_pit_in_stages(self):
        deck = staged_pit(self.good("new", "groups"))
        self.write("pit.dat", deck)
        self.good("-q", "run", "pit.dat")
        # The new materials: 8 and 10 the ground of the cuts, 9 and 11 their fill (MatAD.Man).
        pairs = {8: (0, 2), 9: (5, 0), 10: (0, 4), 11: (5, 0)}

        def stage(k):
            def there(number, element):
                if hasattr(element, "corners"):
                    come, go = pairs.get(element.material, (0, 0))
                else:
                    come, go = (1, 0) if number in MeshFile(self.path("Pit.Mes")).beams else (3, 6)
                return come <= k and (go == 0 or k < go)
            return there

        for joints in ("tie", "spring:1e6,1e5"):
            mesh, solved = self.hold("Pit.Mes", "--deck", "pit.dat", "--joints", joints,
                                     steps=[stage(k) for k in range(7)])
            # The strut takes part: between stages 3 and 4 its ends come nearer, and less than without it.
            self.assertEqual(len(solved), 7)


def staged_pit(deck):
    """The starter deck of groups with steps: the wall comes at 1, the cuts go at 2 and 4, the strut stands from 3 to 6,
    the fill comes at 5."""
    def pairs(*six):
        return "".join(f"  {come}  {go}\n" for come, go in six) + "  0\n" * 7

    none = (0, 0)
    for before, asks, line, six in (
            ("  -2     0       0\n", "  -2     1       0\n", "  7     0.0   0.0    2    1    0    0\n",
             (none, none, none, none, (1, 0), none)),
            ("  4      0       0\n", "  4      1       0\n", "  5     1.9   0     0     2\n",
             ((0, 2), (5, 0), none, none, none, none)),
            ("  4      0       0\n", "  4      1       0\n", "  5     1.9   0     0     3\n",
             ((0, 4), (5, 0), none, none, none, none)),
            ("  2      0       1\n", "  2      1       1\n", "  3     1\n", (none, none, none, (3, 6), none, none))):
        assert before in deck and line in deck
        deck = deck.replace(before, asks, 1).replace(line, line + pairs(*six), 1)
    return deck


@unittest.skipUnless(CCX, "needs calculix-ccx")
class StripLoad(SolverCase):
    """A strip of width 2b and pressure q on an elastic layer of depth H over a smooth rigid base, between smooth walls at
    x = 0 and x = L: by symmetry a row of strips at distances of 2L.

    A pressure p cos(kx) on the layer has the Airy function F = cos(kx) (A cosh(ky) + B ky sinh(ky)), which leaves the
    base y = 0 without shear and without vertical displacement (S. Timoshenko and J. N. Goodier, Theory of Elasticity,
    1951, article 23: the strip under sinusoidal load). No shear at y = H asks for
    A sinh(kH) + B (sinh(kH) + kH cosh(kH)) = 0, the pressure for k^2 (A cosh(kH) + B kH sinh(kH)) = p, so that
    B = -p sinh(kH) / (k^2 (sinh(kH) cosh(kH) + kH)), and in plane strain the surface settles by

        w = 2 (1 - nu^2) / (E k) p sinh^2(kH) / (sinh(kH) cosh(kH) + kH) cos(kx).

    For a deep layer that is the half-space's 2 (1 - nu^2) p / (E k). The row of strips is the series
    q b / L + sum of 2 q sin(k b) / (k L) cos(k x), k = n pi / L, whose first term settles as in an oedometer:
    w = q b H / (L M), M = E (1 - nu) / ((1 + nu) (1 - 2 nu)).
    """
    LENGTH, DEPTH, HALF, PRESSURE = 20.0, 10.0, 2.0, 100.0

    def settlement(self, x):
        oedometer = YOUNG * (1 - POISSON) / ((1 + POISSON) * (1 - 2 * POISSON))
        w = self.PRESSURE * self.HALF * self.DEPTH / (self.LENGTH * oedometer)
        for n in range(1, 2000):
            k = n * math.pi / self.LENGTH
            kh = k * self.DEPTH
            p = 2 * self.PRESSURE * math.sin(k * self.HALF) / (k * self.LENGTH)
            layer = math.tanh(kh) if kh > 50 else math.sinh(kh)**2 / (math.sinh(kh) * math.cosh(kh) + kh)
            w += 2 * (1 - POISSON**2) / (YOUNG * k) * p * layer * math.cos(k * x)
        return w

    def test_settlement(self):
        self.run_deck("2 0\n1 1 1 1 0 1\n0. 0.\n20. 0.5 0.5\n10. 0.5 0.5\n0\n")
        mesh = MeshFile(self.path("Bmesh.dat"))
        self.good("-q", "convert", "Bmesh.dat", "mesh.inp", "--gravity", "0", "--materials",
                  self.table(table_rows(mesh)))
        top = sorted((x, n) for n, (x, y) in mesh.nodes.items() if y == self.DEPTH)
        loaded = [(x, n) for x, n in top if x <= self.HALF]
        self.assertEqual(len(loaded), 5)
        cards = "*CLOAD\n"
        for x, n in loaded:
            width = 0.25 if x in (0.0, self.HALF) else 0.5
            cards += f"{n}, 2, {-self.PRESSURE * width}\n"
        step = self.solve("mesh.inp", in_last_step=cards)[-1]
        for x, n in top:
            if x in (0.0, 1.0, 3.0, 5.0, 10.0):
                found, closed = -step["displacements"][n][1], self.settlement(x)
                if abs(closed) > 0.1 * self.settlement(0.0):
                    self.assertAlmostEqual(found / closed, 1.0, delta=0.05, msg=f"x = {x}")
                else:
                    self.assertAlmostEqual(found, closed, delta=0.005 * self.settlement(0.0), msg=f"x = {x}")


def materials_of_doubles(mesh):
    """Materials whose elements lie over others: the fill of a stage over its ground."""
    first, double, single = {}, set(), set()
    for number, solid in sorted(mesh.solids.items()):
        owner = first.setdefault(frozenset(solid.corners), number)
        (single if owner == number else double).add(solid.material)
    return double - single


def random_deck(seed):
    """Outlines with slanted sides over a base mesh, each with a material of its own."""
    rnd = random.Random(f"patch {seed}")
    groups = ""
    count = rnd.randint(1, 3)
    for g in range(count):
        x, y, corners = rnd.uniform(4, 16), rnd.uniform(3, 7), rnd.randint(3, 6)
        turn = rnd.uniform(0, 6.28)
        points = [(x + r * math.cos(turn + 6.283 * k / corners), y + r * math.sin(turn + 6.283 * k / corners))
                  for k in range(corners) for r in [rnd.uniform(1.5, 2.8)]]
        groups += f"  3  0  0\n  {g + 2}  2.0  0  0\n  {corners}  1  0  0.0  0.0\n"
        groups += "".join(f"  {k + 1}  {px:.2f}  {py:.2f}\n" for k, (px, py) in enumerate(points))
        groups += f"  {corners}\n" + "".join(f"  {k + 1}  1  0  2\n" for k in range(corners))
    return ("  2  0\n  1  1  1  1  0  1\n  0.0  0.0\n  20.0  1.0  0.5\n  10.0  1.0  0.5\n  1\nBmesh.dat\nCut.Mes\n"
            f"  1  1\n  4\n  0\n  0\n  1\n  0.0  0.0  20.0  10.0\n  {count}  0\n  0.0  0.0\n" + groups)


@unittest.skipUnless(CCX, "needs calculix-ccx")
class Patch(SolverCase):
    """Border nodes move by a linear field, and so must all others: elements that fit together carry a constant strain."""

    @staticmethod
    def field(x, y):
        return 1e-3 * x - 4e-4 * y + 2e-3, 7e-4 * x + 5e-4 * y - 1e-3

    def hold(self, name, *options, field=None, shown=(1.0, 1.0)):
        """`shown` is what the solver prints of a displacement in each direction."""
        field = field or self.field
        mesh = MeshFile(self.path(name))
        self.good("-q", "convert", name, "mesh.inp", "--gravity", "0", "--materials",
                  self.table(table_rows(mesh, line_young=1e-6, soft=materials_of_doubles(mesh))), *options)
        text = self.path("mesh.inp").read_text()
        lines = text.splitlines()
        followers = {tuple(int(word) for word in lines[i + 2].split(",")[:2])
                     for i, line in enumerate(lines) if line == "*EQUATION"}
        border = border_nodes(mesh)
        cards = "*BOUNDARY\n"
        for n in sorted(border):
            for direction, value in zip((1, 2), field(*mesh.nodes[n])):
                if (n, direction) not in followers:
                    cards += f"{n}, {direction}, {direction}, {value:.12e}\n"
        # The codes hold nodes of the border at 0; the patch test moves these.
        held = text.index("*BOUNDARY\n")
        text = text[:held] + "\n".join(line for line in text[held:].split("\n")
                                       if not line.startswith(("IDX_", "IDY_")))
        self.write("mesh.inp", text.replace("*BOUNDARY\n**", "**").replace("*BOUNDARY\n*", "*"))
        moved = self.solve("mesh.inp", in_last_step=cards)[-1]["displacements"]
        used = {c for s in mesh.solids.values() for c in (*s.corners, *s.midsides)}
        self.assertLess(len(border & used), len(used))
        largest = max(abs(v) for n in used for v in field(*mesh.nodes[n]))
        for n in used:
            for found, wanted, share in zip(moved[n], field(*mesh.nodes[n]), shown):
                self.assertAlmostEqual(found, share * wanted, delta=1e-6 * largest, msg=f"{name}, node {n}")

    def test_examples(self):
        for deck, mesh, joints in (("pit_stages.dat", "PitStages.Mes", ["--joints", "tie"]),
                                   ("crossing.dat", None, ["--joints", "tie"]), ("slopes.dat", None, []),
                                   ("dam.dat", "Earth_Dam.Mes", [])):
            for cut in ("rules", "sound"):
                text = (SOURCE / "examples" / deck).read_text()
                self.write(deck, text)
                result = self.brelan("-q", "run", deck, "--cut", cut)
                self.assertLess(result.returncode, 2, result.stderr)
                name = mesh or [line for line in text.splitlines() if line.endswith(".Mes")][-1]
                if self.brelan("info", "--json", name).returncode == 0:
                    with self.subTest(deck=deck, cut=cut):
                        self.hold(name, *joints)
                else:
                    self.assertEqual(cut, "rules", deck)

    def test_random_outlines(self):
        tried = {"rules": 0, "sound": 0}
        for seed in range(300 if LONG else 4):
            self.write("cut.dat", random_deck(seed))
            for cut in tried:
                self.assertLess(self.brelan("-q", "run", "cut.dat", "--cut", cut).returncode, 2)
                if self.brelan("info", "--json", "Cut.Mes").returncode == 0:
                    tried[cut] += 1
                    with self.subTest(seed=seed, cut=cut):
                        self.hold("Cut.Mes")
                else:
                    self.assertEqual(cut, "rules")
        self.assertGreater(min(tried.values()), 0)

    def test_axisymmetric(self):
        self.write("cut.dat", random_deck(0))
        self.good("-q", "run", "cut.dat", "--cut", "sound")
        # A strain that is the same everywhere in a body of revolution: radially, round about and along the axis.
        # The solver prints the radial displacement of a side of its wedge of two degrees: along x, its cosine.
        side = math.cos(math.radians(1))
        self.hold("Cut.Mes", "--axisymmetric", field=lambda x, y: (1e-3 * x, 7e-4 * y + 2e-3), shown=(side, 1.0))

    def test_second_order(self):
        """Two by two quadrilaterals with an oblique middle, the last one as two triangles; midside nodes halfway."""
        mesh = Mesh()
        places = {}

        def node(x, y):
            if (x, y) not in places:
                places[x, y] = len(places) + 1
                mesh.node(places[x, y], x, y, (1 if x == 0 else 0, 1 if y == 0 else 0, 1))
            return places[x, y]

        grid = {(i, j): (float(i) * 2, float(j) * 2) for i in range(3) for j in range(3)}
        grid[1, 1] = (2.4, 1.7)
        # Anti-clockwise; the third one clockwise, as a mesh of another program may have it.
        for number, ring in enumerate((((1, 1), (0, 1), (0, 0), (1, 0)), ((2, 1), (1, 1), (1, 0), (2, 0)),
                                       ((0, 1), (1, 1), (1, 2), (0, 2))[::-1], ((1, 1), (2, 1), (2, 2)),
                                       ((1, 1), (2, 2), (1, 2))), 1):
            points = [grid[p] for p in ring]
            middles = [((a[0] + b[0]) / 2, (a[1] + b[1]) / 2) for a, b in zip(points, points[1:] + points[:1])]
            midsides = [node(*p) for p in middles]
            mesh.solid(number, [node(*p) for p in points], midsides=midsides + [0] * (4 - len(midsides)))
        mesh.beams.append((6, node(*grid[1, 1]), node(*grid[2, 2]), 1))
        mesh.trusses.append((7, node(*grid[0, 1]), node(*grid[1, 1]), 1))
        self.write("second.Mes", mesh.text())
        self.hold("second.Mes")
        for element in ("CPE8", "CPE6", "B32", "T3D3"):
            self.assertIn(f"TYPE={element},", self.path("mesh.inp").read_text())


@unittest.skipUnless(CCX, "needs calculix-ccx")
class Lines(SolverCase):
    """A beam and a truss that stick out of a block that is held all round."""
    AREA, INERTIA, YOUNG, LENGTH, PARTS = 0.1, 4.0e-5, 2.0e8, 2.0, 20

    def block_with_lines(self):
        mesh = Mesh()
        for number, (x, y) in enumerate(((0, 0), (1, 0), (1, 1), (0, 1)), 1):
            mesh.node(number, x, y, (1, 1, 1))
        mesh.solid(1, (3, 4, 1, 2))
        for k in range(self.PARTS):
            mesh.node(10 + k, 1 + self.LENGTH * (k + 1) / self.PARTS, 1, (0, 0, 0))
            mesh.beams.append((10 + k, 9 + k if k else 3, 10 + k, 1))
        mesh.node(50, 3, 0, (0, 1, 1))
        mesh.trusses.append((50, 2, 50, 1))
        self.write("lines.Mes", mesh.text())

    def test_beam_bends_and_truss_stretches(self):
        self.block_with_lines()
        self.good("-q", "convert", "lines.Mes", "mesh.inp", "--gravity", "0", "--materials", self.table(
            ["solid,1,1e9,0.3,2,,", f"beam,1,{self.YOUNG},0,2,{self.AREA},{self.INERTIA}",
             f"truss,1,{self.YOUNG},0.3,2,0.003,"]))
        tip = 9 + self.PARTS
        moved = self.solve("mesh.inp", in_last_step=f"*CLOAD\n{tip}, 2, -5.\n50, 1, 30.\n")[-1]["displacements"]
        # The code of node 3 clamps the beam: P L^3 / (3 E I), and F L / (E A) for the truss. The expanded beam has one
        # curvature in each of its parts, which costs a quarter of a part's length squared over that of the beam.
        self.assertAlmostEqual(-moved[tip][1] / (5 * self.LENGTH**3 / (3 * self.YOUNG * self.INERTIA)), 1, delta=5e-3)
        self.assertAlmostEqual(moved[50][0] / (30 * self.LENGTH / (self.YOUNG * 0.003)), 1, delta=1e-5)


@unittest.skipUnless(CCX, "needs calculix-ccx")
class Joints(SolverCase):
    """Two stiff blocks with a joint of two elements between them, along a line of 2 m at an angle."""
    ACROSS, ALONG = 4000.0, 1500.0

    def blocks(self, angle):
        c, s = math.cos(angle), math.sin(angle)
        mesh = Mesh()

        def node(number, x, y, held=0):
            mesh.node(number, c * x - s * y, s * x + c * y, (held, held, 1))

        for i in range(3):
            node(1 + i, i, 0, held=1)
            node(4 + i, i, 1)
            node(7 + i, i, 1)   # the twins
            node(10 + i, i, 2)
        for i in range(2):
            mesh.solid(1 + i, (5 + i, 4 + i, 1 + i, 2 + i))
            mesh.solid(3 + i, (11 + i, 10 + i, 7 + i, 8 + i))
            mesh.joint(5 + i, (4 + i, 5 + i, 8 + i, 7 + i))
        self.write("blocks.Mes", mesh.text())
        return c, s

    def jump(self, angle, normal, shear, joints):
        """Of the three pairs, across and along the joint, under forces on the twins that are spread as a pressure is."""
        c, s = self.blocks(angle)
        self.good("-q", "convert", "blocks.Mes", "mesh.inp", "--gravity", "0", "--joints", joints, "--materials",
                  self.table(["solid,1,1e12,0.3,,,"]))
        cards = "*CLOAD\n"
        for n, share in ((7, 0.25), (8, 0.5), (9, 0.25)):
            fx, fy = (-s * normal + c * shear) * share, (c * normal + s * shear) * share
            cards += f"{n}, 1, {fx:.12e}\n{n}, 2, {fy:.12e}\n"
        moved = self.solve("mesh.inp", in_last_step=cards)[-1]["displacements"]
        jumps = []
        for a, b in ((4, 7), (5, 8), (6, 9)):
            dx, dy = moved[b][0] - moved[a][0], moved[b][1] - moved[a][1]
            jumps.append((-s * dx + c * dy, c * dx + s * dy))
        return jumps

    def test_springs_give_force_by_stiffness(self):
        for angle in (0.0, math.radians(30), math.radians(90)):
            for normal, shear in ((-10.0, 0.0), (0.0, 6.0), (-10.0, 6.0)):
                for across, along in self.jump(angle, normal, shear, f"spring:{self.ACROSS},{self.ALONG}"):
                    # Stiffness for an area: the joint is 2 m long and 1 m thick.
                    self.assertAlmostEqual(across, normal / (self.ACROSS * 2), delta=1e-8)
                    self.assertAlmostEqual(along, shear / (self.ALONG * 2), delta=1e-8)

    def test_ties_do_not_open(self):
        for jump in self.jump(math.radians(30), -10.0, 6.0, "tie"):
            self.assertLess(max(abs(v) for v in jump), 1e-12)


@unittest.skipUnless(CCX, "needs calculix-ccx")
class Tutorial(SolverCase):
    """The chapter's commands as they stand give the table that it shows."""

    def test_excavation(self):
        chapter = (SOURCE / "docs" / "tutorial" / "6-from-the-mesh-to-the-solver.md").read_text()
        shown = re.search(r"```text\n(.*?)```", chapter, re.S)[1]
        shutil.copytree(SOURCE / "docs" / "tutorial" / "excavation", self.root, dirs_exist_ok=True)
        environment = dict(self.environment, PATH=f"{os.path.dirname(os.environ['BRELAN'])}:{os.environ['PATH']}")
        said = ""
        for command in re.findall(r"```sh\n(.*?)```", chapter, re.S):
            done = subprocess.run(["bash", "-e", "-c", command], cwd=self.root, env=environment, text=True,
                                  capture_output=True, timeout=300)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            said = done.stdout if "stages.py" in command else said
        rows, wanted = ([re.findall(r"-?\d+(?:\.\d+)?", row) for row in text.splitlines()] for text in (said, shown))
        self.assertEqual([len(row) for row in rows], [len(row) for row in wanted])
        for row, wanted_row in zip(rows, wanted):
            for found, value in zip(row, wanted_row):  # one of the last digit for another machine's rounding
                self.assertAlmostEqual(float(found), float(value), delta=0.11 if "." in value else 1.1)


if __name__ == "__main__":
    unittest.main()
