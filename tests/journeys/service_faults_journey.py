#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of the service, at the start and in the search for places: the messages to the user, that the clock goes on, that
the settings stay whole and that the windows can be used afterwards."""
import os
import signal
import sys
import time

import boxes
import hands
import main_window
import own_network
import place_windows
import screen
import stand_in

# Ten seconds before the countdown changes.
INSTANT = "2026-03-20 09:30:50"
CHICAGO = main_window.SETTINGS.replace('remind="366"', 'remind=""')
FIRST = CHICAGO.replace('FirstRun="false" pid="P-77"', 'FirstRun="true" pid=""')
IDENTIFIER = "P-\u00e9"
AT_START = ["requestProdID.pl", "startup.pl", "getAd.pl", "version.pl"]
STATES_FAILED = "Unable to retrieve state list.\nVerify internet connection."


def start(folder, service, settings, instant=None):
    service.forget()
    return hands.Program(folder, settings, instant, environment=service.environment())


def unreadable_start(folder, service, how, faulty):
    """The program starts with its stored data and repeats the request at the next start."""
    service.fault("ok", *AT_START)
    service.fault(how, *faulty)
    with start(folder, service, FIRST) as program:
        place_windows.Window(program, place_windows.LIST).wait()
        hands.Window(program, main_window.TITLE).wait()
        assert boxes.box(program) is None
        is_ad_faulty = "getAd.pl" in faulty
        # A failed advertisement counts as no connection: no request follows it.
        asked = AT_START[:3] if is_ad_faulty else AT_START
        for script in asked:
            assert service.requests(script), (how, script, service.asked())
        assert bool(service.requests("version.pl")) != is_ad_faulty
        service.check_refusals(len(faulty) - is_ad_faulty if how == "certificate" else 0)
        expected = main_window.DEFAULT_AD if is_ad_faulty else stand_in.AD
        assert main_window.advertisement(program) == f"<html>{expected}</html>", main_window.advertisement(program)
        if "requestProdID.pl" in faulty:
            assert hands.Settings(program).read() == FIRST.encode()
        main_window.Main(program)


def readable_start(folder, service, how):
    """Neither the status nor the alphabet of a reply matters."""
    service.fault(how, *AT_START)
    service.reply(version_sequence="6")
    with start(folder, service, FIRST) as program:
        boxes.answer(program, "Would you like to Download\nthe new version of DuskBeacon?", "No", ("Yes",))
        place_windows.Window(program, place_windows.LIST).wait()
        attributes = hands.Settings(program).attributes("app")
        assert attributes == {"FirstRun": "false", "pid": IDENTIFIER, "dist": "dbeacon"}, attributes
        assert main_window.advertisement(program) == f"<html>{stand_in.AD}</html>", main_window.advertisement(program)
        assert f"prod_string={IDENTIFIER}&" in service.requests("startup.pl")[0], service.asked()
        assert service.connections() == 1, "a connection is kept for the next request"
    service.reply(version_sequence="5")


def dots(program):
    """The progress text of the splash window."""
    application = program.application()
    for i in range(application.get_child_count() if application else 0):
        window = application.get_child_at_index(i)
        for name in screen.names(window) if window is not None else ():
            if name.startswith("Loading"):
                return name
    return None


def endless_start(folder, service, how, script):
    """The clock goes on while the start waits, and the program can be ended quickly meanwhile."""
    service.fault("ok", *AT_START)
    service.fault(how, script)
    with start(folder, service, FIRST) as program:
        screen.wait_for(script, lambda: service.requests(script))
        # Only the dots show that the clock runs: the main window opens at the end of the start.
        for _ in range(2):
            before = dots(program)
            assert before, "no splash window"
            screen.wait_for("the splash window to go on", lambda: dots(program) not in (None, before))
        assert not hands.Window(program, main_window.TITLE).is_open()
        since = time.monotonic()
        program.process.send_signal(signal.SIGTERM)
        code = program.process.wait(timeout=screen.PATIENCE)
        assert code == 0 and time.monotonic() - since < 5, (code, time.monotonic() - since)
        identifier = hands.Settings(program).attributes("app")["pid"]
        assert identifier == ("" if script == AT_START[0] else IDENTIFIER), identifier
        assert place_windows.stored(program.settings) == (["Chicago"], "Chicago")


def silent_start(folder, service, how):
    """The start waits three seconds for the end of a reply; the request continues, and does not delay the end of the program."""
    service.fault("ok", *AT_START)
    service.fault(how, "startup.pl")
    with start(folder, service, CHICAGO) as program:
        screen.wait_for("startup.pl", lambda: service.requests("startup.pl"))
        since = time.monotonic()
        screen.wait_for("the ad to be asked for", lambda: service.requests("getAd.pl"))
        waited = time.monotonic() - since
        assert 2.5 < waited < 5, waited
        hands.Window(program, main_window.TITLE).wait()
        assert len(service.requests("startup.pl")) == 1, service.asked()
        since = time.monotonic()
        program.process.send_signal(signal.SIGTERM)
        code = program.process.wait(timeout=screen.PATIENCE)
        assert code == 0 and time.monotonic() - since < 5, (code, time.monotonic() - since)


def open_with(program, service, places, how):
    """The window for a search, opened while the list of states misbehaves; None if that says so."""
    service.fault(how, "getStates.pl")
    places.click(hands.LINK, "Get New Location")
    if how in stand_in.UNREADABLE:
        boxes.answer(program, STATES_FAILED)
        screen.wait_for("the list to be usable", places.is_usable)
        assert not place_windows.is_waiting(program) and not place_windows.Window(program, place_windows.SEARCH).is_open()
        return None
    search = place_windows.Window(program, place_windows.SEARCH).wait()
    screen.wait_for("the wait window to be gone", lambda: not place_windows.is_waiting(program))
    return search


def has_found(search, service, script, city):
    """The search has ended: its request was sent, its link is enabled again, and these are the lines."""
    screen.wait_for(f"the search by {script} to be over", lambda: service.requests(script) and search.is_idle())
    assert search.results() == [city], (search.results(), city)
    service.forget()


def zip_search(program, service, search, how, expected):
    service.fault(how, "getUsCanCity.pl")
    search.enter("Zip Code", ["ctrl+a"], "60601")
    search.click_described(hands.LINK, place_windows.BY_ZIP_CODE)
    if how in stand_in.UNREADABLE:
        boxes.answer(program, "Failed to retrieve list")
    has_found(search, service, "getUsCanCity.pl", expected)


def city_search(program, service, search, count, cities, expected):
    service.fault(count, "getNumMatchingCities.pl")
    service.fault(cities, "getMatchingCities.pl")
    search.enter("City Name", ["ctrl+a"], "Tr")
    search.click_described(hands.LINK, place_windows.BY_COUNTRY)
    has_found(search, service, "getMatchingCities.pl", expected)
    assert boxes.box(program) is None


def searches(program, service, places, how):
    """One misbehaviour at each request of the window."""
    before = hands.Settings(program).read()
    is_unreadable = how in stand_in.UNREADABLE
    search = open_with(program, service, places, how) or open_with(program, service, places, "ok")
    place_windows.choose_country(search, "Norway")
    name = "Troms\u00f8"
    zip_search(program, service, search, "ok", "Chicago")
    # Without a list the lines stay, without a count the list is shown all the same; neither shows a message.
    city_search(program, service, search, how, how, "Chicago" if is_unreadable else name)
    city_search(program, service, search, how, "ok", name)
    zip_search(program, service, search, how, name if is_unreadable else "Chicago")
    city_search(program, service, search, "ok", "ok", name)
    search.pick(name)
    service.fault(how, "getCityInfo.pl")
    search.click(hands.BUTTON, "Add")
    if is_unreadable:
        boxes.answer(program, "Failed to get city info. Please verify internet connection.")
        assert hands.Settings(program).read() == before
        service.fault("ok", "getCityInfo.pl")
        screen.wait_for("the button to be usable", lambda: search.is_live(hands.BUTTON, "Add"))
        search.click(hands.BUTTON, "Cancel")
    search.wait_gone()
    screen.wait_for("the list to be usable", places.is_usable)
    if not is_unreadable:
        assert places.lines() == ["Chicago, Illinois", f"{name}, Norway"], places.lines()
        assert place_windows.stored(program.settings) == (["Chicago", "Tromso"], "Chicago")
        delete(program, places, f"{name}, Norway")


def invalid_place(program, service, places):
    """A place that the program could never be started with is refused; with its true latitude it is added."""
    before = hands.Settings(program).read()
    search = open_with(program, service, places, "ok")
    place_windows.choose_country(search, "Norway")
    name = "Troms\u00f8"
    city_search(program, service, search, "ok", "ok", name)
    search.pick(name)
    service.reply(latitude_final="400")
    search.click(hands.BUTTON, "Add")
    screen.wait_for("the message", lambda: boxes.box(program))
    hands.picture("service_faults_invalid_place")
    boxes.answer(program, "Failed to get city info. Please verify internet connection.")
    assert hands.Settings(program).read() == before
    screen.wait_for("the button to be usable", lambda: search.is_usable() and search.is_live(hands.BUTTON, "Add"))
    service.reply(latitude_final="")
    search.click(hands.BUTTON, "Add")
    search.wait_gone()
    assert place_windows.stored(program.settings) == (["Chicago", "Tromso"], "Chicago")
    delete(program, places, f"{name}, Norway")


def delete(program, places, line):
    places.pick(line)
    places.click(hands.BUTTON, "Delete")
    boxes.answer(program, f"Are you sure you want to remove: {line}", "Yes", ("No",))
    screen.wait_for("one place", lambda: places.lines() == ["Chicago, Illinois"])


def endless_searches(program, service, places):
    """The clock goes on during each request; a late reply is used, an incomplete one is not."""
    main = main_window.Main(program)
    countdown = main.countdown()
    service.fault("hang", "getStates.pl")
    places.click(hands.LINK, "Get New Location")
    screen.wait_for("the wait window", lambda: place_windows.is_waiting(program))
    screen.wait_for("the countdown to go on", lambda: main.countdown() not in ("", countdown))
    hands.picture("service_faults_wait")
    service.fault("ok", "getStates.pl")
    search = place_windows.Window(program, place_windows.SEARCH).wait()
    place_windows.choose_country(search, "Norway")
    for count, cities, found in (("drip", "drip", []), ("drip", "hang", ["Troms\u00f8"])):
        service.fault(count, "getNumMatchingCities.pl")
        service.fault(cities, "getMatchingCities.pl")
        search.enter("City Name", ["ctrl+a"], "Tr")
        hands.xdotool("key", "Return")
        screen.wait_for("the progress", lambda: search.has("Retrieving Information") and search.progress() >= 1)
        assert not search.is_idle()
        service.fault("ok", "getNumMatchingCities.pl")
        screen.wait_for("the list to be asked for", lambda: service.requests("getMatchingCities.pl"))
        reached = search.progress()
        screen.wait_for("the bar to go on", lambda: search.progress() > reached)
        service.fault("ok", "getMatchingCities.pl")
        screen.wait_for("the search to be over", search.is_idle)
        assert search.results() == found, search.results()
        service.forget()
    before = hands.Settings(program).read()
    search.pick("Troms\u00f8")
    service.fault("drip", "getCityInfo.pl")
    search.click(hands.BUTTON, "Add")
    screen.wait_for("the button to be greyed", lambda: not search.is_live(hands.BUTTON, "Add"))
    screen.wait_for("the question for the city", lambda: service.requests("getCityInfo.pl"))
    service.fault("ok", "getCityInfo.pl")
    boxes.answer(program, "Failed to get city info. Please verify internet connection.")
    assert hands.Settings(program).read() == before
    # The windows close during a request.
    service.fault("hang", "getCityInfo.pl")
    service.forget()
    search.click(hands.BUTTON, "Add")
    screen.wait_for("the question for the city", lambda: service.requests("getCityInfo.pl"))
    search.click(hands.BUTTON, "Cancel")
    search.wait_gone()
    places.close()
    places.wait_gone()
    service.fault("ok", "getCityInfo.pl")
    screen.wait_for("the main window to be usable", hands.Window(program, main_window.TITLE).is_usable)
    assert hands.Settings(program).read() == before


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop(), stand_in.Service(prod_string=IDENTIFIER) as service:
        for how in stand_in.UNREADABLE:
            print("start:", how, flush=True)
            unreadable_start(folder, service, how, AT_START)
            unreadable_start(folder, service, how, ["version.pl"])
        for how in stand_in.READABLE:
            print("start:", how, flush=True)
            readable_start(folder, service, how)
        for how, script in (("hang", "requestProdID.pl"), ("hang", "getAd.pl"), ("drip", "version.pl")):
            print("start:", how, script, flush=True)
            endless_start(folder, service, how, script)
        for how in ("hang", "drip"):
            print("start:", how, "startup.pl", flush=True)
            silent_start(folder, service, how)
        service.fault("ok", *AT_START)
        with start(folder, service, CHICAGO) as program:
            places = place_windows.open_list(program)
            for how in stand_in.UNREADABLE + stand_in.READABLE:
                print("search:", how, flush=True)
                searches(program, service, places, how)
            hands.picture("service_faults_after_searches")
            print("search: an invalid place", flush=True)
            invalid_place(program, service, places)
        with start(folder, service, CHICAGO, INSTANT) as program:
            print("search: hang and drip", flush=True)
            endless_searches(program, service, place_windows.open_list(program))
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
