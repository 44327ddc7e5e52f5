"""The group engine of the second calculation.

Outlines and lines drawn over a mesh are made part of it: the cards and their
check, the defaults file, the cut of the mesh, line elements, joints, regions,
and the records that tell which element belongs to which group.  Everything is
a plain scan in ascending order; every single operation is rounded to 32 bits
unless a name ends in 64.

reference.py holds the rest of the run.  It calls check_cards, then load, and
the engine that load gives back for moves and for what is written.
"""

import math

import boundary
import lineup
import outputs
from reference import (BEAM, CODE_WORDS, CONTINUUM, COUPLED, DISPLACEMENT,
                       DATA, HEAD, LINE_ATTRIBUTES, MAXNUMBER, TEMPERATURE,
                       TRUSS, E, Element, Failure, I, Node, Reader, Stop, add,
                       columns, cut, dist2d, div, expand_list, f32, i_lines,
                       listed, mul, root, sub)

MOST_GROUPS = 500
MOST_POINTS = 1100
MOST_PARTS = 2001
MOST_PATH_NODES = 4000

TINY = f32(1.0e-15)        # below it a line is vertical, a determinant zero
LEVEL = f32(1.0e-10)       # below it two coordinates are alike
FAR = f32(1.0e30)
TENTH, FIFTH, THREE_TENTHS = f32(0.1), f32(0.2), f32(0.3)


# --------------------------------------------------------------------------
# Check of the cards
# --------------------------------------------------------------------------


def short_integers(values):
    return "".join(I(v, 5) + " " for v in values)


def short_reals(values):
    return "".join(E(v, 12, 5) + " " for v in values)


def title_length(line):
    """Last column of the text of a title; 80 at most."""
    used = [c != " " for c in columns(line, 126)]
    length = 0
    for k in range(1, 125):
        if not used[k] and used[k - 1]:
            length = k
    if (not used[125] and used[124]) or length > 80:
        return 80
    return length


def check_cards(run):
    """The cards of the groups into the normalised deck of the run."""
    for label in ("3.3.5.1.1", "3.3.5.2.1"):
        run.check_card(label, 1, 1)
        count = run.put_integers(1)[0]
        if count > 0:
            run.put_list(count)
    run.check_card("3.3.5.3.1", 1, 1)
    if run.put_integers(1)[0] == 1:
        run.check_card("3.3.5.3.2", 4, 4)
        run.put_reals(4)
    run.default(2, 0.0)
    run.check_card("3.3.5.4", 1, 2)
    count, titles = run.put_integers(2)
    run.default(3, 0.0)
    run.check_card("3.3.5.4-1", 2, 3)
    run.put_reals(3)
    for _ in range(count):
        if titles == 1:
            line = run.cards.text()
            run.normal.append(line[:title_length(line)] or " ")
        check_group(run)


def check_group(run):
    for position in range(2, 8):
        run.default(position, 0.0)
    run.check_card("3.3.5.4.1.1", 1, 7)
    given, post, overlay = run.card_integers(3)
    shorthand = given == 5
    mtype = 3 if shorthand else given
    run.normal += i_lines([mtype, post, overlay])
    if mtype == 0:
        return
    if shorthand:
        run.normal += i_lines([0, 1, 0, 1])
    else:
        check_material(run, mtype)
    if post == 1:
        label, first = "3.3.5.4.1.3", None
        for k in range(6):
            run.check_card(label, 2, 2)
            pair = run.card_integers(2)
            if shorthand and k == 0:
                first, pair = pair, [0, 0]
            elif shorthand and k == 1:
                pair = first
            run.normal += i_lines(pair)
        for _ in range(7):
            run.check_card(label, 1, 1)
            run.put_integers(1)
    run.check_card("3.3.5.4.2.1", 5, 5)
    points, move, shift = run.card_integers(3)
    run.normal.append(short_integers([points, 0 if shorthand else move,
                                      shift]) +
                      short_reals(run.cardval[3:5]))
    for _ in range(points):
        run.check_card("3.3.5.4.2.2", 3, 3)
        run.normal.append(short_integers(run.card_integers(1)) +
                          short_reals(run.cardval[1:3]))
    run.default(2, 0.0)
    run.default(3, 0.0)
    run.check_card("3.3.5.4.3", 1, 3)
    segments = run.put_integers(1)[0]
    for k in range(1, segments + 1):
        run.check_card("3.3.5.4.3.1", 4, 4)
        _, ltype, parts, ends = run.card_integers(4)
        if shorthand:
            parts, ends = 0, 3
        run.normal += i_lines([k, ltype, parts, ends])
        if ltype == 2:
            run.check_card("3.3.5.4.3.2", 6, 6)
            run.put_reals(6)


# Fields of the material line by kind of group: i whole number, r real, d a
# real in the displacement kind alone; and the fewest and most values.
MATERIAL_FORMS = {1: ("ii", 2, 2), 2: ("ii", 2, 2), 3: ("idii", 4, 5),
                  4: ("idiii", 4, 5), -2: ("idriiii", 7, 7),
                  -3: ("ididriiii", 9, 10), -4: ("ididriiiii", 9, 10)}


def check_material(run, mtype):
    if mtype not in MATERIAL_FORMS:
        return
    form, low, high = MATERIAL_FORMS[mtype]
    if low != high:
        run.default(high, 0.0)
    run.check_card("3.3.5.4.1.2", low, high)
    if abs(mtype) == 4 and run.cardval[high - 1] == 0.0:
        run.cardval[high - 1] = add(run.cardval[0], 1.0)
    if mtype == -4 and run.kind == HEAD:
        return
    line = ""
    for letter, value in zip(form, run.cardval):
        if letter == "r" or (letter == "d" and run.kind == DISPLACEMENT):
            line += short_reals([value])
        else:
            line += short_integers([cut(value)])
    run.normal.append(line)


# --------------------------------------------------------------------------
# Reading of the cards and of the defaults
# --------------------------------------------------------------------------


class Group:
    """One group of the deck."""

    def __init__(self):
        self.mtype = self.post = self.overlay = self.move = 0
        self.points, self.segments = {}, []
        self.npoint = self.nsegment = 0
        self.words = [0.0] * 10
        self.pairs, self.switches = [[0, 0] for _ in range(6)], [0] * 7
        self.title = ""

    def point(self, k):
        return self.points.get(k, (0.0, 0.0))

    def whole(self, word):
        return cut(self.words[word - 1])


# Words of the material table that a material line fills.
MATERIAL_WORDS = {1: (6, 7), 2: (6, 7), 3: (1, 2, 6, 7), 4: (1, 2, 6, 7, 10),
                  -2: (3, 4, 5, 6, 7, 8, 9),
                  -3: (1, 2, 3, 4, 5, 6, 7, 8, 9),
                  -4: (1, 2, 3, 4, 5, 6, 7, 8, 9, 10)}


