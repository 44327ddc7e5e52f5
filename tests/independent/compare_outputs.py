#!/usr/bin/env python3
"""Random output decks: runs of the program against the calculation.

Each case is a small project made from a seed, most of them with IEDIT 4 and
groups that take part in the output decks: activity, materials of their own,
the fragments of the main file, the decks of the plotting tools, line-up and
the boundary file.  The program and the calculation run it in separate copies;
status, console text and every file must agree to the byte.  How often each
rule was used is counted and shown; --reference-only does the counting alone.

    compare_outputs.py [--program PATH] [--count N] [--seed N] [--keep DIR]
                       [--show] [--loose-trace] [--reference-only]
"""

import os
import random
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
import case_runner  # noqa: E402
import compare  # noqa: E402
import compare_groups  # noqa: E402
import reference  # noqa: E402
from compare_groups import GroupCase, GroupMesh  # noqa: E402
from reference import (COUPLED, DISPLACEMENT, HEAD, TEMPERATURE,  # noqa: E402
                       kind_of)

MATERIALS = (1, 2, 3, 7, 8, 9)


# --------------------------------------------------------------------------
# Meshes
# --------------------------------------------------------------------------


class OutputMesh(GroupMesh):
    """A mesh of few materials, with lines that groups may name."""

    def number_elements(self):
        super().number_elements()
        rnd = self.rnd
        single = rnd.random() < 0.15
        for section, records in enumerate(self.sections):
            for record in records:
                record[2] = 7 if single and section == 0 \
                    else rnd.choice(MATERIALS)
        if rnd.random() < 0.03 and self.sections[0]:
            rnd.choice(self.sections[0])[2] = rnd.choice((399, 400, 998,
                                                          1000, 20000))


class RowMesh(OutputMesh):
    """Rows of quadrilaterals whose two long sides are divided differently,
    with trusses along them: work for line-up."""

    def number_nodes(self):
        super().number_nodes()
        rnd = self.rnd
        upright = rnd.random() < 0.5
        wide, tall = (self.ny, self.nx) if upright else (self.nx, self.ny)
        step = self.steps[1 if upright else 0]
        start = (self.y0 if upright else self.x0)
        across = self.ys if not upright else self.xs
        for j in range(tall + 1):
            places, s = [], start + step * rnd.choice(
                (0.0, 0.0, 0.3, -0.3, 0.5, 1.0, -1.0, 1.2, -1.2, 2.0, -2.5))
            even = rnd.random() < 0.4
            for _ in range(wide + 1):
                places.append(s)
                s += step * (1.0 if even else rnd.choice((0.25, 0.5, 1.0,
                                                          1.0, 2.0)))
            slope = rnd.choice((0.0,) * 5 + (0.05,)) * self.steps[
                0 if upright else 1]
            for i in range(wide + 1):
                n = self.at[(j, i) if upright else (i, j)]
                codes, _, _, h, cf = self.nodes[n]
                place = (across[j] + slope * i, places[i])
                if not upright:
                    place = place[::-1]
                self.nodes[n] = ([0] * len(codes), float("%.6e" % place[0]),
                                 float("%.6e" % place[1]), h, cf)
        self.upright = upright

    def number_elements(self):
        super().number_elements()
        rnd = self.rnd
        share = rnd.choice((0.5, 0.9, 1.0))
        for record in self.sections[0]:
            if rnd.random() < share:
                record[2] = 7
        wide, tall = (self.ny, self.nx) if self.upright \
            else (self.nx, self.ny)

        def node(i, j):
            return self.at[(j, i) if self.upright else (i, j)]

        pairs = []
        for _ in range(rnd.randint(1, 4)):
            j = rnd.randint(0, tall)
            i, end = sorted(rnd.randint(0, wide) for _ in range(2))
            chain = [node(k, j) for k in range(i, end + 1)]
            if rnd.random() < 0.35 and j < tall:
                # The line goes on round a corner, or straight through.
                chain.append(node(end, j + 1))
            if rnd.random() < 0.2 and j < tall and i < wide:
                chain.append(node(i + 1, j + 1))
            for slant in range(rnd.choice((0, 0, 1, 2))):
                # A neighbour off the line of the sides.
                far = node(rnd.randint(0, wide), rnd.randint(0, tall))
                if far not in chain:
                    chain.insert(0 if slant else len(chain), far)
            if rnd.random() < 0.5:
                chain.reverse()
            for a, b in zip(chain, chain[1:]):
                r = rnd.random()
                if r < 0.05:
                    continue
                pairs.append([b, a] if r < 0.12 else [a, b])
                if r > 0.95:
                    pairs.append([a, b])
        taken = {r[0] for s in self.sections for r in s}
        number = max(taken, default=0) + 1
        if rnd.random() < 0.3:
            rnd.shuffle(pairs)
        for pair in pairs:
            self.sections[2].append([number, pair, rnd.choice(MATERIALS)])
            number += rnd.choice((1, 1, 1, 3))


