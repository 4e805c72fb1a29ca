// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What differs between platforms. Every such difference of the library stands in platform.cpp.
#pragma once

namespace qek::platform {

// The runtime's comparison of NUL-terminated text without regard to case.
int compare_ignoring_case(const char *a, const char *b) noexcept;

// Whether the runtime reads and writes a dot as the decimal point, in the thread's locale.
bool is_point_a_dot() noexcept;

} // namespace qek::platform
