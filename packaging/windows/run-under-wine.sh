#!/usr/bin/env bash
# Runs one Windows program under Wine, in a prefix of its own: nothing of the user's Wine is read or written.
#
#   run-under-wine.sh PROGRAM.exe [ARGUMENT...]
#   run-under-wine.sh --start PROGRAM.exe [ARGUMENT...]    starts Wine anew by running the program; it stays
#   run-under-wine.sh --stop PROGRAM.exe                   ends Wine and all that runs in it
#
#   KESTROVA_WINEPREFIX   the prefix (default: the folder "wine" beside the program's own folder)
#
# The first call makes the prefix, in some seconds; later ones start at once.
set -euo pipefail

[ $# -ge 1 ] || { sed -n '2,/^set/s/^# \{0,1\}//p' "$0"; exit 2; }

mode=
case $1 in --start | --stop) mode=$1; shift ;; esac
program=$(realpath "$1")
shift
export WINEPREFIX=${KESTROVA_WINEPREFIX:-$(dirname "$(dirname "$program")")/wine}
export WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all} LC_ALL=C.UTF-8
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="  # no downloads, no menu entries on the host
wine=$(command -v wine64 || command -v wine || true)
[ -n "$wine" ] || { echo "run-under-wine.sh: Wine is not installed (packages wine and wine64)" >&2; exit 127; }

# A prefix made without a display and with the host's folders kept out. Windows are shown at once instead of after the
# two seconds that Wine otherwise waits for a window manager.
make_prefix() {
  mkdir -p "$WINEPREFIX"
  DISPLAY='' "$wine" wineboot --init
  # Debian's Wine does not look where Debian puts Wine's own fonts: without these the windows' buttons are letters.
  cp /usr/share/wine/fonts/{marlett,tahoma,tahomabd}.ttf "$WINEPREFIX/drive_c/windows/Fonts/" || true
  "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
  "$wine" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f
  wineserver -k || true  # what the desktop's own programs began without a display they would go on without one
  touch "$WINEPREFIX/.complete"
}

if [ ! -e "$WINEPREFIX/.complete" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    [ -e "$WINEPREFIX/.complete" ] || { rm -rf "$WINEPREFIX" && make_prefix; }
  ) 9>"$WINEPREFIX.lock" </dev/null >"$WINEPREFIX.log" 2>&1 || { cat "$WINEPREFIX.log" >&2; exit 126; }
fi

if [ -n "$mode" ]; then
  wineserver -k || true  # an earlier one would hold on to a display that is gone
  [ $mode = --start ] || exit 0
  wineserver -p </dev/null >/dev/null 2>&1  # it stays, and would hold ours open
  # What Wine starts along stays too, and would hold open the output of the program that it came with.
  exec >/dev/null 2>&1 </dev/null
fi
exec "$wine" "$program" "$@"
