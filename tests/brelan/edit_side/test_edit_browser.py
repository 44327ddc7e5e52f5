"""Editing a deck in the page: what is typed, dragged and drawn, stages, saving, and a connection that breaks."""
import time
import unittest

from edited_page import EXAMPLES, Keys, PageCase

PAPER = (255, 255, 255)


class Typing(PageCase):
    def test_a_number_that_is_typed_changes_the_picture(self):
        self.open()
        self.js("zoomAt(0.5, width / 2, height / 2)")
        self.assertEqual(self.color_at(5.4, 0.4), PAPER)
        self.put_cursor(self.line_of("4.0           1.0           0.5"), 6)
        self.keys(Keys.BACKSPACE, "6")
        self.wait("DATA.bounds.x[1] - DATA.bounds.x[0] === 6")
        self.assertEqual(self.color_at(5.4, 0.4), self.color_at(2.4, 0.4))
        self.assertEqual(self.js("return el('name').textContent + ' ' + el('unsaved').hidden"), "stage.dat false")
        self.assertTrue(self.js("return document.title").startswith("\u2022"))
        self.assertEqual(self.deck.read_text(), self.text)  # saved by nobody

    def test_an_error_is_shown_at_its_line_and_the_old_picture_marked_until_it_is_mended(self):
        self.open()
        row = self.line_of("4.0           1.0           0.5")
        elements = self.js("return elementCount()")
        self.put_cursor(row, 6)
        self.keys("x")
        self.wait("el('stage').classList.contains('stale') && findings.list.length > 0")
        self.assertEqual(self.js("return findings.list[0].line"), row)
        self.assertIn('found "4x.0"', self.js("return el('problem-list').textContent"))
        self.assertEqual(self.js("return cm.findMarksAt({line: arguments[0], ch: 6}).filter((m) => m.className.includes('finding')).length", row), 1)
        self.assertEqual(self.js("return elementCount()"), elements)
        self.assertFalse(self.js("return el('stale').hidden"))
        box = self.js("const b = document.querySelector('.finding-mark').getBoundingClientRect(); return [b.left + 4, b.top + 4]")
        self.driver.execute_cdp_cmd("Input.dispatchMouseEvent", {"type": "mouseMoved", "x": box[0], "y": box[1]})
        self.wait("!el('tip').hidden && el('tip').textContent.includes('4x.0')")
        self.keys(Keys.BACKSPACE)
        self.wait("!el('stage').classList.contains('stale') && findings.list.length === 0")
        self.assertTrue(self.js("return el('stale').hidden"))

    def test_the_field_at_the_cursor_is_explained_and_its_values_complete_it(self):
        self.open()
        row = self.line_of("4     1      0")
        self.put_cursor(row, 3)
        self.wait("el('field-help').textContent.includes('MTYPE = 4')")
        self.assertEqual(self.js("return document.querySelector('.field-now').textContent"), "4")
        self.keys(" ", held=[Keys.CONTROL])
        self.wait("document.querySelector('.CodeMirror-hints') !== null")
        hints = self.js("return [...document.querySelectorAll('.CodeMirror-hint')].map((h) => h.textContent)")
        self.assertIn("3material inside", hints)
        self.keys(*[Keys.ARROW_DOWN] * hints.index("3material inside"), Keys.ENTER)
        self.settle()
        self.assertEqual(self.changed_lines(), [["  4     1      0", "  3     1      0"]])

    def test_what_a_deck_holds_is_text_and_no_part_of_the_page(self):
        self.open()
        row = self.line_of("Wall")
        self.js("cm.replaceRange(arguments[1], {line: arguments[0], ch: 0}, {line: arguments[0]})", row,
                "<img src=x onerror=document.title=1><b id=evil>")
        self.settle()
        self.click(2.0, 0.3)
        self.wait("el('under').textContent.includes('<b id=evil>')")
        self.put_cursor(row + 3, 2)
        self.assertIsNone(self.js("return el('evil')"))


