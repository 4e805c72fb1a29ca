// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The powers of ten, for numbers that are written and read.
#pragma once

#include <cstdint>

namespace qek::number {

struct ten_table {
    std::uint64_t of[20];
};

constexpr ten_table make_tens() noexcept
{
    ten_table made{{1}};
    for (int at = 1; at < 20; ++at) {
        made.of[at] = made.of[at - 1] * 10;
    }
    return made;
}

inline constexpr ten_table tens = make_tens();

} // namespace qek::number
