// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "pool/pool_check.h"
#include "support/allocations.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <array>

namespace {

using qek_test::allocations;
using qek_test::pool_fault;

using item = std::uint8_t *;
constexpr std::size_t pointer_size = sizeof(void *);

struct test_pool : qek_pool {
    explicit test_pool(std::int32_t size = 8, std::int32_t per_block = 0)
        : qek_pool{9, 9, 9, {9, 9, 9, nullptr}, {9, 9, 9, nullptr}}
    {
        qek_pool_init(this);
        item_size += size;
        items_per_block += per_block;
    }
    test_pool(const test_pool &) = delete;
    ~test_pool() { qek_pool_term(this); }

    item take(int count = 1)
    {
        return static_cast<item>(count > 1 ? (qek_pool_new(this), take(count - 1))
                                           : qek_pool_new(this));
    }
    bool is_without_memory() const
    {
        return items.capacity + freed.capacity + live_count == 0 && pool_fault(*this).empty();
    }
};

TEST(pool, needs_an_item_size)
{
    test_pool pool(0);
    const allocations watch;
    std::uint32_t offset = 99;
    EXPECT_EQ(qek_pool_new(&pool), nullptr);
    qek_pool_free(&pool, nullptr);
    EXPECT_EQ(qek_pool_map(&pool), nullptr);
    qek_pool_umap(nullptr);
    EXPECT_EQ(qek_pool_get_addr(&pool, nullptr, &pool, &offset), -1);
    EXPECT_EQ(offset, 99U);
    EXPECT_TRUE(pool.is_without_memory());
    EXPECT_EQ(watch.count() + pool.items_per_block, 0);
    qek_pool_free(&pool, &pool);
    EXPECT_EQ(watch.sizes(), std::vector({4 * pointer_size, 16 * pointer_size}));
}

// 33 blocks of items, then the stack that holds all of them.
// The caller may write the count of items in a block at any time; below 16 means 16.
// What was given back from elsewhere is null in a copy of the pool, and is passed over.
TEST(pool, hands_out_a_fresh_item_in_place_of_a_freed_null)
{
    test_pool pool;
    std::uint8_t elsewhere[8];
    const auto *first = static_cast<std::uint8_t *>(qek_pool_new(&pool));
    qek_pool_free(&pool, elsewhere);
    static_cast<void **>(pool.freed.blocks[0])[0] = nullptr;
    EXPECT_EQ(qek_pool_new(&pool), first + 8);
    EXPECT_EQ(pool.live_count, 1);
}

TEST(pool, goes_on_when_the_items_per_block_are_reset)
{
    for (const int reset : {0, 15}) {
        test_pool pool;
        void *const items[] = {pool.take(), pool.take()};
        qek_pool_free(&pool, items[0]);
        qek_pool_free(&pool, nullptr);
        pool.items_per_block = reset;
        qek_pool_free(&pool, items[1]);
        EXPECT_EQ(pool.items_per_block, 16);
        pool.items_per_block = reset;
        EXPECT_EQ(pool.take(), items[1]);
        EXPECT_EQ(pool.items_per_block, 16);
        EXPECT_EQ(pool.take(), items[0]);
        EXPECT_EQ(pool.live_count, 2);
    }
}

TEST(pool, opens_blocks_and_grows_tables)
{
    const auto expected = [](std::size_t block_size) {
        std::vector<std::size_t> sizes(33, block_size);
        for (const auto &[block, capacity] :
             {std::pair(32, 48U), {20, 32U}, {12, 20U}, {8, 12U}, {4, 8U}, {0, 4U}}) {
            sizes.insert(sizes.begin() + block, capacity * pointer_size);
        }
        return sizes;
    };
    const std::tuple<int, std::size_t, unsigned> cases[] = {{-3, 16, 8}, {15, 16, 3}, {17, 17, 1}};
    for (const auto &[given, per_block, size] : cases) {
        test_pool pool(static_cast<int>(size), given);
        std::vector<item> items(33 * per_block);
        const auto sizes = [&, &items = items](auto call) {
            const allocations watch;
            std::for_each(items.begin(), items.end(), call);
            EXPECT_EQ(pool_fault(pool), "");
            return watch.sizes();
        };
        const auto take = [&](item &each) { each = pool.take(); };
        const auto give = [&](item each) { qek_pool_free(&pool, each); };
        EXPECT_EQ(sizes(take), expected(per_block * size));
        EXPECT_EQ(sizes(give), expected(per_block * pointer_size));
        EXPECT_THAT(sizes(take), testing::IsEmpty());
        EXPECT_THAT(sizes(give), testing::IsEmpty()) << "the blocks of the stack were left over";
        qek_pool_term(&pool);
        EXPECT_TRUE(pool.is_without_memory());
    }
}

// Every address from below the first block to beyond the last one, for one to seven blocks that do
// not stand in the order of their addresses; one of them has the top bit set.
TEST(pool, finds_the_block_with_the_last_base_not_above)
{
    std::array<std::uint8_t, 64> memory{};
    void *blocks[7] = {reinterpret_cast<void *>(~std::uintptr_t{0xFF})};
    for (int at = 0; at < 6; ++at) {
        blocks[6 - at * 5 % 6] = memory.data() + 5 + 9 * at;
    }
    qek_pool pool{1, 16, 0, {16, 7, 8, blocks}, {-1, 0, 0, nullptr}};
    const allocations watch;
    qek_pool_map_entry *map = qek_pool_map(&pool);
    EXPECT_EQ(watch.sizes(), std::vector({7 * sizeof *map}));
    for (; pool.items.used > 0; --pool.items.used) {
        for (int at = 0; at < 64; ++at) {
            const int entry = at < 5 ? -1 : std::min({(at - 5) / 9, pool.items.used - 1, 5});
            const int block = entry < 0 ? -1 : 6 - entry * 5 % 6;
            std::uint32_t offset = 99;
            EXPECT_EQ(qek_pool_get_addr(&pool, map, memory.data() + at, &offset), block);
            EXPECT_EQ(qek_pool_set_addr(&pool, block, offset),
                      block < 0 ? nullptr : memory.data() + at);
            EXPECT_EQ(offset == 99, block < 0);
        }
    }
    qek_pool_umap(map);
}

struct filled_item {
    item at;
    std::uint8_t byte;
};

// The copy takes the place of the pool, and the image of each item in the copy that of the item.
void clone(qek_pool &pool, std::vector<filled_item> &live, std::vector<filled_item> &freed)
{
    if (pool.items.used > 2) { // blocks need not stand in the order of their addresses
        std::swap(pool.items.blocks[0], pool.items.blocks[1]);
    }
    test_pool copy(0);
    qek_pool_map_entry *map = qek_pool_map(&pool);
    qek_pool_clone(&pool, map, &copy);
    ASSERT_EQ(std::tuple(copy.item_size, copy.items.capacity, copy.freed.capacity),
              std::tuple(pool.item_size, pool.items.capacity, pool.freed.capacity));
    const auto image = [&](item from) {
        std::uint32_t offset = 0;
        const std::int32_t index = qek_pool_get_addr(&pool, map, from, &offset);
        return static_cast<item>(qek_pool_set_addr(&copy, index, offset));
    };
    for (int at = 0; at < pool.freed.capacity; ++at) {
        const auto *from = static_cast<item *>(pool.freed.blocks[at]);
        const auto *to = static_cast<item *>(copy.freed.blocks[at]);
        ASSERT_EQ(to != nullptr, at < pool.freed.used);
        for (int entry = 0; to != nullptr && entry < pool.items_per_block; ++entry) {
            ASSERT_EQ(to[entry], image(from[entry])) << "above the top of the stack, too";
        }
    }
    for (auto *list : {&live, &freed}) {
        for (auto &[at, byte] : *list) {
            ASSERT_NE(at, image(at));
            at = image(at);
        }
    }
    qek_pool_umap(map);
    qek_pool_swap(&pool, &copy);
}

TEST(pool, does_what_the_model_does)
{
    qek_test::random_numbers random;
    test_pool pool(5, 18);
    std::vector<filled_item> live, freed; // the second is a stack
    const auto is_filled = [&](const filled_item &with) {
        return std::count(with.at, with.at + pool.item_size, with.byte) == pool.item_size;
    };
    for (int step = 0; random.goes_on(step, 5000); ++step) {
        const std::int32_t taking = step / 500 % 2 == 0 ? 70 : 30;
        if (step % 700 == 699) {
            qek_pool_empty(&pool);
            ASSERT_TRUE(pool.is_without_memory());
            live.clear();
            freed.clear();
        } else if (random.one_in(live.size() < 2 ? 2 : 50)) {
            ASSERT_NO_FATAL_FAILURE(clone(pool, live, freed));
        } else if (live.empty() || random.between(1, 100) <= taking) {
            const auto byte = static_cast<std::uint8_t>(random.below(256));
            live.push_back({pool.take(), byte});
            const auto expected = freed.empty() ? filled_item{live.back().at, 0} : freed.back();
            ASSERT_EQ(live.back().at, expected.at);
            ASSERT_TRUE(is_filled(expected));
            // A block of the stack is left one take after its last entry.
            const auto top = std::ssize(freed) - 1;
            ASSERT_EQ(pool.freed.next_slot, top < 0 ? -1 : top % pool.items_per_block);
            freed.resize(freed.size() - (top < 0 ? 0 : 1));
            std::fill_n(live.back().at, pool.item_size, byte);
        } else {
            std::swap(live[random.below(live.size())], live.back());
            qek_pool_free(&pool, live.back().at);
            ASSERT_EQ(pool.freed.next_slot, std::ssize(freed) % pool.items_per_block + 1);
            freed.push_back(live.back());
            live.pop_back();
        }
        ASSERT_EQ(pool_fault(pool), "");
        ASSERT_EQ(pool.live_count, std::ssize(live));
        ASSERT_TRUE(std::all_of(live.begin(), live.end(), is_filled));
    }
}

TEST(pool_check, rejects_each_broken_invariant)
{
    const std::pair<const char *, void (*)(qek_pool &)> cases[] = {
        {"items: capacity", [](qek_pool &pool) { pool.items.capacity = 7; }},
        {"items: blocks", [](qek_pool &pool) { pool.items.blocks = nullptr; }},
        {"items: used", [](qek_pool &pool) { pool.items.used = 9; }},
        {"freed: used", [](qek_pool &pool) { pool.freed.used = -1; }},
        {"freed: next_slot without", [](qek_pool &pool) { pool.freed.used = 0; }},
        {"freed: next_slot below", [](qek_pool &pool) { pool.freed.next_slot = -1; }},
        {"items: next_slot above", [](qek_pool &pool) { pool.items.next_slot = 17; }},
        {"items: missing", [](qek_pool &pool) { pool.items.used = 3; }},
        {"items_per_block", [](qek_pool &pool) { pool.items_per_block = 15; }},
        {"items: open block", [](qek_pool &pool) { pool.items.next_slot = 0; }},
        {"freed: entry", [](qek_pool &pool) { qek_pool_free(&pool, &pool); }},
        {"live_count", [](qek_pool &pool) { ++pool.live_count; }},
    };
    for (const auto &[fault, corrupt] : cases) {
        test_pool pool;
        pool.take(16);
        qek_pool_free(&pool, pool.take(4));
        ASSERT_EQ(pool_fault(pool), "");
        const qek_pool kept = pool;
        corrupt(pool);
        EXPECT_THAT(pool_fault(pool), testing::StartsWith(fault));
        static_cast<qek_pool &>(pool) = kept;
    }
}

} // namespace
