# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Untested. The address and the checksum are to be those of a published release.
vcpkg_download_distfile(archive
    URLS "https://qek-std.example/qek_std-${VERSION}.tar.xz"
    FILENAME "qek_std-${VERSION}.tar.xz"
    SHA512 0)
vcpkg_extract_source_archive(source ARCHIVE "${archive}")

vcpkg_cmake_configure(SOURCE_PATH "${source}" OPTIONS -DQEK_TESTS=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME qek_std CONFIG_PATH lib/cmake/qek_std)
vcpkg_fixup_pkgconfig()
vcpkg_copy_pdbs()

# The library is always built both ways; both have names of their own, so that both may stay.
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include")
file(INSTALL "${CMAKE_CURRENT_LIST_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
vcpkg_install_copyright(FILE_LIST "${source}/LICENSE")
