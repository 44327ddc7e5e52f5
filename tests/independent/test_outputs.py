#!/usr/bin/env python3
"""Hand-worked cases of the output decks, of line-up and of the boundary file.

    python3 tests/independent/test_outputs.py
"""

import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import boundary  # noqa: E402
import lineup  # noqa: E402
import outputs  # noqa: E402
import reference  # noqa: E402
from groups import Group  # noqa: E402
from reference import (BEAM, CONTINUUM, COUPLED, DISPLACEMENT, HEAD,  # noqa
                       TEMPERATURE, TRUSS, Element, Failure, Node)


class Disk:
    """Files in memory."""

    def __init__(self, **files):
        self.files = dict(files)

    def old(self, name):
        return self.files[name]

    def put(self, name, lines):
        self.files[name] = list(lines)

    put_result = put

    def delete(self, name):
        self.files.pop(name, None)


class Job:
    """As much of a run as the output decks need."""

    def __init__(self, edition=1, units="2 2 1 1 1", debug=0):
        self.edition, self.kind = edition, reference.kind_of(edition)
        self.disk, self.debug, self.traced = Disk(), debug, []
        self.disk.files[reference.DATA + "UNIT.DAT"] = \
            ["*"] * 4 + ["Dam"] + ["*"] * 10 + [units]

    def note(self, what):
        pass

    def trace_line(self, line):
        self.traced.append(line)


def group(mtype, words=(), pairs=None, switches=None, post=1, title=""):
    made = Group()
    made.mtype, made.post, made.title = mtype, post, title.ljust(80)
    for word, value in dict(words).items():
        made.words[word - 1] = float(value)
    for number, pair in (pairs or {}).items():
        made.pairs[number - 1] = list(pair)
    made.switches = list(switches or [0] * 7)
    return made


class UnitLabels(unittest.TestCase):
    def labels(self, codes, kind=DISPLACEMENT):
        return outputs.Units(Job(units=codes).disk, kind)

    def test_small_and_wide_words(self):
        u = self.labels("2 2 1 4 1")
        self.assertEqual(
            (u.title, u.force, u.length, u.time, u.stress, u.moment,
             u.velocity, u.acceleration),
            ("Dam".ljust(80), "(KN) ", " m  ", "(sec)", "(KPa)    ",
             "(KN-m)  ", "(m/sec)  ", "(m/sec2) "))
        u = self.labels("7 3 3 1 1")
        self.assertEqual((u.force, u.length, u.time, u.stress, u.moment,
                          u.velocity, u.acceleration),
                         ("(Kip)", "in  ", "(hr) ", "(Ksi)    ", "(Kip-in)",
                          "(in/hr)  ", "(in/hr2) "))
        u = self.labels("5 4 4 1 1")
        self.assertEqual((u.stress, u.moment, u.acceleration),
                         ("(ton/ft2)", "(ton-ft)", "(ft/day2)"))
        u = self.labels("4 1 2 1 1")
        self.assertEqual((u.stress, u.moment, u.velocity),
                         ("(Kg/cm2) ", "(Kg-cm) ", "(cm/min) "))
        self.assertEqual(self.labels("6 2 1 1 1").stress, "(lb/m2)  ")
        self.assertEqual(self.labels("6 4 1 1 1").stress, "(psf)    ")
        self.assertEqual(self.labels("1 2 1 1 1").stress, "(Pa)     ")

    def test_temperature_by_kind(self):
        self.assertEqual(self.labels("1 1 1 1 4", TEMPERATURE).temperature,
                         "(K)  ")
        self.assertEqual(self.labels("1 1 1 1 4", HEAD).temperature, " ft  ")
        self.assertEqual(self.labels("1 1 1 1 2", HEAD).temperature, "  m  ")
        self.assertEqual(self.labels("1 1 1 1 4", COUPLED).temperature,
                         "     ")

    def test_codes_outside_the_tables(self):
        u = self.labels("2.5 2 9 1 0", TEMPERATURE)
        self.assertEqual((u.force, u.length, u.time, u.stress, u.moment,
                          u.velocity, u.acceleration, u.temperature),
                         (" " * 5, " m  ", " " * 5, " " * 9, " " * 8,
                          " " * 9, " " * 9, " " * 5))

    def test_short_file(self):
        job = Job()
        del job.disk.files[reference.DATA + "UNIT.DAT"][15:]
        with self.assertRaises(Failure):
            outputs.Units(job.disk, DISPLACEMENT)


