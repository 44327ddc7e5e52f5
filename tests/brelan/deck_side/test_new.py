"""brelan new: every starter deck runs as it is, is accepted without warnings, and makes a sound mesh."""
from harness import KINDS, Case, main

DECKS = {  # result, and its counts by hand: nodes, continuum elements, beams, trusses
    # 6, 10 and 6 columns by 6 and 4 rows
    "base-mesh": ("Bmesh.dat", (23 * 11, 22 * 10, 0, 0)),
    # the mesh of 6 by 3 squares, two beams and a truss
    "edit-0": ("Mirror.Mes", (28, 18, 2, 1)),
    "edit-1": ("Held.Mes", (28, 18, 2, 1)),
    # two squares and the upper beam go, and the node between them at the top
    "edit-2": ("Trench.Mes", (27, 16, 1, 1)),
    "edit-3": ("Layers.Mes", (28, 18, 2, 1)),
    "edit-4": ("Cut.Mes", None),
    "edit-5": ("Slope.Mes", None),
    "edit-6": ("Rebuilt.Mes", (28, 18, 2, 1)),
    "groups": ("Pit.Mes", None),
    # 4 by 4 and 5 by 4 nodes with 4 in common
    "combination": ("Both.Mes", (16 + 20 - 4, 9 + 12, 0, 0)),
    "dam": ("EarthDam.Mes", None),
}


class EveryDeck(Case):
    def test_the_list_names_all_decks(self):
        listed = self.brelan("new", "--list").stdout.splitlines()
        self.assertEqual([line.split()[0] for line in listed], list(DECKS))

    def run_deck(self, name, kind):
        result, counts = DECKS[name]
        deck = self.starter(name, kind)
        ran = self.brelan("run", deck.name)
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        self.assertIn(f"edition {KINDS[kind]} ({kind})", ran.stdout)
        self.assertIn(f"  result     {result}\n", ran.stdout)
        self.assertTrue((self.project / result).is_file())
        if counts:
            self.assertEqual(self.counts(result), counts)
        sound = self.brelan("info", result)
        self.assertEqual(sound.returncode, 0, sound.stdout + sound.stderr)
        checked = self.brelan("check", "-q", "--strict", deck.name)
        self.assertEqual((checked.returncode, checked.stdout, checked.stderr), (0, "", ""))
        self.assert_nothing_left()


def add_cases():
    for name in DECKS:
        for kind in KINDS:
            def test(self, name=name, kind=kind):
                self.run_deck(name, kind)
            setattr(EveryDeck, f"test_{name.replace('-', '_')}_{kind}", test)


add_cases()


class Command(Case):
    def test_the_deck_goes_to_standard_output_and_says_what_it_reads(self):
        shown = self.brelan("new", "edit-2")
        self.assertEqual(shown.returncode, 0)
        self.assertEqual(shown.stdout, self.starter("edit-2").read_text())
        self.assertIn("this deck reads Start.Mes", shown.stderr)
        self.assertEqual(self.brelan("-q", "new", "edit-2").stderr, "")

    def test_short_names(self):
        whole = self.brelan("new", "base-mesh").stdout
        self.assertEqual(self.brelan("new", "base").stdout, whole)
        self.assertEqual(self.brelan("new", "edit3").stdout, self.brelan("new", "edit-3").stdout)
        self.assertEqual(self.brelan("new", "3").stdout, self.brelan("new", "edit-3").stdout)

    def test_each_card_has_a_comment_in_front(self):
        for name in DECKS:
            lines = self.brelan("-q", "new", name).stdout.splitlines()
            self.assertTrue(lines[0].startswith("* "), name)
            self.assertLess(sum(not line.startswith("*") for line in lines),
                            2.2 * sum(line.startswith("*") for line in lines), name)
            self.assertNotIn("@", "".join(lines), name)
            self.assertLessEqual(max(map(len, lines)), 120, name)

    def test_files_that_are_there_stay(self):
        mesh = self.write("Start.Mes", "mine")
        self.assert_one_message(self.brelan("new", "edit-0", "-o", "."), 2, "Start.Mes", "--force")
        self.assertEqual(mesh.read_text(), "mine")
        self.assertFalse((self.project / "edit-0.dat").exists())
        self.assertEqual(self.brelan("new", "edit-0", "-o", ".", "--force").returncode, 0)
        self.assertNotEqual(mesh.read_text(), "mine")

    def test_a_directory_is_made_and_a_name_given(self):
        made = self.brelan("new", "base-mesh", "-o", "a/b", "--name", "quay.dat")
        self.assertEqual(made.returncode, 0)
        self.assertIn("brelan run a/b/quay.dat", made.stderr)
        self.assertIn("brelan run quay.dat", (self.project / "a/b/quay.dat").read_text())

    def test_wrong_names(self):
        self.assert_one_message(self.brelan("new", "edit-7"), 2, "edit-7", "base-mesh")
        self.assert_one_message(self.brelan("new"), 2, "base-mesh")
        self.assert_one_message(self.brelan("new", "dam", "--kind", "pressure"), 2, "pressure")
        self.write("file", "x")
        self.assert_one_message(self.brelan("new", "edit-0", "-o", "file"), 2, "file", "directory")


if __name__ == "__main__":
    main()
