// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The storage half of a binary search tree: a caller searches and decides, this keeps the links.
//
//           parent
//          /      |
//      less        greater --equal--> same key --equal--> same key
//
// Invariants: a child on either side names its parent; the entries of an `equal` chain all name the
// parent of the chain's head, so they cannot be told from one another by going up.
//
// What the trees share is tree.h.

#include "tree/tree.h"

using namespace qek;

namespace {

using entry = qek_bitree_entry;

// Less, then greater, then the equal chain, then the entry itself; so a chain is gone through from
// its head, sides first, and visited from its end.
//
// There is no way back along a chain, and none is kept elsewhere: on its way down the walk leaves
// in each entry's `parent` the entry in front of it. At the end of the chain the parents are put
// back and the chain is turned round, and is turned back link by link as its entries are visited,
// so that each is whole by then. An entry that was hung on a chain before its head had a parent
// gets that one.
struct side_walk {
    static entry *descend(entry *at) noexcept
    {
        while (true) {
            if (at->less != nullptr) {
                at = at->less;
            } else if (at->greater != nullptr) {
                at = at->greater;
            } else if (at->equal != nullptr) {
                at = into_chain(at);
            } else {
                return at;
            }
        }
    }

    static entry *into_chain(entry *at) noexcept
    {
        at->equal->parent = at;
        return at->equal;
    }

    static bool is_chained(const entry *at) noexcept { return at->parent->equal == at; }

    // Everything below `at`, a side of its parent, is done: the next entry of which that is true.
    static entry *after(const entry *at) noexcept
    {
        entry *up = at->parent;
        if (at == up->less && up->greater != nullptr) {
            return descend(up->greater);
        }
        return up->equal != nullptr ? descend(into_chain(up)) : up;
    }

    static entry *turn_round(entry *last, const entry *top) noexcept
    {
        entry *head = last;
        while (head != top && is_chained(head)) {
            head = head->parent;
        }
        for (entry *at = last; at != head;) {
            entry *before = at->parent;
            at->parent = head->parent;
            at->equal = before;
            at = before;
        }
        return head;
    }

    template <typename Visit>
    static entry *visit_chain(entry *last, const entry *top, Visit visit) noexcept
    {
        entry *head = turn_round(last, top);
        entry *behind = nullptr;
        for (entry *at = last; at != head;) {
            entry *before = at->equal;
            at->equal = behind;
            behind = at;
            visit(*at);
            at = before;
        }
        return head;
    }

    template <typename Visit> static void for_each(entry &top, Visit visit) noexcept
    {
        entry *at = descend(&top);
        while (true) {
            at = visit_chain(at, &top, visit);
            if (at == &top) {
                visit(top);
                return;
            }
            entry *next = after(at);
            visit(*at);
            at = next;
        }
    }
};

// `entry_pool` stays as it was found, so that a borrowed pool may be written before: intended.
void init(qek_bitree &tree, std::int32_t own_entry_pool, std::int32_t own_value_pool) noexcept
{
    qek_pool *entry_pool = tree.entry_pool;
    tree = {};
    tree.entry_pool = entry_pool;
    tree::make_pools(tree, own_entry_pool, own_value_pool);
}

// What the link held before is overwritten unread.
void add(qek_bitree &tree, entry *at, std::int32_t side, entry *added) noexcept
{
    (side < 0 ? at->less : side > 0 ? at->greater : at->equal) = added;
    added->parent = side == 0 ? at->parent : at;
    ++tree.entry_count;
}

void settle(entry &at) noexcept
{
    if (at.less != nullptr) {
        at.less->parent = &at;
    }
    if (at.greater != nullptr) {
        at.greater->parent = &at;
    }
    for (entry *same = at.equal; same != nullptr; same = same->equal) {
        same->parent = at.parent;
    }
}

// Links from above keep naming the same record: intended, they are the caller's to mend.
void swap(entry &a, entry &b) noexcept
{
    exchange(a, b);
    settle(a);
    settle(b);
}

// Copies entry by entry. A visit to an entry takes its sides first and then runs along the rest of
// its equal chain, and each entry of the chain does the same in its own visit: the k-th behind the
// head is visited 2^(k-1) times, and the callback sees that. Intended.
//
// What the visits of a chain would leave on a call stack stands in the copies: while a chain entry
// is visited, its copy's `parent` names the source entry whose visit runs along the chain.
class cloning {
  public:
    cloning(const qek_bitree &source, qek_bitree &target, const pool::value_copier &copier) noexcept
        : root_(&source.root), copies_(source, target, copier)
    {
    }

