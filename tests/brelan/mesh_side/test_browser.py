"""The page of `brelan plot` in a real browser."""
import os
import pathlib
import random
import unittest

import browser
from support import SOURCE, Case, Mesh, sample


class Page(Case):
    @classmethod
    def setUpClass(cls):
        assert browser.PROGRAM, "chromium is not installed"
        cls.browser = browser.Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()

    def setUp(self):
        super().setUp()
        self.browser.requests.clear()
        self.browser.errors.clear()

    def show(self, mesh, *options, address=""):
        self.good("plot", mesh, "-o", "page.html", *options)
        self.browser.open(self.path("page.html").as_uri() + address)

    def tearDown(self):
        self.assertEqual(self.browser.errors, [])
        strangers = [r for r in self.browser.requests if not r.startswith(("file:", "about:", "data:", "blob:"))]
        self.assertEqual(strangers, [], "the page uses the network")

    def record(self):
        """The record on show as a title and a table."""
        return self.browser.value("""(() => {
            const head = document.querySelector('#record h3');
            if (!head) return null;
            const rows = [...document.querySelectorAll('#record tr')].map((r) => [r.children[0].textContent, r.children[1].textContent]);
            return [head.textContent, Object.fromEntries(rows)];
        })()""")

    def on_screen(self, x, y):
        """Pixels of a point of the mesh, in coordinates of the file."""
        return self.browser.value(f"brelan.toScreen({x} - DATA.origin[0], {y} - DATA.origin[1])")

    def pixel(self, x, y):
        self.browser.settle()
        return self.browser.value(
            f"[...document.getElementById('canvas').getContext('2d').getImageData({x}, {y}, 1, 1).data].slice(0, 3)")

    def layer(self, name):
        """Turns a layer on or off."""
        self.browser.value("""(() => { const row = [...document.querySelectorAll('.layer')].find((l) => l.textContent.startsWith(%r));
            row.querySelector('input').click(); })()""" % name)
        self.browser.settle()

    def rows(self):
        """Of each layer its text, the height of its count, and whether all of it fits."""
        return self.browser.value("""[...document.querySelectorAll('.layer')].map((l) => [l.innerText.replace(/\\s+/g, ' ').trim(),
            (l.querySelector('.count') || l).clientHeight, l.scrollWidth <= l.clientWidth])""")

    def test_names_of_materials_stand_at_the_side_and_leave_room_for_counts(self):
        name = "Clay of the eastern part, stiff, with layers of " + "n" * 32
        mesh = self.square(12)
        with open(mesh, "a") as file:
            file.write(f"* material 1: {name}\n")
        self.write("b.Mes", sample("displacement").text() + "* beam 4: <b>&amp;\n")
        self.show("b.Mes")
        self.assertIn("beam 4: <b>&amp; 1", [text for text, _, _ in self.rows()])
        self.show(mesh, address="#element=1")
        self.assertEqual(self.record()[1]["material"], f"1: {name}")
        rows = self.rows()
        self.assertEqual(rows[0][0], f"material 1: {name} 121")
        counted = [height for text, height, _ in rows if text[-1].isdigit()]
        self.assertLess(max(counted), 25, rows)  # one line
        self.assertTrue(all(fits for _, _, fits in rows), rows)

    def test_click_on_a_node_and_on_an_element(self):
        mesh = sample("coupled")
        self.show(self.write("a.Mes", mesh.text()))
        x, y = self.on_screen(0.0, 1.0)
        self.browser.click(x, y)
        title, rows = self.record()
        self.assertEqual(title, "Node 4")
        self.assertEqual(rows["x, y"], "0, 1")
        codes = mesh.nodes[3][1]
        self.assertEqual([rows[c] for c in ("ISX", "ISY", "IFX", "IFY", "IRZ")], [str(c) for c in codes])
        self.assertEqual(rows["elements"], "1 9")
        x, y = self.on_screen(1.75, 0.4)
        self.browser.click(x, y)
        title, rows = self.record()
        self.assertEqual(title, "Element 2")
        self.assertEqual((rows["type"], rows["material"], rows["nodes"], rows["area"]),
                         ("quadrilateral", "9999", "10 20 21 11", "1.5"))
        self.assertEqual((rows["KS"], rows["KF"], rows["TBJWL"]), ("0", "1", "0"))
        self.browser.click(20, 20)
        self.assertIsNone(self.record())

    def test_click_again_shows_what_lies_under_it(self):
        self.show(self.write("a.Mes", sample("displacement").text()))
        x, y = self.on_screen(1.0, 0.5)  # beam 50 and joint 7 over each other
        self.browser.click(x, y)
        titles = [self.record()[0]]
        among = int(self.browser.value("/One of (\\d+)/.exec(document.getElementById('record').textContent)[1]"))
        for _ in range(among):
            self.browser.click(x, y)
            titles.append(self.record()[0])
        self.assertEqual(sorted(titles[:2]), ["Element 50", "Element 7"])
        self.assertEqual(titles[-1], titles[0])
        self.assertEqual(len(set(titles)), among)

    def test_search(self):
        self.show(self.pit())
        for text, title in (("n 577", "Node 577"), ("e 1637", "Element 1637"), ("1000", "Element 1000"),
                            ("element 12", "Element 12")):
            self.browser.value(f"document.getElementById('query').value = {text!r}; document.querySelector('#search button').click()")
            self.browser.settle()
            self.assertEqual(self.record()[0], title)
        for text, message in (("n 9999", "there is no node 9999"), ("5000", "there is no node or element 5000"),
                              ("q 1", "expected a number, n 12 for a node or e 34 for an element")):
            self.browser.value(f"document.getElementById('query').value = {text!r}; document.querySelector('#search button').click()")
            self.assertEqual(self.browser.value("document.getElementById('message').textContent"), message)

    def test_pan_zoom_and_keys(self):
        self.show(self.pit())
        view = lambda: self.browser.value("({...brelan.view})")
        start = view()
        x, y = self.on_screen(22.3, 27.0)
        self.browser.drag(x, y, x + 100, y + 50)
        moved = self.on_screen(22.3, 27.0)
        self.assertAlmostEqual(moved[0], x + 100, delta=1)
        self.assertAlmostEqual(moved[1], y + 50, delta=1)
        self.assertIsNone(self.record())  # a drag picks nothing
        here = self.on_screen(22.3, 27.0)
        self.browser.wheel(here[0], here[1], -600)
        self.assertGreater(view()["scale"], 2 * start["scale"])
        there = self.on_screen(22.3, 27.0)  # stays under the pointer
        self.assertAlmostEqual(there[0], here[0], delta=1.5)
        self.assertAlmostEqual(there[1], here[1], delta=1.5)
        self.browser.key("0")
        self.assertEqual(view(), start)
        self.browser.key("+")
        self.assertAlmostEqual(view()["scale"], 1.4 * start["scale"])
        self.browser.key("ArrowRight")
        self.assertGreater(view()["x"], start["x"])

    def test_layers(self):
        self.show(self.write("a.Mes", sample("head").text()))
        x, y = map(round, self.on_screen(0.5, 0.3))
        filled = self.pixel(x, y)
        self.assertNotEqual(filled, [255, 255, 255])
        self.layer("material 3")
        self.assertEqual(self.pixel(x, y), [255, 255, 255])
        self.browser.click(x, y)
        self.assertIsNone(self.record())  # what is not shown is not picked
        self.layer("material 3")
        self.assertEqual(self.pixel(x, y), filled)
        line = [round(v) for v in self.on_screen(1.5, 1.0)]  # truss 51
        drawn = self.pixel(*line)
        self.layer("truss 1")
        self.assertNotEqual(self.pixel(*line), drawn)

    def test_materials_have_their_colours_zoomed_out_and_in(self):
        """Both ways of drawing: regions, and elements one by one."""
        mesh = self.square(101)
        self.show(mesh)
        self.assertFalse(self.browser.value("brelan.stats.detailed"))
        self.layer("sides of elements")
        far = self.pixel(*map(round, self.on_screen(50.4, 50.4)))
        for _ in range(4):
            self.browser.wheel(*self.on_screen(50.4, 50.4), -600)
        self.assertTrue(self.browser.value("brelan.stats.detailed"))
        self.assertEqual(self.pixel(*map(round, self.on_screen(50.4, 50.4))), far)

    def test_outlines_of_the_deck_and_unsound_places(self):
        mesh = Mesh()
        for number, (x, y) in enumerate([(0, 0), (2, 0), (3, 0), (0, 2), (2, 2), (2, 1), (3, 2), (3, 1)], 1):
            mesh.node(number, float(x), float(y))
        mesh.solid(1, (1, 2, 5, 4)).solid(2, (2, 3, 8, 6)).solid(3, (6, 8, 7, 5))
        self.show(self.write("a.Mes", mesh.text()), address="#element=1")
        self.assertEqual(self.record()[1]["unsound"], "hanging node: node 6 on a side of element 1 at (2, 1)")
        self.assertEqual(self.browser.value("DATA.faults.length"), 1)
        deck = SOURCE / "examples" / "pit_stages.dat"
        self.show(self.pit(), "--deck", deck)
        titles = self.browser.value("DATA.shapes.map((s) => s.title)")
        self.assertIn("Upper strut", titles)

    def test_titles_of_the_deck_are_numbered_and_listed_at_the_side(self):
        self.show(self.pit(), "--deck", SOURCE / "examples" / "pit_stages.dat")
        listed = self.browser.value("[...document.querySelectorAll('.title')].map((t) => t.textContent)")
        self.assertEqual(len(listed), 8)
        self.assertEqual(listed[0], "1Left wall, drawn upwards: beams, joint towards the ground on its left")
        for zoomed in (False, True):
            if zoomed:
                self.browser.value("brelan.view.scale *= 3; draw()")
                self.browser.settle()
            marks = self.browser.value("brelan.stats.marks")
            for k, one in enumerate(marks):
                for other in marks[:k]:
                    self.assertGreater((one["x"] - other["x"]) ** 2 + (one["y"] - other["y"]) ** 2, 17.0 ** 2)
            if not zoomed:
                self.assertEqual([m["number"] for m in marks], list(range(1, 9)))
        self.browser.key("0")
        left_wall = self.browser.value("brelan.stats.marks[0]")
        self.assertAlmostEqual(left_wall["x"], self.on_screen(22.3, 20.0)[0], delta=0.5)

    def test_all_supports_are_drawn_smaller_where_they_crowd(self):
        """180 nodes along each side, about four pixels apart: 360 are held in x, 180 in y."""
        self.show(self.square(180))
        self.assertEqual(self.browser.value("brelan.stats.symbols"), 540)
        x, y = map(round, self.on_screen(0.0, 100.0))  # two pixels off the left side: a triangle every four
        column = self.browser.value(f"[...document.getElementById('canvas').getContext('2d').getImageData({x - 2}, {y}, 1, 80).data]")
        dark = [column[4 * k] < 200 for k in range(80)]
        self.assertGreaterEqual(sum(not a and b for a, b in zip(dark, dark[1:])), 17)

    def test_supports_of_a_mesh_of_the_largest_size(self):
        """Every node fixed: the page still draws within some seconds."""
        mesh = Mesh()
        for k in range(99990):
            mesh.node(k + 1, float(k % 300), float(k // 300), [1, 1, 0])
        self.show(self.write("a.Mes", mesh.solid(1, (1, 2, 302, 301)).text()))
        self.browser.key("+")
        self.assertLess(self.browser.value("brelan.stats.milliseconds"), 3000)

    def test_materials_of_joints_beams_and_trusses_have_colours_of_their_own(self):
        mesh = Mesh()
        for k in range(5):
            mesh.node(k + 1, float(k), 0.0).node(k + 11, float(k), 1.0)
        mesh.solid(1, (1, 2, 12, 11)).joint(2, (2, 3, 13, 12), 1).joint(3, (3, 4, 14, 13), 2)
        mesh.beams += [(4, 4, 5, 1), (5, 14, 15, 2)]
        self.show(self.write("a.Mes", mesh.text()))
        color = lambda x, y: self.pixel(*map(round, self.on_screen(x, y)))
        self.assertNotEqual(color(1.2, 0.25), color(2.2, 0.25))
        self.assertNotEqual(color(3.5, 0.0), color(3.5, 1.0))
        swatches = self.browser.value("[...document.querySelectorAll('.swatch.line')].map((s) => getComputedStyle(s).borderTopColor)")
        self.assertEqual(len(set(swatches)), 4)

    def test_numbers_of_twin_and_line_node_stand_apart(self):
        """Recorded where the page writes them: no text over another at the joint of the sample."""
        self.show(self.write("a.Mes", sample("displacement").text()))
        self.browser.value("""(() => { window.written = []; const fill = ctx.fillText.bind(ctx);
            ctx.fillText = (text, x, y) => { written.push([String(text), ctx.textAlign, x, y]); fill(text, x, y); }; })()""")
        self.layer("node numbers")
        self.layer("element numbers")
        self.browser.value("written.length = 0; draw()")
        self.browser.settle()
        places = {text: (align, x, y) for text, align, x, y in self.browser.value("written")}
        for line, twin in (("2", "10"), ("3", "11")):
            self.assertEqual((places[line][0], places[twin][0]), ("right", "left"))
        self.assertGreaterEqual(abs(places["7"][2] - places["50"][2]), 11)

    def test_title_cannot_break_out_of_the_page(self):
        self.show(self.write("a.Mes", sample("head").text()), "--title", "</script><b>x</b>&\"'")
        self.assertEqual(self.browser.value("document.getElementById('title').textContent"), "</script><b>x</b>&\"'")
        self.assertEqual(self.browser.value("document.title"), "</script><b>x</b>&\"'")
        self.assertEqual(self.browser.value("document.querySelectorAll('b').length"), 0)

    def test_address_opens_the_page_at_a_place(self):
        self.show(self.pit(), address="#at=49.5,15.5")
        self.assertEqual(self.record()[1]["material"], "6")
        self.show(self.pit(), address="#node=1")
        self.assertEqual(self.record()[0], "Node 1")

    def test_mesh_far_from_zero_keeps_its_finest_digits(self):
        mesh = Mesh()
        for number, (x, y) in enumerate([(0, 0), (1, 0), (1, 1), (0, 1)], 1):
            mesh.node(number, 123456.0 + x, 654321.0 + y)
        self.show(self.write("a.Mes", mesh.solid(1, (1, 2, 3, 4)).text()), address="#node=3")
        self.assertEqual(self.record()[1]["x, y"], "123457, 654322")

    def test_largest_mesh(self):
        """99,225 elements: opens within some seconds, draws while it moves, and finds a number."""
        self.show(self.square(316), address="#element=50000")
        self.assertEqual(self.record()[0], "Element 50000")
        self.browser.key("0")
        for step in range(5):
            self.browser.wheel(500, 400, -120)
        slowest = self.browser.value("""(async () => {
            let slowest = 0;
            for (let k = 0; k < 10; ++k) {
                document.dispatchEvent(new KeyboardEvent('keydown', { key: k % 2 ? 'ArrowLeft' : 'ArrowRight' }));
                await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
                slowest = Math.max(slowest, brelan.stats.milliseconds);
            }
            return slowest;
        })()""")
        self.assertLess(slowest, 1000)  # measured at some 20 ms on a quiet machine
        self.browser.click(500, 400)
        self.assertIsNotNone(self.record())

    def test_mesh_whose_elements_cross_each_other_everywhere(self):
        """Wrong connectivities throughout: the page opens, says so, and still finds each element."""
        square = self.square(100).read_text().split("\n")
        first = next(k for k, line in enumerate(square) if "ELEMENT" in line) + 2
        draw = random.Random(5)
        for k in range(first, first + 99 * 99):
            square[k] = square[k][:7] + "".join("%7d" % draw.randint(1, 10000) for _ in range(4)) + square[k][35:]
        self.show(self.write("a.Mes", "\n".join(square)), address="#element=77")
        self.assertEqual(self.record()[0], "Element 77")
        self.assertGreater(self.browser.value("DATA.leftOut"), 5000)
        rings = self.browser.value("[...document.querySelectorAll('.layer')].at(-1).textContent")
        self.assertRegex(rings, r"^unsound places5000 of \d{5,}$")
        self.assertEqual(self.browser.value("brelan.arrays.elementNumber.length"), 99 * 99)

    def test_screenshot(self):
        """Kept where BRELAN_SCREENSHOTS says, to be looked at."""
        self.show(self.pit(), "--deck", SOURCE / "examples" / "pit_stages.dat", address="#element=1637")
        place = pathlib.Path(os.environ.get("BRELAN_SCREENSHOTS", self.root))
        self.browser.screenshot(place / "pit.png")
        self.assertGreater((place / "pit.png").stat().st_size, 20000)


if __name__ == "__main__":
    unittest.main()
