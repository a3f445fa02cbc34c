#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""restarts_journey.py FOLDER: a week in which the program is started anew each day and closed again. Each start shows its
own day, tells the service that it is there, and leaves the settings file as it found it, byte for byte."""
import datetime
import os
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import hands  # noqa: E402
import screen  # noqa: E402
import spine_journey as spine  # noqa: E402

# By the Umm al-Qura calendar, in which Ramadan 1447 has 30 days from 18 February 2026 on.
DAYS = [
    (datetime.date(2026, 3, 17), "28 Ramadhan, 1447"),
    (datetime.date(2026, 3, 18), "29 Ramadhan, 1447"),
    (datetime.date(2026, 3, 19), "30 Ramadhan, 1447"),
    (datetime.date(2026, 3, 20), "1 Shawwal, 1447"),
    (datetime.date(2026, 3, 21), "2 Shawwal, 1447"),
    (datetime.date(2026, 3, 22), "3 Shawwal, 1447"),
    (datetime.date(2026, 3, 23), "4 Shawwal, 1447"),
]
PID = "P-restarts"
STARTUP = "/cgi-bin/dbeacon/startup.pl?prod_string=P-restarts&city=Chicago&country=Illinois&dist_string=dbeacon&aid=US-1"


def one_day(folder, settings, date, hijri):
    with hands.Program(folder, settings, f"{date} 09:30:10", hands.Service.environment()) as program:
        main = spine.Main(program)
        main.wait("the countdown", lambda m: m.countdown())
        spine.check_times(main, date)
        for text in (f"Date: {date.day} {date:%B}, {date.year}", hijri, "Chicago, Illinois"):
            assert main.has(text), (text, program.texts(spine.MAIN))
        print("  ", date, hijri, *main.times(), flush=True)
        subprocess.run(["wmctrl", "-F", "-c", spine.MAIN], check=True)
        code = program.process.wait(timeout=screen.PATIENCE)
        assert code == 0, f"ended with {code}"
        return hands.Settings(program).read()


def main():
    folder = os.path.abspath(sys.argv[1])
    settings = shipped = spine.SETTINGS.replace("P-77", PID).replace("<app ", "<!-- left\tas it is -->\r\n  <app ").encode()
    with hands.Desktop(), hands.Service(ad="", version_name="") as service:
        for number, (date, hijri) in enumerate(DAYS, 1):
            settings = one_day(folder, settings, date, hijri)
            assert settings == shipped, f"{date}: the settings have changed"
            assert service.requests("startup.pl", PID) == [STARTUP] * number, service.requests("startup.pl", PID)
    print("all as it should be")


if __name__ == "__main__":
    screen.under_own_session()
    main()
