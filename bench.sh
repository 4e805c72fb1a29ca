#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
set -euo pipefail

usage() {
    cat <<'END'
usage: ./bench.sh [--quick] [--only PATTERN] [--against FILE]

Measures the library and its peers side by side: sets up what is missing, builds below build/bench/,
runs all benchmarks, and prints one table with the rows that miss their target first. Leaves the
figures in build/bench/results.json. docs/performance.md explains the rows. A run takes a quarter of
an hour and wants a machine that does nothing else.

  --quick         small sizes, short and few runs: shows that everything works, and no more
  --only PATTERN  benchmarks whose names (row/side/size) the extended regular expression finds
  --against FILE  marks ratios that are worse by more than 15 % than those in FILE, the results.json
                  of an earlier run
  --help          print this text

A run of everything draws docs/performance.svg afresh.

Result: 0, whatever the times are; 1 if something failed, or two sides of a row did different work;
2 if the call was wrong; 3 if packages are missing and the user is not root.
END
}

wrong() {
    echo "bench.sh: $1" >&2
    echo "Try './bench.sh --help'." >&2
    exit 2
}

quick=0 only='' against=''
while [[ $# -gt 0 ]]; do
    case $1 in
    --quick) quick=1 ;;
    --only | --against)
        [[ $# -gt 1 ]] || wrong "a word is missing behind $1"
        [[ $1 == --only ]] && only=$2 || against=$2
        shift
        ;;
    --help)
        usage
        exit 0
        ;;
    *) wrong "unknown argument $1" ;;
    esac
    shift
done
[[ -z $against || -r $against ]] || wrong "cannot read $against"

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$root/build/bench
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
require_packages "${packages_to_bench[@]}"

mkdir -p "$build/runs"
echo "== building" >&2
configure "$build/configure.log" -S "$root" --preset bench
if ! cmake --build "$build" >"$build/build.log" 2>&1; then
    cat "$build/build.log" >&2
    exit 1
fi

settings=(--benchmark_repetitions=7 --benchmark_min_time=0.02)
if [[ $quick -eq 1 ]]; then
    settings=(--benchmark_repetitions=2 --benchmark_min_time=0.002)
    export QEK_BENCH_LARGEST=2000
fi
rm -f "$build"/runs/*
for program in "$build"/bench/qek_bench_*; do
    name=${program##*qek_bench_}
    [[ $name != hot ]] || continue
    echo "== running $name" >&2
    for part in times weights; do
        if ! (
            [[ $part == times ]] || export QEK_BENCH_WEIGHTS=1
            "$program" "${settings[@]}" --benchmark_enable_random_interleaving=true \
                --benchmark_report_aggregates_only=true --benchmark_filter="${only:-.}" \
                --benchmark_out="$build/runs/$name.$part.json" --benchmark_out_format=json
        ) >"$build/run.log" 2>&1; then
            cat "$build/run.log" >&2
            exit 1
        fi
    done
done

report=("$build/results.json" --from "$build"/runs/*.json)
[[ -z $against ]] || report+=(--against "$against")
if [[ $quick -eq 0 && -z $only ]]; then
    report+=(--draw "$root/docs/performance.svg")
fi
# Debian's own interpreter: the one that sees Debian's plotting library.
exec /usr/bin/python3 "$root/bench/report.py" "${report[@]}"
