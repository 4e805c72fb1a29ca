// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The hash table with a 32-bit key. Keys are not hashed: they spread by their low bits.

#include "hash/word_keyed.h"

using namespace qek;

namespace {

using policy = hash::number_policy<qek_hashd, qek_hashd_entry>;

} // namespace

uint32_t qek_hashd_key(uint32_t key) { return hash::of_number<4>(key); }

void qek_hashd_init(qek_hashd *hash, int32_t own_entry_pool, int32_t own_value_pool)
{
    hash::init<qek_hashd_entry>(*hash, own_entry_pool, own_value_pool);
}

void qek_hashd_term(qek_hashd *hash) { hash::term(*hash); }

void qek_hashd_swap(qek_hashd *a, qek_hashd *b) { exchange(*a, *b); }

void qek_hashd_clone(const qek_hashd *source, qek_pool *source_aux_pool, qek_hashd *target,
                     qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    hash::clone<qek_hashd_entry>(*source, source_aux_pool, *target, target_aux_pool, clone_value,
                                 [] {});
}

int32_t qek_hashd_entry_set(qek_hashd *hash, uint32_t key, qek_hashd_entry **entry_out)
{
    return hash::entry_set<policy>(*hash, key, *entry_out);
}

qek_hashd_entry *qek_hashd_entry_get(const qek_hashd *hash, uint32_t key)
{
    return hash::find<policy>(*hash, key);
}

qek_hashd_entry *qek_hashd_entry_first(const qek_hashd *hash, int32_t *bucket_out)
{
    return hash::first<qek_hashd_entry>(*hash, *bucket_out);
}

qek_hashd_entry *qek_hashd_entry_next(const qek_hashd *hash, int32_t *bucket_inout,
                                      const qek_hashd_entry *entry)
{
    return hash::next(*hash, *bucket_inout, entry);
}

int32_t qek_hashd_set(qek_hashd *hash, uint32_t key, qek_word *value_out, qek_value_fn init_value)
{
    return hash::set<policy>(*hash, key, *value_out, init_value);
}

qek_word qek_hashd_get(const qek_hashd *hash, uint32_t key)
{
    return hash::get<policy>(*hash, key);
}

int32_t qek_hashd_insert(qek_hashd *hash, uint32_t key, qek_word value)
{
    return hash::insert<policy>(*hash, key, value);
}

qek_word qek_hashd_update(qek_hashd *hash, uint32_t key, qek_word value)
{
    return hash::update<policy>(*hash, key, value);
}

int32_t qek_hashd_find(const qek_hashd *hash, uint32_t key)
{
    return hash::find<policy>(*hash, key) != nullptr;
}

qek_word qek_hashd_remove(qek_hashd *hash, uint32_t key)
{
    return hash::remove<policy>(*hash, key);
}

void qek_hashd_free(qek_hashd *hash, uint32_t key, qek_value_fn free_value)
{
    hash::free<policy>(*hash, key, free_value);
}

void qek_hashd_remove_all(qek_hashd *hash) { hash::remove_all<qek_hashd_entry>(*hash); }

void qek_hashd_free_all(qek_hashd *hash, qek_value_fn free_value)
{
    hash::free_all<qek_hashd_entry>(*hash, free_value);
}
