// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What the trees share whose keys are numbers in pages and nodes: no key text, so a removal costs
// the descent alone.
//
// The record's `key_type` says how a key orders: as a signed number, as an unsigned one, or as a
// floating number whose bits the key is. Any other code makes all keys equal. A NaN compares as
// less, on either side. High keys are compared by their bits, whatever the order.
#pragma once

#include "btree/tree.h"

#include <bit>
#include <cstdint>
#include <type_traits>

namespace qek::btree {

// The last three are the codes of `key_type`.
template <typename Tree, typename Page, typename Node, std::int32_t Signed, std::int32_t Unsigned,
          std::int32_t Real>
struct number_policy {
    using tree = Tree;
    using page = Page;
    using node = Node;
    using key = decltype(Node::key);
    static constexpr std::int32_t page_slots = btree::usual_page_slots;
    using real_number = std::conditional_t<sizeof(key) == sizeof(float), float, double>;

    static constexpr std::int32_t first_key_type() noexcept { return Signed; }
    static std::int32_t order_as_real(key left, key right) noexcept
    {
        const auto a = std::bit_cast<real_number>(left);
        const auto b = std::bit_cast<real_number>(right);
        return a > b ? 1 : a == b ? 0 : -1;
    }
    template <typename Element>
    static std::int32_t order(const Tree &of, const Element &at, key sought) noexcept
    {
        if (has_integers(of)) {
            const key left = at.key ^ turn_of(of);
            const key right = sought ^ turn_of(of);
            return static_cast<std::int32_t>(left > right) -
                   static_cast<std::int32_t>(left < right);
        }
        return of.key_type == Real ? order_as_real(at.key, sought) : 0;
    }
    // Integers have one order only, in which the children ascend strictly, so any search finds the
    // same place.
    static bool has_integers(const Tree &of) noexcept
    {
        return of.key_type == Signed || of.key_type == Unsigned;
    }
    // With its top bit turned, a signed number stands as an unsigned one.
    static key turn_of(const Tree &of) noexcept
    {
        return of.key_type == Signed ? key{1} << (8 * sizeof(key) - 1) : key{0};
    }

    // Integers in ascending order, seen with their top bits turned or not. Pages and nodes alike open
    // with their keys.
    struct row {
        const qek_word *slots;
        std::ptrdiff_t count;
        key turn;

        key operator[](std::ptrdiff_t index) const noexcept
        {
            return *static_cast<const key *>(pool::item_of(slots[index])) ^ turn;
        }
        std::ptrdiff_t is_below(std::ptrdiff_t index, key sought) const noexcept
        {
            return (*this)[index] < sought ? 1 : 0;
        }
        // Without a branch that depends on keys: every fourth of the up to 31, then the three before
        // the first that is not below. Half of the time of halving in a tree of five thousand.
        [[gnu::always_inline]] std::ptrdiff_t place_by_steps(key sought) const noexcept
        {
            std::ptrdiff_t index = 0;
            if (count < 16) {
                for (std::ptrdiff_t at = 0; at < count; ++at) {
                    index += is_below(at, sought);
                }
                return index;
            }
            index = is_below(3, sought) + is_below(7, sought) + is_below(11, sought) +
                    is_below(15, sought);
            for (std::ptrdiff_t at = 19; at < 28; at += 4) {
                index += is_below(smaller(at, count - 1), sought);
            }
            index = smaller(4 * index, count - 3);
            return index + is_below(index, sought) + is_below(index + 1, sought) +
                   is_below(index + 2, sought);
        }
        // From where the key would be if the keys in `low + 1 .. high` were spread evenly, as far as
        // eight children, or -1. Two or three are looked at, and in a tree that outgrew the caches it is
        // these looks that cost: two thirds of the time at a million keys.
        std::ptrdiff_t place_by_guess(key sought, key low, key high) const noexcept
        {
            constexpr std::ptrdiff_t most = 8;
            const auto real = [](key number) {
                return static_cast<double>(static_cast<std::make_signed_t<key>>(number >> 1));
            };
            const key way = smaller<key>(sought - low, high - low);
            const double guess =
                static_cast<double>(count - 1) * real(way) / (real(high - low) + 1);
            std::ptrdiff_t at = smaller(static_cast<std::ptrdiff_t>(guess) + 1, count - 1);
            const std::ptrdiff_t first = at - smaller(at, most);
            const std::ptrdiff_t end = smaller(at + most, count);
            key met = (*this)[at];
            if (met < sought) {
                do {
                    ++at;
                } while (at < end && is_below(at, sought) != 0);
                return at < end || at == count ? at : -1;
            }
            while (met > sought && at > first && (met = (*this)[at - 1]) >= sought) {
                --at;
            }
            return met <= sought || at == 0 ? at : -1;
        }
    };

    // Children that went in by the other order of integers, as after a swap of trees, ascend up to
    // where they turn round; there the halving decides what is found, and no leaf is told. The ends
    // of a page tell, and where the keys before it and its last one ascend, all of it does.
    [[gnu::noinline]] static place_in_tree<Page> place_of_integer(const Tree &of,
                                                                  key sought) noexcept
    {
        constexpr std::int32_t many = 1 << 16;
        const key turn = turn_of(of);
        const key turned = sought ^ turn;
        auto *page = const_cast<Page *>(&of.root);
        key low = ~key{0}; // nothing is known of the keys before
        key high = 0;
        for (;;) {
            const row keys{page->children.slots, array::slots_in_use(page->children), turn};
            if (low >= high && keys.count > 1 && keys[0] > keys[keys.count - 1]) {
                return {};
            }
            std::ptrdiff_t index = -1;
            if (low < high && of.node_count >= many) {
                index = keys.place_by_guess(turned, low, high);
            }
            if (index < 0) {
                index = keys.place_by_steps(turned);
            }
            if (!is_branch(*page)) {
                return {page,
                        {static_cast<std::int32_t>(index),
                         index < keys.count && keys[index] == turned}};
            }
            const std::ptrdiff_t nearest = smaller(index, keys.count - 1);
            low = nearest > 0 ? keys[nearest - 1] : low;
            page = static_cast<Page *>(pool::item_of(keys.slots[nearest]));
            high = page->key ^ turn;
        }
    }
    template <typename Element> static key key_of(const Tree &, const Element &at) noexcept
    {
        return at.key;
    }
    template <typename Element>
    static bool same_high_key(const Tree &, const Page &above, const Element &last) noexcept
    {
        return above.key == last.key;
    }
    template <typename To, typename From> static void copy_key(To &to, const From &from) noexcept
    {
        to.key = from.key;
    }
    static void store(Tree &, Node &at, key sought) noexcept { at.key = sought; }
    static void forget(Tree &, const Node &) noexcept {}
};

template <typename Policy>
void init_numbers(typename Policy::tree &tree, std::int32_t own_page_pool,
                  std::int32_t own_node_pool, std::int32_t own_value_pool) noexcept
{
    init<Policy>(tree, own_page_pool, own_node_pool, own_value_pool);
    tree.key_type = Policy::first_key_type();
}

} // namespace qek::btree
