#!/usr/bin/env bash
# Builds, once, the static libraries that the Windows programs link, from the distribution's own source packages.
#
#   build-dependencies.sh             install what is missing, build what is missing
#   build-dependencies.sh --prefix    print the prefixes, separated by ";"; fails if one is not built
#
# Each library has a prefix of its own, NAME-VERSION-KEY, where the key covers the compiler, the build steps below and
# the libraries it stands on: a change rebuilds that library and no other. A prefix appears under its name only when
# it is complete, so an interrupted run is taken up again where it was.
#
#   KESTROVA_WINDOWS_CACHE   the folder of the prefixes (default: ${XDG_CACHE_HOME:-~/.cache}/kestrova/windows)
#   KESTROVA_JOBS            parallel compilers (default: one a processor)
set -euo pipefail

libraries=(libpng wxwidgets curl googletest cli11 nlohmann-json asio)

# The installed package whose version each library takes, so that both systems' programs are built from the same.
declare -A follows=([libpng]=libpng-dev [wxwidgets]=libwxgtk3.2-dev [curl]=libcurl4-openssl-dev
                    [googletest]=googletest [cli11]=libcli11-dev
                    [nlohmann-json]=nlohmann-json3-dev [asio]=libasio-dev)
declare -A source_of=([libpng]=libpng1.6 [wxwidgets]=wxwidgets3.2 [curl]=curl)
declare -A stands_on=([wxwidgets]=libpng)

triplet=x86_64-w64-mingw32
compiler=g++-mingw-w64-x86-64-posix
cache=${KESTROVA_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/kestrova/windows}
jobs=${KESTROVA_JOBS:-$(nproc)}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# --- how each library is built: $version, $src its source, $build a folder to build in, $prefix its final place,
# --- $stage what stands before $prefix while it is not complete

# What all are compiled with: hardened as the programs are, and without this machine's paths in asserts.
flags() { echo "-O2 -fstack-protector-strong -ffile-prefix-map=$src=$library"; }

cross_cmake() {
  step "configure" cmake -S "$1" -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" \
    -DKESTROVA_WINDOWS_PREFIX="$dependency_prefixes" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DCMAKE_C_FLAGS="$(flags)" -DCMAKE_CXX_FLAGS="$(flags)" \
    -DBUILD_SHARED_LIBS=OFF -DCMAKE_POLICY_DEFAULT_CMP0077=NEW "${@:2}"
  step "compile" cmake --build "$build" -j"$jobs"
  step "install" env DESTDIR="$stage" cmake --install "$build"
}

build_libpng() {
  cross_cmake "$src" -DPNG_SHARED=OFF -DPNG_TESTS=OFF -DPNG_EXECUTABLES=OFF
}

# Asserts stay on (no --disable-debug): the GTK build has them too. What the programs do not use is left out, for time:
# a window that begins to use one of these takes its word out of the list.
build_wxwidgets() {
  local png=${prefix_of[libpng]} off option
  local options=(--with-msw --disable-shared --with-libpng=sys --with-zlib=sys --with-nanosvg --enable-pch
                 --enable-repro-build --disable-tests --without-libjpeg --without-libtiff --without-expat
                 --without-opengl --without-regex --without-liblzma)
  off=(aui ribbon stc mediactrl webview propgrid richtext xrc grid mshtmlhelp
       docview mdi mdidoc postscript ps-in-msw svg graphics-d2d metafile
       sockets webrequest ipc dialupman ftp http fileproto protocols protocol url fs_inet
       debugreport dbghelp fswatcher fsvolume secretstore sound joystick hotkey
       aboutdlg coldlg creddlg finddlg fontdlg numberdlg splash tipdlg progressdlg wizarddlg
       actindicator addremovectrl animatectrl bannerwindow bmpcombobox calendar commandlinkbutton
       datepick timepick editablebox colourpicker filepicker fontpicker dirpicker filectrl rearrangectrl
       treelist dataviewctrl treebook toolbook listbook choicebook prefseditor odcombobox sash spellcheck richtooltip
       notifmsg gif pcx tga iff pnm splines dragimage privatefonts arttango)
  for option in "${off[@]}"; do options+=("--disable-$option"); done
  mkdir -p "$build" && cd "$build"
  step "configure" "$src/configure" --prefix="$prefix" --host=$triplet --build="$(gcc -dumpmachine)" "${options[@]}" \
    CC=$triplet-gcc-posix CXX=$triplet-g++-posix CFLAGS="$(flags)" CXXFLAGS="$(flags)" \
    CPPFLAGS="-I$png/include" LDFLAGS="-L$png/lib -static"
  step "compile (some minutes)" make -j"$jobs"
  step "install" make install DESTDIR="$stage"
}

