#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# soak.sh [OPERATIONS]: random operations on all families (200 million), shared among the
# processors. Fails at the first difference from a model, broken structure or block that is left.
set -euo pipefail

operations=${1:-200000000}
if [[ ! $operations =~ ^[1-9][0-9]*$ ]]; then
    echo "usage: fuzz/soak.sh [OPERATIONS]" >&2
    exit 2
fi
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
mkdir -p build/soak
if ! { cmake --preset default && cmake --build build/default --target qek_tests; } \
    >build/soak/build.log 2>&1; then
    cat build/soak/build.log
    exit 1
fi
cd build/soak
processors=$(nproc)
started=()
for ((number = 0; number < processors; ++number)); do
    QEK_SOAK=$(((operations + processors - 1) / processors)) ../default/tests/qek_tests \
        >"$number.log" 2>&1 &
    started+=($!)
done
result=0
for number in "${!started[@]}"; do
    wait "${started[$number]}" || { result=1 && cat "$number.log"; }
done
awk -v seconds=$SECONDS '/ operations in / { sum += $1 }
    END { printf "%d operations in %d seconds\n", sum, seconds }' ./*.log
exit $result
