#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# tray_rounds.sh FOLDER KIND [ROUNDS]: so many times minimise and Open with a real notification area, embedded or
# status_notifier. Memory and open files do not grow, and the icon stays the same.
case $2 in
embedded) . "$(dirname "$0")/embedded_tray.bash" ;;
status_notifier) . "$(dirname "$0")/status_notifier.bash" ;;
esac
rounds=${3:-1000}

start_tray
start_program
wait_until "no icon" has_icon
repeat() {
    local round
    for ((round = 1; round <= $1; ++round)); do
        minimise_to_tray
        choose_open
        wait_until "round $round: not back" is_on_screen "$title"
        wait_until "round $round: not in front" is_active "$caption"
    done
}
repeat 20
kilobytes=$(resident) files=$(open_files)
repeat "$rounds"
[ "$(count_icons)" = 1 ] || fail "$(count_icons) icons"
echo "figure: $rounds times minimise and Open, $2 tray: resident $kilobytes kB before, $(resident) kB after;" \
    "$files open files before, $(open_files) after"
[ $(($(resident) - kilobytes)) -le 1024 ] || fail "grown from $kilobytes to $(resident) kB"
[ "$(open_files)" -le "$files" ] || fail "from $files to $(open_files) open files"
picture "tray_rounds_$2"
choose_exit
ended_with 0
exit 0
