"""What the tests of the package share."""

import os
import pathlib
import shutil

import pytest

SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])


@pytest.fixture
def examples(tmp_path, monkeypatch):
    """A project of its own with the examples, as the current directory."""
    place = tmp_path / "project"
    shutil.copytree(SOURCE / "examples", place)
    monkeypatch.chdir(place)
    return place


def base_mesh(width=4.0, height=2.0, more="  0\n  0 0 0 0\n  1 1\n"):
    """A deck for a base mesh of elements of 1 by 1, as it is or with another edit."""
    edit, _, cards = more.partition("\n")
    return (
        "  2  0\n  1 1 1 1 0 1\n  0.0 0.0\n"
        f"  {width} 1.0 0.5\n  {height} 1.0 0.5\n"
        f"  1\nBmesh.dat\nOut.Mes\n  1 1\n{edit}\n{cards}  0 0\n"
    )


def one_group(points, kind="1 0", material="2 1", rule=2, width=4.0, height=2.0):
    """A deck with one line or outline over a base mesh."""
    closed = int(kind.split()[0]) in (3, 4)
    segments = len(points) if closed else len(points) - 1
    return (
        "  2  0\n  1 1 1 1 0 1\n  0.0 0.0\n"
        f"  {width} 1.0 0.5\n  {height} 1.0 0.5\n"
        "  1\nBmesh.dat\nOut.Mes\n  1 1\n  4\n  0\n  0\n  1\n"
        f"  0.0 0.0 {width} {height}\n  1 0\n  0.0 0.0\n  {kind}\n  {material}\n"
        f"  {len(points)} 0 0 0.0 0.0\n"
        + "".join(f"  {k + 1} {x} {y}\n" for k, (x, y) in enumerate(points))
        + f"  {segments}\n"
        + "".join(f"  {k + 1} 1 0 {rule}\n" for k in range(segments))
    )
