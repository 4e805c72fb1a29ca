// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The hash of a key: the CRC register started at 0, without the inversion that a checksum ends
// with.
#pragma once

#include "stream/crc.h"
#include "stream/keys.h"

#include <cctype>
#include <cstdint>

namespace qek::hash {

inline std::uint32_t of_bytes(const std::uint8_t *bytes, std::int32_t size) noexcept
{
    return crc_after(0, bytes, size);
}

// Letters go through the runtime's mapping with their sign; its low 8 bits are hashed.
inline std::uint32_t of_lowered_bytes(const std::uint8_t *bytes, std::int32_t size) noexcept
{
    std::uint32_t crc = 0;
    for (std::int32_t at = 0; at < size; ++at) {
        const auto lowered =
            static_cast<std::uint8_t>(std::tolower(static_cast<std::int8_t>(bytes[at])));
        crc = crc_after(crc, &lowered, 1);
    }
    return crc;
}

inline std::uint32_t of_text(keys::text key, bool ignore_case) noexcept
{
    return ignore_case ? of_lowered_bytes(key.bytes, key.length) : of_bytes(key.bytes, key.length);
}

} // namespace qek::hash
