#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The icon in a notification area of the StatusNotifier kind: tip, exported menu, minimise, Open, Exit.
if [ -z "${JOURNEY_BUS:-}" ]; then
    command -v dbus-run-session >/dev/null || exit 77
    /usr/bin/python3 -c 'import dbus, gi' 2>/dev/null || exit 77
    JOURNEY_BUS=1 exec dbus-run-session -- "$0" "$@"
fi
. "$(dirname "$0")/desktop.bash"
start_desktop
start /usr/bin/python3 "$(dirname "$0")/status_notifier_host.py" "$folder/host"
wait_until "no notification area" test -e "$folder/host.ready"

# ask WHAT: the host does it and writes the answer.
ask() {
    rm -f "$folder/host.answer"
    echo "$*" >"$folder/host.part" && mv "$folder/host.part" "$folder/host.request"
    wait_until "no answer to $1" test -e "$folder/host.answer"
    cat "$folder/host.answer"
}
has_icon() { [ "$(ask items)" = 1 ]; }

start_program
wait_until "no icon" has_icon
[ "$(ask tip)" = 'Dusk Beacon v1.0.5' ] || fail "tip: $(ask tip)"
[ "$(ask menu)" = '_Open E_xit' ] || fail "menu: $(ask menu)"
for round in 1 2 3; do
    xdotool windowminimize "$window"
    wait_until "round $round: still on the screen" not is_on_screen "$title"
    wait_until "round $round: still on the taskbar" not is_on_taskbar
    ask activate >/dev/null
    is_on_screen "$title" >/dev/null && fail "a left click brought the window back"
    ask click _Open >/dev/null
    wait_until "round $round: not back" is_on_screen "$title"
done
# Without its host the icon brings nobody back.
ask leave >/dev/null
xdotool windowminimize "$window"
wait_until "not minimised" is_minimised
is_on_taskbar || fail "hidden although the host has gone"
ask return >/dev/null
ask click E_xit >/dev/null
ended_with 0
wait_until "the icon is still there" not has_icon
exit 0
