"""Waiting is always for a condition, with a deadline far beyond what a loaded machine needs: a process that is one of
forty on two processors has been seen to take 30 seconds for what takes half a second alone."""

import time

DEADLINE_SECONDS = 150
GLANCE_SECONDS = 0.01


def eventually(condition, what, deadline=DEADLINE_SECONDS):
    """The condition's first answer that is true."""
    end = time.monotonic() + deadline
    while True:
        start = time.monotonic()
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"not within {deadline} s: {what}")
        # A look takes processor time from the very programs that are waited for: no more than half of it.
        time.sleep(max(GLANCE_SECONDS, time.monotonic() - start))


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
