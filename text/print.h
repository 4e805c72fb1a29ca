// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Numbers as text, as the runtime's formatter writes them: "%ld", its 64-bit decimal, and "%f".
//
// The length is known before the text is, so that the text is written where it is to stand. Eight
// digits are made at once in one word, and words are stored whole, one over the end of the other: a
// fifth of the formatter's time. "%f" is done here where it can be done exactly: below 2^63 in size,
// the integer part is a shift of the mantissa, and the six decimals are a product of 128 bits,
// rounded half to even as the formatter does it. A fifteenth of the time. All else is the
// formatter's: larger numbers, those that are none, another decimal point, another rounding
// direction, and any runtime but the one whose rounding is known.
#pragma once

#include "base/bytes.h"
#include "base/platform.h"
#include "base/rounding.h"
#include "text/tens.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace qek::number {

// Every double has room: 309 digits, a sign, the runtime's decimal point, six decimals.
inline constexpr std::int32_t longest_text = 352;

// The digits of a number below 10^8 as text, the first one lowest. The number is cut into fours,
// these into pairs and these into digits, all in one word; the divisions are products, exact for
// numbers as small as these.
constexpr std::uint64_t eight_digits(std::uint64_t number) noexcept
{
    constexpr std::uint64_t pairs = 0x0000007F0000007F;
    constexpr std::uint64_t digits = 0x000F000F000F000F;
    number = number / 10000 | number % 10000 << 32;
    const std::uint64_t hundreds = (number * 10486 >> 20) & pairs;
    number = hundreds | (number - hundreds * 100) << 16;
    const std::uint64_t upper = (number * 103 >> 10) & digits;
    number = upper | (number - upper * 10) << 8;
    return number | 0x3030303030303030;
}

constexpr std::int32_t count_digits(std::uint64_t number) noexcept
{
    const std::uint64_t at_least_one = number | 1; // passes no power of ten
    const auto width = static_cast<std::int32_t>(std::bit_width(at_least_one));
    const std::int32_t least = width * 1233 >> 12; // the width times log 2
    return least + (at_least_one >= tens.of[least] ? 1 : 0);
}

// Writes the last `count` digits, up to 24. At least eight bytes may be written to, whatever the
// count; those behind the digits become zero.
[[gnu::noinline]] inline void put_digits(std::uint8_t *to, std::uint64_t number,
                                         std::int32_t count) noexcept
{
    if (count > 8) {
        std::uint64_t front = number / tens.of[8];
        if (count > 16) {
            const std::uint64_t middle = front % tens.of[8];
            front /= tens.of[8];
            store_low_first(to, without_first(eight_digits(front), 24 - count));
            store_low_first(to + count - 16, eight_digits(middle));
        } else {
            store_low_first(to, without_first(eight_digits(front), 16 - count));
        }
        store_low_first(to + count - 8, eight_digits(number % tens.of[8]));
    } else {
        store_low_first(to, without_first(eight_digits(number), 8 - count));
    }
}

class integer_text {
  public:
    explicit integer_text(std::int64_t value) noexcept
        : negative_(value < 0 ? 1 : 0), number_(static_cast<std::uint64_t>(value))
    {
        number_ = negative_ != 0 ? 0 - number_ : number_;
        digits_ = count_digits(number_);
    }

    std::int32_t length() const noexcept { return negative_ + digits_; }

    // The text and a zero byte. What is behind them in the `room` bytes stays as it is: a text that
    // does not fill a word, and has one to go to, is written into the word that is there.
    void write(std::uint8_t *to, std::int64_t room) const noexcept
    {
        constexpr std::int32_t word = 8;
        if (length() >= word) {
            *to = '-';
            to[length()] = 0; // nothing behind them is written if these are eight digits
            put_digits(to + negative_, number_, digits_);
            return;
        }
        const std::uint64_t digits = without_first(eight_digits(number_), word - digits_);
        const std::uint64_t text = negative_ != 0 ? digits << 8 | '-' : digits;
        if (room >= word) {
            const std::uint64_t behind = ~std::uint64_t{0xFF} << (8 * length());
            store_low_first(to, (load_low_first<std::uint64_t>(to) & behind) | text);
        } else {
            for (std::int32_t at = 0; at <= length(); ++at) {
                to[at] = static_cast<std::uint8_t>(text >> (8 * at));
            }
        }
    }

  private:
    std::int32_t negative_;
    std::int32_t digits_;
    std::uint64_t number_;
};

class decimal_text {
  public:
    explicit decimal_text(double value) noexcept
    {
        if (!split_exactly(value)) {
            length_ = std::snprintf(formatted_, sizeof formatted_, "%f", value);
            digits_ = 0;
        }
    }

    std::int32_t length() const noexcept { return length_; }

    // The same. The point, the six decimals and the zero byte are a word.
    void write(std::uint8_t *to, std::int64_t) const noexcept
    {
        if (digits_ == 0) {
            std::memcpy(to, formatted_, static_cast<std::size_t>(length_) + 1);
            return;
        }
        const std::uint64_t end = (eight_digits(decimals_) >> 8 & ~std::uint64_t{0xFF}) | '.';
        *to = '-';
        to += length_ - digits_ - 7;
        put_digits(to, whole_, digits_);
        store_low_first(to + digits_, end);
    }

  private:
#if defined(__SIZEOF_INT128__) && defined(__GLIBC__)
    bool split_exactly(double value) noexcept
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
        } else if (down < 64) {
            // What is behind the point fills a word; its product has the decimals in the upper one.
            whole = mantissa >> down;
            const wide_product product = wide_product{mantissa << (64 - down)} * unit;
            const std::uint64_t is_odd = static_cast<std::uint64_t>(product >> 64) & 1U;
            const std::uint64_t below_half = ~std::uint64_t{0} >> 1;
            decimals = static_cast<std::uint32_t>((product + (below_half + is_odd)) >> 64);
            whole += decimals == unit ? 1 : 0;
            decimals = decimals == unit ? 0 : decimals;
        } else if (down < too_small) {
            // Nothing so small lies halfway: 64 divides the unit, so multiples of 1 / 128 alone do.
            const wide_product half = wide_product{1} << (down - 1);
            decimals = static_cast<std::uint32_t>((wide_product{mantissa} * unit + half) >> down);
        }
        whole_ = whole;
        decimals_ = decimals;
        digits_ = count_digits(whole);
        length_ = static_cast<std::int32_t>(bits >> 63) + digits_ + 7;
        return true;
    }
#else
    static bool split_exactly(double) noexcept { return false; }
#endif

    std::int32_t length_ = 0;
    std::int32_t digits_ = 0; // in front of the point; 0 where the text is the formatter's
    std::uint64_t whole_ = 0;
    std::uint32_t decimals_ = 0;
    char formatted_[longest_text];
};

} // namespace qek::number
