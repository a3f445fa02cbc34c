#!/bin/sh
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# launcher_test LAUNCHER BIN LIBRARY DATA: the launcher's cases, with a program in place of the real one that says where it
# was started. The three folders are those of the installation, relative to its prefix.
set -u
launcher=$1
work=$(mktemp -d)
chmod 755 "$work"
trap 'chmod -R u+w "$work"; umount "$work/full" 2>/dev/null; rm -rf "$work"' EXIT
passed=0
failed=0
check() { # check NAME COMMAND…
  name=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "failed: $name" >&2
  fi
}
contains() { case "$1" in *"$2"*) true ;; *) echo "got: $1" >&2; false ;; esac; }

prefix=$work/prefix
mkdir -p "$prefix/$2" "$prefix/$3" "$prefix/$4"
cp "$launcher" "$prefix/$2/dusk-beacon"
printf '#!/bin/sh\necho "started in $(pwd) with $# arguments"\n' >"$prefix/$3/DuskBeacon"
chmod 755 "$prefix/$2/dusk-beacon" "$prefix/$3/DuskBeacon"
shipped=$prefix/$4/settings.xml
echo '<root shipped="1"/>' >"$shipped"
program=$prefix/$2/dusk-beacon
run() { env -i PATH="$PATH" "$@" "$program" 2>&1; }
# Root may write anywhere: a refusal needs another account.
as_somebody() {
  if [ "$(id -u)" -eq 0 ]; then
    setpriv --reuid=65534 --regid=65534 --clear-groups env -i PATH="$PATH" "$@" "$program" 2>&1
  else
    run "$@"
  fi
}

home=$work/home
folder=$home/.local/share/dusk-beacon
mkdir "$home"
out=$(run HOME="$home")
check firstStart_startsInTheDataFolder contains "$out" "started in $folder with 0 arguments"
check firstStart_putsTheShippedFileThere cmp -s "$shipped" "$folder/settings.xml"
check firstStart_leavesNothingElse test "$(ls -A "$folder")" = settings.xml

ln -s "$program" "$work/link"
out=$(env -i PATH="$PATH" HOME="$home" "$work/link" 2>&1)
check linkToTheLauncher_startsTheProgram contains "$out" "started in $folder"
out=$(cd "$prefix/$2" && env -i PATH="$PATH" HOME="$home" sh dusk-beacon 2>&1)
check nameWithoutFolder_startsTheProgram contains "$out" "started in $folder"

echo '<root mine="1"/>' >"$folder/settings.xml"
run HOME="$home" >/dev/null
check secondStart_leavesTheUsersFile grep -q mine "$folder/settings.xml"
echo '<root shipped="2"/>' >"$shipped"
run HOME="$home" >/dev/null
check upgrade_leavesTheUsersFile grep -q mine "$folder/settings.xml"
printf '<root' >"$folder/settings.xml"
out=$(run HOME="$home")
check damagedFile_isLeftToTheProgram contains "$out" "started in $folder"
check damagedFile_staysAsItIs test "$(cat "$folder/settings.xml")" = "<root"
rm "$folder/settings.xml"
ln -s "$work/elsewhere" "$folder/settings.xml"
run HOME="$home" >/dev/null
check danglingLink_isTheUsersOwn test ! -e "$work/elsewhere"

out=$(run XDG_DATA_HOME="$work/data")
check dataHome_isObeyedWithoutHome contains "$out" "started in $work/data/dusk-beacon"
out=$(run HOME="$home" XDG_DATA_HOME=relative)
check relativeDataHome_isIgnored contains "$out" "started in $folder"

out=$(run)
check noHome_isAFailure test $? -eq 1
check noHome_saysSo contains "$out" "HOME is not set"

# Without a terminal a failure is shown in a box, by the first of three programs that is installed.
for box in zenity kdialog xmessage; do
  mkdir -p "$work/tools/$box"
  printf '#!/bin/sh\necho "%s $*" >>"%s"\n' "$box" "$work/boxes" >"$work/tools/$box/$box"
  chmod 755 "$work/tools/$box/$box"
done
boxes() { # boxes FOLDERS ENVIRONMENT…
  : >"$work/boxes"
  path=$1
  shift
  env -i PATH="$path:/usr/bin:/bin" "$@" "$program" >/dev/null 2>&1
  cat "$work/boxes"
}
tools=$work/tools
check box_byZenity contains "$(boxes "$tools/zenity:$tools/kdialog:$tools/xmessage" DISPLAY=:9)" \
  "zenity --error --title=Dusk Beacon --no-markup --text=HOME is not set"
check box_byKdialog contains "$(boxes "$tools/kdialog:$tools/xmessage" WAYLAND_DISPLAY=w)" \
  "kdialog --title Dusk Beacon --error HOME is not set"
check box_byXmessage contains "$(boxes "$tools/xmessage" DISPLAY=:9)" "xmessage -center Dusk Beacon: HOME is not set"
check box_oneOnly test "$(boxes "$tools/zenity:$tools/kdialog" DISPLAY=:9 | wc -l)" = 1
check box_noneInstalled_leavesTheLine contains "$(env -i PATH="$work/none" DISPLAY=:9 "$program" 2>&1)" "HOME is not set"
check box_noneWithoutADisplay test -z "$(boxes "$tools/zenity")"

