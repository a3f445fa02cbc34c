#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""service_journey.py FOLDER: the program with the real service, as a user meets both: the first and the second start, places
found, added and chosen, the strip, the offer of a version, a mobile device signed up, and a prayer whose text is asked for. One
copy of the program keeps its settings from start to start."""
import datetime
import os
import re
import sys
import tempfile

import beacond
import boxes
import hands
import main_window
import own_network
import place_windows
import screen

SHIPPED = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "data", "settings.xml")
INSTANT = "2026-03-20 09:30:10"
DATE = datetime.date(2026, 3, 20)
# Found by the letters "ma" in Saudi Arabia, after places that the program ships.
NAME, COUNTRY, ATLAS_ID = "Al Majaridah", "Saudi Arabia", "SA-G399518"
POSITION, ANGLES = (19.12, 41.91), (-18, -17)
OFFER = "Would you like to Download\nthe new version of DuskBeacon?"
STRIP = "<b>The mosque opens at five</b>"
REGISTERED = (
    "Your mobile device is registered. "
    "Tick Enable Mobile Alerts, then choose its messages on the page of each prayer. The message with the code says how to end them.")
UNKNOWN = (
    "This personal code is not known. "
    "Please check its 16 digits, or sign up again for a new one. A code registers one installation only.")


class Installation:
    """A copy of the program that is started repeatedly."""

    def __init__(self, programs, folder):
        self._programs = programs
        self._folder = folder

    def start(self, settings=None, instant=INSTANT):
        return hands.Program(self._programs, settings, instant, folder=self._folder)


def shipped_settings():
    """The shipped settings; the service is the network that the program finds."""
    with open(SHIPPED, encoding="utf-8") as file:
        shipped = file.read()
    named = shipped.replace('dist="dbeacon"', f'dist="dbeacon" probe="{beacond.ADDRESS}/healthz"')
    assert named != shipped
    return named


def identifier(program):
    return hands.Settings(program).attributes("app")["pid"]


def first_start(installation, service):
    with installation.start(shipped_settings()) as program:
        places = place_windows.Window(program, place_windows.LIST).wait()
        given = identifier(program)
        assert re.fullmatch("[A-Za-z0-9_-]{32}", given), given
        assert hands.Settings(program).attributes("app")["FirstRun"] == "false"
        places.close()
        places.wait_gone()
    assert service.requests("requestProdID.pl") == 1
    return given


def second_start(program, service, given):
    # The list would have come before the main window.
    main = hands.Window(program, main_window.TITLE).wait()
    assert main.is_usable() and not program.window(place_windows.LIST)
    assert identifier(program) == given and service.requests("requestProdID.pl") == 1


def find(search, country, letters):
    """The results of a search. The country is chosen with the keys: the list of all is longer than the screen."""
    def choose():
        search.open_combo()
        hands.xdotool("type", country)
        hands.xdotool("key", "Return")
        return screen.settles(lambda: search.chosen() == country)
    screen.wait_for(f"{country} to be chosen", choose)
    search.enter("City Name", ["ctrl+a"], letters)
    before = search.results()
    hands.xdotool("key", "Return")
    screen.wait_for(f"results for {letters}", lambda: search.results() not in ([], before))
    return search.results()


def searching(program, places):
    places.click(hands.LINK, "Get New Location")
    search = place_windows.Window(program, place_windows.SEARCH).wait()
    screen.wait_for("the search to be in front", lambda: hands.title_in_front() == place_windows.SEARCH)
    search.enter("Zip Code", ["ctrl+a"], "10001")
    hands.xdotool("key", "Return")
    screen.wait_for("New York first", lambda: search.results()[:1] == ["New York"])
    found = find(search, COUNTRY, "ma")
    assert found[:2] == ["Makkah", "Madinah"] and NAME in found, found
    hands.picture("service_search", search)
    print("  found", search.results(), flush=True)
    return search


def adding(program, places, search):
    before = places.lines()
    search.pick("Makkah")
    search.click(hands.BUTTON, "Add")
    boxes.answer(program, "This location has already been added to location list.")
    search.pick(NAME)
    search.click(hands.BUTTON, "Add")
    search.wait_gone()
    screen.wait_for("the list to be usable", places.is_usable)
    line = f"{NAME}, {COUNTRY}"
    assert places.lines() == [*before, line], places.lines()
    return line


def choosing(program, places, line):
    places.click("list", "Locations")
    hands.xdotool("key", "End")
    screen.wait_for(f"{line} to be selected", lambda: line in places.selected())
    hands.picture("service_place_added", places)
    places.click(hands.BUTTON, "Set Current")
    places.wait_gone()
    main = main_window.Main(program)
    main.wait("the new place", lambda m: m.has(line) and m.has("Time Zone: 3"))
    noon = main_window.check_times(main, DATE, ANGLES, zone=3, place=POSITION)[2]
    # It is half past nine, or some minutes later on a busy machine.
    expected = [main_window.clock(noon - 570 - passed) for passed in range(5)]
    main.wait("the countdown of the new place", lambda m: m.countdown() in expected)
    hands.picture("service_place_chosen", hands.Window(program, main_window.TITLE))
    print("  times", main.times(), flush=True)


def places_of_the_service(installation, service, given):
    with installation.start() as program:
        second_start(program, service, given)
        places = place_windows.open_list(program)
        search = searching(program, places)
        choosing(program, places, adding(program, places, search))


def news(installation, service):
    """The strip and the release that were added while the service runs. Answers the times that are shown."""
    service.run("ad", "add", text=STRIP)
    service.run("release", "add", "1", "6", f"{beacond.ADDRESS}/downloads/")
    # The strip was requested before it, and has its reply by then.
    asked = "/cgi-bin/dbeacon/version.pl?curr_v=1&curr_s=5"
    screen.wait_for("the release to be known", lambda: 'version_sequence="6"' in service.get(asked))
    with installation.start() as program:
        boxes.answer(program, OFFER, "No", ("Yes",))
        main = main_window.Main(program)
        # Silent for the next two weeks: this is day 79.
        assert hands.Settings(program).attributes("version") == {"remind": "93"}
        screen.wait_for("the strip", lambda: main_window.advertisement(program) == f"<html>{STRIP}</html>")
        main.wait("the countdown", main_window.Main.countdown)
        hands.picture("service_strip")
        return main.times()


def register(program, dialog, code, shown, result):
    dialog.enter("Personal Code", ["ctrl+a"], code)
    settings = hands.Settings(program)
    settings.wait("mobilePC", code)
    dialog.click(hands.BUTTON, "Register")
    boxes.answer(program, shown)
    assert settings.alerts("mobileConfirm") == result


def sign_up(installation, service):
    """Signs up a device, which is to get a text at noon."""
    device, code = service.sign_up("aisha@example.org")
    with installation.start() as program:
        main_window.Main(program)
        hands.Window(program, main_window.TITLE).click(hands.LINK, "Alerts")
        dialog = hands.Window(program, "Alerts").wait()
        dialog.click(hands.TAB, "Mobile Alert")
        dialog.enter("Mobile Device ID", ["ctrl+a"], device)
        register(program, dialog, "0000 0000 0000 0000", UNKNOWN, "0")
        register(program, dialog, code, REGISTERED, "1")
        dialog.tick("Enable Mobile Alerts")
        hands.picture("service_registered", dialog)
        dialog.click(hands.TAB, "Duhr")
        screen.wait_for("the mobile alert", lambda: dialog.is_live(hands.BOX, "Mobile Alert, Duhr"))
        dialog.tick("Mobile Alert, Duhr")
        hands.Settings(program).wait_prayer("duhr", enabled="true", mobil="true")


def text_at_noon(installation, service, noon):
    assert service.texts() == []
    with installation.start(instant=f"{DATE} {main_window.clock(main_window.minutes(noon) - 1)}:48"):
        texts = screen.wait_for("the text", service.texts)
    assert texts == [f"Duhr {noon}"], texts
    print("  text", texts, flush=True)


def main():
    programs = os.path.abspath(sys.argv[1])
    with hands.Desktop(), beacond.running(programs) as service, tempfile.TemporaryDirectory() as folder:
        installation = Installation(programs, folder)
        print("first start", flush=True)
        given = first_start(installation, service)
        print("places", flush=True)
        places_of_the_service(installation, service, given)
        print("strip and version", flush=True)
        times = news(installation, service)
        print("sign-up", flush=True)
        sign_up(installation, service)
        print("text", flush=True)
        text_at_noon(installation, service, times[2])
        assert service.complaints() == [], service.complaints()
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
