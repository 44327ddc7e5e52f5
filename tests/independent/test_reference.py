#!/usr/bin/env python3
"""Hand-worked cases that hold the independent calculation to paper results.

    python3 tests/independent/test_reference.py
"""

import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import reference  # noqa: E402
from reference import (E, Failure, I, Reader, count_columns,  # noqa: E402
                       divisions, expand_list, f32, listed)


class Fields(unittest.TestCase):
    def test_scientific(self):
        self.assertEqual(E(2.5, 12, 5), " 0.25000E+01")
        self.assertEqual(E(f32(-0.001), 13, 6), "-0.100000E-02")
        self.assertEqual(E(-0.0, 11, 4), " 0.0000E+00")
        self.assertEqual(E(f32(2.3), 16, 9), " 0.229999995E+01")
        self.assertEqual(E(f32(9.999999e9), 12, 5), " 0.10000E+11")
        # Exact ties go to the even digit.
        self.assertEqual(E(1.00005e5 * 1.0, 12, 5), " 0.10000E+06")
        self.assertEqual(E(0.25, 8, 1), " 0.2E+00")
        self.assertEqual(E(0.75, 8, 1), " 0.8E+00")

    def test_integer(self):
        self.assertEqual(I(-9999, 5), "-9999")
        self.assertEqual(I(100000, 5), "*****")

    def test_listed(self):
        self.assertEqual(listed(0), " " + " " * 10 + "0")
        self.assertEqual(listed(" Pass 2 "), "  Pass 2 ")


class FreeField(unittest.TestCase):
    def test_empty_values(self):
        self.assertEqual(Reader(["1,2,,3"]).values("rrr", [7., 8., 9.]),
                         [1.0, 2.0, 9.0])
        self.assertEqual(Reader([",1"]).values("r", [5.0]), [5.0])
        self.assertEqual(Reader(["1 /"]).values("rr", [5.0, 6.0]), [1.0, 6.0])
        self.assertEqual(Reader(["2* 4"]).values("rrr", [5.0, 6.0, 7.0]),
                         [5.0, 6.0, 4.0])

    def test_touching_fields(self):
        self.assertEqual(
            Reader(["    2-0.1000E+01 0.1000E+01-0.1000E+01"]).values("irrr"),
            [2, -1.0, 1.0, -1.0])

    def test_forms(self):
        self.assertEqual(Reader([".5 5. +3 1.5+3 1d2 2*7"]).values("rrrrrrr"),
                         [0.5, 5.0, 3.0, 1500.0, 100.0, 7.0, 7.0])
        for bad in ("1e99", "NaN", "12a", "1E", ".", "*****"):
            with self.assertRaises(Failure):
                Reader([bad]).values("r")
        with self.assertRaises(Failure):
            Reader(["2.0"]).values("i")
        self.assertEqual(Reader(["1e-40"]).values("r"), [0.0])

    def test_rounding_of_text(self):
        # Just above half way between two 32-bit reals, by less than a double
        # can tell.
        self.assertEqual(
            Reader(["1.00000005960464477540"]).values("r"),
            [1.0 + 2.0 ** -23])
        self.assertEqual(
            Reader(["1.000000059604644775390625"]).values("r"), [1.0])

    def test_counting(self):
        self.assertEqual(count_columns("1,2,,3"), (3, 6))
        self.assertEqual(count_columns("x" * 126), (0, 0))
        self.assertEqual(count_columns(" " * 119 + "123456"), (1, 125))
        self.assertEqual(count_columns(" " * 120 + "123456"), (0, 0))


class Rules(unittest.TestCase):
    def test_divisions(self):
        self.assertEqual(divisions(10.0, 1.0, 0.5), (10, 5.0))
        self.assertEqual(divisions(10.0, 1.0, f32(0.4)), (6, 4.0))
        self.assertEqual(divisions(10.0, 1.0, f32(-0.3)), (4, 7.0))
        self.assertEqual(divisions(2.0, 2.0, f32(0.3)), (1, 1.0))

    def test_number_list(self):
        self.assertEqual(expand_list([3, -7, 10]), {3, 4, 5, 6, 7, 10})
        self.assertEqual(expand_list([0, -2]), {1, 2})
        with self.assertRaises(Failure):
            expand_list([-3])


