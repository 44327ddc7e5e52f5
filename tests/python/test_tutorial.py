"""The study of the tutorial: its script does what the chapter shows."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

import pytest

TUTORIAL = pathlib.Path(os.environ["BRELAN_SOURCE"]) / "docs/tutorial"
CHAPTER = (TUTORIAL / "7-wall-depth.md").read_text()


def test_the_chapter_shows_the_script():
    shown = re.search(r"```python\n(.*?)```", CHAPTER, re.S).group(1)
    assert shown in (TUTORIAL / "wall-depth/wall_depth.py").read_text()


@pytest.mark.skipif(shutil.which("ccx") is None, reason="CalculiX is not installed")
def test_the_study_says_and_draws_what_the_chapter_shows(tmp_path):
    shown = re.search(r"```text\n(.*?)```", CHAPTER, re.S).group(1).splitlines()
    if "BRELAN_LONG" not in os.environ:
        shown = [shown[1], shown[-1]]
    place = tmp_path / "study"
    shutil.copytree(TUTORIAL / "wall-depth", place)
    (place / "wall_depth.png").unlink()
    depths = [line.split()[0] for line in shown]
    ran = subprocess.run(
        [sys.executable, "wall_depth.py", "wall_depth.png", *depths],
        cwd=place,
        env={**os.environ, "MPLBACKEND": "Agg", "MPLCONFIGDIR": str(tmp_path)},
        capture_output=True,
        text=True,
    )
    assert ran.stdout.splitlines() == shown, ran.stdout + ran.stderr
    assert (place / "wall_depth.png").read_bytes().startswith(b"\x89PNG")
