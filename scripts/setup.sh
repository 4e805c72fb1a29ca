# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Sourced by the commands: finds out which Debian packages are missing, and gets them; configures.
#
# A package counts as there when what it brings is there, so that a machine that was set up in
# another way needs no apt-get. sudo is never called.

# shellcheck disable=SC2034 # read by the scripts that source this one
packages_to_build=(g++ cmake ninja-build)
# shellcheck disable=SC2034
packages_to_test=("${packages_to_build[@]}" googletest)
# shellcheck disable=SC2034
packages_to_bench=("${packages_to_build[@]}" pkg-config python3 python3-matplotlib libbenchmark-dev
    libabsl-dev libapr1-dev libglib2.0-dev uthash-dev libboost-dev libdeflate-dev libisal-dev
    zlib1g-dev)

has_header() { # FILE
    test -f "/usr/include/$1"
}

is_there() { # PACKAGE
    case $1 in
    g++) type gcc g++ ;;
    cmake) type cmake ctest ;;
    ninja-build) type ninja ;;
    googletest) test -f /usr/src/googletest/CMakeLists.txt ;;
    clang) type clang clang++ ;;
    libclang-rt-14-dev) compgen -G '/usr/lib/llvm-14/lib/clang/14*/lib/linux/libclang_rt.asan-*' ;;
    g++-12-multilib) test -f /usr/lib/gcc/x86_64-linux-gnu/12/32/libstdc++.a ;;
    g++-mingw-w64-x86-64) type x86_64-w64-mingw32-{gcc,g++}-posix x86_64-w64-mingw32-windres ;;
    g++-mingw-w64-i686) type i686-w64-mingw32-{gcc,g++}-posix i686-w64-mingw32-windres ;;
    wine64) PATH=$PATH:/usr/lib/wine type wine64 ;;
    g++-*-linux-gnu) type "${1#g++-}"-{gcc,g++} ;;
    qemu-user) type qemu-{s390x,ppc,aarch64} ;;
    pkg-config) type pkg-config ;;
    python3-matplotlib) /usr/bin/python3 -c 'import matplotlib' ;;
    libbenchmark-dev) has_header benchmark/benchmark.h ;;
    libabsl-dev) has_header absl/container/flat_hash_map.h ;;
    libapr1-dev) has_header apr-1.0/apr_hash.h ;;
    libglib2.0-dev) has_header glib-2.0/glib.h ;;
    uthash-dev) has_header uthash.h ;;
    libboost-dev) has_header boost/pool/pool.hpp ;;
    libdeflate-dev) has_header libdeflate.h ;;
    libisal-dev) has_header isa-l/crc.h ;;
    zlib1g-dev) has_header zlib.h ;;
    abigail-tools) type abidw abidiff ;;
    dpkg-dev) type dpkg-buildpackage ;;
    debhelper) type dh ;;
    libxml2-utils) type xmllint ;;
    graphviz) type dot ;;
    libedit-dev) test -f /usr/include/editline/readline.h ;;
    chromium | clang-format | clang-tidy | debootstrap | doxygen | gcovr | gdb | lintian) type "$1" ;;
    python3 | reuse | shellcheck | valgrind) type "$1" ;;
    *) return 1 ;;
    esac >/dev/null 2>&1
}

missing_packages() { # PACKAGE...: prints those that are missing, in one line
    local package missing=()
    for package; do
        is_there "$package" || missing+=("$package")
    done
    echo "${missing[*]}"
}

install_packages() { # PACKAGE...: fails if they could not be had; the caller is root
    export DEBIAN_FRONTEND=noninteractive
    echo "Installing $*" >&2
    apt-get update -q >&2 || echo "warning: apt-get update failed; going on without it" >&2
    apt-get install -y --no-install-recommends "$@" >&2
}

# Gets what is missing, or ends the script: with 3 if the user is not root and has to do it, with 1
# if the packages cannot be had.
require_packages() { # PACKAGE...
    local missing
    missing=$(missing_packages "$@")
    if [[ -z $missing ]]; then
        return
    fi
    if [[ $(id -u) -ne 0 ]]; then
        echo "Packages are missing. As root, run this line, and then this command again:" >&2
        echo "apt-get install -y --no-install-recommends $missing" >&2
        exit 3
    fi
    # shellcheck disable=SC2086 # one word per package
    install_packages $missing || true
    missing=$(missing_packages "$@")
    if [[ -n $missing ]]; then
        echo "error: these packages could not be installed: $missing" >&2
        exit 1
    fi
}

# As require_packages, but goes on without the packages: what needs them is skipped.
request_packages() { # PACKAGE...
    local missing
    missing=$(missing_packages "$@")
    if [[ -z $missing ]]; then
        return
    fi
    if [[ $(id -u) -eq 0 ]]; then
        # shellcheck disable=SC2086 # one word per package
        install_packages $missing || echo "warning: not all packages could be installed" >&2
    else
        echo "Some configurations will be skipped. As root, this line brings what they need:" >&2
        echo "apt-get install -y --no-install-recommends $missing" >&2
    fi
}

# Configures a build. When a compiler has moved, cmake drops the cache with all that was set in it and
# carries on with the defaults; then, and after a failure, it starts afresh.
configure() { # LOG ARGUMENT...
    local log=$1
    shift
    if ! cmake "$@" >"$log" 2>&1 || grep -q 'cache to be deleted' "$log"; then
        cmake --fresh "$@" >"$log" 2>&1 || { cat "$log" >&2 && return 1; }
    fi
}
