"""Engines that do not behave: that cannot run, die, keep silent, flood, or go on after they were told to stop."""

import pytest
from harness.engines import program_of_another_machine, shell_engine, speaker, waiting_for_the_owners_end
from harness.texts import French
from harness.waiting import eventually, eventually_equal

ORDINARY_SIGNALS = (1 << 31) - 1  # the next two are the C library's own
SIGINT_BIT = 1 << 1


def start_with_engine(rehearsal, engine):
    """The engine lies on the machine and is the one described."""
    rehearsal.vendor().publish(engine)
    rehearsal.install_engine(engine)
    return rehearsal.start()


def confirm_cancel(run):
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.window.press(French.yes)
    assert run.status() == 2


# Engines that cannot run or say nothing.

@pytest.mark.parametrize("is_there", [True, False], ids=["on the machine", "downloaded"])
def test_a_program_of_another_machine_is_fatal(rehearsal, is_there):
    engine = program_of_another_machine(rehearsal.sample_engine)
    rehearsal.vendor().publish(engine)
    if is_there:
        rehearsal.install_engine(engine)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1].startswith("Cannot spawn orvane: ")


@pytest.mark.parametrize("work", ["exit 0", "exit 1", "kill -SEGV $$", "kill -KILL $$"],
                         ids=["ends", "fails", "crashes", "is killed"])
def test_an_engine_that_ends_at_once_without_a_word_leaves_the_window_waiting_and_cancel_ends_the_run(rehearsal, work):
    began = rehearsal.mark_of("began")
    run = start_with_engine(rehearsal, shell_engine("exit 0", f"touch '{began}'\n{work}"))
    rehearsal.await_mark("began")
    eventually(lambda: not run.engines(), "the end of the engine")
    run.await_no_zombies()
    view = run.window.main()
    assert (view.step, view.error, view.cancel_enabled) == (French.preparing_installation, "", True)
    confirm_cancel(run)


def test_an_engine_that_never_speaks_is_waited_for_and_cancel_interrupts_it(rehearsal):
    rehearsal.scenario(f"mark-on-interrupt {rehearsal.mark_of('interrupted')}", f"mark {rehearsal.mark_of('began')}",
                       "wait-interrupt")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    rehearsal.await_mark("began")
    assert run.window.main().step == French.preparing_installation
    confirm_cancel(run)
    rehearsal.await_mark("interrupted")


def test_an_engine_that_ignores_the_interrupt_outlives_the_run_and_finds_nobody_to_speak_to(rehearsal):
    refused = rehearsal.mark_of("refused")
    run = start_with_engine(rehearsal, speaker(f"""
signal.signal(signal.SIGINT, signal.SIG_IGN)
try:
    while True:
        say(STEP, "Je continue")
except ConnectionRefusedError:
    open({str(refused)!r}, "w").close()
"""))
    run.window.await_step("Je continue")
    confirm_cancel(run)
    rehearsal.await_mark("refused")


# Floods.

def step_number(view):
    """Of a flood's step; 0 before it."""
    number = view.main.step.partition(" ")[0] if view.main else ""
    return int(number) if number.isdigit() else 0


def watch_flood(run, last):
    """Looks at the window until it shows the last step; the numbers seen, each look's in its turn."""
    seen = []

    def is_over():
        seen.append(step_number(run.window.look()))
        return seen[-1] == last

    eventually(is_over, f"step {last}", deadline=300)
    return seen


def flood(rehearsal, count, text=" fichiers"):
    rehearsal.scenario("step Prêt", rehearsal.gate("begin"), f"flood {count} {text}", "wait-interrupt")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Prêt")
    before = run.peak_memory()
    rehearsal.open_gate("begin")
    return run, before


MEBIBYTE = 1 << 20
FLOODS = [pytest.param(50_000, " fichiers", id="50000 messages"),
          pytest.param(10_000, " mots" * 800, id="10000 long messages", marks=pytest.mark.long),
          pytest.param(1_000_000, " fichiers", id="1000000 messages", marks=pytest.mark.long)]


@pytest.mark.parametrize("count, text", FLOODS)
def test_a_flood_is_shown_in_its_order_to_its_end_in_bounded_memory(rehearsal, count, text):
    run, before = flood(rehearsal, count, text)
    seen = watch_flood(run, count)
    assert seen == sorted(seen)
    if not rehearsal.is_sanitized:  # a sanitizer keeps what was freed
        assert run.peak_memory() - before < 8 * MEBIBYTE
    run.kill()


def test_cancel_is_asked_and_obeyed_in_the_midst_of_a_flood(rehearsal):
    run, _ = flood(rehearsal, 10**9)
    eventually(lambda: step_number(run.window.look()) > 1000, "the flood")
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    behind = step_number(run.window.look())
    eventually(lambda: step_number(run.window.look()) > behind, "the flood behind the question")
    run.window.press(French.yes)
    assert run.status() == 2


def behind_a_fatal_alert(rehearsal, *lines):
    """A run whose engine plays the lines once its fatal message is on the screen."""
    rehearsal.scenario("fatal Le disque est plein", rehearsal.gate("shown"), *lines, "wait-owner-gone")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_alert("Le disque est plein")
    before = run.peak_memory()
    rehearsal.open_gate("shown")
    return run, before


@pytest.mark.parametrize("lines", [["cancel 0"], ["flood 600  fichiers"], ["raw 7 x"] * 600],
                         ids=["cancel button", "600 steps", "600 messages of an ignored type"])
