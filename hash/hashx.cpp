// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The hash table with a 64-bit key. Keys are not hashed: they spread by their low bits.

#include "hash/word_keyed.h"

using namespace qek;

namespace {

using policy = hash::number_policy<qek_hashx, qek_hashx_entry>;

} // namespace

uint32_t qek_hashx_key(uint64_t key) { return hash::of_number<8>(key); }

void qek_hashx_init(qek_hashx *hash, int32_t own_entry_pool, int32_t own_value_pool)
{
    hash::init<qek_hashx_entry>(*hash, own_entry_pool, own_value_pool);
}

void qek_hashx_term(qek_hashx *hash) { hash::term(*hash); }

void qek_hashx_swap(qek_hashx *a, qek_hashx *b) { exchange(*a, *b); }

void qek_hashx_clone(const qek_hashx *source, qek_pool *source_aux_pool, qek_hashx *target,
                     qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    hash::clone<qek_hashx_entry>(*source, source_aux_pool, *target, target_aux_pool, clone_value,
                                 [] {});
}

int32_t qek_hashx_entry_set(qek_hashx *hash, uint64_t key, qek_hashx_entry **entry_out)
{
    return hash::entry_set<policy>(*hash, key, *entry_out);
}

qek_hashx_entry *qek_hashx_entry_get(const qek_hashx *hash, uint64_t key)
{
    return hash::find<policy>(*hash, key);
}

qek_hashx_entry *qek_hashx_entry_first(const qek_hashx *hash, int32_t *bucket_out)
{
    return hash::first<qek_hashx_entry>(*hash, *bucket_out);
}

qek_hashx_entry *qek_hashx_entry_next(const qek_hashx *hash, int32_t *bucket_inout,
                                      const qek_hashx_entry *entry)
{
    return hash::next(*hash, *bucket_inout, entry);
}

int32_t qek_hashx_set(qek_hashx *hash, uint64_t key, qek_word *value_out, qek_value_fn init_value)
{
    return hash::set<policy>(*hash, key, *value_out, init_value);
}

qek_word qek_hashx_get(const qek_hashx *hash, uint64_t key)
{
    return hash::get<policy>(*hash, key);
}

int32_t qek_hashx_insert(qek_hashx *hash, uint64_t key, qek_word value)
{
    return hash::insert<policy>(*hash, key, value);
}

qek_word qek_hashx_update(qek_hashx *hash, uint64_t key, qek_word value)
{
    return hash::update<policy>(*hash, key, value);
}

int32_t qek_hashx_find(const qek_hashx *hash, uint64_t key)
{
    return hash::find<policy>(*hash, key) != nullptr;
}

qek_word qek_hashx_remove(qek_hashx *hash, uint64_t key)
{
    return hash::remove<policy>(*hash, key);
}

void qek_hashx_free(qek_hashx *hash, uint64_t key, qek_value_fn free_value)
{
    hash::free<policy>(*hash, key, free_value);
}

void qek_hashx_remove_all(qek_hashx *hash) { hash::remove_all<qek_hashx_entry>(*hash); }

void qek_hashx_free_all(qek_hashx *hash, qek_value_fn free_value)
{
    hash::free_all<qek_hashx_entry>(*hash, free_value);
}
