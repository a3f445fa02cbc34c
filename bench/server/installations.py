# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Installations of the program and the requests that they send."""
import glob
import http.client
import os
import re
import urllib.parse

from servers import HOST, get

SCRIPTS = "/cgi-bin/dbeacon/"
# Three letters of a large city, in its country or state.
SEARCHES = [("SA", "mak"), ("ID", "jak"), ("PK", "kar"), ("IN", "mum"), ("BD", "dha"), ("NG", "lag"), ("EG", "cai"),
            ("TR", "ist"), ("IR", "teh"), ("DZ", "alg"), ("MA", "cas"), ("GB", "lon"), ("FR", "mar"), ("DE", "ber"),
            ("US-NY", "new"), ("US-TX", "hou"), ("CA-ON", "tor"), ("AU-NSW", "syd"), ("MY", "kua"), ("RU", "mos")]


def search(state, letters):
    return f"{SCRIPTS}getMatchingCities.pl?prod_string=p&state_id={state}&city_string={letters}&dist_string=dbeacon"


def city_info(place):
    return f"{SCRIPTS}getCityInfo.pl?prod_string=p&aid={place}&dist_string=dbeacon"


def get_ad(identifier, place):
    return f"{SCRIPTS}getAd.pl?dist_string=dbeacon&prod_string={identifier}&aid={place}&curr_v=1&curr_s=5"


def prayer_call(identifier, place, prayer, wants_text):
    return (f"{SCRIPTS}prayerCall.pl?prod_string={identifier}&aid={place}&pno={prayer}&alert_type=Normal&ma={int(wants_text)}"
            f"&dist_string=dbeacon&time=5:07&aid={place}")


def attributes(name, xml):
    return re.findall(f' {name}="([^"]*)"', xml.decode())


def states(service):
    return attributes("state_id", get(service.port, f"{SCRIPTS}getStates.pl?prod_string=p&dist_string=dbeacon"))


def identifiers(service, count):
    connection = http.client.HTTPConnection(HOST, service.port)
    given = []
    for _ in range(count):
        connection.request("GET", f"{SCRIPTS}requestProdID.pl?dist=dbeacon")
        given += attributes("prod_string", connection.getresponse().read())
    connection.close()
    assert len(given) == count
    return given


def places(service):
    """A few identifiers of places for each search."""
    found = [attributes("atlas_id", get(service.port, search(*words)))[:5] for words in SEARCHES]
    assert all(found), found
    return sum(found, [])


def register_phones(service, folder, installations):
    """Signs up an address for each installation, each from another network, and confirms it with the code in its message."""
    for number, _ in enumerate(installations):
        form = urllib.parse.urlencode({"address": f"someone@mosque{number}.example"})
        get(service.port, "/signup", {"Content-Type": "application/x-www-form-urlencoded", **network(number)}, form)
    messages = glob.glob(os.path.join(folder, "state", "spool", "*.txt"))
    assert len(messages) == len(installations), len(messages)
    for number, (identifier, path) in enumerate(zip(installations, messages)):
        with open(path, encoding="utf-8") as file:
            code = re.search("personal code: (.+)", file.read())[1].replace(" ", "%20")
        reply = get(service.port, f"{SCRIPTS}ma/confirmSignup.pl?prod_string={identifier}&vCode={code}&dist_string=dbeacon",
                    network(number))
        assert attributes("result", reply) == ["1"], reply


def texts_in_spool(folder):
    """The prayer texts that have left the outbox, without repetitions."""
    texts = set()
    for path in glob.glob(os.path.join(folder, "state", "spool", "*.txt")):
        with open(path, encoding="utf-8") as file:
            message = file.read()
        if message.endswith(" 5:07\n"):
            texts.add(message)
    return texts


def network(number):
    return {"X-Forwarded-For": f"10.0.{number // 250}.{number % 250}"}
