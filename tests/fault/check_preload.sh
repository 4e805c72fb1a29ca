#!/bin/sh
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Has each allocation of the library refused in turn, once and from then on, inside of a program.
# Usage: check_preload.sh REFUSING_LIBRARY PROGRAM
set -eu
export LC_ALL=C
refuse() { # NUMBER[+] ARGUMENTS
    number=$1
    shift
    env LD_PRELOAD="$library" QEK_REFUSE="$number" "$program" "$@"
}
library=$1 program=$2

for mode in '' '+'; do
    n=1
    while refused=$(refuse "$n$mode"); [ "$refused" -gt 0 ]; do
        n=$((n + 1))
    done
    echo "$((n - 1)) allocations refused in turn ${mode:+with all behind them}"
    [ "$n" -gt 40 ]
done

# The first two are pool records; then come key text and buckets, which are done without.
for n in 1 2 5 6 1+ 2+ 3+ 4+ 5+ 6+; do
    status=0
    (refuse "$n" key) >/dev/null 2>&1 || status=$?
    [ "$status" -eq 139 ] || { echo "allocation $n refused ended with $status" >&2; exit 1; }
done
