"""Waiting is always for a condition, with a deadline far beyond what a loaded machine needs."""

import time

DEADLINE_SECONDS = 30
GLANCE_SECONDS = 0.01


def eventually(condition, what, deadline=DEADLINE_SECONDS):
    """The condition's first answer that is true."""
    end = time.monotonic() + deadline
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"not within {deadline} s: {what}")
        time.sleep(GLANCE_SECONDS)


def eventually_equal(read, expected, what):
    """Waits until `read()` gives the expected value; says what was there instead."""
    seen = []

    def matches():
        seen[:] = [read()]
        return seen[0] == expected

    try:
        eventually(matches, what)
    except AssertionError as error:
        raise AssertionError(f"{error}\n  expected {expected!r}\n  last was {seen[0]!r}") from None
