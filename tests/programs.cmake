# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# The test programs.
include(cmake/googletest.cmake)

# The test program holds the static library, so that it reaches the parts that are not exported, in a
# copy that calls the fault injector (support/allocations.h) instead of malloc and free.
set(watched ${CMAKE_CURRENT_BINARY_DIR}/libqek_std_watched.a)
set(prefix "")
if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(prefix _) # of all C names there
endif()
add_custom_command(OUTPUT ${watched}
    COMMAND ${CMAKE_OBJCOPY} --redefine-sym ${prefix}malloc=${prefix}watched_malloc
            --redefine-sym ${prefix}free=${prefix}watched_free
            $<TARGET_FILE:qek_std_static> ${watched}
    DEPENDS qek_std_static VERBATIM)
set(index ${PROJECT_SOURCE_DIR}/demo/word_index)
add_library(qek_test_objects OBJECT
    support/allocations.cpp
    array/arrays_test.cpp array/arrayt_test.cpp array/keyed_test.cpp array/sort_test.cpp
    base/mem_test.cpp base/scan_test.cpp base/str_test.cpp
    bits/bits_test.cpp
    btree/btree_test.cpp
    fault/allocation_test.cpp fault/limits_test.cpp
    hash/hash_test.cpp
    list/list_test.cpp list/listx_test.cpp
    pool/iter_test.cpp pool/pool_check.cpp pool/pool_test.cpp
    stream/compact_test.cpp stream/fields_test.cpp stream/readers_test.cpp stream/stream_test.cpp
    text/char_test.cpp text/convert_test.cpp text/owned_test.cpp text/stringx_test.cpp
    tree/bitree_test.cpp tree/tree_test.cpp tree/walks_test.cpp
    ../fuzz/driver.cpp
    ${index}/index_read.c ${index}/index_write.c ${index}/table.c ${index}/text.c)
target_include_directories(qek_test_objects PUBLIC ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}
                                                   ${PROJECT_SOURCE_DIR}/include)
target_compile_definitions(qek_test_objects PUBLIC QEK_STD_STATIC)
if(QEK_SANITIZE)
    target_compile_definitions(qek_test_objects PUBLIC QEK_SANITIZED)
endif()
target_link_libraries(qek_test_objects PUBLIC qek_flags GTest::gmock)
# Most of the time goes into the framework's templates: read once, and not optimised for long.
target_precompile_headers(qek_test_objects PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:<gmock/gmock.h$<ANGLE-R>>")
target_compile_options(qek_test_objects PRIVATE $<$<CONFIG:Release>:-O1>)
add_executable(qek_tests ../fuzz/main.cpp ${watched})
target_link_libraries(qek_tests PRIVATE qek_test_objects ${watched})
target_link_options(qek_tests PRIVATE ${QEK_TEST_LINK_OPTIONS})
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/objects.txt
    CONTENT "$<JOIN:$<FILTER:$<TARGET_OBJECTS:qek_test_objects>,EXCLUDE,gch$>,\n>\n")
gtest_discover_tests(qek_tests DISCOVERY_TIMEOUT 120)
file(GLOB inputs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/fuzz/corpus/*/*)
add_test(NAME fuzz.corpus COMMAND qek_tests ${inputs})
if(QEK_FUZZ)
    add_executable(qek_fuzz ${watched})
    set_target_properties(qek_fuzz PROPERTIES LINKER_LANGUAGE CXX)
    # Each target as a program that needs not be told its name, for packaging/fuzz/build.sh.
    add_custom_target(qek_fuzz_each)
    file(GLOB names RELATIVE ${PROJECT_SOURCE_DIR}/fuzz/corpus CONFIGURE_DEPENDS
        ${PROJECT_SOURCE_DIR}/fuzz/corpus/*)
    list(TRANSFORM names PREPEND qek_fuzz_ OUTPUT_VARIABLE fuzzers)
    foreach(name fuzzer IN ZIP_LISTS names fuzzers)
        add_executable(${fuzzer} EXCLUDE_FROM_ALL ../fuzz/target.cpp ${watched})
        target_compile_definitions(${fuzzer} PRIVATE "QEK_FUZZ_TARGET=\"${name}\"")
        add_dependencies(qek_fuzz_each ${fuzzer})
    endforeach()
    foreach(fuzzer qek_fuzz ${fuzzers})
        target_link_libraries(${fuzzer} PRIVATE qek_test_objects ${watched})
        target_link_options(${fuzzer} PRIVATE ${QEK_FUZZ_ENGINE})
    endforeach()
endif()
if(NOT QEK_SANITIZE)
    add_test(NAME exports.calls
        COMMAND ${tools} ${CMAKE_CURRENT_SOURCE_DIR}/exports/check_calls.sh
                ${qek_exports} $<TARGET_OBJECTS:qek_test_objects>
        COMMAND_EXPAND_LISTS)
endif()

# The shared library in a program in which a preloaded library refuses its allocations.
if(UNIX AND NOT CMAKE_CROSSCOMPILING AND NOT QEK_SANITIZE AND NOT QEK_COVERAGE)
    add_library(qek_refuse MODULE fault/refuse.c)
    add_executable(qek_fault_session fault/session.c)
    foreach(target qek_refuse qek_fault_session)
        target_link_libraries(${target} PRIVATE qek_flags ${CMAKE_DL_LIBS})
    endforeach()
    target_link_libraries(qek_fault_session PRIVATE qek_std)
    add_test(NAME fault.preload
        COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/fault/check_preload.sh
                $<TARGET_FILE:qek_refuse> $<TARGET_FILE:qek_fault_session>)
endif()

# The examples of the header, compiled and run against the shared library as a C program.
set(examples ${CMAKE_CURRENT_BINARY_DIR}/header_examples.c)
add_custom_command(OUTPUT ${examples}
    COMMAND ${CMAKE_COMMAND} -D HEADER=${PROJECT_SOURCE_DIR}/include/qek_std.h
            -D OUTPUT=${examples}
            -P ${CMAKE_CURRENT_SOURCE_DIR}/cmake/extract_examples.cmake
    DEPENDS ${PROJECT_SOURCE_DIR}/include/qek_std.h cmake/extract_examples.cmake
    VERBATIM)
add_executable(qek_header_examples ${examples})
target_compile_options(qek_header_examples PRIVATE -UNDEBUG)
target_link_libraries(qek_header_examples PRIVATE qek_flags qek_std)
add_test(NAME header.examples COMMAND qek_header_examples)

if(NOT WIN32)
    add_library(qek_examples_part OBJECT ${examples})
    target_compile_definitions(qek_examples_part PRIVATE main=run_examples)
    target_compile_options(qek_examples_part PRIVATE -UNDEBUG)
    target_link_libraries(qek_examples_part PRIVATE qek_flags qek_std)
    add_executable(qek_threads support/threads.c)
    target_link_libraries(qek_threads PRIVATE qek_flags qek_examples_part qek_std -pthread)
    add_test(NAME header.examples_in_threads COMMAND qek_threads)
endif()

# The demo's program that serialises, to compare what it writes here with what it wrote elsewhere.
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/demo/word_index/*.c)
add_executable(qek_word_index ${sources})
target_link_libraries(qek_word_index PRIVATE qek_flags qek_std)
add_test(NAME demo.index
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/demo/check_index.sh
            ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:qek_word_index>)

if(WIN32) # where programs look for a DLL beside themselves
    set_target_properties(qek_header_examples qek_word_index PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY $<TARGET_FILE_DIR:qek_std>)
endif()
