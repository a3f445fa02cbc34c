# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# For sourcing: starts a virtual display without a network and measures the time from a program's start to its window.
folder=$(mktemp -d)
server=""
started=""
end() {
  [ -z "$started" ] || kill "$started" 2>/dev/null || true
  [ -z "$server" ] || kill "$server" 2>/dev/null || true
  rm -rf "$folder"
}
trap end EXIT
trap 'exit 1' INT TERM

# shellcheck source=../scripts/display.sh
. "$(dirname "${BASH_SOURCE[0]}")/../scripts/display.sh"
start_display "$folder" -screen 0 1280x960x24 || { echo "$0: no virtual display" >&2; exit 1; }
export QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled: LC_ALL=C.UTF-8
# A closed port as the proxy, so that no time is lost on the network.
export http_proxy=http://127.0.0.1:9 https_proxy=http://127.0.0.1:9

# settings_of FILE: the file as it is after the first start, so that the program neither asks the service for anything nor
# opens another window.
settings_of() { sed -e 's/FirstRun="true"/FirstRun="false"/' -e 's/pid=""/pid="bench"/' "$1"; }
# shown PROGRAM TITLE: starts it and sets the tenths of milliseconds until its window is on the screen.
shown() {
  local begin
  begin=$(date +%s%N)
  "$1" 2>/dev/null &
  started=$!
  # Polled without a pause: xdotool itself polls only twice a second.
  until xdotool search --onlyvisible --name "$2" >/dev/null 2>&1; do
    kill -0 "$started" || { echo "$0: $1 has ended" >&2; exit 1; }
  done
  result=$((($(date +%s%N) - begin) / 100000))
}
stop() {
  kill "$started"
  wait "$started" 2>/dev/null || true
  started=""
}
median() { sort -n | awk '{v[NR]=$1} END {print v[int((NR+1)/2)]}'; }
