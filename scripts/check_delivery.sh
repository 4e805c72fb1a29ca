#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_delivery.sh: what a user gets. From a clean folder below build/delivery it installs the
# library in all the ways that there are, drops what it was built from, and uses it as users do.
set -euo pipefail
export LC_ALL=C
unset DESTDIR SOURCE_DATE_EPOCH CFLAGS CXXFLAGS CPPFLAGS LDFLAGS CPATH LIBRARY_PATH LD_LIBRARY_PATH
unset CMAKE_PREFIX_PATH PKG_CONFIG_PATH PKG_CONFIG_LIBDIR PKG_CONFIG_SYSROOT_DIR

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
require_packages "${packages_to_build[@]}" debhelper dpkg-dev lintian pkg-config python3 reuse

work=$root/build/delivery
rm -rf "$work"
mkdir -p "$work"

must() { # NAME COMMAND...: a step without which the rest makes no sense
    echo "== $1"
    if ! "${@:2}" >"$work/log" 2>&1; then
        cat "$work/log"
        check "$1" false || true
        close_tally
        exit 1
    fi
}
is() { # WANTED FOUND
    # shellcheck disable=SC2053 # a pattern
    [[ $2 == $1 ]] || { printf 'expected: %s\nfound:    %s\n' "$1" "$2" && return 1; }
}
names() { # FOLDER: of all files below it; where one repeats the folder, without that
    (cd "$1" && find . ! -type d -printf '%P\n' | sed "s|$1/|/|" | sort)
}

# Two copies of the project, the second in a deeper place, with other times and rights; a library
# from each, and everything that is built on the one machine at two times.
one=$work/one
two=$work/another/place/two
copy() {
    mkdir -p "$1"
    tar -C "$root" -c --exclude=./build --exclude=./.git . | tar -C "$1" -x "${@:2}"
}
copy "$one"
(umask 077 && copy "$two" -m --no-same-permissions)

gnu=(-G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++)
stage=$work/stage far=$work/far
configured() { # OPTION...
    cmake -S "$one" -B "$work/library" "${gnu[@]}" -DQEK_TESTS=OFF "$@"
}
installed() { # OPTION...
    cmake --install "$work/library" "$@"
}
install_all() { # the same objects serve every way of installing
    configured -DCMAKE_INSTALL_PREFIX="$stage"
    cmake --build "$work/library"
    installed
    installed --prefix "$work/second"
    installed --prefix "$work/runtime" --component runtime
    installed --prefix "$work/development" --component development
    DESTDIR=$work/system installed --prefix /usr
    configured -DCMAKE_INSTALL_PREFIX="$work/deep" -DCMAKE_INSTALL_LIBDIR=lib/of/this/machine
    installed
    configured -DCMAKE_INSTALL_PREFIX="$far/one" -DCMAKE_INSTALL_LIBDIR="$far/libraries"
    installed
    configured -DCMAKE_INSTALL_PREFIX="$far/two" -DCMAKE_INSTALL_LIBDIR="$far/two/lib" \
        -DCMAKE_INSTALL_INCLUDEDIR="$far/headers"
    installed
}
consumer=$work/consumer main=$work/consumer/main.c
consume() { # NAME OPTION...: builds a user's project; its programs have this name as their folder
    cmake -S "$consumer" -B "$work/built/$1" "${gnu[@]}" "${@:2}" && cmake --build "$work/built/$1"
}
cp -r "$one/tests/delivery/consumer" "$work"
must "the library, installed" install_all
must "the library as a part of another project" \
    consume part -DSOURCE="$two" -DCMAKE_INSTALL_PREFIX="$work/part"
must "Debian packages" "$one/scripts/make_deb.sh" "$work/debs"
twice() (
    umask 077
    TZ=Pacific/Auckland LC_ALL=C.UTF-8 "$two/scripts/make_deb.sh" "$work/debs2"
)
must "Debian packages, from the other place" twice

header=$stage/include/qek_std.h library=$stage/lib/libqek_std.so
version=$(sed -n 's/^#define QEK_STD_VERSION "\(.*\)"$/\1/p' "$header")
said="$version $version harbour ship"
soname=$(objdump -p "$library" | sed -n 's/ *SONAME *//p')
node=$(objdump -p "$library" | sed -n '/^Version def/,/^$/s/^[2-9] .* //p')
count=$(nm -D --defined-only "$library" | grep -c "@@$node\$")
says() { # PROGRAM [FOLDER]: the program works, with the library from that folder
    is "$said" "$(LD_LIBRARY_PATH=${2:-} "$1" ship harbour ship)"
}