# --------------------------------------------------------------------------
# Cases
# --------------------------------------------------------------------------


def switch_file(case, rnd, share):
    if rnd.random() < share:
        text = rnd.choice(("1", " 1", "  3", "0", "-1", "-5", "1 / on",
                           "\n 2"))
        if rnd.random() < 0.01:
            text = rnd.choice(("", "x"))
        case.put("project/run/" + rnd.choice(
            ("LineUp.dat", "LineUp.dat", "LINEUP.DAT")),
            compare.as_bytes(rnd, [text]), False)


class OtherCase(compare.Case):
    """An edit of another sort, or no edit, beside a switch file."""

    def __init__(self, seed):
        rnd = random.Random("other %d" % seed)
        super().__init__(seed, rnd.choice(("1/0", "1/1", "1/2", "1/3", "1/6",
                                           "1/x", "2/0", "2/1", "0")))
        self.files = {p: d for p, d in self.files.items()}
        switch_file(self, rnd, 0.8)


class OutputCase(GroupCase):
    def __init__(self, seed):
        self.rnd = rnd = random.Random("outputs %d" % seed)
        self.files, self.guarded, self.typed = {}, set(), b""
        self.edition = seed % 12 + 1
        self.kind = kind_of(self.edition)
        self.data = "VORK/QX/QXDATA"
        self.deck = deck = compare.Deck(rnd)
        self.rows = rnd.random() < 0.3
        self.mesh = mesh = (RowMesh if self.rows else OutputMesh)(rnd,
                                                                 self.kind)
        self.size = min(mesh.steps)
        self.drawn = {}
        deck.card(*((1,) if rnd.random() < 0.5 else (1, 2)))
        deck.name(self.mesh_file("Source.Mes", mesh.text(False)))
        deck.name("Result.Mes")
        deck.card(rnd.choice((1, 1, 1, 1, 300, 1200, 9990, 12000)),
                  rnd.choice((1, 1, 1, 7, 1000, 80000)), 0, 0, least=2)
        deck.card(4, 0, 0, 0, 0, 0, least=1)
        if rnd.random() < 0.25:
            self.lists()
        else:
            for _ in range(3):
                deck.card(0)
        self.groups()
        if rnd.random() < 0.02:
            deck.spoil()
        self.defaults()
        self.units(rnd)
        switch_file(self, rnd, 0.85 if self.rows else 0.15)
        if rnd.random() < 0.25:
            for name in ("Group.Pos", "Group.Man", "MatAD.Man",
                         "Boundary.Man", "run/TEMPMESH.TMP", "run/Group.dat",
                         "run/GROUP.TMP", "run/JOINT.TMP"):
                if rnd.random() < 0.7:
                    self.put("project/" + name, b"left over \n" * 5, False)
        self.start_up()

    def defaults(self):
        """Mostly plain values, so that most runs come to their end."""
        rnd = self.rnd
        if rnd.random() < 0.3:
            super().defaults()
            return
        collapse = rnd.choice((0, 0, 0, 0, 0, 1, 3, 6))
        moves = [(rnd.randint(1, 4), rnd.randint(1, 4),
                  rnd.choice((1.0, 0.5)))
                 for _ in range(rnd.choice((0, 0, 0, 0, 1, 2)))]
        self.put("drive/" + self.data + "/DV-BRELAN.dat", compare.as_bytes(
            rnd, ["* plain", "1 0.0 %r %r" % (rnd.choice((0.01, 0.01, 0.1)),
                                              self.size * 0.001),
                  "%d %r  7 8 9  7 8 9" % (collapse, rnd.choice((0.3, 1.1))),
                  "%d" % len(moves)] + ["%d %d %r" % row for row in moves]))

    # -- groups -----------------------------------------------------------

    def groups(self):
        rnd, deck = self.rnd, self.deck
        count = rnd.choice((1, 1, 2, 2, 3, 3, 4, 5, 7))
        if self.rows and rnd.random() < 0.7:
            count = rnd.choice((0, 1, 1, 2))
        elif rnd.random() < 0.04:
            count = rnd.choice((0, 0, -1))
        # Many empty groups, for marks that leave eight bits.
        empty = rnd.choice((130, 253, 255, 300)) if rnd.random() < (
            0.1 if self.kind == HEAD else 0.01) else 0
        self.flowing = empty > 0
        titles = int(rnd.random() < 0.6 or self.flowing)
        # Whether the decks of beams and trusses go by their switches.
        self.marking = [rnd.choice(((0,), (0, 1), (0, 0, 1), (0, -1),
                                    (0, 1, -1))) for _ in range(7)]
        for k in (0, 1, 2, 5, 6):
            if rnd.random() < 0.8:
                self.marking[k] = rnd.choice(((0, 1), (1,), (1, 1, 1, 0),
                                              (0, 2, -1)))
        self.zero = rnd.choice((0.05, 0.25, 0.25, 0.6, 1.0))
        self.ref = (rnd.choice((0.0, 1.0, -2.5)), rnd.choice((0.0, 0.5)))
        deck.card(count + empty if count > 0 else count, titles,
                  **({} if titles else {"least": 1}))
        deck.card(*self.ref, rnd.choice((0.0, 7.5, 100.0)), least=2)
        if count < 1:
            return
        for k in range(count + empty):
            if titles:
                deck.name(rnd.choice(("A group", "", "  wall 1 2 3",
                                      "w" * 80, "w" * 100, "caf\xe9",
                                      "number %d" % k)
                                     if not self.flowing
                                     else ("number %d" % k,)))
            if k < empty:
                deck.card(0, least=1)
            else:
                self.one_group()

    def material(self, low=0):
        sign = -1 if self.rnd.random() < 0.02 else 1
        return sign * self.rnd.choice(MATERIALS)

    def material_line(self, mtype):
        rnd, deck = self.rnd, self.deck
        displacement = self.kind == DISPLACEMENT

        def code():
            if displacement:
                return rnd.choice((1.9, 0.0, 2.5, 2.345, 1234.5))
            return rnd.choice((1, 2, 0, 5, 100, 1234))

        def line():
            ltp = rnd.choice((0, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 5, -2, -3))
            if self.flowing:
                ltp = 3
            return [ltp, self.material() if rnd.random() < 0.9
                    else rnd.choice((0, 1500))]

        main = [rnd.choice(MATERIALS + (0, 0, 11, -7)), code()]
        width = rnd.choice((0.0, 0.0, 0.05, 0.05, 0.1, 0.3, -0.05)) * \
            self.size
        joint = [self.material(), code(), width]
        one, other = line(), line()
        if rnd.random() < 0.1:
            other = list(one)
        if mtype in (1, 2):
            deck.card(*one)
        elif mtype == 3:
            deck.card(*main, *one, 5, least=4)
        elif mtype == 4:
            deck.card(*main, *one, rnd.choice((0, 13)), least=4)
        elif mtype == -2:
            deck.card(*joint, *one, *other)
        elif mtype == -3:
            deck.card(*main, *joint, *one, *other, 5, least=9)
        elif mtype == -4:
            deck.card(*main, *joint, *one, *other, rnd.choice((0, 13)),
                      least=9)

    def one_group(self):
        rnd, deck = self.rnd, self.deck
        mtype = rnd.choice((1, 1, 2, 2, 2, 2, 3, 3, 3, 4, 4, -1, -2, -2, -2,
                            -3, -3, -3, -4, -4, 5, 0, 6, -5))
        if mtype == -4 and self.kind == HEAD and rnd.random() < 0.9:
            mtype = -3
        if self.flowing and rnd.random() < 0.6:
            mtype = 2
        self.mtype = mtype
        post = rnd.choice((1,) * 14 + (0, 0, 2, -1))
        overlay = rnd.choice((0, 0, 0, 0, 1))
        deck.card(mtype, post, overlay, 1, 2, 3, 4,
                  **({} if post or overlay else {"least": 1}))
        if mtype == 0:
            return
        if mtype != 5:
            self.material_line(mtype)
        if post == 1:
            some = [0, 0] if mtype == 2 and rnd.random() < 0.5 else None
            for k in range(6):
                pair = [rnd.randint(0, 9), rnd.choice((0, 5, 99, 12345))]
                if rnd.random() < self.zero:
                    pair = [0, 0]
                deck.card(*(some if some and k in (0, 4, 5) else pair))
            for marks in self.marking:
                deck.card(rnd.choice(marks))
        self.outline(abs(mtype) == 2)

    def ends(self):
        return self.rnd.choice((2,) * 6 + (3,) * 6 + (1, -1, 0, -2))

    def parts(self, arc=False):
        if arc or self.rnd.random() < 0.5:
            return super().parts(arc)
        return self.rnd.choice((0, 0, self.mesh.nx, self.mesh.ny))

    def outline(self, opened):
        rnd = self.rnd
        drawn = self.drawn.get(opened)
        if drawn and rnd.random() < 0.4:
            self.put_outline(*drawn)
            return
        if not opened and rnd.random() < (0.05 if abs(self.mtype) == 1
                                          else 0.35):
            mesh = self.mesh
            low, high = mesh.ys[0] - 9.0, mesh.ys[-1] + 9.0
            left, right = mesh.xs[0] - 9.0, mesh.xs[-1] + 9.0
            if rnd.random() < 0.6:
                right = rnd.choice(mesh.xs) + 0.3 * mesh.steps[0]
            self.put_outline([(left, low), (right, low), (right, high),
                              (left, high)], [None] * 4)
            return
        if opened and rnd.random() < 0.4:
            self.put_outline(*self.along_mesh())
            return
        super().outline(opened)

    def along_mesh(self):
        """An open line along a row or a column of nodes, part by part."""
        rnd, mesh = self.rnd, self.mesh
        if rnd.random() < 0.5:
            j = rnd.randint(0, mesh.ny)
            ring = [mesh.at[i, j] for i in range(mesh.nx + 1)]
        else:
            i = rnd.randint(0, mesh.nx)
            ring = [mesh.at[i, j] for j in range(mesh.ny + 1)]
        points = [mesh.nodes[n][1:3] for n in ring]
        if rnd.random() < 0.5:
            points.reverse()
        return points, [None] * (len(points) - 1)

    def put_outline(self, points, segments):
        self.drawn[len(segments) < len(points)] = (points, segments)
        super().put_outline(points, segments)


