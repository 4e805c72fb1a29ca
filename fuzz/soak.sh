#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# soak.sh [OPERATIONS]: random operations on all families (200 million), shared among the
# processors. Fails at the first difference from a model, broken structure or block that is left.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/tally.sh
. scripts/tally.sh
mkdir -p build/soak
{ cmake --preset default && cmake --build build/default --target qek_tests; } >build/soak/build.log ||
    { cat build/soak/build.log && exit 1; }
ended() { # NUMBER STATUS
    [[ $2 -eq 0 ]] || { cat "$1.log" && return 1; }
}
cd build/soak
rm -f ./*.log
share=$(((${1:-200000000} + $(nproc) - 1) / $(nproc)))
part() { # NUMBER
    QEK_SOAK=$share ../default/tests/qek_tests >"$1.log" 2>&1
}
running=()
for ((number = 0; number < $(nproc); ++number)); do
    part "$number" &
    running+=($!)
done
for number in "${!running[@]}"; do
    status=0
    wait "${running[number]}" || status=$?
    check "soak, part $((number + 1)) of $(nproc)" ended "$number" "$status"
done
figure=$(sed -n 's/ operations done$//p' ./*.log |
    awk -v seconds=$SECONDS '{ sum += $1 } END { print sum " operations, " seconds " seconds" }')
echo "$figure"
[[ -z ${QEK_FIGURE:-} ]] || echo "$failed findings in $figure" >"$QEK_FIGURE"
close_tally
