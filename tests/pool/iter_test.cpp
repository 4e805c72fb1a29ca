// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "support/allocations.h"
#include "support/pools.h"
#include "support/random.h"

#include <gmock/gmock.h>

using namespace qek_test;

namespace {

std::vector<qek_word> walk(qek_pool_iter *iter)
{
    std::vector<qek_word> found;
    for (auto *at = qek_pool_iter_first(iter); at != nullptr; at = qek_pool_iter_next(iter)) {
        found.push_back(word(at));
    }
    EXPECT_EQ(qek_pool_iter_next(iter), nullptr) << "the end stays the end";
    return found;
}

// By slot, in the order of their first use, which lasts. Every size from no item to three blocks,
// the last one full or not; nothing freed, something, everything, everything taken again.
TEST(pool_iteration, meets_the_live_items_slot_by_slot)
{
    random_numbers random;
    for (const int round : random.each_below(4 * 50)) {
        lent_pool pool(3, 16);
        std::vector<qek_word> slots;
        for (int count = round / 4; count > 0; --count) {
            slots.push_back(word(qek_pool_new(&pool)));
        }
        auto live = slots;
        const auto free_some = [&](size_t rest) {
            while (live.size() > rest) {
                std::swap(live[random.below(live.size())], live.back());
                qek_pool_free(&pool, item(live.back()));
                live.pop_back();
            }
        };
        const size_t rest = round % 4 == 0 ? live.size() : round % 4 == 1 ? live.size() / 2 : 0;
        free_some(rest);
        while (round % 4 == 3 && live.size() < slots.size()) {
            live.push_back(word(qek_pool_new(&pool)));
        }
        free_some(live.size() - live.size() / 4);
        std::erase_if(slots, [&](qek_word slot) { return std::ranges::count(live, slot) == 0; });
        const allocations watch;
        qek_pool_iter *iter = qek_pool_iter_new(&pool);
        std::vector<size_t> sizes{sizeof *iter, size_t(round / 4 - pool.live_count) * sizeof iter};
        sizes.resize(pool.freed.used > 0 ? 2 : 1);
        EXPECT_EQ(watch.sizes(), sizes);
        EXPECT_TRUE(iter->block == 0 && iter->slot == 0 && iter->pool == &pool);
        EXPECT_EQ(iter->freed_sorted != nullptr, pool.freed.used > 0);
        EXPECT_EQ(walk(iter), slots);
        EXPECT_EQ(walk(iter), slots) << "again, with the same snapshot";
        qek_pool_iter_free(iter);
    }
}

} // namespace
