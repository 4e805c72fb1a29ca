#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# run.sh [SECONDS] [TARGET...]: fuzzes each target, or all, for some seconds (60), several at a time.
# What is found lies below build/fuzz/found/, with the log; `qek_tests FILE` replays it where
# QEK_FUZZ_TARGET names the target. Result: 0 without a finding, else 1; 2 if the call was wrong.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
# shellcheck source=scripts/tally.sh
. scripts/tally.sh

export seconds=${1:-60} found=$root/build/fuzz/found program=$root/build/fuzz/tests/qek_fuzz
targets=("${@:2}")
if [[ ! $seconds =~ ^[1-9][0-9]*$ ]]; then
    echo "usage: fuzz/run.sh [SECONDS] [TARGET...]" >&2
    exit 2
fi
if [[ ${#targets[@]} -eq 0 ]]; then
    mapfile -t targets < <(cd fuzz/corpus && printf '%s\n' *)
fi
for target in "${targets[@]}"; do
    [[ -d fuzz/corpus/$target ]] || { echo "run.sh: unknown target $target" >&2 && exit 2; }
done
mkdir -p build
if ! { cmake --preset fuzz && cmake --build build/fuzz --target qek_fuzz; } >build/fuzz.log 2>&1; then
    cat build/fuzz.log
    failed=1
    close_tally
fi

fuzz() { # TARGET: starts from the corpus and from what earlier runs reached
    local work=$found/$1
    mkdir -p "$work" "$root/build/fuzz/reached/$1"
    rm -f "$work"/*
    cd "$work"
    export QEK_FUZZ_TARGET=$1 ASAN_OPTIONS=quarantine_size_mb=16 UBSAN_OPTIONS=print_stacktrace=1
    if "$program" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -detect_leaks=0 \
        -max_len=2048 -print_final_stats=1 "$root/build/fuzz/reached/$1" "$root/fuzz/corpus/$1" \
        >log 2>&1; then
        touch passed
    fi
}
export -f fuzz
export root
# shellcheck disable=SC2016 # expanded by the shell that is started
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -c 'fuzz "$1"' fuzz {}
for target in "${targets[@]}"; do
    runs=$(sed -n 's/^stat::number_of_executed_units: //p' "$found/$target/log")
    if [[ -f $found/$target/passed ]]; then
        printf 'ok      %-8s %9d runs\n' "$target" "$runs"
        passed=$((passed + 1))
    else
        printf 'FAILED  %-8s %9d runs, see %s\n' "$target" "${runs:-0}" "$found/$target"
        failed=$((failed + 1))
    fi
done
close_tally
