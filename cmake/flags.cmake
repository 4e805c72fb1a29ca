# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Compiler flags: `qek_flags` is what every target of the project gets, `qek_library_flags` what only
# the library gets.

# The library's code is small pieces that are called and left: padding for jumps and loops buys little
# there and makes it larger by a twentieth, and half of that in front of functions by a fiftieth.
set(qek_release "-O2 -DNDEBUG")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    string(APPEND qek_release " -fno-align-jumps -fno-align-loops -falign-functions=8")
endif()
set(CMAKE_C_FLAGS_RELEASE "${qek_release}")
set(CMAKE_CXX_FLAGS_RELEASE "${qek_release}")

add_library(qek_flags INTERFACE)
target_compile_features(qek_flags INTERFACE cxx_std_20 c_std_99)
target_compile_options(qek_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(QEK_SANITIZE)
    set(sanitizers -fsanitize=${QEK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # The check of function types looks for type information that C functions do not have.
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        list(APPEND sanitizers -fno-sanitize=function)
    endif()
    target_compile_options(qek_flags INTERFACE ${sanitizers})
    target_link_options(qek_flags INTERFACE ${sanitizers})
endif()

# Counted without optimisation, so that a branch of the text is one of the code.
if(QEK_COVERAGE)
    target_compile_options(qek_flags INTERFACE -O0 --coverage -fprofile-update=atomic)
    target_link_options(qek_flags INTERFACE --coverage)
endif()

# 32-bit x86 computes in double, not in the wider registers of the old unit, so that every platform
# gets the same last bits.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86|i.86|AMD64" AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(qek_flags INTERFACE -msse2 -mfpmath=sse)
endif()

# A block that is taken and then cleared must fault when there is no memory for it. Compilers that
# know malloc make calloc of it and drop the write. So must a call that reaches through null, also
# where a compiler could conclude that it never does.
add_library(qek_library_flags INTERFACE)
target_link_libraries(qek_library_flags INTERFACE qek_flags)
target_compile_options(qek_library_flags INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
    -fno-builtin-malloc -fno-delete-null-pointer-checks
    -fvisibility=hidden -fno-semantic-interposition -ffp-contract=off)
# What is delivered does not tell where it was built; while working, debuggers find the sources.
target_compile_options(qek_library_flags INTERFACE
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=.>)
if(QEK_FUZZ AND QEK_FUZZ_ENGINE STREQUAL "-fsanitize=fuzzer")
    target_compile_options(qek_library_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
