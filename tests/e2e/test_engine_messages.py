"""What the window makes of each message of an engine."""

import pytest
from harness.messages import CANCEL, END, ERROR, FIRST_UNASSIGNED, LONGEST_TEXT, NETWORK, PROGRESS, RESTART, STEP, after
from harness.reports import log_in
from harness.texts import French
from harness.waiting import eventually


def test_the_engine_speaks_each_kind_of_message(rehearsal):
    rehearsal.scenario("raw 1 Première étape", "raw 0 42", "raw 4 Une erreur", "raw 6 0", rehearsal.gate("first"),
                       "raw 1 ", "raw 0 100", "raw 2 0", "raw 6 1", rehearsal.gate("second"), "raw 3 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    window = run.window
    window.await_step("Première étape")
    window.await_progress(42)
    window.await_error("Une erreur")
    window.await_cancel(enabled=False)
    rehearsal.open_gate("first")
    window.await_step("")
    window.await_progress(100)
    window.await_error("")
    window.await_cancel(enabled=True)
    rehearsal.open_gate("second")
    assert run.status() == 0


def test_progress_takes_whole_numbers_alone(run):
    for accepted, position in [("42", 42), ("+7", 7), ("007", 7), ("150", 100), ("-5", 0)]:
        assert after(run, (PROGRESS, accepted)).progress == position, accepted
    after(run, (PROGRESS, "33"))
    for refused in ["", " 42", "42 ", "42\n", "4 2", "0x2a", "42.0", "4e1", "--1", "+", "-", "+-1", "४२",
                    "9223372036854775808"]:
        assert after(run, (PROGRESS, refused)).progress == 33, refused
    run.kill()


def test_network_conditions_are_told_and_cleared(run):
    assert after(run, (NETWORK, "1")).error == French.network_unavailable
    assert after(run, (NETWORK, "5")).error == French.network_unavailable
    assert after(run, (NETWORK, "")).error == French.network_unavailable
    assert after(run, (NETWORK, "2")).error == French.metered_network
    assert after(run, (NETWORK, " 0")).error == French.metered_network
    assert after(run, (NETWORK, "0")).error == ""
    run.kill()


def test_steps_and_errors_are_shown_as_they_stand(run):
    markup = '<b>Étape</b> & <a href="x">lien</a> %1\n\tdeux'
    run.send(STEP, markup)
    run.window.await_step(markup)
    run.send(ERROR, markup)
    run.window.await_error(markup)
    run.send(ERROR, "")
    run.window.await_error("")
    run.kill()


def test_cancel_is_disabled_and_enabled_by_0_and_1_alone(run):
    assert not after(run, (CANCEL, "0")).cancel_enabled
    assert not after(run, (CANCEL, "2"), (CANCEL, ""), (CANCEL, "yes"), (CANCEL, "1 ")).cancel_enabled
    assert after(run, (CANCEL, "1")).cancel_enabled
    assert after(run, (CANCEL, "-1"), (CANCEL, " 0")).cancel_enabled
    run.kill()


def test_unknown_messages_are_ignored(run):
    before = after(run)
    assert after(run, (FIRST_UNASSIGNED, "42"), (-1, "42"), (2**31 - 1, ""), (-2**31, "x")) == before
    run.kill()


def test_a_text_of_4096_bytes_without_an_end_is_shown_whole(run):
    text = "x" * LONGEST_TEXT
    run.send(STEP, text)
    run.window.await_step(text)
    run.kill()


def test_a_text_ends_at_its_first_nul_or_with_the_message(run):
    assert after(run, (ERROR, b"jusqu'ici\0pas plus loin")).error == "jusqu'ici"
    assert after(run, (ERROR, b"court")).error == "court"
    run.kill()


def test_a_message_that_is_too_long_is_refused_and_the_next_one_read(run):
    assert after(run, (ERROR, "x" * (LONGEST_TEXT + 1))).error == ""
    emsgsize = 90
    assert f"mach_msg() failed with code {emsgsize:#x}" in run.output()
    run.kill()


def test_a_message_that_is_not_utf8_stops_the_program_and_says_so(run):
    run.send(STEP, b"\xff\xfe")
    assert run.abort_reason() == "invalid input: an engine message is not valid UTF-8"


@pytest.mark.parametrize("code, status", [("0", 0), ("3", 2)])
def test_the_engines_end_is_the_runs_end(run, code, status):
    run.send(END, code)
    assert run.status() == status


def test_success_with_the_advice_to_restart_goes_on_until_the_end(run):
    assert after(run, (END, "1")).error == French.installation_ended_well
    run.send(END, "0")
    assert run.status() == 0


def test_other_end_codes_mean_nothing(run):
    before = after(run)
    assert after(run, (END, "2"), (END, "4"), (END, "-1"), (END, "00000000000000000002")) == before
    run.kill()


@pytest.mark.parametrize("text", ["Le disque est plein", "", "0 ", "zéro"])
def test_an_end_that_is_no_number_is_fatal_and_shown_as_it_stands(rehearsal, run, text):
    run.send(END, text)
    assert run.window.await_alert(text).buttons == ("OK",)
    assert run.window.look().main is None
    [vendor] = rehearsal.vendors
    eventually(vendor.report_bodies, "the crash report")
    assert log_in(vendor.report_bodies()[0]) == run.log_file().read_bytes()
    run.window.press("OK")
    assert run.status() == 1


def test_a_restart_question_shows_what_follows_its_number(run):
    run.send(RESTART, "07Redémarrer ?")
    alert = run.window.await_alert("Redémarrer ?")
    assert alert.buttons == (French.yes, French.no)
    run.window.press(French.no)
    assert run.status() == 2


@pytest.mark.parametrize("number, step", [("07", "7"), ("12", "12"), ("+3", "3"), ("-1", "-1")])
def test_a_restart_begins_at_the_number_given(run, number, step):
    run.send(RESTART, number)
    run.window.await_alert("")
    run.window.press(French.yes)
    run.await_log(f"Spawning orvane with args --pid {run.process} --owner {run.service_name()}")
    eventually(lambda: any(f"--step {step} " in line for line in run.log()), "the restart")
    run.kill()


def test_messages_wait_while_a_restart_question_is_open(run):
    run.send(RESTART, "07Redémarrer ?")
    run.window.await_alert("Redémarrer ?")
    run.send(END, "0")
    assert run.is_running()
    run.window.press(French.yes)
    assert run.status() == 0
    assert sum(line.startswith("Spawning orvane") for line in run.log()) == 2


@pytest.mark.parametrize("text", ["7", ""])
def test_a_restart_question_without_room_for_its_number_stops_the_program(run, text):
    run.send(RESTART, text)
    assert run.abort_reason() == "invalid input: a restart question is shorter than its step number"


@pytest.mark.parametrize("text", [" 7", "7x", "é"])
def test_a_restart_question_that_begins_with_no_number_stops_the_program_once_answered(run, text):
    run.send(RESTART, text)
    run.window.await_alert("")
    run.window.press(French.yes)
    assert run.abort_reason() == "invalid input: a restart question does not begin with a step number"


def test_an_engine_that_is_gone_before_the_restart_is_not_missed(rehearsal):
    rehearsal.scenario("restart 07 Redémarrer ?", "exit 0", "[step 7]", "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_alert("Redémarrer ?")
    eventually(lambda: not run.engines(), "the end of the first engine")
    run.window.press(French.yes)
    assert run.status() == 0