# HTTP and SMTP without encryption are all that the programs speak.
build_curl() {
  local off=() word
  for word in DICT FILE FTP GOPHER IMAP LDAP LDAPS MQTT POP3 RTSP SMB TELNET TFTP \
              ALTSVC DOH HSTS NTLM GETOPTIONS LIBCURL_OPTION MIME NETRC PROGRESS_METER SHUFFLE_DNS; do
    off+=("-DCURL_DISABLE_$word=ON")
  done
  cross_cmake "$src" "${off[@]}" -DBUILD_CURL_EXE=OFF -DBUILD_TESTING=OFF -DCURL_ENABLE_SSL=OFF -DCURL_ZLIB=OFF \
    -DCURL_USE_LIBSSH2=OFF -DCURL_USE_LIBPSL=OFF -DUSE_LIBIDN2=OFF -DUSE_NGHTTP2=OFF -DCURL_BROTLI=OFF \
    -DCURL_ZSTD=OFF -DCURL_TARGET_WINDOWS_VERSION=0x0601
}

build_googletest() {
  cross_cmake /usr/src/googletest -DINSTALL_GTEST=ON
}

# Headers only: copied, because /usr/include must never be on the cross compiler's path.
copy_headers() {
  step "copy" mkdir -p "$stage$prefix/include" "$stage$prefix/share/cmake"
  cp -r "/usr/include/$1" "$stage$prefix/include/"
  cp -r "/usr/share/cmake/$2" "$stage$prefix/share/cmake/"
}
build_cli11() { copy_headers CLI CLI11; }
build_nlohmann-json() { copy_headers nlohmann nlohmann_json; }
build_asio() {
  step "copy" mkdir -p "$stage$prefix/include"
  cp -r /usr/include/asio /usr/include/asio.hpp "$stage$prefix/include/"
}

# --- the rest is the same for all

# step TEXT COMMAND...: runs it into the library's log; prints what it is and how long it took
step() {
  local text=$1 began=$SECONDS
  shift
  printf '  %-13s %-44s' "$library" "$text"
  if "$@" >>"$log" 2>&1; then
    printf '%4d s\n' $((SECONDS - began))
  else
    printf 'failed; the end of %s:\n' "$log"
    tail -n 30 "$log"
    exit 1
  fi
}

# One dpkg-query for everything: this script's usual run must not be felt.
declare -A status source_version
read_versions() {
  local package state version
  while read -r package state version; do
    status[$package]=$state source_version[$package]=$version
  done < <(dpkg-query -W -f '${binary:Package} ${db:Status-Status} ${source:Version}\n' \
               $compiler "${follows[@]}" 2>/dev/null | sed 's/^\([^ :]*\):[^ ]*/\1/')
}
is_installed() { [ "${status[$1]:-}" = installed ]; }

version_of() {
  local package=${follows[$1]}
  if is_installed "$package"; then
    echo "${source_version[$package]}"
  else
    apt-cache show --no-all-versions "$package" |
      sed -n 's/^Version: //p; s/^Source:.*(\(.*\))/\1/p' | sort -u | head -n 1
  fi
}

