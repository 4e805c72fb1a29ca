#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# valgrind.sh: the tests of the default configuration under valgrind, in as many parts as there are
# processors. Those that fork or go deep are left to the sanitizers.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"

configure "$root/build/configure.log" -S "$root" --preset default
cmake --build "$root/build/default" --target qek_tests
parts=$(nproc)
part() { # NUMBER
    GTEST_TOTAL_SHARDS=$parts GTEST_SHARD_INDEX=$1 QEK_TEST_SEED=1 \
        valgrind --quiet --error-exitcode=9 --leak-check=full \
        --errors-for-leak-kinds=definite,indirect "$root/build/default/tests/qek_tests" \
        --gtest_brief=1 --gtest_filter='-*DeathTest*:*deep*:*fault*' \
        >"$root/build/valgrind.$1" 2>&1
}
ended() { # NUMBER STATUS
    [[ $2 -eq 0 ]] || { cat "$root/build/valgrind.$1" && return 1; }
}
running=()
for ((number = 0; number < parts; ++number)); do
    part "$number" &
    running+=($!)
done
for ((number = 0; number < parts; ++number)); do
    status=0
    wait "${running[number]}" || status=$?
    check "valgrind, part $((number + 1)) of $parts" ended "$number" "$status"
done
[[ -z ${QEK_FIGURE:-} ]] || echo "$failed parts with findings of $parts" >"$QEK_FIGURE"
close_tally