class Cards:
    """The group cards of a deck."""

    def __init__(self, channel):
        def reals(count):
            return channel.values("r" * count)

        def integers(count):
            return [cut(v) for v in reals(count)]

        def number_list():
            count = integers(1)[0]
            if count > 500:
                raise Failure("a list of more than 500 values")
            return integers(count) if count > 0 else []

        self.nodes = number_list()
        self.elements = number_list()
        self.bound = integers(1)[0]
        self.limits = reals(4) if self.bound == 1 else None
        count, titles = integers(2)
        self.count = count
        if count > MOST_GROUPS:
            raise Failure("more than %d groups" % MOST_GROUPS)
        self.xref, self.yref, self.head = reals(3)
        self.groups = []
        for _ in range(count):
            group = Group()
            self.groups.append(group)
            if titles == 1:
                group.title = channel.text(80)
            group.mtype, group.post, group.overlay = integers(3)
            if group.mtype == 5:
                group.mtype = 3
            if group.mtype != 0:
                self.read_group(group, reals, integers)

    def read_group(self, group, reals, integers):
        words = MATERIAL_WORDS.get(group.mtype, ())
        if words:
            for word, value in zip(words, reals(len(words))):
                group.words[word - 1] = value
        if group.post == 1:
            group.pairs = [integers(2) for _ in range(6)]
            group.switches = [integers(1)[0] for _ in range(7)]
        npoint, move, shift, xlo, ylo = reals(5)
        group.npoint, group.move, shift = cut(npoint), cut(move), cut(shift)
        if group.npoint > MOST_POINTS:
            raise Failure("more than %d outline points" % MOST_POINTS)
        for _ in range(group.npoint):
            number, x, y = reals(3)
            number = cut(number)
            if not 1 <= number <= MOST_POINTS:
                raise Failure("outline point %d" % number)
            x, y = add(x, xlo), add(y, ylo)
            if shift == 1:
                x, y = add(x, self.xref), add(y, self.yref)
            group.points[number] = (x, y)
        group.nsegment = integers(1)[0]
        if not 0 <= group.nsegment <= MOST_POINTS:
            raise Failure("a group of %d segments" % group.nsegment)
        if group.nsegment != 0:
            group.npoint = group.nsegment + \
                (1 if abs(group.mtype) == 2 else 0)
        for _ in range(group.nsegment):
            number, ltype, parts, ends = integers(4)
            segment = Segment(ltype, parts, ends)
            group.segments.append(segment)
            if ltype == 2:
                xo, yo, rx, ry, qb, qe = reals(6)
                closes = number > 1 and number == group.nsegment and \
                    abs(group.mtype) != 2
                if 0.0 in (mul(rx, rx), mul(ry, ry)) or \
                        (qb == qe and not (closes and rx != ry)):
                    raise Failure("an arc without length")
                degree = f32(0.017453292)
                segment.arc = (add(xo, xlo), add(yo, ylo), rx, ry,
                               mul(qb, degree), mul(qe, degree))
                self.arc_ends(group, number, segment.arc)

    @staticmethod
    def arc_ends(group, number, arc):
        """The ends of an arc stand in for the outline points of the cards."""
        xo, yo, rx, ry, qb, qe = arc
        group.points[number] = ellipt(qb, xo, yo, rx, ry)
        if qb == qe:
            end = (add(xo, mul(ry, cosine(qe))), add(yo, mul(ry, sine(qe))))
        else:
            end = ellipt(qe, xo, yo, rx, ry)
        group.points[number + 1] = end
        if number > 1 and number == group.nsegment and abs(group.mtype) != 2:
            group.points[1] = end


class Segment:
    def __init__(self, ltype, parts, ends):
        self.ltype, self.parts, self.ends = ltype, parts, ends
        self.arc = None


class Defaults:
    """The project's defaults file, made from the package's when missing."""

    def __init__(self, disk):
        master, project = DATA + "DV-BRELAN.dat", "..\\DV-BRELAN.dat"
        if not disk.exists(project):
            disk.put(project, [columns(line, 60)
                               for line in disk.old(master)[:10000]])
        lines = [columns(line, 126) for line in disk.old(project)
                 if line[:1] != "*"]
        disk.put("DV-BRELAN.Tmp", lines)
        reader = Reader(lines)
        self.mode, self.length, self.factor, self.same = reader.values("irrr")
        v = reader.values("iriiiiii")
        self.collapse, self.share = v[0], v[1]
        self.beams, self.trusses = v[2:5], v[5:8]
        self.moves = [reader.values("iir")
                      for _ in range(reader.integers(1)[0])]


# --------------------------------------------------------------------------
# Plane geometry
# --------------------------------------------------------------------------


def sine(angle):
    return f32(math.sin(angle)) if math.isfinite(angle) else math.nan


def cosine(angle):
    return f32(math.cos(angle)) if math.isfinite(angle) else math.nan


def area64(x1, y1, x2, y2, x3, y3):
    """Signed area, positive for a counter-clockwise triangle."""
    return 0.5 * ((y3 - y1) * x2 + (y2 - y3) * x1 + (y1 - y2) * x3)


def area(x1, y1, x2, y2, x3, y3):
    return mul(0.5, add(add(mul(sub(y3, y1), x2), mul(sub(y2, y3), x1)),
                        mul(sub(y1, y2), x3)))


def in_triangle(p, a, b, c):
    def twice64(q, r, s):
        return abs((s[1] - q[1]) * r[0] + (r[1] - s[1]) * q[0] +
                   (q[1] - r[1]) * s[0])

    return twice64(a, b, c) * 0.50005 >= 0.5 * (
        twice64(p, a, b) + twice64(p, b, c) + twice64(p, a, c))


def line_abc(x1, y1, x2, y2):
    dx, dy = sub(x2, x1), sub(y2, y1)
    if abs(dx) >= TINY:
        return div(-dy, dx), 1.0, sub(div(mul(dy, x1), dx), y1)
    return 1.0, 0.0, -x1


def line_cross(first, second, least=None):
    """Meeting point of two lines; None for a determinant below least."""
    a1, b1, c1 = line_abc(*first)
    a2, b2, c2 = line_abc(*second)
    det = sub(mul(a2, b1), mul(a1, b2))
    if least is not None and abs(det) < least:
        return None
    return (div(sub(mul(b2, c1), mul(b1, c2)), det),
            div(sub(mul(a1, c2), mul(a2, c1)), det))


def line_meet(first, second):
    """Meeting point inside the boxes of both segments, or None."""
    meeting = line_cross(first, second, TINY)
    if meeting is None:
        return None
    x, y = meeting
    for x1, y1, x2, y2 in (first, second):
        if not (min(x1, x2) <= x <= max(x1, x2) and
                min(y1, y2) <= y <= max(y1, y2)):
            return None
    return meeting


HORIZONTAL, VERTICAL, RISING, FALLING = 1, 2, 3, 4


def classified(x1, y1, x2, y2):
    """Class of a segment, and its ends in the order that goes with it."""
    if abs(sub(y2, y1)) < LEVEL:
        return HORIZONTAL, (min(x1, x2), y1, max(x1, x2), y2)
    if abs(sub(x2, x1)) < LEVEL:
        return VERTICAL, (x1, min(y1, y2), x2, max(y1, y2))
    if x1 > x2:
        x1, y1, x2, y2 = x2, y2, x1, y1
    return (RISING if y1 < y2 else FALLING), (x1, y1, x2, y2)


def height_on(ends, x):
    xl, yl, xr, yr = ends
    return add(yl, mul(sub(x, xl), div(sub(yr, yl), sub(xr, xl))))


def place_on(ends, y):
    xl, yl, xr, yr = ends
    return add(xl, mul(sub(y, yl), div(sub(xr, xl), sub(yr, yl))))


def alike(first, second):
    """Slopes so near to each other that the segments count as parallel."""
    s1 = div(sub(first[3], first[1]), sub(first[2], first[0]))
    s2 = div(sub(second[3], second[1]), sub(second[2], second[0]))
    return mul(s1, f32(0.9999)) <= s2 <= mul(s1, f32(1.0001))


def in_x(x, ends):
    return ends[0] <= x <= ends[2]


def in_y(y, ends):
    return min(ends[1], ends[3]) <= y <= max(ends[1], ends[3])


def seg_cross(p1, p2, q1, q2):
    """Crossing point of two segments, ends included, or None."""
    c1, s1 = classified(*p1, *p2)
    c2, s2 = classified(*q1, *q2)
    if c1 > c2 and c2 in (HORIZONTAL, VERTICAL):
        c1, s1, c2, s2 = c2, s2, c1, s1
    if c1 == HORIZONTAL:
        if c2 == HORIZONTAL:
            return None
        if c2 == VERTICAL:
            x, y = s2[0], s1[1]
            return (x, y) if in_x(x, s1) and in_y(y, s2) else None
        x, y = place_on(s2, s1[1]), s1[1]
        return (x, y) if in_x(x, s1) and in_x(x, s2) else None
    if c1 == VERTICAL:
        if c2 == VERTICAL:
            return None
        x, y = s1[0], height_on(s2, s1[0])
        return (x, y) if in_y(y, s1) and in_y(y, s2) else None
    if s1[2] < s2[0] or s2[2] < s1[0]:
        return None
    if max(s1[1], s1[3]) < min(s2[1], s2[3]) or \
            max(s2[1], s2[3]) < min(s1[1], s1[3]):
        return None
    if c1 == c2 and alike(s1, s2):
        return None
    return line_meet(s1, s2)


