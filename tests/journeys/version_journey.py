#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The offer of another version at the start: No silences it for two weeks, Yes ends the program and opens the download."""
import os
import sys
import tempfile

import boxes
import hands
import main_window
import own_network
import screen
import stand_in

OFFER = "Would you like to Download\nthe new version of DuskBeacon?"
DOWNLOAD = "http://localhost:8750/download/dusk-beacon-6.tar.gz?from=1&to=6"
SETTINGS = main_window.SETTINGS.replace('<version remind="366"/>', '<version remind=""/>')
DAY_100, DAY_113, DAY_114 = "2026-04-10 09:30:45", "2026-04-23 09:30:45", "2026-04-24 09:30:45"


class Browser:
    """Stands where the toolkit looks for the user's browser and writes down what it is to open."""

    def __init__(self, folder):
        self._folder = folder
        self._opened = os.path.join(folder, "opened")
        opener = os.path.join(folder, "xdg-open")
        with open(opener, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\nprintf "%s\\n" "$@" >"{self._opened}.new"\nmv "{self._opened}.new" "{self._opened}"\n')
        os.chmod(opener, 0o755)

    def environment(self):
        return {"PATH": f"{self._folder}:{os.environ['PATH']}"}

    def opened(self):
        if not os.path.exists(self._opened):
            return []
        with open(self._opened, encoding="utf-8") as file:
            return file.read().splitlines()


def goes_on(program):
    main = hands.Window(program, main_window.TITLE).wait()
    assert main.is_usable() and boxes.box(program) is None
    before = main_window.Main(program).countdown()
    screen.wait_for("the countdown to go on", lambda: main_window.Main(program).countdown() not in ("", before))


def start(folder, settings, instant, service, browser):
    return hands.Program(folder, settings, instant, environment={**service.environment(), **browser.environment()})


def journey(folder, service, browser):
    print("the same version", flush=True)
    with start(folder, SETTINGS, DAY_100, service, browser) as program:
        hands.Window(program, main_window.TITLE).wait()
        assert boxes.box(program) is None
        assert hands.Settings(program).attributes("version") == {"remind": ""}
    service.reply(version_name="1", version_sequence="6", download_url=DOWNLOAD)
    print("No", flush=True)
    with start(folder, SETTINGS, DAY_100, service, browser) as program:
        screen.wait_for("the offer", lambda: boxes.box(program))
        hands.picture("version_offer")
        boxes.answer(program, OFFER, "No", ("Yes",))
        goes_on(program)
        assert hands.Settings(program).attributes("version") == {"remind": "114"}
        silenced = hands.Settings(program).read()
    print("silent to the end of the two weeks", flush=True)
    with start(folder, silenced, DAY_113, service, browser) as program:
        goes_on(program)
        assert hands.Settings(program).read() == silenced
    assert browser.opened() == []
    print("Yes", flush=True)
    with start(folder, silenced, DAY_114, service, browser) as program:
        boxes.answer(program, OFFER, "Yes", ("No",))
        program.process.wait(timeout=screen.PATIENCE)
        screen.wait_for("the browser", browser.opened)
        assert browser.opened() == [DOWNLOAD], browser.opened()
        assert hands.Settings(program).read() == silenced


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop(), stand_in.Service() as service, tempfile.TemporaryDirectory() as place:
        journey(folder, service, Browser(place))
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
