#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# check_library.sh SHARED STATIC: the finished library needs the C library alone, goes by its SONAME,
# and has no data of its own that could change.
set -euo pipefail
export LC_ALL=C

shared=$1 static=$2
failed=0
expect() { # WHAT WANTED FOUND
    if [[ $2 != "$3" ]]; then
        printf '%s: expected "%s", found "%s"\n' "$1" "$2" "$3"
        failed=1
    fi
}

dynamic=$(readelf -dW "$shared")
expect needed libc.so.6 "$(sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' <<<"$dynamic" | paste -sd' ')"
expect soname libqek_std.so.0 "$(sed -nE 's/.*\(SONAME\).*\[(.*)\]/\1/p' <<<"$dynamic")"
expect 'data that could change' '' "$(nm "$static" | awk '$2 ~ /^[dDbBC]$/ { print $3 }' | paste -sd' ')"

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
strip -o "$stripped" "$shared"
echo "stripped size: $(stat -c %s "$stripped") bytes"
exit "$failed"
