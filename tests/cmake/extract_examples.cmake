# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Writes the examples of the public header into one C program that runs them all.
#
#   cmake -D HEADER=qek_std.h -D OUTPUT=examples.c -P extract_examples.cmake

cmake_minimum_required(VERSION 3.25)
file(READ ${HEADER} text)
set(program "/* Made from the examples of qek_std.h. */\n")
string(APPEND program "#include <assert.h>\n#include <stddef.h>\n#include <stdio.h>\n")
string(APPEND program "#include <string.h>\n\n#include \"qek_std.h\"\n")
set(calls "")
set(count 0)
while(TRUE)
    string(FIND "${text}" "@code{.c}\n" begin)
    if(begin EQUAL -1)
        break()
    endif()
    math(EXPR begin "${begin} + 10")
    string(SUBSTRING "${text}" ${begin} -1 text)
    string(FIND "${text}" " * @endcode" end)
    string(SUBSTRING "${text}" 0 ${end} example)
    string(REGEX MATCH "static void (example_[a-z]+)\\(void\\)" found "${example}")
    set(function ${CMAKE_MATCH_1})
    string(REGEX REPLACE "(^|\n) \\* ?" "\\1" example "${example}")
    string(APPEND program "\n${example}")
    string(APPEND calls "    ${function}();\n")
    math(EXPR count "${count} + 1")
endwhile()
string(APPEND program "\nint main(void)\n{\n${calls}")
string(APPEND program "    printf(\"${count} examples ran\\n\");\n    return 0;\n}\n")
file(WRITE ${OUTPUT} "${program}")
