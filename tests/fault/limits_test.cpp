// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Sizes up to the far end, seen in what is asked for and refused, and lengths of a million.

#include "qek_std.h"
#include "support/allocations.h"
#include "support/platform.h"

#include <algorithm>
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
    Record before = record;
    const allocations none(1);
    EXPECT_EQ(Expand(&record, wanted), 0);
#if __has_builtin(__builtin_clear_padding)
    __builtin_clear_padding(&before); // what nobody wrote cannot be compared
    __builtin_clear_padding(&record);
#endif
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
            expect_asked<qek_arrayt_expand>(array, count + 1,
                                            uint64_t{4} * unsigned(std::max(grown - 4, 0)));
        }
    }
    const uint32_t bits_steps[][3] = {{0xFFFFF000, 0xFFFFF001, 0xFFFFF400},
                                      {0xFFFFFE00, 0xFFFFFE01, 0xFFFFFE01}, // 1024 more would wrap
                                      {0x20000000, 0xFFFFFFFF, 0xFFFFFFFF}};
    for (const auto &[size, wanted, grown] : bits_steps) {
        expect_asked<qek_bits_expand>(qek_bits{&byte, size, 0}, wanted, grown);
    }
}

// Units that are asked for from a billion on, which is no negative place; nothing is looked into.
TEST(limits, of_places_are_those_of_the_text)
{
    static uint8_t byte;
    static uint16_t unit;
    const auto ask = [](auto full, auto mid, auto update) {
        decltype(full) target{};
        const allocations none(1, true);
        mid(&full, 1 << 30, 100, &target);
        EXPECT_EQ(update(&full, 1 << 30, 0, full.data, 1), 0);
        EXPECT_EQ(none.count(), 2);
    };
    constexpr int length = (1 << 30) + 100;
    ask(qek_stream{&byte, length, length}, qek_stream_mid_stream, qek_stream_update);
    ask(qek_string{&byte, length, length}, qek_string_mid_string, qek_string_update);
    if (sizeof(void *) > 4) { // which no offset in bytes can pass
        ask(qek_wchar{&unit, length, length}, qek_wchar_mid_wchar, qek_wchar_update);
    }
}

// A key that fits no more is stored as an empty one. Nothing is asked for.
// clang-format off
#define QEK_EXPECT_NO_KEY(name, store, stored, ...) \
    qek_##name name; \
    qek_##name##_init(&name, __VA_ARGS__); \
    name.keys = {&byte, most - 8, most - 7}; \
    qek_##name##_##store(&name, "0123456789", 10, 1); \
    EXPECT_EQ(std::pair(stored->key_length, name.keys.length), std::pair(0, most - 8)); \
    name.keys = {}; \
    qek_##name##_term(&name)
// clang-format on

TEST(limits, of_key_text_leave_keys_empty)
{
    static uint8_t byte; // lies low, so that 32 bits hold the end
    int bucket = 0;
    QEK_EXPECT_NO_KEY(array, append, array.slots, 0);
    QEK_EXPECT_NO_KEY(hash, insert, qek_hash_entry_first(&hash, &bucket), 1, 0);
    QEK_EXPECT_NO_KEY(btree, insert, qek_btree_node_first(&btree), 1, 1, 0);
    QEK_EXPECT_NO_KEY(list, add_tail, list.head, 1, 0);
}

uint64_t sum;
void add_up(qek_word value) { sum += value; }

constexpr int million = 1'000'000;

// Each is filled, copied, walked and freed with little stack.
TEST(limits, of_a_small_stack_are_not_met_by_lists_and_chains_a_million_deep)
{
    const small_stack stack;
    constexpr uint64_t gauss = uint64_t{million} * (million + 1) / 2;
    qek_list list;
    qek_lists lists, copied_lists;
    qek_listx blocks;
    qek_hashd hash, copied_hash; // all in one chain, hung there by hand
    qek_list_init(&list, 1, 0);
    qek_lists_init(&lists, 1, 0), qek_lists_init(&copied_lists, 1, 0);
    qek_listx_init(&blocks, 1, 0);
    qek_hashd_init(&hash, 1, 0), qek_hashd_init(&copied_hash, 1, 0);
    for (qek_pool *each : {list.node_pool, lists.node_pool, hash.entry_pool}) {
        each->items_per_block = 8192;
    }
    qek_hashd_insert(&hash, 1, 1);
    auto *last = qek_hashd_entry_get(&hash, 1);
    for (int n = 1; n <= million; ++n) {
        const auto value = static_cast<qek_word>(n);
        qek_list_add_tail(&list, &n, 4, value);
        qek_lists_add_head(&lists, value);
        qek_listx_add_tail(&blocks, value);
        if (n > 1) {
            auto *entry = static_cast<qek_hashd_entry *>(qek_pool_new(hash.entry_pool));
            *entry = *last;
            last = last->next = entry;
            entry->value = entry->key = static_cast<uint32_t>(n);
        }
    }
    hash.entry_count = million;
    EXPECT_EQ(qek_list_find(&list, &million, 4), list.tail);
    qek_lists_clone(&lists, nullptr, &copied_lists, nullptr, nullptr);
    qek_hashd_clone(&hash, nullptr, &copied_hash, nullptr, nullptr);
    EXPECT_EQ(qek_hashd_insert(&hash, 0, 0), 1) << "and relinked";
    qek_list_remove_all(&list);
    qek_lists_free_all(&lists, add_up), qek_lists_free_all(&copied_lists, add_up);
    qek_listx_free_all(&blocks, add_up);
    qek_hashd_free_all(&hash, add_up), qek_hashd_free_all(&copied_hash, add_up);
    EXPECT_EQ(sum, 5 * gauss);
    qek_list_term(&list);
    qek_lists_term(&lists), qek_lists_term(&copied_lists);
    qek_listx_term(&blocks);
    qek_hashd_term(&hash), qek_hashd_term(&copied_hash);
}

} // namespace
