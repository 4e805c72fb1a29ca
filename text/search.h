// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Comparing and searching text that is not changed: the part that owned strings and views share.
//
// A `span` is what all of them look at: a run of bytes, empty when it has no data or no length.
// `compare` ranks an absent text lowest and an empty one next, and only then asks the byte order;
// which order that is (bytes, or bytes without regard to case) is its template argument.
#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace qek::text {

struct span {
    const std::uint8_t *data;
    std::int32_t length;

    bool is_empty() const noexcept { return data == nullptr || length == 0; }
};

using byte_order = std::int32_t(const void *, std::int32_t, const void *, std::int32_t) noexcept;

template <byte_order order>
std::int32_t compare(span left, const void *text, std::int32_t length) noexcept
{
    if (text == nullptr || length == 0) {
        return static_cast<std::int32_t>(!left.is_empty());
    }
    const std::int32_t size = measured(text, length);
    if (left.is_empty()) {
        return size > 0 ? -1 : 0;
    }
    return order(left.data, left.length, text, size);
}

inline std::int32_t find_last(span in, std::uint8_t ch) noexcept
{
    return in.is_empty() || ch == 0 ? -1 : find_last_byte(in.data, in.length, ch);
}

} // namespace qek::text
