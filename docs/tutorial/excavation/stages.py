#!/usr/bin/env python3
"""What the stages of an excavation do, from the results of CalculiX.

    stages.py Pit.Mes Pit.frd Moved.Mes

Tells for each stage how far the wall's head and the bottom of the pit have moved since the ground was as it had been, and
the force in the strut. Writes the mesh of stage 4 with its movements a hundred times as large, for `brelan plot`.
"""
import math
import sys

STRUT = 2.1e8 * 0.01  # E A of materials.csv, kN
GONE = {8, 9, 10, 11}  # materials of the cuts and of their back-fill: what is not there at stage 4


def displacements(frd):
    """For each step the movements by node number: the blocks DISP of the file."""
    steps, block = [], None
    for line in open(frd):
        if line.startswith(" -4  DISP"):
            steps.append({})
            block = steps[-1]
        elif line.startswith(" -3"):
            block = None
        elif line.startswith(" -1") and block is not None:
            block[int(line[3:13])] = (float(line[13:25]), float(line[25:37]))
    return steps


def lines_of(mesh):
    return open(mesh).read().splitlines()


def nodes_of(lines):
    """Number, x and y of the node records, by the number of their line."""
    count = int(lines[2].split()[0])
    rows = ((i, lines[i].split()) for i in range(5, 5 + count))
    return {i: (int(row[0]), float(row[6]), float(row[7])) for i, row in rows}


def moved_mesh(lines, moved, scale):
    """The mesh with its nodes moved, and without what is dug out: an element with a minus sign is passed over."""
    lines = list(lines)
    nodes = nodes_of(lines)
    for i, (number, x, y) in nodes.items():
        dx, dy = moved.get(number, (0.0, 0.0))
        lines[i] = lines[i][:33] + f"{x + scale * dx:13.6E} {y + scale * dy:13.6E} "
    first = max(nodes) + 3
    for i in range(first, first + int(lines[2].split()[1])):
        if int(lines[i].split()[9]) in GONE:
            lines[i] = " %6d" % -int(lines[i][:7]) + lines[i][7:]
    return "\n".join(lines) + "\n"


def main():
    mesh, frd, target = sys.argv[1:]
    lines = lines_of(mesh)
    place = {}  # the first node at a place is the wall's, its twin comes later
    for number, x, y in sorted(nodes_of(lines).values()):
        place.setdefault((x, y), number)
    head, bottom = place[13.0, 20.0], place[20.0, 14.0]
    ends = place[13.0, 18.0], place[27.0, 18.0]
    steps = displacements(frd)[1:]  # in the first one nothing happens
    before, with_strut = steps[0], steps[3]
    print("stage   wall's head   bottom   strut")
    for stage, moved in enumerate(steps):
        towards_pit = 1000 * (moved[head][0] - before[head][0])
        heave = 1000 * (moved[bottom][1] - before[bottom][1])
        shorter = sum(sign * (moved[n][0] - with_strut[n][0]) for sign, n in zip((1, -1), ends))
        force = f"{STRUT * shorter / 14.0:5.0f} kN" if 3 <= stage < 6 else "       -"
        print(f"{stage:5d} {towards_pit:10.1f} mm {heave:5.1f} mm {force}")
    with open(target, "w") as file:
        file.write(moved_mesh(lines, {n: (u[0] - before[n][0], u[1] - before[n][1]) for n, u in steps[4].items()}, 100))


if __name__ == "__main__":
    main()
