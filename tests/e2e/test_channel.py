"""The channel on which an engine reports, in the hands of strangers, of bad engines and at odd moments."""

import re
import socket
import struct
import subprocess
from pathlib import Path

import pytest
from harness.engines import shell_engine, waiting_for_the_owners_end
from harness.messages import CANCEL, END, ERROR, FIRST_UNASSIGNED, LONGEST_TEXT, NETWORK, PROGRESS, STEP, after
from harness.texts import French
from harness.waiting import DEADLINE_SECONDS, eventually

EACCES, EMSGSIZE = 13, 90
NOBODY, SOMEBODY = 65534, 65533
SERVICE = re.compile(r"@kestrix\.orvane\.bootstrap\.\w{10}")


def refusals(run, code):
    return run.output().count(f"mach_msg() failed with code {code:#x}")


# What is no message.

@pytest.mark.parametrize("datagram", [b"", b"\x04", b"\x04\0\0", b"\x04\0\0\0", b"\x04\0\0\0\0", b"\x04\0\0\0\0Texte"],
                         ids=["empty", "1 byte", "3 bytes", "4 bytes", "5 bytes", "a text that begins with NUL"])
def test_what_a_message_leaves_out_reads_as_zero(run, datagram):
    """Those that begin with a 4 clear the error line; the empty one is a position that is no number."""
    run.send(ERROR, "Une erreur")
    run.window.await_error("Une erreur")
    run.send_datagram(datagram)
    assert after(run).error == ("" if datagram else "Une erreur")
    assert after(run).progress == 10
    run.kill()


@pytest.mark.parametrize("size", [LONGEST_TEXT + 1, 65_536, 150_000])
def test_messages_that_are_too_long_are_refused_one_by_one(run, size):
    for _ in range(3):
        run.send(STEP, b"x" * size)
        run.send(ERROR, b"x" * size)
    view = after(run)
    assert (view.step, view.error) == ("Traité", "")
    assert refusals(run, EMSGSIZE) == 6
    run.kill()


def test_a_text_ends_before_an_embedded_nul_whatever_follows(run):
    assert after(run, (ERROR, b"jusqu'ici\0\xff\xfe")).error == "jusqu'ici"
    run.kill()


@pytest.mark.parametrize("text", [b"\xc0\x80", b"\xed\xa0\x80", b"\xf4\x90\x80\x80", b"x" * 4095 + "é".encode()[:1]],
                         ids=["too long a form", "half a pair", "beyond Unicode", "cut off at the end"])
def test_a_text_that_is_not_utf8_stops_the_program_and_says_so(run, text):
    run.send(STEP, text)
    assert run.abort_reason() == "invalid input: an engine message is not valid UTF-8"


@pytest.mark.parametrize("message_type", [-1, FIRST_UNASSIGNED, -2**31, 2**31 - 1, 1 << 24, 256])
def test_a_type_that_is_none_does_nothing(run, message_type):
    before = after(run)
    assert after(run, (message_type, "0"), (message_type, "Texte"), (message_type, "")) == before
    run.kill()


# What is no number.

NO_NUMBERS = ["", " ", "1 ", " 1", "1\n", "\n1", "1\r\n", "1\t", "\u00a01", "1,5", "1.0", "1e0", "0x1", "0b1", "1_0",
              "+", "-", "--1", "++1", "+-1", "-+1", "1-", "\u22121", "\u0661", "\u0967", "\uff11",
              "9223372036854775808", "-9223372036854775809", "18446744073709551617", "1" * LONGEST_TEXT]


def test_no_number_moves_no_bar_names_no_network_and_presses_no_button(run):
    run.send(PROGRESS, "33")
    run.send(ERROR, "Une erreur")
    run.send(CANCEL, "0")
    for text in NO_NUMBERS:
        view = after(run, (PROGRESS, text), (NETWORK, text), (CANCEL, text))
        assert (view.progress, view.error, view.cancel_enabled) == (33, "Une erreur", False), repr(text)
    run.kill()


@pytest.mark.parametrize("text", [" 0", "0\n", "0\r\n", "0x0", "\u0660", "18446744073709551616"])
def test_an_end_that_is_no_number_is_no_end_but_a_fatal_text(rehearsal, run, text):
    run.send(END, text)
    eventually(lambda: run.window.look().alerts, "the fatal alert")
    assert run.is_running()
    run.window.press("OK")
    assert run.status() == 1


def test_numbers_as_long_as_a_message_and_at_the_ends_of_64_bits_count(run):
    for text, position in [("0" * 4094 + "42", 42), ("+" + "0" * 4094 + "7", 7), ("9223372036854775807", 100),
                           ("-9223372036854775808", 0), ("-0", 0), ("100", 100)]:
        assert after(run, (PROGRESS, text)).progress == position, text
    run.kill()


# Odd moments.

def service_name(run):
    """As it can be learnt before any engine was started: of the machine's sockets, the program's own."""
    own = {target for target in run.descriptors().values() if target.startswith("socket:")}
    for line in Path("/proc/net/unix").read_text().splitlines()[1:]:
        fields = line.split()
        if f"socket:[{fields[6]}]" in own and SERVICE.fullmatch(fields[-1]):
            return fields[-1].removeprefix("@")
    raise AssertionError("the program has no channel")


