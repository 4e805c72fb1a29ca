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

// Where some bytes of a needle agree with the hay: a bit for each place from `block` on.
struct sighting {
    const std::uint8_t *block;
    std::uint64_t places;
};

// The first sighting in the places from `from` to `end`, and `from` behind what was looked at; or no
// places. The needle has two units and more, whose bits in a mask are `starts`.
using sighter = sighting(const std::uint8_t *&from, const std::uint8_t *end,
                         const std::uint8_t *needle, std::int64_t to_middle, std::int64_t to_last,
                         std::uint64_t starts) noexcept;

struct set {
    std::int64_t width;

    sighter *next_sighting; // for `width` places and more
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

// Where a needle stands, or -1. A unit has one byte or two.
std::int64_t find_by(sighter *next, const std::uint8_t *hay, std::int64_t hay_size,
                     const std::uint8_t *needle, std::int64_t needle_size,
                     std::int64_t unit) noexcept;

// Those of the right set: the search for any number of places from one on, the comparison for 16
// bytes and more.
std::int64_t find(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                  std::int64_t needle_size, std::int64_t unit) noexcept;
std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept;

} // namespace qek::scan
