"""Names of materials: from comment lines through every format, and wherever materials are shown."""
import json
import subprocess
import unittest

from support import EDITIONS, Case, python_with, records, sample

MESHIO = python_with("meshio")
# Those of the sample's classes: solids 3, 9999 and -2, joint 9, beam 4, trusses 1 and 2.
NAMES = ['* material -2: Löß <"soft"> & wet', "* material 3: Sand", "* material 9: Interface", "* beam 4: Sheet pile",
         "* truss 2: Anchor"]


def names_of(text):
    return [line for line in text.splitlines() if line.startswith("*")]


class Names(Case):
    def sample(self, kind="displacement", names=NAMES):
        mesh = sample(kind)
        self.write("a.Mes", mesh.text() + "".join(name + "\n" for name in names))
        return mesh

    def test_there_and_back_by_every_format(self):
        for kind in EDITIONS:
            mesh = self.sample(kind)
            for ending, options in (("Mes", []), ("vtu", []), ("msh", []), ("msh", ["--to", "msh2"])):
                with self.subTest(kind=kind, format=options or ending):
                    self.good("convert", *options, "a.Mes", "b." + ending)
                    self.good("convert", "b." + ending, "back.Mes")
                    back = self.path("back.Mes").read_text()
                    # A quotation mark ends a name in Gmsh's files.
                    expected = [n.replace('"', "'") for n in NAMES] if ending == "msh" else NAMES
                    self.assertEqual(names_of(back), expected)
                    self.assertTrue(back.endswith("     0\n     0\n" + "\n".join(expected) + "\n"))
                    self.assertEqual(records("".join(back.splitlines(True)[:-len(NAMES)])), records(mesh.text()))

    def test_the_batch_program_passes_names_over(self):
        self.good("new", "edit-4", "-o", ".")
        deck = self.path("edit-4.dat").read_text()
        plain = "".join(line for line in deck.splitlines(True) if not line.startswith("*"))
        self.run_deck(plain)
        expected = self.path("Cut.Mes").read_bytes()
        names = "".join(name + "\n" for name in NAMES)
        text = self.path("Start.Mes").read_text()
        for named in (names + text, text + names, text.replace("    CONTINUUM", names + "    CONTINUUM")):
            self.write("Start.Mes", named)
            self.run_deck(names + deck)
            self.assertEqual(self.path("Cut.Mes").read_bytes(), expected)

    def test_flow_lines_have_names_as_well(self):
        mesh = sample("head")
        mesh.hide_trusses = True
        self.write("a.Mes", mesh.text() + "* truss 2: Drain\n")
        self.good("convert", "a.Mes", "b.msh")
        self.assertIn('"flow line 2: Drain"', self.path("b.msh").read_text())
        self.good("convert", "b.msh", "back.Mes")
        self.assertEqual(names_of(self.path("back.Mes").read_text()), ["* truss 2: Drain"])

    def test_a_mesh_without_names_is_written_as_ever(self):
        mesh = self.sample(names=["* material: none", "* material 3"])
        self.good("convert", "a.Mes", "b.Mes")
        self.assertEqual(names_of(self.path("b.Mes").read_text()), [])
        self.good("convert", "a.Mes", "b.vtu")
        self.assertNotIn("FieldData", self.path("b.vtu").read_text())
        self.sample()
        self.good("convert", "--bare", "a.Mes", "b.vtu")  # without numbers names would name nothing
        self.assertNotIn("FieldData", self.path("b.vtu").read_text())

    def test_meshio_keeps_names(self):
        self.assertIsNotNone(MESHIO, "python3-meshio is not installed")
        self.sample()
        self.good("convert", "a.Mes", "a.vtu")
        script = ("import json, meshio; m = meshio.read('a.vtu'); m.write('m.vtu');"
                  "print(json.dumps({k: [int(x) for x in v] for k, v in m.field_data.items()}))")
        done = subprocess.run([MESHIO, "-c", script], cwd=self.root, check=True, capture_output=True, text=True)
        self.assertEqual(json.loads(done.stdout), {
            'material -2: Löß <"soft"> & wet': [-2, 2], "material 3: Sand": [3, 2], "material 9: Interface": [9, 2],
            "beam 4: Sheet pile": [4, 1], "truss 2: Anchor": [2, 1]})
        self.good("convert", "a.Mes", "a.msh")
        script = "import meshio; m = meshio.read('a.msh'); m.write('m.msh', file_format='gmsh')"
        subprocess.run([MESHIO, "-c", script], cwd=self.root, check=True, capture_output=True)
        self.good("convert", "m.msh", "b.Mes")
        self.assertEqual(names_of(self.path("b.Mes").read_text()), [n.replace('"', "'") for n in NAMES])

    def test_gmsh_keeps_names_of_any_length_and_its_own_groups_name_materials(self):
        longest = "* material 3: " + "n" * 80
        self.sample(names=[longest, *NAMES[2:]])
        self.good("convert", "--bare", "a.Mes", "a.msh")
        for version in ("msh22", "msh41"):
            with self.subTest(version):
                self.gmsh("a.msh", "-0", "-format", version, "-o", self.path("g.msh"))
                self.good("convert", "--kind", "displacement", "g.msh", "b.Mes")
                self.assertEqual(names_of(self.path("b.Mes").read_text()), [longest, *NAMES[2:]])
        self.write("drawn.geo", """
            SetFactory("OpenCASCADE"); Rectangle(1) = {0, 0, 0, 2, 1}; Rectangle(2) = {0, 1, 0, 2, 1}; Coherence;
            Physical Surface("Sand", 4) = {1}; Physical Surface(7) = {2};
            """)
        self.gmsh("drawn.geo", "-2", "-format", "msh41", "-o", self.path("drawn.msh"))
        self.good("convert", "--kind", "displacement", "drawn.msh", "b.Mes")
        self.assertEqual(names_of(self.path("b.Mes").read_text()), ["* material 4: Sand"])

    def gmsh(self, *arguments):
        done = subprocess.run(["gmsh", "-nopopup", *map(str, arguments)], cwd=self.root, text=True, capture_output=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_a_name_that_cannot_be_kept_is_told(self):
        self.sample(names=["* material 3: Sand\x1b[2J", "* material 9: " + "n" * 81])
        result = self.brelan("convert", "a.Mes", "b.Mes")
        self.assertEqual(result.stderr, "brelan: a.Mes: 2 names of materials were cut or lost control characters\n")
        self.assertEqual(names_of(self.path("b.Mes").read_text()), ["* material 3: Sand [2J", "* material 9: " + "n" * 80])

    def test_info_shows_them(self):
        self.sample()
        shown = self.brelan("info", "a.Mes").stdout
        self.assertRegex(shown, r"Materials +elements +area +length   name\n")
        self.assertRegex(shown, r"\n  joint 9 +1 .*   Interface\n")
        self.assertRegex(shown, r"\n  truss 1 +1 +[0-9.]+\n")
        told = json.loads(self.brelan("info", "--json", "a.Mes").stdout)[0]
        names = {(row["class"], row["material"]): row["name"] for row in told["materials"]}
        self.assertEqual(names, {("solid", -2): 'Löß <"soft"> & wet', ("solid", 3): "Sand", ("solid", 9999): None,
                                 ("joint", 9): "Interface", ("beam", 4): "Sheet pile", ("truss", 1): None,
                                 ("truss", 2): "Anchor"})
        self.sample(names=[])
        self.assertRegex(self.brelan("info", "a.Mes").stdout, r"Materials +elements +area +length\n")

    def test_picture_and_page_show_them(self):
        self.sample()
        self.good("plot", "a.Mes", "-o", "a.svg")
        picture = self.path("a.svg").read_text()
        for text in ("material -2: Löß &lt;&quot;soft&quot;&gt; &amp; wet (1)", "joint 9: Interface (1)", "truss 2: Anchor (1)",
                     "material 9999 (1)"):
            self.assertIn(text, picture.replace('"soft"', "&quot;soft&quot;"))
        self.good("plot", "a.Mes", "-o", "a.html")
        page = self.path("a.html").read_text()
        for text in ('"name":"beam 4: Sheet pile"', '"material":"4: Sheet pile"', '"material":"9999"'):
            self.assertIn(text, page)

    def test_a_long_name_is_cut_in_the_legend(self):
        self.sample(names=["* material 3: " + "n" * 80])
        self.good("plot", "a.Mes", "-o", "a.svg")
        self.assertIn("material 3: " + "n" * 21 + "... (2)<", self.path("a.svg").read_text())

    def test_names_of_a_deck_show_with_its_mesh(self):
        self.good("new", "groups", "-o", ".")
        result = self.brelan("run", "groups.dat")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("  materials  1 Ground: 309, 2 First cut: 45, 3 Second cut: 39, 5 Back-fill: 84,", result.stdout)
        self.assertIn("joint 7 Joint of the wall: 10, beam 1 Sheet piles: 10, truss 1 Strut: 1\n", result.stdout)
        self.assertEqual(names_of(self.path("Pit.Mes").read_text()), [])
        told = json.loads(self.good("run", "--json", "groups.dat"))["mesh"]
        self.assertIn({"class": "beam", "name": "Sheet piles"}, [{k: row[k] for k in ("class", "name")} for row in told["materials"]])
        told = json.loads(self.good("check", "--dry-run", "--json", "groups.dat"))["dry_run"]["mesh"]
        self.assertEqual([row["name"] for row in told["materials"]][:2], ["Ground", "First cut"])
        self.good("plot", "Pit.Mes", "-o", "a.svg")
        self.assertNotIn("Back-fill", self.path("a.svg").read_text())
        self.good("plot", "Pit.Mes", "--deck", "groups.dat", "-o", "a.svg")
        self.assertIn("material 5: Back-fill (84)", self.path("a.svg").read_text())


if __name__ == "__main__":
    unittest.main()
