// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Walking a format and its arguments to tell beforehand how much room the result gets.
//
// The estimate is the length of the format, plus the length of the text for every `%s` and `%S`,
// plus 32 for every other percent sign. It looks at the one character behind the sign and at
// nothing else: flags, widths and precisions count as any other character, and the second sign of
// `%%` counts again. The estimate is interface, because it fixes the capacity of the result.
//
// The arguments have to be stepped over all the same, each by its own type, so that a later `%s`
// reads its own text. A conversion that is not known ends that: nothing behind it is read any more,
// and texts behind it get 32 like anything else.
#pragma once

#include "base/bytes.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qek::text {

class format_estimate {
  public:
    static constexpr std::int64_t room_for_other = 32;

    // `arguments` is used up.
    format_estimate(const char *format, std::va_list &arguments) noexcept
        : room_(text_length(format))
    {
        for (const char *at = std::strchr(format, '%'); at != nullptr && at[1] != 0;
             at = std::strchr(at + 1, '%')) {
            count(at + 1, arguments);
        }
    }

    std::int64_t room() const noexcept { return room_; }

  private:
    enum class width {
        plain,
        wide,
        widest,
        size
    };

    void count(const char *conversion, std::va_list &arguments) noexcept
    {
        const bool is_text = *conversion == 's' || *conversion == 'S';
        const bool is_second_sign = conversion < literal_end_;
        if (is_text && follows_ && !is_second_sign) {
            room_ += text_length(va_arg(arguments, const char *));
            return;
        }
        room_ += room_for_other;
        if (is_second_sign) {
            return;
        }
        if (*conversion == '%') {
            literal_end_ = conversion + 2;
        } else if (follows_) {
            follows_ = step_over(conversion, arguments);
        }
    }

    static bool is_one_of(char ch, const char *set) noexcept
    {
        return ch != 0 && std::strchr(set, ch) != nullptr;
    }

    static const char *skip_number(const char *at, std::va_list &arguments) noexcept
    {
        if (*at == '*') {
            static_cast<void>(va_arg(arguments, int));
            return at + 1;
        }
        while (is_one_of(*at, "0123456789")) {
            ++at;
        }
        return at;
    }

    static width width_of(const char *&at) noexcept
    {
        width found = width::plain;
        for (; is_one_of(*at, "hlLqjzt"); ++at) {
            if (*at == 'l') {
                found = found == width::wide ? width::widest : width::wide;
            } else if (*at != 'h') {
                found = is_one_of(*at, "zt") ? width::size : width::widest;
            }
        }
        return found;
    }

    // False for a conversion that is not known.
    static bool step_over(const char *at, std::va_list &arguments) noexcept
    {
        while (is_one_of(*at, "-+ #0'I")) {
            ++at;
        }
        at = skip_number(at, arguments);
        if (*at == '.') {
            at = skip_number(at + 1, arguments);
        }
        const width size = width_of(at);
        if (is_one_of(*at, "diouxXcCbB")) {
            step_over_integer(size, arguments);
        } else if (is_one_of(*at, "aAeEfFgG")) {
            step_over_decimal(size, arguments);
        } else if (is_one_of(*at, "pnsS")) {
            static_cast<void>(va_arg(arguments, void *));
        } else {
            return is_one_of(*at, "%m"); // these take no argument
        }
        return true;
    }

    static void step_over_integer(width size, std::va_list &arguments) noexcept
    {
        if (size == width::widest) {
            static_cast<void>(va_arg(arguments, long long));
        } else if (size == width::wide) {
            static_cast<void>(va_arg(arguments, long));
        } else if (size == width::size) {
            static_cast<void>(va_arg(arguments, std::size_t));
        } else {
            static_cast<void>(va_arg(arguments, int));
        }
    }

    static void step_over_decimal(width size, std::va_list &arguments) noexcept
    {
        if (size == width::widest) {
            static_cast<void>(va_arg(arguments, long double));
        } else {
            static_cast<void>(va_arg(arguments, double));
        }
    }

    std::int64_t room_;
    const char *literal_end_ = nullptr;
    bool follows_ = true;
};

} // namespace qek::text
