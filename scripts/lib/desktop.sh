# shellcheck shell=bash
# Virtual desktops for Windows programs: display, window manager and a fresh Wine prefix each. For sourcing:
#
#   desktop_start COUNT      desktops of one's own; afterwards DISPLAY, WINEPREFIX and the like are those of the first one, and
#                            QUILLET_DESKTOPS is the file that tells CTest of all; with on_desktop, a test takes one of them
#   interruptible COMMAND…   runs a command so that a signal to the script ends it at once
#   alone_in FOLDER          ends the script with a sentence when another run is at work in this folder
#
# Whatever way the script that sources this ends, what was started here ends with it.
# Several runs can have desktops at the same time: each takes free display numbers and Wine prefixes in a new folder.
# Let Wine programs write into files, never into pipes: Wine's services inherit a pipe and hold it open.

desktop_cache=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/build
desktop_folder=
desktop_processes=()
# Now and then Wine cannot set a new process up (error 1359) when its address space is laid out at random: 2 of 6,720 starts on a
# busy machine, none of 6,720 with this. Where it is not allowed, it is done without.
desktop_wrapper=()
! setarch --addr-no-randomize true 2>/dev/null || desktop_wrapper=(setarch --addr-no-randomize)
interruptible_process=

desktop_fail()
{
  echo "desktop: $*" >&2
  exit 1
}

# The command is not the shell's foreground process, so a trap runs at once and not after its end; it has a
# process group of its own, so that its children can be ended with it.
interruptible()
{
  local result=0
  set -m
  "$@" </dev/null &
  set +m
  interruptible_process=$!
  wait "$interruptible_process" || result=$?
  interruptible_process=
  return "$result"
}

# Held until the script and all that works for it have ended. What merely stands by, should the script be killed, holds nothing: 8>&-.
alone_in()
{
  mkdir -p "$1"
  exec 8>"$1/run.lock"
  flock --nonblock 8 || desktop_fail "another run is at work in $1: wait for its end, or work in another clone"
}

# Waits until the command succeeds: wait_until SECONDS COMMAND…
wait_until()
{
  local deadline=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    ((SECONDS < deadline)) || return 1
    sleep 0.05
  done
}

# As many as the tests make good use of: one more than there are cores, since tests of windows mostly wait.
desktop_many()
{
  echo $(($(nproc) + 1))
}

