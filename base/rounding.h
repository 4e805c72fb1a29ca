// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Whether arithmetic rounds to the nearest double, which results that were worked out beforehand
// rest on. Asked of the arithmetic itself, as a program may turn the direction at any time, and the
// C library's answer would need its library of mathematics.
#pragma once

namespace qek {

// Next to 1, both of these are nearer to it than to a neighbour, or as near to it, which is even.
// In each other direction, one of them goes away from it.
inline bool rounds_to_nearest() noexcept
{
    const volatile double quarter_step = 0x1p-54; // of the distance to the double above 1
    const double step = quarter_step;
    return 1.0 + step == 1.0 - step;
}

} // namespace qek
