// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What the tables share whose keys have a fixed width and stand in the entry: no key text, so
// nothing to grow ahead and nothing to forget but the entry itself.
#pragma once

#include "hash/chain.h"
#include "hash/key.h"
#include "stream/cursor.h"

#include <cstdint>

namespace qek::hash {

template <typename Table, typename Entry> struct keys_in_entries {
    using table = Table;
    using entry = Entry;

    static void forget(table &, const entry &) noexcept {}
    static void grow_ahead(table &, std::int64_t) noexcept {}
};

template <typename Table, typename Entry> struct number_policy : keys_in_entries<Table, Entry> {
    using key = decltype(Entry::key);

    static std::uint64_t number(const Table &, key sought) noexcept { return sought; }
    static std::uint64_t number(const Entry &at) noexcept { return at.key; }
    static bool same(const Table &, const Entry &at, key sought) noexcept
    {
        return at.key == sought;
    }
    static bool matches(const Table &, const Entry &at, key sought, std::uint64_t) noexcept
    {
        return at.key == sought;
    }
    static void store(Table &, Entry &at, key sought, std::uint64_t) noexcept { at.key = sought; }
};

// The hash of a number's bytes, low byte first. For callers: the tables never ask for it.
template <int Width> std::uint32_t of_number(std::uint64_t number) noexcept
{
    std::uint8_t bytes[Width];
    cursor::store_low_first<Width>(bytes, number);
    return of_bytes(bytes, Width);
}

} // namespace qek::hash
