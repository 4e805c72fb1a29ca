// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The doubly linked lists: what is the same whatever a node holds.
//
//     head --> node <--> node <--> node <-- tail       null at both ends
//
// Invariants: walking `next` from `head` meets `count` nodes (blocks with `count` words in all, in
// the unrolled list) and ends at `tail`; `prev` is the reverse; head and tail are null together.
//
// Nodes are pool items and never move, so a position is a node pointer and stays good until its
// node is removed. Linking and unlinking are constant time and know nothing of what a node holds:
// `make()` brings a filled node, or null when the pool gave none, and then nothing is linked.
#pragma once

#include "base/exchange.h"
#include "pool/owned.h"
#include "pool/translation.h"
#include "qek_std.h"

#include <cstdint>
#include <type_traits>

namespace qek::list {

template <typename List> using node_of = std::remove_pointer_t<decltype(List::head)>;

template <typename List>
void init(List &list, std::int32_t own_node_pool, std::int32_t own_value_pool) noexcept
{
    list = {};
    pool::own(list.node_pool, list.owns_node_pool, own_node_pool, sizeof(node_of<List>));
    pool::own(list.value_pool, list.owns_value_pool, own_value_pool, pool::size_from_caller);
}

template <typename List> node_of<List> *new_node(List &list) noexcept
{
    return pool::cleared<node_of<List>>(*list.node_pool);
}

template <typename List>
void link(List &list, node_of<List> *node, node_of<List> *prev, node_of<List> *next) noexcept
{
    node->prev = prev;
    node->next = next;
    (prev != nullptr ? prev->next : list.head) = node;
    (next != nullptr ? next->prev : list.tail) = node;
}

template <typename List> void unlink(List &list, const node_of<List> *node) noexcept
{
    (node->prev != nullptr ? node->prev->next : list.head) = node->next;
    (node->next != nullptr ? node->next->prev : list.tail) = node->prev;
}

template <typename List> void link_head(List &list, node_of<List> *node) noexcept
{
    link(list, node, nullptr, list.head);
}

template <typename List> void link_tail(List &list, node_of<List> *node) noexcept
{
    link(list, node, list.tail, nullptr);
}

template <typename List>
node_of<List> *put(List &list, node_of<List> *made, node_of<List> *prev,
                   node_of<List> *next) noexcept
{
    if (made != nullptr) {
        link(list, made, prev, next);
        ++list.count;
    }
    return made;
}

template <typename List, typename Make> node_of<List> *add_head(List &list, Make make) noexcept
{
    node_of<List> *made = make();
    return put(list, made, static_cast<node_of<List> *>(nullptr), list.head);
}

template <typename List, typename Make> node_of<List> *add_tail(List &list, Make make) noexcept
{
    node_of<List> *made = make();
    return put(list, made, list.tail, static_cast<node_of<List> *>(nullptr));
}

// Without a position the element goes to the end, and then the call goes on and faults: intended.
template <typename List, typename Make>
node_of<List> *insert_before(List &list, node_of<List> *position, Make make) noexcept
{
    if (position == nullptr) { // GCOVR_EXCL_BR_LINE: a test that faults leaves no counts
        add_head(list, make);  // GCOVR_EXCL_LINE: the same
    }
    node_of<List> *made = make();
    return put(list, made, position->prev, position);
}

template <typename List, typename Make>
node_of<List> *insert_after(List &list, node_of<List> *position, Make make) noexcept
{
    if (position == nullptr) { // GCOVR_EXCL_BR_LINE: a test that faults leaves no counts
        add_tail(list, make);  // GCOVR_EXCL_LINE: the same
    }
    node_of<List> *made = make();
    return put(list, made, position, position->next);
}

// The item of a node that was added with one: a missing node and a missing item look alike.
template <typename Node> void *item_of(const Node *added) noexcept
{
    return added == nullptr ? nullptr : pool::item_of(added->value);
}

template <typename Node> void step(Node *&position, Node *Node::*link) noexcept
{
    position = position == nullptr ? nullptr : position->*link;
}

template <typename List, typename Matches>
node_of<List> *find(const List &list, Matches matches) noexcept
{
    node_of<List> *at = list.head;
    while (at != nullptr && !matches(*at)) {
        at = at->next;
    }
    return at;
}

// `forget(node)` runs on the node once it is out of the list and before the pool gets it.
template <typename List, typename Forget>
qek_word remove(List &list, node_of<List> *at, Forget forget) noexcept
{
    if (at == nullptr || list.head == nullptr) {
        return 0;
    }
    unlink(list, at);
    forget(*at);
    --list.count;
    return pool::give(*list.node_pool, at, at->value);
}

template <typename List> void forget_nodes(List &list) noexcept
{
    list.head = nullptr;
    list.tail = nullptr;
    list.count = 0;
}

// Runs `visit(node)` from head to tail. A node may be given away in its visit.
template <typename List, typename Visit> void for_each(const List &list, Visit visit) noexcept
{
    for (auto *node = list.head; node != nullptr;) {
        auto *next = node->next;
        visit(*node);
        node = next;
    }
}

template <typename List> void give_back_nodes(List &list) noexcept
{
    if (qek_pool *borrowed = pool::borrowed(list.node_pool, list.owns_node_pool)) {
        for_each(list, [&](node_of<List> &node) { pool::give(*borrowed, &node); });
    }
}

template <typename List> void term(List &list) noexcept
{
    give_back_nodes(list);
    pool::end_owned(list.node_pool, list.owns_node_pool);
    pool::end_owned(list.value_pool, list.owns_value_pool);
    forget_nodes(list);
}

template <typename List> void remove_all(List &list) noexcept
{
    give_back_nodes(list);
    pool::empty_owned(list.node_pool, list.owns_node_pool);
    forget_nodes(list);
}

template <typename List> void remove_all_with_values(List &list) noexcept
{
    remove_all(list);
    pool::empty_owned(list.value_pool, list.owns_value_pool);
}

// `dispose_of(node, disposal)` disposes of what a node holds.
template <typename List, typename DisposeOf>
void free_all(List &list, qek_value_fn free_value, DisposeOf dispose_of) noexcept
{
    const pool::disposal dispose = pool::disposal_of(list, free_value);
    qek_pool *borrowed = pool::borrowed(list.node_pool, list.owns_node_pool);
    if (dispose.does_something() || borrowed != nullptr) {
        for_each(list, [&](node_of<List> &node) {
            dispose_of(node, dispose);
            pool::give_to(borrowed, &node);
        });
    }
    forget_nodes(list);
    remove_all_with_values(list);
}

template <typename List> void share_pools(const List &source, List &target) noexcept
{
    pool::share_borrowed(source.node_pool, source.owns_node_pool, target.node_pool);
    pool::share_borrowed(source.value_pool, source.owns_value_pool, target.value_pool);
}

} // namespace qek::list
