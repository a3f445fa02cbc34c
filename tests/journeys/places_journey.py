#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Places as a user meets them: looking for them in both ways, adding, choosing and deleting them."""
import datetime
import os
import sys
import stand_in_service

import boxes
import hands
import main_window
import own_network
import place_windows
import screen
import stand_in

DEARBORN = """<Dearborn atlas_id="US-48126" city="Dearborn" state="Michigan" longitude="83.18 W" longitude_final="-83.18"
      latitude="42.32 N" latitude_final="42.32" time_zone2="-5"/>"""
JAKARTA = """<Jakarta atlas_id="ID-10110" city="Jakarta" state="Indonesia" longitude="106.85 E" longitude_final="106.85"
      latitude="6.21 S" latitude_final="-6.21" time_zone2="7"/>"""
NORWAY = stand_in_service.STATES.index("Norway") + 1
INSTANT = "2026-03-20 09:30:10"
# The count of matches is above the limit when the reply says 0 for the limit.
ASK = "There are over 0 matches.\nWould you like to display all?"


def settings_of(current, *places):
    """The usual settings with these places."""
    start, end = main_window.SETTINGS.index("<locations"), main_window.SETTINGS.index("</locations>")
    locations = f'<locations Current="{current}">\n    {"".join(places)}\n  '
    return main_window.SETTINGS[:start] + locations + main_window.SETTINGS[end:]


def open_search(program, places):
    places.click(hands.LINK, "Get New Location")
    search = place_windows.Window(program, place_windows.SEARCH).wait()
    screen.wait_for("the wait window to be gone", lambda: not place_windows.is_waiting(program))
    assert not places.is_usable()
    return search


def by_zip_code(program, service, places):
    search = open_search(program, places)
    search.click_described(hands.LINK, place_windows.BY_ZIP_CODE)
    boxes.answer(program, "You must enter a zipcode to search for.")
    # The empty zip code is requested all the same.
    boxes.answer(program, "No city found matching this Zip Code")
    # The list is disabled during its search: raised by the user it gives the focus back at once.
    hands.raise_window(place_windows.LIST)
    screen.wait_for("the search to be in front", lambda: hands.title_in_front() == place_windows.SEARCH)
    assert not places.is_usable()
    search.enter("Zip Code", ["ctrl+a"], "60601")
    hands.xdotool("key", "Return")
    screen.wait_for("Chicago among the results", lambda: search.results() == ["Chicago"])
    search.click(hands.BUTTON, "Add")
    boxes.answer(program, "You must first select a city to add.")
    hands.picture("places_found_by_zip_code")
    search.pick("Chicago")
    search.click(hands.BUTTON, "Add")
    search.wait_gone()
    screen.wait_for("the list to be usable", places.is_usable)
    assert places.lines() == ["Dearborn, Michigan", "Jakarta, Indonesia", "Chicago, Illinois"], places.lines()
    assert places.selected() == ["Dearborn, Michigan"], places.selected()
    assert place_windows.stored(program.settings) == (["Dearborn", "Jakarta", "Chicago"], "Dearborn")
    start = stand_in.START
    service.check_asked([f"{start}getStates.pl?prod_string=P-77&dist_string=dbeacon",
                         f"{start}getUsCanCity.pl?zipcode=&prod_string=P-77&dist_string=dbeacon",
                         f"{start}getUsCanCity.pl?zipcode=60601&prod_string=P-77&dist_string=dbeacon",
                         f"{start}getCityInfo.pl?prod_string=P-77&aid=US-60601&dist_string=dbeacon"])


def count(start):
    return f"{stand_in.START}getNumMatchingCities.pl?state_id={NORWAY}&city_string={start}&prod_string=P-77&dist_string=dbeacon"


def cities(start):
    return f"{stand_in.START}getMatchingCities.pl?prod_string=P-77&state_id={NORWAY}&city_string={start}&dist_string=dbeacon"


