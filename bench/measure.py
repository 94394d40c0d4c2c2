"""Runs commands and compares what they take: in turns, pair by pair, so that a machine that is busy now and then is
busy for both."""

import json
import os
import statistics
import subprocess
import time
from dataclasses import dataclass


@dataclass
class Cost:
    """What one process took, from its start to its end."""
    seconds: float
    processor_seconds: float
    peak_kib: int
    output: str

    def measured(self):
        """What the process itself measured: its last line, as our own programs print it."""
        return json.loads(self.output.splitlines()[-1])


class Failure(Exception):
    """Something could not be measured."""


def run(command, variables=None, expected_status=0):
    """Runs a command to its end. Its output goes through a pipe, so it should be short."""
    command = [str(part) for part in command]
    start = time.perf_counter()
    process = subprocess.Popen(command, env=variables, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE)
    output = process.stdout.read()
    errors = process.stderr.read()
    _, state, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(state)
    process.stdout.close()
    process.stderr.close()
    if process.returncode != expected_status:
        raise Failure(f"{' '.join(command)} ended with {process.returncode}: {errors.decode(errors='replace')}")
    return Cost(seconds, usage.ru_utime + usage.ru_stime, usage.ru_maxrss, output.decode(errors="replace"))


def in_turns(count, *works):
    """Does each work `count` times, a round of all before the next round, every second round backwards. Returns one
    list of results for each work."""
    results = [[] for _ in works]
    for number in range(count):
        order = list(enumerate(works))
        for index, work in order if number % 2 == 0 else reversed(order):
            results[index].append(work())
    return results


def ratio(numerators, denominators):
    """The median of the ratios of the pairs."""
    return statistics.median(above / below for above, below in zip(numerators, denominators))


median = statistics.median
