// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What the two trees have in common. Their walks stand as a recursion here, which is what the
// library's walks by links must look like from outside.

#include "support/platform.h"
#include "support/pools.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <set>

using namespace qek_test;

namespace {

// clang-format off
enum { init, term, entry_new, entry_free, remove_all, free_all, clone };
template <typename Tree> constexpr auto calls = std::make_tuple(
    qek_tree_init, qek_tree_term, qek_tree_entry_new, qek_tree_entry_free, qek_tree_remove_all,
    qek_tree_free_all, qek_tree_clone);
template <> constexpr auto calls<qek_bitree> = std::make_tuple(
    qek_bitree_init, qek_bitree_term, qek_bitree_entry_new, qek_bitree_entry_free,
    qek_bitree_remove_all, qek_bitree_free_all, qek_bitree_clone);
// clang-format on
template <int Which, typename Tree, typename... Arguments> auto run(Tree &tree, Arguments... of)
{
    return std::get<Which>(calls<Tree>)(&tree, of...);
}

// The free place for a new entry is found from `at` by a choice of 0 to 2.
void hang(qek_tree &tree, qek_tree_entry *at, qek_tree_entry *made, unsigned choice)
{
    choice == 0 && at->parent != nullptr ? qek_tree_entry_insert(&tree, at, made)
                                         : qek_tree_entry_append(&tree, at, made);
}
void hang(qek_bitree &tree, qek_bitree_entry *at, qek_bitree_entry *made, unsigned choice)
{
    constexpr qek_bitree_entry *qek_bitree_entry::*sides[] = {
        &qek_bitree_entry::less, &qek_bitree_entry::equal, &qek_bitree_entry::greater};
    while (at->*sides[choice] != nullptr) {
        at = at->*sides[choice];
    }
    qek_bitree_entry_add(&tree, at, static_cast<int>(choice) * 7 - 7, made);
}

std::vector<qek_tree_entry *> below(const qek_tree_entry *at, bool)
{
    std::vector children{at->first_child};
    while (children.back() != nullptr && children.back()->next != at->first_child) {
        children.push_back(children.back()->next);
    }
    return children;
}
// Copying runs along the rest of the chain, and does so again from each entry that it meets there.
std::vector<qek_bitree_entry *> below(const qek_bitree_entry *at, bool copies)
{
    std::vector links{at->less, at->greater, at->equal};
    while (copies && links.back() != nullptr) {
        links.push_back(links.back()->equal);
    }
    return links;
}

// Copied before what is below, freed behind it.
template <typename Entry> void walk(Entry *at, bool copies, std::vector<Entry *> &order)
{
    const auto place = std::ssize(order);
    for (Entry *each : below(at, copies)) {
        if (each != nullptr) {
            walk(each, copies, order);
        }
    }
    order.insert(copies ? order.begin() + place : order.end(), at);
}

// Over own or lent pools, with values of 0 among the others.
template <typename Tree> struct random_tree : Tree {
    using entry = decltype(Tree::root);
    lent_pool lent_entries{sizeof(entry)}, lent_values{sizeof(int)};
    std::vector<entry *> entries{&this->root};

    random_tree(random_numbers &random, bool own_entries, bool own_values)
    {
        run<init, Tree>(*this, own_entries, own_values);
        this->entry_pool = own_entries ? this->entry_pool : &lent_entries;
        this->value_pool = own_values ? this->value_pool : &lent_values;
        this->value_pool->item_size = sizeof(int);
        const int most = random_numbers::is_given ? 12 : 25; // a chain's copy takes 2^most visits
        const int size = random.between(1, most);
        while (std::ssize(entries) < size) {
            entry *at = any(random);
            for (auto spare = random.below(9); own_entries && spare > 0; --spare) {
                void *used = std::memset(qek_pool_new(this->entry_pool), 0xA5, sizeof(entry));
                spare == 1 ? qek_pool_free(this->entry_pool, used) : void(); // others fill blocks
            }
            entries.push_back(run<entry_new, Tree>(*this));
            hang(*this, at, entries.back(), random.below(3));
        }
        for (int number = 0; number < size; ++number) {
            auto *value = random.one_in(5) ? &number : qek_pool_new(this->value_pool);
            *static_cast<int *>(value) = number;
            entries[size_t(number)]->value = value == &number ? 0 : word(value);
        }
    }
    entry *any(random_numbers &random) { return entries[random.below(entries.size())]; }
};

template <typename Tree> struct trees : testing::Test {
};
using families = testing::Types<qek_tree, qek_bitree>;
TYPED_TEST_SUITE(trees, families);

TYPED_TEST(trees, release_in_the_order_of_the_recursion)
{
    random_numbers random;
    for (const int round : random.each_below(640)) {
        const bool own_entries = round & 1, own_values = round & 2;
        const auto callback = round & 4 ? note_free : nullptr;
        const int way = round / 8 % 4;
        random_tree<TypeParam> tree(random, own_entries, own_values);
        auto *top = way == 0 ? tree.any(random) : &tree.root;
        decltype(tree.entries) order, order_after, order_in_pool;
        auto root = tree.root;
        walk(top, false, order);
        std::vector<qek_word> values, entries;
        for (const auto *each : order) {
            values.push_back(way < 2 ? each->value : 0);
            entries.push_back(own_entries || each == &tree.root ? 0 : word(each));
        }
        std::erase(values, 0);
        std::erase(entries, 0);
        freed.clear();
        way == 0   ? run<entry_free, TypeParam>(tree, top, callback)
        : way == 1 ? run<free_all, TypeParam>(tree, callback)
        : way == 2 ? run<remove_all, TypeParam>(tree)
                   : run<term, TypeParam>(tree);
        EXPECT_EQ(freed, callback ? values : none);
        EXPECT_EQ(tree.lent_values.given_back(), own_values ? none : values);
        EXPECT_EQ(tree.lent_entries.given_back(), entries);
        EXPECT_TRUE(tree.owns_entry_pool == own_entries && tree.owns_value_pool == own_values);
        EXPECT_EQ(tree.entry_pool == nullptr, own_entries && way == 3);
        EXPECT_EQ(tree.value_pool == nullptr, own_values && way == 3);
        if (way == 0) {
            walk(top, false, order_after);
            EXPECT_EQ(order_after, order) << "links stay whole";
            EXPECT_EQ(tree.entry_count, std::ssize(tree.entries) - 1);
        } else {
            walk(&tree.root, false, order_after);
            walk(own_entries ? &tree.root : &root, false, order_in_pool);
            EXPECT_TRUE(own_entries || std::equal(order.begin(), order.end() - 1,
                                                  order_in_pool.begin(), order_in_pool.end() - 1));
            EXPECT_TRUE(order_after.size() == 1 && tree.root.value == 0 && tree.entry_count == 0);
            EXPECT_TRUE(way == 3 || !own_entries || tree.entry_pool->live_count == 0);
            EXPECT_TRUE(way == 3 || !own_values || tree.value_pool->live_count == 0);
        }
        if (way != 3) {
            tree.root = {};
            run<term, TypeParam>(tree);
        }
    }
}

template <typename Entry> std::array<Entry *, 4> links(const Entry &of)
{
    const auto &[a, b, c, d, value] = of;
    return {a, b, c, d};
}

// Own values with a pool beside them, own values without, lent values.
TYPED_TEST(trees, clone_in_the_order_of_the_recursion)
{
    random_numbers random;
    for (const int round : random.each_below(150)) {
        const bool own_values = round % 3 != 2, with_pool = round % 3 == 0;
        random_tree<TypeParam> from(random, true, own_values);
        qek_pool_free(from.entry_pool, qek_pool_new(from.entry_pool));
        lent_pool beside(1), beside_copy(0);
        qek_pool_new(&beside);
        TypeParam to;
        run<init>(to, 1, own_values);
        copied.clear();
        run<clone, TypeParam>(from, with_pool ? &beside : nullptr, &to,
                              with_pool ? &beside_copy : nullptr, note_copy);
        EXPECT_EQ(to.entry_count, from.entry_count);
        EXPECT_EQ(to.value_pool == from.value_pool, !own_values);

        // The visits in their order; each entry's copy, found by following the links in step.
        decltype(from.entries) order;
        walk(&from.root, true, order);
        std::map<const void *, decltype(&to.root)> copies{{nullptr, nullptr},
                                                          {&from.root, &to.root}};
        decltype(copied) told;
        for (const auto *each : order) {
            auto *copy = copies.at(each);
            for (size_t at = 0; at < 4; ++at) {
                auto *link = links(*copy)[at];
                EXPECT_EQ(copies.try_emplace(links(*each)[at], link).first->second, link);
            }
            told.emplace_back(each->value, copy->value);
            EXPECT_EQ(each->value == copy->value, !own_values || each->value == 0);
            EXPECT_TRUE(each->value == 0 || *item<int>(each->value) == *item<int>(copy->value));
        }
        EXPECT_EQ(copied, own_values ? told : decltype(told)());
        std::set<const void *> distinct{run<entry_new>(to)};
        for (const auto &[each, copy] : copies) {
            EXPECT_TRUE(distinct.insert(copy).second && (copy == nullptr || copy != each));
        }
        EXPECT_EQ(distinct.size(), from.entries.size() + 2);
        run<term, TypeParam>(from);
        run<term>(to);
    }
}

uint64_t sum;
void add_up(qek_word value) { sum += value; }

// Entries are hung by one choice on even and by one on odd levels. A chain all through could not be
// copied before the end of days.
TYPED_TEST(trees, a_million_deep_need_little_stack)
{
    constexpr int levels = 1'000'000;
    constexpr bool is_general = std::is_same_v<TypeParam, qek_tree>;
    for (const auto &[even, odd] : {std::pair(0U, 0U), {2, 2}, {0, 1}, {1, 2}, {1, 1}}) {
        const bool can_be_cloned = is_general || even + odd != 2;
        TypeParam tree, copy;
        run<init>(tree, 1, 0);
        run<init>(copy, 1, 0);
        tree.entry_pool->items_per_block = 8192;
        auto *at = &tree.root;
        for (int level = 0; level < levels; ++level) {
            auto *made = run<entry_new>(tree);
            made->value = static_cast<qek_word>(level + 1);
            hang(tree, at, made, level % 2 == 0 ? even : odd);
            at = made;
        }
        sum = 0;
        {
            const small_stack stack;
            if (can_be_cloned) {
                run<clone>(tree, nullptr, &copy, nullptr, nullptr);
                run<free_all>(copy, add_up);
            }
            run<entry_free>(tree, &tree.root, add_up);
            if constexpr (is_general) {
                EXPECT_EQ(qek_tree_entry_compare(at, &tree.root) == levels, even * odd > 0);
            }
            tree.owns_entry_pool = 0; // as if it were lent
            run<remove_all>(tree);
        }
        EXPECT_EQ(sum, uint64_t{levels} * (levels + 1) / (can_be_cloned ? 1 : 2));
        EXPECT_EQ(tree.entry_pool->live_count, 0);
        tree.owns_entry_pool = 1;
        run<term>(tree);
        run<term>(copy);
    }
}

} // namespace
