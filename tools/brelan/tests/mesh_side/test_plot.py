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
        path = next(e for e in root.iter(SVG + "path") if e.get("id") == "material-1").get("d")
        x = y = 0.0
        corners = set()
        for command, dx, dy in re.findall(r"([Ml])(-?[\d.]+) ?(-?[\d.]+)", path):
            x, y = (float(dx), float(dy)) if command == "M" else (x + float(dx), y + float(dy))
            corners.add((round(x, 1), round(y, 1)))
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
        self.good("plot", pit, "-o", "a.pdf")
        told = subprocess.run(["pdfinfo", self.path("a.pdf")], text=True, capture_output=True, check=True).stdout
        self.assertRegex(told, r"Pages: +1\n")
        self.assertRegex(told, r"Page size: +1000 x \d+")
        text = subprocess.run(["pdftotext", self.path("a.pdf"), "-"], text=True, capture_output=True, check=True).stdout
        self.assertIn(f"material 6 ({tunnel})", text)
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
