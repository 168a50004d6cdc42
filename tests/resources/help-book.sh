#!/usr/bin/env bash
# The help book as it is written: nothing in it leads nowhere, and nothing in it cannot be reached.
set -euo pipefail
export LC_ALL=C
cd "$(dirname "$0")/../../src/resources/help"
bad=0
say() { echo "$*"; bad=1; }
# Every distinct text after the start of the expression, up to a quotation mark.
find_all() { grep -ohiP "$1\\K[^\"#]+" "${@:2}" | sort -u; }

diff <(find_all 'name="Local" value="' kestrova.hhc) <(ls -- *.html) || say "the contents are not the pages"
for target in $(find_all 'name="Local" value="' kestrova.hhk) $(find_all '(href|<img src)="' -- *.html); do
  picture=${target#pictures/}  # of a window: each system has its own
  [ -e "$target" ] || { [ -e "../pictures/posix/$picture" ] && [ -e "../pictures/windows/$picture" ]; } ||
    say "there is no $target"
done
for topic in {20000..20009}; do
  [ "$(grep -c "name=\"ID\" value=\"$topic\"" kestrova.hhc)" = 1 ] || say "topic $topic does not stand there once"
done
# The toolkit's page reader forgives nothing: a tag left open runs on over the rest of the page. What is open
# stands on a stack.
for page in *.html; do
  open=()
  for tag in $(grep -oiP '<\K/?[a-z][a-z0-9]*' "$page" | grep -vxiE 'meta|img|br|hr'); do
    if [ "${tag#/}" = "$tag" ]; then open+=("$tag"); continue; fi
    if [ "${open[-1]:-}" != "${tag#/}" ]; then say "$page: $tag closes ${open[-1]:-nothing}"; break; fi
    unset 'open[-1]'
  done
  [ ${#open[@]} = 0 ] || say "$page: left open: ${open[*]}"
done
exit $bad
