# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Sourced by scripts that look at an installed library: finds the prefix to look at. Expects $root
# and scripts/setup.sh.

# shellcheck disable=SC2154 # root is set by the scripts that source this one

# Sets `prefix` to the prefix given, or installs below build/ and sets it to that.
stage() { # [PREFIX]
    if [[ -n ${1:-} ]]; then
        prefix=$(cd "$1" && pwd)
    else
        prefix=$root/build/stage
        rm -rf "$prefix"
        configure "$root/build/configure.log" -S "$root" -B "$root/build/staged" -G Ninja \
            -D CMAKE_BUILD_TYPE=Release -D QEK_TESTS=OFF -D CMAKE_INSTALL_PREFIX="$prefix"
        cmake --build "$root/build/staged" >"$root/build/stage.log"
        cmake --install "$root/build/staged" >>"$root/build/stage.log"
    fi
    pc=$(find "$prefix" -name qek_std.pc)
    # shellcheck disable=SC2034 # read by the scripts that source this one
    libdir=$(cd "$(dirname "$pc")/.." && pwd)
    export PKG_CONFIG_PATH=${pc%/*}
}
