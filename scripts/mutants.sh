#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# mutants.sh [COUNT [OPTION...]]: how many of so many changes of the compiled library the tests
# notice; 300 of them if not told, 0 for all that there are. At least 95 % have to be. The options
# are those of tests/mutants/mutants.py, say --seed 2 for another sample.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/relink.sh
. "$root/scripts/relink.sh"

# Nothing of the library is inlined, so that each function of the source is there once.
build=$root/build/mutants
make_test_objects
relink "$build" g++ "-Og -g1 -fno-inline"
enough() {
    "$root/tests/mutants/mutants.py" "$build/tests" "$build/watched.a" --least 95 \
        --sample "${1:-300}" "${@:2}" | tee "$build/mutants.txt" >&3
}
exec 3>&1
check "mutants" enough "$@"
[[ -z ${QEK_FIGURE:-} ]] || tail -n 1 "$build/mutants.txt" >"$QEK_FIGURE"
close_tally
