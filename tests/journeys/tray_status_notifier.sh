#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The icon in a notification area of the StatusNotifier kind: tip, exported menu, minimise, Open, Exit.
. "$(dirname "$0")/status_notifier.bash"

start_tray
start_program
wait_until "no icon" has_icon
[ "$(ask icon)" = '16x16 painted' ] || fail "icon: $(ask icon)"
[ "$(ask tip)" = "$caption" ] || fail "tip: $(ask tip)"
[ "$(ask menu)" = '_Open E_xit' ] || fail "menu: $(ask menu)"
for round in 1 2 3; do
    minimise_to_tray
    ask activate >/dev/null
    # Answered by the program itself, after all events of the click.
    ask menu >/dev/null
    is_on_screen "$title" >/dev/null && fail "a left click brought the window back"
    choose_open
    wait_until "round $round: not back" is_on_screen "$title"
done

# A host that draws no menu asks for the program's own one.
minimise_to_tray
wait_until "no menu of the program's own" opens_menu_by ask context
picture tray_status_notifier_menu
xdotool key Down Return
wait_until "not back by its own menu" is_on_screen "$title"

# Without a host, minimising must not hide the window.
ask leave >/dev/null
minimise_to_taskbar
ask return >/dev/null

# A notification area that hangs doesn't hang the program.
kill -STOP "$tray"
began=$SECONDS
minimise_to_taskbar
opens_alerts() {
    click_alerts
    sleep 0.5
    is_alerts_open
}
wait_until "the program waits for the notification area" opens_alerts
[ $((SECONDS - began)) -le 8 ] || fail "the program waited for the notification area"
kill -CONT "$tray"
close_window '^Alerts$'
wait_until "the settings dialog stays" not is_alerts_open

# The notification area restarts while the window is hidden: the new icon brings the window back.
minimise_to_tray
stop_tray
start_tray
wait_until "no icon after the restart" has_icon
choose_open
wait_until "not back" is_on_screen "$title"

choose_exit
ended_with 0
wait_until "the icon is still there" not has_icon
exit 0
