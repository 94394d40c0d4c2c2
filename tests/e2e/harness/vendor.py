"""The demo vendor, and what a vendor publishes, worked out here without the program's own code."""

import hashlib
import json
import os
import signal
import subprocess
from pathlib import Path

from .waiting import DEADLINE_SECONDS, eventually

DESCRIPTION = "GET /downloadinstaller?os=darwin&product=varlen"
REPORT = "POST /crashreport"
DESCRIPTION_PATH = "/downloadinstaller"
REPORT_PATH = "/crashreport"
ENGINE_PATH = "/varlen/setup/varlen-setup"
ENGINE = f"GET {ENGINE_PATH}"

_DIGESTS = {"md5": hashlib.md5, "sha256": hashlib.sha256}
_SUFFIXES = {"": "", "xor": ".enc", "pkg": ".pkg"}


def xor(content, key_text):
    """`content` under the repeated key, as one large number each."""
    key = bytes.fromhex(key_text)
    repeated = (key * (len(content) // len(key) + 1))[:len(content)]
    return (int.from_bytes(content, "big") ^ int.from_bytes(repeated, "big")).to_bytes(len(content), "big")


def package_of(engine):
    """What stands for an installer package here; `installer` in tests/e2e/bin knows how to open it."""
    return b"package\n" + engine


class Vendor:
    """A running vendor with a folder of its own. `command` starts its program, but for the folder and options."""

    def __init__(self, command, folder, variables, options=()):
        self.folder = folder
        self.folder.mkdir()
        self._log = open(folder / "vendor.log", "wb")
        self._process = subprocess.Popen([*command, folder, *options], env=variables, stdin=subprocess.DEVNULL,
                                         stdout=self._log, stderr=self._log)
        eventually(lambda: (folder / "origin").exists() or self._process.poll() is not None, "the vendor")
        if self._process.poll() is not None:
            raise RuntimeError((folder / "vendor.log").read_text())
        self.origin = (folder / "origin").read_text().strip()

    @property
    def process(self):
        return self._process.pid

    @property
    def port(self):
        return int(self.origin.rpartition(":")[2])

    def stop(self):
        if self._process.poll() is None:
            self._process.send_signal(signal.SIGTERM)
        self._process.wait(timeout=DEADLINE_SECONDS)
        self._log.close()

    def publish(self, engine, *, version="14.2.7", cipher="", algorithm="sha256", origin=None, served=None,
                **changes):
        """Publishes `engine`; `served` replaces what the file holds, `changes` fields of the description."""
        digest = _DIGESTS.get(algorithm, hashlib.sha256)
        checksum = digest(engine).hexdigest()
        transferred = {"xor": xor(engine, checksum), "pkg": package_of(engine)}.get(cipher, engine)
        description = {
            "URL": (origin or self.origin) + ENGINE_PATH,
            "Checksum": checksum,
            "ChecksumAlgorithm": algorithm,
            "EncryptedFileChecksum": digest(transferred).hexdigest(),
            "EncryptionAlgorithm": cipher,
            "Size": len(engine),
            "Version": version,
        } | changes
        name = Path(ENGINE_PATH).name + _SUFFIXES.get(cipher, "")
        self.publish_file(name, transferred if served is None else served)
        self.publish_file("downloadinstaller.json", json.dumps(description, indent=2).encode())
        return description

    def publish_file(self, name, content):
        published = self.folder / "published"
        published.mkdir(exist_ok=True)
        (published / name).write_bytes(content)

    def set_faults(self, faults):
        """From the next request on; `faults` maps paths to what goes wrong there."""
        partial = self.folder / "faults.partial"
        partial.write_text(json.dumps(faults))
        os.replace(partial, self.folder / "faults.json")

    def release(self):
        """Lets stalled answers go on."""
        (self.folder / "release").touch()

    def requests(self):
        """"METHOD TARGET" of each request, in their order."""
        return [f"{line['method']} {line['target']}" for line in self._lines("requests.log")]

    def headers_of(self, request):
        """The headers of the first such request, by lower-case name."""
        line = next(line for line in self._lines("requests.log") if f"{line['method']} {line['target']}" == request)
        return {name.lower(): value for name, value in line["headers"].items()}

    def unexpected(self):
        return self._lines("unexpected.log")

    def report_bodies(self):
        return [file.read_bytes() for file in sorted((self.folder / "reports").glob("*.json"))]

    def _lines(self, name):
        file = self.folder / name
        return [json.loads(line) for line in file.read_text().splitlines()] if file.exists() else []