    void run() noexcept
    {
        const entry *at = root_;
        at = enter(at, nullptr);
        while (at != nullptr) {
            at = leave(at);
        }
    }

  private:
    // Copies `at` and everything down its first sides; yields the one that has no side left to do.
    const entry *enter(const entry *at, entry *parent) noexcept
    {
        while (true) {
            entry *copy = copies_.of(at);
            copy->parent = parent;
            copy->equal = copies_.of(at->equal);
            copy->less = copies_.of(at->less);
            copy->greater = copies_.of(at->greater);
            copies_.copy_value(*at, *copy);
            const entry *below = at->less != nullptr ? at->less : at->greater;
            if (below == nullptr) {
                return at;
            }
            parent = copy;
            at = below;
        }
    }

    const entry *enter_chain(const entry *at, const entry *owner) noexcept
    {
        return enter(at, const_cast<entry *>(owner));
    }

    bool is_side(const entry *at) const noexcept
    {
        const entry *up = at->parent;
        return up != nullptr && (up->less == at || up->greater == at);
    }

    // The sides of `at` are done. Goes on to the next entry that is in this state, or null.
    const entry *leave(const entry *at) noexcept
    {
        if (at->equal != nullptr) {
            return enter_chain(at->equal, at);
        }
        while (at != root_ && !is_side(at)) {
            entry *copy = copies_.of(at);
            const entry *owner = copy->parent;
            copy->parent = copies_.of(owner)->parent; // true at last, when the owner is the head
            if (at->equal != nullptr) {
                return enter_chain(at->equal, owner);
            }
            at = owner;
        }
        return at == root_ ? nullptr : after_side(at);
    }

    const entry *after_side(const entry *at) noexcept
    {
        const entry *up = at->parent;
        if (at == up->less && up->greater != nullptr) {
            return enter(up->greater, copies_.of(up));
        }
        return up;
    }

    const entry *root_;
    tree::copies<qek_bitree> copies_;
};

void clone(const qek_bitree &source, qek_bitree &target, qek_pool *source_aux, qek_pool *target_aux,
           qek_clone_fn clone_value) noexcept
{
    pool::share_borrowed(source.value_pool, source.owns_value_pool, target.value_pool);
    const pool::value_copier copier(source_aux, target_aux, clone_value);
    cloning(source, target, copier).run();
    target.entry_count = source.entry_count;
}

} // namespace

void qek_bitree_init(qek_bitree *bitree, int32_t own_entry_pool, int32_t own_value_pool)
{
    init(*bitree, own_entry_pool, own_value_pool);
}

void qek_bitree_term(qek_bitree *bitree) { tree::term<side_walk>(*bitree); }

qek_bitree_entry *qek_bitree_entry_new(qek_bitree *bitree) { return tree::new_entry(*bitree); }

void qek_bitree_entry_free(qek_bitree *bitree, qek_bitree_entry *entry, qek_value_fn free_value)
{
    tree::free_entry<side_walk>(*bitree, *entry, free_value);
}

void qek_bitree_entry_add(qek_bitree *bitree, qek_bitree_entry *entry, int32_t side,
                          qek_bitree_entry *new_entry)
{
    add(*bitree, entry, side, new_entry);
}

void qek_bitree_entry_swap(qek_bitree_entry *a, qek_bitree_entry *b) { swap(*a, *b); }

void qek_bitree_clone(const qek_bitree *source, qek_pool *source_aux_pool, qek_bitree *target,
                      qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    clone(*source, *target, source_aux_pool, target_aux_pool, clone_value);
}

void qek_bitree_remove_all(qek_bitree *bitree) { tree::remove_all<side_walk>(*bitree); }

void qek_bitree_free_all(qek_bitree *bitree, qek_value_fn free_value)
{
    tree::free_all<side_walk>(*bitree, free_value);
}
