#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""spine_journey.py FOLDER: the real program at chosen instants, read as a screen reader reads it."""
import datetime
import math
import os
import re
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import screen  # noqa: E402

MAIN = "Dusk Beacon v1.0.5"
FATAL = "An error has occured, The application will be terminated."
PRAYERS = ["Fajr:", "Shuruq:", "Duhr:", "Asr:", "Maghrib:", "Isha:"]
LATITUDE, LONGITUDE, ZONE = 41.85, -87.65, -6

# Root reads what it may not. Another user would get neither the display nor the message bus of this journey.
BOUND_BY_PERMISSIONS = ("setpriv", "--bounding-set=-dac_override,-dac_read_search") if os.geteuid() == 0 else ()

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


def expected_times(date, angles=(-15, -15), shadow_length=1, zone=ZONE):
    """Six times to a minute, by the low-precision sun of the Astronomical Almanac, page C5; not by the program's code."""
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
        latitude = math.radians(LATITUDE)
        for _ in range(5):
            declination, equation = sun(hours)
            noon = 12 + zone - LONGITUDE / 15 - equation / 60
            height = altitude(declination)
            angle = math.degrees(math.acos((math.sin(height) - math.sin(latitude) * math.sin(declination)) /
                                           (math.cos(latitude) * math.cos(declination))))
            hours = noon + side * angle / 15
        return hours * 60

    def fixed(degrees):
        return lambda declination: math.radians(degrees)

    def shadow(declination):
        return math.atan(1 / (shadow_length + math.tan(abs(math.radians(LATITUDE) - declination))))

    noon = (12 + zone - LONGITUDE / 15 - sun(12)[1] / 60) * 60
    return [at_altitude(fixed(angles[0]), -1, 6), at_altitude(fixed(-0.833), -1, 6), noon, at_altitude(shadow, 1, 15),
            at_altitude(fixed(-0.833), 1, 18), at_altitude(fixed(angles[1]), 1, 19)]


def minutes(text):
    hours, rest = text.split(":")
    return int(hours) * 60 + int(rest)


def clock(value):
    return f"{value // 60}:{value % 60:02d}"


class Main:
    """The main window's labels by the caption before them."""

    def __init__(self, program):
        self._program = program
        screen.wait_for("the main window", lambda: "Isha:" in program.texts(MAIN))

    def after(self, caption):
        texts = self._program.texts(MAIN)
        return texts[texts.index(caption) + 1] if caption in texts else ""

    def times(self):
        return [self.after(prayer) for prayer in PRAYERS]

    def countdown(self):
        return self.after("Time till next prayer:")

    def has(self, text):
        return text in self._program.texts(MAIN)

    def wait(self, what, condition):
        return screen.wait_for(what, lambda: condition(self))


def check_times(main, date):
    shown = main.times()
    for name, text, expected in zip(PRAYERS, shown, expected_times(date)):
        assert re.fullmatch(r"\d{1,2}:\d\d", text), (name, text)
        assert abs(minutes(text) - expected) <= 1.5, f"{name} {text}, expected about {clock(round(expected))}"
    return [minutes(text) for text in shown]


def day(folder):
    with screen.Program(folder, SETTINGS, "2026-03-20 09:30:10") as program:
        main = Main(program)
        slots = check_times(main, datetime.date(2026, 3, 20))
        assert main.has("Date: 20 March, 2026") and main.has("1 Shawwal, 1447"), program.texts(MAIN)
        assert main.has("Chicago, Illinois") and main.has("Time Zone: -6") and main.has("Asr Method: shafi")
        main.wait("the countdown to Duhr", lambda m: m.countdown() == clock(slots[2] - 570))
        print("  times", main.times(), "countdown", main.countdown())
        return slots


def isha(folder, slot):
    with screen.Program(folder, SETTINGS, f"2026-03-20 {clock(slot - 1)}:50") as program:
        main = Main(program)
        main.wait("the negative countdown", lambda m: m.countdown() == "-" + clock_of_negative(slot))
    with screen.Program(folder, SETTINGS, f"2026-03-20 {clock(slot)}:50") as program:
        Main(program).wait("Done", lambda m: m.countdown() == "Done")


