// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The hash table with a 16-byte key, opaque but for its identity. No hash is stored, so a rehash
// works it out again for each entry.

#include "hash/word_keyed.h"

using namespace qek;

namespace {

constexpr std::int32_t key_size = sizeof qek_hasht_entry{}.key;

std::uint32_t hash_of(const void *key) noexcept { return hash::of_bytes(as_bytes(key), key_size); }

struct policy : hash::keys_in_entries<qek_hasht, qek_hasht_entry> {
    using key = const void *;

    static std::uint64_t number(const table &, key sought) noexcept { return hash_of(sought); }
    static std::uint64_t number(const entry &at) noexcept { return hash_of(at.key); }
    static bool same(const table &, const entry &at, key sought) noexcept
    {
        return std::memcmp(at.key, sought, key_size) == 0;
    }
    static bool matches(const table &of, const entry &at, key sought, std::uint64_t) noexcept
    {
        return same(of, at, sought);
    }
    static void store(table &, entry &at, key sought, std::uint64_t) noexcept
    {
        std::memcpy(at.key, sought, key_size);
    }
};

} // namespace

uint32_t qek_hasht_key(const void *key) { return hash_of(key); }

void qek_hasht_init(qek_hasht *hash, int32_t own_entry_pool, int32_t own_value_pool)
{
    hash::init<qek_hasht_entry>(*hash, own_entry_pool, own_value_pool);
}

void qek_hasht_term(qek_hasht *hash) { hash::term(*hash); }

void qek_hasht_swap(qek_hasht *a, qek_hasht *b) { exchange(*a, *b); }

void qek_hasht_clone(const qek_hasht *source, qek_pool *source_aux_pool, qek_hasht *target,
                     qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    hash::clone<qek_hasht_entry>(*source, source_aux_pool, *target, target_aux_pool, clone_value,
                                 [] {});
}

int32_t qek_hasht_entry_set(qek_hasht *hash, const void *key, qek_hasht_entry **entry_out)
{
    return hash::entry_set<policy>(*hash, key, *entry_out);
}

qek_hasht_entry *qek_hasht_entry_get(const qek_hasht *hash, const void *key)
{
    return hash::find<policy>(*hash, key);
}

int32_t qek_hasht_set(qek_hasht *hash, const void *key, qek_word *value_out,
                      qek_value_fn init_value)
{
    return hash::set<policy>(*hash, key, *value_out, init_value);
}

qek_word qek_hasht_get(const qek_hasht *hash, const void *key)
{
    return hash::get<policy>(*hash, key);
}

int32_t qek_hasht_insert(qek_hasht *hash, const void *key, qek_word value)
{
    return hash::insert<policy>(*hash, key, value);
}

qek_word qek_hasht_update(qek_hasht *hash, const void *key, qek_word value)
{
    return hash::update<policy>(*hash, key, value);
}

int32_t qek_hasht_find(const qek_hasht *hash, const void *key)
{
    return hash::find<policy>(*hash, key) != nullptr;
}

qek_word qek_hasht_remove(qek_hasht *hash, const void *key)
{
    return hash::remove<policy>(*hash, key);
}

void qek_hasht_free(qek_hasht *hash, const void *key, qek_value_fn free_value)
{
    hash::free<policy>(*hash, key, free_value);
}

void qek_hasht_remove_all(qek_hasht *hash) { hash::remove_all<qek_hasht_entry>(*hash); }

void qek_hasht_free_all(qek_hasht *hash, qek_value_fn free_value)
{
    hash::free_all<qek_hasht_entry>(*hash, free_value);
}
