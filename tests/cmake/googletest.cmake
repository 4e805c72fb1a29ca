# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# The test framework, from Debian's sources, built with the flags of the configuration at hand: one
# way that also serves the 32-bit and the sanitizer builds, for which there is no package.
set(INSTALL_GTEST OFF)
set(gtest_force_shared_crt ON)
set(CMAKE_COMPILE_WARNING_AS_ERROR OFF) # its warnings are not ours
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
unset(CMAKE_COMPILE_WARNING_AS_ERROR) # as the preset says
if(QEK_SANITIZE AND NOT QEK_FUZZ) # fuzzing needs it fast
    foreach(target gtest gmock gmock_main)
        target_compile_options(${target} PRIVATE -fsanitize=${QEK_SANITIZE})
    endforeach()
endif()
include(GoogleTest)
