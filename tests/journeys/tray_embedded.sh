#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The icon in a notification area that embeds windows: minimise, menu, Open, a tray that restarts, Exit.
. "$(dirname "$0")/embedded_tray.bash"

# Without a tray the window stays on the taskbar.
start_program
minimise_to_taskbar

# A tray that comes later gets the icon.
start_tray
wait_until "no icon in the late tray" has_icon

for round in 1 2 3 4 5; do
    minimise_to_tray
    choose_open
    wait_until "round $round: not back" is_on_screen "$title"
    wait_until "round $round: not in front" is_active "$caption"
    is_minimised && fail "round $round: back, but not in normal state"
done

# Only the right button acts, and only when it comes up. The menu that opens last proves that all the events before
# have been served.
press_all_buttons() {
    over_icon
    xdotool click 1 click --repeat 2 1 click 2
    xdotool mousedown 3
    # Longer than a menu needs to open.
    sleep 0.3
    menu_is_open && fail "the menu opened on the press, or for another button"
    xdotool mouseup 3
    wait_until "no menu on the release" menu_is_open
}
leave_menu() {
    xdotool key Escape
    wait_until "the menu stays" not menu_is_open
}
press_all_buttons
is_on_screen "$title" >/dev/null || fail "another button took the window away"
is_minimised && fail "another button minimised the window"
picture tray_embedded_menu
leave_menu
minimise_to_tray
# Hiding the window may close the first menu after it.
open_menu
leave_menu
press_all_buttons
is_on_screen "$title" >/dev/null && fail "another button brought the window back"
is_on_taskbar && fail "another button brought the window back to the taskbar"
leave_menu
choose_open
wait_until "not back" is_on_screen "$title"

# The tray restarts while the window is hidden: the new icon brings the window back.
minimise_to_tray
stop_tray
start_tray
wait_until "no icon after the tray's restart" has_icon
choose_open
wait_until "not back" is_on_screen "$title"

# The tray ends before the window is minimised: without an icon the window must not be hidden.
stop_tray
minimise_to_taskbar
start_tray
wait_until "no icon after the tray's second restart" has_icon

choose_exit
ended_with 0
has_icon && fail "the icon is still there"
exit 0
