#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_index.sh WORD_INDEX...: an index is the same bytes on every platform. The words of the call
# run the program as it was built for this one; the indexes beside this script were written on a
# big-endian and on a little-endian one.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$@" --index "$work/words" harbour.txt
for order in big little; do
    "$@" --check "harbour.$order-endian.index" harbour.txt
    cmp "$work/words" "harbour.$order-endian.index"
done
