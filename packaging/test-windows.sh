#!/usr/bin/env bash
# test-windows.sh BUILD: makes both packages of the Windows programs built in BUILD and uses them under Wine, each in
# a clean Windows: the archive unpacked, the installer run silently, over an older version, beside a running
# program, and taken away again.
set -euo pipefail
build=$(cd "$1" && pwd)
source "$(dirname "$0")/windows/wine-bench.sh"
access() { wine "$build/bin/key-access.exe" 'MACHINE\Software\Tamsel\Kestrova' "$@" | tr -d '\r'; }
stored() { reg query "$product\\Address" /s 2>&1 || echo "reg answered $?"; }
has_its_site() { local all; all=$(stored); [ "$(grep -c 'URL  *REG_SZ' <<<"$all")" = 1 ] || fail "the list is gone: $all"; }
# The main window is up, and its icon in the tray.
opens() { start "$1"; within 60 tray_icon; within 20 shows '^Kestrova$' 1; activate '^Kestrova$'; }
# Wine may lose a click while it draws its icon.
restored() {
  xdotool mousemove --sync "$(xwininfo -id "$(tray_icon)" | awk '/Absolute.*X/ {print $NF + 8}')" 12 click 1
  sleep 1
  shows '^Kestrova$' 1
}
closes() { activate '^Kestrova$'; keys alt+F4; ends 0; within 10 not tray_icon; }

(cd "$build" && cpack -B "$folder/made" >"$folder/cpack.log" 2>&1) || fail "cpack: $(cat "$folder/cpack.log")"
archive=$(echo "$folder"/made/Kestrova-*-windows-portable.zip)
setup=$(echo "$folder"/made/Kestrova-*-windows-setup.exe)

# --- the archive
new_prefix portable
unzip -q "$archive" -d "$c"
home=$(echo "$c"/Kestrova-*)
contents=$(cd "$home" && find . -type f | sort)
has "$contents" '^./(kestrova|kestrova-cli|LogView|KVTour)\.exe$' '^./Kestrova\.hlp$' '^./Messages/Unknown\.txt$' \
  '^./(README|LICENSE|CHANGELOG)\.txt$'
if grep -vE '^./(Messages/[A-Za-z0-9_-]+\.txt|(kestrova|kestrova-cli|LogView|KVTour)\.exe|Kestrova\.hlp|(README|LICENSE|CHANGELOG)\.txt)$' \
  <<<"$contents"; then fail "what is not for operators is in the archive"; fi
for file in README LICENSE CHANGELOG; do
  [ "$(grep -c $'\r$' "$home/$file.txt")" = "$(wc -l <"$home/$file.txt")" ] || fail "$file.txt: line ends"
done
"$bench/test-imports.sh" "$home"/*.exe

# A crash of what is installed can be read with the symbols.
unzip -q "$folder"/made/Kestrova-*-windows-symbols.zip -d "$folder/symbols"
for program in kestrova kestrova-cli LogView KVTour; do
  if grep -qw '.debug_info' <<<"$(x86_64-w64-mingw32-objdump -h "$home/$program.exe")"; then fail "$program is not stripped"; fi
  symbols=$folder/symbols/$program.exe.debug
  has "$(x86_64-w64-mingw32-objdump -h "$symbols")" ' \.debug_info ' ' \.debug_line '
done

printf '127.0.0.1:1,,4,1,5\r\n' >"$c/one.kvd" # nobody listens there
wine "$home/kestrova-cli.exe" import --add 'C:\one.kvd' >/dev/null
code=0
wine "$home/kestrova-cli.exe" check >"$folder/check.txt" || code=$?
[ $code = 1 ] || fail "check answered $code: $(cat "$folder/check.txt")"
has "$(reg query "$product\\Address" /s)" 'URL +REG_SZ +127\.0\.0\.1:1$'
has "$(cat "$home"/Logs/*.kvl)" '^\[START CHECK' 'http://127\.0\.0\.1:1,' '^\[END CHECK\]'
wine "$home/kestrova-cli.exe" alert --preview 404 2>/dev/null | tr -d '\r' | grep -q 'http://127\.0\.0\.1:1' || fail "no text of a mail"

# The same in the window: F5 checks, minimised it is in the tray only, a click brings it back.
reg add "$product\\Setup" /v startup /t REG_DWORD /d 1 /f >/dev/null
opens "$home/kestrova.exe"
keys F5
within 30 has_passed "$home/Logs" 2
within 10 shows '^Checking Sites' 0
within 10 on_newest '^Kestrova$' windowminimize
within 10 shows '^Kestrova$' 0
within 30 restored
closes

# A standard account that may only read: said once, in a box before the window; the list is there, nothing is lost.
access 'D:P(A;CI;KR;;;WD)' >/dev/null
code=0
error=$(wine "$home/kestrova-cli.exe" import --add 'C:\one.kvd' 2>&1) || code=$?
[ $code = 2 ] || fail "import without the right to save answered $code: $error"
has "$error" 'You may not write to the registry key .*Kestrova, .*registry share'
start "$home/kestrova.exe"
within 60 shows '^Kestrova$' 2
sleep 2 # the splash and the box stay
shows '^Kestrova$' 2 && not tray_icon || fail "the window did not wait for the box"
activate '^Kestrova$'
keys Return
within 20 tray_icon
within 10 shows '^Kestrova$' 1
activate '^Kestrova$'
keys F5
within 30 has_passed "$home/Logs" 3
closes
has_its_site

# --- the installer
new_prefix installed
home="$c/Program Files/Kestrova"
menu="$c/ProgramData/Microsoft/Windows/Start Menu/Programs"
desktop=$c/users/Public/Desktop/Kestrova.lnk
entry='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Kestrova'
wine "$setup" /S
has "$(cd "$home" && find . -type f)" '^./Uninstall\.exe$' $(sed 's/[.]/\\./g; s/.*/^&$/' <<<"$contents")
has "$(ls "$menu/Kestrova")" '^Kestrova\.lnk$' '^LogView\.lnk$' '^Interactive Tour\.lnk$'
[ ! -e "$desktop" ] && [ ! -e "$menu/StartUp/Kestrova.lnk" ] || fail "a shortcut that nobody asked for"
has "$(reg query "$entry")" 'DisplayName +REG_SZ +Kestrova$' 'DisplayVersion +REG_SZ +[0-9.]+$' 'Publisher +REG_SZ +Tamsel$' \
  'DisplayIcon +REG_SZ .*kestrova\.exe$' 'EstimatedSize +REG_DWORD +0x[0-9a-f]{4}$' 'QuietUninstallString +REG_SZ +".*Uninstall\.exe" /S$'
