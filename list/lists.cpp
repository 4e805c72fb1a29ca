// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The list of bare words. Links are linked.h.

#include "list/linked.h"

using namespace qek;

namespace {

using node = qek_lists_node;

auto making(qek_lists &list, qek_word value) noexcept
{
    return [&list, value] {
        node *made = list::new_node(list);
        if (made != nullptr) {
            made->value = value;
        }
        return made;
    };
}

auto making_item(qek_lists &list, qek_value_fn init_value) noexcept
{
    return [&list, init_value] {
        node *made = list::new_node(list);
        if (made != nullptr) {
            made->value = pool::new_value(list.value_pool, init_value);
        }
        return made;
    };
}

void add_head_list(qek_lists &list, const qek_lists &other) noexcept
{
    for (const node *at = other.tail; at != nullptr; at = at->prev) {
        list::add_head(list, making(list, at->value));
    }
}

void add_tail_list(qek_lists &list, const qek_lists &other) noexcept
{
    for (const node *at = other.head; at != nullptr; at = at->next) {
        list::add_tail(list, making(list, at->value));
    }
}

qek_word read_and_step(node *&at, node *node::*link) noexcept
{
    const qek_word value = pool::value_of(at);
    list::step(at, link);
    return value;
}

// `matches(word)` tells whether a node's word is the one sought.
template <typename Matches> node *find(const qek_lists &list, Matches matches) noexcept
{
    return list::find(list, [&](const node &at) { return matches(at.value); });
}

qek_word remove(qek_lists &list, node *at) noexcept
{
    return list::remove(list, at, [](const node &) {});
}

void free_all(qek_lists &list, qek_value_fn free_value) noexcept
{
    list::free_all(list, free_value, [](const node &at, const pool::disposal &dispose) {
        dispose.of_nonzero(at.value);
    });
}

void clone(const qek_lists &source, qek_lists &target, qek_pool *source_aux, qek_pool *target_aux,
           qek_clone_fn clone_value) noexcept
{
    list::share_pools(source, target);
    const pool::value_copier copier(source_aux, target_aux, clone_value);
    const pool::translation_of_nodes nodes(source.owns_node_pool != 0, source.node_pool,
                                           target.node_pool);
    const pool::translation values(source.owns_value_pool != 0, source.value_pool,
                                   target.value_pool);
    for (const node *at = source.head; at != nullptr; at = at->next) {
        node *copy = nodes.of(at);
        copier.copy(at->value, values, copy->value);
        list::link_tail(target, copy);
    }
    target.count = source.count;
}

} // namespace

void qek_lists_init(qek_lists *list, int32_t own_node_pool, int32_t own_value_pool)
{
    list::init(*list, own_node_pool, own_value_pool);
}

void qek_lists_term(qek_lists *list) { list::term(*list); }

void qek_lists_swap(qek_lists *a, qek_lists *b) { exchange(*a, *b); }

void qek_lists_clone(const qek_lists *source, qek_pool *source_aux_pool, qek_lists *target,
                     qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    clone(*source, *target, source_aux_pool, target_aux_pool, clone_value);
}

qek_lists_node *qek_lists_add_head(qek_lists *list, qek_word value)
{
    return list::add_head(*list, making(*list, value));
}

qek_lists_node *qek_lists_add_tail(qek_lists *list, qek_word value)
{
    return list::add_tail(*list, making(*list, value));
}

void *qek_lists_add_head_new(qek_lists *list, qek_value_fn init_value)
{
    return list::item_of(list::add_head(*list, making_item(*list, init_value)));
}

void *qek_lists_add_tail_new(qek_lists *list, qek_value_fn init_value)
{
    return list::item_of(list::add_tail(*list, making_item(*list, init_value)));
}

void qek_lists_add_head_list(qek_lists *list, const qek_lists *other)
{
    add_head_list(*list, *other);
}

void qek_lists_add_tail_list(qek_lists *list, const qek_lists *other)
{
    add_tail_list(*list, *other);
}

qek_lists_node *qek_lists_insert_before(qek_lists *list, qek_lists_node *position, qek_word value)
{
    return list::insert_before(*list, position, making(*list, value));
}

qek_lists_node *qek_lists_insert_after(qek_lists *list, qek_lists_node *position, qek_word value)
{
    return list::insert_after(*list, position, making(*list, value));
}

qek_lists_node *qek_lists_get_head_position(const qek_lists *list) { return list->head; }

qek_lists_node *qek_lists_get_tail_position(const qek_lists *list) { return list->tail; }

qek_word qek_lists_get_head(const qek_lists *list) { return pool::value_of(list->head); }

qek_word qek_lists_get_tail(const qek_lists *list) { return pool::value_of(list->tail); }

qek_word qek_lists_get_prev(const qek_lists *, qek_lists_node **position_inout)
{
    return read_and_step(*position_inout, &qek_lists_node::prev);
}

qek_word qek_lists_get_next(const qek_lists *, qek_lists_node **position_inout)
{
    return read_and_step(*position_inout, &qek_lists_node::next);
}

qek_word qek_lists_get_at(const qek_lists *, const qek_lists_node *position)
{
    return pool::value_of(position);
}

qek_lists_node *qek_lists_find_at(const qek_lists *list, qek_word value)
{
    return find(*list, [=](qek_word held) { return held == value; });
}

qek_lists_node *qek_lists_find(const qek_lists *list, qek_word probe, qek_lists_compare_fn compare)
{
    return compare == nullptr
               ? nullptr
               : find(*list, [=](qek_word held) { return compare(held, probe) == 0; });
}

qek_lists_node *qek_lists_find_x(const qek_lists *list, qek_word context, qek_word probe,
                                 qek_lists_compare_x_fn compare)
{
    return compare == nullptr
               ? nullptr
               : find(*list, [=](qek_word held) { return compare(context, held, probe) == 0; });
}

qek_word qek_lists_remove_head(qek_lists *list) { return remove(*list, list->head); }

qek_word qek_lists_remove_tail(qek_lists *list) { return remove(*list, list->tail); }

qek_word qek_lists_remove_at(qek_lists *list, qek_lists_node *position)
{
    return remove(*list, position);
}

void qek_lists_remove_all(qek_lists *list) { list::remove_all_with_values(*list); }

void qek_lists_free_all(qek_lists *list, qek_value_fn free_value) { free_all(*list, free_value); }
