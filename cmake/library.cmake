# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# The library, shared and static, from one list of sources.

set(qek_sources
    base/bytes.cpp base/heap.cpp base/mem.cpp base/platform.cpp base/scan.cpp base/str.cpp
    stream/checksum.cpp stream/compact.cpp stream/crc.cpp stream/fields.cpp stream/stream.cpp
    pool/iter.cpp pool/owned.cpp pool/pool.cpp pool/translation.cpp
    array/array.cpp array/arrayd.cpp array/arrays.cpp array/arrayt.cpp array/arrayx.cpp
    array/pairs.cpp
    bits/bits.cpp
    hash/hash.cpp hash/hashd.cpp hash/hasht.cpp hash/hashx.cpp
    btree/btree.cpp btree/btreed.cpp btree/btreex.cpp
    list/list.cpp list/lists.cpp list/listx.cpp
    tree/bitree.cpp tree/tree.cpp
    text/char.cpp text/convert.cpp text/string.cpp text/stringx.cpp text/wchar.cpp)

# The exported names stand in one list; the linker's version node and the module definition of the
# DLL are made from it.
set(qek_exports ${PROJECT_SOURCE_DIR}/cmake/exports.txt)
set(qek_version_script ${PROJECT_BINARY_DIR}/qek_std.map)
set(qek_module_definition ${PROJECT_BINARY_DIR}/qek_std.def)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${qek_exports})
file(STRINGS ${qek_exports} qek_names REGEX "^qek_")
list(JOIN qek_names ";\n        " qek_name_lines)
file(CONFIGURE OUTPUT ${qek_version_script} @ONLY CONTENT
"QEK_STD_@qek_soversion@ {
    global:
        @qek_name_lines@;
    local:
        *;
};
")
list(JOIN qek_names "\n    " qek_name_lines)
file(CONFIGURE OUTPUT ${qek_module_definition} @ONLY CONTENT
"EXPORTS
    @qek_name_lines@
")

add_library(qek_std SHARED ${qek_sources})
add_library(qek_std_static STATIC ${qek_sources})
add_library(qek::qek_std ALIAS qek_std)
add_library(qek::qek_std_static ALIAS qek_std_static)

foreach(target qek_std qek_std_static)
    target_include_directories(${target}
        PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
               $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
        PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:qek_library_flags>)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endforeach()

target_compile_definitions(qek_std PRIVATE QEK_STD_BUILD)
target_compile_definitions(qek_std_static PUBLIC QEK_STD_STATIC)
# The sources are analysed once, as those of the shared library.
set_target_properties(qek_std_static PROPERTIES EXPORT_COMPILE_COMMANDS OFF)
set(qek_dll qek_std-${qek_soversion})
set_target_properties(qek_std PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${qek_soversion})
if(WIN32)
    enable_language(RC)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/qek_std.rc.in qek_std.rc @ONLY)
    target_sources(qek_std PRIVATE ${qek_module_definition} ${PROJECT_BINARY_DIR}/qek_std.rc)
    set_target_properties(qek_std PROPERTIES RUNTIME_OUTPUT_NAME ${qek_dll} PREFIX "")
    if(MINGW)
        set_target_properties(qek_std PROPERTIES IMPORT_PREFIX lib)
        target_link_options(qek_std PRIVATE -static-libgcc -static-libstdc++)
    endif()
else()
    target_link_options(qek_std PRIVATE
        -Wl,--version-script=${qek_version_script} -Wl,--as-needed
        $<$<CONFIG:Release>:-Wl,--gc-sections>)
    # A sanitizer's run time comes with the program. Without one the library is closed in itself: the
    # helpers that the compiler calls (32-bit code has some) come from the static libgcc.
    if(NOT QEK_SANITIZE)
        target_link_options(qek_std PRIVATE -Wl,-z,defs -static-libgcc)
    endif()
    set_target_properties(qek_std PROPERTIES LINK_DEPENDS ${qek_version_script})
endif()
