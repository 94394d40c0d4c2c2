#!/usr/bin/env python3
"""Proves that the check can fail: each file in negative/ holds one fault behind FAULT. Without the fault it must pass;
with it there must be exactly one error, at the stage and with the text that the file's first line names."""

import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from layout import (ARCHITECTURES, AVAILABILITY, HEADERS, LANGUAGE, WARNINGS, ZIG_ENVIRONMENT, clang, language_of,
                    link_flags, zig)

CASES = Path(__file__).resolve().parent / "negative"
FIRST_LINE = re.compile(r"// (compile|link|availability): (.+)")
ERROR = re.compile(r"^.*\berror: .*$", re.MULTILINE)


def commands(stage, source, output):
    """Every compiler that has to find the fault, for the architectures in turn."""
    flags = [*LANGUAGE, *WARNINGS, *HEADERS, *language_of(source)]
    if stage == "link":
        return [[*zig(architecture), *flags, source, *link_flags(), "-o", output]
                for architecture in ARCHITECTURES]
    extra = AVAILABILITY if stage == "availability" else []
    return [[*zig("arm64"), *flags, *extra, "-c", source, "-o", output],
            [*clang("x86_64"), *flags, "-fsyntax-only", source]]


def run(command, fault):
    environment = {**os.environ, **ZIG_ENVIRONMENT, "NO_COLOR": "1"}
    result = subprocess.run([*command, f"-DFAULT={fault}"], env=environment, capture_output=True, text=True)
    return result.returncode, result.stderr


def finding(case):
    """What is wrong with this control; nothing when it holds."""
    stage, expected = FIRST_LINE.match(case.read_text()).groups()
    with tempfile.TemporaryDirectory() as folder:
        for command in commands(stage, str(case), f"{folder}/output"):
            status, output = run(command, fault=0)
            if status != 0:
                return f"{case.stem}: does not pass without its fault:\n{output}"
            status, output = run(command, fault=1)
            errors = ERROR.findall(output)
            if status == 0 or len(errors) != 1 or expected not in errors[0]:
                return f"{case.stem}: expected one error, “{expected}”, and got status {status}:\n{output}"
    return None


def main():
    cases = sorted(CASES.glob("*.mm"))
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        findings = [found for found in pool.map(finding, cases) if found]
    for found in findings:
        print(f"negative controls: {found}")
    if not findings:
        print(f"negative controls: {len(cases)} faults are found, each for its own reason")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
