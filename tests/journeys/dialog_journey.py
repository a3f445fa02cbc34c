#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""dialog_journey.py FOLDER: the settings dialog by mouse and keys. The main window shows nothing of a choice before the
dialog closes and all of it afterwards, and each alert of the day does what was chosen for it."""
import datetime
import glob
import os
import re
import sys

import hands
import main_window
import own_network
import screen
import sound
import stand_in
import wall_clock
from hands import BAR, BOX, BUTTON, LINK, OPTION, TAB

DIALOG, ALERT = "Alerts", "Dusk Beacon Alert"
DATE = datetime.date(2026, 3, 20)
INSTANT = "2026-03-20 09:30:10"
UPPER, LOWER = (0.5, 0.25), (0.5, 0.75)  # the two arrows of a spin bar
METHODS = [
    ("University Of Islamic Sciences", ("-18", "-18")),
    ("Muslim World League", ("-18", "-17")),
    ("ISNA", ("-15", "-15")),
    ("Egyptian General Authority of Survey", ("-19.5", "-17.5")),
]
# Of those that are to play, in hertz.
TONES = {"Fajr": 440, "Asr": 660}
PAGES = ["General", "Mobile Alert", "Fajr", "Shuruq", "Duhr", "Asr", "Maghrib", "Isha"]


class Opened:
    """The dialog, opened by a link of the main window. The main window does not change until the dialog closes."""

    def __init__(self, program, link):
        self._program = program
        self.main = hands.Window(program, main_window.TITLE)
        self.main.click(LINK, link)
        self.dialog = hands.Window(program, DIALOG).wait()
        self.settings = hands.Settings(program)
        self._before = self._labels()

    def _labels(self):
        # The countdown goes with the clock.
        return [text for text in self._program.texts(main_window.TITLE) if not re.fullmatch(r"-?\d+:\d\d( [AP]M)?", text)
                ] + main_window.Main(self._program).times()

    def close(self, by_button=True):
        now = self._labels()
        assert now == self._before, f"the main window changed before the dialog closed: {now}, before {self._before}"
        if by_button:
            self.dialog.click(BUTTON, "Close")
        else:
            self.dialog.close()
        self.dialog.wait_gone()


def check_times(main, angles, shadow_length=1, zone=main_window.ZONE):
    main_window.check_times(main, DATE, angles, shadow_length, zone)
    print("  times", *main.times(), flush=True)
    return main.times()


def methods(program):
    main = main_window.Main(program)
    for name, (fajr, isha) in METHODS:
        opened = Opened(program, "Alerts")
        opened.dialog.choose(name + ":")
        opened.settings.wait("angle2", isha)
        assert (opened.settings.alerts("method"), opened.settings.alerts("angle1")) == (name, fajr)
        opened.close()
        main.wait(name, lambda m: m.has("Calculation Method: " + name))
        check_times(main, (float(fajr), float(isha)))


def angles_of_the_user(program):
    """From the preset before: by the bar, which rests on whole numbers, and by the keys, which keep the fraction."""
    opened = Opened(program, "Alerts")
    dialog = opened.dialog
    fajr, isha = "Fajr angle in degrees", "Isha angle in degrees"
    dialog.choose("Set Twighlight Angles:")
    opened.settings.wait("method", "User Defined")
    assert (dialog.text(fajr), dialog.text(isha)) == ("-19.5", "-17.5")
    dialog.click(BAR, "Fajr angle in whole degrees", UPPER)
    opened.settings.wait("angle1", "-19")
    for value in ("-20", "-21"):
        dialog.click(BAR, "Fajr angle in whole degrees", LOWER)
        opened.settings.wait("angle1", value)
    for value in ("-20", "-19", "-18", "-17", "-16"):
        dialog.click(BAR, "Fajr angle in whole degrees", UPPER)
        opened.settings.wait("angle1", value)
    # The box goes on showing the stored angle while the keys aren't a number yet.
    dialog.enter(fajr, ["ctrl+a"], "-")
    hands.picture("dialog_refused_minus", dialog)
    assert dialog.text(fajr) == "-16"
    hands.xdotool("type", "16.5")
    opened.settings.wait("angle1", "-16.5")
    assert dialog.text(fajr) == "-16.5"
    dialog.enter(isha, ["End", "BackSpace", "2"], "")
    opened.settings.wait("angle2", "-17.2")
    # A letter is not shown, and the next key removes it.
    hands.xdotool("key", "x")
    assert dialog.text(isha) == "-17.2"
    hands.xdotool("key", "BackSpace", "Home", "Right", "Delete", "Delete", "1", "4")
    opened.settings.wait("angle2", "-14.2")
    hands.picture("dialog_user_angles", dialog)
    opened.close()
    main = main_window.Main(program)
    main.wait("User Defined", lambda m: m.has("Calculation Method: User Defined"))
    check_times(main, (-16.5, -14.2))


def rest_of_the_general_page(program):
    opened = Opened(program, "Alerts")
    dialog, settings = opened.dialog, opened.settings
    dialog.choose("Hanafi")
    settings.wait("asrMethode", "hanafi")
    dialog.choose("12 Hour")
    settings.wait("hourmode", "12")
    dialog.tick("Use Day Light Savings")
    settings.wait("useDLS", "true")
    assert not dialog.is_live(BAR, "Set the minutes of advanced alert")
    dialog.tick("Give Advanced Alert")
    settings.wait("useAdvWarn", "true")
    for value in ("29", "28", "27"):
        dialog.click(BAR, "Set the minutes of advanced alert", LOWER)
        settings.wait("advWarn", value)
    opened.close()
    main = main_window.Main(program)
    main.wait("hanafi", lambda m: m.has("Asr Method: hanafi"))
    texts = program.texts(main_window.TITLE)
    for text in ("Day Light Savings is: On", "Advanced Warning: On, 27 Minutes", "Time Zone: -6"):
        assert text in texts, (text, texts)
    shown = check_times(main, (-16.5, -14.2), 2, main_window.ZONE + 1)
    assert all(re.fullmatch(r"\d{1,2}:\d\d [AP]M", text) for text in shown), shown


def chosen(number):
    """Whether that prayer is to pop up and whether it is to play."""
    return number % 2 == 0, number % 3 == 0


def sound_of(prayer):
    return f"{prayer.lower()}.wav"


def prayers(program):
    """A choice of its own for each prayer, opened by the prayer's link and closed by the window's close box."""
    for number, prayer in enumerate(PAGES[2:]):
        popup, play = chosen(number)
        opened = Opened(program, prayer + ":")
        dialog = opened.dialog
        assert not dialog.is_live(BOX, f"Audio alert, {prayer}")
        dialog.tick(f"Alert on, {prayer}")
        dialog.tick(f"Silent alert (Pop up message), {prayer}", popup)
        dialog.tick(f"Audio alert, {prayer}", play)
        assert not dialog.is_live(BOX, f"Mobile Alert, {prayer}"), prayer
        path = sound_of(prayer) if play else ""
        if path:
            dialog.enter(f"File to play at prayer time, {prayer}", ["End"], path)
        opened.settings.wait_prayer(prayer.lower(), enabled="true", popup=str(popup).lower(), play=str(play).lower(),
                                    mobil="false", audioFile=path)
        opened.close(by_button=False)


def pages(program):
    """Each page in its state after all those choices, kept as pictures; looking at them writes nothing."""
    opened = Opened(program, "Alerts")
    before = opened.settings.read()
    for page in PAGES:
        opened.dialog.click(TAB, page)
        mark = {"General": "Clock Format", "Mobile Alert": "Register"}.get(page, f"Alert on, {page}")
        screen.wait_for(page, lambda: opened.dialog.has(mark))
        if page in PAGES[2:]:
            screen.wait_for(page, lambda: opened.dialog.is_on(BOX, f"Audio alert, {page}") == (PAGES.index(page) in (2, 5)))
        hands.picture("dialog_" + page.lower().replace(" ", "_"), opened.dialog)
    assert opened.settings.read() == before
    opened.dialog.click(TAB, "General")
    opened.dialog.control(OPTION, "Hanafi")
    opened.close()


def alerts(folder, settings, shown):
    """The day of those choices, with the clock put forward from one prayer to the next."""
    clock = wall_clock.FastClock()
    with stand_in.Service(ad="", version_name="") as service, sound.Server() as server:
        environment = {**server.environment(), "LD_PRELOAD": glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")[0]}
        with wall_clock.start(folder, settings, clock, 3600, environment, write_sounds) as program:
            clock.started(program.process)
            main_window.Main(program)
            for number, prayer in enumerate(PAGES[2:]):
                minute = main_window.minutes(shown[number])
                if prayer == "Shuruq":
                    # The warning depends only on whether the alert is on.
                    clock.run((minute - 27) * 60 - wall_clock.LEAD, 1)
                    popup(program, f"Advanced Alert Shuruq {shown[number]}", "alert_shuruq_27")
                clock.run(minute * 60 - wall_clock.LEAD, 1)
                at_prayer(program, service, server, number, shown)


def at_prayer(program, service, server, number, shown):
    """The chosen alert comes and nothing else."""
    prayer, minute = PAGES[2:][number], main_window.minutes(shown[number])
    sent = screen.wait_for(f"the request of {prayer}", lambda: service.requests("prayerCall.pl")[number:])
    kind = "Normal" if chosen(number)[1] else "Quite"
    expected = stand_in.prayer_call("P-77", number + 1, main_window.clock(minute), kind)
    assert sent == [expected], (sent, expected)
    if chosen(number)[0]:
        popup(program, f"Prayer Time: {prayer}: {shown[number]}", f"alert_{prayer.lower()}_0")
    assert not hands.is_titled(ALERT), prayer
    main = hands.Window(program, main_window.TITLE)
    if chosen(number)[1]:
        screen.wait_for(f"the sound of {prayer}", lambda: server.hears(TONES[prayer]))
        print("  sound", prayer, TONES[prayer], flush=True)
        main.click(LINK, "Stop Playing")
    elif prayer != PAGES[-1]:
        # In the prayer's own minute the countdown runs to the next. Here it goes through the clock's form.
        left = main_window.minutes(shown[number + 1]) - minute
        main_window.Main(program).wait("the minute of the prayer", lambda m: m.countdown() == main_window.clock(left) + " AM")
    screen.wait_for("silence", server.is_silent)
    assert not main.is_live(LINK, "Stop Playing"), prayer


def popup(program, text, name):
    # A screen reader is told the message in place of the title.
    shown = hands.Window(program, text).wait()
    said = [" ".join(word.split()) for word in program.texts(shown.title)]
    assert said.count(shown.title) == 2 and hands.is_titled(ALERT), said
    assert program.window(shown.title).get_role() == screen.Atspi.Role.ALERT
    print("  alert", shown.title, flush=True)
    hands.picture(name, shown)
    shown.click(BUTTON, "OK")
    shown.wait_gone()


def write_sounds(program):
    for prayer, hertz in TONES.items():
        sound.write_tone(os.path.join(program.folder, sound_of(prayer)), hertz, 60)


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop():
        with hands.Program(folder, main_window.SETTINGS, INSTANT) as program:
            # The first one comes with the first tick.
            main_window.Main(program).wait("the countdown", lambda m: m.countdown())
            for step in (methods, angles_of_the_user, rest_of_the_general_page, prayers, pages):
                print(step.__name__, flush=True)
                step(program)
            settings, shown = hands.Settings(program).read(), main_window.Main(program).times()
        print("alerts", flush=True)
        alerts(folder, settings, shown)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
