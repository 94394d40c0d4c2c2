"""Engines of the tests' own, for what no scenario of the sample engine does."""

_SPEAKER = """#!/usr/bin/python3
import os, signal, socket, struct, sys, time

def option(name):
    return sys.argv[sys.argv.index(name) + 1]

channel = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
channel.connect("\\0" + option("--owner"))
STEP, END, ERROR, RESTART = 1, 3, 4, 5

def say(kind, text):
    channel.send(struct.pack("<i", kind) + text.encode())

def await_file(file):
    while not os.path.exists(file):
        time.sleep(0.01)

"""


def speaker(body):
    """An engine in Python that plays `body`, in which `say` sends a message, `option` reads the command line and
    `await_file` waits for the test."""
    return (_SPEAKER + body).encode()


def shell_engine(version, work):
    """An engine in shell: the commands `version` answer "--version", the commands `work` are the engine's own."""
    return f'#!/bin/sh\nif [ "$*" = --version ]; then\n{version}\nelse\n{work}\nfi\n'.encode()


def waiting_for_the_owners_end(before=""):
    """Commands that end once the program is gone."""
    return f"owner=$PPID\n{before}\nwhile kill -0 $owner 2>/dev/null; do sleep 0.05; done"


def program_of_another_machine(engine):
    """The same program with the mark of a processor that nobody builds any more."""
    machine_of_an_elf_header = 18
    content = bytearray(engine)
    content[machine_of_an_elf_header:machine_of_an_elf_header + 2] = (2).to_bytes(2, "little")  # SPARC, 32 bits
    return bytes(content)


def with_one_bit_flipped(content):
    middle = len(content) // 2
    return content[:middle] + bytes([content[middle] ^ 0x10]) + content[middle + 1:]
