// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The invariants of a key tree, as the head of btree/tree.h states them, looked at from outside.
#pragma once

#include "support/keyed_suite.h"

namespace qek_test {

// One look at a whole tree. `Family` has its types, the `slots` of a page, the key of a node,
// whether a page and its last child `refer_to_one` key, and `precedes`, the order of keys.
template <typename Family> class tree_look {
    using tree = typename Family::container;
    using page = typename Family::page;
    using node = typename Family::element;

  public:
    std::string fault; // the first invariant that does not hold; empty for a sound tree
    words nodes;       // by slots, which is in key order
    words pages;       // all but the root, each behind its children

    explicit tree_look(const tree &of) : of_(of)
    {
        expect(of.root.parent == nullptr, "parent");
        look_at(of.root);
        expect(std::ssize(nodes) == of.node_count, "node_count");
        if constexpr (requires { of.keys; }) {
            look_at_text();
        }
        any_key last;
        for (std::size_t at = 0; fault.empty() && at < nodes.size(); ++at) {
            any_key key = Family::key_of(of, *node_at(at));
            expect(at == 0 || Family::precedes(of, last, key), "order");
            last = std::move(key);
        }
    }

    bool is_chained() const
    {
        node *last = nullptr;
        bool is_sound = true;
        for (std::size_t at = 0; at < nodes.size(); last = node_at(at++)) {
            is_sound &= node_at(at)->prev == last && (last == nullptr || last->next == node_at(at));
        }
        return is_sound && (last == nullptr || last->next == nullptr);
    }
    node *node_at(std::size_t index) const { return item<node>(nodes[index]); }

  private:
    const tree &of_;

    void expect(bool holds, const char *what) { fault = holds || !fault.empty() ? fault : what; }

    void look_at(const page &at)
    {
        const qek_arrays &children = at.children;
        const bool is_root = &at == &of_.root;
        const bool is_branch = at.level != 0;
        expect(at.level >= 0, "level");
        expect(children.count >= (is_root && !is_branch ? 0 : 1), "count");
        expect(children.count < Family::slots, "count");
        expect(children.capacity >= (is_root ? children.count : Family::slots), "capacity");
        expect(children.pool == (is_branch ? of_.page_pool : of_.node_pool), "pool");
        expect(children.owns_pool == 0 && children.reversed == 0, "pool");
        for (int slot = 0; fault.empty() && slot < children.count; ++slot) {
            is_branch ? look_at_page(at, slot) : nodes.push_back(children.slots[slot]);
        }
        if (!is_root && fault.empty()) {
            const qek_word last = children.slots[children.count - 1];
            expect(is_branch ? Family::refer_to_one(at, *item<page>(last))
                             : Family::refer_to_one(at, *item<node>(last)),
                   "high key");
        }
    }

    void look_at_page(const page &parent, int slot)
    {
        auto *at = item<page>(parent.children.slots[slot]);
        expect(at->parent == &parent, "parent");
        expect(at->level == parent.level - 1, "level");
        if (fault.empty()) {
            look_at(*at);
            pages.push_back(word(at));
        }
    }

    // Key text has no holes and no overlaps.
    void look_at_text()
    {
        std::vector<std::pair<std::int64_t, std::int64_t>> runs;
        for (std::size_t at = 0; at < nodes.size(); ++at) {
            runs.emplace_back(node_at(at)->key_offset, node_at(at)->key_length);
        }
        std::sort(runs.begin(), runs.end());
        std::int64_t end = 0;
        for (const auto &[offset, length] : runs) {
            expect(length >= 0 && offset == end, "key place");
            end += length;
        }
        expect(end == of_.keys.length, "keys length");
    }
};

} // namespace qek_test
