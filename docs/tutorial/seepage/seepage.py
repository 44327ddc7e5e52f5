#!/usr/bin/env python3
"""Steady seepage through dams, on meshes of the head kind, with GetFEM (Debian: python3-getfem).

    seepage.py               all of it, with its figures in words
    seepage.py heads.png     and the heads in the dam as a picture (python3-matplotlib)

Of the head h and the permeability k nothing is asked but

    div(k grad h) = 0        in the ground;
    h is given               at nodes with the codes ID 1, IDF n, by the function n;
    h = y where water comes out, and nothing comes in, at nodes with ID 3: the face of seepage;
    nothing flows through    all other borders.

Above the free surface, where h < y, the ground becomes dry: k falls to a thousandth over a fringe of a metre. Which
elements are dry, and where water comes out, is not known beforehand: it is found round by round.
"""
import pathlib
import sys

import getfem
import numpy
from scipy.sparse import csc_matrix
from scipy.sparse.linalg import spsolve
from scipy.spatial import cKDTree

import brelan

HERE = pathlib.Path(__file__).resolve().parent

DRY, FRINGE = 1e-3, 1.0           # what is left of k; over so many metres of suction
ROUNDS, AT_REST = 300, 1e-6       # at most; change of a round, of the largest difference of heads


class Seepage:
    """A mesh of triangles and quadrilaterals with the codes of its nodes, and what flows through it.

    permeability: by material, m/s. given: heads by the number of their function, which stands in IDF, m.
    """

    def __init__(self, mesh, permeability, given):
        self.mesh = mesh
        self.points = mesh.points.astype(float)
        solids = mesh.places("solids")
        self.corners = mesh.corners[solids]  # -1 behind the third of a triangle
        self.permeability = numpy.array([permeability[material] for material in mesh.materials[solids]])
        codes = dict(zip(mesh.code_names, mesh.codes.T))
        self.held = numpy.full(len(self.points), numpy.nan)  # given heads; no number where none is given
        for function, head in given.items():
            self.held[(codes["ID"] == 1) & (codes["IDF"] == function)] = head
        self.face = codes["ID"] == 3
        self._hand_over()

    def _hand_over(self):
        """The mesh as GetFEM has it: corners of quadrilaterals row by row, those of triangles round about."""
        grid, self.solid_of = getfem.Mesh("empty", 2), []
        for shape, order in (("GT_PK(2,1)", [0, 1, 2]), ("GT_QK(2,1)", [0, 1, 3, 2])):
            solids = numpy.flatnonzero((self.corners >= 0).sum(axis=1) == len(order))
            if len(solids) > 0:
                grid.add_convex(getfem.GeoTrans(shape), self.points[self.corners[solids][:, order]].transpose(2, 1, 0))
                self.solid_of.extend(solids)
        self.linear, self.constant = getfem.MeshFem(grid, 1), getfem.MeshFem(grid, 1)
        self.linear.set_classical_fem(1)
        self.constant.set_classical_discontinuous_fem(0)
        self.integration = getfem.MeshIm(grid, 4)
        distance, node_of = cKDTree(self.points).query(self.linear.basic_dof_nodes().T)
        if distance.max() > 0.0 or sorted(node_of) != list(range(len(self.points))):
            raise ValueError("expected one node at a place, and all of them in elements: no joints")
        self.unknown_of = numpy.argsort(node_of)  # of each node of ours

    def solve(self, permeability, held):
        """K h = q: heads, and what flows in at each node. It does so where heads are held, and nowhere else."""
        k = getfem.asm_laplacian(self.integration, self.linear, self.constant, permeability[self.solid_of])
        starts, rows = k.csc_ind()
        k = csc_matrix((k.csc_val(), rows, starts))[self.unknown_of][:, self.unknown_of].tocsc()
        free, head = numpy.isnan(held), held.copy()
        head[free] = spsolve(k[free][:, free], -k[free][:, ~free] @ held[~free])
        return head, k @ head

    def wetness(self, head):
        """The factor of k in each element, by its mean suction."""
        suction = numpy.where(self.corners >= 0, self.points[self.corners, 1] - head[self.corners], 0.0)
        mean = suction.sum(axis=1) / (self.corners >= 0).sum(axis=1)
        return DRY ** numpy.clip(mean / FRINGE, 0.0, 1.0)

    def run(self):
        """Round by round to the free surface. Water comes out of the whole face at first."""
        y, comes_out, head = self.points[:, 1], self.face, None
        factor, step, change = numpy.ones(len(self.permeability)), 0.5, numpy.inf
        for self.rounds in range(1, ROUNDS + 1):
            before, last = head, change
            head, inflow = self.solve(self.permeability * factor, numpy.where(comes_out, y, self.held))
            change = numpy.inf if before is None else abs(head - before).max()
            if change > last:
                step *= 0.9  # the surface swings about its place
            factor = factor ** (1.0 - step) * self.wetness(head) ** step
            was, comes_out = comes_out, self.face & numpy.where(comes_out, inflow <= 0.0, head > y)
            if (was == comes_out).all() and change < AT_REST * numpy.ptp(head):
                self.head, self.inflow, self.comes_out = head, inflow, comes_out
                return self
        raise RuntimeError("the free surface does not come to rest")

    @property
    def flow_in(self):
        """m2/s: m3/s for each metre of the dam."""
        return self.inflow[self.inflow > 0.0].sum()

    @property
    def flow_out(self):
        return -self.inflow[self.inflow < 0.0].sum()

    @property
    def exit_height(self):
        """Of the highest node of the face at which water comes out."""
        return self.points[self.comes_out, 1].max()


