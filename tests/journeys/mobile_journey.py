#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""mobile_journey.py FOLDER: a mobile device signed up, refused, reset, and asked for at a prayer; the dialog and the program
closed during a slow request. The service is the stand-in at its usual port."""
import os
import subprocess
import sys

import boxes
import hands
import main_window
import own_network
import screen
import stand_in
from hands import BOX, BUTTON, LINK, TAB

PID = "P-mobile"
SETTINGS = main_window.SETTINGS.replace("P-77", PID)
DIALOG = "Alerts"
DEVICE, CODE = "Mobile Device ID", "Personal Code"
INCOMPLETE = "You must first enter your Mobile Device number and personal Code"
UNVERIFIED = "Could not verify Mobil Alert Settings."
OFFLINE = ("You must be connected to the Internet to confirm Mobil Alerts Setup.  Please check your connection.")
QUESTION = "This will clear your Mobile Device ID and Personal code?\nDo you want to continue?"


def is_open_for_entry(dialog):
    live = [dialog.is_live(hands.FIELD, DEVICE), dialog.is_live(hands.FIELD, CODE), dialog.is_live(BUTTON, "Register")]
    assert len(set(live)) == 1, live
    return live[0]


def register(program, service, dialog, result, message, shown):
    before = len(service.requests("confirmSignup.pl", PID))
    service.reply(result=result, message=message)
    dialog.click(BUTTON, "Register")
    boxes.answer(program, shown)
    sent = service.requests("confirmSignup.pl", PID)[before:]
    assert sent == ["/cgi-bin/dbeacon/ma/confirmSignup.pl?prod_string=P-mobile&vCode=4711&dist_string=dbeacon"], sent
    settings = hands.Settings(program)
    found = [settings.alerts(name) for name in ("mobileConfirm", "mobileDID", "mobilePC")]
    assert found == [result, "D-815", "4711"], found


def sign_up(program, service):
    hands.Window(program, main_window.TITLE).click(LINK, "Alerts")
    dialog, settings = hands.Window(program, DIALOG).wait(), hands.Settings(program)
    dialog.click(TAB, "Mobile Alert")
    assert is_open_for_entry(dialog) and not dialog.is_on(BOX, "Enable Mobile Alerts")
    dialog.enter(DEVICE, ["End"], "D-815")
    settings.wait("mobileDID", "D-815")
    dialog.click(BUTTON, "Register")
    boxes.answer(program, INCOMPLETE)
    assert not service.requests("confirmSignup.pl", PID) and settings.alerts("mobileConfirm") == "0"
    dialog.enter(CODE, ["End"], "4711")
    settings.wait("mobilePC", "4711")

    register(program, service, dialog, "0", "Wrong code, try again.", "Wrong code, try again.")
    assert is_open_for_entry(dialog)
    register(program, service, dialog, "1", "Welcome, your device is registered.", "Welcome, your device is registered.")
    assert not is_open_for_entry(dialog)
    hands.picture("mobile_registered", dialog)
    return dialog, settings


def reset(program, service, dialog, settings):
    before = settings.read()
    dialog.click(LINK, "Reset")
    boxes.answer(program, QUESTION, "No", ("Yes",))
    assert settings.read() == before and not is_open_for_entry(dialog) and dialog.is_live(LINK, "Reset")
    ask_reset(program, dialog, settings)
    assert [settings.alerts(name) for name in ("mobileDID", "mobilePC")] == ["", ""]
    assert is_open_for_entry(dialog) and (dialog.text(DEVICE), dialog.text(CODE)) == ("", "")

    enter_device(dialog, settings, "D-815", "4711")
    # A confirmation without a text: the boxes lock, and the message says that nothing could be verified.
    register(program, service, dialog, "1", "", UNVERIFIED)
    assert not is_open_for_entry(dialog)


def choose_prayers(dialog, settings):
    # A sign-up doesn't enable; until then the prayers don't offer it.
    dialog.click(TAB, "Duhr")
    assert not dialog.is_live(BOX, "Mobile Alert, Duhr")
    dialog.click(TAB, "Mobile Alert")
    dialog.tick("Enable Mobile Alerts")
    settings.wait("mobileEnabled", "true")
    assert not is_open_for_entry(dialog)
    dialog.click(TAB, "Duhr")
    screen.wait_for("the mobile alert", lambda: dialog.is_live(BOX, "Mobile Alert, Duhr"))
    assert not dialog.is_live(BOX, "Audio alert, Duhr"), "an alert that is off offers the mobile alert alone"
    dialog.tick("Alert on, Duhr")
    dialog.tick("Mobile Alert, Duhr")
    settings.wait_prayer("duhr", enabled="true", mobil="true", popup="false", play="false")
    hands.picture("mobile_prayer", dialog)
    dialog.click(TAB, "Asr")
    dialog.tick("Alert on, Asr")
    settings.wait_prayer("asr", enabled="true", mobil="false")
    dialog.close()
    dialog.wait_gone()


def offline(program, settings):
    """Without a network the box says so, and nothing is stored."""
    hands.Window(program, main_window.TITLE).click(LINK, "Alerts")
    dialog = hands.Window(program, DIALOG).wait()
    dialog.click(TAB, "Mobile Alert")
    dialog.click(BUTTON, "Register")
    boxes.answer(program, OFFLINE)
    assert hands.Settings(program).read() == settings


def open_page(program):
    hands.Window(program, main_window.TITLE).click(LINK, "Alerts")
    dialog = hands.Window(program, DIALOG).wait()
    dialog.click(TAB, "Mobile Alert")
    return dialog


def press_and_close(program, service):
    """The service is slow, and the user doesn't wait for its reply."""
    service.forget()
    service.fault("slow", "confirmSignup.pl")
    dialog = open_page(program)
    dialog.click(BUTTON, "Register")
    screen.wait_for("the request", lambda: service.requests("confirmSignup.pl", PID))
    dialog.close()
    dialog.wait_gone()


