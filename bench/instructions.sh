#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# instructions.sh [--write]: counts the instructions of hot rows under callgrind, and compares with
# bench/instructions.txt, so that a change of the work shows without a clock. --write makes the file
# afresh. The figures belong to the optimised build by Debian's g++ and to Debian's C library on a
# processor with AVX2, whose variants of memcpy and the like are counted along.
# Result: 0 if all rows are within 1 %; 1 if not; 2 if the call was wrong; 3 if packages are missing
# and the user is not root.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"

case $* in
'' | --write) ;;
*)
    echo "usage: bench/instructions.sh [--write]" >&2
    exit 2
    ;;
esac
require_packages "${packages_to_build[@]}" valgrind

build=$root/build/instructions file=$root/bench/instructions.txt
mkdir -p "$build"
configure "$build/configure.log" -S "$root" --preset default -B "$build" -DQEK_TESTS=OFF
cmake --build "$build" --target qek_std >"$build/build.log" || { cat "$build/build.log" && exit 1; }
gcc -O2 -I"$root/include" "$root/bench/hot.c" -o "$build/hot" -L"$build" -lqek_std \
    -Wl,-rpath,"$build"

count_row() { # ROW: prints its instructions
    valgrind --tool=callgrind --toggle-collect=counted --callgrind-out-file="$build/$1.out" \
        "$build/hot" "$1" >"$build/$1.log" 2>&1 || return 1
    sed -n 's/^summary: //p' "$build/$1.out"
}

is_within() { # ROW NOW: within 1 % of what the file says
    local now=$2 told
    told=$(awk -v row="$1" '$1 == row { print $2 }' "$file")
    echo "$now instructions; the file says ${told:-nothing}"
    [[ -n $told && $now -gt 0 ]] && awk -v a="$now" -v b="$told" \
        'BEGIN { exit !(a <= b * 1.01 && a >= b * 0.99) }'
}

mapfile -t rows < <("$build/hot")
for row in "${rows[@]}"; do
    counted=$(count_row "$row") || { cat "$build/$row.log" && exit 1; }
    if [[ $* == --write ]]; then
        printf '%-16s %s\n' "$row" "$counted"
    else
        check "$row" is_within "$row" "$counted"
    fi
done >"$build/printed"
if [[ $* == --write ]]; then
    cp "$build/printed" "$file"
    cat "$file"
else
    cat "$build/printed"
    close_tally
fi
