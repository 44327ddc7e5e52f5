#!/usr/bin/env python3
"""Makes the inputs that fuzzing begins with, from what the tree has: examples, whole-run cases, the package's data and
the random decks of the independent calculation. What the fuzzers add is kept in corpus/.

    seeds.py BRELAN DIR    the command, for meshes in other formats; a folder for each target is made in DIR
"""
import hashlib
import os
import pathlib
import random
import re
import struct
import subprocess
import sys
import tempfile

TREE = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TREE / "tests" / "independent"))
import compare
import compare_groups
import compare_outputs

KINDS = ["coupled", "temperature", "head", "displacement"]  # as the header byte counts them
OTHER_EDITIONS = {2: 0, 3: 0, 4: 0, 11: 0, 12: 0, 5: 1, 6: 1, 9: 2, 10: 2}
BIT_2 = 4
LONGEST = 6000
DECKS = 40  # of each sort
MESH_NAME = re.compile(rb"(?im)^[^\r\n]*\.me[sg][ \t]*(?=\r?$)")

brelan, target = sys.argv[1], pathlib.Path(sys.argv[2])


def put(name, header, *parts):
    """A None for a header: the target has none."""
    data = (b"" if header is None else bytes([header])) + b"\0".join(parts)
    if len(data) > LONGEST:
        return
    folder = target / name
    folder.mkdir(parents=True, exist_ok=True)
    (folder / hashlib.sha1(data).hexdigest()[:16]).write_bytes(data)


def kind_in(path):
    return next((k for k, kind in enumerate(KINDS) if kind in str(path)), 3)


def sources_renamed(deck):
    """The first names of meshes in a deck become those of the mesh that a run has."""
    names = iter([b"a.Mes", b"b.Mes"] if MESH_NAME.search(deck) and deck.split()[:1] in ([b"0"], [b"-1"]) else [b"a.Mes"])
    return MESH_NAME.sub(lambda found: next(names, found.group()), deck)


def put_run(kind, deck, mesh):
    put("deck_text", kind, deck)
    if not re.search(rb"(?im)^ *bmesh\.dat", deck):
        deck = sources_renamed(deck)
    for bits in (kind, kind | BIT_2):
        put("whole_run", bits, deck, mesh)


def put_mesh(kind, mesh):
    for bits in (kind, kind | BIT_2):
        put("mesh_file", bits, mesh)
    put("page_of_mesh", kind, mesh)


def binary_msh(version):
    """A square and a triangle, as binary Gmsh."""
    points = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (2, 0, 0)]
    head = b"$MeshFormat\n%s 1 8\n" % version + struct.pack("<i", 1) + b"\n$EndMeshFormat\n$Nodes\n"
    if version == b"2.2":
        nodes = b"5\n" + b"".join(struct.pack("<iddd", k + 1, *p) for k, p in enumerate(points))
        elements = (b"2\n" + struct.pack("<iii", 3, 1, 2) + struct.pack("<7i", 1, 1, 1, 1, 2, 3, 4)
                    + struct.pack("<iii", 2, 1, 2) + struct.pack("<6i", 2, 1, 1, 2, 5, 3))
    else:
        nodes = (struct.pack("<4Q", 1, 5, 1, 5) + struct.pack("<iiiQ", 2, 1, 0, 5) + struct.pack("<5Q", 1, 2, 3, 4, 5)
                 + b"".join(struct.pack("<ddd", *p) for p in points))
        elements = (struct.pack("<4Q", 2, 2, 1, 2) + struct.pack("<iiiQ", 2, 1, 3, 1) + struct.pack("<5Q", 1, 1, 2, 3, 4)
                    + struct.pack("<iiiQ", 2, 1, 2, 1) + struct.pack("<4Q", 2, 2, 5, 3))
    return head + nodes + b"\n$EndNodes\n$Elements\n" + elements + b"\n$EndElements\n"


