#!/usr/bin/env bash
# long.sh [SHARE]: what is tried for long. SHARE, in per cent (100), shortens all of it alike. Ends with the first
# thing that is not as it must be. What it found stands in docs/trust.md.
set -euo pipefail
cd -P "$(dirname "$0")/../.."
share=${1:-100}
share() { echo $((($1 * share + 99) / 100)); }
step() { echo; echo "== $*"; }
scratch=$(mktemp -d)
mounted=
trap '[ -z "$mounted" ] || umount "$scratch/small"; rm -rf "$scratch"' EXIT

fuzz() {
  if ! command -v clang++ >/dev/null; then
    echo "left out: there is no clang++"
    return
  fi
  cmake --preset fuzz >"$scratch/fuzz.log"
  cmake --build --preset fuzz -j "$(nproc)" >>"$scratch/fuzz.log" || { tail -n 40 "$scratch/fuzz.log"; exit 1; }
  local target
  for target in tests/fuzz/corpus/*; do
    target=${target##*/}
    mkdir -p "build-fuzz/found/$target"
    # What is new goes into the first folder, and a crash beside it.
    if ! build-fuzz/bin/fuzz-"$target" -max_total_time="$(share 60)" -max_len=4096 -print_final_stats=1 \
      -artifact_prefix="build-fuzz/found/$target-" "build-fuzz/found/$target" "tests/fuzz/corpus/$target" \
      >"$scratch/$target.log" 2>&1; then
      tail -n 60 "$scratch/$target.log"
      exit 1
    fi
    echo "  $target: $(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/$target.log") inputs in $(share 60) s"
  done
}

disk() {
  mkdir "$scratch/small"
  if ! mount -t tmpfs -o size=2m tmpfs "$scratch/small" 2>/dev/null; then
    echo "left out: a small file system takes a root who may mount one"
    return
  fi
  mounted=yes
  build/bin/kestrova-trials disk "$(share 100)" "$scratch/small"
}

step "building the optimised programs (build/)"
cmake --preset bench >"$scratch/build.log"
cmake --build --preset bench -j "$(nproc)" --target kestrova-years kestrova-trials hurried-watch >>"$scratch/build.log"
step "inputs of strangers, made up"
fuzz
step "simulated machines"
build/bin/kestrova-years --checks "$(share 10000000)" --seed-of-the-day
step "kills"
build/bin/kestrova-trials kills "$(share 100)"
step "torn logs"
build/bin/kestrova-trials logs "$(share 300)"
step "a full disk"
disk
step "hours of watching"
build/bin/kestrova-trials soak "$(share 3600)"
step "turned bits"
build/bin/kestrova-trials bits "$(share 300)"
