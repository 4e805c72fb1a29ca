#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# make_reference.sh [PREFIX]: makes the reference, build/reference/html/index.html, from the public
# header: that of an installed qek_std, or the one here. A warning is an error, and every exported
# function, every parameter and every field must be in it.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/tally.sh
. scripts/tally.sh
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
require_packages doxygen python3

export QEK_HEADER=${1:+$1/}include/qek_std.h
export QEK_OUTPUT=build/reference
QEK_VERSION=$(sed -nE 's/^#define QEK_STD_VERSION "(.*)"/\1/p' "$QEK_HEADER")
export QEK_VERSION
rm -rf "$QEK_OUTPUT"
mkdir -p "$QEK_OUTPUT"
# Doxygen's own layout, with what a family is for in front of its functions.
doxygen -l "$QEK_OUTPUT/layout.xml"
sed -i -e '/<group>/,/<\/group>/{
    /<detaileddescription/d
    s/<briefdescription.*/<detaileddescription title="About"\/>/
    /<classes/s/title=""/title="Records"/
    }' -e '/<tab type="modules"/s/title=""/title="Families"/' \
    -e '/<tab type="\(classes\|classlist\)"/s/title=""/title="Records"/' \
    -e '/<tab type="files"/s/visible="yes"/visible="no"/' "$QEK_OUTPUT/layout.xml"
check "Doxygen reads the header without a warning" doxygen docs/reference/Doxyfile
complete=0
counted=$(python3 docs/reference/count.py "$QEK_OUTPUT/xml" cmake/exports.txt) || complete=1
check "${counted%%$'\n'*}" test "$complete" -eq 0
[[ $complete -eq 0 ]] || echo "$counted"
close_tally
echo "$QEK_OUTPUT/html/index.html"
