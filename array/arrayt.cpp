// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The tiny array: four words in the record, the rest in an overflow block.
//
//     inline_slots [ 0 | 1 | 2 | 3 ]      overflow --> [ 4 | 5 | ... ]      capacity - 4 words
//
// An element's place follows from its index alone, so inserting and removing pass one word across
// the border between the two parts. The capacity is 4 after `init` and 0 after `remove_all`, which
// the next growth repairs.

#include "array/key_sort.h"
#include "array/search.h"
#include "base/bytes.h"
#include "base/exchange.h"
#include "base/growth.h"
#include "base/heap.h"
#include "qek_std.h"
#include "text/separated.h"

using namespace qek;

namespace {

constexpr std::int32_t inline_count = 4;

void init(qek_arrayt &array) noexcept
{
    array.overflow = nullptr;
    array.count = 0;
    array.capacity = inline_count;
    array.reversed = 0;
}

void release(qek_arrayt &array, std::int32_t capacity) noexcept
{
    give_block(array.overflow);
    array.overflow = nullptr;
    array.count = 0;
    array.capacity = capacity;
}

void term(qek_arrayt &array) noexcept { release(array, inline_count); }

void remove_all(qek_arrayt &array) noexcept
{
    for (std::uint32_t &slot : array.inline_slots) {
        slot = 0;
    }
    release(array, 0);
}

bool expand(qek_arrayt &array, std::int64_t wanted) noexcept
{
    array.capacity = larger(array.capacity, inline_count);
    if (array.capacity >= wanted) {
        return true;
    }
    const std::int64_t capacity =
        rounded_up(grown(array.count, array.capacity, wanted, array_steps), 4);
    if (!is_capacity(capacity)) {
        return false;
    }
    auto *fresh =
        regrown_units(array.overflow, array.capacity - inline_count, capacity - inline_count);
    if (fresh == nullptr) {
        return false;
    }
    array.overflow = fresh;
    array.capacity = static_cast<std::int32_t>(capacity);
    return true;
}

// The element's place, or null where there is none.
std::uint32_t *place_of(qek_arrayt &array, std::int32_t index) noexcept
{
    if (index < 0 || index >= array.count) {
        return nullptr;
    }
    if (index < inline_count) {
        return array.inline_slots + index;
    }
    return array.overflow == nullptr ? nullptr : array.overflow + (index - inline_count);
}

std::uint32_t get_at(const qek_arrayt &array, std::int32_t index) noexcept
{
    const std::uint32_t *place = place_of(const_cast<qek_arrayt &>(array), index);
    return place == nullptr ? 0 : *place;
}

void set_at(qek_arrayt &array, std::int32_t index, std::uint32_t value) noexcept
{
    if (std::uint32_t *place = place_of(array, index)) {
        *place = value;
    }
}

void set_count(qek_arrayt &array, std::int64_t count) noexcept
{
    array.count = static_cast<std::int32_t>(smaller(count, wide(array.capacity)));
}

void append(qek_arrayt &array, std::uint32_t value) noexcept
{
    if (expand(array, wide(array.count) + 1)) {
        set_count(array, wide(array.count) + 1);
        set_at(array, array.count - 1, value);
    }
}

void append_all(qek_arrayt &array, const qek_arrayt &source) noexcept
{
    const std::int32_t first = array.count;
    const std::int32_t added = source.count;
    if (expand(array, wide(first) + added)) {
        set_count(array, wide(first) + added);
        for (std::int32_t at = 0; at < added; ++at) {
            set_at(array, first + at, get_at(source, at));
        }
    }
}

void clone(const qek_arrayt &source, qek_arrayt &target) noexcept
{
    if (expand(target, source.capacity)) {
        set_count(target, source.count);
        for (std::int32_t at = 0; at < source.count; ++at) {
            set_at(target, at, get_at(source, at));
        }
    }
}

// The order is that of the difference as it wraps, read as signed; the sort's is unsigned.
// Intended.
array::place locate(const qek_arrayt &array, std::uint32_t value) noexcept
{
    return array::locate(array.count, array.reversed != 0, [&](std::int32_t index) {
        return static_cast<std::int32_t>(get_at(array, index) - value);
    });
}

void shift_up(qek_arrayt &array, std::int32_t index) noexcept
{
    std::uint32_t *in_record = array.inline_slots;
    const std::int32_t inside = smaller(array.count, inline_count);
    if (index >= inline_count) {
        std::uint32_t *place = array.overflow + (index - inline_count);
        move_units(place + 1, place, array.count - index);
        return;
    }
    if (inside == inline_count) {
        move_units(array.overflow + 1, array.overflow, array.count - inline_count);
        array.overflow[0] = in_record[inline_count - 1];
        move_units(in_record + index + 1, in_record + index, inline_count - 1 - index);
    } else {
        move_units(in_record + index + 1, in_record + index, inside - index);
    }
}

void insert_at(qek_arrayt &array, std::int32_t index, std::uint32_t value) noexcept
{
    if (index >= array.count) {
        append(array, value);
    } else if (index >= 0 && expand(array, wide(array.count) + 1)) {
        shift_up(array, index);
        set_count(array, wide(array.count) + 1);
        set_at(array, index, value);
    }
}

// Answers 1 for a value that was not there, also when growth failed: intended.
bool insert(qek_arrayt &array, std::uint32_t value) noexcept
{
    const array::place at = locate(array, value);
    if (!at.found) {
        insert_at(array, at.index, value);
    }
    return !at.found;
}

void shift_down(qek_arrayt &array, std::int32_t index) noexcept
{
    std::uint32_t *in_record = array.inline_slots;
    const bool overflows = array.count > inline_count;
    if (overflows && array.overflow == nullptr) {
        return;
    }
    if (index < inline_count) {
        move_units(in_record + index, in_record + index + 1,
                   smaller(array.count, inline_count) - 1 - index);
    }
    if (overflows) {
        const std::int32_t gap = larger(index - inline_count, 0);
        if (index < inline_count) {
            in_record[inline_count - 1] = array.overflow[0];
        }
        move_units(array.overflow + gap, array.overflow + gap + 1,
                   array.count - inline_count - 1 - gap);
    }
}

std::uint32_t remove_at(qek_arrayt &array, std::int32_t index) noexcept
{
    std::uint32_t *place = place_of(array, index);
    if (place == nullptr) {
        return 0;
    }
    const std::uint32_t value = *place;
    *place = 0;
    shift_down(array, index);
    set_count(array, wide(array.count) - 1);
    return value;
}

bool remove(qek_arrayt &array, std::uint32_t value) noexcept
{
    const array::place at = locate(array, value);
    if (at.found) {
        remove_at(array, at.index);
    }
    return at.found;
}

// Keeps the first of each run of equal words, in a block that is sorted.
std::int32_t drop_repeats(std::uint32_t *words, std::int32_t count) noexcept
{
    std::int32_t kept = 1;
    for (std::int32_t at = 1; at < count; ++at) {
        if (words[at] != words[kept - 1]) {
            words[kept++] = words[at];
        }
    }
    return kept;
}

// The working block is not checked: exhaustion faults.
void sort(qek_arrayt &array, std::int32_t ascending, std::int32_t unique) noexcept
{
    const std::int32_t count = array.count;
    if (count < 1) {
        return;
    }
    auto *words = static_cast<std::uint32_t *>(
        take_block(static_cast<std::size_t>(count) * sizeof(std::uint32_t)));
    for (std::int32_t at = 0; at < count; ++at) {
        words[at] = get_at(array, at);
    }
    array::sort_by_numbers<std::uint32_t>(words, count, ascending != 0);
    const std::int32_t kept = unique != 0 ? drop_repeats(words, count) : count;
    for (std::int32_t at = 0; at < kept; ++at) {
        set_at(array, at, words[at]);
    }
    set_count(array, kept);
    give_block(words);
}

void read_numbers(qek_arrayt &array, std::uint8_t separator, const void *text,
                  std::int32_t length) noexcept
{
    text::for_each_item(separator, text, length, [&](const qek_char &item) {
        append(array, static_cast<std::uint32_t>(qek_char_get_long(&item)));
    });
}

void write_numbers(const qek_arrayt &array, std::uint8_t separator, qek_string &target) noexcept
{
    text::join(target, separator, array.count, wide(array.count) * 4, [&](std::int32_t at) {
        qek_string_append_integer(&target, static_cast<std::int32_t>(get_at(array, at)));
    });
}

} // namespace

