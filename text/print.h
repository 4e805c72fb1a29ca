// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Numbers as text, as the runtime's formatter writes them: "%ld", its 64-bit decimal, and "%f".
//
// Integers are written two digits at a time: a third of the formatter's time. "%f" is done here
// where it can be done exactly: below 2^63 in size, the integer part is a shift of the mantissa,
// and the six decimals are a product of 128 bits, rounded half to even as the formatter does it. A
// seventh of the time. All else is the formatter's: larger numbers, those that are none, another
// decimal point, another rounding direction, and any runtime but the one whose rounding is known.
//
// `printed` holds one number, long enough for every double: 309 digits, a sign, the runtime's
// decimal point, six decimals.
#pragma once

#include "base/platform.h"
#include "base/rounding.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <type_traits>

namespace qek::number {

struct digit_pairs {
    char of[100][2];
};

constexpr digit_pairs make_digit_pairs() noexcept
{
    digit_pairs pairs{};
    for (int pair = 0; pair < 100; ++pair) {
        pairs.of[pair][0] = static_cast<char>('0' + pair / 10);
        pairs.of[pair][1] = static_cast<char>('0' + pair % 10);
    }
    return pairs;
}

inline constexpr digit_pairs two_digits = make_digit_pairs();

class printed {
  public:
    explicit printed(std::int32_t value) noexcept { write_signed(value); }
    explicit printed(std::int64_t value) noexcept { write_signed(value); }
    explicit printed(float value) noexcept : printed(static_cast<double>(value)) {}
    explicit printed(double value) noexcept
    {
        if (!write_exactly(value)) {
            from_ = 0;
            end_ = std::snprintf(text_, sizeof text_, "%f", value);
        }
    }

    const std::uint8_t *text() const noexcept
    {
        return reinterpret_cast<const std::uint8_t *>(text_) + from_;
    }
    std::int32_t length() const noexcept { return end_ - from_; }

  private:
    static constexpr std::int32_t size = 352;

    void put(char ch) noexcept { text_[--from_] = ch; }

    void put_pair(std::uint32_t pair) noexcept
    {
        from_ -= 2;
        std::memcpy(text_ + from_, two_digits.of[pair], 2);
    }

    // From the last digit to the first.
    template <typename Number> void put_digits(Number number) noexcept
    {
        for (; number >= 100; number /= 100) {
            put_pair(static_cast<std::uint32_t>(number % 100));
        }
        if (number >= 10) {
            put_pair(static_cast<std::uint32_t>(number));
        } else {
            put(static_cast<char>('0' + number));
        }
    }

    template <typename Number> void write_signed(Number value) noexcept
    {
        const auto bits = static_cast<std::make_unsigned_t<Number>>(value);
        put_digits(value < 0 ? 0 - bits : bits);
        if (value < 0) {
            put('-');
        }
    }

#if defined(__SIZEOF_INT128__) && defined(__GLIBC__)
    bool write_exactly(double value) noexcept
    {
        __extension__ using wide_product = unsigned __int128;
        constexpr std::uint32_t unit = 1000000;
        constexpr int too_small = 100; // to show in six decimals, for a mantissa shifted so far
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const auto exponent = static_cast<int>(bits >> 52 & 0x7FF);
        if (!platform::is_point_a_dot()) { // GCOVR_EXCL_BR_LINE: the same
            return false; // GCOVR_EXCL_LINE: where tests run, no locale has another point
        }
        if (exponent >= 1023 + 63 || !rounds_to_nearest()) {
            return false;
        }
        const bool is_normal = exponent != 0;
        const std::uint64_t mantissa =
            (bits & ((std::uint64_t{1} << 52) - 1)) | std::uint64_t{is_normal} << 52;
        const int down = 1075 - (is_normal ? exponent : 1);
        std::uint64_t whole = 0;
        std::uint32_t decimals = 0;
        if (down <= 0) {
            whole = mantissa << -down;
        } else if (down < too_small) {
            whole = down < 64 ? mantissa >> down : 0;
            const std::uint64_t rest = down < 64 ? mantissa - (whole << down) : mantissa;
            const wide_product product = wide_product{rest} * unit;
            const wide_product half = wide_product{1} << (down - 1);
            decimals = static_cast<std::uint32_t>(product >> down);
            const wide_product lost = product - (wide_product{decimals} << down);
            decimals += lost > half || (lost == half && decimals % 2 != 0) ? 1 : 0;
            whole += decimals == unit ? 1 : 0;
            decimals = decimals == unit ? 0 : decimals;
        }
        put_pair(decimals % 100);
        put_pair(decimals / 100 % 100);
        put_pair(decimals / 10000);
        put('.');
        put_digits(whole);
        if (bits >> 63 != 0) {
            put('-');
        }
        return true;
    }
#else
    static bool write_exactly(double) noexcept { return false; }
#endif

    char text_[size];
    std::int32_t from_ = size;
    std::int32_t end_ = size;
};

} // namespace qek::number
