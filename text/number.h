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
// of the first places are worked out by the compiler. A quarter of the time of strtod.
#pragma once

#include "base/bytes.h"
#include "base/rounding.h"
#include "text/tens.h"

#include <bit>
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

// Of eight bytes less '0', the first one lowest: the top bits of those that are no digits.
constexpr std::uint64_t other_than_digits(std::uint64_t bytes) noexcept
{
    constexpr std::uint64_t lower_bits = 0x7F7F7F7F7F7F7F7F;
    return (((bytes & lower_bits) + 0x7676767676767676) | bytes) & ~lower_bits;
}

// The value of eight digits: neighbours are joined to pairs, pairs to fours, fours to the eight.
constexpr std::uint64_t value_of_eight(std::uint64_t digits) noexcept
{
    digits = digits * 10 + (digits >> 8);
    return ((digits & 0x000000FF000000FF) * (100 + (std::uint64_t{1000000} << 32)) +
            (digits >> 16 & 0x000000FF000000FF) * (1 + (std::uint64_t{10000} << 32))) >>
           32;
}

// Eight bytes from `at` on, and zeros behind the end.
inline std::uint64_t load_to_end(const std::uint8_t *bytes, std::int32_t length,
                                 std::int32_t at) noexcept
{
    constexpr std::int32_t word = 8;
    const std::int32_t left = length - at;
    if (left >= word) {
        return load_low_first<std::uint64_t>(bytes + at);
    }
    if (length >= word) {
        return without_first(load_low_first<std::uint64_t>(bytes + length - word), word - left);
    }
    return left > 0 ? load_few(bytes + at, left) : 0;
}

struct digit_run {
    std::uint64_t value;
    std::int32_t end;
};

// The run goes on with the first bytes of `digits`, up to the first one of `others`. How many they
// are is no branch, since no processor could guess it.
inline digit_run with_last_word(digit_run run, std::uint64_t digits, std::uint64_t others) noexcept
{
    const int count = std::countr_zero(others) / 8;
    const int half = 4 * (8 - count);
    return {run.value * tens.of[count] + value_of_eight(digits << half << half), run.end + count};
}

constexpr std::uint64_t eight_zeros = 0x3030303030303030;

[[gnu::noinline]] inline digit_run read_many_digits(const std::uint8_t *bytes, std::int32_t length,
                                                    std::int32_t at) noexcept
{
    digit_run run{0, at};
    for (;;) {
        const std::uint64_t digits = load_to_end(bytes, length, run.end) ^ eight_zeros;
        const std::uint64_t others = other_than_digits(digits);
        if (others != 0) {
            return with_last_word(run, digits, others);
        }
        run = {run.value * tens.of[8] + value_of_eight(digits), run.end + 8};
    }
}

// The run of digits from `at` on. Wraps silently beyond 64 bits. Less than eight, and not at the
// end, are most: they are read without a call.
inline digit_run read_digits(const std::uint8_t *bytes, std::int32_t length,
                             std::int32_t at) noexcept
{
    if (length - at >= 8) {
        const std::uint64_t digits = load_low_first<std::uint64_t>(bytes + at) ^ eight_zeros;
        const std::uint64_t others = other_than_digits(digits);
        if (others != 0) {
            return with_last_word({0, at}, digits, others);
        }
    }
    return read_many_digits(bytes, length, at);
}

inline std::int64_t read_integer(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    const bool negative = length > 0 && bytes[0] == '-';
    const std::uint64_t value = read_digits(bytes, length, negative ? 1 : 0).value;
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

// Without a branch, as signs come as they like.
inline double with_sign(double number, bool negative) noexcept
{
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(number) ^ std::uint64_t{negative}
                                                                            << 63);
}

inline double read_decimal(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    constexpr std::int32_t exact_digits = 15;
    const bool negative = length > 0 && bytes[0] == '-';
    const std::int32_t first = negative ? 1 : 0;
    const bool steps_are_known = rounds_to_nearest();
    const digit_run whole = read_digits(bytes, length, first);
    std::int32_t at = whole.end;
    auto sum = static_cast<double>(static_cast<std::int64_t>(whole.value));
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
    return with_sign(sum, negative);
}

} // namespace qek::number
