// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/bytes.h"

#include <bit>
#include <cctype>

namespace qek {

std::int32_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int32_t size) noexcept
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

std::int32_t find_last_byte(const void *bytes, std::int32_t size, std::uint8_t ch) noexcept
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

std::int32_t find_bytes(const void *hay, std::int32_t hay_size, const void *needle,
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

std::int32_t order_bytes(const void *a, std::int32_t a_size, const void *b,
                         std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    const std::int32_t at = mismatch(as_bytes(a), as_bytes(b), common);
    return at < common ? as_bytes(a)[at] - as_bytes(b)[at] : wrapping_difference(a_size, b_size);
}

std::int32_t order_bytes_ignoring_case(const void *a, std::int32_t a_size, const void *b,
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
