#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""wait_journey.py FOLDER: prayers fall due while the place windows wait for a service that hangs. The countdown goes on, the
alerts are lost as in front of any other window, the windows can be used afterwards, and the next alert comes."""
import os
import sys

import hands
import main_window
import own_network
import place_windows
import screen
import stand_in
import wall_clock

ALERT, PID = "Dusk Beacon Alert", "P-wait"
SETTINGS = main_window.with_alerts(popup=main_window.ELEMENTS, pid=PID)
DUHR, ASR, MAGHRIB = 2, 3, 4
LEAD = 2  # seconds before a prayer; with those after it, fewer than a request may be silent


def lost(main, service, clock, times, slot):
    """That prayer comes and goes: the countdown runs to the next, and nothing else happens."""
    minute, following = (main_window.minutes(text) for text in times[slot:slot + 2])
    clock.run(minute * 60 - LEAD, 1)
    main.wait("the countdown to go on", lambda m: m.countdown() == main_window.clock(following - minute))
    clock.wait(minute * 60 + 3)
    assert service.requests("prayerCall.pl") == [] and not hands.is_titled(ALERT), service.asked()
    hands.picture(f"wait_lost_{main_window.ELEMENTS[slot]}")
    print("  lost", times[slot], flush=True)


def in_the_wait_window(program, service, clock, times, places):
    service.fault("hang", "getStates.pl")
    places.click(hands.LINK, "Get New Location")
    screen.wait_for("the wait window", lambda: place_windows.is_waiting(program))
    screen.wait_for("the question for the countries", lambda: service.requests("getStates.pl"))
    lost(main_window.Main(program), service, clock, times, DUHR)
    assert place_windows.is_waiting(program)
    service.fault("ok", "getStates.pl")
    search = place_windows.Window(program, place_windows.SEARCH).wait()
    screen.wait_for("the wait window to be gone", lambda: not place_windows.is_waiting(program))
    return search


def in_the_search(program, service, clock, times, search):
    service.fault("hang", "getMatchingCities.pl")
    place_windows.choose_country(search, "Norway")
    search.enter("City Name", ["ctrl+a"], "Tr")
    hands.xdotool("key", "Return")
    screen.wait_for("the question for the cities", lambda: service.requests("getMatchingCities.pl"))
    reached = search.progress()
    lost(main_window.Main(program), service, clock, times, ASR)
    assert not search.is_idle() and search.progress() > reached
    service.fault("ok", "getMatchingCities.pl")
    screen.wait_for("the search to be over", search.is_idle)
    assert search.results() == ["Troms\u00f8"], search.results()


def afterwards(program, service, clock, times, places, search):
    search.click(hands.BUTTON, "Cancel")
    search.wait_gone()
    screen.wait_for("the list to be usable", places.is_usable)
    places.close()
    places.wait_gone()
    screen.wait_for("the main window to be usable", hands.Window(program, main_window.TITLE).is_usable)
    clock.run(main_window.minutes(times[MAGHRIB]) * 60 - wall_clock.LEAD, 1)
    popup = hands.Window(program, "Prayer Time: Maghrib: " + times[MAGHRIB]).wait()
    sent = screen.wait_for("the request of Maghrib", lambda: service.requests("prayerCall.pl"))
    assert sent == [stand_in.prayer_call(PID, MAGHRIB + 1, times[MAGHRIB])], sent
    hands.picture("wait_alert_afterwards")
    popup.click(hands.BUTTON, "OK")
    popup.wait_gone()


def main():
    folder = os.path.abspath(sys.argv[1])
    clock = wall_clock.FastClock()
    with hands.Desktop(), stand_in.Service(ad="", version_name="") as service:
        with wall_clock.start(folder, SETTINGS, clock, 9 * 3600) as program:
            clock.started(program.process)
            times = main_window.Main(program).times()
            places = place_windows.open_list(program)
            print("in the wait window", flush=True)
            search = in_the_wait_window(program, service, clock, times, places)
            print("in the search", flush=True)
            in_the_search(program, service, clock, times, search)
            print("afterwards", flush=True)
            afterwards(program, service, clock, times, places, search)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