void qek_arrayt_init(qek_arrayt *array) { init(*array); }

void qek_arrayt_term(qek_arrayt *array) { term(*array); }

int32_t qek_arrayt_expand(qek_arrayt *array, int32_t want) { return expand(*array, want); }

void qek_arrayt_swap(qek_arrayt *first, qek_arrayt *second)
{
    exchange_all_but(*first, *second, &qek_arrayt::reversed);
}

void qek_arrayt_clone(const qek_arrayt *source, qek_arrayt *target) { clone(*source, *target); }

void qek_arrayt_append(qek_arrayt *array, uint32_t value) { append(*array, value); }

void qek_arrayt_append_array(qek_arrayt *array, const qek_arrayt *source)
{
    append_all(*array, *source);
}

uint32_t qek_arrayt_get_at(const qek_arrayt *array, int32_t index) { return get_at(*array, index); }

void qek_arrayt_set_at(qek_arrayt *array, int32_t index, uint32_t value)
{
    set_at(*array, index, value);
}

uint32_t qek_arrayt_get_first(const qek_arrayt *array) { return get_at(*array, 0); }

uint32_t qek_arrayt_get_last(const qek_arrayt *array) { return get_at(*array, array->count - 1); }

int32_t qek_arrayt_insert(qek_arrayt *array, uint32_t value) { return insert(*array, value); }

int32_t qek_arrayt_find(const qek_arrayt *array, uint32_t value)
{
    return locate(*array, value).found;
}

int32_t qek_arrayt_remove(qek_arrayt *array, uint32_t value) { return remove(*array, value); }

void qek_arrayt_qsort(qek_arrayt *array, int32_t ascending, int32_t unique)
{
    sort(*array, ascending, unique);
}

void qek_arrayt_insert_at(qek_arrayt *array, int32_t index, uint32_t value)
{
    insert_at(*array, index, value);
}

uint32_t qek_arrayt_remove_at(qek_arrayt *array, int32_t index) { return remove_at(*array, index); }

void qek_arrayt_remove_all(qek_arrayt *array) { remove_all(*array); }

void qek_arrayt_from_string(qek_arrayt *array, uint8_t separator, const void *text, int32_t length)
{
    read_numbers(*array, separator, text, length);
}

void qek_arrayt_to_string(const qek_arrayt *array, uint8_t separator, qek_string *string)
{
    write_numbers(*array, separator, *string);
}
