// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The arrays of pairs whose key is a number in the slot.
//
// Searching and sorting order the keys differently, on purpose. A search takes the difference of
// two keys as it wraps and reads it as signed: keys less than half of the range apart compare as
// signed numbers. A sort compares them as unsigned.
//
// A removed slot's key is cleared first, so that a slot vacated at the end reads key 0 and its old
// value.
#pragma once

#include "array/key_sort.h"
#include "array/keyed.h"

#include <cstring>
#include <type_traits>

namespace qek::array {

template <storage Record> struct number_policy {
    using record = Record;
    using slot = slot_of<Record>;
    using key = decltype(slot::key);
    using difference = std::make_signed_t<key>;

    static difference order(const record &, const slot &at, key sought) noexcept
    {
        return static_cast<difference>(at.key - sought);
    }
    static bool same(const record &, const slot &at, key sought) noexcept
    {
        return at.key == sought;
    }
    static void append(record &array, key added, qek_word value) noexcept
    {
        array::append(array, made_of(added, value));
    }
    static void insert_at(record &array, std::int32_t index, key added, qek_word value) noexcept
    {
        array::insert_at(array, index, made_of(added, value));
    }
    template <typename Take>
    static void take_out(record &array, std::int32_t index, Take take) noexcept
    {
        if (is_allocated(array, index)) {
            array.slots[index].key = 0;
        }
        take(slot_at(array, index).value);
        shift_down(array, index);
    }

  private:
    // What lies between key and value is zero too, for those who look at slots as bytes.
    static slot made_of(key added, qek_word value) noexcept
    {
        slot made;
        std::memset(&made, 0, sizeof made);
        made.key = added;
        made.value = value;
        return made;
    }
};

template <storage Record, typename Key>
qek_word get_pair(const Record &array, std::int32_t index, Key &key) noexcept
{
    const auto slot = slot_at(array, index);
    key = slot.key;
    return slot.value;
}

template <storage Record, typename Key>
qek_word get_used_pair(const Record &array, std::int32_t index, Key &key) noexcept
{
    return get_pair(array, array.count < 1 ? -1 : index, key);
}

template <storage Record, typename Key>
qek_word set_pair(Record &array, std::int32_t index, Key key, qek_word value) noexcept
{
    const qek_word old = slot_at(array, index).value;
    set_slot(array, index, {key, value});
    return old;
}

template <storage Record, typename Key>
qek_word remove_pair(Record &array, std::int32_t index, Key &key) noexcept
{
    key = is_used(array, index) ? slot_at(array, index).key : 0;
    return keyed::remove_at<number_policy<Record>>(array, index);
}

template <storage Record> void sort_by_key(Record &array, std::int32_t ascending) noexcept
{
    using key = decltype(slot_of<Record>::key);
    sort_by_numbers<key>(array.slots, slots_in_use(array), ascending != 0);
}

} // namespace qek::array
