// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The array of pairs with a 32-bit key, and its text form, a list of decimal keys.

#include "array/number_keyed.h"
#include "text/separated.h"

using namespace qek;
namespace keyed = array::keyed;

namespace {

using policy = array::number_policy<qek_arrayd>;

void read_keys(qek_arrayd &array, std::uint8_t separator, const void *text,
               std::int32_t length) noexcept
{
    text::for_each_item(separator, text, length, [&](const qek_char &item) {
        policy::append(array, static_cast<std::uint32_t>(qek_char_get_long(&item)), 0);
    });
}

// Keys print as signed numbers.
void write_keys(const qek_arrayd &array, std::uint8_t separator, qek_string &target) noexcept
{
    text::join(
        target, separator, array::slots_in_use(array), wide(array.count) * 4, [&](std::int32_t at) {
            qek_string_append_integer(&target, static_cast<std::int32_t>(array.slots[at].key));
        });
}

} // namespace

void qek_arrayd_init(qek_arrayd *record, int32_t use_pool) { array::init(*record, use_pool); }

void qek_arrayd_term(qek_arrayd *record) { array::term(*record); }

int32_t qek_arrayd_expand(qek_arrayd *record, int32_t want) { return array::expand(*record, want); }

void qek_arrayd_swap(qek_arrayd *record, qek_arrayd *other) { array::swap_slots(*record, *other); }

void qek_arrayd_clone(const qek_arrayd *source, qek_pool *source_aux_pool, qek_arrayd *target,
                      qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    array::clone(*source, source_aux_pool, *target, target_aux_pool, clone_value, [] {});
}

void qek_arrayd_append(qek_arrayd *record, uint32_t key, qek_word value)
{
    policy::append(*record, key, value);
}

qek_word qek_arrayd_append_new(qek_arrayd *record, uint32_t key, qek_value_fn init_value)
{
    return keyed::append_new<policy>(*record, key, init_value);
}

void qek_arrayd_append_array(qek_arrayd *record, const qek_arrayd *source)
{
    array::append_all(*record, *source);
}

qek_word qek_arrayd_get_at(const qek_arrayd *record, int32_t index, uint32_t *key_out)
{
    return array::get_pair(*record, index, *key_out);
}

qek_word qek_arrayd_set_at(qek_arrayd *record, int32_t index, uint32_t key, qek_word value)
{
    return array::set_pair(*record, index, key, value);
}

qek_word qek_arrayd_update_at(qek_arrayd *record, int32_t index, qek_word value)
{
    return keyed::update_at(*record, index, value);
}

qek_word qek_arrayd_get_first(const qek_arrayd *record, uint32_t *key_out)
{
    return array::get_used_pair(*record, 0, *key_out);
}

qek_word qek_arrayd_get_last(const qek_arrayd *record, uint32_t *key_out)
{
    return array::get_used_pair(*record, record->count - 1, *key_out);
}

int32_t qek_arrayd_insert(qek_arrayd *record, uint32_t key, qek_word value)
{
    return keyed::insert<policy>(*record, key, value);
}

int32_t qek_arrayd_insert_new(qek_arrayd *record, uint32_t key, qek_word *value_out,
                              qek_value_fn init_value)
{
    return keyed::insert_new<policy>(*record, key, *value_out, init_value);
}

qek_word qek_arrayd_update(qek_arrayd *record, uint32_t key, qek_word value)
{
    return keyed::update_at(*record, keyed::find_index<policy>(*record, key), value);
}

qek_word qek_arrayd_remove(qek_arrayd *record, uint32_t key)
{
    return keyed::remove_at<policy>(*record, keyed::find_index<policy>(*record, key));
}

void qek_arrayd_free(qek_arrayd *record, uint32_t key, qek_value_fn free_value)
{
    keyed::free_at<policy>(*record, keyed::find_index<policy>(*record, key), free_value);
}

qek_word qek_arrayd_find(const qek_arrayd *record, uint32_t key)
{
    return keyed::value_at(*record, keyed::find_index<policy>(*record, key));
}

int32_t qek_arrayd_find_index(const qek_arrayd *record, uint32_t key)
{
    return keyed::find_index<policy>(*record, key);
}

qek_word qek_arrayd_afind(const qek_arrayd *record, uint32_t key)
{
    return keyed::value_at(*record, keyed::first_index<policy>(*record, key));
}

int32_t qek_arrayd_afind_index(const qek_arrayd *record, uint32_t key)
{
    return keyed::first_index<policy>(*record, key);
}

qek_word qek_arrayd_bfind(const qek_arrayd *record, uint32_t key)
{
    return keyed::value_at(*record, keyed::nearest_index<policy>(*record, key));
}

int32_t qek_arrayd_bfind_index(const qek_arrayd *record, uint32_t key)
{
    return keyed::nearest_index<policy>(*record, key);
}

qek_arrayd_entry *qek_arrayd_entry_insert(qek_arrayd *record, uint32_t key)
{
    return keyed::entry_insert<policy>(*record, key);
}

qek_arrayd_entry *qek_arrayd_entry_find(const qek_arrayd *record, uint32_t key)
{
    return keyed::entry_find<policy>(*record, key);
}

void qek_arrayd_insert_at(qek_arrayd *record, int32_t index, uint32_t key, qek_word value)
{
    policy::insert_at(*record, index, key, value);
}

qek_word qek_arrayd_remove_at(qek_arrayd *record, int32_t index, uint32_t *key_out)
{
    return array::remove_pair(*record, index, *key_out);
}

void qek_arrayd_free_at(qek_arrayd *record, int32_t index, qek_value_fn free_value)
{
    keyed::free_at<policy>(*record, index, free_value);
}

void qek_arrayd_remove_all(qek_arrayd *record) { array::remove_all(*record); }

void qek_arrayd_free_all(qek_arrayd *record, qek_value_fn free_value)
{
    array::free_all(*record, free_value);
}

void qek_arrayd_qsort(qek_arrayd *record, int32_t ascending)
{
    array::sort_by_key(*record, ascending);
}

void qek_arrayd_qsort_x(qek_arrayd *record, int32_t ascending, qek_value_compare_fn compare)
{
    keyed::sort_by_value(*record, ascending, compare);
}

void qek_arrayd_from_string(qek_arrayd *record, uint8_t separator, const void *text, int32_t length)
{
    read_keys(*record, separator, text, length);
}

void qek_arrayd_to_string(const qek_arrayd *record, uint8_t separator, qek_string *string)
{
    write_keys(*record, separator, *string);
}