declare -A prefix_of
name_prefixes() {
  local library version key
  for library in "${libraries[@]}"; do
    version=$(version_of "$library")
    [ -n "$version" ] || { echo "No package ${follows[$library]}: run apt-get update first" >&2; exit 1; }
    key=$({ declare -f flags cross_cmake "build_$library"
          echo "${source_version[$compiler]:-} ${stands_on[$library]:+${prefix_of[${stands_on[$library]}]}}"; } | sha256sum)
    prefix_of[$library]=$cache/$library-${version//[^A-Za-z0-9.+~-]/_}-${key:0:10}
  done
}

# A private list of source repositories beside the machine's own configuration, which stays as it is: each repository
# of the distribution that the machine takes binary packages from.
apt_private() {
  "$@" -o Dir::Etc::SourceList="$work/apt/sources.list" -o Dir::Etc::SourceParts=- \
    -o Dir::State::Lists="$work/apt/lists" -o Dir::Cache="$work/apt/cache" -o APT::Sandbox::User=
}

prepare_sources() {
  [ -e "$work/apt/ready" ] && return
  mkdir -p "$work/apt/lists/partial" "$work/apt/cache/archives/partial"
  # shellcheck disable=SC2016  # apt's own variables
  apt-get indextargets --format '$(ORIGIN) deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
    sed -n 's/^\(Debian\|Ubuntu\) //p' | sort -u >"$work/apt/sources.list"
  [ -s "$work/apt/sources.list" ] || { echo "No Debian or Ubuntu package repository is set up" >&2; exit 1; }
  step "read source lists" apt_private apt-get update
  touch "$work/apt/ready"
}

# download NAME VERSION: that version, else the newest one that is there; a mirror may list what it no longer has.
download() {
  local version
  for version in "$2" $(apt_private apt-cache showsrc "$1" | sed -n 's/^Version: //p' | sort -rV); do
    apt_private apt-get source --download-only --only-source "$1=$version" && return
    rm -f -- *
  done
  return 1
}

fetch_source() {
  local name=${source_of[$library]}
  prepare_sources
  mkdir -p "$work/download" && cd "$work/download"
  step "fetch source" download "$name" "$version"
  step "unpack $(ls "$name"_*.dsc)" dpkg-source --no-check -x ./"$name"_*.dsc "$src"
}

build_library() {
  local library=$1 prefix=${prefix_of[$1]} began=$SECONDS
  local work=$cache/.work log=$cache/$1.log version stage src build dependency_prefixes
  [ -e "$prefix" ] && return
  version=$(version_of "$library")
  stage=$work/stage src=$work/$library-source build=$work/$library-build
  dependency_prefixes=${stands_on[$library]:+${prefix_of[${stands_on[$library]}]}}
  rm -rf "$stage" "$src" "$build" "$work/download"
  mkdir -p "$work"
  : >"$log"
  if [ -n "${source_of[$library]:-}" ]; then (fetch_source); fi
  ("build_$library")
  mv "$stage$prefix" "$prefix"
  rm -rf "$stage" "$src" "$build"
  printf '  %-13s %-44s%4d s\n' "$library" "ready" $((SECONDS - began))
}

all_built() {
  local library
  for library in "${libraries[@]}"; do [ -e "${prefix_of[$library]}" ] || return 1; done
}

case ${1:-} in
  --prefix)
    read_versions; name_prefixes; all_built || exit 1
    for library in "${libraries[@]}"; do list=${list:+$list;}${prefix_of[$library]}; done
    echo "$list"; exit ;;
  '') ;;
  *) echo "usage: build-dependencies.sh [--prefix]" >&2; exit 2 ;;
esac

"$here/../setup-debian.sh" windows
read_versions
name_prefixes
all_built && exit
mkdir -p "$cache"
exec 9>"$cache/.lock"
flock -n 9 || { echo "Waiting for another build of the libraries for Windows"; flock 9; }
echo "Building the libraries for Windows in $cache"
rm -rf "$cache/.work"  # what an interrupted run left
for library in "${libraries[@]}"; do build_library "$library"; done
rm -rf "$cache/.work"
