"""Every command on files that are no meshes: one message, status 2, and nothing written."""
import os
import random
import re
import resource
import subprocess
import unittest

from support import BRELAN, SOURCE, Case, sample

# A build with sanitizers takes one in so many of what a plain build tries.
SAMPLE_SHARE = int(os.environ.get("BRELAN_SAMPLE_SHARE", "1"))

COMMANDS = {
    "info": lambda bad: ["info", bad],
    "info --json": lambda bad: ["info", "--json", bad],
    "diff first": lambda bad: ["diff", bad, "good.Mes"],
    "diff second": lambda bad: ["diff", "--by-place", "good.Mes", bad],
    "plot svg": lambda bad: ["plot", bad, "-o", "out.svg"],
    "plot png": lambda bad: ["plot", bad, "-o", "out.png"],
    "plot html": lambda bad: ["plot", bad, "-o", "out.html"],
    "convert to vtu": lambda bad: ["convert", bad, "out.vtu"],
    "convert to msh": lambda bad: ["convert", bad, "out.msh"],
    "convert to mes": lambda bad: ["convert", bad, "out.Mes"],
}


class BadInput(Case):
    def setUp(self):
        super().setUp()
        self.write("good.Mes", sample("displacement").text())
        for name in ("good.vtu", "good.msh"):
            self.good("convert", "good.Mes", name)

    def check_all(self, name, *fragments):
        for command, arguments in COMMANDS.items():
            with self.subTest(command=command, file=str(name)[:40]):
                before = sorted(os.listdir(self.root))
                self.failed(self.brelan(*arguments(name)), *fragments)
                self.assertEqual(sorted(os.listdir(self.root)), before)

    def test_a_byte_order_mark_is_passed_over(self):
        for good in ("good.Mes", "good.vtu", "good.msh"):
            marked = "marked" + good[4:]
            self.write(marked, b"\xef\xbb\xbf" + self.path(good).read_bytes())
            said = f"brelan: {marked}, line 1: a byte order mark stands in front of the text; it is passed over"
            for command, arguments in COMMANDS.items():
                with self.subTest(command=command, file=marked):
                    whole, same = self.brelan(*arguments(good)), self.brelan(*arguments(marked))
                    self.assertEqual((same.returncode, same.stderr.splitlines().count(said)), (whole.returncode, 1))
            self.assertEqual(self.brelan("-q", "info", marked).stderr, "")
        self.assertEqual(self.brelan("diff", "good.Mes", "marked.Mes").returncode, 0)
        self.assertEqual(self.brelan("info", "marked.Mes").stdout, self.good("info", "good.Mes").replace("good", "marked"))

    def test_missing_file(self):
        self.check_all("none.Mes", "none.Mes: expected a file, but there is none of this name")
        self.check_all("", "expected")

    def test_directory(self):
        self.check_all(".", ".: expected a file, found a directory")

    def test_empty_file(self):
        self.write("a.Mes", "")
        self.check_all("a.Mes", "a.Mes, line 1: the file ends here; expected a heading line")

    def test_binary_file(self):
        self.write("a.Mes", bytes(random.Random(1).randrange(256) for _ in range(5000)))
        self.check_all("a.Mes", "a.Mes")
        self.check_all(BRELAN, "brelan")

    def test_file_of_another_sort(self):
        self.check_all(SOURCE / "examples" / "pit_stages.dat", "pit_stages.dat, line ")
        self.check_all(SOURCE / "README.md", "README.md, line ")
        self.write("a.vtu", "<?xml version='1.0'?><svg/>")
        self.check_all("a.vtu", "a.vtu: expected a VTU file")
        self.write("a.xml", "<?xml version='1.0'?><svg>")
        self.check_all("a.xml", "a.xml: expected a VTU file")

    def test_file_that_must_not_be_read(self):
        self.write("a.Mes", sample("head").text())
        os.chmod(self.path("a.Mes"), 0)
        if os.getuid() == 0:
            self.skipTest("the super-user reads every file")
        self.check_all("a.Mes", "a.Mes: the file cannot be opened: Permission denied")

    def test_mesh_file_cut_off_anywhere(self):
        text = sample("displacement").text()
        lines = text.split("\n")
        needed = len(lines) - 3  # the closing lines may be absent
        for count in range(0, needed, SAMPLE_SHARE):
            self.write("a.Mes", "\n".join(lines[:count]))
            for command in ("info", "convert to vtu"):
                self.failed(self.brelan(*COMMANDS[command]("a.Mes")), "a.Mes")
                self.assertFalse(self.path("out.vtu").exists())
        self.write("a.Mes", "\n".join(lines[:needed]))
        self.good("diff", "a.Mes", "good.Mes")

    def test_vtu_and_msh_cut_off(self):
        for name in ("good.vtu", "good.msh"):
            data = self.path(name).read_bytes()
            # Complete sections of a Gmsh file may end anywhere; codes that are missing then are told.
            for length in range(0, len(data) - 2, max(1, SAMPLE_SHARE * len(data) // 60)):
                self.write("cut", data[:length])
                result = self.brelan("convert", "cut", "out.Mes")
                if result.returncode == 0 and name.endswith("msh"):
                    self.path("out.Mes").unlink()
                    self.assertRegex(data[:length].decode().rstrip(), r"\$End\w+Data$")
                    continue
                self.failed(result, "cut")
                self.assertFalse(self.path("out.Mes").exists())

    def survive(self, name, data, *commands):
        """Status 0, 1 or 2 on a damaged file, never a signal; with 2 one line and nothing else."""
        self.write(name, bytes(data))
        for arguments in commands:
            result = subprocess.run([BRELAN, *map(str, arguments)], cwd=self.root, capture_output=True, timeout=60)
            self.assertIn(result.returncode, (0, 1, 2), result.stderr)
            self.assertNotRegex(result.stderr, rb"Sanitizer|runtime error")
            if result.returncode == 2 and arguments[0] != "check":
                self.assertEqual(result.stdout, b"")
                self.assertEqual(result.stderr.count(b"\n"), 1, result.stderr)
                self.assertFalse(re.search(rb"[\x00-\x09\x0b-\x1f\x7f]", result.stderr), result.stderr)

    def test_damaged_files_end_with_a_message_or_a_mesh(self):
        chance = random.Random(5)
        for name in ("good.Mes", "good.vtu", "good.msh"):
            data = self.path(name).read_bytes()
            for _ in range(60 // SAMPLE_SHARE):
                damaged = bytearray(data)
                for _ in range(chance.choice([1, 1, 3, 20])):
                    damaged[chance.randrange(len(damaged))] = (chance.choice(b"0123456789-. $<>E\n\0\xff")
                                                               if chance.random() < 0.8 else chance.randrange(256))
                self.survive("a.bad", damaged, ["info", "a.bad"], ["plot", "a.bad", "-o", "out.svg"],
                             ["convert", "a.bad", "out.vtu"])

    def test_numbers_at_the_ends_of_their_range(self):
        """One number of a mesh or a deck made as large or small as it can be."""
        chance = random.Random(6)
        ends = [b"0", b"-1", b"99999", b"99990", b"2147483647", b"-2147483648", b"1e38", b"-3e38", b"1e-40"]
        deck = (SOURCE / "examples" / "pit_stages.dat").read_bytes()
        for data, commands in (
                (self.path("good.Mes").read_bytes(), (["info", "a.bad"], ["plot", "a.bad", "-o", "out.svg", "--faults"],
                                                      ["convert", "a.bad", "out.msh"])),
                (self.path("good.msh").read_bytes(), (["info", "a.bad"], ["convert", "a.bad", "out.Mes"])),
                (deck, (["check", "a.bad"], ["plot", "good.Mes", "--deck", "a.bad", "-o", "out.svg"]))):
            numbers = [m for m in re.finditer(rb"-?[0-9]+(?:\.[0-9]+(?:E[+-][0-9]+)?)?", data)]
            for _ in range(40 // SAMPLE_SHARE):
                found = chance.choice(numbers)
                self.survive("a.bad", data[:found.start()] + chance.choice(ends) + data[found.end():], *commands)

    def test_hostile_counts_are_refused_at_once(self):
        for text in ("x\ny\n 99999999 1 0 0\n", "x\ny\n 5 -1 0 0\n"):
            self.write("a.Mes", text)
            self.failed(self.brelan("info", "a.Mes"), "a.Mes, line 3")
        msh = self.path("good.msh").read_text()
        self.write("b.msh", re.sub(r"(\$Nodes\n.*\n2 \d+ 0 )\d+", r"\g<1>99999999999", msh))
        self.failed(self.brelan("info", "b.msh"), "b.msh, line", "expected a count that the file can hold")
        vtu = self.path("good.vtu").read_text()
        self.write("a.vtu", re.sub(r'NumberOfPoints="\d+"', 'NumberOfPoints="99999999999999"', vtu))
        self.failed(self.brelan("info", "a.vtu"), "a.vtu: expected at most")
        self.write("b.vtu", re.sub(r'NumberOfPoints="\d+"', 'NumberOfPoints="9999999"', vtu))
        self.failed(self.brelan("info", "b.vtu"), "b.vtu: array")

    def test_places_that_cannot_be_written(self):
        self.failed(self.brelan("convert", "good.Mes", "none/out.vtu"), "none/out.vtu: cannot be written: No such file")
        self.failed(self.brelan("plot", "good.Mes", "-o", "none/out.html"), "none/out.html: cannot be written")
        os.mkdir(self.path("there.svg"))
        self.failed(self.brelan("plot", "good.Mes", "-o", "there.svg"), "there.svg: expected the name of a file, found a directory")
        self.failed(self.brelan("convert", "good.Mes", "/dev/full", "--to", "vtu"), "/dev/full: cannot be written: No space left")
        self.failed(self.brelan("plot", "good.Mes", "--output", ""), "expected")

    def test_full_disk_leaves_the_old_file_and_nothing_beside_it(self):
        mesh = self.square(60)

        def small_files():
            resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))
            import signal
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)

        for name, arguments in (("out.vtu", ["convert", mesh, "out.vtu"]), ("out.msh", ["convert", mesh, "out.msh"]),
                                ("out.Mes", ["convert", mesh, "out.Mes"]), ("out.png", ["plot", mesh, "-o", "out.png"]),
                                ("out.pdf", ["plot", mesh, "-o", "out.pdf", "--numbers", "both"]),
                                ("out.html", ["plot", mesh, "-o", "out.html"])):
            with self.subTest(name):
                self.write(name, "old")
                before = sorted(os.listdir(self.root))
                self.failed(self.brelan(*arguments, preexec_fn=small_files), name + ": cannot be written")
                self.assertEqual(self.path(name).read_text(), "old")
                self.assertEqual(sorted(os.listdir(self.root)), before)

    def test_standard_output_that_cannot_be_written(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([BRELAN, "info", self.path("good.Mes")], stdout=full, stderr=subprocess.PIPE, text=True)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stderr, "brelan: standard output: cannot be written: No space left on device\n")

    def test_command_lines(self):
        for arguments, fragment in ((["inform"], "brelan --help"), ([], "subcommand is required"),
                                    (["info"], "MESH is required"), (["info", "--json"], "brelan info --help"),
                                    (["diff", "good.Mes"], "B is required"),
                                    (["diff", "good.Mes", "good.Mes", "good.Mes"], "good.Mes"),
                                    (["info", "--list", "x", "good.Mes"], "--list"),
                                    (["info", "--kind", "soil", "good.Mes"], "soil"),
                                    (["plot", "good.Mes", "-o", "a.svg", "--width", "1"], "--width"),
                                    (["info", "--what", "good.Mes"], "--what")):
            with self.subTest(arguments):
                self.failed(self.brelan(*arguments), fragment)

    def test_help_begins_with_examples_and_version_is_one_line(self):
        for command in ([], ["info"], ["diff"], ["convert"], ["plot"]):
            text = self.good(*command, "--help")
            self.assertIn("\nExamples:\n  brelan ", text)
            self.assertLess(text.index("Examples:"), text.index("Usage:"))
            for line in text.splitlines():
                self.assertLessEqual(len(line), 110, line)
        self.assertRegex(self.good("--version"), r"^brelan \d+\.\d+\.\d+\n$")

    def test_messages_are_without_colour_unless_a_terminal_wants_it(self):
        result = self.brelan("info", "none.Mes")
        self.assertNotIn("\x1b", result.stderr)

        def in_terminal(**environment):
            script = f"'{BRELAN}' info good.Mes"
            done = subprocess.run(["script", "-qec", script, "/dev/null"], cwd=self.root, capture_output=True, text=True,
                                  stdin=subprocess.DEVNULL, env=dict(self.environment, TERM="xterm", **environment))
            return done.stdout

        self.assertIn("\x1b[", in_terminal())
        self.assertNotIn("\x1b[", in_terminal(NO_COLOR="1"))


if __name__ == "__main__":
    unittest.main()
