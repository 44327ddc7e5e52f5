#!/usr/bin/env python3
"""Random groups: runs with IEDIT 4 of the program against the calculation.

Each case is a small project made from a seed: a mesh of one of the four
kinds, a defaults file, and groups of every sort drawn over the mesh.  The
program and reference.py run it in separate copies.  Statuses, console text
and all files must agree to the byte; where a stop leaves the work files of
the engine behind, these are compared by values.

    compare_groups.py [--program PATH] [--count N] [--seed N] [--keep DIR]
                      [--show]
"""

import math
import os
import random
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
import case_runner  # noqa: E402
import compare  # noqa: E402
import reference  # noqa: E402
from reference import COUPLED, DISPLACEMENT, HEAD, kind_of  # noqa: E402

EDITIONS = (1, 1, 2, 3, 4, 5, 5, 6, 7, 8, 9, 9, 10, 11, 12)


# --------------------------------------------------------------------------
# Meshes
# --------------------------------------------------------------------------


class GroupMesh(compare.RandomMesh):
    """A grid of quadrilaterals and triangles for groups to be drawn on."""

    def __init__(self, rnd, kind):
        self.graded = rnd.random() < 0.3
        self.mirrored = rnd.random() < 0.12
        self.holes = rnd.choice((0.0, 0.0, 0.0, 0.1))
        self.triangles = rnd.choice((0.0, 0.0, 0.2, 0.5, 1.0))
        self.joints = rnd.choice((0.0, 0.0, 0.0, 0.1))
        self.lines = rnd.random() < 0.3
        self.codes = rnd.choice(("none", "none", "some", "some", "half",
                                 "half", "most", "border", "all", "chess",
                                 "chess", "chess", "bands"))
        large = rnd.random() < 0.05
        super().__init__(rnd, kind,
                         nx=14 if large else rnd.choice((1, 2, 3, 4, 5, 6, 9)),
                         ny=11 if large else rnd.choice((1, 2, 3, 4, 5, 8)),
                         x0=rnd.choice((0.0,) * 9 + (-5.0, 10.0, 1.25) * 3 +
                                       (100000.0,)),
                         y0=rnd.choice((0.0,) * 9 + (-3.0, 20.0, -0.5) * 3 +
                                       (20000.0,)),
                         steps=(rnd.choice((1.0, 1.0, 2.0, 0.5, 3.7)),
                                rnd.choice((1.0, 1.0, 2.0, 0.5, 1.3))))

    def line_of(self, count, start, step):
        places = [start]
        for _ in range(count):
            places.append(places[-1] + step)
            if self.graded:
                step *= 1.3
        return [float("%.6e" % p) for p in places]

    def number_nodes(self):
        rnd = self.rnd
        self.jitter = rnd.choice((0.0, 0.0, 0.0, 0.25, 0.25, 1.0e-5))
        self.xs = self.line_of(self.nx, self.x0, self.steps[0])
        self.ys = self.line_of(self.ny, self.y0, self.steps[1])
        names = self.numbers((self.nx + 1) * (self.ny + 1),
                             rnd.choice((1, 1, 1, 1, 3, 10, 101)),
                             rnd.choice((0, 0, 0, 0.2, 0.6)))
        if rnd.random() < 0.01:
            top = rnd.choice((99990, 99989, 99980))
            names = [n + top - names[-1] for n in names]
        if rnd.random() < 0.2:
            rnd.shuffle(names)
        self.nodes, self.at = {}, {}
        words = reference.CODE_WORDS[self.kind]
        share = {"none": 0.0, "some": 0.15, "half": 0.5, "most": 0.8,
                 "all": 1.0}.get(self.codes, 0.0)
        for j, y in enumerate(self.ys):
            for i, x in enumerate(self.xs):
                n = names.pop(0)
                border = i in (0, self.nx) or j in (0, self.ny)
                if self.jitter:
                    x += rnd.uniform(-1, 1) * self.jitter * self.steps[0]
                    y_here = y + \
                        rnd.uniform(-1, 1) * self.jitter * self.steps[1]
                else:
                    y_here = y
                fixed = rnd.random() < share or {
                    "border": border, "chess": (i + j) % 2 == 0,
                    "bands": i % 2 == 0}.get(self.codes, False)
                codes = [rnd.choice((0, 1, 2, -1, -100)) if fixed else 0
                         for _ in range(words)]
                if words > 2 and rnd.random() < 0.5:
                    codes[2:] = [rnd.choice((0, 1)) for _ in codes[2:]]
                h = rnd.choice((0.0, 0.0, 12.5, -3.0))
                self.nodes[n] = (codes, float("%.6e" % x),
                                 float("%.6e" % y_here), h,
                                 rnd.choice((1.0, 1.0, 0.5, 0.0)))
                self.at[i, j] = n

    def number_elements(self):
        rnd, at = self.rnd, self.at
        solid = []
        for i in range(self.nx):
            for j in range(self.ny):
                a, b, c, d = at[i, j], at[i + 1, j], at[i + 1, j + 1], \
                    at[i, j + 1]
                if rnd.random() < self.holes:
                    continue
                if rnd.random() < self.triangles:
                    parts = rnd.choice(([[a, b, c], [a, c, d]],
                                        [[a, b, d], [b, c, d]]))
                else:
                    parts = [[a, b, c, d]]
                for ring in parts:
                    k = rnd.randrange(len(ring)) if rnd.random() < 0.3 else 0
                    ring = ring[k:] + ring[:k]
                    if self.mirrored:
                        ring.reverse()
                    solid.append((ring + [0])[:4])
        lines = [[], []]
        if self.lines:
            for k in (0, 1):
                for _ in range(rnd.randint(0, 4)):
                    i, j = rnd.randint(0, self.nx), rnd.randint(0, self.ny)
                    if rnd.random() < 0.5 and i < self.nx:
                        lines[k].append([at[i, j], at[i + 1, j]])
                    elif j < self.ny:
                        lines[k].append([at[i, j], at[i, j + 1]])
        total = len(solid) + len(lines[0]) + len(lines[1])
        names = self.numbers(total, rnd.choice((1, 1, 1, 5, 100)),
                             rnd.choice((0, 0, 0.3)))
        if rnd.random() < 0.1:
            rnd.shuffle(names)
        self.sections = ([], [], [])
        for section, records in enumerate([solid] + lines):
            for corners in records:
                self.sections[section].append(
                    [names.pop(0), corners, rnd.randint(1, 5)])

    def element_tokens(self, section, record, writer):
        rnd, kind = self.rnd, self.kind
        number, corners, material = record
        out = [writer.integer(v) for v in [number] + corners]
        if section > 0:
            return out + [writer.integer(material), "1"]
        joint = rnd.random() < self.joints
        if kind in (COUPLED, DISPLACEMENT):
            middle = [0] * 4
            if rnd.random() < 0.1:
                middle = [rnd.choice(list(self.nodes)) for _ in middle]
            out += [str(n) for n in middle]
        out.append(writer.integer(material))
        if kind == COUPLED:
            out += [str(v) for v in (int(joint), rnd.choice((1, 2, 0)),
                                     rnd.choice((2, 0)), rnd.choice((2, 1)))]
            out.append(writer.real(rnd.choice((0.0, 0.0, 1.5))))
        elif kind == DISPLACEMENT:
            out += [writer.real(1.0),
                    writer.real(-1.0 if joint else
                                rnd.choice((2.3, 0.0, 1.75)))]
        else:
            out.append(str(rnd.choice((-100, -205, -1)) if joint
                           else rnd.choice((0, 0, 1, 5))))
        return out


