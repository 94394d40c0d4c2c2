"""Downloads as networks and disks treat them: progress, and every way in which they fail."""

import pytest
from harness.reports import log_in
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, ENGINE_PATH, REPORT
from harness.waiting import eventually

BODY = bytes(range(256)) * 4096  # 1 MiB that is no program


def publish_with_fault(rehearsal, engine, **fault):
    vendor = rehearsal.vendor()
    vendor.publish(engine)
    vendor.set_faults({ENGINE_PATH: fault})
    return vendor


def failure_in(run):
    return [line for line in run.log() if line.startswith("Unable to download orvane: ")]


def test_the_bar_stands_at_the_fraction_received(rehearsal):
    rehearsal.scenario(rehearsal.gate("seen"), "end 0")
    engine = rehearsal.sample_engine
    engine += b"\0" * (len(engine) % 2)
    vendor = publish_with_fault(rehearsal, engine, stallAfterBytes=len(engine) // 2)
    run = rehearsal.start()
    run.window.await_progress(50)
    vendor.release()
    run.window.await_progress(100)
    rehearsal.open_gate("seen")
    assert run.status() == 0


def test_the_bar_follows_a_slow_download_and_cancel_ends_it(rehearsal):
    vendor = publish_with_fault(rehearsal, BODY, bytesPerSecond=len(BODY) // 4)
    run = rehearsal.start()
    seen = [0]
    while len(seen) < 4:
        run.window.await_progress_beyond(seen[-1])
        seen.append(run.window.main().progress)
    assert seen[-1] < 100
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.window.press(French.yes)
    assert run.status() == 2
    partial = rehearsal.engine_path.read_bytes()
    assert 0 < len(partial) < len(BODY) and BODY.startswith(partial)
    assert vendor.requests() == [DESCRIPTION, ENGINE]


@pytest.mark.parametrize("framing", ["chunked", "until-close"])
def test_a_download_of_unknown_length_leaves_the_bar_empty_and_succeeds(rehearsal, framing):
    rehearsal.scenario(rehearsal.gate("seen"), "end 0")
    publish_with_fault(rehearsal, rehearsal.sample_engine, framing=framing)
    run = rehearsal.start()
    run.await_log("Spawning orvane with args --pid")
    assert run.window.main().progress == 0
    rehearsal.open_gate("seen")
    assert run.status() == 0


def test_a_coded_download_is_stored_decoded(rehearsal):
    rehearsal.scenario("end 0")
    publish_with_fault(rehearsal, rehearsal.sample_engine, gzip=True)
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


def test_a_page_in_place_of_the_engine_stays_on_disk_under_its_name(rehearsal):
    page = "<html><body>Blocked by your administrator</body></html>"
    vendor = publish_with_fault(rehearsal, BODY, status=404, page=page)
    run = rehearsal.start()
    run.window.await_alert(French.download_incorrect)
    eventually(vendor.report_bodies, "the crash report")
    [report] = vendor.report_bodies()
    assert log_in(report) == run.log_file().read_bytes()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert rehearsal.engine_path.read_text() == page
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT]
    assert vendor.headers_of(REPORT)["content-type"] == "application/json"
    assert run.log()[-3] == "Orvane download finished"


def test_an_enciphered_engine_with_another_digest_is_not_deciphered(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY, cipher="xor", served=BODY)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert not rehearsal.engine_path.exists()
    assert rehearsal.engine_path.with_name("varlen-setup.enc").read_bytes() == BODY
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc", REPORT]


@pytest.mark.parametrize("fault", [{"dropAfterBytes": 300_000}, {"contentLength": len(BODY) + 1},
                                   {"redirect": "http://localhost/plain"}],
                         ids=["dropped", "shorter than announced", "redirected to plain text"])
def test_a_broken_transfer_ends_with_the_advice_on_connections(rehearsal, fault):
    vendor = publish_with_fault(rehearsal, BODY, **fault)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.no_connection)
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT]
    assert len(failure_in(run)) == 1
    assert BODY.startswith(rehearsal.engine_path.read_bytes())


