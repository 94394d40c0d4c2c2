"""Descriptions that are broken, hostile or too large, and servers that keep the program waiting for one."""

import gzip
import json

import pytest
from harness.servers import SilentServer
from harness.texts import French
from harness.vendor import DESCRIPTION, DESCRIPTION_PATH, ENGINE, REPORT
from harness.waiting import eventually

UNABLE = "Unable to download orvane file description: "
INFO = "Orvane download info is "
TRYING_EXISTING = "Cannot download latest orvane, trying use existing orvane"
MEBIBYTE = 1 << 20
NOT_UTF8 = "invalid input: the file description is not valid UTF-8"
PORTAL = "<!DOCTYPE html>\n<html><body>Bienvenue ! Acceptez les conditions pour continuer.</body></html>\n"
TOO_LARGE = 'Optional(Error Domain=OrvaneBootstrap Code=413 "The answer is larger than 64 MiB")'


def describe(vendor, body):
    vendor.publish_file("downloadinstaller.json", body)


def description_text(rehearsal, vendor, **publication):
    return json.dumps(vendor.publish(rehearsal.sample_engine, **publication))


def with_size(text, size):
    """The description with `Size` written as it stands here, which need not be JSON."""
    description = json.loads(text) | {"Size": "SIZE"}
    return json.dumps(description).replace('"SIZE"', size)


def refusal_in(rehearsal, run):
    """Why the run could do nothing with the description, once it has ended with the advice on connections."""
    rehearsal.acknowledge(run, French.no_connection)
    assert rehearsal.vendors[0].requests() == [DESCRIPTION, REPORT]
    *_, refusal, last = run.log()
    assert last == TRYING_EXISTING and refusal.startswith(UNABLE)
    return refusal.removeprefix(UNABLE)


def logged_body(run):
    [body] = [line.removeprefix(INFO) for line in run.log() if line.startswith(INFO)]
    return body


@pytest.mark.parametrize("body", ["", "URL=https://localhost/engine", "[]", "null", "{'URL': ''}", "[" * 10_000,
                                  "[" * 10_000 + "]" * 10_000, '{"a":' * 10_000 + "1" + "}" * 10_000],
                         ids=["nothing", "not JSON", "a list", "null", "other quotes", "opened 10000 deep",
                              "lists 10000 deep", "objects 10000 deep"])
def test_what_is_no_description_is_logged_whole_and_refused(rehearsal, body):
    describe(rehearsal.vendor(), body.encode())
    run = rehearsal.start()
    assert not refusal_in(rehearsal, run).startswith("Optional(")
    assert logged_body(run) == body


