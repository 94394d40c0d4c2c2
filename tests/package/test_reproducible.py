"""The same sources give the same bytes, wherever, whenever and by whomever they are packed."""

import os
import plistlib
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import pytest
from sources import ROOT, project_files

LONGEST_BUILD_SECONDS = 3600
FOREIGN = {"LANG": "de_CH.UTF-8", "LC_ALL": "de_CH.UTF-8", "TZ": "Asia/Tokyo", "CXXFLAGS": "-g"}


def test_made_again_in_another_folder_the_package_is_the_same(package, tmp_path):
    """Copied anew, the files have other times, and another umask and environment see to it."""
    other = tmp_path / "another place/further down"
    for path in project_files():
        (other / path).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(ROOT / path, other / path)
    subprocess.run([other / "scripts/package", "--linux"], check=True, env=os.environ | FOREIGN, umask=0o077,
                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, timeout=LONGEST_BUILD_SECONDS)
    assert (other / "build/packages" / package.name).read_bytes() == package.read_bytes()


def packed_bundle(folder, order, umask, age):
    """The archive of a bundle whose files were made in that order, with that umask, that long ago."""
    os.umask(umask)
    contents = folder / "Some.app/Contents"
    (contents / "MacOS").mkdir(parents=True)
    files = {"Info.plist": plistlib.dumps({"CFBundleShortVersionString": "1.2"}), "MacOS/Some": b"program" * 1000,
             "PkgInfo": b"APPL"}
    for name in order(files):
        (contents / name).write_bytes(files[name])
        os.utime(contents / name, (age, age))
    (contents / "MacOS/Some").chmod(0o777 & ~umask)
    subprocess.run([sys.executable, ROOT / "scripts/macos/zip_bundle.py", folder / "Some.app", folder], check=True,
                   env=os.environ | {"SOURCE_DATE_EPOCH": "1700000000"}, timeout=60)
    return (folder / "Some-1.2-macos.zip").read_bytes()


@pytest.fixture
def shared_memory():
    """A folder whose listing follows the order in which its files were made."""
    umask = os.umask(0o022)
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        yield Path(folder)
    os.umask(umask)


def test_the_macos_archive_depends_on_the_bundles_contents_alone(shared_memory):
    first = packed_bundle(shared_memory / "one", sorted, 0o022, 1_000_000_000)
    second = packed_bundle(shared_memory / "two/deeper", lambda names: sorted(names, reverse=True), 0o077,
                           1_500_000_000)
    assert first == second
