// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The hash of a key: the CRC register started at 0, without the inversion that a checksum ends
// with.
#pragma once

#include "base/letters.h"
#include "stream/crc.h"
#include "stream/keys.h"

#include <cstdint>

namespace qek::hash {

inline std::uint32_t of_bytes(const std::uint8_t *bytes, std::int32_t size) noexcept
{
    return crc_after(0, bytes, size);
}

inline std::uint32_t of_lowered_bytes(const std::uint8_t *bytes, std::int32_t size) noexcept
{
    constexpr std::int32_t part = 64;
    const text::byte_map<text::lower_case> lower;
    std::uint8_t lowered[part];
    std::uint32_t crc = 0;
    for (std::int32_t left = size; left > 0; left -= part) {
        const std::int32_t count = smaller(left, part);
        for (std::int32_t at = 0; at < count; ++at) {
            lowered[at] = lower(*bytes++);
        }
        crc = crc_after(crc, lowered, count);
    }
    return crc;
}

inline std::uint32_t of_text(keys::text key, bool ignore_case) noexcept
{
    return ignore_case ? of_lowered_bytes(key.bytes, key.length) : of_bytes(key.bytes, key.length);
}

} // namespace qek::hash
