"""Meshes as arrays."""

import gc
import pickle
import subprocess
import os
import json

import brelan
import numpy as np
import pytest
from conftest import base_mesh, one_group


@pytest.fixture
def wall():
    """8 elements, a wall of beams down to the middle of the mesh at x = 2."""
    return brelan.Deck(one_group([(2.0, 2.0), (2.0, 1.0)], kind="2 0", material="2 1")).run().mesh


def test_arrays_have_the_shapes_that_the_deck_draws(wall):
    assert wall.points.shape == (15, 2) and wall.points.dtype == np.float32
    assert wall.codes.shape == (15, 3) and wall.code_names == ["IDX", "IDY", "IDT"]
    assert wall.quads.shape == (8, 4) and wall.triangles.shape == (0, 3)
    assert wall.beams.shape == (1, 2) and wall.trusses.shape == (0, 2) and wall.joints.shape == (0, 4)
    ends = wall.points[wall.beams[0]]
    assert sorted(map(tuple, ends)) == [(2.0, 1.0), (2.0, 2.0)]
    assert wall.materials.tolist() == [1] * 9
    assert wall.classes.tolist() == [1] * 8 + [3]


def test_arrays_look_into_the_mesh_and_outlive_it(wall):
    points = wall.points
    points[:, 0] += 100.0
    assert wall.points[:, 0].min() == 100.0
    assert points.base is not None
    text = wall.text()
    assert "0.100000E+03" in text
    del wall
    gc.collect()
    assert points[:, 0].max() == 104.0


def test_numbers_and_corners_are_read_only(wall):
    for array in (wall.node_numbers, wall.element_numbers, wall.corners):
        with pytest.raises(ValueError, match="read-only"):
            array[...] = 0


def test_area_of_the_quads_is_that_of_the_mesh(wall):
    x, y = wall.points[wall.quads].transpose(2, 0, 1).astype(float)
    areas = 0.5 * sum(x[:, k] * y[:, (k + 1) % 4] - x[:, (k + 1) % 4] * y[:, k] for k in range(4))
    assert areas.tolist() == [1.0] * 8  # corners run anti-clockwise
    assert wall.quality().area.sum() == 8.0
    assert wall.quality().smallest_angle.tolist() == [90.0] * 8


def test_what_is_saved_is_read_again(wall, tmp_path):
    for name in ("a.Mes", "a.vtu", "a.msh"):
        wall.save(tmp_path / name)
        again = brelan.Mesh(tmp_path / name)
        for what in ("points", "codes", "corners", "materials", "classes", "node_numbers", "element_numbers"):
            assert np.array_equal(getattr(again, what), getattr(wall, what)), (name, what)
    with pytest.raises(brelan.Error, match="expected a name that ends in"):
        wall.save(tmp_path / "a.xyz")


def test_info_is_that_of_the_command(wall, tmp_path):
    wall.save(tmp_path / "a.Mes")
    said = subprocess.run([os.environ["BRELAN"], "info", "--json", tmp_path / "a.Mes"], capture_output=True, text=True)
    told = json.loads(said.stdout)[0]
    info = brelan.Mesh(tmp_path / "a.Mes").info()
    assert info == told


def test_a_corner_that_is_pushed_in_is_found(wall):
    assert wall.soundness() and not wall.soundness().findings
    inner = np.flatnonzero((wall.points == [1.0, 1.0]).all(axis=1))[0]
    wall.points[inner] = [1.75, 1.75]  # beyond the diagonal of the element right above it
    found = wall.soundness()
    assert not found and len(found["concave_elements"]) == 1 and found["concave_elements"].unsound
    assert len(found.findings[0].elements) == len(found.findings[0].at)


def test_a_mesh_of_arrays_has_what_it_was_given():
    points = [[0, 0], [1, 0], [1, 1], [0, 1], [2, 0]]
    mesh = brelan.Mesh.from_arrays(
        points,
        [("quad", [[0, 1, 2, 3]]), ("triangle", [[1, 4, 2]]), ("line", [[1, 2]])],
        point_data={"IDX": [1, 0, 0, 1, 0]},
        cell_data={"material": [3, 4, 2], "class": [1, 1, 3]},
        kind="displacement",
    )
    assert mesh.quads.tolist() == [[0, 1, 2, 3]] and mesh.triangles.tolist() == [[1, 4, 2]]
    assert mesh.beams.tolist() == [[1, 2]] and mesh.materials.tolist() == [3, 4, 2]
    assert mesh.codes[:, 0].tolist() == [1, 0, 0, 1, 0]
    assert np.array_equal(mesh.points, np.array(points, dtype=np.float32))


