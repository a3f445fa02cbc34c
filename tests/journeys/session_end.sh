#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The session ends: by each signal, while loading, while running, with a dialog over the disabled window, and under a
# message box. The program ends normally, quickly, and writes nothing.
. "$(dirname "$0")/desktop.bash"
export DBUS_SESSION_BUS_ADDRESS=disabled:
start_desktop

end_by() {
    local before
    before=$(sha256sum "$folder/program/settings.xml"; stat -c %Y "$folder/program/settings.xml")
    local began=$SECONDS
    kill -s "$1" "$program"
    ended_with 0
    [ $((SECONDS - began)) -le 8 ] || fail "$1 took too long"
    [ "$before" = "$(sha256sum "$folder/program/settings.xml"; stat -c %Y "$folder/program/settings.xml")" ] ||
        fail "$1: settings.xml was written"
    [ "$(cd "$folder/program" && ls)" = $'DuskBeacon\nDuskBeacon.DBN\nsettings.xml\ntemp.html' ] || fail "$1 left files"
}

# A background process of a shell ignores INT, a process started by nohup ignores HUP.
not_ignored=(env --default-signal=INT,HUP)
for signal in TERM INT HUP; do
    start_program "${not_ignored[@]}"
    end_by "$signal"
done

# Started to outlive its terminal.
start_program nohup
kill -s HUP "$program"
kill -s INT "$program"
click_locations
wait_until "no list of places: ended with the terminal" is_list_open
is_running "$program" || fail "ended with the terminal"
end_by TERM

# While it still loads.
start "$folder/program/DuskBeacon"
program=$last
wait_until "no window yet" xdotool search --onlyvisible --class DuskBeacon
picture session_end_loading
end_by TERM

# Under the list of places, where the main window is disabled and refuses to close.
start_program
click_locations
wait_until "no list of places" is_list_open
wmctrl -i -c "$window"
picture session_end_places
end_by TERM

# Under a question.
start_program
click_locations
wait_until "no list of places" is_list_open
wait_until "the list isn't in front" is_active 'Dusk Beacon: Location'
xdotool key Tab Tab space
wait_until "no question" is_active 'Dusk Beacon'
picture session_end_question
end_by TERM
exit 0