# What the two places made.
same_libraries() {
    cmp "$library.$version" "$work/built/part/qek_std/libqek_std.so.$version" &&
        cmp "$stage/lib/libqek_std_static.a" "$work/built/part/qek_std/libqek_std_static.a"
}
same_debs() {
    local file
    for file in "$work"/debs/*.{deb,dsc,tar.xz}; do
        cmp "$file" "$work/debs2/${file##*/}" || return 1
    done
}
tells_no_place() { ! grep -rlF "$work" "$stage"; }
works_as_part() {
    says "$work/built/part/with_qek_std" && says "$work/built/part/with_qek_std_static" &&
        is "$version *" "$(<"$work/built/part/found")" &&
        cmake --install "$work/built/part" && [[ ! -e $work/part ]]
}
check "both places make the same libraries" same_libraries
check "both places make the same packages" same_debs
check "nothing that is installed tells where it was built" tells_no_place
check "add_subdirectory, shared and static" works_as_part
check "licence and copyright of every file" reuse --root "$one" lint
rm -rf "$one" "$work/another" "$work/library" "$work/built"

# CMake: the package in a prefix, in one that was moved, and in all the others.
package() { # NAME PREFIX
    consume "$1" -DCMAKE_PREFIX_PATH="$2" && is "$version $2/*" "$(<"$work/built/$1/found")" &&
        says "$work/built/$1/with_qek_std" && says "$work/built/$1/with_qek_std_static"
}
accepts() { # VERSION
    cmake -S "$consumer" -B "$work/built/version-$1" "${gnu[@]}" -DCMAKE_PREFIX_PATH="$stage" \
        -DWANTED="$1"
}
refuses() { ! accepts "$1"; }
mkdir "$work/moved"
mv "$work/second" "$work/moved/here"
check "CMake package, shared and static" package stage "$stage"
check "CMake package, moved" package moved "$work/moved/here"
check "CMake package, deep folder of libraries" package deep "$work/deep/lib/of/this/machine/cmake"
check "CMake package, absolute folder of libraries" package far "$far/libraries/cmake"
check "CMake package, version $version asked for" accepts "$version"
check "CMake package, version ${version%.*} asked for" accepts "${version%.*}"
check "CMake package, a later one refused" refuses "${version%%.*}.$((${version//./} + 1))"

complete() { # the components are the whole, and no file is in both
    diff <(names "$stage") <({ names "$work/runtime" && names "$work/development"; } | sort)
}
runtime() { # what runs a program is there, and nothing of what builds one
    [[ -f $work/runtime/lib/$soname && ! -e $work/runtime/lib/libqek_std.so ]] &&
        ! names "$work/runtime" | grep -E '\.(h|a|cmake|pc)$' &&
        [[ ! -e $work/development/lib/$soname ]] &&
        gcc -I"$work/development/include" "$main" "$work/runtime/lib/$soname" \
            -o "$work/built/bare" &&
        says "$work/built/bare" "$work/runtime/lib"
}
check "components, together" complete
check "components, runtime" runtime

# pkg-config: folders, version, and a program with either library.
folder() { realpath "$(pkg-config --variable="$1" qek_std)"; }
with_pc() { # PC_FOLDER LIBRARIES HEADERS
    local program
    local -x PKG_CONFIG_LIBDIR=$1
    program=$(mktemp "$work/built/program-XXXXXX")
    # shellcheck disable=SC2046 # words
    is "$version" "$(pkg-config --modversion qek_std)" &&
        is "$2" "$(folder libdir)" && is "$3" "$(folder includedir)" &&
        gcc -std=c99 -Wall -Wextra -Wpedantic -Werror "$main" -o "$program" \
            $(pkg-config --cflags --libs qek_std) &&
        says "$program" "$2" &&
        gcc $(pkg-config --static --cflags qek_std) "$main" "$2/libqek_std_static.a" \
            -o "$program" &&
        says "$program"
}
in_system() { # the compiler's own folders are not named
    is "-lqek_std" "$(PKG_CONFIG_LIBDIR=$work/system/usr/lib/pkgconfig \
        PKG_CONFIG_SYSTEM_LIBRARY_PATH=/usr/lib pkg-config --cflags --libs qek_std | xargs)"
}
in_prefix() { with_pc "$1/lib/pkgconfig" "$1/lib" "$1/include"; }
check "pkg-config, relative folder" in_prefix "$stage"
check "pkg-config, relative folder, moved" in_prefix "$work/moved/here"
check "pkg-config, deep relative folder" \
    with_pc "$work/deep/lib/of/this/machine/pkgconfig" "$work/deep/lib/of/this/machine" \
    "$work/deep/include"
