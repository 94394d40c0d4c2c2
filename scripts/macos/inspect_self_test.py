#!/usr/bin/env python3
"""Looks into the self-test: that a Mac can run it, and that each test of its sources is in it, on both architectures.
Reads from standard input which program has which source, each a line."""

import re
import sys

from executable import Executable
from layout import ARCHITECTURES, ROOT, SELF_TEST, SELF_TEST_LIBRARIES, llvm

TEST = re.compile(r"^TEST(?:_F)?\(", re.MULTILINE)
TEST_BODY = re.compile(r" [tT] __ZN6orvane4test.*8TestBodyEv$", re.MULTILINE)


def written_tests():
    sources = (line.split()[1] for line in sys.stdin.read().splitlines() if line.startswith(f"{SELF_TEST.name} "))
    return sum(len(TEST.findall((ROOT / source).read_text())) for source in sources)


def main():
    executable = Executable(SELF_TEST, SELF_TEST_LIBRARIES)
    written = written_tests()
    for architecture in ARCHITECTURES:
        symbols = llvm("llvm-nm", "--defined-only", f"--arch={architecture}", SELF_TEST)
        compiled = len(TEST_BODY.findall(symbols))
        executable.expect(compiled == written, f"{architecture}: holds {compiled} tests of {written}")
    for finding in executable.findings:
        print(f"self-test: {finding}")
    if not executable.findings:
        print(f"self-test: {written} tests; {executable.counts()}, all declared")
    return 1 if executable.findings else 0


if __name__ == "__main__":
    sys.exit(main())
