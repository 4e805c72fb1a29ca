// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Finding the text between the blanks at both ends of a run of units.
//
// TAB, LF, CR and SPACE are blanks; VT, FF and everything from 0x80 up are text. The two ends are
// not alike, and that is intended: a zero unit met from the front ends the whole matter, since what
// lies behind a terminator is no text; met from the back it is one more blank. The unit at `begin`
// is never looked at from the back, so that a run of blanks only leaves `first` behind `last`.
#pragma once

#include <cstdint>

namespace qek {

struct text_between_blanks {
    std::int32_t first;
    std::int32_t last;
    bool met_terminator;

    bool is_nothing() const noexcept { return first > last; }
};

template <typename Unit> constexpr bool is_blank(Unit unit) noexcept
{
    return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
}

template <typename Unit>
text_between_blanks find_text(const Unit *units, std::int32_t begin, std::int32_t end) noexcept
{
    if (end <= begin) {
        return {1, 0, false};
    }
    std::int32_t first = begin;
    while (first < end && is_blank(units[first])) {
        ++first;
    }
    if (first < end && units[first] == 0) {
        return {first, first, true};
    }
    std::int32_t last = end - 1;
    while (last > begin && (is_blank(units[last]) || units[last] == 0)) {
        --last;
    }
    return {first, last, false};
}

} // namespace qek
