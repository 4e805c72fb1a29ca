# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Sourced, behind setup.sh, by scripts that run the tests over the library built in another way: the
# test objects of the default configuration are linked with that library.

relink_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
relink_objects=$relink_root/build/default

make_test_objects() {
    mkdir -p "$relink_root/build"
    configure "$relink_root/build/configure.log" -S "$relink_root" --preset default
    cmake --build "$relink_objects" --target qek_tests
}

# Leaves the program as FOLDER/tests and the library that is in it as FOLDER/watched.a.
relink() { # FOLDER COMPILER FLAGS
    configure "$1.log" -S "$relink_root" -B "$1" -G Ninja -DQEK_TESTS=OFF \
        -DCMAKE_CXX_COMPILER="$2" -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="$3 -DNDEBUG" &&
        cmake --build "$1" --target qek_std_static >/dev/null || return 1
    objcopy --redefine-sym malloc=watched_malloc --redefine-sym free=watched_free \
        "$1/libqek_std_static.a" "$1/watched.a" || return 1
    # The library comes first: of a template that the tests hold as well, its own copy is taken.
    g++ -o "$1/tests" -Wl,--whole-archive "$1/watched.a" -Wl,--no-whole-archive \
        @"$relink_objects/tests/objects.txt" \
        "$relink_objects"/tests/CMakeFiles/qek_tests.dir/__/fuzz/main.cpp.o \
        "$relink_objects"/lib/lib{gmock,gtest}.a
}
