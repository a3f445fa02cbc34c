#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""day_journey.py FOLDER: one day from before Fajr to after Isha, in one run of the program, in which the service hears of
each of the six prayers once, at its minute. Then an hour in which each second comes, with two prayers and silence between
them. Then a day on which the dialog is open at Asr, which is lost. Then an Isha half a minute after midnight.

On the whole day the clock runs as usual round each prayer. Between them it runs so fast, and leaps over the last minutes
as after a short sleep, that hardly a second 0 of a minute is met, in which alone the program compares: of the silence
between the prayers this says nothing. The hour does: there the timers run faster together with the clock."""
import datetime
import os
import sys

import hands
import main_window
import own_network
import screen
import stand_in
import wall_clock
from hands import BUTTON, LINK

DATE = wall_clock.DATE.date()
BETWEEN = 2400  # times faster than the real clock
FASTER = 60     # in the hour without skipped seconds, timers included
SLOWER = 6      # in that hour, round a prayer
ASIDE = 1200    # seconds before a prayer at which the fast clock has to have ended
PID = "P-day"
SETTINGS = main_window.with_alerts(silent=main_window.ELEMENTS, pid=PID)
PARIS = ('<Paris atlas_id="FR-Paris" city="Paris" state="France" longitude="" longitude_final="2.35" latitude=""'
         ' latitude_final="48.85" time_zone2="1"/>')
# In Paris Isha is 25 seconds after the midnight that this date ends with.
BEFORE_ISHA = datetime.date(2027, 5, 27)


def go_to(clock, seconds):
    """Fast until short of that second, then a leap to it."""
    clock.run(clock.now(), BETWEEN)
    clock.wait(seconds - ASIDE)
    clock.run(seconds, 1)


def whole_day(folder, service):
    clock = wall_clock.FastClock()
    before_fajr = 3 * 3600 + 30 * 60
    with wall_clock.start(folder, SETTINGS, clock, before_fajr) as program:
        clock.started(program.process)
        main = main_window.Main(program)
        main_window.check_times(main, DATE)
        times, due = main.times(), []
        for pno, text in enumerate(times, 1):
            minute = main_window.minutes(text)
            go_to(clock, minute * 60 - wall_clock.LEAD)
            assert service.requests("prayerCall.pl", PID) == due, "a request before its minute"
            due.append(stand_in.prayer_call(PID, pno, text))
            screen.wait_for(f"the request of {text}", lambda: len(service.requests("prayerCall.pl", PID)) >= pno)
            assert clock.now() < minute * 60 + 59, "asked for after its minute"
            assert service.requests("prayerCall.pl", PID) == due, service.requests("prayerCall.pl", PID)
            clock.wait(minute * 60 + 2)
            print("  ", text, due[-1].partition("?")[2], flush=True)
        clock.run(clock.now(), BETWEEN)
        main.wait("Done", lambda m: m.countdown() == "Done")
        hands.picture("day_done")
        clock.wait(23 * 3600)
        assert service.requests("prayerCall.pl", PID) == due, "a request after Isha"
        print("  alerts due", len(due), "given", len(service.requests("prayerCall.pl", PID)), flush=True)
    return times


def one_hour(folder, service):
    """From ten minutes before Fajr to ten minutes after sunrise, which this twilight angle puts into one hour."""
    settings = main_window.with_alerts(silent=["fajr", "shuruq"], pid="P-hour").replace('angle1="-15"', 'angle1="-8"')
    with hands.Program(folder, settings, f"{DATE} 05:05:10") as program:
        main = main_window.Main(program)
        fajr, shuruq = main_window.check_times(main, DATE, (-8, -15))[:2]
    due = [stand_in.prayer_call("P-hour", pno, main_window.clock(slot)) for pno, slot in ((1, fajr), (2, shuruq))]
    first, last = fajr - 10, shuruq + 10
    assert 50 <= last - first <= 70, (fajr, shuruq)
    # A minute is the shortest time that the service can name: the strip then counts the ticks in sixties.
    service.reply(wait_time="1")
    clock = wall_clock.FastClock()
    with wall_clock.start(folder, settings, clock, first * 60, rate=FASTER, are_timers_real=False) as program:
        clock.started(program.process)
        for slot in (fajr, shuruq):
            # A busy machine loses one second in fifteen at full speed; it must not be one of these two.
            clock.wait(slot * 60 - 10)
            clock.run(clock.now(), SLOWER)
            clock.wait(slot * 60 + 10)
            clock.run(clock.now(), FASTER)
        clock.wait(last * 60)
        ticks = 60 * (len(service.requests("getAd.pl", "P-hour")) - 1 - len(due))
        assert service.requests("prayerCall.pl", "P-hour") == due, service.requests("prayerCall.pl", "P-hour")
        hands.picture("day_hour_over")
    seconds = (last - first) * 60
    print("  ", fajr, shuruq, seconds, "seconds,", ticks, "of them met", flush=True)
    assert ticks >= 0.8 * seconds, f"only {ticks} of {seconds} seconds were met: this says nothing of the silence"


def dialog_in_the_way(folder, service, times):
    """What falls due while the dialog is open is lost, and isn't made up for; the next prayer comes, with its popup."""
    clock = wall_clock.FastClock()
    asr, maghrib = (main_window.minutes(text) * 60 for text in times[3:5])
    before = len(service.requests("prayerCall.pl", PID))
    settings = SETTINGS.replace('popup="false"', 'popup="true"')
    with wall_clock.start(folder, settings, clock, asr - 600) as program:
        clock.started(program.process)
        main = main_window.Main(program)
        window = hands.Window(program, main_window.TITLE)
        window.click(LINK, "Alerts")
        dialog = hands.Window(program, "Alerts").wait()
        clock.run(asr - wall_clock.LEAD, 1)
        main.wait("the minute after Asr", lambda m: m.countdown() == main_window.clock((maghrib - asr) // 60))
        clock.wait(asr + 5)
        dialog.click(BUTTON, "Close")
        dialog.wait_gone()
        assert len(service.requests("prayerCall.pl", PID)) == before and not hands.is_titled("Dusk Beacon Alert")
        go_to(clock, maghrib - wall_clock.LEAD)
        popup = hands.Window(program, "Prayer Time: Maghrib: " + times[4]).wait()
        sent = screen.wait_for("the request of Maghrib", lambda: service.requests("prayerCall.pl", PID)[before:])
        assert sent == [stand_in.prayer_call(PID, 5, times[4])], sent
        hands.picture("day_alert_after_the_dialog")
        popup.click(BUTTON, "OK")
        popup.wait_gone()


def isha_after_midnight(folder, service):
    """Nothing comes at 0:00, when the day is computed anew; Isha does at 0:01."""
    settings = main_window.with_alerts(popup=["isha"], pid="P-midnight")
    for before, after in (("</locations>", PARIS + "</locations>"), ('Current="Chicago"', 'Current="Paris"'),
                          ('angle1="-15" angle2="-15"', 'angle1="-18" angle2="-17"'), ('useDLS="false"', 'useDLS="true"'),
                          ('hourmode="24"', 'hourmode="12"')):
        assert before in settings, before
        settings = settings.replace(before, after)
    clock = wall_clock.FastClock()
    midnight = ((BEFORE_ISHA - DATE).days + 1) * 86400
    with wall_clock.start(folder, settings, clock, midnight - 2 * wall_clock.LEAD) as program:
        clock.started(program.process)
        main = main_window.Main(program)
        main.wait("the new date", lambda m: m.has("Date: 28 May, 2027") and m.times()[-1] == "12:01 AM")
        clock.run(midnight + 60 - wall_clock.LEAD, 1)
        assert service.requests("prayerCall.pl", "P-midnight") == [] and not hands.is_titled("Dusk Beacon Alert")
        popup = hands.Window(program, "Prayer Time: Isha: 12:01 AM").wait()
        assert 0 <= clock.now() - midnight - 60 < 59, "not in its minute"
        sent = screen.wait_for("the request of Isha", lambda: service.requests("prayerCall.pl", "P-midnight"))
        assert sent == [stand_in.prayer_call("P-midnight", 6, "0:01").replace("US-1", "FR-Paris")], sent
        hands.picture("day_isha_after_midnight")
        popup.click(BUTTON, "OK")
        popup.wait_gone()


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop(), stand_in.Service(ad="", version_name="") as service:
        print("a whole day", flush=True)
        times = whole_day(folder, service)
        print("an hour", flush=True)
        one_hour(folder, service)
        print("the dialog in the way", flush=True)
        dialog_in_the_way(folder, service, times)
        print("an Isha after midnight", flush=True)
        isha_after_midnight(folder, service)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
