"""Builds the package with CMake, for ``pip install --no-build-isolation --no-deps .``; pyproject.toml says the rest.

BRELAN_BUILD names a build that is there, which is taken in place of one of its own.
"""

import os
import pathlib
import shutil
import subprocess
import sys

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py

SOURCE = pathlib.Path(__file__).resolve().parent


class BuildWithCMake(build_py):
    def run(self):
        build = pathlib.Path(os.environ.get("BRELAN_BUILD", SOURCE / "build" / "pip")).resolve()
        if not (build / "CMakeCache.txt").is_file():
            self.configure(build)
        jobs = str(os.cpu_count() or 1)
        targets = ["brelan_python", "brelan_python_texts"]
        subprocess.run(["cmake", "--build", build, "--target", *targets, "-j", jobs], check=True)
        target = pathlib.Path(self.build_lib) / "brelan"
        shutil.rmtree(target, ignore_errors=True)
        shutil.copytree(build / "python" / "brelan", target, ignore=shutil.ignore_patterns("__pycache__"))

    def configure(self, build):
        options = ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_UNITY_BUILD=ON", "-DBRELAN_PYTHON=ON"]
        options += [f"-DBRELAN_{part}=OFF" for part in ("TESTS", "BENCH")]
        options += [f"-DPython3_EXECUTABLE={sys.executable}"]
        subprocess.run(["cmake", "-S", SOURCE, "-B", build, *options], check=True)


class WithModule(Distribution):
    def has_ext_modules(self):
        return True  # the wheel is for this machine and interpreter


setup(cmdclass={"build_py": BuildWithCMake}, distclass=WithModule)
