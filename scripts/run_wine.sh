#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run_wine.sh PROGRAM ARGUMENT...: runs a Windows program. A program that crashes under wine may end
# with 0 all the same, so its last line must say that it came to its end.
set -euo pipefail

export WINEPREFIX=${WINEPREFIX:-${TMPDIR:-/tmp}/qek_wine.$UID} WINEDEBUG=-all
export WINEDLLOVERRIDES='winedbg.exe=d;mscoree,mshtml='
wine=$(PATH=$PATH:/usr/lib/wine type -P wine64)
status=0
output=$("$wine" "$@" </dev/null | tr -d '\r') || status=$?
printf '%s\n' "$output"
if [[ $status -eq 0 && " $* " != *" --gtest_list_tests "* ]]; then
    last=$(tail -n 1 <<<"$output")
    if [[ ! $last =~ ^\[\ \ (PASSED|SKIPPED)|examples\ ran$|says\ the\ same ]]; then
        echo "run_wine.sh: the program did not come to its end" >&2
        status=1
    fi
fi
exit "$status"
