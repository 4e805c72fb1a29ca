// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The invariants of the chained tables, as the head of hash/chain.h states them, looked at from
// outside and against a model that knows in which order the keys came.
#pragma once

#include "support/keyed_suite.h"

#include <bit>

namespace qek_test {

// What a sound table holds stands on its chains, oldest first.
template <typename Family>
const char *chain_fault(const typename Family::container &table, const stored_keys &oldest_first)
{
    const qek_arrays &buckets = table.buckets;
    const auto count = static_cast<std::uint32_t>(buckets.count);
    const char *fault = count != 0 && (buckets.count < 4 || !std::has_single_bit(count))
                            ? "bucket count"
                        : buckets.capacity < buckets.count              ? "bucket capacity"
                        : table.entry_count != std::ssize(oldest_first) ? "entry_count"
                        : table.entry_count >= (count == 0 ? 1 : 2 * buckets.count) ? "load"
                                                                                    : nullptr;
    std::vector<std::vector<const stored_key *>> chains(count);
    for (const stored_key &each : oldest_first) {
        if (fault == nullptr) {
            chains[static_cast<std::uint32_t>(Family::number(table, each.key) % count)].push_back(
                &each);
        }
    }
    for (std::size_t bucket = 0; fault == nullptr && bucket < count; ++bucket) {
        auto *entry = item<typename Family::element>(buckets.slots[bucket]);
        for (const stored_key *each : chains[bucket]) {
            if (entry != each->element || entry->value != each->value) {
                return entry != each->element ? "chain" : "value";
            }
            entry = entry->next;
        }
        fault = entry != nullptr ? "chain end" : nullptr;
    }
    return fault;
}

// Names the first invariant that does not hold, given the keys oldest first; empty if all hold.
// `Family::number(table, key)` is the number whose remainder is the bucket of a key. Key text has
// no holes and stands in the order in which the keys came, empty keys included.
template <typename Family>
std::string hash_fault(const typename Family::container &table, const stored_keys &oldest_first)
{
    const char *fault = chain_fault<Family>(table, oldest_first);
    std::string text;
    for (auto at = oldest_first.begin(); fault == nullptr && at != oldest_first.end(); ++at) {
        const auto *entry = static_cast<const typename Family::element *>(at->element);
        if constexpr (requires { table.keys; }) {
            const auto length = static_cast<std::size_t>(entry->key_length);
            const auto *from = reinterpret_cast<const char *>(table.keys.data) + text.size();
            fault = entry->key_offset != text.size()                  ? "key_offset"
                    : length != at->key.bytes.size()                  ? "key_length"
                    : entry->hash != Family::number(table, at->key)   ? "hash"
                    : std::string_view(from, length) != at->key.bytes ? "key text"
                                                                      : nullptr;
        } else {
            fault = any_key::of(entry->key) == at->key ? nullptr : "key";
        }
        text += at->key.bytes;
    }
    if constexpr (requires { table.keys; }) {
        return fault != nullptr                        ? fault
               : table.keys.length != std::ssize(text) ? "keys length"
                                                       : "";
    }
    return fault != nullptr ? fault : "";
}

} // namespace qek_test
