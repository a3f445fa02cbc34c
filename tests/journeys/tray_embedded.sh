#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The icon in a notification area that embeds windows: minimise, menu, Open, a tray that restarts, Exit.
. "$(dirname "$0")/desktop.bash"
need trayer xwininfo
export DBUS_SESSION_BUS_ADDRESS=disabled:
start_desktop

start_tray() {
    start trayer --edge bottom --align right --widthtype request --height 24
    tray=$last
}
# The icon's window is a child of the tray's.
icon_place() {
    xwininfo -root -tree | sed -n 's/.*("DuskBeacon" "DuskBeacon") *22x22+[-0-9]*+[-0-9]* *+\([0-9]*\)+\([0-9]*\)$/\1 \2/p' | tail -1
}
has_icon() { [ -n "$(icon_place)" ]; }
menu_is_open() { xwininfo -root -children | grep '"DuskBeacon"' | grep -qE ' 1[0-9][0-9]x[3-9][0-9]\+'; }
# The panel grows, and the icon moves with it, for a while after it has come.
rests() {
    local place
    place=$(icon_place)
    sleep 0.2
    [ -n "$place" ] && [ "$place" = "$(icon_place)" ]
}
over_icon() {
    wait_until "the icon doesn't come to rest" rests
    read -r x y < <(icon_place)
    xdotool mousemove $((x + 8)) $((y + 8))
}
open_menu() {
    over_icon
    xdotool click 3
    wait_until "no menu" menu_is_open
}
choose() {
    open_menu
    xdotool key "$@"
    wait_until "the menu stays" not menu_is_open
}

# Without a tray the window stays on the taskbar.
start_program
xdotool windowminimize "$window"
wait_until "not minimised" is_minimised
is_on_taskbar || fail "gone although no icon could bring it back"
wmctrl -i -a "$window"
wait_until "not back from the taskbar" not is_minimised

# A tray that comes later gets the icon.
start_tray
wait_until "no icon in the late tray" has_icon

for round in 1 2 3 4 5; do
    xdotool windowminimize "$window"
    wait_until "round $round: still on the screen" not is_on_screen "$title"
    wait_until "round $round: still on the taskbar" not is_on_taskbar
    choose Down Return
    wait_until "round $round: not back" is_on_screen "$title"
    wait_until "round $round: not in front" is_active 'Dusk Beacon v1.0.5'
    is_minimised && fail "round $round: back, but not in normal state"
done

# Only the right button acts, and only when it comes up. The menu that opens last proves that all the events before
# have been served.
over_icon
xdotool click 1 click --repeat 2 1 click 2
xdotool mousedown 3
sleep 0.3
menu_is_open && fail "the menu opened on the press, or for another button"
xdotool mouseup 3
wait_until "no menu on the release" menu_is_open
xdotool key Escape
wait_until "the menu stays" not menu_is_open

# Hidden, and the tray restarts: the icon is there again and leads back.
xdotool windowminimize "$window"
wait_until "still on the screen" not is_on_screen "$title"
kill "$tray"
wait_until "an icon without a tray" not has_icon
start_tray
wait_until "no icon after the tray's restart" has_icon
choose Down Return
wait_until "not back" is_on_screen "$title"

choose Down Down Return
ended_with 0
has_icon && fail "the icon is still there"
exit 0