def ask_reset(program, dialog, settings):
    dialog.click(LINK, "Reset")
    boxes.answer(program, QUESTION, "Yes", ("No",))
    settings.wait("mobileConfirm", "0")
    screen.wait_for("the open boxes", lambda: dialog.is_live(BUTTON, "Register"))


def enter_device(dialog, settings, device, code):
    dialog.enter(DEVICE, ["End"], device)
    dialog.enter(CODE, ["End"], code)
    settings.wait("mobilePC", code)


def closed_in_the_wait(program, service, settings):
    """The reply is shown and stored without the dialog, and the next one shows it."""
    service.reply(result="1", message="Welcome, your device is registered.")
    press_and_close(program, service)
    assert settings.alerts("mobileConfirm") == "0" and boxes.box(program) is None
    service.fault("ok", "confirmSignup.pl")
    screen.wait_for("the box", lambda: boxes.box(program))
    hands.picture("mobile_registered_without_dialog")
    boxes.answer(program, "Welcome, your device is registered.")
    found = [settings.alerts(name) for name in ("mobileConfirm", "mobileDID", "mobilePC")]
    assert found == ["1", "D-815", "4711"], found
    dialog = open_page(program)
    assert not is_open_for_entry(dialog)
    assert (dialog.text(DEVICE), dialog.text(CODE)) == ("D-815", "4711")
    hands.picture("mobile_registered_reopened", dialog)
    ask_reset(program, dialog, settings)
    return dialog


def opened_again_in_the_wait(program, service, dialog, settings):
    """The dialog that is open by then shows the requested device; pressing again sends no request."""
    enter_device(dialog, settings, "D-815", "4711")
    dialog.close()
    dialog.wait_gone()
    press_and_close(program, service)
    dialog = open_page(program)
    assert is_open_for_entry(dialog)
    dialog.enter(CODE, ["ctrl+a"], "0000")
    settings.wait("mobilePC", "0000")
    dialog.click(BUTTON, "Register")
    service.fault("ok", "confirmSignup.pl")
    boxes.answer(program, "Welcome, your device is registered.")
    assert len(service.requests("confirmSignup.pl", PID)) == 1, service.asked()
    assert [settings.alerts(name) for name in ("mobileConfirm", "mobilePC")] == ["1", "4711"]
    assert not is_open_for_entry(dialog) and dialog.text(CODE) == "4711"
    hands.picture("mobile_registered_in_the_next_dialog", dialog)
    dialog.close()
    dialog.wait_gone()


