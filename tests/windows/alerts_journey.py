#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""alerts_journey.py BUILD: the installed program, minimised to its icon: the warning and the prayer with their windows
and the sound, which is recorded and measured; then the menu of the icon. The clock is the real one, which Wine can't be made to
leave: the place is one where Duhr comes soon."""
import datetime
import os
import re
import subprocess
import sys
import time

import wine
from wine import wait_for, xdotool

sys.path.append(os.path.join(wine.TREE, "tests", "journeys"))
import main_window  # noqa: E402
import own_network  # noqa: E402
import sound  # noqa: E402

ALERT = "Dusk Beacon Alert"
OK = (104, 80)
STOP = (64, 264)
TONE = 440
OPEN, EXIT = 0, 1  # lines of the menu
WARNING = 1  # minute ahead


def with_duhr_at(minute, today):
    """The settings of a place on the equator where Duhr is in the middle of that minute of the day."""
    def distance(tenths):
        return abs(main_window.expected_times(today, place=(0, tenths / 10), zone=0)[2] - minute - 0.5)
    longitude = min(range(-1795, 1796), key=distance) / 10
    assert distance(longitude * 10) < 0.3, (minute, longitude)
    settings = main_window.with_alerts(popup=["duhr"], warning=WARNING)
    settings = settings.replace('play="false" audioFile=""', 'play="true" audioFile="C:\\\\My sounds\\\\\u0623\u0630\u0627\u0646.wav"')
    return settings.replace('longitude_final="-87.65"', f'longitude_final="{longitude}"').replace(
        'latitude_final="41.85"', 'latitude_final="0"').replace('time_zone2="-6"', 'time_zone2="0"')


def minute_of_the_day():
    now = datetime.datetime.now(datetime.timezone.utc)
    return now.hour * 60 + now.minute


def icon():
    """The window that shows the icon. Without a panel of the desktop Wine has a notification area of its own: in a panel the icon
    stays blank and deaf after some starts."""
    return wine.window("Wine System Tray")


def menu():
    """The place of the icon's menu, or None."""
    tree = subprocess.run(["xwininfo", "-root", "-children"], stdout=subprocess.PIPE, text=True, check=True).stdout
    found = re.search(r'"duskbeacon\.exe"\) +1?[0-9]{2}x[3-9][0-9]\+\d+\+\d+ +\+(\d+)\+(\d+)$', tree, re.MULTILINE)
    return found and (int(found[1]), int(found[2]))


def choose(line):
    """A line of the icon's menu, with the mouse: the window with the icon has the keyboard."""
    def opens():
        xdotool("mousemove", "--window", icon(), 12, 10)
        time.sleep(0.5)
        xdotool("click", 3)
        # A second click would close a menu that is only late.
        late = time.monotonic() + 5
        while not menu() and time.monotonic() < late:
            time.sleep(0.2)
        return menu()
    x, y = wait_for("the menu", opens)
    wine.picture("tray_menu")
    xdotool("mousemove", x + 40, y + 11 + 22 * line, "click", 1)
    wait_for("the menu to close", lambda: not menu())


def is_hidden():
    listed = subprocess.run(["wmctrl", "-l"], stdout=subprocess.PIPE, text=True, check=True).stdout
    return not wine.window(wine.MAIN) and wine.MAIN not in listed


def minimise():
    xdotool("windowminimize", wine.window(wine.MAIN))
    wait_for("the main window to be hidden", is_hidden)


def alert(name, seconds):
    wait_for(name, lambda: wine.window(ALERT), seconds)
    wine.picture(name)
    assert is_hidden(), "the alert brought the main window back"


def answer():
    wine.click(ALERT, *OK)
    wine.wait_gone(ALERT)


def journey(installed, server):
    installed.start()
    wait_for("the icon", icon)
    minimise()
    wine.picture("hidden")
    alert("warning", 240)
    warned = minute_of_the_day()
    assert server.is_silent()
    answer()
    alert("prayer", 90)
    assert minute_of_the_day() == warned + WARNING
    wait_for("the sound", lambda: server.hears(TONE), 20)
    print("  sound of", TONE, "Hz", flush=True)
    answer()
    assert server.hears(TONE), "the sound ended with the window"
    assert is_hidden(), "the end of the alert brought the main window back"
    choose(OPEN)
    wait_for("the main window", lambda: wine.window(wine.MAIN))
    wine.click(wine.MAIN, *STOP)
    wait_for("silence", server.is_silent)
    minimise()
    installed.end_session()


def exit_from_the_menu(installed):
    installed.start()
    wait_for("the icon", icon)
    choose(EXIT)
    installed.wait_end()
    wait_for("the icon to be gone", lambda: not icon())


def main():
    build = os.path.abspath(sys.argv[1])
    now = datetime.datetime.now(datetime.timezone.utc)
    if not 10 <= minute_of_the_day() < 1430:
        time.sleep(1200)  # the day ends
    with wine.Desktop(), sound.Server() as server, wine.Windows(environment=server.environment()) as windows:
        os.mkdir(windows.path("C:\\My sounds"))
        sound.write_tone(windows.path("C:\\My sounds\\\u0623\u0630\u0627\u0646.wav"), TONE, 60)
        # Two minutes may pass until the program has started.
        installed = wine.Installed(windows, build, lambda _: with_duhr_at(minute_of_the_day() + 3, now.date()))
        print("alerts", flush=True)
        journey(installed, server)
        print("exit from the menu", flush=True)
        exit_from_the_menu(installed)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    main()
