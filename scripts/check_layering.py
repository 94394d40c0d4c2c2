#!/usr/bin/env python3
"""Which file may know which: no question about the operating system, foreign headers only in the twins, includes one
way and without cycles, and no file too long to be read in one sitting."""

import re
import sys
from collections import defaultdict
from pathlib import Path

from sources import project_files, report, text_of

# A folder may include itself and the tiers below it.
TIER = {"config": 0, "platform": 1, "log": 2, "model": 2, "download": 3, "engine": 3, "verify": 3, "app": 4}

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


def upward_includes(path, includes):
    tier = TIER.get(path.parts[1]) if path.parts[0] == "src" else None
    if tier is None:
        return
    for header in includes:
        target = Path(header)
        if len(target.parts) < 2:
            continue
        folder = target.parts[0]
        if folder in ("bench", "demo", "tests", "tools"):
            yield f"{path}: includes {header}, which is no part of the program"
        elif folder != path.parts[1] and TIER.get(folder, -1) >= tier:
            yield f"{path}: includes {header}, which does not lie below it"
        if folder in TIER and TWIN.search(target.stem) and not TWIN.search(path.stem):
            yield f"{path}: includes {header}, which only a twin may"


def cycles(graph):
    done, trail = set(), []

    def visit(node):
        if node in trail:
            yield " -> ".join([*trail[trail.index(node):], node])
        elif node not in done:
            trail.append(node)
            for target in graph[node]:
                yield from visit(target)
            trail.pop()
            done.add(node)

    for node in sorted(graph):
        yield from (f"includes go in a circle: {cycle}" for cycle in visit(node))


def main():
    findings, graph = [], defaultdict(list)
    files = project_files("*.h", "*.cpp", "*.mm")
    for path in files:
        text = text_of(path)
        includes = INCLUDE.findall(text)
        graph[str(path)] = [str(place) for header in includes for place in (Path(header), "src" / Path(header)) if place in files]
        findings += system_conditions(path, text)
        findings += foreign_headers(path, includes)
        findings += upward_includes(path, includes)
        if (lines := len(text.splitlines())) > LONGEST[path.suffix]:
            findings.append(f"{path}: has {lines} lines, more than {LONGEST[path.suffix]}")
    findings += cycles(graph)
    return report("layering", findings, f"{len(files)} files include one way and ask for no operating system")


if __name__ == "__main__":
    sys.exit(main())
