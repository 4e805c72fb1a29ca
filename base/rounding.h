// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Whether arithmetic rounds to the nearest double, which results that were worked out beforehand
// rest on. Asked of the arithmetic itself, as a program may turn the direction at any time, and the
// C library's answer would need its library of mathematics.
#pragma once

namespace qek {

inline bool rounds_to_nearest() noexcept
{
    const volatile double quarter_step = 0x1p-54; // of the distance from 1 to the next double
    const double step = quarter_step;
    return 1.0 + step == 1.0 && 1.0 + step * 3 > 1.0;
}

} // namespace qek