class Rules(unittest.TestCase):
    def pair(self, made, c, m):
        return outputs.rule(made, c, m)[0]

    def test_outlines(self):
        made = group(3, {1: 7, 6: 2, 7: 9})
        self.assertEqual([self.pair(made, *cm) for cm in (
            (1, 7), (1, 8), (2, 9), (2, 8), (3, 9))], [2, 0, 4, 0, 0])
        made = group(3, {1: -7})
        self.assertEqual(self.pair(made, 1, 4), 2)
        made = group(4, {1: 7, 6: 3, 7: 9})
        self.assertEqual([self.pair(made, *cm) for cm in (
            (1, 7), (1, 8), (3, 9), (2, 9))], [2, 1, 4, 0])
        made = group(1, {6: 2, 7: 9})
        self.assertEqual([self.pair(made, *cm) for cm in (
            (1, 9), (2, 9), (2, 1))], [0, 4, 0])
        self.assertEqual(self.pair(group(6, {6: 2, 7: 9}), 2, 9), 0)

    def test_open_line(self):
        made = group(2, {6: 3, 7: 9}, {4: (1, 2)})
        self.assertEqual([self.pair(made, *cm) for cm in (
            (1, 9), (2, 9), (3, 9))], [0, 0, 4])
        made = group(2, {6: 3, 7: 9}, {4: (1, 2), 6: (0, 5)})
        self.assertEqual([self.pair(made, *cm) for cm in (
            (1, 9), (2, 1), (3, 1))], [1, 5, 6])

    def test_joints(self):
        lines = {6: 2, 7: 9, 8: 3, 9: 4}
        made = group(-2, {3: 5, **lines})
        self.assertEqual([self.pair(made, *cm) for cm in (
            (1, 5), (1, 6), (2, 9), (3, 4), (2, 4))], [3, 1, 5, 6, 0])
        made = group(-3, {1: 0, 3: 5, **lines})
        self.assertEqual([self.pair(made, 1, m) for m in (5, 6)], [3, 2])
        made = group(-3, {1: 8, 3: 5, **lines})
        self.assertEqual([self.pair(made, 1, m) for m in (8, 5, 6)],
                         [2, 3, 0])
        made = group(-4, {1: 8, 3: 5, **lines})
        self.assertEqual([self.pair(made, 1, m) for m in (8, 5, 6)],
                         [2, 3, 1])
        # Two equal lines: the inner one is asked first.
        made = group(-2, {6: 2, 7: 9, 8: 2, 9: 9})
        self.assertEqual(self.pair(made, 2, 9), 5)

    def test_material_below_0_is_refused_where_it_is_listed(self):
        def refused(made, c, row=0, kind=DISPLACEMENT):
            try:
                outputs.refuse([made], kind, [(1, -3, 8, c, row)])
            except Failure:
                return True
            return False

        none = [0] * 7
        others = [0, 0, 0, 1, 1, 0, 0]
        self.assertTrue(refused(group(3, {}, {2: (1, 0)}, others), 1))
        self.assertFalse(refused(group(3, {}, {2: (0, 0)}, others), 1))
        self.assertFalse(refused(group(3, {}, {2: (1, 0)}, none, 0), 1))
        self.assertFalse(refused(group(3, {1: 7}, {2: (1, 0)}, others), 1))
        # Beams and trusses are listed where no group asks for them.
        self.assertTrue(refused(group(2, {}, {}, none), 2))
        self.assertTrue(refused(group(2, {}, {}, none), 3))
        self.assertFalse(refused(group(2, {}, {}, [0, 0, 0, 1, 0, 0, 0]), 1))
        self.assertFalse(
            refused(group(2, {}, {}, none), 2, kind=TEMPERATURE))
        mesh = [1, 0, 0, 1, 1, 0, 0]
        self.assertTrue(refused(group(3, {}, {}, mesh), 1))
        self.assertFalse(refused(group(-2, {}, {}, mesh), 1, 2))

    def test_ranges(self):
        self.assertEqual(outputs.ranges({4, 1, 2, 9, 3, 7}),
                         [[1, 4], [7, 7], [9, 9]])