def with_size(deck, size):
    """Elements of another size, in metres."""
    for card in deck.cards:
        for field in ("DX", "DY"):
            if field in card:
                card[field] = size
    return deck


def dam_mesh(size=1.0):
    """dam.dat makes a deck of blocks and groups, EarthDam.Meg, which fixes sides and base of the ground: ID 1 and IDF 1 in
    the head kind, as if heads were given there. They are let go, as no water is to flow through them; all other codes are
    taken as they are."""
    made = brelan.Deck(HERE / "dam.dat", kind="head").run(sound=True)
    deck = with_size(brelan.Deck(made.files.text("EarthDam.Meg"), kind="head"), size)
    for side in ("IB_LEFT", "IB_RIGHT", "IB_BOTTOM"):
        deck.card("4.1")[side] = 0
    return deck.run(sound=True).mesh


def dam(size=1.0):
    """Shells of sand, a core and a wall that are tighter; water of 15 m on the left, at the ground on the right."""
    permeability = {1: 1e-5, 2: 1e-5, 3: 1e-5, 4: 1e-7, 5: 1e-8, 6: 5e-6, 7: 1e-6}
    return Seepage(dam_mesh(size), permeability, {1: 15.0, 2: 0.0}).run()


def rectangle(size=1.0):
    """16 m of one soil between water of 24 m and of 4 m."""
    deck = with_size(brelan.Deck(HERE / "rectangle.dat", kind="head"), size)
    return Seepage(deck.run(sound=True).mesh, {1: 1e-5}, {1: 24.0, 2: 4.0}).run()


def dupuit(k=1e-5, high=24.0, low=4.0, thick=16.0):
    """What flows through a rectangular dam; with a face of seepage this is exact."""
    return k * (high**2 - low**2) / (2.0 * thick)


def draw(seepage, file):
    """Heads below the free surface, the borders of the materials, and the surface itself."""
    import matplotlib

    matplotlib.use("Agg")
    from matplotlib import pyplot
    from matplotlib.tri import Triangulation

    x, y = seepage.points.T
    corners = seepage.corners
    quads = corners[corners[:, 3] >= 0]
    triangles = Triangulation(x, y, numpy.vstack([corners[:, :3], quads[:, [0, 2, 3]]]))
    pressure = seepage.head - y
    figure, axes = pyplot.subplots(figsize=(11.0, 3.4), constrained_layout=True)
    filled = axes.tricontourf(triangles, seepage.head, levels=numpy.arange(0.0, 15.5, 1.0), cmap="Blues", extend="both")
    axes.tricontourf(triangles, pressure, levels=[pressure.min() - 1.0, 0.0], colors="white")
    axes.tricontour(triangles, pressure, levels=[0.0], colors="tab:red", linewidths=1.6)
    sides = {}
    for material, round_it in zip(seepage.mesh.materials[seepage.mesh.places("solids")], corners):
        nodes = [node for node in round_it if node >= 0]
        for one, two in zip(nodes, nodes[1:] + nodes[:1]):
            sides.setdefault(frozenset((one, two)), []).append(material)
    for side, materials in sides.items():
        if len(materials) == 1 or materials[0] != materials[1]:
            axes.plot(*seepage.points[sorted(side)].T, color="0.25", linewidth=0.8)
    axes.set(aspect="equal", xlabel="x (m)", ylabel="y (m)")
    figure.colorbar(filled, ax=axes, label="head (m)", shrink=0.8)
    figure.savefig(file, dpi=120)


def main(pictures):
    litres = 86400.0 * 1000.0  # a day
    print("The dam with a core")
    for size in (2.0, 1.0):
        solved = dam(size)
        print(f"  elements of {size:g} m: {len(solved.points):5d} nodes, {litres * solved.flow_in:.1f} litres a day and metre "
              f"in, {litres * solved.flow_out:.1f} out")
    for picture in pictures:
        draw(solved, picture)
    print("The rectangular dam")
    solved = rectangle(1.0)
    print(f"  {litres * solved.flow_in:.0f} litres a day and metre, {litres * dupuit():.0f} by Dupuit's formula; water comes "
          f"out up to {solved.exit_height:g} m")


if __name__ == "__main__":
    main(sys.argv[1:])
