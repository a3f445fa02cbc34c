# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=sh
#
# What the scripts of this folder share.

# Sets $libraries: the folder of the libraries, built if need be. DUSKBEACON_WINDOWS_LIBRARIES names another one.
find_libraries() {
  libraries=${DUSKBEACON_WINDOWS_LIBRARIES:-$(scripts/windows/libraries)}
}

# start_wine FOLDER: a Wine of its own in FOLDER, with the DLLs of Qt. stop_wine ends all that runs in it.
start_wine() {
  export WINE=/usr/lib/wine/wine64 WINEPREFIX="$1/wine" WINEDEBUG=-all WINEPATH="Z:$libraries/qt/bin"
  # Without Mono and Gecko, which Wine would offer to download.
  export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
  timeout 120 "$WINE" wineboot -i >/dev/null 2>&1
}
stop_wine() {
  /usr/lib/wine/wineserver -k || true
  # Until nothing holds the folder any more.
  timeout 30 /usr/lib/wine/wineserver -w || true
}