class Decks(unittest.TestCase):
    """Two squares (1 and 2), a triangle (4), a beam (6), a truss (7)."""

    MEMBERS = [(1, 3, 1, CONTINUUM, 0), (1, 3, 2, CONTINUUM, 0),
               (1, 3, 4, CONTINUUM, 0), (2, 3, 4, CONTINUUM, 0),
               (1, 9, 6, BEAM, 1), (2, 5, 7, TRUSS, 0)]

    def mesh(self, kind):
        a = {COUPLED: [0, 1, 2, 2, 0.0], DISPLACEMENT: [1.0, reference.f32(-2.3449)],
             TEMPERATURE: [5], HEAD: [5]}[kind]
        lines = ["..\\R.Mes".ljust(126), "counts", "numbers", "h", "h",
                 "node 1  ", "node 2", "h", "continuum"]
        for number, corners in ((1, [1, 2, 3, 4]), (2, [2, 5, 6, 3]),
                                (4, [5, 7, 6, 0])):
            lines.append(reference.continuum_line(
                kind, number, Element(corners + [0, 0, 0, 0, 3], a)))
        return lines + ["h", "beams", "      6      1      2      9      1",
                        "h", "trusses",
                        "      7      2      5      5      1", "end", "end "]

    def write(self, groups, edition=1, members=None, node_lists=None,
              debug=0):
        self.job = Job(edition, debug=debug)
        self.job.disk.put("Group.dat", ["old"])
        self.job.disk.put("GROUP.TMP", ["old"])
        made = outputs.GroupOut(
            self.job, groups, len(groups),
            self.MEMBERS if members is None else members, 3,
            node_lists or {}, [2, 3, 1, 1], "..\\R.Mes",
            self.mesh(self.job.kind))
        return made.write(), self.job.disk.files

    def two_groups(self, switches=None):
        return [group(3, {6: 2, 7: 9}, {2: (1, 5), 4: (2, 0)}, switches,
                      title="First"),
                group(3, {1: 3, 6: 4, 7: 5}, {2: (3, 4), 4: (6, 6)},
                      switches)]

    def test_main_file(self):
        lines, files = self.write(self.two_groups())
        self.assertEqual(files["..\\Group.Man"][7:], [
            "* Card 8.1", "*   NFAD", "       5", "*", "* Card 8.2",
            "*  KSTEP", "       1", "*",
            "*", "*" + "=" * 49, "*", "* Group No =   1", "* First", "*",
            "*" + "-" * 49, "*", "* Continuum Element", "*",
            "*" + "-" * 49, "*", "* Material No =   3", "*",
            "*    NEL    NAC   NDAC    MCH",
            "       1      1      5      0", "       2      1      5      0",
            "       4      1      5      0", "* Number of Elements =     3",
            "*", "*",
            "*" + "-" * 49, "*", "* Beam Element", "*",
            "*" + "-" * 49, "*", "* Material No =   9", "*",
            "*    NEL    NAC   NDAC    MCH",
            "       6      2      0      0", "* Number of Elements =     1",
            "*", "*",
            "*", "*" + "=" * 49, "*", "* Group No =   2", "*", "*",
            "*" + "-" * 49, "*", "* Continuum Element", "*",
            "*" + "-" * 49, "*", "* Material No =   3", "*",
            "*    NEL    NAC   NDAC    MCH",
            "       4      3      4      0", "* Number of Elements =     1",
            "*", "*"])
        self.assertEqual(files["..\\MatAD.Man"], [
            "* Continuum Materials To Be Added", "* Card 5.3.2.1",
            "* MATNO  MODEL  GAMAW  MATNP",
            "      4      0      0      3", "      5      0      0      3",
            "*", "* Main File: Material Activity", "* Card 8.1",
            "*  NFAD  MCFAD  MBFAD  MTFAD",
            "      2      2      0      0", "* Card 8.2", "* KSTEP ",
            "      1 ", "* Continuum Element",
            "*   MAT    NAC   NDAC    MCH",
            "      4      1      5      0", "      5      3      4      0",
            "* End Of Data "])
        # Element 4 takes the material of the later group; the density is
        # rounded from the four digits that the mesh had.
        self.assertEqual(lines[9:12], [
            "      1      1      2      3      4      0      0      0      0"
            "    4  0.100E+01 -0.235E+01",
            "      2      2      5      6      3      0      0      0      0"
            "    4  0.100E+01 -0.235E+01",
            "      4      5      7      6      0      0      0      0      0"
            "    5  0.100E+01 -0.235E+01"])
        self.assertEqual(lines[12:], ["h", "beams",
                         "      6      1      2      9      1", "h", "trusses",
                         "      7      2      5      5      1", "end", "end"])
        self.assertEqual(lines[0], "..\\R.Mes")
        self.assertEqual(files["..\\R.Mes"], lines)
        self.assertEqual(files["TEMPMESH.TMP"], [
            s.rstrip() for s in self.mesh(DISPLACEMENT)])
        self.assertNotIn("Group.dat", files)
        self.assertNotIn("GROUP.TMP", files)

    def test_layouts_by_kind(self):
        for edition, wanted in (
                (2, "      1      1      2      3      4      0      0      0"
                    "      0    4  0  1    2    2 0.0000E+00"),
                (5, "      1      1      2      3      4      4      5"),
                (9, "      1      1      2      3      4      4      5")):
            lines, files = self.write(self.two_groups(), edition)
            self.assertEqual(lines[9], wanted)
            self.assertIn("       1      1      5", files["..\\Group.Man"])
            self.assertEqual(files["..\\MatAD.Man"][1:4],
                             ["* Card 5.3.2.0", "* MATNO  MATNP",
                              "      4      3"])
            self.assertIn("*   MAT    NAC   NDAC", files["..\\MatAD.Man"])
        _, files = self.write(self.two_groups(), 7)
        self.assertIn("      4      3", files["..\\MatAD.Man"])
        self.assertIn("       1      1      5      0", files["..\\Group.Man"])

    def test_nothing_to_tell(self):
        silent = [group(3, {}, {2: (0, 0)}),
                  group(3, {1: 3}, {2: (3, 4)}, post=0)]
        lines, files = self.write(silent)
        for name in ("..\\Group.Man", "..\\MatAD.Man", "TEMPMESH.TMP",
                     "..\\R.Mes"):
            self.assertNotIn(name, files)
        self.assertEqual(lines, self.mesh(DISPLACEMENT))
        _, files = self.write([], members=[])
        self.assertIn("..\\Group.Pos", files)

    def test_lines_alone(self):
        lines, files = self.write([group(2, {6: 2, 7: 9}, {4: (1, 0)})],
                                  members=[(1, 9, 6, BEAM, 1)])
        self.assertEqual(files["..\\MatAD.Man"], [
            "* Main File: Material Activity", "* Card 8.1",
            "*  NFAD  MCFAD  MBFAD  MTFAD",
            "      0      0      0      0", "* Card 8.2", "* KSTEP ",
            "      1 ", "* End Of Data "])
        self.assertEqual(files["..\\Group.Man"][9], "       1")
        self.assertNotIn("TEMPMESH.TMP", files)
        self.assertEqual(lines, self.mesh(DISPLACEMENT))

    def part(self, files, nptype, until):
        post = files["..\\Group.Pos"]
        start = next(k for k, line in enumerate(post)
                     if "NPTYPE = %d (" % nptype in line) - 3
        end = next(k for k, line in enumerate(post) if until in line) - 3
        return post[start:end]

    def test_first_section(self):
        _, files = self.write(self.two_groups([1, 0, 0, 0, 0, 0, 0]))
        self.assertEqual(self.part(files, 1, "NPTYPE = 2"), [
            "*" * 50, "*" + " " * 48 + "*",
            "*         POST FILE: GRAF-2D PLOT                *",
            "*         NPTYPE = 1 (CARD 11.2)                 *",
            "*" + " " * 48 + "*", "*" * 50, "*         ",
            "* Card 11.1  ", "*  NPTYPE    ", "    1        ",
            "* Card 11.2.1", "*  TITLE     ", "Dam".ljust(80),
            "* Card 11.2.2", "*  IUNIT     ", "    4        ",
            "* Card 11.2.4", "*  IMODE     ", "    1        ",
            "* Card 11.2.5", "*  NGROUP    ", "       4", "*",
            # The beam's record comes from a line: it stays out.
            "*", "*" + "=" * 49, "*", "* Group No =   1", "* First", "*",
            "*" + "-" * 49, "*", "* Continuum Element", "*",
            "*" + "-" * 49, "*", "* Material No =   3", "*",
            "*    NSS    NEE    NIC    NNN",
            "       1      2      1      1", "       4      1      1      1",
            "* Number of Element Groups =   2", "*", "*",
            "*", "*" + "=" * 49, "*", "* Group No =   2", "*", "*",
            "*" + "-" * 49, "*", "* Continuum Element", "*",
            "*" + "-" * 49, "*", "* Material No =   3", "*",
            "*    NSS    NEE    NIC    NNN",
            "       4      1      1      1",
            "* Number of Element Groups =   1", "*", "*",
            "*" + "-" * 49, "*", "* Truss Element", "*",
            "*" + "-" * 49, "*", "* Material No =   5", "*",
            "*    NSS    NEE    NIC    NNN",
            "       7      1      1      1",
            "* Number of Element Groups =   1", "*", "*"])

    def test_second_section_and_node_list(self):
        _, files = self.write(self.two_groups([0, 0, 0, 0, 0, 0, 1]),
                              node_lists={1: [8, 3, 5, 5, 99990, 4], 2: []})
        self.assertEqual(self.part(files, 2, "NPTYPE = 3")[7:], [
            "* Card 11.1  ", "*  NPTYPE    ", "    2        ",
            "* Card 11.3.1", "*  TITLE     ", "Dam".ljust(80),
            "* Card 11.3.2", "*  IUNIT     ", "    4        ",
            "* Card 11.3.4", "*  NLTIME  TIMEref", "    1       0.0   ",
            "*  TIME1  TIME2  TIME3  TIME4  TIME5  TIME6  TIME7",
            "    1.0           ", "* Card 11.3.5",
            "*  NGROUP  IAVG  ISCRIN  IMESH  IPSTRS",
            "       0   1     0       0      0", "*", "* Card 11.3.7",
            "*   NRL      ", "      1", "*", "*" + "=" * 49, "*",
            "* Group No =   1", "* " + "First".ljust(80), "*",
            "* Number of Nodes =    6", "*", "* Card 11.3.8",
            "* NODE1  NODE2  NODE3  NODE4  NODE5",
            "      8      3      5      5  99990", "      4"])

    def test_default_list(self):
        _, files = self.write(self.two_groups())
        third = self.part(files, 3, "NPTYPE = 4")
        self.assertEqual(third[16:], [
            "* Card 11.4.4", "*  NLTIME  TIMEref", "    1       0.0   ",
            "*  TIME1  TIME2  TIME3  TIME4  TIME5  TIME6  TIME7",
            "    1.0           ", "*",
            "* Continuum Element",
            "       1      0", "      -1      1      3      1      1",
            "       1      1", "      -1      1      3      1      1",
            "       1      2", "      -1      1      3      1      1",
            "* Beam Element",
            "       1      0", "      -4      1      1      1      1",
            "       1      1", "      -4      1      1      1      1",
            "       1      2", "      -4      1      1      1      1",
            "* Truss Element",
            "       1      0", "      -5      1      1      1      1",
            "       1      1", "      -5      1      1      1      1",
            "       1      2", "      -5      1      1      1      1",
            "* For End of Plot", "*  0,    0       ", "   0,    0       "])

    def test_third_section_with_wide_numbers(self):
        _, files = self.write(
            [group(3, switches=[0, 0, 1, 0, 0, 0, 0])],
            members=[(1, 1000, n, CONTINUUM, 2) for n in (10000, 10001)])
        third = self.part(files, 3, "NPTYPE = 4")
        self.assertEqual(third[22:-3], [
            "*", "*" + "=" * 49, "*", "* Group No =   1", "*", "*",
            "*" + "-" * 49, "*", "* Continuum Element", "*",
            "*" + "-" * 49, "*", "* Material No = ***", "*",
            "*      1  IDISP", "*    NSR    JCR    NJR    ICR    NIR",
            "       1      0", "   *****      1      2      1      1",
            "       1      1", "   *****      1      2      1      1",
            "       1      2", "   *****      1      2      1      1",
            "* Number of Element Groups =   1", "*", "*"])

    def test_beams_and_trusses(self):
        # No group is marked for beams, so all take part; for trusses the
        # second group is, so the first one's stay away.
        groups = self.two_groups()
        groups[1].switches[4] = 1
        _, files = self.write(groups, members=self.MEMBERS + [
            (1, 5, 8, TRUSS, 0)])
        fourth = self.part(files, 4, "NPTYPE = 5")
        self.assertEqual(fourth[43:], [
            "* Card 11.5.6", "*  NTGROUP", "       1",
            "*", "*" + "=" * 49, "*", "* Group No =   1", "* First", "*",
            "*" + "-" * 49, "*", "* Beam Element", "*",
            "*" + "-" * 49, "*", "* Material No =   9", "*", "*  NBLIST",
            "*      0", "*  NFBEAM NLBEAM", "       0",
            "       6      6", "* Number of Element Groups =   1", "*", "*",
            "* Card 11.5.8", "*   NRL      ", "      0"])
        fifth = self.part(files, 5, "NPTYPE = 6")
        self.assertEqual(fifth[21:34], [
            "* Card 11.6.5   ", "*  NTTS         ", "*  ----         ",
            "*               ", "*  AXIAL FORCE  ", "    1           ",
            "*  AXIAL STRESS ", "*   2           ", "*  AXIAL STRAIN ",
            "*   3           ", "* Card 11.6.6", "*  NTGROUP", "       1"])
        self.assertIn("* Group No =   2", fifth)
        self.assertNotIn("* Group No =   1", fifth)

    def test_temperature_has_two_sections(self):
        _, files = self.write(self.two_groups(), 5)
        post = files["..\\Group.Pos"]
        self.assertEqual([line[10:32] for line in post if "(CARD" in line],
                         ["NPTYPE = 1 (CARD 11.2)", "NPTYPE = 6 (CARD 11.7)",
                          "IPTYPE = 1 (CARD 12.2)", "IPTYPE = 2 (CARD 12.3)"])
        sixth = self.part(files, 6, "IPTYPE = 1")
        self.assertEqual(sixth[8:], [
            "*  NPTYPE    ", "    2        ", "* Card 11.3.1",
            "*  TITLE     ", "Dam".ljust(80), "* Card 11.3.2",
            "*  IUNIT     ", "    4        ", "* Card 11.3.4",
            "*  NLTIME  TIMEref", "    1       0.0   ",
            "*  TIME1  TIME2  TIME3  TIME4  TIME5  TIME6  TIME7",
            "    1.0           "] + [s.ljust(33) for s in (
                "* Card 11.3.5", "*  NCTS", "*  ----",
                "*  Temperature Distribution", "    31")] + [
            "* Card 11.7.6", "*  DELTA   IRES  IRGP  IENL  RX      RY",
            "     0.00  0     0     0       0.00    0.00",
            "* Card 11.7.7", "*  NGROUP", "       0", "* Card 11.7.9",
            "*   NRL      ", "      0"] + self.end("GRAF-2D", "11.1", "NPTYPE"))

    @staticmethod
    def end(tool, card, code):
        return [s.ljust(23) if s != "=" else "*" + "=" * 49 for s in (
            "*", "=", "*", "*", "* For End of " + tool, "*",
            "* Card " + card, "*  " + code, "    0", "*")]

    # -- histories ------------------------------------------------------

    @staticmethod
    def wide(*lines):
        return [s.ljust(40) for s in lines]

    def frame(self, iptype, *pairs, plot=0, names=("", "    1"), count=1,
              quantities=1, heads=("*  Kx        Ky", "*  --        --")):
        card = "* Card 12.%d." % (iptype + 1)
        many, one = ("ELEMENTS", "ELEMENT") if iptype == 1 \
            else ("NODES", "NODE")
        return self.wide(
            "*", "* Card 12.1", "*  IPTYPE", "    %d" % iptype, card + "1",
            "*  IPLOT", "    %d" % plot, card + "2", "*  NUMBER OF " + many,
            "    %d" % count, card + "3", names[0] or "*  " + one, names[1],
            card + "4", "*  NDPQ", "    %d" % quantities, card + "5", *heads,
            *pairs)

    def plot(self, iptype, y_label, title="Dam".ljust(80),
             x_label=" Time (sec)"):
        return self.wide("* Card 12.%d.7" % (iptype + 1)) + [
            "*" + "-" * 49] + self.wide("*  TITLE") + [title] + self.wide(
            "*  X - LABEL") + [x_label] + self.wide("*  Y - LABEL") + [
            y_label, "*" + "=" * 49]

    def histories(self, edition):
        _, files = self.write([], edition, members=[])
        post = files["..\\Group.Pos"]
        first, second = (next(k for k, line in enumerate(post)
                              if "IPTYPE = %d (" % n in line) + 4
                         for n in (1, 2))
        self.assertEqual(post[second - 7:second], [
            "*" * 50, "*" + " " * 48 + "*",
            "*         POST FILE: GRAF-XY PLOT                *",
            "*         IPTYPE = 2 (CARD 12.3)                 *",
            "*" + " " * 48 + "*", "*" * 50, "*         "])
        self.assertEqual(post[-10:], self.end("GRAF-XY", "12.1", "IPTYPE"))
        return post[first:second - 7], post[second:-10]

    def test_temperature_histories(self):
        first, second = self.histories(5)
        factors = self.wide("*  TMFAC  TPFAC", "    1.0    1.0")
        self.assertEqual(first, self.frame(
            1, "*", "*  [Continuum Element]", "*",
            "*  TIME      TEMPERATURE", "   1         31",
            "* Card 12.2.6") + factors + self.plot(1, " Temperature(o C)"))
        self.assertEqual(second, self.frame(
            2, "*  TIME      TEMPERATURE", "*  1         31",
            "* Card 12.3.6") + factors + self.plot(2, " Temperature  (o C)"))

    def test_head_histories(self):
        first, second = self.histories(9)
        plain = "*  TMFAC  STFAC  SNFAC", "    1.0    1.0    1.0"
        force = self.frame(
            1, "*", "*  [Beam Element]", "*", "*  TIME      THRUST",
            "   1         35", "*  TIME      SHEAR-Y", "*  1         36", "*",
            "*  [Truss Element]", "*", "*  TIME      FORCE-XX",
            "*  1         61", "* Card 12.2.6", *plain) + \
            self.plot(1, " Force (KN) ")
        moment = self.frame(
            1, "*", "*  [Beam Element]", "*", "*  TIME      MOMENT-Z",
            "   1         40", "* Card 12.2.6", *plain) + \
            self.plot(1, " Moment (KN-m)  ")
        both = {"names": ("*  ELEMENT1  ELEMENT2", "    1         2"),
                "count": 2, "heads": ("*  Kx   Ky",)}
        pressure = self.frame(1, "    1    8", "    1    9", "* Card 12.2.6",
                              *plain, quantities=2, **both)
        for k in (1, 2):
            pressure += self.plot(
                1, " Stress (KPa)    ",
                (" Mean & Pore Fluid Pressure: Element %d" % k).ljust(40))
        pressure += self.frame(1, "    8   14", "* Card 12.2.6", *plain,
                               plot=1, **both)
        pressure += self.plot(
            1, " Deviatoric Stress (KPa)    ",
            " Stress Path for Elements 1 and 2".ljust(40),
            " Effective Mean Pressure (KPa)    ")
        tail = force + moment + pressure
        self.assertEqual(first[-len(tail):], tail)
        # Stress: 20 lines before the list, 3 group names, 22 pairs, factors
        # and plot; strain: 13 pairs.
        frames = len(self.frame(1)) + 3 * 3 + 3 + 9
        self.assertEqual(len(first) - len(tail), 2 * frames + 2 * (22 + 13))
        strain = first[frames + 44:]
        self.assertEqual(strain[19:24], self.wide(
            "*", "*  [Continuum Element]", "*", "*  TIME      STRAIN-XX",
            "   1         15"))
        self.assertIn("    1.0    1.0    100.".ljust(40), strain[:frames + 26])
        self.assertEqual(strain[frames + 24], " Strain (%)")
        self.assertEqual(second, self.frame(
            2, "*  TIME      TOTAL HEAD", "*  1         41", "* Card 12.3.6",
            "*  TMFAC  TPFAC", "    1.0    1.0") +
            self.plot(2, " Total Head    cm  "))

    def test_movements(self):
        _, second = self.histories(2)
        factors = ("*  TMFAC  SND  SNV  SNA  NC  ANGLE",
                   "    1.0   1.0  1.0  1.0  0   0.0")

        def list_of(word, name, solid, fluid):
            lines = ["*", "*  [Skeleton %s]" % word, "*"]
            for k, letter in enumerate("XYZ"):
                lines += ["*  TIME      %s-%s." % (letter, name),
                          ("*  1         %d" if k else "   1         %d") %
                          (solid + k)]
            lines += ["*", "*  [Relative Fluid %s]" % word, "*"]
            for k, letter in enumerate("XYZ"):
                lines += ["*  TIME      R.FL.%s-%s" % (letter, name),
                          "*  1         %d" % (fluid + k)]
            return lines

        card = "* Card 12.3.6"
        wanted = self.frame(2, *list_of("Displacement", "DIS", 2, 11), card,
                            *factors) + self.plot(2, " Displacement  m  ")
        wanted += self.frame(2, *list_of("Velocity", "VEL", 5, 14),
                             *factors) + self.plot(2, " Velocity (m/sec)  ")
        wanted += self.frame(2, *list_of("Acceleration", "ACC", 8, 17), card,
                             *factors) + \
            self.plot(2, " Acceleration (m/sec2) ")
        for k, titles in enumerate((
                (" Hor. & Ver. Displacement: Node 1",
                 " Hor. & Ver. Displacement: Node 2"),
                (" Horizontal Displacement: Node 1 & 2",
                 " Vertical Displacement: Node 1 & 2"))):
            wanted += self.frame(
                2, "    1    2", "    1    3", card, *factors, plot=k,
                names=("*  NODE1  NODE2", "    1      2"), count=2,
                quantities=2, heads=("*  Kx   Ky",))
            for title in titles:
                wanted += self.plot(2, " Displacement  m  ",
                                    title.ljust(40))
        self.assertEqual(second, wanted)

    def test_trace(self):
        self.write(self.two_groups(), debug=1)
        self.assertEqual(self.job.traced, [
            "  Pass 27.1.1 ",
            "  GROUP_SORT: Beginning NGROUP =            2"])
        self.write(self.two_groups(), debug=2)
        marks = [line.split("27.1.")[1][0] for line in self.job.traced
                 if "27.1." in line]
        # Four ranges, three continuum elements.
        self.assertEqual("".join(marks), "1" + "2222" + "3456" + "777" + "8")


