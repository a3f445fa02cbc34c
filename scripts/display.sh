# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Source this file from any POSIX shell to start a virtual display for the calling script.

# start_display FOLDER [OPTION…]: starts Xvfb with the options and waits for its display number, which is written into FOLDER.
# Sets DISPLAY, and `server` to the process id; the caller ends the process. False after twenty seconds without a number.
start_display() {
  display_file=$1/display
  shift
  # Without -noreset Xvfb resets when its last client disconnects, which also disconnects a client that connects meanwhile.
  Xvfb -displayfd 3 -nolisten tcp -noreset "$@" 3>"$display_file" >/dev/null 2>&1 &
  server=$!
  display_tries=0
  until [ -s "$display_file" ]; do
    display_tries=$((display_tries + 1))
    [ "$display_tries" -le 400 ] && kill -0 "$server" 2>/dev/null || return 1
    sleep 0.05
  done
  DISPLAY=:$(cat "$display_file")
  export DISPLAY
}
