# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# A desktop of its own for one journey: a display, a window manager, a folder with a copy of the program. To be
# sourced; takes the folder with the built program as first argument. Everything that is started here ends with the
# script, by its process id.
set -u
# shellcheck source=../../scripts/display.sh
. "$(dirname "$0")/../../scripts/display.sh"

bin=$1
caption='Dusk Beacon v1.0.5'
title="^$caption\$"
folder=$(mktemp -d)
started=()

fail() {
    echo "FAILED: $*" >&2
    cat "$folder/log" >&2
    [ -z "${DISPLAY:-}" ] || picture "failure_$(basename "$0" .sh)"
    exit 1
}
# picture NAME: keeps one of the screen, where pictures are to be kept.
picture() {
    [ -n "${JOURNEY_PICTURES:-}" ] || return 0
    mkdir -p "$JOURNEY_PICTURES"
    import -window root "$JOURNEY_PICTURES/$1.png" 2>/dev/null
}
tidy_up() {
    for process in "${started[@]}"; do
        kill "$process" 2>/dev/null
        # A stopped process ends after SIGCONT.
        kill -CONT "$process" 2>/dev/null
    done
    wait 2>/dev/null
    rm -rf "$folder"
}
trap tidy_up EXIT

# wait_until FAILURE COMMAND...: waits until the command succeeds, at most JOURNEY_PATIENCE or 20 seconds.
wait_until() {
    local what=$1 deadline=$((SECONDS + ${JOURNEY_PATIENCE:-20}))
    shift
    until "$@" >/dev/null 2>&1; do
        [ "$SECONDS" -lt "$deadline" ] || fail "$what"
        sleep 0.05
    done
}
need() {
    for tool in "$@"; do
        command -v "$tool" >/dev/null || { echo "no $tool here"; exit 77; }
    done
}
start() {
    "$@" >>"$folder/log" 2>&1 &
    started+=($!)
    last=$!
}
not() { ! "$@"; }
is_running() { kill -0 "$1" 2>/dev/null; }

start_desktop() {
    unset XDG_STATE_HOME
    need Xvfb openbox xdotool wmctrl xprop import
    start_display "$folder" -screen 0 1024x768x24 || fail "no display"
    started+=("$server")
    export QT_QPA_PLATFORM=xcb NO_AT_BRIDGE=1 HOME=$folder XDG_RUNTIME_DIR=$folder LC_ALL=C.UTF-8 TZ=UTC
    # No request of a journey leaves the computer.
    export http_proxy=http://127.0.0.1:9 https_proxy=http://127.0.0.1:9 no_proxy=localhost,127.0.0.1
    start openbox
    wait_until "no window manager" wmctrl -m
}
# start_program [COMMAND...]: the program, by way of a command that starts it.
start_program() {
    mkdir -p "$folder/program"
    cp "$bin/DuskBeacon" "$bin/DuskBeacon.DBN" "$folder/program/"
    [ -e "$folder/program/settings.xml" ] ||
        sed 's/FirstRun="true"/FirstRun="false"/' "$(dirname "$0")/../../data/settings.xml" >"$folder/program/settings.xml"
    start "$@" "$folder/program/DuskBeacon"
    program=$last
    wait_until "no main window" finds_main_window
    # The window manager moves a new window to its place before it makes it the active one.
    wait_until "the main window isn't active" is_active "$caption"
}
# A search fails if a window disappears during it, as the splash does.
finds_main_window() { window=$(xdotool search --onlyvisible --name "$title") && [ -n "$window" ]; }
is_on_screen() { xdotool search --onlyvisible --name "$1"; }
is_on_taskbar() { wmctrl -l | grep -qF "$caption"; }
is_minimised() { xprop -id "$window" _NET_WM_STATE | grep -q HIDDEN; }
is_active() { xdotool getactivewindow getwindowname | grep -qx "$1"; }
# Two links of the main window.
click_locations() { click_at 30 155; }
click_alerts() { click_at 30 171; }
is_alerts_open() { is_on_screen '^Alerts$'; }
is_list_open() { is_on_screen 'Dusk Beacon: Location'; }
# A pop-up menu of the program, of the size of the tray icon's.
menu_is_open() { xwininfo -root -children | grep '"DuskBeacon"' | grep -qE ' 1[0-9][0-9]x[3-9][0-9]\+'; }
# opens_menu_by COMMAND...: false if no menu opens. The hiding of a window may close a menu that opens at the same instant;
# then call it again.
opens_menu_by() {
    menu_is_open && return
    "$@" >/dev/null
    for look in 1 2 3 4 5 6 7 8 9 10; do
        menu_is_open && return
        sleep 0.05
    done
    return 1
}
close_window() { wmctrl -i -c "$(xdotool search --onlyvisible --name "$1")"; }
minimise_to_tray() {
    xdotool windowminimize "$window"
    wait_until "still on the screen" not is_on_screen "$title"
    wait_until "still on the taskbar" not is_on_taskbar
}
# Where no icon could bring the window back it stays on the taskbar, and comes back from there.
minimise_to_taskbar() {
    xdotool windowminimize "$window"
    wait_until "not minimised" is_minimised
    # Longer than hiding would need: the program may wait half a second for a panel that doesn't answer.
    sleep 1
    is_on_taskbar || fail "hidden although no icon could bring it back"
    wmctrl -i -a "$window"
    wait_until "not back from the taskbar" not is_minimised
    wait_until "back, but not in front" is_active "$caption"
}
# Kilobytes and open files of the program.
resident() { sed -n 's/^VmRSS:[^0-9]*\([0-9]*\).*/\1/p' "/proc/$program/status"; }
open_files() { ls "/proc/$program/fd" | wc -l; }
# click_at X Y: a place in the main window.
click_at() { xdotool mousemove --window "$window" "$1" "$2" click 1; }
# ended_with CODE: the program has ended and answers that code.
ended_with() {
    wait_until "the program goes on" not is_running "$program"
    wait "$program"
    local code=$?
    [ "$code" -eq "$1" ] || fail "the program ended with $code, not $1"
}
