#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# coverage.sh: runs the tests with counters, and prints how many of the library's lines and branches
# ran; fails below all of them. A report is left in build/coverage/report. What is not counted is
# marked at its place, by gcovr's EXCL comments with a reason behind.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
require_packages "${packages_to_test[@]}" gcovr

build=$root/build/coverage
report=$build/report
mkdir -p "$root/build"
configure "$root/build/configure.log" -S "$root" --preset coverage
cmake --build "$build"
find "$build" -name '*.gcda' -delete # the counts of runs before
export QEK_TEST_SEED=1                # the same steps every time, so that the figures stay
ctest --test-dir "$build" --output-on-failure -j "$(nproc)"

# The folders of the objects are named, so that cmake's own trials are not looked at.
rm -rf "$report"
mkdir -p "$report"
cd "$build" # where gcov leaves files while it works
gcovr --root "$root" \
    --filter "$root/(base|stream|text|pool|array|bits|hash|btree|list|tree)/" \
    --exclude-throw-branches --exclude-unreachable-branches \
    --html-details "$report/index.html" --txt "$report/lines.txt" --print-summary \
    "$build"/CMakeFiles/*.dir "$build"/tests/CMakeFiles/*.dir | tee "$report/summary.txt"

counts() { # WHAT: prints how many ran of how many
    sed -nE "s/^$1: .*\(([0-9]+) out of ([0-9]+)\)$/\1 \2/p" "$report/summary.txt"
}
all_ran() { # RAN TOTAL
    [[ $1 -gt 0 && $1 -eq $2 ]] || { grep -vE '100%( *)$' "$report/lines.txt" && return 1; }
}
percentage() { # RAN TOTAL: rounded down
    printf '%d.%d %%' $(($1 * 100 / $2)) $(($1 * 1000 / $2 % 10))
}
read -ra lines < <(counts lines)
read -ra branches < <(counts branches)
check "lines: ${lines[0]} of ${lines[1]}" all_ran "${lines[@]}"
check "branches: ${branches[0]} of ${branches[1]}" all_ran "${branches[@]}"
[[ -z ${QEK_FIGURE:-} ]] ||
    echo "lines $(percentage "${lines[@]}"), branches $(percentage "${branches[@]}")" >"$QEK_FIGURE"
close_tally
