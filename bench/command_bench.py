#!/usr/bin/env python3
"""Times of `brelan` on the largest mesh, beside meshio and Gmsh doing the same conversions.

    bench/command_bench.py build/release [rounds]

Makes a base mesh of 99,225 elements with the batch program, and one of triangles with Gmsh. Shown are the median and the
largest of the rounds in seconds of wall time, the median of processor time, and the load of the machine meanwhile. A
command that takes longer than it may ends the script with status 1.
"""
import os
import pathlib
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build/release").resolve()
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 5
SOURCE = pathlib.Path(__file__).resolve().parent.parent
BRELAN = BUILD / "brelan"

TRIANGLES = """
Point(1) = {0, 0, 0, S}; Point(2) = {100, 0, 0, S}; Point(3) = {100, 60, 0, S}; Point(4) = {0, 60, 0, S};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4}; Line(4) = {4, 1};
Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1}; Physical Surface("material 3", 1) = {1};
Mesh.Algorithm = 5;
"""


def python_with(module):
    for program in ("/usr/bin/python3", sys.executable):
        if subprocess.run([program, "-c", "import " + module], capture_output=True).returncode == 0:
            return program
    return None


def make_square(place):
    """Bmesh.dat of 316 by 316 nodes."""
    shutil.copytree(SOURCE / "data" / "Vork", place / "C" / "Vork")
    (place / "work").mkdir()
    (place / "deck.dat").write_text("2 0\n1 1 1 1 0 1\n0. 0.\n315. 1. 0.5\n315. 1. 0.5\n0\n")
    (place / "work" / "TFNAME.TMP").write_text("..\\deck.dat\n")
    subprocess.run([BUILD / "brelan2d"], cwd=place / "work", check=True,
                   env=dict(os.environ, BRELAN_DRIVE_C=str(place / "C")))


def make_triangles(place):
    """Triangles.Mes of about 98,000 elements."""
    (place / "triangles.geo").write_text(TRIANGLES.replace("S}", "0.402}"))
    subprocess.run(["gmsh", "-2", "-v", "1", "-format", "msh41", "-o", "triangles.msh", "triangles.geo"], cwd=place,
                   check=True)
    subprocess.run([BRELAN, "-q", "convert", "--kind", "coupled", "triangles.msh", "Triangles.Mes"], cwd=place,
                   check=True)


def measure(place, arguments, good=(0,)):
    wall, processor = [], []
    for _ in range(ROUNDS):
        before, begun = resource.getrusage(resource.RUSAGE_CHILDREN), time.perf_counter()
        done = subprocess.run([str(a) for a in arguments], cwd=place, stdin=subprocess.DEVNULL, capture_output=True)
        wall.append(time.perf_counter() - begun)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        processor.append(after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)
        if done.returncode not in good:
            sys.exit(f"{arguments}: {done.stderr.decode()}")
    return statistics.median(wall), max(wall), statistics.median(processor)


def main():
    slow = False
    meshio = python_with("meshio")
    with tempfile.TemporaryDirectory(prefix="brelan-bench-") as name:
        place = pathlib.Path(name)
        make_square(place)
        meshes = ["Bmesh.dat"]
        if shutil.which("gmsh"):
            make_triangles(place)
            meshes.append("Triangles.Mes")

        def row(title, limit, arguments):
            nonlocal slow
            middle, largest, processor = measure(place, arguments)
            over = limit is not None and middle > limit
            slow = slow or over
            bound = "" if limit is None else f"  of {limit:g} s" + ("  TOO SLOW" if over else "")
            print(f"  {title:<46} {middle:7.2f} {largest:8.2f} {processor:10.2f}{bound}", flush=True)

        for mesh in meshes:
            told = subprocess.run([BRELAN, "-q", "info", mesh], cwd=place, text=True, capture_output=True).stdout
            print(f"{told.strip()}    load {os.getloadavg()[0]:.1f} on {os.cpu_count()} processors, {ROUNDS} rounds")
            print(f"  {'':<46} {'median':>7} {'largest':>8} {'processor':>10}")
            row("brelan info", 1.0, [BRELAN, "info", mesh])
            row("brelan diff", 1.0, [BRELAN, "diff", mesh, mesh])
            row("brelan diff --by-place", 1.0, [BRELAN, "diff", "--by-place", mesh, mesh])
            for ending in ("svg", "png", "pdf", "html"):
                row("brelan plot, " + ending, 2.0, [BRELAN, "plot", mesh, "-o", "a." + ending])
            row("brelan convert, mesh file to vtu", 1.0, [BRELAN, "convert", mesh, "a.vtu"])
            row("brelan convert, mesh file to msh 4.1", 1.0, [BRELAN, "convert", mesh, "a.msh"])
            row("brelan convert, vtu to mesh file", 1.0, [BRELAN, "convert", "a.vtu", "b.Mes"])
            row("brelan convert, msh 4.1 to mesh file", 1.0, [BRELAN, "convert", "a.msh", "b.Mes"])
            row("brelan convert, msh 4.1 to vtu", 1.0, [BRELAN, "convert", "a.msh", "b.vtu"])
            if meshio:
                row("meshio, msh 4.1 to vtu", None, [meshio, "-c", "import meshio; meshio.read('a.msh').write('m.vtu')"])
            row("brelan convert, vtu to msh 4.1", 1.0, [BRELAN, "convert", "a.vtu", "b.msh"])
            if meshio:
                row("meshio, vtu to msh 4.1", None, [
                    meshio, "-c", "import meshio; meshio.gmsh.write('m.msh', meshio.read('a.vtu'), '4.1', binary=False)"])
            row("brelan convert, msh 4.1 to msh 2.2", 1.0, [BRELAN, "convert", "--to", "msh2", "a.msh", "b.msh"])
            if shutil.which("gmsh"):
                row("gmsh, msh 4.1 to msh 2.2", None, ["gmsh", "-0", "-v", "1", "-format", "msh22", "-o", "g.msh", "a.msh"])
                row("gmsh, msh 4.1 to vtk", None, ["gmsh", "-0", "-v", "1", "-format", "vtk", "-o", "g.vtk", "a.msh"])
            print()
    sys.exit(1 if slow else 0)


if __name__ == "__main__":
    main()
