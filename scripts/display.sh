# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# To be sourced, by any shell: a virtual display of the caller's own.

# start_display FOLDER [OPTION…]: starts one and waits for its number, which it writes into the folder. Sets DISPLAY, and
# `server` to the process, which is the caller's to end. False if none has come within twenty seconds.
start_display() {
  display_file=$1/display
  shift
  # Without -noreset the display starts over whenever its last client leaves, and takes along whoever comes just then.
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
