"""The report of a study in a browser."""
import os
import sqlite3
import time

from study_case import StudyCase, main

from browser import PROGRAM, Browser


class Report(StudyCase):
    def setUp(self):
        super().setUp()
        if PROGRAM is None:
            self.skipTest("not installed: chromium")
        self.browser = Browser()
        self.addCleanup(self.browser.close)

    def open(self):
        self.browser.open(f"file://{self.root}/s.study/report.html")
        self.assertEqual(self.browser.errors, [])

    def column(self, at):
        """What the rows on the screen show in a column, from the top."""
        return self.browser.value(
            "[...document.querySelectorAll('.row')].sort((a, b) => parseFloat(a.style.top) - parseFloat(b.style.top))"
            f".map((row) => row.children[{at}].textContent)")

    def test_table_pictures_plots_and_failures_are_shown(self):
        self.write_study('width = [2, 3]\nheight = [1, "1 x", 4]')
        self.study("s.toml", status=1)
        self.study("report", "s.toml")
        self.open()
        b = self.browser
        self.assertEqual(self.column(1), ["1", "2", "3", "4", "5", "6"])
        b.wait("[...document.images].every((image) => image.naturalWidth > 0)")
        self.assertEqual(b.value("document.images.length"), 4)
        b.value("[...document.querySelectorAll('#head button')].find((x) => x.textContent === 'nodes').click()")
        self.assertEqual(self.column(5)[:4], ["6", "8", "15", "20"])
        b.value("(() => { const input = document.querySelectorAll('#head input')[2]; input.value = '3';"
                " input.dispatchEvent(new Event('input')); })()")
        self.assertEqual(self.column(3), ["3", "3", "3"])
        b.value("document.getElementById('clear').click(); document.getElementById('only-failed').click()")
        self.assertEqual(self.column(1), ["2", "5"])
        b.value("document.querySelector('.row').click()")
        self.assertIn("s.dat, line 5", b.value("document.querySelector('#detail .bad').textContent"))
        self.assertIn("1 x 1.0 0.5", b.value("document.querySelector('#detail pre').textContent"))
        b.value("document.getElementById('only-failed').click(); document.getElementById('show-plots').click()")
        self.assertEqual(b.value("document.querySelectorAll('#plots canvas').length"), 6)
        b.wait("plots.some((plot) => plot.visible)")
        self.assertEqual([url for url in b.requests if not url.startswith(("file:", "about:"))], [])
        self.assertEqual(b.errors, [])

    def test_ten_thousand_cases_open_in_two_seconds(self):
        self.write_study("width = [2, 3]\nheight = 1")
        self.study("s.toml")
        connection = sqlite3.connect(self.root / "s.study/study.sqlite")
        columns = [row[1] for row in connection.execute("PRAGMA table_info(cases)")][1:]
        names = ", ".join(f'"{name}"' for name in columns)
        connection.execute("WITH RECURSIVE more(n) AS (SELECT 3 UNION ALL SELECT n + 1 FROM more WHERE n < 10000) "
                           f"INSERT INTO cases (number, {names}) SELECT n, {names} FROM more, cases WHERE number = 1 + n % 2")
        connection.commit()
        connection.close()
        self.study("report", "s.toml", "--no-pictures")
        begun = time.monotonic()
        self.open()
        opened = time.monotonic() - begun
        self.assertIn("10000 cases", self.browser.value("document.getElementById('summary').textContent"))
        self.assertLess(self.browser.value("document.querySelectorAll('.row').length"), 40)
        # Two seconds on a quiet machine; others may be at work on this one.
        self.assertLess(opened, 2 + 2 * os.getloadavg()[0], "seconds until 10,000 cases are shown")
        self.browser.value("document.getElementById('table').scrollTop = 1e9")
        self.browser.settle()
        self.browser.wait("[...document.querySelectorAll('.row')].some((row) => row.children[1].textContent === '10000')")


if __name__ == "__main__":
    main()
