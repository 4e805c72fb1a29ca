// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What the dynamic linker asks when it chooses between variants of a function, while it loads the
// library. A function that chooses is marked QEK_AT_LOAD: it runs before anything else is ready, so
// it holds on to nothing and calls nobody. Where QEK_CHOOSES_AT_LOAD is not defined, the variant
// that runs everywhere is the only one.
#pragma once

#include <cstdint> // which defines __GLIBC__ where that is the C library

// Two sanitizers need their own start before anything runs, and the choice is made before that.
#if defined(__SANITIZE_THREAD__)
#define QEK_STARTS_LATE
#elif defined(__has_feature)
#if __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
#define QEK_STARTS_LATE
#endif
#endif

#if defined(__x86_64__) && defined(__GLIBC__) && !defined(QEK_STARTS_LATE)

#define QEK_CHOOSES_AT_LOAD

#include <cpuid.h>

#ifdef __clang__
#define QEK_AT_LOAD [[clang::no_sanitize("address", "memory", "thread", "undefined")]]
#else
#define QEK_AT_LOAD [[gnu::no_sanitize("address", "thread", "undefined")]]
#endif

namespace qek::processor {

enum skill : unsigned int {
    multiplies_without_carry = 1,
    has_vectors_of_32 = 2,
    multiplies_in_vectors_of_64 = 4
};

// The skills that processor and system have, as one number. Not even the functions of cpuid.h are
// called.
QEK_AT_LOAD inline unsigned int skills() noexcept
{
    // GCOVR_EXCL_START: one processor runs the tests
    constexpr unsigned int further_leaf = 7;
    constexpr unsigned int kept_of_32 = 0x06; // by the system: registers of 128 and 256 bits
    constexpr unsigned int kept_of_64 = 0xE6; // the same, of 512 bits, and masks
    constexpr unsigned int needed = bit_PCLMUL | bit_SSE4_1;
    unsigned int a = 0, b = 0, c = 0, d = 0, last_leaf = 0, kept = 0;
    __cpuid(0, last_leaf, b, c, d);
    __cpuid(1, a, b, c, d);
    const bool multiplies = (c & needed) == needed;
    const bool counts = (c & bit_POPCNT) != 0;
    unsigned int found = multiplies ? multiplies_without_carry : 0U;
    if ((c & bit_OSXSAVE) == 0 || last_leaf < further_leaf) {
        return found;
    }
    __asm__("xgetbv" : "=a"(kept), "=d"(d) : "c"(0));
    __cpuid_count(further_leaf, 0, a, b, c, d);
    if (counts && (kept & kept_of_32) == kept_of_32 && (b & bit_AVX2) != 0) {
        found |= has_vectors_of_32;
    }
    if (multiplies && (kept & kept_of_64) == kept_of_64 && (b & bit_AVX512F) != 0 &&
        (c & bit_VPCLMULQDQ) != 0) {
        found |= multiplies_in_vectors_of_64;
    }
    return found;
    // GCOVR_EXCL_STOP
}

} // namespace qek::processor

#endif
