#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_library.sh SHARED STATIC: the finished library needs the C runtime alone, goes by its name,
# and has no data of its own that could change. NM, OBJDUMP and STRIP name the platform's tools.
set -euo pipefail
export LC_ALL=C

shared=$1 static=$2
failed=0
expect() { # WHAT WANTED FOUND: the wanted text is a pattern
    # shellcheck disable=SC2053 # a pattern
    if [[ $3 != $2 ]]; then
        printf '%s: expected "%s", found "%s"\n' "$1" "$2" "$3"
        failed=1
    fi
}

heads=$("${OBJDUMP:-objdump}" -p "$shared")
if [[ $shared == *.dll ]]; then
    expect needed 'KERNEL32.dll msvcrt.dll' \
        "$(sed -nE 's/.*DLL Name: (.*)/\1/p' <<<"$heads" | sort | paste -sd' ')"
    expect name 'qek_std-0.dll' "$(sed -nE 's/^Name\s.* (\S*\.dll)$/\1/p' <<<"$heads")"
    expect 'told of threads' 1 "$(grep -c ' DisableThreadLibraryCalls$' <<<"$heads" || true)"
    expect 'version resource' 1 "$(strings -el "$shared" | grep -c '^VS_VERSION_INFO$' || true)"
else
    # The dynamic linker itself is named by some platforms, and is part of the runtime.
    expect needed 'libc.so.6' \
        "$(sed -nE 's/ *NEEDED +(.*)/\1/p' <<<"$heads" | grep -v '^ld' | paste -sd' ')"
    expect soname 'libqek_std.so.0' "$(sed -nE 's/ *SONAME +(.*)/\1/p' <<<"$heads")"
fi
# Addresses that are put in while loading, and cannot be written afterwards, are no such data.
constants=$("${OBJDUMP:-objdump}" -t "$static" | awk '/ \.data\.rel\.ro/ { print $NF }')
expect 'data that could change' '' \
    "$("${NM:-nm}" "$static" | awk '$2 ~ /^[dDbBC]$/ && $3 !~ /^\./ { print $3 }' |
        { grep -vxF "$constants" || true; } | paste -sd' ')"

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
"${STRIP:-strip}" -o "$stripped" "$shared"
size=$(stat -c %s "$stripped") limit=262144
echo "stripped size: $size bytes"
# The limit is that of what is shipped, for x86-64 and by g++; others lay out more code.
if [[ $heads == *'file format elf64-x86-64'* ]] && ! grep -q "clang version" "$shared" &&
    ((size > limit)); then
    echo "which is more than $limit"
    failed=1
fi
exit "$failed"
