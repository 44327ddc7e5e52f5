"""Decks: fields by name, changed in the text."""

import difflib
import pickle

import brelan
import numpy as np
import pytest
from conftest import base_mesh


def changed_lines(before, after):
    return [
        line
        for line in difflib.unified_diff(before.splitlines(), after.splitlines(), n=0, lineterm="")
        if line[0] in "+-" and not line.startswith(("+++", "---"))
    ]


def test_a_point_that_is_moved_changes_its_own_line_alone(examples):
    deck = brelan.Deck("pit_stages.dat")
    before = deck.text()
    deck.groups[2].points[0].x += 0.5
    assert changed_lines(before, deck.text()) == ["-  1      3.2          0.0", "+  1      3.7          0.0"]
    assert deck.groups[2].points[0].x == pytest.approx(3.7)


def test_text_of_a_deck_is_that_of_its_file_to_the_byte(examples):
    for name in ("dam.dat", "stage.dat", "pit_join.dat"):
        deck = brelan.Deck(name)
        assert deck.text().encode() == (examples / name).read_bytes()
        deck.save("copy.dat")
        assert (examples / "copy.dat").read_bytes() == (examples / name).read_bytes()


def test_cards_have_the_fields_and_lines_of_the_manual(examples):
    deck = brelan.Deck("stage.dat")
    card = deck.card("3.3.5.4.1")
    assert card["MTYPE"] == 4 and card["IGPOST"] == 1 and card.given("IGPOST")
    assert not deck.card("3.2").given("NSTRUS") and deck.card("3.2")["NSTRUS"] == 0
    assert (examples / "stage.dat").read_text().splitlines()[card.line - 1].split()[:2] == ["4", "1"]
    with pytest.raises(KeyError, match="Card 3.3.5.4.1 has no MAT"):
        card["MAT"]


def test_groups_have_titles_points_and_segments(examples):
    deck = brelan.Deck("stage.dat")
    assert [group.title for group in deck.groups] == ["Pit: soil 2, back-fill 5", "Wall"]
    assert [(p.x, p.y) for p in deck.groups[0].points] == [(0.0, 2.0), (0.0, 1.0), (2.0, 1.0), (2.0, 2.0)]
    assert [s.end_rule for s in deck.groups[0].segments] == [3, 3, 3, 3]
    deck.groups[1].title = "Sheet pile"
    deck.groups[1].segments[0].divisions = 4
    assert brelan.Deck(deck.text()).groups[1].title == "Sheet pile"
    assert brelan.Deck(deck.text()).groups[1].segments[0].divisions == 4
    assert deck.groups[0]["MAT"] == 5


def test_an_arc_belongs_to_the_segment_before_it(examples):
    tunnel = brelan.Deck("pit_stages.dat").groups[2]
    assert all(segment.arc is not None for segment in tunnel.segments if segment.type == 2)
    assert tunnel.segments[0].arc["Rx"] > 0


def test_a_file_name_and_a_list_can_be_changed(examples):
    deck = brelan.Deck("mirror.dat")
    deck.card("3.1-2").name = "Other.Mes"
    assert "Other.Mes" in deck.text() and deck.run().mesh is not None
    with pytest.raises(brelan.Error, match="expected a name in one line"):
        deck.card("3.1-2").name = "* a comment"


def test_a_field_that_is_whole_takes_no_fraction():
    deck = brelan.Deck(base_mesh())
    with pytest.raises(ValueError, match="NBX: expected a whole number"):
        deck.card("4.1")["NBX"] = 1.5


def test_a_refused_deck_can_be_had_and_mended():
    deck = brelan.Deck(base_mesh().replace("  0.0 0.0\n", "  0.0\n", 1))
    assert deck.fault is not None and deck.fault.line == 3
    with pytest.raises(brelan.RunError) as raised:
        deck.run()
    assert raised.value.line == 3 and raised.value.file == "deck.dat"
    deck.set_text(base_mesh())
    assert deck.fault is None and deck.run().mesh is not None


def test_a_deck_that_is_not_there_is_an_error_with_its_file():
    with pytest.raises(brelan.Error) as raised:
        brelan.Deck("nowhere.dat")
    assert raised.value.file == "nowhere.dat" and raised.value.line == 0


def test_a_copy_and_a_pickled_deck_are_decks_of_their_own(examples):
    deck = brelan.Deck("stage.dat")
    for other in (deck.copy(), pickle.loads(pickle.dumps(deck))):
        other.groups[0].points[0].y = 1.5
        assert deck.groups[0].points[0].y == 2.0
        assert other.file == deck.file


def test_check_says_what_the_command_says(examples):
    # Both scales, -3.28084 and 3.28084, have six digits; five are kept.
    messages = brelan.Deck("mirror.dat").check()
    assert [(m.id, m.line, m.ends_run) for m in messages] == [("lost-digits", 23, False)] * 2
    assert "SCX -3.28084: five digits are kept" in messages[0].text


def test_shapes_stand_in_the_coordinates_of_the_mesh(examples):
    shapes = brelan.Deck("stage.dat").shapes
    pit = [shape for shape in shapes if shape.group == 1][0]
    assert pit.closed and np.array_equal(pit.points[:4], [[0, 2], [0, 1], [2, 1], [2, 2]])
