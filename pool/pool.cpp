// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The exported pool, and its core.

#include "pool/pool.h"

#include "base/bytes.h"
#include "base/exchange.h"
#include "base/growth.h"

#include <cstdlib>

namespace qek::pool {

namespace {

void release(qek_pool_table &table) noexcept
{
    for (std::int32_t at = 0; at < table.capacity; ++at) {
        give_block(table.blocks[at]);
    }
    give_block(table.blocks);
    reset(table);
}

// Without memory it faults here, at the head of the table. The place of a block far behind, off
// null, can be somebody's.
void **empty_table(std::int64_t capacity) noexcept
{
    constexpr auto entry_size = static_cast<std::int64_t>(sizeof(void *));
    return static_cast<void **>(take_zeroed(capacity * entry_size));
}

void make_room_for_block(qek_pool_table &table) noexcept
{
    if (table.capacity > table.used) {
        return;
    }
    const std::int64_t capacity =
        rounded_up(grown(table.used, table.capacity, 0, pool_table_steps), 4);
    void **blocks = empty_table(capacity);
    move_units(blocks, table.blocks, table.capacity);
    give_block(table.blocks);
    table.blocks = blocks;
    table.capacity = static_cast<std::int32_t>(capacity);
}

// Opens the block behind the current one, which may stand there already from an earlier use.
void open_block(qek_pool_table &table, std::int64_t bytes) noexcept
{
    make_room_for_block(table);
    if (table.blocks[table.used] == nullptr) {
        table.blocks[table.used] = take_zeroed(bytes);
    }
    table.next_slot = 0;
    ++table.used;
}

std::int64_t item_block_bytes(const qek_pool &pool) noexcept
{
    return wide(pool.items_per_block) * pool.item_size;
}

std::int64_t freed_block_bytes(const qek_pool &pool) noexcept
{
    return wide(pool.items_per_block) * static_cast<std::int64_t>(sizeof(void *));
}

int order_by_base(const void *a, const void *b)
{
    return order_addresses(static_cast<const qek_pool_map_entry *>(a)->block_base,
                           static_cast<const qek_pool_map_entry *>(b)->block_base);
}

bool is_sorted(const qek_pool_map_entry *entries, std::size_t count) noexcept
{
    std::size_t at = 1;
    while (at < count && order_by_base(entries + at - 1, entries + at) < 0) {
        ++at;
    }
    return at >= count;
}

void clone_items(const qek_pool &source, qek_pool &target) noexcept
{
    const std::size_t bytes = block_size(item_block_bytes(source));
    target.items.blocks = empty_table(source.items.capacity);
    for (std::int32_t at = 0; at < source.items.used; ++at) {
        target.items.blocks[at] = take_block(bytes);
        std::memcpy(target.items.blocks[at], source.items.blocks[at], bytes);
    }
}

// Every entry of a block in use is translated, those above the top of the stack too.
void clone_freed(const qek_pool &source, const qek_pool_map_entry *map, qek_pool &target) noexcept
{
    target.freed.blocks = empty_table(source.freed.capacity);
    for (std::int32_t at = 0; at < source.freed.used; ++at) {
        target.freed.blocks[at] = take_zeroed(freed_block_bytes(source));
        void *const *from = freed_entries(source.freed, at);
        void **to = freed_entries(target.freed, at);
        for (std::int32_t entry = 0; entry < source.items_per_block; ++entry) {
            to[entry] = translated(source, map, from[entry], target);
        }
    }
}

void copy_counts(const qek_pool_table &source, qek_pool_table &target) noexcept
{
    target.next_slot = source.next_slot;
    target.used = source.used;
    target.capacity = source.capacity;
}

void settle_items_per_block(qek_pool &pool) noexcept
{
    pool.items_per_block = larger(pool.items_per_block, least_items_per_block);
}

void *take_freed(qek_pool &pool) noexcept
{
    qek_pool_table &freed = pool.freed;
    if (freed.used == 0) {
        return nullptr;
    }
    if (freed.next_slot <= 0) {
        --freed.used;
        freed.next_slot = freed.used == 0 ? -1 : pool.items_per_block;
        if (freed.used == 0) {
            return nullptr;
        }
    }
    --freed.next_slot;
    return freed_entries(freed, freed.used - 1)[freed.next_slot];
}

void *take_fresh(qek_pool &pool) noexcept
{
    qek_pool_table &items = pool.items;
    if (!has_room(items, pool)) {
        open_block(items, item_block_bytes(pool));
    }
    auto *base = static_cast<std::uint8_t *>(items.blocks[items.used - 1]);
    return base + wide(items.next_slot++) * pool.item_size;
}

} // namespace

void empty(qek_pool &pool) noexcept
{
    release(pool.freed);
    release(pool.items);
    pool.live_count = 0;
}

[[gnu::noinline]] void *take_anywhere(qek_pool &pool) noexcept
{
    if (pool.item_size == 0) {
        return nullptr;
    }
    settle_items_per_block(pool);
    void *item = take_freed(pool);
    if (item == nullptr) {
        item = take_fresh(pool);
    }
    ++pool.live_count;
    return item;
}

[[gnu::noinline]] qek_word give_anywhere(qek_pool &pool, void *item, qek_word answer) noexcept
{
    if (item == nullptr) {
        return answer;
    }
    qek_pool_table &freed = pool.freed;
    settle_items_per_block(pool);
    if (!has_room(freed, pool)) {
        open_block(freed, freed_block_bytes(pool));
    }
    freed_entries(freed, freed.used - 1)[freed.next_slot++] = item;
    --pool.live_count;
    return answer;
}

qek_pool *made(std::size_t item_size) noexcept
{
    auto *pool = static_cast<qek_pool *>(take_block(sizeof(qek_pool)));
    init(*pool);
    pool->item_size = static_cast<std::int32_t>(item_size);
    return pool;
}

qek_pool_map_entry *map(const qek_pool &pool) noexcept
{
    if (pool.items.blocks == nullptr) {
        return nullptr;
    }
    const auto count = static_cast<std::size_t>(pool.items.used);
    auto *entries =
        static_cast<qek_pool_map_entry *>(take_block(count * sizeof(qek_pool_map_entry)));
    for (std::int32_t at = 0; at < pool.items.used; ++at) {
        entries[at] = {at, pool.items.blocks[at]};
    }
    if (!is_sorted(entries, count)) {
        std::qsort(entries, count, sizeof *entries, order_by_base);
    }
    return entries;
}

std::int32_t get_addr(const qek_pool &pool, const qek_pool_map_entry *map, const void *item,
                      std::uint32_t &offset) noexcept
{
    if (item == nullptr) {
        return -1;
    }
    std::int32_t low = 0;
    std::int32_t high = pool.items.used - 1;
    while (low <= high) {
        const std::int32_t mid = low + (high - low) / 2;
        if (order_addresses(map[mid].block_base, item) > 0) {
            high = mid - 1;
        } else {
            low = mid + 1;
        }
    }
    if (high < 0) {
        return -1;
    }
    offset = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(item) -
                                        reinterpret_cast<std::uintptr_t>(map[high].block_base));
    return map[high].block_index;
}

