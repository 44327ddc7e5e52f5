"""Man pages, completion, installation and the Debian package."""
import gzip
import os
import pathlib
import re
import shutil
import subprocess
import unittest

from support import BRELAN, SOURCE, Case

TOOL = SOURCE / "brelan"
BUILD = pathlib.Path(os.environ["BRELAN_BUILD"])
BRELAN_PYTHON = (BUILD / "python" / "brelan").is_dir()
COMMANDS = ["run", "edit", "watch", "new", "check", "info", "plot", "convert", "diff", "study"]


def options_in(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", text))


class Pages(Case):
    def manual(self, page):
        """A man page as text, as a reader sees it; groff must have no complaint."""
        shown = subprocess.run(["man", "--warnings", "-l", TOOL / "man" / page], text=True, capture_output=True,
                               env=dict(os.environ, MANWIDTH="100", MAN_KEEP_FORMATTING="", LC_ALL="C.UTF-8"))
        self.assertEqual((shown.returncode, shown.stderr), (0, ""))
        return re.sub("\u2010", "-", shown.stdout)

    def test_every_option_has_its_place_in_the_man_page(self):
        for command in COMMANDS:
            with self.subTest(command):
                page = self.manual(f"brelan-{command}.1")
                listed = options_in(page.split("\nOPTIONS\n")[1].split("\nEXIT STATUS\n")[0])
                self.assertEqual(listed, options_in(self.good(command, "--help").split("Options:")[1]))
                self.assertLess(page.index("\nEXAMPLES\n"), page.index("\nDESCRIPTION\n"))

    def test_list_of_changes_begins_with_the_version(self):
        version = self.good("--version").split()[1]
        self.assertTrue((SOURCE / "changelog").read_text().startswith(f"brelan2d ({version}) "))

    def test_man_pages_name_the_version(self):
        version = self.good("--version").strip()
        for page in sorted((TOOL / "man").glob("*.1")):
            self.assertIn(f'"{version}"', page.read_text().splitlines()[0], page.name)

    def test_all_commands_stand_in_the_first_page(self):
        page = self.manual("brelan.1")
        for command in COMMANDS:
            self.assertIn(f"brelan-{command}(1)", page)
        self.assertIn("brelan help [command]", page)

    def complete(self, *words):
        """What bash offers for the last word."""
        script = f"""source {TOOL}/completion/brelan.bash
            COMP_WORDS=("$@"); COMP_CWORD=$(( $# - 1 )); _brelan; printf '%s\\n' "${{COMPREPLY[@]}}" """
        result = subprocess.run(["bash", "-c", script, "bash", "brelan", *words], text=True, capture_output=True,
                                cwd=self.root)
        self.assertEqual(result.stderr, "")
        return set(result.stdout.split("\n")) - {""}

    def test_completion_of_commands_and_options(self):
        self.assertEqual(self.complete(""), {*COMMANDS, "help", "--help", "--version", "--quiet"})
        self.assertEqual(self.complete("help", ""), {*COMMANDS, "help"})
        self.assertEqual(self.complete("help", "--"), {"--help", "--quiet"})
        self.assertEqual(self.complete("plot", "--to", "p"), {"png", "pdf"})
        self.assertEqual(self.complete("convert", "--to", "v"), {"vtu"})
        self.assertEqual(self.complete("c"), {"check", "convert"})
        for command in COMMANDS:
            expected = options_in(self.good(command, "--help").split("Options:")[1]) | {"--quiet"}
            self.assertEqual(self.complete(command, "--"), expected, command)
        self.assertEqual(self.complete("info", "--kind", "t"), {"temperature"})
        self.assertEqual(self.complete("-q", "plot", "--numbers", ""), {"nodes", "elements", "both"})
        listed = self.good("new", "--list")
        for deck in self.complete("new", ""):
            self.assertIn(deck, listed)

    def test_completion_of_files(self):
        for name in ("a.Mes", "b.vtu", "c d.msh", "e.dat", "f.txt", "g.svg"):
            self.write(name, "")
        (self.root / "sub").mkdir()
        self.assertEqual(self.complete("info", ""), {"a.Mes", "b.vtu", "c d.msh", "e.dat", "sub"})
        self.assertEqual(self.complete("info", "a.Mes", "c"), {"c d.msh"})
        self.assertEqual(self.complete("run", ""), {"e.dat", "f.txt", "sub"})
        self.assertEqual(self.complete("plot", "a.Mes", "-o", ""), {"g.svg", "sub"})
        self.assertEqual(self.complete("run", "--project", ""), {"sub"})
        self.assertEqual(self.complete("run", "--apart", ""), {"sub"})


def broken_links(root):
    """How many links the documents have, and those that lead to no file."""
    links = [(document, link) for document in root.rglob("*.md") if "build" not in document.relative_to(root).parts
             for link in re.findall(r"\]\(([^)#]+)[^)]*\)", document.read_text()) if not link.startswith("http")]
    return len(links), [f"{d}: {link}" for d, link in links if not (d.parent / link).exists()]


class Documents(Case):
    def test_links_lead_to_files(self):
        count, broken = broken_links(SOURCE)
        self.assertGreater(count, 30)
        self.assertEqual(broken, [])


class Installed(Case):
    def use(self, brelan, environment):
        """The installed command makes, runs, checks, shows and carries a mesh."""
        run = lambda *a: subprocess.run([brelan, *a], cwd=self.root, text=True, capture_output=True, timeout=120,
                                        stdin=subprocess.DEVNULL, env=environment)
        made = run("new", "base-mesh")
        self.assertEqual(made.returncode, 0, made.stderr)
        self.write("pit.dat", made.stdout)
        for arguments in (["run", "pit.dat"], ["info", "Bmesh.dat"], ["plot", "Bmesh.dat", "-o", "pit.svg"],
                          ["convert", "Bmesh.dat", "pit.vtu"], ["diff", "Bmesh.dat", "pit.vtu"], ["check", "pit.dat"]):
            done = run(*arguments)
            self.assertEqual(done.returncode, 0, f"{arguments}: {done.stdout} {done.stderr}")

    def test_install_into_a_directory(self):
        prefix = self.root / "there"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True, capture_output=True)
        files = {str(p.relative_to(prefix)) for p in prefix.rglob("*") if p.is_file()}
        for name in ("bin/brelan", "bin/brelan2d", "share/brelan2d/C/Vork/Qx/Qxdata/PROGRAM.DAT",
                     "share/man/man1/brelan.1.gz", "share/man/man1/brelan-info.1.gz",
                     "share/bash-completion/completions/brelan", "share/doc/brelan2d/copyright", "share/doc/brelan2d/changelog.gz",
                     "share/doc/brelan2d/examples/pit_stages.dat", "share/doc/brelan2d/manual/7-groups.md",
                     "share/doc/brelan2d/tutorial/pictures/pit.svg"):
            self.assertIn(name, files)
        python = {f for f in files if f.startswith("lib/python3/dist-packages/brelan/")}
        if BRELAN_PYTHON:
            self.assertIn("lib/python3/dist-packages/brelan/__init__.py", python)
        self.assertFalse([f for f in files - python if f.startswith(("include", "lib/")) or f.endswith(".txt")])
        self.assertNotIn("share/doc/brelan2d/tutorial/run_tutorial.py", files)
        count, broken = broken_links(prefix)
        self.assertGreater(count, 20)
        self.assertEqual(broken, [])
        licenses = (prefix / "share/doc/brelan2d/copyright").read_text()
        self.assertTrue(licenses.startswith((SOURCE / "LICENSE").read_text()))
        self.assertIn("Marijn Haverbeke", licenses)  # whose editor is part of the command
        page = gzip.decompress((prefix / "share/man/man1/brelan.1.gz").read_bytes())
        self.assertEqual(page, (TOOL / "man" / "brelan.1").read_bytes())
        home = self.root / "home"
        home.mkdir()
        self.use(prefix / "bin" / "brelan", {"PATH": "/usr/bin:/bin", "HOME": str(home)})

    def test_debian_package_for_python(self):
        """Holds the package alone, and is imported where it is installed."""
        if not BRELAN_PYTHON:
            self.skipTest("a build without the package for Python")
        packages = self.root / "packages"
        subprocess.run(["cpack", "-G", "DEB", "-B", packages], cwd=BUILD, check=True, capture_output=True)
        package = next(packages.glob("python3-brelan_*.deb"))
        control = subprocess.run(["dpkg-deb", "--field", package], text=True, capture_output=True, check=True).stdout
        self.assertRegex(control, r"(?m)^Package: python3-brelan$")
        self.assertRegex(control, r"(?m)^Depends: python3 \(>= 3\.\d+\), python3 \(<< 3\.\d+\), python3-numpy, .*libfmt9")
        there = self.root / "unpacked"
        subprocess.run(["dpkg-deb", "--extract", package, there], check=True)
        files = {str(p.relative_to(there)) for p in there.rglob("*") if p.is_file()}
        self.assertFalse([f for f in files if not f.startswith(("usr/lib/python3/dist-packages/brelan/",
                                                                "usr/share/doc/python3-brelan/"))])
        said = subprocess.run(
            ["/usr/bin/python3", "-B", "-c", "import brelan; print(brelan.Deck('stage.dat').run().mesh)"],
            cwd=TOOL.parent / "examples", env={"PYTHONPATH": str(there / "usr/lib/python3/dist-packages")},
            text=True, capture_output=True)
        self.assertIn("15 nodes", said.stdout, said.stderr)

    def test_debian_package(self):
        """Built, looked at, and as the super-user also installed, used and removed without a trace."""
        packages = self.root / "packages"
        made = subprocess.run(["cpack", "-G", "DEB", "-B", packages], cwd=BUILD, text=True, capture_output=True)
        self.assertEqual(made.returncode, 0, made.stdout + made.stderr)
        package = next(packages.glob("brelan2d_*.deb"))
        control = subprocess.run(["dpkg-deb", "--field", package], text=True, capture_output=True, check=True).stdout
        self.assertRegex(control, r"(?m)^Package: brelan2d$")
        self.assertRegex(control, r"(?m)^Depends: .*libcairo2.*libcpp-httplib0.11.*libfmt9.*libpugixml1v5")
        listed = subprocess.run(["dpkg-deb", "--contents", package], text=True, capture_output=True, check=True).stdout
        names = {line.split()[5][1:] for line in listed.splitlines() if not line.startswith("d")}
        self.assertIn("/usr/bin/brelan", names)
        self.assertFalse([n for n in names if not n.startswith(("/usr/bin/", "/usr/share/"))])
        if os.getuid() != 0 or shutil.which("brelan2d"):
            self.skipTest("not the super-user, or the package is installed already")
        status = lambda: subprocess.run(["dpkg", "-s", "brelan2d"], capture_output=True).returncode
        self.assertNotEqual(status(), 0)
        try:
            subprocess.run(["dpkg", "-i", package], check=True, capture_output=True)
            home = self.root / "home"
            home.mkdir()
            self.use("/usr/bin/brelan", {"PATH": "/usr/bin:/bin", "HOME": str(home)})
            if os.path.exists("/usr/share/man/man1/brelan-diff.1.gz"):  # small systems leave man pages out
                shown = subprocess.run(["man", "-w", "brelan-diff"], capture_output=True, text=True)
                self.assertIn("/usr/share/man/man1/brelan-diff.1", shown.stdout)
        finally:
            subprocess.run(["dpkg", "--purge", "brelan2d"], check=True, capture_output=True)
        self.assertNotEqual(status(), 0)
        for name in names:
            self.assertFalse(os.path.exists(name), name)
        self.assertFalse(os.path.exists("/usr/share/brelan2d"))
        self.assertFalse(os.path.exists("/usr/share/doc/brelan2d"))


if __name__ == "__main__":
    unittest.main()
