"""A desktop of the tests' own: a virtual screen, a session bus and the accessibility bus that starts with it."""

import ctypes
import os
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

from . import processes
from .pixels import Pixels
from .waiting import DEADLINE_SECONDS, eventually

SCREEN = "2000x1500x24"

# The caller's own may hold folders that cannot be entered, for which a missing command has another status.
SEARCH_PATH = "/usr/sbin:/usr/bin:/sbin:/bin"

DARK_COLOURS = """[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
"""

# Read by programs that were built with the thread sanitizer, which end at their first finding. Debian's Qt, GLib and
# D-Bus are not built with it: it would see the memory that they hand to functions it intercepts, but not the atomics
# that guard it. What our own code does stays under watch.
THREAD_SANITIZER = "halt_on_error=1:ignore_noninstrumented_modules=1"


class Desktop:
    """Stands until `close`. Sockets lie at paths, so that they are reached from other network namespaces too."""

    def __init__(self, screen=SCREEN):
        self.folder = Path(tempfile.mkdtemp(prefix="orvane-e2e-", dir="/tmp"))
        self.home = self.folder / "home"
        self.home.mkdir()
        self._processes = []
        self.variables = {
            "PATH": SEARCH_PATH,
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(self.folder),
            "LC_ALL": "C.UTF-8",
            "DISPLAY": self._start_screen(screen),
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "TSAN_OPTIONS": THREAD_SANITIZER,
            **self.fonts("dejavu"),
            processes.MARK: str(self.folder),
        }
        self.variables["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus()

    def close(self):
        for process in reversed(self._processes):
            process.terminate()
            process.wait()
        # The bus started helpers, which have no reason to stay.
        processes.end_all(processes.marked(self.folder))
        eventually(lambda: not processes.marked(self.folder), "the end of the desktop")
        processes.reap_orphans()
        shutil.rmtree(self.folder)

    def start_window_manager(self):
        """From here on it frames windows, and decides when they are shown."""
        manager = subprocess.Popen(["openbox", "--sm-disable"], env=self.variables, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._processes.append(manager)
        self.window_manager = manager.pid
        eventually(lambda: "window id" in self._root_property("_NET_SUPPORTING_WM_CHECK"), "the window manager")

    def _root_property(self, name):
        return subprocess.run(["xprop", "-root", name], env=self.variables, check=True, timeout=60,
                              stdout=subprocess.PIPE, text=True).stdout

    def fonts(self, *folders):
        """What to add to a program's variables for it to find these fonts and no others, whatever is installed."""
        file = self.folder / f"fonts-{'-'.join(folders)}.conf"
        places = "".join(f"<dir>/usr/share/fonts/truetype/{folder}</dir>" for folder in folders)
        file.write_text('<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>'
                        f"{places}<cachedir>{self.folder}/fontconfig</cachedir>"
                        '<include ignore_missing="yes">/etc/fonts/conf.d</include></fontconfig>')
        return {"FONTCONFIG_FILE": str(file)}

    def dark(self):
        """What to add to a program's variables for it to find a desktop in dark colours."""
        configuration = self.folder / "dark"
        configuration.mkdir(exist_ok=True)
        (configuration / "kdeglobals").write_text(DARK_COLOURS)
        return {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5",
                "XDG_CONFIG_HOME": str(configuration)}

    def picture(self, file, area=None):
        """Everything on the screen, or what lies in the area, as a PNG file."""
        file.parent.mkdir(parents=True, exist_ok=True)
        cut = ["-crop", _crop(area), "+repage", "-strip"] if area else ["-trim", "+repage"]
        subprocess.run(["import", "-silent", "-window", "root", *cut, str(file)], env=self.variables, check=True,
                       timeout=DEADLINE_SECONDS)

    def type_keys(self, window_title, *keys):
        """Gives the keyboard to the window of that title, as a window manager would, and presses keys."""
        window = self.window_number(window_title)
        self._xdotool("windowfocus", "--sync", window)
        self._xdotool("key", *keys)

    def window_numbers(self, title):
        """From the lowest window of that title to the one on top."""
        return self._xdotool("search", "--onlyvisible", "--name", f"^{title}$").split()

    def has_window(self, title):
        """Whether a window of that title was made, be it shown or not."""
        found = subprocess.run(["xdotool", "search", "--name", f"^{title}$"], env=self.variables, check=False,
                               timeout=60, stdout=subprocess.PIPE)
        return bool(found.stdout)

    def window_number(self, title):
        return self.window_numbers(title)[-1]

    def window_area(self, title):
        """Left, top, right and bottom of the window on top."""
        text = subprocess.run(["xwininfo", "-id", self.window_number(title)], env=self.variables, check=True, timeout=60,
                              stdout=subprocess.PIPE, text=True).stdout
        left, top, width, height = (int(re.search(rf"{name}: +(-?\d+)", text)[1])
                                    for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return (left, top, left + width, top + height)

    def window_property(self, title, name):
        """A property of the window on top, as xprop words it."""
        return subprocess.run(["xprop", "-notype", "-id", self.window_number(title), name], env=self.variables,
                              check=True, timeout=DEADLINE_SECONDS, stdout=subprocess.PIPE, text=True).stdout

    def pixels(self, area):
        """What the screen shows there."""
        left, top, right, bottom = area
        colours = subprocess.run(["import", "-silent", "-window", "root", "-crop", _crop(area), "-depth", "8", "rgb:-"],
                                 env=self.variables, check=True, timeout=DEADLINE_SECONDS, stdout=subprocess.PIPE).stdout
        return Pixels(right - left, bottom - top, colours)

    def click(self, area, times=1):
        """Presses the mouse's first button in the middle of the area, as fast as it goes."""
        left, top, right, bottom = area
        self._xdotool("mousemove", "--sync", str((left + right) // 2), str((top + bottom) // 2),
                      "click", "--repeat", str(times), "--delay", "1", "1")

    def request_close(self, window_title, of_lowest=False):
        """Asks the window on top, or the lowest, to close, as a window manager's close button does."""
        number = self.window_numbers(window_title)[0 if of_lowest else -1]
        _send_close_request(self.variables["DISPLAY"], int(number))

    def _xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.variables, check=True, timeout=DEADLINE_SECONDS,
                              stdout=subprocess.PIPE, text=True).stdout

    def _start(self, command, announcing, **options):
        """Starts a server and returns the line it writes once it is ready, at the descriptor put for `{}`."""
        read_end, write_end = os.pipe()
        command = [part.format(write_end) for part in command]
        with open(self.folder / f"{announcing}.log", "wb") as log:
            self._processes.append(subprocess.Popen(command, pass_fds=[write_end], stdin=subprocess.DEVNULL,
                                                    stdout=log, stderr=log, **options))
        os.close(write_end)
        with os.fdopen(read_end) as announced:
            line = announced.readline().strip()
        if not line:
            raise RuntimeError(f"{command[0]} does not start, see {self.folder}")
        return line

    def _start_screen(self, screen):
        # A server that resets itself when its last client leaves may turn the next client away meanwhile.
        return ":" + self._start(["Xvfb", "-noreset", "-displayfd", "{}", "-screen", "0", screen,
                                  "-nolisten", "tcp"], "screen")

    def _start_bus(self):
        return self._start(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address={}",
                            f"--address=unix:path={self.folder}/bus"], "bus", env=self.variables)


def _crop(area):
    left, top, right, bottom = area
    return f"{right - left}x{bottom - top}+{left}+{top}"


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("padding", ctypes.c_long * 12)]


def _send_close_request(display_name, window):
    """WM_DELETE_WINDOW, see the Inter-Client Communication Conventions Manual."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XInternAtom.restype = ctypes.c_ulong
    display = ctypes.c_void_p(x11.XOpenDisplay(display_name.encode()))
    client_message = 33
    event = _ClientMessage(type=client_message, window=window, format=32,
                           message_type=x11.XInternAtom(display, b"WM_PROTOCOLS", 0))
    event.data[0] = x11.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    x11.XSendEvent(display, ctypes.c_ulong(window), 0, ctypes.c_long(0), ctypes.byref(event))
    x11.XCloseDisplay(display)
