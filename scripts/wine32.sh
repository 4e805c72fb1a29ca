#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# wine32.sh: makes build/wine32, a small Debian tree for 32-bit x86 with wine in it, since a machine
# for 64 bits has no wine for 32. Fails where that cannot be had or cannot be used.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
tree=$root/build/wine32
if [[ ! -x $tree/usr/lib/wine/wine ]]; then
    rm -rf "$tree" "$tree.part"
    # shellcheck disable=SC2016 # for apt-get
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | sed -n 1p)
    suite=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
    debootstrap --arch=i386 --variant=minbase --include=wine32 "$suite" "$tree.part" "$mirror"
    rm -f "$tree.part"/var/cache/apt/archives/*.deb
    mv "$tree.part" "$tree"
fi
unshare --mount mount --bind /proc "$tree/proc"
