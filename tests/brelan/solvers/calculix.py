"""CalculiX run on what brelan convert writes, and mesh files and results read without brelan."""
import collections
import math
import os
import pathlib
import re
import shutil
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "mesh_side"))
from support import Case, Mesh, SOURCE  # noqa: E402,F401

CCX = shutil.which("ccx")
ALL_PRINTS = "*NODE PRINT, NSET=ALL_NODES\nU, RF\n"

Solid = collections.namedtuple("Solid", "corners midsides material thickness density")
Line = collections.namedtuple("Line", "ends material")


class MeshFile:
    """The records of a mesh file of the displacement kind, as chapter 4 of the manual lays them out."""

    def __init__(self, path):
        lines = [line for line in pathlib.Path(path).read_text().splitlines() if not line.startswith("*")]
        counts = [int(word) for word in lines[2].split()]
        rows = iter(lines[3:])

        def section(count):
            if count:
                next(rows), next(rows)
            return [next(rows).replace("-0.", " -0.").split() for _ in range(count)]

        self.nodes, self.codes = {}, {}
        for row in section(counts[0]):
            self.nodes[int(row[0])] = (float(row[6]), float(row[7]))
            self.codes[int(row[0])] = [int(word) for word in row[1:4]]
        self.solids, self.joints = {}, {}
        for row in section(counts[1]):
            n = [int(word) for word in row[:10]]
            solid = Solid([c for c in n[1:5] if c], [m for m in n[5:9] if m], n[9], float(row[10]), float(row[11]))
            (self.joints if solid.density < 0 else self.solids)[n[0]] = solid
        self.beams, self.trusses = ({int(row[0]): Line((int(row[1]), int(row[2])), int(row[3]))
                                     for row in section(count)} for count in counts[2:4])

    def points(self, nodes):
        return [self.nodes[n] for n in nodes]

    def length(self, line):
        return math.dist(*self.points(line.ends))


def area_shares(points, weight=lambda x: 1.0):
    """The integral of each corner's shape function times a weight over a triangle or quadrilateral. Their sum is the
    area where the weight is 1. Two by two points of Gauss, for triangles the three middles of the sides."""
    shares = [0.0] * len(points)
    if len(points) == 3:
        (x1, y1), (x2, y2), (x3, y3) = points
        area = abs((x2 - x1) * (y3 - y1) - (x3 - x1) * (y2 - y1)) / 2
        for i in range(3):
            j = (i + 1) % 3
            value = weight((points[i][0] + points[j][0]) / 2) * area / 6
            shares[i] += value
            shares[j] += value
        return shares
    corners = [(-1, -1), (1, -1), (1, 1), (-1, 1)]
    g = 1 / math.sqrt(3)
    for r, s in ((-g, -g), (g, -g), (g, g), (-g, g)):
        form = [(1 + r * a) * (1 + s * b) / 4 for a, b in corners]
        dr = [a * (1 + s * b) / 4 for a, b in corners]
        ds = [(1 + r * a) * b / 4 for a, b in corners]
        xr, xs = (sum(d * p[0] for d, p in zip(dd, points)) for dd in (dr, ds))
        yr, ys = (sum(d * p[1] for d, p in zip(dd, points)) for dd in (dr, ds))
        x = sum(f * p[0] for f, p in zip(form, points))
        for k in range(4):
            shares[k] += form[k] * abs(xr * ys - xs * yr) * weight(x)
    return shares


def border_nodes(mesh):
    """Nodes of the sides that one solid alone has, doubles counting as one and joints as neighbours."""
    sides = collections.defaultdict(set)
    for solid in [*mesh.solids.values(), *mesh.joints.values()]:
        corners = solid.corners
        for i, corner in enumerate(corners):
            middle = solid.midsides[i:i + 1]
            sides[frozenset((corner, corners[(i + 1) % len(corners)]))].add((frozenset(corners), *middle))
    border = set()
    for side, owners in sides.items():
        if len(owners) == 1 and len(side) == 2:
            border |= side | set(next(iter(owners))[1:])
    return border


def results(text):
    """The steps of a .dat file: for each a dictionary of tables by name, "displacements" and "forces" by node."""
    steps, table = [], None
    time = None
    for line in text.splitlines():
        head = re.match(r" (\w+) \(.*\) for set (\S+) and time\s+(\S+)", line)
        if head:
            if head[3] != time:
                time = head[3]
                steps.append({})
            table = steps[-1].setdefault(head[1], {})
        elif table is not None and line.strip():
            words = line.split()
            table[int(words[0])] = tuple(float(word) for word in words[1:3])
    return steps


class SolverCase(Case):
    """A test that converts meshes and has them solved."""

    def solve(self, inp, prints=ALL_PRINTS, before=None, in_last_step=""):
        """Runs the solver with more printing. `before` puts cards before the first step, `in_last_step` into the last
        one. Returns the printed steps."""
        path = self.path(inp)
        text = path.read_text()
        if before:
            head, step, tail = text.partition("*STEP")
            text = head + before + step + tail
        head, node_file, tail = text.rpartition("*NODE FILE")
        text = head + in_last_step + node_file + tail
        text = text.replace("*NODE FILE", prints + "*NODE FILE")
        solved = self.path("solved.inp")
        solved.write_text(text)
        environment = dict(os.environ, OMP_NUM_THREADS="1")
        done = subprocess.run([CCX, "solved"], cwd=self.root, capture_output=True, text=True, timeout=300,
                              env=environment)
        self.assertEqual(done.returncode, 0, done.stdout[-2000:])
        self.assertNotIn("*ERROR", done.stdout)
        return results(self.path("solved.dat").read_text())

    def table(self, rows, name="materials.csv"):
        self.write(name, "class,material,E,nu,density,area,inertia\n" + "\n".join(rows) + "\n")
        return self.path(name)
