#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
set -euo pipefail

usage() {
    cat <<'END'
usage: scripts/make_deb.sh [DIR]

Builds the Debian packages and their source package into DIR, by default build/debian of the project:
libqek-std0, libqek-std-dev and libqek-std0-dbgsym. They are the same bytes wherever and whenever
they are built with the same tools. The tests are not run; ./test.sh does that.

Result: 0 if all went well; 1 if something failed; 2 if the call was wrong; 3 if packages are missing
and the user is not root.
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
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
require_packages "${packages_to_build[@]}" dpkg-dev debhelper

folder=${1:-$root/build/debian}
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
cd "$root"
version=$(dpkg-parsechangelog -S Version)
upstream=${version%-*}
if ! grep -q "^#define QEK_STD_VERSION \"$upstream\"$" include/qek_std.h; then
    echo "make_deb.sh: debian/changelog tells of $upstream, include/qek_std.h of another version" >&2
    exit 1
fi
SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -S Timestamp)
export SOURCE_DATE_EPOCH

# Files get one time and plain rights, so that nothing of this machine gets into what is built.
source=$folder/qek-std-$upstream
rm -rf "$source" "$folder"/*qek-std*.{deb,dsc,changes,buildinfo,tar.xz}
umask 022
mkdir "$source"
tar -c --exclude=./build --exclude=./.git . | tar -x --no-same-permissions --no-same-owner -C "$source"
chmod -R u=rwX,go=rX "$source"
find "$source" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
tar -c --sort=name --owner=0 --group=0 --numeric-owner --mtime="@$SOURCE_DATE_EPOCH" \
    --exclude="${source##*/}/debian" -C "$folder" "${source##*/}" |
    xz -T1 >"$folder/qek-std_$upstream.orig.tar.xz"

cd "$source"
export DEB_BUILD_OPTIONS="nocheck parallel=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}"
if ! dpkg-buildpackage --build=full --no-sign --build-profiles=nocheck >"$folder/log" 2>&1; then
    cat "$folder/log" >&2
    echo "make_deb.sh: failed; the log is $folder/log" >&2
    exit 1
fi
cd "$folder"
rm -rf "$source"
ls -- *.deb
