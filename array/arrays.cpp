// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The simple array: words whose order, if any, is a caller's callback. Storage is storage.h, the
// search search.h, the sort sort.h.

#include "array/search.h"
#include "array/sort.h"
#include "array/storage.h"
#include "base/exchange.h"

using namespace qek;

namespace {

// A caller's callback with what goes along with it, for a search (`key`, `key_extra`) as for a
// sort.
struct plain_order {
    qek_compare_fn compare;

    bool is_missing() const noexcept { return compare == nullptr; }
    std::int32_t operator()(qek_word item, qek_word key, std::int32_t key_extra) const
    {
        return compare(item, key, key_extra);
    }
};

struct context_order {
    void *context;
    qek_compare_x_fn compare;

    bool is_missing() const noexcept { return compare == nullptr; }
    std::int32_t operator()(qek_word item, qek_word key, std::int32_t key_extra) const
    {
        return compare(context, item, key, key_extra);
    }
};

struct sought {
    qek_word key;
    std::int32_t key_extra;
};

template <typename Order> bool has_no_order(const qek_arrays &array, Order order) noexcept
{
    return order.is_missing() || array.count == 0;
}

template <typename Order>
array::place locate(const qek_arrays &array, Order order, sought of) noexcept
{
    return array::locate(array.count, array.reversed != 0, [&](std::int32_t index) {
        return order(array::slot_at(array, index), of.key, of.key_extra);
    });
}

template <typename Order>
std::int32_t find_index(const qek_arrays &array, Order order, sought of) noexcept
{
    if (has_no_order(array, order)) {
        return -1;
    }
    const array::place at = locate(array, order, of);
    return at.found ? at.index : -1;
}

template <typename Order>
std::int32_t nearest_index(const qek_arrays &array, Order order, sought of) noexcept
{
    if (has_no_order(array, order)) {
        return -1;
    }
    return array::nearest(locate(array, order, of), array.count);
}

// Without an order or without a slot to compare with, the item goes to the end. The result says
// that the item was new, also when growth then failed: intended.
template <typename Order>
bool insert(qek_arrays &array, Order order, qek_word item, std::int32_t key_extra) noexcept
{
    if (has_no_order(array, order)) {
        array::append(array, item);
        return true;
    }
    const array::place at = locate(array, order, {item, key_extra});
    if (!at.found) {
        array::insert_at(array, at.index, item);
    }
    return !at.found;
}

template <typename Order>
std::int32_t insert_new(qek_arrays &array, Order order, sought of, qek_word &item,
                        qek_value_fn init_value) noexcept
{
    item = 0;
    if (has_no_order(array, order)) {
        array::append(array, pool::new_value(array.pool, init_value, item));
        return array.count - 1;
    }
    const array::place at = locate(array, order, of);
    if (at.found) {
        item = array::slot_at(array, at.index);
        return -1;
    }
    array::insert_at(array, at.index, pool::new_value(array.pool, init_value, item));
    return at.index;
}

qek_word append_new(qek_arrays &array, qek_value_fn init_value) noexcept
{
    if (!array::expand(array, wide(array.count) + 1)) {
        return 0;
    }
    const qek_word item = pool::new_value(array.pool, init_value);
    array::append(array, item);
    return item;
}

qek_word replace_at(qek_arrays &array, std::int32_t index, qek_word word) noexcept
{
    const qek_word old = array::slot_at(array, index);
    array::set_slot(array, index, word);
    return old;
}

qek_word remove_at(qek_arrays &array, std::int32_t index) noexcept
{
    if (!array::is_used(array, index)) {
        return 0;
    }
    const qek_word word = array::slot_at(array, index);
    array::shift_down(array, index);
    return word;
}

void free_at(qek_arrays &array, std::int32_t index, qek_value_fn free_value) noexcept
{
    if (array::is_used(array, index)) {
        array::disposal_of(array, free_value).of_nonzero(array::slot_at(array, index));
        array::shift_down(array, index);
    }
}

template <typename Order> void sort(qek_arrays &array, Order order, std::int32_t ascending) noexcept
{
    if (!order.is_missing()) {
        array::sort(array.slots, array::slots_in_use(array), ascending != 0,
                    [=](qek_word left, qek_word right) { return order(left, right, 0); });
    }
}

} // namespace

void qek_arrays_init(qek_arrays *record, int32_t use_pool) { array::init(*record, use_pool); }

void qek_arrays_term(qek_arrays *record) { array::term(*record); }

int32_t qek_arrays_expand(qek_arrays *record, int32_t want) { return array::expand(*record, want); }

void qek_arrays_swap(qek_arrays *record, qek_arrays *other)
{
    exchange_all_but(*record, *other, &qek_arrays::reversed);
}

void qek_arrays_clone(const qek_arrays *source, qek_pool *source_aux_pool, qek_arrays *target,
                      qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    array::clone(*source, source_aux_pool, *target, target_aux_pool, clone_value, [] {});
}

void qek_arrays_append(qek_arrays *record, qek_word value) { array::append(*record, value); }

qek_word qek_arrays_append_new(qek_arrays *record, qek_value_fn init_value)
{
    return append_new(*record, init_value);
}

void qek_arrays_append_array(qek_arrays *record, const qek_arrays *source)
{
    array::append_all(*record, *source);
}

qek_word qek_arrays_get_at(const qek_arrays *record, int32_t index)
{
    return array::slot_at(*record, index);
}

qek_word qek_arrays_set_at(qek_arrays *record, int32_t index, qek_word value)
{
    return replace_at(*record, index, value);
}

qek_word qek_arrays_get_first(const qek_arrays *record)
{
    return record->count < 1 ? 0 : array::slot_at(*record, 0);
}

