#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# lint.sh: format, static analysis, shell scripts, and the header under every compiler. Expects the
# default configuration in build/default.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
# shellcheck source=scripts/tally.sh
. scripts/tally.sh

all_files() { # PATTERN...: the project's files with such names
    local pattern names=()
    for pattern; do
        names+=(-o -name "$pattern")
    done
    find . \( -path ./build -o -path ./.git \) -prune -o -type f \( "${names[@]:1}" \) -print |
        LC_ALL=C sort
}

mapfile -t sources < <(all_files '*.c' '*.h' '*.cpp')
check "clang-format, ${#sources[@]} files" clang-format --dry-run -Werror "${sources[@]}"

mapfile -t scripts < <(all_files '*.sh')
check "shellcheck, $((${#scripts[@]} + 1)) scripts" shellcheck -x .ci/run "${scripts[@]}"
check "list of equivalent mutants" tests/mutants/mutants.py

for compiler in gcc clang g++ clang++; do
    for bits in 64 32; do
        language="c -std=c99"
        [[ $compiler != *++ ]] || language="c++ -std=c++11"
        # shellcheck disable=SC2086 # two words
        check "header, $compiler -m$bits -x $language" "$compiler" -m$bits -x $language \
            -pedantic -Wall -Wextra -Werror -fsyntax-only include/qek_std.h
    done
done

# The library's sources through the compile commands, several at a time; each run leaves its output
# and, if it is clean, a mark.
work=build/lint
rm -rf "$work"
mkdir -p "$work"
mapfile -t sources < <(find base stream pool array bits hash btree list tree text -name '*.cpp' |
    LC_ALL=C sort)
mapfile -t programs < <(find demo examples -name '*.c' | LC_ALL=C sort)
tidy() { # SOURCE
    local out=$work/${1//\//.}
    local flags=(-p build/default --extra-arg=-Wno-ignored-optimization-argument)
    [[ $1 == *.cpp ]] || flags=(--extra-arg=-std=c99 --extra-arg=-Iinclude)
    clang-tidy --quiet "${flags[@]}" "$1" >"$out" 2>"$out.err" && touch "$out.clean"
}
finding() { # SOURCE: shows what was found in it
    local out=$work/${1//\//.}
    [[ -f $out.clean ]] || { cat "$out" "$out.err" && return 1; }
}
export -f tidy
export work
# shellcheck disable=SC2016 # expanded by the shell that is started
printf '%s\0' "${sources[@]}" "${programs[@]}" |
    xargs -0 -P "$(nproc)" -I{} bash -c 'tidy "$1"' tidy {} || true
for source in "${sources[@]}" "${programs[@]}"; do
    check "clang-tidy, $source" finding "$source"
done

close_tally
