"""Run inside new mount and network namespaces: puts together the root of harness/product.py's `Namespace` at /mnt, says
that it is ready, and keeps the namespaces until it is killed. One process, not a shell with one for each mount: on a
busy machine every new process has to wait for its turn."""

import ctypes
import os
import signal
import subprocess
import sys
from pathlib import Path

_MS_BIND = 4096
_MS_REC = 16384
_ROOT = Path("/mnt")

_libc = ctypes.CDLL(None, use_errno=True)


def mount(source, target, kind=None, flags=0):
    texts = [text and str(text).encode() for text in (source, target, kind)]
    if _libc.mount(*texts, ctypes.c_ulong(flags), None) != 0:
        raise OSError(ctypes.get_errno(), f"mount {source} on {target}: {os.strerror(ctypes.get_errno())}")


def put_root_together(new_folders):
    mount("none", _ROOT, "tmpfs")
    for entry in Path("/").iterdir():
        place = _ROOT / entry.name
        if entry == _ROOT or entry.name in new_folders:
            continue
        if entry.is_symlink():
            place.symlink_to(entry.readlink())
        elif entry.name == "etc":
            # A copy takes new files, and a bare system has no hosts.
            subprocess.run(["cp", "-a", entry, place], check=True)
        elif entry.is_dir():
            place.mkdir()
            mount(entry, place, flags=_MS_BIND | _MS_REC)
    for name in ("mnt", *new_folders):
        (_ROOT / name).mkdir()


def main(folder, authorities, *new_folders):
    put_root_together(new_folders)
    (_ROOT / "etc/hosts").touch()
    mount(folder / "hosts", _ROOT / "etc/hosts", flags=_MS_BIND)
    mount(folder / "authorities.pem", _ROOT / authorities.relative_to("/"), flags=_MS_BIND)
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    (folder / "ready").touch()
    signal.pause()


main(Path(sys.argv[1]), Path(sys.argv[2]), *sys.argv[3:])