def test_arrays_that_are_none_of_a_mesh_are_refused():
    with pytest.raises(IndexError, match="expected places from 0 to 2"):
        brelan.Mesh.from_arrays(np.zeros((3, 2)), {"triangle": [[0, 1, 3]]})
    with pytest.raises(ValueError, match="expected 4 points for each quad"):
        brelan.Mesh.from_arrays(np.zeros((3, 2)), {"quad": [[0, 1, 2]]})
    with pytest.raises(ValueError, match="expected one of"):
        brelan.Mesh.from_arrays(np.zeros((3, 2)), {"tetra": [[0, 1, 2, 2]]})
    with pytest.raises(ValueError, match="expected 3 values of IDX"):
        brelan.Mesh.from_arrays(np.zeros((3, 2)), {"triangle": [[0, 1, 2]]}, point_data={"IDX": [1]})


def test_errors_name_file_and_line(tmp_path):
    bad = tmp_path / "bad.Mes"
    bad.write_text("abc\n")
    with pytest.raises(brelan.Error) as raised:
        brelan.Mesh(bad)
    assert raised.value.file == str(bad) and raised.value.line == 2
    assert str(raised.value).startswith(f"{bad}, line 2: ")
    with pytest.raises(brelan.Error, match="expected coupled, temperature, head or displacement"):
        brelan.Mesh(bad, kind="wet")


def test_nodes_and_elements_are_found_by_place_and_material(wall):
    x, y = wall.points.T
    assert wall.nodes_on(x=2.0).tolist() == wall.node_numbers[x == 2.0].tolist()
    assert wall.nodes_on(x=2.0, y=1.0).tolist() == wall.node_numbers[(x == 2.0) & (y == 1.0)].tolist()
    assert wall.nodes_in(1.0, 0.0, 2.0, 1.0).tolist() == wall.node_numbers[(x >= 1) & (x <= 2) & (y <= 1)].tolist()
    assert wall.border().tolist() == wall.node_numbers[(x == 0) | (x == 4) | (y == 0) | (y == 2)].tolist()
    assert wall.elements_of(1, "beam").tolist() == wall.element_numbers[wall.places("beams")].tolist()
    assert wall.places_of_nodes([wall.node_numbers[3], 99999]).tolist() == [3, -1]
    with pytest.raises(ValueError, match="expected x, y or both"):
        wall.nodes_on()


def test_files_for_solvers_carry_steps_and_joints(examples):
    run = brelan.Deck("stage.dat").run()
    run.mesh.save("Stage.inp", activity=run.activity)
    assert (examples / "Stage.inp").read_text().upper().count("*STEP") >= 3
    run.mesh.save("Stage.mdpa", activity=run.activity, stages=True)
    assert (examples / "Stage_stage_1.json").is_file()
    run.mesh.save("Stage.vtu", activity=run.activity, stages=True)
    for step, count in (0, 8), (1, 10), (2, 8), (6, 10):
        assert f'file="Stage-{step}.vtu"' in (examples / "Stage.pvd").read_text()
        assert len(brelan.Mesh(f"Stage-{step}.vtu").element_numbers) == count
    with pytest.raises(brelan.Error, match="come and go"):
        run.mesh.save("Stage.vtu", stages=True)
    pit = brelan.Deck("pit_stages.dat").run().mesh
    with pytest.raises(brelan.Error, match="joint"):
        pit.save("Pit.inp")
    assert isinstance(pit.save("Pit.inp", joints="tie"), list)


def test_names_of_materials_stay_with_the_mesh(wall, tmp_path):
    wall.set_name(1, "Sand")
    wall.set_name(1, "Sheet pile", of="beam")
    assert wall.names == {("solid", 1): "Sand", ("beam", 1): "Sheet pile"}
    wall.save(tmp_path / "named.Mes")
    assert brelan.Mesh(tmp_path / "named.Mes").names == wall.names


def test_heads_and_attributes_by_name():
    mesh = brelan.Deck(base_mesh(), kind="head").run().mesh
    assert mesh.kind == "head" and mesh.values.shape == (15,)
    mesh.values[:] = 12.5
    assert (brelan.Mesh.from_text(mesh.text()).values == 12.5).all()
    assert mesh.attribute("IDH").tolist() == [0] * 8
    with pytest.raises(KeyError):
        mesh.attribute("THIC")


def test_midside_nodes_are_places():
    mesh = brelan.Deck(base_mesh(), kind="displacement").run().mesh
    assert (mesh.midsides == -1).all() and mesh.midsides.shape == (8, 4)


def test_a_pickled_mesh_is_the_same(wall):
    assert pickle.loads(pickle.dumps(wall)).text() == wall.text()


def test_pictures_are_svg_and_png(wall):
    assert wall.picture().startswith(b"<svg") and wall.picture().rstrip().endswith(b"</svg>")
    assert wall.picture("png").startswith(b"\x89PNG")
    assert wall.picture(numbers="nodes") != wall.picture()
    bundle = wall._repr_mimebundle_()
    assert bundle["image/svg+xml"].startswith("<svg") and "15 nodes, 8 solids, 1 beam" in bundle["text/plain"]


def test_a_notebook_gets_pixels_of_a_large_mesh():
    large = brelan.Deck(base_mesh(width=80.0, height=60.0)).run().mesh
    assert set(large._repr_mimebundle_()) == {"text/plain", "image/png"}
