"""Crash reports as the vendor's service reads them, and as support does."""

import base64
import json
import subprocess

_HEAD = b'{"Product": "varlen", "Report": "'
_TAIL = b'", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"}'


def log_in(body):
    """The log inside a report; the rest of the report must be there to the letter."""
    assert body.startswith(_HEAD) and body.endswith(_TAIL), body
    return base64.b64decode(body[len(_HEAD):-len(_TAIL)], validate=True)


def with_causes(build, files):
    """What orvane-reports says of each report and log in these files and folders."""
    if not files:
        return []
    tool = subprocess.run([build / "orvane-reports", "--json", *files], capture_output=True, text=True, timeout=60)
    assert tool.returncode == 0, tool.stderr
    return [json.loads(line) for line in tool.stdout.splitlines()]
