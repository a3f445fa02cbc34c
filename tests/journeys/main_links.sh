#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The links of the main window by mouse: pages in the browser, the two dialogs, which stay in front, and an end that
# waits for the last window.
. "$(dirname "$0")/desktop.bash"
export DBUS_SESSION_BUS_ADDRESS=disabled:
start_desktop

# A browser that records the addresses.
mkdir "$folder/path"
printf '#!/bin/sh\necho "$1" >>"%s/opened"\n' "$folder" >"$folder/xdg-open"
chmod +x "$folder/xdg-open"
start_program env PATH="$folder/path"
opened() { [ "$(tail -n 1 "$folder/opened" | sed 's|^http://[^/]*||')" = "$1" ]; }
pid=$(sed -n 's/.* pid="\([^"]*\)".*/\1/p' "$folder/program/settings.xml" | head -1)

click_alerts
wait_until "no settings dialog" is_alerts_open
# The dialog gets the focus back whenever the main window receives it.
wmctrl -i -a "$window"
wait_until "the dialog isn't in front" is_active Alerts
picture main_links_settings
wmctrl -i -c "$(xdotool search --onlyvisible --name '^Alerts$')"
wait_until "the settings dialog stays" not is_alerts_open

# Without a browser a link does nothing, and can be clicked again.
click_at 30 203
wait_until "no browser was looked for" grep -q 'Unable to detect a web browser' "$folder/log"
mv "$folder/xdg-open" "$folder/path"
click_at 30 187
wait_until "no help page" opened /dbeacon/help.html
click_at 30 203
wait_until "no page of sound files" opened "/cgi-bin/dbeacon/sound/sound.pl?prod_string=$pid"
click_at 60 40
wait_until "no home page" opened ""
[ "$(wc -l <"$folder/opened")" = 3 ] || fail "opened: $(cat "$folder/opened")"

click_locations
wait_until "no list of places" is_list_open
list=$(xdotool search --onlyvisible --name 'Dusk Beacon: Location')
# The disabled main window can't be closed, and its links ignore clicks.
wmctrl -i -c "$window"
click_alerts
wmctrl -i -a "$window"
wait_until "the list isn't in front" is_active 'Dusk Beacon: Location'
picture main_links_places
is_on_screen "$title" >/dev/null || fail "the disabled window was closed"
is_alerts_open >/dev/null && fail "a disabled link took a click"
wmctrl -i -c "$list"
wait_until "the list stays" not is_list_open

# A prayer link; then the main window goes first, the process with the dialog.
click_at 170 384
wait_until "no settings dialog" is_alerts_open
wmctrl -i -c "$window"
wait_until "the main window stays" not is_on_screen "$title"
is_running "$program" || fail "ended with a dialog open"
wmctrl -i -c "$(xdotool search --onlyvisible --name '^Alerts$')"
ended_with 0
exit 0
