import base64
import json
import os
import struct
import subprocess
import unittest
import zlib

from support import CODES, EDITIONS, SOURCE, VALUES, Case, Mesh, python_with, records, sample

MESHIO = python_with("meshio")

# What meshio finds in a file, as JSON: points, and for each cell its type, nodes and data.
READ = """
import contextlib, io, json, sys, meshio
with contextlib.redirect_stdout(io.StringIO()):
    mesh = meshio.read(sys.argv[1])
cells = []
for block, cell in enumerate(mesh.cells):
    for i, nodes in enumerate(cell.data):
        data = {name: float(values[block][i]) for name, values in mesh.cell_data.items()}
        cells.append({"type": cell.type, "nodes": [int(n) for n in nodes], "data": data})
point_data = {name: [float(v) for v in values] for name, values in mesh.point_data.items() if values.ndim == 1}
json.dump({"points": mesh.points.tolist(), "cells": cells, "point_data": point_data,
           "names": {k: [int(v[0]), int(v[1])] for k, v in mesh.field_data.items() if len(v) == 2}}, sys.stdout)
"""


TEXT_VTU = """<VTKFile type="UnstructuredGrid" version="0.1" byte_order="LittleEndian"><UnstructuredGrid>
<Piece NumberOfPoints="3" NumberOfCells="1">
<Points><DataArray type="Float64" NumberOfComponents="3" format="ascii">0 0 0  1 0 0  1 1 0</DataArray></Points>
<Cells><DataArray type="Int64" Name="connectivity" format="ascii">0 1 2</DataArray>
<DataArray type="Int64" Name="offsets" format="ascii">3</DataArray>
<DataArray type="UInt8" Name="types" format="ascii">5</DataArray></Cells>
<CellData><DataArray type="Int32" Name="material" format="ascii">MATERIAL</DataArray></CellData>
</Piece></UnstructuredGrid></VTKFile>
"""


