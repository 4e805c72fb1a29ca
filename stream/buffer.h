// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The growable buffer: one core for streams, strings and wide strings.
//
// Shape. A record is { data, length, capacity }, all counted in units of the family:
//
//     data --> [ u0 u1 u2 ... | bytes left behind by shortening, or zero | z ]
//              0              length                              capacity
//
// 0 <= length <= capacity; data is null exactly when capacity is 0. `z` is the spare unit that a
// terminated form keeps behind its capacity: a string has one, a stream has none. Everything behind
// what was ever written is zero, because growth zeroes what it adds; shortening clears nothing, so
// old units stay readable up to the capacity and come back when the length is raised again.
//
// A form says what makes a family: its record and unit, the spare unit, the rounding of a capacity,
// how far an overwrite may go, and how a length is stored (`close`: a terminated form writes its
// terminator there). All editing is written once over that. Every operation grows before it moves a
// unit, so that a failed growth leaves the record bit for bit as it was.
//
// Cost. Appending is amortised constant up to the bound on a step, then linear per step of 8 Mi
// units; editing is one move of the tail. Nothing is ever resized in place and nothing but
// `release` gives memory back.
//
// Numbers from callers are used as they come, but what they would make an operation do outside of
// the buffer is not done: the bounds below are there for memory, not for messages.
//
// Turned down: a common base record with virtual rounding (a call per growth, and records are plain
// C), and deriving the string from the stream by re-terminating after each stream call (growth
// would have to be split from rounding anyway).
#pragma once

#include "base/arith.h"
#include "base/bytes.h"
#include "base/growth.h"
#include "base/heap.h"
#include "base/units.h"
#include "qek_std.h"

#include <concepts>
#include <cstdint>

