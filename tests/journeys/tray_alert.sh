#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# Minimised to the tray shortly before a prayer: the alert comes with its request and its sound, and nothing of it brings
# the main window back. Then Exit from the icon's menu.
[ -n "${DUSKBEACON_NETWORK:-}" ] || exec /usr/bin/python3 "$(dirname "$0")/own_network.py" "$0" "$@"
. "$(dirname "$0")/embedded_tray.bash"
need faketime pulseaudio pactl gst-launch-1.0

port=8750 # of the program's default base address
here=$(dirname "$0")
start /usr/bin/python3 "$here/stand_in_service.py" --port "$port" --set version_name= --set ad=
wait_until "no service" grep -qx "$port" "$folder/log"
start pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 \
    -L "module-native-protocol-unix auth-anonymous=1" -L "module-null-sink sink_name=nul"
export PULSE_SERVER=unix:$folder/pulse/native
wait_until "no sound server" pactl info

mkdir "$folder/program"
gst-launch-1.0 -q audiotestsrc num-buffers=4000 ! wavenc ! filesink location="$folder/program/call.wav" 2>>"$folder/log"
# Duhr in Makkah on the day that the clock shows.
prayer=12:28
sed -e 's/FirstRun="true" pid=""/FirstRun="false" pid="P-tray"/' \
    -e 's/<duhr .*/<duhr enabled="true" popup="true" mobil="false" play="true" audioFile="call.wav"\/>/' \
    "$here/../../data/settings.xml" >"$folder/program/settings.xml"

# set_clock TIME: of 20 March 2026, from now on.
set_clock() {
    printf '%+d\n' $(($(date -ud "2026-03-20 $1" +%s) - $(date +%s))) >"$folder/clock.new"
    mv "$folder/clock.new" "$folder/clock"
}
plays() { pactl list sink-inputs | grep -q "application.process.id = \"$program\""; }
has_alert() { alert=$(xdotool search --onlyvisible --name '^Dusk Beacon Alert$') && [ -n "$alert" ]; }
is_hidden() { ! is_on_screen "$title" >/dev/null && ! is_on_taskbar; }

start_tray
set_clock 09:30:00
start_program env LD_PRELOAD="$(echo /usr/lib/*/faketime/libfaketimeMT.so.1)" DONT_FAKE_MONOTONIC=1 \
    FAKETIME_DONT_FAKE_MONOTONIC=1 FAKETIME_NO_CACHE=1 FAKETIME_TIMESTAMP_FILE="$folder/clock" \
    http_proxy="http://127.0.0.1:$port" https_proxy="http://127.0.0.1:$port"
wait_until "no icon" has_icon
minimise_to_tray
grep -q prayerCall.pl "$folder/log" && fail "called before the prayer"

set_clock "$(date -ud "$prayer 3 seconds ago" +%T)"
wait_until "no alert" has_alert
wait_until "no sound" plays
call="prayerCall.pl?prod_string=P-tray&aid=SA-Makkah&pno=3&alert_type=Normal&ma=0&dist_string=dbeacon&time=$prayer&aid=SA-Makkah"
[ "$(grep -c prayerCall.pl "$folder/log")" = 1 ] || fail "not called once: $(grep prayerCall.pl "$folder/log")"
grep -qxF "/cgi-bin/dbeacon/$call" "$folder/log" || fail "called: $(grep prayerCall.pl "$folder/log")"
is_hidden || fail "the alert brought the main window back"
picture tray_alert

# The middle of its one button.
xdotool mousemove --window "$alert" 104 80 click 1
wait_until "the alert stays" not has_alert
plays || fail "the sound ended with the alert"
# The menu proves that all that the button may have brought about has been served.
open_menu
is_hidden || fail "the end of the alert brought the main window back"
picture tray_alert_menu
xdotool key Escape
wait_until "the menu stays" not menu_is_open

choose_exit
ended_with 0
has_icon && fail "the icon is still there"
plays && fail "the sound outlives the program"
exit 0
