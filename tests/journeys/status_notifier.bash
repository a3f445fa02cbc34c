# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# A desktop with a notification area of the StatusNotifier kind on a message bus of its own, and its icon as the host
# shows it. To be sourced.
if [ -z "${JOURNEY_BUS:-}" ]; then
    command -v dbus-run-session >/dev/null || exit 77
    /usr/bin/python3 -c 'import dbus, gi' 2>/dev/null || exit 77
    JOURNEY_BUS=1 exec dbus-run-session -- "$0" "$@"
fi
. "$(dirname "$0")/desktop.bash"
need xwininfo
start_desktop

start_tray() {
    rm -f "$folder/host.ready"
    start /usr/bin/python3 "$(dirname "$0")/status_notifier_host.py" "$folder/host"
    tray=$last
    wait_until "no notification area" test -e "$folder/host.ready"
}
stop_tray() {
    kill "$tray"
    wait_until "the notification area stays" not is_running "$tray"
}
# ask COMMAND...: the host runs the command; prints its answer.
ask() {
    rm -f "$folder/host.answer"
    echo "$*" >"$folder/host.part" && mv "$folder/host.part" "$folder/host.request"
    wait_until "no answer to $1" test -e "$folder/host.answer"
    cat "$folder/host.answer"
}
count_icons() { ask items; }
has_icon() { [ "$(count_icons)" = 1 ]; }
choose_open() { ask click _Open >/dev/null; }
choose_exit() { ask click E_xit >/dev/null; }