def meeting_of_lines(p1, p2, q1, q2):
    """The same by classes for the lines, without bounds."""
    c1, s1 = classified(*p1, *p2)
    c2, s2 = classified(*q1, *q2)
    if c1 > c2 and c2 in (HORIZONTAL, VERTICAL):
        c1, s1, c2, s2 = c2, s2, c1, s1
    if c1 == HORIZONTAL:
        if c2 == HORIZONTAL:
            return None
        if c2 == VERTICAL:
            return s2[0], s1[1]
        return place_on(s2, s1[1]), s1[1]
    if c1 == VERTICAL:
        if c2 == VERTICAL:
            return None
        return s1[0], height_on(s2, s1[0])
    if c1 == c2 and alike(s1, s2):
        return None
    return line_cross(s1, s2, TINY)


def near_line(end1, end2, node, tolerance):
    """Is the node on the segment?  The answer, the distance by which it was
    judged, and the node's place when it is pulled onto the segment."""
    (x1, y1), (x2, y2), (xn, yn) = end1, end2, node
    d = dist2d(xn, yn, x1, y1)
    if tolerance >= d:
        return True, d, end1
    d = dist2d(xn, yn, x2, y2)
    if tolerance >= d:
        return True, d, end2
    if abs(sub(y2, y1)) < LEVEL:
        if not min(x1, x2) <= xn <= max(x1, x2):
            return False, FAR, node
        d = abs(sub(y1, yn))
        return tolerance >= d, d, (xn, y1)
    if abs(sub(x2, x1)) < LEVEL:
        if not min(y1, y2) <= yn <= max(y1, y2):
            return False, FAR, node
        d = abs(sub(x1, xn))
        return tolerance >= d, d, (x1, yn)
    xl, yl, xr, yr = (x1, y1, x2, y2) if x1 <= x2 else (x2, y2, x1, y1)
    m = div(sub(yr, yl), sub(xr, xl))
    inverse = div(1.0, m)
    xf = div(add(add(sub(yn, yl), mul(xl, m)), div(xn, m)), add(inverse, m))
    yf = add(mul(sub(xf, xl), m), yl)
    d = dist2d(xn, yn, xf, yf)
    if tolerance < d:
        return False, d, node
    if not (xl <= xf <= xr and min(yl, yr) <= yf <= max(yl, yr)):
        return False, d, node
    return True, d, (xf, yf)


def offset(t, p, q):
    """The segment shifted by t to the left of its direction."""
    dx, dy = sub(q[0], p[0]), sub(q[1], p[1])
    length = dist2d(p[0], p[1], q[0], q[1])
    x, y = mul(div(dy, length), t), mul(div(dx, length), t)
    return (sub(p[0], x), add(p[1], y)), (sub(q[0], x), add(q[1], y))


def mitre(first, second):
    """Corner of two shifted segments that follow one another."""
    (_, end), (start, _) = first, second
    near, same = f32(0.001), f32(1.0e-5)
    if abs(sub(end[0], start[0])) <= near and \
            abs(sub(end[1], start[1])) <= near:
        return end
    one, other = (*first[0], *first[1]), (*second[0], *second[1])
    a1, _, c1 = line_abc(*one)
    a2, _, c2 = line_abc(*other)
    if abs(sub(a1, a2)) <= same and abs(sub(c1, c2)) <= same:
        return end
    return line_cross(one, other)


def ellipt(q, xo, yo, rx, ry):
    """Point of an ellipse at a polar angle."""
    s, c = sine(q), cosine(q)
    ss, cc, rx2, ry2 = mul(s, s), mul(c, c), mul(rx, rx), mul(ry, ry)
    d = add(mul(rx2, ss), mul(ry2, cc))
    dx = root(div(mul(mul(cc, rx2), ry2), d))
    dy = root(div(mul(mul(ss, rx2), ry2), d))
    return add(xo, math.copysign(dx, c)), add(yo, math.copysign(dy, s))


class ArcTable:
    """Running length of an arc in a thousand chords."""

    def __init__(self, qb, qe, rx, ry, parts):
        step = div(sub(qe, qb), 1000.0)
        self.q, self.l = [qb], [0.0]
        before = ellipt(qb, 0.0, 0.0, rx, ry)
        for _ in range(1000):
            self.q.append(add(self.q[-1], step))
            here = ellipt(self.q[-1], 0.0, 0.0, rx, ry)
            self.l.append(add(self.l[-1], dist2d(*before, *here)))
            before = here
        self.parts = parts
        self.step = div(self.l[1000], float(parts)) if parts > 0 \
            else self.l[1000]

    def angle(self, k, qe):
        if k == self.parts:
            return qe
        s = mul(float(k), self.step)
        q, l = self.q, self.l
        for i in range(1, 1001):
            if l[i - 1] <= s <= l[i]:
                return add(q[i - 1],
                           div(mul(sub(s, l[i - 1]), sub(q[i], q[i - 1])),
                               sub(l[i], l[i - 1])))
        return 0.0


def mean(points):
    """Sum in order, then the division."""
    x, y = points[0]
    for px, py in points[1:]:
        x, y = add(x, px), add(y, py)
    return div(x, float(len(points))), div(y, float(len(points)))


# --------------------------------------------------------------------------
# Rows of a cut
# --------------------------------------------------------------------------

# Sides of a row in the order in which they are looked at: the corners A and
# B, the corners that follow A and B away from the side, the slot of the mark.
QUAD_SIDES = ((0, 1, 3, 2, 0), (1, 2, 0, 3, 1), (2, 3, 1, 0, 2),
              (3, 0, 2, 1, 3))
TRIANGLE_SIDES = ((0, 1, 2, 2, 2), (1, 2, 0, 0, 0), (2, 0, 1, 1, 1))


class Row:
    """An element of a cut: corners, marks, material, element number."""

    def __init__(self, corners, material, number):
        self.n = list(corners)
        self.v = [0] * len(self.n)
        self.s = [0] * len(self.n)
        self.c = 0
        self.material, self.number = material, number

    def sides(self):
        return QUAD_SIDES if len(self.n) == 4 else TRIANGLE_SIDES

    def slot(self, lo, hi):
        """Slot of the side between two nodes, or None."""
        for a, b, _, _, slot in self.sides():
            if (min(self.n[a], self.n[b]), max(self.n[a], self.n[b])) == \
                    (lo, hi):
                return slot
        return None

    def parts(self):
        """Corner lists of the parts; empty when the row stays whole."""
        names = {"N%d" % (k + 1): n for k, n in enumerate(self.n)}
        names.update(("S%d" % (k + 1), s) for k, s in enumerate(self.s))
        names["C"] = self.c
        pattern = triangle_pattern(self) if len(self.n) == 3 \
            else quad_pattern(self)
        return [[names[w] for w in part.split()] for part in pattern]


def triangle_pattern(row):
    v1, v2, v3 = (v == 1 for v in row.v)
    s1, s2, s3 = (s != 0 for s in row.s)
    if row.c != 0:
        if not (v1 or v2 or v3):
            if s1:
                return "N1 N2 C", "C N2 S1", "C S1 N3", "N1 C N3"
            if s2:
                return "N1 N2 C", "C N2 N3", "S2 C N3", "N1 C S2"
            if s3:
                return "N1 S3 C", "C S3 N2", "C N2 N3", "N1 C N3"
        return "N1 N2 C", "C N2 N3", "N1 C N3"
    if s1 and s2:
        return "N1 N2 S1 S2", "S2 S1 N3"
    if s1 and s3:
        return "N1 S3 S1 N3", "S3 N2 S1"
    if s2 and s3:
        return "N1 S3 S2", "S2 S3 N2 N3"
    if v1 and s1:
        return "N1 N2 S1", "N1 S1 N3"
    if v2 and s2:
        return "N1 N2 S2", "S2 N2 N3"
    if v3 and s3:
        return "N1 S3 N3", "S3 N2 N3"
    return ()


