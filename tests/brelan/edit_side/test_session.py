"""What brelan edit does with the deck's file, and with texts that come faster than they can be run."""
import os
import stat
import threading
import time
import unittest

from served import DECK, ServedCase, arrays_of, head_of

TEXT = DECK.decode()
# About 95,000 elements, so that a run of it takes a while.
LONG = "2 0\n1 1\n0. 0.\n308. 1. 0.5\n308. 1. 0.5\n0\n"


class Saving(ServedCase):
    def save(self, served, text, stamp, over=False):
        return served.post("save", text=text, stamp=stamp, over=over)

    def saved(self, content, change, *options):
        """The file's bytes after a text was changed and saved."""
        served = self.serve(content, *options)
        deck = served.deck()
        status, answer = self.save(served, change(deck["text"]), deck["stamp"])
        self.assertEqual(status, 200, answer)
        self.assertNotEqual(answer["stamp"], deck["stamp"])
        self.assertEqual(served.deck()["stamp"], answer["stamp"])
        return self.file.read_bytes()

    def test_nothing_is_written_that_was_not_asked_for(self):
        served = self.serve()
        before = self.file.stat()
        served.post("check", text="2 0\n")
        served.post("run", text=TEXT, cut="auto", number=1)
        self.assertEqual(served.end(), (0, ""))
        self.assertEqual((self.file.read_bytes(), self.file.stat().st_mtime_ns), (DECK, before.st_mtime_ns))
        self.assertEqual(os.listdir(self.root), ["deck.dat"])

    def test_the_text_takes_the_place_of_the_file(self):
        self.assertEqual(self.saved(DECK, lambda text: text + "* more\n"), DECK + b"* more\n")
        self.assertEqual(os.listdir(self.root), ["deck.dat"])

    def test_a_deck_that_was_changed_meanwhile_stays(self):
        served = self.serve()
        deck = served.deck()
        self.file.write_bytes(b"* theirs\n" + DECK)
        status, answer = self.save(served, "* mine\n", deck["stamp"])
        self.assertEqual((status, answer["text"]), (409, "* theirs\n" + TEXT))
        self.assertEqual(self.file.read_bytes(), b"* theirs\n" + DECK)
        status, _ = self.save(served, "* mine\n", answer["stamp"])
        self.assertEqual((status, self.file.read_bytes()), (200, b"* mine\n"))
        self.file.write_bytes(b"* theirs\n")
        self.assertEqual(self.save(served, "* mine\n", deck["stamp"], over=True)[0], 200)
        self.assertEqual(self.file.read_bytes(), b"* mine\n")

    def test_a_deck_that_was_removed_is_made_anew_where_that_is_wanted(self):
        served = self.serve()
        deck = served.deck()
        self.file.unlink()
        status, answer = self.save(served, TEXT, deck["stamp"])
        self.assertEqual((status, answer["text"], answer["stamp"]), (409, "", ""))
        self.assertFalse(self.file.exists())
        self.assertEqual(self.save(served, TEXT, "")[0], 200)
        self.assertEqual(self.file.read_bytes(), DECK)

    def test_links_and_permissions_stay(self):
        real = self.root / "real.dat"
        real.write_bytes(DECK)
        real.chmod(0o640)
        self.file.symlink_to("real.dat")
        served = self.serve(None)
        self.assertEqual(self.save(served, "* new\n", served.deck()["stamp"])[0], 200)
        self.assertTrue(self.file.is_symlink())
        self.assertEqual((real.read_bytes(), stat.S_IMODE(real.stat().st_mode)), (b"* new\n", 0o640))

    @unittest.skipIf(os.geteuid() == 0, "for root all can be written")
    def test_a_directory_that_takes_nothing_is_told(self):
        served = self.serve()
        self.root.chmod(0o555)
        self.addCleanup(self.root.chmod, 0o755)
        status, answer = self.save(served, "* new\n", served.deck()["stamp"])
        self.assertEqual(status, 422)
        self.assertIn("cannot be written", answer["error"])
        self.assertEqual(self.file.read_bytes(), DECK)

    def test_a_directory_in_its_place_is_told(self):
        served = self.serve()
        stamp = served.deck()["stamp"]
        self.file.unlink()
        self.file.mkdir()
        status, answer = self.save(served, "* new\n", stamp, over=True)
        self.assertEqual(status, 422)
        self.assertIn("found a directory", answer["error"])

    def test_line_ends_and_byte_order_mark_stay(self):
        returns = b"\xef\xbb\xbf" + DECK.replace(b"\n", b"\r\n")
        self.assertEqual(self.saved(returns, lambda text: text.replace("* A pit", "* The pit") + "* more\n"),
                         returns.replace(b"* A pit", b"* The pit") + b"* more\r\n")

    def test_line_ends_of_several_sorts_stay_where_nothing_changes(self):
        self.assertEqual(self.saved(b"* a\r\n* b\n* c\n* d\r\n* e\n* f", lambda text: text.replace("* c\n", "* c\n* new\n")),
                         b"* a\r\n* b\n* c\n* new\n* d\r\n* e\n* f")

    def test_a_text_without_a_last_line_end_stays_without(self):
        self.assertEqual(self.saved(b"* a\n2 0", lambda text: text.replace("* a", "* b")), b"* b\n2 0")

    def test_decks_of_an_older_code_are_not_harmed(self):
        old = b"* B\xf6schung \x80 \xff\r\n" + DECK
        served = self.serve(old)
        deck = served.deck()
        self.assertTrue(deck["text"].startswith("* B\u00f6schung \x80 \xff\n"))
        self.assertEqual(self.save(served, deck["text"], deck["stamp"])[0], 200)
        self.assertEqual(self.file.read_bytes(), old)
        status, answer = self.save(served, deck["text"].replace("\x80", "\u20ac"), deck["stamp"])
        self.assertEqual(status, 422)
        self.assertIn("8 bits", answer["error"])
        self.assertEqual(self.save(served, deck["text"].replace("\xf6", "\xe4"), deck["stamp"])[0], 200)
        self.assertEqual(self.file.read_bytes(), old.replace(b"\xf6", b"\xe4"))
        status, answer = served.post("run", text=deck["text"], cut="rules", number=1)
        self.assertEqual((status, head_of(answer)["end"]["status"]), (200, 0))


