"""Mesh files for meshio: after ``import brelan``, ``meshio.read("Pit.Mes")`` and ``meshio.write`` know them.

On the shell::

    python3 -m brelan.meshio convert Pit.Mes Pit.xdmf
"""

from __future__ import annotations

import os
import sys
from typing import Any, Dict, List, Optional, Tuple

import numpy as np

from .mesh import _NAME_OF_SHAPE, _NODES_OF_SHAPE, CLASS_NUMBERS, CLASSES, Mesh, Path

try:
    import meshio
except ImportError:  # the package is of use without it
    meshio = None


def _require_meshio() -> Any:
    if meshio is None:
        raise ImportError("meshio is not installed (Debian: python3-meshio)")
    return meshio


def to_meshio(mesh: Mesh) -> "meshio.Mesh":
    """The mesh for meshio.

    Returns
    -------
    meshio.Mesh
        All elements of one shape are a block. ``point_data`` has codes and numbers of nodes,
        ``cell_data`` materials, classes, numbers and attributes, ``cell_sets`` a set for each material with a name.
    """
    library = _require_meshio()
    cells = mesh._core.cells()
    shapes, offsets, nodes = cells["shapes"], cells["offsets"], cells["nodes"]
    places = [np.flatnonzero(shapes == shape) for shape in np.unique(shapes)]
    blocks: List[Tuple[str, Any]] = []
    for held in places:
        shape = _NAME_OF_SHAPE[int(shapes[held[0]])]
        count = _NODES_OF_SHAPE[shape]
        blocks.append((shape, nodes[offsets[held][:, np.newaxis] + np.arange(-count, 0)]))
    cell_data = {name: [array[held] for held in places] for name, array in cells["cell_data"].items()}
    sets: Dict[str, List[Any]] = {}
    materials, classes = cells["cell_data"]["material"], cells["cell_data"]["class"]
    for (of, number), name in mesh.names.items():
        own = classes <= CLASS_NUMBERS["joint"] if of == "solid" else classes == CLASS_NUMBERS[of]
        inside = own & (materials == number)
        sets[name] = [np.flatnonzero(inside[held]) for held in places]
    return library.Mesh(
        cells["points"].reshape(-1, 3),
        blocks,
        point_data=cells["point_data"],
        cell_data=cell_data,
        cell_sets=sets,
    )


def from_meshio(mesh: "meshio.Mesh", kind: Optional[str] = None, name: str = "Mesh.Mes") -> Mesh:
    """The mesh of a mesh of meshio.

    Parameters
    ----------
    mesh : meshio.Mesh
        With plane cells; point and cell data as `to_meshio` gives them, or none.
    kind : str, optional
        Found from the names of the codes where it is not given.
    name : str, optional
        First line of the mesh file.

    Raises
    ------
    brelan.Error
        For what a mesh file cannot hold.
    ValueError
        For cells of a shape that is not plane.
    """
    points = np.asarray(mesh.points)
    known = {key: np.ravel(values) for key, values in mesh.point_data.items() if np.size(values) == len(points)}
    counts = [len(block.data) for block in mesh.cells]
    cell_data = {
        key: np.concatenate([np.ravel(values) for values in blocks]) if blocks else np.zeros(0)
        for key, blocks in mesh.cell_data.items()
        if all(np.size(values) == count for values, count in zip(blocks, counts))
    }
    made = Mesh.from_arrays(
        points,
        [(block.type, block.data) for block in mesh.cells],
        point_data=known,
        cell_data=cell_data,
        kind=kind,
        name=name,
    )
    if "material" in cell_data:
        classes = cell_data.get("class", np.ones(sum(counts)))
        for key, places in mesh.cell_sets.items():
            _name_of_set(made, key, places, counts, cell_data["material"], classes)
    return made


def _name_of_set(mesh: Mesh, name: str, places: Any, counts: List[int], materials: Any, classes: Any) -> None:
    """A set that is all of one material gives it its name."""
    firsts = np.cumsum([0, *counts[:-1]])
    held = [first + np.asarray(part, dtype=np.intp) for first, part in zip(firsts, places) if part is not None and len(part)]
    if not held:
        return
    inside = np.concatenate(held)
    of = CLASSES.get(int(classes[inside[0]]), "solid")
    of = "solid" if of == "joint" else of
    if len(np.unique(materials[inside])) == 1:
        mesh.set_name(int(materials[inside[0]]), name, of)


def read(file: Path) -> "meshio.Mesh":
    """Reads a mesh file for meshio.

    Raises
    ------
    brelan.Error
        With file and line; a ReadError of meshio's would end the whole process.
    """
    return to_meshio(Mesh(file))


def write(file: Path, mesh: "meshio.Mesh", kind: Optional[str] = None) -> None:
    """Writes a mesh of meshio as a mesh file, whole or not at all.

    Raises
    ------
    brelan.Error, ValueError
        For what such a file cannot hold.
    """
    from_meshio(mesh, kind, os.path.basename(os.fspath(file))).save(file, "mes")


def register() -> None:
    """Makes meshio know the endings .Mes and .Meg; ``import brelan`` does so."""
    if meshio is not None:
        meshio.register_format("brelan", [".mes", ".meg", ".Mes", ".Meg"], read, {"brelan": write})


def main(arguments: Optional[List[str]] = None) -> int:
    """The shell of meshio with mesh files."""
    _require_meshio()
    register()
    import meshio._cli

    return int(meshio._cli.main(arguments) or 0)


if __name__ == "__main__":
    sys.exit(main())
