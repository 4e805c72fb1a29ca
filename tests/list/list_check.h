// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The invariants of the lists, as the heads of list/ state them, looked at from outside. A check
// names the first one that does not hold, and nothing for a sound list.
#pragma once

#include "qek_std.h"

#include <map>
#include <string>

namespace qek_test {

// Ends also on a ring: its first node, met again, has another node in front of it.
template <typename List> std::string list_fault(const List &list)
{
    decltype(list.head) before = nullptr;
    int count = 0;
    for (auto *at = list.head; at != nullptr; before = at, at = at->next) {
        if (at->prev != before) {
            return "prev";
        }
        if constexpr (requires { at->used; }) {
            const bool is_inner = before != nullptr && at->next != nullptr;
            if (at->used < (is_inner ? 32 : 1) || at->used > 32) {
                return "used";
            }
            count += at->used - 1;
        }
        ++count;
    }
    return before != list.tail ? "tail" : count != list.count ? "count" : "";
}

// The runs of all keys lie end to end in `keys`, in whatever order.
inline std::string list_fault(const qek_list &list)
{
    if (const auto fault = list_fault<>(list); !fault.empty()) {
        return fault;
    }
    std::multimap<int64_t, int64_t> runs;
    for (auto *at = list.head; at != nullptr; at = at->next) {
        runs.emplace(at->key_offset, at->key_length);
    }
    int64_t end = 0;
    for (const auto &[offset, length] : runs) {
        if (length < 0 || (length > 0 ? offset != end : offset > list.keys.length)) {
            return length > 0 ? "gap or overlap" : "empty key";
        }
        end += length;
    }
    return end == list.keys.length ? "" : "keys.length";
}

} // namespace qek_test
