"""A clock that stands still until it is set, for programs started with its variables."""

import os
import subprocess

from .waiting import DEADLINE_SECONDS

# Takes the place of the system's time(2) alone: waits, which follow other clocks, last as long as ever.
_LIBRARY = r"""
#include <fcntl.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

time_t time(time_t *result) {
    char text[32] = {0};
    int file = open(getenv("ORVANE_E2E_CLOCK"), O_RDONLY | O_CLOEXEC);
    if (file < 0 || read(file, text, sizeof text - 1) <= 0)
        abort();
    close(file);
    time_t now = strtoll(text, NULL, 10);
    if (result)
        *result = now;
    return now;
}
"""


class Clock:
    def __init__(self, folder, seconds):
        """`seconds` since 1970 in UTC."""
        self._file = folder / "clock"
        self._library = folder / "clock.so"
        subprocess.run(["cc", "-x", "c", "-shared", "-fPIC", "-o", self._library, "-"], input=_LIBRARY, check=True,
                       text=True, timeout=DEADLINE_SECONDS)
        self.set(seconds)

    def set(self, seconds):
        partial = self._file.with_name("clock.partial")
        partial.write_text(f"{seconds}\n")
        os.replace(partial, self._file)

    def variables(self, time_zone="UTC"):
        return {"LD_PRELOAD": str(self._library), "ORVANE_E2E_CLOCK": str(self._file), "TZ": time_zone}
