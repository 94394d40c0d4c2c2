"""A program under test, started in a rehearsal's folder, and what it leaves behind: output, log, processes."""

import os
import re
import signal
import socket
import struct
import subprocess
from pathlib import Path

from . import processes
from .waiting import DEADLINE_SECONDS, eventually, eventually_equal
from .window import Window

LOG_NAME = re.compile(r"Install (\d{4}-\d\d-\d\d \d\d-\d\d-\d\d) \(bootstrap\)\.log")
LOG_LINE = re.compile(r"\d\d:\d\d:\d\d: (.*)", re.DOTALL)
SERVICE_NAME = re.compile(r"--owner (kestrix\.orvane\.bootstrap\.[a-zA-Z0-9]{10}) ")


class Run:
    """One start of the program. Its standard output and error lie in files, so that no pipe holds it up; `number` tells
    them from those of other runs in the same folder."""

    def __init__(self, command, variables, log_root, folder, number=1):
        self._log_root = log_root
        self._output_file = folder / f"stdout-{number}"
        self._errors_file = folder / f"stderr-{number}"
        with open(self._output_file, "wb") as output, open(self._errors_file, "wb") as errors:
            self._process = subprocess.Popen(command, env=variables, stdin=subprocess.DEVNULL,
                                             stdout=output, stderr=errors, cwd=folder)
        self.window = Window(self.process)

    @property
    def process(self):
        return self._process.pid

    def is_running(self):
        return self._process.poll() is None

    def end_so_far(self):
        return "running" if self.is_running() else f"status {self._process.returncode}"

    def status(self):
        """The exit status, waited for; minus a signal's number where one ended the program."""
        return self._process.wait(timeout=DEADLINE_SECONDS)

    def abort_reason(self, logged=True):
        """Why the program aborted: standard error's last line without the program's name. It is the log's last line
        too, unless it must not be logged."""
        assert self.status() == -signal.SIGABRT
        last = self.errors().splitlines()[-1]
        reason = last.removeprefix("OrvaneBootstrap: ")
        assert last != reason, f"standard error ends with {last!r}"
        if logged:
            assert self.log()[-1] == reason
        else:
            assert reason not in self.log()
        return reason

    def kill(self):
        if self.is_running():
            self._process.kill()
        self._process.wait()

    def output(self):
        return self._output_file.read_text().splitlines()

    def output_bytes(self):
        return self._output_file.read_bytes()

    def errors(self):
        return self._errors_file.read_text()

    def await_output(self, line):
        eventually(lambda: line in self.output(), f"the line {line!r} on standard output")

    def log_file(self, folder="Installations"):
        """The only log there is, of this folder."""
        [file] = [*self._log_root.glob("*/*")]
        assert file.parent.name == folder and LOG_NAME.fullmatch(file.name), f"the log is {file}"
        return file

    def log(self, folder="Installations"):
        """The texts of the log's lines; each must bear its time and end as lines of logs do."""
        text = self.log_file(folder).read_bytes().decode()
        assert text.endswith("\r\n") or not text
        lines = [LOG_LINE.fullmatch(line) for line in text.split("\r\n")[:-1]]
        assert all(lines), f"a line of the log has no time: {text}"
        return [line[1] for line in lines]

    def await_log(self, text, folder="Installations"):
        eventually(lambda: any(line.startswith(text) for line in self._log_lines_so_far()), f"{text!r} in the log")

    def _log_lines_so_far(self):
        text = b"".join(file.read_bytes() for file in self._log_root.glob("*/*")).decode(errors="replace")
        return [line.partition(": ")[2] for line in text.split("\r\n")]

    def time_stamp(self):
        return LOG_NAME.fullmatch(next(self._log_root.glob("*/*")).name)[1]

    def service_name(self):
        """Where the engine reports, once an engine was started."""
        return eventually(lambda: SERVICE_NAME.search("\n".join(self.output())), "the start of an engine")[1]

    def send(self, message_type, text):
        """Says to the program what an engine might; `text` are up to 4096 bytes, or characters."""
        body = text.encode() if isinstance(text, str) else text
        self.send_datagram(struct.pack("<i", message_type) + body)

    def send_datagram(self, datagram, service_name=None):
        """Sends what need not be a message at all; to the service of that name if no engine was started yet."""
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as sender:
            sender.sendto(datagram, "\0" + (service_name or self.service_name()))

    def peak_memory(self):
        """The most memory the program has had at a time, in bytes."""
        return 1024 * int(self._status_field("VmHWM").split()[0])

    def processor_seconds(self):
        """The time that the program has used of processors so far."""
        fields = Path(f"/proc/{self.process}/stat").read_text().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def signals(self, name):
        """The set of signals of that name in proc(5), such as SigBlk, as a number."""
        return int(self._status_field(name), 16)

    def descriptors(self):
        """What each open descriptor leads to."""
        folder = Path(f"/proc/{self.process}/fd")
        return {entry.name: os.readlink(entry) for entry in folder.iterdir()}

    def _status_field(self, name):
        lines = Path(f"/proc/{self.process}/status").read_text().splitlines()
        return next(line for line in lines if line.startswith(f"{name}:")).partition(":")[2].strip()

    def engines(self):
        """Living children."""
        return processes.children_of(self.process)

    def await_no_zombies(self):
        eventually_equal(lambda: processes.zombies_of(self.process), [], "the end of all ended children")
