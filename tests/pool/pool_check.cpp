// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "pool/pool_check.h"

#include <algorithm>
#include <cstdint>
#include <set>

using namespace std::string_literals;

namespace {

const char *table_fault(const qek_pool_table &table, std::int32_t per_block)
{
    const auto is_null = [](const void *block) { return block == nullptr; };
    return table.capacity < 0 || table.capacity % 4 != 0        ? "capacity"
           : (table.blocks == nullptr) != (table.capacity == 0) ? "blocks without capacity"
           : table.used < 0 || table.used > table.capacity      ? "used"
           : table.used == 0 && table.next_slot != -1           ? "next_slot without blocks"
           : table.used > 0 && table.next_slot < 0              ? "next_slot below 0"
           : table.next_slot > per_block                        ? "next_slot above a block"
           : std::any_of(table.blocks, table.blocks + table.used, is_null) ? "missing block"
                                                                           : nullptr;
}

std::int64_t entries(const qek_pool_table &table, std::int64_t per_block)
{
    return table.used == 0 ? 0 : (table.used - 1) * per_block + table.next_slot;
}

} // namespace

std::string qek_test::pool_fault(const qek_pool &pool)
{
    const std::int32_t per_block = pool.items_per_block;
    for (const qek_pool_table *table : {&pool.items, &pool.freed}) {
        if (const char *fault = table_fault(*table, per_block)) {
            return (table == &pool.items ? "items: "s : "freed: "s) + fault;
        }
    }
    std::set<const void *> live;
    for (std::int64_t at = 0; at < entries(pool.items, per_block); ++at) {
        const auto *block = static_cast<std::uint8_t *>(pool.items.blocks[at / per_block]);
        live.insert(block + at % per_block * pool.item_size);
    }
    bool are_slots = true;
    for (std::int64_t at = 0; at < entries(pool.freed, per_block); ++at) {
        void *const *block = static_cast<void **>(pool.freed.blocks[at / per_block]);
        are_slots = live.erase(block[at % per_block]) == 1 && are_slots;
    }
    return pool.items.used > 0 && per_block < 16 ? "items_per_block"
           : pool.items.next_slot == 0           ? "items: open block without an item"
           : !are_slots                          ? "freed: entry that is no slot, or twice"
           : std::ssize(live) != pool.live_count ? "live_count"
                                                 : "";
}