# --------------------------------------------------------------------------
# What the cases must reach
# --------------------------------------------------------------------------

LINES = ("line", "line, zero pair", "line of another sort")
JOINT_LINES = ("inner line", "inner line, zero pair", "outer line",
               "outer line, zero pair", "line of another sort")


def expected():
    out = []

    def rules(mtype, classes, ways):
        out.extend("MTYPE %d, class %d, %s" % (mtype, c, way)
                   for c in classes for way in ways)

    def paired(*ways):
        return [w + z for w in ways for z in ("", ", zero pair")]

    rules(1, (1,), ["continuum"])
    rules(1, (2, 3), LINES)
    for c in (1, 2, 3):
        rules(2, (c,), ["by class %d" % c])
    rules(2, (1,), ["line of another sort"])
    rules(2, (2, 3), LINES)
    rules(3, (1,), paired("MAT", "any material") + ["other material"])
    rules(4, (1,), paired("MAT", "other material"))
    for mtype in (3, 4):
        rules(mtype, (2, 3), LINES)
    rules(-2, (1,), paired("MATj", "other material"))
    rules(-3, (1,), paired("no MAT, MATj", "no MAT, other", "MAT", "MATj") +
          ["other material"])
    rules(-4, (1,), paired("MAT", "MATj", "other material"))
    for mtype in (-2, -3, -4):
        rules(mtype, (2, 3), JOINT_LINES)
    for mtype in (6, -5):
        rules(mtype, (1, 2, 3), ["no rule"])
    out += ["no activity", "activity range of one", "activity range of more",
            "element of two groups", "main file with materials",
            "main file without materials", "node lists", "no node list",
            "stars in section 3"]
    for nptype, classes in ((1, (1, 2, 3)), (2, (1,)), (3, (1, 2, 3)),
                            (4, (2,)), (5, (3,)), (6, (1,))):
        out += ["section %d, class %d" % (nptype, c) for c in classes]
        out += ["section %d with%s ranges" % (nptype, s) for s in ("", "out")]
    for nptype in (4, 5):
        out += ["section %d by switches" % nptype,
                "section %d with all" % nptype]
    out += ["default list, class %d" % c for c in (1, 2, 3)]
    out += ["line-up, " + what for what in (
        "switch on", "switch off", "switch negative", "diagonal",
        "neighbour is a corner", "slanted opposite side",
        "upright opposite side", "level opposite side",
        "slide: node has moved already", "slide: line of equal s")]
    out += ["line-up, slots %d %d" % (a, b)
            for a in (1, 2, 3, 4) for b in (1, 2, 3, 4)
            if (a - b) % 4 in (1, 3)]
    out += ["line-up, %s %s: %s" % (way, end, what)
            for way in ("rising", "falling") for end in "AB"
            for what in ("within", "no neighbour", "merge", "beside")]
    out += ["boundary, " + what for what in (
        "0 pipes", "1 pipes", "more pipes", "0 convection lines",
        "1 convection lines", "more convection lines", "0 properties",
        "1 properties", "more properties")]
    out += ["boundary, %s %s" % (name, what)
            for name in ("pipe", "convection line")
            for what in ("without nodes", "of fewer than ten", "of ten",
                         "of more than ten", "with a place left open")]
    out += ["flow, " + what for what in (
        "sections without trusses", "break by mark", "break by node",
        "run beyond the count", "no head", "title of a group",
        "blank, mark 0", "title blank, mark 0", "title blank",
        "mark beyond 127", "last run within", "last run beyond")
        if what != "blank, mark 0"]
    return out


