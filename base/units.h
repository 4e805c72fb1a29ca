// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The searches and orders of search.h by the width of a unit: those of bytes.h for bytes, and the
// same for 16-bit units, whatever the platform's own wide character is. A 16-bit unit reaches the
// runtime's byte routines for letters as it stands, so that units above 255 are never mapped.
#pragma once

#include "base/bytes.h"
#include "base/letters.h"
#include "base/scan.h"

#include <cstdint>
#include <limits>

namespace qek {

inline std::int32_t text_length(const std::uint16_t *text) noexcept
{
    std::int32_t length = 0;
    constexpr auto longest = std::numeric_limits<std::int32_t>::max();
    while (text[length] != 0 && length < longest) { // GCOVR_EXCL_BR_LINE: that takes 4 GiB
        ++length;
    }
    return length;
}

inline std::int32_t measured(const std::uint16_t *text, std::int32_t length) noexcept
{
    if (length >= 0) {
        return length;
    }
    return text == nullptr ? 0 : text_length(text);
}

inline std::int32_t find_unit(const std::uint8_t *units, std::int32_t size,
                              std::uint8_t unit) noexcept
{
    return find_byte(units, size, unit);
}

inline std::int32_t find_unit(const std::uint16_t *units, std::int32_t size,
                              std::uint16_t unit) noexcept
{
    for (std::int32_t at = 0; at < size; ++at) {
        if (units[at] == unit) {
            return at;
        }
    }
    return -1;
}

inline std::int32_t find_last_unit(const std::uint8_t *units, std::int32_t size,
                                   std::uint8_t unit) noexcept
{
    return find_last_byte(units, size, unit);
}

inline std::int32_t find_last_unit(const std::uint16_t *units, std::int32_t size,
                                   std::uint16_t unit) noexcept
{
    std::int32_t at = size - 1;
    while (at >= 0 && units[at] != unit) {
        --at;
    }
    return larger(at, -1);
}

inline std::int32_t find_units(const std::uint8_t *hay, std::int32_t hay_size,
                               const std::uint8_t *needle, std::int32_t needle_size) noexcept
{
    return find_bytes(hay, hay_size, needle, needle_size);
}

// An empty needle behaves as in `find_bytes`.
inline std::int32_t find_units(const std::uint16_t *hay, std::int32_t hay_size,
                               const std::uint16_t *needle, std::int32_t needle_size) noexcept
{
    const std::int32_t last = hay_size - larger(needle_size, 0);
    if (needle_size < 2) {
        return find_unit(hay, wrapping_sum(last, 1), needle[0]);
    }
    if constexpr (scan::is_there) {
        const std::int64_t hit = last < 0 ? -1
                                          : scan::find(as_bytes(hay), wide(hay_size) * 2,
                                                       as_bytes(needle), wide(needle_size) * 2, 2);
        return static_cast<std::int32_t>(hit < 0 ? -1 : hit / 2);
    } else {
        const std::size_t size = static_cast<std::size_t>(needle_size) * sizeof *needle;
        for (std::int32_t at = 0; at <= last; ++at) {
            if (hay[at] == needle[0] && std::memcmp(hay + at, needle, size) == 0) {
                return at;
            }
        }
        return -1;
    }
}

inline std::int32_t find_terminated(const std::uint8_t *hay, const std::uint8_t *needle) noexcept
{
    const char *start = reinterpret_cast<const char *>(hay);
    const char *hit = std::strstr(start, reinterpret_cast<const char *>(needle));
    return hit == nullptr ? -1 : distance(start, hit);
}

inline bool opens_with(const std::uint16_t *text, const std::uint16_t *opening) noexcept
{
    while (*opening != 0 && *opening == *text) {
        ++opening;
        ++text;
    }
    return *opening == 0;
}

inline std::int32_t find_terminated(const std::uint16_t *hay, const std::uint16_t *needle) noexcept
{
    std::int32_t at = 0;
    while (!opens_with(hay + at, needle)) {
        if (hay[at] == 0) {
            return -1;
        }
        ++at;
    }
    return at;
}

inline std::int32_t order_units(const std::uint16_t *a, std::int32_t a_size, const std::uint16_t *b,
                                std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    const std::int64_t at = mismatch(reinterpret_cast<const std::uint8_t *>(a),
                                     reinterpret_cast<const std::uint8_t *>(b), wide(common) * 2) /
                            2;
    return at < common ? a[at] - b[at] : wrapping_difference(a_size, b_size);
}

inline std::int32_t order_units_ignoring_case(const std::uint16_t *a, std::int32_t a_size,
                                              const std::uint16_t *b, std::int32_t b_size) noexcept
{
    const text::unit_map<text::lower_case> lower;
    const std::int32_t common = smaller(a_size, b_size);
    for (std::int32_t at = 0; at < common; ++at) {
        const std::int32_t stands = lower(a[at]) - lower(b[at]);
        if (stands != 0) {
            return stands;
        }
    }
    return wrapping_difference(a_size, b_size);
}

inline std::int32_t order_units(const std::uint8_t *a, std::int32_t a_size, const std::uint8_t *b,
                                std::int32_t b_size) noexcept
{
    return order_bytes(a, a_size, b, b_size);
}

inline std::int32_t order_units_ignoring_case(const std::uint8_t *a, std::int32_t a_size,
                                              const std::uint8_t *b, std::int32_t b_size) noexcept
{
    return order_bytes_ignoring_case(a, a_size, b, b_size);
}

} // namespace qek
