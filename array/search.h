// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Binary search, the one procedure behind every ordered look-up by key.
//
// `order(index)` tells how the element at `index` stands to the key: above 0 if behind it. Which
// elements are probed, and in what order, is interface, since callbacks see it: low and high close
// in on the truncated middle, and the first probe that answers 0 ends the search. So among equal
// elements the one found is the one that the probing meets first.
//
// A miss leaves the place where the key would go. Its nearest neighbour is the element there, the
// first one behind the key, or the last element when the key lies behind all.
#pragma once

#include "base/arith.h"

#include <cstdint>
#include <type_traits>

namespace qek::array {

struct place {
    std::int32_t index;
    bool found;
};

template <typename Number> constexpr Number negated(Number number) noexcept
{
    using bits = std::make_unsigned_t<Number>;
    return static_cast<Number>(bits{0} - static_cast<bits>(number));
}

template <typename Order> place locate(std::int32_t count, bool reversed, Order order) noexcept
{
    std::int32_t low = 0;
    std::int32_t high = count - 1;
    while (low <= high) {
        const std::int32_t mid = low + (high - low) / 2;
        const auto stands = reversed ? negated(order(mid)) : order(mid);
        if (stands == 0) {
            return {mid, true};
        }
        if (stands > 0) {
            high = mid - 1;
        } else {
            low = mid + 1;
        }
    }
    return {low, false};
}

constexpr std::int32_t nearest(place at, std::int32_t count) noexcept
{
    return smaller(at.index, count - 1);
}

} // namespace qek::array