class Convert(Case):
    def meshio(self, name):
        self.assertIsNotNone(MESHIO, "python3-meshio is not installed")
        result = subprocess.run([MESHIO, "-c", READ, self.path(name)], text=True, capture_output=True, timeout=300)
        self.assertEqual(result.returncode, 0, result.stderr)
        return json.loads(result.stdout)

    def gmsh(self, name, *arguments):
        """Gmsh reads a file; what it says must hold no warning and no error."""
        result = subprocess.run(["gmsh", "-nopopup", "-v", "4", self.path(name), *(arguments or ["-"])], text=True,
                                capture_output=True, timeout=300)
        said = result.stdout + result.stderr
        self.assertEqual(result.returncode, 0, said)
        self.assertNotIn("Warning", said)
        self.assertNotIn("Error", said)
        return said

    def test_there_and_back_gives_the_same_records(self):
        for kind in EDITIONS:
            mesh = sample(kind)
            if kind == "head":
                mesh.hide_trusses = True
            text = mesh.text()
            self.write("a.Mes", text)
            for ending, options in (("vtu", []), ("msh", []), ("msh", ["--to", "msh2"])):
                with self.subTest(kind=kind, format=options or ending):
                    self.good("convert", *options, "a.Mes", "b." + ending)
                    self.good("convert", "b." + ending, "back.Mes")
                    back = self.path("back.Mes").read_text()
                    self.assertEqual(records(back), records(text))
                    self.assertEqual(back.split("\n")[0].rstrip(), "back.Mes")

    def test_batch_programs_own_meshes_come_back_byte_for_byte(self):
        """Walls, joints, stages and struts of each kind; in the head kind the head of the file hides the struts."""
        deck = (SOURCE / "examples" / "pit_stages.dat").read_text()
        for kind, edition in EDITIONS.items():
            self.run_deck(deck, edition)
            written = self.path("PitStages.Mes").read_text()
            self.assertEqual(self.info("PitStages.Mes")["kind"], kind)
            self.assertEqual(self.info("PitStages.Mes")["flow_lines"], kind == "head")
            for options, name in (([], "a.Mes"), ([], "a.vtu"), ([], "a.msh"), (["--to", "msh2"], "b.msh")):
                with self.subTest(kind=kind, file=name):
                    self.good("convert", *options, "PitStages.Mes", name)
                    self.good("convert", name, "b.Mes")
                    self.assertEqual(records(self.path("b.Mes").read_text()), records(written))
                    self.good("diff", "PitStages.Mes", name)

    def test_base_mesh_comes_back_with_the_same_records(self):
        mesh = self.square(40)
        self.good("convert", mesh, "a.Mes")
        for name in ("a.vtu", "a.msh"):
            self.good("convert", mesh, name)
            self.good("convert", name, "b.Mes")
            self.assertEqual(records(self.path("b.Mes").read_text()), records(self.path("a.Mes").read_text()))
            self.good("diff", mesh, name)

    def test_midside_nodes_whole_and_in_part(self):
        mesh = Mesh()
        for n, (x, y) in enumerate([(1, 1), (0, 1), (0, 0), (1, 0), (.5, 1), (0, .5), (.5, 0), (1, .5), (2, 0),
                                    (1.5, .5), (1.5, 0)], 1):
            mesh.node(n, float(x), float(y))
        mesh.solid(1, (1, 2, 3, 4), 1, None, (5, 6, 7, 8))
        mesh.solid(2, (1, 4, 9), 2, None, (8, 11, 10, 0))
        mesh.solid(3, (1, 2, 3), 2, None, (5, 0, 0, 0))
        self.write("a.Mes", mesh.text())
        for name, types in (("a.vtu", ["quad8", "triangle6", "triangle"]), ("a.msh", ["quad8", "triangle", "triangle6"])):
            self.good("convert", "a.Mes", name)
            self.good("convert", name, "b.Mes")
            self.assertEqual(records(self.path("b.Mes").read_text()), records(mesh.text()))
            self.assertEqual([c["type"] for c in self.meshio(name)["cells"]], types)

    def check_meshio(self, name, mesh, kind, has_data=True):
        """Everything that the mesh holds, as meshio reads it."""
        found = self.meshio(name)
        numbers = [node[0] for node in mesh.nodes]
        for (number, codes, x, y, values), point in zip(mesh.nodes, found["points"]):
            self.assertAlmostEqual(point[0], x, delta=1e-6 * max(1, abs(x)))
            self.assertAlmostEqual(point[1], y, delta=1e-6 * max(1, abs(y)))
            self.assertEqual(point[2], 0.0)
        self.assertEqual(len(found["points"]), len(numbers))
        cells = [(c["type"], [numbers[n] for n in c["nodes"]], c["data"]) for c in found["cells"]]
        expected = [("quad" if c[3] else "triangle", [n for n in c if n], m, ("solid", "joint")[i == 2], number)
                    for i, (number, c, _, m, _) in enumerate(mesh.solids)]
        expected += [("line", [i, j], m, "beam", number) for number, i, j, m in mesh.beams]
        expected += [("line", [i, j], m, "truss", number) for number, i, j, m in mesh.trusses]
        self.assertEqual(sorted((t, n) for t, n, _ in cells), sorted((t, n) for t, n, _, _, _ in expected))
        if not has_data:
            return found, cells, expected
        for k, code in enumerate(CODES[kind]):
            self.assertEqual(found["point_data"][code], [node[1][k] for node in mesh.nodes], code)
        for k, value in enumerate(VALUES[kind]):
            self.assertEqual(found["point_data"][value], [node[4][k] for node in mesh.nodes], value)
        told = sorted((c["data"]["number"], c["data"]["material"], c["data"]["class"], c["type"]) for c in found["cells"])
        classes = {"solid": 1, "joint": 2, "beam": 3, "truss": 4}
        self.assertEqual(told, sorted((number, m, classes[of], t) for t, _, m, of, number in expected))
        return found, cells, expected

    def test_meshio_reads_vtu(self):
        for kind in EDITIONS:
            with self.subTest(kind):
                mesh = sample(kind)
                self.write("a.Mes", mesh.text())
                self.good("convert", "a.Mes", "a.vtu")
                self.check_meshio("a.vtu", mesh, kind)

    def test_meshio_reads_gmsh_4_1(self):
        for kind in EDITIONS:
            with self.subTest(kind):
                mesh = sample(kind)
                self.write("a.Mes", mesh.text())
                self.good("convert", "a.Mes", "a.msh")
                found, cells, expected = self.check_meshio("a.msh", mesh, kind)
                self.check_groups(found, cells, expected)

    def test_meshio_reads_gmsh_2_2(self):
        # meshio 5.0 cannot read element data of version 2.2 with several blocks of cells, whoever wrote it.
        mesh = sample("displacement")
        self.write("a.Mes", mesh.text())
        self.good("convert", "--to", "msh2", "--bare", "a.Mes", "a.msh")
        found, cells, expected = self.check_meshio("a.msh", mesh, "displacement", has_data=False)
        self.check_groups(found, cells, expected)

    def check_groups(self, found, cells, expected):
        """Every cell has a physical tag, whose name tells class and material."""
        names = {(tag, dimension): name for name, (tag, dimension) in found["names"].items()}
        words = {"solid": "material", "joint": "joint", "beam": "beam", "truss": "truss"}
        told = sorted((t, n, names[int(data["gmsh:physical"]), 1 if t == "line" else 2]) for t, n, data in cells)
        self.assertEqual(told, sorted((t, n, f"{words[of]} {m}") for t, n, m, of, _ in expected))

    def test_gmsh_reads_what_is_written(self):
        pit = self.pit()
        nodes, *elements = map(int, pit.read_text().split("\n")[2].split())  # as the mesh file counts them
        for options in (["--to", "msh4"], ["--to", "msh2"]):
            self.good("convert", *options, pit, "a.msh")
            said = self.gmsh("a.msh")
            self.assertRegex(said, rf"\b{nodes} nodes")
            self.assertRegex(said, rf"\b{sum(elements)} elements")

    def test_what_gmsh_writes_is_read(self):
        """Text and binary of both versions, as Gmsh saves a mesh of ours."""
        pit = self.pit()
        self.good("convert", "--bare", pit, "a.msh")
        for version in ("22", "41"):
            for binary in ("0", "1"):
                with self.subTest(version=version, binary=binary):
                    self.gmsh("a.msh", "-setnumber", "Mesh.Binary", binary, "-format", "msh" + version, "-0",
                              "-o", str(self.path("g.msh")))
                    self.good("convert", "--kind", "displacement", "g.msh", "b.Mes")
                    ours, theirs = self.info(pit), self.info("b.Mes")
                    for key in ("elements", "solids", "joints", "beams", "trusses", "sound"):
                        self.assertEqual(ours[key] if key != "elements" else ours[key]["count"],
                                         theirs[key] if key != "elements" else theirs[key]["count"])
                    rows = lambda told: {(r["class"], r["material"]): (r["count"], round(r["area"], 3)) for r in told["materials"]}
                    self.assertEqual(rows(ours), rows(theirs))

    def test_mesh_drawn_in_gmsh_becomes_a_mesh_of_each_kind(self):
        self.write("drawn.geo", """
            Point(1) = {0, 0, 0, 0.5}; Point(2) = {4, 0, 0, 0.5}; Point(3) = {4, 2, 0, 0.5}; Point(4) = {0, 2, 0, 0.5};
            Point(5) = {2, 0, 0, 0.5}; Point(6) = {2, 2, 0, 0.5};
            Line(1) = {1, 5}; Line(2) = {5, 2}; Line(3) = {2, 3}; Line(4) = {3, 6}; Line(5) = {6, 4}; Line(6) = {4, 1}; Line(7) = {5, 6};
            Curve Loop(1) = {1, 7, 5, 6}; Curve Loop(2) = {2, 3, 4, -7};
            Plane Surface(1) = {1}; Plane Surface(2) = {-2};
            Recombine Surface{1};
            Physical Surface("sand", 4) = {1}; Physical Surface("clay", 6) = {2};
            Physical Curve("beam 2") = {7}; Physical Curve("border") = {1, 2, 3, 4, 5, 6};
            """)
        for version in ("msh22", "msh41"):
            self.gmsh("drawn.geo", "-2", "-format", version, "-o", str(self.path("drawn.msh")))
            self.failed(self.brelan("convert", "drawn.msh", "b.Mes"), "drawn.msh: no node codes tell the kind")
            for kind in EDITIONS:
                result = self.brelan("convert", "--kind", kind, "drawn.msh", "b.Mes")
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertIn("are no elements and were left out", result.stderr)
                self.assertIn("clockwise elements were turned", result.stderr)
                told = self.info("b.Mes")
                self.assertEqual(told["kind"], kind)
                self.assertTrue(told["sound"])
                self.assertEqual(told["beams"], 4)
                areas = {r["material"]: r["area"] for r in told["materials"] if r["class"] == "solid"}
                self.assertAlmostEqual(areas[4], 4.0, places=4)
                self.assertAlmostEqual(areas[6], 4.0, places=4)
                turning = {"displacement": "IDT", "coupled": "IRZ"}.get(kind)
                if turning:  # the five nodes of the beam
                    self.assertEqual(sum(r["count"] for r in told["node_codes"] if r["codes"][turning] == 0), 5)

    def test_second_order_quadrilaterals_of_gmsh_leave_no_loose_nodes(self):
        """10 by 8 quadrilaterals: 80 centres, 11 x 8 + 10 x 9 = 178 nodes on sides, 99 corners; and a beam that stands
        apart, with 2 ends and a middle."""
        self.write("drawn.geo", """
            Point(1) = {0, 0, 0}; Point(2) = {10, 0, 0}; Point(3) = {10, 8, 0}; Point(4) = {0, 8, 0};
            Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4}; Line(4) = {4, 1};
            Curve Loop(1) = {1, 2, 3, 4}; Plane Surface(1) = {1}; Transfinite Curve {1, 3} = 11;
            Transfinite Curve {2, 4} = 9; Transfinite Surface {1}; Recombine Surface {1};
            Point(7) = {20, 0, 0}; Point(8) = {20, 1, 0}; Line(9) = {7, 8}; Transfinite Curve {9} = 2;
            Physical Surface("material 3", 3) = {1}; Physical Curve("beam 2", 2) = {9};
            """)
        routes = [("g.msh", "msh22", "0"), ("g.vtu", "", ""), ("g.msh", "msh22", "1"), ("g.msh", "msh41", "0"),
                  ("g.msh", "msh41", "1")]
        for name, version, binary in routes:
            if version:
                self.gmsh("drawn.geo", "-2", "-order", "2", "-setnumber", "Mesh.Binary", binary, "-format", version,
                          "-o", str(self.path(name)))
            else:
                script = "import meshio; meshio.read('g.msh', 'gmsh').write('g.vtu')"
                subprocess.run([MESHIO, "-c", script], cwd=self.root, check=True, capture_output=True)
            beams = 0 if name == "g.vtu" else 1  # a VTU file has no names of groups
            for kind, nodes in (("displacement", 99 + 178), ("coupled", 99 + 178), ("head", 99), ("temperature", 99)):
                with self.subTest(name=name, version=version, binary=binary, kind=kind):
                    result = self.brelan("convert", "--kind", kind, name, "b.Mes")
                    self.assertEqual(result.returncode, 0, result.stderr)
                    self.assertIn(f"{name}: 80 centre nodes of quadrilaterals were left out\n", result.stderr)
                    gone = beams + (178 if nodes == 99 else 0)
                    said = {0: "", 1: "1 midside node that", 178: "178 midside nodes that", 179: "179 midside nodes that"}
                    self.assertIn(said[gone], result.stderr)
                    told = self.info("b.Mes")
                    loose = 3 * (1 - beams)  # of the line that is no beam
                    self.assertEqual(told["nodes"]["count"], nodes + 2 * beams + loose)
                    self.assertEqual(told["soundness"]["findings"]["unused_nodes"]["count"], loose)
                    self.assertEqual((told["area"], told["beams"]), (80.0, beams))

    def test_result_of_gmsh_runs_through_the_batch_program(self):
        self.write("drawn.geo", "SetFactory(\"OpenCASCADE\"); Rectangle(1) = {0, 0, 0, 3, 2};"
                                "Physical Surface(1) = {1}; Mesh.MeshSizeMax = 0.5;")
        self.gmsh("drawn.geo", "-2", "-format", "msh41", "-o", str(self.path("drawn.msh")))
        self.good("-q", "convert", "--kind", "displacement", "drawn.msh", "Drawn.Mes")
        self.run_deck("1\nDrawn.Mes\nMoved.Mes\n1 1\n0\n0. 0. 10. 0.\n1. 1.\n")
        told = self.info("Moved.Mes")
        self.assertAlmostEqual(told["area"], 6.0, places=4)
        self.assertAlmostEqual(told["bounds"]["x"][0], 10.0)

    def test_appended_arrays_are_read(self):
        """As ParaView saves them: behind the XML, raw or base64, compressed or not, in either order of bytes."""
        arrays = {"Points": ("Float32", "f", [0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0]), "connectivity": ("Int64", "q", [0, 1, 2, 3]),
                  "offsets": ("Int64", "q", [4]), "types": ("UInt8", "B", [9]), "material": ("Int16", "h", [7])}
        for order, sign in (("LittleEndian", "<"), ("BigEndian", ">")):
            for word, header in (("UInt32", "I"), ("UInt64", "Q")):
                for compressed in (False, True):
                    for encoding in ("raw", "base64"):
                        body, place = b"", {}
                        for name, (_, form, values) in arrays.items():
                            data = struct.pack(f"{sign}{len(values)}{form}", *values)
                            place[name] = len(body)
                            if compressed:
                                blocks = [data[k:k + 8] for k in range(0, len(data), 8)]
                                packed = [zlib.compress(b) for b in blocks]
                                words = [len(blocks), 8, len(data) % 8, *map(len, packed)]
                                parts = [struct.pack(f"{sign}{len(words)}{header}", *words), b"".join(packed)]
                            else:
                                parts = [struct.pack(sign + header, len(data)) + data]
                            body += b"".join(base64.b64encode(p) if encoding == "base64" else p for p in parts)
                        tag = lambda name: (f'<DataArray type="{arrays[name][0]}" Name="{name}" format="appended" '
                                            f'NumberOfComponents="{3 if name == "Points" else 1}" offset="{place[name]}"/>')
                        text = (f'<?xml version="1.0"?><VTKFile type="UnstructuredGrid" byte_order="{order}" header_type="{word}"'
                                + (' compressor="vtkZLibDataCompressor"' if compressed else "")
                                + '><UnstructuredGrid><Piece NumberOfPoints="4" NumberOfCells="1">'
                                + f"<CellData>{tag('material')}</CellData><Points>{tag('Points')}</Points><Cells>"
                                + tag("connectivity") + tag("offsets") + tag("types")
                                + f'</Cells></Piece></UnstructuredGrid><AppendedData encoding="{encoding}">\n  _')
                        self.write("a.vtu", text.encode() + body + b"\n  </AppendedData></VTKFile>")
                        with self.subTest(order=order, word=word, compressed=compressed, encoding=encoding):
                            told = self.info("a.vtu", 0, "--kind", "head")
                            self.assertEqual((told["materials"][0]["material"], told["area"]), (7, 1.0))
                            self.write("a.vtu", text.encode() + body[:-3])
                            self.failed(self.brelan("info", "--kind", "head", "a.vtu"), 'a.vtu: array "material": ')

    def test_a_cell_whose_type_no_integer_can_hold_is_told(self):
        """A conversion of it to an integer was undefined."""
        for number, shown in (("9" * 27, "1e+27"), ("-1", "-1"), ("256", "256")):
            with self.subTest(number):
                self.write("a.vtu", TEXT_VTU.replace("MATERIAL", "2").replace(">5<", f">{number}<"))
                self.failed(self.brelan("info", "--kind", "head", "a.vtu"),
                            f"a.vtu: cell 0: expected the number of a VTK type, found {shown}")

    def test_what_meshio_writes_is_read(self):
        mesh = sample("coupled")
        self.write("a.Mes", mesh.text())
        self.good("convert", "a.Mes", "a.vtu")
        for options in ("compression='zlib'", "compression=None", "binary=False", "header_type='UInt64'"):
            with self.subTest(options):
                script = f"import sys, meshio; meshio.vtu.write('m.vtu', meshio.read('a.vtu'), {options})"
                subprocess.run([MESHIO, "-c", script], cwd=self.root, check=True, capture_output=True)
                self.good("convert", "m.vtu", "b.Mes")
                self.assertEqual(records(self.path("b.Mes").read_text()), records(mesh.text()))
        self.good("convert", "a.Mes", "a.msh")
        script = "import meshio; meshio.read('a.msh').write('m.msh', file_format='gmsh')"
        subprocess.run([MESHIO, "-c", script], cwd=self.root, check=True, capture_output=True)
        self.good("convert", "m.msh", "b.Mes")
        self.assertEqual(self.info("b.Mes")["materials"], self.info("a.Mes")["materials"])

    def test_another_kind_keeps_what_means_the_same(self):
        self.write("a.Mes", sample("displacement").text())
        self.good("convert", "--kind", "coupled", "a.Mes", "b.Mes")
        told = self.info("b.Mes")
        self.assertEqual((told["kind"], told["joints"], told["beams"], told["trusses"]), ("coupled", 1, 1, 2))
        self.good("convert", "--kind", "displacement", "b.Mes", "c.Mes")
        back = self.info("c.Mes")
        self.assertEqual(back["node_codes"], self.info("a.Mes")["node_codes"])
        self.assertEqual(back["materials"], self.info("a.Mes")["materials"])

    def test_what_another_kind_does_not_keep_is_told(self):
        told = {("head", "coupled"): "ID, IDF, H, CF and IDH left out, ISX, ISY, IFX, IFY, IRZ, KS, KF, INTR, INTS and TBJWL as in a base mesh",
                ("head", "temperature"): "H left out, T as in a base mesh",
                ("displacement", "coupled"): "THIC and DEN left out, IFX, IFY, KS, KF, INTR, INTS and TBJWL as in a base mesh",
                ("coupled", "head"): "ISX, ISY, IFX, IFY, IRZ, KS, KF, INTR, INTS and TBJWL left out, ID, IDF, H, CF and IDH as in a base mesh"}
        for (source, target), what in told.items():
            self.write("a.Mes", sample(source).text())
            self.good("convert", "a.Mes", "a.vtu")
            self.good("convert", "a.Mes", "a.msh")
            for name in ("a.Mes", "a.vtu", "a.msh"):
                with self.subTest(source=source, target=target, name=name):
                    result = self.brelan("convert", "--kind", target, name, "b.Mes")
                    self.assertEqual(result.returncode, 0, result.stderr)
                    self.assertEqual(result.stderr, f"brelan: {name}: the {source} kind became the {target} kind: {what}\n")
                    result = self.brelan("convert", "--kind", source, name, "b.Mes")
                    self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_flow_lines_that_become_trusses_are_told(self):
        mesh = sample("head")
        mesh.hide_trusses = True
        self.write("a.Mes", mesh.text())
        self.good("convert", "a.Mes", "a.msh")
        for name in ("a.Mes", "a.msh"):
            result = self.brelan("convert", "--kind", "coupled", name, "b.Mes")
            self.assertIn(f"{name}: its flow lines became trusses\n", result.stderr)
            self.assertFalse(self.info("b.Mes")["flow_lines"])
            self.assertEqual(self.info("b.Mes")["trusses"], 2)

    def test_mesh_that_is_read_against_its_own_kind_is_told(self):
        """Heads are read as temperatures: the records of both kinds look alike."""
        self.write("a.Mes", sample("head").text())
        said = "brelan: a.Mes: a mesh of the head kind, read as one of the temperature kind\n"
        for command, count in ((["info", "a.Mes"], 1), (["plot", "a.Mes", "-o", "a.svg"], 1), (["diff", "a.Mes", "a.Mes"], 2)):
            result = self.brelan(*command, "--kind", "temperature")
            self.assertIn(result.returncode, (0, 1), result.stderr)
            self.assertEqual(result.stderr, said * count, command)
            self.assertEqual(self.brelan(*command, "--kind", "head").stderr, "", command)

    def test_kind_that_a_mesh_file_does_not_tell_is_taken_from_the_option(self):
        text = sample("head").text()
        heading = next(line for line in text.split("\n") if "IDF" in line)
        self.write("a.Mes", text.replace(heading, "    NODE"))
        self.failed(self.brelan("convert", "a.Mes", "b.Mes"), "name it with --kind")
        self.good("convert", "--kind", "head", "a.Mes", "b.Mes")
        self.assertEqual(records(self.path("b.Mes").read_text()), records(text))

    def test_negative_attribute_of_a_joint_stays(self):
        mesh = sample("head")
        mesh.solids[2] = (7, [2, 3, 11, 10], [0] * 4, 9, [-205])
        self.write("a.Mes", mesh.text())
        self.good("convert", "a.Mes", "a.vtu")
        self.good("convert", "a.vtu", "b.Mes")
        self.assertEqual(records(self.path("b.Mes").read_text()), records(mesh.text()))
        self.assertEqual(self.info("b.Mes")["joints"], 1)

    def test_value_that_its_field_cannot_hold_is_refused(self):
        """Five digits in the column of a material would run into the number before it."""
        for kind, fits in (("displacement", 9999), ("coupled", 9999), ("head", 99999), ("temperature", 99999)):
            for material in (fits, fits + 1):
                self.write("a.vtu", TEXT_VTU.replace("MATERIAL", str(material)))
                result = self.brelan("convert", "--kind", kind, "a.vtu", "b.Mes")
                if material == fits:
                    self.assertEqual(result.returncode, 0, result.stderr)
                    self.assertEqual(self.info("b.Mes")["materials"][0]["material"], material)
                    self.path("b.Mes").unlink()
                else:
                    self.failed(result, f"material of element 1: {material} does not fit")
                    self.assertFalse(self.path("b.Mes").exists())

    def test_format_goes_by_the_ending_or_by_an_option(self):
        self.write("a.Mes", sample("head").text())
        self.failed(self.brelan("convert", "a.Mes", "a.txt"),
                    "a.txt: expected a name that ends in .Mes, .vtu, .msh, .mdpa or .inp")
        self.good("convert", "--to", "vtu", "a.Mes", "a.txt")
        self.good("diff", "a.Mes", "a.txt")
        self.good("convert", "a.Mes", "a.VTU")

    def test_result_may_take_the_place_of_the_source(self):
        text = sample("head").text()
        self.write("a.Mes", text)
        os.chmod(self.path("a.Mes"), 0o640)
        self.good("convert", "a.Mes", "a.Mes")
        self.assertEqual(records(self.path("a.Mes").read_text()), records(text))
        self.assertEqual(self.path("a.Mes").stat().st_mode & 0o777, 0o640)
        os.symlink("a.Mes", self.path("link.Mes"))
        self.good("convert", "a.Mes", "link.Mes")
        self.assertTrue(self.path("link.Mes").is_symlink())

    def test_vtu_is_well_formed_and_compressed(self):
        mesh = self.square(100)
        self.good("convert", mesh, "a.vtu")
        subprocess.run(["python3", "-c", "import sys, xml.etree.ElementTree as e; e.parse(sys.argv[1])",
                        self.path("a.vtu")], check=True)
        self.assertLess(self.path("a.vtu").stat().st_size, mesh.stat().st_size / 5)


if __name__ == "__main__":
    unittest.main()
