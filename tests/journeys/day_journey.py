#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""day_journey.py FOLDER: one day from before Fajr to after Isha, in one run of the program. The service hears of each of
the six prayers once, at its minute, and of nothing else. Then a day on which the dialog is open at Asr, which is lost.

The wall clock runs very fast between the prayers and as usual round each, since the program compares in one second of
the minute only. It leaps over the last minutes before a prayer, as after a short sleep."""
import datetime
import os
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import hands  # noqa: E402
import screen  # noqa: E402
import spine_journey as spine  # noqa: E402
from hands import BUTTON, LINK  # noqa: E402

DATE = datetime.datetime(2026, 3, 20)
BETWEEN = 2400  # times faster than the real clock
ASIDE = 1200    # seconds before a prayer at which the fast clock has to have ended
LEAD = 5        # seconds before a prayer at which the usual clock begins
NAMES = ["fajr", "shuruq", "duhr", "asr", "maghrib", "isha"]
PID = "P-day"
SETTINGS = spine.SETTINGS.replace('enabled="false"', 'enabled="true"').replace("P-77", PID)


class FastClock:
    """The wall clock of the program, through a file that says what it is; the timers run on real time."""

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


def start(folder, settings, clock, seconds, environment=None, prepare=None):
    environment = {**hands.Service.environment(), **clock.environment(), **(environment or {})}
    clock.run(seconds, 1)
    program = hands.Program(folder, settings, "1970-01-01 00:00:00", environment, prepare)
    # The file alone is to say it.
    del program._environment["FAKETIME"]
    return program


def request(pno, text):
    return (f"/cgi-bin/dbeacon/prayerCall.pl?prod_string=P-day&aid=US-1&pno={pno}&alert_type=Quite&ma=0"
            f"&dist_string=dbeacon&time={text}&aid=US-1")


def go_to(clock, seconds):
    """Fast until short of that second, then a leap to it."""
    clock.run(clock.now(), BETWEEN)
    clock.wait(seconds - ASIDE)
    clock.run(seconds, 1)


def whole_day(folder, service):
    clock = FastClock()
    before_fajr = 3 * 3600 + 30 * 60
    with start(folder, SETTINGS, clock, before_fajr) as program:
        clock.started(program.process)
        main = spine.Main(program)
        times = main.times()
        for text, expected in zip(times, spine.expected_times(DATE.date())):
            assert abs(spine.minutes(text) - expected) <= 1.5, times
        due = []
        for pno, text in enumerate(times, 1):
            minute = spine.minutes(text)
            go_to(clock, minute * 60 - LEAD)
            assert service.requests("prayerCall.pl", PID) == due, "a request between the prayers"
            due.append(request(pno, text))
            screen.wait_for(f"the request of {text}", lambda: len(service.requests("prayerCall.pl", PID)) >= pno)
            assert clock.now() < minute * 60 + 59, "asked for after its minute"
            assert service.requests("prayerCall.pl", PID) == due, service.requests("prayerCall.pl", PID)
            clock.wait(minute * 60 + 2)
            print("  ", text, due[-1].partition("?")[2], flush=True)
        clock.run(clock.now(), BETWEEN)
        main.wait("Done", lambda m: m.countdown() == "Done")
        clock.wait(23 * 3600)
        assert service.requests("prayerCall.pl", PID) == due, "a request after Isha"
        print("  alerts due", len(due), "given", len(service.requests("prayerCall.pl", PID)), flush=True)
    return times


def dialog_in_the_way(folder, service, times):
    """What falls due while the dialog is open is lost, and isn't made up for; the next prayer comes, with its popup."""
    clock = FastClock()
    asr, maghrib = (spine.minutes(text) * 60 for text in times[3:5])
    before = len(service.requests("prayerCall.pl", PID))
    settings = SETTINGS.replace('popup="false"', 'popup="true"')
    with start(folder, settings, clock, asr - 600) as program:
        clock.started(program.process)
        main = spine.Main(program)
        window = hands.Window(program, spine.MAIN)
        window.click(LINK, "Alerts")
        dialog = hands.Window(program, "Alerts").wait()
        clock.run(asr - LEAD, 1)
        main.wait("the minute after Asr", lambda m: m.countdown() == spine.clock((maghrib - asr) // 60))
        clock.wait(asr + 5)
        dialog.click(BUTTON, "Close")
        screen.wait_for("the dialog to close", lambda: not dialog.is_open())
        assert len(service.requests("prayerCall.pl", PID)) == before and not hands.is_titled("Dusk Beacon Alert")
        go_to(clock, maghrib - LEAD)
        popup = hands.Window(program, "Prayer Time: Maghrib: " + times[4]).wait()
        sent = screen.wait_for("the request of Maghrib", lambda: service.requests("prayerCall.pl", PID)[before:])
        assert sent == [request(5, times[4])], sent
        popup.click(BUTTON, "OK")
        screen.wait_for("the popup to close", lambda: not popup.is_open())


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop(), hands.Service(ad="", version_name="") as service:
        print("a whole day", flush=True)
        times = whole_day(folder, service)
        print("the dialog in the way", flush=True)
        dialog_in_the_way(folder, service, times)
    print("all as it should be")


if __name__ == "__main__":
    screen.under_own_session()
    main()
