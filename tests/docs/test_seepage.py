"""The seepage of the tutorial's last chapter: a mesh of the program's, its codes, and a finite-element library of others.

GetFEM (python3-getfem, python3-scipy) solves. BRELAN_LONG takes finer meshes.
"""
import contextlib
import functools
import importlib.util
import io
import os
import pathlib
import re
import sys
import unittest

CHAPTER = pathlib.Path(os.environ["BRELAN_SOURCE"]) / "docs" / "tutorial" / "5-seepage.md"
SCRIPT = CHAPTER.parent / "seepage" / "seepage.py"
MISSING = [name for name in ("getfem", "scipy") if importlib.util.find_spec(name) is None]
LONG = "BRELAN_LONG" in os.environ
BALANCE = 1e-6  # of the water that flows in

if not MISSING:
    import numpy

    sys.dont_write_bytecode = True
    sys.path.insert(0, str(SCRIPT.parent))
    import seepage

    for name in ("dam_mesh", "dam", "rectangle"):  # each is solved once
        setattr(seepage, name, functools.lru_cache(maxsize=None)(getattr(seepage, name)))


@unittest.skipIf(MISSING, f"python3-getfem or python3-scipy is not installed: {', '.join(MISSING)}")
class Dams(unittest.TestCase):
    def check(self, solved):
        """Water flows in and out in equal parts, and only where the codes let it."""
        self.assertLess(abs(solved.flow_in - solved.flow_out), BALANCE * solved.flow_in)
        held = ~numpy.isnan(solved.held)
        numpy.testing.assert_array_equal(solved.head[held], solved.held[held])
        closed = ~held & ~solved.face
        self.assertLess(abs(solved.inflow[closed]).sum(), BALANCE * solved.flow_in)
        self.assertLessEqual(solved.inflow[solved.face].max(), BALANCE * solved.flow_in)
        self.assertGreater(solved.head.min(), numpy.nanmin(solved.held) - 1e-9)
        self.assertLess(solved.head.max(), numpy.nanmax(solved.held) + 1e-9)

    def test_codes_of_the_dam_are_those_of_its_borders(self):
        """The reservoir's head on the ground and on the slope up to 15 m, the tail water's behind the right toe, the face
        of seepage on the right slope, no other code."""
        mesh = seepage.dam_mesh(2.0)
        where = {}
        for pair, (x, y) in zip(map(tuple, mesh.codes.tolist()), mesh.points.astype(float)):
            where.setdefault(pair, []).append((x, y))
        self.assertEqual(sorted(where), [(0, 0), (1, 1), (1, 2), (3, 0)])
        for x, y in where[1, 1]:
            self.assertAlmostEqual(y, max(0.0, x / 2.0), delta=1e-4)
            self.assertLessEqual(y, 15.0 + 1e-4)
        self.assertEqual(max(where[1, 1])[1], 15.0)
        self.assertTrue(all(y == 0.0 and x > 88.0 for x, y in where[1, 2]))
        for x, y in where[3, 0]:
            self.assertAlmostEqual(y, (88.0 - x) / 2.0, delta=1e-4)

    def test_elements_cover_the_profile_as_the_library_sees_them(self):
        """Corners in another order would fold quadrilaterals: of 20 x (88 + 8) / 2 + 14 x 148 square metres some were lost."""
        solver = seepage.Seepage(seepage.dam_mesh(2.0), dict.fromkeys(range(1, 8), 1.0), {1: 15.0, 2: 0.0})
        ones = numpy.ones((1, len(solver.solid_of)))
        area = seepage.getfem.asm_volumic_source(solver.integration, solver.linear, solver.constant, ones)
        self.assertAlmostEqual(area.sum(), 960.0 + 2072.0, delta=0.05)

    def test_a_plane_field_is_reproduced(self):
        """Heads that fall evenly need no elements of any shape: k grad h flows in and out of the border alone."""
        solver = seepage.Seepage(seepage.dam_mesh(2.0), dict.fromkeys(range(1, 8), 1e-5), {1: 15.0, 2: 0.0})
        plane = 3.0 + 0.2 * solver.points[:, 0] - 0.1 * solver.points[:, 1]
        sides = {}
        for corners in solver.corners:
            nodes = [n for n in corners if n >= 0]
            for side in zip(nodes, nodes[1:] + nodes[:1]):
                sides[frozenset(side)] = sides.get(frozenset(side), 0) + 1
        border = sorted({n for side, count in sides.items() if count == 1 for n in side})
        held = numpy.full(len(plane), numpy.nan)
        held[border] = plane[border]
        head, _ = solver.solve(solver.permeability, held)
        numpy.testing.assert_allclose(head, plane, atol=1e-9)

    def test_flow_through_the_dam_under_refinement(self):
        sizes = (2.0, 1.0, 0.5) if LONG else (2.0, 1.0)
        flows = []
        for size in sizes:
            solved = seepage.dam(size)
            self.check(solved)
            flows.append(solved.flow_in)
        steps = [abs(one - two) for one, two in zip(flows, flows[1:])]
        self.assertLess(steps[0], 0.05 * flows[-1])
        for one, two in zip(steps, steps[1:]):
            self.assertLess(two, 0.6 * one)

    def test_rectangular_dam_against_dupuit(self):
        """q = k (24^2 - 4^2) / (2 16) = 1.75e-4 m2/s for k = 1e-5 m/s."""
        self.assertAlmostEqual(seepage.dupuit(), 1.75e-4, delta=1e-12)
        for size in (2.0, 1.0, 0.5) if LONG else (2.0, 1.0):
            solved = seepage.rectangle(size)
            self.check(solved)
            self.assertLess(abs(solved.flow_in / seepage.dupuit() - 1.0), 0.05)
            self.assertGreater(solved.exit_height, 4.0)

    def test_what_the_chapter_shows(self):
        shown = re.search(r"```text\n(.*?)```", CHAPTER.read_text(), re.S).group(1)
        said = io.StringIO()
        with contextlib.redirect_stdout(said):
            seepage.main([])
        self.assertEqual(said.getvalue(), shown)


if __name__ == "__main__":
    unittest.main()
