"""A link of limited speed to the server on this machine's loopback, in a network namespace of its own. Needs root.

Inside the namespace, the server's address and port lead to a relay. A token bucket on the namespace's loopback limits
the speed; the relay delays each direction by half a round trip, and a new connection by a whole one. It connects to the
server outside the namespace, where nothing is limited. (The kernel's own delays, netem, are missing on many machines.)
"""

import contextlib
import ctypes
import os
import queue
import signal
import socket
import subprocess
import sys
import threading
import time

from measure import Failure

_CHUNK = 64 << 10
_MOST_CHUNKS = 32  # on the way in one direction: far more than the link carries in a round trip


class Link:
    """Stands until the end of its `with` block."""

    def __init__(self, port, megabits, round_trip_seconds):
        self._command = ["unshare", "--net", sys.executable, "-B", __file__, str(port), str(megabits),
                         str(round_trip_seconds)]
        self._relay = None
        self._namespace = None

    def __enter__(self):
        with open("/proc/self/ns/net", "rb") as outside:
            self._relay = subprocess.Popen([*self._command, str(outside.fileno())], pass_fds=[outside.fileno()],
                                           stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        ready = self._relay.stdout.readline().split()
        if not ready:
            self._relay.wait()
            raise Failure("the limited link cannot be set up; it needs root, iproute2 and the kernel's tbf")
        self._namespace = f"/proc/{self._relay.pid}/fd/{ready[0]}"
        return self

    def __exit__(self, *_):
        self._relay.send_signal(signal.SIGKILL)
        self._relay.wait()
        self._relay.stdout.close()

    def command(self):
        """The beginning of a command line whose program has this link."""
        return ["nsenter", f"--net={self._namespace}", "--"]


def relay(port, megabits, round_trip_seconds, outside):
    for command in (["ip", "link", "set", "lo", "mtu", "1500", "up"],
                    ["tc", "qdisc", "add", "dev", "lo", "root", "tbf", "rate", f"{megabits}mbit", "burst", "16kb",
                     "latency", "50ms"]):
        subprocess.run(command, check=True)
    listener = socket.create_server(("127.0.0.1", port), backlog=64)
    inside = os.open("/proc/self/ns/net", os.O_RDONLY)
    # Sockets made from here on, also by new threads, belong to the namespace outside.
    if ctypes.CDLL(None, use_errno=True).setns(outside, 0) != 0:
        raise OSError(ctypes.get_errno(), "setns")
    print(inside, flush=True)
    while True:
        client, _ = listener.accept()
        server = socket.create_connection(("127.0.0.1", port))
        for end in (client, server):
            end.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        _delay(client, server, round_trip_seconds / 2, after=time.monotonic() + round_trip_seconds)
        _delay(server, client, round_trip_seconds / 2)


def _delay(source, target, seconds, after=0.0):
    """Passes on what `source` sends, each chunk that much later, and none before the time `after`."""
    on_the_way = queue.Queue(_MOST_CHUNKS)
    threading.Thread(target=_take, args=[source, on_the_way, seconds], daemon=True).start()
    threading.Thread(target=_give, args=[on_the_way, target, seconds, after], daemon=True).start()


def _take(source, on_the_way, seconds):
    chunk = b"not the end"
    while chunk:
        try:
            chunk = source.recv(_CHUNK)
        except ConnectionError:
            chunk = b""
        on_the_way.put((time.monotonic() + seconds, chunk))


def _give(on_the_way, target, seconds, after):
    is_open = True
    while True:
        due, chunk = on_the_way.get()
        if not chunk:
            break
        time.sleep(max(0.0, max(due, after + seconds) - time.monotonic()))
        if is_open:
            try:
                target.sendall(chunk)
            except ConnectionError:
                is_open = False  # what still arrives is dropped
    with contextlib.suppress(OSError):
        target.shutdown(socket.SHUT_WR)


if __name__ == "__main__":
    relay(int(sys.argv[1]), float(sys.argv[2]), float(sys.argv[3]), int(sys.argv[4]))
