#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_abi.sh [--write]: the binary interface, for 64 and for 32 bits, is the one that was written
# down beside this script; with --write, writes it down afresh.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"

library() { # PRESET: builds the library with its debug information
    configure "$root/build/configure.log" -S "$root" --preset "$1" -B "$root/build/abi-$1" \
        -DQEK_TESTS=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo
    cmake --build "$root/build/abi-$1" --target qek_std
}
write() { # PRESET DUMP: the dump must not tell where it was made
    library "$1" && abidw --out-file "$2" --headers-dir "$root/include" --no-corpus-path \
        --no-show-locs --no-comp-dir-path --no-elf-needed --no-parameter-names \
        --drop-private-types --drop-undefined-syms --exported-interfaces-only \
        --type-id-style hash "$root/build/abi-$1/libqek_std.so" && ! grep -m1 "path='/" "$2"
}
same() { # PRESET DUMP: whatever is added, taken away or changed is a difference
    library "$1" && abidiff --no-unreferenced-symbols "$2" "$root/build/abi-$1/libqek_std.so"
}

action=same
[[ ${1:-} != --write ]] || action="write"
check "binary interface, 64 bits" "$action" default "$root/tests/abi/linux-x86_64.abi"
check "binary interface, 32 bits" "$action" m32 "$root/tests/abi/linux-i386.abi"
close_tally
