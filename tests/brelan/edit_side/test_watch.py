"""brelan watch: what it says when a deck was saved."""
import os
import pathlib
import queue
import shutil
import signal
import subprocess
import tempfile
import threading
import unittest

BRELAN = os.environ["BRELAN"]
BLOCK = "2 0\n1 1\n0. 0.\n{width} 1. 0.5\n4. 1. 0.5\n0\n"  # a base mesh of width times 4 squares
SECONDS = 60


class Watch(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-test-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        self.deck = self.root / "deck.dat"
        self.deck.write_text(BLOCK.format(width="3."))

    def watch(self, *options):
        self.process = subprocess.Popen([BRELAN, "watch", *options, "deck.dat"], cwd=self.root, text=True,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.addCleanup(self.process.wait, SECONDS)
        self.addCleanup(self.process.stdout.close)
        self.addCleanup(self.process.kill)
        self.lines = queue.Queue()
        threading.Thread(target=lambda: [self.lines.put(line.rstrip("\n")) for line in self.process.stdout], daemon=True).start()

    def expect(self, *texts):
        """The next lines, of which each holds its text."""
        for text in texts:
            self.assertIn(text, self.lines.get(timeout=SECONDS))

    def test_each_save_tells_what_has_changed(self):
        self.watch()
        self.expect("deck.dat as it is", "20 nodes, 12 elements; 0", "sound", "Ctrl-C ends it")
        self.deck.write_text(BLOCK.format(width="5."))
        self.expect("deck.dat was saved", "line 4: Card 4.3, block column, from the left: W 3 -> 5", "30 nodes, 20 elements; 0",
                    "before: 20 nodes, 12 elements", "12 -> 20 elements", "sound")
        self.deck.write_text(BLOCK.format(width="x"))
        self.expect("deck.dat was saved", "brelan: deck.dat, line 4: expected a number in Card 4.3, found \"x\"")
        self.deck.unlink()
        self.expect("deck.dat is gone")
        self.deck.write_text(BLOCK.format(width="4."))
        self.expect("deck.dat was saved", "W 5 -> 4", "25 nodes, 16 elements; 0", "before: 30 nodes, 20 elements", "20 -> 16", "sound")
        self.assertEqual(os.listdir(self.root), ["deck.dat"])  # all in memory
        self.process.send_signal(signal.SIGINT)
        self.assertEqual(self.process.wait(SECONDS), 0)

    def test_cards_that_come_and_go_are_told(self):
        self.watch()
        self.expect("as it is", "20 nodes, 12 elements; 0", "sound", "Ctrl-C ends it")
        self.deck.write_text("2 0\n2 1\n0. 0.\n3. 1. 0.5\n2. 1. 0.5\n4. 1. 0.5\n0\n")  # a second block column; the row and what follows are the same
        self.expect("was saved", "gone: 3 cards from line 2 on, the first is Card 4.1",
                    "new: 4 cards from line 2 on, the first is Card 4.1", "30 nodes, 20 elements; 0")

    def test_quietly_only_changes_are_told(self):
        self.watch("-q")
        # Noticed late, a save would be taken for what was there: the deck is written until it is told.
        width = 3
        while self.lines.empty():
            width = 3 + (width - 2) % 5
            self.deck.write_text(BLOCK.format(width=f"{width}."))
            try:
                self.expect_within(1.0)
            except queue.Empty:
                continue
            break
        self.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.process.wait(SECONDS), 0)

    def expect_within(self, seconds):
        self.assertIn("deck.dat was saved", self.lines.get(timeout=seconds))

    def test_what_cannot_be_watched_is_told(self):
        for deck, said in (("-", "expected a deck in a file"), ("none.dat", "there is no file of this name")):
            done = subprocess.run([BRELAN, "watch", deck], cwd=self.root, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                  timeout=SECONDS)
            self.assertEqual((done.returncode, done.stdout), (2, ""))
            self.assertIn(said, done.stderr)


if __name__ == "__main__":
    unittest.main()
