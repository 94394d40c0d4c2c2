"""The user's ways out: Cancel, which stops the engine, and Quit, which leaves it alone."""

from harness.texts import QUIT_QUESTION, French
from harness.vendor import ENGINE_PATH

WINDOW_TITLE = "Varlen"


def stalled_download(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.set_faults({ENGINE_PATH: {"stallAfterBytes": len(rehearsal.sample_engine) // 2}})
    return vendor


def ask_to_cancel(run, question=French.abort_installation):
    run.window.press(French.cancel)
    alert = run.window.await_alert(question)
    assert alert.buttons == (French.no, French.yes)


def engine_that_notes_an_interrupt(rehearsal):
    rehearsal.scenario(f"mark-on-interrupt {rehearsal.mark_of('interrupted')}", "step Au travail",
                       rehearsal.gate("done"), "end 0")
    return rehearsal.vendor_with_engine()


def test_cancel_declined_during_a_download_changes_nothing(rehearsal):
    rehearsal.scenario("end 0")
    vendor = stalled_download(rehearsal)
    run = rehearsal.start()
    run.window.main()
    ask_to_cancel(run)
    run.window.press(French.no)
    run.window.await_no_alert()
    vendor.release()
    assert run.status() == 0


def test_cancel_confirmed_during_a_download_ends_the_run_and_keeps_what_arrived(rehearsal):
    vendor = stalled_download(rehearsal)
    run = rehearsal.start()
    run.window.main()
    run.await_log("Downloading latest orvane")
    ask_to_cancel(run)
    run.window.press(French.yes)
    assert run.status() == 2
    vendor.release()
    assert run.log()[-1] == "Downloading latest orvane"
    assert not [line for line in run.output() if line.startswith("Deinit: ")]


def test_the_download_goes_on_behind_the_cancel_question(rehearsal):
    rehearsal.scenario("step Au travail", "progress 30", rehearsal.gate("seen"), "end 0")
    vendor = stalled_download(rehearsal)
    run = rehearsal.start()
    run.window.main()
    ask_to_cancel(run)
    vendor.release()
    run.window.await_step("Au travail")
    run.window.await_progress(30)
    assert run.window.await_alert(French.abort_installation)
    run.window.press(French.no)
    run.window.await_no_alert()
    rehearsal.open_gate("seen")
    assert run.status() == 0


def test_cancel_declined_leaves_the_engine_alone(rehearsal):
    engine_that_notes_an_interrupt(rehearsal)
    run = rehearsal.start()
    run.window.await_step("Au travail")
    ask_to_cancel(run)
    run.window.press(French.no)
    run.window.await_no_alert()
    rehearsal.open_gate("done")
    assert run.status() == 0
    assert not rehearsal.mark_of("interrupted").exists()


def test_cancel_confirmed_interrupts_the_engine(rehearsal):
    engine_that_notes_an_interrupt(rehearsal)
    run = rehearsal.start()
    run.window.await_step("Au travail")
    ask_to_cancel(run)
    run.window.press(French.yes)
    assert run.status() == 2
    rehearsal.await_mark("interrupted")


def test_cancel_asks_about_the_uninstallation_during_one(rehearsal):
    engine_that_notes_an_interrupt(rehearsal)
    run = rehearsal.start("--uninstall")
    run.window.await_alert(French.uninstallation_consent)
    run.window.press(French.yes)
    run.window.await_step("Au travail")
    ask_to_cancel(run, French.abort_uninstallation)
    run.window.press(French.yes)
    assert run.status() == 2


def test_cancel_is_reached_by_the_keyboard_and_its_first_answer_is_no(rehearsal, desktop):
    engine_that_notes_an_interrupt(rehearsal)
    run = rehearsal.start()
    run.window.await_step("Au travail")
    desktop.type_keys(WINDOW_TITLE, "Return")
    run.window.await_alert(French.abort_installation)
    desktop.type_keys(WINDOW_TITLE, "Escape", "Return")
    run.window.await_no_alert()
    rehearsal.open_gate("done")
    assert run.status() == 0


def test_quit_declined_prints_the_answer_and_the_run_goes_on(rehearsal, desktop):
    engine_that_notes_an_interrupt(rehearsal)
    run = rehearsal.start()
    run.window.await_step("Au travail")
    desktop.type_keys(WINDOW_TITLE, "ctrl+q")
    assert run.window.await_alert(QUIT_QUESTION).buttons == ("NO", "YES")
    run.window.press("NO")
    run.window.await_no_alert()
    run.await_output("returnCode:  1000")
    rehearsal.open_gate("done")
    assert run.status() == 0


def test_quit_confirmed_ends_the_run_and_the_engine_outlives_it(rehearsal, desktop):
    rehearsal.scenario(f"mark-on-interrupt {rehearsal.mark_of('interrupted')}", "step Au travail",
                       "wait-owner-gone", f"mark {rehearsal.mark_of('survived')}")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Au travail")
    desktop.type_keys(WINDOW_TITLE, "ctrl+q")
    run.window.await_alert(QUIT_QUESTION)
    run.window.press("YES")
    assert run.status() == 0
    assert run.output()[-1] == "returnCode:  1001"
    rehearsal.await_mark("survived")
    assert not rehearsal.mark_of("interrupted").exists()


def test_closing_the_window_asks_the_same_question_and_never_ends_the_run_by_itself(rehearsal, desktop):
    engine_that_notes_an_interrupt(rehearsal)
    run = rehearsal.start(languages="de_CH")
    run.window.await_step("Au travail")
    desktop.request_close(WINDOW_TITLE)
    assert run.window.await_alert(QUIT_QUESTION).buttons == ("NO", "YES")
    run.window.press("NO")
    run.window.await_no_alert()
    assert run.window.main().step == "Au travail"
    desktop.request_close(WINDOW_TITLE)
    run.window.await_alert(QUIT_QUESTION)
    run.window.press("YES")
    assert run.status() == 0
    assert run.output()[-2:] == ["returnCode:  1000", "returnCode:  1001"]


def test_closing_an_alert_answers_nothing(rehearsal, desktop):
    run = rehearsal.start("--uninstall")
    run.window.await_alert(French.uninstallation_consent)
    desktop.request_close(WINDOW_TITLE)
    desktop.type_keys(WINDOW_TITLE, "Escape")
    run.window.await_alert(French.uninstallation_consent)
    run.window.press(French.no)
    assert run.status() == 2
