// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Mapping the letters of 8-bit text by the runtime's routines, in its current locale. A byte
// reaches them with its sign, and the low 8 bits of what they answer count.
//
// A map is asked for once and used for a whole text: where the runtime keeps a table, it is fetched
// then, so that the locale still rules. A third of the time of a call for each byte.
#pragma once

#include "base/scan.h"

#include <cctype>
#include <cstdint>

namespace qek::text {

#if defined(__GLIBC__)

// From -128 to 255.
struct lower_case {
    static constexpr std::uint8_t first_to_turn = 'A';
    int of(int ch) const noexcept { return table[ch]; }

    const __int32_t *table = *__ctype_tolower_loc();
};

struct upper_case {
    static constexpr std::uint8_t first_to_turn = 'a';
    int of(int ch) const noexcept { return table[ch]; }

    const __int32_t *table = *__ctype_toupper_loc();
};

#else

struct lower_case {
    static constexpr std::uint8_t first_to_turn = 'A';
    static int of(int ch) noexcept { return std::tolower(ch); }
};

struct upper_case {
    static constexpr std::uint8_t first_to_turn = 'a';
    static int of(int ch) noexcept { return std::toupper(ch); }
};

#endif

template <typename Case> struct byte_map {
    Case letters{};

    std::uint8_t operator()(std::uint8_t ch) const noexcept
    {
        return static_cast<std::uint8_t>(letters.of(static_cast<std::int8_t>(ch)));
    }
};

// 16-bit units above 255 are never mapped.
template <typename Case> struct unit_map {
    Case letters{};

    std::uint16_t operator()(std::uint16_t unit) const noexcept
    {
        return unit > 0xFF ? unit : static_cast<std::uint16_t>(letters.of(unit));
    }
};

#if defined(__GLIBC__)

// Whether the locale maps all bytes as ASCII does: a look at the whole table, for the time that some
// fifty letters take.
template <typename Case> bool is_plain(const byte_map<Case> &map) noexcept
{
    return scan::turns_plain_letters(map.letters.table, Case::first_to_turn);
}

constexpr std::int32_t least_to_ask = 64;

#else

template <typename Case> bool is_plain(const byte_map<Case> &map) noexcept
{
    int different = 0;
    for (int byte = 0; byte <= 0xFF; ++byte) {
        const bool turns = byte >= Case::first_to_turn && byte < Case::first_to_turn + 26;
        different |= map(static_cast<std::uint8_t>(byte)) ^ byte ^ (turns ? 'a' - 'A' : 0);
    }
    return different == 0;
}

constexpr std::int32_t least_to_ask = 2048; // beside which looking at each letter is nothing

#endif

template <typename Case>
[[gnu::noinline]] void map_units(std::uint8_t *units, std::int32_t length,
                                 byte_map<Case> map) noexcept
{
    std::int64_t at = 0;
    if constexpr (scan::is_there) {
        // GCOVR_EXCL_BR_START: always, in the locale of tests
        if (length >= least_to_ask && is_plain(map)) {
            at = scan::best().turn_case(Case::first_to_turn, units, length);
        }
        // GCOVR_EXCL_BR_STOP
    }
    for (; at < length; ++at) {
        units[at] = map(units[at]);
    }
}

template <typename Case>
void map_units(std::uint16_t *units, std::int32_t length, unit_map<Case> map) noexcept
{
    for (std::int32_t at = 0; at < length; ++at) {
        units[at] = map(units[at]);
    }
}

} // namespace qek::text
