#!/usr/bin/env python3
"""The Windows program as a user of Windows has it, run by wine: its drive C:, its names, its console.

    test_windows.py build/windows/brelan2d.exe

WINEPREFIX names a prefix that the tests may use alone; scripts/everywhere makes one.
"""
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
DRIVE = pathlib.Path(os.environ["WINEPREFIX"]) / "drive_c"
ENVIRONMENT = dict(os.environ, WINEDEBUG="-all", LC_ALL="C.UTF-8")


def on_console(*command, cwd):
    """What a console shows of a command."""
    child, screen = pty.fork()
    if child == 0:
        os.chdir(cwd)
        os.execvpe(command[0], command, ENVIRONMENT)
    shown = b""
    try:
        while select.select([screen], [], [], 60)[0] and (piece := os.read(screen, 4096)):
            shown += piece
    except OSError:  # the child has closed its end
        pass
    os.close(screen)
    os.waitpid(child, 0)
    return shown


class Windows(unittest.TestCase):
    def setUp(self):
        self.vork = DRIVE / "Vork"
        shutil.copytree(SOURCE / "data" / "Vork", self.vork)
        self.addCleanup(shutil.rmtree, self.vork)
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="brelan-windows-"))
        self.addCleanup(shutil.rmtree, self.place)
        self.project(self.place / "project")

    def project(self, directory):
        self.directory, self.work = directory, directory / "work"
        self.work.mkdir(parents=True)
        self.mesh = (SOURCE / "examples" / "Quay.Mes").read_bytes()
        self.deck = (SOURCE / "examples" / "mirror.dat").read_bytes()

    def run_deck(self, deck, mesh, result, **options):
        """Runs the mirroring of a quay whose deck, mesh and result have these names, as bytes."""
        cards = self.deck.replace(b"Quay.Mes", mesh).replace(b"QuayFeet.Mes", result)
        self.assertEqual(cards.count(mesh) + cards.count(result), 2, cards)
        (self.work / "TFNAME.TMP").write_bytes(b"..\\" + deck + b"\n")
        for name, content in ((deck, cards), (mesh, self.mesh)):
            (self.directory / self.on_disk(name)).write_bytes(content)
        return self.start(**options)

    def start(self, **options):
        # Files, no pipes: what wine leaves running in the background keeps a pipe open.
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            done = subprocess.run(["wine", PROGRAM], cwd=self.work, timeout=120, stdin=subprocess.DEVNULL, stdout=out,
                                  stderr=err, **{"env": ENVIRONMENT, **options})
            out.seek(0)
            err.seek(0)
            done.stdout, done.stderr = out.read(), err.read()
            return done

    @staticmethod
    def on_disk(name):
        try:
            return name.decode()
        except UnicodeDecodeError:
            return name.decode("cp1252")

    def assert_made(self, done, result):
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        self.assertGreater((self.directory / self.on_disk(result)).stat().st_size, 1000)

    def test_drive_is_read_itself(self):
        """Whatever stands for it elsewhere."""
        elsewhere = dict(ENVIRONMENT, BRELAN_DRIVE_C=str(self.place), XDG_DATA_HOME=str(self.place))
        self.assert_made(self.run_deck(b"deck.dat", b"in.Mes", b"out.Mes", env=elsewhere), b"out.Mes")
        self.assertTrue((self.vork / "Qx" / "Qxdata" / "BRELAN2D.DAT").exists())
        shutil.rmtree(self.vork / "Qx")
        done = self.start()
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"C:\\VORK\\QX\\QXDATA", done.stderr)

    def test_names_have_any_characters(self):
        for name in ("Straße", "Жизнь", "日本語", "𝔐esh"):
            with self.subTest(name):
                deck, mesh, result = (f"{name} {end}".encode() for end in ("d.dat", "in.Mes", "out.Mes"))
                self.assert_made(self.run_deck(deck, mesh, result), result)

    def test_names_of_old_decks_are_of_the_code_page(self):
        self.assert_made(self.run_deck(b"Caf\xe9.dat", b"M\xfcller.Mes", b"\xd8st.Mes"), b"\xd8st.Mes")

    def test_paths_are_longer_than_260_characters(self):
        shutil.rmtree(self.directory)
        result = b"r" * 100 + b".Mes"
        # A few more: wine's trace shows some 300 characters of a name.
        rest = 265 - len(str(self.place / "project" / result.decode()))
        self.project(self.place / ("directory " * 16)[:rest].replace(" ", "_") / "project")
        self.assertGreater(len(str(self.directory / result.decode())), 260)
        traced = dict(ENVIRONMENT, WINEDEBUG="+file")
        done = self.run_deck(b"d" * 100 + b".dat", b"m" * 100 + b".Mes", result, env=traced)
        self.assertEqual(done.returncode, 0)
        self.assertGreater((self.directory / result.decode()).stat().st_size, 1000)
        # wine itself takes such paths in any form, Windows only whole ones that begin with \\?\.
        named = re.findall(r'(?:File|Attributes)\w*W L"([^"]*r{100}\.Mes)"', done.stderr.decode("latin-1"))
        self.assertTrue(named)
        self.assertEqual([name for name in named if not name.startswith(r"\\\\?\\")], [])

    def test_console_shows_messages_in_any_code_page(self):
        (self.work / "TFNAME.TMP").write_text("..\\Жизнь日本.dat\n")
        program = "Z:" + str(PROGRAM).replace("/", "\\")
        for page in (437, 932, 1252, 65001):
            with self.subTest(page):
                shown = on_console("wine", "cmd", "/c", f"chcp {page} & {program}", cwd=self.work).decode()
                self.assertIn(f"code page: {page}", shown)
                self.assertIn("brelan2d: ..\\Жизнь日本.dat: expected", shown)

    def test_redirected_messages_are_bytes(self):
        (self.work / "TFNAME.TMP").write_text("..\\Жизнь日本.dat\n")
        done = self.start()
        self.assertEqual((done.returncode, done.stdout), (2, b""))
        self.assertTrue(done.stderr.startswith("brelan2d: ..\\Жизнь日本.dat: expected".encode()), done.stderr)
        self.assertEqual((done.stderr.count(b"\n"), done.stderr.count(b"\r")), (1, 0))


if __name__ == "__main__":
    unittest.main()