def quad_pattern(row):
    v1, v2, v3, v4 = (v == 1 for v in row.v)
    s1, s2, s3, s4 = (s != 0 for s in row.s)
    if row.c != 0:
        if not (v1 or v2 or v3 or v4):
            if s1:
                return ("N1 S1 C", "S1 N2 C", "N2 N3 C", "C N3 N4", "N1 C N4")
            if s2:
                return ("N1 N2 C", "N2 S2 C", "C S2 N3", "C N3 N4", "N1 C N4")
            if s3:
                return ("N1 N2 C", "N2 N3 C", "C N3 S3", "C S3 N4", "N1 C N4")
            if s4:
                return ("N1 N2 C", "N2 N3 C", "C N3 N4", "S4 C N4", "N1 C S4")
        return "N1 N2 C", "N2 N3 C", "C N3 N4", "N1 C N4"
    nv, ns = v1 + v2 + v3 + v4, s1 + s2 + s3 + s4
    along_13 = "N1 N2 N3", "N1 N3 N4"
    along_24 = "N1 N2 N4", "N2 N3 N4"
    if ns == 0 and nv == 1:
        return ()
    if ns == 0 and nv == 2:
        if v1 and v3:
            return along_13
        if v2 and v4:
            return along_24
        return ()
    if ns == 0 and nv == 3:
        return along_24 if v1 and v3 else along_13
    if ns >= 2:
        if s1 and s2:
            return "S1 N2 S2", "N1 S1 S2 N3", "N1 N3 N4"
        if s1 and s3:
            return "S1 N2 N3 S3", "N1 S1 S3 N4"
        if s1 and s4:
            return "N2 N3 N4", "S1 N2 N4 S4", "N1 S1 S4"
        if s2 and s4:
            return "N1 N2 S2 S4", "S4 S2 N3 N4"
        if s2 and s3:
            return "S2 N3 S3", "N2 S2 S3 N4", "N1 N2 N4"
        return "N1 N2 N3", "N1 N3 S3 S4", "S4 S3 N4"
    if v1:
        if v2 and v3:
            return along_24
        if s2:
            return "N1 N2 S2", "N1 S2 N3 N4"
        if v3:
            return along_13
        if s3:
            return "N1 N2 N3 S3", "N1 S3 N4"
        return ()
    if v2:
        if v3 and v4:
            return along_13
        if s3:
            return "N2 N3 S3", "N1 N2 S3 N4"
        if v4:
            return "N2 N3 N4", "N1 N2 N4"
        if s4:
            return "N1 N2 S4", "S4 N2 N3 N4"
        return ()
    if v3:
        if s1:
            return "S1 N2 N3", "N1 S1 N3 N4"
        if s4:
            return "N1 N2 N3 S4", "S4 N3 N4"
        return ()
    if v4:
        if s2:
            return "N1 N2 S2 N4", "S2 N3 N4"
        if s1:
            return "S1 N2 N3 N4", "N1 S1 N4"
    return ()


# --------------------------------------------------------------------------
# The engine
# --------------------------------------------------------------------------


class LineRecord:
    """A line of the groups whose final coordinates are wanted at the end."""

    def __init__(self, group, closed, nodes, thickness, mtype, first,
                 second=(0, 0), twins=None):
        self.group, self.closed, self.nodes = group, closed, list(nodes)
        self.thickness, self.mtype = thickness, mtype
        self.first, self.second, self.twins = first, second, twins


class Listing:
    """A row of the group listing: an outline, a line or a joint strip."""

    def __init__(self, group, kind, mtype, closed, points):
        self.group, self.kind, self.mtype = group, kind, mtype
        self.closed, self.points = closed, list(points)


OUTLINE, LINE, STRIP = 0, 1, 2


