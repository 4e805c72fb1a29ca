// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The array of pairs with a 64-bit key.

#include "array/number_keyed.h"

using namespace qek;
namespace keyed = array::keyed;

namespace {

using policy = array::number_policy<qek_arrayx>;

} // namespace

void qek_arrayx_init(qek_arrayx *record, int32_t use_pool) { array::init(*record, use_pool); }

void qek_arrayx_term(qek_arrayx *record) { array::term(*record); }

int32_t qek_arrayx_expand(qek_arrayx *record, int32_t want) { return array::expand(*record, want); }

void qek_arrayx_swap(qek_arrayx *record, qek_arrayx *other) { array::swap_slots(*record, *other); }

void qek_arrayx_clone(const qek_arrayx *source, qek_pool *source_aux_pool, qek_arrayx *target,
                      qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    array::clone(*source, source_aux_pool, *target, target_aux_pool, clone_value, [] {});
}

void qek_arrayx_append(qek_arrayx *record, uint64_t key, qek_word value)
{
    policy::append(*record, key, value);
}

qek_word qek_arrayx_append_new(qek_arrayx *record, uint64_t key, qek_value_fn init_value)
{
    return keyed::append_new<policy>(*record, key, init_value);
}

void qek_arrayx_append_array(qek_arrayx *record, const qek_arrayx *source)
{
    array::append_all(*record, *source);
}

qek_word qek_arrayx_get_at(const qek_arrayx *record, int32_t index, uint64_t *key_out)
{
    return array::get_pair(*record, index, *key_out);
}

qek_word qek_arrayx_set_at(qek_arrayx *record, int32_t index, uint64_t key, qek_word value)
{
    return array::set_pair(*record, index, key, value);
}

qek_word qek_arrayx_update_at(qek_arrayx *record, int32_t index, qek_word value)
{
    return keyed::update_at(*record, index, value);
}

qek_word qek_arrayx_get_first(const qek_arrayx *record, uint64_t *key_out)
{
    return array::get_used_pair(*record, 0, *key_out);
}

qek_word qek_arrayx_get_last(const qek_arrayx *record, uint64_t *key_out)
{
    return array::get_used_pair(*record, record->count - 1, *key_out);
}

int32_t qek_arrayx_insert(qek_arrayx *record, uint64_t key, qek_word value)
{
    return keyed::insert<policy>(*record, key, value);
}

int32_t qek_arrayx_insert_new(qek_arrayx *record, uint64_t key, qek_word *value_out,
                              qek_value_fn init_value)
{
    return keyed::insert_new<policy>(*record, key, *value_out, init_value);
}

qek_word qek_arrayx_update(qek_arrayx *record, uint64_t key, qek_word value)
{
    return keyed::update_at(*record, keyed::find_index<policy>(*record, key), value);
}

qek_word qek_arrayx_remove(qek_arrayx *record, uint64_t key)
{
    return keyed::remove_at<policy>(*record, keyed::find_index<policy>(*record, key));
}

void qek_arrayx_free(qek_arrayx *record, uint64_t key, qek_value_fn free_value)
{
    keyed::free_at<policy>(*record, keyed::find_index<policy>(*record, key), free_value);
}

qek_word qek_arrayx_find(const qek_arrayx *record, uint64_t key)
{
    return keyed::value_at(*record, keyed::find_index<policy>(*record, key));
}

int32_t qek_arrayx_find_index(const qek_arrayx *record, uint64_t key)
{
    return keyed::find_index<policy>(*record, key);
}

qek_word qek_arrayx_afind(const qek_arrayx *record, uint64_t key)
{
    return keyed::value_at(*record, keyed::first_index<policy>(*record, key));
}

int32_t qek_arrayx_afind_index(const qek_arrayx *record, uint64_t key)
{
    return keyed::first_index<policy>(*record, key);
}

qek_word qek_arrayx_bfind(const qek_arrayx *record, uint64_t key)
{
    return keyed::value_at(*record, keyed::nearest_index<policy>(*record, key));
}

int32_t qek_arrayx_bfind_index(const qek_arrayx *record, uint64_t key)
{
    return keyed::nearest_index<policy>(*record, key);
}

qek_arrayx_entry *qek_arrayx_entry_insert(qek_arrayx *record, uint64_t key)
{
    return keyed::entry_insert<policy>(*record, key);
}

qek_arrayx_entry *qek_arrayx_entry_find(const qek_arrayx *record, uint64_t key)
{
    return keyed::entry_find<policy>(*record, key);
}

void qek_arrayx_insert_at(qek_arrayx *record, int32_t index, uint64_t key, qek_word value)
{
    policy::insert_at(*record, index, key, value);
}

qek_word qek_arrayx_remove_at(qek_arrayx *record, int32_t index, uint64_t *key_out)
{
    return array::remove_pair(*record, index, *key_out);
}

void qek_arrayx_free_at(qek_arrayx *record, int32_t index, qek_value_fn free_value)
{
    keyed::free_at<policy>(*record, index, free_value);
}

void qek_arrayx_remove_all(qek_arrayx *record) { array::remove_all(*record); }

void qek_arrayx_free_all(qek_arrayx *record, qek_value_fn free_value)
{
    array::free_all(*record, free_value);
}

void qek_arrayx_qsort(qek_arrayx *record, int32_t ascending)
{
    array::sort_by_key(*record, ascending);
}

void qek_arrayx_qsort_x(qek_arrayx *record, int32_t ascending, qek_value_compare_fn compare)
{
    keyed::sort_by_value(*record, ascending, compare);
}
