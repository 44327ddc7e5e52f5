"""A mesh in the steps of an analysis, by the deck that made it: pictures, series for ParaView, tables.

The deck is stage.dat of the examples: eight squares of side 1 in a field of 4 by 2. The ground of the two at
the upper left (elements 1 and 3) goes at step 2, their doubles 9 and 10 come at step 6, and a wall of two
beams, 11 and 12, comes at step 1."""
import json
import re
import subprocess
import unittest
import xml.etree.ElementTree as xml

from support import SOURCE, Case
from test_convert import MESHIO, READ

SVG = "{http://www.w3.org/2000/svg}"
STANDS = {0: {1, 2, 3, 4, 5, 6, 7, 8}, 1: {1, 2, 3, 4, 5, 6, 7, 8, 11, 12}, 2: {2, 4, 5, 6, 7, 8, 11, 12},
          6: {2, 4, 5, 6, 7, 8, 9, 10, 11, 12}}


def points_of(data):
    """Of a path: each line begins at a place (M) and goes on by steps (l)."""
    points = []
    for letter, x, y in re.findall(r"([Ml]?)\s*(-?[\d.]+)\s*(-?[\d.]+)", data):
        start = (0.0, 0.0) if letter == "M" else points[-1]
        points.append((start[0] + float(x), start[1] + float(y)))
    return points


