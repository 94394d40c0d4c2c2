"""The product as a user has it: installed by its package on a machine, opened from the desktop's menu."""

import configparser
import shlex
import subprocess
from pathlib import Path

from bare_system import USER, Machine
from harness import processes
from harness.product import API_HOST, DOWNLOAD_HOST, DOWNLOAD_ORIGIN
from harness.rehearsal import Rehearsal
from harness.vendor import Vendor
from harness.waiting import eventually
from harness.window import Window

PACKAGE = "orvane-bootstrap"
TITLE = "Varlen"
PROGRAM = "/usr/bin/OrvaneBootstrap"
ENTRY = "usr/share/applications/orvane-bootstrap.desktop"
AUTHORITY = "usr/local/share/ca-certificates/vendor.crt"

# The menu's question for an administrator's password, answered in advance for one user.
_CONSENT = f"""
polkit.addRule(function(action, subject) {{
    if (action.id == "kestrix.orvane.bootstrap" && subject.user == "{USER}") {{ return polkit.Result.YES; }}
}});
"""


def _name_of(process):
    try:
        return Path(f"/proc/{process}/comm").read_text().strip()
    except OSError:
        return ""


class InstalledProduct(Rehearsal):
    def __init__(self, build, desktop, folder, system, package):
        super().__init__(build, desktop, folder)
        self.machine = Machine(system, folder, {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin"})
        self.log_root = self.machine.root / "Library/Application Support/Kestrix"
        self.engine_path = self.machine.root / "opt/Varlen/orvane/varlen-setup"
        self._package = package
        self.administer()

    # What an administrator does.

    def install(self):
        self.machine.do("apt-get", "install", "--quiet", "--quiet", "--yes",
                        "--no-install-recommends", str(self._package))

    def purge(self):
        self.machine.do("apt-get", "purge", "--quiet", "--quiet", "--yes", PACKAGE)

    def consent(self):
        self.machine.write("etc/polkit-1/rules.d/50-consent.rules", _CONSENT)

    def administer(self, **more):
        """What every program of root's finds in its environment; the tests' own needs among it."""
        passed_on = ("DBUS_SESSION_BUS_ADDRESS", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "ORVANE_SAMPLE_SCENARIO",
                     processes.MARK)
        variables = {name: value for name, value in self.variables().items() if name in passed_on} | more
        self.machine.write("etc/environment", "".join(f"{name}={value}\n" for name, value in variables.items()))

    def system_language(self, language):
        self.machine.write("etc/default/locale", f"LANG={language}\n")

    # The vendor.

    def vendor_with_download(self):
        """A vendor at its own names, whom the machine trusts."""
        vendor = Vendor(self.machine.beside(self.build / "VendorServer"), self.folder / "vendor", self.variables(),
                        ("--host", API_HOST, "--host", DOWNLOAD_HOST, "--port", "443"))
        self.vendors.append(vendor)
        vendor.publish(self.sample_engine, cipher="xor", origin=DOWNLOAD_ORIGIN)
        self.machine.write(AUTHORITY, (vendor.folder / "ca.pem").read_text())
        self.machine.do("update-ca-certificates")
        return vendor

    # What a user does.

    def run_as_user(self, *command, **variables):
        """Nothing of the tests' in the environment but the screen and the mark."""
        user = {"HOME": f"/home/{USER}", "PATH": "/usr/bin:/bin", "DISPLAY": self.desktop.variables["DISPLAY"],
                processes.MARK: self.mark}
        become_user = ("setpriv", f"--reuid={USER}", f"--regid={USER}", "--init-groups", "--")
        return self.run_program(self.machine.command(*become_user, *command), user | variables)

    def pick_from_menu(self, action=None, **variables):
        """Picks the entry of the desktop's menu, or one of its actions."""
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(self.machine.root / ENTRY)
        group = f"Desktop Action {action}" if action else "Desktop Entry"
        return self.run_as_user(*shlex.split(entry[group]["Exec"]), **variables)

    def watch(self, run):
        """The window of the program that the menu's entry leads to."""
        process = eventually(lambda: next((process for process in processes.children_of(run.process)
                                           if _name_of(process) == Path(PROGRAM).name), None), "the program")
        return Window(process)

    def press_return_in_alert(self):
        """By the keyboard, where assistive technology does not reach: on another user's bus."""
        eventually(self._alert_is_up, "an alert")
        self.desktop.type_keys(TITLE, "Return")

    def _alert_is_up(self):
        try:
            return "DIALOG" in self.desktop.window_property(TITLE, "_NET_WM_WINDOW_TYPE")
        except subprocess.CalledProcessError:
            return False  # no window at this moment

    # The end of a test.

    def close(self):
        super().close()
        self.machine.close()
