#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# The program at rest has not loaded the libraries that it has not used: the plugins of picture formats other than PNG,
# and GStreamer, which a sound loads.
. "$(dirname "$0")/desktop.bash"
export DBUS_SESSION_BUS_ADDRESS=disabled:
start_desktop
start_program
for unused in /imageformats/ /libgstreamer-; do
    [ -z "$(grep -F "$unused" "/proc/$program/maps")" ] || fail "$unused is loaded"
done
exit 0
