// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What the two trees share: a root embedded in the record, entries from a pool, and the whole-tree
// calls over them.
//
// Both records have one shape, and so have their entries: five words, the last of them `value`.
// Every walk over a caller's tree goes by the links in the entries and not by the call stack, so
// that a tree a million deep is walked in constant space. A family brings its walk: `for_each(top,
// visit)` runs `visit(entry)` over the tree under `top`, an entry after everything below it, `top`
// last. An entry may be given away in its visit.
//
// The flags of own pools survive `term`: a terminated record needs its `init` before anything else.
#pragma once

#include "base/exchange.h"
#include "pool/owned.h"
#include "pool/translation.h"
#include "qek_std.h"

#include <cstdint>

namespace qek::tree {

template <typename Tree> using entry_of = decltype(Tree::root);

template <typename Tree>
void make_pools(Tree &tree, std::int32_t own_entry_pool, std::int32_t own_value_pool) noexcept
{
    pool::own(tree.entry_pool, tree.owns_entry_pool, own_entry_pool, sizeof(entry_of<Tree>));
    pool::own(tree.value_pool, tree.owns_value_pool, own_value_pool, pool::size_from_caller);
}

template <typename Tree> entry_of<Tree> *new_entry(Tree &tree) noexcept
{
    return pool::cleared<entry_of<Tree>>(*tree.entry_pool);
}

template <typename Tree> void give_entry(Tree &tree, entry_of<Tree> &entry) noexcept
{
    if (&entry != &tree.root) {
        pool::give_to(pool::borrowed(tree.entry_pool, tree.owns_entry_pool), &entry);
    }
}

template <typename Walk, typename Tree>
[[gnu::noinline]] void free_entry(Tree &tree, entry_of<Tree> &top, qek_value_fn free_value) noexcept
{
    const pool::disposal dispose = pool::disposal_of(tree, free_value);
    Walk::for_each(top, [&](entry_of<Tree> &entry) {
        dispose.of_nonzero(entry.value);
        give_entry(tree, entry);
    });
}

template <typename Walk, typename Tree>
[[gnu::noinline]] void give_back_entries(Tree &tree) noexcept
{
    if (pool::borrowed(tree.entry_pool, tree.owns_entry_pool) != nullptr) {
        Walk::for_each(tree.root, [&](entry_of<Tree> &entry) { give_entry(tree, entry); });
    }
}

template <typename Tree> void forget_entries(Tree &tree) noexcept
{
    tree.root = {};
    tree.entry_count = 0;
}

// Ends an own pool and keeps the flag.
template <typename Flag> void end_owned(qek_pool *&pool, Flag owns) noexcept
{
    pool::end_owned(pool, owns);
}

template <typename Walk, typename Tree> void term(Tree &tree) noexcept
{
    give_back_entries<Walk>(tree);
    end_owned(tree.entry_pool, tree.owns_entry_pool);
    end_owned(tree.value_pool, tree.owns_value_pool);
    forget_entries(tree);
}

template <typename Tree> void empty_pools(Tree &tree) noexcept
{
    pool::empty_owned(tree.entry_pool, tree.owns_entry_pool);
    pool::empty_owned(tree.value_pool, tree.owns_value_pool);
    forget_entries(tree);
}

template <typename Walk, typename Tree> void remove_all(Tree &tree) noexcept
{
    give_back_entries<Walk>(tree);
    empty_pools(tree);
}

template <typename Walk, typename Tree> void free_all(Tree &tree, qek_value_fn free_value) noexcept
{
    if (pool::disposal_of(tree, free_value).does_something() ||
        pool::borrowed(tree.entry_pool, tree.owns_entry_pool) != nullptr) {
        free_entry<Walk>(tree, tree.root, free_value);
    }
    empty_pools(tree);
}

// The copies of entries and values while a tree is cloned. The roots lie in the records and not in
// the pool, and stand for one another.
template <typename Tree> class copies {
  public:
    using entry = entry_of<Tree>;

    copies(const Tree &source, Tree &target, const pool::value_copier &copier) noexcept
        : source_(source), target_(target), copier_(copier),
          entries_(source.owns_entry_pool != 0, source.entry_pool, target.entry_pool),
          values_(source.owns_value_pool != 0, source.value_pool, target.value_pool)
    {
    }

    entry *of(const entry *source) const noexcept
    {
        return source == &source_.root ? &target_.root : entries_.of(source);
    }
    void copy_value(const entry &source, entry &copy) const noexcept
    {
        copier_.copy(source.value, values_, copy.value);
    }

  private:
    const Tree &source_;
    Tree &target_;
    const pool::value_copier &copier_;
    pool::translation_of_nodes entries_;
    pool::translation values_;
};

} // namespace qek::tree
