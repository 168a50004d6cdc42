#!/usr/bin/env bash
# test-imports.sh PROGRAM.exe...: each program runs on a bare Windows (10 or newer): it needs no other library than
# those that every installation has, and carries its manifest, icon and version.
set -euo pipefail
objdump=x86_64-w64-mingw32-objdump
system_libraries='advapi32 bcrypt comctl32 comdlg32 gdi32 kernel32 msvcrt ole32 oleacc oleaut32 shell32 shlwapi user32
  uxtheme version winspool.drv ws2_32'
fail() { echo "FAILED: ${program##*/}: $*" >&2; exit 1; }
# The text as resources hold it, two bytes a character, for grep -P.
wide() { sed 's/[.]/\\./g; s/\(\\\?.\)/\1\\x00/g' <<<"$1"; }

for program; do
  headers=$($objdump -p "$program")
  imports=$(sed -n 's/^\tDLL Name: //p' <<<"$headers" | tr '[:upper:]' '[:lower:]' | sed 's/\.dll$//')
  [ -n "$imports" ] || fail "imports nothing, not even the system"
  for library in $imports; do
    grep -qwF -- "$library" <<<"$system_libraries" || fail "needs $library"
  done
  # Resource types: 14 an icon with all its sizes, 16 the version, 24 the manifest.
  for type in 00000e 000010 000018; do
    grep -qE "^[0-9a-f]{3}   Entry: ID: 0x$type," <<<"$headers" ||
      fail "has no resource of type 0x$type"
  done
  grep -qaF '<activeCodePage xmlns="http://schemas.microsoft.com/SMI/2019/WindowsSettings">UTF-8<' "$program" ||
    fail "another manifest"
  for text in ProductVersion Tamsel "${program##*/}"; do
    LC_ALL=C grep -qaP "$(wide "$text")" "$program" || fail "no \"$text\" in its version"
  done
  echo "${program##*/}: $(stat -c %s "$program") bytes, needs only" $imports
done
