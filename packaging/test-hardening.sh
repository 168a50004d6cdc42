#!/usr/bin/env bash
# test-hardening.sh PROGRAM...: the finished programs, not yet stripped, of Linux or Windows, have all that makes a
# fault in them hard to use (cmake/Flags.cmake). What leaves no trace of its own in a program, stack probes and marked
# targets of jumps, is read from what the compiler wrote into the debug data of each source file.
set -euo pipefail
# The programs' words are kept in variables: a pipe into "grep -q" fails as soon as grep has seen enough.
fail() { echo "FAILED: ${program##*/}: $*" >&2; exit 1; }
wants() { grep -qE -- "$2" <<<"$1" || fail "has no $3"; }

fortified=no asserting=no
for program; do
  sources=$(strings -a "$program" | grep -oE 'GNU C\+\+20 .*' | sort -u) || fail "has no debug data"
  flags=(-fstack-protector-strong)
  if [ "$(head -c 2 "$program")" = MZ ]; then
    headers=$(x86_64-w64-mingw32-objdump -p -h "$program")
    wants "$headers" '\bDYNAMIC_BASE\b' 'chance in its addresses (ASLR)'
    wants "$headers" '\bHIGH_ENTROPY_VA\b' 'chance in the upper half of its addresses'
    wants "$headers" '\.reloc' 'relocations, without which its addresses cannot change'
    wants "$headers" '\bNX_COMPAT\b' 'prevention of data execution'
    grep -qaF 'stack smashing detected' "$program" || fail "has no stack protector"
    fortified=yes asserting=yes  # mingw-w64 has nothing like the one; the other leaves no name in a program without symbols
  else
    headers=$(readelf -W -h -l -d "$program")
    symbols=$(readelf -W --dyn-syms "$program")
    wants "$headers" 'Type: +DYN ' 'position independence'
    wants "$headers" 'FLAGS_1.*\bPIE\b' 'position independence'
    wants "$headers" 'GNU_RELRO' 'relocations made read-only'
    wants "$headers" 'FLAGS_1.*\bNOW\b' 'immediate binding'
    wants "$headers" 'GNU_STACK .* RW ' 'stack without execution'
    wants "$symbols" ' __stack_chk_fail@' 'stack protector'
    if grep -q '__glibcxx_assert_fail' <<<"$symbols"; then asserting=yes; fi
    if grep -qE ' __[a-z]+_chk@' <<<"$symbols"; then fortified=yes; fi
    for flag in -fstack-clash-protection -fcf-protection; do
      ! echo 'int main(){}' | "${CXX:-c++}" -x c++ "$flag" -Werror -fsyntax-only - 2>/dev/null || flags+=("$flag")
    done
  fi
  for flag in "${flags[@]}"; do
    if without=$(grep -vwF -- "$flag" <<<"$sources"); then fail "has sources compiled without $flag: $without"; fi
  done
  echo "${program##*/}: ${flags[*]} and the rest"
done
# Not each program calls a function that has a checked twin, or indexes; among them one does.
[ "$fortified" = yes ] || fail "nor any other calls a checked twin of a function (_FORTIFY_SOURCE)"
[ "$asserting" = yes ] || fail "nor any other has assertions of the standard library"