def by_country(program, service, places):
    service.forget()
    service.reply(max_matches="0")
    search = open_search(program, places)
    search.click_described(hands.LINK, place_windows.BY_COUNTRY)
    boxes.answer(program, "You must first select a Country/Region.")
    place_windows.choose_country(search, "Norway")
    search.enter("City Name", ["ctrl+a"], "T")
    search.click_described(hands.LINK, place_windows.BY_COUNTRY)
    boxes.answer(program, "You must supply at least the first\n 2 characters of the city name.")
    search.enter("City Name", ["End"], "x")
    search.click_described(hands.LINK, place_windows.BY_COUNTRY)
    boxes.answer(program, "There are no matches for this search criteria.\nPlease try again.")
    search.enter("City Name", ["ctrl+a"], "Tr")
    hands.xdotool("key", "Return")
    boxes.answer(program, ASK, "No", ("Yes",))
    boxes.answer(program, "Please refine your search and try again.")
    assert search.results() == [], search.results()
    search.click_described(hands.LINK, place_windows.BY_COUNTRY)
    boxes.answer(program, ASK, "Yes", ("No",))
    name = "Troms\u00f8"
    screen.wait_for(f"{name} among the results", lambda: search.results() == [name])
    hands.picture("places_found_by_country")
    search.double_click("list item", name)
    search.wait_gone()
    assert places.lines()[-1] == f"{name}, Norway", places.lines()
    # Once more: the place is stored already.
    service.reply(max_matches="3")
    search = open_search(program, places)
    place_windows.choose_country(search, "Norway")
    search.enter("City Name", ["ctrl+a"], "Tr")
    hands.xdotool("key", "Return")
    screen.wait_for(f"{name} among the results", lambda: search.results() == [name])
    search.pick(name)
    search.click(hands.BUTTON, "Add")
    boxes.answer(program, "This location has already been added to location list.")
    hands.picture("places_added_already")
    assert search.is_usable()
    search.click(hands.BUTTON, "Cancel")
    search.wait_gone()
    assert place_windows.stored(program.settings) == (["Dearborn", "Jakarta", "Chicago", "Tromso"], "Dearborn")
    states = f"{stand_in.START}getStates.pl?prod_string=P-77&dist_string=dbeacon"
    info = f"{stand_in.START}getCityInfo.pl?prod_string=P-77&aid=NO-9008&dist_string=dbeacon"
    service.check_asked([states, count("Tx"), count("Tr"), count("Tr"), cities("Tr"), info,
                         states, count("Tr"), cities("Tr"), info])


def choosing(program, places):
    main = main_window.Main(program)
    before = main.times()
    places.pick("Chicago, Illinois")
    places.click(hands.BUTTON, "Set Current")
    places.wait_gone()
    main.wait("the new place", lambda m: m.has("Chicago, Illinois") and m.has("Time Zone: -6"))
    slots = main_window.check_times(main, datetime.date(2026, 3, 20))
    main.wait("the countdown of the new place", lambda m: m.countdown() == main_window.clock(slots[2] - 570))
    assert main.times() != before
    screen.wait_for("the main window to be usable", hands.Window(program, main_window.TITLE).is_usable)
    hands.picture("places_chosen")
    print("  times", main.times(), "before", before)
    assert place_windows.stored(program.settings)[1] == "Chicago"


def deleting(program):
    places = place_windows.open_list(program)
    assert places.selected() == ["Chicago, Illinois"], places.selected()
    question = "Are you sure you want to remove: Chicago, Illinois"
    places.click(hands.BUTTON, "Delete")
    boxes.answer(program, question, "No", ("Yes",))
    assert len(places.lines()) == 4
    places.click(hands.BUTTON, "Delete")
    boxes.answer(program, question, "Yes", ("No",))
    screen.wait_for("Chicago to be gone", lambda: len(places.lines()) == 3)
    # The first place that is left becomes the current one; the main window still shows the one that was deleted.
    assert place_windows.stored(program.settings) == (["Dearborn", "Jakarta", "Tromso"], "Dearborn")
    assert places.selected() == ["Dearborn, Michigan"], places.selected()
    for name in ("Troms\u00f8, Norway", "Jakarta, Indonesia"):
        places.pick(name)
        places.click(hands.BUTTON, "Delete")
        boxes.answer(program, f"Are you sure you want to remove: {name}", "Yes", ("No",))
        screen.wait_for(f"{name} to be gone", lambda: name not in places.lines())
    places.pick("Dearborn, Michigan")
    places.click(hands.BUTTON, "Delete")
    boxes.answer(program, "Are you sure you want to remove: Dearborn, Michigan", "Yes", ("No",))
    boxes.answer(program, "Can not remove last location from list.")
    hands.picture("places_one_left")
    assert place_windows.stored(program.settings) == (["Dearborn"], "Dearborn")
    places.close()
    places.wait_gone()
    main = main_window.Main(program)
    assert main.has("Chicago, Illinois"), program.texts(main_window.TITLE)
    screen.wait_for("the main window to be usable", hands.Window(program, main_window.TITLE).is_usable)


def no_network(folder):
    """The search doesn't open; the list is the active window again."""
    with hands.Program(folder, settings_of("Jakarta", JAKARTA), INSTANT) as program:
        places = place_windows.open_list(program)
        places.click(hands.LINK, "Get New Location")
        boxes.answer(program,
                     "You must be connected to the Internet to add locations.  Please check your connection.")
        screen.wait_for("the list to be usable", places.is_usable)
        assert not place_windows.Window(program, place_windows.SEARCH).is_open()
        assert not place_windows.is_waiting(program)


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop():
        print("no network", flush=True)
        no_network(folder)
        with stand_in.Service() as service, hands.Program(folder, settings_of("Dearborn", DEARBORN, JAKARTA), INSTANT,
                                                       environment=service.environment()) as program:
            places = place_windows.open_list(program)
            service.forget()
            for name, step in (("by zip code", lambda: by_zip_code(program, service, places)),
                               ("by country", lambda: by_country(program, service, places)),
                               ("choosing", lambda: choosing(program, places)), ("deleting", lambda: deleting(program))):
                print(name, flush=True)
                step()
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