class LineUp(unittest.TestCase):
    """A quadrilateral 1-2-3-4 of material 7 with a truss 1-2 below it."""

    def search(self, places, trusses, corners=(1, 2, 3, 4), material=7):
        elements = {1: Element(list(corners) + [0] * 4 + [material], ())}
        types = {1: CONTINUUM}
        for t, (a, b) in enumerate(trusses, 10):
            elements[t] = Element([a, b, b, a, 0, 0, 0, 0, 1], ())
            types[t] = TRUSS
        found = lineup.search(elements, types, lambda n: places[n])
        return found.places, found.merges

    def test_within(self):
        places = {1: (0.0, 0.0), 2: (4.0, 1.0), 3: (3.0, 2.0), 4: (1.0, 2.0)}
        self.assertEqual(self.search(places, [(1, 2)]),
                         ({1: (1.0, 0.25), 2: (3.0, 0.75)}, []))
        # The same line the other way round.
        self.assertEqual(self.search(places, [(2, 1)]),
                         ({2: (3.0, 0.75), 1: (1.0, 0.25)}, []))
        for changed in ({"material": 6}, {"corners": (1, 2, 3, 0)}):
            self.assertEqual(self.search(places, [(1, 2)], **changed),
                             ({}, []))
        slanted = dict(places)
        slanted[3] = (3.0, 2.5)
        self.assertEqual(self.search(slanted, [(1, 2)]), ({}, []))
        self.assertEqual(self.search(places, [(1, 3)]), ({}, []))

    def test_upright(self):
        # x and y change places.
        places = {1: (0.0, 0.0), 2: (1.0, 4.0), 3: (2.0, 3.0), 4: (2.0, 1.0)}
        self.assertEqual(self.search(places, [(1, 2)]),
                         ({1: (0.25, 1.0), 2: (0.75, 3.0)}, []))

    def test_neighbours(self):
        places = {1: (0.0, 0.0), 2: (4.0, 0.0), 3: (5.0, 2.0), 4: (-3.0, 2.0),
                  5: (4.5, 1.0), 6: (-1.0, 1.0), 7: (-4.0, 1.0),
                  8: (8.0, 2.0)}
        # Without neighbours nothing moves: both targets lie outside.
        self.assertEqual(self.search(places, [(1, 2)]), ({}, []))
        # 6 lies between 1 and the target -3: it merges; t = 3.  5 lies
        # between 2 and the target 5; t = (5 - 4.5) / (4 - 4.5) = -1.
        self.assertEqual(
            self.search(places, [(1, 2), (6, 1), (2, 5)]),
            ({1: (-3.0, 3.0), 2: (5.0, 2.0)}, [(6, 1), (5, 2)]))
        # Neighbours beyond the targets: t = 3/4, and (5 - 8) / (4 - 8).
        self.assertEqual(
            self.search(places, [(1, 2), (7, 1), (2, 8)]),
            ({1: (-3.0, 0.75), 2: (5.0, 0.5)}, []))
        # Of two neighbours the one with the higher number counts.
        self.assertEqual(
            self.search(places, [(1, 2), (7, 1), (6, 1)]),
            ({1: (-3.0, 3.0)}, [(6, 1)]))
        # The same line walked from 2 to 1.
        self.assertEqual(
            self.search(places, [(2, 1), (1, 6), (5, 2)]),
            ({2: (5.0, 2.0), 1: (-3.0, 3.0)}, [(5, 2), (6, 1)]))
        # A neighbour that is a corner of the quadrilateral ends it.
        self.assertEqual(self.search(places, [(1, 2), (4, 1)]), ({}, []))

    def test_first_slide_stands(self):
        # Two quadrilaterals share the truss; a line of equal s is left.
        places = {1: (0.0, 0.0), 2: (4.0, 0.0), 3: (3.0, 2.0), 4: (1.0, 2.0),
                  5: (2.0, -2.0), 6: (3.5, -2.0), 9: (0.0, 5.0)}
        elements = {1: Element([1, 2, 3, 4, 0, 0, 0, 0, 7], ()),
                    2: Element([1, 5, 6, 2, 0, 0, 0, 0, 7], ()),
                    3: Element([1, 2, 2, 1, 0, 0, 0, 0, 1], ())}
        types = {1: CONTINUUM, 2: CONTINUUM, 3: TRUSS}
        found = lineup.search(elements, types, lambda n: places[n])
        self.assertEqual(found.places, {1: (1.0, 0.0), 2: (3.0, 0.0)})
        places[4], places[3] = (-2.0, 2.0), (2.0, 2.0)
        self.assertEqual(self.search(places, [(1, 2), (9, 1)]),
                         ({2: (2.0, 0.0)}, [(9, 1)]))


