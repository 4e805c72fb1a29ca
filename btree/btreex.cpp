// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The key tree with a 64-bit key.

#include "btree/number_keyed.h"

using namespace qek;

namespace {

using policy = btree::number_policy<qek_btreex, qek_btreex_page, qek_btreex_node, 3, 4, 6>;

} // namespace

void qek_btreex_init(qek_btreex *btree, int32_t own_page_pool, int32_t own_node_pool,
                     int32_t own_value_pool)
{
    btree::init_numbers<policy>(*btree, own_page_pool, own_node_pool, own_value_pool);
}

void qek_btreex_term(qek_btreex *btree) { btree::term<policy>(*btree); }

void qek_btreex_swap(qek_btreex *a, qek_btreex *b) { btree::swap(*a, *b, &qek_btreex::key_type); }

void qek_btreex_clone(const qek_btreex *source, qek_pool *source_aux_pool, qek_btreex *target,
                      qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    btree::clone<policy>(*source, source_aux_pool, *target, target_aux_pool, clone_value, [] {});
}

int32_t qek_btreex_node_set(qek_btreex *btree, uint64_t key, qek_btreex_node **node_out)
{
    return btree::node_set<policy>(*btree, key, *node_out);
}

qek_btreex_node *qek_btreex_node_get(const qek_btreex *btree, uint64_t key)
{
    return btree::find<policy>(*btree, key);
}

qek_btreex_node *qek_btreex_node_first(const qek_btreex *btree)
{
    return btree::first_node<qek_btreex_node>(btree->root);
}

qek_btreex_node *qek_btreex_node_last(const qek_btreex *btree)
{
    return btree::last_node<qek_btreex_node>(btree->root);
}

qek_btreex_node *qek_btreex_node_bfind(const qek_btreex *btree, uint64_t key)
{
    return btree::find_nearest<policy>(*btree, key);
}

qek_btreex_node *qek_btreex_node_find(const qek_btreex *btree, uint64_t key)
{
    return btree::find<policy>(*btree, key);
}

int32_t qek_btreex_set(qek_btreex *btree, uint64_t key, qek_word *value_out,
                       qek_value_fn init_value)
{
    return btree::set<policy>(*btree, key, *value_out, init_value);
}

qek_word qek_btreex_get(const qek_btreex *btree, uint64_t key)
{
    return btree::get<policy>(*btree, key);
}

int32_t qek_btreex_insert(qek_btreex *btree, uint64_t key, qek_word value)
{
    return btree::insert<policy>(*btree, key, value);
}

qek_word qek_btreex_update(qek_btreex *btree, uint64_t key, qek_word value)
{
    return btree::update<policy>(*btree, key, value);
}

int32_t qek_btreex_find(const qek_btreex *btree, uint64_t key)
{
    return btree::find<policy>(*btree, key) != nullptr;
}

qek_word qek_btreex_remove(qek_btreex *btree, uint64_t key)
{
    return btree::remove<policy>(*btree, key);
}

void qek_btreex_remove_all(qek_btreex *btree) { btree::remove_all<policy>(*btree); }

void qek_btreex_free_all(qek_btreex *btree, qek_value_fn free_value)
{
    btree::free_all<policy>(*btree, free_value);
}
