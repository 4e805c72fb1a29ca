#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
set -euo pipefail

usage() {
    cat <<'END'
usage: scripts/demo_outline.sh [DIR]

Builds the program outline below build/demo against the library that is installed in build/stage,
which ./demo.sh sees to, writes a list of the files in DIR with their sizes, by default of the
project's own, and prints two levels of it as an outline.

Result: 0 if all went well; 1 if something failed; 2 if the call was wrong.
END
}

if [[ ${1:-} == --help ]]; then
    usage
    exit 0
fi
if [[ $# -gt 1 || ${1:-} == -* ]]; then
    usage >&2
    exit 2
fi

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
folder=${1:-$root}
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
if [[ ! -d $folder ]]; then
    echo "demo_outline.sh: $folder is no directory" >&2
    exit 1
fi
if [[ ! -d $build/stage ]]; then
    echo "demo_outline.sh: no library in $build/stage; run ./demo.sh first" >&2
    exit 1
fi

mkdir -p "$build/demo"
{
    echo "== building the program outline"
    configure "$build/demo/configure.log" -S "$root/demo/outline" -B "$build/demo/outline" \
        -G Ninja -DCMAKE_C_COMPILER=gcc -DCMAKE_BUILD_TYPE=Release \
        "-DCMAKE_PREFIX_PATH=$build/stage" -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
    cmake --build "$build/demo/outline"
    echo "== the files of $folder"
} >&2
# Of the project, what it is made of: neither what was built nor the history.
find "$folder" \( -path "$root/build" -o -name .git \) -prune -o -type f -printf '%s %P\n' \
    >"$build/demo/files.list"
"$build/demo/outline/outline" --depth 2 "$build/demo/files.list"
