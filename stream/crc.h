// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The CRC-32 register: reflected polynomial 0xEDB88320.
//
// The checksum starts the register at all ones and inverts the result; the key hashes start it at 0
// and do not. Both go through `crc_after`. `crc_by_bytes` is the definition, one table step for
// each byte; what stands beside it gives the same register sooner:
//
//   By words. Tables for a byte with 1, 2, ... 15 bytes behind it take 8 or 16 bytes in one step,
//   as the register is linear. The bytes in front of whole words are shifted to the far end of a
//   word, since zeros in front of a zero register change nothing. A sixth of the time by bytes.
//
//   By carry-less multiplication, where the processor has it: registers of 128 bits run along the
//   bytes, are folded into one, and that is divided by multiplying with a reciprocal. Up to 24 bytes
//   the sum comes as late as by words, but with less work, so that the next one starts sooner; of a
//   kilobyte it is an eighth of the time, and where there are registers of 512 bits, a twelfth.
//
// The tables are worked out by the compiler and lie in the library as constant data.
#pragma once

#include "base/bytes.h"
#include "base/processor.h"

#include <cstdint>

namespace qek {

struct crc_tables {
    std::uint32_t of[16][256]; // of[n][b]: what b has become when n more bytes are behind it
};

constexpr crc_tables make_crc_tables() noexcept
{
    crc_tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest >> 1) ^ ((rest & 1) != 0 ? 0xEDB88320U : 0U);
        }
        tables.of[0][byte] = rest;
    }
    for (int behind = 1; behind < 16; ++behind) {
        for (int byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables.of[behind - 1][byte];
            tables.of[behind][byte] = (before >> 8) ^ tables.of[0][before & 0xFF];
        }
    }
    return tables;
}

inline constexpr crc_tables crc_steps = make_crc_tables();
static_assert(crc_steps.of[0][1] == 0x77073096 && crc_steps.of[0][255] == 0x2D02EF8D);

inline std::uint32_t crc_by_bytes(std::uint32_t crc, const std::uint8_t *bytes,
                                  std::int32_t size) noexcept
{
    for (std::int32_t at = 0; at < size; ++at) {
        crc = (crc >> 8) ^ crc_steps.of[0][(crc ^ bytes[at]) & 0xFF];
    }
    return crc;
}

// What the eight bytes of a word become with `behind` bytes behind them.
inline std::uint32_t crc_of_word(std::uint64_t word, int behind) noexcept
{
    const auto step = [&](int at) {
        return crc_steps.of[behind + 7 - at][(word >> (8 * at)) & 0xFF];
    };
    return ((step(0) ^ step(1)) ^ (step(2) ^ step(3))) ^
           ((step(4) ^ step(5)) ^ (step(6) ^ step(7)));
}

inline std::uint32_t crc_by_words(std::uint32_t crc, const std::uint8_t *bytes,
                                  std::int32_t size) noexcept
{
    if (size <= 0) {
        return crc;
    }
    const std::int32_t odd = size % 8;
    if (odd != 0) {
        const std::uint64_t head =
            size < 8 ? load_few(bytes, size) : load_low_first<std::uint64_t>(bytes);
        crc = crc_of_word((head ^ crc) << (64 - 8 * odd), 0) ^
              static_cast<std::uint32_t>(std::uint64_t{crc} >> (8 * odd));
    }
    const std::uint8_t *at = bytes + odd;
    const std::uint8_t *const end = bytes + size;
    if ((end - at) % 16 != 0) {
        crc = crc_of_word(load_low_first<std::uint64_t>(at) ^ crc, 0);
        at += 8;
    }
    for (; at != end; at += 16) {
        crc = crc_of_word(load_low_first<std::uint64_t>(at) ^ crc, 8) ^
              crc_of_word(load_low_first<std::uint64_t>(at + 8), 0);
    }
    return crc;
}

#ifdef QEK_CHOOSES_AT_LOAD

std::uint32_t crc_by_multiplication(std::uint32_t crc, const std::uint8_t *bytes,
                                    std::int32_t size) noexcept;
std::uint32_t crc_by_wide_multiplication(std::uint32_t crc, const std::uint8_t *bytes,
                                         std::int32_t size) noexcept;

// In the best way that the processor has. The linker puts it in when the library is loaded.
std::uint32_t crc_after(std::uint32_t crc, const std::uint8_t *bytes, std::int32_t size) noexcept;

#else

inline std::uint32_t crc_after(std::uint32_t crc, const std::uint8_t *bytes,
                               std::int32_t size) noexcept
{
    return crc_by_words(crc, bytes, size);
}

#endif

} // namespace qek