class Boundary(unittest.TestCase):
    def nodes(self, rows):
        return [(n, Node(list(codes), 0.0, 0.0)) for n, *codes in rows]

    def test_pipe_and_convection(self):
        job = Job(5)
        nodes = self.nodes(
            [(3, 2, 9, 1, 2, 2), (5, 2, 9, 1, 1, 2), (6, 3, 4, 1, 3, -3),
             (7, 3, 4, 1, 1, -3), (8, 2, 9, 7, 1, 1), (9, -100, 0, 0, 0, 0)])
        boundary.thermal(job, {BEAM: 2, TRUSS: 1}, nodes)
        self.assertEqual(job.disk.files["..\\Boundary.Man"], [
            "* Card 9.1.1", "* NTNP ", "     1", "*",
            "* Card 9.1.2.1", "* TITLE       ", "  Property No :   1",
            "* Card 9.1.2.2",
            "*  MATP       FVOL       SPHL        ROL        HCL",
            "      9      0.000      0.000      0.000      0.000",
            "* Card 9.2.1", "* NPIPE", "      2", "*",
            "* Card 9.2.2.1", "* TITLE       ", "  Group No :   1",
            "* Card 9.2.2.2-1", "*   IDP   MATP  IDFNP  NODEP",
            "      1      9      0      2", "* Card 9.2.2.2-2",
            "* Listing of Nodes --- ", "      5      3",
            "* Card 9.2.2.1", "* TITLE       ", "  Group No :   2",
            "* Card 9.2.2.2-1", "*   IDP   MATP  IDFNP  NODEP",
            "      2      0      0      0", "* Card 9.2.2.2-2",
            "* Listing of Nodes --- ", "",
            "* Card 9.3.1", "* NCONV", "      1", "*",
            "* Card 9.3.2.1", "* TITLE       ", "  Group No :   1",
            "* Card 9.3.2.2-1", "*   IDC  IDFNC  IDFNT  NODEC",
            "      1      4      0      3", "* Card 9.3.2.2-2",
            "* Listing of Nodes --- ", "      7      0      6"])
        self.assertEqual([node.codes[:2] for _, node in nodes],
                         [[0, 0]] * 4 + [[2, 9], [-100, 0]])

    def test_eleven_nodes(self):
        job = Job(5)
        boundary.thermal(job, {BEAM: 1, TRUSS: 0}, self.nodes(
            [(n, 2, 1, 1, n, 11) for n in range(1, 12)]))
        lines = job.disk.files["..\\Boundary.Man"]
        k = lines.index("* Listing of Nodes --- ")
        self.assertEqual(lines[k + 1:k + 3], [
            "      1      2      3      4      5      6      7      8      9"
            "     10", "     11"])
        boundary.thermal(Job(5), {BEAM: 0, TRUSS: 0}, [])
        self.assertNotIn("..\\Boundary.Man", Job(5).disk.files)

    def flow(self, count, trusses, marks):
        job = Job(9)
        boundary.flow_sections(job, count, trusses,
                               lambda n: marks.get(n, 0),
                               lambda m: {1: "Drain"}.get(m, ""))
        return job.disk.files.get("..\\Boundary.Man")

    def head(self, section, title=""):
        bar = "* " + "=" * 68
        return ["* ", "* FLOW SECTION" + str(section).rjust(3), bar,
                "* " + title.ljust(80), bar, "*"]

    def card(self, *nodes):
        return ["* Card 10.8.1", "* NODES", "  " + str(len(nodes)).rjust(5),
                "* LIST OF NODES",
                "".join(" " + str(n).rjust(6) for n in nodes)]

    def test_flow_sections(self):
        start = ["* Card 10.8 ", "* NFSEC   IBFQ", "      2      0", "*"]
        marks = {1: 1, 2: 1, 3: 1, 4: 2, 5: 2}
        self.assertEqual(
            self.flow(2, [(1, 2), (2, 3), (4, 5)], marks),
            start + self.head(1, "Drain") + self.card(1, 2, 3) +
            self.head(2) + self.card(4, 5))
        # A third run has no head; its list comes when a fourth begins.
        self.assertEqual(
            self.flow(2, [(1, 2), (3, 2), (4, 5), (1, 5)], marks),
            start + self.head(1, "Drain") + self.card(1, 2) +
            self.head(2, "Drain") + self.card(3, 2) + self.card(4, 5))
        # A change of the mark ends a run as well.
        self.assertEqual(
            self.flow(2, [(1, 2), (2, 4), (4, 5)], marks),
            start + self.head(1, "Drain") + self.card(1, 2, 4) +
            self.head(2) + self.card(4, 5))
        self.assertEqual(
            self.flow(2, [(1, 4), (4, 5), (5, 1), (1, 2)], {4: 2, 5: 2, 1: 1}),
            start + self.head(1) + self.card(1, 4, 5, 1) +
            self.head(2) + self.card(1, 2))
        self.assertIsNone(self.flow(0, [(1, 2)], marks))