class Disk(ServedCase):
    def first(self, served, act):
        """The event that follows what is done."""
        events = served.events()
        self.assertEqual(next(events), ("hello", {}))
        act()
        got = next(events)
        events.close()
        return got

    def test_what_others_write_is_told(self):
        def removed_and_written():
            self.file.unlink()
            self.file.write_bytes(b"* written anew\n")

        def renamed():
            (self.root / "other").write_bytes(b"* renamed\n")
            os.replace(self.root / "other", self.file)

        def in_pieces():
            with open(self.file, "wb", buffering=0) as file:
                for part in (b"* in", b" pie", b"ces", b"\n"):
                    file.write(part)
                    time.sleep(0.05)

        served = self.serve()
        for act, text in ((lambda: self.file.write_bytes(b"* in place\n"), "* in place\n"),
                          (removed_and_written, "* written anew\n"), (renamed, "* renamed\n"), (in_pieces, "* in pieces\n"),
                          (self.file.unlink, "")):
            name, data = self.first(served, act)
            self.assertEqual((name, data["text"]), ("disk", text))
            self.assertEqual(served.deck()["stamp"], data["stamp"])

    def test_its_own_saving_is_not_told(self):
        served = self.serve()

        def saved_and_changed():
            served.post("save", text="* mine\n", stamp="", over=True)
            time.sleep(0.5)
            self.file.write_bytes(b"* theirs\n")

        self.assertEqual(self.first(served, saved_and_changed)[1]["text"], "* theirs\n")

    def test_pages_that_listen_do_not_hold_up_the_end(self):
        served = self.serve()
        events = served.events()
        next(events)
        begun = time.monotonic()
        self.assertEqual(served.end(), (0, ""))
        self.assertLess(time.monotonic() - begun, 5.0)


