#!/usr/bin/env python3
"""Looks into the finished bundle: what it runs on, what it asks of the system, and whether its pieces fit."""

import plistlib
import re
import struct
import sys

from code_signature import covers_code, thin
from layout import (ARCHITECTURES, BUNDLE, EXECUTABLE, FRAMEWORKS, LIBRARIES, MINIMUM_SYSTEM, ROOT, STUBS,
                    SYSTEM_LIBRARY, SYSTEM_STUB, llvm)

LARGEST = 1_500_000
QUOTED = re.compile(r"'([^']+)'")
UNDEFINED = re.compile(r"\(undefined\) (?:weak )?external (\S+) \(from (\w+)\)")
SIGNATURE_COMMAND = re.compile(r"cmd LC_CODE_SIGNATURE\s+cmdsize \d+\s+dataoff (\d+)\s+datasize (\d+)")

findings = []


def expect(holds, what):
    if not holds:
        findings.append(what)


def declared_symbols(library):
    """As a link sees them: classes and their kin have names of their own."""
    path = STUBS / f"{library}.framework/{library}.tbd" if library in FRAMEWORKS else STUBS / f"lib{library}.tbd"
    names = set()
    for line in path.read_text().splitlines():
        kind, _, values = line.strip().partition(": ")
        if kind == "symbols":
            names.update(QUOTED.findall(values))
        elif kind == "objc-classes":
            names.update(f"_OBJC_{part}_$_{name}" for name in QUOTED.findall(values)
                         for part in ("CLASS", "METACLASS"))
        elif kind == "objc-eh-types":
            names.update(f"_OBJC_EHTYPE_$_{name}" for name in QUOTED.findall(values))
    return names


def system_symbols():
    words = re.findall(r"[^\s,\[\]']+", SYSTEM_STUB.read_text())
    return set(words) | {"dyld_stub_binder"}


def check_executable():
    architectures = set(llvm("llvm-lipo", "-archs", EXECUTABLE).split())
    expect(architectures == set(ARCHITECTURES), f"the executable holds {sorted(architectures)}")
    size = EXECUTABLE.stat().st_size
    expect(size <= LARGEST, f"the executable has {size} bytes, more than {LARGEST}")
    declared = {library: declared_symbols(library) for library in LIBRARIES}
    declared["System"] = system_symbols()
    return size, {architecture: check_slice(architecture, declared) for architecture in ARCHITECTURES}


def check_slice(architecture, declared):
    """Counts what the slice asks of the system."""
    version = llvm("llvm-objdump", "--macho", f"--arch={architecture}", "--private-headers", EXECUTABLE)
    minimum = re.findall(r"\bminos (\S+)", version)
    expect(minimum == [MINIMUM_SYSTEM], f"{architecture}: runs from {minimum} on")

    used = llvm("llvm-objdump", "--macho", f"--arch={architecture}", "--dylibs-used", EXECUTABLE)
    libraries = set(re.findall(r"^\t(\S+) \(", used, re.MULTILINE))
    expected = {*LIBRARIES.values(), SYSTEM_LIBRARY}
    expect(libraries == expected, f"{architecture}: loads {sorted(libraries ^ expected)} against expectation")

    symbols = llvm("llvm-nm", "-m", "-u", f"--arch={architecture}", EXECUTABLE)
    undefined = UNDEFINED.findall(symbols)
    expect(len(undefined) == len(symbols.strip().splitlines()), f"{architecture}: symbols without a library")
    for symbol, library in undefined:
        library = library.removeprefix("lib").removesuffix(".A").removesuffix(".B")
        expect(symbol in declared.get(library, ()), f"{architecture}: {symbol} is not declared by {library}")

    check_signature(architecture)
    return len(undefined)


def check_signature(architecture):
    """arm64 code without a signature over all of its pages is not run at all; an Intel machine does without."""
    headers = llvm("llvm-objdump", "--macho", f"--arch={architecture}", "--private-headers", EXECUTABLE)
    signature = SIGNATURE_COMMAND.search(headers)
    if signature is None:
        expect(architecture != "arm64", "arm64: not signed")
        return
    code = thin(EXECUTABLE.read_bytes(), architecture)
    expect(covers_code(code, int(signature[1])), f"{architecture}: the signature does not match the code")


def check_property_list():
    with (BUNDLE / "Contents/Info.plist").open("rb") as file:
        properties = plistlib.load(file)
    version = re.search(r"^project\(.*VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    for key, value in {
            "CFBundlePackageType": "APPL", "CFBundleExecutable": EXECUTABLE.name,
            "CFBundleShortVersionString": version, "CFBundleVersion": version,
            "LSMinimumSystemVersion": MINIMUM_SYSTEM, "NSHighResolutionCapable": True,
            "NSPrincipalClass": "NSApplication"}.items():
        expect(properties.get(key) == value, f"Info.plist: {key} is {properties.get(key)}, not {value}")
    expect(re.fullmatch(r"[A-Za-z0-9.-]+", properties.get("CFBundleIdentifier", "")), "Info.plist: bundle identifier")
    check_icon(BUNDLE / "Contents/Resources" / f"{properties.get('CFBundleIconFile')}.icns")


def check_icon(path):
    content = path.read_bytes() if path.exists() else b""
    expect(content[:4] == b"icns" and struct.unpack_from(">I", content, 4)[0] == len(content), f"no icon in {path}")


def main():
    size, undefined = check_executable()
    check_property_list()
    for finding in findings:
        print(f"bundle: {finding}")
    if not findings:
        counts = ", ".join(f"{architecture} with {count} symbols of the system"
                           for architecture, count in undefined.items())
        print(f"bundle: {counts}, all declared; macOS {MINIMUM_SYSTEM}; {len(LIBRARIES) + 1} libraries; {size} bytes")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
