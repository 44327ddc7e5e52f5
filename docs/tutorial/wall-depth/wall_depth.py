#!/usr/bin/env python3
"""How deep is the wall to be? A mesh and a calculation for each depth: wall_depth.py PICTURE DEPTH..."""
import subprocess
import sys

import brelan
import matplotlib.pyplot as plt

depths, moved = [float(text) for text in sys.argv[2:]], []
for depth in depths:
    deck = brelan.Deck("pit.dat")
    wall = deck.groups[0].points  # from the toe upwards
    wall[0].y = wall[-1].y - depth
    run = deck.run(sound=True)
    run.mesh.save("Pit.inp", joints="spring:1e6,1e4", materials="materials.csv", activity=run.activity)
    subprocess.run(["ccx", "Pit"], check=True, stdout=subprocess.DEVNULL)
    head = run.mesh.nodes_on(x=13.0, y=20.0)[0]
    # A line of results for each node and step: its number in columns 4 to 13, then the movement in x.
    lines = [line for block in open("Pit.frd").read().split(" -4  DISP")[1:] for line in block.split(" -3")[0].splitlines()]
    steps = [float(line[13:25]) for line in lines if line.startswith(f" -1{head:10d}")]
    moved.append([1000.0 * (steps[stage] - steps[1]) for stage in (3, 5)])  # since the ground was as it had been
    print(f"{depth:5.1f} m  {len(run.mesh.element_numbers)} elements  {moved[-1][0]:6.2f} mm {moved[-1][1]:6.2f} mm")
plt.plot(depths, moved, "o-", label=["stage 2, the first cut", "stage 4, the second cut"])
plt.xlabel("depth of the wall (m)")
plt.ylabel("movement of its head (mm)")
plt.legend()
plt.savefig(sys.argv[1])
