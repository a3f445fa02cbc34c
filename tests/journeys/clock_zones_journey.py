#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""clock_zones_journey.py FOLDER: shipped places whose clock is no whole hour, chosen from the list one after the other, in both
halves of the year and with daylight saving off and on. The times are right to the minute, the label shows whole hours, and its
tip the offset."""
import datetime
import os
import sys
import xml.etree.ElementTree as tree

import hands
import main_window
import place_windows
import screen

# As a user finds it, and the standard time there in minutes.
ZONES = {
    "Delhi, India": ("Delhi", 6, "UTC+5:30", 330),
    "Tehran, Iran": ("Tehran", 4, "UTC+3:30", 210),
    "Kabul, Afghanistan": ("Kabul", 4, "UTC+4:30", 270),
    "Kathmandu, Nepal": ("Kathmandu", 6, "UTC+5:45", 345),
    "Yangon, Myanmar": ("Yangon", 6, "UTC+6:30", 390),
    "Colombo, Sri Lanka": ("Colombo", 6, "UTC+5:30", 330),
    "St. John's, Canada": ("St_Johns", -4, "UTC-3:30", -210),
    "Adelaide, Australia": ("Adelaide", 10, "UTC+9:30", 570),
}
# The second half under regional settings with a decimal comma.
HALVES = [(datetime.date(2026, 5, 1), "C.UTF-8"), (datetime.date(2026, 11, 10), "de_DE.UTF-8")]
# Half a minute, and some seconds for the expectation and for a place that is a hundredth of a degree off.
TO_THE_MINUTE = 0.6


def shipped():
    """The place elements of the shipped file by their names."""
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../data/settings.xml")
    return {place.tag: place for place in tree.parse(path).getroot().find("locations")}


def settings(places):
    root = tree.fromstring(main_window.SETTINGS)
    root.find("locations").extend(places[key] for key, *_ in ZONES.values())
    return tree.tostring(root)


def tip(program, text):
    """The tip of the label of that text, as a screen reader says it."""
    return hands.Window(program, main_window.TITLE).control("label", text).get_description()


def choose(program, line):
    places = place_windows.open_list(program)
    places.pick(line)
    places.click(hands.BUTTON, "Set Current")
    places.wait_gone()
    main = main_window.Main(program)
    main.wait(line, lambda m: m.has(line))
    screen.wait_for("the main window to be usable", hands.Window(program, main_window.TITLE).is_usable)
    return main


def visit_all(program, places, date, daylight_saving):
    for line, (key, hours, offset, minutes) in ZONES.items():
        main = choose(program, line)
        place = float(places[key].get("latitude_final")), float(places[key].get("longitude_final"))
        main_window.check_times(main, date, zone=minutes / 60 + daylight_saving, place=place, tolerance=TO_THE_MINUTE)
        label = f"Time Zone: {hours}"
        assert main.has(label), program.texts(main_window.TITLE)
        assert tip(program, label) == offset, tip(program, label)
        print("  ", date, line, offset, "+1" if daylight_saving else "", *main.times(), flush=True)


def switch_daylight_saving_on(program):
    hands.Window(program, main_window.TITLE).click(hands.LINK, "Alerts")
    dialog = hands.Window(program, "Alerts").wait()
    dialog.tick("Use Day Light Savings")
    dialog.click(hands.BUTTON, "Close")
    dialog.wait_gone()
    main_window.Main(program).wait("daylight saving", lambda m: m.has("Day Light Savings is: On"))


def main():
    folder = os.path.abspath(sys.argv[1])
    places = shipped()
    with hands.Desktop():
        for date, locale in HALVES:
            with hands.Program(folder, settings(places), f"{date} 09:30:10", {"LC_ALL": locale}) as program:
                assert tip(program, "Time Zone: -6") == "", "a place of whole hours has no tip"
                visit_all(program, places, date, 0)
                switch_daylight_saving_on(program)
                visit_all(program, places, date, 1)
                hands.picture(f"clock_zones_{date}")
    print("all as it should be")


if __name__ == "__main__":
    screen.under_own_session()
    main()
