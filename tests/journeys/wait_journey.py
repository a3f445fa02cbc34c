#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""wait_journey.py FOLDER: prayers fall due while the place windows wait for a service that hangs. The countdown goes on, the
alerts are lost as in front of any other window, the windows can be used afterwards, and the next alert comes."""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import visit  # noqa: E402
import day_journey as day  # noqa: E402
import hands  # noqa: E402
import places_journey as places_of  # noqa: E402
import screen  # noqa: E402
import spine_journey as spine  # noqa: E402

ALERT = "Dusk Beacon Alert"
SETTINGS = day.SETTINGS.replace('popup="false"', 'popup="true"')
DUHR, ASR, MAGHRIB = 2, 3, 4


def lost(main, service, clock, times, slot):
    """That prayer comes and goes: the countdown runs to the next, and nothing else happens."""
    minute, following = (spine.minutes(text) for text in times[slot:slot + 2])
    clock.run(minute * 60 - day.LEAD, 1)
    main.wait("the countdown to go on", lambda m: m.countdown() == spine.clock(following - minute))
    clock.wait(minute * 60 + 3)
    assert service.requests("prayerCall.pl") == [] and not hands.is_titled(ALERT), service.asked()
    print("  lost", times[slot], flush=True)


def in_the_wait_window(program, service, clock, times, places):
    service.fault("hang", "getStates.pl")
    places.click(hands.LINK, "Get New Location")
    screen.wait_for("the wait window", lambda: visit.is_waiting(program))
    screen.wait_for("the question for the countries", lambda: service.requests("getStates.pl"))
    lost(spine.Main(program), service, clock, times, DUHR)
    assert visit.is_waiting(program)
    service.fault("ok", "getStates.pl")
    search = visit.Window(program, visit.SEARCH).wait()
    screen.wait_for("the wait window to be gone", lambda: not visit.is_waiting(program))
    return search


def in_the_search(program, service, clock, times, search):
    service.fault("hang", "getMatchingCities.pl")
    places_of.choose_country(search, "Norway")
    search.enter("City Name", ["ctrl+a"], "Tr")
    hands.mouse("key", "Return")
    screen.wait_for("the question for the cities", lambda: service.requests("getMatchingCities.pl"))
    reached = search.progress()
    lost(spine.Main(program), service, clock, times, ASR)
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
    screen.wait_for("the main window to be usable", visit.Window(program, visit.MAIN).is_usable)
    clock.run(spine.minutes(times[MAGHRIB]) * 60 - day.LEAD, 1)
    popup = hands.Window(program, "Prayer Time: Maghrib: " + times[MAGHRIB]).wait()
    sent = screen.wait_for("the request of Maghrib", lambda: service.requests("prayerCall.pl"))
    assert sent == [day.request(MAGHRIB + 1, times[MAGHRIB])], sent
    popup.click(hands.BUTTON, "OK")
    screen.wait_for("the popup to close", lambda: not popup.is_open())


def main():
    folder = os.path.abspath(sys.argv[1])
    clock = day.FastClock()
    with hands.Desktop(), visit.Service(ad="", version_name="") as service:
        with day.start(folder, SETTINGS, clock, 9 * 3600) as program:
            clock.started(program.process)
            times = spine.Main(program).times()
            places = places_of.open_list(program)
            print("in the wait window", flush=True)
            search = in_the_wait_window(program, service, clock, times, places)
            print("in the search", flush=True)
            in_the_search(program, service, clock, times, search)
            print("afterwards", flush=True)
            afterwards(program, service, clock, times, places, search)
    print("all as it should be")


if __name__ == "__main__":
    visit.under_own_network()
    screen.under_own_session()
    main()
