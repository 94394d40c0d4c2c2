"""A system bus of the tests' own, and on it a stand-in for logind that gives out inhibitor locks."""

import os
import select
import subprocess
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .waiting import DEADLINE_SECONDS, eventually  # noqa: E402

_BUS_CONFIGURATION = """<busconfig>
  <type>system</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""

_INTERFACE = """<node><interface name="org.freedesktop.login1.Manager">
  <method name="Inhibit">
    <arg type="s" name="what" direction="in"/>
    <arg type="s" name="who" direction="in"/>
    <arg type="s" name="why" direction="in"/>
    <arg type="s" name="mode" direction="in"/>
    <arg type="h" name="lock" direction="out"/>
  </method>
</interface></node>"""


class SystemBus:
    """Stands until `close`, at this socket."""

    def __init__(self, socket, folder):
        socket.parent.mkdir(parents=True, exist_ok=True)
        configuration = folder / "system-bus.conf"
        configuration.write_text(_BUS_CONFIGURATION.format(socket=socket))
        self._daemon = subprocess.Popen(["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile"],
                                        stdin=subprocess.DEVNULL)
        self.address = f"unix:path={socket}"
        eventually(lambda: socket.exists() or self._daemon.poll() is not None, "the system bus")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self._daemon.terminate()
        self._daemon.wait()


class InhibitorLock:
    """A lock as it was asked for. Whoever holds it holds the other end of a pipe."""

    def __init__(self, what, who, why, mode):
        self.request = (what, who, why, mode)
        self._end, self.holders_end = os.pipe()

    def is_held(self):
        return not select.select([self._end], [], [], 0)[0]

    def close(self):
        os.close(self._end)


class Logind:
    """Gives a lock to whoever asks; with `is_silent`, takes every request and answers none."""

    def __init__(self, bus, is_silent=False):
        self.locks = []
        self.is_silent = is_silent
        self._loop = None
        self._is_ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=[bus.address])
        self._thread.start()
        assert self._is_ready.wait(DEADLINE_SECONDS), "logind does not get its name"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._loop.quit()
        self._thread.join()
        for lock in self.locks:
            lock.close()

    def _serve(self, address):
        context = GLib.MainContext()
        context.push_thread_default()
        self._loop = GLib.MainLoop(context)
        bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None)
        bus.set_exit_on_close(False)
        [interface] = Gio.DBusNodeInfo.new_for_xml(_INTERFACE).interfaces
        bus.register_object("/org/freedesktop/login1", interface, self._answer, None, None)
        Gio.bus_own_name_on_connection(bus, "org.freedesktop.login1", Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: self._is_ready.set(), None)
        self._loop.run()
        bus.close_sync(None)
        context.pop_thread_default()

    def _answer(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        lock = InhibitorLock(*arguments.unpack())
        if not self.is_silent:
            ends = Gio.UnixFDList.new()
            ends.append(lock.holders_end)
            invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), ends)
        os.close(lock.holders_end)
        self.locks.append(lock)
