#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# mutants.sh [COUNT]: how many of so many changes of the compiled library the tests notice; 200 of
# them if not told, 0 for all that there are. At least 95 % have to be.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"

# Nothing is inlined, so that each function of the source is there once.
build=$root/build/mutants
configure "$root/build/configure.log" -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=g++ \
    -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="-O1 -g1 -fno-inline -fno-pie" \
    -DCMAKE_EXE_LINKER_FLAGS=-no-pie
cmake --build "$build" --target qek_tests
"$root/tests/mutants/mutants.py" "$build/tests/qek_tests" "$build/tests/libqek_std_watched.a" \
    --sample "${1:-200}" | tee "$build/mutants.txt"
enough() {
    local killed
    killed=$(sed -nE '$s/.*, ([0-9]+)\..*/\1/p' "$build/mutants.txt")
    [[ $killed -ge 95 ]]
}
check "mutants: $(tail -n 1 "$build/mutants.txt")" enough
[[ -z ${QEK_FIGURE:-} ]] || tail -n 1 "$build/mutants.txt" >"$QEK_FIGURE"
close_tally
