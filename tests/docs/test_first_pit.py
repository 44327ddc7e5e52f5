"""The tutorial's first chapter: what it draws, drags and types makes the deck that it ends with.

The questions are those of the page; walk.py of the chapter does the same with a pointer and keys.
"""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest
import urllib.parse
import urllib.request

SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])
BRELAN = os.environ["BRELAN"]


class Page:
    """The text of a deck, changed by the answers of brelan edit."""

    def __init__(self, address):
        self.address = address
        parts = urllib.parse.urlsplit(address)
        self.headers = {"Content-Type": "application/json", "Origin": f"{parts.scheme}://{parts.netloc}"}
        with urllib.request.urlopen(address + "deck") as answer:
            deck = json.load(answer)
        self.text, self.stamp = deck["text"], deck["stamp"]

    def ask(self, route, **question):
        request = urllib.request.Request(self.address + route, json.dumps(question).encode(), self.headers)
        with urllib.request.urlopen(request) as answer:
            return json.load(answer)

    def edit(self, route, **question):
        answer = self.ask(route, text=self.text, **question)
        for edit in answer["edits"]:
            lines = self.text.split("\n")
            line = lines[edit["line"]]
            lines[edit["line"]] = line[:edit["from"]] + edit["text"] + line[edit["to"]:]
            self.text = "\n".join(lines)
        return answer

    def type(self, old, new):
        assert self.text.count(old) == 1, old
        self.text = self.text.replace(old, new)

    def errors(self):
        findings = self.ask("check", text=self.text)["findings"]
        return [finding["message"] for finding in findings if finding["severity"] == "error"]


class FirstPit(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="brelan-first-pit-")
        self.addCleanup(directory.cleanup)
        self.deck = pathlib.Path(directory.name, "pit.dat")
        subprocess.run([BRELAN, "-q", "new", "base-mesh", "-o", directory.name, "--name", "pit.dat"], check=True)
        server = subprocess.Popen([BRELAN, "-q", "edit", self.deck, "--no-browser"], stdout=subprocess.PIPE, text=True)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        self.page = Page(server.stdout.readline().strip())

    def test_what_the_chapter_does_makes_the_deck_of_the_examples(self):
        page = self.page
        page.edit("move", handle="column2", x=25, y=7.5)
        page.type("* Kind: displacement\n", "* Kind: displacement\n* material 1: Ground\n* beam 1: Sheet pile\n")
        wall = page.edit("draw", line=4, form="line", points=[[13, 15], [13, 12], [13, 7]], material=1, title="Wall")
        page.edit("move", handle="g1.p3", x=13, y=5.85)
        page.edit("draw", line=wall["line"], form="outline", points=[[13, 15], [13, 12], [20, 12], [23, 15]],
                  material=2, title="Pit")
        self.assertEqual(page.errors(), [])
        page.type("  3      0       0\n", "  1      0       0\n")
        self.assertEqual(page.errors(), ["expected 2 values on Card 3.3.5.4.1-1 (LTP, LMAT), found 4"])
        page.type("* MAT  DEN  LTP  LMAT\n  2    2.3  0    0\n", "* LTP  LMAT\n  0    0\n")
        self.assertEqual(page.errors(), [])
        page.ask("save", text=page.text, stamp=page.stamp, over=False)
        self.assertEqual(self.deck.read_text(), (SOURCE / "examples" / "first_pit.dat").read_text())


if __name__ == "__main__":
    unittest.main()
