#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# run_wine.sh BITS PROGRAM ARGUMENT...: runs a Windows program of 64 or 32 bits. A program that
# crashes under wine may end with 0 all the same, so its last line must say that it came to its end.
# For 32 bits there is a Debian tree of its own (wine32.sh), in which this project and /tmp are seen.
set -euo pipefail

bits=$1
shift
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# A server of its own for each tree, since it sees that tree alone.
WINEPREFIX=/tmp/qek_wine$bits.$UID.$(cksum <<<"$root" | cut -d' ' -f1)
export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES='winedbg.exe=d;mscoree,mshtml='
# The server stays for a while, as it takes a second to start.
wine() {
    /usr/lib/wine/wineserver64 -p20 2>/dev/null || true
    PATH=$PATH:/usr/lib/wine wine64 "$@"
}
if [[ $bits == 32 ]]; then
    export QEK_SHOWN="/proc /dev /tmp $root"
    # shellcheck disable=SC2016 # expanded by the shell that is started
    in_tree='for folder in $QEK_SHOWN; do
            mkdir -p "$0$folder"
            mount --bind "$folder" "$0$folder"
        done
        chroot "$0" /usr/lib/wine/wineserver32 -p20 2>/dev/null || true
        exec chroot "$0" env -C "$PWD" /usr/lib/wine/wine "$@"'
    wine() {
        unshare --mount bash -euc "$in_tree" "$root/build/wine32" "$@"
    }
fi

# Programs that start at once would all set up what a new user of wine has.
(
    flock 9
    if [[ ! -e $WINEPREFIX/is_set_up ]]; then
        wine wineboot --init </dev/null >/dev/null 2>&1 9>&- || true
        mkdir -p "$WINEPREFIX"
        touch "$WINEPREFIX/is_set_up"
    fi
) 9>"$WINEPREFIX.lock"

# A server of wine that is about to end may take a program down with it, or keep it from beginning:
# that one starts again. A program that runs says so before its first test.
errors=$(mktemp)
trap 'rm -f "$errors"' EXIT
for _ in 1 2 3; do
    status=0
    output=$(wine "$@" </dev/null 2>"$errors" | tr -d '\r') || status=$?
    if [[ -n $output ]] && ! grep -q '^wine client error' "$errors"; then
        break
    fi
done
cat "$errors" >&2
printf '%s\n' "$output"
if [[ $status -eq 0 && " $* " != *" --gtest_list_tests "* ]]; then
    last=$(tail -n 1 <<<"$output")
    if [[ ! $last =~ ^\[\ \ (PASSED|SKIPPED)|examples\ ran$|inputs\ replayed$|says\ the\ same ]]; then
        echo "run_wine.sh: the program did not come to its end" >&2
        status=1
    fi
fi
exit "$status"
