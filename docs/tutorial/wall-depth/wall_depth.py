"""How deep is the wall to be? A mesh for each depth, by the rules and by the sound cut: wall_depth.py PICTURE"""

import sys

import brelan
import matplotlib
import numpy as np

matplotlib.use("Agg")
import matplotlib.pyplot as plt

deck = brelan.Deck("pit.dat")
wall = deck.groups[0].points  # from the toe upwards
depths = np.arange(6.0, 13.25, 0.25)
figure, (angles, lengths) = plt.subplots(2, 1, sharex=True, figsize=(8, 6))
print("depth  by the rules      by the sound cut")
rows = []
for depth in depths:
    wall[0].y = wall[-1].y - depth
    meshes = [deck.run(sound=sound, check=False).mesh for sound in (False, True)]
    rows.append([(m.quality().smallest_angle.min(), bool(m.soundness()), len(m.element_numbers)) for m in meshes])
    print(f"{depth:5.2f}", *(f"{a:5.1f} degrees {'sound' if s else 'unsound':8}" for a, s, _ in rows[-1]))
for place, (name, color) in enumerate((("by the rules", "tab:orange"), ("by the sound cut", "tab:blue"))):
    angle, sound, count = np.array([row[place] for row in rows]).T
    angles.plot(depths, angle, "o-", color=color, label=name)
    angles.plot(depths[sound == 0], angle[sound == 0], "kx", markersize=10)
    lengths.plot(depths, count, "o-", color=color, label=name)
angles.set_ylabel("smallest angle (degrees); x: unsound")
lengths.set(xlabel="depth of the wall (m)", ylabel="elements")
angles.legend()
figure.savefig(sys.argv[1])
