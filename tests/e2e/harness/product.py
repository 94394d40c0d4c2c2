"""The product itself, untouched, at its fixed places: in a mount and network namespace of its own, in which the
vendor's names lead to this machine. Needs root."""

import shutil
import subprocess
import sys
from pathlib import Path

from .build import VENDOR
from .rehearsal import FRENCH, Rehearsal
from .vendor import Vendor
from .waiting import DEADLINE_SECONDS, eventually

API_HOST = VENDOR["ApiHost"]
DOWNLOAD_HOST = VENDOR["DownloadServer"]
DOWNLOAD_ORIGIN = f"https://{DOWNLOAD_HOST}"

_AUTHORITIES = "/etc/ssl/certs/ca-certificates.crt"

# The root is put together from the system's folders by namespace_holder.py, at /mnt, which every system has and no program
# here needs. These are new and empty, so that nothing has to be made outside; without the system's /run no test reaches
# this machine's own services.
_NEW_FOLDERS = ("opt", "Library", "run")
_HOLDER = Path(__file__).with_name("namespace_holder.py")


class Namespace:
    """Stands until `close`. What its processes see as / lies at `root` for everybody else."""

    def __init__(self, folder, variables):
        self._authorities = folder / "authorities.pem"
        shutil.copy(_AUTHORITIES, self._authorities)
        (folder / "hosts").write_text(f"127.0.0.1 localhost {API_HOST} {DOWNLOAD_HOST}\n")
        self._holder = subprocess.Popen(["unshare", "--mount", "--net", sys.executable, "-S", _HOLDER, folder,
                                         _AUTHORITIES, *_NEW_FOLDERS], env=variables, stdin=subprocess.DEVNULL)
        try:
            ready = folder / "ready"
            eventually(lambda: ready.exists() or self._holder.poll() is not None, "the namespace")
            if not ready.exists():
                raise RuntimeError("the namespace cannot be set up")
        except BaseException:
            self.close()
            raise
        self.root = Path(f"/proc/{self._holder.pid}/root/mnt")

    @property
    def process(self):
        return self._holder.pid

    def trust(self, authority):
        """Adds an authority to the system's."""
        with open(self._authorities, "ab") as bundle:
            bundle.write(authority.read_bytes())

    def command(self, *command):
        """A command line whose process ends up inside as `command`."""
        return ["nsenter", f"--target={self.process}", "--mount", "--net", f"--root={self.root}",
                f"--wdns={self._authorities.parent}", "--", *command]

    def close(self):
        self._holder.kill()
        self._holder.wait()


class Product(Rehearsal):
    """A rehearsal's stage on which the product plays."""
    program_name = "OrvaneBootstrap"

    def __init__(self, build, desktop, folder):
        super().__init__(build, desktop, folder)
        self.namespace = Namespace(folder, self.variables())
        self.helpers.append(self.namespace.process)
        self.log_root = self.namespace.root / "Library/Application Support/Kestrix"
        self.engine_path = self.namespace.root / "opt/Varlen/orvane/varlen-setup"

    def vendor(self, *options, name="vendor"):
        """A vendor at its own names and port, not yet trusted."""
        command = self.namespace.command(self.build / "VendorServer")
        vendor = Vendor(command, self.folder / name, self.variables(),
                        ("--host", API_HOST, "--host", DOWNLOAD_HOST, "--port", "443", *options))
        self.vendors.append(vendor)
        return vendor

    def trusted_vendor(self, engine, **publication):
        """A vendor that the system's authorities vouch for, with this engine to be had."""
        vendor = self.vendor()
        vendor.publish(engine, origin=DOWNLOAD_ORIGIN, **publication)
        self.namespace.trust(vendor.folder / "ca.pem")
        return vendor

    def mount_disk(self, folder, options):
        """A disk of its own at this folder of the namespace."""
        folder = Path("/", folder.relative_to(self.namespace.root))
        for command in (["mkdir", "-p", folder], ["mount", "-t", "tmpfs", "-o", options, "none", folder]):
            subprocess.run(self.namespace.command(*command), check=True, timeout=DEADLINE_SECONDS)

    def start(self, *options, languages=FRENCH, variables=None, through=()):
        return self.run_program(self.namespace.command(*through, self.build / self.program_name, *options),
                                self.variables(languages, **(variables or {})))

    def close(self):
        super().close()
        self.namespace.close()
