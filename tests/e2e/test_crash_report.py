"""Crash reports that the vendor does not take, or takes its time over, and what the user notices of it."""

import os
import signal

import pytest
from harness.processes import halt
from harness.rehearsal import NONE
from harness.reports import log_in
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, REPORT, REPORT_PATH
from harness.waiting import eventually

BODY = bytes(range(256)) * 4096  # 1 MiB that is no program
FAILURE = "cannot send crash report to orvane server: "
TIMED_OUT = FAILURE + "Request timeout"
MEBIBYTE = 1 << 20
UNANSWERED = {REPORT_PATH: {"stallAfterBytes": 0}}


def reporting_failures(run):
    return [line for line in run.output() if line.startswith(FAILURE)]


# Where an error is raised decides whether the user waits for the report. Four kinds of thread do the work; the
# session's own never raises a fatal error, but hands what it finds to the main thread.


def raised_by_the_decision(rehearsal):
    rehearsal.vendor().publish(rehearsal.sample_engine, version="15.0")
    return French.too_old


def raised_by_the_receiving_loop(rehearsal):
    rehearsal.scenario("fatal Rien ne va plus")
    rehearsal.vendor_with_engine()
    return "Rien ne va plus"


def raised_by_the_main_thread(rehearsal):
    rehearsal.vendor().publish(BODY, served=b"else")
    return French.download_incorrect


def found_by_the_session(rehearsal):
    rehearsal.vendor().publish(BODY, URL="https://localhost:1/varlen/setup/varlen-setup")
    return French.no_connection


@pytest.mark.parametrize("prepare", [raised_by_the_decision, raised_by_the_receiving_loop])
def test_an_error_of_another_thread_is_acknowledged_before_the_report_is_answered(rehearsal, prepare):
    text = prepare(rehearsal)
    [vendor] = rehearsal.vendors
    vendor.set_faults(UNANSWERED)
    run = rehearsal.start()
    rehearsal.acknowledge(run, text)
    assert not reporting_failures(run), "the program waited for the report"
    vendor.release()


@pytest.mark.parametrize("prepare", [raised_by_the_main_thread, found_by_the_session])
def test_an_error_of_the_main_thread_is_shown_once_the_report_was_answered_or_given_up(rehearsal, prepare):
    rehearsal.limits = {"crashReportWaitSeconds": 1}
    text = prepare(rehearsal)
    [vendor] = rehearsal.vendors
    vendor.set_faults(UNANSWERED)
    run = rehearsal.start()
    run.window.await_alert(text)
    assert run.log()[-1] == TIMED_OUT
    rehearsal.acknowledge(run, text)
    vendor.release()


def test_an_alert_is_acknowledged_while_the_report_is_still_on_its_way(rehearsal):
    rehearsal.scenario(rehearsal.gate("vendor is silent"), "fatal Rien ne va plus")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.service_name()
    halt(vendor.process)
    try:
        rehearsal.open_gate("vendor is silent")
        rehearsal.acknowledge(run, "Rien ne va plus", reported=False)
        assert not reporting_failures(run)
    finally:
        os.kill(vendor.process, signal.SIGCONT)
    assert vendor.requests() == [DESCRIPTION]


@pytest.mark.parametrize("limits", [{"crashReportWaitSeconds": 1}, pytest.param({}, marks=pytest.mark.long)],
                         ids=["shortened limit", "own limit"])
def test_a_report_that_is_not_answered_in_time_is_one_line_in_the_log(rehearsal, limits):
    rehearsal.limits = limits
    text = raised_by_the_decision(rehearsal)
    [vendor] = rehearsal.vendors
    vendor.set_faults(UNANSWERED)
    run = rehearsal.start()
    run.await_log(TIMED_OUT)
    rehearsal.acknowledge(run, text)
    assert reporting_failures(run) == [TIMED_OUT]
    assert vendor.requests() == [DESCRIPTION, REPORT]
    [report] = vendor.report_bodies()
    assert FAILURE.encode() not in log_in(report)
    vendor.release()


