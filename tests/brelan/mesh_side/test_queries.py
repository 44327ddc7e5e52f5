"""Lists of nodes and elements: brelan info with --nodes-on, --nodes-in, --elements-of, --border and --pairs."""
import json
import unittest

from support import Case, Mesh, records

# A selection by list in an edit of square.Mes, without the lines of the list.
EDIT = "1 0\nBmesh.dat\nNew.Mes\n1 1\n{}\n1\n{}0\n{}"


class Queries(Case):
    def lines(self, *arguments, status=0):
        result = self.brelan("info", *arguments)
        self.assertEqual((result.returncode, result.stderr), (status, ""), result.stdout)
        return result.stdout

    def test_lists_have_ranges_and_lines_of_bearable_length(self):
        self.square(41)  # nodes run down columns from the left: 41 a column
        self.assertEqual(self.lines("--nodes-on", "x=40", "Bmesh.dat"),
                         "Bmesh.dat: 41 nodes on x = 40\n  1641-1681\n")
        text = self.lines("--nodes-on", "y=40", "Bmesh.dat")
        self.assertEqual([int(n) for n in text.split("\n", 1)[1].replace(",", " ").split()], list(range(1, 1682, 41)))
        self.assertLessEqual(max(map(len, text.splitlines())), 101)
        self.assertEqual(self.lines("--nodes-on", "y=40.5", "--tolerance", "0.6", "--quiet", "Bmesh.dat"),
                         text.replace("y = 40", "y = 40.5"))
        self.assertEqual(self.lines("--nodes-in", "-5", "38.5", "1", "40", "Bmesh.dat"),
                         "Bmesh.dat: 4 nodes in (-5, 38.5) to (1, 40)\n  1-2, 42-43\n")
        self.assertEqual(self.lines("--elements-of", "1", "Bmesh.dat").splitlines()[1], "  1-1600")
        border = json.loads(self.lines("--json", "--border", "Bmesh.dat"))[0]["answers"][0]
        self.assertEqual(border["count"], 160)
        self.assertEqual(border["ranges"][0], [1, 42])
        self.assertEqual(len(border["numbers"]), 160)

    def test_elements_go_by_class_number_and_name(self):
        mesh = self.pit()
        told = {(r["class"], r["material"]): r["count"] for r in self.info(mesh, 0)["materials"]}
        for (of, material), count in told.items():
            answer = json.loads(self.lines("--json", "--elements-of", f"{of} {material}", mesh))[0]["answers"][0]
            self.assertEqual(answer["count"], count, (of, material))
        joint = max(m for of, m in told if of == "joint")
        self.assertIn(f"{told['joint', joint]} elements of material {joint}\n", self.lines("--elements-of", joint, mesh))
        with open(mesh, "a") as file:
            file.write("* beam 1: Sheet pile\n* truss 1: Sheet pile\n")
        self.assertIn(f"{told['beam', 1] + told['truss', 1]} elements of Sheet pile\n",
                      self.lines("--elements-of", "Sheet pile", mesh))

    def test_cards_take_the_lists_as_they_are(self):
        """Pasted into decks: the border nodes get codes, and the elements of a material go."""
        self.square(21)
        card = self.lines("--card", "--border", "Bmesh.dat")
        self.assertTrue(card.startswith("* Bmesh.dat: 80 nodes on the border\n  40\n  1  -22  42  43  "), card)
        self.assertGreater(len(card.splitlines()), 3)  # over several lines
        self.run_deck(EDIT.format(1, card, "7 8 9\n"))
        codes = {(r["codes"]["IDX"], r["codes"]["IDY"], r["codes"]["IDT"]): r["count"] for r in
                 self.info("New.Mes", 0)["node_codes"]}
        self.assertEqual(codes[7, 8, 9], 80)
        self.assertEqual(sum(codes.values()), 441)
        # The outer columns get material 2; then they go.
        self.run_deck("1 0\nBmesh.dat\nTwo.Mes\n1 1\n3\n0\n1. -1. 19. 21.\n1\n2 0 0\n")
        card = self.lines("--card", "--elements-of", "2", "Two.Mes")
        self.assertEqual(card, "* Two.Mes: 40 elements of material 2\n  4\n  1  -20  381  -400\n")
        self.run_deck("1 0\nTwo.Mes\nNew.Mes\n1 1\n2\n1\n" + card + "0\n")
        self.assertEqual([(r["material"], r["count"]) for r in self.info("New.Mes", 0)["materials"]], [(1, 360)])

    def test_pairs_join_two_meshes_as_the_program_finds_them(self):
        self.square(5)
        self.path("Bmesh.dat").rename(self.path("Left.Mes"))
        self.run_deck("1 0\nLeft.Mes\nRight.Mes\n101 101\n0\n0. 0. 4. 0.\n1. 1.\n")
        self.assertEqual(self.lines("--pairs", "Left.Mes", "Right.Mes", "--on", "x=4"),
                         "Left.Mes and Right.Mes: 5 pairs of nodes on x = 4\n  21:101, 22:102, 23:103, 24:104, 25:105\n")
        card = self.lines("--card", "--pairs", "Left.Mes", "Right.Mes", "--on", "x=4")
        self.assertEqual(card.split("\n", 1)[1], "  5\n  21  22  23  24  25\n  101  102  103  104  105\n")
        self.run_deck("0 0\nLeft.Mes\nRight.Mes\nFound.Mes\n0\n")
        self.run_deck("0 0\nLeft.Mes\nRight.Mes\nListed.Mes\n1\n" + card)
        found, listed = (self.path(name).read_text() for name in ("Found.Mes", "Listed.Mes"))
        self.assertEqual(records(listed), records(found))
        told = json.loads(self.lines("--json", "--pairs", "Left.Mes", "Right.Mes"))[0]
        self.assertEqual(told["answers"][0]["pairs"], [[k, 80 + k] for k in range(21, 26)])

    def test_twins_are_in_no_pair_and_named(self):
        self.square(3)
        twin = Mesh("displacement")
        for number, y in ((7, 2.0), (8, 1.0), (9, 0.0), (10, 1.0), (11, 0.0)):
            twin.node(number, 3.0 if number == 11 else 2.0, y, [0, 0, 1])
        twin.solid(1, (7, 8, 11), 1)
        self.write("Twin.Mes", twin.text())
        result = self.brelan("info", "--pairs", "Bmesh.dat", "Twin.Mes", "--on", "x=2")
        self.assertEqual(result.stdout, "Bmesh.dat and Twin.Mes: 2 pairs of nodes on x = 2\n  7:7, 9:9\n")
        self.assertEqual(result.stderr, "brelan: nodes that are not alone at their place are in no pair: 8 of Bmesh.dat, "
                         "8, 10 of Twin.Mes\n")

    def test_nothing_found_is_told_by_the_status(self):
        self.square(3)
        self.assertEqual(self.lines("--nodes-on", "x=7", "Bmesh.dat", status=1), "Bmesh.dat: 0 nodes on x = 7\n")
        self.assertEqual(self.lines("--card", "--elements-of", "beam=1", "Bmesh.dat", status=1),
                         "* Bmesh.dat: 0 elements of beam=1\n  0\n")

    def test_questions_that_cannot_be_answered(self):
        self.square(41)
        for arguments, text in (
                (("--nodes-on", "20", "Bmesh.dat"), '--nodes-on: expected x= or y= and a number, as in x=20, found "20"'),
                (("--nodes-on", "x=", "Bmesh.dat"), 'as in x=20, found "x="'),
                (("--nodes-in", "1", "2", "0", "3", "Bmesh.dat"), "--nodes-in: expected XMIN YMIN XMAX YMAX"),
                (("--elements-of", "strut 1", "Bmesh.dat"), "or a name that Bmesh.dat gives, found \"strut 1\""),
                (("--pairs", "Bmesh.dat"), "--pairs: expected two meshes, found 1"),
                (("--pairs", "--border", "Bmesh.dat", "Bmesh.dat"), "--pairs: expected no other question besides it"),
                (("--on", "x=1", "Bmesh.dat"), "--on requires --pairs"),
                (("--card", "Bmesh.dat"), "--card: expected what to list"),
                (("--card", "--json", "--border", "Bmesh.dat"), "--json excludes --card"),
                (("--card", "--pairs", "Bmesh.dat", "Bmesh.dat"),
                 "pairs of nodes take 1681 numbers, and a card's list has at most 500")):
            with self.subTest(arguments):
                self.failed(self.brelan("info", *arguments), text)


if __name__ == "__main__":
    unittest.main()
