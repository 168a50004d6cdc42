#!/usr/bin/env bash
# The house stands on floors: an include only points down, and only the platform knows the system. A slip here
# builds and runs well on one machine, so nothing else would notice.
set -euo pipefail
cd "$(dirname "$0")/../../src"
declare -A floor=([platform]=0 [resources]=0 [persistence]=1 [log]=2 [alert]=3 [check]=4 [dialogs]=5
                  [app]=6 [cli]=6 [logview]=6 [tour]=6)
bad=0
say() { echo "$*"; bad=1; }
lines() { grep -rnE --include='*.h' --include='*.cpp' "$1" -- *; }

for folder in */; do [ -n "${floor[${folder%/}]:-}" ] || say "a folder that has no floor: $folder"; done
while IFS=: read -r file line text; do
  from=${file%%/*} to=${text#*\"} && to=${to%%/*}
  if [ "$from" != "$to" ] && [ "${floor[$to]:-9}" != 0 ] && [ "${floor[$to]:-9}" -ge "${floor[$from]:-0}" ]; then
    say "points up: $file:$line: $text"
  fi
done < <(lines '#include "[a-z]+/')

# Below the seam a file lies in the folder of its system or library.
while read -r hit; do say "knows the system: $hit"; done < <(
  lines '#include <(windows\.h|winsock|shlobj|shellapi|sqlite3\.h|curl/|unistd\.h|fcntl\.h|sys/|netdb\.h|poll\.h|signal\.h|csignal|pwd\.h|gtk/|gdk/|X11/)' |
    grep -vE '^platform/[^/]+/'
  lines '# *(if|ifdef|ifndef|elif).*(_WIN32|__linux__|__WXMSW__|__WXGTK__|__unix__)')
exit $bad
