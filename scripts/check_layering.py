#!/usr/bin/env python3
"""No question about the operating system, foreign headers only in the twins, and no file too long to be read in one
sitting. Which folder may include which is the build's to say (cmake/Folders.cmake)."""

import re
import sys
from pathlib import Path

from sources import project_files, report, text_of

LONGEST = {".h": 150, ".cpp": 400, ".mm": 400}

CONDITION = re.compile(r"^[ \t]*#[ \t]*(?:el)?if(?:n?def)?\b(.*)$", re.MULTILINE)
SYSTEM_MACRO = re.compile(
    r"\b(__APPLE__|__MACH__|__linux(__)?|linux|__gnu_linux__|__unix(__)?|_WIN32|_WIN64|WIN32|__CYGWIN__|"
    r"__ANDROID__|__\w*BSD__|TARGET_OS_\w+)\b")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*(?:include|import)[ \t]*[<"]([^>"]+)[>"]', re.MULTILINE)
TWIN = re.compile(r"_(mac|linux)$")

FOREIGN = {
    "Qt": re.compile(r"^(Qt\w*/|Q[A-Z]\w*$)"),
    "curl": re.compile(r"^curl/"),
    "OpenSSL": re.compile(r"^openssl/"),
    "cpp-httplib": re.compile(r"^httplib\.h$"),
    "macOS": re.compile(r"^(AppKit|Block|Cocoa|CommonCrypto|CoreFoundation|Foundation|Security|dispatch|mach|"
                        r"mach-o|objc|os|servers|xpc)(/|\.h$)"),
}
FOREIGN_ALLOWED = {
    "demo": {"OpenSSL", "cpp-httplib"},
    "tests/support": {"OpenSSL", "cpp-httplib"},
    "packaging/macos": {"macOS"},
    "scripts/macos": {"macOS"},
}


def system_conditions(path, text):
    for condition in CONDITION.findall(text.replace("\\\n", " ")):
        if found := SYSTEM_MACRO.search(condition):
            yield f"{path}: asks for {found[1]}; let the build choose a twin instead"


def foreign_headers(path, includes):
    if TWIN.search(path.stem):
        return
    allowed = next((libraries for folder, libraries in FOREIGN_ALLOWED.items()
                    if Path(folder) in path.parents), set())
    for header in includes:
        for library, pattern in FOREIGN.items():
            if library not in allowed and pattern.search(header):
                yield f"{path}: includes <{header}> of {library}, which only a _mac or _linux file may"
        if path.parts[0] == "src" and TWIN.search(Path(header).stem):
            yield f"{path}: includes {header}, which only a twin may"


def main():
    findings = []
    files = project_files("*.h", "*.cpp", "*.mm")
    for path in files:
        text = text_of(path)
        findings += system_conditions(path, text)
        findings += foreign_headers(path, INCLUDE.findall(text))
        if (lines := len(text.splitlines())) > LONGEST[path.suffix]:
            findings.append(f"{path}: has {lines} lines, more than {LONGEST[path.suffix]}")
    return report("layering", findings, f"{len(files)} files ask for no operating system and include no foreign header")


if __name__ == "__main__":
    sys.exit(main())
