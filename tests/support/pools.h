// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Pools that tests lend to containers, and what containers tell of the values that they copy.
#pragma once

#include "qek_std.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace qek_test {

inline qek_word word(const void *item) { return reinterpret_cast<qek_word>(item); }
template <typename Item = void> Item *item(qek_word word) { return reinterpret_cast<Item *>(word); }

// What this pool gets back stands in the first block of its stack and can be read off there.
struct lent_pool : qek_pool {
    explicit lent_pool(size_t size, int per_block = 1024) : qek_pool()
    {
        qek_pool_init(this);
        item_size = static_cast<int>(size);
        items_per_block = per_block;
    }
    ~lent_pool() { qek_pool_term(this); }
    lent_pool(const lent_pool &) = delete;
    lent_pool &operator=(const lent_pool &) = delete;

    std::vector<qek_word> given_back() const
    {
        std::vector<qek_word> found;
        for (int at = 0; at < freed.next_slot; ++at) {
            found.push_back(word(static_cast<void **>(freed.blocks[0])[at]));
        }
        return found;
    }
};

inline const std::vector<qek_word> none;
inline std::vector<qek_word> freed;
inline void note_free(qek_word value) { freed.push_back(value); }

// Each value that was copied, with its copy; the pools beside the values hold one block, or are
// null.
inline std::vector<std::pair<qek_word, qek_word>> copied;
inline void note_copy(qek_word map, qek_word from, qek_pool *beside, qek_word to, qek_pool *copy)
{
    copied.emplace_back(from, to);
    EXPECT_EQ(beside == nullptr, copy == nullptr);
    if (beside != nullptr) {
        EXPECT_EQ(item<qek_pool_map_entry>(map)->block_base, beside->items.blocks[0]);
        EXPECT_EQ(copy->live_count, beside->live_count);
    }
}

} // namespace qek_test
