#!/usr/bin/env python3
"""Looks into the finished bundle: what it runs on, what it asks of the system, and whether its pieces fit."""

import plistlib
import re
import struct
import sys

from executable import Executable
from layout import BUNDLE, EXECUTABLE, LIBRARIES, MINIMUM_SYSTEM, ROOT

LARGEST = 1_500_000


def check_property_list(executable):
    with (BUNDLE / "Contents/Info.plist").open("rb") as file:
        properties = plistlib.load(file)
    version = re.search(r"^project\(.*VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    for key, value in {
            "CFBundlePackageType": "APPL", "CFBundleExecutable": EXECUTABLE.name,
            "CFBundleShortVersionString": version, "CFBundleVersion": version,
            "LSMinimumSystemVersion": MINIMUM_SYSTEM, "NSHighResolutionCapable": True,
            "NSPrincipalClass": "NSApplication"}.items():
        executable.expect(properties.get(key) == value, f"Info.plist: {key} is {properties.get(key)}, not {value}")
    title = re.search(r'\.windowTitle = "(\w+)"', (ROOT / "src/config/Deployment.cpp").read_text())[1]
    for key, value in {"CFBundleName": title, "CFBundleDisplayName": title,
                       "NSSupportsAutomaticTermination": False, "NSSupportsSuddenTermination": False}.items():
        executable.expect(properties.get(key) == value, f"Info.plist: {key} is {properties.get(key)}, not {value}")
    executable.expect(properties.get("NSHumanReadableCopyright"), "Info.plist: no copyright")
    executable.expect(re.fullmatch(r"[A-Za-z0-9.-]+", properties.get("CFBundleIdentifier", "")),
                      "Info.plist: bundle identifier")
    check_icon(executable, BUNDLE / "Contents/Resources" / f"{properties.get('CFBundleIconFile')}.icns")


def check_icon(executable, path):
    content = path.read_bytes() if path.exists() else b""
    executable.expect(content[:4] == b"icns" and struct.unpack_from(">I", content, 4)[0] == len(content),
                      f"no icon in {path}")


def main():
    executable = Executable(EXECUTABLE, LIBRARIES)
    executable.expect(executable.size <= LARGEST, f"the executable has {executable.size} bytes, more than {LARGEST}")
    check_property_list(executable)
    for finding in executable.findings:
        print(f"bundle: {finding}")
    if not executable.findings:
        print(f"bundle: {executable.counts()}, all declared; macOS {MINIMUM_SYSTEM}; "
              f"{len(executable.libraries)} libraries; {executable.size} bytes")
    return 1 if executable.findings else 0


if __name__ == "__main__":
    sys.exit(main())
