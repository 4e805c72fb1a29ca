#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_snippets.sh [PREFIX]: every piece of C in README.md, in docs/guide.md and in the installed
# header compiles without a warning, runs without a finding of the sanitizers, and prints what stands
# below it. Without PREFIX it installs below build/.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
cd "$root"
# shellcheck source=scripts/tally.sh
. scripts/tally.sh
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
# shellcheck source=scripts/stage.sh
. scripts/stage.sh
require_packages "${packages_to_build[@]}" python3 pkg-config
stage "${1:-}"
work=$root/build/snippets
rm -rf "$work"
mkdir -p "$work"

python3 tests/docs/snippets.py "$work" README.md docs/guide.md
cmake -D HEADER="$prefix/include/qek_std.h" -D OUTPUT="$work/header.c" \
    -P tests/cmake/extract_examples.cmake

runs() { # SOURCE
    local program=${1%.c}
    # shellcheck disable=SC2046 # words of their own
    cc -std=c99 -g -Wall -Wextra -Wpedantic -Werror -fsanitize=address,undefined \
        -fno-sanitize-recover=all "$1" -o "$program" $(pkg-config --cflags --libs qek_std) \
        -Wl,-rpath,"$libdir" && "$program" >"$program.printed" || return 1
    [[ ! -f $program.txt ]] || diff "$program.txt" "$program.printed"
}

for source in "$work"/*.c; do
    check "$(basename "$source" .c)" runs "$source"
done
close_tally
