"""The log of a run: where it cannot be kept, what it makes of odd texts, and what its times say."""

import time
from calendar import timegm

import pytest
from harness.clock import Clock
from harness.program import LOG_NAME
from harness.rehearsal import BOUND_BY_PERMISSIONS, NONE
from harness.reports import log_in
from harness.texts import French
from harness.vendor import DESCRIPTION

CANNOT_KEEP = "Error initializing logger: "
NO_PERMISSION = "Permission denied (EACCES)"
NO_FOLDER = "Not a directory (ENOTDIR)"

SWISS_TIME = "CET-1CEST,M3.5.0,M10.5.0/3"


def make_read_only(folder):
    folder.mkdir(parents=True)
    folder.chmod(0o555)


def put_a_file_at(folder):
    folder.parent.mkdir(parents=True)
    folder.write_text("no folder")


@pytest.mark.parametrize("folder, spoil, names_the_file, reason", [
    ("", make_read_only, False, NO_PERMISSION),
    ("Installations", make_read_only, True, NO_PERMISSION),
    ("", put_a_file_at, False, NO_FOLDER),
    ("Installations", put_a_file_at, False, NO_FOLDER),
], ids=["read-only root", "read-only folder", "file for a root", "file for a folder"])
def test_a_log_that_cannot_be_kept_is_said_once_and_the_run_goes_on(rehearsal, folder, spoil, names_the_file, reason):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor_with_engine()
    spoil(rehearsal.log_root / folder)
    run = rehearsal.start(languages=NONE, through=BOUND_BY_PERMISSIONS)
    assert run.status() == 0
    output = run.output()
    [line] = [line for line in output if line.startswith(CANNOT_KEEP)]
    place = str(rehearsal.log_root / "Installations")
    assert line.startswith(f"{CANNOT_KEEP}{place}/Install " if names_the_file else f"{CANNOT_KEEP}{place}: ")
    assert line.endswith(f": {reason}")
    assert "Using existing orvane" in output
    assert not [file for file in rehearsal.log_root.glob("**/*.log")]
    assert vendor.requests() == [DESCRIPTION]


@pytest.mark.parametrize("text", [b"two\nlines", b"two\r\nlines", b"a\rreturn\r\n\r\n", b"a\0nul", b"long " * 209_716],
                         ids=["line feed", "CR LF", "CR at the end", "NUL", "1 MiB"])
def test_a_text_is_logged_and_printed_as_it_stands(rehearsal, text):
    rehearsal.scenario("end 0")
    rehearsal.vendor().publish_file("downloadinstaller.json", text)
    rehearsal.install_engine()
    run = rehearsal.start()
    assert run.status() == 0
    assert b": Orvane download info is " + text + b"\r\n" in run.log_file().read_bytes()
    assert b"\nOrvane download info is " + text + b"\n" in run.output_bytes()


def times_of(log_file):
    """The time that each line of the log bears."""
    return [line[:8].decode() for line in log_file.read_bytes().split(b"\r\n")[:-1]]


def run_across(rehearsal, start, end, time_zone):
    """A run whose engine is started at one time and, after a restart, at another; times are in UTC."""
    clock = Clock(rehearsal.folder, start)
    rehearsal.scenario(f"record {rehearsal.mark_of('first')}", rehearsal.gate("clock is set"), "restart 07 ?",
                       "wait-interrupt", "[step 7]", f"record {rehearsal.mark_of('second')}", "end 0")
    rehearsal.install_engine()
    run = rehearsal.start(variables=clock.variables(time_zone))
    rehearsal.await_mark("first")
    clock.set(end)
    rehearsal.open_gate("clock is set")
    run.window.await_alert("?")
    run.window.press(French.yes)
    assert run.status() == 0
    return run


@pytest.mark.parametrize("start, end, time_zone, stamp, first_time, last_time", [
    ((2026, 3, 4, 22, 59, 58), (2026, 3, 4, 23, 0, 3), SWISS_TIME, "2026-03-04 23-59-58", "23:59:58", "00:00:03"),
    ((2026, 3, 29, 0, 59, 59), (2026, 3, 29, 1, 0, 0), SWISS_TIME, "2026-03-29 01-59-59", "01:59:59", "03:00:00"),
    ((2026, 10, 25, 0, 59, 59), (2026, 10, 25, 1, 0, 0), SWISS_TIME, "2026-10-25 02-59-59", "02:59:59", "02:00:00"),
], ids=["midnight", "an hour skipped", "an hour repeated"])
def test_each_line_bears_the_local_time_of_its_writing_and_the_run_that_of_its_start(
        rehearsal, start, end, time_zone, stamp, first_time, last_time):
    run = run_across(rehearsal, timegm(start), timegm(end), time_zone)
    times = times_of(run.log_file())
    assert set(times[:-1]) == {first_time} and times[-1] == last_time
    assert LOG_NAME.fullmatch(run.log_file().name)[1] == stamp
    assert [rehearsal.record(name)["arguments"][13] for name in ("first", "second")] == [stamp, stamp]


def test_the_second_run_of_a_second_takes_over_the_log_and_the_first_reports_that(rehearsal):
    clock = Clock(rehearsal.folder, int(time.time()))
    rehearsal.scenario(f"mark {rehearsal.mark_of('first')}", rehearsal.gate("second has ended"),
                       "fatal Rien ne va plus")
    vendor = rehearsal.vendor_with_engine()
    first = rehearsal.start("--first", variables=clock.variables())
    rehearsal.await_mark("first")
    logged_by_first = first.log_file().read_bytes()
    rehearsal.scenario("end 0")
    second = rehearsal.start("--second", variables=clock.variables())
    assert second.status() == 0
    assert second.log_file().name == first.log_file().name
    assert second.log()[-1].endswith(" --second") and not second.log_file().read_bytes().startswith(logged_by_first)
    rehearsal.open_gate("second has ended")
    rehearsal.acknowledge(first, "Rien ne va plus")
    [report] = vendor.report_bodies()
    assert log_in(report) == second.log_file().read_bytes()
