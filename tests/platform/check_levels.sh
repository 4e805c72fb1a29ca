#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_levels.sh: whatever compiler and level of optimisation the library is built with, the tests
# print the same. The test objects of the default configuration are linked with each library.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/relink.sh
. "$root/scripts/relink.sh"
work=$root/build/levels
mkdir -p "$work"
make_test_objects

output() { # COMPILER LEVEL: leaves what the tests print in a file of that name
    local name=$1-$2
    relink "$work/$name" "$1" "-$2"
    # How many allocations a run makes may differ a little with the place of the heap.
    QEK_TEST_SEED=1 "$work/$name/tests" --gtest_print_time=0 | sed '/LIBRARY/d' >"$work/$name.txt"
}
same() { # COMPILER LEVEL
    output "$1" "$2" && diff "$work/g++-O2.txt" "$work/$1-$2.txt"
}

for compiler in g++ clang++; do
    for level in O2 O0 O3; do
        check "the tests print the same, $compiler -$level" same "$compiler" "$level"
    done
done
close_tally
