#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""places_journey.py BUILD SERVICE: the installed program with the real service, from the folder of dusk-beacond: the first start,
a place chosen, a place found and added, the settings window, the end of the session in each window, an upgrade."""
import os
import re
import shutil
import sys
import time

import wine
from wine import wait_for, xdotool

sys.path.append(os.path.join(wine.TREE, "tests", "journeys"))
import beacond  # noqa: E402
import own_network  # noqa: E402

LIST, SEARCH, DIALOG, BOX = "Dusk Beacon: Location", "Dusk Beacon: New Location", "Alerts", "Dusk Beacon"
LOCATIONS, ALERTS = (30, 155), (30, 171)  # links of the main window
OPTION_12_HOURS = (358, 120)


def with_probe(settings):
    """The service is the network that the program finds."""
    named = settings.replace('dist="dbeacon"', f'dist="dbeacon" probe="{beacond.ADDRESS}/healthz"')
    assert named != settings
    return named


def first_start(installed, service):
    installed.start()
    wine.wait_window(LIST)
    wine.picture("first_start")
    app = installed.attributes("app")
    assert re.fullmatch("[A-Za-z0-9_-]{32}", app["pid"]) and app["FirstRun"] == "false", app
    assert service.requests("requestProdID.pl") == 1


def choosing(installed):
    """In the list that the first start has opened."""
    xdotool("type", "Jakarta")
    xdotool("key", "Tab", "space")
    wine.wait_gone(LIST)
    wait_for("the choice to be saved", lambda: installed.attributes("locations")["Current"] == "Jakarta")
    wine.picture("place_chosen")


def finding(installed, service):
    known = installed.places()
    wine.click(wine.MAIN, *LOCATIONS)
    wine.wait_window(LIST)
    xdotool("key", "Tab", "Tab", "Tab", "Return")
    wine.wait_window(SEARCH)
    xdotool("type", "60601")
    xdotool("key", "Return")
    wait_for("the request", lambda: service.requests("getUsCanCity.pl") == 1)
    time.sleep(2)
    wine.wait_window(SEARCH)
    wine.picture("places_found")
    # The second of the results: the list has Chicago already.
    xdotool("key", "Tab", "Tab", "Tab", "Tab", "Tab", "Home", "Down", "Tab", "space")
    wine.wait_gone(SEARCH)
    wine.wait_window(LIST)
    added = [place for place in installed.places() if place not in known]
    assert len(added) == 1 and installed.attributes(added[0])["city"] == "Chicago Loop", added
    wine.picture("place_added")
    wine.close(LIST)


def dialog(installed):
    choose_12_hours(installed)
    wine.close(DIALOG)
    time.sleep(1)
    wine.picture("after_the_dialog")


def choose_12_hours(installed):
    assert installed.attributes("alerts")["hourmode"] == "24", installed.attributes("alerts")
    wine.click(wine.MAIN, *ALERTS)
    wine.wait_window(DIALOG)
    wine.picture("dialog")
    wine.click(DIALOG, *OPTION_12_HOURS)
    wait_for("the clock format to be saved", lambda: installed.attributes("alerts")["hourmode"] == "12")


def session_ends(installed):
    """In the main window, under the list, under a question. Nothing is written."""
    before = installed.read()
    installed.end_session()
    installed.start()
    wine.wait_window(wine.MAIN)
    wine.click(wine.MAIN, *LOCATIONS)
    wine.wait_window(LIST)
    installed.end_session()
    installed.start()
    wine.wait_window(wine.MAIN)
    wine.click(wine.MAIN, *LOCATIONS)
    wine.wait_window(LIST)
    xdotool("key", "Tab", "Tab", "space")
    wine.wait_window(BOX)
    wine.picture("session_end_question")
    installed.end_session()
    assert installed.read() == before


def upgrade(installed):
    """Over the running program with a dialog open; then it starts as it was left."""
    before = installed.read()
    installed.start()
    wine.wait_window(wine.MAIN)
    wine.click(wine.MAIN, *ALERTS)
    wine.wait_window(DIALOG)
    installed.install()
    installed.wait_end()
    assert installed.read() == before
    installed.start()
    wine.wait_window(wine.MAIN)
    assert not wine.window(LIST), "a first start again"
    wine.picture("after_the_upgrade")
    wine.close(wine.MAIN)
    installed.wait_end()


def portable(installed, build):
    """A copy from the zip uses the settings beside it, and leaves those of the installed program alone."""
    before = installed.read()
    parent = installed.windows.path("C:\\My copies")
    shutil.unpack_archive(wine.packaged(build, "portable.zip"), parent)
    copy = wine.Portable(installed.windows, "C:\\My copies\\Dusk Beacon")
    copy.write(with_probe(copy.read()).replace('FirstRun="true" pid=""', 'FirstRun="false" pid="P-portable"'))
    copy.start()
    wine.wait_window(wine.MAIN)
    choose_12_hours(copy)
    copy.end_session()
    assert installed.read() == before
    assert os.path.isfile(os.path.join(parent, "Dusk Beacon", "temp.html"))


def main():
    build, programs = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    with wine.Desktop(), beacond.running(programs) as service, wine.Windows() as windows:
        installed = wine.Installed(windows, build, with_probe)
        for name, step in (("first start", lambda: first_start(installed, service)), ("choosing", lambda: choosing(installed)),
                           ("finding", lambda: finding(installed, service)), ("dialog", lambda: dialog(installed)),
                           ("session ends", lambda: session_ends(installed)), ("upgrade", lambda: upgrade(installed)),
                           ("portable copy", lambda: portable(installed, build))):
            print(name, flush=True)
            step()
        assert not service.complaints(), service.complaints()
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    main()
