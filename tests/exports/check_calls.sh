#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_calls.sh LIST OBJECT...: every function of the list is called from the objects of the tests.
# NM names the platform's tool.
set -euo pipefail
export LC_ALL=C

list=$1
shift
missing=$(comm -23 <(grep '^qek_' "$list" | sort) \
    <("${NM:-nm}" -u "$@" | awk '$1 == "U" { sub(/^_/, "", $2); print $2 }' | sort -u) | sed 's/^/  /')
if [[ -n $missing ]]; then
    echo "no test calls:"
    echo "$missing"
    exit 1
fi
echo "every function is called by a test"
