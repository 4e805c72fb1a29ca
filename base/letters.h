// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Mapping the letters of 8-bit text by the runtime's routines, in its current locale. A byte
// reaches them with its sign, and the low 8 bits of what they answer count.
//
// A map is asked for once and used for a whole text: where the runtime keeps a table, it is fetched
// then, so that the locale still rules. A third of the time of a call for each byte.
#pragma once

#include <cctype>
#include <cstdint>

namespace qek::text {

#if defined(__GLIBC__)

// From -128 to 255.
class lower_case {
  public:
    int of(int ch) const noexcept { return table_[ch]; }

  private:
    const __int32_t *table_ = *__ctype_tolower_loc();
};

class upper_case {
  public:
    int of(int ch) const noexcept { return table_[ch]; }

  private:
    const __int32_t *table_ = *__ctype_toupper_loc();
};

#else

struct lower_case {
    static int of(int ch) noexcept { return std::tolower(ch); }
};

struct upper_case {
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

template <typename Unit, typename Map>
void map_units(Unit *units, std::int32_t length, Map map) noexcept
{
    for (std::int32_t at = 0; at < length; ++at) {
        units[at] = map(units[at]);
    }
}

} // namespace qek::text
