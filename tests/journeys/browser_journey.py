#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""browser_journey.py FOLDER: the pages of the real service in a real browser, with scripts and without: each page as a visitor
reads it, and a sign-up from a mistyped address to the personal code."""
import os
import re
import sys

import beacond
import chromium
import own_network
import screen

FIELD, BUTTON = "Mail address", "Send me an ID and a code"
DOWNLOAD = "https://example.org/dusk-beacon"
PAGES = [
    ("help", "/dbeacon/help.html", "Help", 200),
    ("downloads", "/downloads/", "Downloads", 200),
    ("sounds", "/cgi-bin/dbeacon/sound/sound.pl?prod_string=", "Sounds", 200),
    ("missing", "/nowhere", "There is no such page", 404),
]


def arrived(browser, heading):
    screen.wait_for(heading, lambda: browser.heading() == heading)


def reading(browser):
    for name, path, heading, status in PAGES:
        browser.open(beacond.ADDRESS + path)
        assert browser.heading() == heading, browser.heading()
        browser.check(status)
        browser.picture("browser_" + name)
        browser.link("Home").click()
        arrived(browser, "Dusk Beacon")
        assert browser.address() == beacond.ADDRESS + "/"
        browser.check()
    browser.picture("browser_home")


def downloading(browser):
    browser.link("Downloads").click()
    arrived(browser, "Downloads")
    assert browser.link("Dusk Beacon 1.6").get_attribute("href") == DOWNLOAD
    browser.check()


def send(browser, address):
    browser.control(FIELD).clear()
    browser.control(FIELD).send_keys(address)
    browser.control(BUTTON).click()


def signing_up(browser, service, address):
    browser.link("Home").click()
    arrived(browser, "Dusk Beacon")
    browser.check()
    send(browser, "aisha")
    assert browser.complaint(browser.control(FIELD)) and browser.heading() == "Dusk Beacon"
    # The browser accepts this value.
    send(browser, "aisha@example")
    arrived(browser, "This address can't be used")
    browser.check(400)
    browser.picture("browser_refused")
    browser.link("go back").click()
    arrived(browser, "Dusk Beacon")
    browser.check()
    send(browser, address)
    arrived(browser, "The message is on its way")
    browser.check()
    browser.picture("browser_signed_up")
    device, code = service.message_to(address)
    assert re.fullmatch("[0-9]{4}( [0-9]{4}){3}", code), code
    assert device not in browser.text() and code not in browser.text()


def main():
    programs = os.path.abspath(sys.argv[1])
    with beacond.running(programs) as service:
        service.run("release", "add", "1", "6", DOWNLOAD)
        screen.wait_for("the release to be known", lambda: DOWNLOAD in service.get("/downloads/"))
        for scripts, address in ((True, "aisha@example.org"), (False, "bilal@example.org")):
            print("with scripts" if scripts else "without scripts", flush=True)
            with chromium.Browser(scripts) as browser:
                reading(browser)
                downloading(browser)
                signing_up(browser, service, address)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    main()
