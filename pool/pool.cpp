// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The exported pool.

#include "pool/pool.h"

using namespace qek;

void qek_pool_init(qek_pool *pool) { pool::init(*pool); }

void qek_pool_term(qek_pool *pool) { pool::empty(*pool); }

void qek_pool_empty(qek_pool *pool) { pool::empty(*pool); }

void *qek_pool_new(qek_pool *pool) { return pool::take(*pool); }

void qek_pool_free(qek_pool *pool, void *item) { pool::give(*pool, item); }

void qek_pool_swap(qek_pool *first, qek_pool *second)
{
    const qek_pool kept = *first;
    *first = *second;
    *second = kept;
}

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
