"""Meshes as NumPy arrays."""

from __future__ import annotations

import json
import os
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, Dict, List, Mapping, Optional, Sequence, Tuple, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _core

if TYPE_CHECKING:
    import meshio

    from .deck import Deck
    from .run import Activity

Path = Union[str, "os.PathLike[str]"]
Floats = NDArray[np.float32]
Doubles = NDArray[np.float64]
Ints = NDArray[np.int32]

#: Classes of elements by the numbers that `Mesh.classes` and the array "class" of other formats have.
CLASSES = {1: "solid", 2: "joint", 3: "beam", 4: "truss"}
CLASS_NUMBERS = {name: number for number, name in CLASSES.items()}

# Above so many elements a notebook gets pixels, which do not grow with the mesh.
_MOST_DRAWN_AS_LINES = 4000


@dataclass(frozen=True)
class Finding:
    """One kind of thing that `Mesh.soundness` has found, with its places.

    Attributes
    ----------
    id : str
        As in ``brelan info --json``, "hanging_nodes".
    text : str
        In words, "hanging nodes".
    unsound : bool
        Whether it makes the mesh unsound; otherwise it is worth knowing and may be wanted.
    elements, nodes, others : ndarray of int32, shape (n,)
        Numbers of element, node and of the second node or element of a pair at each place; 0 where there is none.
    at : ndarray of float64, shape (n, 2)
        Where it is, in the mesh's unit of length.
    amounts : ndarray of float64, shape (n,)
        An area, width or count where the check has one, else 0.
    """

    id: str
    text: str
    unsound: bool
    elements: Ints
    nodes: Ints
    others: Ints
    at: Doubles
    amounts: Doubles

    def __len__(self) -> int:
        return len(self.elements)

    def __repr__(self) -> str:
        return f"<Finding {self.id}: {len(self)} {self.text}{', unsound' if self.unsound else ''}>"


@dataclass(frozen=True)
class Soundness:
    """Whether the elements of a mesh fit together. True in a condition when they do.

    Attributes
    ----------
    sound : bool
        No finding makes the mesh unsound.
    findings : tuple of Finding
        What was found, worst first.
    outline : float
        Length of the free sides, joints closed.
    tolerance : float
        Distance within which nodes count as at one place.
    """

    sound: bool
    findings: Tuple[Finding, ...]
    outline: float
    tolerance: float
    _line: str

    def __bool__(self) -> bool:
        return self.sound

    def __getitem__(self, id: str) -> Finding:
        for finding in self.findings:
            if finding.id == id:
                return finding
        raise KeyError(id)

    def __str__(self) -> str:
        return self._line

    def __repr__(self) -> str:
        return f"<Soundness: {self._line}>"


@dataclass(frozen=True)
class Quality:
    """The shape of each solid that has all its corners; joints are thin by intention and left out.

    Attributes
    ----------
    places : ndarray of int32, shape (n,)
        Places of the solids among the elements of the mesh.
    smallest_angle, largest_angle : ndarray of float64, shape (n,)
        Degrees, inside the element.
    aspect_ratio : ndarray of float64, shape (n,)
        Longest side times the sum of the sides over 4 areas (of a triangle over 4 sqrt(3) areas): 1 for a square
        and an equilateral triangle (Verdict library, Stimpson and others 2007).
    area : ndarray of float64, shape (n,)
        Absolute.
    shortest_side, longest_side : ndarray of float64, shape (n,)
    """

    places: Ints
    smallest_angle: Doubles
    largest_angle: Doubles
    aspect_ratio: Doubles
    area: Doubles
    shortest_side: Doubles
    longest_side: Doubles

    def __repr__(self) -> str:
        if len(self.places) == 0:
            return "<Quality: no solids>"
        return (
            f"<Quality of {len(self.places)} solids: smallest angle {self.smallest_angle.min():.1f} degrees, "
            f"largest aspect ratio {self.aspect_ratio.max():.3g}>"
        )


