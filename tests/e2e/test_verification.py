"""What is checked before a file is taken for the engine: digests, keys, sizes and the version it reports."""

import hashlib

import pytest
from harness.engines import (program_of_another_machine, shell_engine, waiting_for_the_owners_end,
                             with_one_bit_flipped)
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, REPORT, xor
from harness.waiting import eventually

MEBIBYTE = 1 << 20


def sha256(content):
    return hashlib.sha256(content).hexdigest()


# Digests of what was downloaded.

@pytest.mark.parametrize("cipher, suffix", [("", ""), ("xor", ".enc")])
def test_one_flipped_bit_is_an_incorrect_download_and_is_not_started(rehearsal, cipher, suffix):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher=cipher)
    published = vendor.folder / f"published/varlen-setup{suffix}"
    published.write_bytes(with_one_bit_flipped(published.read_bytes()))
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert vendor.requests() == [DESCRIPTION, ENGINE + suffix, REPORT]
    assert not [line for line in run.log() if line.startswith("Spawning orvane with args --pid")]
    assert rehearsal.engine_path.exists() == (not cipher), "an enciphered file that is wrong is not deciphered"


def test_one_flipped_bit_of_an_engine_on_the_machine_leaves_the_answer_to_its_version(rehearsal):
    """Its version is the described one: the engine is used although its digest is another."""
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    *most, last = rehearsal.sample_engine  # the last byte of a program is no part of what runs
    rehearsal.install_engine(bytes([*most, last ^ 1]))
    run = rehearsal.start()
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION]
    assert "Checking if orvane versions match" in run.log()


def publish_other_plain_file(rehearsal, plain):
    """The enciphered file is the one described, but it deciphers to `plain`, whose digest is another."""
    vendor = rehearsal.vendor()
    enciphered = xor(plain, sha256(rehearsal.sample_engine))
    vendor.publish(rehearsal.sample_engine, cipher="xor", served=enciphered,
                   EncryptedFileChecksum=sha256(enciphered), Size=len(enciphered))
    return vendor


def test_the_right_enciphered_digest_is_enough_whatever_the_plain_file_turns_out_to_be(rehearsal):
    rehearsal.scenario("end 0")
    other = rehearsal.sample_engine + b"not what Checksum describes"
    vendor = publish_other_plain_file(rehearsal, other)
    run = rehearsal.start()
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]
    assert rehearsal.engine_path.read_bytes() == other


def test_a_plain_file_that_turns_out_to_be_no_program_fails_at_its_start(rehearsal):
    vendor = publish_other_plain_file(rehearsal, b"no program at all " * 1000)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert "Orvane decrypted" in run.log()
    assert run.log()[-1].startswith("Cannot spawn orvane: ")
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc", REPORT]


@pytest.mark.parametrize("cipher, field", [("", "Checksum"), ("xor", "EncryptedFileChecksum")])
@pytest.mark.parametrize("change", [str.upper, lambda digest: ""], ids=["in capitals", "empty"])
def test_a_digest_in_capitals_and_an_empty_one_match_no_download(rehearsal, cipher, field, change):
    vendor = rehearsal.vendor()
    description = vendor.publish(rehearsal.sample_engine, cipher=cipher)
    rehearsal.install_engine(shell_engine("echo 14.0", "exit 0"))
    vendor.publish(rehearsal.sample_engine, cipher=cipher, **{field: change(description[field])})
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert not [line for line in run.log() if line.startswith("Spawning orvane with args --pid")]


@pytest.mark.parametrize("algorithm", ["SHA256", "sha-256", "sha1", ""])
def test_an_unknown_algorithm_matches_no_enciphered_download_either(rehearsal, algorithm):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher="xor", ChecksumAlgorithm=algorithm)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert any(line.startswith("encrypted orvane local checksum is , remote") for line in run.log())


