# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# What an installed qek_std consists of: header, both libraries, CMake package, pkg-config file, and
# what shows its records in a debugger.

include(CMakePackageConfigHelpers)
set(qek_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qek_std)

install(FILES include/qek_std.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(TARGETS qek_std qek_std_static EXPORT qek_std
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    RUNTIME COMPONENT runtime
    ARCHIVE COMPONENT development)
if(WIN32)
    install(FILES ${qek_module_definition} DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT development)
endif()
install(EXPORT qek_std NAMESPACE qek:: FILE qek_std-targets.cmake
    DESTINATION ${qek_package_dir} COMPONENT development)

configure_package_config_file(cmake/qek_std-config.cmake.in qek_std-config.cmake
    INSTALL_DESTINATION ${qek_package_dir})
write_basic_package_version_file(qek_std-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qek_std-config.cmake
              ${PROJECT_BINARY_DIR}/qek_std-config-version.cmake
    DESTINATION ${qek_package_dir} COMPONENT development)

configure_file(cmake/install_pc.cmake.in install_pc.cmake @ONLY)
install(SCRIPT ${PROJECT_BINARY_DIR}/install_pc.cmake COMPONENT development)

# gdb looks below its folder auto-load for the whole name of a library that it meets, and runs what
# it finds there. The prefix is known when the installation runs.
if(WIN32)
    install(FILES debugger/qek_std.natvis DESTINATION ${CMAKE_INSTALL_DATADIR}/qek_std
        COMPONENT development)
else()
    set(qek_gdb_dir ${CMAKE_INSTALL_LIBDIR})
    if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
        set(qek_gdb_dir "\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}")
    endif()
    install(FILES debugger/qek_std_gdb.py
        DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${qek_gdb_dir}
        RENAME libqek_std${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION}-gdb.py
        COMPONENT development)
endif()
