#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_exports.sh HEADER LIST LIBRARY: the header declares exactly what the list names, and the
# library exports the same and nothing else. NM and OBJDUMP name the platform's tools.
set -euo pipefail
export LC_ALL=C

header=$1 list=$2 library=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

sed -nE 's/^QEK_API .*[ *](qek_[a-z0-9_]+)\(.*/\1/p' "$header" | sort >"$work/header"
grep '^qek_' "$list" | sort >"$work/list"
if [[ $library == *.dll ]]; then
    "${OBJDUMP:-objdump}" -p "$library" |
        sed -nE '/Ordinal\/Name/,/^$/s/.*\[ *[0-9]+\] (\S+).*/\1/p' | sort >"$work/library"
else
    "${NM:-nm}" -D --defined-only "$library" |
        awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sort >"$work/library"
fi

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

# Functions by family, and in all.
cat >"$work/wanted" <<'END'
array 35
arrayd 35
arrays 37
arrayt 20
arrayx 33
bitree 9
bits 9
btree 18
btreed 18
btreex 18
char 20
free 1
hash 18
hashd 18
hasht 16
hashx 18
list 26
lists 27
listx 10
malloc 1
mem 8
pool 15
str 7
stream 57
string 49
stringx 30
tree 26
wchar 45
END
awk -F_ '{ count[$2]++ } END { for (family in count) print family, count[family] }' "$work/list" |
    sort >"$work/counted"
if ! diff "$work/wanted" "$work/counted"; then
    echo "the families have other numbers of functions than they should"
    failed=1
fi

versions=$("${OBJDUMP:-objdump}" -p "$library" | grep -cE '^[0-9].* QEK_STD_' || true)
if [[ $library != *.dll && $versions -ne 1 ]]; then
    echo "$versions version nodes of the library's own, not 1"
    failed=1
fi

comm -23 "$work/list" "$work/library" >"$work/missing"
report "in the list, but not exported" "$work/missing"
total=$(wc -l <"$work/list")
if ! grep -q " $total plain functions: $((total - 2)) named " "$header"; then
    echo "the head of the header names another number of functions than $total"
    failed=1
fi
echo "$total functions"
exit "$failed"
