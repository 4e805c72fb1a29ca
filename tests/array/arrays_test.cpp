// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "array/array_model.h"
#include "array/keyed_check.h"
#include "support/allocations.h"
#include "support/pools.h"

#include <gmock/gmock.h>

#include <tuple>

namespace {

using namespace qek_test;
using std::tuple;

struct words : qek_arrays {
    explicit words(int use_pool = 0) { qek_arrays_init(this, use_pool); }
    ~words() { qek_arrays_term(this); }
    words(const words &) = delete;
    words &operator=(const words &) = delete;
    std::vector<qek_word> storage() const { return {slots, slots + capacity}; }
};

TEST(arrays, without_an_order_only_append)
{
    words array;
    for (const qek_word key : {5U, 3U, 5U}) {
        EXPECT_EQ(qek_arrays_insert(&array, key, 0, nullptr), 1);
        EXPECT_EQ(qek_arrays_insert_x(&array, nullptr, key, 0, nullptr), 1);
    }
    EXPECT_EQ(qek_arrays_find(&array, 5, 0, nullptr) + qek_arrays_bfind(&array, 5, 0, nullptr), 0U);
    EXPECT_EQ(qek_arrays_update(&array, 5, 0, nullptr), 0U);
    EXPECT_EQ(qek_arrays_remove_x(&array, nullptr, 5, 0, nullptr), 0U);
    EXPECT_EQ(qek_arrays_find_index_x(&array, nullptr, 5, 0, nullptr), -1);
    EXPECT_EQ(qek_arrays_bfind_index(&array, 5, 0, nullptr), -1);
    qek_arrays_free(&array, 5, 0, tell_value, nullptr);
    qek_arrays_qsort(&array, 1, nullptr);
    qek_arrays_qsort_x(&array, nullptr, 1, nullptr);
    EXPECT_THAT(array.storage(), testing::ElementsAre(5, 5, 3, 3, 5, 5, 0, 0));
}

TEST(arrays, store_what_a_pool_without_a_size_gives)
{
    lent_pool lender(0);
    words owner(1), borrower;
    borrower.pool = &lender;
    for (words *array : {&owner, &borrower}) {
        qek_word out = 99;
        EXPECT_EQ(qek_arrays_append_new(array, tell_value), 0U);
        EXPECT_EQ(qek_arrays_insert_new(array, 7, 0, &out, tell_value, nullptr), 1);
        EXPECT_EQ(tuple(out, array->count), tuple(0U, 2));
        array->reversed = 1;
        qek_arrays_term(array);
        EXPECT_EQ(tuple(array_fault(*array), array->capacity, array->reversed), tuple("", 0, 1));
    }
    EXPECT_EQ(tuple(owner.pool, owner.owns_pool, borrower.pool), tuple(nullptr, 0, &lender));
}

TEST(arrays, clone_items_with_what_they_point_at)
{
    words source(1), target(1), bare(1);
    lent_pool aux(8), aux_copy(0), untouched(0);
    qek_pool_new(&aux);
    source.pool->item_size = sizeof(int);
    source.reversed = 1;
    qek_arrays_append(&source, 0);
    for (int number = 1; number < 41; ++number) {
        *item<int>(qek_arrays_append_new(&source, nullptr)) = number;
    }
    qek_arrays_free_at(&source, 3, nullptr);
    copied.clear();
    qek_arrays_clone(&source, &aux, &target, &aux_copy, note_copy);
    EXPECT_EQ(tuple(target.count, target.capacity, target.reversed), tuple(40, source.capacity, 0));
    for (std::size_t at = 0; at < 40; ++at) {
        const auto *from = item<int>(source.slots[at]), *to = item<int>(target.slots[at]);
        EXPECT_EQ(copied[at], std::pair(word(from), word(to)));
        EXPECT_TRUE(at == 0 ? to == nullptr : to != from && *to == *from);
    }
    qek_arrays_clone(&source, &aux, &bare, &untouched, nullptr);
    EXPECT_EQ(tuple(bare.count, untouched.live_count), tuple(40, 0));
}

TEST(arrays, clone_counts_also_where_memory_ran_out)
{
    words source, target;
    qek_arrays_append(&source, 4);
    qek_arrays_append(&source, 5);
    {
        const allocations faults(1);
        qek_arrays_clone(&source, nullptr, &target, nullptr, note_copy);
    }
    EXPECT_EQ(tuple(target.count, target.capacity, array_fault(target)), tuple(2, 0, "count"));
    EXPECT_EQ(qek_arrays_get_last(&target) + qek_arrays_remove_at(&target, 1), 0U);
    EXPECT_EQ(target.count, 0) << "clamped as soon as it is set";
}

} // namespace
