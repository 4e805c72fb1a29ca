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

// Both ends are in it.
struct range {
    std::int32_t low;
    std::int32_t high;
};

constexpr std::int32_t middle(std::int32_t low, std::int32_t high) noexcept
{
    return low + (high - low) / 2;
}

template <typename Order> place locate(range among, bool reversed, Order order) noexcept
{
    auto [low, high] = among;
    while (low <= high) {
        const std::int32_t mid = middle(low, high);
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

template <typename Order> place locate(std::int32_t count, bool reversed, Order order) noexcept
{
    return locate(range{0, count - 1}, reversed, order);
}

constexpr std::int32_t nearest(place at, std::int32_t count) noexcept
{
    return smaller(at.index, count - 1);
}

} // namespace qek::array
