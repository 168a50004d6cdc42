#!/usr/bin/env bash
# test-reproducible.sh BUILD: what was built in BUILD, built again from a copy of the sources in another folder, gives
# the same programs and the same packages, byte for byte. Where there is ccache, the second build is nearly free: it
# finds the first one's objects if and only if nothing that goes into the compiler names the folder; what does is
# compiled again, and shows below. On Linux the second build is an operator's: ./run demo, then the package.
set -euo pipefail
build=$(cd "$1" && pwd)
sources=$(cd "$(dirname "$0")/.." && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }
quietly() { "$@" >"$folder/log" 2>&1 || { tail -n 40 "$folder/log"; fail "$1 $2"; }; }

# With the history, so that it is the same commit, and with what is not committed yet.
copy=$folder/some/other/place
mkdir -p "$copy"
if git -C "$sources" rev-parse HEAD >/dev/null 2>&1; then
  quietly git clone --quiet --shared --no-checkout "$sources" "$folder/clone"
  mv "$folder/clone/.git" "$copy"
  git -C "$sources" ls-files -z --cached --others --exclude-standard |
    tar -C "$sources" --null --ignore-failed-read -cf - -T - | tar -C "$copy" -xf -
  quietly git -C "$copy" reset --mixed
  [ "$(git -C "$sources" status --porcelain -uno)" = "$(git -C "$copy" status --porcelain -uno)" ] || fail "the copy is another state"
else
  tar -C "$sources" --exclude='./build*' -cf - . | tar -C "$copy" -xf -
  export SOURCE_DATE_EPOCH=1700000000
fi

# As README.md says; on Linux the demonstration comes before the package, which must find all that it needs.
there=$copy/$(basename "$build")
cd "$copy"
if [ -e "$build/bin/kestrova-cli.exe" ]; then
  strip=x86_64-w64-mingw32-strip
  quietly cmake --preset windows -DKESTROVA_TESTS=OFF
  quietly cmake --build --preset windows --target programs
else
  strip=strip
  KESTROVA_SKIP_SETUP=1 KESTROVA_DEMO_ONCE=1 quietly ./run demo
  [ -s "$there/demonstration/week.htm" ] || fail "there was no demonstration"
  quietly cmake --build --preset release --target programs package-files
fi

differs=0
same() { if cmp -s "$2" "$3"; then echo "the same: $1"; else echo "differs: $1"; differs=1; fi; }
for program in "$there"/bin/*; do
  [ -f "$program" ] && [ -x "$program" ] || continue
  name=${program##*/}
  # -p: of a Windows program it would else set the time inside it to that of now.
  "$strip" -p -o "$folder/here-$name" "$build/bin/$name"
  "$strip" -p -o "$folder/there-$name" "$program"
  same "$name" "$folder/here-$name" "$folder/there-$name"
done
(cd "$build" && quietly cpack -B "$folder/here")
(cd "$there" && quietly cpack -B "$folder/there")
for package in "$folder"/here/Kestrova-*.* "$folder"/here/kestrova_*.*; do
  [ ! -f "$package" ] || same "${package##*/}" "$package" "$folder/there/${package##*/}"
done
# Of the package of symbols only what it installs: cpack writes the folder it was made in into its list of sums.
for package in "$folder"/here/kestrova-dbgsym_*; do
  [ -f "$package" ] || continue
  dpkg-deb -x "$package" "$folder/here-symbols"
  dpkg-deb -x "$folder/there/${package##*/}" "$folder/there-symbols"
  diff -r "$folder/here-symbols" "$folder/there-symbols" || { echo "differs: ${package##*/}"; differs=1; }
done
[ $differs = 0 ] || fail "two builds of one state of the sources differ"
