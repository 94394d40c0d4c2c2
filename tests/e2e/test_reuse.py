"""Engines found on the machine: which are taken as they are, and which are replaced."""

import pytest
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE


def start_with_local_version(rehearsal, version, **publication):
    """The machine's engine reports `version` and differs from the published one, 14.2.7, in its digest."""
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, **publication)
    rehearsal.install_engine(rehearsal.sample_engine + b"another build")
    return vendor, rehearsal.start(variables={"ORVANE_SAMPLE_VERSION": version})


def test_an_engine_with_the_right_digest_is_used_whatever_its_version(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor_with_engine(cipher="xor")
    run = rehearsal.start(variables={"ORVANE_SAMPLE_VERSION": "1.0"})
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION]
    log = run.log()
    assert "Using existing orvane" in log
    assert "Checking if orvane versions match" not in log


@pytest.mark.parametrize("version", ["14.2.7", "14.3", "14.10", "14.2.7.1", "99999999999999999999.0"])
def test_an_engine_as_new_or_newer_is_used(rehearsal, version):
    vendor, run = start_with_local_version(rehearsal, version)
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION]
    assert f"remote version is 14.2.7 and local is {version}" in run.log()


@pytest.mark.parametrize("version", ["14.2.6", "14.2", "9.99"])
def test_an_older_engine_is_replaced(rehearsal, version):
    vendor, run = start_with_local_version(rehearsal, version)
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


def test_deciphering_over_a_longer_engine_keeps_its_old_tail(rehearsal):
    vendor, run = start_with_local_version(rehearsal, "14.0", cipher="xor")
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine + b"another build"


def test_only_the_described_size_is_deciphered(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    size = len(rehearsal.sample_engine)
    vendor.publish(rehearsal.sample_engine + b"not part of it", cipher="xor", Size=size)
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


def test_an_engine_without_execute_permission_is_made_executable(rehearsal):
    rehearsal.scenario("end 0")
    rehearsal.vendor_with_engine()
    rehearsal.engine_path.chmod(0o600)
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.stat().st_mode & 0o7777 == 0o744


def test_an_engine_is_made_executable_to_be_asked_for_its_version(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    rehearsal.install_engine(rehearsal.sample_engine + b"another build", mode=0o644)
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION]
    assert rehearsal.engine_path.stat().st_mode & 0o7777 == 0o744


def test_an_engine_whose_version_is_not_text_is_replaced(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    rehearsal.install_engine(b"#!/bin/sh\nprintf '\\377\\376'\n")
    run = rehearsal.start()
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
    assert "Unable to retrieve file version: cannot retrieve process stdout" in run.log()


def test_a_digest_in_upper_case_never_matches(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    description = vendor.publish(rehearsal.sample_engine)
    vendor.publish(rehearsal.sample_engine, Checksum=description["Checksum"].upper())
    rehearsal.install_engine()
    run = rehearsal.start()
    assert run.status() == 0
    assert "Checking if orvane versions match" in run.log()


def test_an_unknown_digest_algorithm_never_matches(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, algorithm="SHA256")
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert any(line.startswith("decrypted orvane local checksum is , remote") for line in run.log())


def test_an_engine_that_cannot_be_started_is_fatal(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(b"not a program")
    rehearsal.install_engine(b"not a program")
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1].startswith("Cannot spawn orvane: ")


def test_a_file_that_cannot_be_asked_for_its_version_stops_the_program_and_says_so(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    rehearsal.install_engine(b"<html>not a program</html>")
    run = rehearsal.start()
    assert run.abort_reason().startswith("invalid input: the engine could not be asked for its version: ")
    assert vendor.requests() == [DESCRIPTION]