# --------------------------------------------------------------------------
# Cases
# --------------------------------------------------------------------------


class GroupCase(compare.Case):
    def __init__(self, seed):
        self.rnd = rnd = random.Random("groups %d" % seed)
        self.files, self.guarded, self.typed = {}, set(), b""
        self.edition = rnd.choice(EDITIONS)
        self.kind = kind_of(self.edition)
        self.data = rnd.choice(("VORK/QX/QXDATA", "Vork/Qx/Qxdata"))
        self.deck = deck = compare.Deck(rnd)
        self.mesh = mesh = GroupMesh(rnd, self.kind)
        text = mesh.text(rnd.random() < 0.2)
        self.size = min(mesh.steps)
        if rnd.random() < 0.07:
            source = self.generated()
        else:
            deck.card(*((1,) if rnd.random() < 0.5 else (1, 2)))
            source = self.mesh_file("Source.Mes", text)
        deck.name(source)
        self.result = self.result_name(source)
        deck.name(self.result)
        deck.card(rnd.choice((1, 1, 1, 10, 300)),
                  rnd.choice((1, 1, 1, 7, 1000)), 0, 0, least=2)
        deck.card(4, 0, 0, 0, 0, 0, least=1)
        self.lists()
        self.groups()
        if rnd.random() < 0.08:
            deck.spoil()
        self.defaults()
        self.units(random.Random("units %d" % seed))
        self.start_up()

    def label(self):
        return "edition %d (%s)" % (self.edition, self.kind)

    def units(self, rnd):
        """The file of the units: comments, the title, five codes."""
        r = rnd.random()
        if r < 0.004:
            return
        codes = [rnd.randint(1, 7)] + [rnd.randint(1, 4) for _ in range(4)]
        if rnd.random() < 0.25:
            codes[rnd.randrange(5)] = rnd.choice((0, 5, 8, -1, 2.5, 100))
        lines = ["comment %d" % k for k in range(1, 5)]
        lines.append(rnd.choice(("A project", "", "  dam 1 2 3", "* star",
                                 "t" * 80, "u" * 100, "caf\xe9  ")))
        lines += ["* comment"] * 10
        lines.append(rnd.choice((" ", ",", "  ")).join(
            rnd.choice(("%s", "%s", "%s.0")) % c if isinstance(c, int)
            else str(c) for c in codes))
        if rnd.random() < 0.1:
            lines[-1:] = lines[-1].replace(",", " ").split()
        if r < 0.008:
            del lines[rnd.choice((4, 10, 15)):]
        self.put("drive/" + self.data + "/UNIT.DAT",
                 compare.as_bytes(rnd, lines))

    # -- names ----------------------------------------------------------------

    def mesh_file(self, stem, data):
        place, name = self.rnd.choice((
            ("project/", ""), ("project/", "..\\"),
            ("project/run/Sub/", "Sub\\"), ("drive/Proj/", "C:\\Proj\\")))
        self.put(place + stem, data)
        return name + stem

    def generated(self):
        """Cards of a base mesh in the place of a mesh file."""
        deck, mesh, rnd = self.deck, self.mesh, self.rnd
        mesh.xs = [mesh.x0 + k * mesh.steps[0] for k in range(mesh.nx + 1)]
        mesh.ys = [mesh.y0 + k * mesh.steps[1] for k in range(mesh.ny + 1)]
        mesh.nodes, mesh.at, mesh.sections = {}, {}, ([], [], [])
        for i, x in enumerate(mesh.xs):
            for j, y in enumerate(mesh.ys):
                n = i * (mesh.ny + 1) + mesh.ny - j + 1
                mesh.at[i, j] = n
                mesh.nodes[n] = ([], x, y, 0.0, 0.0)
        mesh.sections[0].extend([k, [], 1]
                                for k in range(1, mesh.nx * mesh.ny + 1))
        deck.card(2, 1)
        deck.card(1, 1, *(rnd.randint(0, 1) for _ in range(4)))
        third = [] if self.kind == DISPLACEMENT else [mesh.ys[-1]]
        deck.card(mesh.x0, mesh.y0, *third)
        for count, step in ((mesh.nx, mesh.steps[0]),
                            (mesh.ny, mesh.steps[1])):
            deck.card(count * step, step, 0.5)
        deck.card(1)
        return "Bmesh.dat"

    def result_name(self, source):
        return source if self.rnd.random() < 0.05 else "Result.Mes"

    # -- defaults file ------------------------------------------------------

    def defaults(self):
        rnd, size = self.rnd, self.size
        mode = rnd.choice((0, 1, 1, 1, 1, 2, 2, 5))
        length = size * rnd.choice((0.001, 0.01, 0.05, 0.2))
        factor = rnd.choice((0.01, 0.01, 0.01, 0.05, 0.1, 0.25, 0.001))
        same = size * rnd.choice((0.001, 0.001, 0.01, 0.1))
        collapse, share = 0, 0.01
        if rnd.random() < 0.25:
            collapse = rnd.choice((1, 2, 3, 4, 5, 6, 7))
            share = rnd.choice((0.01, 0.3, 0.8, 1.5))
        named = [rnd.randint(0, 9) for _ in range(6)]
        moves = []
        if rnd.random() < 0.2:
            most = rnd.choice((3, 4, 4, 4, 4, 4, 6, 12))
            for _ in range(rnd.randint(1, 4)):
                a, b = rnd.randint(1, most), rnd.randint(1, most)
                moves.append((a, b, rnd.choice((1.0, 1.0, 1.0, 0.5, 0.25))))
        lines = ["* the defaults of a case" + " and so on" * 9,
                 "  %d  %r %r  %r" % (mode, length, factor, same),
                 "  %d %r %s" % (collapse, share,
                                 " ".join(str(v) for v in named)),
                 "* moves", " %d" % len(moves)]
        lines += ["%d %d %r" % row for row in moves]
        lines.append("* end")
        if rnd.random() < 0.015:
            del lines[rnd.randrange(len(lines)):]
        elif rnd.random() < 0.03:
            lines[1] = " " * rnd.choice((20, 45)) + lines[1]
        path = "drive/" + self.data + "/DV-BRELAN.dat"
        if rnd.random() < 0.35:
            self.put(path, b"* never read\n")
            path = "project/DV-BRELAN.dat"
        if rnd.random() < 0.99:
            self.put(path, compare.as_bytes(rnd, lines))

    # -- lists ----------------------------------------------------------------

    def lists(self):
        rnd, deck, mesh = self.rnd, self.deck, self.mesh
        for pool, share in ((sorted(mesh.nodes), 0.3),
                            (sorted(r[0] for s in mesh.sections
                                    for r in s), 0.15)):
            if pool and rnd.random() < share:
                values = []
                for _ in range(rnd.choice((1, 2, 5, 12))):
                    values.append(rnd.choice(pool))
                    if rnd.random() < 0.2:
                        values.append(-(values[-1] + rnd.choice((0, 1, 3))))
                if rnd.random() < 0.02:
                    values[0] = rnd.choice((-4, 99991))
                deck.card(len(values))
                deck.list(values)
            else:
                deck.card(0 if rnd.random() < 0.95 else -1)
        if rnd.random() < 0.3:
            deck.card(1)
            box = [mesh.xs[0], mesh.ys[0], mesh.xs[-1], mesh.ys[-1]]
            if rnd.random() < 0.3:
                box[rnd.randrange(4)] += rnd.choice((-1.0, 1.0)) * self.size
            deck.card(*box)
        else:
            deck.card(rnd.choice((0, 0, 0, 2)))

    # -- points -----------------------------------------------------------------

    def spot(self, inside=False):
        """A point of the plane that stands in some relation to the mesh."""
        rnd, mesh = self.rnd, self.mesh
        r = rnd.random()
        node = mesh.nodes[rnd.choice(list(mesh.nodes))]
        x, y = node[1], node[2]
        wide, tall = mesh.xs[-1] - mesh.xs[0], mesh.ys[-1] - mesh.ys[0]
        if r < 0.02:
            return rnd.choice((0.0, 5.0e-11, -2.0e-10)), \
                rnd.choice((0.0, 7.0e-11, 1.0e-6))
        if r < 0.25:
            return x, y
        if r < 0.35:
            i, j = rnd.randrange(mesh.nx), rnd.randrange(mesh.ny)
            a = mesh.nodes[mesh.at[i, j]]
            b = mesh.nodes[mesh.at[rnd.choice(((i + 1, j), (i, j + 1),
                                               (i + 1, j + 1)))]]
            t = rnd.choice((0.5, 0.5, 0.25, 0.1, 0.05))
            return a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])
        if r < 0.5:
            reach = self.size * rnd.choice((0.0005, 0.005, 0.05, 0.1, 0.3))
            return x + rnd.uniform(-reach, reach), \
                y + rnd.uniform(-reach, reach)
        if r < 0.85 or inside:
            x = mesh.xs[0] + rnd.random() * wide
            y = mesh.ys[0] + rnd.random() * tall
            if rnd.random() < 0.4:
                return round(x, 1), round(y, 1)
            return round(x, 4), round(y, 4)
        x = mesh.xs[0] + rnd.uniform(-0.4, 1.4) * wide
        y = mesh.ys[0] + rnd.uniform(-0.4, 1.4) * tall
        return round(x, 2), round(y, 2)

    def open_points(self):
        rnd, mesh = self.rnd, self.mesh
        r = rnd.random()
        left, right, low, high = mesh.xs[0], mesh.xs[-1], mesh.ys[0], \
            mesh.ys[-1]
        if r < 0.15:
            y = rnd.choice((rnd.choice(mesh.ys), rnd.uniform(low, high)))
            over = rnd.choice((0.0, 0.0, self.size, -0.3 * self.size))
            points = [(left - over, y), (right + over, y)]
        elif r < 0.3:
            x = rnd.choice((rnd.choice(mesh.xs), rnd.uniform(left, right)))
            over = rnd.choice((0.0, 0.0, self.size, -0.3 * self.size))
            points = [(x, low - over), (x, high + over)]
        elif r < 0.5:
            points = [(left - self.size, rnd.uniform(low, high)),
                      (right + self.size, rnd.uniform(low, high))]
        elif r < 0.65:
            points = [(rnd.uniform(left, right), low - self.size),
                      (rnd.uniform(left, right), high + self.size)]
            if rnd.random() < 0.5:
                points.insert(1, self.spot(True))
        else:
            points = [self.spot() for _ in range(rnd.choice((2, 2, 2, 3, 4)))]
        if rnd.random() < 0.5:
            points.reverse()
        if rnd.random() < 0.08:
            points.append(points[0])
        return points

    def closed_points(self):
        rnd, mesh = self.rnd, self.mesh
        r = rnd.random()
        if r < 0.25:
            xs = sorted(rnd.choice((rnd.choice(mesh.xs), self.spot()[0]))
                        for _ in range(2))
            ys = sorted(rnd.choice((rnd.choice(mesh.ys), self.spot()[1]))
                        for _ in range(2))
            points = [(xs[0], ys[0]), (xs[1], ys[0]), (xs[1], ys[1]),
                      (xs[0], ys[1])]
        elif r < 0.45:
            points = [self.spot() for _ in range(3)]
        elif r < 0.6:
            x, left = self.spot(True)[0], rnd.random() < 0.5
            far = mesh.xs[0] - 1.0 if left else mesh.xs[-1] + 1.0
            low, high = mesh.ys[0] - 1.0, mesh.ys[-1] + 1.0
            points = [(far, low), (x, low),
                      (rnd.choice((x, self.spot(True)[0])), high),
                      (far, high)]
        else:
            x, y = self.spot(True)
            count = rnd.choice((3, 4, 5, 8))
            reach = self.size * rnd.choice((0.4, 1.0, 1.7, 3.0))
            points = []
            for k in range(count):
                angle = (k + rnd.uniform(-0.3, 0.3)) / count * 2.0 * math.pi
                radius = reach * rnd.uniform(0.5, 1.2)
                points.append((round(x + radius * math.cos(angle), 4),
                               round(y + radius * math.sin(angle), 4)))
        if rnd.random() < 0.4:
            points.reverse()
        return points

    # -- groups -------------------------------------------------------------------

    def groups(self):
        rnd, deck = self.rnd, self.deck
        count = rnd.choice((1, 1, 1, 2, 2, 2, 3, 4, 6, 12))
        if rnd.random() < 0.03:
            count = rnd.choice((0, -1, 0, -1, 501))
        titles = int(rnd.random() < 0.3)
        self.ref = (rnd.choice((0.0, 1.0, -2.5)), rnd.choice((0.0, 0.5)))
        deck.card(count, titles, **({} if titles else {"least": 1}))
        deck.card(*self.ref, rnd.choice((0.0, 7.5, 100.0)), least=2)
        for k in range(count):
            if count > 99 and k == 3:
                # Far more groups than the tables hold.
                if titles == 0:
                    deck.cards += [("card", ["0"])] * (count - k)
                break
            if titles:
                deck.name(rnd.choice(("A group", "", "  wall 1 2 3",
                                      "w" * 100, "caf\xe9", "x" * 126)))
            self.one_group()

    def material(self, low=0):
        return self.rnd.choice((7, 8, 9, 12, 3, low))

    def material_line(self, mtype):
        rnd, deck = self.rnd, self.deck
        displacement = self.kind == DISPLACEMENT

        def code():
            return rnd.choice((1.9, 0.0, 2.5)) if displacement else \
                rnd.choice((1, 2, 0, 5))

        def line():
            return [rnd.choice((0, 1, 2, 2, 2, 3, 3, 3, 4, 5, -2, -3, -1, -4,
                                6)),
                    self.material()]

        main = [rnd.choice((7, 6, 11, 0, -7)), code()]
        width = rnd.choice((0.0, 0.0, 0.05, 0.05, 0.1, 0.3, -0.05, -0.2)) * \
            self.size
        joint = [self.material(), code(), width]
        if mtype in (1, 2):
            deck.card(*line())
        elif mtype == 3:
            deck.card(*main, *line(), 5, least=4)
        elif mtype == 4:
            deck.card(*main, *line(), rnd.choice((0, 13)), least=4)
        elif mtype == -2:
            deck.card(*joint, *line(), *line())
        elif mtype == -3:
            deck.card(*main, *joint, *line(), *line(), 5, least=9)
        elif mtype == -4:
            deck.card(*main, *joint, *line(), *line(), rnd.choice((0, 13)),
                      least=9)

    def one_group(self):
        rnd, deck = self.rnd, self.deck
        if rnd.random() < 0.008:
            self.large_group()
            return
        mtype = rnd.choice((1, 2, 2, 2, 3, 3, 3, 4, 4, -1, -2, -2, -2, -3, -3,
                            -4, -4, 5, 5, 0, 6, -5))
        if mtype == -4 and self.kind == HEAD and rnd.random() < 0.8:
            mtype = -3
        post = rnd.choice((0,) * 7 + (1, 2))
        overlay = rnd.choice((0, 0, 0, 1, 2))
        deck.card(mtype, post, overlay, 1, 2, 3, 4,
                  **({} if post or overlay else {"least": 1}))
        if mtype == 0:
            return
        if mtype != 5:
            self.material_line(mtype)
        if post == 1:
            for _ in range(6):
                deck.card(rnd.randint(0, 9), rnd.randint(0, 9))
            for _ in range(7):
                deck.card(rnd.randint(0, 1))
        self.outline(abs(mtype) == 2)

    def large_group(self):
        """A group that comes near a limit of the tables."""
        rnd, deck = self.rnd, self.deck
        deck.card(3, least=1)
        self.material_line(3)
        r = rnd.random()
        if r < 0.5:
            parts = rnd.choice((1200, 800, 2600, 500))
            ring = [self.spot() for _ in range(3)]
            deck.card(3, 0, 0, 0.0, 0.0)
            for k, (x, y) in enumerate(ring, 1):
                deck.card(k, x, y)
            deck.card(3)
            for k in (1, 2, 3):
                deck.card(k, 1, rnd.choice((parts, parts, -parts)), 3)
        elif r < 0.8:
            count = rnd.choice((1101, 1100, 1099))
            deck.card(count, 0, 0, 0.0, 0.0)
            for k in range(1, count + 1):
                x, y = self.spot()
                deck.card(k, x, y)
            deck.card(0)
        else:
            deck.card(1, 0, 0, 0.0, 0.0)
            deck.card(rnd.choice((0, 1101, -1, 1100)), 1.0, 1.0)
            deck.card(rnd.choice((0, 0, -1)))

    def outline(self, opened):
        rnd = self.rnd
        r = rnd.random()
        if r < 0.12:
            self.circle(opened)
        elif r < 0.2:
            self.with_arc(opened)
        else:
            points = self.open_points() if opened else self.closed_points()
            count = len(points) - (1 if opened else 0)
            if rnd.random() < 0.03:
                count = 0
            self.put_outline(points, [None] * count)

    def parts(self, arc=False):
        rnd = self.rnd
        if arc:
            return rnd.choice((6, -6, 9, -9, 16, -16, 3, -3, 24, -24, 1,
                               0 if rnd.random() < 0.4 else 12))
        return rnd.choice((0, 0, 0, 1, 1, 1, -1, 2, -2, 3, -3, 5, -5, 8, -8))

    def ends(self):
        return self.rnd.choice((2,) * 9 + (1, 1, -1, -1, 0, 0, -2, -2, 3, 7))

    def circle(self, opened):
        rnd = self.rnd
        x, y = self.spot(True)
        rx = self.size * rnd.choice((0.3, 0.75, 1.0, 1.4, 2.0))
        ry = rx if rnd.random() < 0.6 else rx * rnd.choice((0.5, 1.5))
        start = rnd.choice((0.0, 0.0, 0.0, 10.0, -90.0))
        end = start + rnd.choice((360.0, 360.0, 360.0, -360.0, 359.98))
        arc = (x, y, rx, ry, start, end)
        point = (x + rx, y)
        if opened and rnd.random() < 0.4:
            arc = arc[:5] + (start + rnd.choice((90.0, 180.0, -120.0)),)
        self.put_outline([point] * (2 if opened else 1), [arc])

    def with_arc(self, opened):
        """A chain with an arc in it: a straight foot and a round head."""
        rnd = self.rnd
        x, y = self.spot(True)
        rx = self.size * rnd.choice((0.5, 1.0, 1.5))
        ry = rx if rnd.random() < 0.6 else rx * rnd.choice((0.6, 1.5))
        tall = self.size * rnd.choice((0.5, 1.0, 2.0))
        arc = (x, y, rx, ry, 0.0, 180.0)
        r = rnd.random()
        if r < 0.15:
            arc = arc[:5] + (0.0,)
        elif r < 0.35:
            arc = arc[:5] + (rnd.choice((10.0, 17.0, 25.0, 40.0, -60.0)),)
        elif r < 0.36:
            arc = arc[:2] + rnd.choice(((0.0, 0.0), (0.0, ry), (rx, 0.0),
                                        (-rx, ry))) + arc[4:]
        points = [(x - rx, y - tall), (x + rx, y - tall), (x + rx, y),
                  (x - rx, y)]
        segments = [None, None, arc, None]
        if rnd.random() < 0.15:
            points, segments = points[2:], segments[2:]
            opened = True
        turn = rnd.randrange(4)
        if turn == 1 and not opened:
            points, segments = points[1:] + points[:1], \
                segments[1:] + segments[:1]
        elif turn == 2 and not opened:
            points, segments = points[3:] + points[:3], \
                segments[3:] + segments[:3]
        if opened:
            segments = segments[:3]
        self.put_outline(points, segments)

    def put_outline(self, points, segments):
        rnd, deck = self.rnd, self.deck
        shift = int(rnd.random() < 0.3)
        xlo, ylo = (rnd.choice((0.0, 0.0, 1.0, -0.25)) for _ in range(2))
        xref, yref = self.ref if shift else (0.0, 0.0)
        count = len(points)
        deck.card(count, rnd.choice((0, 0, 1)), shift, xlo, ylo)
        for k, (x, y) in enumerate(points, 1):
            deck.card(k, x - xlo - xref, y - ylo - yref)
        deck.card(len(segments), 0.5, 0.5, least=1)
        same = rnd.random() < 0.7
        parts, ends = self.parts(), self.ends()
        for k, arc in enumerate(segments, 1):
            if not same:
                parts, ends = self.parts(), self.ends()
            ltype = 1 if arc is None else 2
            if rnd.random() < 0.01:
                ltype = rnd.choice((1, 3, 0))
            deck.card(rnd.choice((k, k, k, 77)), ltype,
                      parts if arc is None else self.parts(True), ends)
            if ltype == 2:
                xo, yo, *rest = arc
                deck.card(xo - xlo, yo - ylo, *rest)


