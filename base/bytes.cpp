// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/bytes.h"

#include "base/letters.h"
#include "base/scan.h"

#include <bit>

namespace qek {

namespace {

constexpr std::int64_t least_to_skip = 128;

// Whether the locale maps the letters of ASCII as ASCII does.
bool are_letters_plain(const text::lower_case &lower) noexcept
{
    int different = 0;
    for (int letter = 'a'; letter <= 'z'; ++letter) {
        const int upper = letter - 'a' + 'A';
        different |= (lower.of(letter) ^ letter) | (lower.of(upper) ^ letter);
    }
    return different == 0;
}

// The index of the first of eight bytes that differ, from the difference of the words.
std::int32_t first_of_word(std::uint64_t difference) noexcept
{
    return static_cast<std::int32_t>(std::countr_zero(difference) / 8);
}

constexpr std::int64_t word = 8;

std::uint64_t difference_at(const std::uint8_t *a, const std::uint8_t *b, std::int64_t at) noexcept
{
    return load_low_first<std::uint64_t>(a + at) ^ load_low_first<std::uint64_t>(b + at);
}

// By vectors, or by words: the last one overlaps the one before.
std::int64_t long_mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept
{
    if constexpr (scan::is_there) {
        return scan::mismatch(a, b, size);
    } else {
        std::int64_t at = 0;
        while (at < size) {
            at = smaller(at, size - word);
            const std::uint64_t difference = difference_at(a, b, at);
            if (difference != 0) {
                return at + first_of_word(difference);
            }
            at += word;
        }
        return size;
    }
}

// Short keys are most of what is compared: two words that overlap.
inline std::int64_t find_mismatch(const std::uint8_t *a, const std::uint8_t *b,
                                  std::int64_t size) noexcept
{
    if (size > 2 * word) {
        return long_mismatch(a, b, size);
    }
    if (size < word) {
        const auto few = static_cast<std::int32_t>(size);
        const std::uint64_t difference = size <= 0 ? 0 : load_few(a, few) ^ load_few(b, few);
        return difference == 0 ? size : first_of_word(difference);
    }
    const std::uint64_t of_first = difference_at(a, b, 0);
    const std::uint64_t of_last = difference_at(a, b, size - word);
    return of_first != 0  ? first_of_word(of_first)
           : of_last != 0 ? size - word + first_of_word(of_last)
                          : size;
}

} // namespace

std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept
{
    return find_mismatch(a, b, size);
}

std::int32_t find_last_byte(const void *bytes, std::int32_t size, std::uint8_t ch) noexcept
{
#if defined(__GLIBC__)
    if (size <= 0) {
        return -1;
    }
    const void *hit = memrchr(bytes, ch, static_cast<std::size_t>(size));
    return hit == nullptr ? -1 : distance(bytes, hit);
#else
    std::int32_t at = size;
    while (at > 0) {
        --at;
        if (as_bytes(bytes)[at] == ch) {
            return at;
        }
    }
    return -1;
#endif
}

std::int32_t find_bytes(const void *hay, std::int32_t hay_size, const void *needle,
                        std::int32_t needle_size) noexcept
{
    if (hay_size < larger(needle_size, 0)) {
        return -1;
    }
    if (needle_size < 2) {
        const std::int64_t places = wide(hay_size) - larger(needle_size, 0) + 1;
        const void *hit = std::memchr(hay, as_bytes(needle)[0], static_cast<std::size_t>(places));
        return hit == nullptr ? -1 : distance(hay, hit);
    }
    if constexpr (scan::is_there) {
        return static_cast<std::int32_t>(
            scan::find(as_bytes(hay), hay_size, as_bytes(needle), needle_size, 1));
    } else {
        const std::int32_t last = hay_size - needle_size;
        for (std::int32_t at = 0; at <= last; ++at) {
            const std::int32_t next =
                find_byte(as_bytes(hay) + at, last - at + 1, *as_bytes(needle));
            if (next < 0) {
                return -1;
            }
            at += next;
            if (std::memcmp(as_bytes(hay) + at, needle, static_cast<std::size_t>(needle_size)) ==
                0) {
                return at;
            }
        }
        return -1;
    }
}

std::int32_t order_bytes(const void *a, std::int32_t a_size, const void *b,
                         std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    const std::int64_t at = find_mismatch(as_bytes(a), as_bytes(b), common);
    return at < common ? as_bytes(a)[at] - as_bytes(b)[at] : wrapping_difference(a_size, b_size);
}

// Bytes that are equal are so in either case, so the letters are looked at from a mismatch on only.
std::int32_t order_bytes_ignoring_case(const void *a, std::int32_t a_size, const void *b,
                                       std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    const text::lower_case lower;
    std::int64_t at = mismatch(as_bytes(a), as_bytes(b), common);
    bool skips = scan::is_there && common - at >= least_to_skip;
    skips = skips && are_letters_plain(lower); // GCOVR_EXCL_BR_LINE: always, in the locale of tests
    while (at < common) {
        if constexpr (scan::is_there) {
            at += skips ? scan::best().equal_but_for_case(as_bytes(a) + at, as_bytes(b) + at,
                                                          common - at)
                        : 0;
        }
        for (const std::int64_t end = smaller<std::int64_t>(at + 16, common); at < end; ++at) {
            const int lowered_a = lower.of(as_bytes(a)[at]);
            const int lowered_b = lower.of(as_bytes(b)[at]);
            if (lowered_a != lowered_b) {
                return lowered_a - lowered_b;
            }
        }
    }
    return wrapping_difference(a_size, b_size);
}

} // namespace qek
