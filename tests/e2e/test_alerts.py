"""Alerts that meet one another, the engine's end, a wish to quit or a hasty hand."""

import pytest
from harness.texts import QUIT_QUESTION, French
from harness.vendor import DESCRIPTION_PATH, ENGINE_PATH

TITLE = "Varlen"
RESTART_QUESTION = "Redémarrer maintenant ?"
FATAL_TEXT = "Plus de place"


@pytest.fixture
def run(rehearsal):
    """A run whose engine works until the gate "done", also after a restart at step 7."""
    rehearsal.scenario(f"mark-on-interrupt {rehearsal.mark_of('interrupted')}", "step Au travail",
                       rehearsal.gate("done"), "end 0", "[step 7]", "step Reprise", rehearsal.gate("done"), "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Au travail")
    return run


def ask_to_cancel(run):
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)


def alert_texts(run):
    return sorted(alert.text for alert in run.window.look().alerts)


def end_well(rehearsal, run):
    rehearsal.open_gate("done")
    assert run.status() == 0
    assert not rehearsal.mark_of("interrupted").exists()


# A hasty hand.

def test_twenty_fast_clicks_on_cancel_ask_one_question(rehearsal, desktop, run):
    desktop.click(run.window.area_of(French.cancel), times=20)
    run.window.await_alert(French.abort_installation)
    run.window.press(French.no)
    run.window.await_no_alert()
    run.send(1, "Plus loin")
    run.window.await_step("Plus loin")
    assert run.window.look().alerts == ()
    end_well(rehearsal, run)


def test_cancel_pressed_twenty_times_by_a_screen_reader_asks_one_question(rehearsal, run):
    run.window.press(French.cancel, times=20)
    run.window.await_alert(French.abort_installation)
    run.window.press_in_vain(French.cancel)
    run.send(1, "Plus loin")
    run.window.await_step("Plus loin")
    assert alert_texts(run) == [French.abort_installation]
    run.window.press(French.no)
    run.window.await_no_alert()
    end_well(rehearsal, run)


def test_a_return_key_pressed_twenty_times_never_cancels(rehearsal, desktop, run):
    desktop.type_keys(TITLE, *["Return"] * 20)
    run.send(1, "Plus loin")
    run.window.await_step("Plus loin")
    assert len(run.window.look().alerts) <= 1
    end_well(rehearsal, run)


# The engine goes on behind the question of Cancel.

@pytest.mark.parametrize("code, status", [("0", 0), ("3", 2)])
def test_the_engines_end_ends_the_run_under_the_cancel_question(rehearsal, run, code, status):
    ask_to_cancel(run)
    run.send(3, code)
    assert run.status() == status


def test_a_fatal_error_comes_before_the_cancel_question(rehearsal, run):
    ask_to_cancel(run)
    run.send(3, FATAL_TEXT)
    run.window.await_alert(FATAL_TEXT)
    assert alert_texts(run) == sorted([FATAL_TEXT, French.abort_installation])
    rehearsal.acknowledge(run, FATAL_TEXT)
    assert not rehearsal.mark_of("interrupted").exists()


def test_a_restart_question_comes_before_the_cancel_question(rehearsal, desktop, run):
    ask_to_cancel(run)
    run.send(5, f"07{RESTART_QUESTION}")
    run.window.await_alert(RESTART_QUESTION)
    run.window.await_focus(French.yes)
    desktop.type_keys(TITLE, "Return")
    run.window.await_step("Reprise")
    assert alert_texts(run) == [French.abort_installation]
    run.window.await_focus(French.no)
    desktop.type_keys(TITLE, "Return")
    run.window.await_no_alert()
    rehearsal.open_gate("done")
    assert run.status() == 0


def test_a_question_under_another_takes_no_answer(rehearsal, desktop, run):
    ask_to_cancel(run)
    run.send(5, f"07{RESTART_QUESTION}")
    run.window.await_alert(RESTART_QUESTION)
    run.window.await_focus(French.yes)
    run.window.press_in_vain(French.yes, alert=French.abort_installation)
    desktop.type_keys(TITLE, "Return")
    run.window.await_step("Reprise")
    run.window.press(French.no, alert=French.abort_installation)
    run.window.await_no_alert()
    rehearsal.open_gate("done")
    assert run.status() == 0


