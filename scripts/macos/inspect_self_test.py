#!/usr/bin/env python3
"""Looks into the self-test: that a Mac can run it, that each test of its sources is in it, on both architectures, that its
transport rules admit the tests' server, and that docs/macos-first-run.md counts its tests and names its suites. Reads
from standard input which program has which source, each a line. With --write, brings the page's numbers up to date."""

import re
import sys

from executable import Executable
from layout import ARCHITECTURES, ROOT, SELF_TEST, SELF_TEST_LIBRARIES, llvm

PAGE = ROOT / "docs/macos-first-run.md"
TEST = re.compile(r"^TEST(?:_F)?\((\w+),", re.MULTILINE)
TEST_BODY = re.compile(r" [tT] __ZN6orvane4test12_GLOBAL__N_1(\d+)(\w+)8TestBodyEv$", re.MULTILINE)
COUNTS = re.compile(r"\d+ tests from \d+ test suites")
PASSED = re.compile(r"(\[  PASSED  \]) \d+ tests")


def written_suites():
    """The suite of each test in the sources."""
    sources = (line.split()[1] for line in sys.stdin.read().splitlines() if line.startswith(f"{SELF_TEST.name} "))
    return [suite for source in sources for suite in TEST.findall((ROOT / source).read_text())]


def compiled_suites(architecture):
    """The suite of each test in the program: the test's class is named by suite and test."""
    symbols = llvm("llvm-nm", "--defined-only", f"--arch={architecture}", SELF_TEST)
    return [name[:int(length)].split("_")[0] for length, name in TEST_BODY.findall(symbols)]


def with_counts(page, suites):
    page = COUNTS.sub(f"{len(suites)} tests from {len(set(suites))} test suites", page)
    return PASSED.sub(rf"\1 {len(suites)} tests", page)


def check_page(executable, suites):
    page = PAGE.read_text()
    current = with_counts(page, suites)
    if "--write" in sys.argv:
        PAGE.write_text(current)
    else:
        executable.expect(page == current, f"{PAGE.name} does not count {len(suites)} tests; run with --write")
    for suite in sorted(set(suites)):
        executable.expect(f"`{suite}`" in page, f"{PAGE.name} does not say what a failure of {suite} would mean")


def main():
    executable = Executable(SELF_TEST, SELF_TEST_LIBRARIES)
    written = written_suites()
    for architecture in ARCHITECTURES:
        compiled = compiled_suites(architecture)
        executable.expect(sorted(compiled) == sorted(written),
                          f"{architecture}: holds {len(compiled)} tests of {len(written)}")
        rules = llvm("llvm-objdump", "--section=__info_plist", "--full-contents", f"--arch={architecture}", SELF_TEST)
        executable.expect("__info_plist" in rules, f"{architecture}: has no section with transport rules")
    check_page(executable, written)
    for finding in executable.findings:
        print(f"self-test: {finding}")
    if not executable.findings:
        print(f"self-test: {len(written)} tests; {executable.counts()}, all declared")
    return 1 if executable.findings else 0


if __name__ == "__main__":
    sys.exit(main())