class Engine:
    def __init__(self, run, result, cards, defaults):
        self.run, self.kind = run, run.kind
        self.cards, self.defaults = cards, defaults
        self.nodes, self.elements = result.nodes, result.elements
        self.types = result.types
        for node in self.nodes.values():
            node.codes = list(node.codes) + [0] * (5 - len(node.codes))
        self.numnp = max(self.nodes, default=0)
        self.ncont = max(self.elements, default=0)
        self.elist = {e: e for e in self.elements}
        self.sign = {}
        self.frozen = set()
        self.freeze()
        self.set_tolerances()
        self.rows = []
        self.listing, self.records = [], []
        self.counters = {BEAM: 0, TRUSS: 0}
        self.group_number = 0
        self.sections = 0           # open truss lines of the head kind
        self.marks = {}             # last line group at a node, in 8 bits
        self.path_nodes = {}        # nodes on the line of each group
        self.merges = []            # pairs that line-up asks for

    # -- tables ---------------------------------------------------------------

    def at(self, n):
        node = self.nodes.get(n)
        return (node.x, node.y) if node else (0.0, 0.0)

    def codes(self, n):
        """A node's record; a number not in use has an empty one."""
        return self.nodes.setdefault(n, Node([0] * 5, 0.0, 0.0))

    def corners(self, e):
        return [n for n in self.elements[e].words[:4] if n > 0]

    def middle(self, e):
        return mean([self.at(n) for n in self.corners(e)])

    def is_joint(self, e):
        attributes = self.elements[e].attributes
        if self.kind == DISPLACEMENT:
            return attributes[1] < 0.0
        if self.kind == COUPLED:
            return attributes[0] > 0
        return attributes[0] < 0

    def type(self, e):
        return self.types.get(e, 0)

    def selected(self):
        """Continuum elements that the lists of the cards leave alone."""
        return [e for e in sorted(self.elements)
                if self.type(e) == CONTINUUM and self.elist.get(e, 0) != 0]

    def freeze(self):
        cards = self.cards
        for n, node in self.nodes.items():
            if node.codes[0] != 0 or node.codes[1] != 0:
                self.frozen.add(n)
            if cards.limits:
                xmin, ymin, xmax, ymax = cards.limits
                if node.x <= xmin or node.x >= xmax or \
                        node.y <= ymin or node.y >= ymax:
                    self.frozen.add(n)
        self.frozen |= expand_list(cards.nodes)
        for e in expand_list(cards.elements):
            if e in self.elements:
                self.elist[e] = 0
                self.frozen.update(self.corners(e))

    def set_tolerances(self):
        shortest = f32(1.0e35)
        for e in sorted(self.elements):
            if self.type(e) == CONTINUUM and not self.is_joint(e):
                corners = self.corners(e)
                for k, a in enumerate(corners):
                    for b in corners[k + 1:]:
                        if a != b:
                            shortest = min(shortest, dist2d(*self.at(a),
                                                            *self.at(b)))
        d = self.defaults
        part = mul(shortest, d.factor)
        self.tol_same = d.same
        if d.mode == 0:
            self.tol_move = self.tol_line = d.length
        elif d.mode == 1:
            self.tol_move = self.tol_line = part
        else:
            self.tol_line, self.tol_move = part, d.length

    def checked(self, place):
        if not (math.isfinite(place[0]) and math.isfinite(place[1])):
            raise Failure("group %d: a coordinate is not a number"
                          % self.group_number)
        return place

    def add_node(self, place, codes, h=0.0, cf=0.0):
        self.numnp += 1
        if self.numnp > MAXNUMBER:
            raise Failure("a node number beyond %d" % MAXNUMBER)
        x, y = self.checked(place)
        self.nodes[self.numnp] = Node(codes, x, y, h, cf)
        self.frozen.discard(self.numnp)
        return self.numnp

    def move_node(self, n, place):
        node = self.codes(n)
        node.x, node.y = self.checked(place)

    def add_element(self, corners, material, attributes, kind, listed_as,
                    midside=(0, 0, 0, 0)):
        self.ncont += 1
        if self.ncont > MAXNUMBER:
            raise Failure("an element number beyond %d" % MAXNUMBER)
        e = self.ncont
        self.elements[e] = Element(
            (list(corners) + [0])[:4] + list(midside) + [material],
            attributes)
        self.types[e] = kind
        self.elist[e] = e if listed_as == "own" else listed_as
        return e

    def follow(self, codes, h, cf, numbers):
        """Code words, head and factor of a new node, after its neighbours."""
        for n in numbers:
            node = self.codes(n)
            for w in range(CODE_WORDS[self.kind]):
                if self.kind in (TEMPERATURE, HEAD):
                    if node.codes[w] != 0:
                        codes[w] = node.codes[w]
                elif node.codes[w] == 0:
                    codes[w] = 0
            if self.kind in (TEMPERATURE, HEAD):
                if node.h != 0.0:
                    h = node.h
                if node.cf != 0.0:
                    cf = node.cf
        return codes, h, cf

    # -- driver ---------------------------------------------------------------

    def groups(self):
        used = [n for e in self.elements if self.type(e) != 0
                for n in self.corners(e)]
        self.x_low = min((self.at(n)[0] for n in used), default=0.0)
        self.x_high = max((self.at(n)[0] for n in used), default=0.0)
        self.y_low = min((self.at(n)[1] for n in used), default=0.0)
        for number, group in enumerate(self.cards.groups, 1):
            if group.mtype != 0:
                self.group_number, self.group = number, group
                try:
                    self.one_group()
                except Stop:
                    self.leave_scratch()
                    raise
        for record in self.records:
            self.group_number = record.group
            if record.mtype < 0:
                self.twin_fix(record)
        for record in self.records:
            self.group_number = record.group
            self.list_record(record)
        self.run.disk.delete("JOINT.TMP")
        self.repair_quads()

    def one_group(self):
        g = self.group
        mtype = g.mtype
        self.saved = {}
        self.npoint = g.npoint
        if abs(mtype) == 2 and g.npoint > 1 and \
                dist2d(*g.point(1), *g.point(g.npoint)) < self.tol_same:
            self.npoint -= 1
        self.closed = 1 if g.nsegment == self.npoint else 0
        self.out = {k: g.point(k) for k in range(1, self.npoint + 2)}
        free = mtype == 2 and g.overlay == 1
        self.build_path(free)
        self.line = []
        if not free:
            self.list_nodes()
        elif g.nsegment >= 1:
            self.line = [self.free_node(p) for p in self.path]
        if len(self.line) > MOST_PATH_NODES:
            raise Failure("more than %d nodes on a path" % MOST_PATH_NODES)
        self.path_nodes[self.group_number] = list(self.line)
        if 1 <= mtype <= 4:
            ltp, lmat = g.whole(6), g.whole(7)
            if ltp != 0 and lmat != 0:
                self.records.append(LineRecord(
                    self.group_number, self.closed, self.line, 0.0, mtype,
                    (ltp, lmat)))
            self.line_elements(ltp, lmat, self.line)
        elif -4 <= mtype <= -2:
            self.joint()
        self.add_listing(OUTLINE, mtype, self.closed, self.path,
                         self.group_number)
        self.region()

    def leave_scratch(self):
        """The work files as a stop between two groups leaves them."""
        lines = []
        for row in self.listing:
            lines += [listed(row.group, row.kind),
                      listed(row.mtype, row.closed), listed(len(row.points))]
            lines += [listed(x, y) for x, y in row.points]
        self.run.disk.put("GROUP.TMP", lines)
        lines = []
        for r in self.records:
            lines += [listed(r.group),
                      listed(r.closed, len(r.nodes), r.thickness, r.mtype),
                      listed(*r.first), listed(*r.nodes)]
            if r.mtype < 0:
                lines += [listed(*r.second), listed(*r.twins)]
        self.run.disk.put("JOINT.TMP", lines)

    def add_listing(self, kind, mtype, closed, points, group):
        if len(self.listing) >= MOST_GROUPS:
            raise Failure("more than %d rows of the group listing"
                          % MOST_GROUPS)
        for place in points:
            self.checked(place)
        self.listing.append(Listing(group, kind, mtype, closed, points))

    def list_record(self, record):
        line = [self.at(n) for n in record.nodes]
        rows = [(record.first, line)]
        if record.mtype < 0:
            twins = [self.at(n) for n in record.twins]
            rows.append((record.second, twins))
        for (kind, material), points in rows:
            if kind != 0 and material != 0:
                self.add_listing(LINE, record.mtype, record.closed, points,
                                 record.group)
        if record.mtype < 0:
            strip = [p for pair in zip(line, twins) for p in pair]
            self.add_listing(STRIP, record.mtype, record.closed, strip,
                             record.group)

    # -- path -----------------------------------------------------------------

    def build_path(self, free):
        g = self.group
        self.singles = set()
        if g.nsegment < 1:
            self.path = [self.out[k] for k in range(1, self.npoint + 1)]
            self.close_path()
            return
        self.path = [self.out[1]]
        self.last = self.out[1]
        for k, segment in enumerate(g.segments, 1):
            parts = abs(segment.parts)
            single = segment.parts == 1 and segment.ends == 0
            straight = segment.ltype == 1
            if segment.ltype == 2:
                xo, yo, rx, ry, qb, qe = segment.arc
                straight = qb == qe
                if straight:
                    self.out[k] = ellipt(qb, xo, yo, rx, ry)
                    self.out[k + 1] = ellipt(qe, xo, yo, rx, ry)
                    self.last = self.out[k]
                    if k == 1:
                        self.path[0] = self.out[k]
                else:
                    if parts == 0:
                        turn = mul(sub(qe, qb), f32(63.661976))
                        parts = abs(nearest(turn))
                        if parts < 21:
                            parts = 20
                    points = self.arc_points(segment.arc, parts)
            elif not straight:
                continue
            if straight:
                parts = parts or 1
                end = self.out[1] if k == self.npoint else self.out[k + 1]
                points = straight_points(self.out[k], end, parts)
            if not free:
                self.cut_along(segment, points, straight)
            self.last = points[parts]
            if straight and single:
                self.singles.add(len(self.path))
            drop_last = k == self.npoint and (straight or free)
            self.path += points[1:parts] if drop_last else points[1:]
        self.close_path()

    def close_path(self):
        """Edges of the path; the last one of a closed path leads back."""
        ends = list(self.path)
        if self.group.nsegment == self.npoint and ends:
            ends.append(ends[0])
        self.edges = list(zip(ends, ends[1:]))

    @staticmethod
    def arc_points(arc, parts):
        xo, yo, rx, ry, qb, qe = arc
        if parts > MOST_PARTS:
            raise Failure("more than %d parts of a segment" % MOST_PARTS)
        points = [ellipt(qb, xo, yo, rx, ry)]
        if rx != ry:
            table = ArcTable(qb, qe, rx, ry, parts)
            points += [ellipt(table.angle(i, qe), xo, yo, rx, ry)
                       for i in range(1, parts + 1)]
        else:
            step, q = div(sub(qe, qb), float(parts)), qb
            for _ in range(parts):
                q = add(q, step)
                points.append(ellipt(q, xo, yo, rx, ry))
        return points

    def cut_along(self, segment, points, straight):
        parts, ends = len(points) - 1, segment.ends
        pairs = []
        for i in range(1, parts + 1):
            p1 = self.last if i == 1 else points[i - 1]
            p2 = points[i]
            if i == parts and not straight:
                qb, qe = segment.arc[4:]
                if qb == 0.0 and f32(6.282557) <= qe <= f32(6.283814):
                    p2 = self.last
            pairs.append((p1, p2, i == 1 and ends in (0, -1, -2, 2),
                          i == parts and ends in (0, 1, -2, 2)))
        self.ends = ends
        if ends == 3:
            return
        self.deferred = segment.parts <= 0
        self.rows = []
        if self.deferred:
            for p1, p2, _, _ in pairs:
                self.collect(p1, p2)
        for p1, p2, place1, place2 in pairs:
            if not self.deferred:
                self.rows = []
                self.collect(p1, p2)
            if place1:
                self.place_end(p1, p2)
            if place2:
                self.place_end(p2, p1)
            if ends != 0:
                self.scan_sides(p1, p2)
            if not self.deferred:
                self.split_rows()
        if self.deferred:
            self.split_rows()

    def free_node(self, place):
        """Node of a free line: one that is there, or a new one."""
        unused_here = dist2d(0.0, 0.0, *place) < self.tol_same
        for n in range(1, self.numnp + 1):
            node = self.nodes.get(n)
            if node is None:
                if unused_here:
                    return n
            elif dist2d(node.x, node.y, *place) < self.tol_same:
                return n
        return self.add_node(place, [0, 0, 0, 0, 1])

    def list_nodes(self):
        """Mesh nodes on the path, in order along it."""
        solid = [e for e in self.selected() if not self.is_joint(e)]
        for k, (start, end) in enumerate(self.edges, 1):
            found, names = [], set(self.line)
            for e in solid:
                for n in self.corners(e):
                    on, _, place = near_line(start, end, self.at(n),
                                             self.tol_line)
                    if on and n not in names:
                        names.add(n)
                        found.append((dist2d(*start, *place), n))
            ordered = []
            while found:
                pick = 0
                for j in range(1, len(found)):
                    if found[j][0] <= found[pick][0]:
                        pick = j
                ordered.append(found.pop(pick)[1])
            if k in self.singles:
                if k == 1:
                    if len(ordered) > 2:
                        ordered = [ordered[0], ordered[-1]]
                else:
                    ordered = ordered[-1:]
            for n in ordered:
                if not self.line or self.line[-1] != n:
                    self.line.append(n)

    # -- cut ------------------------------------------------------------------

    def collect(self, p1, p2):
        def open_elements():
            return [e for e in self.selected()
                    if self.elements[e].words[0] > 0]

        def take(e):
            words = self.elements[e].words
            self.rows.append(Row(words[:4] if words[3] > 0 else words[:3],
                                 words[8], e))
            words[0] = -words[0]

        for p in (p1, p2):
            for e in open_elements():
                words = self.elements[e].words
                a, b, c = (self.at(n) for n in words[:3])
                if in_triangle(p, a, b, c) or (
                        words[3] > 0 and
                        in_triangle(p, a, c, self.at(words[3]))):
                    take(e)
        for e in open_elements():
            words = self.elements[e].words
            ring = words[:4] if words[3] > 0 else words[:3]
            if any(seg_cross(p1, p2, self.at(n), self.at(m))
                   for n, m in zip(ring, ring[1:] + ring[:1])):
                take(e)

    def place_end(self, p, other):
        for row in self.rows:
            places = [self.at(n) for n in row.n]
            if not (in_triangle(p, *places[:3]) or (
                    len(places) == 4 and
                    in_triangle(p, places[0], places[2], places[3]))):
                continue
            g = mean(places)
            for a, b, _, _, slot in row.sides():
                if in_triangle(p, places[a], places[b], g):
                    self.end_node(p, other, row, a, b, slot)
                    return

    def end_node(self, p, q0, row, ia, ib, slot):
        a, b = row.n[ia], row.n[ib]
        pa, pb = self.at(a), self.at(b)
        da, db = dist2d(*pa, *p), dist2d(*pb, *p)
        nearest_corner = ib if db < da else ia
        if row.n[nearest_corner] not in self.frozen:
            self.move_node(row.n[nearest_corner], p)
            self.mark_corner(row, nearest_corner)
            return
        q = meeting_of_lines(q0, p, pa, pb)
        if q is None:
            return
        dp, d0 = dist2d(*q, *p), dist2d(*q, *q0)
        length, da = dist2d(*pa, *pb), dist2d(*pa, *q)
        both = a in self.frozen and b in self.frozen
        if dp <= mul(FIFTH, d0):
            if mul(length, 0.5) < da:
                if abs(sub(length, da)) <= mul(TENTH, length):
                    if both:
                        self.move_node(b, q)
                    self.mark_corner(row, ib)
                    return
                clear, base = mul(THREE_TENTHS, length) < sub(length, da), pb
            else:
                if da <= mul(TENTH, length):
                    if both:
                        self.move_node(a, q)
                    self.mark_corner(row, ia)
                    return
                clear, base = mul(THREE_TENTHS, length) < da, pa
            if not clear:
                q = tuple(add(base[k], mul(THREE_TENTHS, sub(pb[k], pa[k])))
                          for k in (0, 1))
            self.mark_side(row, a, b, slot, q)
            return
        place = p
        if dp <= mul(0.5, d0):
            place = tuple(sub(q[k], mul(0.5, sub(q[k], q0[k])))
                          for k in (0, 1))
        codes = {COUPLED: [1, 1, 1, 1, 1], DISPLACEMENT: [1, 1, 1, 0, 0],
                 TEMPERATURE: [0, 0, 0, 0, 0], HEAD: [1, 1, 1, 0, 0]}
        row.c = self.add_node(place, *self.follow(
            codes[self.kind], 0.0, 0.0, [n for n in row.n if n > 0]))

    def scan_sides(self, p1, p2):
        for row in self.rows:
            for ia, ib, ja, jb, slot in row.sides():
                if self.cut_side(row, ia, ib, ja, jb, slot, p1, p2):
                    continue
                if row.s[slot] != 0 and not self.deferred:
                    self.clear_side(row, ia, ib)

    def cut_side(self, row, ia, ib, ja, jb, slot, p1, p2):
        """One side of a row; true when nothing more is due for the side."""
        a, b = row.n[ia], row.n[ib]
        pa, pb = self.at(a), self.at(b)
        da = near_line(p1, p2, pa, self.tol_line)[1]
        db = near_line(p1, p2, pb, self.tol_line)[1]
        if da < self.tol_move and db < self.tol_move:
            return False
        x = seg_cross(p1, p2, pa, pb)
        if x is None:
            return False
        length, d = dist2d(*pa, *pb), dist2d(*pa, *x)
        only_move = self.ends == -2
        if mul(length, 0.5) < d:
            near, far, inear, jnear, rest = b, a, ib, jb, abs(sub(length, d))
        else:
            near, far, inear, jnear, rest = a, b, ia, ja, d
        if near not in self.frozen or far in self.frozen:
            self.move_node(near, x)
            if not only_move:
                self.mark_corner(row, inear)
            return False
        share = TENTH
        across = dist2d(*self.at(row.n[jnear]), *self.at(near))
        if across < length:
            share = div(mul(TENTH, across), length)
        if mul(share, length) < rest:
            if only_move:
                return near == a or self.kind == DISPLACEMENT
            self.mark_side(row, a, b, slot, x)
            return True
        if not only_move:
            self.mark_corner(row, inear)
        return False

    def mark_corner(self, row, corner):
        """A corner on the line: the rows around it learn of it."""
        for other in self.rows:
            if other is not row and other.number > 0:
                for k, n in enumerate(other.n):
                    if n == row.n[corner]:
                        other.v[k] = 1
        row.v[corner] = 1

    def mark_side(self, row, a, b, slot, place):
        lo, hi = min(a, b), max(a, b)
        for other in self.rows:
            k = other.slot(lo, hi)
            if k is not None and other.s[k] != 0:
                row.s[slot] = other.s[k]
                return
        start = {COUPLED: [1, 1, 1, 1, 1], DISPLACEMENT: [1, 1, 1, 0, 0]}
        n = self.add_node(place, *self.follow(
            start.get(self.kind, [0, 0, 0, 0, 0]), 0.0, 0.0, (lo, hi)))
        for other in self.rows:
            k = other.slot(lo, hi)
            if k is not None and other.number > 0:
                other.s[k] = n

    def clear_side(self, row, ia, ib):
        lo, hi = min(row.n[ia], row.n[ib]), max(row.n[ia], row.n[ib])
        for other in self.rows:
            k = other.slot(lo, hi)
            if k is not None:
                other.s[k] = 0

    def split_rows(self):
        self.deferred = False
        for row in self.rows:
            if row.number > 0 and sum(row.v) >= (1 if row.c != 0 else 2):
                for ia, ib, _, _, slot in row.sides():
                    if row.s[slot] != 0:
                        self.clear_side(row, ia, ib)
        for row in list(self.rows):
            parts = row.parts()
            if parts:
                self.rows += [Row(part, row.material, row.number)
                              for part in parts]
                row.number = -row.number
        for row in self.rows:
            if row.number <= 0:
                continue
            element = self.elements[row.number]
            if element.words[0] <= 0:
                element.words[:4] = (row.n + [0])[:4]
                element.words[8] = row.material
                self.types[row.number] = CONTINUUM
            else:
                self.add_element(row.n, row.material, element.attributes,
                                 CONTINUUM, "own")
        self.rows = []

    # -- line elements and joints -----------------------------------------------

    def line_elements(self, ltp, lmat, nodes):
        c = len(nodes)
        if self.group.move == 1:
            self.frozen.update(nodes)
        size = abs(ltp)
        kind = {2: BEAM, 3: TRUSS, 4: TRUSS, 5: TRUSS}.get(size)
        if size in self.counters:
            self.counters[size] += 1
        if self.kind == HEAD and size == 3 and not self.closed:
            self.sections += 1
        if kind is None or c == 0:
            return
        ring = nodes + nodes[:1] if self.closed else nodes
        pairs = list(zip(ring, ring[1:]))
        if self.closed and size == 2 and self.kind in (COUPLED, DISPLACEMENT):
            pairs = [(nodes[0], nodes[c - 1])] + \
                [(nodes[c - i + 1], nodes[c - i]) for i in range(2, c + 1)]
        for i, (a, b) in enumerate(pairs, 1):
            e = self.add_element((a, b, b, a), lmat,
                                 LINE_ATTRIBUTES[self.kind], kind, "own")
            if ltp < 0:
                self.sign[e] = -1
            self.marks[a] = self.marks[b] = self.group_number % 256
            self.line_codes(size, lmat, a, b, i, len(pairs), c)

    def line_codes(self, size, lmat, a, b, i, count, c):
        """Code words of the nodes of line element i of count."""
        one, other = self.codes(a).codes, self.codes(b).codes
        if self.kind in (COUPLED, DISPLACEMENT):
            if size == 2:
                word = 4 if self.kind == COUPLED else 2
                one[word] = other[word] = 0
            return
        if size in (4, 5):
            for codes in (one, other):
                codes[0:2] = [size - 4, lmat]
            return
        if self.kind == HEAD and size == 3:
            if not self.closed:
                for codes in (one, other):
                    codes[0:2] = [3, 0]
            return
        total = -c if self.closed and size == 3 else c
        running = self.counters[size]
        if i == 1:
            one[:] = [size, lmat, running, 1, total]
        if self.closed and i == count:
            return
        other[:] = [size, lmat, running, i + 1, total]

    def twin_places(self, nodes, thickness, closed):
        """Places of the nodes' twins, to the left at the joint's width."""
        t, c = abs(thickness), len(nodes)
        places = [self.at(n) for n in nodes]
        if c < 2:
            return places
        shifted = [offset(t, p, q) for p, q in zip(places, places[1:])]
        inner = [mitre(shifted[k - 1], shifted[k]) for k in range(1, c - 1)]
        if not closed:
            return [shifted[0][0]] + inner + [shifted[-1][1]]
        closing = offset(t, places[-1], places[0])
        return [mitre(closing, shifted[0])] + inner + \
            [mitre(shifted[-1], closing)]

    def joint(self):
        g, line, c = self.group, self.line, len(self.line)
        thickness = g.words[4]
        first, second = (g.whole(6), g.whole(7)), (g.whole(8), g.whole(9))
        twins = []
        for n, place in zip(line, self.twin_places(line, thickness,
                                                   self.closed)):
            words = CODE_WORDS[self.kind]
            node = self.codes(n)
            codes = node.codes[:words] + [0] * (5 - words)
            twins.append(self.add_node(place, codes, node.h, node.cf))
        self.frozen.update(line)
        self.frozen.update(twins)
        self.records.append(LineRecord(
            self.group_number, self.closed, line, thickness, g.mtype, first,
            second, twins))
        code = g.whole(4)
        attributes = {COUPLED: [1, code, 0, 0, 0.0],
                      DISPLACEMENT: [1.0, -1.0],
                      TEMPERATURE: [-abs(code) - 200],
                      HEAD: [-abs(code) - 200]}[self.kind]
        if c > 1:
            for k in range(c if self.closed else c - 1):
                m = (k + 1) % c
                self.add_element((line[k], line[m], twins[m], twins[k]),
                                 g.whole(3), attributes, CONTINUUM, 0)
        if abs(g.mtype) == 4 or thickness <= 0.0:
            self.move_across(line, twins)
        self.line_elements(*first, line)
        self.line_elements(*second, twins)

    def move_across(self, line, twins):
        if len(line) < 2:
            return  # a line of one node has no sides
        for e in sorted(self.elements):
            if self.type(e) == 0 or self.is_joint(e):
                continue
            words = self.elements[e].words
            before, g = words[:4], self.middle(e)
            for j in range(4):
                for k, n in enumerate(line):
                    if words[j] > 0 and words[j] == n:
                        left = self.left_of(line, k, g)
                        if left == (self.sign.get(e, 0) >= 0):
                            self.saved[e] = before
                            words[j] = twins[k]

    def left_of(self, line, k, g):
        places = [self.at(n) for n in line]
        c = len(places)
        if self.closed:
            return self.inside(places, g)
        if k == 0:
            return area(*places[0], *places[1], *g) >= 0.0
        if k == c - 1:
            return area(*places[c - 2], *places[c - 1], *g) >= 0.0
        before, here, after = places[k - 1:k + 2]
        one, other = area64(*before, *here, *g), area64(*here, *after, *g)
        if area64(*before, *here, *after) >= 0.0:
            return False if one < 0.0 else other >= 0.0
        return True if one >= 0.0 else other >= 0.0

    def inside(self, polygon, p):
        """Is the point in the polygon?  Counted along the line of its height."""
        count = len(polygon)
        if count < 1:
            return True
        if count > MOST_PARTS:
            self.run.show(listed(" NB = ", count)[1:])
            raise Stop("222")
        crossings = 0
        for k in range(count):
            low, high = polygon[k], polygon[(k + 1) % count]
            if low[1] == high[1]:
                continue
            if low[1] > high[1]:
                low, high = high, low
            if p[1] == high[1] or low[1] < p[1] < high[1]:
                x = add(low[0], mul(sub(p[1], low[1]),
                                    div(sub(high[0], low[0]),
                                        sub(high[1], low[1]))))
                if sub(x, p[0]) < 0.0:
                    crossings += 1
        return crossings % 2 == 1

    def twin_fix(self, record):
        """Twins once more, from where the line's nodes are in the end."""
        places = self.twin_places(record.nodes, record.thickness,
                                  record.closed)
        t = abs(record.thickness)
        small = f32(0.0001)
        for n, twin, place in zip(record.nodes, record.twins, places):
            (x, y), (xt, yt) = self.at(n), place
            if x < add(self.x_low, small) or x > sub(self.x_high, small):
                d = sub(yt, y)
                if abs(d) >= LEVEL:
                    yt, xt = add(y, div(mul(t, t), d)), x
            if y < add(self.y_low, small):
                d = sub(xt, x)
                if abs(d) >= LEVEL:
                    xt, yt = add(x, div(mul(t, t), d)), y
            self.move_node(twin, (xt, yt))

    # -- regions ----------------------------------------------------------------

    def group_attributes(self, e_attributes=None):
        """Attributes that a group gives to its elements."""
        g = self.group
        if self.kind == DISPLACEMENT:
            return [1.0, g.words[1]]
        if self.kind == COUPLED:
            rest = list(e_attributes[3:]) if e_attributes else [0, 0.0]
            return [0, g.whole(2), 0] + rest
        return [g.whole(2)]

    def region(self):
        g = self.group
        mtype, material = g.mtype, g.whole(1)
        for e in self.selected():
            inside = self.inside(self.path, self.middle(e))
            element = self.elements[e]
            if (mtype == 1 and inside) or (mtype == -1 and not inside):
                self.types[e] = 0
            elif abs(mtype) in (3, 4) and inside and not self.is_joint(e):
                if abs(mtype) == 4:
                    self.duplicate(e, material)
                elif g.overlay != 0:
                    self.add_element(element.words[:4], abs(material),
                                     self.group_attributes(), self.types[e],
                                     0)
                elif material > 0:
                    element.words[8] = material
                    element.attributes = self.group_attributes(
                        element.attributes)

    def duplicate(self, e, material):
        words = self.elements[e].words
        self.add_element(words[:4], abs(material), self.group_attributes(),
                         self.types[e], self.elist[e], words[4:8])
        if e in self.saved:
            words[:4] = self.saved[e]
        if material >= 0:
            other = self.group.whole(10)
            words[8] = other if other != 0 else material + 1

    def repair_quads(self):
        for e in sorted(self.elements):
            if self.type(e) != CONTINUUM or self.is_joint(e) or \
                    self.elements[e].words[3] == 0:
                continue
            element = self.elements[e]
            n1, n2, n3, n4 = element.words[:4]
            p1, p2, p3, p4 = (self.at(n) for n in (n1, n2, n3, n4))
            if area64(*p1, *p2, *p3) < 0.0 or area64(*p1, *p3, *p4) < 0.0:
                here, there = [n1, n2, n4, 0], [n2, n3, n4, 0]
            elif area64(*p2, *p3, *p4) < 0.0 or \
                    area64(*p1, *p2, *p4) < 0.0:
                here, there = [n1, n2, n3, 0], [n1, n3, n4, 0]
            else:
                continue
            element.words[:4] = here
            self.add_element(there, element.words[8], element.attributes,
                             CONTINUUM, "own")

    # -- collapse and moves -------------------------------------------------------

    def collapse_and_move(self):
        self.collapse()
        d = self.defaults
        if self.merges:
            self.move(self.merges)
            return
        if not d.moves:
            return
        used = sorted({n for e in self.elements if self.type(e) != 0
                       for n in self.corners(e)})
        moves = []
        for a, b, share in d.moves:
            if not (1 <= a <= len(used) and 1 <= b <= len(used)):
                raise Failure("a move of a node that is not there")
            moves.append((used[a - 1], used[b - 1], share))
        self.move(moves)

    def move(self, moves):
        """Nodes towards others; those that go the whole way merge."""
        merges = []
        for a, b, share in moves:
            one, other = self.codes(a), self.codes(b)
            one.x = add(one.x, mul(sub(other.x, one.x), share))
            one.y = add(one.y, mul(sub(other.y, one.y), share))
            if share == 1.0:
                merges.append((a, b))
        self.replace(merges)

    def collapse(self):
        d = self.defaults

        def qualifies(e):
            kind, material = self.type(e), self.elements[e].words[8]
            return (kind == BEAM and (
                        d.collapse in (1, 2) or
                        (d.collapse in (4, 6) and material in d.beams))) or \
                (kind == TRUSS and (
                    d.collapse in (1, 3) or
                    (d.collapse in (5, 6) and material in d.trusses)))

        lengths, total = [], 0.0
        for e in sorted(self.elements):
            if qualifies(e):
                a, b = self.elements[e].words[:2]
                lengths.append((dist2d(*self.at(a), *self.at(b)), a, b))
                total = add(total, lengths[-1][0])
        if not lengths:
            return
        most = mul(div(total, float(len(lengths))), d.share)
        self.replace([(b, a) for length, a, b in lengths if length <= most])

    def replace(self, pairs):
        """The second node of each pair takes the place of the first one."""
        for line in self.path_nodes.values():
            for k, n in enumerate(line):
                for old, new in pairs:
                    if n == old:
                        n = new
                line[k] = n
        for e in sorted(self.elements):
            words, hit = self.elements[e].words, False
            if self.type(e) == 0:
                continue
            line = self.type(e) != CONTINUUM
            for old, new in pairs:
                for j in range(2 if line else 4):
                    if words[j] == old:
                        words[j], hit = new, True
            if line:
                words[2], words[3] = words[1], words[0]
            if hit:
                self.degenerate(e, line)

    def degenerate(self, e, line):
        words = self.elements[e].words
        n1, n2, n3, n4 = words[:4]
        gone = False
        if line:
            gone = n1 == n2
        elif n4 < 1:
            gone = n1 == n2 or n1 == n3 or n2 == n3
        elif n1 == n2:
            gone, words[:4] = n3 == n4, [n1, n3, n4, 0]
        elif n1 == n3:
            gone = True
        elif n1 == n4:
            gone, words[:4] = n2 == n3, [n1, n2, n3, 0]
        elif n2 == n3:
            gone, words[:4] = n1 == n4, [n1, n2, n4, 0]
        elif n2 == n4:
            gone = True
        elif n3 == n4:
            gone, words[:4] = n1 == n2, [n1, n2, n3, 0]
        if gone:
            self.types[e] = 0

    # -- membership -----------------------------------------------------------------

    def membership(self, result, sections):
        """Which element belongs to which row of the group listing."""
        places = {n: (node.x, node.y) for n, node in result.nodes.items()}
        records = []
        for section in (CONTINUUM, BEAM, TRUSS):
            for number, element in sections[section]:
                words = element.words
                used = words[:4] if section == CONTINUUM else words[:2]
                g = mean([places[n] for n in used if n > 0])
                for row in self.rows_of(section, g):
                    records.append((row.group, words[8], number, section,
                                    row.kind))
        return records

    def before_writing(self, result, nodes, sections):
        self.members = self.membership(result, sections)
        outputs.refuse(self.cards.groups, self.kind, self.members)
        if self.kind == HEAD:
            for _, node in nodes:
                node.h = self.cards.head
        elif self.kind == TEMPERATURE:
            boundary.thermal(self.run, self.counters, nodes)

    def title_of(self, number):
        groups = self.cards.groups
        return groups[number - 1].title if 1 <= number <= len(groups) else ""

    def after_writing(self, result, sections, lines):
        if self.kind == HEAD:
            marks = {result.renumbered[n]: mark
                     for n, mark in self.marks.items()
                     if n in result.renumbered}
            boundary.flow_sections(
                self.run, self.sections,
                [element.words[:2] for _, element in sections[TRUSS]],
                lambda n: marks.get(n, 0), self.title_of)
        self.run.disk.put(outputs.MEMBERS,
                          [listed(*r) for r in self.members])
        if self.kind == HEAD:
            # Trusses are flow lines here: the header keeps them back.
            lines[2] = lines[2][:-5] + I(0, 5)

    def write_outputs(self, target, counts, result, sections, lines):
        """The output decks; gives the mesh as they leave it."""
        node_lists = {g: [result.renumbered[n] for n in line
                          if n in result.renumbered]
                      for g, line in self.path_nodes.items()}
        highest = max([0] + [element.words[8]
                             for _, element in sections[CONTINUUM]])
        self.outputs = outputs.GroupOut(
            self.run, self.cards.groups, self.cards.count, self.members,
            highest, node_lists, counts, target, lines)
        return self.outputs.write()

    def rows_of(self, section, g):
        rows = [r for r in self.listing
                if r.mtype not in (0, -1) and r.points]
        found = [r for r in rows if r.kind == OUTLINE and
                 not (abs(r.mtype) == 2 and r.closed == 0) and
                 self.inside(r.points, g)]
        for row in rows:
            points = row.points
            if row.kind == LINE and section != CONTINUUM:
                ring = points + points[:1] if row.closed else points
                middles = [mean(edge) for edge in zip(ring, ring[1:])]
            elif row.kind == STRIP and section == CONTINUUM and \
                    row.mtype < 0 and len(points) > 1:
                pairs = [points[k:k + 2] for k in range(0, len(points), 2)]
                ring = pairs + pairs[:1] if row.closed else pairs
                middles = [mean(a + b) for a, b in zip(ring, ring[1:])]
            else:
                continue
            if any(dist2d(*m, *g) <= self.tol_line for m in middles):
                found.append(row)
        return found


