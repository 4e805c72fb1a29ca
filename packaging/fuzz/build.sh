#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# build.sh: what a service for continuous fuzzing runs in its image. It names by SRC the folder that
# holds the project's, by OUT where the fuzzers go, by CC, CXX, CFLAGS and CXXFLAGS the compilers with
# their sanitizers, and by LIB_FUZZING_ENGINE what a fuzzer is linked with.
#
# Leaves in OUT a program for each target, with its first inputs and its options beside it.
set -euo pipefail

source=${SRC:?}/qek_std
build=${WORK:-/tmp}/qek_std
# The parts of the program that is fuzzed come with the flags of the service alone.
cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=None -DQEK_FUZZ=ON \
    -DCMAKE_C_COMPILER="${CC:?}" -DCMAKE_CXX_COMPILER="${CXX:?}" \
    -DQEK_FUZZ_ENGINE="${LIB_FUZZING_ENGINE:?}"
cmake --build "$build" --target qek_fuzz_each

for corpus in "$source"/fuzz/corpus/*; do
    name=qek_fuzz_${corpus##*/}
    cp "$build/tests/$name" "${OUT:?}/"
    (cd "$corpus" && cmake -E tar cf "$OUT/${name}_seed_corpus.zip" --format=zip -- *)
    printf '[libfuzzer]\nmax_len = 2048\ndetect_leaks = 0\n' >"$OUT/$name.options"
done
