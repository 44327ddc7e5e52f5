import json
import random
import unittest

from support import EDITIONS, Case, Mesh, sample


def renumbered(mesh, seed):
    """The same mesh under other numbers, corners beginning elsewhere."""
    chance = random.Random(seed)
    old = [node[0] for node in mesh.nodes]
    new = dict(zip(old, chance.sample(range(1, 99991), len(old))))
    new[0] = 0
    numbers = iter(chance.sample(range(1, 99991), 99))
    other = Mesh(mesh.kind)
    other.nodes = sorted((new[n], *rest) for n, *rest in mesh.nodes)
    for _, corners, midsides, material, attributes in mesh.solids:
        used = [new[c] for c in corners if c]
        turn = chance.randrange(len(used))
        other.solid(next(numbers), used[turn:] + used[:turn], material, attributes, midsides)
    other.solids.sort()
    other.beams = sorted((next(numbers), new[i], new[j], m) for _, i, j, m in mesh.beams)
    other.trusses = sorted((next(numbers), new[j], new[i], m) for _, i, j, m in mesh.trusses)
    return other


class Diff(Case):
    def test_same_meshes(self):
        for kind in EDITIONS:
            self.write("a.Mes", sample(kind).text())
            self.write("b.Mes", "* a comment\n" + sample(kind).text("other.Mes"))
            self.assertEqual(self.good("diff", "a.Mes", "b.Mes"),
                             "a.Mes and b.Mes are the same: 10 nodes, 8 elements\n")
            self.assertEqual(self.good("-q", "diff", "a.Mes", "b.Mes"), "")
            self.assertTrue(json.loads(self.good("diff", "--json", "a.Mes", "b.Mes"))["same"])

    def test_other_numbers_are_the_same_by_place(self):
        for kind in EDITIONS:
            self.write("a.Mes", sample(kind).text())
            for seed in range(5):
                self.write("b.Mes", renumbered(sample(kind), seed).text())
                self.good("diff", "--by-place", "a.Mes", "b.Mes")
                self.assertEqual(self.brelan("diff", "a.Mes", "b.Mes").returncode, 1)

    def test_pit_under_other_numbers(self):
        pit = self.pit()
        told = json.loads(self.good("diff", "--json", "--by-place", pit, pit))
        self.assertTrue(told["same"])

    def test_tells_each_difference(self):
        a, b = sample("displacement"), sample("displacement")
        a.nodes[3] = (4, [1, 0, 1], 0.0, 1.0, [])
        b.nodes[3] = (4, [0, 0, 1], 0.0, 1.5, [])
        b.nodes.pop()
        b.solids[3] = (8, [20, 5, 21, 0], [0] * 4, 6, [1.0, 2.0])
        b.beams[0] = (52, 2, 3, 4)
        self.write("a.Mes", a.text())
        self.write("b.Mes", b.text())
        result = self.brelan("diff", "a.Mes", "b.Mes")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "")
        self.assertEqual(result.stdout.splitlines(), [
            "--- a.Mes", "+++ b.Mes",
            "- 1 node only in a.Mes: 99990",
            "! 1 node moved, at most by 0.5", "    node 4 (0, 1) -> (0, 1.5)",
            "! 1 node with other codes or values", "    node 4: IDX 1 -> 0",
            "- 1 element only in a.Mes: 50", "+ 1 element only in b.Mes: 52",
            "! 1 element changed",
            "    element 8: nodes 20 99990 21 0 -> 20 5 21 0; material -2 -> 6; DEN 2.3 -> 2"])
        told = json.loads(self.brelan("diff", "--json", "a.Mes", "b.Mes").stdout)
        self.assertFalse(told["same"])
        self.assertEqual(told["nodes"]["only_a"], {"count": 1, "numbers": [99990]})
        self.assertEqual(told["nodes"]["changed"]["list"][0]["fields"], {"IDX": ["1", "0"]})

    def test_tolerance(self):
        a, b = sample("head"), sample("head")
        b.nodes[0] = (1, b.nodes[0][1], 0.001, 0.0, b.nodes[0][4])
        self.write("a.Mes", a.text())
        self.write("b.Mes", b.text())
        self.assertEqual(self.brelan("diff", "a.Mes", "b.Mes").returncode, 1)
        self.good("diff", "--tolerance", "0.0011", "a.Mes", "b.Mes")
        self.assertEqual(self.brelan("diff", "--tolerance", "0.0009", "a.Mes", "b.Mes").returncode, 1)
        self.assertEqual(self.brelan("diff", "--by-place", "a.Mes", "b.Mes").returncode, 1)
        self.good("diff", "--by-place", "--tolerance", "0.0011", "a.Mes", "b.Mes")

    def test_other_kind(self):
        self.write("a.Mes", sample("head").text())
        self.write("b.Mes", sample("temperature").text())
        result = self.brelan("diff", "a.Mes", "b.Mes")
        self.assertEqual(result.returncode, 1)
        self.assertIn("kind: head -> temperature\n", result.stdout)

    def test_list_limits_what_is_shown(self):
        a = self.write("a.Mes", sample("coupled").text())
        b = sample("coupled")
        b.solids = [(n, c, m, 77, at) for n, c, m, _, at in b.solids]
        self.write("b.Mes", b.text())
        self.assertIn("    and 3 more\n", self.brelan("diff", "--list", "2", a, "b.Mes").stdout)


if __name__ == "__main__":
    unittest.main()