def nearest(x):
    """The nearest whole number, halves away from zero."""
    if not math.isfinite(x):
        raise Failure("an angle that is not a number")
    return int(math.floor(abs(x) + 0.5)) * (1 if x >= 0.0 else -1)


def straight_points(start, end, parts):
    if parts > MOST_PARTS:
        raise Failure("more than %d parts of a segment" % MOST_PARTS)
    step = tuple(div(sub(end[k], start[k]), float(parts)) for k in (0, 1))
    points = [start]
    for _ in range(parts):
        x, y = points[-1]
        points.append((add(x, step[0]), add(y, step[1])))
    return points


# --------------------------------------------------------------------------
# Calls of the run
# --------------------------------------------------------------------------


def load(run, edit, result):
    """Cards, defaults and groups; gives the engine for what comes after."""
    run.trace(" Pass 14.1 ", 14.1)
    cards = Cards(edit.cards)
    engine = Engine(run, result, cards, Defaults(run.disk))
    run.trace(" Pass 14.2 ", 14.2)
    engine.groups()
    run.trace(" Pass 14.3 ", 14.3)
    run.trace(" Pass 14.4 ", 14.4)
    return engine


def line_up(run, engine, value):
    """Line-up when its switch asks for it; gives the count of pairs."""
    if value != 0:
        lineup.line_up(run, engine, value)
    return len(engine.merges)
