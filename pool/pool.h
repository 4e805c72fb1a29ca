// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The item pool: fixed-size items in blocks that never move, and a stack of the freed ones.
//
// Shape. Two tables of blocks. `items` is filled once, from the front; `freed` is a stack of item
// pointers that grows into blocks of its own, so that a freed item keeps every byte:
//
//     items.blocks --> [ B0 | B1 | B2 | 0 ]         freed.blocks --> [ F0 | F1 | F2 | 0 ]
//                        |    |    `- slots up to next_slot            |    `- top: next_slot - 1
//                        `----`------ full                             `------ full
//
// Invariants, with n = items_per_block:
//   slots handed out        = (items.used - 1) * n + items.next_slot, or 0 when used is 0
//   entries on the stack    = (freed.used - 1) * n + freed.next_slot, or 0 when used is 0
//   live_count              = slots handed out - entries on the stack
//   next_slot is -1 when used is 0, else in 0..n. A stack whose current block was emptied stands at
//   next_slot 0 and leaves that block only on the next take; the block stays in the table, so that
//   blocks from `used` up may be null or left over.
//
// Cost. Take and give are constant time and touch the heap only to open a block. Nothing goes back
// to the heap but everything at once.
//
// No allocation of a pool is checked: exhaustion faults in the first write to the block.
//
// Turned down: a free list threaded through the items. It would save the second table, and cost the
// bytes of freed items, items smaller than a pointer, and the walk over live items.
#pragma once

#include "base/arith.h"
#include "base/heap.h"
#include "qek_std.h"

#include <cstdint>

namespace qek::pool {

inline constexpr std::int32_t least_items_per_block = 16;

inline void reset(qek_pool_table &table) noexcept { table = {-1, 0, 0, nullptr}; }

inline void init(qek_pool &pool) noexcept
{
    pool.item_size = 0;
    pool.items_per_block = 0;
    pool.live_count = 0;
    reset(pool.items);
    reset(pool.freed);
}

void empty(qek_pool &pool) noexcept;

inline void **freed_entries(const qek_pool_table &freed, std::int32_t block) noexcept
{
    return static_cast<void **>(freed.blocks[block]);
}

// Whether the block at hand has a slot left. A slot below 0 is above all others here.
inline bool has_room(const qek_pool_table &table, const qek_pool &pool) noexcept
{
    return static_cast<std::uint32_t>(table.next_slot) <
           static_cast<std::uint32_t>(pool.items_per_block);
}

// Slots that were handed out, live or freed, of a pool that handed out any.
inline std::int64_t slots_handed_out(const qek_pool &pool) noexcept
{
    return (wide(pool.items.used) - 1) * pool.items_per_block + pool.items.next_slot;
}

// Runs `visit(item)` over all of them, in the order of memory.
template <typename Item, typename Visit>
void for_each_slot(const qek_pool &pool, Visit visit) noexcept
{
    for (std::int32_t block = 0; block < pool.items.used; ++block) {
        auto *const items = static_cast<Item *>(pool.items.blocks[block]);
        const bool is_last = block + 1 == pool.items.used;
        const std::int32_t count = is_last ? pool.items.next_slot : pool.items_per_block;
        for (std::int32_t at = 0; at < count; ++at) {
            visit(items[at]);
        }
    }
}

// The same over the freed items, which lie about in memory: the next ones are fetched ahead.
template <typename Item, typename Visit>
void for_each_freed(const qek_pool &pool, Visit visit) noexcept
{
    constexpr std::int32_t ahead = 8;
    for (std::int32_t block = 0; block < pool.freed.used; ++block) {
        void *const *const items = freed_entries(pool.freed, block);
        const bool is_last = block + 1 == pool.freed.used;
        const std::int32_t count = is_last ? pool.freed.next_slot : pool.items_per_block;
        for (std::int32_t at = 0; at < count; ++at) {
            __builtin_prefetch(items[smaller(at + ahead, count - 1)]);
            visit(*static_cast<Item *>(items[at]));
        }
    }
}

// `take` and `give` in full.
void *take_anywhere(qek_pool &pool) noexcept;
qek_word give_anywhere(qek_pool &pool, void *item, qek_word answer) noexcept;

// `take` where the block at hand serves, and null where it does not. Without a call, a third of the
// time of a list that is filled and drained.
inline void *take_at_hand(qek_pool &pool) noexcept
{
    if (pool.item_size != 0 && pool.items_per_block >= least_items_per_block) {
        qek_pool_table &freed = pool.freed;
        qek_pool_table &items = pool.items;
        if (freed.next_slot > 0) {
            void *const item = freed_entries(freed, freed.used - 1)[freed.next_slot - 1];
            if (item != nullptr) { // as what was no item of a copied pool became
                --freed.next_slot;
                ++pool.live_count;
                return item;
            }
        }
        if (freed.next_slot < 0 && has_room(items, pool)) {
            ++pool.live_count;
            auto *base = static_cast<std::uint8_t *>(items.blocks[items.used - 1]);
            return base + wide(items.next_slot++) * pool.item_size;
        }
    }
    return nullptr;
}

// A recycled item keeps its bytes; a fresh one is zero. Null for an item size of 0.
inline void *take(qek_pool &pool) noexcept
{
    void *const item = take_at_hand(pool);
    return item != nullptr ? item : take_anywhere(pool);
}

// Null is ignored. The answer is for who gives an item as the last thing, and then makes no call that
// anything has to be kept for.
inline qek_word give(qek_pool &pool, void *item, qek_word answer = 0) noexcept
{
    qek_pool_table &freed = pool.freed;
    if (item != nullptr && pool.items_per_block >= least_items_per_block && has_room(freed, pool)) {
        freed_entries(freed, freed.used - 1)[freed.next_slot++] = item;
        --pool.live_count;
        return answer;
    }
    return give_anywhere(pool, item, answer);
}

inline int order_addresses(const void *a, const void *b) noexcept
{
    const auto first = reinterpret_cast<std::uintptr_t>(a);
    const auto second = reinterpret_cast<std::uintptr_t>(b);
    return static_cast<int>(first > second) - static_cast<int>(first < second);
}

// A pool record of the library's own making. It is not checked: exhaustion faults.
qek_pool *made(std::size_t item_size) noexcept;

// The index of the item blocks by address, or null when there are none.
qek_pool_map_entry *map(const qek_pool &pool) noexcept;

std::int32_t get_addr(const qek_pool &pool, const qek_pool_map_entry *map, const void *item,
                      std::uint32_t &offset) noexcept;

inline void *set_addr(const qek_pool &pool, std::int32_t block_index, std::uint32_t offset) noexcept
{
    return block_index < 0 ? nullptr
                           : static_cast<std::uint8_t *>(pool.items.blocks[block_index]) + offset;
}

// The same item in the copy of a pool. Null stays null.
void *translated(const qek_pool &source, const qek_pool_map_entry *map, const void *item,
                 const qek_pool &target) noexcept;

void clone(const qek_pool &source, const qek_pool_map_entry *map, qek_pool &target) noexcept;

} // namespace qek::pool
