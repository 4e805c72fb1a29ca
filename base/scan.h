// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Searching and comparing by vectors, where the platform has them; where not, `is_there` is false
// and callers go plainly.
//
// There are two sets of the same functions: for vectors of 16 bytes, which every processor of the
// platform has, and of 32 bytes, which some have. The dynamic linker chooses the best one while it
// loads the library. All sizes and results are in bytes, whatever the width of a unit.
#pragma once

#include <cstdint>

namespace qek::scan {

#if defined(__SSE2__)
inline constexpr bool is_there = true;
#else
inline constexpr bool is_there = false;
#endif

struct set {
    std::int64_t width;

    // Where a needle of two units and more stands, or -1; for `width` places and more. A unit has
    // one byte or two.
    std::int64_t (*find)(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                         std::int64_t needle_size, std::int64_t unit) noexcept;
    // The index of the first byte that differs, or `size`, which is `width` at least.
    std::int64_t (*mismatch)(const std::uint8_t *a, const std::uint8_t *b,
                             std::int64_t size) noexcept;
    // How many bytes from the start, in whole blocks, are equal or the same letter of ASCII.
    std::int64_t (*equal_but_for_case)(const std::uint8_t *a, const std::uint8_t *b,
                                       std::int64_t size) noexcept;
    // Turns the case of the 26 letters from `first` on, in whole blocks: how many bytes those are.
    std::int64_t (*turn_case)(std::uint8_t first, std::uint8_t *bytes, std::int64_t size) noexcept;
};

// Whether a table for -128 to 127 turns the case of the 26 letters from `first` on and of nothing
// else, as far as the low 8 bits of its entries say.
bool turns_plain_letters(const std::int32_t *table, std::uint8_t first) noexcept;

const set &by_16() noexcept;
const set &best() noexcept;

// Those of the right set: the search for any number of places from one on, the comparison for 16
// bytes and more.
std::int64_t find(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                  std::int64_t needle_size, std::int64_t unit) noexcept;
std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept;

} // namespace qek::scan
