"""Runs that are killed, phase by phase, and what the next run makes of what they left behind."""

import os
import signal
from pathlib import Path

import pytest
from harness import processes
from harness.rehearsal import NONE
from harness.texts import French
from harness.vendor import DESCRIPTION, DESCRIPTION_PATH, ENGINE, ENGINE_PATH
from harness.waiting import eventually

CHECKING = "Checking if orvane checksums match"
UNABLE_TO_RUN = "the engine could not be asked for its version: "
ENCIPHERED = ".enc"
STEP = 1


def killed(run):
    """Kills the program as a crash of the machine would, and takes its log away; what the log said."""
    run.kill()
    log = run.log()
    run.log_file().unlink()
    return log


def suffix_of(cipher):
    return ENCIPHERED if cipher else ""


def vendor_that_stalls(rehearsal, engine, cipher, after):
    vendor = rehearsal.vendor()
    vendor.publish(engine, cipher=cipher)
    vendor.set_faults({ENGINE_PATH + suffix_of(cipher): {"stallAfterBytes": after}})
    return vendor


def run_half_way(rehearsal, cipher, engine):
    """A run whose download stands still at its half, and its vendor."""
    vendor = vendor_that_stalls(rehearsal, engine, cipher, after=len(engine) // 2)
    run = rehearsal.start()
    run.window.await_progress(pytest.approx(50, abs=1))
    return run, vendor


def put_pipe_in_place_of(path):
    """Whoever opens the file at `path` from now on waits for somebody at the other end. The file itself is kept."""
    kept = path.with_name("kept")
    if path.exists():
        path.rename(kept)
    os.mkfifo(path)
    return kept


def test_killed_while_it_asks_for_the_description_it_leaves_nothing_and_the_next_run_starts_afresh(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.set_faults({DESCRIPTION_PATH: {"stallAfterBytes": 0}})
    run = rehearsal.start()
    eventually(lambda: vendor.requests() == [DESCRIPTION], "the request for the description")
    assert killed(run)[-1] == f"Orvane path is {rehearsal.engine_path}"
    assert not rehearsal.engine_path.parent.exists()
    vendor.release()
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, DESCRIPTION, ENGINE]


def test_killed_before_the_first_byte_the_next_runs_stop_until_the_empty_engine_is_removed(rehearsal):
    rehearsal.scenario("end 0")
    vendor = vendor_that_stalls(rehearsal, rehearsal.sample_engine, "", after=0)
    run = rehearsal.start()
    eventually(lambda: ENGINE in vendor.requests(), "the request for the engine")
    assert killed(run)[-1] == "Downloading latest orvane"
    assert rehearsal.engine_path.read_bytes() == b""
    vendor.release()
    run = rehearsal.start()
    assert run.status() == -signal.SIGABRT
    assert UNABLE_TO_RUN in run.errors()
    rehearsal.engine_path.unlink()
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


def engine_whose_half_does_nothing(rehearsal):
    sample = rehearsal.build / "SampleEngine"
    return b"#!/bin/sh\n" + b"#" * 100_000 + f"\nexec {sample} \"$@\"\n".encode()


def test_killed_half_way_through_a_plain_download_the_next_run_downloads_it_anew(rehearsal):
    rehearsal.scenario("end 0")
    engine = engine_whose_half_does_nothing(rehearsal)
    run, vendor = run_half_way(rehearsal, "", engine)
    assert killed(run)[-1] == "Downloading latest orvane"
    assert engine.startswith(rehearsal.engine_path.read_bytes())
    vendor.release()
    run = rehearsal.start()
    assert run.status() == 0
    assert "remote version is 14.2.7 and local is " in run.log(), "half an engine knows no version"
    assert rehearsal.engine_path.read_bytes() == engine
    assert vendor.requests() == [DESCRIPTION, ENGINE] * 2


def test_killed_half_way_through_an_enciphered_download_the_engine_on_the_machine_is_as_before(rehearsal):
    rehearsal.scenario("end 0")
    older = rehearsal.sample_engine + b"older"
    rehearsal.install_engine(older)
    vendor = vendor_that_stalls(rehearsal, rehearsal.sample_engine, "xor", after=1000)
    run = rehearsal.start(variables={"ORVANE_SAMPLE_VERSION": "14.1"})
    eventually(lambda: ENGINE + ENCIPHERED in vendor.requests(), "the request for the engine")
    killed(run)
    assert rehearsal.engine_path.read_bytes() == older
    vendor.set_faults({DESCRIPTION_PATH: {"dropAfterBytes": 1}})
    run = rehearsal.start()
    assert run.status() == 0
    assert "Cannot download latest orvane, trying use existing orvane" in run.log()


@pytest.mark.parametrize("cipher, what_the_next_run_asks_for", [("", []), ("xor", [ENGINE + ENCIPHERED])],
                         ids=["plain", "enciphered"])
def test_killed_before_the_digest_was_checked_the_next_run_uses_a_plain_engine_and_fetches_an_enciphered_one_again(
        rehearsal, cipher, what_the_next_run_asks_for):
    rehearsal.scenario("end 0")
    engine = rehearsal.sample_engine
    run, vendor = run_half_way(rehearsal, cipher, engine)
    target = rehearsal.engine_path.with_name(rehearsal.engine_path.name + suffix_of(cipher))
    kept = put_pipe_in_place_of(target)
    vendor.release()
    run.await_log("Orvane download finished")
    eventually(lambda: run.log()[-1] == CHECKING, "the digest's beginning")
    assert killed(run)[-2:] == ["Orvane download finished", CHECKING]
    kept.replace(target)
    asked = vendor.requests()
    assert rehearsal.start().status() == 0
    assert vendor.requests() == asked + [DESCRIPTION] + what_the_next_run_asks_for
    assert rehearsal.engine_path.read_bytes() == engine


def killed_while_deciphering(rehearsal, engine, variables=None):
    """Kills a run that has written the engine's beginning; that beginning."""
    vendor = vendor_that_stalls(rehearsal, engine, "xor", after=1000)
    run = rehearsal.start(variables=variables)
    eventually(lambda: ENGINE + ENCIPHERED in vendor.requests(), "the request for the engine")
    put_pipe_in_place_of(rehearsal.engine_path)
    vendor.release()
    run.await_log("Orvane is encrypted, decrypting it")
    with open(os.open(rehearsal.engine_path, os.O_RDONLY | os.O_NONBLOCK), "rb", buffering=0) as pipe:
        beginning = eventually(lambda: pipe.read(10_000), "the first deciphered bytes")
        assert run.is_running()
        assert killed(run)[-1] == "Orvane is encrypted, decrypting it"
    assert engine.startswith(beginning)
    rehearsal.engine_path.unlink()
    return beginning, vendor


def test_killed_while_it_deciphers_a_first_engine_the_next_run_fetches_and_deciphers_it_again(rehearsal):
    rehearsal.scenario("end 0")
    engine = rehearsal.sample_engine
    beginning, vendor = killed_while_deciphering(rehearsal, engine)
    rehearsal.install_engine(beginning, mode=0o644)
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == engine
    assert vendor.requests() == [DESCRIPTION, ENGINE + ENCIPHERED] * 2


@pytest.mark.parametrize("reported, is_fetched_again", [("14.1", True), ("14.2.7", False)])
def test_killed_while_it_deciphers_over_an_older_engine_the_mixture_is_replaced_unless_it_reports_the_new_version(
        rehearsal, reported, is_fetched_again):
    rehearsal.scenario("end 0")
    older, newer = (rehearsal.sample_engine + age for age in (b"older", b"newer"))
    rehearsal.install_engine(older)
    beginning, vendor = killed_while_deciphering(rehearsal, newer, {"ORVANE_SAMPLE_VERSION": "14.1"})
    mixture = beginning + older[len(beginning):]
    rehearsal.install_engine(mixture)
    asked = vendor.requests()
    assert rehearsal.start(variables={"ORVANE_SAMPLE_VERSION": reported}).status() == 0
    assert rehearsal.engine_path.read_bytes() == (newer if is_fetched_again else mixture)
    assert vendor.requests() == asked + [DESCRIPTION] + [ENGINE + ENCIPHERED] * is_fetched_again


def test_killed_while_the_engine_works_the_engine_is_left_alone_and_the_next_run_starts_another(rehearsal):
    rehearsal.scenario(f"mark {rehearsal.mark_of('working')}", "wait-owner-gone",
                       f"mark {rehearsal.mark_of('left alone')}")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start()
    rehearsal.await_mark("working")
    assert killed(run)[-1].startswith("Spawning orvane with args --pid")
    rehearsal.await_mark("left alone")
    rehearsal.scenario("end 0")
    run = rehearsal.start()
    assert run.status() == 0
    assert "Using existing orvane" in run.log()
    assert vendor.requests() == [DESCRIPTION] * 2


@pytest.mark.parametrize("cipher, line", [
    ("", "Unable to download orvane: The operation could not be completed. (OrvaneBootstrap.DownloadError error 0.)"),
    ("xor", "Unable to decrypt orvane: {engine}: Text file busy (ETXTBSY)"),
], ids=["plain", "enciphered"])
def test_an_older_engine_of_a_killed_run_that_still_runs_cannot_be_replaced(rehearsal, cipher, line):
    rehearsal.scenario(f"mark {rehearsal.mark_of('working')}", "wait-interrupt")
    vendor = rehearsal.vendor_with_engine()
    run = rehearsal.start()
    rehearsal.await_mark("working")
    [old_engine] = run.engines()
    processes.halt(old_engine)  # so that it does not notice the end of its owner
    killed(run)
    vendor.publish(rehearsal.sample_engine + b"newer", version="14.3", cipher=cipher)
    run = rehearsal.start(languages=NONE)
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == line.format(engine=rehearsal.engine_path)
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine
    processes.end_all([old_engine])


def ended_children_had_memory(process):
    """Whether the process took note of the end of a child that did anything: its page faults were added up then."""
    fields = Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()
    return int(fields[8]) > 0


def test_without_a_network_half_an_engine_is_started_all_the_same_and_the_window_waits(rehearsal):
    engine = engine_whose_half_does_nothing(rehearsal)
    rehearsal.install_engine(engine[:len(engine) // 2], mode=0o644)
    run = rehearsal.start()
    eventually(lambda: ended_children_had_memory(run.process), "the end of half an engine")
    run.send(STEP, "Toujours là")
    run.window.await_step("Toujours là")
    assert run.window.look().alerts == ()
    run.kill()
