#!/usr/bin/env python3
"""clang-tidy over every source of a build, on all processors. What was clean is not looked at again until it, a project
header that it includes, its compile command or the configuration changes."""

import hashlib
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from functools import lru_cache
from pathlib import Path

from sources import ROOT, report

INCLUDE = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)


@lru_cache(maxsize=None)
def digest_of(path):
    return hashlib.sha256(path.read_bytes()).digest()


@lru_cache(maxsize=None)
def included_by(path, folders):
    headers = [name.decode() for name in INCLUDE.findall(path.read_bytes())]
    found = (next((folder / name for folder in folders if (folder / name).is_file()), None) for name in headers)
    return [header for header in found if header]


def files_read_for(source, folders):
    """The source and all headers of the project that it sees, sorted."""
    seen, waiting = set(), [source]
    while waiting:
        path = waiting.pop()
        if path not in seen:
            seen.add(path)
            waiting += included_by(path, folders)
    return sorted(seen)


def configurations_of(source):
    return [folder / ".clang-tidy" for folder in source.parents if (folder / ".clang-tidy").is_file()]


def key_of(source, command, build, version):
    folders = (ROOT / "src", ROOT, build / "generated")
    key = hashlib.sha256(f"{version}\0{source}\0{command}".encode())
    for path in files_read_for(source, folders) + configurations_of(source):
        key.update(str(path).encode() + digest_of(path))
    return key.hexdigest()


def tidy(source, build):
    """What clang-tidy has to say about the source; empty when it is clean."""
    run = subprocess.run(["clang-tidy", "--quiet", "-p", build, source], capture_output=True, text=True, check=False)
    return run.stdout + (run.stderr if run.returncode and not run.stdout else "") if run.returncode else ""


def main(build, cache):
    cache.mkdir(parents=True, exist_ok=True)
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, text=True, check=True).stdout
    entries = json.loads((build / "compile_commands.json").read_text())
    # What a build makes for itself is not ours to mend.
    entries = [entry for entry in entries if build not in Path(entry["file"]).parents]
    marks = {Path(entry["file"]): cache / key_of(Path(entry["file"]), entry["command"], build, version)
             for entry in entries}
    changed = [source for source in marks if not marks[source].exists()]
    findings = []
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, said in zip(changed, pool.map(lambda source: tidy(source, build), changed)):
            if said:
                findings.append(f"{source.relative_to(ROOT)}\n{said.strip()}")
            else:
                marks[source].touch()
    return report("clang-tidy", findings, f"{len(marks)} sources are clean, {len(changed)} of them looked at anew")


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()))
