"""What is run while calls fail: a project, a data directory, and a command line for the batch program or the command."""
import os
import pathlib
import shutil

SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])
EXAMPLES = SOURCE / "examples"
WORK = "run"


def row(first_element=1):
    """The mesh of three elements, a beam and a truss, which are numbered from a place of their own."""
    lines = (EXAMPLES / "Row.Mes").read_text().split("\n")
    begin = next(i for i, line in enumerate(lines) if "CONTINUUM" in line)
    for i in range(begin, len(lines)):
        if lines[i][:7].strip().isdigit():
            lines[i] = f"{int(lines[i][:7]) + first_element - 1:7}" + lines[i][7:]
    return "\n".join(lines)


MOVE = "1\n{0}\n{1}\n1 1\n0\n0 0 0 1\n1 1\n"
EARLIER = "what an earlier run has left\n"


class Case:
    """`files`: texts of the project by name; `arguments`: of the command, or None for the batch program."""

    def __init__(self, name, deck=None, files=(), arguments=None, status=0, programs=None):
        self.name = name
        self.files = {"Quay.Mes": (EXAMPLES / "Quay.Mes").read_text(), "Row.Mes": row(), **dict(files)}
        if deck is not None:
            self.files["deck.dat"] = deck
        self.arguments = arguments
        self.status = status
        self.programs = programs or (["brelan2d"] if arguments is None else ["brelan"])

    @property
    def is_batch(self):
        return self.arguments is None

    def lay_out(self, root):
        for directory in ("project", "tmp", "home"):
            (root / directory).mkdir(parents=True)
        for name, text in self.files.items():
            (root / "project" / name).write_text(text)
        shutil.copytree(SOURCE / "data", root / "drive")
        data = root / "drive" / "Vork" / "Qx" / "Qxdata"
        (data / "MANUAL.DAT").write_text("0\n")
        if self.is_batch:
            (root / "project" / WORK).mkdir()
            (root / "project" / WORK / "TFNAME.TMP").write_text("..\\deck.dat\n")

    def command(self, program):
        return [program] if self.is_batch else [program, *self.arguments]

    def directory(self, root):
        return root / "project" / WORK if self.is_batch else root / "project"


def example(name):
    return (EXAMPLES / (name + ".dat")).read_text()


EDIT = MOVE.format("Row.Mes", "out.Mes")
RUN = ["brelan", "brelan2d"]
CASES = [
    Case("edit", EDIT, {"out.Mes": EARLIER}),
    Case("edit in place", MOVE.format("Row.Mes", "Row.Mes")),
    Case("edit of a groups' deck", example("stage"), {"Stage.Mes": EARLIER}),
    Case("groups with outputs", example("pit_left"), {"PitLeft.Mes": EARLIER}),
    Case("combination", "0\nRow.Mes\nother.Mes\nout.Mes\n0\n", {"out.Mes": EARLIER, "other.Mes": row(101)}),
    Case("stop", EDIT.replace("0 0 0 1", "0 0 0"), {"out.Mes": EARLIER}, status=1),
    Case("base mesh with groups", example("foot"), {"Foot.Mes": EARLIER, "Bmesh.dat": EARLIER}),
    Case("dam", example("dam"), {"EarthDam.Mes": EARLIER, "Dam_Joined.Mes": EARLIER}),
    Case("run", EDIT, {"out.Mes": EARLIER}, ["run", "deck.dat"], programs=RUN),
    Case("run --data", EDIT, {"out.Mes": EARLIER}, ["run", "--data", "../drive", "deck.dat"], programs=RUN),
    Case("run --cut auto", example("foot"), {"Foot.Mes": EARLIER, "Bmesh.dat": EARLIER},
         ["run", "--cut", "auto", "deck.dat"], programs=RUN),
    Case("run --apart", example("foot"), {"Foot.Mes": EARLIER, "Bmesh.dat": EARLIER},
         ["run", "--apart", "side", "deck.dat"], programs=RUN),
    Case("convert", None, {"Row.vtu": EARLIER}, ["convert", "Row.Mes", "Row.vtu"]),
    Case("convert to msh", None, {"Row.msh": EARLIER}, ["convert", "Row.Mes", "Row.msh"]),
    Case("plot svg", None, {"Row.svg": EARLIER}, ["plot", "Row.Mes", "-o", "Row.svg"]),
    Case("plot png", None, {"Row.png": EARLIER}, ["plot", "Row.Mes", "-o", "Row.png"]),
    Case("plot pdf", None, {"Row.pdf": EARLIER}, ["plot", "Row.Mes", "-o", "Row.pdf"]),
    Case("plot html", None, {"Row.html": EARLIER}, ["plot", "Row.Mes", "-o", "Row.html"]),
    Case("new", None, {"groups.dat": EARLIER}, ["new", "groups", "-o", ".", "--force"]),
    Case("check", EDIT, {}, ["check", "deck.dat"]),
]
