"""Mesh files for meshio, both ways."""

import os
import subprocess
import sys

import brelan
import meshio
import numpy as np
import pytest


@pytest.fixture
def pit(examples):
    mesh = brelan.Deck("pit_stages.dat").run().mesh
    mesh.set_name(1, "Clay")
    mesh.set_name(1, "Wall", of="beam")
    return mesh


def test_meshio_reads_and_writes_mesh_files(pit):
    pit.save("Pit.Mes")
    read = meshio.read("Pit.Mes")
    assert len(read.points) == len(pit.points)
    assert {block.type: len(block.data) for block in read.cells} == {
        "line": len(pit.beams) + len(pit.trusses),
        "triangle": len(pit.triangles),
        "quad": len(pit.quads) + len(pit.joints),
    }
    meshio.write("Again.Mes", read)
    again = brelan.Mesh("Again.Mes")
    assert again.text("x") == pit.text("x") and again.names == pit.names


def test_codes_and_materials_are_point_and_cell_data(pit):
    mesh = pit.to_meshio()
    assert np.array_equal(mesh.point_data["IDX"], pit.codes[:, 0])
    quads = mesh.cells_dict["quad"]
    materials = mesh.get_cell_data("material", "quad")
    solids = mesh.get_cell_data("class", "quad") == 1
    assert np.array_equal(quads[solids], pit.quads)
    assert np.array_equal(materials[solids], pit.materials[pit.places("quads")])


def test_names_of_materials_are_sets(pit):
    mesh = pit.to_meshio()
    lines = [block.type for block in mesh.cells].index("line")
    assert len(mesh.cell_sets["Wall"][lines]) == np.count_nonzero(pit.materials[pit.places("beams")] == 1)
    clay = sum(len(places) for places in mesh.cell_sets["Clay"])
    assert clay == np.count_nonzero((pit.materials == 1) & (pit.classes <= 2))


def test_a_mesh_of_another_program_becomes_one(tmp_path):
    points = np.array([[0, 0, 0], [2, 0, 0], [2, 1, 0], [0, 1, 0], [1, 2, 0]], dtype=float)
    meshio.Mesh(points, [("quad", [[0, 1, 2, 3]]), ("triangle", [[3, 2, 4]])]).write(tmp_path / "other.vtk")
    mesh = brelan.Mesh.from_meshio(meshio.read(tmp_path / "other.vtk"))
    assert mesh.quality().area.tolist() == [2.0, 1.0]


def test_what_is_no_plane_mesh_is_refused():
    solid = meshio.Mesh(np.zeros((4, 3)), [("tetra", [[0, 1, 2, 3]])])
    with pytest.raises(ValueError, match="found 'tetra'"):
        brelan.Mesh.from_meshio(solid)


def test_a_bad_mesh_file_is_an_error_and_no_end_of_the_process(tmp_path):
    (tmp_path / "bad.Mes").write_text("abc\n")
    with pytest.raises(brelan.Error) as raised:
        meshio.read(tmp_path / "bad.Mes")
    assert raised.value.line == 2


def test_the_shell_converts_both_ways(pit):
    pit.save("Pit.Mes")
    environment = {**os.environ, "PYTHONDONTWRITEBYTECODE": "1"}
    command = [sys.executable, "-m", "brelan.meshio", "convert"]
    subprocess.run([*command, "Pit.Mes", "Pit.vtk"], check=True, env=environment, capture_output=True)
    subprocess.run([*command, "Pit.vtk", "Back.Mes"], check=True, env=environment, capture_output=True)
    back = brelan.Mesh("Back.Mes")
    assert np.array_equal(back.points, pit.points) and np.array_equal(back.codes, pit.codes)
    assert np.array_equal(back.corners, pit.corners) and np.array_equal(back.materials, pit.materials)