class Runs(unittest.TestCase):
    """Whole runs on two unit squares side by side."""

    MESH = ["squares", "heading", "6 2 0 %d", "h", "h",
            "1 0 0 1 1 1 0. 0.", "2 0 0 1 1 1 1. 0.", "3 0 0 1 1 1 2. 0.",
            "4 0 0 1 1 1 0. 1.", "5 0 0 1 1 1 1. 1.", "6 0 0 1 1 1 2. 1.",
            "h", "h", "1  1 2 5 4  0 0 0 0  3  1. 2.",
            "2  2 3 6 5  0 0 0 0  %d  1. 2."]

    def run_deck(self, deck, material=3, trusses=(), switch=None,
                 corner="2. 1."):
        with tempfile.TemporaryDirectory() as root:
            data = os.path.join(root, "c", "VORK", "QX", "QXDATA")
            work = os.path.join(root, "p", "w")
            os.makedirs(data)
            os.makedirs(work)

            def put(place, name, lines):
                with open(os.path.join(place, name), "w") as stream:
                    stream.write("\n".join(lines) + "\n")

            mesh = list(self.MESH)
            mesh[2] %= len(trusses)
            mesh[10] = mesh[10].replace("2. 1.", corner)
            mesh[-1] %= material
            if trusses:
                mesh += ["h", "h"] + list(trusses)
            put(data, "PROGRAM.DAT", ["1"])
            put(data, "MANUAL.DAT", ["0"])
            put(data, "HUBPLOT.DAT", ["1"])
            put(data, "UNIT.DAT", ["*"] * 15 + ["1 1 1 1 1"])
            put(data, "DV-BRELAN.dat", ["1 0. 0.01 0.001",
                                        "0 0. 0 0 0 0 0 0", "0"])
            put(work, "TFNAME.TMP", ["deck"])
            put(work, "deck", deck)
            put(os.path.dirname(work), "A.Mes", mesh)
            if switch is not None:
                put(work, "LineUp.dat", [switch])
            status, _, reason = reference.run(os.path.join(root, "c"), work)
            self.assertEqual((status, reason), (0, ""))
            files = {}
            for place in (work, os.path.dirname(work)):
                for name in os.listdir(place):
                    full = os.path.join(place, name)
                    if os.path.isfile(full):
                        with open(full) as stream:
                            files[name] = stream.read().split("\n")[:-1]
            return files

    def test_left_square_is_dug_out(self):
        pairs = ["0 0", "2 9"] + ["0 0"] * 4
        marks = ["1"] + ["0"] * 5 + ["1"]
        files = self.run_deck(
            ["1", "A.Mes", "B.Mes", "1 1", "4", "0", "0", "0", "1 1", "0 0",
             "Pit", "3 1", "3 1.5 0 0"] + pairs + marks +
            ["4 0 0 0 0", "1 -1 -1", "2 1 -1", "3 1 2", "4 -1 2", "4"] +
            ["%d 1 0 3" % k for k in (1, 2, 3, 4)])
        self.assertEqual(files["MatAD.Man"][4:5] + files["MatAD.Man"][14:],
                         ["*", "      4      2      9      0",
                          "* End Of Data "])
        self.assertEqual(files["B.Mes"][13:15], [
            "      1      1      2      5      4      0      0      0      0"
            "    4  0.100E+01  0.150E+01",
            "      2      2      3      6      5      0      0      0      0"
            "    3  0.100E+01  0.200E+01"])
        self.assertEqual([s.rstrip() for s in files["MeshFile.Mes"]],
                         [s.rstrip() for s in files["B.Mes"]])
        self.assertEqual({len(s) for s in files["MeshFile.Mes"]}, {126})
        # Of the outline one side runs along nodes: from 2 up to 5.
        post = files["Group.Pos"]
        heads = [k for k, s in enumerate(post) if s.startswith("* NODE1 ")]
        self.assertEqual([post[k + 1] for k in heads],
                         ["      2      5"] * 4)
        for name in ("GROUP.TMP", "JOINT.TMP", "Group.dat", "Boundary.Man"):
            self.assertNotIn(name, files)
        self.assertIn("TEMPMESH.TMP", files)

    def test_joint_of_one_node(self):
        # The truss between the squares keeps its node; the unused twin goes.
        files = self.run_deck(
            ["1", "A.Mes", "B.Mes", "1 1", "4", "0", "0", "0", "2", "0 0",
             "2", "-3 11", "2 0 0 0 0", "1 1 0", "2 1 1", "1", "1 1 0 2",
             "-2", "9 0 0 0 0 0 0", "2 0 0 0 0", "1 1 1", "2 1.5 2", "1",
             "1 1 0 3"])
        self.assertEqual(files["B.Mes"][2],
                         "     6       2       0       1")
        self.assertEqual([s[:35] for s in files["B.Mes"][13:15]], [
            "      1      1      2      5      4",
            "      2      2      3      6      5"])
        self.assertTrue(files["B.Mes"][17].startswith(
            "      3      2      5     11"), files["B.Mes"][17])

    EMPTY = ["1", "A.Mes", "B.Mes", "1 1", "4", "0", "0", "0", "0", "0 0"]

    def test_line_up_once(self):
        # The lower side of the right square has its truss; node 6 above it
        # stands at x = 1.5, and node 3 comes to stand below it.
        trusses = ["9 2 3 1 1"]

        def third(deck, switch, left, material=7):
            files = self.run_deck(deck, material, trusses, switch, "1.5 1.")
            self.assertEqual(files.get("LineUp.dat"), left)
            return files["B.Mes"][7][-28:-14].strip()

        moved, still = "0.150000E+01", "0.200000E+01"
        self.assertEqual(third(self.EMPTY, "1", ["           0"]), moved)
        self.assertEqual(third(self.EMPTY, "-2", ["-2"]), moved)
        self.assertEqual(third(self.EMPTY, "0", ["0"]), still)
        self.assertEqual(third(self.EMPTY, None, None), still)
        self.assertEqual(third(self.EMPTY, "1", ["           0"], 6), still)
        self.assertEqual(third(["1", "A.Mes", "B.Mes", "1 1", "0",
                                "0 0 0 0", "1 1"], "4", ["           0"]),
                         still)
        files = self.run_deck(self.EMPTY, 7, trusses)
        self.assertIn("Group.Pos", files)
        self.assertNotIn("Group.Man", files)


if __name__ == "__main__":
    unittest.main()
