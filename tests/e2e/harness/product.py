"""The product itself, untouched, at its fixed places: in a mount and network namespace of its own, in which the
vendor's names lead to this machine. Needs root."""

import shlex
import shutil
import subprocess
from pathlib import Path

from .rehearsal import FRENCH, Rehearsal
from .vendor import Vendor
from .waiting import eventually

API_HOST = "api.kestrix.invalid"
DOWNLOAD_HOST = "downloads.kestrix.invalid"
DOWNLOAD_ORIGIN = f"https://{DOWNLOAD_HOST}"

_AUTHORITIES = "/etc/ssl/certs/ca-certificates.crt"

# A root put together from the system's folders, so that /opt and /Library are new ones and nothing has to be made
# outside. /run is new too: no test reaches this machine's own services. It grows at /mnt, which every system has and
# no program here needs.
_SET_UP = """
set -e
mount -t tmpfs none /mnt
for entry in /*; do
    case $entry in
        /mnt | /opt | /Library | /run) ;;
        /etc) cp -a /etc /mnt ;;  # a copy takes new files, and a bare system has no hosts
        *) if [ -L "$entry" ]; then cp -P "$entry" /mnt
           elif [ -d "$entry" ]; then mkdir "/mnt$entry"; mount --rbind "$entry" "/mnt$entry"
           fi ;;
    esac
done
mkdir /mnt/mnt /mnt/opt /mnt/Library /mnt/run
touch /mnt/etc/hosts
mount --bind {folder}/hosts /mnt/etc/hosts
mount --bind {folder}/authorities.pem /mnt{authorities}
ip link set lo up
touch {folder}/ready
exec sleep infinity
"""


class Namespace:
    """Stands until `close`. What its processes see as / lies at `root` for everybody else."""

    def __init__(self, folder, variables):
        self._authorities = folder / "authorities.pem"
        shutil.copy(_AUTHORITIES, self._authorities)
        (folder / "hosts").write_text(f"127.0.0.1 localhost {API_HOST} {DOWNLOAD_HOST}\n")
        script = _SET_UP.format(folder=shlex.quote(str(folder)), authorities=_AUTHORITIES)
        self._holder = subprocess.Popen(["unshare", "--mount", "--net", "sh", "-c", script], env=variables,
                                        stdin=subprocess.DEVNULL)
        ready = folder / "ready"
        eventually(lambda: ready.exists() or self._holder.poll() is not None, "the namespace")
        if not ready.exists():
            raise RuntimeError("the namespace cannot be set up")
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
            subprocess.run(self.namespace.command(*command), check=True, timeout=60)

    def start(self, *options, languages=FRENCH, variables=None, through=()):
        return self.run_program(self.namespace.command(*through, self.build / self.program_name, *options),
                                self.variables(languages, **(variables or {})))

    def close(self):
        super().close()
        self.namespace.close()
