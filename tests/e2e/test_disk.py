"""Disks that are full or must not be written: each in a mount namespace of the program's own, which needs root."""

import os

import pytest
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, REPORT

pytestmark = pytest.mark.skipif(os.geteuid() != 0, reason="only root can mount the disks that are to fail")

BODY = bytes(range(256)) * 4096  # 1 MiB that is no program


def start_with_disk(rehearsal, folder, mount):
    """Starts the program where `mount`, a shell command that ends with the folder's name, was carried out."""
    folder.mkdir(parents=True, exist_ok=True)
    rehearsal.prepare()
    command = ["unshare", "--mount", "sh", "-c", f'{mount} "$0" && exec "$@"', folder,
               rehearsal.build / rehearsal.program_name, "--verbose"]
    return rehearsal.run_program(command, rehearsal.variables())


def test_a_download_onto_a_full_disk_does_not_match_its_digest(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    run = start_with_disk(rehearsal, rehearsal.engine_path.parent, "mount -t tmpfs -o size=512k none")
    rehearsal.acknowledge(run, French.download_incorrect)
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT]
    assert "Orvane download finished" in run.log()


def test_an_engine_that_finds_no_room_once_deciphered_stops_the_program_and_says_where(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY, cipher="xor")
    run = start_with_disk(rehearsal, rehearsal.engine_path.parent, "mount -t tmpfs -o size=1536k none")
    assert run.status() == -6
    assert "OrvaneBootstrap/crypto line 181" in run.errors()
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]


def test_a_disk_that_must_not_be_written_is_fatal(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    run = start_with_disk(rehearsal, rehearsal.engine_path.parent, "mount -t tmpfs -o ro none")
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1].startswith("Unable to download orvane: ")
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_an_engine_that_cannot_be_made_executable_is_fatal(rehearsal):
    rehearsal.vendor_with_engine()
    rehearsal.engine_path.chmod(0o644)
    run = start_with_disk(rehearsal, rehearsal.engine_path.parent,
                          'mount --bind "$0" "$0" && mount -o remount,bind,ro')
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1].startswith("Cannot spawn orvane: ")


def test_a_log_on_a_full_disk_does_not_stop_the_installation(rehearsal):
    rehearsal.scenario("end 0")
    rehearsal.vendor_with_engine(Remark="long " * 10_000)
    run = start_with_disk(rehearsal, rehearsal.log_root, "mount -t tmpfs -o size=16k none")
    assert run.status() == 0
    assert "Using existing orvane" in run.output()