# --------------------------------------------------------------------------
# Comparison
# --------------------------------------------------------------------------

# Work files of the engine, there when a stop has left them.
LISTING, JOINTS = "project/run/GROUP.TMP", "project/run/JOINT.TMP"


def same_numbers(old, new):
    try:
        return [float(w) for w in old.split()] == \
            [float(w) for w in new.split()]
    except ValueError:
        return False


def difference(path, old, new):
    if path in (LISTING, JOINTS) and None not in (old, new) and \
            same_numbers(old, new):
        return []
    return compare.difference(path, old, new)


def one_case(case, program, directory, seen=None, loosen=None):
    """Both runs: status, why the reference ended, differences.  Seen gets
    the reference's ways; loosen changes a file of both before they meet."""
    one, other = (os.path.join(directory, n) for n in ("reference", "program"))
    case.lay_out(one)
    case.lay_out(other)
    status, printed, reason = reference.run(
        os.path.join(one, "drive"), os.path.join(one, "project", "run"),
        case.typed, seen)
    if status == 3:
        return 3, reason, []
    environment = dict(os.environ,
                       BRELAN_DRIVE_C=os.path.join(other, "drive"))
    try:
        done = subprocess.run(
            [program], cwd=os.path.join(other, "project", "run"),
            env=environment, input=case.typed, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, timeout=120)
    except subprocess.TimeoutExpired:
        return status, reason, ["  the program does not end"]
    found = []
    if done.returncode != status:
        return status, reason, [
            "  status: reference %d (%s), program %d (%s)" % (
                status, reason, done.returncode,
                done.stderr.decode("latin-1").strip()[:300])]
    left, right = compare.tree(one), compare.tree(other)
    if loosen:
        left, right = ({path: loosen(path, data)
                        for path, data in files.items()}
                       for files in (left, right))
    if status == 2:
        for path in sorted(case.guarded):
            for whose, files in (("reference", left), ("program", right)):
                if files.get(path) != case.files[path]:
                    found.append("  %s: changed by the %s" % (path, whose))
        if not done.stderr.strip():
            found.append("  a failure without a message")
        return status, reason, found
    found += compare.difference("console", printed, done.stdout)
    # How far the writing of the mesh has come at a stop is left aside.
    stopped_writing = reason == "stop 222" and JOINTS not in left
    for path in sorted(set(left) | set(right)):
        if stopped_writing and path.endswith((LISTING, ".Mes")):
            continue
        found += difference(path, left.get(path), right.get(path))
    return status, reason, found


def main():
    options = case_runner.options_of(__doc__, 100).parse_args()
    return case_runner.with_copy_of(
        options.program, lambda program: case_runner.run_cases(
            options, GroupCase, lambda case, directory: one_case(
                case, program, directory)))


if __name__ == "__main__":
    sys.exit(main())