void *translated(const qek_pool &source, const qek_pool_map_entry *map, const void *item,
                 const qek_pool &target) noexcept
{
    std::uint32_t offset = 0;
    const std::int32_t block = get_addr(source, map, item, offset);
    return set_addr(target, block, offset);
}

void clone(const qek_pool &source, const qek_pool_map_entry *map, qek_pool &target) noexcept
{
    target.item_size = source.item_size;
    target.items_per_block = source.items_per_block;
    target.live_count = source.live_count;
    if (source.items.blocks != nullptr) {
        clone_items(source, target);
        if (source.freed.blocks != nullptr) {
            clone_freed(source, map, target);
        }
    }
    copy_counts(source.items, target.items);
    copy_counts(source.freed, target.freed);
}

} // namespace qek::pool

using namespace qek;

void qek_pool_init(qek_pool *pool) { pool::init(*pool); }

void qek_pool_term(qek_pool *pool) { pool::empty(*pool); }

void qek_pool_empty(qek_pool *pool) { pool::empty(*pool); }

void *qek_pool_new(qek_pool *pool) { return pool::take(*pool); }

void qek_pool_free(qek_pool *pool, void *item) { pool::give(*pool, item); }

void qek_pool_swap(qek_pool *first, qek_pool *second) { exchange(*first, *second); }

qek_pool_map_entry *qek_pool_map(const qek_pool *pool) { return pool::map(*pool); }

void qek_pool_umap(qek_pool_map_entry *map) { give_block(map); }

int32_t qek_pool_get_addr(const qek_pool *pool, const qek_pool_map_entry *map, const void *item,
                          uint32_t *offset)
{
    return pool::get_addr(*pool, map, item, *offset);
}

void *qek_pool_set_addr(const qek_pool *pool, int32_t block_index, uint32_t offset)
{
    return pool::set_addr(*pool, block_index, offset);
}

void qek_pool_clone(const qek_pool *source, const qek_pool_map_entry *map, qek_pool *target)
{
    pool::clone(*source, map, *target);
}