# --------------------------------------------------------------------------
# Comparison
# --------------------------------------------------------------------------

MARK = re.compile(rb" Pass 27\.1\.\d")


def loose_trace(path, data):
    """Of the lines that the output decks trace only the marks are kept."""
    if not path.endswith((".deb", "fort.888")):
        return data
    return b"\n".join(MARK.search(line).group(0) if MARK.search(line)
                      else line for line in data.split(b"\n"))


def reference_alone(case, directory, seen):
    case.lay_out(directory)
    status, _, reason = reference.run(
        os.path.join(directory, "drive"),
        os.path.join(directory, "project", "run"), case.typed, seen)
    return status, reason, []


def new_case(seed):
    return OtherCase(seed) if seed % 25 == 0 else OutputCase(seed)


def main():
    parser = case_runner.options_of(__doc__, 300)
    parser.add_argument("--loose-trace", action="store_true",
                        help="of the traced details compare the marks only")
    parser.add_argument("--reference-only", action="store_true",
                        help="run no program, only count")
    parser.add_argument("--counts", action="store_true",
                        help="show how often each rule was used")
    options = parser.parse_args()
    if options.reference_only:
        return run_cases(options, None)
    return case_runner.with_copy_of(
        options.program, lambda program: run_cases(options, program))


def run_cases(options, program):
    seen, kinds = {}, {}
    loosen = loose_trace if options.loose_trace else None

    def run_case(case, directory):
        ways = {}
        if program is None:
            status, reason, found = reference_alone(case, directory, ways)
        else:
            status, reason, found = compare_groups.one_case(
                case, program, directory, ways, loosen)
        if status == 0:
            kinds[case.edition] = kinds.get(case.edition, 0) + 1
            for way, times in ways.items():
                seen[way] = seen.get(way, 0) + times
        return status, reason, found

    def summary():
        wanted = expected()
        if options.counts or options.reference_only:
            for way in wanted + sorted(set(seen) - set(wanted)):
                print("%7d  %s" % (seen.get(way, 0), way))
            print("finished runs by edition: " + ", ".join(
                "%d: %d" % item for item in sorted(kinds.items())))
        never = [way for way in wanted if way not in seen]
        print("%d of %d rules used" % (len(wanted) - len(never), len(wanted))
              + ("; never: " + "; ".join(never) if never else ""))

    return case_runner.run_cases(options, new_case, run_case, summary)


if __name__ == "__main__":
    sys.exit(main())
