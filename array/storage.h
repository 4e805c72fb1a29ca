// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The storage of the array families: slots in one run, growing, shifting, and the values in them.
//
// Shape. slots --> [ s0 s1 ... | vacated or zero ]     0 <= count <= capacity, capacity = 4k
//                   0          count              capacity
//
// Slots from the old capacity up are zero when the storage grows, and removal never clears the slot
// that it vacates. `count` is set through `set_count`, which keeps it within the capacity; the one
// exception is `clone`, which takes the source's count also when its growth failed. So every access
// here is bounded by the capacity, and what runs over the slots in use runs over `slots_in_use`.
//
// What a slot is, is the family's: a bare word, or an entry with a key and a `value`. All that
// moves slots stands here once and looks at no keys; `value_of` is the only thing it knows of a
// slot.
//
// Cost. Appending is amortised constant (half of the count is added to the capacity, at most 65536
// slots at a time), inserting and removing move the tail.
#pragma once

#include "base/arith.h"
#include "base/bytes.h"
#include "base/growth.h"
#include "base/heap.h"
#include "pool/owned.h"
#include "pool/translation.h"
#include "qek_std.h"

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace qek::array {

template <typename Record> using slot_of = std::remove_pointer_t<decltype(Record::slots)>;

template <typename Record>
concept storage = requires(Record record)
{
    record.slots;
    record.count;
    record.capacity;
    record.pool;
    record.owns_pool;
};

inline qek_word &value_of(qek_word &slot) noexcept { return slot; }

template <typename Entry> qek_word &value_of(Entry &entry) noexcept { return entry.value; }

template <storage Record> bool is_allocated(const Record &record, std::int32_t index) noexcept
{
    return index >= 0 && index < record.capacity;
}

template <storage Record> bool is_used(const Record &record, std::int32_t index) noexcept
{
    return index >= 0 && index < record.count;
}

template <storage Record> std::int32_t slots_in_use(const Record &record) noexcept
{
    return smaller(record.count, record.capacity);
}

// The slot at `index`, or a zero one where nothing is allocated.
template <storage Record> slot_of<Record> slot_at(const Record &record, std::int32_t index) noexcept
{
    return is_allocated(record, index) ? record.slots[index] : slot_of<Record>{};
}

template <storage Record>
void set_slot(Record &record, std::int32_t index, const slot_of<Record> &slot) noexcept
{
    if (is_allocated(record, index)) {
        record.slots[index] = slot;
    }
}

template <storage Record> void set_count(Record &record, std::int64_t count) noexcept
{
    record.count = static_cast<std::int32_t>(smaller(count, wide(record.capacity)));
}

template <storage Record> [[gnu::noinline]] bool grow(Record &record, std::int64_t wanted) noexcept
{
    const std::int64_t capacity =
        rounded_up(grown(record.count, record.capacity, wanted, array_steps), 4);
    if (!is_capacity(capacity)) {
        return false;
    }
    auto *fresh = regrown_units(record.slots, record.capacity, capacity);
    if (fresh == nullptr) {
        return false;
    }
    record.slots = fresh;
    record.capacity = static_cast<std::int32_t>(capacity);
    return true;
}

template <storage Record> bool expand(Record &record, std::int64_t wanted) noexcept
{
    return record.capacity >= wanted || grow(record, wanted);
}

// Apart, so that a slot that has room is stored without the registers that this takes.
template <storage Record>
[[gnu::noinline]] void append_growing(Record &record, slot_of<Record> slot) noexcept
{
    if (expand(record, wide(record.count) + 1)) {
        record.slots[record.count] = slot;
        set_count(record, wide(record.count) + 1);
    }
}

template <storage Record> void append(Record &record, const slot_of<Record> &slot) noexcept
{
    if (record.count >= record.capacity) {
        append_growing(record, slot);
        return;
    }
    record.slots[record.count] = slot;
    ++record.count;
}

// Makes room at `index`, which is in use, with the old slot still standing there.
template <storage Record> void shift_up(Record &record, std::int32_t index) noexcept
{
    move_units(record.slots + index + 1, record.slots + index, record.count - index);
    set_count(record, wide(record.count) + 1);
}

// An index at or past the count appends.
template <storage Record>
void insert_at(Record &record, std::int32_t index, const slot_of<Record> &slot) noexcept
{
    if (index >= record.count) {
        append(record, slot);
    } else if (index >= 0 && expand(record, wide(record.count) + 1)) {
        shift_up(record, index);
        record.slots[index] = slot;
    }
}

// Closes the gap of the slot at `index`, which is in use. A last slot stays as it was, uncounted.
template <storage Record> void shift_down(Record &record, std::int32_t index) noexcept
{
    const std::int32_t behind = slots_in_use(record) - index - 1;
    if (behind > 0) {
        move_units(record.slots + index, record.slots + index + 1, behind);
    }
    set_count(record, wide(record.count) - 1);
}

template <storage Record> void append_all(Record &record, const Record &source) noexcept
{
    const std::int32_t added = slots_in_use(source);
    const std::int64_t count = wide(record.count) + added;
    if (expand(record, count)) {
        move_units(record.slots + record.count, source.slots, added);
        set_count(record, count);
    }
}

template <storage Record> void init(Record &record, std::int32_t use_pool) noexcept
{
    record = {};
    pool::own(record.pool, record.owns_pool, use_pool, pool::size_from_caller);
}

template <storage Record> void release_slots(Record &record) noexcept
{
    give_block(record.slots);
    record.slots = nullptr;
    record.count = 0;
    record.capacity = 0;
}

template <storage Record> void term(Record &record) noexcept
{
    release_slots(record);
    pool::end_owned(record.pool, record.owns_pool);
}

template <storage Record> void remove_all(Record &record) noexcept
{
    release_slots(record);
    pool::empty_owned(record.pool, record.owns_pool);
}

template <storage Record>
pool::disposal disposal_of(const Record &record, qek_value_fn free_value) noexcept
{
    return {free_value, pool::borrowed(record.pool, record.owns_pool)};
}

template <storage Record> void free_all(Record &record, qek_value_fn free_value) noexcept
{
    const pool::disposal dispose = disposal_of(record, free_value);
    for (std::int32_t at = 0; dispose.does_something() && at < slots_in_use(record); ++at) {
        dispose.of_nonzero(value_of(record.slots[at]));
    }
    remove_all(record);
}

template <storage Record> void swap_slots(Record &a, Record &b) noexcept
{
    const Record kept = a;
    a.slots = b.slots;
    a.count = b.count;
    a.capacity = b.capacity;
    b.slots = kept.slots;
    b.count = kept.count;
    b.capacity = kept.capacity;
}

// `copy_keys()` runs once, behind a growth that succeeded, for a family with keys elsewhere.
template <storage Record, typename CopyKeys>
void clone(const Record &source, qek_pool *source_aux, Record &target, qek_pool *target_aux,
           qek_clone_fn clone_value, CopyKeys copy_keys) noexcept
{
    pool::share_borrowed(source.pool, source.owns_pool, target.pool);
    const pool::value_copier copier(source_aux, target_aux, clone_value);
    const pool::translation values(source.owns_pool != 0, source.pool, target.pool);
    if (expand(target, source.capacity)) {
        copy_keys();
        for (std::int32_t at = 0; at < slots_in_use(source); ++at) {
            target.slots[at] = source.slots[at];
            copier.copy(value_of(source.slots[at]), values, value_of(target.slots[at]));
        }
    }
    target.count = source.count; // not clamped: intended
}

} // namespace qek::array
