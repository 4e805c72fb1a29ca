// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Numbers as text, by the runtime's formatter and four fixed formats.
//
// `printed` holds one number, long enough for every double: 309 digits, a sign, the runtime's
// decimal point, six decimals.
#pragma once

#include "base/platform.h"

#include <cstdint>
#include <cstdio>

namespace qek::number {

class printed {
  public:
    explicit printed(std::int32_t value) noexcept
        : length_(std::snprintf(text_, sizeof text_, "%ld", static_cast<long>(value)))
    {
    }
    explicit printed(std::int64_t value) noexcept
        : length_(std::snprintf(text_, sizeof text_, platform::signed_64_bit_decimal(), value))
    {
    }
    explicit printed(float value) noexcept
        : length_(std::snprintf(text_, sizeof text_, "%f", static_cast<double>(value)))
    {
    }
    explicit printed(double value) noexcept
        : length_(std::snprintf(text_, sizeof text_, "%lf", value))
    {
    }

    const std::uint8_t *text() const noexcept
    {
        return reinterpret_cast<const std::uint8_t *>(text_);
    }
    std::int32_t length() const noexcept { return length_; }

  private:
    char text_[352];
    int length_;
};

} // namespace qek::number
