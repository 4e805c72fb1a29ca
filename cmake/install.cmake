# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# What an installed qek_std consists of: header, both libraries, CMake package, pkg-config file.

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
