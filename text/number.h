// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Reading numbers out of text: one grammar check and one scanner for each kind of number.
//
// They serve slices, views and the owned strings. They read exactly the bytes they are given, know
// no white space, no plus sign, no exponent and no locale, and stop where the text stops being a
// number; the checks accept a text only as a whole.
//
// The scanner for decimals fixes the last bits of its result: before the point one multiplication,
// one addition of the byte and one subtraction of 48 for each digit; behind it a multiplication
// chain of its own for each digit. All in double, whatever else the platform could do.
//
// The same bits come sooner where every step is exact or known. An integer is read eight digits at
// a time. Where arithmetic rounds to the nearest, up to fifteen digits in front of the point are
// such an integer, as no step rounds (downward, 48 - 48 would be a negative zero), and the chains
// of the first places are worked out by the compiler. A third of the time of strtod.
#pragma once

#include "base/bytes.h"
#include "base/rounding.h"

#include <cstdint>

namespace qek::number {

constexpr bool is_digit(std::uint8_t byte) noexcept { return byte >= '0' && byte <= '9'; }

inline bool is_integer(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    bool digit = false;
    for (std::int32_t at = 0; at < length; ++at) {
        const bool sign = bytes[at] == '-' && at == 0;
        if (!sign && !is_digit(bytes[at])) {
            return false;
        }
        digit = digit || !sign;
    }
    return digit;
}

inline bool is_decimal(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    bool digit = false;
    bool point = false;
    for (std::int32_t at = 0; at < length; ++at) {
        if (is_digit(bytes[at])) {
            digit = true;
        } else if (bytes[at] == '.' && digit && !point) {
            point = true;
        } else if (bytes[at] != '-' || at != 0) {
            return false;
        }
    }
    return digit;
}

// Whether eight bytes, the first one lowest, are digits.
constexpr bool are_digits(std::uint64_t bytes) noexcept
{
    constexpr std::uint64_t upper_halves = 0xF0F0F0F0F0F0F0F0;
    return ((bytes & upper_halves) | (((bytes + 0x0606060606060606) & upper_halves) >> 4)) ==
           0x3333333333333333;
}

// Their value: neighbours are joined to pairs, pairs to fours, fours to the eight.
constexpr std::uint64_t value_of_eight(std::uint64_t digits) noexcept
{
    digits -= 0x3030303030303030;
    digits = digits * 10 + (digits >> 8);
    return ((digits & 0x000000FF000000FF) * (100 + (std::uint64_t{1000000} << 32)) +
            (digits >> 16 & 0x000000FF000000FF) * (1 + (std::uint64_t{10000} << 32))) >>
           32;
}

// The run of digits from `at` on, which moves behind it. Wraps silently beyond 64 bits.
inline std::uint64_t read_digits(const std::uint8_t *bytes, std::int32_t length,
                                 std::int32_t &at) noexcept
{
    std::uint64_t value = 0;
    while (length - at >= 8) {
        const auto eight = load_low_first<std::uint64_t>(bytes + at);
        if (!are_digits(eight)) {
            break;
        }
        value = value * 100000000 + value_of_eight(eight);
        at += 8;
    }
    for (; at < length && is_digit(bytes[at]); ++at) {
        value = value * 10 + (bytes[at] - std::uint64_t{'0'});
    }
    return value;
}

inline std::int64_t read_integer(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    const bool negative = length > 0 && bytes[0] == '-';
    std::int32_t at = negative ? 1 : 0;
    const std::uint64_t value = read_digits(bytes, length, at);
    return static_cast<std::int64_t>(negative ? 0 - value : value);
}

// The digit at decimal place `place`. Once a chain has come down to zero it stays there.
constexpr double decimal(int digit, std::int32_t place) noexcept
{
    double term = digit;
    for (std::int32_t step = 0; step < place && term != 0; ++step) {
        term *= 0.1;
    }
    return term;
}

inline constexpr std::int32_t known_places = 18;

struct decimal_table {
    double of[known_places + 1][10];
};

constexpr decimal_table make_decimals() noexcept
{
    decimal_table decimals{};
    for (std::int32_t place = 1; place <= known_places; ++place) {
        for (int digit = 0; digit < 10; ++digit) {
            decimals.of[place][digit] = decimal(digit, place);
        }
    }
    return decimals;
}

inline constexpr decimal_table known_decimals = make_decimals();

// The digits in front of the point, step by step.
inline double read_whole(const std::uint8_t *bytes, std::int32_t length, std::int32_t &at) noexcept
{
    double sum = 0.0;
    for (; at < length && is_digit(bytes[at]); ++at) {
        sum = sum * 10.0;
        sum = sum + bytes[at];
        sum = sum - 48.0;
    }
    return sum;
}

inline double read_decimal(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    constexpr std::int32_t exact_digits = 15;
    const bool negative = length > 0 && bytes[0] == '-';
    const std::int32_t first = negative ? 1 : 0;
    const bool steps_are_known = rounds_to_nearest();
    std::int32_t at = first;
    auto sum = static_cast<double>(read_digits(bytes, length, at));
    if (at - first > exact_digits || !steps_are_known) {
        at = first;
        sum = read_whole(bytes, length, at);
    }
    if (at > first && at < length && bytes[at] == '.') {
        const std::int32_t point = at++;
        const std::int32_t last_known = steps_are_known ? known_places : 0;
        for (; at < length && is_digit(bytes[at]); ++at) {
            const int digit = bytes[at] - '0';
            const std::int32_t place = at - point;
            sum = sum +
                  (place <= last_known ? known_decimals.of[place][digit] : decimal(digit, place));
        }
    }
    return negative ? -sum : sum;
}

} // namespace qek::number
