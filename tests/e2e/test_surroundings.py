"""The product, started as root in surroundings that somebody else has prepared: streams, umask, files of other users."""

import os
import stat
import sys
from pathlib import Path

import pytest
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE

SOMEBODY_ELSE = 1
SIGPIPE_AND_SIGXFSZ = 1 << 12 | 1 << 24

# Starts the command that follows with other streams. Python ignores two signals for itself; the command shall not inherit
# that.
STARTER = """
import os, signal, sys
for name in ("SIGPIPE", "SIGXFSZ"):
    signal.signal(getattr(signal, name), signal.SIG_DFL)
{}
os.execv(sys.argv[1], sys.argv[1:])
"""
WITHOUT_READER = "reader, writer = os.pipe(); os.dup2(writer, 1)"
# The program itself holds the end that would be read.
NEVER_READ = """
reader, writer = os.pipe()
os.set_inheritable(reader, True)
os.set_blocking(writer, False)
try:
    while os.write(writer, b"." * 1000): pass
except BlockingIOError:
    os.set_blocking(writer, True)
os.dup2(writer, 1)
"""
# Nothing gets through a terminal that was stopped.
STOPPED_TERMINAL = """
import pty, termios
window, terminal = pty.openpty()
os.set_inheritable(window, True)
os.dup2(terminal, 1)
termios.tcflow(1, termios.TCOOFF)
"""


def with_streams(preparation):
    return (sys.executable, "-c", STARTER.format(preparation))


def ignored_signals(process):
    status = Path(f"/proc/{process}/status").read_text()
    return int(next(line for line in status.splitlines() if line.startswith("SigIgn:")).split()[1], 16)


# Streams.


@pytest.mark.parametrize("preparation", [WITHOUT_READER, NEVER_READ, STOPPED_TERMINAL],
                         ids=["no reader", "never read", "stopped terminal"])
def test_nobody_reads_standard_output_and_the_run_goes_on_with_every_line_in_the_log(product, preparation):
    product.scenario("step Copie", "wait-interrupt")
    product.trusted_vendor(product.sample_engine, cipher="xor")
    run = product.start(through=with_streams(preparation))
    run.window.await_step("Copie")
    [engine] = run.engines()
    assert run.signals("SigIgn") & SIGPIPE_AND_SIGXFSZ == SIGPIPE_AND_SIGXFSZ
    assert ignored_signals(engine) & SIGPIPE_AND_SIGXFSZ == 0
    log = run.log()
    assert log[0] == "Checking preferred languages" and log[-1].startswith("Spawning orvane with args --pid")
    assert "Orvane decrypted" in log
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.window.press(French.yes)
    assert run.status() == 2


@pytest.mark.parametrize("preparation", [NEVER_READ, STOPPED_TERMINAL], ids=["never read", "stopped terminal"])
def test_nobody_reads_standard_error_and_what_the_toolkit_says_there_holds_nothing_up(product, preparation):
    product.scenario("end 0")
    product.trusted_vendor(product.sample_engine)
    without_runtime_folder = {"XDG_RUNTIME_DIR": "", "QT_LOGGING_RULES": "qt.core.library=true"}
    run = product.start(variables=without_runtime_folder, through=with_streams(f"{preparation}\nos.dup2(1, 2)"))
    assert run.status() == 0


@pytest.mark.parametrize("closed", [(1,), (0, 1, 2)], ids=["standard output", "all three"])
def test_closed_streams_are_opened_on_nothing_before_anything_else(product, closed):
    product.scenario("step Copie", product.gate("seen"), "end 0")
    product.trusted_vendor(product.sample_engine)
    run = product.start(through=with_streams("\n".join(f"os.close({number})" for number in closed)))
    run.window.await_step("Copie")
    descriptors = run.descriptors()
    [engine] = run.engines()
    for number in closed:
        assert descriptors[str(number)].endswith("/dev/null")
        assert os.readlink(f"/proc/{engine}/fd/{number}").endswith("/dev/null")
    product.open_gate("seen")
    assert run.status() == 0


# Files that another user could write to.


def give_engine_of_somebody_else(product, content, mode):
    product.install_engine(content)
    os.chown(product.engine_path, SOMEBODY_ELSE, SOMEBODY_ELSE)
    product.engine_path.chmod(mode)


def assert_owned(file):
    status = file.stat()
    assert status.st_uid == os.geteuid()
    assert oct(stat.S_IMODE(status.st_mode) & 0o7022) == oct(0)


@pytest.mark.parametrize("mode", [0o4777, 0o755, 0o2775])
@pytest.mark.parametrize("cipher", ["", "xor"], ids=["plain", "xor"])
def test_an_engine_of_another_user_becomes_this_runs_when_it_is_written(product, cipher, mode):
    product.scenario("end 0")
    vendor = product.trusted_vendor(product.sample_engine, cipher=cipher)
    give_engine_of_somebody_else(product, b"#!/bin/sh\necho 14.0\n", mode)
    another_name = product.namespace.root / "opt/another name"
    os.link(product.engine_path, another_name)
    assert product.start().status() == 0
    assert another_name.read_bytes().startswith(b"#!"), "whoever holds the old file has none of the new one"
    assert another_name.stat().st_uid == SOMEBODY_ELSE
    assert product.engine_path.read_bytes() == product.sample_engine
    assert_owned(product.engine_path)
    assert sorted(file.name for file in product.engine_path.parent.iterdir()) == (
        ["varlen-setup", "varlen-setup.enc"] if cipher else ["varlen-setup"])
    assert vendor.requests() == [DESCRIPTION, ENGINE + (".enc" if cipher else "")]


def test_an_enciphered_download_of_another_user_becomes_this_runs(product):
    product.scenario("end 0")
    product.trusted_vendor(product.sample_engine, cipher="xor")
    encrypted = product.engine_path.with_name("varlen-setup.enc")
    encrypted.parent.mkdir(parents=True)
    encrypted.write_bytes(b"x" * 10)
    os.chown(encrypted, SOMEBODY_ELSE, SOMEBODY_ELSE)
    encrypted.chmod(0o666)
    assert product.start().status() == 0
    assert_owned(encrypted)
    assert product.engine_path.read_bytes() == product.sample_engine


def test_a_longer_engine_of_another_user_keeps_its_tail_when_it_is_written_over(product):
    product.scenario("end 0")
    product.trusted_vendor(product.sample_engine, cipher="xor")
    tail = b"the old engine's tail"
    give_engine_of_somebody_else(product, b"#!/bin/sh\necho 14.0; exit\n".ljust(len(product.sample_engine), b"x") + tail,
                                 0o4777)
    assert product.start().status() == 0
    assert product.engine_path.read_bytes() == product.sample_engine + tail
    assert_owned(product.engine_path)
