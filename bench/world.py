"""What the measurements need around them: files, a server, a display, programs, and windows to wait for."""

import contextlib
import ctypes
import hashlib
import json
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from measure import Failure, run

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/e2e"))

from harness.display import Desktop  # noqa: E402
from harness.waiting import eventually  # noqa: E402

MIB = 1 << 20
KEY = "9c" * 32


class World:
    """A folder on disk, a display and an HTTPS server on loopback. Ends and removes all of it on leaving."""

    def __init__(self, build):
        self.build = build
        self._ends = contextlib.ExitStack()

    def __enter__(self):
        with self._ends:
            # On disk, as an engine lies there; /tmp may be memory.
            self.folder = Path(tempfile.mkdtemp(prefix="orvane-bench-", dir="/var/tmp"))
            self._ends.callback(shutil.rmtree, self.folder)
            self.published = self.folder / "published"
            self.published.mkdir()
            desktop = Desktop()
            self._ends.callback(desktop.close)
            self.variables = {name: value for name, value in desktop.variables.items()
                              if name != "QT_LINUX_ACCESSIBILITY_ALWAYS_ON"}
            self._start_server()
            self._ends = self._ends.pop_all()
        return self

    def __exit__(self, *_):
        self._ends.close()

    def _start_server(self):
        server = subprocess.Popen([self.build / "BenchFileServer", self.published], stdin=subprocess.DEVNULL)
        self._ends.callback(server.wait)
        self._ends.callback(server.send_signal, signal.SIGTERM)
        eventually((self.published / "origin").exists, "the server")
        self.origin = (self.published / "origin").read_text().strip()
        self.authority = self.published / "ca.pem"

    def stage(self, *arguments):
        return run([self.build / "BenchStage", *arguments])

    def random_file(self, name, size):
        """Made once, read once, so that it lies in the cache."""
        file = self.published / name
        if not file.exists():
            piece = os.urandom(MIB)  # our own peak memory counts as that of the programs we start
            with open(file, "wb") as output:
                for _ in range(size // len(piece)):
                    output.write(piece)
            os.sync()
        with open(file, "rb") as content:
            while content.read(MIB):
                pass
        return file

    def fresh(self, name):
        """A file's place where nothing lies."""
        file = self.folder / name
        file.unlink(missing_ok=True)
        return file

    def place_for(self, name, size):
        """Where nothing lies, on a machine that has so many bytes of memory at hand: a virtual one gives what was
        freed back to its host, and whoever wants it next waits for it."""
        warm = self.fresh("warm")
        with open(warm, "wb") as output:
            for _ in range(size // MIB):
                output.write(bytes(MIB))
        warm.unlink()
        return self.fresh(name)

    def rehearsal(self, name, engine_size=None, installed=False):
        """A folder in which the program finds the bench engine, or downloads and deciphers it."""
        folder = self.folder / name
        folder.mkdir()
        engine = folder / "engine"
        shutil.copy(self.build / "BenchEngine", engine)
        if engine_size:
            with open(engine, "ab") as output:
                while output.tell() < engine_size:
                    output.write(os.urandom(min(MIB, engine_size - output.tell())))
        digest = _digest(engine)
        enciphered = self.published / f"{name}-setup.enc"
        self.stage("decipher", engine, self.fresh(enciphered), engine.stat().st_size, digest)
        description = {"URL": f"{self.origin}/{name}-setup", "Checksum": digest, "ChecksumAlgorithm": "sha256",
                       "EncryptedFileChecksum": _digest(enciphered), "EncryptionAlgorithm": "xor",
                       "Size": engine.stat().st_size, "Version": "14.2.7"}
        (self.published / "downloadinstaller.json").write_text(json.dumps(description))
        (folder / "rehearsal.json").write_text(json.dumps(
            {"apiOrigin": self.origin, "certificateAuthority": str(self.authority)}))
        place = folder / "opt/Varlen/orvane/varlen-setup"
        if installed:
            place.parent.mkdir(parents=True)
            shutil.copy(engine, place)
        return Rehearsal(self, folder, place, enciphered)


class Rehearsal:
    def __init__(self, world, folder, place, enciphered):
        self._world = world
        self.folder = folder
        self.enciphered = enciphered
        self._place = place

    def forget_engine(self):
        shutil.rmtree(self._place.parent, ignore_errors=True)

    def run(self, program="OrvaneBootstrapRehearsal", messages=0, through=()):
        """A whole run; `through` begins its command line. Returns what it took, the seconds for which the engine sent, and how the main thread fared."""
        files = {name: self.folder / name for name in ("BENCH_SENT", "BENCH_BEGUN", "BENCH_STALLS")}
        for file in files.values():
            file.unlink(missing_ok=True)
        variables = self._world.variables | {name: str(file) for name, file in files.items()} | {
            "ORVANE_REHEARSAL": str(self.folder), "BENCH_MESSAGES": str(messages)}
        cost = run([*through, self._world.build / program], variables)
        sent = float(files["BENCH_SENT"].read_text())
        stalls = json.loads(files["BENCH_STALLS"].read_text()) if files["BENCH_STALLS"].exists() else None
        return cost, sent, stalls


class _Event(ctypes.Union):
    class _Map(ctypes.Structure):
        _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                    ("display", ctypes.c_void_p), ("event", ctypes.c_ulong), ("window", ctypes.c_ulong),
                    ("override_redirect", ctypes.c_int)]
    _fields_ = [("map", _Map), ("padding", ctypes.c_long * 24)]


class WindowWatch:
    """Notices when a program's window is put on the screen."""
    _SUBSTRUCTURE_NOTIFY = 1 << 19
    _MAP_NOTIFY = 19
    _PATIENCE_SECONDS = 30

    def __init__(self, world):
        self._world = world
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self._display = ctypes.c_void_p(self._x11.XOpenDisplay(world.variables["DISPLAY"].encode()))
        root = self._x11.XDefaultRootWindow(self._display)
        self._x11.XSelectInput(self._display, ctypes.c_ulong(root), ctypes.c_long(self._SUBSTRUCTURE_NOTIFY))
        self._x11.XSync(self._display, 0)

    def start_to_window(self, command, variables):
        """Seconds from the program's start to its window, and its peak memory then, in KiB. Ends the program."""
        self._forget()
        start = time.perf_counter()
        process = subprocess.Popen(command, env=variables, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        try:
            self._await_window(start)
            seconds = time.perf_counter() - start
            return seconds, _peak_kib(process.pid)
        finally:
            process.kill()
            process.wait()

    def _forget(self):
        self._x11.XSync(self._display, 1)

    def _await_window(self, start):
        event = _Event()
        while True:
            while self._x11.XPending(self._display):
                self._x11.XNextEvent(self._display, ctypes.byref(event))
                if event.map.type == self._MAP_NOTIFY and not event.map.override_redirect:
                    return
            left = start + self._PATIENCE_SECONDS - time.perf_counter()
            if left <= 0:
                raise Failure("no window appears")
            select.select([self._x11.XConnectionNumber(self._display)], [], [], left)


def _peak_kib(process):
    status = Path(f"/proc/{process}/status").read_text()
    return int(next(line for line in status.splitlines() if line.startswith("VmHWM")).split()[1])


def _digest(file):
    with open(file, "rb") as content:
        return hashlib.file_digest(content, "sha256").hexdigest()
