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
#include "base/bytes.h"
#include "qek_std.h"

#include <cstdint>

namespace qek::cursor {

// A position below zero is, without its sign, beyond every length.
inline bool fits(const qek_stream &stream, std::int32_t position, std::int32_t width) noexcept
{
    return std::int64_t{static_cast<std::uint32_t>(position)} + width <= stream.length;
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

// Widths that no number has are put together of two.
template <int Width> std::uint64_t load_low_first(const std::uint8_t *bytes) noexcept
{
    if constexpr (Width == 1) {
        return bytes[0];
    } else if constexpr (Width == 2) {
        return qek::load_low_first<std::uint16_t>(bytes);
    } else if constexpr (Width == 4) {
        return qek::load_low_first<std::uint32_t>(bytes);
    } else if constexpr (Width == 8) {
        return qek::load_low_first<std::uint64_t>(bytes);
    } else {
        constexpr int first = Width == 3 ? 2 : 4;
        return load_low_first<first>(bytes) | load_low_first<Width - first>(bytes + first)
                                                  << (8 * first);
    }
}

template <int Width> void store_low_first(std::uint8_t *bytes, std::uint64_t value) noexcept
{
    if constexpr (Width == 1) {
        bytes[0] = static_cast<std::uint8_t>(value);
    } else if constexpr (Width == 2) {
        qek::store_low_first(bytes, static_cast<std::uint16_t>(value));
    } else if constexpr (Width == 4) {
        qek::store_low_first(bytes, static_cast<std::uint32_t>(value));
    } else if constexpr (Width == 8) {
        qek::store_low_first(bytes, value);
    } else {
        constexpr int first = Width == 3 ? 2 : 4;
        store_low_first<first>(bytes, value);
        store_low_first<Width - first>(bytes + first, value >> (8 * first));
    }
}

} // namespace qek::cursor
