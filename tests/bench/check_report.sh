#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_report.sh: the table of bench/report.py on small inputs: which rows miss, which got worse,
# which of two peers counts, and that sides which did different work are an error.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

run() { # NAME NS RESULT: as Google Benchmark writes a median
    echo "{\"run_name\": \"$1/manual_time\", \"name\": \"$1\", \"run_type\": \"aggregate\"," \
        "\"aggregate_name\": \"median\", \"items_per_second\": $((1000000000 / $2)), \"result\": $3}"
}
program() { # FILE RUN...
    local IFS=,
    echo "{\"benchmarks\": [${*:2}]}" >"$work/$1"
}
# Reached by 0.2 against the better peer, missed by 3.0 against 1.5, and an iteration that is no
# median and does not count.
program array.json "$(run mem_chr/ours/16 30 7)" "$(run mem_chr/memchr/16 10 7)"
program hash.json "$(run hash_insert/ours/1000 20 1)" "$(run hash_insert/absl/1000 100 1)" \
    "$(run hash_insert/apr/1000 400 1)" \
    "$(run hash_insert/ours/1000 999 1 | sed 's/median/mean/')"
program faster.json "$(run mem_chr/ours/16 20 7)" "$(run mem_chr/memchr/16 10 7)"
program unequal.json "$(run mem_chr/ours/16 30 7)" "$(run mem_chr/memchr/16 10 8)"
program weights.json '{"run_name": "hash_memory/ours/1000/iterations:1", "run_type": "iteration",
    "name": "", "bytes": 50}' '{"run_name": "hash_memory/absl/1000", "run_type": "iteration",
    "name": "", "bytes": 100}'
: >"$work/empty.json"

report() { # RESULT PROGRAM... -- ARGUMENT...
    local result=$1 programs=()
    shift
    while [[ $# -gt 0 && $1 != -- ]]; do
        programs+=("$work/$1.json")
        shift
    done
    python3 "$root/bench/report.py" "$work/$result" --from "${programs[@]}" "${@:2}"
}
prints() { # LINE... -- COMMAND...: all lines, blanks squeezed, in this order
    local lines=() printed
    while [[ $1 != -- ]]; do
        lines+=("$1")
        shift
    done
    printed=$("${@:2}" | tr -s ' ')
    echo "$printed"
    [[ $printed == *"$(printf '%s\n' "${lines[@]}")"* ]]
}
fails() { ! "$@"; }

check "misses first, the better peer, the target's sum" \
    prints "mem_chr 16 memchr 30 ns 10 ns 3.00 1.5 misses, L: call" \
    "hash_insert 1 000 absl or apr 20 ns 100 ns 0.20 0.4" "" \
    "2 targets, 1 reached, 1 missed" -- report now array hash empty
report before faster >/dev/null
check "worse than before" \
    prints "mem_chr 16 memchr 30 ns 10 ns 3.00 1.5 misses, L: call, worse by 50 %" -- \
    report now array hash -- --against "$work/before"
check "not worse than itself" \
    prints "2 targets, 1 reached, 1 missed; 0 ratios worse than in $work/now" -- \
    report again array hash -- --against "$work/now"
check "weights" prints "hash_memory 1 000 absl 50.0 B 100.0 B 0.50" -- report now weights
check "different work is an error" fails report now unequal
check "nothing measured is an error" fails report now empty

# Results in which each row of README has half the time of its peers, or half the bytes.
cd "$root/bench"
python3 -Bc 'import json, rows
entries = {}
for row, size, peers in rows.README:
    for side in ["ours"] + peers.split("|"):
        figure = 50 if side == "ours" else 100
        entries[f"{row}/{side}/{size}"] = {"bytes" if "_memory" in row else "ns": figure}
print(json.dumps({"machine": "m", "date": "d", "entries": entries}))' >"$work/full"
page() { printf '%s\n' head '<!-- figures: bench/report.py --readme -->' "$@"; }
page old '<!-- end of figures -->' foot >"$work/page"
page foot >"$work/torn"
writes() { # RESULTS PAGE
    python3 "$root/bench/report.py" "$work/$1" --readme "$work/$2"
}
written() { # the second time over the first
    writes full page && cp "$work/page" "$work/once" && writes full page && cat "$work/page" &&
        cmp "$work/page" "$work/once" &&
        [[ $(<"$work/page") == head$'\n<!--'*$'-->\n\n| Work '*$'| 0.50 |\n\nOf '*$'-->\nfoot' ]] &&
        [[ $(grep -c '| 0.50 |$' "$work/page") -ge 10 ]]
}
check "the rows of README" written
check "a page that has no place for them" fails writes full torn
check "not all of them measured" fails writes now page
check "which leaves the page" cmp "$work/page" "$work/once"
close_tally
