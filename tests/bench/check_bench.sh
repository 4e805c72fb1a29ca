#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_bench.sh: bench.sh builds, runs and compares, on few rows and small sizes; what it makes of
# wrong calls; and the report's own check. Looks at no time.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
table=$root/build/bench/table

quick_run() { # ARGUMENT...: leaves the table
    mkdir -p "$root/build/bench"
    "$root/bench.sh" --quick --only '^(mem_|hash_)' "$@" >"$table" || return 1
    cat "$table"
    [[ $(grep -cE '^mem_chr +(16|1 024) +memchr' "$table") -eq 2 ]] &&
        grep -qE '^hash_insert +1 000 +absl or apr' "$table" &&
        grep -qE '^hash_memory +2 000 +glib .* B ' "$table" &&
        grep -qE '^[0-9]+ targets, ' "$table" && ! grep -q DIFFERENT "$table"
}
compares() {
    cp "$root/build/bench/results.json" "$root/build/bench/before.json"
    quick_run --against "$root/build/bench/before.json" && grep -q ' ratios worse than in ' "$table"
}
ends_with() { # RESULT ARGUMENT...
    local got=0
    "$root/bench.sh" "${@:2}" || got=$?
    [[ $got -eq $1 ]]
}

check "a quick run of two families" quick_run
check "the same against an earlier run" compares
check "nothing of that name" ends_with 1 --quick --only '^no such row$'
check "unknown option" ends_with 2 --fast
check "a word is missing" ends_with 2 --only
check "no file to compare with" ends_with 2 --against "$root/no.json"
check "help" ends_with 0 --help
check "the report" "$root/tests/bench/check_report.sh"
close_tally