mkdir "$work/readonly"
chmod 555 "$work/readonly"
out=$(as_somebody HOME="$work/readonly")
check readOnlyHome_isAFailure test $? -eq 1
check readOnlyHome_saysSo contains "$out" "can't be made"
check readOnlyHome_leavesNothing test -z "$(ls -A "$work/readonly")"
mkdir -p "$work/closed/.local/share/dusk-beacon"
chmod 555 "$work/closed/.local/share/dusk-beacon"
out=$(as_somebody HOME="$work/closed")
check readOnlyFolder_isAFailure test $? -eq 1
check readOnlyFolder_saysSo contains "$out" "can't be written to"

mkdir "$work/full"
if mount -t tmpfs -o size=4k,nr_inodes=16 tmpfs "$work/full" 2>/dev/null; then
  # A shipped file larger than the disk that it is to go to.
  head -c 20000 /dev/zero >"$shipped"
  out=$(run HOME="$work/full")
  check fullDisk_isAFailure test $? -eq 1
  check fullDisk_saysSo contains "$out" "Is the disk full?"
  check fullDisk_leavesNoSettings test -z "$(find "$work/full" -name '*settings*')"
  umount "$work/full"
else
  echo "skipped: fullDisk (no right to mount)"
fi

# Failures that need a second process in the folder or a full disk are simulated by tools that fail.
mkdir "$work/clumsy" "$work/cut" "$work/unnamed" "$work/vanished"
printf '#!/bin/sh\nexit 1\n' >"$work/clumsy/cat"
chmod 755 "$work/clumsy/cat"
out=$(run HOME="$work/cut" PATH="$work/clumsy:$PATH")
check cutCopy_isAFailure test $? -eq 1
check cutCopy_saysSo contains "$out" "Is the disk full?"
check cutCopy_leavesNothing test -z "$(find "$work/cut" -name '*settings*')"
mkdir "$work/interrupted"
printf '#!/bin/sh\necho half\nkill -TERM "$PPID"\n' >"$work/clumsy/cat"
out=$(run HOME="$work/interrupted" PATH="$work/clumsy:$PATH")
check interruptedCopy_isAFailure test $? -eq 1
check interruptedCopy_startsAndSaysNothing test -z "$out"
check interruptedCopy_leavesNothing test -z "$(find "$work/interrupted" -name '*settings*')"
rm "$work/clumsy/cat"
for tool in ln mv; do
  printf '#!/bin/sh\nexit 1\n' >"$work/clumsy/$tool"
  chmod 755 "$work/clumsy/$tool"
done
out=$(run HOME="$work/unnamed" PATH="$work/clumsy:$PATH")
check noName_isAFailure test $? -eq 1
check noName_saysSo contains "$out" "dusk-beacon: The settings can't be put into $work/unnamed/.local/share/dusk-beacon."
check noName_leavesNothing test -z "$(find "$work/unnamed" -type f)"
rm "$work/clumsy/ln" "$work/clumsy/mv"
printf '#!/bin/sh\nexec /bin/rm -r "%s"\n' "$work/vanished/.local/share/dusk-beacon" >"$work/clumsy/rm"
chmod 755 "$work/clumsy/rm"
out=$(run HOME="$work/vanished" PATH="$work/clumsy:$PATH")
check vanishedFolder_isAFailure test $? -eq 1
check vanishedFolder_saysSo contains "$out" "The folder $work/vanished/.local/share/dusk-beacon can't be entered."

echo '<root shipped="3"/>' >"$shipped"
mkdir "$work/one" "$work/two"
run HOME="$work/one" >/dev/null &
first=$!
run HOME="$work/two" >/dev/null
wait "$first"
check twoUsers_haveAFileEach cmp -s "$work/one/.local/share/dusk-beacon/settings.xml" \
  "$work/two/.local/share/dusk-beacon/settings.xml"
mkdir "$work/both"
run HOME="$work/both" >/dev/null &
first=$!
run HOME="$work/both" >/dev/null
wait "$first"
check twoStartsAtOnce_leaveOneFile test "$(ls -A "$work/both/.local/share/dusk-beacon")" = settings.xml
check twoStartsAtOnce_leaveItWhole cmp -s "$shipped" "$work/both/.local/share/dusk-beacon/settings.xml"

chmod 644 "$prefix/$3/DuskBeacon"
out=$(run HOME="$work/both")
check programThatMayNotStart_isAFailure test $? -eq 1
cant_start="dusk-beacon: The program PROGRAM can't be started."
without_folder() { echo "$1" | sed 's|program /.*/DuskBeacon|program PROGRAM|'; }
check programThatMayNotStart_saysSo test "$(without_folder "$out")" = "$cant_start"
rm "$prefix/$3/DuskBeacon"
out=$(run HOME="$work/both")
check missingProgram_isAFailure test $? -eq 1
check missingProgram_saysSo test "$(without_folder "$out")" = "$cant_start"

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
