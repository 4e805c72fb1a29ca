// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Arithmetic that may leave the range of int32_t.
//
// Counts and positions are int32_t and compare as signed. A sum of two of them is formed in 64 bits
// (`wide`) where its size is then tested, and wraps through the unsigned type where wrapping is the
// contract: cursors that always move on, differences that order keys.
#pragma once

#include <cstdint>

namespace qek {

constexpr std::int64_t wide(std::int32_t value) noexcept { return value; }

constexpr std::int32_t wrapping_sum(std::int32_t a, std::int32_t b) noexcept
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

constexpr std::int32_t wrapping_difference(std::int32_t a, std::int32_t b) noexcept
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

template <typename Number> constexpr Number smaller(Number a, Number b) noexcept
{
    return b < a ? b : a;
}

template <typename Number> constexpr Number larger(Number a, Number b) noexcept
{
    return a < b ? b : a;
}

} // namespace qek
