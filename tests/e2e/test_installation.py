"""Whole installations, from the start of the program to the engine's end."""

import os

from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE
from harness.waiting import eventually

ORDINARY_SIGNALS = (1 << 31) - 1  # the next two are the C library's own
RESTART = "restart 07 Il faut redémarrer. Redémarrer maintenant ?"


def fixed_arguments(rehearsal, run, *, step="0", locale="fr-ch"):
    return ["--pid", str(run.process), "--owner", run.service_name(), "--ownerName", rehearsal.program_name,
            "--incomplete", "--locale", locale, "--step", step, "--datetime", run.time_stamp()]


def play_whole_installation(rehearsal, run):
    """The window, stage after stage; returns once the engine restarts."""
    window = run.window
    window.await_cancel(title=French.cancel, enabled=True)
    rehearsal.open_gate("watched")
    window.await_step("Copie des fichiers")
    window.await_progress(40)
    window.await_error("Un fichier manque")
    window.await_cancel(enabled=False)
    rehearsal.open_gate("copied")
    question = window.await_alert("Il faut redémarrer. Redémarrer maintenant ?")
    assert question.buttons == (French.yes, French.no)
    window.press(French.yes)
    window.await_step("Suite")
    window.await_progress(100)
    window.await_error("")


def whole_installation_scenario(rehearsal):
    rehearsal.scenario(
        f"record {rehearsal.mark_of('first')}", f"mark-on-interrupt {rehearsal.mark_of('interrupted')}",
        rehearsal.gate("watched"), "step Copie des fichiers", "progress 40", "error Un fichier manque", "cancel 0",
        rehearsal.gate("copied"), RESTART, "wait-interrupt",
        "[step 7]", f"record {rehearsal.mark_of('second')}", "cancel 1", "step Suite", "progress 100", "error",
        rehearsal.gate("done"), "end 0")


def expected_log(rehearsal, run, vendor, description):
    encrypted = description["EncryptedFileChecksum"]
    arguments = " ".join(fixed_arguments(rehearsal, run))
    restarted = " ".join(fixed_arguments(rehearsal, run, step="7"))
    body = (vendor.folder / "published/downloadinstaller.json").read_text()
    return [
        "Checking preferred languages",
        "Found fr-CH",
        "Initializing orvane download",
        f"Orvane path is {rehearsal.engine_path}",
        f"Orvane download info is {body}",
        "Checking if major versions match",
        "bootstrapper major version is 14 and orvane major version is 14",
        "Checking if orvane checksums match",
        f"decrypted orvane local checksum is , remote checksum is{encrypted}",
        "Checking if orvane versions match",
        "Spawning orvane with args --version",
        "Unable to retrieve file version: ",
        "Downloading latest orvane",
        "Orvane download finished",
        "Checking if orvane checksums match",
        f"encrypted orvane local checksum is {encrypted}, remote checksum is{encrypted}",
        "Orvane is encrypted, decrypting it",
        "Orvane decrypted",
        f"Spawning orvane with args {arguments} --verbose --fast",
        f"Spawning orvane with args {restarted} --verbose --fast",
    ]


def test_an_enciphered_engine_is_fetched_deciphered_started_restarted_and_its_end_obeyed(rehearsal):
    whole_installation_scenario(rehearsal)
    vendor = rehearsal.vendor()
    description = vendor.publish(rehearsal.sample_engine, cipher="xor")

    run = rehearsal.start("--verbose", "--fork", "--fast")
    play_whole_installation(rehearsal, run)
    run.await_no_zombies()
    rehearsal.open_gate("done")

    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]
    assert not vendor.report_bodies()
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine
    assert rehearsal.engine_path.stat().st_mode & 0o7777 == 0o744
    log = run.log()
    # What the system says of the missing file is its own wording.
    reason = next(index for index, line in enumerate(log) if line.startswith("Unable to retrieve file version: "))
    log[reason] = "Unable to retrieve file version: "
    assert log == expected_log(rehearsal, run, vendor, description)
    assert run.errors() == ""


