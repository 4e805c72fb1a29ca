// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Sizes up to the far end, seen in what is asked for and refused, and lengths of a million.

#include "qek_std.h"
#include "support/allocations.h"
#include "support/platform.h"
#include "support/pools.h"

#include <cstring>
#include <limits>

using namespace qek_test;

namespace {

constexpr int most = std::numeric_limits<int>::max();

// A record of so many units in use, in a buffer that is never looked into, is to grow; 0: nothing
// is asked for. What no size_t holds is asked for as the largest.
template <auto Expand, typename Record, typename Number>
void expect_asked(Record record, Number wanted, uint64_t bytes)
{
    const Record before = record;
    const allocations none(1);
    EXPECT_EQ(Expand(&record, wanted), 0);
    EXPECT_EQ(std::memcmp(&before, &record, sizeof record), 0);
    EXPECT_EQ(none.count() == 0 ? 0 : none.sizes()[0], std::min<uint64_t>(bytes, SIZE_MAX));
}

// Counts that are capacities, with the capacity that follows.
constexpr int array_steps[][2] = {{0, 8},
                                  {20, 32},
                                  {131068, 196604},
                                  {131072, 196608},
                                  {1000000, 1065536},
                                  {0x20000000, 0x20010000},
                                  {0x7FFEFFFC, 0x7FFFFFFC},
                                  {0x7FFF0000, 0},
                                  {0x7FFFFFFC, 0}};

template <auto Expand, typename Record> void expect_array_steps(Record record)
{
    std::remove_pointer_t<decltype(record.slots)> slot{};
    for (const auto &[count, grown] : array_steps) {
        record.slots = count == 0 ? nullptr : &slot;
        record.count = record.capacity = count;
        expect_asked<Expand>(record, count + 1, uint64_t{sizeof slot} * unsigned(grown));
    }
    expect_asked<Expand>(record, most, 0);
}

TEST(limits, are_kept_by_every_growth)
{
    uint8_t byte = 0;
    uint16_t unit = 0;
    uint32_t words[4]{};
    expect_asked<qek_wchar_expand>(qek_wchar{&unit, 0x1000010, 0x1000017}, 0x1000018, 0x3000030);
    expect_asked<qek_wchar_expand>(qek_wchar{&unit, most - 16, most - 16}, most - 15, 0x100000000);
    expect_asked<qek_wchar_expand>(qek_wchar{&unit, 0, 15}, most, 0x100000000);
    expect_array_steps<qek_arrays_expand>(qek_arrays{});
    expect_array_steps<qek_arrayd_expand>(qek_arrayd{});
    expect_array_steps<qek_array_expand>(qek_array{});
    expect_array_steps<qek_arrayx_expand>(qek_arrayx{});
    for (const auto &[count, grown] : array_steps) {
        if (count > 0) {
            qek_arrayt array{};
            array.overflow = words, array.count = array.capacity = count;
            expect_asked<qek_arrayt_expand>(array, count + 1, grown == 0 ? 0 : 4 * (grown - 4LL));
        }
    }
    const uint32_t bits_steps[][3] = {{0xFFFFF000, 0xFFFFF001, 0xFFFFF400},
                                      {0xFFFFFE00, 0xFFFFFE01, 0xFFFFFE01}, // 1024 more would wrap
                                      {0x20000000, 0xFFFFFFFF, 0xFFFFFFFF}};
    for (const auto &[size, wanted, grown] : bits_steps) {
        expect_asked<qek_bits_expand>(qek_bits{&byte, size, 0}, wanted, grown);
    }
}

constexpr char key[] = "0123456789";

// A key that fits no more is stored as an empty one. Nothing is asked for.
template <auto Init, auto Store, auto Term, typename Record> void expect_no_key(Record record)
{
    uint8_t byte = 0;
    Init(&record);
    const qek_stream keys = std::exchange(record.keys, {&byte, most - 8, most - 7});
    EXPECT_EQ(Store(&record)->key_length, 0);
    EXPECT_EQ(record.keys.length, most - 8);
    record.keys = keys;
    Term(&record);
}

TEST(limits, of_key_text_leave_keys_empty)
{
    expect_no_key<[](auto *of) { qek_array_init(of, 0); },
                  [](auto *of) { return qek_array_append(of, key, 10, 1), of->slots; },
                  qek_array_term>(qek_array{});
    expect_no_key<[](auto *of) { qek_hash_init(of, 1, 0); },
                  [](auto *of) {
                      qek_hash_entry *entry = nullptr;
                      return qek_hash_entry_set(of, key, 10, &entry), entry;
                  },
                  qek_hash_term>(qek_hash{});
    expect_no_key<[](auto *of) { qek_btree_init(of, 1, 1, 0); },
                  [](auto *of) {
                      qek_btree_node *node = nullptr;
                      return qek_btree_node_set(of, key, 10, &node), node;
                  },
                  qek_btree_term>(qek_btree{});
    expect_no_key<[](auto *of) { qek_list_init(of, 1, 0); },
                  [](auto *of) { return qek_list_add_tail(of, key, 10, 1); }, qek_list_term>(
        qek_list{});
}

uint64_t sum;
void add_up(qek_word value) { sum += value; }

constexpr int million = 1'000'000;

// Filled, walked and freed with little stack.
template <typename Record>
void expect_million(Record &record, qek_pool *pool, auto fill, auto rest, auto free_all, auto term)
{
    const small_stack stack;
    pool->items_per_block = 8192;
    for (int n = 1; n <= million; ++n) {
        fill(n);
    }
    sum = 0;
    rest();
    free_all(&record, add_up);
    EXPECT_EQ(sum, uint64_t{million} * (million + 1) / 2);
    EXPECT_EQ(pool->live_count, 0);
    term(&record);
}

TEST(limits, of_the_stack_are_not_met_by_long_lists_and_chains)
{
    qek_list list;
    qek_list_init(&list, 1, 0);
    expect_million(
        list, list.node_pool,
        [&](int n) { qek_list_add_tail(&list, &n, 4, static_cast<qek_word>(n)); }, [] {},
        [](auto *of, auto each) {
            for (const auto *at = of->head; at != nullptr; at = at->next) {
                each(at->value);
            }
            EXPECT_EQ(qek_list_find(of, &million, 4), of->tail);
            qek_list_remove_all(of);
        },
        qek_list_term);
    qek_lists lists, copy;
    qek_lists_init(&lists, 1, 0), qek_lists_init(&copy, 1, 0);
    expect_million(
        lists, lists.node_pool,
        [&](int n) { qek_lists_add_head(&lists, static_cast<qek_word>(n)); },
        [&] {
            qek_lists_clone(&lists, nullptr, &copy, nullptr, nullptr);
            EXPECT_EQ(copy.tail->value, 1U);
        },
        qek_lists_free_all, qek_lists_term);
    qek_lists_term(&copy);
    qek_listx blocks;
    qek_listx_init(&blocks, 1, 0);
    expect_million(
        blocks, blocks.node_pool,
        [&](int n) { qek_listx_add_tail(&blocks, static_cast<qek_word>(n)); }, [] {},
        qek_listx_free_all, qek_listx_term);
    qek_hashd hash, hash_copy; // all in one chain, hung there by hand
    qek_hashd_init(&hash, 1, 0), qek_hashd_init(&hash_copy, 1, 0);
    qek_hashd_entry *last = nullptr;
    expect_million(
        hash, hash.entry_pool,
        [&](int n) {
            if (n == 1) {
                qek_hashd_insert(&hash, 1, 1), last = qek_hashd_entry_get(&hash, 1);
            } else {
                auto *entry = static_cast<qek_hashd_entry *>(qek_pool_new(hash.entry_pool));
                *entry = *last;
                last = last->next = entry;
                entry->key = static_cast<uint32_t>(n), entry->value = static_cast<qek_word>(n);
            }
        },
        [&] {
            hash.entry_count = million;
            qek_hashd_clone(&hash, nullptr, &hash_copy, nullptr, nullptr);
            EXPECT_EQ(qek_hashd_insert(&hash, 0, 0), 1) << "and relinked";
        },
        qek_hashd_free_all, qek_hashd_term);
    EXPECT_EQ(hash_copy.entry_count, million);
    qek_hashd_term(&hash_copy);
}

} // namespace
