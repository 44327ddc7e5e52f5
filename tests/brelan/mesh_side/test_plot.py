import re
import struct
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree
import zlib

from support import EDITIONS, SOURCE, Case, Mesh, sample

SVG = "{http://www.w3.org/2000/svg}"


def pixels(path):
    """Width, height and the rows of red, green, blue of a PNG of 8 bits a colour without interlacing."""
    data = path.read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    at, packed = 8, b""
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        assert zlib.crc32(kind + body) == struct.unpack(">I", data[at + 8 + length:at + 12 + length])[0]
        if kind == b"IHDR":
            width, height, depth, color = struct.unpack(">IIBB", body[:10])
        if kind == b"IDAT":
            packed += body
        at += 12 + length
    assert depth == 8 and color == 2
    raw, rows, before = zlib.decompress(packed), [], bytes(3 * width)
    for y in range(height):
        line = bytearray(raw[y * (3 * width + 1):(y + 1) * (3 * width + 1)])
        method, line = line[0], line[1:]
        for i in range(len(line)):
            a, b, c = (line[i - 3] if i >= 3 else 0), before[i], (before[i - 3] if i >= 3 else 0)
            p = a + b - c
            nearest = min((abs(p - a), 0, a), (abs(p - b), 1, b), (abs(p - c), 2, c))[2]
            line[i] = (line[i] + (0, a, b, (a + b) // 2, nearest)[method]) & 255
        rows.append([tuple(line[i:i + 3]) for i in range(0, len(line), 3)])
        before = line
    return width, height, rows


class Plot(Case):
    def svg(self, mesh, *options):
        self.good("plot", mesh, "-o", "a.svg", *options)
        root = ElementTree.parse(self.path("a.svg")).getroot()
        self.assertEqual(root.tag, SVG + "svg")
        return root

    def ids(self, root):
        return [e.get("id") for e in root.iter() if e.get("id")]

    def texts(self, root):
        return [t.text for t in root.iter(SVG + "text")]

    def test_svg_shows_each_class_and_material_by_itself(self):
        for kind in EDITIONS:
            with self.subTest(kind):
                root = self.svg(self.write("a.Mes", sample(kind).text()))
                ids = self.ids(root)
                for name in ("material-3", "material-9999", "material--2", "joint-9", "beam-4", "truss-1", "truss-2"):
                    self.assertIn(name, ids)
                self.assertEqual(len(ids), len(set(ids)))
                texts = self.texts(root)
                for text in ("material 3 (2)", "joint 9 (1)", "beam 4 (1)", "truss 1 (1)"):
                    self.assertIn(text, texts)
                self.assertIn("a.Mes", texts)
                fills = {e.get("id"): e.get("fill") for e in root.iter() if (e.get("id") or "").startswith("material")}
                self.assertEqual(len(set(fills.values())), 3)

    def test_support_symbols_by_kind(self):
        for kind, names in (("displacement", ["fixed-x", "fixed-y"]), ("coupled", ["fixed-x", "fixed-y", "fluid"]),
                            ("head", ["given-value", "flow"]), ("temperature", ["given-value", "flow"])):
            mesh = self.write("a.Mes", sample(kind).text())
            ids = self.ids(self.svg(mesh))
            self.assertEqual([n for n in ("fixed-x", "fixed-y", "fluid", "given-value", "flow") if n in ids], names)
            self.assertFalse(set(names) & set(self.ids(self.svg(mesh, "--no-codes"))))

    def test_paths_lie_where_the_mesh_does(self):
        """The rectangle of the base mesh on the page: 3 by 2, so half again as wide as high."""
        self.run_deck("2 0\n1 1 1 1 0 1\n0. 0.\n3. 1. 0.5\n2. 1. 0.5\n0\n")
        root = self.svg("Bmesh.dat")
        corners = {(round(x, 1), round(y, 1)) for line in self.lines(root, "material-1") for x, y in line}
        width = max(c[0] for c in corners) - min(c[0] for c in corners)
        height = max(c[1] for c in corners) - min(c[1] for c in corners)
        self.assertAlmostEqual(width / height, 1.5, places=2)
        self.assertEqual(len(corners), 10)  # nodes round the rectangle

    def test_numbers_and_window(self):
        mesh = self.write("a.Mes", sample("displacement").text())
        numbers = lambda root, name: sorted(t.text for g in root.iter(SVG + "g") if g.get("id") == name for t in g)
        root = self.svg(mesh, "--numbers", "both")
        self.assertEqual(numbers(root, "node-numbers"), sorted("1 2 3 4 5 10 11 20 21 99990".split()))
        self.assertEqual(numbers(root, "element-numbers"), sorted("1 2 7 8 9 50 51 99990".split()))
        root = self.svg(mesh, "--numbers", "nodes", "--window", "2", "-0.5", "3", "0.5")
        self.assertEqual(numbers(root, "node-numbers"), ["20"])
        self.assertEqual(numbers(root, "element-numbers"), [])
        self.failed(self.brelan("plot", mesh, "-o", "b.svg", "--window", "3", "0", "2", "1"), "--window: expected XMIN")

    def labels(self, root, name):
        """Texts of a group with the places where they begin or have their middle."""
        return [(t.text, float(t.get("x")), float(t.get("y")))
                for g in root.iter(SVG + "g") if g.get("id") == name for t in g]

    def lines(self, root, name):
        """The lines of a path as lists of points."""
        path = next(e for e in root.iter(SVG + "path") if e.get("id") == name).get("d")
        lines = []
        for command, dx, dy in re.findall(r"([Ml])(-?[\d.]+) ?(-?[\d.]+)", path):
            x, y = (float(dx), float(dy)) if command == "M" else (x + float(dx), y + float(dy))
            lines += [[]] if command == "M" else []
            lines[-1].append((x, y))
        return lines

    def test_all_supports_are_drawn_smaller_where_they_crowd(self):
        """Squares of some 4.3 pixels: a symbol for each of the 180 nodes of a side, none over the next."""
        root = self.svg(self.square(180))
        for name in ("fixed-x", "fixed-y"):
            symbols = self.lines(root, name)
            self.assertEqual(len(symbols), 360 if name == "fixed-x" else 180)
            across = 1 if name == "fixed-x" else 0
            begins = sorted({min(p[across] for p in s) for s in symbols})
            self.assertEqual(len(begins), 180)
            height = max(p[across] for p in symbols[0]) - min(p[across] for p in symbols[0])
            self.assertGreater(height, 3.0)
            for low, high in zip(begins, begins[1:]):
                self.assertGreaterEqual(high - low, height)
        root = self.svg(self.square(5))
        symbol = self.lines(root, "fixed-y")[0]
        self.assertAlmostEqual(max(p[0] for p in symbol) - min(p[0] for p in symbol), 7.0, places=1)

    def test_supports_of_a_mesh_of_the_largest_size_are_all_drawn(self):
        """As many as there are nodes, fixed throughout, though they share pixels."""
        mesh = Mesh()
        for k in range(99990):
            mesh.node(k + 1, float(k % 300), float(k // 300), [1, 0, 0])
        path = self.write("a.Mes", mesh.text())
        self.assertEqual(len(self.lines(self.svg(path), "fixed-x")), 99990)
        self.good("plot", path, "-o", "a.png", "--scale", "1")

    def strip(self, materials):
        """Squares in a row, each of a material of its own."""
        mesh = Mesh().node(1, 0.0, 0.0).node(2, 0.0, 1.0)
        for k in range(materials):
            mesh.node(2 * k + 3, k + 1.0, 0.0).node(2 * k + 4, k + 1.0, 1.0)
            mesh.solid(k + 1, (2 * k + 1, 2 * k + 3, 2 * k + 4, 2 * k + 2), k + 1)
        return self.write("strip.Mes", mesh.text())

    def test_legend_of_a_flat_picture_is_whole(self):
        root = self.svg(self.strip(40))
        names = self.labels(root, "legend")
        self.assertEqual([n[0] for n in names], [f"material {k} (1)" for k in range(1, 41)])
        for name, x, y in names:
            self.assertLess(y, float(root.get("height")) - 3.0)
            self.assertLess(x + 6.7 * len(name), float(root.get("width")))
        self.assertEqual([n[0] for n in self.labels(self.svg(self.strip(400)), "legend")][-2:],
                         ["material 300 (1)", "and 100 more"])

    def test_materials_of_joints_beams_and_trusses_have_colours_of_their_own(self):
        mesh = Mesh()
        for k in range(9):
            mesh.node(k + 1, float(k), 0.0).node(k + 11, float(k), 1.0)
        mesh.solid(1, (1, 2, 12, 11)).joint(2, (2, 3, 13, 12), 1).joint(3, (3, 4, 14, 13), 2)
        mesh.beams += [(4, 4, 5, 1), (5, 5, 6, 2)]
        mesh.trusses += [(6, 6, 7, 1), (7, 7, 8, 2)]
        root = self.svg(self.write("a.Mes", mesh.text()))
        strokes = {e.get("id"): e.get("stroke") for e in root.iter(SVG + "path") if e.get("id")}
        for name in ("joint", "beam", "truss"):
            self.assertNotEqual(strokes[name + "-1"], strokes[name + "-2"])
        in_legend = [e.get("stroke") for e in root.iter(SVG + "path") if not e.get("id") and not e.get("clip-path")]
        for name in ("joint-1", "joint-2", "beam-1", "beam-2", "truss-1", "truss-2"):
            self.assertIn(strokes[name], in_legend)

    def test_a_window_lists_what_it_shows(self):
        """From 3.5 to 6: squares 4, 5 and 6; 7 only touches the edge. No support shows in the upper half."""
        legend = lambda *window: [t[0] for t in self.labels(self.svg(self.strip(9), "--window", *window), "legend")]
        self.assertEqual(legend("3.5", "0", "6", "1"), ["material 4 (1)", "material 5 (1)", "material 6 (1)"])
        pit = self.pit()
        names = lambda *window: [t[0] for t in self.labels(self.svg(pit, "--window", *window), "legend")]
        self.assertEqual(names("44", "9", "54", "20")[1:], ["material 6 (28)", "beam 2 (16)"])
        self.assertIn("hatched: doubles (stages)", names("20", "20", "30", "30"))
        self.assertIn("IDY: y fixed", names("20", "-1", "30", "9"))
        self.assertNotIn("IDX: x fixed", names("20", "-1", "30", "9"))

    def test_numbers_of_twin_and_line_node_stand_apart(self):
        """Nodes 2 and 10, 3 and 11 at one place; joint 7 and beam 50 with one middle."""
        root = self.svg(self.write("a.Mes", sample("displacement").text()), "--numbers", "both")
        nodes = {t: (x, y) for t, x, y in self.labels(root, "node-numbers")}
        for line, twin in (("2", "10"), ("3", "11")):
            (x1, y1), (x2, y2) = nodes[line], nodes[twin]
            left, right = (x1, line), (x2, twin)
            self.assertTrue(left[0] + 5.0 * len(line) < right[0] or abs(y1 - y2) > 9.0)
            self.assertLess(left[0], right[0])  # each on its own side
        elements = {t: (x, y) for t, x, y in self.labels(root, "element-numbers")}
        self.assertGreaterEqual(abs(elements["7"][1] - elements["50"][1]), 9.0)

    def test_a_window_outside_the_mesh_is_said(self):
        mesh = self.write("a.Mes", sample("displacement").text())
        told = "brelan: --window lies outside the mesh, which reaches from (-0.0075, 0) to (3.25, 2)\n"
        for window in (("4", "0", "5", "1"), ("2", "1.2", "3", "1.9")):  # the second beside the triangle at (0, 2)
            for name in ("b.svg", "b.png", "b.pdf", "b.html"):
                result = self.brelan("plot", mesh, "-o", name, "--window", *window)
                self.assertEqual((result.returncode, result.stderr), (0, told))
                self.assertTrue(self.path(name).exists())
        self.assertEqual(self.brelan("plot", mesh, "-o", "b.svg", "--window", "0.1", "0.1", "0.2", "0.2").stderr, "")
        self.assertEqual(self.brelan("-q", "plot", mesh, "-o", "b.svg", "--window", "4", "0", "5", "1").stderr, "")

    def test_a_deck_of_another_mesh_is_said(self):
        deck = SOURCE / "examples" / "pit_stages.dat"
        said = lambda mesh, deck: self.brelan("plot", mesh, "-o", "b.svg", "--deck", deck).stderr
        seems = lambda deck, mesh: f"brelan: {deck} seems to belong to another mesh than {mesh}: "
        pit = self.pit()
        base = self.path("Bmesh.dat").read_bytes()
        self.assertEqual(said(pit, deck), "")
        self.assertEqual(said(self.path("Bmesh.dat"), deck), "")
        self.assertEqual(said(self.write("Copy.Mes", pit.read_bytes()), deck), "")  # its first line tells its name
        self.assertEqual(said(self.write("Ground.Mes", base), deck), "")
        self.good("convert", pit, "PitStages.vtu")
        self.assertEqual(said("PitStages.vtu", deck), "")
        self.write("Other.Mes", sample("displacement").text("Other.Mes"))
        self.assertEqual(said("Other.Mes", deck), seems(deck, "Other.Mes") + "its meshes are Bmesh.dat, PitStages.Mes\n")
        dam = SOURCE / "examples" / "dam.dat"
        self.assertIn("its meshes are EarthDam.Mes, Earth_Dam.Mes, Bmesh.dat", said("Other.Mes", dam))
        # Another mesh of the same name.
        self.run_deck("2 0\n1 1 1 1 0 1\n0. 0.\n3. 1. 0.5\n40. 1. 0.5\n0\n")
        self.assertEqual(said("Bmesh.dat", deck), seems(deck, "Bmesh.dat") +
                         "it makes a mesh from (0, 0) to (70, 30), and this one reaches from (0, 0) to (3, 40)\n")
        self.write("PitStages.Mes", Mesh().node(1, 80.0, 0.0).node(2, 81.0, 0.0).node(3, 80.0, 1.0).solid(1, (1, 2, 3)).text())
        groups = deck.read_text().split("* Card 3.1-1\n")[1]
        self.write("groups.dat", "  1     0\n" + groups)  # an edit, which tells no size
        self.assertEqual(said("PitStages.Mes", "groups.dat"), seems("groups.dat", "PitStages.Mes") +
                         "it draws from (17.5, 13) to (52.2, 30), and the mesh reaches from (80, 0) to (81, 1)\n")

    def test_too_many_numbers_are_left_out_with_a_remark(self):
        mesh = self.square(100)
        result = self.brelan("plot", mesh, "-o", "a.svg", "--numbers", "nodes")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr, "brelan: a.svg: 10000 numbers are left out: there is no room for more than"
                                        " 4000; see --window\n")
        self.assertEqual(self.brelan("-q", "plot", mesh, "-o", "a.svg", "--numbers", "nodes").stderr, "")

    def test_stages_are_hatched(self):
        root = self.svg(self.pit())
        self.assertIn("material-5-doubles", self.ids(root))
        self.assertIn("hatched: doubles (stages)", self.texts(root))

    def test_outlines_of_the_deck(self):
        root = self.svg(self.pit(), "--deck", SOURCE / "examples" / "pit_stages.dat")
        titles = [t.text for g in root.iter(SVG + "g") if g.get("id") == "deck-titles" for t in g]
        self.assertIn("Upper strut", titles)
        self.assertEqual(len(titles), 8)  # its groups
        self.assertIn("Right wall, drawn downwards: beams, joint towards the ground on its right", titles)
        bottom = next(float(r.get("y")) + float(r.get("height")) for c in root.iter(SVG + "clipPath") for r in c)
        for title, x, y in self.labels(root, "deck-titles"):
            self.assertGreater(y, bottom + 20.0)  # under the numbers along the frame
            self.assertLess(y, float(root.get("height")) - 3.0)
        marks = self.labels(root, "deck-numbers")
        self.assertEqual([m[0] for m in marks], list("12345678"))
        for k, (_, x1, y1) in enumerate(marks):
            for _, x2, y2 in marks[:k]:
                self.assertGreater((x2 - x1) ** 2 + (y2 - y1) ** 2, 17.0 ** 2)  # their rings are 17 wide
        self.assertEqual(len(self.lines(root, "deck-numbers-rings")), 8)
        self.assertIn("outline of the deck", self.texts(root))

    def test_rings_round_what_is_unsound(self):
        mesh = Mesh()
        for number, (x, y) in enumerate([(0, 0), (2, 0), (3, 0), (0, 2), (2, 2), (2, 1), (3, 2), (3, 1)], 1):
            mesh.node(number, float(x), float(y))
        mesh.solid(1, (1, 2, 5, 4)).solid(2, (2, 3, 8, 6)).solid(3, (6, 8, 7, 5))
        path = self.write("a.Mes", mesh.text())
        self.assertIn("faults", self.ids(self.svg(path, "--faults")))
        self.assertNotIn("faults", self.ids(self.svg(path)))

    def test_png_has_the_colours_of_the_materials(self):
        mesh = Mesh().node(1, 0.0, 0.0).node(2, 1.0, 0.0).node(3, 2.0, 0.0).node(4, 0.0, 1.0).node(5, 1.0, 1.0)
        mesh.node(6, 2.0, 1.0).solid(1, (1, 2, 5, 4), 1).solid(2, (2, 3, 6, 5), 2)
        self.good("plot", self.write("a.Mes", mesh.text()), "-o", "a.png", "--width", "400", "--scale", "1",
                  "--no-legend", "--no-axes")
        width, height, rows = pixels(self.path("a.png"))
        self.assertEqual(width, 400)
        row = rows[height // 2]
        self.assertEqual(row[110], (0xee, 0xdd, 0x88))
        self.assertEqual(row[290], (0x99, 0xdd, 0xff))
        self.assertEqual(row[4], (255, 255, 255))
        self.good("plot", "a.Mes", "-o", "b.png", "--width", "400", "--scale", "2", "--no-legend", "--no-axes")
        self.assertEqual(pixels(self.path("b.png"))[:2], (800, 2 * height))

    def test_pdf_is_one_page_of_text_and_lines(self):
        pit = self.pit()
        words = [line.split() for line in pit.read_text().split("\n")]
        tunnel = sum(len(w) == 12 and w[9] == "6" for w in words)  # records of material 6
        self.good("plot", pit, "-o", "a.pdf", "--deck", SOURCE / "examples" / "pit_stages.dat")
        told = subprocess.run(["pdfinfo", self.path("a.pdf")], text=True, capture_output=True, check=True).stdout
        self.assertRegex(told, r"Pages: +1\n")
        self.assertRegex(told, r"Page size: +1000 x \d+")
        text = subprocess.run(["pdftotext", self.path("a.pdf"), "-"], text=True, capture_output=True, check=True).stdout
        self.assertIn(f"material 6 ({tunnel})", text)
        self.assertIn("Right wall, drawn downwards: beams, joint towards the ground on its right", text)
        self.assertIn("joint 7 (20)", text)  # two walls of 10 m with nodes a metre apart

    def test_html_is_one_file_without_addresses(self):
        self.good("plot", self.pit(), "-o", "a.html")
        text = self.path("a.html").read_text()
        self.assertNotRegex(text, r"https?://|src=|@import|url\(")
        self.assertIn("DecompressionStream", text)

    def test_odd_meshes_are_drawn(self):
        """No element, one node, no extent, a title that is no UTF-8."""
        meshes = {"no element": Mesh().node(1, 0.0, 0.0).node(2, 1.0, 3.0), "one node": Mesh().node(1, 5.0, 5.0),
                  "a line": Mesh().node(1, 0.0, 0.0).node(2, 1.0, 0.0).node(3, 2.0, 0.0).solid(1, (1, 2, 3)),
                  "a missing node": Mesh().node(1, 0.0, 0.0).node(2, 1.0, 0.0).solid(1, (1, 2, 3))}
        for name, mesh in meshes.items():
            self.write("a.Mes", mesh.text())
            for ending in ("svg", "png", "pdf", "html"):
                with self.subTest(mesh=name, format=ending):
                    self.good("plot", "a.Mes", "-o", "b." + ending)
        self.write(b"W\xe4nde.Mes".decode("latin-1"), sample("head").text())
        for ending in ("svg", "png", "pdf", "html"):
            self.good("plot", self.path("a.Mes"), "-o", "b." + ending, "--title", b"W\xe4nde".decode("utf-8", "surrogateescape"))
        ElementTree.parse(self.path("b.svg"))

    def test_format_goes_by_the_ending(self):
        self.write("a.Mes", sample("head").text())
        self.failed(self.brelan("plot", "a.Mes", "-o", "a.jpg"), "a.jpg: expected a name that ends in .svg, .png, .pdf or .html")
        self.good("plot", "a.Mes", "-o", "A.SVG")
        self.failed(self.brelan("plot", "a.Mes"), "--output is required")

    def test_points_beyond_all_bounds(self):
        """What lies billions of pixels off the page is drawn towards there, with numbers that a reader can take."""
        deck = (SOURCE / "examples" / "pit_stages.dat").read_text()
        self.assertEqual(deck.count("  3      39.5         27.0"), 1)
        self.write("far.dat", deck.replace("  3      39.5         27.0", "  3      1e38         -3e37"))
        mesh = self.pit()
        for options in (["--deck", "far.dat"], ["--window", "20", "20", "20.000001", "20.000001"],
                        ["--window", "1e17", "0", "100000000000000032", "20"], ["--window", "-1e300", "0", "1e300", "1"]):
            for name in ("a.svg", "a.png", "a.pdf"):
                self.good("plot", mesh, "-o", name, *options)
            numbers = re.findall(r"-?\d+(?:\.\d+)?", self.path("a.svg").read_text())
            self.assertLess(max(map(len, numbers)), 20)


if __name__ == "__main__":
    unittest.main()
