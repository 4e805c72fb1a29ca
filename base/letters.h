// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Mapping the letters of 8-bit text by the runtime's routines, in its current locale. A byte
// reaches them with its sign, and the low 8 bits of what they answer count.
#pragma once

#include <cctype>
#include <cstdint>

namespace qek::text {

inline std::uint8_t lowered(std::uint8_t ch) noexcept
{
    return static_cast<std::uint8_t>(std::tolower(static_cast<std::int8_t>(ch)));
}

inline std::uint8_t raised(std::uint8_t ch) noexcept
{
    return static_cast<std::uint8_t>(std::toupper(static_cast<std::int8_t>(ch)));
}

template <typename Unit, typename Map>
void map_units(Unit *units, std::int32_t length, Map map) noexcept
{
    for (std::int32_t at = 0; at < length; ++at) {
        units[at] = map(units[at]);
    }
}

} // namespace qek::text