def reset_in_the_wait(program, service, settings):
    """The reply is shown and not stored, and only then the device that was entered after the reset is sent."""
    dialog = open_page(program)
    ask_reset(program, dialog, settings)
    enter_device(dialog, settings, "D-815", "4711")
    service.forget()
    service.fault("slow", "confirmSignup.pl")
    dialog.click(BUTTON, "Register")
    screen.wait_for("the request", lambda: service.requests("confirmSignup.pl", PID))
    ask_reset(program, dialog, settings)
    enter_device(dialog, settings, "D-816", "0815")
    dialog.click(BUTTON, "Register")
    service.fault("ok", "confirmSignup.pl")
    screen.wait_for("the box", lambda: boxes.box(program))
    assert len(service.requests("confirmSignup.pl", PID)) == 1, service.asked()
    found = [settings.alerts(name) for name in ("mobileConfirm", "mobileDID", "mobilePC")]
    assert found == ["0", "D-816", "0815"], found
    hands.picture("mobile_reset_in_the_wait", dialog)
    service.reply(message="Welcome, your other device is registered.")
    boxes.answer(program, "Welcome, your device is registered.")
    boxes.answer(program, "Welcome, your other device is registered.")
    sent = service.requests("confirmSignup.pl", PID)
    assert len(sent) == 2 and "&vCode=0815&" in sent[1], sent
    found = [settings.alerts(name) for name in ("mobileConfirm", "mobileDID", "mobilePC")]
    assert found == ["1", "D-816", "0815"], found
    dialog.close()
    dialog.wait_gone()


def ended_in_the_wait(program, service):
    """The last window closes: the program ends at once, without a message."""
    press_and_close(program, service)
    subprocess.run(["wmctrl", "-F", "-c", main_window.TITLE], check=True)
    assert program.process.wait(timeout=screen.PATIENCE) == 0


def at_the_prayer(folder, settings, service, slot, time, ma, pno):
    before = len(service.requests("prayerCall.pl", PID))
    instant = f"2026-03-20 {main_window.clock(slot - 1)}:48"
    with hands.Program(folder, settings, instant, stand_in.Service.environment()) as program:
        main_window.Main(program)
        sent = screen.wait_for("the request of the prayer", lambda: service.requests("prayerCall.pl", PID)[before:])
        assert sent == [stand_in.prayer_call(PID, pno, time, ma=ma)], sent
        print("  request", sent[0], flush=True)


def main():
    folder = os.path.abspath(sys.argv[1])
    with hands.Desktop():
        with stand_in.Service(ad="", version_name="") as service:
            with hands.Program(folder, SETTINGS, "2026-03-20 09:30:10", stand_in.Service.environment()) as program:
                times = main_window.Main(program).times()
                print("sign-up", flush=True)
                dialog, settings = sign_up(program, service)
                print("reset", flush=True)
                reset(program, service, dialog, settings)
                print("prayers", flush=True)
                choose_prayers(dialog, settings)
                confirmed = settings.read()
            for prayer, ma, pno in ((2, 1, 3), (3, 0, 4)):
                at_the_prayer(folder, confirmed, service, main_window.minutes(times[prayer]), times[prayer], ma, pno)
            print("closed in the wait", flush=True)
            typed = confirmed.replace(b'mobileConfirm="1"', b'mobileConfirm="0"')
            with hands.Program(folder, typed, "2026-03-20 09:30:10", stand_in.Service.environment()) as program:
                main_window.Main(program)
                settings = hands.Settings(program)
                dialog = closed_in_the_wait(program, service, settings)
                opened_again_in_the_wait(program, service, dialog, settings)
                reset_in_the_wait(program, service, settings)
            with hands.Program(folder, typed, "2026-03-20 09:30:10", stand_in.Service.environment()) as program:
                main_window.Main(program)
                ended_in_the_wait(program, service)
        print("offline", flush=True)
        with hands.Program(folder, typed, "2026-03-20 09:30:10") as program:
            main_window.Main(program)
            offline(program, typed)
    print("all as it should be")


if __name__ == "__main__":
    own_network.under_own_network()
    screen.under_own_session()
    main()