def test_an_empty_digest_takes_an_engine_that_is_not_there_for_the_right_one(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, Checksum="")
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert "Using existing orvane" in run.log()
    assert run.log()[-1].startswith("Cannot spawn orvane: ")
    assert vendor.requests() == [DESCRIPTION, REPORT]


# Keys and sizes.

def publish_with_key(rehearsal, content, key_text, key):
    """`content` enciphered with `key`, which the description gives as `key_text`."""
    vendor = rehearsal.vendor()
    enciphered = xor(content, key.hex())
    vendor.publish(content, cipher="xor", served=enciphered, Checksum=key_text,
                   EncryptedFileChecksum=sha256(enciphered), Size=len(enciphered))
    return vendor


@pytest.mark.parametrize("key_text, key", [("+f-0", b"\x0f\x00"), ("0A0b", b"\x0a\x0b"), ("7F", b"\x7f")],
                         ids=["signs", "mixed case", "capitals"])
def test_signs_and_capitals_are_part_of_a_keys_numbers(rehearsal, key_text, key):
    rehearsal.scenario("end 0")
    publish_with_key(rehearsal, rehearsal.sample_engine, key_text, key)
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


@pytest.mark.parametrize("key_text, code", [("abc", 1), ("+", 1), ("ab" * 10_001, 2), ("-f", 3), ("++", 3), (" 1", 3),
                                            ("é0", 3)], ids=["odd", "a sign alone", "longer than the content",
                                                             "below zero", "two signs", "a blank", "no digit"])
def test_a_key_of_another_form_deciphers_nothing(rehearsal, key_text, code):
    publish_with_key(rehearsal, b"content that is never reached" * 10, key_text, b"\x01")
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == f"Unable to decrypt orvane: code {code}"
    assert not rehearsal.engine_path.exists()


def test_an_empty_key_stops_the_program_and_says_so(rehearsal):
    rehearsal.install_engine(shell_engine("echo 14.0", "exit 0"))
    publish_with_key(rehearsal, b"content", "", b"\x01")
    run = rehearsal.start()
    assert run.abort_reason() == "invalid input: content cannot be deciphered with an empty key"


@pytest.mark.parametrize("size", [0, -1, -2**63])
def test_a_size_that_leaves_no_content_leaves_too_little_for_the_key(rehearsal, size):
    rehearsal.vendor().publish(rehearsal.sample_engine, cipher="xor", Size=size)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == "Unable to decrypt orvane: code 2"
    assert not rehearsal.engine_path.exists()


@pytest.mark.parametrize("more", [1, 2**40])
def test_a_size_beyond_the_file_deciphers_the_file(rehearsal, more):
    rehearsal.scenario("end 0")
    rehearsal.vendor().publish(rehearsal.sample_engine, cipher="xor", Size=len(rehearsal.sample_engine) + more)
    run = rehearsal.start()
    assert run.status() == 0
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


def test_a_size_below_the_files_cuts_the_engine_off(rehearsal):
    """The digest of the enciphered file is right; nobody looks at the plain one again."""
    rehearsal.vendor().publish(rehearsal.sample_engine, cipher="xor", Size=64)
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert "Orvane decrypted" in run.log()
    assert run.log()[-1].startswith("Cannot spawn orvane: ")
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine[:64]


@pytest.mark.parametrize("size", [0, -1, 1, 2**63 - 1])
def test_the_size_of_a_plain_engine_is_not_looked_at(rehearsal, size):
    rehearsal.scenario("end 0")
    rehearsal.vendor().publish(rehearsal.sample_engine, Size=size)
    assert rehearsal.start().status() == 0
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine


# The version an engine reports.

LONGEST_VERSION = 65_536


def start_with_engine(rehearsal, engine, scenario=("end 0",)):
    """`engine` lies on the machine; another one is published as 14.2.7."""
    rehearsal.scenario(*scenario)
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    rehearsal.install_engine(engine)
    return vendor, rehearsal.start()


