#!/bin/bash
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# with_screen_reader.sh PROGRAM...: runs it on a display and a message bus of its own, with the accessibility bus up as
# a screen reader would have it. Everything that is started here ends with the script.
set -eu

runtime=$(mktemp -d)
server=
trap 'kill $server 2>/dev/null; wait; rm -rf "$runtime"' EXIT
# shellcheck source=../../scripts/display.sh
. "$(dirname "$0")/../../scripts/display.sh"
start_display "$runtime" -screen 0 1024x768x24 || { echo "$0: no virtual display" >&2; exit 1; }
export XDG_RUNTIME_DIR=$runtime
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
unset DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS NO_AT_BRIDGE
# The accessibility bus must be running before the program looks for it.
dbus-run-session -- sh -c '
    dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress >/dev/null
    exec "$@"' sh "$@"
