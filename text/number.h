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
#pragma once

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

// Wraps silently beyond 64 bits.
inline std::int64_t read_integer(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    std::int32_t at = 0;
    const bool negative = length > 0 && bytes[0] == '-';
    if (negative) {
        ++at;
    }
    std::uint64_t value = 0;
    for (; at < length && is_digit(bytes[at]); ++at) {
        value = value * 10 + (bytes[at] - std::uint64_t{'0'});
    }
    return static_cast<std::int64_t>(negative ? 0 - value : value);
}

// The digit at decimal place `place`. Once a chain has come down to zero it stays there.
inline double decimal(std::uint8_t digit, std::int32_t place) noexcept
{
    double term = digit - '0';
    for (std::int32_t step = 0; step < place && term != 0; ++step) {
        term *= 0.1;
    }
    return term;
}

inline double read_decimal(const std::uint8_t *bytes, std::int32_t length) noexcept
{
    std::int32_t at = 0;
    const bool negative = length > 0 && bytes[0] == '-';
    if (negative) {
        ++at;
    }
    const std::int32_t first = at;
    double sum = 0.0;
    for (; at < length && is_digit(bytes[at]); ++at) {
        sum = sum * 10.0;
        sum = sum + bytes[at];
        sum = sum - 48.0;
    }
    if (at > first && at < length && bytes[at] == '.') {
        const std::int32_t point = at++;
        for (; at < length && is_digit(bytes[at]); ++at) {
            sum = sum + decimal(bytes[at], at - point);
        }
    }
    return negative ? -sum : sum;
}

} // namespace qek::number
