"""A Debian system with nothing but its base and what the package asks for, in a folder. Needs root."""

import os
import shlex
import subprocess
from pathlib import Path

from harness.product import API_HOST, DOWNLOAD_HOST
from harness.waiting import eventually

USER = "anna"
LONGEST_INSTALLATION_SECONDS = 1800

# Where the network is this machine's. Nothing that packages bring is started: there is no init to start it.
_PROVIDE = """
set -e
tar --extract --numeric-owner --file {base} --directory {root}
printf '#!/bin/sh\\nexit 101\\n' >{root}/usr/sbin/policy-rc.d
chmod 755 {root}/usr/sbin/policy-rc.d
mount -t proc none {root}/proc
mount --rbind /dev {root}/dev
mount --bind {archives} {root}/var/cache/apt/archives
export DEBIAN_FRONTEND=noninteractive
chroot {root} apt-get update --quiet --quiet
chroot {root} apt-get satisfy --quiet --quiet --yes --no-install-recommends {dependencies}
chroot {root} useradd --create-home {user}
"""

# One test's copy: what it writes lies in a folder of the test, and the mounts go with the namespace.
_BEGIN = """
set -e
mkdir {folder}/upper {folder}/work {folder}/root
mount -t overlay -o lowerdir={system},upperdir={folder}/upper,workdir={folder}/work none {folder}/root
mount -t proc none {folder}/root/proc
mount --rbind /dev {folder}/root/dev
mount -t tmpfs none {folder}/root/run
mount --rbind /tmp {folder}/root/tmp
touch {folder}/root/etc/hosts
mount --bind {folder}/hosts {folder}/root/etc/hosts
mkdir {folder}/root/run/dbus
ip link set lo up
touch {folder}/ready
exec sleep infinity
"""

# What dpkg, logs and the kernel's file systems write of themselves.
_BOOKKEEPING = ("var/lib/dpkg", "var/lib/apt", "var/log", "var/cache", "proc", "dev", "run", "tmp")


def provide_system(folder, base, archives, dependencies):
    """Unpacks the base into the folder and installs what the package asks for."""
    folder.mkdir(parents=True)
    archives.mkdir(exist_ok=True)
    script = _PROVIDE.format(root=shlex.quote(str(folder)), base=shlex.quote(str(base)),
                             archives=shlex.quote(str(archives)), dependencies=shlex.quote(dependencies), user=USER)
    subprocess.run(["unshare", "--mount", "sh", "-c", script], check=True, stdin=subprocess.DEVNULL,
                   timeout=LONGEST_INSTALLATION_SECONDS)


class Machine:
    """A running copy of the system, without a network but its own, until `close`."""

    def __init__(self, system, folder, variables):
        self._folder = folder
        (folder / "hosts").write_text(f"127.0.0.1 localhost {API_HOST} {DOWNLOAD_HOST}\n")
        script = _BEGIN.format(system=shlex.quote(str(system)), folder=shlex.quote(str(folder)))
        self._holder = subprocess.Popen(["unshare", "--mount", "--net", "sh", "-c", script], env=variables,
                                        stdin=subprocess.DEVNULL)
        ready = folder / "ready"
        eventually(lambda: ready.exists() or self._holder.poll() is not None, "the machine")
        if not ready.exists():
            raise RuntimeError("the machine cannot be set up")
        self.root = Path(f"/proc/{self._holder.pid}/root{folder}/root")
        self._bus = subprocess.Popen(self.command("dbus-daemon", "--system", "--nofork", "--nopidfile"),
                                     env=variables, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        eventually((self.root / "run/dbus/system_bus_socket").exists, "the system bus")

    @property
    def processes(self):
        return [self._holder.pid, self._bus.pid]

    def command(self, *command):
        """A command line whose process ends up inside as `command`, of root."""
        return ["nsenter", f"--target={self._holder.pid}", "--mount", "--net", f"--root={self.root}", "--wdns=/",
                "--", *command]

    def beside(self, *command):
        """A command line for a program of the outer system, on the machine's network."""
        return ["nsenter", f"--target={self._holder.pid}", "--net", "--", *command]

    def do(self, *command):
        """What the command, run by root, says on its standard output."""
        return subprocess.run(self.command(*command), check=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              env={"PATH": os.environ["PATH"], "DEBIAN_FRONTEND": "noninteractive", "HOME": "/root"},
                              text=True, timeout=LONGEST_INSTALLATION_SECONDS).stdout

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def contents(self):
        """Everything that lies on the machine, each with what tells whether it was changed."""
        found = {}
        for folder, folders, files in os.walk(self.root):
            inside = os.path.relpath(folder, self.root)
            folders[:] = [name for name in folders if os.path.normpath(f"{inside}/{name}") not in _BOOKKEEPING]
            for name in (*folders, *files):
                path = os.path.join(folder, name)
                status = os.lstat(path)
                found[os.path.normpath(f"{inside}/{name}")] = (
                    status.st_mode, status.st_uid, status.st_gid,
                    None if name in folders else (status.st_size, status.st_mtime_ns))
        return found

    def close(self):
        for process in (self._bus, self._holder):
            process.kill()
            process.wait()