def start_before_the_window(rehearsal):
    """The main window waits for the answer to the question of consent."""
    rehearsal.scenario("wait-interrupt")
    rehearsal.vendor_with_engine()
    run = rehearsal.start("--uninstall")
    run.window.await_alert(French.uninstallation_consent)
    assert run.window.look().main is None
    return run


def test_messages_before_the_window_shows_are_in_it_once_it_does(rehearsal):
    run = start_before_the_window(rehearsal)
    for message_type, text in [(STEP, "Trop tôt"), (PROGRESS, "20"), (ERROR, "Avant"), (PROGRESS, "30")]:
        run.send_datagram(struct.pack("<i", message_type) + text.encode(), service_name(run))
    run.window.press(French.yes)
    run.window.await_step("Trop tôt")
    run.window.await_error("Avant")
    run.window.await_progress(30)
    run.kill()


def test_an_end_before_the_window_shows_is_the_runs_end(rehearsal):
    run = start_before_the_window(rehearsal)
    run.send_datagram(struct.pack("<i", END) + b"0", service_name(run))
    assert run.status() == 0


def test_after_cancel_was_confirmed_nobody_takes_messages(run):
    name = run.service_name()
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.send(STEP, "Encore")
    run.window.await_step("Encore")
    run.window.press(French.yes)
    assert run.status() == 2
    with pytest.raises(ConnectionRefusedError):
        run.send_datagram(struct.pack("<i", END) + b"0", name)


def test_two_runs_at_once_have_a_channel_each(rehearsal, run):
    second = rehearsal.start()
    second.window.await_step("Prêt")
    assert second.service_name() != run.service_name()
    second.send(END, "3")
    assert second.status() == 2
    assert run.is_running()
    run.send(END, "0")
    assert run.status() == 0


# Other users. In the namespace of the product, whose channel has no other way in.

SEND = ("import socket, struct, sys\n"
        "channel = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)\n"
        "channel.sendto(struct.pack('<i', int(sys.argv[2])) + sys.argv[3].encode(), '\\0' + sys.argv[1])\n")


def send_as(product, user, run, message_type, text):
    command = product.namespace.command("setpriv", f"--reuid={user}", "--clear-groups", "/usr/bin/python3", "-c", SEND,
                                        run.service_name(), str(message_type), text)
    subprocess.run(command, check=True, timeout=DEADLINE_SECONDS)


def test_the_product_hears_no_other_user(product):
    product.scenario("step Prêt", "wait-interrupt")
    vendor = product.vendor_with_engine()
    product.namespace.trust(vendor.folder / "ca.pem")
    run = product.start()
    run.window.await_step("Prêt")
    send_as(product, NOBODY, run, STEP, "D'un autre")
    send_as(product, NOBODY, run, END, "0")
    eventually(lambda: refusals(run, EACCES) == 1, "the refusal")
    assert run.window.main().step == "Prêt"
    send_as(product, 0, run, END, "3")
    assert run.status() == 2


# Sends without waiting for room until it has used two seconds of a processor, and prints what it used.
FLOOD = """
import socket, sys, time
channel = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
channel.connect("\\0" + sys.argv[1])
channel.setblocking(False)
while time.process_time() < 2:
    for _ in range(1000):
        try:
            channel.send(b"\\1\\0\\0\\0flood")
        except BlockingIOError:
            pass
print(time.process_time())
"""


def test_another_users_flood_is_quiet_and_costs_the_product_a_fraction_of_the_sender(product):
    product.scenario("step Prêt", "wait-interrupt")
    vendor = product.vendor_with_engine()
    product.namespace.trust(vendor.folder / "ca.pem")
    run = product.start()
    run.window.await_step("Prêt")
    used_before = run.processor_seconds()
    with subprocess.Popen(product.namespace.command("setpriv", f"--reuid={NOBODY}", "--clear-groups",
                                                    "/usr/bin/python3", "-c", FLOOD, run.service_name()),
                          stdout=subprocess.PIPE, text=True) as flood:
        eventually(lambda: refusals(run, EACCES) == 1, "the refusal")
        send_as(product, 0, run, STEP, "Malgré tout")
        run.window.await_step("Malgré tout")
        used_by_sender = float(flood.communicate(timeout=DEADLINE_SECONDS)[0])
    assert flood.returncode == 0
    used = run.processor_seconds() - used_before
    assert refusals(run, EACCES) == 1
    assert used < used_by_sender / 4, f"the program used {used} s, the sender {used_by_sender} s"
    send_as(product, 0, run, END, "3")
    assert run.status() == 2


def test_the_product_of_another_user_hears_root_and_that_user_alone(product):
    """Without a screen, which the other user could not read."""
    engine = shell_engine("exit 0", waiting_for_the_owners_end())
    vendor = product.vendor()
    vendor.publish(engine)
    product.namespace.trust(vendor.folder / "ca.pem")
    product.install_engine(engine)
    product.folder.chmod(0o755)
    run = product.start(variables={"QT_QPA_PLATFORM": "offscreen"},
                        through=("setpriv", f"--reuid={SOMEBODY}", "--clear-groups"))
    run.service_name()
    send_as(product, NOBODY, run, END, "0")
    eventually(lambda: refusals(run, EACCES) == 1, "the refusal")
    send_as(product, SOMEBODY, run, PROGRESS, "1")
    send_as(product, 0, run, END, "3")
    assert run.status() == 2
    assert refusals(run, EACCES) == 1
