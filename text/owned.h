// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Editing that is text and not only a buffer: the core of the owned texts.
//
// It stands on stream/buffer.h, which does all that lengths and positions decide, and adds what looks
// at the units: trimming, mapping of letters, single units. A form is that of stream/buffer.h.
//
// Letters are mapped by the runtime's byte routines in its current locale. `widen` says how a unit
// reaches them.
#pragma once

#include "base/blanks.h"
#include "stream/buffer.h"

#include <cstdint>

namespace qek::text {

template <buffer::form Form> bool trim(typename Form::record &text) noexcept
{
    if (buffer::is_empty(text)) {
        return false;
    }
    const text_between_blanks kept = find_text(text.data, 0, text.length);
    if (kept.met_terminator || kept.is_nothing()) {
        buffer::shrink<Form>(text, 0);
        return true;
    }
    const std::int32_t length = kept.last - kept.first + 1;
    if (length == text.length) {
        return false;
    }
    buffer::keep<Form>(text, kept.first, length);
    return true;
}

// A run that meets or passes the end cuts the text at `position`.
template <buffer::form Form>
void remove(typename Form::record &text, std::int32_t position, std::int32_t count) noexcept
{
    const std::int64_t end = wide(position) + count;
    if (end >= text.length) {
        buffer::shrink<Form>(text, position);
    } else {
        buffer::remove<Form>(text, position, end);
    }
}

// The unit 0 empties the text here, and is a unit like any other in `append_unit`: intended.
template <buffer::form Form>
void copy_unit(typename Form::record &text, typename Form::unit unit) noexcept
{
    if (unit == 0) {
        buffer::shrink<Form>(text, 0);
    } else {
        buffer::assign<Form>(text, &unit, 1);
    }
}

template <buffer::form Form>
void append_unit(typename Form::record &text, typename Form::unit unit) noexcept
{
    buffer::append<Form>(text, &unit, 1);
}

template <typename Record, typename Map> void map_units(Record &text, Map map) noexcept
{
    if (buffer::is_empty(text)) {
        return;
    }
    for (std::int32_t at = 0; at < text.length; ++at) {
        text.data[at] = map(text.data[at]);
    }
}

} // namespace qek::text
