#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The main window raised over an open dialog without being activated, as some window managers and panels do: the dialog comes
# back in front of it within a second, also below a window that is kept on top. The keyboard stays with the program that has it.
# A dialog that the user lowers stays where it is.
. "$(dirname "$0")/desktop.bash"
export DBUS_SESSION_BUS_ADDRESS=disabled:
start_desktop
need xev
start_program

position_of() { xprop -root _NET_CLIENT_LIST_STACKING | tr -d ',' | tr ' ' '\n' | grep -nx "$(printf '0x%x' "$1")" | cut -d: -f1; }
# is_over UPPER LOWER: the first window is above the second one.
is_over() { [ "$(position_of "$1")" -gt "$(position_of "$2")" ]; }
# open_window NAME GEOMETRY: a window of another program; its process is $xev, its window $other.
open_window() {
    start sh -c 'exec xev -name "$1" -geometry "$2" >"$0"' "$folder/keys_of_$1" "$1" "$2"
    xev=$last
    other=$(timeout 20 xdotool search --sync --onlyvisible --name "^$1\$" | head -n 1)
}
open_other() {
    open_window Other 300x200+20+20
    wmctrl -i -a "$other"
    wait_until "the other program isn't active" is_active Other
}
close_other() {
    kill "$xev"
    wait_until "the other program stays" not is_on_screen '^Other$'
}
# comes_back NAME: the dialog is in front of the main window again within a second.
comes_back() {
    local from
    from=$(date +%s%3N)
    wait_until "$1 isn't in front of the main window" is_over "$dialog" "$window"
    local taken=$(($(date +%s%3N) - from))
    echo "$1 is back after $taken ms"
    [ "$taken" -le 1000 ] || fail "$1 came back after $taken ms"
}
# The program is stopped for this: otherwise the dialog comes back within milliseconds.
raise_main_window() {
    kill -STOP "$program"
    xdotool windowraise "$window"
    wait_until "the main window isn't raised" is_over "$window" "$dialog"
    kill -CONT "$program"
}

# comes_back_below_window_on_top NAME: the same while a window of another program is kept on top.
comes_back_below_window_on_top() {
    open_other
    wmctrl -i -r "$other" -b add,above
    wmctrl -i -a "$dialog"
    wait_until "$1 isn't active" is_active "$1"
    raise_main_window
    is_over "$other" "$window" || fail "the other program isn't on top"
    comes_back "$1"
    is_active "$1" || fail "$1 lost the keyboard"
    close_other
}

# stays_below NAME: the dialog, lowered by the user, doesn't cover the window of another program, which is active.
# Nor does it when the user lowers a third window.
stays_below() {
    wmctrl -i -a "$dialog"
    wait_until "$1 isn't active" is_active "$1"
    open_window Third 150x80+820+620
    local third=$other third_xev=$xev
    open_other
    # The middle button on a title lowers the window. Without the program, which could raise it at once.
    kill -STOP "$program"
    xdotool mousemove --window "$dialog" 40 -10 click 2
    wait_until "$1 isn't lowered" is_over "$window" "$dialog"
    kill -CONT "$program"
    # Longer than the dialog needs to come back.
    sleep 0.5
    is_over "$other" "$dialog" || fail "$1 covers the other program after it was lowered"
    is_active Other || fail "$1 took the keyboard"
    is_over "$third" "$window" || fail "the third window isn't over the main window"
    xdotool mousemove --window "$third" 40 -10 click 2
    wait_until "the third window isn't lowered" is_over "$dialog" "$third"
    sleep 0.5
    is_over "$other" "$dialog" || fail "$1 covers the other program after a third window was lowered"
    close_other
    kill "$third_xev"
    wait_until "the third window stays" not is_on_screen '^Third$'
    raise_main_window
    comes_back "$1"
}

# keeps_in_front NAME: the steps for one open dialog.
keeps_in_front() {
    dialog=$(xdotool search --onlyvisible --name "^$1\$")
    wait_until "$1 isn't active" is_active "$1"
    raise_main_window
    comes_back "$1"
    is_active "$1" || fail "$1 lost the keyboard"
    comes_back_below_window_on_top "$1"

    open_other
    raise_main_window
    comes_back "$1"
    is_active Other || fail "$1 took the keyboard"
    xdotool key a
    wait_until "a key didn't reach the other program" grep -q 'keysym 0x61, a' "$folder/keys_of_Other"

    # If the user sets the main window to stay on top, the dialog is raised a few times only, and does not cover the other program.
    wmctrl -i -r "$window" -b add,above
    wait_until "the main window isn't on top" is_over "$window" "$dialog"
    for _ in 1 2 3 4 5; do
        xdotool windowraise "$other"
        # Longer than the dialog needs to come back.
        sleep 0.5
    done
    is_over "$other" "$dialog" || fail "$1 covers the other program again and again"
    wmctrl -i -r "$window" -b remove,above
    picture "dialog_in_front_${1##* }"
    close_other
    stays_below "$1"
}

# A panel stays above all windows. It gets its type before it is shown.
start sh -c 'exec xev -name Panel -geometry 1024x20+0+748 >/dev/null'
panel=$(timeout 20 xdotool search --sync --onlyvisible --name '^Panel$' | head -n 1)
xdotool windowunmap --sync "$panel"
xprop -id "$panel" -f _NET_WM_WINDOW_TYPE 32a -set _NET_WM_WINDOW_TYPE _NET_WM_WINDOW_TYPE_DOCK
xdotool windowmap --sync "$panel"
wait_until "the panel isn't above the main window" is_over "$panel" "$window"
wmctrl -i -a "$window"

click_alerts
wait_until "no settings dialog" is_alerts_open
keeps_in_front Alerts
close_window '^Alerts$'
wait_until "the settings dialog stays" not is_alerts_open

click_locations
wait_until "no list of places" is_list_open
keeps_in_front 'Dusk Beacon: Location'
close_window 'Dusk Beacon: Location'
wait_until "the list stays" not is_list_open
wmctrl -i -c "$window"
ended_with 0
exit 0
