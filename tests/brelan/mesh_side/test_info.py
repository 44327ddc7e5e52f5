import unittest

from support import CODES, EDITIONS, SOURCE, Case, Mesh, sample


class Info(Case):
    def test_counts_areas_and_ranges_of_every_kind(self):
        for kind in EDITIONS:
            with self.subTest(kind):
                self.write("a.Mes", sample(kind).text())
                told = self.info("a.Mes")
                self.assertEqual(told["kind"], kind)
                self.assertTrue(told["sound"])
                self.assertEqual(told["nodes"], {"count": 10, "lowest": 1, "highest": 99990})
                self.assertEqual(told["elements"], {"count": 8, "lowest": 1, "highest": 99990})
                self.assertEqual([told[c] for c in ("solids", "joints", "beams", "trusses")], [4, 1, 1, 2])
                self.assertEqual((told["triangles"], told["quadrilaterals"]), (2, 2))
                rows = {(r["class"], r["material"]): r for r in told["materials"]}
                self.assertEqual(rows["solid", 9999]["area"], 1.5)
                # 1 for the square; triangle (0,1) (1,1) (-0.0075,2): base 1, height 1.
                self.assertAlmostEqual(rows["solid", 3]["area"], 1.5, places=6)
                self.assertAlmostEqual(rows["solid", -2]["area"], 0.75 / 2, places=6)
                self.assertEqual(rows["joint", 9]["length"], 1.0)
                self.assertEqual(rows["joint", 9]["area"], 0.0)
                self.assertEqual(rows["beam", 4]["length"], 1.0)
                self.assertEqual(rows["truss", 1]["length"], 1.5)
                self.assertAlmostEqual(told["bounds"]["x"][0], -0.0075)
                self.assertEqual(told["bounds"]["y"], [0.0, 2.0])
                self.assertEqual(sum(r["count"] for r in told["node_codes"]), 10)
                self.assertEqual(list(told["node_codes"][0]["codes"]), CODES[kind])

    def test_pit_of_the_examples(self):
        told = self.info(self.pit())
        self.assertTrue(told["sound"])
        areas = {(r["class"], r["material"]): r["area"] for r in told["materials"]}
        # Stage 1 is a trapezoid of (25 + 19) / 2 * 3 = 66; 70 by 30 in all, what is doubled counted again.
        self.assertAlmostEqual(areas["solid", 2], 66.0, places=4)
        self.assertAlmostEqual(told["area"] - areas["solid", 5], 2100.0, places=3)
        self.assertEqual(told["soundness"]["free_edges"]["loops"], 1)
        self.assertAlmostEqual(told["soundness"]["free_edges"]["length"], 200.0, places=3)
        self.assertEqual(told["soundness"]["parts"], 1)
        self.assertEqual(told["soundness"]["findings"]["double_elements"]["count"],
                         sum(r["count"] for r in told["materials"] if r["class"] == "solid" and r["material"] == 5))
        # Two struts from x 22.3 to 37.7, over the nodes at x 23 to 37: no node is missed, no end is loose.
        findings = told["soundness"]["findings"]
        self.assertEqual([(p["y"], p["nodes"]) for p in findings["free_lines"]["places"]], [(26.0, 15), (23.0, 15)])
        self.assertEqual({name for name, f in findings.items() if f["count"] > 0}, {"double_elements", "free_lines"})

    def test_text_and_quiet(self):
        text = self.good("info", SOURCE / "examples" / "Quay.Mes")
        for fragment in ("displacement mesh", "Materials", "Node codes", "Quality of solids", "Soundness", "sound",
                         "1  records marked as deleted"):
            self.assertIn(fragment, text)
        self.assertNotIn("\x1b", text)
        self.assertEqual(self.good("-q", "info", SOURCE / "examples" / "Row.Mes"),
                         f"{SOURCE}/examples/Row.Mes: sound\n")

    def test_unsound_mesh_has_status_1_and_names_the_place(self):
        mesh = Mesh()
        for number, (x, y) in enumerate([(0, 0), (2, 0), (3, 0), (0, 2), (2, 2), (2, 1), (3, 2), (3, 1)], 1):
            mesh.node(number, float(x), float(y))
        mesh.solid(1, (1, 2, 5, 4)).solid(2, (2, 3, 8, 6)).solid(3, (6, 8, 7, 5))
        self.write("a.Mes", mesh.text())
        told = self.info("a.Mes", 1)
        self.assertFalse(told["sound"])
        self.assertEqual(told["soundness"]["findings"]["hanging_nodes"],
                         {"count": 1, "unsound": True, "places": [{"element": 1, "node": 6, "x": 2.0, "y": 1.0}]})
        result = self.brelan("info", "a.Mes")
        self.assertEqual(result.returncode, 1)
        self.assertIn("unsound: 1 hanging node\n      node 6 on a side of element 1 at (2, 1)\n", result.stdout)

    def test_list_limits_the_places(self):
        mesh = Mesh()
        for number in range(1, 31):
            mesh.node(number, float(number), 0.0)
        mesh.node(31, 0.0, 1.0).solid(1, (1, 2, 31))
        self.write("a.Mes", mesh.text())
        self.assertEqual(len(self.info("a.Mes")["soundness"]["findings"]["unused_nodes"]["places"]), 5)
        self.assertEqual(len(self.info("a.Mes", 0, "--list", "0")["soundness"]["findings"]["unused_nodes"]["places"]), 28)
        self.assertIn("and 25 more", self.good("info", "--list", "3", "a.Mes"))

    def test_flow_lines_that_the_head_of_the_file_hides(self):
        mesh = sample("head")
        mesh.hide_trusses = True
        self.write("a.Mes", mesh.text())
        told = self.info("a.Mes")
        self.assertTrue(told["flow_lines"])
        self.assertEqual(told["trusses"], 2)
        self.assertIn("flow lines, which the head of the file hides", self.good("info", "a.Mes"))

    def test_kind_is_found_without_headings(self):
        for kind in ("coupled", "displacement"):
            text = sample(kind).text().split("\n")
            text[4] = text[15] = text[16] = "a heading of another program"
            self.write("a.Mes", "\n".join(text))
            self.assertEqual(self.info("a.Mes")["kind"], kind)
        text = sample("head").text().split("\n")
        text[4] = "a heading of another program"
        self.write("a.Mes", "\n".join(text))
        self.failed(self.brelan("info", "a.Mes"), "a.Mes: neither headings nor records tell the kind", "--kind")
        self.assertEqual(self.info("a.Mes", 0, "--kind", "temperature")["kind"], "temperature")

    def test_comments_free_columns_and_short_node_records(self):
        self.write("a.Mes", """by hand
* a comment
head
3,1,0,0 and more
* another
x
y
1 0 0 1 0. 0.
 2,0,0,1,1.,0.
3 0 0 1 0.5,1.0E0
x
y
1 1 2 3 0 0 0 0 0 4 0.1000E+01-0.1000E+01
""")
        told = self.info("a.Mes")
        self.assertEqual((told["kind"], told["joints"], told["nodes"]["count"]), ("displacement", 1, 3))

    def test_several_files_and_one_that_is_not_there(self):
        self.write("a.Mes", sample("coupled").text())
        result = self.brelan("info", "--json", "a.Mes", "b.Mes", "a.Mes")
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stdout.count('"file": "a.Mes"'), 2)
        self.assertEqual(result.stderr, "brelan: b.Mes: expected a file, but there is none of this name\n")

    def test_largest_mesh(self):
        mesh = self.square(316)
        told = self.info(mesh)
        self.assertEqual(told["elements"]["count"], 99225)
        self.assertEqual(told["area"], 99225.0)
        self.assertTrue(told["sound"])
        self.assertEqual(told["soundness"]["free_edges"], {"count": 1260, "loops": 1, "length": 1260.0})


if __name__ == "__main__":
    unittest.main()