def clock_of_negative(slot):
    hours = -(-slot // 60)
    return f"{hours}:{hours * 60 - slot:02d}"


def turn_of_the_day(folder):
    with screen.Program(folder, SETTINGS, "2026-03-20 23:59:50") as program:
        main = Main(program)
        main.wait("Done before midnight", lambda m: m.countdown() == "Done")
        assert main.has("Date: 20 March, 2026")
        main.wait("the new date", lambda m: m.has("Date: 21 March, 2026"))
        main.wait("the new Hijri date", lambda m: m.has("2 Shawwal, 1447"))
        slots = check_times(main, datetime.date(2026, 3, 21))
        main.wait("the countdown to Fajr", lambda m: m.countdown() == clock(slots[0]))


def same_times_on_a_comma_system(folder, slots):
    for locale in ("de_DE.UTF-8", "ar_EG.UTF-8", "en_US.UTF-8"):
        with screen.Program(folder, SETTINGS, "2026-03-20 09:30:10", environment={"LC_ALL": locale}) as program:
            assert [minutes(text) for text in Main(program).times()] == slots, locale


def end_by(program, title):
    """The fatal box in its words, its one button, and the end that follows with a failure code."""
    screen.wait_for(title, lambda: FATAL in program.texts(title))
    assert not program.window(MAIN) or title == "Error - 6"
    names = [name.replace("&", "") for name in program.texts(title)]
    assert names.count("OK") == 1 and "Cancel" not in names, names
    program.press(title, "OK")
    code = program.process.wait(timeout=screen.PATIENCE)
    assert code > 0, f"ended with {code}"


def broken_files(folder):
    def unreadable(program):
        os.chmod(program.settings, 0)

    rows = {"missing": (None, None), "empty": (b"", None), "truncated": (SETTINGS[:700], None),
            "not XML": ("[settings]\n", None), "a folder": (None, lambda p: os.mkdir(p.settings)),
            "unreadable": (SETTINGS, unreadable)}
    for name, (settings, prepare) in rows.items():
        with screen.Program(folder, settings, prepare=prepare, launcher=BOUND_BY_PERMISSIONS) as program:
            before = state(program)
            end_by(program, "Error - 5")
            assert state(program) == before, f"{name}: something was made or changed"
            print("  Error - 5:", name)


def state(program):
    found = {}
    for name in sorted(os.listdir(program.folder)):
        path = os.path.join(program.folder, name)
        # The toolkit keeps caches of its own under the home folder.
        if name.startswith("."):
            continue
        found[name] = os.path.getsize(path) if os.path.isfile(path) else None
    return found


def file_that_may_be_read(folder):
    """What keeps the program from the unreadable file is that file's permissions and nothing else."""
    with screen.Program(folder, SETTINGS, prepare=lambda p: os.chmod(p.settings, 0o400),
                        launcher=BOUND_BY_PERMISSIONS) as program:
        assert Main(program).has("Chicago, Illinois")


def broken_values(folder):
    with screen.Program(folder, SETTINGS.replace('angle1="-15"', 'angle1="400"')) as program:
        end_by(program, "Error - 6")
    with screen.Program(folder, SETTINGS, module=False) as program:
        end_by(program, "Error - 6")
    for before, after in (('Current="Chicago"', 'Current=""'), ('useAdvWarn="false"', 'useAdvWarn="maybe"')):
        with screen.Program(folder, SETTINGS.replace(before, after)) as program:
            main = Main(program)
            for text in ("Time Zone:", "Asr Method:", "Calculation Method:", "Day Light Savings is:", "Advanced Warning:",
                         "Date:"):
                assert main.has(text), (after, text)
            texts = program.texts(MAIN)
            assert not any(re.search(r"\d:\d\d", text) for text in texts), texts


def main():
    folder = os.path.abspath(sys.argv[1])
    with screen.Display():
        print("day")
        slots = day(folder)
        for name, step in (("isha", lambda: isha(folder, slots[5])), ("turn of the day", lambda: turn_of_the_day(folder)),
                           ("comma systems", lambda: same_times_on_a_comma_system(folder, slots)),
                           ("broken files", lambda: broken_files(folder)),
                           ("file that may be read", lambda: file_that_may_be_read(folder)),
                           ("broken values", lambda: broken_values(folder))):
            print(name, flush=True)
            step()
    print("all as it should be")


if __name__ == "__main__":
    screen.under_own_session()
    main()