@pytest.mark.parametrize("fault, further_requests", [
    ({"status": 500}, []),
    ({"status": 413, "page": "<html>too large</html>"}, []),
    ({"redirect": "/elsewhere"}, ["GET /elsewhere"]),
], ids=["500", "413", "redirected"])
def test_any_answer_to_a_report_counts_as_delivered(rehearsal, fault, further_requests):
    text = raised_by_the_main_thread(rehearsal)
    [vendor] = rehearsal.vendors
    vendor.set_faults({REPORT_PATH: fault, "/elsewhere": {}})
    run = rehearsal.start()
    rehearsal.acknowledge(run, text)
    assert not reporting_failures(run)
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT] + further_requests


@pytest.mark.parametrize("fault, reports", [
    ({"status": 307, "redirect": REPORT_PATH}, 21),
    ({"redirect": "http://localhost/plain"}, 1),
], ids=["in a circle", "to plain text"])
def test_a_report_that_is_sent_astray_is_one_line_in_the_log(rehearsal, fault, reports):
    text = raised_by_the_main_thread(rehearsal)
    [vendor] = rehearsal.vendors
    vendor.set_faults({REPORT_PATH: fault})
    run = rehearsal.start()
    rehearsal.acknowledge(run, text)
    assert len(reporting_failures(run)) == 1 and run.log()[-1].startswith(FAILURE)
    assert vendor.requests() == [DESCRIPTION, ENGINE] + [REPORT] * reports


def test_a_vendor_that_is_gone_by_then_costs_the_report_alone(rehearsal):
    rehearsal.scenario(rehearsal.gate("vendor is gone"), "fatal Rien ne va plus")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.service_name()
    vendor.stop()
    rehearsal.open_gate("vendor is gone")
    run.await_log(FAILURE)
    rehearsal.acknowledge(run, "Rien ne va plus", reported=False)
    assert len(reporting_failures(run)) == 1


@pytest.mark.parametrize("flaw", ["wrong-host", "expired", "self-signed"])
def test_a_vendor_with_a_wrong_certificate_gets_no_report(rehearsal, flaw):
    vendor = rehearsal.vendor("--certificate", flaw)
    vendor.publish(BODY)
    run = rehearsal.start()
    run.await_log(FAILURE + "SSL")
    rehearsal.acknowledge(run, French.no_connection, reported=False)
    assert vendor.requests() == []


def test_a_log_that_was_removed_meanwhile_is_not_sent(rehearsal):
    rehearsal.scenario(rehearsal.gate("log is gone"), "fatal Rien ne va plus")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start(languages=NONE)
    run.service_name()
    log_file = run.log_file()
    log_file.unlink()
    rehearsal.open_gate("log is gone")
    run.await_output(f"{FAILURE}{log_file}: No such file or directory (ENOENT)")
    rehearsal.acknowledge(run, "Rien ne va plus", reported=False)
    assert vendor.requests() == [DESCRIPTION]
    assert not log_file.exists()


@pytest.mark.parametrize("mebibytes", [50, pytest.param(286, marks=pytest.mark.long)])
def test_a_long_log_is_sent_whole_in_less_than_twice_its_memory(rehearsal, mebibytes):
    rehearsal.limits = {"crashReportWaitSeconds": 120}
    rehearsal.scenario(rehearsal.gate("log is long"), "fatal Rien ne va plus")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.service_name()
    usual_memory = run.peak_memory()
    with open(run.log_file(), "r+b") as log_file:
        own_lines = log_file.read()
        log_file.seek(0)
        log_file.write(b"12:00:00: long\r\n" * (mebibytes * MEBIBYTE // 16) + own_lines)
    rehearsal.open_gate("log is long")
    [report] = eventually(vendor.report_bodies, "the crash report", deadline=120)
    if not rehearsal.is_sanitized:  # a sanitizer keeps what was freed
        assert run.peak_memory() - usual_memory < 2 * mebibytes * MEBIBYTE
    rehearsal.acknowledge(run, "Rien ne va plus")
    assert log_in(report) == run.log_file().read_bytes()