check "pkg-config, absolute folder" \
    with_pc "$far/libraries/pkgconfig" "$far/libraries" "$far/one/include"
check "pkg-config, absolute folders, another prefix" \
    with_pc "$far/two/lib/pkgconfig" "$far/two/lib" "$far/headers"
check "pkg-config, system's folders" in_system

# Names and numbers. CMake's version and that of pkg-config were compared with the header's above.
one_header() { is "qek_std.h" "$(names "$stage/include")"; }
shown() { grep -F "$1" "$root/$2"; }
check "one header" one_header
check "SONAME, as the header's first number" is "libqek_std.so.${version%%.*}" "$soname"
check "one version node" is "QEK_STD_[0-9]*([0-9.])" "$node"
check "this release in the table of the interface" \
    shown "| $version | \`$soname\` | \`$node\` | $count |" docs/abi.md
check "this release in the changelog" \
    shown "ABI: \`$soname\`, node \`$node\`, $count functions" CHANGELOG.md

# The packages in a root of their own.
system=$work/root
deb=$(echo "$work"/debs/libqek-std0_*.deb)
unpack() {
    local package
    for package in "$work"/debs/*.deb; do
        dpkg-deb -x "$package" "$system" && is same "$(dpkg-deb -f "$package" Multi-Arch)" ||
            return 1
    done
    is "libqek-std-dev libqek-std0-dbgsym libqek-std0" \
        "$(cd "$work/debs" && echo *.deb | sed -E 's/_[^ ]*//g')"
}
has_symbols() {
    dpkg-deb --ctrl-tarfile "$deb" | tar -xO ./symbols >"$work/built/symbols" &&
        is "$count" "$(grep -c "^ qek_.*@$node " "$work/built/symbols")"
}
multiarch=$(gcc -print-multiarch)
is_hardened() {
    local heads
    heads=$(readelf -ldW "$system/usr/lib/$multiarch/$soname")
    [[ $heads == *GNU_RELRO* && $heads == *BIND_NOW* ]] &&
        grep -q -e "-fstack-protector-strong .*-D_FORTIFY_SOURCE=2" "$work/debs/log"
}
has_debug_information() {
    local id
    id=$(readelf -n "$system/usr/lib/$multiarch/$soname" | sed -n 's/.*Build ID: //p')
    [[ $(readelf -S "$system/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug") == *debug_info* ]]
}
compiles_against_it() {
    local -x PKG_CONFIG_LIBDIR=$system/usr/lib/$multiarch/pkgconfig PKG_CONFIG_SYSROOT_DIR=$system
    # shellcheck disable=SC2046 # words
    gcc "$main" $(pkg-config --cflags --libs qek_std) -o "$work/built/packaged" &&
        says "$work/built/packaged" "$system/usr/lib/$multiarch"
}
check "packages, unpacked" unpack
check "packages, lintian" lintian --allow-root --fail-on error,warning "$work"/debs/*.changes
check "packages, $count symbols" has_symbols
check "packages, hardened" is_hardened
check "packages, debug information" has_debug_information
check "packages, printers where gdb looks for them" test -f \
    "$system/usr/share/gdb/auto-load/usr/lib/$multiarch/libqek_std.so.$version-gdb.py"
check "packages, pkg-config" compiles_against_it
check "packages, CMake" package system "$system/usr"

# The bill of materials names every file with its checksum.
sbom=$work/qek_std-$version.spdx.json
bill() {
    "$root/scripts/make_sbom.py" "$stage" >"$sbom" &&
        python3 -c 'import json, sys
for file in json.load(sys.stdin)["files"]:
    print(file["checksums"][1]["checksumValue"], "", file["fileName"])' \
            <"$sbom" >"$work/built/sums" &&
        is "$(names "$stage" | wc -l)" "$(wc -l <"$work/built/sums")" &&
        (cd "$stage" && sha256sum --check --strict --quiet "$work/built/sums")
}
check "bill of materials" bill

# What has a check of its own. The examples are also built against the unpacked packages, in whose
# root the headers are missing that one of them takes from the machine.
own() { # SCRIPT PREFIX
    [[ ! -x $root/$1 ]] || check "$1, ${2#"$work/"}" env -u QEK_TALLY "$root/$1" "$2"
}
for script in tests/gdb/check_gdb.sh scripts/make_reference.sh tests/docs/check_snippets.sh \
    tests/delivery/check_examples.sh; do
    own "$script" "$stage"
done
ln -s /usr/include/editline "$system/usr/include"
PKG_CONFIG_SYSROOT_DIR=$system own tests/delivery/check_examples.sh "$system/usr"
close_tally
