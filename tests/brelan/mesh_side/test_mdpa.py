"""Meshes for the geotechnical solver, as a strict reader of their format takes them."""
import json
import os
import pathlib
import re
import shutil
import sys
import unittest

from mdpa_reader import TYPES, Comparison, Fault, Mdpa, Mes, is_there
from support import EDITIONS, SOURCE, Case, Mesh, sample

sys.path.insert(0, str(SOURCE / "tests" / "independent"))
import compare_outputs  # noqa: E402

SHARE = int(os.environ.get("BRELAN_SAMPLE_SHARE", "1"))
LONG = "BRELAN_LONG" in os.environ
RANDOM_DECKS = 2000 if LONG else 16


def kind_of_edition(edition):
    return "displacement" if edition == 1 else "coupled" if edition <= 4 else "temperature" if edition <= 8 else "head"


class ForGeotechnics(Case):
    def convert(self, name, *options, kind="displacement", **known):
        """Converts a mesh, holds the file against it, and returns both and what was said."""
        target = pathlib.Path(name).stem + ".mdpa"
        result = self.brelan("convert", *options, name, target)
        self.assertEqual(result.returncode, 0, result.stderr)
        mdpa = Mdpa(self.path(target).read_text())
        comparison = Comparison(mdpa, Mes(self.path(name).read_text(encoding="latin-1"), kind), **known)
        comparison.all()
        self.assertEqual(len(re.findall("turned to run", result.stderr)), bool(comparison.turned))
        return mdpa, comparison, result.stderr

    def constraints(self, name):
        return json.loads(self.path(name).read_text())["processes"]["constraints_process_list"]

    def check_stages(self, stem, mdpa, kind, steps):
        """The project files name parts that are there, with the states that the names of parts tell."""
        materials = json.loads(self.path(stem + "_materials.json").read_text())["properties"]
        told = {}
        for row in materials:
            root, part = row["model_part_name"].split(".")
            self.assertEqual(root, "PorousDomain")
            self.assertEqual({mdpa.elements[n].properties for n in mdpa.parts[part].elements}, {row["properties_id"]})
            told.update(dict.fromkeys(mdpa.parts[part].elements, part))
        self.assertEqual(told.keys(), mdpa.elements.keys())
        sets = [name for name in mdpa.parts if re.fullmatch(r"(solids|joints|beams|trusses)_(never|from|until).*", name)]
        listed = [n for name in sets for n in mdpa.parts[name].elements]
        self.assertEqual(len(listed), len(set(listed)), "elements of two sets")
        for k, step in enumerate([0, *steps], 1):
            project = json.loads(self.path(f"{stem}_stage_{k}.json").read_text())
            settings = project["solver_settings"]
            self.assertEqual(settings["model_import_settings"], {"input_type": "mdpa", "input_filename": stem})
            self.assertEqual(settings["material_import_settings"]["materials_filename"], stem + "_materials.json")
            self.assertEqual(sorted(settings["problem_domain_sub_model_part_list"]), sorted(set(told.values())))
            for name in settings["processes_sub_model_part_list"]:
                self.assertIn(name, mdpa.parts)
            off = {}
            for process in self.constraints(f"{stem}_stage_{k}.json"):
                given = process["Parameters"]
                root, *part = given["model_part_name"].split(".")
                self.assertEqual(root, "PorousDomain")
                self.assertTrue(not part or part[0] in mdpa.parts, part)
                if process["process_name"] == "ApplyExcavationProcess":
                    off[part[0]] = given["deactivate_soil_part"]
                elif given["variable_name"] == "DISPLACEMENT":
                    place = given["is_fixed"].index(True)
                    self.assertTrue(part[0].startswith((f"ID{'XY'[place]}_", f"IS{'XY'[place]}_")), part)
            self.assertEqual(sorted(off), sorted(name for name in sets if mdpa.parts[name].elements))
            for name, state in off.items():
                comes, goes = (int((re.findall(word + r"_(\d+)", name) or [0])[0]) for word in ("from", "until"))
                self.assertEqual(state, "never" in name or not is_there((comes, goes), step), (name, step))
        self.assertFalse(self.path(f"{stem}_stage_{len(steps) + 2}.json").exists())

    def test_every_class_in_every_kind(self):
        stresses = {"UPwSmallStrainElement2D4N", "UPwSmallStrainElement2D3N", "GeoCrBeamElement2D2N",
                    "Geo_ULineInterfacePlaneStrainElement2Plus2N", "GeoLinearTrussElement2D2N"}
        flow = {"SteadyStatePwElement2D4N", "SteadyStatePwElement2D3N"}
        heat = {"GeoTransientThermalElement2D4N", "GeoTransientThermalElement2D3N"}
        for kind, types in (("coupled", stresses), ("displacement", stresses), ("head", flow), ("temperature", heat)):
            with self.subTest(kind):
                self.write("a.Mes", sample(kind).text())
                mdpa, _, said = self.convert("a.Mes", kind=kind)
                self.assertEqual(set(mdpa.blocks), types)
                left_out = {"head", "temperature"} & {kind}
                self.assertEqual("1 beam was left out" in said, bool(left_out))
                self.assertEqual("1 joint was left out" in said and "nothing flows across" in said, bool(left_out))
                self.assertEqual("2 trusses were left out" in said, bool(left_out))
                self.assertEqual("IFX and IFY" in said, kind == "coupled")
                for name in {"coupled": "KS, KF, INTR, INTS, TBJWL", "head": "IDH, H, CF", "temperature": "IDH, T, CF",
                             "displacement": "THIC, DEN"}[kind].split(", "):
                    self.assertRegex(said, rf"\b{name}\b")

    def test_what_the_file_of_a_small_mesh_says(self):
        """Two squares with a joint of no width between them, drawn upwards, whose twins are on the left."""
        mesh = Mesh()
        for n, x, y, codes in ((1, 0., 0., [1, 1, 1]), (2, 1., 0., [0, 1, 0]), (3, 1., 1., [0, 0, 0]), (4, 0., 1., [1, 0, 1]),
                               (5, 1., 0., [0, 1, 1]), (6, 2., 0., [1, 1, 1]), (7, 2., 1., [1, 0, 1]), (8, 1., 1., [0, 0, 1])):
            mesh.node(n, x, y, codes)
        mesh.solid(1, (1, 2, 3, 4), 1).solid(2, (5, 8, 7, 6), 2).joint(3, (5, 8, 3, 2), 7)
        mesh.beams.append((4, 2, 3, 1))
        mesh.trusses += [(5, 4, 7, 1), (6, 1, 6, 2)]
        self.write("a.Mes", mesh.text())
        mdpa, _, said = self.convert("a.Mes", "--cable", "2", cables=(2,))
        self.assertIn("1 solid was turned", said)
        self.assertEqual(self.path("a.mdpa").read_text().split("Begin Nodes")[0].split(),
                         "// a.Mes, a mesh of the displacement kind Begin Properties 1 End Properties Begin Properties 2 "
                         "End Properties Begin Properties 7 End Properties Begin Properties 8 End Properties Begin "
                         "Properties 9 End Properties Begin Properties 10 End Properties".split())
        self.assertEqual({n: (e.type, e.properties, e.nodes) for n, e in mdpa.elements.items()}, {
            1: ("UPwSmallStrainElement2D4N", 1, [1, 2, 3, 4]), 2: ("UPwSmallStrainElement2D4N", 2, [5, 6, 7, 8]),
            3: ("Geo_ULineInterfacePlaneStrainElement2Plus2N", 7, [5, 8, 2, 3]), 4: ("GeoCrBeamElement2D2N", 8, [2, 3]),
            5: ("GeoLinearTrussElement2D2N", 9, [4, 7]), 6: ("GeoCableElement2D2N", 10, [1, 6])})
        self.assertEqual(list(mdpa.parts), [
            "material_1", "material_2", "joint_7", "beam_1", "truss_1", "truss_2", "joint_7_line_1", "beam_1_line_1",
            "truss_1_line_1", "truss_2_line_1", "IDX_1", "IDY_1", "IDT_1"])
        self.assertEqual(mdpa.parts["joint_7"], ([2, 3, 5, 8], [3]))
        self.assertEqual(mdpa.parts["IDX_1"], ([1, 4, 6, 7], []))

    def test_joints_by_their_neighbours_where_they_have_no_width(self):
        """A mirrored mesh turns its joints; so may other programs begin them at any corner."""
        for corners in ((5, 8, 3, 2), (3, 2, 5, 8), (8, 5, 2, 3), (2, 3, 8, 5)):
            for mirrored in (1.0, -1.0):
                mesh = Mesh()
                for n, x, y in ((1, 0., 0.), (2, 1., 0.), (3, 1., 1.), (4, 0., 1.), (5, 1., 0.), (6, 2., 0.), (7, 2., 1.),
                                (8, 1., 1.)):
                    mesh.node(n, mirrored * x, y)
                mesh.solid(1, (1, 2, 3, 4)).solid(2, (5, 6, 7, 8)).joint(3, corners)
                self.write("a.Mes", mesh.text())
                mdpa, _, _ = self.convert("a.Mes")
                expected = [[5, 8, 2, 3], [3, 2, 8, 5]] if mirrored > 0 else [[8, 5, 3, 2], [2, 3, 5, 8]]
                self.assertIn(mdpa.elements[3].nodes, expected)

    def test_second_order(self):
        mesh = Mesh()
        for n, (x, y) in enumerate([(1, 1), (0, 1), (0, 0), (1, 0), (.5, 1), (0, .5), (.5, 0), (1, .5), (2, 0),
                                    (1.5, .5), (1.5, 0)], 1):
            mesh.node(n, float(x), float(y))
        mesh.solid(1, (1, 2, 3, 4), 1, None, (5, 6, 7, 8))
        mesh.solid(2, (1, 4, 9), 2, None, (8, 11, 10, 0))
        mesh.solid(4, (1, 9, 4), 2, None, (10, 11, 8, 0))  # clockwise
        mesh.solid(3, (1, 2, 3), 2, None, (5, 0, 0, 0))
        self.write("a.Mes", mesh.text())
        mdpa, _, said = self.convert("a.Mes")
        self.assertIn("1 solid has midside nodes on some sides only", said)
        self.assertEqual({n: (e.type[-4:], e.nodes) for n, e in mdpa.elements.items()}, {
            1: ("2D8N", [1, 2, 3, 4, 5, 6, 7, 8]), 2: ("2D6N", [1, 4, 9, 8, 11, 10]), 4: ("2D6N", [1, 4, 9, 8, 11, 10]),
            3: ("2D3N", [1, 2, 3])})

    def test_names_of_materials_are_names_of_parts(self):
        mesh = sample("displacement")
        names = "* material 3: Fine sand\n* joint 9: Fine sand\n* beam 4: Sheet pile (Lübeck)\n* truss 1: IDX 1\n"
        self.write("a.Mes", mesh.text() + names)
        names = {("material", 3): "Fine_sand", ("joint", 9): "Fine_sand_joint_9", ("beam", 4): "Sheet_pile__L_beck_",
                 ("truss", 1): "IDX_1_truss_1"}
        self.convert("a.Mes", names=names)

    def test_stages_of_the_example(self):
        """The ground of the pit goes at step 2, what fills it comes at step 6, the wall stands from step 1."""
        for kind, edition in EDITIONS.items():
            with self.subTest(kind):
                self.run_deck((SOURCE / "examples" / "stage.dat").read_text(), edition)
                mdpa, _, _ = self.convert("Stage.Mes", "--deck", "deck.dat", "--stages", kind=kind)
                self.assertEqual(mdpa.parts["solids_until_2"].elements, [1, 3])
                self.assertEqual(mdpa.parts["solids_from_6"].elements, [9, 10])
                self.assertEqual(mdpa.parts["beams_from_1"].nodes, [7, 8, 9])
                self.assertEqual(mdpa.parts["beams_from_1"].elements, [11, 12] if kind in ("coupled", "displacement") else [])
                self.check_stages("Stage", mdpa, kind, [1, 2, 6])
        self.run_deck((SOURCE / "examples" / "stage.dat").read_text())
        self.good("convert", "--deck", "deck.dat", "--stages", "Stage.Mes", "Stage.mdpa")
        held = [(p["Parameters"]["model_part_name"], p["Parameters"]["variable_name"], p["Parameters"].get("is_fixed"))
                for p in self.constraints("Stage_stage_1.json") if p["process_name"] != "ApplyExcavationProcess"]
        self.assertEqual(held, [("PorousDomain.IDX_1", "DISPLACEMENT", [True, False, False]),
                                ("PorousDomain.IDY_1", "DISPLACEMENT", [False, True, False]),
                                ("PorousDomain.IDT_1", "ROTATION", [False, False, True]),
                                ("PorousDomain", "WATER_PRESSURE", True)])

    def test_given_heads(self):
        mesh = Mesh("head")
        for n, x, y, codes, head in ((1, 0., 0., [1, 2], 7.5), (2, 1., 0., [1, 3], 2.0), (3, 1., 1., [3, 0], 0.0),
                                     (4, 0., 1., [1, 2], 7.5)):
            mesh.node(n, x, y, codes, (head, 1.0))
        mesh.solid(1, (1, 2, 3, 4))
        self.write("a.Mes", mesh.text())
        mdpa, _, said = self.convert("a.Mes", "--stages", kind="head")
        self.assertEqual(mdpa.parts["ID_1_IDF_2"].nodes, [1, 4])
        self.assertNotIn("not the same", said)
        self.assertEqual([(p["Parameters"]["model_part_name"], p["Parameters"]["reference_coordinate"])
                          for p in self.constraints("a_stage_1.json")],
                         [("PorousDomain.ID_1_IDF_2", 7.5), ("PorousDomain.ID_1_IDF_3", 2.0)])
        self.check_stages("a", mdpa, "head", [])
        mesh.nodes[3][4][0] = 8.0
        self.write("a.Mes", mesh.text())
        self.assertIn("H is not the same at all nodes of part ID_1_IDF_2", self.convert("a.Mes", kind="head")[2])

    def test_nothing_is_written_where_something_is_amiss(self):
        self.write("a.Mes", sample("displacement").text())
        self.failed(self.brelan("convert", "--stages", "--to", "mdpa", "a.Mes", "-"), "beside it")
        self.failed(self.brelan("convert", "--stages", "a.Mes", "a.msh"), ".mdpa")
        self.failed(self.brelan("convert", "--deck", "none.dat", "a.Mes", "a.mdpa"), "none.dat")
        self.failed(self.brelan("convert", "a.Mes", "none/a.mdpa"), "none/a.mdpa")
        text = sample("displacement").text()
        self.write("a.Mes", text.replace("\n      4    ", "\n    777    "))
        self.failed(self.brelan("convert", "--stages", "a.Mes", "a.mdpa"), "which is not there")
        self.assertEqual(sorted(p.name for p in self.root.iterdir()), ["a.Mes"])

    def test_all_examples(self):
        seen = set()
        for kind in EDITIONS if LONG else ("coupled", "head"):
            shutil.copytree(SOURCE / "examples", self.root, dirs_exist_ok=True)
            for name in ("Quay.Mes", "Row.Mes"):
                self.good("-q", "convert", "--kind", kind, name, name)
            for deck in sorted((SOURCE / "examples").glob("*.dat"), key=lambda deck: (deck.stem == "pit_join", deck.name)):
                with self.subTest(kind=kind, deck=deck.name):
                    report = json.loads(self.good("run", "--json", "--kind", kind, "--cut", "sound", deck.name))
                    name = pathlib.Path(report["mesh"]["file"]).name
                    names = {(word, int(number)): name.replace(" ", "_") for word, number, name in
                             re.findall(r"^\* (material|beam|truss) (\d+): (.*)$", deck.read_text(), re.M)}
                    mdpa, _, _ = self.convert(name, "--deck", deck.name, "--stages", kind=kind, names=names)
                    seen.update(e.type for e in mdpa.elements.values())
        self.assertEqual(seen, {name for name in TYPES if name.startswith(("UPw", "Steady", "Geo_U", "GeoL", "GeoCr"))} |
                         ({name for name in TYPES if name.startswith("GeoTr")} if LONG else set()))

    @unittest.skipIf(SHARE > 1, "a few decks say nothing: the plain build takes them")
    def test_random_decks(self):
        """Groups over random meshes, sound ones and others."""
        done = sound = 0
        for seed in range(1, 1 + RANDOM_DECKS):
            case = compare_outputs.new_case(31000 + seed)
            shutil.rmtree(self.root)
            self.root.mkdir()
            case.lay_out(str(self.root / "case"))
            shutil.copytree(self.root / "case" / "project", self.root, dirs_exist_ok=True)
            deck = self.write("random.dat", case.deck.text())
            kind = kind_of_edition(case.edition)
            if self.brelan("-q", "run", "--cut", ("rules", "sound")[seed % 2], "--kind", kind, deck).returncode != 0:
                continue
            result = self.root / "Result.Mes"
            looked_at = self.brelan("info", "--kind", kind, "--json", "Result.Mes")
            if looked_at.returncode == 2 or json.loads(looked_at.stdout)[0]["nodes"]["count"] == 0:
                continue
            is_sound = looked_at.returncode == 0
            with self.subTest(seed=seed, kind=kind):
                ran = self.brelan("convert", "--kind", kind, "--deck", deck, "--stages", "Result.Mes", "a.mdpa")
                if "stands twice" in ran.stderr or "not there" in ran.stderr:
                    continue
                self.assertEqual(ran.returncode, 0, ran.stderr)
                mdpa = Mdpa(self.path("a.mdpa").read_text())
                Comparison(mdpa, Mes(result.read_text(encoding="latin-1"), kind), sound=is_sound).all()
                steps = sorted(int(k) for k in {s for name in mdpa.parts for s in re.findall(r"(?:from|until)_(\d+)", name)})
                self.check_stages("a", mdpa, kind, steps)
                done += 1
                sound += is_sound
        self.assertGreater(done, RANDOM_DECKS // 4)
        self.assertGreater(sound, 0)


class Reader(unittest.TestCase):
    """The reader refuses what the format has not."""

    GOOD = """// a comment
Begin Properties 1
End Properties
Begin Nodes
 1 0.0 0.0 0.0
 2 1.0 0.0 0.0
 3 0.0 1.0 0.0
End Nodes
Begin Elements UPwSmallStrainElement2D3N
 7 1 1 2 3
End Elements
Begin SubModelPart Sand
 Begin SubModelPartNodes
 1
 2
 3
 End SubModelPartNodes
 Begin SubModelPartElements
 7
 End SubModelPartElements
End SubModelPart
"""

    def test_faults_are_seen(self):
        Mdpa(self.GOOD)
        node, part = " 3 0.0 1.0 0.0\n", "Begin SubModelPart Sand"
        for old, new in ((" 7 1 1 2 3", " 7 2 1 2 3"), (" 7 1 1 2 3", " 7 1 1 2 2"), (" 7 1 1 2 3", " 7 1 1 2"),
                         (" 7 1 1 2 3", " 7 1 1 2 4"), (node, node + node), (node, ""), (" 3\n", ""), ("3N", "5N"),
                         (part, part + " x"), (part, "Begin SubModelPart a.b"), ("End Nodes\n", ""), (" 1\n 2", " 2\n 1"),
                         ("Begin Properties 1\nEnd Properties\n", ""), (" 7\n", " 8\n")):
            with self.subTest(old=old, new=new):
                self.assertIn(old, self.GOOD)
                with self.assertRaises((Fault, ValueError)):
                    Mdpa(self.GOOD.replace(old, new))


if __name__ == "__main__":
    unittest.main()