class Stages(Case):
    def setUp(self):
        super().setUp()
        for name in ("stage.dat", "mirror.dat", "Quay.Mes", "Row.Mes"):
            self.write(name, (SOURCE / "examples" / name).read_bytes())
        self.good("-q", "run", "stage.dat", "--cut", "rules")

    # --- the table -------------------------------------------------------------------------------

    def test_areas_and_lengths_by_step(self):
        stages = self.info("Stage.Mes", 0, "--deck", "stage.dat")["stages"]
        self.assertEqual(stages["steps"], [0, 1, 2, 6])
        rows = {(row["class"], row["material"]): row for row in stages["rows"]}
        self.assertEqual({key: (row["measure"], row["stands"]) for key, row in rows.items()}, {
            ("solid", 1): ("area", [6, 6, 6, 6]), ("solid", 6): ("area", [2, 2, 0, 0]),
            ("solid", 7): ("area", [0, 0, 0, 2]), ("beam", 1): ("length", [0, 2, 2, 2])})
        for row in rows.values():
            for step in range(1, 4):
                self.assertEqual(row["stands"][step],
                                 row["stands"][step - 1] + row["comes"][step] - row["goes"][step])
        for place, step in enumerate(stages["steps"]):
            self.assertEqual(sum(row["elements"][place] for row in rows.values()), len(STANDS[step]))

    def test_table_as_text(self):
        text = self.good("info", "--deck", "stage.dat", "Stage.Mes")
        table = [line.split() for line in text[text.index("By step"):].splitlines()]
        self.assertEqual(table, [["By", "step", "0", "1", "2", "6"],
                                 ["material", "1", "area", "6", "6", "6", "6"],
                                 ["material", "6", "area", "2", "2", "-", "-"],
                                 ["material", "7", "area", "-", "-", "-", "2"],
                                 ["beam", "1", "length", "-", "2", "2", "2"],
                                 ["all", "solids", "area", "8", "8", "6", "8"]])
        self.assertNotIn("By step", self.good("info", "Stage.Mes"))

    def test_table_of_a_deck_without_activity(self):
        self.good("-q", "run", "mirror.dat")
        name = next(path.name for path in self.root.glob("*.Mes")
                    if path.name not in ("Stage.Mes", "Quay.Mes", "Row.Mes"))
        text = self.good("info", "--deck", "mirror.dat", name)
        self.assertIn("no element comes or goes", text)
        self.failed(self.brelan("plot", "--deck", "mirror.dat", "--step", "1", name, "-o", "a.svg"),
                    "no element of " + name + " comes or goes by mirror.dat")
        self.failed(self.brelan("convert", "--deck", "mirror.dat", "--stages", name, "a.vtu"), "none does")
        self.assertEqual([path.name for path in self.root.glob("a*")], [])

    # --- pictures --------------------------------------------------------------------------------

    def picture(self, step):
        """Numbers of the elements that are drawn, texts, and the paths by their ids."""
        self.good("plot", "--deck", "stage.dat", "--step", step, "--numbers", "elements", "Stage.Mes", "-o", "a.svg")
        drawn = xml.parse(self.path("a.svg")).getroot()
        texts = ["".join(text.itertext()) for text in drawn.iter(SVG + "text")]
        numbers = next((group for group in drawn.iter(SVG + "g") if group.get("id") == "element-numbers"), [])
        paths = {}
        for path in drawn.iter(SVG + "path"):
            if path.get("id") and path.get("d"):
                paths[path.get("id")] = points_of(path.get("d"))
        return {int("".join(number.itertext())) for number in numbers}, texts, paths

    def box(self, points):
        """Left, bottom, right and top."""
        xs, ys = [x for x, _ in points], [y for _, y in points]
        return min(xs), max(ys), max(xs), min(ys)

    def test_a_picture_has_what_stands_in_the_step(self):
        for step, elements in {**STANDS, 5: STANDS[2], 7: STANDS[6]}.items():
            self.assertEqual(self.picture(step)[0], elements, step)

    def test_what_comes_and_goes_is_marked(self):
        field = self.box(self.picture(0)[2]["regions"])
        side = (field[2] - field[0]) / 4.0
        pit = (field[0], field[1] - side, field[0] + 2.0 * side, field[3])
        for step, mark, other, box, count in ((2, "goes", "comes", pit, 2), (6, "comes", "goes", pit, 2)):
            _, texts, paths = self.picture(step)
            for found, expected in zip(self.box(paths[mark]), box):
                self.assertAlmostEqual(found, expected, delta=0.1)
            self.assertIn(mark + "-hatch", paths)
            self.assertFalse([name for name in paths if name.startswith(other)])
            self.assertIn(f"{mark} at step {step} ({count})", texts)
        _, texts, paths = self.picture(1)
        wall = field[0] + 2.0 * side
        for found, expected in zip(self.box(paths["comes-lines"]), (wall, field[1], wall, field[3])):
            self.assertAlmostEqual(found, expected, delta=0.1)
        self.assertIn("comes at step 1 (2)", texts)
        for step in (0, 5):
            _, texts, paths = self.picture(step)
            self.assertFalse([name for name in paths if name.startswith(("comes", "goes"))], step)
            self.assertIn(f"step {step}: nothing comes or goes", texts)
            self.assertIn(f"Stage.Mes, step {step}", texts)

    def test_the_frame_is_the_same_in_all_steps(self):
        for found, expected in zip(self.box(self.picture(2)[2]["regions"]), self.box(self.picture(0)[2]["regions"])):
            self.assertAlmostEqual(found, expected, delta=0.1)

    def test_steps_that_cannot_be_drawn(self):
        self.failed(self.brelan("plot", "--step", "2", "Stage.Mes", "-o", "a.svg"), "--deck")
        self.failed(self.brelan("plot", "--deck", "stage.dat", "--step", "-1", "Stage.Mes", "-o", "a.svg"), "--step")
        beyond = self.brelan("plot", "--deck", "stage.dat", "--step", "9", "Stage.Mes", "-o", "a.svg")
        self.assertEqual(beyond.returncode, 0)
        self.assertEqual(beyond.stderr,
                         "brelan: --step 9 lies behind the last at which anything comes or goes: 1, 2, 6\n")
        other = self.brelan("plot", "--deck", "mirror.dat", "--step", "2", "Stage.Mes", "-o", "b.svg")
        self.failed(other, "mirror.dat")

    # --- ParaView --------------------------------------------------------------------------------

    def test_a_series_has_a_mesh_for_each_step(self):
        self.good("convert", "--deck", "stage.dat", "--stages", "Stage.Mes", "Stage.vtu")
        series = xml.parse(self.path("Stage.pvd")).getroot()
        self.assertEqual((series.tag, series.get("type")), ("VTKFile", "Collection"))
        steps = {}
        for part in series.iter("DataSet"):
            name = part.get("file")
            self.assertTrue(self.path(name).is_file(), name)
            steps[float(part.get("timestep"))] = name
        self.assertEqual(list(steps), [0, 1, 2, 6])
        for step, name in steps.items():
            numbers = self.good("info", "--elements-of", "1", name)
            self.assertEqual(self.info(name)["elements"]["count"], len(STANDS[step]), numbers)
            self.assertEqual(self.info(name)["area"], 6 if step == 2 else 8)
        self.assertEqual(self.info("Stage.vtu")["elements"]["count"], 12)
        self.good("diff", "Stage.Mes", "Stage.vtu")

    def test_arrays_tell_when_an_element_comes_and_goes(self):
        self.good("convert", "--deck", "stage.dat", "Stage.Mes", "Stage.vtu")
        self.assertFalse(self.path("Stage.pvd").exists())
        self.assertIsNotNone(MESHIO, "python3-meshio is not installed")
        read = subprocess.run([MESHIO, "-c", READ, self.path("Stage.vtu")], text=True, check=True, capture_output=True)
        cells = [cell["data"] for cell in json.loads(read.stdout)["cells"]]
        found = {cell["number"]: (cell["comes"], cell["goes"]) for cell in cells}
        self.assertEqual(found, {1: (0, 2), 3: (0, 2), 9: (6, 0), 10: (6, 0), 11: (1, 0), 12: (1, 0),
                                 **{number: (0, 0) for number in (2, 4, 5, 6, 7, 8)}})

    def test_series_that_cannot_be_written(self):
        self.failed(self.brelan("convert", "--stages", "Stage.Mes", "a.vtu"), "--deck")
        self.failed(self.brelan("convert", "--deck", "stage.dat", "--stages", "Stage.Mes", "a.msh"), ".vtu")
        self.failed(self.brelan("convert", "--deck", "stage.dat", "--stages", "--to", "vtu", "Stage.Mes", "-"),
                    "--stages writes others beside it")
        self.failed(self.brelan("info", "--deck", "stage.dat", "--border", "Stage.Mes"), "--deck")


if __name__ == "__main__":
    unittest.main()
