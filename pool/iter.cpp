// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Walking the live items of a pool.
//
// Live and freed items lie mixed in the same blocks and bear no mark. An iterator takes a sorted
// copy of the stack of freed items when it is made, and passes over every slot that it finds there.
// The count of that copy is read from the pool at each step, so neither may change in between.

#include "pool/pool.h"

#include <cstdlib>

using namespace qek;

namespace {

// Of a pool that has any.
std::int32_t freed_count(const qek_pool &pool) noexcept
{
    return (pool.freed.used - 1) * pool.items_per_block + pool.freed.next_slot;
}

void *item_in(const void *entry) noexcept { return *static_cast<void *const *>(entry); }

int order_entries(const void *a, const void *b)
{
    return pool::order_addresses(item_in(a), item_in(b));
}

void **sorted_freed(const qek_pool &pool) noexcept
{
    if (pool.freed.used == 0) {
        return nullptr;
    }
    const auto count = static_cast<std::size_t>(freed_count(pool));
    const auto block_entries = static_cast<std::size_t>(pool.items_per_block);
    auto **sorted = static_cast<void **>(take_block(count * sizeof(void *)));
    for (std::size_t at = 0; at < count; ++at) {
        const auto block = static_cast<std::int32_t>(at / block_entries);
        sorted[at] = pool::freed_entries(pool.freed, block)[at % block_entries];
    }
    std::qsort(sorted, count, sizeof *sorted, order_entries);
    return sorted;
}

qek_pool_iter *start(const qek_pool &pool) noexcept
{
    auto *iter = static_cast<qek_pool_iter *>(take_block(sizeof(qek_pool_iter)));
    *iter = {0, 0, nullptr, const_cast<qek_pool *>(&pool)};
    iter->freed_sorted = sorted_freed(pool);
    return iter;
}

void finish(qek_pool_iter *iter) noexcept
{
    give_block(iter->freed_sorted);
    give_block(iter);
}

bool is_freed(const qek_pool_iter &iter, const void *item) noexcept
{
    return iter.freed_sorted != nullptr &&
           std::bsearch(&item, iter.freed_sorted, static_cast<std::size_t>(freed_count(*iter.pool)),
                        sizeof(void *), order_entries) != nullptr;
}

// Moves the cursor to the next slot that was ever handed out. False at the end.
bool step(qek_pool_iter &iter) noexcept
{
    const qek_pool &pool = *iter.pool;
    if (iter.block >= pool.items.used) {
        return false;
    }
    ++iter.slot;
    if (iter.block == pool.items.used - 1) {
        return iter.slot < pool.items.next_slot;
    }
    if (iter.slot >= pool.items_per_block) {
        ++iter.block;
        iter.slot = 0;
    }
    return true;
}

void *next(qek_pool_iter &iter) noexcept
{
    while (step(iter)) {
        auto *base = static_cast<std::uint8_t *>(iter.pool->items.blocks[iter.block]);
        void *item = base + wide(iter.slot) * iter.pool->item_size;
        if (!is_freed(iter, item)) {
            return item;
        }
    }
    return nullptr;
}

void *first(qek_pool_iter &iter) noexcept
{
    iter.block = 0;
    iter.slot = -1;
    return next(iter);
}

} // namespace

qek_pool_iter *qek_pool_iter_new(const qek_pool *pool) { return start(*pool); }

void qek_pool_iter_free(qek_pool_iter *iter) { finish(iter); }

void *qek_pool_iter_first(qek_pool_iter *iter) { return first(*iter); }

void *qek_pool_iter_next(qek_pool_iter *iter) { return next(*iter); }