qek_word qek_arrays_get_last(const qek_arrays *record)
{
    return record->count < 1 ? 0 : array::slot_at(*record, record->count - 1);
}

void qek_arrays_insert_at(qek_arrays *record, int32_t index, qek_word value)
{
    array::insert_at(*record, index, value);
}

qek_word qek_arrays_remove_at(qek_arrays *record, int32_t index)
{
    return remove_at(*record, index);
}

void qek_arrays_free_at(qek_arrays *record, int32_t index, qek_value_fn free_value)
{
    free_at(*record, index, free_value);
}

void qek_arrays_remove_all(qek_arrays *record) { array::remove_all(*record); }

void qek_arrays_free_all(qek_arrays *record, qek_value_fn free_value)
{
    array::free_all(*record, free_value);
}

qek_word qek_arrays_find(const qek_arrays *record, qek_word key, int32_t key_extra,
                         qek_compare_fn compare)
{
    return array::slot_at(*record, find_index(*record, plain_order{compare}, {key, key_extra}));
}

qek_word qek_arrays_find_x(const qek_arrays *record, void *context, qek_word key, int32_t key_extra,
                           qek_compare_x_fn compare)
{
    return array::slot_at(*record,
                          find_index(*record, context_order{context, compare}, {key, key_extra}));
}

int32_t qek_arrays_find_index(const qek_arrays *record, qek_word key, int32_t key_extra,
                              qek_compare_fn compare)
{
    return find_index(*record, plain_order{compare}, {key, key_extra});
}

int32_t qek_arrays_find_index_x(const qek_arrays *record, void *context, qek_word key,
                                int32_t key_extra, qek_compare_x_fn compare)
{
    return find_index(*record, context_order{context, compare}, {key, key_extra});
}

qek_word qek_arrays_bfind(const qek_arrays *record, qek_word key, int32_t key_extra,
                          qek_compare_fn compare)
{
    return array::slot_at(*record, nearest_index(*record, plain_order{compare}, {key, key_extra}));
}

qek_word qek_arrays_bfind_x(const qek_arrays *record, void *context, qek_word key,
                            int32_t key_extra, qek_compare_x_fn compare)
{
    return array::slot_at(
        *record, nearest_index(*record, context_order{context, compare}, {key, key_extra}));
}

int32_t qek_arrays_bfind_index(const qek_arrays *record, qek_word key, int32_t key_extra,
                               qek_compare_fn compare)
{
    return nearest_index(*record, plain_order{compare}, {key, key_extra});
}

int32_t qek_arrays_bfind_index_x(const qek_arrays *record, void *context, qek_word key,
                                 int32_t key_extra, qek_compare_x_fn compare)
{
    return nearest_index(*record, context_order{context, compare}, {key, key_extra});
}

int32_t qek_arrays_insert(qek_arrays *record, qek_word item, int32_t key_extra,
                          qek_compare_fn compare)
{
    return insert(*record, plain_order{compare}, item, key_extra);
}

int32_t qek_arrays_insert_x(qek_arrays *record, void *context, qek_word item, int32_t key_extra,
                            qek_compare_x_fn compare)
{
    return insert(*record, context_order{context, compare}, item, key_extra);
}

int32_t qek_arrays_insert_new(qek_arrays *record, qek_word key, int32_t key_extra,
                              qek_word *item_out, qek_value_fn init_value, qek_compare_fn compare)
{
    return insert_new(*record, plain_order{compare}, {key, key_extra}, *item_out, init_value);
}

int32_t qek_arrays_insert_new_x(qek_arrays *record, void *context, qek_word key, int32_t key_extra,
                                qek_word *item_out, qek_value_fn init_value,
                                qek_compare_x_fn compare)
{
    return insert_new(*record, context_order{context, compare}, {key, key_extra}, *item_out,
                      init_value);
}

qek_word qek_arrays_update(qek_arrays *record, qek_word item, int32_t key_extra,
                           qek_compare_fn compare)
{
    return replace_at(*record, find_index(*record, plain_order{compare}, {item, key_extra}), item);
}

qek_word qek_arrays_update_x(qek_arrays *record, void *context, qek_word item, int32_t key_extra,
                             qek_compare_x_fn compare)
{
    return replace_at(
        *record, find_index(*record, context_order{context, compare}, {item, key_extra}), item);
}

qek_word qek_arrays_remove(qek_arrays *record, qek_word key, int32_t key_extra,
                           qek_compare_fn compare)
{
    return remove_at(*record, find_index(*record, plain_order{compare}, {key, key_extra}));
}

qek_word qek_arrays_remove_x(qek_arrays *record, void *context, qek_word key, int32_t key_extra,
                             qek_compare_x_fn compare)
{
    return remove_at(*record,
                     find_index(*record, context_order{context, compare}, {key, key_extra}));
}

void qek_arrays_free(qek_arrays *record, qek_word key, int32_t key_extra, qek_value_fn free_value,
                     qek_compare_fn compare)
{
    free_at(*record, find_index(*record, plain_order{compare}, {key, key_extra}), free_value);
}

void qek_arrays_free_x(qek_arrays *record, void *context, qek_word key, int32_t key_extra,
                       qek_value_fn free_value, qek_compare_x_fn compare)
{
    free_at(*record, find_index(*record, context_order{context, compare}, {key, key_extra}),
            free_value);
}

void qek_arrays_qsort(qek_arrays *record, int32_t ascending, qek_compare_fn compare)
{
    sort(*record, plain_order{compare}, ascending);
}

void qek_arrays_qsort_x(qek_arrays *record, void *context, int32_t ascending,
                        qek_compare_x_fn compare)
{
    sort(*record, context_order{context, compare}, ascending);
}
