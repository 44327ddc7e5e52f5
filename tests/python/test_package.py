"""The package as a whole: types, names, installing."""

import os
import pathlib
import subprocess
import sys
import venv

import brelan
import pytest

SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])
PYTHON = {**os.environ, "PYTHONPATH": "", "PYTHONDONTWRITEBYTECODE": "1"}


def test_types_are_right_and_those_of_the_module_are_known(tmp_path):
    said = subprocess.run(
        [sys.executable, "-m", "mypy", "--config-file", SOURCE / "pyproject.toml", "--cache-dir", tmp_path, "brelan"],
        cwd=SOURCE / "python",
        capture_output=True,
        text=True,
    )
    assert said.returncode == 0, said.stdout + said.stderr


@pytest.mark.skipif("BRELAN_LONG" not in os.environ, reason="a second run of mypy: in scripts/long")
def test_a_user_s_script_is_checked_against_the_package(tmp_path):
    (tmp_path / "script.py").write_text("import brelan\nbrelan.Mesh('a').points.nothing\nx: str = brelan.Deck('a').edition\n")
    said = subprocess.run(
        [sys.executable, "-m", "mypy", "--cache-dir", tmp_path / "cache", "script.py"],
        cwd=tmp_path,
        env={**PYTHON, "MYPYPATH": str(SOURCE / "python")},
        capture_output=True,
        text=True,
    )
    assert said.stdout.count("script.py:") == 2 and said.returncode == 1, said.stdout


def test_stubs_name_what_the_module_has():
    told = (SOURCE / "python/brelan/_core.pyi").read_text()
    for name in dir(brelan._core):
        if not name.startswith("_"):
            assert f"class {name}" in told or f"def {name}(" in told or f"{name}: str" in told, name
            of = getattr(brelan._core, name)
            for member in vars(of) if isinstance(of, type) else ():
                if not member.startswith("_"):
                    assert f"    def {member}(" in told or f"    {member}: " in told, f"{name}.{member}"


def test_every_public_name_has_a_docstring():
    for name in brelan.__all__:
        of = getattr(brelan, name)
        if not callable(of):
            continue
        assert of.__doc__, name
        for member, value in vars(of).items():
            if not member.startswith("_") and (callable(value) or isinstance(value, property)):
                assert value.__doc__, f"{name}.{member}"


def test_versions_agree():
    assert f'version = "{brelan.__version__}"' in (SOURCE / "pyproject.toml").read_text()


def test_it_is_installed_without_a_network(tmp_path):
    if "BRELAN_BUILD" not in os.environ:
        pytest.skip("no build is named")
    venv.create(tmp_path / "venv", system_site_packages=True, with_pip=True)
    python = tmp_path / "venv/bin/python"
    subprocess.run(
        [python, "-m", "pip", "install", "-q", "--no-index", "--no-build-isolation", "--no-deps", "."],
        cwd=SOURCE,
        env=PYTHON,
        check=True,
        capture_output=True,
    )
    said = subprocess.run(
        [python, "-c", "import brelan; print(brelan.__file__, brelan.Deck('examples/stage.dat').run())"],
        cwd=SOURCE,
        env=PYTHON,
        capture_output=True,
        text=True,
    )
    assert str(tmp_path) in said.stdout and "finished" in said.stdout, said.stderr
