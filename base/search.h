// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Comparing and searching text that is not changed: the part that owned texts and views share.
//
// A `span` is what all of them look at: a run of units, empty when it has no data or no length.
// `compare` ranks an absent text lowest and an empty one next, and only then asks the order of
// units. The unit 0 cannot be searched for by itself.
#pragma once

#include "base/units.h"

#include <cstdint>
#include <type_traits>

namespace qek::text {

template <typename Unit> struct span {
    const Unit *data;
    std::int32_t length;

    bool is_empty() const noexcept { return data == nullptr || length == 0; }
};

// The span of any record with `data` and `length`.
template <typename Record> auto span_of(const Record &record) noexcept
{
    using unit = std::remove_pointer_t<decltype(Record::data)>;
    return span<unit>{record.data, record.length};
}

template <typename Unit, typename Order>
std::int32_t compare_by(span<Unit> left, const Unit *text, std::int32_t length,
                        Order order) noexcept
{
    if (text == nullptr || length == 0) {
        return static_cast<std::int32_t>(!left.is_empty());
    }
    const std::int32_t size = measured(text, length);
    if (left.is_empty()) {
        return size > 0 ? -1 : 0;
    }
    return order(left.data, left.length, text, size);
}

template <typename Unit>
std::int32_t compare(span<Unit> left, const Unit *text, std::int32_t length) noexcept
{
    return compare_by(left, text, length, [](auto... runs) { return order_units(runs...); });
}

template <typename Unit>
std::int32_t compare_ignoring_case(span<Unit> left, const Unit *text, std::int32_t length) noexcept
{
    return compare_by(left, text, length,
                      [](auto... runs) { return order_units_ignoring_case(runs...); });
}

constexpr std::int32_t counted_from(std::int32_t start, std::int32_t hit) noexcept
{
    return hit < 0 ? -1 : hit + start;
}

template <typename Unit> bool is_place_in(span<Unit> in, std::int32_t start) noexcept
{
    return !in.is_empty() && start >= 0 && start < in.length;
}

template <typename Unit> span<Unit> rest_of(span<Unit> in, std::int32_t start) noexcept
{
    return {in.data + start, wrapping_difference(in.length, start)};
}

template <typename Unit>
std::int32_t find_unit_from(span<Unit> in, Unit unit, std::int32_t start) noexcept
{
    const span<Unit> rest = rest_of(in, start);
    return unit == 0 ? -1 : counted_from(start, find_unit(rest.data, rest.length, unit));
}

template <typename Unit> std::int32_t find_last(span<Unit> in, Unit unit) noexcept
{
    return in.is_empty() || unit == 0 ? -1 : find_last_unit(in.data, in.length, unit);
}

// A negative length is measured; zero units in the span stop nothing.
template <typename Unit>
std::int32_t find_text_from(span<Unit> in, const Unit *text, std::int32_t length,
                            std::int32_t start) noexcept
{
    const span<Unit> rest = rest_of(in, start);
    return counted_from(start, find_units(rest.data, rest.length, text, measured(text, length)));
}

// The two for records whose searches start at a place in them, or find nothing.
template <typename Unit>
std::int32_t find_unit_in(span<Unit> in, Unit unit, std::int32_t start) noexcept
{
    return is_place_in(in, start) ? find_unit_from(in, unit, start) : -1;
}

template <typename Unit>
std::int32_t find_text_in(span<Unit> in, const Unit *text, std::int32_t length,
                          std::int32_t start) noexcept
{
    return text != nullptr && is_place_in(in, start) ? find_text_from(in, text, length, start) : -1;
}

// For owned texts a negative length asks for another search, and not only for measuring: the one
// for terminated text, which a zero unit stops. That is intended.
template <typename Unit>
std::int32_t find_in_owned(span<Unit> in, const Unit *text, std::int32_t length,
                           std::int32_t start) noexcept
{
    if (length >= 0 || text == nullptr || !is_place_in(in, start)) {
        return find_text_in(in, text, length, start);
    }
    return counted_from(start, find_terminated(in.data + start, text));
}

} // namespace qek::text
