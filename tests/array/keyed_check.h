// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The invariants of an array's record and of its key text, as the heads of array/storage.h and
// array/array.cpp state them, looked at from outside.
#pragma once

#include "qek_std.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace qek_test {

// The runs of the slots in use lie one behind the other, in any order of slots.
inline std::string keys_fault(const qek_stream &keys, std::vector<qek_array_entry> runs)
{
    std::sort(runs.begin(), runs.end(), [](const auto &a, const auto &b) {
        return std::pair(a.key_offset, a.key_length) < std::pair(b.key_offset, b.key_length);
    });
    std::int64_t end = 0;
    for (const auto &[offset, length, value] : runs) {
        if (length < 0 || offset != end) {
            return length < 0 ? "negative length" : offset < end ? "overlap" : "hole";
        }
        end += length;
    }
    return end != keys.length                                      ? "length of keys"
           : keys.length > keys.capacity || keys.capacity % 8 != 0 ? "capacity of keys"
                                                                   : "";
}

// Names the first invariant that does not hold; empty for a sound array.
template <typename Record> std::string array_fault(const Record &array)
{
    const char *fault = array.capacity < 0 || array.capacity % 4 != 0       ? "capacity"
                        : (array.slots == nullptr) != (array.capacity == 0) ? "slots"
                        : array.count < 0 || array.count > array.capacity   ? "count"
                        : array.owns_pool != 0 && array.pool == nullptr     ? "pool"
                                                                            : "";
    if constexpr (requires { array.keys; }) {
        return *fault != 0 ? fault
                           : keys_fault(array.keys, {array.slots, array.slots + array.count});
    }
    return fault;
}

} // namespace qek_test
