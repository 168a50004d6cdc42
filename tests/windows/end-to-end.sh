#!/usr/bin/env bash
# end-to-end.sh BUILD: the real programs as an operator uses them on Windows, under Wine: first start, a list
# imported through the file window, a site added by keyboard, two passes over the demonstration's servers. What came
# of it is read from outside: registry, log file, mails.
set -euo pipefail
build=$(cd "$1" && pwd)
source "$(dirname "$0")/../../packaging/windows/wine-bench.sh"
bin=$build/bin
new_prefix windows

wine "$bin/kestrova-demo.exe" 'C:\demo' >"$folder/demo.txt" 2>&1 &
helpers+=($!)
within 30 test -e "$c/demo/ready"
# Settings come from the registry editor, as an administrator would bring them; the user's own cookie policy is 7.
wine "$c/windows/regedit.exe" /S 'C:\demo\settings.reg'
reg add "$product\\Settings\\Timer" /v Warning /t REG_DWORD /d 30 /f >/dev/null
reg delete "$product\\Setup" /f >/dev/null # the demonstration has no first start
internet='HKCU\Software\Microsoft\Windows\CurrentVersion\Internet Settings'
reg add "$internet" /v AllowCookies /t REG_DWORD /d 7 /f >/dev/null

# The first start welcomes; Esc closes the welcome, not the program.
start "$bin/kestrova.exe"
within 60 tray_icon
within 20 shows '^Kestrova$' 2
activate '^Kestrova$'
has "$(reg query "$product\\Setup")" 'startup +REG_DWORD +0x1'
keys Escape
within 10 shows '^Kestrova$' 1

# One site is there already, so the import asks; No adds.
activate '^Kestrova$'
keys ctrl+i
within 20 shows '^Import Data File$'
activate '^Import Data File$'
text 'C:\demo\demo.kvd'
keys Return
within 20 shows '^Kestrova$' 2
activate '^Kestrova$'
keys n
imported() { reg query "$product\\Address" /s | grep -q '/refused'; }
within 20 imported
within 20 shows '^Kestrova$' 2 # the list has been imported
activate '^Kestrova$'
keys Return
within 10 shows '^Kestrova$' 1
activate '^Kestrova$'

keys ctrl+n
within 10 not active '^Kestrova$'
text '127.0.0.1:1/added'
keys Return
within 10 active '^Kestrova$'
list=$(reg query "$product\\Address" /s)
has "$list" 'URL +REG_SZ +127\.0\.0\.1:1/added' 'URL +REG_SZ +name-fails\.kestrova\.invalid' '/slow$' '/refused$'
sites=$(grep -c 'URL  *REG_SZ' <<<"$list")
[ "$sites" = 10 ] || fail "$sites sites: $list"

logs=$c/demo/Logs
keys F5
within 60 has_passed "$logs" 1
within 10 shows 'Checking Sites' 0
[ -z "$(ls "$c/demo/mails")" ] || fail "a mail at the first failure"
keys F5
within 60 has_passed "$logs" 2
log=$(cat "$logs"/*.kvl)
has "$log" '^\[START CHECK: MANUAL - ' '/fine,Site OK,[0-9]+,,1.$' '/moved,Site OK' '/missing,404 File Not Found,.*E-mail Notification Sent,2.$'
# Down are: the name, missing, broken, flaky, silent, refused, added.
mails() { find "$c/demo/mails" -name '*.eml' | wc -l; }
seven_mails() { [ "$(mails)" = 7 ]; }
within 10 seven_mails
has "$(cat "$c"/demo/mails/*.eml)" '^To: .*manager@kestrova\.invalid' 'http://127\.0\.0\.1:[0-9]+/missing' '127\.0\.0\.1:1/added'
has "$(reg query "$internet" /v AllowCookies)" '0x7$'

# Closed by its window it leaves nothing behind and loses nothing.
activate '^Kestrova$'
keys alt+F4
ends 0
within 10 not tray_icon
after=$(reg query "$product\\Address" /s)
in_both() { grep -vE 'Status|Comments' <<<"$1"; }
[ "$(in_both "$after")" = "$(in_both "$list")" ] || fail "the list has changed: $(diff <(echo "$list") <(echo "$after"))"
states=$(grep -o 'Status  *REG_DWORD.*' <<<"$after" | sort | uniq -c | tr -s ' \n' ' ')
[ "$states" = ' 3 Status REG_DWORD 0x1 7 Status REG_DWORD 0x3 ' ] || fail "$states"
has "$(tail -n 1 "$logs"/*.kvl)" '^\[END CHECK\].$'
[ "$(mails)" = 7 ] || fail "$(mails) mails"
has "$(wine "$bin/kestrova-cli.exe" list)" '127\.0\.0\.1:1/added'
echo "first start, import, new site, two passes, $sites sites, $(mails) mails; ended in good order"
