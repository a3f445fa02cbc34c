#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The tray's menu while a dialog is open: Open shows the main window behind the dialog; after Exit, closing the dialog ends
# the program.
. "$(dirname "$0")/embedded_tray.bash"
start_tray
start_program
wait_until "no icon" has_icon

# open_and_expect TITLE: the main window is there, and that window in front of it.
open_and_expect() {
    choose_open
    wait_until "the main window isn't back" is_on_screen "$title"
    wait_until "$1 isn't in front" is_active "$1"
    is_minimised && fail "back, but not in normal state"
}

# The list of places disables the main window.
click_locations
wait_until "no list of places" is_list_open
minimise_to_tray
open_and_expect 'Dusk Beacon: Location'
open_and_expect 'Dusk Beacon: Location'
picture tray_dialogs_places
wmctrl -i -c "$window"
minimise_to_tray
is_running "$program" || fail "the disabled window was closed"
close_window 'Dusk Beacon: Location'
wait_until "the list stays" not is_list_open
is_on_screen "$title" >/dev/null && fail "the main window came back by itself"
open_and_expect "$caption"

# The settings dialog leaves it usable.
click_alerts
wait_until "no settings dialog" is_alerts_open
minimise_to_tray
open_and_expect Alerts
picture tray_dialogs_settings
dialog=$(xdotool search --onlyvisible --name '^Alerts$')
xdotool windowminimize "$dialog"
wait_until "the dialog isn't minimised" not is_alerts_open
minimise_to_tray
open_and_expect "$caption"
is_alerts_open >/dev/null && fail "the dialog left the taskbar"
wmctrl -i -a "$dialog"
wait_until "the dialog isn't back" is_alerts_open

# Exit while hidden: the icon goes at once, the process with the dialog.
minimise_to_tray
choose_exit
wait_until "the icon stays" not has_icon
is_running "$program" || fail "ended with a dialog open"
close_window '^Alerts$'
ended_with 0
exit 0