def text_vtu():
    """The same in text."""
    def array(name, kind, values):
        return f'<DataArray type="{kind}" Name="{name}" NumberOfComponents="{3 if name == "Points" else 1}" format="ascii">{values}</DataArray>'
    return f"""<?xml version="1.0"?>
<VTKFile type="UnstructuredGrid" version="0.1" byte_order="LittleEndian"><UnstructuredGrid>
<Piece NumberOfPoints="5" NumberOfCells="2"><Points>{array("Points", "Float64", "0 0 0 1 0 0 1 1 0 0 1 0 2 0 0")}</Points>
<Cells>{array("connectivity", "Int64", "0 1 2 3 1 4 2")}{array("offsets", "Int64", "4 7")}{array("types", "UInt8", "9 5")}</Cells>
<CellData>{array("material", "Int32", "2 3")}</CellData></Piece></UnstructuredGrid></VTKFile>
""".encode()


def put_converted(mesh, kind):
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder, "a.Mes")
        source.write_bytes(mesh)
        for name, form in (("vtu_file", "vtu"), ("gmsh_file", "msh"), ("gmsh_file", "msh2")):
            made = pathlib.Path(folder, "made")
            done = subprocess.run([brelan, "-q", "convert", "--kind", KINDS[kind], "--to", form, source, made],
                                  capture_output=True, check=False)
            if done.returncode == 0:
                put(name, kind, made.read_bytes())
                put(name, BIT_2, made.read_bytes())


row, quay = ((TREE / "examples" / name).read_bytes() for name in ("Row.Mes", "Quay.Mes"))
for path in sorted((TREE / "examples").glob("*.dat")):
    put_run(3, path.read_bytes(), quay if b"Quay" in path.read_bytes() else row)
cases = TREE / "tests" / "batch" / "cases"
for path in sorted(cases.rglob("*.Mes")):
    mesh = path.read_bytes()
    put_mesh(kind_in(path), mesh)
    put_converted(mesh, kind_in(path))
    for deck in [deck for folder in path.parents for deck in folder.glob("deck.dat") if cases in folder.parents]:
        put_run(kind_in(path), deck.read_bytes(), mesh)
for path in sorted(cases.rglob("deck.dat")):
    put_run(kind_in(path), path.read_bytes(), row)
for mesh in (row, quay):
    put_mesh(3, mesh)
for version in (b"2.2", b"4.1"):
    put("gmsh_file", 3, binary_msh(version))
put("vtu_file", 3, text_vtu())

for seed in range(DECKS):
    ways = [compare_groups.GroupCase(seed), compare_outputs.new_case(seed)]
    ways += [compare.Case(seed, compare.ROAD[seed % len(compare.ROAD)])]
    for case in ways:
        files = {os.path.basename(name).lower(): text for name, text in case.files.items()}
        kind = OTHER_EDITIONS.get(case.edition, 3)
        meshes = [text for name, text in files.items() if name.endswith((".mes", ".meg"))]
        deck = next((text for name, text in files.items() if re.fullmatch(r"(deck1?|d|d 1)\.dat", name)), None)
        if deck:
            put_run(kind, deck, meshes[0] if meshes else row)
        for mesh in meshes[:1]:
            put_mesh(kind, mesh)
        if seed < 8 and meshes:
            put_converted(meshes[0], kind)
        debug = next((text for name, text in files.items() if name.startswith("brelan_p")), b"1 99.\n")
        put("project_files", None, files.get("dv-brelan.dat", b""), debug, files.get("unit.dat", b""),
            files.get("program.dat", b""), files.get("tfname.tmp", b"") if seed % 4 == 0 else b"")
data = TREE / "data" / "Vork" / "Qx" / "Qxdata"
put("project_files", None, b"", b"1 99.\n")
names = ("DV-BRELAN.dat", "DEBUG/Brelan_P1.dat", "UNIT.DAT", "PROGRAM.DAT")
put("project_files", None, *((data / name).read_bytes() for name in names))
