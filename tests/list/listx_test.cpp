// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "list/list_check.h"
#include "support/pools.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <deque>

using namespace qek_test;

namespace {

struct unrolled_list : testing::Test {
    qek_listx list;

    unrolled_list() { qek_listx_init(&list, 1, 1); }
    ~unrolled_list() override { qek_listx_term(&list); }
};

// Runs of one action, long enough to pass the ends of blocks both ways. The model has the same
// blocks.
TEST_F(unrolled_list, packs_its_words_as_the_model_does)
{
    using words = std::deque<qek_word>;
    std::deque<words> model;
    random_numbers random;
    list.value_pool->item_size = 4;
    const auto check = [&] {
        ASSERT_EQ(list_fault(list), "");
        ASSERT_EQ(list.node_pool->live_count, std::ssize(model));
        const auto *at = list.head;
        for (const words &block : model) {
            ASSERT_EQ(words(at->items, at->items + at->used), block);
            at = at->next;
        }
    };
    for (int run = 0; random.goes_on(run, 400); ++run) {
        const bool at_head = random.one_in(2), adds = random.one_in(2), items = random.one_in(3);
        const auto add = at_head ? qek_listx_add_head : qek_listx_add_tail;
        const auto add_new = at_head ? qek_listx_add_head_new : qek_listx_add_tail_new;
        const auto remove = at_head ? qek_listx_remove_head : qek_listx_remove_tail;
        for (int count = random.between(1, 45); count > 0; --count) {
            const bool is_empty = model.empty();
            auto *block = is_empty ? nullptr : at_head ? &model.front() : &model.back();
            if (adds) {
                qek_word value = random.below(4);
                value = items ? word(add_new(&list, note_free)) : (add(&list, value), value);
                ASSERT_TRUE(!items || freed.back() == value);
                if (is_empty || block->size() == 32) {
                    block = &*model.emplace(at_head ? model.begin() : model.end());
                    const auto *made = at_head ? list.head : list.tail;
                    ASSERT_EQ(std::count(made->items, made->items + 32, 0U), 31 + (value == 0));
                }
                block->insert(at_head ? block->begin() : block->end(), value);
            } else if (is_empty) {
                ASSERT_EQ(remove(&list), 0U);
            } else {
                ASSERT_EQ(remove(&list), at_head ? block->front() : block->back());
                block->erase(at_head ? block->begin() : block->end() - 1);
                std::erase(model, words());
            }
            ASSERT_NO_FATAL_FAILURE(check());
        }
    }
}

// A word taken off the end leaves 0, one taken off the front a copy of the last one at the end.
TEST_F(unrolled_list, leaves_words_behind_in_a_block_but_not_in_a_new_one)
{
    for (const qek_word value : {1U, 2U, 3U}) {
        qek_listx_add_tail(&list, value);
    }
    const auto *block = list.head;
    qek_listx_remove_tail(&list);
    EXPECT_EQ(block->items[2], 0U);
    qek_listx_remove_head(&list);
    EXPECT_TRUE(block->items[0] == 2 && block->items[1] == 2);
    qek_listx_remove_head(&list);
    qek_listx_add_head(&list, 7);
    EXPECT_TRUE(list.head == block && block->items[1] == 0);
    for (const int used : {0, 33}) {
        list.head->used = used;
        EXPECT_EQ(list_fault(list), "used");
    }
    list.head->used = 0;
    EXPECT_EQ(qek_listx_remove_head(&list) + qek_listx_remove_tail(&list), 0U);
    EXPECT_TRUE(list.count == 1 && list.head->items[0] == 7);
}

// No item is the word 0. Without a block no item is taken.
TEST_F(unrolled_list, takes_what_the_pools_give)
{
    EXPECT_EQ(qek_listx_add_head_new(&list, note_free), nullptr);
    EXPECT_EQ(qek_listx_add_tail_new(&list, note_free), nullptr);
    EXPECT_TRUE(list.count == 2 && list.head->items[0] == 0 && list.head->items[1] == 0);
    list.value_pool->item_size = 4;
    EXPECT_NE(qek_listx_add_head_new(&list, nullptr), nullptr);
    qek_listx_remove_all(&list);
    list.node_pool->item_size = 0;
    EXPECT_EQ(qek_listx_add_head_new(&list, note_free), nullptr);
    EXPECT_EQ(qek_listx_add_tail_new(&list, note_free), nullptr);
    qek_listx_add_head(&list, 5);
    qek_listx_add_tail(&list, 5);
    EXPECT_EQ(list.count + list.value_pool->live_count, 0);
}

} // namespace