# Users (BU) have full access (KA) to the product's key, and so to every key in it.
has "$(access)" '\(A;(OI)?CI;KA;;;BU\)'

# Starting with the session, for oneself alone.
run='HKCU\Software\Microsoft\Windows\CurrentVersion\Run'
wine "$home/kestrova-cli.exe" startup on >/dev/null
has "$(reg query "$run")" 'Kestrova +REG_SZ +"C:\\Program Files\\Kestrova\\kestrova\.exe"$'
wine "$home/kestrova-cli.exe" startup off >/dev/null
if grep -q Kestrova <<<"$(reg query "$run")"; then fail "it still starts with the session"; fi

# While the program runs, neither a new version nor the removal touches anything.
reg add "$product\\Setup" /v startup /t REG_DWORD /d 1 /f >/dev/null
opens "$home/kestrova.exe"
wine "$home/kestrova-cli.exe" check >/dev/null 2>&1 && fail "a second copy checks"
refused() { local code=0; wine "$@" || code=$?; [ $code = 2 ] || fail "$1 beside the running program: $code"; }
refused "$setup" /S
refused "$home/Uninstall.exe" /S '_?=C:\Program' 'Files\Kestrova' # never in quotation marks
[ -e "$home/LogView.exe" ] && [ -e "$menu/Kestrova/Kestrova.lnk" ] || fail "half removed"
closes
start "$home/KVTour.exe"
within 60 shows 'Kestrova Interactive Tour'
refused "$setup" /S
activate 'Kestrova Interactive Tour'
keys alt+F4
ends 0

# A new version over it, in another folder, with the shortcuts: nothing old is left but what the operator added.
wine "$home/kestrova-cli.exe" import --add "$(cp "$folder/portable/drive_c/one.kvd" "$c" && echo 'C:\one.kvd')" >/dev/null
touch "$home/Messages/HTTP-418.txt" "$home/Logs/D-20200101.kvl"
wine "$setup" /S /DESKTOP /STARTUP=1 '/D=C:\Other' folder
[ "$(cd "$home" && find . -type f | sort | tr '\n' ' ')" = './Logs/D-20200101.kvl ./Messages/HTTP-418.txt ' ] || fail "of the older version: $(ls -R "$home")"
home="$c/Other folder"
[ -e "$home/kestrova.exe" ] && [ -e "$desktop" ] && [ -e "$menu/StartUp/Kestrova.lnk" ] || fail "the new version is not all there"
has "$(reg query "$entry")" 'InstallLocation +REG_SZ +C:\\Other folder$'
wine "$setup" /S # the folder and the shortcuts stay as chosen
[ -e "$home/kestrova.exe" ] && [ -e "$desktop" ] && [ -e "$menu/StartUp/Kestrova.lnk" ] || fail "not where it was"
has_its_site
code=0
wine "$setup" /S /STARTUP=yes || code=$? # neither yes nor no: nothing is done
[ $code = 2 ] && [ -e "$menu/StartUp/Kestrova.lnk" ] || fail "/STARTUP=yes answered $code"
wine "$setup" /S /STARTUP=0
[ -e "$desktop" ] && [ ! -e "$menu/StartUp/Kestrova.lnk" ] || fail "/STARTUP=0 was not heeded"
wine "$setup" /S /STARTUP=0
[ ! -e "$menu/StartUp/Kestrova.lnk" ] || fail "/STARTUP=0 was taken for 1"

# Taken away: the list stays, unless that is asked for too. It goes on in a copy of itself.
touch "$home/Logs/D-20200101.kvl"
wine "$home/Uninstall.exe" /S
within 30 test ! -e "$home/kestrova.exe"
within 10 not reg_has "$entry"
[ ! -e "$menu/Kestrova" ] && [ ! -e "$desktop" ] && [ ! -e "$menu/StartUp/Kestrova.lnk" ] || fail "shortcuts are left"
has_its_site
[ -e "$home/Logs/D-20200101.kvl" ] || fail "the operator's own is gone"
[ "$(find "$home" -type f | wc -l)" = 1 ] || fail "left behind: $(ls -R "$home")"
wine "$setup" /S '/D=C:\Other' folder
wine "$home/Uninstall.exe" /S /PURGE
within 30 test ! -e "$home"
within 10 not reg_has 'HKLM\Software\Tamsel'
echo "both packages work: $(cd "$folder/made" && stat -c '%n, %s bytes;' -- *.zip *.exe | tr '\n' ' ')"