namespace qek::buffer {

template <typename Form>
concept form = requires(typename Form::record &record, std::int32_t length)
{
    typename Form::unit;
    {
        Form::spare_units
        } -> std::convertible_to<std::int32_t>;
    {
        Form::rounded(std::int64_t{})
        } -> std::same_as<std::int64_t>;
    {
        Form::overwrite_end(record)
        } -> std::same_as<std::int32_t>;
    Form::close(record, length);
};

struct stream_form {
    using record = qek_stream;
    using unit = std::uint8_t;
    static constexpr std::int32_t spare_units = 0;
    static constexpr std::int64_t rounded(std::int64_t units) noexcept
    {
        return rounded_up(units, 8);
    }
    static std::int32_t overwrite_end(const record &stream) noexcept { return stream.length; }
    static void close(record &stream, std::int32_t length) noexcept { stream.length = length; }
};

template <typename Record, typename Unit> struct terminated_form {
    using record = Record;
    using unit = Unit;
    static constexpr std::int32_t spare_units = 1;
    static constexpr std::int64_t rounded(std::int64_t units) noexcept
    {
        return rounded_to_terminated(units);
    }
    static std::int32_t overwrite_end(const record &text) noexcept { return text.capacity; }
    static void close(record &text, std::int32_t length) noexcept
    {
        text.length = length;
        text.data[length] = 0;
    }
};

using string_form = terminated_form<qek_string, std::uint8_t>;

template <typename Record> bool is_empty(const Record &record) noexcept
{
    return record.data == nullptr || record.length == 0;
}

template <typename Record> void reset(Record &record) noexcept { record = Record{}; }

template <typename Record> void release(Record &record) noexcept
{
    give_block(record.data);
    reset(record);
}

template <typename First, typename Second> void swap(First &first, Second &second) noexcept
{
    const First kept = first;
    first = {second.data, second.length, second.capacity};
    second = {kept.data, kept.length, kept.capacity};
}

template <form Form>
[[gnu::noinline]] bool grow(typename Form::record &record, std::int64_t wanted) noexcept
{
    const std::int64_t capacity =
        Form::rounded(grown(record.length, record.capacity, wanted, buffer_steps));
    if (!is_capacity(capacity)) {
        return false;
    }
    auto *fresh = regrown_units(record.data, record.capacity, capacity + Form::spare_units);
    if (fresh == nullptr) {
        return false;
    }
    record.data = fresh;
    record.capacity = static_cast<std::int32_t>(capacity);
    return true;
}

template <form Form> bool expand(typename Form::record &record, std::int64_t wanted) noexcept
{
    return record.capacity >= wanted || grow<Form>(record, wanted);
}

// Sets the length, up or down, within the capacity. A negative length is ignored.
template <form Form> void shrink(typename Form::record &record, std::int64_t length) noexcept
{
    if (record.data != nullptr && length >= 0) {
        Form::close(record, static_cast<std::int32_t>(smaller(length, wide(record.capacity))));
    }
}

// Writes units over what is there, as far as the form allows.
template <form Form>
void overwrite(typename Form::record &record, std::int32_t position,
               const typename Form::unit *units, std::int32_t count) noexcept
{
    const std::int64_t room = wide(Form::overwrite_end(record)) - position;
    if (room > 0) {
        move_units(record.data + position, units, smaller(wide(count), room));
    }
}

template <form Form>
void move_tail(typename Form::record &record, std::int64_t from, std::int64_t to) noexcept
{
    if (from < record.length) {
        move_units(record.data + to, record.data + from, record.length - from);
    }
}

template <typename Record>
void zero(Record &record, std::int32_t position, std::int32_t count) noexcept
{
    if (record.data == nullptr || position < 0 || wide(position) + count > record.capacity) {
        return;
    }
    if (count > 0) {
        std::memset(record.data + position, 0,
                    static_cast<std::size_t>(count) * sizeof(*record.data));
    }
}

// `count` units from `units` become the whole content of `target`, which may hold them already.
template <form Form>
void assign(typename Form::record &target, const typename Form::unit *units,
            std::int32_t count) noexcept
{
    if (expand<Form>(target, count)) {
        move_units(target.data, units, count);
        shrink<Form>(target, count);
    }
}

template <form Form, typename Source>
void clone(const Source &source, typename Form::record &target) noexcept
{
    if (expand<Form>(target, source.capacity)) {
        move_units(target.data, source.data, source.length);
        shrink<Form>(target, source.length);
    }
}

// As `assign`, for text from outside: null empties the record, a negative length is measured.
template <form Form>
void copy(typename Form::record &record, const typename Form::unit *units,
          std::int32_t length) noexcept
{
    if (units == nullptr) {
        shrink<Form>(record, 0);
    } else {
        assign<Form>(record, units, measured(units, length));
    }
}

template <form Form>
[[gnu::noinline]] void append_measured(typename Form::record &record,
                                       const typename Form::unit *units,
                                       std::int32_t length) noexcept
{
    if (units == nullptr) {
        return;
    }
    const std::int32_t added = measured(units, length);
    const std::int64_t sum = wide(record.length) + added;
    if (expand<Form>(record, sum)) {
        move_units(record.data + record.length, units, added);
        shrink<Form>(record, sum);
    }
}

// A few units for which there is room go in at once, in a third of the time of the other way.
template <form Form>
void append(typename Form::record &record, const typename Form::unit *units,
            std::int32_t length) noexcept
{
    constexpr std::int32_t few = 16 / sizeof *units;
    const std::int32_t old_length = record.length;
    if (units != nullptr && length > 0 && length <= few && length <= record.capacity - old_length) {
        move_few(record.data + old_length, units,
                 length * static_cast<std::int32_t>(sizeof *units));
        Form::close(record, old_length + length);
    } else {
        append_measured<Form>(record, units, length);
    }
}

// The bound is the capacity and not the length: what shortening left behind stays readable.
template <typename Record, typename Unit>
Unit get_at(const Record &record, std::int32_t index, Unit outside) noexcept
{
    return index >= 0 && index < record.capacity ? record.data[index] : outside;
}

template <typename Record, typename Unit>
void set_at(Record &record, std::int32_t index, Unit unit) noexcept
{
    if (index >= 0 && index < record.capacity) {
        record.data[index] = unit;
    }
}

// The replaced run is not clamped to the end. Where it passes the end, the new length follows the
// same sum all the same, and the write stops where the form says; that is intended.
template <form Form>
bool update(typename Form::record &record, std::int32_t position, std::int32_t replaced,
            const typename Form::unit *units, std::int32_t count) noexcept
{
    if (position < 0 || replaced < 0 || count < 0 || position > record.length) {
        return false;
    }
    const std::int64_t length = wide(record.length) - replaced + count;
    const std::int64_t old_end = wide(position) + replaced;
    if (count <= replaced) {
        overwrite<Form>(record, position, units, count);
        if (count < replaced) {
            move_tail<Form>(record, old_end, wide(position) + count);
            shrink<Form>(record, length);
        }
        return true;
    }
    if (!expand<Form>(record, length)) {
        return false;
    }
    move_tail<Form>(record, old_end, wide(position) + count);
    shrink<Form>(record, length);
    overwrite<Form>(record, position, units, count);
    return true;
}

template <form Form>
bool insert(typename Form::record &record, std::int32_t position, const typename Form::unit *units,
            std::int32_t count) noexcept
{
    return count > 0 && update<Form>(record, position, 0, units, count);
}

// As `update`, for a text whose negative length is to be measured. With no text to measure, the
// negative length stays one, and is refused.
template <form Form>
bool update_measured(typename Form::record &record, std::int32_t position, std::int32_t replaced,
                     const typename Form::unit *units, std::int32_t length) noexcept
{
    const std::int32_t count = units == nullptr ? length : measured(units, length);
    return update<Form>(record, position, replaced, units, count);
}

// Closes the gap from `position` to `end`, which lies in front of the length. Numbers that would
// move units outside of the buffer do nothing.
template <form Form>
void remove(typename Form::record &record, std::int32_t position, std::int64_t end) noexcept
{
    const std::int64_t length = wide(position) + record.length - end;
    if (position >= 0 && end >= 0 && length <= record.capacity) {
        move_tail<Form>(record, end, position);
        shrink<Form>(record, length);
    }
}

// A run that passes the end removes nothing at all, and one that meets it cuts.
template <form Form>
void remove_inside(typename Form::record &record, std::int32_t position, std::int32_t size) noexcept
{
    const std::int64_t end = wide(position) + size;
    if (end < record.length) {
        remove<Form>(record, position, end);
    } else if (end == record.length) {
        shrink<Form>(record, position);
    }
}

// A negative count leaves the record alone here, and empties it in `mid` and `right`: intended.
template <form Form> void left(typename Form::record &record, std::int32_t count) noexcept
{
    if (!is_empty(record) && count < record.length) {
        shrink<Form>(record, count);
    }
}

template <form Form>
void keep(typename Form::record &record, std::int32_t position, std::int32_t count) noexcept
{
    move_units(record.data, record.data + position, count);
    shrink<Form>(record, count);
}

template <form Form>
void mid(typename Form::record &record, std::int32_t position, std::int32_t count) noexcept
{
    if (is_empty(record) || position < 0) {
        return;
    }
    if (count <= 0 || position >= record.length) {
        shrink<Form>(record, 0);
    } else {
        keep<Form>(record, position, smaller(count, record.length - position));
    }
}

template <form Form> void right(typename Form::record &record, std::int32_t count) noexcept
{
    if (is_empty(record) || count >= record.length) {
        return;
    }
    if (count <= 0) {
        shrink<Form>(record, 0);
    } else {
        keep<Form>(record, record.length - count, count);
    }
}

// The three extractions write the form of the target; the source may be any buffer of its units.
template <form Form, typename Source>
void mid_into(const Source &source, std::int32_t position, std::int32_t count,
              typename Form::record &target) noexcept
{
    if (is_empty(source) || count <= 0 || position < 0 || position >= source.length) {
        shrink<Form>(target, 0);
    } else {
        assign<Form>(target, source.data + position, smaller(count, source.length - position));
    }
}

template <form Form, typename Source>
void left_into(const Source &source, std::int32_t count, typename Form::record &target) noexcept
{
    mid_into<Form>(source, 0, count, target);
}

template <form Form, typename Source>
void right_into(const Source &source, std::int32_t count, typename Form::record &target) noexcept
{
    const std::int32_t taken = smaller(count, source.length);
    mid_into<Form>(source, source.length - larger(taken, 1), taken, target);
}

} // namespace qek::buffer
