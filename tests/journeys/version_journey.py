#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The offer of another version at the start: No silences it for two weeks, Yes ends the program and opens the download. An
alert beside it, whichever came first, can be closed, and neither covers the other's buttons."""
import os
import subprocess
import sys
import tempfile

import boxes
import hands
import main_window
import own_network
import screen
import stand_in
import wall_clock

OFFER = "Would you like to Download\nthe new version of DuskBeacon?"
DOWNLOAD = "http://localhost:8750/download/dusk-beacon-6.tar.gz?from=1&to=6"
SETTINGS = main_window.SETTINGS.replace('<version remind="366"/>', '<version remind=""/>')
ALERTS = main_window.with_alerts(popup=["duhr", "asr"]).replace('<version remind="366"/>', '<version remind=""/>')
DAY_100, DAY_113, DAY_114 = "2026-04-10 09:30:45", "2026-04-23 09:30:45", "2026-04-24 09:30:45"


class Browser:
    """A browser, found by the toolkit, that records the addresses to open."""

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


def check_apart(program, popup, name):
    """The pointer reaches the whole of each button, of the popup and of the offer."""
    hands.picture("version_offer_" + name)
    over_ok = hands.frames_over(popup.control(hands.BUTTON, "OK"))
    over_answers = [hands.frames_over(node) for node in boxes.box(program)[1].values()]
    assert len(over_answers) == 2 and all(len(over) == 1 and over == over_answers[0] for over in over_answers), over_answers
    assert len(over_ok) == 1 and over_ok != over_answers[0], f"{over_ok} {over_answers}"


def popup_of(program, prayer, time):
    return hands.Window(program, f"Prayer Time: {prayer}: {time}").wait()


def has_the_keyboard():
    return hands.title_in_front() == "Dusk Beacon"


def alert_under_the_offer(folder, service, times):
    clock = wall_clock.FastClock()
    duhr, asr = (main_window.minutes(text) * 60 for text in times[2:4])
    with wall_clock.start(folder, ALERTS, clock, duhr - 600) as program:
        clock.started(program.process)
        screen.wait_for("the offer", lambda: boxes.box(program))
        screen.wait_for("the offer to have the keyboard", has_the_keyboard)
        clock.run(duhr - 3, 1)
        popup = popup_of(program, "Duhr", times[2])
        assert has_the_keyboard(), hands.title_in_front()
        check_apart(program, popup, "then_popup")
        popup.click(hands.BUTTON, "OK")
        popup.wait_gone()
        screen.wait_for("the offer to have the keyboard again", has_the_keyboard)
        assert not hands.Window(program, main_window.TITLE).is_open(), "the start was not waiting any more"
        clock.run(asr - 3, 1)
        popup = popup_of(program, "Asr (Shafi)", times[3])
        subprocess.run(["wmctrl", "-F", "-c", "Dusk Beacon Alert"], check=True)
        popup.wait_gone()
        assert hands.Settings(program).attributes("version") == {"remind": ""} and boxes.box(program)
        screen.wait_for("the offer to have the keyboard at last", has_the_keyboard)
        hands.xdotool("key", "Escape")
        clock.run(asr + 50, 1)
        goes_on(program)
        assert hands.Settings(program).attributes("version") == {"remind": "93"}


def offer_beside_an_alert(folder, service, times):
    clock = wall_clock.FastClock()
    duhr = main_window.minutes(times[2]) * 60
    service.forget()
    service.fault("hang", "version.pl")
    with wall_clock.start(folder, ALERTS, clock, duhr - 600) as program:
        clock.started(program.process)
        screen.wait_for("the question for the version", lambda: service.requests("version.pl"))
        clock.run(duhr - 3, 1)
        popup = popup_of(program, "Duhr", times[2])
        service.fault("ok", "version.pl")
        screen.wait_for("the offer", lambda: boxes.box(program))
        check_apart(program, popup, "after_popup")
        boxes.answer(program, OFFER, "No", ("Yes",))
        main = hands.Window(program, main_window.TITLE).wait()
        assert popup.is_open() and not main.is_usable()
        popup.click(hands.BUTTON, "OK")
        popup.wait_gone()
        clock.run(duhr + 50, 1)
        goes_on(program)


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop(), stand_in.Service() as service, tempfile.TemporaryDirectory() as place:
        journey(folder, service, Browser(place))
        with hands.Program(folder, main_window.SETTINGS, "2026-03-20 09:30:45") as program:
            times = main_window.Main(program).times()
        print("an alert under the offer", flush=True)
        alert_under_the_offer(folder, service, times)
        print("the offer beside an alert", flush=True)
        offer_beside_an_alert(folder, service, times)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
