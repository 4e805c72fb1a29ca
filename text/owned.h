// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Editing that is text and not only a buffer: the core of the owned texts.
//
// It stands on stream/buffer.h, which does all that lengths and positions decide, and adds what
// looks at the units: trimming, single units, building a text anew. A form is that of
// stream/buffer.h.
#pragma once

#include "base/blanks.h"
#include "base/search.h"
#include "stream/buffer.h"

#include <cstdint>

namespace qek::text {

template <buffer::form Form> bool trim(typename Form::record &text) noexcept
{
    if (buffer::is_empty(text)) {
        return false;
    }
    const text_between_blanks kept = find_text(text.data, 0, text.length);
    if (kept.is_nothing()) {
        buffer::shrink<Form>(text, 0);
        return true;
    }
    if (kept.length == text.length) {
        return false;
    }
    buffer::keep<Form>(text, static_cast<std::int32_t>(kept.first),
                       static_cast<std::int32_t>(kept.length));
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

// Apart, so that a unit that has room is stored without the registers that this takes.
template <buffer::form Form>
[[gnu::noinline]] void append_unit_growing(typename Form::record &text,
                                           typename Form::unit unit) noexcept
{
    buffer::append<Form>(text, &unit, 1);
}

template <buffer::form Form>
void append_unit(typename Form::record &text, typename Form::unit unit) noexcept
{
    const std::int32_t length = text.length;
    if (length >= text.capacity) {
        append_unit_growing<Form>(text, unit);
    } else {
        text.data[length] = unit;
        Form::close(text, length + 1);
    }
}

template <buffer::form Form>
std::int32_t replace_unit(typename Form::record &text, typename Form::unit old_unit,
                          typename Form::unit new_unit) noexcept
{
    std::int32_t replaced = 0;
    for (std::int32_t at = 0; !buffer::is_empty(text) && at < text.length; ++at) {
        if (text.data[at] == old_unit) {
            text.data[at] = new_unit;
            ++replaced;
        }
    }
    return replaced;
}

// A text that is built beside another one and takes its place, so that what it is built from may
// lie in the other: the old buffer goes last. Nothing is taken over unless there was room to start.
template <buffer::form Form> class rebuilding {
  public:
    explicit rebuilding(typename Form::record &text, std::int64_t room) noexcept
        : text_(text), has_room_(buffer::expand<Form>(fresh_, room))
    {
    }
    ~rebuilding()
    {
        if (has_room_) {
            buffer::swap(text_, fresh_);
        }
        buffer::release(fresh_);
    }
    rebuilding(const rebuilding &) = delete;
    rebuilding &operator=(const rebuilding &) = delete;

    bool has_room() const noexcept { return has_room_; }
    typename Form::record &fresh() noexcept { return fresh_; }

    // The old text from where this left off up to `end`, then `inserted` in place of `skipped`
    // units.
    void carry_over(std::int32_t end, span<typename Form::unit> inserted,
                    std::int32_t skipped) noexcept
    {
        append_old(end);
        buffer::append<Form>(fresh_, inserted.data, inserted.length);
        done_ = end + skipped;
    }
    void carry_over_rest() noexcept { append_old(text_.length); }
    std::int32_t done() const noexcept { return done_; }

  private:
    void append_old(std::int32_t end) noexcept
    {
        if (end > done_) {
            buffer::append<Form>(fresh_, text_.data + done_, end - done_);
        }
    }

    typename Form::record &text_;
    typename Form::record fresh_{};
    std::int32_t done_ = 0;
    bool has_room_;
};

// `next(inserted)` runs on each hit and says what the hit gives way to, whose length is measured if
// it is negative; false ends the matter, with this hit and the rest of the text as they were. The
// result is the number of hits that gave way.
//
// An empty `find` is found again at the same place each time: the caller's error, and no way out.
template <buffer::form Form, typename Next>
std::int32_t substitute(typename Form::record &text, const typename Form::unit *find,
                        Next next) noexcept
{
    rebuilding<Form> result(text, text.length);
    if (!result.has_room()) {
        return 0;
    }
    // The search is one for terminated text, whose end is looked for once.
    const std::int32_t skipped = measured(find, -1);
    const span<typename Form::unit> searched = {text.data, measured(text.data, -1)};
    const auto find_next = [&] {
        if (!is_place_in(span_of(text), result.done())) {
            return -1; // also where the text has lost its end and goes on
        }
        return skipped == 0 ? find_in_owned(span_of(text), find, -1, result.done())
                            : find_text_in(searched, find, skipped, result.done());
    };
    std::int32_t count = 0;
    span<typename Form::unit> inserted{nullptr, -1};
    for (std::int32_t hit = find_next(); hit >= 0 && next(inserted); hit = find_next()) {
        ++count;
        result.carry_over(hit, inserted, skipped);
    }
    result.carry_over_rest();
    return count;
}

template <buffer::form Form>
std::int32_t replace(typename Form::record &text, const typename Form::unit *find,
                     const typename Form::unit *replacement) noexcept
{
    return substitute<Form>(text, find, [=](span<typename Form::unit> &inserted) {
        inserted = {replacement, measured(replacement, inserted.length)};
        return true;
    });
}

} // namespace qek::text
