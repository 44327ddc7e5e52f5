"""The real command in directories of its own, and mesh files as the manual describes them."""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BRELAN = os.environ["BRELAN"]
BRELAN2D = os.environ["BRELAN2D"]
SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])
EDITIONS = {"coupled": 2, "temperature": 5, "head": 9, "displacement": 1}
CODES = {"coupled": ["ISX", "ISY", "IFX", "IFY", "IRZ"], "temperature": ["ID", "IDF"], "head": ["ID", "IDF"],
         "displacement": ["IDX", "IDY", "IDT"]}
VALUES = {"coupled": [], "temperature": ["T", "CF"], "head": ["H", "CF"], "displacement": []}


def python_with(module):
    """An interpreter that has a module of Debian's; None where there is none."""
    for program in ("/usr/bin/python3", sys.executable):
        if subprocess.run([program, "-c", "import " + module], capture_output=True).returncode == 0:
            return program
    return None


class Case(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-test-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        self.environment = {k: v for k, v in os.environ.items() if k not in ("BRELAN_DRIVE_C", "NO_COLOR")}

    def path(self, name):
        return self.root / name

    def brelan(self, *arguments, **options):
        environment = dict(self.environment, **options.pop("environment", {}))
        return subprocess.run([BRELAN, *map(str, arguments)], cwd=self.root, text=True, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=120, env=environment, **options)

    def good(self, *arguments):
        """Runs a command that must succeed; returns standard output."""
        result = self.brelan(*arguments)
        self.assertEqual(result.returncode, 0, f"{arguments}: {result.stderr}")
        return result.stdout

    def info(self, name, status=0, *arguments):
        result = self.brelan("info", "--json", *arguments, name)
        self.assertEqual(result.returncode, status, result.stderr)
        return json.loads(result.stdout)[0]

    def write(self, name, text):
        path = self.path(name)
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def failed(self, result, *fragments, status=2):
        """Nothing on standard output and one line on standard error, which holds every fragment."""
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertEqual(result.stdout, "")
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        self.assertTrue(result.stderr.startswith("brelan: "), result.stderr)
        self.assertTrue(result.stderr.isprintable() or result.stderr[:-1].isprintable(), result.stderr)
        for fragment in fragments:
            self.assertIn(fragment, result.stderr)

    def run_deck(self, deck, edition=1):
        """Runs the batch program on a deck, in the test's directory as the project."""
        data = self.root / "C" / "Vork" / "Qx" / "Qxdata"
        if not data.exists():
            shutil.copytree(SOURCE / "data" / "Vork", self.root / "C" / "Vork")
        (data / "PROGRAM.DAT").write_text(f"{edition}\n")
        work = self.root / "work"
        work.mkdir(exist_ok=True)
        self.write("deck.dat", deck)
        (work / "TFNAME.TMP").write_text("..\\deck.dat\n")
        environment = dict(self.environment, BRELAN_DRIVE_C=str(self.root / "C"))
        result = subprocess.run([BRELAN2D], cwd=work, env=environment, text=True, capture_output=True, timeout=300)
        self.assertEqual(result.returncode, 0, result.stderr)

    def pit(self):
        """The pit of the examples: walls with joints, stages, struts and a tunnel."""
        self.run_deck((SOURCE / "examples" / "pit_stages.dat").read_text())
        return self.path("PitStages.Mes")

    def square(self, side, edition=1, name="Bmesh.dat"):
        """A base mesh of side by side nodes."""
        length = f"{side - 1}. 1. 0.5\n"
        self.run_deck("2 0\n1 1 1 1 0 1\n0. 0.\n" + length + length + "0\n", edition)
        return self.path(name)


def e_field(value, width, digits):
    """Ew.d: 0.ddd times a power of ten."""
    text = f"{abs(value):.{digits - 1}E}"
    mantissa, power = text.split("E")
    exponent = int(power) + 1 if value else 0
    return f"{'-' if value < 0 else ''}0.{mantissa.replace('.', '')}E{exponent:+03d}".rjust(width)


class Mesh:
    """A mesh file in the layouts of the manual, written and read without the program."""

    def __init__(self, kind="displacement"):
        self.kind = kind
        self.nodes = []     # (number, codes, x, y, values)
        self.solids = []    # (number, corners, midsides, material, attributes)
        self.beams = []     # (number, i, j, material)
        self.trusses = []
        self.hide_trusses = False

    def node(self, number, x, y, codes=None, values=(0.0, 1.0)):
        count = len(CODES[self.kind])
        self.nodes.append((number, list(codes or [0] * count), x, y, list(values) if VALUES[self.kind] else []))
        return self

    def solid(self, number, corners, material=1, attributes=None, midsides=(0, 0, 0, 0)):
        usual = {"coupled": [0, 1, 2, 2, 0.0], "temperature": [0], "head": [0], "displacement": [1.0, 2.3]}
        corners = list(corners) + [0] * (4 - len(corners))
        self.solids.append((number, corners, list(midsides), material, list(attributes or usual[self.kind])))
        return self

    def joint(self, number, corners, material=9):
        marked = {"coupled": [1, 1, 0, 0, 0.0], "temperature": [105], "head": [105], "displacement": [1.0, -1.0]}
        return self.solid(number, corners, material, marked[self.kind])

    def text(self, name="mesh.Mes"):
        kind = self.kind
        trusses = 0 if self.hide_trusses else len(self.trusses)
        lines = [name.ljust(126), "  NUMNP   NCONT   NBEAM   NTRUS ",
                 " %5d   %5d   %5d   %5d" % (len(self.nodes), len(self.solids), len(self.beams), trusses),
                 "    NODAL COORDINATES "]
        edges = [1, 1] if kind in ("coupled", "displacement") else []
        value = "            T            CF " if kind == "temperature" else "            H            CF "
        lines.append({"coupled": "    NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY       XC            YC ",
                      "displacement": "    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC "}.get(
                          kind, "    NODE   ID  IDF          XC            YC " + value))
        for number, codes, x, y, values in self.nodes:
            lines.append(" %6d" % number + "".join("%5d" % c for c in codes + edges) + " " +
                         "".join(e_field(v, 13, 6) + " " for v in [x, y] + values))
        if self.solids:
            lines += ["    CONTINUUM ELEMENT INDEX ", {
                "coupled": "    NEL     I1     I2     I3     I4     M5     M6     M7     M8"
                           " MATC    KS   KF INTR INTS   TBJWL",
                "displacement": "    NEL     I1     I2     I3     I4     M5     M6     M7     M8"
                                "  MATC   THIC        DEN"}.get(
                                    kind, "    NEL     I1     I2     I3     I4 MATNO  IDH")]
        for number, corners, midsides, material, attributes in self.solids:
            line = " %6d" % number + "".join(" %6d" % c for c in corners)
            line += "".join(" %6d" % m for m in midsides) if edges else " "
            line += "%5d" % material
            line += "".join(e_field(a, 11, 4) if isinstance(a, float) else "%5d" % a for a in attributes)
            lines.append(line)
        for title, heading, records in (("    BEAM ELEMENT ", "MSEC", self.beams),
                                        ("    TRUSS ELEMENT ", "MATT", self.trusses)):
            if records:
                lines += [title, f"    NEL      I      J   {heading}  NODEK "]
                lines += ["".join(" %6d" % v for v in (*record, 1)) for record in records]
        return "\n".join(lines + ["     0", "     0", ""])


def records(text):
    """What a mesh file says, without its first line."""
    return text.split("\n")[1:]


def sample(kind):
    """Every class of element: triangle, quadrilaterals, a joint with its twins, a beam, a truss; gaps in the
    numbers, codes and materials of several sizes."""
    mesh = Mesh(kind)
    codes = lambda k: [(k + i) % 3 - (k == 5) for i in range(len(CODES[kind]))]
    places = {1: (0.0, 0.0), 2: (1.0, 0.0), 3: (1.0, 1.0), 4: (0.0, 1.0), 10: (1.0, 0.0), 11: (1.0, 1.0),
              20: (2.5, 0.0), 21: (2.5, 1.0), 99990: (3.25, 0.123456), 5: (-7.5e-3, 2.0)}
    for number, (x, y) in sorted(places.items()):
        mesh.node(number, x, y, codes(number), (12.5 - number, 0.25))
    mesh.solid(1, (1, 2, 3, 4), 3)
    mesh.solid(2, (10, 20, 21, 11), 9999)
    mesh.joint(7, (2, 3, 11, 10), 9)
    mesh.solid(8, (20, 99990, 21), -2)
    mesh.solid(9, (4, 3, 5), 3)
    mesh.beams.append((50, 2, 3, 4))
    mesh.trusses += [(51, 3, 21, 1), (99990, 1, 99990, 2)]
    return mesh
