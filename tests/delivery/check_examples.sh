#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_examples.sh [PREFIX]: builds the examples against an installed qek_std by CMake and by a
# plain call of the compiler, and compares what they make of good and of bad input with the texts in
# tests/delivery/examples/. Without PREFIX it installs below build/. With --show NAME in front it
# prints what the example makes; that is how the texts are made.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/stage.sh
. "$root/scripts/stage.sh"

shown=""
if [[ ${1:-} == --show ]]; then
    shown=$2
    shift 2
fi
require_packages "${packages_to_build[@]}" libedit-dev pkg-config
stage "${1:-}"
work=$root/build/examples
rm -rf "$work"
mkdir -p "$work"
cd "$work"

by_cmake() { # NAME
    cmake -S "$root/examples/$1" -B "$work/cmake-$1" -D CMAKE_PREFIX_PATH="$prefix" &&
        cmake --build "$work/cmake-$1" && cp "$work/cmake-$1/$1" "$work/$1"
}

by_cc() { # NAME
    local packages=qek_std
    [[ $1 != key_shell ]] || packages+=" libedit"
    # shellcheck disable=SC2046,SC2086 # words of their own
    cc -std=c99 -Wall -Wextra -Wpedantic -Werror "$root/examples/$1/"*.c -o "$work/$1" \
        $(pkg-config --cflags --libs $packages) -Wl,-rpath,"$libdir"
}

# The sessions: what each program is given. Bad input first shows its message, then the result.
said() { # COMMAND...
    local result=0
    "$@" 2>&1 || result=$?
    [[ $result -eq 0 ]] || echo "(result $result)"
}
to_full() { "$@" >/dev/full; }

run_log_rates() {
    local log=$here/examples/log
    said ./log_rates <"$log"
    said ./log_rates --live <"$log" | sed 's/\x1b\[H\x1b\[J/-- drawn afresh\n/'
    said ./log_rates </dev/null
    head -c 300000 /dev/zero | tr '\0' x | said ./log_rates
    said ./log_rates --nope
}

run_key_shell() {
    local bytes
    rm -f ./*.keys
    said ./key_shell <"$here/examples/keys"
    printf 'put alpha 2\nload saved.keys\nkeys' | said ./key_shell
    printf 'put x 1\ndelete x\nsave empty.keys\nput x 3\nload empty.keys\nkeys\nget x' | said ./key_shell
    # Each damaged in one place: magic, an entry, the checksum; then cut.
    for bytes in 0 9 20; do
        { head -c $bytes saved.keys && printf '\xff' && tail -c +$((bytes + 2)) saved.keys; } >bad.keys
        echo 'load bad.keys' | said ./key_shell
    done
    head -c 13 saved.keys >bad.keys
    printf 'put kept 1\nload bad.keys\nkeys' | said ./key_shell
    # A key that does not end, and one without a text, under checksums that are right.
    printf 'QKVSa\x01\xc3\x56\x4c' >bad.keys
    echo 'load bad.keys' | said ./key_shell
    printf 'QKVSa\0\xd8\x89\x49\xa5' >bad.keys
    echo 'load bad.keys' | said ./key_shell
}

run_word_index() {
    cp "$root/tests/demo/harbour.txt" harbour
    printf 'A ship_A ship\n\nx' >short
    said ./word_index harbour short
    said ./word_index --prefix ship harbour short
    said ./word_index --prefix zzz harbour
    printf 'in\0in 2,2' | said ./word_index
    head -c 300 /dev/zero | tr '\0' w | said ./word_index | cut -c 1-3,230-
    said ./word_index short none.txt
    said ./word_index .
    said ./word_index --nope
    said to_full ./word_index short
}

run_outline() {
    local bad
    printf '\nHarbour\n  Ships\n    Sails \n\n    Ropes\n  Quay\nInn\n       Rooms\r\nInn' >plan
    said ./outline plan
    said ./outline --find Harbour/Ships plan
    said ./outline --find Harbour/Ropes <plan
    said ./outline --find Inn/Ropes plan
    said ./outline --find / plan
    for bad in 'a\n    b\n  c' 'a\n b\n\tc' '  a\nb' 'a\n\0b'; do
        # shellcheck disable=SC2059 # with its escapes
        printf "$bad" | said ./outline
    done
    said ./outline </dev/null
    said ./outline none.txt
    said ./outline --find
    said to_full ./outline plan
}

as_expected() { diff "$here/examples/$1.out" <("run_$1"); }

if [[ -n $shown ]]; then
    by_cc "$shown"
    "run_$shown"
    exit
fi
for example in "$root"/examples/*/; do
    name=$(basename "$example")
    check "$name has less than 150 lines" test "$(wc -l <"$example/main.c")" -lt 150
    for way in cmake cc; do
        check "$name builds by $way" "by_$way" "$name"
        check "$name, built by $way, does what is expected" as_expected "$name"
    done
done
close_tally
