#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_gdb.sh [PREFIX]: gdb, told of an installed qek_std and of nothing else, shows the records of
# records.c as expected.txt has them. Without PREFIX it installs below build/. With --show in front
# it prints what gdb shows; that is how expected.txt is made.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/stage.sh
. "$root/scripts/stage.sh"

compares=1
if [[ ${1:-} == --show ]]; then
    compares=0
    shift
fi
require_packages "${packages_to_build[@]}" gdb libxml2-utils
stage "${1:-}"
work=$root/build/gdb
mkdir -p "$work"

shown() { # COMMAND...: what gdb shows of the records, without the addresses, which differ
    gdb -batch -nx "$@" -x "$here/session.gdb" "$work/records" 2>&1 |
        sed -nE 's/0x[0-9a-f]+/0x../g; s/\$[0-9]+ =/*iter =/; /^[a-z_]+ = |^\*|xception|rror/p'
}

session() { shown -iex "set auto-load safe-path $prefix" \
    -iex "add-auto-load-scripts-directory $prefix/share/gdb/auto-load"; }

records() {
    gcc -std=c99 -g -O0 -Wall -Wextra -Werror -Wno-unused-variable -Wno-unused-but-set-variable \
        -I "$prefix/include" "$here/records.c" -o "$work/records" \
        -L "$libdir" -lqek_std -Wl,-rpath,"$libdir"
}

as_expected() { diff "$here/expected.txt" <(session); }

# Every record of the header has its printer, and its entry for the debugger on Windows.
families() {
    local name missing=0
    while read -r name; do
        if ! grep -q "'${name#qek_}':" "$root/debugger/qek_std_gdb.py" ||
            ! grep -q "Type Name=\"$name\"" "$root/debugger/qek_std.natvis"; then
            echo "$name has none"
            missing=1
        fi
    done < <(sed -nE 's/^} (qek_[a-z]+);/\1/p' "$prefix/include/qek_std.h")
    return $missing
}

# As proof that the session shows the work of the printers.
without_printers() {
    [[ $(shown -iex "set auto-load off") == *$'\nstring = {data = 0x'* ]]
}

if [[ $compares -eq 0 ]]; then
    records
    session
    exit
fi
check "the program compiles" records
check "every family has its printers" families
check "without the printers gdb shows fields" without_printers
check "every family, sound and damaged" as_expected
check "the file for the debugger on Windows is well formed" \
    xmllint --noout "$root/debugger/qek_std.natvis"
close_tally
