"""The files that the checks look at: those of the repository and those about to be added to it."""

import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


def project_files(*patterns):
    """Paths relative to the root, sorted."""
    command = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", "--", *patterns]
    listing = subprocess.run(command, cwd=ROOT, check=True, capture_output=True, text=True).stdout
    paths = {Path(name) for name in listing.split("\0") if name}
    return sorted(path for path in paths if (ROOT / path).is_file())


def text_of(path):
    return (ROOT / path).read_text(encoding="utf-8", errors="replace")


def report(title, findings, nothing_found):
    """Prints the outcome of one check; returns the exit status of its script."""
    for finding in findings:
        print(f"{title}: {finding}")
    if findings:
        return 1
    print(f"{title}: {nothing_found}")
    return 0
