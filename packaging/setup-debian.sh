#!/usr/bin/env bash
# setup-debian.sh build|test|long|windows: installs what building, or building and testing, or the long trials, or
# building for Windows and testing that under Wine, needs on Debian 12 or newer or Ubuntu 24.04 or newer. Says what it installs; does nothing,
# and needs no network, when all is there.
# KESTROVA_SKIP_SETUP=1 leaves the machine as it is.
set -euo pipefail

[ "${KESTROVA_SKIP_SETUP:-0}" = 1 ] && exit 0

build_packages=(
  g++ cmake ninja-build ccache pkg-config
  libcurl4-openssl-dev libsqlite3-dev libwxgtk3.2-dev libgtk-3-dev
  libcli11-dev nlohmann-json3-dev
  libasio-dev
)
# What tests and benchmarks are built with, and what holds the sources to their form.
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev clang-format clang-tidy)
# A display without a screen, and on it a window manager, a tray and what looks at windows from outside.
display_packages=(xvfb xauth metacity trayer xdotool imagemagick)
# What looks into programs while they are packaged.
package_packages=(dpkg-dev file)
# The cross compiler, the sources and headers that are built with it, Wine with its fonts, the installer's compiler.
windows_packages=(
  g++-mingw-w64-x86-64-posix libz-mingw-w64-dev googletest dpkg-dev make
  wine wine64 fonts-wine fonts-liberation nsis unzip x11-utils clang-tidy
)
# A real mail server that one test sends through; that test says so and steps aside where it is missing.
server_packages=(exim4-daemon-light)
# A strict parser that one test reads the log page with; that test says so and steps aside where it is missing.
parser_packages=(libxml2-utils)
# What the tests of label fleet run beside Kestrova; each says so and steps aside where its packages are missing.
fleet_packages=(prometheus prometheus-blackbox-exporter prometheus-alertmanager chromium systemd)

say() { echo "setup: $*"; }

missing_of() {
  local package
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || echo "$package"
  done
}

check_system() {
  local ID="" VERSION_ID=""
  # shellcheck source=/dev/null
  [ -r /etc/os-release ] && . /etc/os-release
  case "$ID" in
    debian) dpkg --compare-versions "${VERSION_ID:-99}" ge 12 && return ;;
    ubuntu) dpkg --compare-versions "${VERSION_ID:-99}" ge 24.04 && return ;;
  esac
  say "this machine is \"${ID:-unknown} ${VERSION_ID:-}\"; packages are installed on Debian 12 or newer and Ubuntu 24.04 or newer."
  say "Install by hand what corresponds to: $*"
  say "then run again with KESTROVA_SKIP_SETUP=1."
  exit 1
}

as_root() {
  if [ "$(id -u)" = 0 ]; then
    env DEBIAN_FRONTEND=noninteractive "$@"
  elif command -v sudo >/dev/null; then
    sudo env DEBIAN_FRONTEND=noninteractive "$@"
  else
    say "this needs root and there is no sudo. Run as root: $*"
    exit 1
  fi
}

# Freshly installed servers are not started: the tests start their own copies on ports of their own.
install_without_starting() {
  local policy=/usr/sbin/policy-rc.d made=no result=0
  if [ ! -e "$policy" ]; then
    as_root sh -c "printf '#!/bin/sh\nexit 101\n' > $policy && chmod 755 $policy"
    made=yes
  fi
  as_root apt-get install -y -q --no-install-recommends "$@" || result=$?
  if [ "$made" = yes ]; then as_root rm -f "$policy"; fi
  return $result
}

case "${1:-build}" in
  build) wanted=("${build_packages[@]}") servers=() ;;
  test) wanted=("${build_packages[@]}" "${test_packages[@]}" "${display_packages[@]}" "${package_packages[@]}") servers=("${server_packages[@]}" "${parser_packages[@]}" "${fleet_packages[@]}") ;;
  long) wanted=("${build_packages[@]}" libbenchmark-dev clang libclang-rt-dev) servers=() ;;
  windows) wanted=("${build_packages[@]}" "${display_packages[@]}" "${windows_packages[@]}") servers=() ;;
  *) echo "usage: $0 build|test|long|windows" >&2; exit 2 ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
  say "there is no apt here. Install by hand what corresponds to: ${wanted[*]}"
  say "then run again with KESTROVA_SKIP_SETUP=1."
  exit 1
fi

mapfile -t missing < <(missing_of "${wanted[@]}")
mapfile -t missing_servers < <([ ${#servers[@]} = 0 ] || missing_of "${servers[@]}")
if [ ${#missing[@]} = 0 ] && [ ${#missing_servers[@]} = 0 ]; then exit 0; fi

check_system "${wanted[@]}"
say "installing with apt: ${missing[*]} ${missing_servers[*]}"
as_root apt-get update -q || say "apt-get update had errors; going on with the package lists that are here"
if [ ${#missing[@]} != 0 ]; then install_without_starting "${missing[@]}"; fi
# --no-remove: a mail server of the machine's own stays; the tests with the other one are then left out.
for package in "${missing_servers[@]}"; do
  install_without_starting --no-remove "$package" ||
    say "$package cannot be installed beside what is here; the tests that use it are left out"
done
say "done"
