# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The main window as the journeys know it: the settings they start it with, its labels, and the times that it has to show."""
import datetime
import math
import os
import re

import screen

TITLE = "Dusk Beacon v1.0.5"
PRAYERS = ["Fajr:", "Shuruq:", "Duhr:", "Asr:", "Maghrib:", "Isha:"]
PLACE, ZONE = (41.85, -87.65), -6  # degrees, north and east positive

SETTINGS = """<?xml version="1.0"?>
<root>
  <app FirstRun="false" pid="P-77" dist="dbeacon"><DefaultAd Ad="PGI+RHVzayBCZWFjb248L2I+"/><version remind="366"/></app>
  <locations Current="Chicago">
    <Chicago atlas_id="US-1" city="Chicago" state="Illinois" longitude="87.65 W" longitude_final="-87.65" latitude="41.85 N"
      latitude_final="41.85" time_zone2="-6"/>
  </locations>
  <alerts angle1="-15" angle2="-15" method="ISNA" useAdvWarn="false" advWarn="10" asrMethode="shafi" useDLS="false"
    hourmode="24" mobileEnabled="false" mobileDID="" mobilePC="" mobileConfirm="0">
    <fajr enabled="false" popup="false" mobil="false" play="false" audioFile=""/>
    <shuruq enabled="false" popup="false" mobil="false" play="false" audioFile=""/>
    <duhr enabled="false" popup="false" mobil="false" play="false" audioFile=""/>
    <asr enabled="false" popup="false" mobil="false" play="false" audioFile=""/>
    <maghrib enabled="false" popup="false" mobil="false" play="false" audioFile=""/>
    <isha enabled="false" popup="false" mobil="false" play="false" audioFile=""/>
  </alerts>
</root>
"""
# Stored in the file as Base64.
DEFAULT_AD = "<b>Dusk Beacon</b>"
ELEMENTS = [prayer.rstrip(":").lower() for prayer in PRAYERS]


def with_alerts(popup=(), silent=(), warning=None, pid="P-77"):
    """The settings with alerts for the prayers of these elements, and that many minutes of warning if any."""
    settings = SETTINGS.replace("P-77", pid)
    for prayer in (*popup, *silent):
        settings = settings.replace(f'<{prayer} enabled="false" popup="false"',
                                    f'<{prayer} enabled="true" popup="{str(prayer in popup).lower()}"')
    if warning is not None:
        settings = settings.replace('useAdvWarn="false" advWarn="10"', f'useAdvWarn="true" advWarn="{warning}"')
    return settings


def expected_times(date, angles=(-15, -15), shadow_length=1, zone=ZONE, place=PLACE):
    """Six times in minutes to some seconds, by the low-precision sun of the Astronomical Almanac, page C5; not by the program's
    code."""
    latitude, east = math.radians(place[0]), place[1]

    def sun(hours):
        days = (datetime.datetime(date.year, date.month, date.day) - datetime.datetime(2000, 1, 1, 12)).total_seconds() / 86400
        n = days + (hours - zone) / 24
        mean = (280.460 + 0.9856474 * n) % 360
        anomaly = math.radians((357.528 + 0.9856003 * n) % 360)
        longitude = math.radians(mean + 1.915 * math.sin(anomaly) + 0.020 * math.sin(2 * anomaly))
        obliquity = math.radians(23.439 - 0.0000004 * n)
        ascension = math.degrees(math.atan2(math.cos(obliquity) * math.sin(longitude), math.cos(longitude)))
        return math.asin(math.sin(obliquity) * math.sin(longitude)), ((mean - ascension + 180) % 360 - 180) * 4

    def at_altitude(altitude, side, hours):
        for _ in range(5):
            declination, equation = sun(hours)
            noon = 12 + zone - east / 15 - equation / 60
            height = altitude(declination)
            angle = math.degrees(math.acos((math.sin(height) - math.sin(latitude) * math.sin(declination)) /
                                           (math.cos(latitude) * math.cos(declination))))
            hours = noon + side * angle / 15
        return hours * 60

    def fixed(degrees):
        return lambda declination: math.radians(degrees)

    def shadow(declination):
        return math.atan(1 / (shadow_length + math.tan(abs(latitude - declination))))

    noon = (12 + zone - east / 15 - sun(12)[1] / 60) * 60
    return [at_altitude(fixed(angles[0]), -1, 6), at_altitude(fixed(-0.833), -1, 6), noon, at_altitude(shadow, 1, 15),
            at_altitude(fixed(-0.833), 1, 18), at_altitude(fixed(angles[1]), 1, 19)]


def minutes(text):
    """Minutes of the day from a shown time; the hour from 12:00 on reads AM in the 12-hour form."""
    hours, rest, half = re.fullmatch(r"(\d{1,2}):(\d\d)( [AP]M)?", text).groups()
    return int(hours) * 60 + int(rest) + (720 if half == " PM" else 0)


def clock(value):
    return f"{value // 60}:{value % 60:02d}"


class Main:
    """The main window's labels by the caption before them."""

    def __init__(self, program):
        self._program = program
        screen.wait_for("the main window", lambda: "Isha:" in program.texts(TITLE))

    def after(self, caption):
        texts = self._program.texts(TITLE)
        return texts[texts.index(caption) + 1] if caption in texts else ""

    def times(self):
        # The name of a time begins with that of its prayer.
        return [self.after(prayer).removeprefix(prayer + " ") for prayer in PRAYERS]

    def countdown(self):
        return self.after("Time till next prayer:")

    def has(self, text):
        return text in self._program.texts(TITLE)

    def wait(self, what, condition):
        return screen.wait_for(what, lambda: condition(self))


def advertisement(program):
    """The page of the ad strip as it was written last."""
    with open(os.path.join(program.folder, "temp.html"), "rb") as file:
        return file.read().decode("cp1252")


def check_times(main, date, angles=(-15, -15), shadow_length=1, zone=ZONE, place=PLACE, tolerance=1.5):
    """Those of the day and of these choices are shown, within so many minutes; answers them in minutes of the day."""
    # The scheduler uses whole degrees, halves rounded to even.
    due = expected_times(date, [round(angle) for angle in angles], shadow_length, zone, place)
    shown = main.times()
    for name, text, expected in zip(PRAYERS, shown, due):
        assert abs(minutes(text) - expected) <= tolerance, f"{name} {text}, expected about {clock(round(expected))}"
    return [minutes(text) for text in shown]
