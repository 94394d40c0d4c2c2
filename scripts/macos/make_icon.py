#!/usr/bin/env python3
"""make_icon.py DRAWING ICON: renders an SVG drawing at every size that a macOS icon holds.

The container is a run of chunks, each a name of four letters and its length with these eight bytes, both big-endian,
then a PNG file."""

import struct
import subprocess
import sys
from pathlib import Path

# Chunk name and width in pixels; the names from ic11 on are the doubled sizes of high-resolution screens.
SIZES = [("ic07", 128), ("ic08", 256), ("ic09", 512), ("ic10", 1024), ("ic11", 32), ("ic12", 64), ("ic13", 256),
         ("ic14", 512)]


def render(drawing, width):
    command = ["rsvg-convert", "--width", str(width), "--height", str(width), str(drawing)]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


def chunk(name, content):
    return name.encode("ascii") + struct.pack(">I", len(content) + 8) + content


def main():
    drawing, icon = map(Path, sys.argv[1:])
    icon.write_bytes(chunk("icns", b"".join(chunk(name, render(drawing, width)) for name, width in SIZES)))


if __name__ == "__main__":
    sys.exit(main())