class Runs(unittest.TestCase):
    MESH = ["square", "heading", "4 1 0 0", "h", "h",
            "10  0 0 1  1 1  0. 0.", "20  0 0 1  1 1  1. 0.",
            "30  0 0 1  1 1  1. 1.", "40  0 0 1  1 1  0. 1.",
            "h", "h", "7  10 20 30 40  0 0 0 0  2  1. -2."]

    def run_deck(self, deck, mesh=None, edition=1):
        with tempfile.TemporaryDirectory() as root:
            data = os.path.join(root, "c", "VORK", "QX", "QXDATA")
            work = os.path.join(root, "p", "w")
            os.makedirs(data)
            os.makedirs(work)

            def put(place, name, lines):
                with open(os.path.join(place, name), "w") as stream:
                    stream.write("\n".join(lines) + "\n")

            put(data, "PROGRAM.DAT", [str(edition)])
            put(data, "MANUAL.DAT", ["0"])
            put(data, "HUBPLOT.DAT", ["1"])
            put(work, "TFNAME.TMP", ["deck"])
            put(work, "deck", deck)
            put(os.path.dirname(work), "A.Mes", mesh or self.MESH)
            status, printed, _ = reference.run(os.path.join(root, "c"), work)
            files = {}
            for place in (work, os.path.dirname(work), data):
                for name in os.listdir(place):
                    full = os.path.join(place, name)
                    if os.path.isfile(full):
                        with open(full) as stream:
                            files[name] = stream.read().split("\n")[:-1]
            return status, printed, files

    def test_turned_square(self):
        status, printed, files = self.run_deck(
            ["1", "A.Mes", "B.Mes", "1 1", "0", "0 0 5 5", "-1 -1"])
        self.assertEqual((status, printed), (0, b""))
        self.assertEqual(files["B.Mes"], [
            "..\\B.Mes".ljust(126),
            "  NUMNP   NCONT   NBEAM   NTRUS ",
            "     4       1       0       0",
            "    NODAL COORDINATES ",
            "    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC ",
            "      1    0    0    1    1    1  0.500000E+01  0.500000E+01 ",
            "     11    0    0    1    1    1  0.400000E+01  0.500000E+01 ",
            "     21    0    0    1    1    1  0.400000E+01  0.400000E+01 ",
            "     31    0    0    1    1    1  0.500000E+01  0.400000E+01 ",
            "    CONTINUUM ELEMENT INDEX ",
            "    NEL     I1     I2     I3     I4     M5     M6     M7     M8"
            "  MATC   THIC        DEN",
            "      1     21     31      1     11      0      0      0      0"
            "    2 0.1000E+01-0.2000E+01",
            "     0", "     0"])
        self.assertEqual(files["BRELAN2D.DAT"], ["           0"])
        self.assertEqual(files["BRELAN.TMP"][0], "    1     0 ")

    def test_short_card(self):
        status, printed, files = self.run_deck(
            ["1", "A.Mes", "B.Mes", "1 1", "0", "0 0 5"])
        self.assertEqual((status, printed), (1, b"300\n"))
        self.assertEqual(files["MESSAGE.INP"], ["           7"] + [
            s.ljust(60) for s in (
                " Card Group No: 3.3.1.1     requires     4 data entry",
                " But user input contains     3 data ",
                " Please check the following listing of input data   ",
                "", " -----", " 0 0 5", " -----", "")])
        self.assertEqual(files["T7.TMP"][0],
                         " ************* ERROR IN THE USER INPUT "
                         "**************")
        self.assertEqual(files["BRELAN2D.DAT"], ["           1"])
        self.assertNotIn("B.Mes", files)

    def test_one_block(self):
        status, _, files = self.run_deck(
            ["2", "1 1", "0 0", "2 2 .5", "3 3 .5", "0"])
        self.assertEqual(status, 0)
        self.assertEqual(files["Bmesh.dat"][4:], [
            "    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC ",
            "      1    1    0    1    1    1  0.000000E+00  0.300000E+01 ",
            "      2    1    1    1    1    1  0.000000E+00  0.000000E+00 ",
            "      3    1    0    1    1    1  0.200000E+01  0.300000E+01 ",
            "      4    1    1    1    1    1  0.200000E+01  0.000000E+00 ",
            "    ELEMENT INDEX ",
            "   NEL     I1     I2     I3     I4     M5     M6     M7     M8"
            "  MATC   THIC        DEN",
            "      1      3      1      2      4      0      0      0      0"
            "    1 0.1000E+01 0.2300E+01",
            "     0", "     0"])

    def test_empty_regions_stop(self):
        empty = self.MESH[:2] + ["4 0 0 0"] + self.MESH[3:9]
        status, printed, files = self.run_deck(
            ["0", "A.Mes", "A.Mes", "C.Mes", "0"], empty)
        self.assertEqual((status, printed), (1, b"100\n"))
        # What the front end is told has stood in the result.
        self.assertNotIn("C.Mes", files)


if __name__ == "__main__":
    unittest.main()
