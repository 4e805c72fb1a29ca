// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Which of a block of pairs stand above a pivot, or not above it: the inner loop of the partition
// (key_sort.h) for pairs of 16 bytes with a number in front. Four at a time take half the time of
// one at a time.
#pragma once

#include "base/processor.h"

#include <cstddef>
#include <cstdint>

namespace qek::array {

inline constexpr std::int32_t block = 64;

#if defined(QEK_CHOOSES_AT_LOAD)

inline constexpr std::size_t pair_size = 16;

// The pairs asked for are those whose first eight bytes, as a number, tell
// (number & kept ^ turned) > pivot, or those that do not.
struct pair_test {
    std::uint64_t kept;
    std::uint64_t turned;
    std::uint64_t pivot;
    bool wants_above;
};

// Lists the places in a block of those asked for, and returns how many they are; what is behind them
// in a list of `block` bytes may be written to. The block `ahead` bytes from there is sent for.
std::size_t list_pairs(const std::uint8_t *first, const pair_test &test, std::ptrdiff_t ahead,
                       std::uint8_t *list) noexcept;
std::size_t list_pairs_one_by_one(const std::uint8_t *first, const pair_test &test,
                                  std::ptrdiff_t ahead, std::uint8_t *list) noexcept;

#endif

} // namespace qek::array
