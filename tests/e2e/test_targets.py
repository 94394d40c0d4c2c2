"""Files and folders that stand where the engine shall lie, or that may not be read or written."""


import pytest
from harness.rehearsal import BOUND_BY_PERMISSIONS, NONE
from harness.texts import French
from harness.vendor import DESCRIPTION, REPORT
from harness.waiting import eventually

BODY = bytes(range(256)) * 4096  # 1 MiB that is no program
NO_TARGET = "Unable to download orvane: The operation could not be completed. (OrvaneBootstrap.DownloadError error 0.)"


def make_read_only(folder):
    folder.mkdir()
    folder.chmod(0o555)


@pytest.mark.parametrize("spoil, reason", [(make_read_only, "Permission denied (EACCES)"),
                                           (lambda folder: folder.write_text("a file"), "Not a directory (ENOTDIR)")],
                         ids=["a read-only folder above it", "a file above it"])
@pytest.mark.parametrize("options, text", [([], French.installation_failed),
                                           (["--uninstall"], French.uninstallation_failed)],
                         ids=["installing", "uninstalling"])
def test_a_folder_for_the_engine_that_cannot_be_made_is_fatal(rehearsal, spoil, reason, options, text):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    spoil(rehearsal.engine_path.parents[2])
    run = rehearsal.start(*options, languages=NONE, through=BOUND_BY_PERMISSIONS)
    if options:
        run.window.await_alert(French.uninstallation_consent)
        run.window.press(French.yes)
    rehearsal.acknowledge(run, text)
    log = run.log("Uninstallations" if options else "Installations")
    assert log[-1] == f"Unable to create orvane directory: {rehearsal.engine_path.parent}: {reason}"
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_a_folder_in_the_downloads_place_is_fatal(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY, cipher="xor")
    rehearsal.engine_path.with_name("varlen-setup.enc").mkdir(parents=True)
    run = rehearsal.start(languages=NONE)
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == NO_TARGET
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_a_folder_in_the_engines_place_is_reported_and_stops_the_program(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    rehearsal.engine_path.mkdir(parents=True)
    run = rehearsal.start(languages=NONE)
    assert run.abort_reason() == (
        f"invalid input: the engine could not be asked for its version: {rehearsal.engine_path}: "
        "Permission denied (EACCES)")
    assert f"Unable to compute file checksum: {rehearsal.engine_path}: Is a directory (EISDIR)" in run.log()
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_an_older_engine_that_must_not_be_written_is_fatal(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine + b"newer", version="14.3")
    rehearsal.install_engine(mode=0o555)
    run = rehearsal.start(languages=NONE, through=BOUND_BY_PERMISSIONS)
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == NO_TARGET
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_an_engine_that_must_not_be_read_is_fatal_while_the_decision_goes_on(rehearsal):
    rehearsal.scenario(rehearsal.gate("seen"))
    rehearsal.vendor_with_engine()
    rehearsal.engine_path.chmod(0)
    run = rehearsal.start(languages=NONE, through=BOUND_BY_PERMISSIONS)
    run.window.await_alert(French.installation_failed)
    run.await_log("Spawning orvane with args --pid")
    assert f"Unable to compute file checksum: {rehearsal.engine_path}: Permission denied (EACCES)" in run.log()
    assert rehearsal.engine_path.stat().st_mode & 0o777 == 0o744
    eventually(run.engines, "the engine")
    rehearsal.acknowledge(run, French.installation_failed)
