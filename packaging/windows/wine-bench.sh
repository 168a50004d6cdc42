# Sourced by the tests that use the Windows programs as an operator does, under Wine: prefixes of their own, and a
# display of their own with a window manager and a tray. Expects $build, the build folder; gives $folder, which goes
# in the end. Exit code 77 where something is missing.
bench=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
for tool in wine Xvfb metacity trayer xdotool xwininfo xprop import unzip makensis; do
  command -v $tool >/dev/null || { echo "skipped: there is no $tool"; exit 77; }
done

folder=$(mktemp -d)
prefixes=()
helpers=()
clean_up() {
  local prefix
  for prefix in "${prefixes[@]}"; do WINEPREFIX=$prefix timeout 20 wineserver -k || true; done
  [ ${#helpers[@]} = 0 ] || kill "${helpers[@]}" 2>/dev/null || true
  rm -rf "$folder"
}
trap clean_up EXIT
# The last screen stays, in the build folder.
fail() {
  echo "FAILED at line ${BASH_LINENO[-2]}: $*" >&2
  import -window root "$build/$(basename "$0" .sh)-failed.png" || true
  if [ -n "${program:-}" ] && ! kill -0 "$program" 2>/dev/null; then echo "the program has ended: $(cat "$folder/output")" >&2; fi
  exit 1
}
# Each pattern is in the text, on a line of its own.
has() { local text=$1 pattern; shift; for pattern; do grep -qE -- "$pattern" <<<"$text" || fail "no $pattern in: $text"; done; }
# within SECONDS COMMAND...: waits until the command answers 0.
within() {
  local end=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    [ $SECONDS -lt $end ] || fail "not in time: $*"
    sleep 0.1
  done
}
not() { ! "$@"; }
trap 'fail "a command answered $?"' ERR

unset KESTROVA_HOME KESTROVA_REGISTRY WAYLAND_DISPLAY
# The server chooses the number of the display, so that tests that start together never choose the same.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$folder/display" >/dev/null 2>&1 &
helpers+=($!)
within 20 test -s "$folder/display"
DISPLAY=:$(cat "$folder/display")
export DISPLAY
unset XAUTHORITY
metacity >/dev/null 2>&1 &
helpers+=($!)
within 20 eval 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
trayer --edge top --align right --widthtype request >/dev/null 2>&1 &
helpers+=($!)
within 20 xdotool search --class trayer

# new_prefix NAME: a clean Windows, into which all that follows goes. $c is its drive C. Windows are the window
# manager's, as on a desktop.
new_prefix() {
  export KESTROVA_WINEPREFIX=$folder/$1
  c=$KESTROVA_WINEPREFIX/drive_c
  prefixes+=("$KESTROVA_WINEPREFIX")
  wine "$build/bin/kestrova-cli.exe" --version >/dev/null # the first program makes it
  # Made without a display, it would go on without; and it keeps a key's access only while it runs.
  WINEPREFIX=$KESTROVA_WINEPREFIX wineserver -k
  WINEPREFIX=$KESTROVA_WINEPREFIX wineserver -p
  reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d Y /f >/dev/null
}
# wine PROGRAM ARGUMENT...: for at most two minutes.
wine() { timeout -k 5 120 "$bench/run-under-wine.sh" "$@"; }
reg() { wine "$c/windows/system32/reg.exe" "$@" | tr -d '\r'; }
c=$folder # until there is a prefix
reg_has() { wine "$c/windows/system32/reg.exe" query "$1"; }
product='HKLM\Software\Tamsel\Kestrova'

# start PROGRAM ARGUMENT...: leaves it running as $program.
start() {
  wine "$@" >"$folder/output" 2>&1 &
  program=$!
}
# ends WITH: the program ends by itself, with that exit code.
ends() {
  local code=0
  within 30 not kill -0 "$program"
  wait "$program" || code=$?
  [ $code = "$1" ] || fail "the program ended with $code: $(cat "$folder/output")"
}

# Both may wait for ever for a window that has gone; xwininfo, given none, for a click.
xdotool() { timeout 8 xdotool "$@"; }
xwininfo() { timeout 8 xwininfo "$@"; }

windows() { xdotool search --onlyvisible --name "$1" 2>/dev/null | wc -l; }
shows() { [ "$(windows "$1")" = "${2:-1}" ]; }  # TITLE [HOW MANY]
# Gives the keyboard to the newest window of that title: Wine does not always take it with a window that follows
# another one, as the main window follows the splash.
activate() { within 10 on_newest "$1" windowactivate --sync; }
# TITLE ACTION: a window may go between being found and the action.
on_newest() { xdotool "${@:2}" "$(xdotool search --onlyvisible --name "$1" | sort -n | tail -n 1)"; }
# The active window's title fits.
active() { xdotool getactivewindow getwindowname | grep -qE "$1"; }
keys() { xdotool key --delay 50 "$@"; }
text() { xdotool type --delay 20 "$1"; }
# What Wine docked into the tray, which is shown only while something is in it.
tray_icon() {
  local tray
  tray=$(xdotool search --onlyvisible --class trayer | head -n 1)
  [ -n "$tray" ] || return 1
  xwininfo -tree -id "$tray" | awk '/"explorer.exe"/ {print $1; found = 1} END {exit !found}'
}
passes() { cat "$1"/*.kvl 2>/dev/null | grep -c '^\[END CHECK\]'; }
has_passed() { [ "$(passes "$1")" -ge "$2" ]; }  # LOG FOLDER, HOW OFTEN
