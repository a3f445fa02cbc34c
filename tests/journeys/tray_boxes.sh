#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# tray_boxes.sh FOLDER KIND: the tray's menu under a message box, with a notification area of that kind, embedded or
# status_notifier. The box blocks the windows, not the menu; Exit leaves a box to the dialog that it belongs to, and ends
# one without a dialog.
case $2 in
embedded) . "$(dirname "$0")/embedded_tray.bash" ;;
status_notifier) . "$(dirname "$0")/status_notifier.bash" ;;
esac

settings=$folder/program/settings.xml
box='^Dusk Beacon$'
is_box_open() { is_on_screen "$box"; }
# The box has the focus, and the other windows ignore mouse and close button.
box_blocks_the_main_window() {
    wait_until "the box isn't in front" is_active "Dusk Beacon"
    click_locations
    wmctrl -i -c "$window"
    # Longer than a window needs to open.
    sleep 0.5
    is_list_open >/dev/null && fail "the main window took the mouse under a box"
    is_running "$program" || fail "the main window was closed under a box"
    wait_until "the box isn't in front any more" is_active "Dusk Beacon"
}

start_tray
start_program
wait_until "no icon" has_icon

# Over the settings dialog, which leaves the main window usable: "Register" without a device.
click_alerts
wait_until "no settings dialog" is_alerts_open
wait_until "the settings dialog isn't in front" is_active Alerts
dialog=$(xdotool search --onlyvisible --name '^Alerts$')
register() {
    is_box_open && return
    xdotool mousemove --window "$dialog" 110 14 click 1 mousemove --window "$dialog" 197 268 click 1
    sleep 0.2
    is_box_open
}
wait_until "no box" register
box_blocks_the_main_window
if [ "$2" = embedded ]; then
    open_menu
    picture tray_boxes_menu
    xdotool key Escape
    wait_until "the menu stays" not menu_is_open
fi
choose_open
box_blocks_the_main_window
picture "tray_boxes_open_$2"
xdotool key Return
wait_until "the box stays" not is_box_open
close_window '^Alerts$'
wait_until "the settings dialog stays" not is_alerts_open
wait_until "the main window isn't in front" is_active "$caption"

# Over the list of places, with the main window closed during the question: Exit waits for the answer, and closing the list
# ends the program.
before=$(sha256sum "$settings")
click_locations
wait_until "no list of places" is_list_open
wait_until "the list isn't in front" is_active 'Dusk Beacon: Location'
xdotool key Tab Tab space
wait_until "no question" is_box_open
choose_exit
wait_until "the icon stays" not has_icon
wait_until "the main window stays" not is_on_screen "$title"
is_box_open >/dev/null || fail "the question went without an answer"
wait_until "the question isn't in front" is_active "Dusk Beacon"
picture "tray_boxes_question_$2"
xdotool key Escape
wait_until "the question stays" not is_box_open
is_list_open >/dev/null || fail "the list went with the question"
close_window 'Dusk Beacon: Location'
ended_with 0
[ "$before" = "$(sha256sum "$settings")" ] || fail "settings.xml was written"

# Over the main window alone: both close at once, and the answer of the box has no effect.
start_program
wait_until "no icon" has_icon
echo '<root' >"$settings"
click_locations
wait_until "no box for a list that can't be read" is_box_open
choose_exit
ended_with 0
has_icon && fail "the icon is still there"
[ "$(cat "$settings")" = '<root' ] || fail "settings.xml was written"
exit 0
