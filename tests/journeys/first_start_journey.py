#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The first start of the program as it is shipped, without and with a network, and the second start; and that of a program
whose settings name another service than the build."""
import os
import sys
import xml.etree.ElementTree

import hands
import main_window
import own_network
import place_windows
import screen
import stand_in

SHIPPED = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "data", "settings.xml")
START = "/cgi-bin/dbeacon/"


def expected_requests(settings, identifier):
    root = xml.etree.ElementTree.fromstring(settings)
    place = root.find("locations").find(root.find("locations").get("Current"))
    aid = place.get("atlas_id")
    return [
        f"{START}startup.pl?prod_string={identifier}&city={place.get('city')}&country={place.get('state')}"
        f"&dist_string=dbeacon&aid={aid}",
        f"{START}getAd.pl?dist_string=dbeacon&prod_string={identifier}&aid={aid}&curr_v=1&curr_s=5",
        f"{START}version.pl?dist_string=dbeacon&prod_string={identifier}&curr_v=1&curr_s=5",
    ]


def as_before_but(settings, now, **changed):
    """The file is unchanged except for the named attributes of the program's own element."""
    before = xml.etree.ElementTree.fromstring(settings)
    for name, value in changed.items():
        before.find("app").set(name, value)
    canonical = [xml.etree.ElementTree.canonicalize(xml.etree.ElementTree.tostring(tree), strip_text=True)
                 for tree in (before, xml.etree.ElementTree.fromstring(now))]
    assert canonical[0] == canonical[1], now.decode()


def opens_the_list(program):
    """The list in front of a main window that is disabled until the list closes."""
    places, main = place_windows.Window(program, place_windows.LIST).wait(), hands.Window(program, main_window.TITLE).wait()
    assert not main.is_usable()
    screen.wait_for("the list to be in front", lambda: hands.title_in_front() == place_windows.LIST)
    places.close()
    places.wait_gone()
    screen.wait_for("the main window to be usable", main.is_usable)


def opens_no_list(program):
    # The list would have come before the main window.
    main = hands.Window(program, main_window.TITLE).wait()
    assert main.is_usable() and not program.window(place_windows.LIST)


def without_network(folder, shipped):
    with hands.Program(folder, shipped) as program:
        opens_the_list(program)
        hands.picture("first_start_without_network")
        assert hands.Settings(program).read() == shipped
        assert hands.Settings(program).attributes("app") == {"FirstRun": "true", "pid": "", "dist": "dbeacon"}


def service_without_network(folder, shipped):
    """At the first start the identifier is requested whether the probe fails or not, and nothing else is requested."""
    with stand_in.Service() as service:
        service.fault("refuse", "probe")
        with hands.Program(folder, shipped, environment=service.environment()) as program:
            opens_the_list(program)
            service.check_asked([f"{START}requestProdID.pl?dist=dbeacon"])
            as_before_but(shipped, hands.Settings(program).read(), pid="P-1001", FirstRun="false")


def with_network(folder, shipped):
    with stand_in.Service() as service:
        with hands.Program(folder, shipped, environment=service.environment()) as program:
            place_windows.Window(program, place_windows.LIST).wait()
            hands.picture("first_start_with_network")
            service.check_asked([f"{START}requestProdID.pl?dist=dbeacon", *expected_requests(shipped, "P-1001")])
            # Before the first request, the advertisement and the question for a new version.
            assert service.probes() == 3, service.probes()
            opens_the_list(program)
            settings = hands.Settings(program).read()
            as_before_but(shipped, settings, pid="P-1001", FirstRun="false")
        service.forget()
        with hands.Program(folder, settings, environment=service.environment()) as program:
            opens_no_list(program)
            hands.picture("second_start")
            service.check_asked(expected_requests(shipped, "P-1001"))
            assert hands.Settings(program).read() == settings
        return settings


def at_the_service_of_the_settings(folder, shipped):
    """The service and the probe are at another port than the build's, where no request arrives. No proxy stands in for the
    network: the program finds it by its settings."""
    with stand_in.Service() as build, stand_in.Service(port=0, prod_string="P-3003") as own:
        address = f"http://127.0.0.1:{own.port}/"
        named = shipped.replace(b'dist="dbeacon"', f'dist="dbeacon" service="{address}" probe="{address}probe"'.encode())
        assert named != shipped
        with hands.Program(folder, named) as program:
            opens_the_list(program)
            own.check_asked([f"{START}requestProdID.pl?dist=dbeacon", *expected_requests(named, "P-3003")])
            assert own.probes("/probe") == 3, own.probes("/probe")
            as_before_but(named, hands.Settings(program).read(), pid="P-3003", FirstRun="false")
            hands.picture("first_start_at_the_service_of_the_settings")
        build.check_asked([])


def without_identifier(folder, known):
    """Started before but without an identifier: it is requested only if there is a network."""
    lost = known.replace(b'pid="P-1001"', b'pid=""')
    assert lost != known
    with stand_in.Service(prod_string="P-2002") as service:
        with hands.Program(folder, lost, environment=service.environment()) as program:
            opens_the_list(program)
            service.check_asked([f"{START}requestProdID.pl?dist=dbeacon", *expected_requests(lost, "P-2002")])
            as_before_but(lost, hands.Settings(program).read(), pid="P-2002")
        service.forget()
        with hands.Program(folder, lost) as program:
            opens_no_list(program)
            service.check_asked([])
            assert hands.Settings(program).read() == lost


def main():
    folder = os.path.abspath(sys.argv[1])
    with open(SHIPPED, "rb") as file:
        shipped = file.read()
    with hands.Desktop():
        for step in (without_network, service_without_network, at_the_service_of_the_settings):
            print(step.__name__, flush=True)
            step(folder, shipped)
        print("with network", flush=True)
        known = with_network(folder, shipped)
        print("without identifier", flush=True)
        without_identifier(folder, known)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
