#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""alert_faults_journey.py FOLDER: the service at its worst at a prayer and at a sign-up, and an alert that falls due while
a request hangs. The wall clock leaps to the instants that matter."""
import glob
import os
import sys
import time

import boxes
import hands
import main_window
import own_network
import screen
import sound
import stand_in
import wall_clock
from hands import BUTTON, LINK, TAB

SETTINGS = main_window.SETTINGS.replace(
    'mobileEnabled="false" mobileDID="" mobilePC=""', 'mobileEnabled="true" mobileDID="D-1" mobilePC="4711"')
# Ten seconds before the countdown changes.
INSTANT = "2026-03-20 09:30:50"
AT_PRAYER = ["prayerCall.pl", "getAd.pl"]
OFFLINE = ("You must be connected to the Internet to confirm Mobil Alerts Setup.  Please check your connection.")
REGISTERED = "Welcome, your device is registered."
TONE, SOUND = 440, "call.wav"


def close_popup(program, title, name):
    popup = hands.Window(program, title).wait()
    assert hands.is_titled("Dusk Beacon Alert")
    hands.picture("alert_faults_" + name)
    popup.click(BUTTON, "OK")
    popup.wait_gone()


def due_at_the_start(folder, service, times, script):
    """The main window is not open yet; a prayer is announced all the same."""
    duhr = main_window.minutes(times[2])
    clock = wall_clock.FastClock()
    service.forget()
    service.fault("hang", script)
    with wall_clock.start(folder, main_window.with_alerts(popup=["duhr"]), clock, duhr * 60 - 600) as program:
        clock.started(program.process)
        screen.wait_for(script, lambda: service.requests(script))
        assert not service.requests("prayerCall.pl")
        clock.run(duhr * 60 - 3, 1)
        close_popup(program, "Prayer Time: Duhr: " + times[2], "at_the_start")
        screen.wait_for("the call", lambda: service.requests("prayerCall.pl"))
        assert not hands.Window(program, main_window.TITLE).is_open(), "the start was not waiting any more"
        service.fault("ok", script)
        hands.Window(program, main_window.TITLE).wait()
        main_window.Main(program)


def due_at_a_prayer(folder, service, times):
    """A request of one prayer hangs when the warning before the next one is due, a minute later."""
    shuruq, duhr = (main_window.minutes(text) for text in times[1:3])
    clock = wall_clock.FastClock()
    settings = main_window.with_alerts(silent=["shuruq", "duhr"], warning=duhr - shuruq - 1)
    with wall_clock.start(folder, settings, clock, shuruq * 60 - 600) as program:
        clock.started(program.process)
        main = main_window.Main(program)
        for script in AT_PRAYER:
            service.forget()
            service.fault("hang", script)
            clock.run(shuruq * 60 - 3, 1)
            screen.wait_for(script, lambda: service.requests(script))
            clock.run(shuruq * 60 + 58, 1)
            close_popup(program, "Advanced Alert Duhr " + times[2], script.partition(".")[0])
            main.wait("the countdown to go on", lambda m: m.countdown() == main_window.clock(duhr - shuruq - 1))
            assert len(service.requests(script)) == 1
            service.fault("ok", script)
            screen.wait_for("the ad", lambda: service.requests("getAd.pl"))
            print("  ", script, flush=True)


def sound_at_a_prayer(folder, service, times):
    """The call to prayer waits at most three seconds for a silent service, and the request continues in the background."""
    duhr = main_window.minutes(times[2])
    settings = main_window.with_alerts(silent=["duhr"]).replace(
        '<duhr enabled="true" popup="false" mobil="false" play="false" audioFile=""',
        f'<duhr enabled="true" popup="false" mobil="false" play="true" audioFile="{SOUND}"')
    clock = wall_clock.FastClock()
    with sound.Server() as server:
        environment = {**server.environment(), "LD_PRELOAD": glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")[0]}
        with wall_clock.start(folder, settings, clock, duhr * 60 - 600, environment,
                              lambda program: sound.write_tone(os.path.join(program.folder, SOUND), TONE, 60)) as program:
            clock.started(program.process)
            main = hands.Window(program, main_window.TITLE)
            main.wait()
            for how in ("hang", "drip"):
                service.forget()
                service.fault(how, "prayerCall.pl")
                clock.run(duhr * 60 - 3, 1)
                screen.wait_for("the call", lambda: service.requests("prayerCall.pl"))
                since = time.monotonic()
                screen.wait_for("the sound", lambda: server.hears(TONE))
                waited = time.monotonic() - since
                assert 2.5 < waited < 5, waited
                screen.wait_for("the ad", lambda: service.requests("getAd.pl"))
                assert len(service.requests("prayerCall.pl")) == 1, service.asked()
                hands.picture("alert_faults_sound_" + how)
                service.fault("ok", "prayerCall.pl")
                main.click(LINK, "Stop Playing")
                screen.wait_for("silence", server.is_silent)
                print(f"   {how}: the sound came after {waited:.1f} s", flush=True)


def at_each_prayer(folder, service, times):
    """The same prayer again and again, each time with another fault."""
    duhr = main_window.minutes(times[2])
    clock = wall_clock.FastClock()
    with wall_clock.start(folder, main_window.with_alerts(silent=["duhr"]), clock, duhr * 60 - 600) as program:
        clock.started(program.process)
        main = main_window.Main(program)
        before = hands.Settings(program).read()
        for how in stand_in.UNREADABLE + stand_in.READABLE:
            os.remove(os.path.join(program.folder, "temp.html"))
            service.forget()
            service.fault(how, *AT_PRAYER)
            clock.run(duhr * 60 - 1, 1)
            screen.wait_for(f"{how} to be over", lambda: os.path.exists(os.path.join(program.folder, "temp.html")))
            assert all(service.requests(script) for script in AT_PRAYER), service.asked()
            expected = main_window.DEFAULT_AD if how in stand_in.UNREADABLE else stand_in.AD
            screen.wait_for(expected, lambda: main_window.advertisement(program) == f"<html>{expected}</html>")
            service.check_refusals(2 if how == "certificate" else 0)
            assert boxes.box(program) is None
            print("  ", how, flush=True)
        clock.run(duhr * 60 - 60, 1)
        main.wait("the minute before", lambda m: m.countdown() == "0:01")
        assert hands.Settings(program).read() == before
        service.fault("ok", *AT_PRAYER)


def sign_ups(folder, service):
    """One fault at each registration; the dialog stays as it was, or has the reply."""
    service.reply(result="0", message=REGISTERED)
    with hands.Program(folder, SETTINGS, INSTANT, stand_in.Service.environment()) as program:
        main = main_window.Main(program)
        hands.Window(program, main_window.TITLE).click(LINK, "Alerts")
        dialog = hands.Window(program, "Alerts").wait()
        dialog.click(TAB, "Mobile Alert")
        countdown = main.countdown()
        for how in stand_in.UNREADABLE + stand_in.READABLE:
            before = hands.Settings(program).read()
            service.fault(how, "confirmSignup.pl")
            dialog.click(BUTTON, "Register")
            boxes.answer(program, OFFLINE if how in stand_in.UNREADABLE else REGISTERED)
            assert dialog.is_live(BUTTON, "Register"), how
            if how in stand_in.UNREADABLE:
                assert hands.Settings(program).read() == before, how
            print("  ", how, flush=True)
        service.forget()
        service.fault("hang", "confirmSignup.pl")
        dialog.click(BUTTON, "Register")
        screen.wait_for("the question", lambda: service.requests("confirmSignup.pl"))
        main.wait("the countdown to go on", lambda m: m.countdown() not in ("", countdown))
        dialog.close()
        dialog.wait_gone()
        before = hands.Settings(program).read()
        boxes.answer(program, OFFLINE)
        assert hands.Settings(program).read() == before, "a request without a reply stores nothing"
        service.fault("ok", "confirmSignup.pl")
        screen.wait_for("the main window to be usable", hands.Window(program, main_window.TITLE).is_usable)
        hands.Window(program, main_window.TITLE).click(LINK, "Alerts")
        hands.Window(program, "Alerts").wait()


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop(), stand_in.Service(version_name="") as service:
        with hands.Program(folder, SETTINGS, INSTANT, stand_in.Service.environment()) as program:
            times = main_window.Main(program).times()
        print("due at the start", flush=True)
        due_at_the_start(folder, service, times, "getAd.pl")
        print("due at a prayer", flush=True)
        due_at_a_prayer(folder, service, times)
        print("sound at a prayer", flush=True)
        sound_at_a_prayer(folder, service, times)
        print("at each prayer", flush=True)
        at_each_prayer(folder, service, times)
        print("sign-ups", flush=True)
        sign_ups(folder, service)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
