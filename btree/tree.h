// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The multi-way key tree, one core for three kinds of key.
//
// Shape. Pages of up to 31 children; all values in the leaves, all leaves at one depth:
//
//     record:  [ root page | node_count | pools ... ]        the root is embedded and never moves
//                  |
//                  +--> page (level 1) --> leaf (level 0) --> node, node, ...
//                  `--> page (level 1) --> leaf           --> node, ...
//
//     node.prev / node.next run through all nodes in key order, across leaves.
//
// Invariants at rest:
//   1 <= page.children.count < 32, but for the root of an empty tree, which is a leaf with none
//   child.level = page.level - 1, child.parent = page
//   children ascend strictly by key; a page's high key is the key of its last child (not the root's,
//   which may be stale after a removal: nothing reads it)
//   children.pool = the page pool in a branch, the node pool in a leaf
//   the chain is whole as long as no node was removed since the tree was last empty
//
// A page that reaches 32 splits at once into 16 and 16; a root that splits moves its lower half
// down and grows by a level. There is no merging and no borrowing: a page that went empty is
// dropped, and that is the only way in which the tree gets lower. Removing does not unlink from the
// chain. Page slots are reserved when a page is made, so that they never move while it lives.
//
// Cost. Finding is a binary search of at most 31 slots a level. Inserting adds one shift of a page,
// and a split one time in 16. Removing costs the descent, and with key text elsewhere a visit to
// every page and node (`Policy::forget`).
//
// No allocation is checked.
//
// A policy says what a key is: `tree`, `page`, `node`, `key` (how a sought key travels), `order`
// (of a page or node against a key, element first), `key_of` (a page or node, as a key),
// `same_high_key`, `copy_key`, `store`, `forget`, and `page_slots`, at which a page splits (the
// tests split small ones too). Where there is a `step_to`, it is asked for a child's place instead of
// the binary search, and where `has_integers` is true, `place_of_integer` for that in the whole tree.
// Elements open with their key fields, pages and nodes alike.
#pragma once

#include "array/search.h"
#include "array/storage.h"
#include "base/exchange.h"
#include "pool/owned.h"
#include "pool/translation.h"

#include <cstdint>

