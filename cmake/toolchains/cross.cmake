# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# A build for another platform with Debian's cross compilers. The preset names the platform by
# QEK_TRIPLET; programs for it run under an emulator: wine for Windows, qemu for Linux.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QEK_TRIPLET)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR "${QEK_TRIPLET}")

if(QEK_TRIPLET MATCHES "mingw32$")
    set(CMAKE_SYSTEM_NAME Windows)
    set(CMAKE_RC_COMPILER ${QEK_TRIPLET}-windres)
    # The library has no threads, but the test framework wants those of the standard library.
    set(compiler_suffix -posix)
    set(root ${CMAKE_CURRENT_LIST_DIR}/../..)
    if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
        set(CMAKE_CROSSCOMPILING_EMULATOR ${root}/scripts/run_wine.sh 64)
    elseif(EXISTS ${root}/build/wine32)
        set(CMAKE_CROSSCOMPILING_EMULATOR ${root}/scripts/run_wine.sh 32)
    endif()
else()
    set(CMAKE_SYSTEM_NAME Linux)
    string(REPLACE powerpc ppc emulator qemu-${CMAKE_SYSTEM_PROCESSOR})
    set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L /usr/${QEK_TRIPLET})
    set(CMAKE_FIND_ROOT_PATH /usr/${QEK_TRIPLET})
endif()
# Test programs carry their run-time libraries, so that they need no more than the emulator.
set(QEK_TEST_LINK_OPTIONS -static)

set(CMAKE_C_COMPILER ${QEK_TRIPLET}-gcc${compiler_suffix})
set(CMAKE_CXX_COMPILER ${QEK_TRIPLET}-g++${compiler_suffix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
