"""Standard input and output in place of files, the help command, and words that are no command."""
import gzip
import json
import os
import pty
import subprocess
import unittest

from support import BRELAN, Case, records, sample

TARGETS = {"mes": "Mes", "vtu": "vtu", "msh2": "msh", "msh4": "msh"}


class Streams(Case):
    def setUp(self):
        super().setUp()
        self.write("a.Mes", sample("displacement").text("the name"))
        for name in ("a.vtu", "a.msh"):
            self.good("convert", "a.Mes", name)

    def piped(self, file, *arguments):
        """The command with a file on standard input; exit status, output as bytes, and messages."""
        with open(self.path(file), "rb") as source:
            ran = subprocess.run([BRELAN, *arguments], cwd=self.root, env=self.environment, stdin=source,
                                 capture_output=True, timeout=120)
        return ran.returncode, ran.stdout, ran.stderr.decode()

    def test_each_command_reads_a_mesh_of_each_format_from_standard_input(self):
        for name in ("a.Mes", "a.vtu", "a.msh"):
            with self.subTest(name):
                status, out, err = self.piped(name, "info", "--json", "-")
                of_stream, of_file = json.loads(out)[0], json.loads(self.brelan("info", "--json", name).stdout)[0]
                self.assertEqual((status, err, of_stream.pop("file")), (0, "", "standard input"))
                of_file.pop("file")
                self.assertEqual(of_stream, of_file)
                self.assertEqual(self.piped(name, "convert", "-", "b.Mes"), (0, b"", ""))
                self.good("convert", name, "c.Mes")
                self.assertEqual(records(self.path("b.Mes").read_text()), records(self.path("c.Mes").read_text()))
                for pair in (("a.Mes", "-"), ("-", "a.Mes")):
                    self.assertEqual(self.piped(name, "-q", "diff", *pair), (0, b"", ""))
                self.assertEqual(self.piped(name, "plot", "-", "-o", "b.svg", "--title", "T"), (0, b"", ""))
                self.good("plot", name, "-o", "c.svg", "--title", "T")
                self.assertEqual(self.path("b.svg").read_bytes(), self.path("c.svg").read_bytes())

    def test_a_byte_order_mark_is_passed_over(self):
        said = "brelan: standard input, line 1: a byte order mark stands in front of the text; it is passed over\n"
        for name in ("a.Mes", "a.vtu", "a.msh"):
            with self.subTest(name):
                self.write("marked", b"\xef\xbb\xbf" + self.path(name).read_bytes())
                for to in ("vtu", "mes"):
                    status, out, err = self.piped("marked", "convert", "--kind", "displacement", "--to", to, "-", "-")
                    self.assertEqual((status, err), (0, said))
                    self.assertEqual(out, self.piped(name, "convert", "--kind", "displacement", "--to", to, "-", "-")[1])
                self.assertEqual(self.piped("marked", "diff", "a.Mes", "-")[::2], (0, said))
        self.write("a.dat", b"\xef\xbb\xbf1 0\na.Mes\nb.Mes\n1 1\n2\n0\n0 0 1 1\n0\n")
        self.assertEqual(self.piped("a.dat", "plot", "a.Mes", "--deck", "-", "-o", "c.svg"), (0, b"", said))

    def test_files_of_another_system_and_kinds(self):
        self.write("dos.Mes", sample("head").text().replace("\n", "\r\n"))
        status, out, _ = self.piped("dos.Mes", "info", "--json", "-")
        self.assertEqual((status, json.loads(out)[0]["kind"]), (0, "head"))
        status, out, _ = self.piped("dos.Mes", "convert", "--kind", "coupled", "--to", "vtu", "-", "-")
        self.good("convert", "--kind", "coupled", "dos.Mes", "b.vtu")
        self.assertEqual((status, out), (0, self.path("b.vtu").read_bytes()))

    def test_standard_output_takes_the_bytes_of_the_file(self):
        for target, ending in TARGETS.items():
            self.good("convert", "--to", target, "a.Mes", "b." + ending)
            status, out, err = self.piped("a.Mes", "convert", "--to", target, "-", "-")
            self.assertEqual((status, err), (0, ""))
            written = self.path("b." + ending).read_bytes()
            if target == "mes":  # the first line is the file's name, and here the mesh's own
                self.assertEqual(out.split(b"\n")[0].rstrip(), b"the name")
                out, written = out.split(b"\n")[1:], written.split(b"\n")[1:]
            self.assertEqual(out, written, target)
        for target in ("svg", "png", "html", "pdf"):
            self.good("plot", "a.Mes", "-o", "b." + target)
            status, out, err = self.piped("a.Mes", "plot", "a.Mes", "-o", "-", "--to", target)
            self.assertEqual((status, err), (0, ""))
            if target == "pdf":  # which holds the time
                self.assertEqual((out[:5], out[-6:]), (b"%PDF-", b"%%EOF\n"))
            else:
                self.assertEqual(out, self.path("b." + target).read_bytes(), target)
        self.assertFalse(self.path("-").exists())

    def test_a_chain_of_commands(self):
        script = f"'{BRELAN}' convert --to msh4 - - | '{BRELAN}' plot - -o - --to svg --title T | gzip > p.svgz"
        with open(self.path("a.Mes"), "rb") as source:
            subprocess.run(["bash", "-o", "pipefail", "-c", script], cwd=self.root, stdin=source, check=True, timeout=60)
        self.good("plot", "a.Mes", "-o", "p.svg", "--title", "T")
        self.assertEqual(gzip.decompress(self.path("p.svgz").read_bytes()), self.path("p.svg").read_bytes())

    def test_to_overrules_the_ending_of_a_picture(self):
        self.good("plot", "a.Mes", "-o", "picture.txt", "--to", "png")
        self.assertEqual(self.path("picture.txt").read_bytes()[1:4], b"PNG")
        self.failed(self.brelan("plot", "a.Mes", "-o", "picture.txt"), "picture.txt: expected a name that ends in", "--to")

    def test_a_deck_to_be_drawn_comes_from_standard_input(self):
        self.write("a.dat", "1 0\na.Mes\nb.Mes\n1 1\n2\n0\n0 0 1 1\n0\n")
        self.good("plot", "a.Mes", "--deck", "a.dat", "-o", "b.svg")
        self.assertEqual(self.piped("a.dat", "plot", "a.Mes", "--deck", "-", "-o", "c.svg"), (0, b"", ""))
        self.assertEqual(self.path("b.svg").read_bytes(), self.path("c.svg").read_bytes())
        self.write("cut.dat", "1 0\na.Mes\nb.Mes\n1 1\n2\n0\n0 0 one 1\n0\n")
        status, _, err = self.piped("cut.dat", "plot", "a.Mes", "--deck", "-", "-o", "c.svg")
        self.assertEqual(status, 0)
        self.assertTrue(err.startswith("brelan: standard input, line 7: "), err)

    def test_messages_name_the_stream_and_the_line(self):
        self.write("bad.Mes", "* a comment\n" + sample("displacement").text()
                   .replace("\n      1 ", "\n    one ", 1))
        line = 1 + next(i for i, text in enumerate(self.path("bad.Mes").read_text().splitlines()) if "one" in text)
        for arguments in (["info", "-"], ["convert", "-", "b.vtu"], ["diff", "a.Mes", "-"], ["plot", "-", "-o", "b.svg"]):
            status, out, err = self.piped("bad.Mes", *arguments)
            self.assertEqual((status, out), (2, b""))
            self.assertTrue(err.startswith(f"brelan: standard input, line {line}: expected"), err)
        status, _, err = self.piped(os.devnull, "info", "-")
        self.assertEqual((status, err), (2, "brelan: standard input, line 1: the file ends here; expected a heading line "
                                            "of a mesh file\n"))
        self.write("bad.vtu", "<?xml version='1.0'?><svg/>")
        self.assertTrue(self.piped("bad.vtu", "info", "-")[2].startswith("brelan: standard input: expected a VTU file"))
        closed = subprocess.run(["bash", "-c", f"'{BRELAN}' info - <&-"], capture_output=True, text=True)
        self.assertEqual((closed.returncode, closed.stderr),
                         (2, "brelan: standard input: the file cannot be read: Bad file descriptor\n"))

    def test_standard_input_serves_one_file_only(self):
        for arguments in (["diff", "-", "-"], ["info", "-", "a.Mes", "-"], ["plot", "-", "--deck", "-", "-o", "b.svg"]):
            self.failed(self.brelan(*arguments), "standard input: it can be read only once")

    def test_standard_output_needs_a_format(self):
        for arguments in (["convert", "a.Mes", "-"], ["plot", "a.Mes", "-o", "-"]):
            self.failed(self.brelan(*arguments), "standard output: expected the format with --to")

    def test_standard_output_that_is_full_or_closed(self):
        to_vtu, to_svg, to_png = "convert a.Mes - --to vtu", "plot a.Mes -o - --to svg", "plot a.Mes -o - --to png"
        full, closed = ("> /dev/full", "No space left on device"), (">&-", "Bad file descriptor")
        # Of a PNG the library writes, and does not tell why it could not.
        for arguments, cases in ((to_vtu, (full, closed)), (to_svg, (full, closed)),
                                 (to_png, ((full[0], "error while writing to output stream"), closed))):
            for redirection, reason in cases:
                ran = subprocess.run(["bash", "-c", f"'{BRELAN}' {arguments} {redirection}"], cwd=self.root,
                                     capture_output=True, text=True)
                self.assertEqual((ran.returncode, ran.stderr),
                                 (2, f"brelan: standard output: cannot be written: {reason}\n"))

    def test_no_terminal_gets_a_picture_that_is_no_text(self):
        parent, child = pty.openpty()
        self.addCleanup(os.close, parent)
        for target in ("png", "pdf"):
            ran = subprocess.run([BRELAN, "plot", "a.Mes", "-o", "-", "--to", target], cwd=self.root, stdout=child,
                                 stderr=subprocess.PIPE, text=True)
            self.assertEqual(ran.returncode, 2)
            self.assertIn("standard output: expected a file or a program, found a terminal", ran.stderr)
        os.close(child)

    def test_a_file_of_this_name_is_still_a_file(self):
        self.good("convert", "--to", "mes", "a.Mes", "./-")
        self.assertTrue(self.path("-").is_file())
        self.assertEqual(self.info("./-")["file"], "./-")


class Words(Case):
    def test_help_shows_what_the_option_shows(self):
        self.assertEqual(self.good("help"), self.good("--help"))
        for command in ("run", "new", "check", "info", "plot", "convert", "diff", "help"):
            self.assertEqual(self.good("help", command), self.good(command, "--help"))
            self.assertIn(f"\n  {command} ", self.good("help"))

    def test_an_unknown_command_is_named_with_the_nearest(self):
        # Letters swapped, left out, put in, changed; a beginning; capitals.
        for word, nearest in (("plto", "plot"), ("chek", "check"), ("runn", "run"), ("dift", "diff"), ("conv", "convert"),
                              ("INFO", "info"), ("covnret", "convert")):
            for arguments in ([word, "a.Mes"], ["-q", word, "--json"], ["help", word]):
                self.failed(self.brelan(*arguments), f"brelan: {word}: there is no command of this name; the nearest is "
                                                     f"{nearest}; see")

    def test_where_none_is_near_all_are_named(self):
        self.failed(self.brelan("triangulate"), "triangulate: there is no command of this name; expected one of run, edit, "
                                                "watch, new, check, info, plot, convert, diff, study, help")


if __name__ == "__main__":
    unittest.main()
