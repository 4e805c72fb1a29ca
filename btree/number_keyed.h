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
    // Of keys that are no integers, for which `step_to` is asked.
    template <typename Element>
    static std::int32_t order(const Tree &of, const Element &at, key sought) noexcept
    {
        return of.key_type == Real ? order_as_real(at.key, sought) : 0;
    }
    // Integers have one order only, in which the children ascend strictly, so any search finds the
    // same place. This one waits for memory twice and not five times: every fourth child, then the
    // four, are looked at side by side. Three quarters of its time. Children that went in by the
    // other order of integers, as after a swap of trees, ascend up to where they turn round, so the
    // ends of the page tell; there the halving decides what is found.
    static bool has_steps(const Tree &of) noexcept
    {
        return of.key_type == Signed || of.key_type == Unsigned;
    }
    template <typename Element>
    static array::place step_to(const Tree &of, const qek_arrays &children, key sought) noexcept
    {
        // With its top bit turned, a signed number stands as an unsigned one.
        const key turn = of.key_type == Signed ? key{1} << (8 * sizeof(key) - 1) : key{0};
        const key turned = sought ^ turn;
        const auto key_at = [&](std::int32_t index) {
            const auto *at = static_cast<const Element *>(pool::item_of(children.slots[index]));
            return at->key ^ turn;
        };
        constexpr std::int32_t step = 4;
        const std::int32_t count = array::slots_in_use(children);
        if (count > 1 && key_at(0) > key_at(count - 1)) {
            return array::locate(count, false, [&](std::int32_t index) {
                return static_cast<std::int32_t>(key_at(index) > turned) -
                       static_cast<std::int32_t>(key_at(index) < turned);
            });
        }
        std::int32_t index = 0;
        while (index + step <= count && key_at(index + step - 1) < turned) {
            index += step;
        }
        const std::int32_t end = smaller(index + step, count);
        for (std::int32_t at = index; at < end; ++at) {
            index += key_at(at) < turned ? 1 : 0;
        }
        return {index, index < count && key_at(index) == turned};
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
