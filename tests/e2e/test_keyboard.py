"""Everything can be reached and answered by the keyboard alone."""

import pytest
from harness.texts import QUIT_QUESTION, French
from harness.waiting import eventually

TITLE = "Varlen"
RESTART_QUESTION = "Redémarrer maintenant ?"


@pytest.fixture
def press(desktop):
    return lambda *keys: desktop.type_keys(TITLE, *keys)


@pytest.fixture
def run(rehearsal):
    rehearsal.scenario("step Au travail", "wait-interrupt", "[step 7]", "step Reprise", rehearsal.gate("done"),
                       "fatal Plus de place")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Au travail")
    return run


def test_an_uninstallation_from_consent_to_its_failure(rehearsal, press):
    rehearsal.scenario("step Au travail", rehearsal.gate("ask"), f"restart 07 {RESTART_QUESTION}", "wait-interrupt",
                       "[step 7]", "fatal Plus de place")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start("--uninstall")
    window = run.window
    window.await_alert(French.uninstallation_consent)
    window.await_focus(French.no)
    press("Tab")
    window.await_focus(French.yes)
    press("Return")
    window.await_step("Au travail")
    window.await_focus(French.cancel)
    press("space")
    window.await_alert(French.abort_uninstallation)
    window.await_focus(French.no)
    press("Return")
    window.await_no_alert()
    rehearsal.open_gate("ask")
    window.await_alert(RESTART_QUESTION)
    window.await_focus(French.yes)
    press("Return")
    window.await_alert("Plus de place")
    window.await_focus("OK")
    eventually(vendor.report_bodies, "the crash report")
    press("Return")
    assert run.status() == 1


def test_the_buttons_of_an_alert_are_walked_through_in_both_directions(run, press):
    press("Return")
    run.window.await_focus(French.no)
    for key, expected in [("Tab", French.yes), ("Tab", French.no), ("shift+Tab", French.yes), ("Left", French.no),
                          ("Right", French.yes)]:
        press(key)
        run.window.await_focus(expected)
    press("space")
    assert run.status() == 2


@pytest.mark.parametrize("menu_key", ["shift+F10", "Menu"])
def test_the_menu_opens_and_quits(run, press, menu_key):
    press(menu_key, "Down", "Return")
    run.window.await_alert(QUIT_QUESTION)
    run.window.await_focus("NO")
    press("Tab")
    run.window.await_focus("YES")
    press("Return")
    assert run.status() == 0


def test_escape_closes_the_menu_and_answers_no_alert(run, press):
    press("shift+F10", "Escape", "Return")
    run.window.await_alert(French.abort_installation)
    run.window.await_focus(French.no)
    press("Escape", "Tab")
    run.window.await_focus(French.yes)
    press("Return")
    assert run.status() == 2


def test_the_keyboard_comes_back_to_cancel_once_it_is_enabled_again(run, press):
    run.window.await_focus(French.cancel)
    run.send(6, "0")
    run.window.await_cancel(enabled=False)
    run.window.await_focus(None)
    press("Return", "space")
    run.send(6, "1")
    run.window.await_cancel(enabled=True)
    run.window.await_focus(French.cancel)
    assert run.window.look().alerts == ()
    press("Return")
    run.window.await_alert(French.abort_installation)
    press("Tab", "Return")
    assert run.status() == 2


def test_a_text_too_long_for_its_place_is_scrolled(run, press):
    text = "mot " * 1000
    run.send(1, text)
    run.window.await_step(text)
    bar_top = run.window.area_of(text, "progress bar")[1]
    press("Tab")
    run.window.await_focus(text)
    assert run.window.area_of(text, "label")[3] > bar_top
    press("End")
    eventually(lambda: run.window.area_of(text, "label")[3] < bar_top, "the text's end in sight")
    press("Home")
    eventually(lambda: run.window.area_of(text, "label")[3] > bar_top, "the text's beginning in sight")
    press("Tab")
    run.window.await_focus(French.cancel)
    press("Return")
    run.window.await_alert(French.abort_installation)
    press("Tab", "Return")
    assert run.status() == 2