class Mesh:
    """A plane mesh of solids, joints, beams and trusses.

    Parameters
    ----------
    file : str or path
        A mesh file (.Mes), a VTU or a Gmsh file; its first characters tell which.
    kind : {"coupled", "temperature", "head", "displacement"}, optional
        The kind that the mesh is to have, found from the file when it is not given.

    Raises
    ------
    brelan.Error
        Where the file cannot be read, with file, line and what was expected.

    Notes
    -----
    Nodes and elements have numbers, as decks and files name them, and places, as arrays have them: all arrays of
    indices hold places from 0. `points`, `codes`, `values`, `materials` and the arrays of `attribute` look into the
    mesh: what is written to them is what `save` writes.
    """

    def __init__(self, file: Path, kind: Optional[str] = None) -> None:
        self._core = _core.read_mesh(os.fspath(file), kind or "")

    @classmethod
    def _of(cls, core: _core.Mesh) -> "Mesh":
        mesh = cls.__new__(cls)
        mesh._core = core
        return mesh

    @classmethod
    def from_text(cls, text: str, name: str = "Mesh.Mes", kind: Optional[str] = None) -> "Mesh":
        """Reads the text of a mesh file.

        Parameters
        ----------
        text : str
            All of it.
        name : str, optional
            What messages call it.
        kind : str, optional
            Where nothing in the text tells it.

        Raises
        ------
        brelan.Error
        """
        return cls._of(_core.mesh_of_text(text, name, kind or ""))

    @classmethod
    def from_arrays(
        cls,
        points: ArrayLike,
        cells: Union[Mapping[str, ArrayLike], Sequence[Tuple[str, ArrayLike]]],
        *,
        point_data: Optional[Mapping[str, ArrayLike]] = None,
        cell_data: Optional[Mapping[str, ArrayLike]] = None,
        kind: Optional[str] = None,
        name: str = "Mesh.Mes",
    ) -> "Mesh":
        """Makes a mesh of points and cells.

        Parameters
        ----------
        points : array_like, shape (n, 2) or (n, 3)
            Coordinates; a third one counts for nothing.
        cells : mapping, or sequence of pairs
            Places of the points of each cell by its shape: "line", "triangle", "quad", "triangle6", "quad8",
            "quad9", "line3".
        point_data, cell_data : mapping of str to array_like, optional
            Codes by name ("IDX"), values ("H"), numbers ("number"), and of the cells, in the order of `cells`,
            "material", "class" (see `CLASSES`) and attributes. What is not given is as in a base mesh.
        kind : str, optional
            Found from the names of the codes where it is not given and they tell; displacement where there are
            none.
        name : str, optional
            First line of the mesh file.

        Raises
        ------
        brelan.Error
            For what a mesh file cannot hold.
        """
        xy = np.asarray(points, dtype=np.float32)
        if xy.ndim != 2 or xy.shape[1] not in (2, 3):
            raise ValueError(f"points: expected the shape (n, 2) or (n, 3), found {xy.shape}")
        xyz = np.zeros((len(xy), 3), dtype=np.float32)
        xyz[:, :2] = xy[:, :2]
        blocks: List[Tuple[int, Ints]] = []
        for shape, places in cells.items() if isinstance(cells, Mapping) else cells:
            if shape not in _NUMBER_OF_SHAPE:
                raise ValueError(f"cells: expected one of {', '.join(_NUMBER_OF_SHAPE)}, found '{shape}'")
            block = np.ascontiguousarray(places, dtype=np.int32)
            if block.size == 0:
                continue
            if block.ndim != 2 or block.shape[1] != _NODES_OF_SHAPE[shape]:
                raise ValueError(f"cells: expected {_NODES_OF_SHAPE[shape]} points for each {shape}, found {block.shape}")
            if block.min() < 0 or block.max() >= len(xyz):
                raise IndexError(f"cells: expected places from 0 to {len(xyz) - 1}, found {block.min()} to {block.max()}")
            blocks.append((_NUMBER_OF_SHAPE[shape], block))
        count = sum(len(block) for _, block in blocks)
        data = _core.mesh_of_cells(
            xyz,
            blocks,
            _data_of(point_data, len(xyz), "point_data"),
            _data_of(cell_data, count, "cell_data"),
            kind or "",
            name,
        )
        return cls._of(data)

    # --- what it holds

    @property
    def file(self) -> str:
        """The file as it was named, or the name of what it was made from."""
        return self._core.file

    @property
    def name(self) -> str:
        """The first line of a mesh file."""
        return self._core.name

    @property
    def kind(self) -> str:
        """coupled, temperature, head or displacement."""
        return self._core.kind

    @property
    def remarks(self) -> List[str]:
        """What was left out or changed when the file was read."""
        return self._core.remarks

    @property
    def points(self) -> Floats:
        """Coordinates of the nodes: float32, shape (nodes, 2), in the mesh's unit of length; no copy."""
        return self._core.points()

    @property
    def codes(self) -> Ints:
        """Codes of the nodes: int32, shape (nodes, codes), columns as in `code_names`; no copy."""
        return self._core.codes()

    @property
    def code_names(self) -> List[str]:
        """Names of the columns of `codes`."""
        return self._core.code_names

    @property
    def values(self) -> Floats:
        """Heads or temperatures of the nodes by kind: float32, shape (nodes,); no copy."""
        return self._core.values()

    @property
    def coefficients(self) -> Floats:
        """CF of the nodes in the temperature and head kinds: float32, shape (nodes,); no copy."""
        return self._core.coefficients()

    @property
    def node_numbers(self) -> Ints:
        """Numbers of the nodes, ascending: int32, shape (nodes,); read-only."""
        return self._core.node_numbers()

    @property
    def element_numbers(self) -> Ints:
        """Numbers of the elements: int32, shape (elements,); read-only.

        Solids and joints come first, then beams, then trusses, each ascending.
        """
        return self._core.element_numbers()

    @property
    def materials(self) -> Ints:
        """Materials of the elements: int32, shape (elements,); no copy."""
        return self._core.materials()

    @property
    def classes(self) -> NDArray[np.uint8]:
        """Classes of the elements, see `CLASSES`: uint8, shape (elements,)."""
        return self._core.classes() + np.uint8(1)

    @property
    def corners(self) -> Ints:
        """Places of the corners of each element in `points`: int32, shape (elements, 4); read-only.

        -1 behind the last corner and where the mesh has no node of the number.
        """
        return self._core.corners()

    @property
    def midsides(self) -> Ints:
        """Places of the midside nodes M5 to M8 of each element: int32, shape (elements, 4); -1 for none."""
        return self._core.places_of_nodes(self._core.midsides())

    def attribute(self, name: str) -> NDArray[Any]:
        """An attribute of the elements by the name that mesh files give it ("THIC"), see `attribute_names`.

        Returns
        -------
        ndarray of int32 or float32, shape (elements,); no copy

        Raises
        ------
        KeyError
            Where the kind has no such attribute.
        """
        return self._core.attribute(name)

    @property
    def attribute_names(self) -> List[str]:
        """Names of the attributes that elements of the kind have."""
        return self._core.attribute_names

    def places(self, what: str) -> NDArray[np.intp]:
        """Places of "quads", "triangles", "solids", "joints", "beams" or "trusses" among the elements, ascending."""
        classes = self.classes
        if what in ("quads", "triangles"):
            has_four = self.corner_counts == 4
            return np.flatnonzero((classes == CLASS_NUMBERS["solid"]) & (has_four if what == "quads" else ~has_four))
        singular = {"solids": "solid", "joints": "joint", "beams": "beam", "trusses": "truss"}
        if what not in singular:
            raise ValueError(f"expected quads, triangles, solids, joints, beams or trusses, found '{what}'")
        return np.flatnonzero(classes == CLASS_NUMBERS[singular[what]])

    @property
    def corner_counts(self) -> NDArray[np.intp]:
        """Corners of each element: 2, 3 or 4."""
        return self._core.corner_counts()

    def _corners_of(self, what: str, count: int) -> Ints:
        return self.corners[self.places(what), :count]

    @property
    def quads(self) -> Ints:
        """Corners of the solids with four: places in `points`, int32, shape (n, 4)."""
        return self._corners_of("quads", 4)

    @property
    def triangles(self) -> Ints:
        """Corners of the solids with three: places in `points`, int32, shape (n, 3)."""
        return self._corners_of("triangles", 3)

    @property
    def joints(self) -> Ints:
        """Corners of the joints, I1 and I2 on the line, I3 and I4 their twins: int32, shape (n, 4)."""
        return self._corners_of("joints", 4)

    @property
    def beams(self) -> Ints:
        """Ends of the beams: places in `points`, int32, shape (n, 2)."""
        return self._corners_of("beams", 2)

    @property
    def trusses(self) -> Ints:
        """Ends of the trusses: places in `points`, int32, shape (n, 2)."""
        return self._corners_of("trusses", 2)

    @property
    def names(self) -> Dict[Tuple[str, int], str]:
        """Names of materials by class and number: ``{("solid", 5): "Sand"}``. Joints share the numbers of solids."""
        return self._core.names()

    def set_name(self, material: int, name: str, of: str = "solid") -> None:
        """Names a material; an empty name takes it away."""
        self._core.set_name(of, material, name)

    # --- what lies where

    def nodes_on(self, *, x: Optional[float] = None, y: Optional[float] = None, tolerance: float = 0.0) -> Ints:
        """Numbers of the nodes on an upright or a level line, ascending.

        Parameters
        ----------
        x, y : float
            One of the two; with both the nodes at the point.
        tolerance : float, optional
            0 takes that of the digits of a mesh file.
        """
        if x is None and y is None:
            raise ValueError("expected x, y or both")
        if x is None or y is None:
            return self._core.nodes_on("x", x, tolerance) if x is not None else self._core.nodes_on("y", y or 0.0, tolerance)
        on_both = set(self._core.nodes_on("x", x, tolerance)) & set(self._core.nodes_on("y", y, tolerance))
        return np.array(sorted(on_both), dtype=np.int32)

    def nodes_in(self, xmin: float, ymin: float, xmax: float, ymax: float, tolerance: float = 0.0) -> Ints:
        """Numbers of the nodes in an upright rectangle, its edges included, ascending."""
        return self._core.nodes_in((xmin, ymin, xmax, ymax), tolerance)

    def elements_of(self, material: int, of: str = "continuum") -> Ints:
        """Numbers of the elements of a material, ascending.

        Parameters
        ----------
        material : int
        of : {"continuum", "solid", "joint", "beam", "truss"}, optional
            Solids and joints share their numbers; "continuum" takes both.
        """
        return self._core.elements_of(material, of)

    def border(self) -> Ints:
        """Numbers of the nodes on the outline of the solids, joints closed, ascending."""
        return self._core.border()

    def places_of_nodes(self, numbers: ArrayLike) -> Ints:
        """Places of nodes in `points` by their numbers; -1 for a number that no node has."""
        return self._core.places_of_nodes(np.asarray(numbers, dtype=np.int32))

    # --- what can be said of it

    def soundness(self, tolerance: float = 0.0) -> Soundness:
        """Whether the elements fit together.

        Parameters
        ----------
        tolerance : float, optional
            Distance within which nodes count as at one place; 0 takes one that suits the digits of a mesh file.
        """
        found = self._core.soundness(tolerance)
        findings = tuple(Finding(*finding) for finding in found["findings"])
        return Soundness(found["sound"], findings, found["free_edge_length"], found["tolerance"], found["line"])

    def quality(self) -> Quality:
        """The shape of each solid."""
        places, rows = self._core.quality()
        return Quality(places, *(rows[:, k] for k in range(rows.shape[1])))

    def info(self, tolerance: float = 0.0, places: int = 10) -> Dict[str, Any]:
        """What ``brelan info --json`` shows of the mesh, with so many places of each finding (0 for all)."""
        report: Dict[str, Any] = json.loads(self._core.info(tolerance, places))
        return report

    # --- pictures

    def picture(
        self,
        format: str = "svg",
        *,
        width: float = 1000.0,
        window: Optional[Tuple[float, float, float, float]] = None,
        title: str = "",
        numbers: str = "",
        lines: bool = True,
        codes: bool = True,
        legend: bool = True,
        faults: bool = False,
        deck: "Optional[Deck]" = None,
        scale: float = 2.0,
    ) -> bytes:
        """The mesh as ``brelan plot`` draws it.

        Parameters
        ----------
        format : {"svg", "png"}
        width : float, optional
            Of the page, in its units.
        window : (xmin, ymin, xmax, ymax), optional
            The part of the mesh that is drawn.
        numbers : {"", "nodes", "elements", "both"}, optional
        faults : bool, optional
            Marks what makes the mesh unsound.
        deck : Deck, optional
            Its outlines and lines are drawn over the mesh.
        scale : float, optional
            Pixels for a unit of the page.

        Returns
        -------
        bytes
            An SVG text in UTF-8, or a PNG.
        """
        if format not in ("svg", "png"):
            raise ValueError(f"format: expected svg or png, found '{format}'")
        wishes = _core.PictureWishes()
        wishes.width, wishes.window, wishes.title, wishes.numbers = width, window, title, numbers
        wishes.lines, wishes.codes, wishes.legend, wishes.faults = lines, codes, legend, faults
        return self._core.picture(format, wishes, scale, deck._core if deck is not None else None)

    def _repr_mimebundle_(self, **_: Any) -> Dict[str, Any]:
        bundle: Dict[str, Any] = {"text/plain": repr(self)}
        if len(self.element_numbers) > _MOST_DRAWN_AS_LINES:
            bundle["image/png"] = self.picture("png", width=800.0)
        else:
            bundle["image/svg+xml"] = self.picture("svg", width=800.0).decode()
        return bundle

    def __repr__(self) -> str:
        counts = np.bincount(self.classes, minlength=5)
        plurals = {1: "solids", 2: "joints", 3: "beams", 4: "trusses"}
        parts = [f"{counts[of]} {many if counts[of] != 1 else CLASSES[of]}" for of, many in plurals.items() if counts[of]]
        return f"<Mesh {self.file}: {self.kind}, {len(self.node_numbers)} nodes, {', '.join(parts) or 'no elements'}>"

    # --- elsewhere

    def text(self, name: str = "") -> str:
        """The mesh as the text of a mesh file, with a name in its first line.

        Raises
        ------
        brelan.Error
            Where a field cannot hold a value.
        """
        return self._core.text(name)

    def save(
        self,
        file: Path,
        format: Optional[str] = None,
        *,
        bare: bool = False,
        joints: str = "",
        materials: Optional[Path] = None,
        gravity: Optional[float] = None,
        axisymmetric: bool = False,
        activity: "Optional[Activity]" = None,
        stages: bool = False,
        cables: Sequence[int] = (),
    ) -> List[str]:
        """Writes the mesh, whole or not at all.

        Parameters
        ----------
        file : str or path
            Its ending tells the format: .Mes, .vtu, .msh, .inp (CalculiX), .mdpa, or .csv for a table of materials
            to be filled in.
        format : {"mes", "vtu", "msh2", "msh4", "inp", "mdpa", "csv"}, optional
            Where the ending is not to tell it.
        bare : bool, optional
            .vtu, .msh: leaves out the arrays of codes and attributes.
        joints : str, optional
            .inp: what stands for joints, "tie" or "spring:KN,KS" (stiffnesses for an area).
        materials : str or path, optional
            .inp: table of E, nu, density and so on.
        gravity : float, optional
            .inp: acceleration downwards, 9.81 where it is not given; 0 for none.
        axisymmetric : bool, optional
            .inp: x is the radius.
        activity : Activity, optional
            .inp, .mdpa, .vtu: when elements come and go (`Run.activity`); a step for each number.
        stages : bool, optional
            .mdpa: writes materials and a project file for each stage beside the mesh. .vtu, with `activity`: a mesh
            of what stands in each step, and a .pvd file that makes a series of them.
        cables : sequence of int, optional
            .mdpa: trusses of these materials only pull.

        Returns
        -------
        list of str
            What the file cannot hold.

        Raises
        ------
        brelan.Error
        """
        wishes = _core.SaveWishes()
        wishes.arrays, wishes.stage_files, wishes.axisymmetric = not bare, stages, axisymmetric
        wishes.cables, wishes.joints, wishes.gravity = list(cables), joints, gravity
        wishes.materials = os.fspath(materials) if materials is not None else ""
        if activity is not None:
            wishes.activity = activity._rows()
        return self._core.save(os.fspath(file), format or "", wishes)

    def to_meshio(self) -> "meshio.Mesh":
        """The mesh for meshio: codes as point data, materials as cell data, names of materials as cell sets."""
        from .meshio import to_meshio

        return to_meshio(self)

    @classmethod
    def from_meshio(cls, mesh: "meshio.Mesh", kind: Optional[str] = None) -> "Mesh":
        """The mesh of a mesh of meshio, the other way round."""
        from .meshio import from_meshio

        return from_meshio(mesh, kind)

    def __reduce__(self) -> Tuple[Any, ...]:
        return Mesh.from_text, (self.text(), self.name, self.kind)


# Shapes of cells by the name that meshio gives them, their VTK number and their points.
_SHAPES = (
    ("vertex", 1, 1),
    ("line", 3, 2),
    ("triangle", 5, 3),
    ("quad", 9, 4),
    ("line3", 21, 3),
    ("triangle6", 22, 6),
    ("quad8", 23, 8),
    ("quad9", 28, 9),
)
_NUMBER_OF_SHAPE = {name: number for name, number, _ in _SHAPES}
_NAME_OF_SHAPE = {number: name for name, number, _ in _SHAPES}
_NODES_OF_SHAPE = {name: nodes for name, _, nodes in _SHAPES}


def _data_of(data: Optional[Mapping[str, ArrayLike]], count: int, what: str) -> Dict[str, NDArray[Any]]:
    arrays: Dict[str, NDArray[Any]] = {}
    for name, values in (data or {}).items():
        array = np.asarray(values)
        if array.shape != (count,):
            raise ValueError(f"{what}: expected {count} values of {name}, found the shape {array.shape}")
        arrays[name] = array
    return arrays
