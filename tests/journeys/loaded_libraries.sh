#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The program at rest has not loaded the libraries that it has not used: the plugins of picture formats other than PNG,
# and GStreamer, which a sound loads.
. "$(dirname "$0")/desktop.bash"
export DBUS_SESSION_BUS_ADDRESS=disabled:
start_desktop
start_program
# Some of the work of the start comes after the window.
for _ in 1 2 3 4 5; do
    sleep 1
    for unused in /imageformats/ /libgstreamer-; do
        [ -z "$(grep -F "$unused" "/proc/$program/maps")" ] || fail "$unused is loaded"
    done
done
exit 0