def test_a_dropped_download_keeps_what_arrived(rehearsal):
    publish_with_fault(rehearsal, BODY, dropAfterBytes=300_000)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.no_connection)
    assert rehearsal.engine_path.read_bytes() == BODY[:300_000]


def test_a_body_longer_than_announced_is_cut_and_does_not_match(rehearsal):
    publish_with_fault(rehearsal, BODY, contentLength=1000)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert rehearsal.engine_path.read_bytes() == BODY[:1000]


def test_a_download_that_falls_silent_ends_after_the_limit(rehearsal):
    rehearsal.limits = {"downloadTimeoutSeconds": 1}
    vendor = publish_with_fault(rehearsal, BODY, stallAfterBytes=200_000)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.no_connection)
    vendor.release()
    assert len(failure_in(run)) == 1
    assert BODY.startswith(rehearsal.engine_path.read_bytes())


def test_a_slow_download_that_never_falls_silent_has_all_the_time_it_takes(rehearsal):
    rehearsal.limits = {"downloadTimeoutSeconds": 1}
    rehearsal.scenario("end 0")
    publish_with_fault(rehearsal, rehearsal.sample_engine, bytesPerSecond=len(rehearsal.sample_engine) // 2)
    assert rehearsal.start().status() == 0


def test_a_redirected_download_is_followed(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.publish_file("elsewhere", rehearsal.sample_engine)
    vendor.set_faults({ENGINE_PATH: {"redirect": "/varlen/setup/elsewhere"}})
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE, "GET /varlen/setup/elsewhere"]


def test_a_download_host_with_a_wrong_certificate_gets_no_request(rehearsal):
    vendor = rehearsal.vendor()
    impostor = rehearsal.vendor(name="impostor")
    vendor.publish(rehearsal.sample_engine, origin=impostor.origin)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.no_connection)
    assert impostor.requests() == []
    assert len(failure_in(run)) == 1


def test_a_download_cut_off_by_the_programs_end_starts_anew_in_the_next_run(rehearsal):
    rehearsal.scenario("end 0")
    engine = rehearsal.sample_engine
    vendor = rehearsal.vendor()
    vendor.publish(engine, cipher="xor")
    vendor.set_faults({ENGINE_PATH + ".enc": {"stallAfterBytes": len(engine) // 2}})
    run = rehearsal.start()
    run.window.await_progress(pytest.approx(50, abs=1))
    run.kill()
    vendor.release()
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == engine
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"] * 2


def test_the_beginning_of_an_engine_left_by_a_plain_download_is_replaced_in_the_next_run(rehearsal):
    rehearsal.scenario("end 0")
    engine = rehearsal.sample_engine
    vendor = rehearsal.vendor()
    vendor.publish(engine)
    rehearsal.install_engine(engine[:8192], mode=0o644)
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == engine
    assert vendor.requests() == [DESCRIPTION, ENGINE]


@pytest.mark.parametrize("checksum, code", [("abc", 1), ("ab" * 2000, 2), ("zz", 3)])
def test_a_key_that_cannot_decipher_is_fatal_and_its_code_logged(rehearsal, checksum, code):
    vendor = rehearsal.vendor()
    vendor.publish(BODY[:1000], cipher="xor", Checksum=checksum)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == f"Unable to decrypt orvane: code {code}"
    assert not rehearsal.engine_path.exists()


def test_a_report_that_the_vendor_does_not_answer_is_given_up_after_the_limit(rehearsal):
    rehearsal.limits = {"crashReportWaitSeconds": 1}
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, version="15.0")
    vendor.set_faults({"/crashreport": {"delaySeconds": 20}})
    run = rehearsal.start()
    run.window.await_alert(French.too_old)
    run.await_log("cannot send crash report to orvane server: Request timeout")
    rehearsal.acknowledge(run, French.too_old)


def test_a_report_answered_with_an_error_counts_as_delivered(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY, served=b"else")
    vendor.set_faults({"/crashreport": {"status": 500}})
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert vendor.requests()[-1] == REPORT
    assert not [line for line in run.log() if line.startswith("cannot send")]
