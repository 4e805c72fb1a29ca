// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The cursor of the serialised form: a position that the caller owns and every access moves on.
//
// A fixed-width access is all or nothing: it takes place when its whole width lies below the
// stream's length, and the cursor moves by the width either way, so that a reader past the end sees
// zeros at the places where a full read would have stood, and a writer run over a stream that is
// too short measures the size that it needs.
//
// The cursor wraps through the unsigned type; what lies at the far end of int32_t, and below zero,
// is past the end like anything else.
#pragma once

#include "base/arith.h"
#include "qek_std.h"

#include <cstdint>

namespace qek::cursor {

inline bool fits(const qek_stream &stream, std::int32_t position, std::int32_t width) noexcept
{
    return position >= 0 && wide(position) + width <= stream.length;
}

inline void advance(std::int32_t &position, std::int32_t by) noexcept
{
    position = wrapping_sum(position, by);
}

// How many of `wanted` bytes stand at the position.
inline std::int32_t available(const qek_stream &stream, std::int32_t position,
                              std::int32_t wanted) noexcept
{
    const bool inside = position >= 0 && position < stream.length;
    return inside ? smaller(wanted, stream.length - position) : 0;
}

template <int Width> std::uint64_t load_low_first(const std::uint8_t *bytes) noexcept
{
    std::uint64_t value = 0;
    for (int at = 0; at < Width; ++at) {
        value |= static_cast<std::uint64_t>(bytes[at]) << (8 * at);
    }
    return value;
}

template <int Width> void store_low_first(std::uint8_t *bytes, std::uint64_t value) noexcept
{
    for (int at = 0; at < Width; ++at) {
        bytes[at] = static_cast<std::uint8_t>(value >> (8 * at));
    }
}

} // namespace qek::cursor