@pytest.mark.parametrize("code, status", [(0, 0), (3, 2)])
def test_an_end_is_obeyed_at_once_while_a_fatal_alert_is_open(rehearsal, lines, code, status):
    run, _ = behind_a_fatal_alert(rehearsal, *lines, f"end {code}")
    assert run.status() == status


@pytest.mark.parametrize("count", [20_000, pytest.param(1_000_000, marks=pytest.mark.long)])
def test_a_flood_while_a_fatal_alert_is_open_is_taken_in_bounded_memory(rehearsal, count):
    run, before = behind_a_fatal_alert(rehearsal, f"flood {count} " + " mots" * 800, "cancel 0",
                                       f"mark {rehearsal.mark_of('taken')}")
    rehearsal.await_mark("taken")
    if not rehearsal.is_sanitized:  # a sanitizer keeps what was freed
        assert run.peak_memory() - before < 8 * MEBIBYTE
    rehearsal.acknowledge(run, "Le disque est plein")


# Restarts.

@pytest.mark.parametrize("restarts", [4, pytest.param(50, marks=pytest.mark.long)])
def test_restart_after_restart_is_asked_and_obeyed_and_leaves_nothing_behind(rehearsal, restarts):
    lines = ["restart 01 Encore ?", "wait-interrupt"]
    for step in range(1, restarts):
        lines += [f"[step {step}]", f"step Étape {step}", f"restart {step + 1:02} Encore {step} ?", "wait-interrupt"]
    rehearsal.scenario(*lines, f"[step {restarts}]", "step Fin", rehearsal.gate("counted"), "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_alert("Encore ?")
    descriptors = run.descriptors()
    run.window.press(French.yes)
    for step in range(1, restarts):
        run.window.await_alert(f"Encore {step} ?")
        run.window.press(French.yes)
    run.window.await_step("Fin")
    run.await_no_zombies()
    assert len(run.engines()) == 1
    eventually_equal(run.descriptors, descriptors, "the open descriptors")
    rehearsal.open_gate("counted")
    assert run.status() == 0
    started = [line for line in run.log() if line.startswith("Spawning orvane with args --pid")]
    assert [line.partition("--step ")[2].split()[0] for line in started] == [str(step) for step in range(restarts + 1)]


def test_old_and_new_engine_speak_at_once_and_each_is_heard_in_its_order(rehearsal):
    """The old engine ignores the interrupt and goes on with the error line while the new one writes steps."""
    run = start_with_engine(rehearsal, speaker(f"""
signal.signal(signal.SIGINT, signal.SIG_IGN)
if option("--step") == "0":
    say(RESTART, "07Redémarrer ?")
    await_file({str(rehearsal.mark_of('new'))!r})
    for number in range(20_000):
        say(ERROR, f"ancien {{number}}")
else:
    open({str(rehearsal.mark_of('new'))!r}, "w").close()
    for number in range(20_000):
        say(STEP, f"nouveau {{number}}")
await_file({str(rehearsal.mark_of('end'))!r})
if option("--step") == "7":
    say(END, "0")
"""))
    run.window.await_alert("Redémarrer ?")
    run.window.press(French.yes)
    steps, errors = [], []

    def both_are_at_their_end():
        if view := run.window.look().main:
            steps.append(step_of(view.step, "nouveau "))
            errors.append(step_of(view.error, "ancien "))
        return steps and steps[-1] == errors[-1] == 19_999

    eventually(both_are_at_their_end, "the last words of both engines")
    assert len(run.engines()) == 2
    assert steps == sorted(steps) and errors == sorted(errors)
    rehearsal.open_gate("end")
    assert run.status() == 0


def step_of(text, prefix):
    return int(text.removeprefix(prefix)) if text.startswith(prefix) else -1


# What an engine is given.

HOSTILE_PARENT = ["env", "--ignore-signal=INT,HUP,PIPE,CHLD", "--block-signal=TERM,INT,USR1",
                  "sh", "-c", 'exec 5</etc/passwd 9>>"$0"; exec "$@"']


def test_an_engine_starts_clean_whatever_the_program_was_started_with(rehearsal):
    """Signals ignored and blocked, SIGCHLD among them, and descriptors open: the program's parent's, not the engine's
    business. Both launches, and the interrupt between them, must work all the same."""
    rehearsal.scenario(f"record {rehearsal.mark_of('first')}", f"mark-on-interrupt {rehearsal.mark_of('interrupted')}",
                       "restart 07 Redémarrer ?", "wait-interrupt",
                       "[step 7]", f"record {rehearsal.mark_of('second')}", "end 0")
    rehearsal.vendor_with_engine()
    rehearsal.prepare()
    run = rehearsal.run_program([*HOSTILE_PARENT, rehearsal.folder / "stray", rehearsal.build / rehearsal.program_name],
                                rehearsal.variables(SOMETHING="to pass on"))
    run.window.await_alert("Redémarrer ?")
    assert {"5", "9"} <= run.descriptors().keys(), "the program was to be started with stray descriptors"
    assert run.signals("SigBlk") & SIGINT_BIT, "the program was to be started with signals blocked"
    streams = {number: file for number, file in run.descriptors().items() if number in ("0", "1", "2")}
    run.window.press(French.yes)
    assert run.status() == 0
    assert rehearsal.mark_of("interrupted").exists()
    for record in (rehearsal.record("first"), rehearsal.record("second")):
        assert record["descriptors"] == streams
        assert int(record["blockedSignals"], 16) == 0
        assert int(record["ignoredSignals"], 16) & ORDINARY_SIGNALS == 0
        assert record["workingDirectory"] == str(rehearsal.folder)
        assert record["environment"] == record["environment"] | rehearsal.variables(SOMETHING="to pass on")
