// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The general tree: children in a ring, threaded through the entries.
//
//     parent.first_child --> a <--> b <--> c <--> (a)      a.prev = c, c.next = a, all .parent = parent
//
// Invariants: an only child is its own neighbour; an entry that is not attached has no parent and
// no neighbours; the root has no parent. `entry_count` counts attachments: detaching an entry with
// a subtree takes off one.
//
// What the trees share is tree.h.

#include "tree/tree.h"

using namespace qek;

namespace {

using entry = qek_tree_entry;

// The links are const-free: who may look at an entry may go on from it.
entry *loose(const entry *at) noexcept { return const_cast<entry *>(at); }

bool is_last(const entry *at) noexcept { return at->next == at->parent->first_child; }

struct ring_walk {
    static entry *deepest_first(entry *at) noexcept
    {
        while (at->first_child != nullptr) {
            at = at->first_child;
        }
        return at;
    }

    template <typename Visit> static void for_each(entry &top, Visit visit) noexcept
    {
        entry *at = deepest_first(&top);
        while (at != &top) {
            entry *parent = at->parent;
            entry *next = at->next;
            const bool goes_up = next == parent->first_child;
            visit(*at);
            at = goes_up ? parent : deepest_first(next);
        }
        visit(top);
    }
};

void init(qek_tree &tree, std::int32_t own_entry_pool, std::int32_t own_value_pool) noexcept
{
    tree = {};
    tree::make_pools(tree, own_entry_pool, own_value_pool);
}

void link_between(entry *at, entry *prev, entry *next) noexcept
{
    at->prev = prev;
    at->next = next;
    prev->next = at;
    next->prev = at;
}

void append(qek_tree &tree, entry *parent, entry *added) noexcept
{
    entry *first = parent->first_child;
    added->parent = parent;
    if (first == nullptr) {
        parent->first_child = added;
        added->prev = added;
        added->next = added;
    } else {
        link_between(added, first->prev, first);
    }
    ++tree.entry_count;
}

void insert_before(qek_tree &tree, entry *sibling, entry *added) noexcept
{
    if (sibling == nullptr) {
        return;
    }
    added->parent = sibling->parent;
    link_between(added, sibling->prev, sibling);
    if (added->parent->first_child == sibling) {
        added->parent->first_child = added;
    }
    ++tree.entry_count;
}

void remove(qek_tree &tree, entry *removed) noexcept
{
    if (removed == nullptr || removed->parent == nullptr) {
        return;
    }
    entry *&first = removed->parent->first_child;
    if (removed->next == removed) {
        first = nullptr;
    } else {
        first = first == removed ? removed->next : first;
        removed->prev->next = removed->next;
        removed->next->prev = removed->prev;
    }
    removed->parent = nullptr;
    removed->prev = nullptr;
    removed->next = nullptr;
    --tree.entry_count;
}

entry *last_child(const entry *at) noexcept
{
    return at->first_child == nullptr ? nullptr : at->first_child->prev;
}

entry *next_sibling(const entry *at) noexcept
{
    return at->parent == nullptr || is_last(at) ? nullptr : at->next;
}

entry *previous_sibling(const entry *at) noexcept
{
    return at->parent == nullptr || at == at->parent->first_child ? nullptr : at->prev;
}

// The successor in pre-order that lies outside of the entry's own subtree.
entry *next_outside(const entry *top, const entry *at) noexcept
{
    while (at != top && at->parent != nullptr) {
        if (!is_last(at)) {
            return at->next;
        }
        at = at->parent;
    }
    return nullptr;
}

entry *next_in_order(const entry *top, const entry *at) noexcept
{
    return at->first_child != nullptr ? at->first_child : next_outside(top, at);
}

// A caller's callback with what goes along with it; 0 means that the entry matches.
struct probe {
    qek_word a;
    qek_word b;
};

struct plain_match {
    qek_tree_match_fn match;

    bool operator()(entry *at, probe of) const { return match(at, of.a, of.b) == 0; }
};

struct context_match {
    qek_tree_match_x_fn match;
    qek_word context;

