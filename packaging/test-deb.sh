#!/usr/bin/env bash
# test-deb.sh BUILD: makes the Debian package of the programs built in BUILD, looks into it, installs it into a root
# of its own with a package database of its own, uses it from there, and removes it. Needs no root; nothing of the
# machine's own is changed. Exit code 77 where there is no dpkg.
set -euo pipefail
build=$(cd "$1" && pwd)
for tool in dpkg dpkg-shlibdeps file xvfb-run xdotool; do
  command -v "$tool" >/dev/null || { echo "skipped: there is no $tool"; exit 77; }
done

folder=$(mktemp -d)
chmod 755 "$folder"
trap 'chmod -R u+w "$folder"; rm -rf "$folder"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }
# Each pattern is in the text, on a line of its own.
has() { local text=$1 pattern; shift; for pattern; do grep -qE -- "$pattern" <<<"$text" || fail "no $pattern in: $text"; done; }

(cd "$build" && cpack -G DEB -B "$folder/made" >"$folder/cpack.log" 2>&1) || { cat "$folder/cpack.log"; fail "cpack"; }
package=$(echo "$folder"/made/kestrova_*.deb)

has "$(dpkg-deb --info "$package")" '^ Package: kestrova$' '^ Depends: .*libc6' '^ Depends: .*libcurl4' \
  '^ Depends: .*libsqlite3-0' '^ Depends: .*libwxgtk3.2' '^ Recommends: xdg-utils$'
contents=$(dpkg-deb --contents "$package")
has "$contents" '/usr/lib/kestrova/(kestrova|KVTour)$' '/usr/lib/kestrova/Kestrova\.hlp$' 'Messages/Unknown\.txt$' \
  '/usr/bin/kestrova -> ../lib/kestrova/kestrova$' '/usr/bin/kestrova-cli -> ' '/usr/bin/LogView -> ' \
  'applications/kestrova\.desktop$' 'scalable/apps/kestrova\.svg$' 'doc/kestrova/copyright$' \
  'bash-completion/completions/kestrova-cli$' 'systemd/user/kestrova-watch\.service$' \
  'man1/kestrova\.1\.gz$' 'man1/kestrova-cli\.1\.gz$' 'man1/LogView\.1\.gz$'
if grep -E 'demo|test|bench|\.a$' <<<"$contents"; then fail "what is not for operators is in the package"; fi
if command -v lintian >/dev/null; then
  # No bug of Debian's asks for this package.
  lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs "$package" || fail "lintian"
fi

root=$folder/root
mkdir -p "$root"/var/lib/dpkg/{info,updates}
touch "$root/var/lib/dpkg/status"
# The dependencies are on the machine, not in this root.
dpkg_there() { PATH=$PATH:/usr/sbin:/sbin dpkg --root="$root" --force-not-root --force-depends --log=/dev/null "$@" >"$folder/dpkg.log" 2>&1 || { cat "$folder/dpkg.log"; fail "dpkg $1"; }; }
dpkg_there -i "$package"

# A crash of what is installed can be read with the other package.
dpkg-deb -x "$(echo "$folder"/made/kestrova-dbgsym_*.ddeb)" "$folder/symbols"
for program in "$root"/usr/lib/kestrova/{kestrova,kestrova-cli,LogView,KVTour}; do
  id=$(readelf -n "$program" | sed -n 's/^ *Build ID: //p')
  if grep -qw '.debug_info' <<<"$(readelf -S -W "$program")"; then fail "${program##*/} is not stripped"; fi
  symbols=$folder/symbols/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug
  has "$(addr2line -e "$symbols" "$(nm "$symbols" | sed -n 's/ T main$//p')")" '/main\.cpp:[0-9]+'
done

# Used by somebody who may not write to the program folder.
export HOME=$folder/home XDG_DATA_HOME=$folder/home/data GDK_BACKEND=x11 GSETTINGS_BACKEND=memory
unset KESTROVA_HOME KESTROVA_REGISTRY
mkdir "$HOME"
as_operator=()
if [ "$(id -u)" = 0 ]; then
  chown nobody "$HOME"
  as_operator=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
else
  chmod -R a-w "$root/usr/lib/kestrova"
fi
data=$XDG_DATA_HOME/kestrova
cli() { "${as_operator[@]}" "$root/usr/bin/kestrova-cli" "$@"; }

printf '127.0.0.1:1,,4,1,5\n' >"$folder/one.kvd" # nobody listens there
cli import --add "$folder/one.kvd" >/dev/null
result=0
cli check >"$folder/check.txt" || result=$?
[ "$result" = 1 ] || fail "check answered $result: $(cat "$folder/check.txt")"
has "$(cat "$data"/Logs/*.kvl)" '^\[START CHECK' 'http://127\.0\.0\.1:1,' '^\[END CHECK\]'
cli alert --preview 404 2>/dev/null >"$folder/shipped.txt"
"${as_operator[@]}" mkdir "$data/Messages"
echo "mine: %URL%" | "${as_operator[@]}" tee "$data/Messages/HTTP-404.txt" >/dev/null
has "$(cli alert --preview 404 2>/dev/null)" '^mine: http://127\.0\.0\.1:1'
if grep -q mine "$folder/shipped.txt"; then fail "the shipped text is not the shipped one"; fi
has "$(cat "$folder/shipped.txt")" 'http://127\.0\.0\.1:1'

# The windows, as the desktop's menu starts them; the list is the one that the terminal program has made.
cat >"$folder/windows.sh" <<'SCRIPT'
see() {
  "$1/usr/bin/$2" &
  for ((tries = 0; $(xdotool search --onlyvisible --name "$3" 2>/dev/null | wc -l) < $4; tries++)); do
    [ $tries -lt 600 ] && kill -0 $! || { echo "no window of $2"; exit 1; }
    sleep 0.1
  done
  kill $!
  wait $! 2>/dev/null || true
}
see "$1" kestrova '^Kestrova$' 2 # the splash screen comes alone; then the main window, with a welcome at the first start
see "$1" LogView 'Kestrova Log$' 1
SCRIPT
# A display without -noreset begins anew when its last window goes, and turns away who starts in that moment.
"${as_operator[@]}" xvfb-run -a -s "-screen 0 1280x1024x24 -noreset" -e "$HOME/xvfb.log" bash "$folder/windows.sh" "$root" || fail "windows"

[ "$(id -u)" = 0 ] || chmod -R u+w "$root/usr/lib/kestrova"
dpkg_there -P kestrova
left=$(find "$root" -path "$root/var/lib/dpkg" -prune -o -type f -print)
if [ -e "$root/usr" ] || [ -n "$left" ]; then fail "left behind: $(find "$root/usr") $left"; fi
[ -s "$data/registry.db" ] || fail "the operator's own data is gone"
echo "the package installs, works and goes: ${package##*/}, $(stat -c %s "$package") bytes"
