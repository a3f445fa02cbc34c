#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""start_journey.py FOLDER: the program started at chosen instants, under other regional settings and with files that are
broken, read as a screen reader reads it."""
import datetime
import os
import re
import resource
import subprocess
import sys
import tempfile

import hands
import main_window
import place_windows
import screen

FATAL = "An error has occured, The application will be terminated."
CHICAGO_BEYOND_THE_POLE = ('latitude_final="41.85"', 'latitude_final="400"')
JAKARTA = ('<Jakarta atlas_id="ID-1" city="Jakarta" state="Indonesia" longitude="" longitude_final="106.85" latitude=""'
           ' latitude_final="-6.21" time_zone2="7"/>')
# Root ignores file permissions. Another user has no access to the display and message bus of this journey.
BOUND_BY_PERMISSIONS = ("setpriv", "--bounding-set=-dac_override,-dac_read_search") if os.geteuid() == 0 else ()


def day(folder):
    with hands.Program(folder, main_window.SETTINGS, "2026-03-20 09:30:10") as program:
        main = main_window.Main(program)
        slots = main_window.check_times(main, datetime.date(2026, 3, 20))
        assert main.has("Date: 20 March, 2026") and main.has("1 Shawwal, 1447"), program.texts(main_window.TITLE)
        assert main.has("Chicago, Illinois") and main.has("Time Zone: -6") and main.has("Asr Method: shafi")
        main.wait("the countdown to Duhr", lambda m: m.countdown() == main_window.clock(slots[2] - 570))
        hands.picture("start_day")
        print("  times", main.times(), "countdown", main.countdown())
        return slots


def isha(folder, slot):
    with hands.Program(folder, main_window.SETTINGS, f"2026-03-20 {main_window.clock(slot - 1)}:50") as program:
        main = main_window.Main(program)
        main.wait("the negative countdown", lambda m: m.countdown() == "-" + clock_of_negative(slot))
    with hands.Program(folder, main_window.SETTINGS, f"2026-03-20 {main_window.clock(slot)}:50") as program:
        main_window.Main(program).wait("Done", lambda m: m.countdown() == "Done")
        hands.picture("start_after_isha")


def clock_of_negative(slot):
    hours = -(-slot // 60)
    return f"{hours}:{hours * 60 - slot:02d}"


def turn_of_the_day(folder):
    with hands.Program(folder, main_window.SETTINGS, "2026-03-20 23:59:50") as program:
        main = main_window.Main(program)
        main.wait("Done before midnight", lambda m: m.countdown() == "Done")
        assert main.has("Date: 20 March, 2026")
        main.wait("the new date", lambda m: m.has("Date: 21 March, 2026"))
        main.wait("the new Hijri date", lambda m: m.has("2 Shawwal, 1447"))
        slots = main_window.check_times(main, datetime.date(2026, 3, 21))
        main.wait("the countdown to Fajr", lambda m: m.countdown() == main_window.clock(slots[0]))


def same_times_on_a_comma_system(folder, slots):
    for locale in ("de_DE.UTF-8", "ar_EG.UTF-8", "en_US.UTF-8"):
        with hands.Program(folder, main_window.SETTINGS, "2026-03-20 09:30:10", environment={"LC_ALL": locale}) as program:
            assert [main_window.minutes(text) for text in main_window.Main(program).times()] == slots, locale


def end_by(program, title):
    """The fatal box with its text and its one button, and the following end with a failure code."""
    screen.wait_for(title, lambda: FATAL in program.texts(title))
    assert not program.window(main_window.TITLE) or title == "Error - 6"
    names = [name.replace("&", "") for name in program.texts(title)]
    assert names.count("OK") == 1 and "Cancel" not in names, names
    hands.picture("start_" + title.lower().replace(" - ", "_"))
    program.press(title, "OK")
    code = program.process.wait(timeout=screen.PATIENCE)
    assert code > 0, f"ended with {code}"


def broken_files(folder):
    def unreadable(program):
        os.chmod(program.settings, 0)

    rows = {"missing": (None, None), "empty": (b"", None), "truncated": (main_window.SETTINGS[:700], None),
            "not XML": ("[settings]\n", None), "a folder": (None, lambda p: os.mkdir(p.settings)),
            "unreadable": (main_window.SETTINGS, unreadable)}
    for name, (settings, prepare) in rows.items():
        with hands.Program(folder, settings, prepare=prepare, launcher=BOUND_BY_PERMISSIONS) as program:
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
    """The permissions of the unreadable file are the only reason why the program cannot read it."""
    with hands.Program(folder, main_window.SETTINGS, prepare=lambda p: os.chmod(p.settings, 0o400),
                        launcher=BOUND_BY_PERMISSIONS) as program:
        assert main_window.Main(program).has("Chicago, Illinois")


def no_display(folder):
    """The toolkit reports it on the terminal and ends the program before it has read a file."""
    resource.setrlimit(resource.RLIMIT_CORE, (0, resource.getrlimit(resource.RLIMIT_CORE)[1]))
    with tempfile.TemporaryDirectory(prefix="duskbeacon-journey-") as place:
        program = hands.Program(folder, main_window.SETTINGS, folder=place)
        before = os.listdir(place)
        del program.environment["DISPLAY"]
        ended = subprocess.run([os.path.join(place, "DuskBeacon")], env=program.environment, cwd=place, stderr=subprocess.PIPE,
                               text=True, timeout=screen.PATIENCE)
        assert ended.returncode != 0 and "could not connect to display" in ended.stderr, ended
        assert sorted(os.listdir(place)) == sorted(before), os.listdir(place)
        assert hands.Settings(program).read() == main_window.SETTINGS.encode()
        print("  ended with", ended.returncode, ended.stderr.splitlines()[0])


def broken_values(folder):
    for before, after in (('angle1="-15"', 'angle1="400"'), ('longitude_final="-87.65"', 'longitude_final="400"'),
                          ('time_zone2="-6"', 'time_zone2="1000"'), CHICAGO_BEYOND_THE_POLE):
        with hands.Program(folder, main_window.SETTINGS.replace(before, after)) as program:
            end_by(program, "Error - 6")
    # Mended as the README says, without the number.
    mended = main_window.SETTINGS.replace(*CHICAGO_BEYOND_THE_POLE).replace("</locations>", JAKARTA + "</locations>")
    with hands.Program(folder, mended.replace('Current="Chicago"', 'Current="Jakarta"')) as program:
        assert main_window.Main(program).has("Jakarta, Indonesia")
    with hands.Program(folder, main_window.SETTINGS, module=False) as program:
        end_by(program, "Error - 6")
    for before, after in (('Current="Chicago"', 'Current=""'), ('useAdvWarn="false"', 'useAdvWarn="maybe"')):
        with hands.Program(folder, main_window.SETTINGS.replace(before, after)) as program:
            main = main_window.Main(program)
            for text in ("Time Zone:", "Asr Method:", "Calculation Method:", "Day Light Savings is:", "Advanced Warning:",
                         "Date:"):
                assert main.has(text), (after, text)
            texts = program.texts(main_window.TITLE)
            assert not any(re.search(r"\d:\d\d", text) for text in texts), texts
            # The list rewrites the labels when it closes, before any day has been computed.
            places = place_windows.open_list(program)
            places.close()
            places.wait_gone()
            main.wait("no Hijri date", lambda m: m.after("Hajri Date: ") == "0 , 0")


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop():
        print("day")
        slots = day(folder)
        for name, step in (("isha", lambda: isha(folder, slots[5])), ("turn of the day", lambda: turn_of_the_day(folder)),
                           ("comma systems", lambda: same_times_on_a_comma_system(folder, slots)),
                           ("broken files", lambda: broken_files(folder)),
                           ("file that may be read", lambda: file_that_may_be_read(folder)),
                           ("broken values", lambda: broken_values(folder)),
                           ("no display", lambda: no_display(folder))):
            print(name, flush=True)
            step()
    print("all as it should be")


if __name__ == "__main__":
    screen.under_own_session()
    main()
