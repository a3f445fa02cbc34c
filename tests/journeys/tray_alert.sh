#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# Minimised to the tray shortly before a prayer: the alert comes with its request and its sound, and does not bring
# the main window back. Then Exit from the icon's menu. Then an alert while a registration is pending: its popup and the
# message that the reply brings can both be used, and so can the icon's menu.
[ -n "${DUSKBEACON_NETWORK:-}" ] || exec /usr/bin/python3 "$(dirname "$0")/own_network.py" "$0" "$@"
. "$(dirname "$0")/embedded_tray.bash"
need curl faketime pulseaudio pactl gst-launch-1.0

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
    -e 's/mobileDID="" mobilePC=""/mobileDID="D-815" mobilePC="4711"/' \
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

# fault HOW: of the reply to a registration.
fault() { curl -sS --noproxy '*' -o "$folder/control" "http://127.0.0.1:$port/control?fault=confirmSignup.pl=$1"; }
has_message() { message=$(xdotool search --onlyvisible --name '^Dusk Beacon$') && [ -n "$message" ]; }
# over WINDOW X Y...: the windows under the mouse at those positions of a window; only this window if it is uncovered.
over() {
    printf "mousemove --window $1 %s %s getmouselocation " "${@:2}" | xargs xdotool | sed 's/.*window://' | sort -u
}
are_apart() {
    eval "$(xdotool getwindowgeometry --shell "$message" | grep -E '^(WIDTH|HEIGHT)=')"
    # The button is in the lowest row of the message.
    local row=$((HEIGHT - 24)) over_alert over_message
    over_alert=$(over "$alert" 81 73 128 73 104 80 81 88 128 88)
    over_message=$(over "$message" 8 $row $((WIDTH / 2)) $row $((WIDTH - 8)) $row)
    [ "$(wc -w <<<"$over_alert $over_message")" = 2 ] && [ "$over_alert" != "$over_message" ]
}
# In the middle of its one button.
click_ok_of_alert() { xdotool mousemove --window "$alert" 104 80 click 1; }
start_at() {
    set_clock "$1"
    start_program env LD_PRELOAD="$(echo /usr/lib/*/faketime/libfaketimeMT.so.1)" DONT_FAKE_MONOTONIC=1 \
        FAKETIME_DONT_FAKE_MONOTONIC=1 FAKETIME_NO_CACHE=1 FAKETIME_TIMESTAMP_FILE="$folder/clock" \
        http_proxy="http://127.0.0.1:$port" https_proxy="http://127.0.0.1:$port"
    wait_until "no icon" has_icon
}

start_tray
start_at 09:30:00
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

click_ok_of_alert
wait_until "the alert stays" not has_alert
plays || fail "the sound ended with the alert"
# The menu proves that all events of the button have been served.
open_menu
is_hidden || fail "the end of the alert brought the main window back"
picture tray_alert_menu
xdotool key Escape
wait_until "the menu stays" not menu_is_open

choose_exit
ended_with 0
has_icon && fail "the icon is still there"
plays && fail "the sound outlives the program"

start_at 09:30:00
click_alerts
wait_until "no settings dialog" is_alerts_open
wait_until "the settings dialog isn't in front" is_active Alerts
fault slow
dialog=$(xdotool search --onlyvisible --name '^Alerts$')
register() {
    xdotool mousemove --window "$dialog" 110 14 click 1 mousemove --window "$dialog" 197 268 click 1
    sleep 0.2
    grep -q confirmSignup.pl "$folder/log"
}
wait_until "no registration" register
close_window '^Alerts$'
wait_until "the settings dialog stays" not is_alerts_open
set_clock "$(date -ud "$prayer 3 seconds ago" +%T)"
wait_until "no alert beside a registration" has_alert
has_message && fail "the reply had come before the alert"
fault ok
wait_until "no message" has_message
wait_until "the alert and the message cover each other's buttons" are_apart
picture tray_alert_message
click_ok_of_alert
wait_until "the alert stays beside the message" not has_alert
click_locations
open_menu
is_list_open >/dev/null && fail "the end of the alert unblocked the main window"
has_message || fail "the message went with the alert"
picture tray_alert_message_menu
choose_exit
ended_with 0
grep -qF 'mobileDID="D-815" mobilePC="4711" mobileConfirm="1"' "$folder/program/settings.xml" || fail "not stored"
exit 0
