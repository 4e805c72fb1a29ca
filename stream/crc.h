// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The CRC-32 register: reflected polynomial 0xEDB88320, one table step for each byte.
//
// The checksum starts the register at all ones and inverts the result; the key hashes start it at 0
// and do not. Both go through `crc_after`, so that the table is used in one place. The table is
// worked out by the compiler and lies in the library as constant data.
#pragma once

#include <cstdint>

namespace qek {

struct crc_table {
    std::uint32_t of[256];
};

constexpr crc_table make_crc_table() noexcept
{
    crc_table table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest >> 1) ^ ((rest & 1) != 0 ? 0xEDB88320U : 0U);
        }
        table.of[byte] = rest;
    }
    return table;
}

inline constexpr crc_table crc_steps = make_crc_table();
static_assert(crc_steps.of[1] == 0x77073096 && crc_steps.of[255] == 0x2D02EF8D);

inline std::uint32_t crc_after(std::uint32_t crc, const std::uint8_t *bytes,
                               std::int32_t size) noexcept
{
    for (std::int32_t at = 0; at < size; ++at) {
        crc = (crc >> 8) ^ crc_steps.of[(crc ^ bytes[at]) & 0xFF];
    }
    return crc;
}

} // namespace qek
