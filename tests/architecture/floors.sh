#!/usr/bin/env bash
# The house stands on floors: an include only points to what its library names in LINKS (and cmake/House.cmake lets
# those point down only), windows live in src/ui, and only the platform knows the system. A slip here builds and runs
# well on one machine, so nothing else would notice.
set -euo pipefail
cd "$(dirname "$0")/../.."
bad=0
say() { echo "$*"; bad=1; }
includes() { grep -rnoE --include='*.h' --include='*.cpp' "#include $1" -- "${@:2}"; }

# What each folder of src/ links, out of its own CMakeLists.txt.
declare -A links
for list in src/*/CMakeLists.txt src/ui/*/CMakeLists.txt; do
  words=$(sed 's/#.*//' "$list" | tr '\n()' '   ')
  [[ $words =~ kestrova_library\ +([a-z/]+)\ (.*) ]] || continue
  folder=${BASH_REMATCH[1]} words=${BASH_REMATCH[2]}
  [ "src/$folder/CMakeLists.txt" = "$list" ] || say "$list makes the library of another folder: $folder"
  [[ $words =~ LINKS\ ([^A-Z]*) ]] || { links[$folder]=" "; continue; }
  links[$folder]=" ${BASH_REMATCH[1]} "
done
[ ${#links[@]} -ge 15 ] || say "only ${#links[@]} libraries were found in src/"

# src/ui/main/frmMain.cpp -> ui/main
room_of() { local path=$1; if [[ $path = ui/* ]]; then path=${path#ui/}; echo "ui/${path%%/*}"; else echo "${path%%/*}"; fi; }
while IFS=: read -r file line text; do
  from=$(room_of "${file#src/}") to=${text#*\"}
  to=$(room_of "${to%\"}")
  [ "$from" = "$to" ] && continue
  [ "$from $to" = "base resources" ] && continue
  [[ ${links[$from]:-} = *" $to "* ]] || say "includes what its library does not link: $file:$line: $text"
done < <(includes '"[a-z]+/[^"]+"' src)

while read -r hit; do say "servers stand on base alone: $hit"; done < <(includes '"[^"]+"' servers | grep -vE '"(base|servers)/')
while read -r hit; do say "the demonstration needs a test: $hit"; done < <(includes '"(support|tests|ui)/' demo servers)
while read -r hit; do say "a window outside src/ui: $hit"; done < <(includes '<wx/' src demo servers | grep -v '^src/ui/')

# Time, files, variables of the environment and waits come through the platform, or no other could take its place.
while read -r hit; do say "asks the system past the platform: $hit"; done < <(
  grep -rnE --include='*.h' --include='*.cpp' -- \
    '(system|steady|file)_clock::|sleep_(for|until)|getenv|[io]?fstream|\bfopen\(|filesystem::(absolute|canonical|copy|create|current|directory|equivalent|exists|file_size|is_|last_write|permissions|read|remove|rename|space|status|temp|weakly)' src |
    grep -vE '^src/(platform|ui/system)/')

# Below the seam a file lies in the folder of its system or library.
while read -r hit; do say "knows the system: $hit"; done < <(
  includes '<(windows\.h|winsock|shlobj|shellapi|sqlite3\.h|curl/|unistd\.h|fcntl\.h|sys/|netdb\.h|poll\.h|signal\.h|csignal|pwd\.h|gtk/|gdk/|X11/)' src |
    grep -vE '^src/(platform/[a-z]+|ui/system/[a-z]+)/'
  grep -rnE --include='*.h' --include='*.cpp' '# *(if|ifdef|ifndef|elif).*(_WIN32|__linux__|__WXMSW__|__WXGTK__|__unix__)' -- src)
exit $bad
