# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# A desktop whose notification area, once started, embeds windows, and its icon by mouse. To be sourced.
. "$(dirname "$0")/desktop.bash"
need trayer xwininfo
export DBUS_SESSION_BUS_ADDRESS=disabled:
start_desktop

start_tray() {
    start trayer --edge bottom --align right --widthtype request --height 24
    tray=$last
    resting_place=
}
# The icon's window is a child of the tray's.
icon_place() {
    xwininfo -root -tree | sed -n 's/.*("DuskBeacon" "DuskBeacon") *22x22+[-0-9]*+[-0-9]* *+\([0-9]*\)+\([0-9]*\)$/\1 \2/p' | tail -1
}
has_icon() { [ -n "$(icon_place)" ]; }
count_icons() { xwininfo -root -tree | grep -c '("DuskBeacon" "DuskBeacon") *22x22+'; }
stop_tray() {
    kill "$tray"
    wait_until "an icon without a tray" not has_icon
}
# The panel grows, and the icon moves with it, for a while after it has come.
rests() {
    local place
    place=$(icon_place)
    sleep 0.2
    [ -n "$place" ] && [ "$place" = "$(icon_place)" ]
}
over_icon() {
    if [ -z "$resting_place" ] || [ "$resting_place" != "$(icon_place)" ]; then
        wait_until "the icon doesn't come to rest" rests
        resting_place=$(icon_place)
    fi
    local x y
    read -r x y <<<"$resting_place"
    xdotool mousemove $((x + 8)) $((y + 8))
}
open_menu() {
    over_icon
    wait_until "no menu" opens_menu_by xdotool click 3
}
choose() {
    open_menu
    xdotool key "$@"
    wait_until "the menu stays" not menu_is_open
}
choose_open() { choose Down Return; }
choose_exit() { choose Down Down Return; }
