/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * Asserts, while compiling, the layout that layout.def tells. C99 and C++11.
 */
#ifndef QEK_TESTS_ABI_LAYOUT_H
#define QEK_TESTS_ABI_LAYOUT_H

#include "qek_std.h"

struct qek_layout_probe {
    char first;
    uint64_t number;
};

#define PICK(on_64, on_32_by_4, on_32_by_8)                                                        \
    (sizeof(void *) == 8                              ? (on_64)                                    \
     : offsetof(struct qek_layout_probe, number) == 4 ? (on_32_by_4)                               \
                                                      : (on_32_by_8))
#define HOLDS(name, condition) typedef char name[(condition) ? 1 : -1];

#define RECORD(record, a, b, c) HOLDS(size_of_##record, sizeof(record) == PICK(a, b, c))
#define FIELD(record, field, a, b, c)                                                              \
    HOLDS(place_of_##field##_in_##record, offsetof(record, field) == PICK(a, b, c))
#include "abi/layout.def"

HOLDS(a_word_is_as_wide_as_a_pointer, sizeof(qek_word) == sizeof(void *))

#endif
