"""Processes that tests start, found again by a mark in their environment wherever they have ended up."""

import ctypes
import os
import signal
from pathlib import Path

from .waiting import eventually

MARK = "ORVANE_E2E_MARK"
_PR_SET_CHILD_SUBREAPER = 36


def adopt_orphans():
    """Makes this process the parent of every orphan below it, so that none escapes and none stays a zombie."""
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "prctl")


def _states():
    """(process, parent, state letter) of every process."""
    for entry in Path("/proc").iterdir():
        if not entry.name.isdigit():
            continue
        try:
            # The name in parentheses may hold anything, blanks included.
            fields = (entry / "stat").read_text().rpartition(")")[2].split()
        except OSError:
            continue
        yield int(entry.name), int(fields[1]), fields[0]


def _environment(process):
    try:
        return Path(f"/proc/{process}/environ").read_bytes().split(b"\0")
    except OSError:
        return []


def children_of(process):
    return [child for child, parent, state in _states() if parent == process and state != "Z"]


def zombies_of(process):
    return [child for child, parent, state in _states() if parent == process and state == "Z"]


def descendants():
    """Every living process below this one, nearest first."""
    found = children_of(os.getpid())
    for process in found:
        found.extend(children_of(process))
    return found


def marked(mark):
    """Living processes that were started, directly or not, with this mark."""
    wanted = f"{MARK}={mark}".encode()
    return [process for process, _, state in _states() if state != "Z" and wanted in _environment(process)]


def halt(process):
    """Stops it where it is, until SIGCONT. Its threads take note only when they come to run."""
    os.kill(process, signal.SIGSTOP)
    threads = Path(f"/proc/{process}/task")
    eventually(lambda: all((thread / "stat").read_text().rpartition(")")[2].split()[0] == "T"
                           for thread in threads.iterdir()), "the halt of every thread")


def reap_orphans():
    """Takes note of the end of adopted processes, once every process that was started here has ended."""
    for zombie in zombies_of(os.getpid()):
        os.waitpid(zombie, 0)


def end_all(processes):
    for process in processes:
        try:
            os.kill(process, signal.SIGKILL)
        except ProcessLookupError:
            continue
