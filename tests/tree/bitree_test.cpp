// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "support/pools.h"

#include <gmock/gmock.h>

#include <climits>

using namespace qek_test;

namespace {

using entry = qek_bitree_entry;

struct binary_tree : testing::Test {
    qek_bitree tree;
    entry *root = &tree.root;

    binary_tree() { qek_bitree_init(&tree, 1, 0); }
    ~binary_tree() override { qek_bitree_term(&tree); }

    entry *hang(entry *at, int side)
    {
        entry *made = qek_bitree_entry_new(&tree);
        qek_bitree_entry_add(&tree, at, side, made);
        return made;
    }
};

TEST_F(binary_tree, leaves_the_entry_pool_to_the_caller)
{
    lent_pool entries(sizeof(entry));
    qek_bitree lent{{}, 9, &entries, 9, &entries, 9};
    qek_bitree_init(&lent, 0, 0);
    EXPECT_TRUE(lent.entry_pool == &entries && lent.value_pool == nullptr);
    EXPECT_EQ(lent.entry_count + lent.owns_entry_pool + lent.owns_value_pool, 0);
    qek_bitree_clone(&lent, nullptr, &tree, nullptr, nullptr);
    EXPECT_NE(tree.entry_pool, &entries);
}

TEST_F(binary_tree, hangs_by_the_sign_and_overwrites_unread)
{
    for (entry *at : {root, hang(root, -1)}) {
        for (const int side : {-1, INT_MIN, 0, 0, 1, INT_MAX}) {
            const entry *made = hang(at, side);
            EXPECT_EQ(side < 0 ? at->less : side > 0 ? at->greater : at->equal, made);
            EXPECT_EQ(made->parent, side == 0 ? at->parent : at);
        }
    }
    EXPECT_EQ(tree.entry_count, 13);
}

TEST_F(binary_tree, exchanges_two_records_and_settles_their_sides_and_chains)
{
    entry *a = hang(root, -1), *b = hang(root, 1), *less = hang(b, -1), *greater = hang(b, 1);
    entry *equal = qek_bitree_entry_new(&tree), *last = hang(equal, 0);
    qek_bitree_entry_add(&tree, b, 0, equal);
    EXPECT_TRUE(equal->parent == root && last->parent == nullptr);
    b->value = 2;
    qek_bitree_entry_swap(a, b);
    EXPECT_TRUE(a->less == less && a->greater == greater && a->equal == equal && a->value == 2);
    EXPECT_TRUE(less->parent == a && greater->parent == a && last->parent == root);
    EXPECT_TRUE(b->parent == root && !b->less && !b->greater && !b->equal && b->value == 0);
    EXPECT_TRUE(root->less == a && root->greater == b) << "these are the caller's to mend";
}

// What was chained before its head was hung has no parent; the copy has that of the head.
TEST_F(binary_tree, is_copied_with_the_parent_of_its_head_throughout_a_chain)
{
    entry *head = qek_bitree_entry_new(&tree);
    hang(hang(head, 0), 0);
    qek_bitree_entry_add(&tree, root, -1, head);
    qek_bitree copy;
    qek_bitree_init(&copy, 1, 0);
    qek_bitree_clone(&tree, nullptr, &copy, nullptr, nullptr);
    EXPECT_EQ(copy.root.less->equal->parent, &copy.root);
    EXPECT_EQ(copy.root.less->equal->equal->parent, &copy.root);
    qek_bitree_term(&copy);
}

} // namespace
