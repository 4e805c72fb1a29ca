// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The key tree with a 32-bit key.

#include "btree/number_keyed.h"

using namespace qek;

namespace {

using policy = btree::number_policy<qek_btreed, qek_btreed_page, qek_btreed_node, 1, 2, 5>;

} // namespace

void qek_btreed_init(qek_btreed *btree, int32_t own_page_pool, int32_t own_node_pool,
                     int32_t own_value_pool)
{
    btree::init_numbers<policy>(*btree, own_page_pool, own_node_pool, own_value_pool);
}

void qek_btreed_term(qek_btreed *btree) { btree::term<policy>(*btree); }

void qek_btreed_swap(qek_btreed *a, qek_btreed *b) { btree::swap(*a, *b, &qek_btreed::key_type); }

void qek_btreed_clone(const qek_btreed *source, qek_pool *source_aux_pool, qek_btreed *target,
                      qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    btree::clone<policy>(*source, source_aux_pool, *target, target_aux_pool, clone_value, [] {});
}

int32_t qek_btreed_node_set(qek_btreed *btree, uint32_t key, qek_btreed_node **node_out)
{
    return btree::node_set<policy>(*btree, key, *node_out);
}

qek_btreed_node *qek_btreed_node_get(const qek_btreed *btree, uint32_t key)
{
    return btree::find<policy>(*btree, key);
}

qek_btreed_node *qek_btreed_node_first(const qek_btreed *btree)
{
    return btree::first_node<qek_btreed_node>(btree->root);
}

qek_btreed_node *qek_btreed_node_last(const qek_btreed *btree)
{
    return btree::last_node<qek_btreed_node>(btree->root);
}

qek_btreed_node *qek_btreed_node_bfind(const qek_btreed *btree, uint32_t key)
{
    return btree::find_nearest<policy>(*btree, key);
}

qek_btreed_node *qek_btreed_node_find(const qek_btreed *btree, uint32_t key)
{
    return btree::find<policy>(*btree, key);
}

int32_t qek_btreed_set(qek_btreed *btree, uint32_t key, qek_word *value_out,
                       qek_value_fn init_value)
{
    return btree::set<policy>(*btree, key, *value_out, init_value);
}

qek_word qek_btreed_get(const qek_btreed *btree, uint32_t key)
{
    return btree::get<policy>(*btree, key);
}

int32_t qek_btreed_insert(qek_btreed *btree, uint32_t key, qek_word value)
{
    return btree::insert<policy>(*btree, key, value);
}

qek_word qek_btreed_update(qek_btreed *btree, uint32_t key, qek_word value)
{
    return btree::update<policy>(*btree, key, value);
}

int32_t qek_btreed_find(const qek_btreed *btree, uint32_t key)
{
    return btree::find<policy>(*btree, key) != nullptr;
}

qek_word qek_btreed_remove(qek_btreed *btree, uint32_t key)
{
    return btree::remove<policy>(*btree, key);
}

void qek_btreed_remove_all(qek_btreed *btree) { btree::remove_all<policy>(*btree); }

void qek_btreed_free_all(qek_btreed *btree, qek_value_fn free_value)
{
    btree::free_all<policy>(*btree, free_value);
}
