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

# A log that grows: what has come so far is in the table before more comes, in lines or in parts.
grow() {
    local line lines=0 part
    coproc { ./log_rates --live; }
    for part in '2026-03-01T12:00:05 INFO a\n2026-03-01T12:0' '1:06 ERROR b\n'; do
        # shellcheck disable=SC2059 # with its escapes
        printf "$part" >&"${COPROC[1]}"
        ((++lines))
        while read -rt 60 line <&"${COPROC[0]}" && [[ $line != "lines: $lines,"* ]]; do :; done
        echo "$line"
    done
    eval "exec ${COPROC[1]}>&-"
    wait
}

run_log_rates() {
    local log=$here/examples/log
    said ./log_rates <"$log"
    said ./log_rates --live <"$log" | sed 's/\x1b\[H\x1b\[J/-- drawn afresh\n/'
    said ./log_rates </dev/null
    head -c 300000 /dev/zero | tr '\0' x | said ./log_rates
    said ./log_rates --nope
    grow
}

load_kept() { # FILE: what the shell says to it, and whether the keys before are still there
    printf 'put kept 1\nload %s\nkeys' "$1" | said ./key_shell
}

# Each byte of a file changed, and the file cut behind each: what is said, and how often.
damage() { # FILE
    local bytes at text
    read -ra bytes < <(od -An -v -tu1 -w9999 "$1")
    for at in "${!bytes[@]}"; do
        head -c "$at" "$1" >bad.keys
        load_kept bad.keys
        printf -v text '\\x%02x' "${bytes[@]:0:at}" $((bytes[at] ^ 1 << at % 8)) "${bytes[@]:at+1}"
        # shellcheck disable=SC2059 # escapes
        printf "$text" >bad.keys
        load_kept bad.keys
    done | sort | uniq -c
}

run_key_shell() {
    local bad
    rm -f ./*.keys
    said ./key_shell <"$here/examples/keys"
    od -An -tx1 saved.keys
    printf 'put alpha 2\nload saved.keys\nkeys' | said ./key_shell
    printf 'put x 1\ndelete x\nsave empty.keys\nput x 3\nload empty.keys\nkeys\nsave /dev/full' |
        said ./key_shell
    load_kept .
    damage saved.keys
    # Under a checksum that is right: no second length; a text and a key that run past the end; a
    # length that is cut; the longest one; one in five bytes.
    for bad in '\x01\x59\xa2\xe4\x01' '\x01\x05ahi\x32\x79\x29\xe7' '\x07\x02ahi\x2b\xb4\xbe\xf5' \
        '\xff\xff\xc1\xc1\x89\x67' '\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01a\x81\xaa\x67\x67' \
        '\x01\xf0\xff\xff\xff\x7fahi\x53\x9e\x34\xef'; do
        # shellcheck disable=SC2059 # escapes
        printf "QKVS$bad" >bad.keys
        load_kept bad.keys
    done | sort | uniq -c
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
