// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The arrays of pairs: what is the same whatever the key.
//
// A pair is a slot with a key and a `value`. Order is the family's own comparison of keys, so that
// no callback is needed; `reversed` negates it in every binary search and in nothing else. On top
// of storage.h and search.h stand here finding, sorted insertion and removal, for every kind of
// key.
//
// A policy says: `record`, `key` (how a sought key travels), `order` (of a slot's key against one,
// slot first, as a signed difference), `same` (for the search in slot order), `append`,
// `insert_at`, and `take_out`, which removes a slot with its key and hands its value to a callback
// between the two.
//
// Nothing here looks at the outcome of growth but `append_new`: intended.
#pragma once

#include "array/search.h"
#include "array/sort.h"
#include "array/storage.h"

#include <cstdint>

namespace qek::array::keyed {

template <typename Policy>
place locate(const typename Policy::record &array, const typename Policy::key &key) noexcept
{
    return array::locate(slots_in_use(array), array.reversed != 0, [&](std::int32_t index) {
        return Policy::order(array, array.slots[index], key);
    });
}

template <typename Policy>
std::int32_t find_index(const typename Policy::record &array,
                        const typename Policy::key &key) noexcept
{
    const place at = locate<Policy>(array, key);
    return at.found ? at.index : -1;
}

template <typename Policy>
std::int32_t nearest_index(const typename Policy::record &array,
                           const typename Policy::key &key) noexcept
{
    return nearest(locate<Policy>(array, key), slots_in_use(array));
}

// In slot order, for an array that is not sorted: the first of equal keys.
template <typename Policy>
std::int32_t first_index(const typename Policy::record &array,
                         const typename Policy::key &key) noexcept
{
    const std::int32_t count = slots_in_use(array);
    for (std::int32_t at = 0; at < count; ++at) {
        if (Policy::same(array, array.slots[at], key)) {
            return at;
        }
    }
    return -1;
}

template <storage Record> qek_word value_at(const Record &array, std::int32_t index) noexcept
{
    return slot_at(array, index).value;
}

template <storage Record>
qek_word update_at(Record &array, std::int32_t index, qek_word value) noexcept
{
    if (!is_allocated(array, index)) {
        return 0;
    }
    const qek_word old = array.slots[index].value;
    array.slots[index].value = value;
    return old;
}

template <typename Policy>
bool insert(typename Policy::record &array, const typename Policy::key &key,
            qek_word value) noexcept
{
    const place at = locate<Policy>(array, key);
    if (!at.found) {
        Policy::insert_at(array, at.index, key, value);
    }
    return !at.found;
}

template <typename Policy>
std::int32_t insert_new(typename Policy::record &array, const typename Policy::key &key,
                        qek_word &value, qek_value_fn init_value) noexcept
{
    value = 0;
    const place at = locate<Policy>(array, key);
    if (at.found) {
        value = array.slots[at.index].value;
        return -1;
    }
    const qek_word item = pool::new_value(array.pool, init_value, value);
    Policy::insert_at(array, at.index, key, item);
    return at.index;
}

template <typename Policy>
slot_of<typename Policy::record> *entry_insert(typename Policy::record &array,
                                               const typename Policy::key &key) noexcept
{
    const place at = locate<Policy>(array, key);
    if (!at.found) {
        Policy::insert_at(array, at.index, key, 0);
    }
    return array.slots + at.index;
}

template <typename Policy>
slot_of<typename Policy::record> *entry_find(const typename Policy::record &array,
                                             const typename Policy::key &key) noexcept
{
    const place at = locate<Policy>(array, key);
    return at.found ? array.slots + at.index : nullptr;
}

template <typename Policy>
qek_word append_new(typename Policy::record &array, const typename Policy::key &key,
                    qek_value_fn init_value) noexcept
{
    if (!expand(array, wide(array.count) + 1)) {
        return 0;
    }
    const qek_word item = pool::new_value(array.pool, init_value);
    Policy::append(array, key, item);
    return item;
}

template <typename Policy>
qek_word remove_at(typename Policy::record &array, std::int32_t index) noexcept
{
    qek_word taken = 0;
    if (is_used(array, index)) {
        Policy::take_out(array, index, [&](qek_word value) { taken = value; });
    }
    return taken;
}

template <typename Policy>
void free_at(typename Policy::record &array, std::int32_t index, qek_value_fn free_value) noexcept
{
    if (is_used(array, index)) {
        const pool::disposal dispose = disposal_of(array, free_value);
        Policy::take_out(array, index, [&](qek_word value) { dispose.of_nonzero(value); });
    }
}

template <storage Record>
void sort_by_value(Record &array, std::int32_t ascending, qek_value_compare_fn compare) noexcept
{
    if (compare != nullptr) {
        array::sort(
            array.slots, slots_in_use(array), ascending != 0,
            [=](const auto &left, const auto &right) { return compare(left.value, right.value); });
    }
}

} // namespace qek::array::keyed
