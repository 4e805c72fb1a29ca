// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Searching and ordering of counted byte runs, for every family that holds text or keys.
//
// The order of all byte-string keys of the library is `order_bytes`: the first two bytes that differ
// decide, as unsigned numbers, and their difference is the result; with no difference it is the
// difference of the lengths. Callers rely on the number and not only on its sign.
//
// Searches go through the C runtime's memchr and memcmp, which no loop of ours beats; the mismatch
// needs the place and not the sign, so it walks words by itself.
#pragma once

#include "base/arith.h"

#include <bit>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <limits>

namespace qek {

inline const std::uint8_t *as_bytes(const void *bytes) noexcept
{
    return static_cast<const std::uint8_t *>(bytes);
}

inline std::int32_t text_length(const void *text) noexcept
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(smaller(std::strlen(static_cast<const char *>(text)), most));
}

// The rule for a text that travels with its length: any negative length asks for measuring.
inline std::int32_t measured(const void *text, std::int32_t length) noexcept
{
    if (length >= 0) {
        return length;
    }
    return text == nullptr ? 0 : text_length(text);
}

// memmove that does nothing, also with null pointers, for a count of 0 or less.
inline void move_bytes(void *to, const void *from, std::int64_t count) noexcept
{
    if (count > 0) {
        std::memmove(to, from, static_cast<std::size_t>(count));
    }
}

inline std::int32_t distance(const void *from, const void *to) noexcept
{
    return static_cast<std::int32_t>(as_bytes(to) - as_bytes(from));
}

inline std::int32_t find_byte(const void *bytes, std::int32_t size, std::uint8_t ch) noexcept
{
    if (size <= 0) {
        return -1;
    }
    const void *hit = std::memchr(bytes, ch, static_cast<std::size_t>(size));
    return hit == nullptr ? -1 : distance(bytes, hit);
}

inline std::int32_t find_last_byte(const void *bytes, std::int32_t size, std::uint8_t ch) noexcept
{
    std::int32_t at = size;
    while (at > 0) {
        --at;
        if (as_bytes(bytes)[at] == ch) {
            return at;
        }
    }
    return -1;
}

// An empty needle is found at the first byte equal to needle[0], the byte behind the range included:
// the scan has no shortcut for it, and that is intended.
inline std::int32_t find_bytes(const void *hay, std::int32_t hay_size, const void *needle,
                               std::int32_t needle_size) noexcept
{
    if (hay_size < needle_size) {
        return -1;
    }
    const std::uint8_t first = as_bytes(needle)[0];
    const auto rest = needle_size > 1 ? static_cast<std::size_t>(needle_size) - 1 : 0;
    const std::uint8_t *at = as_bytes(hay);
    const std::uint8_t *last = at + hay_size - larger(needle_size, 0);
    while (at <= last) {
        const void *hit = std::memchr(at, first, static_cast<std::size_t>(last - at) + 1);
        if (hit == nullptr) {
            return -1;
        }
        at = as_bytes(hit);
        if (std::memcmp(at + 1, as_bytes(needle) + 1, rest) == 0) {
            return distance(hay, at);
        }
        ++at;
    }
    return -1;
}

// The index of the first byte that differs, or `size` if none does.
inline std::int32_t mismatch(const std::uint8_t *a, const std::uint8_t *b,
                             std::int32_t size) noexcept
{
    std::int32_t at = 0;
    for (; size - at >= 8; at += 8) {
        std::uint64_t a_word = 0;
        std::uint64_t b_word = 0;
        std::memcpy(&a_word, a + at, 8);
        std::memcpy(&b_word, b + at, 8);
        if (a_word != b_word) {
            const std::uint64_t bits = a_word ^ b_word;
            constexpr bool low_byte_first = std::endian::native == std::endian::little;
            return at + (low_byte_first ? std::countr_zero(bits) : std::countl_zero(bits)) / 8;
        }
    }
    while (at < size && a[at] == b[at]) {
        ++at;
    }
    return at;
}

inline std::int32_t order_bytes(const void *a, std::int32_t a_size, const void *b,
                                std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    const std::int32_t at = mismatch(as_bytes(a), as_bytes(b), common);
    return at < common ? as_bytes(a)[at] - as_bytes(b)[at] : wrapping_difference(a_size, b_size);
}

inline std::int32_t order_bytes_ignoring_case(const void *a, std::int32_t a_size, const void *b,
                                              std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    for (std::int32_t at = 0; at < common; ++at) {
        const int lowered_a = std::tolower(as_bytes(a)[at]);
        const int lowered_b = std::tolower(as_bytes(b)[at]);
        if (lowered_a != lowered_b) {
            return lowered_a - lowered_b;
        }
    }
    return wrapping_difference(a_size, b_size);
}

} // namespace qek
