"""Crash reports as the vendor's service reads them."""

import base64

_HEAD = b'{"Product": "varlen", "Report": "'
_TAIL = b'", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"}'


def log_in(body):
    """The log inside a report; the rest of the report must be there to the letter."""
    assert body.startswith(_HEAD) and body.endswith(_TAIL), body
    return base64.b64decode(body[len(_HEAD):-len(_TAIL)], validate=True)
