#!/usr/bin/env python3
"""The macOS twins translate and nothing else: they hold no texts of their own, throw nothing the Objective-C way, and
there is little of them."""

import re
import sys

from layout import ROOT

MOST_LINES = 1250
COMMENT = re.compile(r"//.*")
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
DIRECTIVE = re.compile(r"^\s*#", re.MULTILINE)
OBJECTIVE_C_EXCEPTION = re.compile(r"@(throw|finally)\b")

# What an error is about.
KNOWN_TEXTS = {"No launch path", "standard output of a child"}


def findings_of(path):
    name = path.relative_to(ROOT)
    for number, line in enumerate(path.read_text().splitlines(), start=1):
        code = COMMENT.sub("", line)
        if DIRECTIVE.match(code):
            continue
        for text in LITERAL.findall(code):
            if " " in text and text not in KNOWN_TEXTS:
                yield f"{name}:{number}: the text “{text}” belongs on the portable side"
        if found := OBJECTIVE_C_EXCEPTION.search(code):
            yield f"{name}:{number}: {found[0]} has no place at this border"


def main():
    twins = sorted((ROOT / "src/platform").glob("*_mac.*"))
    findings = [finding for twin in twins for finding in findings_of(twin)]
    lines = sum(line.strip() != "" for twin in twins for line in twin.read_text().splitlines())
    if lines > MOST_LINES:
        findings.append(f"{lines} lines, more than {MOST_LINES}")
    for finding in findings:
        print(f"twins: {finding}")
    if not findings:
        print(f"twins: {len(twins)} files of {lines} lines together, and no text or exception of their own")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