@pytest.mark.parametrize("share", [1, 50, 99])
def test_a_description_that_breaks_off_is_none(rehearsal, share):
    vendor = rehearsal.vendor()
    text = description_text(rehearsal, vendor)
    describe(vendor, text[:len(text) * share // 100].encode())
    assert "The document is not valid JSON" in refusal_in(rehearsal, rehearsal.start())


def test_a_description_whose_connection_breaks_off_is_an_error_of_the_transport(rehearsal):
    vendor = rehearsal.vendor()
    text = description_text(rehearsal, vendor)
    describe(vendor, text.encode())
    vendor.set_faults({DESCRIPTION_PATH: {"dropAfterBytes": len(text) // 2}})
    run = rehearsal.start()
    assert refusal_in(rehearsal, run).startswith("Optional(Error Domain=")
    assert not [line for line in run.log() if line.startswith(INFO)]


def test_a_portals_page_with_status_200_is_logged_whole_and_refused(rehearsal):
    vendor = rehearsal.vendor()
    vendor.set_faults({DESCRIPTION_PATH: {"status": 200, "page": PORTAL}})
    run = rehearsal.start()
    assert "The document is not valid JSON" in refusal_in(rehearsal, run)
    assert logged_body(run) == PORTAL


def test_a_key_between_10000_levels_of_another_is_read(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    description = json.loads(description_text(rehearsal, vendor))
    deep = "[" * 10_000 + "]" * 10_000
    describe(vendor, f'{{"Mirrors": {deep}, {json.dumps(description)[1:]}'.encode())
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]


@pytest.mark.parametrize("value", ["1e999", "7" * 400, "[" * (30 * MEBIBYTE) + "]" * (30 * MEBIBYTE), "[" * (60 * MEBIBYTE)],
                         ids=["1e999", "400 digits", "30 MiB deep", "60 MiB opened"])
def test_a_strange_value_under_another_key_is_skipped_in_little_memory(rehearsal, value):
    """The body, its log line with the two copies that exist while it is written, and 32 MiB."""
    rehearsal.scenario("step Prêt", "wait-interrupt")
    vendor = rehearsal.vendor_with_engine()
    plain = rehearsal.start()
    plain.window.await_step("Prêt")
    usual = plain.peak_memory()
    plain.kill()
    text = description_text(rehearsal, vendor)
    describe(vendor, f'{{"Mirrors": {value}, {text[1:]}'.encode())
    run = rehearsal.start()
    run.window.await_step("Prêt")
    if not rehearsal.is_sanitized:
        assert run.peak_memory() < usual + 4 * len(value) + 32 * MEBIBYTE
    run.kill()


@pytest.mark.parametrize("versions, ends_well", [(("15.0", "14.2.7"), True), (("14.2.7", "15.0"), False)])
def test_of_two_values_under_one_key_the_last_counts(rehearsal, versions, ends_well):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    text = description_text(rehearsal, vendor, version=versions[1])
    describe(vendor, f'{{"Version": "{versions[0]}", {text[1:]}'.encode())
    run = rehearsal.start()
    if ends_well:
        assert run.status() == 0
    else:
        rehearsal.acknowledge(run, French.too_old)
    assert vendor.requests() == [DESCRIPTION, ENGINE if ends_well else REPORT]


TEXT_KEYS = ("URL", "Checksum", "ChecksumAlgorithm", "EncryptedFileChecksum", "EncryptionAlgorithm", "Version")
NO_TEXTS = (None, True, 14, 12.5, [], {})
NO_NUMBERS = (None, True, "48", 12.5, [], {})
MISSING = "missing"


def wrong_values():
    """Every wrong type for every key; all but one for each take long together."""
    for place, key in enumerate((*TEXT_KEYS, "Size")):
        values = NO_NUMBERS if key == "Size" else NO_TEXTS
        for number, value in enumerate((*values, MISSING)):
            marks = [] if number in (place % len(values), len(values)) else [pytest.mark.long]
            yield pytest.param(key, value, marks=marks, id=f"{key} {json.dumps(value)}")


@pytest.mark.parametrize("key, value", wrong_values())
def test_a_key_that_is_missing_or_of_the_wrong_type_is_named_in_the_log(rehearsal, key, value):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor_with_engine()
    description = vendor.publish(rehearsal.sample_engine, **{key: value})
    if value == MISSING:
        del description[key]
        describe(vendor, json.dumps(description).encode())
    run = rehearsal.start()
    assert run.status() == 0
    *_, refusal, last = [line for line in run.log() if not line.startswith("Spawning")]
    assert last == TRYING_EXISTING
    assert refusal.startswith(UNABLE + (f"The key {key} " if value == MISSING else f"The value of {key} "))
    assert vendor.requests() == [DESCRIPTION]


@pytest.mark.parametrize("size", ["-0.5", "12.0", "1e3", "1E+2", "9223372036854775808", "18446744073709551616",
                                  "-9223372036854775809", "1" * 400])
def test_a_size_that_is_no_whole_number_of_64_bits_makes_the_description_none(rehearsal, size):
    vendor = rehearsal.vendor()
    describe(vendor, with_size(description_text(rehearsal, vendor), size).encode())
    assert refusal_in(rehearsal, rehearsal.start()) == "The value of Size is not a whole number of 64 bits"


@pytest.mark.parametrize("size", ["-1", "0", "9223372036854775807", "-9223372036854775808"])
def test_a_plain_download_takes_whatever_size_64_bits_can_say(rehearsal, size):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    describe(vendor, with_size(description_text(rehearsal, vendor), size).encode())
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


def test_a_byte_order_mark_before_the_description_is_passed_over(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    text = description_text(rehearsal, vendor)
    describe(vendor, b"\xef\xbb\xbf" + text.encode())
    run = rehearsal.start()
    assert run.status() == 0
    assert logged_body(run) == "\ufeff" + text
    assert vendor.requests() == [DESCRIPTION, ENGINE]


@pytest.mark.parametrize("body", ['{"URL": ""}'.encode("utf-16"), b'{"URL": "\xc0\xaf"}', b'{"URL": "\xed\xa0\x80"}',
                                  b'{"URL": "\xf4\x90\x80\x80"}', "{…".encode()[:-1]],
                         ids=["UTF-16", "overlong", "a surrogate", "beyond the last", "cut in a character"])
def test_a_description_that_is_not_utf8_in_any_way_stops_the_program(rehearsal, body):
    vendor = rehearsal.vendor()
    describe(vendor, body)
    run = rehearsal.start()
    assert run.abort_reason(logged=False) == NOT_UTF8
    assert vendor.requests() == [DESCRIPTION]


def test_8_mebibytes_of_blanks_before_the_description_are_passed_over(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    text = description_text(rehearsal, vendor)
    describe(vendor, text.encode())
    vendor.set_faults({DESCRIPTION_PATH: {"blanks": 8 * MEBIBYTE}})
    run = rehearsal.start()
    assert run.status() == 0
    assert logged_body(run) == " " * (8 * MEBIBYTE) + text
    assert vendor.requests() == [DESCRIPTION, ENGINE]


def test_8_mebibytes_of_nothing_but_blanks_are_no_description_and_reported_whole(rehearsal):
    vendor = rehearsal.vendor()
    vendor.set_faults({DESCRIPTION_PATH: {"blanks": 8 * MEBIBYTE, "page": ""}})
    run = rehearsal.start()
    assert "The document is not valid JSON" in refusal_in(rehearsal, run)
    assert logged_body(run) == " " * (8 * MEBIBYTE)
    [report] = vendor.report_bodies()
    assert len(report) > 8 * MEBIBYTE * 4 // 3


@pytest.mark.parametrize("fault", [{"blanks": 1 << 40, "page": ""}, {"blanks": 1 << 40, "framing": "chunked"},
                                   {"headers": {"Content-Encoding": "gzip"}}],
                         ids=["announced", "not announced", "coded into little"])
def test_an_answer_beyond_64_mebibytes_is_refused_before_it_fills_the_memory(rehearsal, fault):
    vendor = rehearsal.vendor()
    describe(vendor, gzip.compress(b" " * (80 * MEBIBYTE)))
    vendor.set_faults({DESCRIPTION_PATH: fault | {"hold": True}})
    run = rehearsal.start()
    run.window.main()
    eventually(vendor.requests, "the request")
    before = run.peak_memory()
    vendor.release()
    run.window.await_alert(French.no_connection)
    if not rehearsal.is_sanitized:  # a sanitizer keeps what was freed
        assert run.peak_memory() < before + 4 * 64 * MEBIBYTE
    assert refusal_in(rehearsal, run) == TOO_LARGE
    assert not [line for line in run.log() if line.startswith(INFO)]


def test_an_answer_coded_otherwise_than_it_says_is_an_error_of_the_transport(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.set_faults({DESCRIPTION_PATH: {"headers": {"Content-Encoding": "gzip"}}})
    assert refusal_in(rehearsal, rehearsal.start()).startswith("Optional(Error Domain=")


def test_an_answer_within_the_limit_counts_however_long_it_was_awaited(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor_with_engine()
    vendor.set_faults({DESCRIPTION_PATH: {"hold": True}})
    run = rehearsal.start()
    eventually(vendor.requests, "the request")
    assert run.window.main().step == French.preparing_installation
    vendor.release()
    assert run.status() == 0
    assert "Using existing orvane" in run.log()
    assert vendor.requests() == [DESCRIPTION]


def test_a_body_that_is_not_complete_within_the_limit_counts_for_nothing(rehearsal):
    rehearsal.limits = {"fileDescriptionWaitSeconds": 1}
    rehearsal.scenario(rehearsal.gate("late answer"), "end 0")
    vendor = rehearsal.vendor_with_engine(version="15.0")
    vendor.set_faults({DESCRIPTION_PATH: {"stallAfterBytes": 100}})
    run = rehearsal.start()
    run.await_log(TRYING_EXISTING)
    vendor.release()
    rehearsal.open_gate("late answer")
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION]
    assert not [line for line in run.log() if line.startswith(INFO)]


def test_a_server_that_takes_the_connection_and_never_speaks_is_given_up_after_the_limit(rehearsal):
    rehearsal.limits = {"fileDescriptionWaitSeconds": 1}
    vendor = rehearsal.vendor()
    with SilentServer() as server:
        rehearsal.api_origin = server.origin
        run = rehearsal.start()
        rehearsal.acknowledge(run, French.no_connection, reported=False)
        assert server.connections >= 1
    assert vendor.requests() == []
    [refusal] = [line for line in run.log() if line.startswith(UNABLE)]
    assert refusal == f'{UNABLE}Optional(Error Domain= Code=408 "Request timeout")'


@pytest.mark.long
def test_an_answer_after_14_seconds_counts(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor_with_engine()
    vendor.set_faults({DESCRIPTION_PATH: {"delaySeconds": 14}})
    run = rehearsal.start()
    assert run.status() == 0
    assert "Using existing orvane" in run.log()


@pytest.mark.long
def test_an_answer_after_16_seconds_changes_nothing(rehearsal):
    rehearsal.scenario("wait-ms 2000", "end 0")
    vendor = rehearsal.vendor_with_engine(version="15.0")
    vendor.set_faults({DESCRIPTION_PATH: {"delaySeconds": 16}})
    run = rehearsal.start()
    assert run.status() == 0
    assert [line for line in run.log() if line.startswith(UNABLE) and "Request timeout" in line]
    assert not [line for line in run.log() if line.startswith(INFO)]
    assert vendor.requests() == [DESCRIPTION]
