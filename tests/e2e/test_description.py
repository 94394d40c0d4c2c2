"""Runs whose description of the engine does not come, comes late, or says something of no use."""

import pytest
from harness.texts import French
from harness.vendor import DESCRIPTION, DESCRIPTION_PATH, ENGINE, REPORT

UNABLE = "Unable to download orvane file description: "
TRYING_EXISTING = "Cannot download latest orvane, trying use existing orvane"
PAGE = "<html><body><h1>404 — nothing here</h1></body></html>"


def test_without_network_and_engine_the_run_ends_with_the_advice_on_connections(rehearsal):
    run = rehearsal.start()
    run.await_log("cannot send crash report to orvane server: ")
    rehearsal.acknowledge(run, French.no_connection)
    log = run.log()
    assert log[-3].startswith(f"{UNABLE}Optional(") and log[-3].endswith(")")
    assert log[-2] == TRYING_EXISTING


@pytest.mark.parametrize("options", [[], ["--uninstall"]])
def test_without_network_an_engine_on_the_machine_is_started_unchecked(rehearsal, options):
    rehearsal.scenario("end 0")
    rehearsal.install_engine()
    run = rehearsal.start(*options, variables={"ORVANE_SAMPLE_VERSION": "1.0"})
    if options:
        run.window.press(French.yes)
    assert run.status() == 0
    log = run.log("Uninstallations" if options else "Installations")
    assert log[-2] == TRYING_EXISTING
    assert not [line for line in log if line.startswith("Checking if")]


def test_a_description_that_comes_after_the_limit_changes_nothing(rehearsal):
    rehearsal.limits = {"fileDescriptionWaitSeconds": 1}
    rehearsal.scenario("wait-ms 1500", "end 0")
    vendor = rehearsal.vendor_with_engine(version="15.0")
    vendor.set_faults({DESCRIPTION_PATH: {"delaySeconds": 1.5}})
    run = rehearsal.start()
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION]
    [line] = [line for line in run.log() if line.startswith(UNABLE)]
    assert "408" in line and "Request timeout" in line
    assert not [line for line in run.log() if line.startswith("Orvane download info is")]


def test_a_page_in_place_of_the_description_is_logged_whole(rehearsal):
    vendor = rehearsal.vendor()
    vendor.set_faults({DESCRIPTION_PATH: {"status": 404, "page": PAGE}})
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.no_connection)
    assert vendor.requests() == [DESCRIPTION, REPORT]
    log = run.log()
    assert log[3:] == ["Orvane path is " + str(rehearsal.engine_path), "Orvane download info is " + PAGE,
                       log[5], TRYING_EXISTING]
    assert log[5].startswith(UNABLE) and "Optional(" not in log[5]


def test_the_status_of_the_description_does_not_matter(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor_with_engine()
    vendor.set_faults({DESCRIPTION_PATH: {"status": 500}})
    run = rehearsal.start()
    assert run.status() == 0
    assert "Using existing orvane" in run.log()


@pytest.mark.parametrize("framing", [{"gzip": True}, {"framing": "chunked"}, {"framing": "until-close"}])
def test_the_description_is_read_however_it_is_transferred(rehearsal, framing):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor_with_engine()
    vendor.set_faults({DESCRIPTION_PATH: framing})
    run = rehearsal.start()
    assert run.status() == 0
    assert "Using existing orvane" in run.log()


@pytest.mark.parametrize("changes", [{"Size": "123"}, {"Size": 12.5}, {"Version": 14}, {"URL": None}])
def test_a_description_with_a_value_of_the_wrong_type_is_none(rehearsal, changes):
    rehearsal.scenario("end 0")
    rehearsal.vendor_with_engine(**changes)
    run = rehearsal.start()
    assert run.status() == 0
    log = run.log()
    assert TRYING_EXISTING in log and any(line.startswith(UNABLE) for line in log)


def test_further_keys_of_the_description_are_ignored(rehearsal):
    rehearsal.scenario("end 0")
    rehearsal.vendor_with_engine(Colour="blue", checksum="lower case is another key")
    run = rehearsal.start()
    assert run.status() == 0
    assert "Using existing orvane" in run.log()


def test_a_description_that_is_not_utf8_stops_the_program_and_says_so(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish_file("downloadinstaller.json", b'{"URL": "\xff\xfe"}')
    run = rehearsal.start()
    assert run.abort_reason(logged=False) == "invalid input: the file description is not valid UTF-8"


@pytest.mark.parametrize("flaw", ["wrong-host", "expired", "self-signed"])
def test_a_vendor_with_a_wrong_certificate_gets_no_request(rehearsal, flaw):
    vendor = rehearsal.vendor("--certificate", flaw)
    vendor.publish(rehearsal.sample_engine)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.no_connection, reported=False)
    assert vendor.requests() == []


@pytest.mark.parametrize("cipher", ["", "xor"])
def test_another_major_version_ends_an_installation_even_with_an_engine_on_the_machine(rehearsal, cipher):
    vendor = rehearsal.vendor_with_engine(version="15.0", cipher=cipher)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.too_old)
    assert vendor.requests() == [DESCRIPTION, REPORT]
    assert run.log()[-1] == "bootstrapper major version is 14 and orvane major version is 15"


def test_an_unsupported_cipher_ends_an_installation(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, EncryptionAlgorithm="XOR")
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.too_old)
    assert vendor.requests() == [DESCRIPTION, REPORT]
    assert run.log()[-1] == "Encryption algorithm XOR is unsupported"


def test_an_address_that_is_no_url_stops_the_program_and_says_so(rehearsal):
    rehearsal.vendor().publish(rehearsal.sample_engine, URL="https://localhost/a blank")
    run = rehearsal.start()
    assert run.abort_reason() == "invalid input: the engine's address is not a URL: https://localhost/a blank"


def test_a_redirected_description_is_followed(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.publish_file("elsewhere", (vendor.folder / "published/downloadinstaller.json").read_bytes())
    vendor.set_faults({DESCRIPTION_PATH: {"redirect": f"{vendor.origin}/varlen/setup/elsewhere"}})
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, "GET /varlen/setup/elsewhere", ENGINE]
