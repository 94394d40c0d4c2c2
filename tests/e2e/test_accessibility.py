"""The window as assistive technology finds it."""

import pytest
from harness.texts import French


@pytest.fixture
def run(rehearsal):
    rehearsal.scenario("step Copie", "error Erreur", "progress 30", rehearsal.gate("seen"), "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_progress(30)
    return run


def test_every_control_has_a_role_and_a_name(rehearsal, run):
    assert run.window.controls() == [("label", "Copie"), ("label", "Erreur"), ("progress bar", "Copie"),
                                     ("push button", French.cancel)]
    rehearsal.open_gate("seen")
    assert run.status() == 0


def test_asking_for_a_child_that_is_not_there_is_answered_with_none(rehearsal, run):
    assert run.window.children_beyond_the_last() == []
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    assert run.window.children_beyond_the_last() == []
    run.window.press(French.no)
    run.window.await_no_alert()
    rehearsal.open_gate("seen")
    assert run.status() == 0