@pytest.mark.parametrize("version, local", [
    ("exit 0", ""),
    ("exit 3", ""),
    ("echo 1 >&2", ""),
    ("echo; echo; echo", ""),
    (f"head -c {LONGEST_VERSION} /dev/zero | tr '\\0' 0", "0" * LONGEST_VERSION),
], ids=["nothing", "nothing but a status", "nothing but an error", "line ends alone", "64 KiB of zeros"])
def test_an_engine_that_reports_no_version_to_speak_of_is_replaced(rehearsal, version, local):
    vendor, run = start_with_engine(rehearsal, shell_engine(version, "exit 1"))
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
    assert rehearsal.engine_path.read_bytes() == rehearsal.sample_engine
    assert f"remote version is 14.2.7 and local is {local}" in run.log()


def test_a_version_of_64_kibibytes_is_compared_like_any_other(rehearsal):
    nines = f"head -c {LONGEST_VERSION} /dev/zero | tr '\\0' 9"
    vendor, run = start_with_engine(rehearsal, shell_engine(nines, waiting_for_the_owners_end()))
    run.await_log("Spawning orvane with args --pid")
    assert "Using existing orvane" in run.log()
    assert vendor.requests() == [DESCRIPTION]
    run.kill()


@pytest.mark.parametrize("size", [LONGEST_VERSION + 1, 512 * MEBIBYTE], ids=["64 KiB and a byte", "512 MiB"])
def test_a_version_of_more_than_64_kibibytes_is_none_and_takes_no_memory(rehearsal, size):
    vendor, run = start_with_engine(rehearsal, shell_engine(f"head -c {size} /dev/zero | tr '\\0' 9", "exit 1"),
                                    scenario=("step Prêt", "wait-interrupt"))
    run.window.await_step("Prêt")
    assert "Unable to retrieve file version: cannot retrieve process stdout" in run.log()
    assert vendor.requests() == [DESCRIPTION, ENGINE]
    if not rehearsal.is_sanitized:
        assert run.peak_memory() < 128 * MEBIBYTE
    run.kill()


def test_an_engine_that_closes_its_output_is_not_waited_for(rehearsal):
    version = waiting_for_the_owners_end("echo 14.2.7\nexec >&-")
    vendor, run = start_with_engine(rehearsal, shell_engine(version, waiting_for_the_owners_end()))
    run.await_log("Spawning orvane with args --pid")
    assert "remote version is 14.2.7 and local is 14.2.7" in run.log()
    # The line stands in the log a moment before the second one is there.
    eventually(lambda: len(run.engines()) == 2, "an engine beside the one that told its version")
    assert vendor.requests() == [DESCRIPTION]
    run.kill()


def test_an_engine_that_never_tells_its_version_keeps_the_window_waiting_and_cancel_ends_the_run(rehearsal):
    version = waiting_for_the_owners_end(f"touch '{rehearsal.mark_of('asked')}'")
    vendor, run = start_with_engine(rehearsal, shell_engine(version, "exit 1"))
    rehearsal.await_mark("asked")
    assert run.window.main().step == French.preparing_installation
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.window.press(French.yes)
    assert run.status() == 2
    assert vendor.requests() == [DESCRIPTION]


def test_an_engine_that_dies_by_a_signal_has_reported_what_it_printed(rehearsal):
    vendor, run = start_with_engine(rehearsal, shell_engine("echo 14.0; kill -SEGV $$", "exit 1"))
    assert run.status() == 0
    assert "remote version is 14.2.7 and local is 14.0" in run.log()
    assert vendor.requests() == [DESCRIPTION, ENGINE]


def test_a_program_of_another_machine_cannot_be_asked_for_its_version(rehearsal):
    vendor, run = start_with_engine(rehearsal, program_of_another_machine(rehearsal.sample_engine))
    assert run.abort_reason().startswith("invalid input: the engine could not be asked for its version: ")
    assert vendor.requests() == [DESCRIPTION]
