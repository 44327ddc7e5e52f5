"""Runs in memory: the same files as the batch program's, side by side in threads."""

import os
import pathlib
import subprocess
import threading
import time

import brelan
import pytest
from conftest import base_mesh, one_group


def test_files_are_those_of_the_batch_program(examples, tmp_path):
    program = pathlib.Path(os.environ["BRELAN2D"])
    for deck, result in (("stage.dat", "Stage.Mes"), ("pit_stages.dat", "PitStages.Mes"), ("dam.dat", "Earth_Dam.Mes")):
        run = brelan.Deck(deck).run(sound=False)
        subprocess.run([os.environ["BRELAN"], "run", "-q", "--cut", "rules", "--program", program, deck], check=False)
        assert run.files[result] == (examples / result).read_bytes(), deck
        for name in ("MatAD.Man", "Group.Man", "Group.Pos"):
            if name in run.files:
                assert run.files[name] == (examples / name).read_bytes(), (deck, name)


def test_nothing_is_written_to_disk(examples):
    before = sorted(path.name for path in examples.iterdir())
    brelan.Deck("pit_stages.dat").run()
    assert sorted(path.name for path in examples.iterdir()) == before


def test_meshes_that_a_deck_names_come_from_disk_or_are_given(examples):
    deck = brelan.Deck("pit_join.dat")
    with pytest.raises(brelan.RunError) as raised:
        deck.run()
    assert raised.value.file == "PitRight.Mes"
    assert raised.value.message == "expected a file, but there is none of this name"
    left = brelan.Deck("pit_left.dat").run().mesh
    right = brelan.Deck("pit_right.dat").run(files={"PitLeft.Mes": left}).mesh
    whole = deck.run(files={"PitLeft.Mes": left, "PitRight.Mes": right}).mesh
    assert whole.quality().area.sum() == pytest.approx(left.quality().area.sum() + right.quality().area.sum())


SLOPES = one_group(
    [(2.2451, 24.0), (13.0918, 18.5764), (18.0764, 18.5764), (21.7853, 24.0)],
    kind="4 0",
    material="0 1.9 0 0 0",
    width=40.0,
    height=24.0,
)


def test_the_sound_cut_is_taken_where_the_rules_leave_an_unsound_mesh():
    text = SLOPES.replace("  4 0\n  0 1.9 0 0 0\n", "  1 0\n  0 0\n")
    deck = brelan.Deck(text)
    rules, sound, chosen = deck.run(sound=False), deck.run(sound=True), deck.run()
    assert rules.cut == "rules" and not rules.mesh.soundness()
    assert sound.cut == "sound" and sound.mesh.soundness()
    assert chosen.cut == "sound" and chosen.mesh.text() == sound.mesh.text()
    assert [message.id for message in chosen.messages][:1] == ["cut"]


def test_a_run_that_fails_can_be_looked_at():
    deck = brelan.Deck(base_mesh().replace("  1\nBmesh.dat", "  1\nBmesh.dat", 1).replace("  1 1\n  0 0\n", "  1\n"))
    run = deck.run(check=False)
    assert not run.finished and run.status in (1, 2) and run.mesh is None
    assert run.messages[0].ends_run and run.messages[0].line > 0
    with pytest.raises(brelan.RunError) as raised:
        deck.run()
    assert raised.value.run.status == run.status and raised.value.line == run.messages[0].line


def test_activity_tells_when_elements_come_and_go(examples):
    activity = brelan.Deck("stage.dat").run().activity
    # The table of the manual: ground 1 and 3 goes at step 2, its fill 9 and 10 comes at 6, the wall stands from 1.
    assert activity.elements.tolist() == [1, 3, 9, 10, 11, 12]
    assert activity.comes.tolist() == [0, 0, 6, 6, 1, 1]
    assert activity.goes.tolist() == [2, 2, 0, 0, 0, 0]
    assert activity.old_materials.tolist() == [2, 2, 5, 5, 0, 0]
    assert activity.steps == [1, 2, 6]
    assert activity.absent(0).tolist() == [9, 10, 11, 12]
    assert activity.absent(2).tolist() == [1, 3, 9, 10]
    assert activity.absent(6).tolist() == [1, 3]


def test_eight_threads_run_eight_decks():
    decks = [brelan.Deck(one_group([(2.0, 12.0), (2.0, 12.0 - k)], kind="2 0", height=12.0)) for k in range(1, 9)]
    alone = [deck.run(sound=False).mesh.text() for deck in decks]
    found = [None] * len(decks)

    def work(k):
        for _ in range(5):
            found[k] = decks[k].run(sound=False).mesh.text()

    threads = [threading.Thread(target=work, args=(k,)) for k in range(len(decks))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == alone and len(set(alone)) == 8


def test_the_interpreter_goes_on_while_a_deck_runs():
    deck = brelan.Deck(base_mesh(width=300.0, height=300.0))
    ended = threading.Event()

    def work():
        deck.run(sound=False)
        ended.set()

    thread = threading.Thread(target=work)
    thread.start()
    turns = 0
    while not ended.is_set():
        turns += 1
        time.sleep(0.001)
    thread.join()
    assert turns > 5  # with the lock held there would be one or two


def test_listings_are_kept_where_they_are_asked_for():
    deck = brelan.Deck(base_mesh())
    assert "work/Coord.dat" not in deck.run().files
    assert len(deck.run(listings=True).files.text("work/coord.DAT").splitlines()) >= 15
