// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What differs between platforms. Every such difference of the library stands in platform.cpp.
#pragma once

namespace qek::platform {

// The runtime's comparison of NUL-terminated text without regard to case.
int compare_ignoring_case(const char *a, const char *b) noexcept;

// The conversion of the runtime's formatter for a signed 64-bit decimal, with its leading percent
// sign.
const char *signed_64_bit_decimal() noexcept;

} // namespace qek::platform