class Running(ServedCase):
    def test_a_run_is_ended_by_no_older_text_and_by_no_other_page(self):
        """Questions on two connections may come in another order than they were sent in."""
        served = self.serve()
        answers = []
        run = threading.Thread(target=lambda: answers.append(
            served.post("run", text=LONG, cut="rules", number=9, page="one")))
        run.start()
        time.sleep(0.1)
        other = threading.Thread(target=lambda: answers.append(
            served.post("run", text=TEXT, cut="rules", number=1, page="two")))
        other.start()
        self.assertEqual(served.post("run", text=TEXT, cut="rules", number=8, page="one"),
                         (409, {"error": "a newer text is run"}))
        run.join()
        other.join()
        self.assertEqual(sorted((status, head_of(answer)["number"]) for status, answer in answers), [(200, 1), (200, 9)])
        self.assertEqual(served.post("run", text=TEXT, cut="rules", number=1, page="p" * 65)[0], 422)

    def test_a_newer_text_ends_the_older_run(self):
        served = self.serve()
        answers = []
        threads = []
        for number in range(4):
            threads.append(threading.Thread(
                target=lambda n: answers.append((n, *served.post("run", text=LONG, cut="rules", number=n))), args=(number,)))
            threads[-1].start()
            time.sleep(0.1)
        status, answer = served.post("run", text=TEXT, cut="rules", number=9)
        self.assertEqual((status, head_of(answer)["number"]), (200, 9))
        for thread in threads:
            thread.join()
        self.assertEqual([(s, a) for _, s, a in answers], [(409, {"error": "a newer text is run"})] * 4)
        self.assertEqual(served.post("details", number=3)[0], 409)
        self.assertEqual(served.post("details", number=9)[0], 200)

    def test_a_run_in_work_does_not_hold_up_the_end(self):
        served = self.serve()

        def ask():
            try:
                served.post("run", text=LONG, cut="rules", number=1)
            except (OSError, ValueError):
                pass  # the server has gone

        thread = threading.Thread(target=ask)
        thread.start()
        time.sleep(0.1)
        self.assertEqual(served.end(), (0, ""))
        thread.join()

    def test_stages_come_with_the_mesh(self):
        # The ground is dug out at step 2, what fills the place comes at step 6, the wall stands from step 1.
        _, answer = self.serve().post("run", text=TEXT, cut="rules", number=1)
        head, arrays = head_of(answer), arrays_of(answer)
        self.assertEqual(head["stages"]["steps"], [1, 2, 6])
        self.assertEqual(sorted(set(zip(arrays["elementComes"], arrays["elementGoes"]))), [(0, 0), (0, 2), (1, 0), (6, 0)])

    def test_each_solid_has_its_smallest_angle(self):
        _, answer = self.serve().post("run", text="2 0\n1 1\n0 0\n3 1 0.5\n2 1 0.5\n0\n", cut="rules", number=1)
        head, arrays = head_of(answer), arrays_of(answer)
        self.assertEqual(arrays["elementQuality"], (90.0,) * 6)
        self.assertEqual((head["quality"]["smallest"], head["quality"]["histogram"][-1], sum(head["quality"]["histogram"])),
                         (90.0, 6, 6))
        self.assertEqual(head["findings"], [])

    def test_a_run_that_fails_says_where(self):
        status, answer = self.serve().post("run", text="2 0\n1 x\n", cut="auto", number=1)
        self.assertEqual(status, 200)
        end = head_of(answer)["end"]
        self.assertEqual((end["status"], end["file"], end["line"]), (2, str(self.file), 2))
        self.assertEqual(head_of(answer)["arrays"], [])


if __name__ == "__main__":
    unittest.main()