def test_the_engine_gets_thirteen_fixed_arguments_then_the_options_and_all_but_the_step_again_after_a_restart(
        rehearsal):
    whole_installation_scenario(rehearsal)
    rehearsal.vendor_with_engine()
    run = rehearsal.start("--verbose", "--fork", "--fast")
    play_whole_installation(rehearsal, run)
    rehearsal.open_gate("done")
    assert run.status() == 0

    first = rehearsal.record("first")["arguments"]
    second = rehearsal.record("second")["arguments"]
    assert first == [str(rehearsal.engine_path), *fixed_arguments(rehearsal, run), "--verbose", "--fast"]
    assert second == [str(rehearsal.engine_path), *fixed_arguments(rehearsal, run, step="7"), "--verbose", "--fast"]
    assert rehearsal.mark_of("interrupted").exists()


def test_standard_output_carries_the_ports_lines_the_log_and_one_line_for_the_download(rehearsal):
    rehearsal.scenario(rehearsal.gate("printed"), "end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher="xor")
    run = rehearsal.start("--verbose")
    deinit = f"Deinit: {vendor.origin}/varlen/setup/varlen-setup.enc"
    run.await_output(deinit)
    rehearsal.open_gate("printed")
    assert run.status() == 0

    output = run.output()
    assert output[0].startswith("mach_port_allocate() created port with name ")
    assert output[0].removeprefix("mach_port_allocate() created port with name ").isdigit()
    assert output[1:3] == ["mach_port_insert_right() inserted a send right", "bootstrap_register()'ed our port"]
    assert [line for line in output if line.startswith("Deinit: ")] == [deinit]
    assert output[3:] and [line for line in output[3:] if line != deinit] == "\n".join(run.log()).split("\n")


def test_a_plain_engine_is_downloaded_under_its_own_name(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, algorithm="md5")
    run = rehearsal.start("--verbose")
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
    assert os.listdir(rehearsal.engine_path.parent) == ["varlen-setup"]
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine
    assert "Orvane is not encrypted" in run.log()


def test_without_options_the_engine_is_handed_the_programs_own_path(rehearsal):
    rehearsal.scenario(f"record {rehearsal.mark_of('engine')}", "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    assert run.status() == 0
    arguments = rehearsal.record("engine")["arguments"]
    assert arguments[1:] == [*fixed_arguments(rehearsal, run), str(rehearsal.build / rehearsal.program_name)]


def test_the_engine_inherits_environment_folder_and_streams_and_nothing_else(rehearsal):
    rehearsal.scenario(f"record {rehearsal.mark_of('engine')}", "end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start(variables={"SOMETHING": "to pass on"})
    assert run.status() == 0
    record = rehearsal.record("engine")
    assert record["workingDirectory"] == str(rehearsal.folder)
    assert record["environment"]["SOMETHING"] == "to pass on"
    assert set(record["descriptors"]) == {"0", "1", "2"}
    assert int(record["blockedSignals"], 16) == 0
    assert int(record["ignoredSignals"], 16) & ORDINARY_SIGNALS == 0


def test_an_engine_that_dies_without_a_word_leaves_the_window_waiting_and_no_zombie(rehearsal):
    rehearsal.scenario("step Dernier mot", "exit 3")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Dernier mot")
    eventually(lambda: not run.engines(), "the end of the engine")
    run.await_no_zombies()
    run.send(1, "Toujours là")
    run.window.await_step("Toujours là")
    run.kill()


def test_the_log_cannot_be_opened_and_the_installation_goes_on(rehearsal):
    rehearsal.log_root.parent.mkdir()
    rehearsal.log_root.write_text("a file where the logs' folder should be")
    rehearsal.scenario("end 0")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    assert run.status() == 0
    output = run.output()
    assert sum(line.startswith("Error initializing logger: ") for line in output) == 1
    assert "Using existing orvane" in output


def test_without_a_log_a_fatal_error_sends_no_report(rehearsal):
    rehearsal.log_root.parent.mkdir()
    rehearsal.log_root.write_text("a file where the logs' folder should be")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, version="15.0")
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.too_old, reported=False)
    assert vendor.requests() == [DESCRIPTION]
