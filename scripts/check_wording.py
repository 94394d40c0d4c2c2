#!/usr/bin/env python3
"""What must not be read in any file of the project: the vocabulary of planning papers, package registries, and hosts
that may belong to somebody."""

import re
import sys

from sources import project_files, report, text_of

# Broken into pieces, so that this file does not contain what it looks for.
PLANNING = re.compile("|".join([
    r"\bspe" r"c(ification)?s?\b",
    r"\bpar" r"ts?\s+[0-9]+\.[0-9]",
    r"\bsec" r"tion\s+[0-9]",
    r"as required" r"\s+by\b",
    r"requirements?" r"\s+document",
]), re.IGNORECASE)
REGISTRY = re.compile("|".join([
    r"registry" r"\.npmjs", r"registry" r"\.yarnpkg", r"deb" r"\.debian", r"py" r"pi\.org", r"python" r"hosted\.org",
    r"crates" r"\.io", r"ruby" r"gems\.org", r"proxy" r"\.golang", r"repo1?" r"\.maven",
]), re.IGNORECASE)

# A name without a dot belongs to nobody.
HOST = re.compile(r"https?://(?:[^/@\s\"'<>`]*@)?([a-z0-9-]+(?:\.[a-z0-9-]+)+)", re.IGNORECASE)
RESERVED = re.compile(r"(^|\.)(invalid|example|example\.(com|net|org)|test|localhost)$|^127(\.[0-9]+){3}$")
# Names of XML vocabularies and file formats; nothing is ever fetched from them.
VOCABULARIES = {"www.w3.org", "www.apple.com", "www.debian.org"}

EXEMPT = (":!*.svg", ":!DEVELOPERS.md")


def findings_of(path):
    name = " ".join(re.split(r"[/_.-]", str(path)))
    if PLANNING.search(name):
        yield f"{path}: the file's name"
    for number, line in enumerate(text_of(path).splitlines(), start=1):
        place = f"{path}:{number}"
        if found := PLANNING.search(line):
            yield f'{place}: "{found[0]}" speaks of a paper, not of the system'
        if found := REGISTRY.search(line):
            yield f'{place}: "{found[0]}" is a package registry'
        for host in HOST.findall(line):
            if not RESERVED.search(host.lower()) and host.lower() not in VOCABULARIES:
                yield f"{place}: {host} is not a reserved name"


def main():
    files = project_files(*EXEMPT)
    findings = [finding for path in files for finding in findings_of(path)]
    return report("wording", findings, f"{len(files)} files speak as the system's own and name reserved hosts only")


if __name__ == "__main__":
    sys.exit(main())