    bool operator()(entry *at, probe of) const { return match(at, context, of.a, of.b) == 0; }
};

template <typename Match>
entry *find(const entry *top, const entry *start, Match match, probe of) noexcept
{
    entry *at = next_in_order(top, start);
    while (at != nullptr && !match(at, of)) {
        at = next_in_order(top, at);
    }
    return at;
}

template <typename Match>
entry *find_parent(const entry *top, const entry *below, Match match, probe of) noexcept
{
    entry *at = below->parent;
    while (at != nullptr && at != top && !match(at, of)) {
        at = at->parent;
    }
    return at == top ? nullptr : at;
}

bool is_ancestor(const entry *ancestor, const entry *at) noexcept
{
    do {
        at = at->parent;
    } while (at != nullptr && at != ancestor);
    return at != nullptr;
}

// The place of an entry: for every entry from it up to the root, its number among its siblings.
struct position {
    explicit position(const entry &of) noexcept
    {
        qek_arrayt_init(&numbers);
        for (const entry *at = &of; at != nullptr; at = at->parent) {
            qek_arrayt_append(&numbers, number_of(at));
        }
    }
    ~position() { qek_arrayt_term(&numbers); }
    position(const position &) = delete;
    position &operator=(const position &) = delete;

    static std::uint32_t number_of(const entry *at) noexcept
    {
        std::uint32_t number = 1;
        while (at->parent != nullptr && at != at->parent->first_child) {
            at = at->prev;
            ++number;
        }
        return number;
    }

    std::int32_t depth() const noexcept { return numbers.count; }
    std::int32_t at_depth(std::int32_t level) const noexcept
    {
        return static_cast<std::int32_t>(qek_arrayt_get_at(&numbers, numbers.count - level));
    }

    qek_arrayt numbers;
};

// Pre-order, an entry before what is below it: the first difference of numbers, else of depths.
std::int32_t compare(const entry &a, const entry &b) noexcept
{
    const position left(a);
    const position right(b);
    const std::int32_t common = smaller(left.depth(), right.depth());
    for (std::int32_t level = 1; level <= common; ++level) {
        if (left.at_depth(level) != right.at_depth(level)) {
            return left.at_depth(level) - right.at_depth(level);
        }
    }
    return left.depth() - right.depth();
}

void adopt_children(entry &parent) noexcept
{
    entry *child = parent.first_child;
    while (child != nullptr) {
        child->parent = &parent;
        child = child->next == parent.first_child ? nullptr : child->next;
    }
}

// Links from outside keep naming the same record: intended, they are the caller's to mend.
void swap(entry &a, entry &b) noexcept
{
    exchange(a, b);
    adopt_children(a);
    adopt_children(b);
}

void clone(const qek_tree &source, qek_tree &target, qek_pool *source_aux, qek_pool *target_aux,
           qek_clone_fn clone_value) noexcept
{
    pool::share_borrowed(source.entry_pool, source.owns_entry_pool, target.entry_pool);
    pool::share_borrowed(source.value_pool, source.owns_value_pool, target.value_pool);
    const pool::value_copier copier(source_aux, target_aux, clone_value);
    const tree::copies<qek_tree> copies(source, target, copier);
    for (const entry *at = &source.root; at != nullptr; at = next_in_order(&source.root, at)) {
        entry *copy = copies.of(at);
        copy->first_child = copies.of(at->first_child);
        copy->prev = copies.of(at->prev);
        copy->next = copies.of(at->next);
        copy->parent = copies.of(at->parent);
        copies.copy_value(*at, *copy);
    }
    target.entry_count = source.entry_count;
}

// A step of a path is matched anywhere below the step before it, not directly below it: intended.
template <typename Match>
entry *find_step(entry *from, const qek_array &path, std::int32_t step, Match match) noexcept
{
    std::uint8_t *key = nullptr;
    std::int32_t length = 0;
    qek_array_get_at(&path, step, &key, &length);
    return find(from, from, match, {pool::word_of(key), static_cast<qek_word>(length)});
}

template <typename Match>
entry *find_path(const qek_tree &tree, const qek_array &path, Match match) noexcept
{
    entry *at = path.count < 1 ? nullptr : loose(&tree.root);
    for (std::int32_t step = 0; step < path.count && at != nullptr; ++step) {
        at = find_step(at, path, step, match);
    }
    return at;
}

entry *append_new(qek_tree &tree, entry *parent) noexcept
{
    entry *made = tree::new_entry(tree);
    append(tree, parent, made);
    return made;
}

// Only the last entry of a path gets a value item; the tree stores nothing of the keys.
template <typename Match>
entry *insert_path(qek_tree &tree, const qek_array &path, Match match,
                   qek_value_fn init_value) noexcept
{
    entry *at = path.count < 1 ? nullptr : &tree.root;
    for (std::int32_t step = 0; step < path.count; ++step) {
        entry *found = find_step(at, path, step, match);
        if (found == nullptr) {
            found = append_new(tree, at);
            if (step == path.count - 1) {
                pool::new_value(tree.value_pool, init_value, found->value);
            }
        }
        at = found;
    }
    return at;
}

} // namespace

