#!/usr/bin/env python3
"""Packs the bundle into FOLDER/NAME-VERSION-macos.zip: files in the order of their names, all as old as
SOURCE_DATE_EPOCH says, so that the same bundle always gives the same bytes."""

import os
import plistlib
import stat
import sys
import time
import zipfile
from pathlib import Path

PROGRAM, DOCUMENT = 0o755, 0o644


def entry(path, name, date):
    info = zipfile.ZipInfo(name, date)
    info.create_system = 3  # what makes the next field a Unix mode
    mode = PROGRAM if path.is_dir() or os.access(path, os.X_OK) else DOCUMENT
    info.external_attr = (stat.S_IFMT(path.stat().st_mode) | mode) << 16
    info.compress_type = zipfile.ZIP_STORED if path.is_dir() else zipfile.ZIP_DEFLATED
    return info


def main(bundle, folder):
    date = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))[:6]
    version = plistlib.loads((bundle / "Contents/Info.plist").read_bytes())["CFBundleShortVersionString"]
    with zipfile.ZipFile(folder / f"{bundle.stem}-{version}-macos.zip", "w") as archive:
        for path in [bundle, *sorted(bundle.rglob("*"))]:
            name = str(path.relative_to(bundle.parent)) + ("/" if path.is_dir() else "")
            archive.writestr(entry(path, name, date), b"" if path.is_dir() else path.read_bytes(), compresslevel=9)


if __name__ == "__main__":
    main(Path(sys.argv[1]), Path(sys.argv[2]))