namespace qek::btree {

inline constexpr std::int32_t usual_page_slots = 32;

template <typename Element> Element *child(const qek_arrays &children, std::int32_t index) noexcept
{
    return static_cast<Element *>(pool::item_of(array::slot_at(children, index)));
}

template <typename Element> Element *last_child(const qek_arrays &children) noexcept
{
    return child<Element>(children, children.count - 1);
}

template <typename Page> bool is_branch(const Page &page) noexcept { return page.level > 0; }

template <typename Tree, typename Page>
qek_pool *pool_for_children(const Tree &tree, const Page &page) noexcept
{
    return is_branch(page) ? tree.page_pool : tree.node_pool;
}

template <typename Policy, typename Element>
array::place locate(const typename Policy::tree &tree, const qek_arrays &children,
                    const typename Policy::key &key) noexcept
{
    if constexpr (requires { Policy::template step_to<Element>(tree, children, key); }) {
        return Policy::template step_to<Element>(tree, children, key);
    } else {
        return array::locate(children.count, false, [&](std::int32_t index) {
            return Policy::order(tree, *child<Element>(children, index), key);
        });
    }
}

template <typename Policy, typename Element>
Element *nearest(const typename Policy::tree &tree, const qek_arrays &children,
                 const typename Policy::key &key) noexcept
{
    const array::place at = locate<Policy, Element>(tree, children, key);
    return child<Element>(children, array::nearest(at, children.count));
}

// The leaf that holds a key or ought to, and where there. A key beyond all others leads to the last
// leaf.
template <typename Page> struct place_in_tree {
    Page *leaf;
    array::place at;
};

template <typename Policy>
[[gnu::noinline]] place_in_tree<typename Policy::page>
place_by_halves(const typename Policy::tree &tree, const typename Policy::key &key) noexcept
{
    auto *page = const_cast<typename Policy::page *>(&tree.root);
    while (is_branch(*page)) {
        page = nearest<Policy, typename Policy::page>(tree, page->children, key);
    }
    return {page, locate<Policy, typename Policy::node>(tree, page->children, key)};
}

template <typename Policy>
place_in_tree<typename Policy::page> place_for(const typename Policy::tree &tree,
                                               const typename Policy::key &key) noexcept
{
    if constexpr (requires { Policy::has_integers(tree); }) {
        if (Policy::has_integers(tree)) {
            const place_in_tree<typename Policy::page> place = Policy::place_of_integer(tree, key);
            if (place.leaf != nullptr) {
                return place;
            }
        }
    }
    return place_by_halves<Policy>(tree, key);
}

template <typename Policy>
typename Policy::node *find(const typename Policy::tree &tree,
                            const typename Policy::key &key) noexcept
{
    const auto [leaf, at] = place_for<Policy>(tree, key);
    return at.found ? child<typename Policy::node>(leaf->children, at.index) : nullptr;
}

// The smallest key at or above the given one, or the largest of all. Null in an empty tree only.
template <typename Policy>
typename Policy::node *find_nearest(const typename Policy::tree &tree,
                                    const typename Policy::key &key) noexcept
{
    const auto [leaf, at] = place_for<Policy>(tree, key);
    const qek_arrays &nodes = leaf->children;
    return child<typename Policy::node>(nodes, array::nearest(at, nodes.count));
}

template <typename Node, typename Page> Node *first_node(const Page &root) noexcept
{
    const Page *page = &root;
    while (is_branch(*page)) {
        page = child<Page>(page->children, 0);
    }
    return page->children.count == 0 ? nullptr : child<Node>(page->children, 0);
}

template <typename Node, typename Page> Node *last_node(const Page &root) noexcept
{
    const Page *page = &root;
    while (is_branch(*page)) {
        page = last_child<Page>(page->children);
    }
    return last_child<Node>(page->children);
}

template <typename Policy, typename Element>
bool takes_high_key(const typename Policy::tree &tree, typename Policy::page &page) noexcept
{
    const Element *last = last_child<Element>(page.children);
    if (last == nullptr || Policy::same_high_key(tree, page, *last)) {
        return false;
    }
    Policy::copy_key(page, *last);
    return true;
}

template <typename Policy>
bool takes_high_key(const typename Policy::tree &tree, typename Policy::page &page) noexcept
{
    return is_branch(page) ? takes_high_key<Policy, typename Policy::page>(tree, page)
                           : takes_high_key<Policy, typename Policy::node>(tree, page);
}

// Carries a new last key upward, for as long as it is news.
template <typename Policy>
void raise_high_keys(const typename Policy::tree &tree, typename Policy::page *page) noexcept
{
    while (page != nullptr && takes_high_key<Policy>(tree, *page)) {
        page = page->parent;
    }
}

template <typename Policy> void set_high_key(typename Policy::page &page) noexcept
{
    if (is_branch(page)) {
        Policy::copy_key(page, *last_child<typename Policy::page>(page.children));
    } else {
        Policy::copy_key(page, *last_child<typename Policy::node>(page.children));
    }
}

template <typename Node> void link_between(Node *prev, Node *node, Node *next) noexcept
{
    node->prev = prev;
    node->next = next;
    if (prev != nullptr) {
        prev->next = node;
    }
    if (next != nullptr) {
        next->prev = node;
    }
}

// A new node's neighbour in its own leaf tells its other neighbour, which may lie in another leaf.
template <typename Node>
void link_into_chain(const qek_arrays &leaf, std::int32_t index, Node *node) noexcept
{
    if (leaf.count < 2) {
        return;
    }
    if (index >= leaf.count - 1) {
        auto *prev = child<Node>(leaf, leaf.count - 2);
        link_between(prev, node, prev->next);
    } else {
        auto *next = child<Node>(leaf, index + 1);
        link_between(next->prev, node, next);
    }
}

template <typename Policy>
typename Policy::page *new_page(typename Policy::tree &tree,
                                const typename Policy::page &beside) noexcept
{
    auto *page = static_cast<typename Policy::page *>(pool::take(*tree.page_pool));
    *page = {};
    page->level = beside.level;
    page->parent = beside.parent;
    array::expand(page->children, Policy::page_slots);
    page->children.pool = pool_for_children(tree, *page);
    return page;
}

template <typename Page> void adopt_children(Page &parent) noexcept
{
    if (is_branch(parent)) {
        for (std::int32_t at = 0; at < array::slots_in_use(parent.children); ++at) {
            child<Page>(parent.children, at)->parent = &parent;
        }
    }
}

// Moves the upper half of a full page into a new one and returns that.
template <typename Policy>
typename Policy::page *split_off_upper(typename Policy::tree &tree,
                                       typename Policy::page &lower) noexcept
{
    auto *upper = new_page<Policy>(tree, lower);
    const std::int32_t count = lower.children.count;
    const std::int32_t half = count / 2;
    for (std::int32_t at = half; at < count; ++at) {
        array::append(upper->children, array::slot_at(lower.children, at));
    }
    adopt_children(*upper);
    array::set_count(lower.children, half);
    set_high_key<Policy>(lower);
    set_high_key<Policy>(*upper);
    return upper;
}

template <typename Policy>
void put_beside(const typename Policy::tree &tree, qek_arrays &siblings,
                typename Policy::page *page) noexcept
{
    const array::place at =
        locate<Policy, typename Policy::page>(tree, siblings, Policy::key_of(tree, *page));
    if (!at.found) { // GCOVR_EXCL_BR_LINE: no sibling has its high key while the key type stays
        array::insert_at(siblings, at.index, pool::word_of(page));
    }
}

// The root stays where it is: its lower half moves down into a new page instead.
template <typename Policy>
void grow_root(typename Policy::tree &tree, typename Policy::page *upper) noexcept
{
    auto &root = tree.root;
    auto *lower = new_page<Policy>(tree, root);
    Policy::copy_key(*lower, root);
    lower->parent = &root;
    upper->parent = &root;
    exchange(lower->children, root.children);
    adopt_children(*lower);
    array::append(root.children, pool::word_of(lower));
    array::append(root.children, pool::word_of(upper));
    ++root.level;
    root.children.pool = tree.page_pool;
    Policy::copy_key(root, *upper);
}

template <typename Policy>
void split_upward(typename Policy::tree &tree, typename Policy::page *page) noexcept
{
    do {
        auto *upper = split_off_upper<Policy>(tree, *page);
        if (page->parent == nullptr) {
            grow_root<Policy>(tree, upper);
            return;
        }
        put_beside<Policy>(tree, page->parent->children, upper);
        page = page->parent;
    } while (page->children.count >= Policy::page_slots);
}

// Whether a new node's place is before a leaf's last one and there is room for it. Then no high key
// changes, but for the root's, which may be stale.
template <typename Page> bool goes_between(const Page &leaf, std::int32_t index) noexcept
{
    return index < leaf.children.count && leaf.children.count < leaf.children.capacity &&
           leaf.parent != nullptr;
}

template <typename Policy> struct found_or_made {
    typename Policy::node *node;
    bool is_new;
};

template <typename Policy>
found_or_made<Policy> find_or_make(typename Policy::tree &tree,
                                   const typename Policy::key &key) noexcept
{
    using node_type = typename Policy::node;
    const auto [leaf, at] = place_for<Policy>(tree, key);
    if (at.found) {
        return {child<node_type>(leaf->children, at.index), false};
    }
    auto *node = static_cast<node_type *>(pool::take(*leaf->children.pool));
    *node = {};
    const bool is_between = goes_between(*leaf, at.index);
    if (is_between) {
        array::shift_up(leaf->children, at.index);
        leaf->children.slots[at.index] = pool::word_of(node);
    } else {
        array::insert_at(leaf->children, at.index, pool::word_of(node));
    }
    if (leaf->children.count == 0) {
        return {node, false}; // an empty array that could not grow answers as if the key were there
    }
    ++tree.node_count;
    Policy::store(tree, *node, key);
    if (!is_between) {
        raise_high_keys<Policy>(tree, leaf);
    }
    link_into_chain(leaf->children, at.index, node);
    if (leaf->children.count >= Policy::page_slots) {
        split_upward<Policy>(tree, leaf);
    }
    return {node, true};
}

template <typename Policy>
bool node_set(typename Policy::tree &tree, const typename Policy::key &key,
              typename Policy::node *&out) noexcept
{
    out = nullptr;
    const auto [node, is_new] = find_or_make<Policy>(tree, key);
    out = node;
    return is_new;
}

template <typename Policy>
bool set(typename Policy::tree &tree, const typename Policy::key &key, qek_word &value,
         qek_value_fn init_value) noexcept
{
    value = 0;
    const auto [node, is_new] = find_or_make<Policy>(tree, key);
    if (is_new) {
        node->value = pool::new_value(tree.value_pool, init_value, value);
    } else {
        value = node->value;
    }
    return is_new;
}

template <typename Policy>
bool insert(typename Policy::tree &tree, const typename Policy::key &key, qek_word value) noexcept
{
    const auto [node, is_new] = find_or_make<Policy>(tree, key);
    if (is_new) {
        node->value = value;
    }
    return is_new;
}

template <typename Policy>
qek_word get(const typename Policy::tree &tree, const typename Policy::key &key) noexcept
{
    return pool::value_of(find<Policy>(tree, key));
}

template <typename Policy>
qek_word update(typename Policy::tree &tree, const typename Policy::key &key,
                qek_word value) noexcept
{
    return pool::replace_value(find<Policy>(tree, key), value);
}

// Of one of the children.
template <typename Page>
std::int32_t index_of(const qek_arrays &children, const Page *page) noexcept
{
    std::int32_t at = children.count - 1;
    while (child<Page>(children, at) != page) {
        --at;
    }
    return at;
}

// Drops a page that went empty, and its parent if that left it empty too, the topmost first. The
// root stays, as an empty leaf.
template <typename Policy>
void drop_empty(typename Policy::tree &tree, typename Policy::page *page) noexcept
{
    auto *parent = page->parent;
    if (parent == nullptr) {
        return;
    }
    array::shift_down(parent->children, index_of(parent->children, page));
    raise_high_keys<Policy>(tree, parent);
    if (parent->children.count == 0) {
        parent->level = 0;
        parent->children.pool = tree.node_pool;
        drop_empty<Policy>(tree, parent);
    }
    Policy::copy_key(*page, typename Policy::page{});
    array::remove_all(page->children);
    pool::give(*tree.page_pool, page);
}

// The node leaves its page and the pool gets it back; the chain keeps it: intended.
template <typename Policy>
qek_word remove(typename Policy::tree &tree, const typename Policy::key &key) noexcept
{
    using node_type = typename Policy::node;
    const auto [leaf, at] = place_for<Policy>(tree, key);
    if (!at.found) {
        return 0;
    }
    auto *node = child<node_type>(leaf->children, at.index);
    const qek_word value = node->value;
    array::shift_down(leaf->children, at.index);
    raise_high_keys<Policy>(tree, leaf);
    if (leaf->children.count == 0) {
        drop_empty<Policy>(tree, leaf);
    }
    Policy::forget(tree, *node);
    Policy::copy_key(*node, node_type{});
    pool::give(*tree.node_pool, node);
    --tree.node_count;
    return value;
}

// Runs `visit_page(page)` over every page below `page` behind its own children, and
// `visit_node(node)` over every node, in slot order. The depth is that of the tree, a handful.
template <typename Node, typename Page, typename VisitNode, typename LeavePage>
void walk(Page &page, VisitNode visit_node, LeavePage leave_page) noexcept
{
    for (std::int32_t at = 0; at < array::slots_in_use(page.children); ++at) {
        if (is_branch(page)) {
            Page *below = child<Page>(page.children, at);
            walk<Node>(*below, visit_node, leave_page);
            leave_page(*below);
        } else {
            visit_node(*child<Node>(page.children, at));
        }
    }
}

template <typename Policy> void reset_root(typename Policy::tree &tree) noexcept
{
    const qek_arrays children = tree.root.children;
    tree.root = {};
    tree.root.children = children;
    tree.root.children.pool = tree.node_pool;
    tree.node_count = 0;
}

template <typename Policy>
void init(typename Policy::tree &tree, std::int32_t own_page_pool, std::int32_t own_node_pool,
          std::int32_t own_value_pool) noexcept
{
    tree = {};
    array::expand(tree.root.children, Policy::page_slots);
    pool::own(tree.page_pool, tree.owns_page_pool, own_page_pool, sizeof(typename Policy::page));
    pool::own(tree.node_pool, tree.owns_node_pool, own_node_pool, sizeof(typename Policy::node));
    pool::own(tree.value_pool, tree.owns_value_pool, own_value_pool, pool::size_from_caller);
    tree.root.children.pool = tree.node_pool;
}

// Disposes of every value, gives every node and page back to the pools that are borrowed, and
// releases the slots of every page.
template <typename Policy>
void give_back(typename Policy::tree &tree, pool::disposal of_value) noexcept
{
    qek_pool *pages = pool::borrowed(tree.page_pool, tree.owns_page_pool);
    qek_pool *nodes = pool::borrowed(tree.node_pool, tree.owns_node_pool);
    const auto give_node = [&](typename Policy::node &node) {
        of_value.of_nonzero(node.value);
        pool::give_to(nodes, &node);
    };
    const auto give_page = [&](typename Policy::page &page) {
        array::remove_all(page.children);
        pool::give_to(pages, &page);
    };
    if (of_value.does_something() || nodes != nullptr) {
        walk<typename Policy::node>(tree.root, give_node, give_page);
    } else {
        walk<typename Policy::node>(
            tree.root, [](typename Policy::node &) {}, give_page);
    }
    array::remove_all(tree.root.children);
}

template <typename Policy>
void release_all(typename Policy::tree &tree, pool::disposal of_value) noexcept
{
    give_back<Policy>(tree, of_value);
    pool::empty_owned(tree.page_pool, tree.owns_page_pool);
    pool::empty_owned(tree.node_pool, tree.owns_node_pool);
    pool::empty_owned(tree.value_pool, tree.owns_value_pool);
    reset_root<Policy>(tree);
}

template <typename Policy> void remove_all(typename Policy::tree &tree) noexcept
{
    release_all<Policy>(tree, {nullptr, nullptr});
}

template <typename Policy>
void free_all(typename Policy::tree &tree, qek_value_fn free_value) noexcept
{
    release_all<Policy>(tree, pool::disposal_of(tree, free_value));
}

template <typename Policy> void term(typename Policy::tree &tree) noexcept
{
    give_back<Policy>(tree, {nullptr, nullptr});
    pool::end_owned(tree.page_pool, tree.owns_page_pool);
    pool::end_owned(tree.node_pool, tree.owns_node_pool);
    pool::end_owned(tree.value_pool, tree.owns_value_pool);
    reset_root<Policy>(tree);
}

template <typename Tree, typename Page> void reset_pools(const Tree &tree, Page &page) noexcept
{
    page.children.pool = pool_for_children(tree, page);
    for (std::int32_t at = 0; is_branch(page) && at < array::slots_in_use(page.children); ++at) {
        Page *below = child<Page>(page.children, at);
        if (is_branch(*below)) {
            reset_pools(tree, *below);
        }
    }
}

// The root lives in the record, so what hangs under it is told its new place.
template <typename Tree> void settle(Tree &tree) noexcept
{
    adopt_children(tree.root);
    reset_pools(tree, tree.root);
}

template <typename Tree, typename Flag> void swap(Tree &a, Tree &b, Flag Tree::*stays) noexcept
{
    exchange_all_but(a, b, stays);
    settle(a);
    settle(b);
}

template <typename Policy> class cloning {
    using page = typename Policy::page;
    using node = typename Policy::node;

  public:
    cloning(const typename Policy::tree &source, typename Policy::tree &target,
            const pool::value_copier &copier) noexcept
        : target_(target), copier_(copier),
          pages_(source.owns_page_pool != 0, source.page_pool, target.page_pool),
          nodes_(source.owns_node_pool != 0, source.node_pool, target.node_pool),
          values_(source.owns_value_pool != 0, source.value_pool, target.value_pool)
    {
    }

    void copy_page(const page &from, page &to) const noexcept
    {
        to.level = from.level;
        array::expand(to.children, from.children.capacity);
        to.children.count = from.children.count;
        to.children.pool = pool_for_children(target_, to);
        for (std::int32_t at = 0; at < array::slots_in_use(from.children); ++at) {
            fetch_page_behind(from, at);
            array::set_slot(to.children, at,
                            is_branch(from) ? copied_page(from, at, to) : copied_node(from, at));
        }
    }

  private:
    // The pages that come next, while one is copied: the head of one, the slots of the one before it.
    static void fetch_page_behind(const page &from, std::int32_t at) noexcept
    {
        if (is_branch(from) && at + 2 < array::slots_in_use(from.children)) {
            const auto *slots = child<page>(from.children, at + 1)->children.slots;
            for (std::int32_t line = 0; line < 4; ++line) {
                __builtin_prefetch(slots + line * 8);
            }
            __builtin_prefetch(child<page>(from.children, at + 2));
        }
    }
    qek_word copied_page(const page &from, std::int32_t at, page &parent) const noexcept
    {
        const page *source = child<page>(from.children, at);
        page *copy = pages_.of(source);
        copy->parent = &parent;
        copy->children = {}; // what came with the pool is the source's storage
        copy_page(*source, *copy);
        return pool::word_of(copy);
    }

    // `prev` and `next` came with the pool and keep pointing at the source's nodes: intended.
    qek_word copied_node(const page &from, std::int32_t at) const noexcept
    {
        const node *source = child<node>(from.children, at);
        node *copy = nodes_.of(source);
        if (!value_came_along_) {
            copier_.copy(source->value, values_, copy->value);
        }
        return pool::word_of(copy);
    }

    typename Policy::tree &target_;
    const pool::value_copier &copier_;
    pool::translation_of_nodes pages_;
    pool::translation_of_nodes nodes_;
    pool::translation values_;
    bool value_came_along_ = nodes_.is_made() && copier_.copies_words(values_);
};

// `copy_keys()` runs once, for a family with keys elsewhere.
template <typename Policy, typename CopyKeys>
void clone(const typename Policy::tree &source, qek_pool *source_aux, typename Policy::tree &target,
           qek_pool *target_aux, qek_clone_fn clone_value, CopyKeys copy_keys) noexcept
{
    pool::share_borrowed(source.page_pool, source.owns_page_pool, target.page_pool);
    pool::share_borrowed(source.node_pool, source.owns_node_pool, target.node_pool);
    pool::share_borrowed(source.value_pool, source.owns_value_pool, target.value_pool);
    const pool::value_copier copier(source_aux, target_aux, clone_value);
    copy_keys();
    target.root.parent = nullptr;
    cloning<Policy>(source, target, copier).copy_page(source.root, target.root);
    Policy::copy_key(target.root, source.root);
    target.node_count = source.node_count;
}

} // namespace qek::btree
