// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Searching and ordering of counted byte runs, for every family that holds text or keys.
//
// The order of all byte-string keys of the library is `order_bytes`: the first two bytes that
// differ decide, as unsigned numbers, and their difference is the result; with no difference it is
// the difference of the lengths. Callers rely on the number and not only on its sign.
//
// Searches for single bytes and equality go through the C runtime, which no loop of ours beats; a
// mismatch needs the place and not the sign.
#pragma once

#include "base/arith.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>

namespace qek {

inline const std::uint8_t *as_bytes(const void *bytes) noexcept
{
    return static_cast<const std::uint8_t *>(bytes);
}

// Eight bytes as a number, the first one highest, so that numbers stand as the bytes do.
inline std::uint64_t load_high_first(const std::uint8_t *bytes) noexcept
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

// A number whose first byte is the lowest.
template <typename Word> Word load_low_first(const std::uint8_t *bytes) noexcept
{
    Word word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big) {
        word = static_cast<Word>(__builtin_bswap64(word) >> (64 - 8 * sizeof word));
    }
    return word;
}

template <typename Word> void store_low_first(std::uint8_t *bytes, Word word) noexcept
{
    if constexpr (std::endian::native == std::endian::big) {
        word = static_cast<Word>(__builtin_bswap64(word) >> (64 - 8 * sizeof word));
    }
    std::memcpy(bytes, &word, sizeof word);
}

// A word without its lowest `count` bytes; 8 are all.
constexpr std::uint64_t without_first(std::uint64_t word, std::int32_t count) noexcept
{
    return word >> (4 * count) >> (4 * count);
}

// One to seven bytes, the first one lowest.
inline std::uint64_t load_few(const std::uint8_t *bytes, std::int32_t size) noexcept
{
    if (size >= 4) {
        return load_low_first<std::uint32_t>(bytes) |
               std::uint64_t{load_low_first<std::uint32_t>(bytes + size - 4)} << (8 * (size - 4));
    }
    const std::int32_t mid = size / 2;
    return bytes[0] | std::uint64_t{bytes[mid]} << (8 * mid) |
           std::uint64_t{bytes[size - 1]} << (8 * (size - 1));
}

inline std::int32_t text_length(const void *text) noexcept
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(smaller(std::strlen(static_cast<const char *>(text)), most));
}

// The rule for a text that travels with its length: any negative length asks for measuring.
inline std::int32_t measured(const void *text, std::int32_t length) noexcept
{
    if (length >= 0) {
        return length;
    }
    return text == nullptr ? 0 : text_length(text);
}

// memmove that does nothing, also with null pointers, for a count of 0 or less.
inline void move_bytes(void *to, const void *from, std::int64_t count) noexcept
{
    if (count > 0) {
        std::memmove(to, from, static_cast<std::size_t>(count));
    }
}

template <typename Word>
void move_ends(std::uint8_t *to, const std::uint8_t *from, std::int32_t count) noexcept
{
    const std::int32_t behind = count - static_cast<std::int32_t>(sizeof(Word));
    Word first, last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + behind, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + behind, &last, sizeof last);
}

// The same for 1 to 16 bytes, without a call: two words, the second one over the end of the first.
inline void move_few(void *to, const void *from, std::int32_t count) noexcept
{
    auto *const target = static_cast<std::uint8_t *>(to);
    if (count >= 8) {
        move_ends<std::uint64_t>(target, as_bytes(from), count);
    } else if (count >= 4) {
        move_ends<std::uint32_t>(target, as_bytes(from), count);
    } else if (count >= 2) {
        move_ends<std::uint16_t>(target, as_bytes(from), count);
    } else {
        *target = *as_bytes(from);
    }
}

// The same for units of any size.
template <typename Unit> void move_units(Unit *to, const Unit *from, std::int64_t count) noexcept
{
    move_bytes(to, from, count * static_cast<std::int64_t>(sizeof(Unit)));
}

inline std::int32_t distance(const void *from, const void *to) noexcept
{
    return static_cast<std::int32_t>(as_bytes(to) - as_bytes(from));
}

inline std::int32_t find_byte(const void *bytes, std::int32_t size, std::uint8_t ch) noexcept
{
    if (size <= 0) {
        return -1;
    }
    const void *hit = std::memchr(bytes, ch, static_cast<std::size_t>(size));
    return hit == nullptr ? -1 : distance(bytes, hit);
}

std::int32_t find_last_byte(const void *bytes, std::int32_t size, std::uint8_t ch) noexcept;

// An empty needle is found at the first byte equal to needle[0], the byte behind the range
// included: the scan has no shortcut for it, and that is intended.
std::int32_t find_bytes(const void *hay, std::int32_t hay_size, const void *needle,
                        std::int32_t needle_size) noexcept;

// The index of the first byte that differs, or `size` if none does.
std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept;

std::int32_t order_bytes(const void *a, std::int32_t a_size, const void *b,
                         std::int32_t b_size) noexcept;

std::int32_t order_bytes_ignoring_case(const void *a, std::int32_t a_size, const void *b,
                                       std::int32_t b_size) noexcept;

} // namespace qek
