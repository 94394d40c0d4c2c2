"""What a download host in the wrong hands gains, alone, from a download that was refused."""

import pytest
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, REPORT

# Tells of its start, and claims to be newer than any engine.
INTRUDER = """#!/bin/sh
echo "$1" >>{mark}
case $1 in --version) echo 99.0 ;; esac
"""


@pytest.fixture
def intruder(rehearsal):
    return INTRUDER.format(mark=rehearsal.mark_of("intruder")).encode()


def run_that_refuses(rehearsal, intruder, cipher):
    """A run whose download is not the described file, and its vendor."""
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher=cipher, served=intruder)
    rehearsal.acknowledge(rehearsal.start(), French.download_incorrect)
    assert not rehearsal.mark_of("intruder").exists()
    return vendor


def test_a_refused_plain_download_is_run_by_the_next_run(rehearsal, intruder):
    vendor = run_that_refuses(rehearsal, intruder, cipher="")
    run = rehearsal.start()
    run.await_log("Using existing orvane")
    rehearsal.await_mark("intruder")
    run.kill()
    assert rehearsal.mark_of("intruder").read_text().splitlines()[0] == "--version"
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT, DESCRIPTION]


def test_a_refused_enciphered_download_is_never_run(rehearsal, intruder):
    vendor = run_that_refuses(rehearsal, intruder, cipher="xor")
    rehearsal.scenario("end 0")
    vendor.publish(rehearsal.sample_engine, cipher="xor")
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine
    assert not rehearsal.mark_of("intruder").exists()
