# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A clock of the program's own, which a journey sets and lets run faster."""
import datetime
import os
import tempfile
import time

import hands
import screen
import stand_in

DATE = datetime.datetime(2026, 3, 20)
LEAD = 5  # seconds before a prayer at which the usual clock begins


class FastClock:
    """The wall clock of the program, set through a file."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="duskbeacon-clock-")
        self._path = os.path.join(self._folder.name, "clock")
        self._start = None

    def environment(self):
        return {"FAKETIME_TIMESTAMP_FILE": self._path, "FAKETIME_NO_CACHE": "1"}

    def started(self, process):
        """The library counts from the start of the process."""
        with open(f"/proc/{process.pid}/stat") as file:
            ticks = int(file.read().rpartition(")")[2].split()[19])
        since = time.clock_gettime(time.CLOCK_BOOTTIME) - ticks / os.sysconf("SC_CLK_TCK")
        self._start = time.monotonic() - since

    def run(self, seconds, rate):
        """From now on it is that second of the day, and the clock runs that much faster."""
        elapsed = time.monotonic() - self._start if self._start else 0
        self._from, self._at, self._rate = seconds, time.monotonic(), rate
        instant = DATE + datetime.timedelta(seconds=seconds - elapsed * rate)
        with open(self._path + ".new", "w") as file:
            file.write(f"@{instant:%Y-%m-%d %H:%M:%S} x{rate}\n")
        os.replace(self._path + ".new", self._path)

    def now(self):
        return self._from + (time.monotonic() - self._at) * self._rate

    def wait(self, seconds):
        while self.now() < seconds:
            time.sleep(max(0.001, (seconds - self.now()) / self._rate))


def start(folder, settings, clock, seconds, environment=None, prepare=None, rate=1, are_timers_real=True):
    """Starts the program at that second of the day of its wall clock. Timers that are not real follow that clock."""
    environment = {**stand_in.Service.environment(), **clock.environment(), **(environment or {})}
    clock.run(seconds, rate)
    program = hands.Program(folder, settings, "1970-01-01 00:00:00", environment, prepare)
    # The time comes from the file only.
    del program.environment["FAKETIME"]
    if not are_timers_real:
        for name in screen.REAL_TIMERS:
            del program.environment[name]
    return program
