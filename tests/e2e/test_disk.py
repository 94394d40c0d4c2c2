"""Disks that are full or must not be written: each in a mount namespace of the program's own, which needs root."""

import os

import pytest
from harness.rehearsal import NONE
from harness.reports import log_in
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, REPORT

pytestmark = pytest.mark.skipif(os.geteuid() != 0, reason="only root can mount the disks that are to fail")

BODY = bytes(range(256)) * 4096  # 1 MiB that is no program
NO_ROOM = "No space left on device (ENOSPC)"
LITTLE_ROOM = 16 * 1024  # for a log, in bytes


def start_with_disk(rehearsal, folder, mount):
    """Starts the program where `mount`, a shell command that ends with the folder's name, was carried out."""
    folder.mkdir(parents=True, exist_ok=True)
    rehearsal.prepare()
    command = ["unshare", "--mount", "sh", "-c", f'{mount} "$0" && exec "$@"', folder,
               rehearsal.build / rehearsal.program_name, "--verbose"]
    return rehearsal.run_program(command, rehearsal.variables())


def test_a_download_onto_a_full_disk_does_not_match_its_digest(product):
    product.mount_disk(product.engine_path.parent, "size=512k")
    vendor = product.trusted_vendor(BODY)
    run = product.start()
    product.acknowledge(run, French.download_incorrect)
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT]
    assert "Orvane download finished" in run.log()
    assert BODY.startswith(product.engine_path.read_bytes())


def test_an_engine_that_finds_no_room_once_deciphered_stops_the_program_and_says_where(product):
    product.mount_disk(product.engine_path.parent, "size=1536k")
    vendor = product.trusted_vendor(BODY, cipher="xor")
    run = product.start(languages=NONE)
    reason = run.abort_reason()
    assert reason.startswith("unexpected error: OrvaneBootstrap/crypto line 181: ") and NO_ROOM in reason
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]
    assert run.log()[-2] == "Orvane is encrypted, decrypting it"


def test_a_newer_engine_that_finds_no_room_in_an_older_ones_place_is_fatal(product):
    product.mount_disk(product.engine_path.parent, "size=1536k")
    product.install_engine(b"#!/bin/sh\necho 14.0\n")
    vendor = product.trusted_vendor(BODY, cipher="xor")
    run = product.start(languages=NONE)
    product.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == f"Unable to decrypt orvane: /opt/Varlen/orvane/varlen-setup: {NO_ROOM}"
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc", REPORT]


def test_a_log_on_a_full_disk_does_not_stop_the_installation(product):
    product.mount_disk(product.log_root, f"size={LITTLE_ROOM}")
    product.scenario("end 0")
    product.install_engine()
    product.trusted_vendor(product.sample_engine, Remark="long " * 10_000)
    run = product.start()
    assert run.status() == 0
    assert run.output()[-1].startswith("Spawning orvane with args --pid")
    assert run.log_file().stat().st_size == LITTLE_ROOM < len("\n".join(run.output()))


def test_the_report_of_a_log_on_a_full_disk_holds_what_found_room(product):
    product.mount_disk(product.log_root, f"size={LITTLE_ROOM}")
    vendor = product.trusted_vendor(product.sample_engine, Remark="long " * 10_000, version="15.0")
    run = product.start()
    product.acknowledge(run, French.too_old)
    [report] = vendor.report_bodies()
    assert len(log_in(report)) == LITTLE_ROOM
    assert log_in(report) == run.log_file().read_bytes()


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