class Drawing(PageCase):
    POINT = ["  3      2.0          1.0", "  3      3.0          1.0"]

    def test_a_click_finds_the_group_and_its_point_is_dragged_by_its_numbers_alone(self):
        self.open()
        self.click(1.0, 1.5)
        self.wait("known.group === 1")
        self.assertIn("Pit", self.js("return cm.getLine(cm.getCursor().line)"))
        self.drag((2.0, 1.0), (3.02, 1.01))  # a node holds it
        self.assertEqual(self.changed_lines(), [self.POINT])
        self.assertEqual(self.js("return cm.historySize().undo"), 1)
        self.js("el('undo').click()")
        self.settle()
        self.assertEqual(self.js("return deckText()"), self.text)

    def test_a_drag_that_is_held_by_nothing_writes_few_figures(self):
        self.open()
        for snap in ("nodes", "lines", "grid"):
            self.js("el(arguments[0]).click()", "snap-" + snap)
        self.put_cursor(self.line_of("3      2.0          1.0"))
        self.wait("handles.buttons.size > 3")
        self.drag((2.0, 1.0), (2.3, 0.7))
        (old, new), = self.changed_lines()
        x, y = map(float, new.split()[1:])
        self.assertAlmostEqual(x, 2.3, delta=0.02)
        self.assertAlmostEqual(y, 0.7, delta=0.02)
        self.assertLess(len(new), len(old) + 6)

    def test_clicks_draw_an_outline_whose_cards_are_written_in_one_step(self):
        self.open()
        self.put_cursor(self.line_of("Wall"))
        self.js("el('tool-outline').click(); el('draw-material').value = '9'; el('draw-title').value = 'Footing'")
        self.settle()
        for point in ((3.0, 0.0), (4.0, 0.0), (4.0, 1.0)):
            self.click(*point)
        self.keys(Keys.ENTER)
        self.wait("known.check.groups.length === 3 && DATA.groups.some((g) => g.name.includes('9'))")
        self.settle()
        now = self.js("return deckText()")
        self.assertIn("\nFooting\n", now)
        self.assertEqual(self.js("return document.body.dataset.status"), "0")
        self.assertEqual(self.js("return el('tool-select').getAttribute('aria-pressed')"), "true")
        self.js("cm.undo()")
        self.assertEqual(self.js("return deckText()"), self.text)

    def test_a_line_begins_at_a_point_that_could_be_dragged_and_what_the_mesh_tells_of_it_comes_later(self):
        self.open()
        self.put_cursor(self.line_of("Wall"))
        x, y = self.js("const h = known.check.handles.find((h) => h.group === known.group); return [h.x, h.y]")
        self.js("el('zoom-out').click(); el('zoom-out').click()")
        self.settle()
        self.js("el('tool-line').click(); el('draw-material').value = '3'; el('draw-title').value = 'Anchor'")
        for point in ((x, y), (x, y + 1.0)):
            self.click(*point)
        self.keys(Keys.ENTER)
        self.wait("known.check.groups.length === 3")
        self.assertEqual(self.js("return known.check.shapes.find((s) => s.title === 'Anchor').points[0]"), [x, y])
        self.wait("findings.list.some((f) => f.id === 'outside-mesh')")

    def test_the_keyboard_alone_changes_moves_draws_and_saves(self):
        self.open()
        self.put_cursor(self.line_of("3      2.0          1.0"))
        self.wait("handles.buttons.size > 3")
        self.keys(Keys.TAB)  # leaves the editor
        self.assertFalse(self.js("return cm.hasFocus()"))
        self.js("cm.focus()")
        self.keys(Keys.F6)
        self.assertEqual(self.js("return document.activeElement.id"), "divider")
        self.keys(Keys.ARROW_RIGHT)
        self.assertEqual(self.js("return el('divider').getAttribute('aria-valuenow')"), "45")
        self.keys(Keys.F6, Keys.F6)
        self.assertEqual(self.js("return document.activeElement.id"), "canvas")
        self.keys(Keys.TAB)
        for _ in range(8):
            if "point 3" in self.js("return document.activeElement.getAttribute('aria-label') || ''").lower():
                break
            self.keys(Keys.TAB)
        self.js("el('grid-step').value = '0.25'")
        self.keys(Keys.ARROW_RIGHT)
        self.settle()
        self.keys(Keys.ARROW_RIGHT)
        self.settle()
        self.assertEqual(self.changed_lines(), [[self.POINT[0], "  3      2.5          1.0"]])
        self.keys("s", held=[Keys.CONTROL])
        self.wait("isSaved()")
        self.assertEqual(self.deck.read_text(), self.js("return deckText()"))

    def test_steps_show_what_comes_and_goes(self):
        self.open()
        self.assertEqual(self.js("return stages.steps"), [1, 2, 6])
        whole = self.color_at(0.6, 1.6)
        self.js("el('step').focus()")
        self.keys(Keys.HOME)
        self.wait("known.step === 0")
        ground = self.color_at(0.6, 1.6)
        self.assertNotEqual(ground, PAPER)
        self.keys(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        self.wait("known.step === 2")
        self.assertIn("go", self.js("return el('step-text').textContent"))
        self.keys(Keys.ARROW_RIGHT)
        self.wait("known.step === 6")
        self.assertIn("come", self.js("return el('step-text').textContent"))
        self.keys(Keys.ARROW_RIGHT)
        self.wait("known.step === null")
        self.assertEqual(self.color_at(0.6, 1.6), whole)
        # Of 8 in all, 2 are dug out from step 2 to step 6.
        self.js("el('tab-areas').click()")
        areas = self.js("return areasByStep([0, ...stages.steps]).map((a) => a.values).reduce((s, v) => s.map((x, k) => x + v[k]))")
        self.assertEqual(areas, [8, 8, 6, 8])


    def test_the_pointer_names_elements_findings_lead_to_their_places_and_quality_colours(self):
        self.open((EXAMPLES / "pit_stages.dat").read_text())
        self.mouse("mouseMoved", 1.7, 1.4)
        self.wait("el('under').textContent.startsWith('Element ')")
        self.js("el('tab-sound').click(); document.querySelector('.place').click()")
        words = self.js("return document.querySelector('.place').textContent")
        x, y = map(float, words[words.index("(") + 1:words.index(")")].split(", "))
        at = self.js("return toMesh(width / 2, height / 2).map((v, k) => v + DATA.origin[k])")
        self.assertAlmostEqual(at[0], x, places=3)
        self.assertAlmostEqual(at[1], y, places=3)
        self.js("fitAll(); el('tab-quality').click()")
        before = self.color_at(1.4, 1.4)
        self.js("el('colour').value = 'quality'; el('colour').dispatchEvent(new Event('change'))")
        self.assertNotEqual(self.color_at(1.4, 1.4), before)
        counts = self.js("return [...document.querySelectorAll('.bar')].map((b) => Number(b.title.match(/: (\\d+) /)[1]))")
        self.assertEqual(sum(counts), self.js("return elementCount() - DATA.groups.reduce((n, g) => n + g.elements.length, 0)"))
        self.js("el('theme').click()")
        self.assertEqual(self.js("return document.documentElement.dataset.theme"), "dark")
        self.assertNotEqual(self.color_at(-1, -1), PAPER)
        self.js("el('theme').click()")


class Disk(PageCase):
    def test_what_another_program_writes_is_said_and_followed_only_where_asked(self):
        self.open()
        other = self.text.replace("Wall", "Sheet pile")
        self.deck.write_text(other)
        self.wait("el('banner-text').textContent.includes('changed on disk')")
        self.assertEqual(self.js("return deckText()"), self.text)
        self.js("[...document.querySelectorAll('#banner-choices button')].find((b) => b.textContent === 'Take it').click()")
        self.assertEqual(self.js("return [deckText(), isSaved(), el('banner').hidden]"), [other, True, True])
        self.open(None, "--watch")
        self.deck.write_text(other)
        self.wait("deckText().includes('Sheet pile') && isSaved()")
        self.wait("known.check.groups[1].title === 'Sheet pile'")

    def test_a_deck_that_was_changed_on_disk_is_shown_beside_and_not_written_over_unasked(self):
        self.expected += ["/save - Failed to load resource: the server responded with a status of 409"]
        self.open()
        self.put_cursor(0, 0)
        self.keys("*")
        other = self.text.replace("Wall", "Sheet pile")
        self.deck.write_text(other)
        self.keys("s", held=[Keys.CONTROL])
        self.wait("el('changes').open")
        shown = self.js("return [...document.querySelectorAll('.pair.differs')].map((p) => [...p.children].map((c) => c.textContent))")
        self.assertIn(["Sheet pile", "Wall"], shown)
        self.assertEqual(self.deck.read_text(), other)
        self.js("el('changes-over').click()")
        self.wait("isSaved()")
        self.assertEqual(self.deck.read_text(), "*" + self.text)

    def test_the_deck_on_disk_can_be_taken_and_undone(self):
        self.expected += ["/save - Failed to load resource: the server responded with a status of 409"]
        self.open()
        self.put_cursor(0, 0)
        self.keys("*")
        other = self.text.replace("Wall", "Sheet pile")
        self.deck.write_text(other)
        self.js("save(false)")
        self.wait("el('changes').open")
        self.js("el('changes-take').click()")
        self.assertEqual(self.js("return [deckText(), isSaved()]"), [other, True])
        self.js("cm.undo()")
        self.assertEqual(self.js("return deckText()"), "*" + self.text)

    def test_a_broken_connection_is_said_and_the_text_outlives_it(self):
        self.expected += ["ERR_INTERNET_DISCONNECTED", "ERR_CONNECTION", "ERR_INCOMPLETE_CHUNKED_ENCODING"]
        server = self.open()
        self.driver.set_network_conditions(offline=True, latency=0, throughput=-1)
        self.put_cursor(self.line_of("4.0           1.0           0.5"), 6)
        self.keys(Keys.BACKSPACE, "6")
        self.wait("!el('banner').hidden && el('banner-text').textContent.includes('lost')")
        time.sleep(0.7)  # it has tried again in vain
        self.driver.set_network_conditions(offline=False, latency=0, throughput=-1)
        self.wait("el('banner').hidden && DATA.bounds.x[1] - DATA.bounds.x[0] === 6")
        text = self.js("return deckText()")
        self.wait("keptText() !== null")
        self.driver.refresh()
        self.wait("document.body.dataset.ready === 'yes' && el('banner-text').textContent.includes('not saved')")
        server.kill()  # which is noticed without a key
        self.wait("el('banner-text').textContent.includes('lost')")
        self.assertEqual(self.js("return [deckText(), isSaved()]"), [text, False])


if __name__ == "__main__":
    unittest.main()
