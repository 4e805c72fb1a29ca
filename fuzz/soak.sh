#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# soak.sh [OPERATIONS]: random operations on all families (200 million), shared among the
# processors. Fails at the first difference from a model, broken structure or block that is left.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
mkdir -p build/soak
{ cmake --preset default && cmake --build build/default --target qek_tests; } >build/soak/build.log ||
    { cat build/soak/build.log && exit 1; }
cd build/soak
rm -f ./*.log
share=$(((${1:-200000000} + $(nproc) - 1) / $(nproc)))
result=0
# shellcheck disable=SC2016 # expanded by the shell that is started
seq "$(nproc)" | QEK_SOAK=$share xargs -P "$(nproc)" -I{} bash -c \
    '../default/tests/qek_tests >"$1.log" 2>&1 || { cat "$1.log" && exit 1; }' soak {} || result=1
sed -n 's/ operations done$//p' ./*.log |
    awk -v seconds=$SECONDS '{ sum += $1 } END { print sum " operations, " seconds " seconds" }'
exit $result
