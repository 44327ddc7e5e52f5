"""Line-up of truss lines in the second calculation.

Trusses on a side of a quadrilateral of material 7 slide along their line
until they stand level with the opposite side.  The switch is a small file
that works once.
"""

from reference import CONTINUUM, TRUSS, Reader, add, div, listed, mul, sub

SWITCH = "LineUp.dat"
MATERIAL = 7

# Slots of A and B, then of the corners beside them.
BESIDE = {(1, 2): (4, 3), (1, 4): (2, 3), (2, 3): (1, 4), (2, 1): (3, 4),
          (3, 4): (2, 1), (3, 2): (4, 1), (4, 1): (3, 2), (4, 3): (1, 2)}


def switch(run):
    """The value of the switch file; one above 0 is used up by it."""
    if not run.disk.exists(SWITCH):
        return 0
    value = Reader(run.disk.old(SWITCH)).integers(1)[0]
    run.note("line-up, switch %s" % ("on" if value > 0 else
                                     "off" if value == 0 else "negative"))
    if value > 0:
        run.disk.put_result(SWITCH, [listed(0)])
    return value


class LineUp:
    """New places of nodes, in the order found, and pairs that merge."""

    def __init__(self, at, note):
        self.at, self.note = at, note
        self.places = {}
        self.merges = []

    def slide(self, node, axis, s, p, q):
        """Node to the coordinate s of the axis on the line through p and q."""
        if node in self.places:
            self.note("slide: node has moved already")
            return
        place_p, place_q = self.at(p), self.at(q)
        other = 1 - axis
        if place_p[axis] == place_q[axis]:
            self.note("slide: line of equal s")
            return
        t = div(sub(s, place_p[axis]), sub(place_q[axis], place_p[axis]))
        place = [0.0, 0.0]
        place[axis] = s
        place[other] = add(place_p[other],
                           mul(t, sub(place_q[other], place_p[other])))
        self.places[node] = tuple(place)

    def pair(self, a, b, before, after, beside_a, beside_b):
        """Truss a-b on a side of a quadrilateral, neighbours before and
        after it (None where there is none), corners of the other side."""
        c, d = self.at(beside_a), self.at(beside_b)
        if c[0] == d[0]:
            axis = 1
        elif c[1] == d[1]:
            axis = 0
        else:
            self.note("slanted opposite side")
            return
        self.note("upright opposite side" if axis else "level opposite side")
        sa, sb, sc, sd = (self.at(n)[axis]
                          for n in (a, b, beside_a, beside_b))
        rising = sa <= sb
        name = "rising" if rising else "falling"
        low, high = (sa, sb) if rising else (sb, sa)

        if low <= sc <= high:
            self.note(name + " A: within")
            self.slide(a, axis, sc, a, b)
        elif before is None:
            self.note(name + " A: no neighbour")
        else:
            sp = self.at(before)[axis]
            if (sc <= sp) if rising else (sp <= sc):
                self.note(name + " A: merge")
                self.merges.append((before, a))
            else:
                self.note(name + " A: beside")
            self.slide(a, axis, sc, a, before)

        if low <= sd <= high:
            self.note(name + " B: within")
            self.slide(b, axis, sd, b, a)
        elif after is None:
            self.note(name + " B: no neighbour")
        else:
            sn = self.at(after)[axis]
            if (sn <= sd) if rising else (sd <= sn):
                self.note(name + " B: merge")
                self.merges.append((after, b))
            else:
                self.note(name + " B: beside")
            self.slide(b, axis, sd, after, b)


def search(elements, types, at, note=lambda what: None):
    """Every truss against every quadrilateral of the material."""
    found = LineUp(at, note)
    trusses = [(t, elements[t].words) for t in sorted(elements)
               if types.get(t, 0) == TRUSS]
    for _, truss in trusses:
        a, b = truss[0], truss[1]
        for e in sorted(elements):
            words = elements[e].words
            if types.get(e, 0) != CONTINUUM or words[8] != MATERIAL or \
                    words[3] == 0:
                continue
            corners = words[:4]
            matching = [k for k, n in enumerate(corners, 1) if n in (a, b)]
            if len(matching) != 2:
                continue
            slots_a = [k for k in matching if corners[k - 1] == a]
            slots_b = [k for k in matching if corners[k - 1] == b]
            if len(slots_a) != 1 or len(slots_b) != 1:
                continue
            beside = BESIDE.get((slots_a[0], slots_b[0]))
            if beside is None:
                note("diagonal")
                continue
            note("slots %d %d" % (slots_a[0], slots_b[0]))
            before = after = None
            for t, other in trusses:
                if t != e and other[1] == a:
                    before = other[0]
                if t != e and other[0] == b:
                    after = other[1]
            rest = [n for n in corners if n not in (a, b)]
            if before in rest or after in rest:
                note("neighbour is a corner")
                continue
            found.pair(a, b, before, after, corners[beside[0] - 1],
                       corners[beside[1] - 1])
    return found


def line_up(run, engine, value):
    """Passes 14.5 and 14.6; leaves the pairs that merge with the engine."""
    run.trace(" Pass 14.5  LINEUP = ", 14.5, value)
    found = search(engine.elements, engine.types, engine.at,
                   lambda what: run.note("line-up, " + what))
    run.trace(" Pass 14.6  NLNP = ", 14.6, len(found.places))
    for node, place in found.places.items():
        engine.move_node(node, place)
    engine.merges = [(a, b, 1.0) for a, b in found.merges]