desktop_start()
{
  local id ids=() entries=()
  for ((id = 0; id < $1; ++id)); do
    ids+=("$id")
    entries+=("{ \"id\": \"$id\" }")
  done
  desktop_folder=$(mktemp -d "${TMPDIR:-/tmp}/quillet-desktop.XXXXXXXX")
  desktop_settings
  # Step by step all of them, since each step takes its time.
  for id in "${ids[@]}"; do desktop_start_display "$id"; done
  for id in "${ids[@]}"; do desktop_start_window_manager "$id"; done
  for id in "${ids[@]}"; do desktop_start_wine "$id"; done
  for id in "${ids[@]}"; do
    wait_until 180 grep ready "$desktop_folder/$id/resident.log" ||
      desktop_fail "Wine does not start: $(tail -n 1 "$desktop_folder/$id/resident.log")"
  done
  desktop_choose 0
  export QUILLET_DESKTOPS=$desktop_folder/desktops.json CTEST_PARALLEL_LEVEL=${#ids[@]}
  local IFS=,
  echo "{ \"version\": { \"major\": 1, \"minor\": 0 }, \"local\": [{ \"desktop\": [${entries[*]}] }] }" >"$QUILLET_DESKTOPS"
}

# What all desktops of a run have in common.
desktop_settings()
{
  # A cookie, without which no other user of the machine gets at the display. It fits every display: family, address and number
  # say "any"; then come name and value, each after its length.
  {
    printf '\377\377\0\0\0\0\0\022MIT-MAGIC-COOKIE-1\0\020'
    head -c 16 /dev/urandom
  } >"$desktop_folder/cookie"
  export XAUTHORITY=$desktop_folder/cookie

  # The distribution's settings, whatever the user's own are, but without hot keys (all keys belong to the programs), without
  # menus on the background (they start programs), and with the buttons of a dialog's title bar only, which leave room for the title.
  sed -e '/<keyboard>/,/<\/keyboard>/d' -e '/<context name="Root">/,/<\/context>/d' -e '/<menu>$/,/<\/menu>$/d' \
    -e 's|<titleLayout>.*<|<titleLayout>NLC<|' /etc/xdg/openbox/rc.xml >"$desktop_folder/openbox.xml"

  export WINEARCH=win64 WINEDEBUG=-all
  # No questions about optional components, no debugger that prints a page when a program crashes, no
  # entries in the user's own menus.
  export WINEDLLOVERRIDES='mscoree,mshtml=;winedbg.exe,winemenubuilder.exe=d'
  # Wine 10 of Debian 13 aborts when it is set.
  unset TMPDIR
  # A UTF-8 locale that every Debian has: Wine reads program arguments by it. Windows' ANSI code page is 1252 then.
  export LC_ALL=C.UTF-8
}

# Programs that start from now on are on this desktop: desktop_choose ID
desktop_choose()
{
  DISPLAY=:$(<"$desktop_folder/$1/display")
  export DISPLAY WINEPREFIX=$desktop_folder/$1/wine
}

# With -displayfd the server looks for a free number itself and writes it when it is ready. Without -noreset it would
# start anew whenever its last client leaves, and refuse the one that comes just then. It listens in the abstract name space, too,
# where two servers that look at the same time find out about each other.
desktop_start_display()
{
  local folder=$desktop_folder/$1
  mkdir "$folder"
  Xvfb -displayfd 3 -screen 0 "${QUILLET_SCREEN:-1024x768x24}" -auth "$XAUTHORITY" -nolisten tcp -noreset \
    3>"$folder/display" >"$folder/xvfb.log" 2>&1 8>&- &
  desktop_processes+=($!)
}

desktop_start_window_manager()
{
  local folder=$desktop_folder/$1
  wait_until 30 test -s "$folder/display" ||
    desktop_fail "the display server does not start: $(tail -n 1 "$folder/xvfb.log")"
  desktop_choose "$1"
  openbox --sm-disable --config-file "$desktop_folder/openbox.xml" >"$folder/openbox.log" 2>&1 8>&- &
  desktop_processes+=($!)
}

desktop_start_wine()
{
  local folder=$desktop_folder/$1
  desktop_choose "$1"
  # A question that only a window manager which is ready lets succeed.
  wait_until 30 xdotool get_num_desktops ||
    desktop_fail "the window manager does not start: $(tail -n 1 "$folder/openbox.log")"
  desktop_new_prefix || desktop_fail "Wine cannot set up its folder: $(tail -n 1 "$desktop_folder/wineboot.log")"
  # The first program reports and stays until the desktop ends: Wine's services end with the last program, and the first
  # window of every program after that would wait ten seconds for them in vain. Before that it has rundll32 open a window,
  # for which Wine starts the desktop's own process: started by a test, it would end with it.
  mkfifo "$folder/never"
  "${desktop_wrapper[@]}" wine cmd /c 'rundll32 user32.dll,GetDesktopWindow& echo ready& set /p line=' \
    <>"$folder/never" >"$folder/resident.log" 2>&1 8>&- &
  desktop_processes+=($!)
}

# A new prefix is the same every time and takes Wine four seconds of computing, so it is made once and copied. It holds
# Wine's own programs and the user's folder: each version of Wine and each user have one.
desktop_new_prefix()
{
  local made
  made=$desktop_cache/$(wine --version | tr -cd '[:alnum:].-')-win10-of-$(id -un)
  mkdir -p "$desktop_cache"
  # Who comes meanwhile waits. What Wine starts must not hold the lock, since its server outlives the call.
  (
    flock --timeout 180 9 || exit
    [[ -d $made ]] || desktop_make_prefix "$made" 8>&- 9>&-
  ) 9>"$made.lock" || return
  cp --archive "$made" "$WINEPREFIX" 2>"$desktop_folder/wineboot.log"
}

# All of it is there in the end, or nothing: desktop_make_prefix FOLDER
desktop_make_prefix()
{
  timeout 180 "${desktop_wrapper[@]}" wine wineboot --init >"$desktop_folder/wineboot.log" 2>&1 || return
  # As old as it has to be for the program; Wine 8 begins as Windows 7.
  timeout 60 "${desktop_wrapper[@]}" wine winecfg -v win10 >>"$desktop_folder/wineboot.log" 2>&1 || return
  desktop_end_wine || return # which writes the registry
  rm -rf "$WINEPREFIX/wineserver" "$1.new"
  mv "$WINEPREFIX" "$1.new" && mv "$1.new" "$1"
}

# Text at this many dots per inch (96: as usual) for programs that start from now on: desktop_scale DPI
desktop_scale()
{
  wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f >"$desktop_folder/reg.log" 2>&1
}

# Ends Wine on the chosen desktop; its result tells whether it has ended. Debian's Wine keeps its server's socket in a folder of
# /tmp, writes the folder's name into the prefix and leaves both behind.
desktop_end_wine()
{
  local result=0 name
  timeout 30 wineserver --kill || true
  timeout 30 wineserver --wait || result=$?
  name=$(cat "$WINEPREFIX/wineserver" 2>/dev/null) || true
  [[ $name != wine-?????? ]] || rm -rf "/tmp/$name"
  return "$result"
}

# Ends what runs, the desktops included.
desktop_stop()
{
  local result=$?
  trap - EXIT
  trap '' INT TERM HUP
  if [[ -n $interruptible_process ]]; then
    kill -- "-$interruptible_process" 2>/dev/null || true
  fi
  local prefix
  for prefix in "${desktop_folder:-/none}"/*/wine; do
    [[ ! -d $prefix ]] || WINEPREFIX=$prefix desktop_end_wine || true
  done
  # Last started, first ended.
  local index
  for ((index = ${#desktop_processes[@]} - 1; index >= 0; --index)); do
    kill "${desktop_processes[index]}" 2>/dev/null || true
    wait "${desktop_processes[index]}" 2>/dev/null || true
  done
  desktop_processes=()
  [[ -z $desktop_folder ]] || rm -rf "$desktop_folder"
  desktop_folder=
  return "$result"
}

trap desktop_stop EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
