"""Uninstallations: the consent they ask for, the engine they fall back to, the texts they fail with."""

import pytest
from harness.texts import French
from harness.vendor import DESCRIPTION, REPORT


def consent(run):
    question = run.window.await_alert(French.uninstallation_consent)
    assert question.buttons == (French.no, French.yes)
    run.window.press(French.yes)


def test_without_consent_nothing_is_asked_of_anybody_and_the_run_ends(rehearsal):
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start("--uninstall")
    question = run.window.await_alert(French.uninstallation_consent)
    assert question.buttons == (French.no, French.yes)
    assert run.window.look().main is None
    run.window.press(French.no)
    assert run.status() == 2
    assert vendor.requests() == []
    assert run.log("Uninstallations") == [
        "Checking preferred languages", "Found fr-CH", "User didn't want to start the procedure"]


def test_with_consent_the_engine_gets_the_options_but_not_fork(rehearsal):
    rehearsal.scenario(f"record {rehearsal.mark_of('engine')}", rehearsal.gate("seen"), "end 0")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start("--uninstall", "--fork", "--fork")
    consent(run)
    run.window.await_step(French.preparing_uninstallation)
    rehearsal.open_gate("seen")
    assert run.status() == 0
    arguments = rehearsal.record("engine")["arguments"]
    assert len(arguments) == 1 + 13 + 1 and arguments[-2:] == [run.time_stamp(), "--uninstall"]
    assert vendor.requests() == [DESCRIPTION]


def test_the_option_counts_wherever_it_stands(rehearsal):
    rehearsal.scenario(f"record {rehearsal.mark_of('engine')}", "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start("--quiet", "--uninstall", "rest")
    consent(run)
    assert run.status() == 0
    assert rehearsal.record("engine")["arguments"][-3:] == ["--quiet", "--uninstall", "rest"]
    assert run.log_file("Uninstallations")


def test_the_option_in_capitals_installs(rehearsal):
    rehearsal.scenario(f"record {rehearsal.mark_of('engine')}", rehearsal.gate("seen"), "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start("--UNINSTALL")
    run.window.await_step(French.preparing_installation)
    rehearsal.open_gate("seen")
    assert run.status() == 0
    assert rehearsal.record("engine")["arguments"][-1] == "--UNINSTALL"
    assert run.log_file("Installations")


@pytest.mark.parametrize("description, reason", [
    ({"version": "15.0"}, "bootstrapper major version is 14 and orvane major version is 15"),
    ({"EncryptionAlgorithm": "XOR"}, "Encryption algorithm XOR is unsupported")], ids=["major version", "cipher"])
def test_an_engine_on_the_machine_is_used_although_the_described_one_is_of_no_use(rehearsal, description, reason):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine + b"another build", **description)
    rehearsal.install_engine()
    run = rehearsal.start("--uninstall", variables={"ORVANE_SAMPLE_VERSION": "14.0"})
    consent(run)
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION]
    log = run.log("Uninstallations")
    where = log.index(reason)
    assert log[where + 1:where + 3] == ["process is uninstallation and orvane exists on the machine",
                                        "Using existing orvane"]


def test_without_an_engine_on_the_machine_there_is_nothing_to_fall_back_to(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, version="15.0")
    run = rehearsal.start("--uninstall")
    consent(run)
    rehearsal.acknowledge(run, French.too_old)
    assert run.log("Uninstallations")[-1] == (
        "process is uninstallation, but orvane does not exist on the machine")
    assert vendor.requests() == [DESCRIPTION, REPORT]


@pytest.mark.parametrize("options, text", [([], French.installation_failed),
                                           (["--uninstall"], French.uninstallation_failed)])
def test_an_engine_folder_that_cannot_be_made_is_fatal(rehearsal, options, text):
    rehearsal.engine_path.parents[1].parent.mkdir()
    rehearsal.engine_path.parents[1].write_text("a file where a folder should be")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    run = rehearsal.start(*options)
    if options:
        consent(run)
    rehearsal.acknowledge(run, text)
    log = run.log("Uninstallations" if options else "Installations")
    assert log[-1].startswith("Unable to create orvane directory: ")
    assert vendor.requests() == [DESCRIPTION, REPORT]


@pytest.mark.parametrize("options, text", [([], French.installation_failed),
                                           (["--uninstall"], French.uninstallation_failed)])
def test_a_download_that_cannot_be_written_is_fatal(rehearsal, options, text):
    rehearsal.engine_path.with_name("varlen-setup.enc").mkdir(parents=True)
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher="xor")
    run = rehearsal.start(*options)
    if options:
        consent(run)
    rehearsal.acknowledge(run, text)
    log = run.log("Uninstallations" if options else "Installations")
    assert log[-1].startswith("Unable to download orvane: ")
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_the_advice_at_the_end_is_the_uninstallations(rehearsal):
    rehearsal.scenario("end 1", rehearsal.gate("seen"), "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start("--uninstall")
    consent(run)
    run.window.await_error(French.uninstallation_ended_well)
    rehearsal.open_gate("seen")
    assert run.status() == 0