void qek_tree_init(qek_tree *tree, int32_t own_entry_pool, int32_t own_value_pool)
{
    init(*tree, own_entry_pool, own_value_pool);
}

void qek_tree_term(qek_tree *tree) { tree::term<ring_walk>(*tree); }

qek_tree_entry *qek_tree_entry_new(qek_tree *tree) { return tree::new_entry(*tree); }

void qek_tree_entry_free(qek_tree *tree, qek_tree_entry *entry, qek_value_fn free_value)
{
    tree::free_entry<ring_walk>(*tree, *entry, free_value);
}

void qek_tree_entry_append(qek_tree *tree, qek_tree_entry *parent, qek_tree_entry *entry)
{
    append(*tree, parent, entry);
}

void qek_tree_entry_insert(qek_tree *tree, qek_tree_entry *sibling, qek_tree_entry *entry)
{
    insert_before(*tree, sibling, entry);
}

void qek_tree_entry_remove(qek_tree *tree, qek_tree_entry *entry) { remove(*tree, entry); }

qek_tree_entry *qek_tree_entry_last(const qek_tree_entry *entry) { return last_child(entry); }

qek_tree_entry *qek_tree_entry_next(const qek_tree_entry *entry) { return next_sibling(entry); }

qek_tree_entry *qek_tree_entry_prev(const qek_tree_entry *entry) { return previous_sibling(entry); }

qek_tree_entry *qek_tree_entry_find(const qek_tree_entry *top, const qek_tree_entry *start,
                                    qek_word a, qek_word b, qek_tree_match_fn match)
{
    return find(top, start, plain_match{match}, {a, b});
}

qek_tree_entry *qek_tree_entry_find_parent(const qek_tree_entry *top, const qek_tree_entry *entry,
                                           qek_word a, qek_word b, qek_tree_match_fn match)
{
    return find_parent(top, entry, plain_match{match}, {a, b});
}

qek_tree_entry *qek_tree_entry_find_x(const qek_tree_entry *top, const qek_tree_entry *start,
                                      qek_word context, qek_word a, qek_word b,
                                      qek_tree_match_x_fn match)
{
    return find(top, start, context_match{match, context}, {a, b});
}

qek_tree_entry *qek_tree_entry_find_parent_x(const qek_tree_entry *top, const qek_tree_entry *entry,
                                             qek_word context, qek_word a, qek_word b,
                                             qek_tree_match_x_fn match)
{
    return find_parent(top, entry, context_match{match, context}, {a, b});
}

qek_tree_entry *qek_tree_entry_find_next(const qek_tree_entry *top, const qek_tree_entry *entry)
{
    return next_outside(top, entry);
}

int32_t qek_tree_entry_find_child(const qek_tree_entry *ancestor, const qek_tree_entry *entry)
{
    return is_ancestor(ancestor, entry);
}

qek_tree_entry *qek_tree_entry_iter_next(const qek_tree_entry *top, const qek_tree_entry *entry)
{
    return next_in_order(top, entry);
}

int32_t qek_tree_entry_compare(const qek_tree_entry *a, const qek_tree_entry *b)
{
    return compare(*a, *b);
}

void qek_tree_entry_swap(qek_tree_entry *a, qek_tree_entry *b) { swap(*a, *b); }

void qek_tree_clone(const qek_tree *source, qek_pool *source_aux_pool, qek_tree *target,
                    qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    clone(*source, *target, source_aux_pool, target_aux_pool, clone_value);
}

qek_tree_entry *qek_tree_insert(qek_tree *tree, const qek_array *path, qek_value_fn init_value,
                                qek_tree_match_fn match)
{
    return insert_path(*tree, *path, plain_match{match}, init_value);
}

qek_tree_entry *qek_tree_find(const qek_tree *tree, const qek_array *path, qek_tree_match_fn match)
{
    return find_path(*tree, *path, plain_match{match});
}

qek_tree_entry *qek_tree_insert_x(qek_tree *tree, const qek_array *path, qek_word context,
                                  qek_value_fn init_value, qek_tree_match_x_fn match)
{
    return insert_path(*tree, *path, context_match{match, context}, init_value);
}

qek_tree_entry *qek_tree_find_x(const qek_tree *tree, const qek_array *path, qek_word context,
                                qek_tree_match_x_fn match)
{
    return find_path(*tree, *path, context_match{match, context});
}

void qek_tree_remove_all(qek_tree *tree) { tree::remove_all<ring_walk>(*tree); }

void qek_tree_free_all(qek_tree *tree, qek_value_fn free_value)
{
    tree::free_all<ring_walk>(*tree, free_value);
}
