#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""restarts_journey.py FOLDER: a week in which the program is started anew each day in the same folder and closed again, but
for a day that the session ends and one on which it is killed. Each start shows its own day, tells the service that it is
there, keeps the volume of the first day, and leaves the settings file as it found it, byte for byte."""
import datetime
import os
import signal
import sys
import tempfile

import hands
import main_window
import own_network
import screen
import stand_in

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
# How the other days end is up to the close box of the window.
SIGNALS = {datetime.date(2026, 3, 19): (signal.SIGTERM, 0), datetime.date(2026, 3, 21): (signal.SIGKILL, -signal.SIGKILL)}
PID = "P-restarts"
STARTUP = stand_in.START + f"startup.pl?prod_string={PID}&city=Chicago&country=Illinois&dist_string=dbeacon&aid=US-1"
SETTINGS = main_window.SETTINGS.replace("P-77", PID).replace("<app ", "<!-- left\tas it is -->\r\n  <app ").encode()


def volume(program):
    bar = hands.Window(program, main_window.TITLE).control("scroll bar", "Volume")
    return screen.Atspi.Value.get_current_value(bar)


def turn_up(program):
    """With the mouse, beside the handle of the bar."""
    before = volume(program)
    hands.Window(program, main_window.TITLE).click("scroll bar", "Volume", (0.8, 0.5))
    screen.wait_for("the volume to change", lambda: volume(program) > before)
    return volume(program)


def end(program, date):
    kind, expected = SIGNALS.get(date, (None, 0))
    if kind is None:
        hands.Window(program, main_window.TITLE).close()
    else:
        program.process.send_signal(kind)
    code = program.process.wait(timeout=screen.PATIENCE)
    assert code == expected, f"{date}: ended with {code}"


def one_day(folder, place, settings, loudness, date, hijri):
    """Returns the volume that was set in the end."""
    with hands.Program(folder, settings, f"{date} 09:30:10", stand_in.Service.environment(), folder=place) as program:
        main = main_window.Main(program)
        main.wait("the countdown", lambda m: m.countdown())
        main_window.check_times(main, date)
        for text in (f"Date: {date.day} {date:%B}, {date.year}", hijri, "Chicago, Illinois"):
            assert main.has(text), (text, program.texts(main_window.TITLE))
        if loudness is None:
            loudness = turn_up(program)
        assert volume(program) == loudness, f"{date}: {volume(program)}, not {loudness}"
        print("  ", date, hijri, *main.times(), "volume", loudness, flush=True)
        hands.picture(f"restarts_{date}")
        end(program, date)
        assert hands.Settings(program).read() == SETTINGS, f"{date}: the settings have changed"
        return loudness


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop(), stand_in.Service(ad="", version_name="") as service, tempfile.TemporaryDirectory() as place:
        settings, loudness = SETTINGS, None
        for number, (date, hijri) in enumerate(DAYS, 1):
            loudness = one_day(folder, place, settings, loudness, date, hijri)
            assert service.requests("startup.pl", PID) == [STARTUP] * number, service.requests("startup.pl", PID)
            settings = None  # those that are there
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
