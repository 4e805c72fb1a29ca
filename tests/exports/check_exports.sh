#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# check_exports.sh HEADER LIST LIBRARY: the header declares exactly what the list names, and the
# library exports nothing else. Names that the library lacks so far are printed.
set -euo pipefail
export LC_ALL=C

header=$1 list=$2 library=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

sed -nE 's/^QEK_API .*[ *](qek_[a-z0-9_]+)\(.*/\1/p' "$header" | sort >"$work/header"
grep '^qek_' "$list" | sort >"$work/list"
nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' |
    sort >"$work/library"

failed=0
report() { # MESSAGE FILE: complains if the file has lines
    if [[ -s $2 ]]; then
        echo "$1:"
        sed 's/^/  /' "$2"
        failed=1
    fi
}

uniq -d "$work/header" >"$work/twice"
report "declared twice in the header" "$work/twice"
comm -23 "$work/header" "$work/list" >"$work/unlisted"
report "declared, but not in the list" "$work/unlisted"
comm -13 "$work/header" "$work/list" >"$work/undeclared"
report "in the list, but not declared" "$work/undeclared"
comm -13 "$work/list" "$work/library" >"$work/extra"
report "exported, but not in the list" "$work/extra"

total=$(wc -l <"$work/list")
if [[ $total -ne 624 ]]; then
    echo "the list has $total names, not 624"
    failed=1
fi

versions=$(readelf -W --version-info "$library" | grep -cE 'Name: QEK_STD_' || true)
if [[ $versions -ne 1 ]]; then
    echo "$versions version nodes of the library's own, not 1"
    failed=1
fi

comm -23 "$work/list" "$work/library" >"$work/missing"
echo "$((total - $(wc -l <"$work/missing"))) of $total functions stand; still missing:"
awk -F_ '{ name[$2] = name[$2] " " $0; count[$2]++ }
         END { for (f in name) printf "  %s (%d):%s\n", f, count[f], name[f] }' "$work/missing" |
    sort | fold -s -w 118
exit "$failed"
