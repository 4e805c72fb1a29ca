#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_levels.sh: whatever compiler and level of optimisation the library is built with, the tests
# print the same. The test objects of the default configuration are linked with each library.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
work=$root/build/levels
built=$root/build/default
mkdir -p "$work"
configure "$work/default.log" -S "$root" --preset default
cmake --build "$built" --target qek_tests

output() { # COMPILER LEVEL: leaves what the tests print in a file of that name
    local name=$1-$2 folder=$work/$1-$2
    configure "$folder.log" -S "$root" -B "$folder" -G Ninja -DQEK_TESTS=OFF \
        -DCMAKE_CXX_COMPILER="$1" -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="-$2 -DNDEBUG"
    cmake --build "$folder" --target qek_std_static >/dev/null
    objcopy --redefine-sym malloc=watched_malloc --redefine-sym free=watched_free \
        "$folder/libqek_std_static.a" "$folder/watched.a"
    # The library comes first: of a template that the tests hold as well, its own copy is taken.
    g++ -o "$folder/tests" -Wl,--whole-archive "$folder/watched.a" -Wl,--no-whole-archive \
        @"$built/tests/objects.txt" "$built"/tests/CMakeFiles/qek_tests.dir/__/fuzz/main.cpp.o \
        "$built"/lib/lib{gmock,gtest}.a
    # How many allocations a run makes may differ by one, without a change of the library.
    QEK_TEST_SEED=1 "$folder/tests" --gtest_print_time=0 | sed '/LIBRARY/d' >"$work/$name.txt"
}
same() { # COMPILER LEVEL
    output "$1" "$2" && diff "$work/g++-O2.txt" "$work/$1-$2.txt"
}

for compiler in g++ clang++; do
    for level in O2 O0 O3; do
        check "the tests print the same, $compiler -$level" same "$compiler" "$level"
    done
done
close_tally