def test_a_restart_refused_ends_the_run_under_the_cancel_question(rehearsal, desktop, run):
    ask_to_cancel(run)
    run.send(5, f"07{RESTART_QUESTION}")
    run.window.await_alert(RESTART_QUESTION)
    run.window.await_focus(French.yes)
    desktop.type_keys(TITLE, "Tab", "Return")
    assert run.status() == 2


# A wish to quit while an alert stands is not heard.

def stay_with_the_cancel_question(rehearsal):
    run = at_work(rehearsal)
    ask_to_cancel(run)
    return run, French.abort_installation, ["Tab", "Return"], 2


def stay_with_the_quit_question(rehearsal):
    run = at_work(rehearsal)
    rehearsal.desktop.type_keys(TITLE, "ctrl+q")
    return run, QUIT_QUESTION, ["Tab", "Return"], 0


def stay_with_the_restart_question(rehearsal):
    run = at_work(rehearsal)
    run.send(5, f"07{RESTART_QUESTION}")
    return run, RESTART_QUESTION, ["Tab", "Return"], 2


def stay_with_the_engines_fatal_error(rehearsal):
    run = at_work(rehearsal)
    run.send(3, FATAL_TEXT)
    return run, FATAL_TEXT, ["Return"], 1


def stay_with_the_advice_on_connections(rehearsal):
    return rehearsal.start(), French.no_connection, ["Return"], 1


def stay_with_the_question_for_consent(rehearsal):
    return rehearsal.start("--uninstall"), French.uninstallation_consent, ["Return"], 2


def at_work(rehearsal):
    rehearsal.scenario("step Au travail", "wait-owner-gone")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Au travail")
    return run


@pytest.mark.parametrize("stay", [
    stay_with_the_cancel_question, stay_with_the_quit_question, stay_with_the_restart_question,
    stay_with_the_engines_fatal_error, stay_with_the_advice_on_connections, stay_with_the_question_for_consent,
], ids=["cancel", "quit", "restart", "engine's fatal", "own fatal", "consent"])
def test_under_an_alert_nobody_can_quit(rehearsal, desktop, stay):
    run, text, answer, status = stay(rehearsal)
    buttons = run.window.await_alert(text).buttons
    run.window.await_focus(buttons[0])
    desktop.request_close(TITLE)
    desktop.request_close(TITLE, of_lowest=True)
    desktop.type_keys(TITLE, "ctrl+q", "Escape")
    assert alert_texts(run) == [text]
    desktop.type_keys(TITLE, *answer)
    assert run.status() == status
    answers_to_quit = [line for line in run.output() if line.startswith("returnCode: ")]
    assert answers_to_quit == (["returnCode:  1001"] if text == QUIT_QUESTION else [])


# A close request at any time asks whether to quit.

def while_the_description_is_awaited(rehearsal):
    vendor = rehearsal.vendor()
    vendor.set_faults({DESCRIPTION_PATH: {"stallAfterBytes": 0}})
    return rehearsal.start()


def while_the_engine_is_downloaded(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.set_faults({ENGINE_PATH: {"stallAfterBytes": len(rehearsal.sample_engine) // 2}})
    run = rehearsal.start()
    run.window.await_progress_beyond(40)
    return run


def while_cancel_is_disabled(rehearsal):
    run = at_work(rehearsal)
    run.send(6, "0")
    run.window.await_cancel(enabled=False)
    return run


def after_the_engine_died(rehearsal):
    rehearsal.scenario("step Au travail", "exit 1")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Au travail")
    run.await_no_zombies()
    return run


@pytest.mark.parametrize("reach", [
    while_the_description_is_awaited, while_the_engine_is_downloaded, at_work, while_cancel_is_disabled,
    after_the_engine_died,
], ids=["description", "download", "work", "no cancel", "engine dead"])
def test_a_close_request_asks_whether_to_quit_in_every_phase(rehearsal, desktop, reach):
    run = reach(rehearsal)
    before = run.window.main()
    desktop.request_close(TITLE)
    assert run.window.await_alert(QUIT_QUESTION).buttons == ("NO", "YES")
    run.window.press("NO")
    run.window.await_no_alert()
    assert run.window.main() == before
    desktop.request_close(TITLE)
    run.window.await_alert(QUIT_QUESTION)
    run.window.press("YES")
    assert run.status() == 0
    assert [line for line in run.output() if line.startswith("returnCode: ")] == [
        "returnCode:  1000", "returnCode:  1001"]
