"""Studies from Python."""

import numpy as np
import pytest

import brelan

DECK = "  2  0\n  1 1 1 1 0 1\n  0.0 0.0\n  {width} 1.0 0.5\n  {height} 1.0 0.5\n  1\nBmesh.dat\nOut.Mes\n  1 1\n  0\n  0 0 0 0\n  1 1\n  0 0\n"


def write_study(place, values):
    (place / "s.dat").write_text(DECK)
    (place / "s.toml").write_text(f'deck = "s.dat"\ngather = ["nodes", "sound", "area"]\n[values]\n{values}\n')
    return place / "s.toml"


def test_a_study_gives_its_table_as_arrays(tmp_path):
    study = brelan.study(write_study(tmp_path, "width = [2, 3]\nheight = [1.0, 2.0]"), jobs=2)
    assert study.finished.all() and len(study) == 4
    width, height = study.parameters["width"], study.parameters["height"]
    assert (width.dtype, height.dtype, study.values["nodes"].dtype) == (np.int64, np.float64, np.int64)
    np.testing.assert_array_equal(width, [2, 2, 3, 3])
    np.testing.assert_array_equal(study.values["nodes"], (width + 1) * (height + 1))
    np.testing.assert_array_equal(study.table["area"], width * height)
    assert len(brelan.Mesh(study.folder(4) / "Out.Mes").points) == 12
    assert repr(study) == f"<Study {tmp_path / 's.study'}: 4 of 4 cases finished>"


def test_a_case_that_fails_has_nan_and_a_message(tmp_path):
    study = brelan.study(write_study(tmp_path, 'width = 2\nheight = ["1", "1 x"]'), jobs=1)
    np.testing.assert_array_equal(study.finished, [True, False])
    assert np.isnan(study.values["nodes"][1]) and study.values["nodes"][0] == 6
    assert "s.dat, line 5" in study.messages[1]
    again = brelan.study(tmp_path / "s.toml", run=False)
    np.testing.assert_array_equal(again.states, study.states)


def test_a_study_file_that_is_wrong_is_told_with_its_line(tmp_path):
    with pytest.raises(brelan.Error, match=r"s.toml, line 4: width: expected"):
        brelan.study(write_study(tmp_path, "width = []\nheight = 1"))
    with pytest.raises(brelan.Error, match="no results"):
        brelan.study(write_study(tmp_path, "width = 1\nheight = 1"), run=False)
