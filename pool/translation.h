// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Carrying pointers over from a pool to its copy, for the `clone` of every container.
//
// A pool is copied with its blocks in the same order, so block index and offset name the same item
// on both sides. A `translation` copies one pool and answers for its items; it holds the map of the
// source for as long as it lives. One that was not asked for stands for a pool that the source only
// borrows: it copies nothing and has no map, so that a container whose nodes lie in such a pool
// cannot be cloned.
//
// Values may point into a further pair of pools that the container knows nothing of. `value_copier`
// copies that pair first and hands its map to the caller's callback, once for each value.
#pragma once

#include "pool/owned.h"

namespace qek::pool {

class translation {
  public:
    translation(bool wanted, const qek_pool *source, qek_pool *target) noexcept;
    ~translation() { give_block(map_); }
    translation(const translation &) = delete;
    translation &operator=(const translation &) = delete;

    bool is_made() const noexcept { return made_; }

    qek_word map_word() const noexcept { return word_of(map_); }

    template <typename Item> Item *of(const Item *item) const noexcept
    {
        return static_cast<Item *>(translated(*source_, map_, item, *target_));
    }

  protected:
    const qek_pool *source_;
    const qek_pool *target_;
    qek_pool_map_entry *map_ = nullptr;

  private:
    bool made_;
};

// The same for the nodes of a container, which are many: the blocks of a million come to some ten
// thousands, and a binary search of all of them for each node takes most of a clone. So the span of
// addresses is cut into equal parts, and for each part it is noted where in the map its blocks
// begin; what is left to search is a handful of neighbours. A quarter of the time.
class translation_of_nodes : public translation {
  public:
    translation_of_nodes(bool wanted, const qek_pool *source, qek_pool *target) noexcept;

    template <typename Item> Item *of(const Item *item) const noexcept
    {
        const std::uintptr_t address = address_of(item);
        if (address < lowest_) {
            return nullptr;
        }
        const std::uintptr_t part = smaller((address - lowest_) >> shift_, last_part_);
        const qek_pool_map_entry *at = map_ + begins_[part];
        for (std::int32_t left = begins_[part + 1] - begins_[part] + 1; left > 1;) {
            const std::int32_t half = left / 2;
            at += address_of(at[half].block_base) <= address ? half : 0;
            left -= half;
        }
        const auto offset = static_cast<std::uint32_t>(address - address_of(at->block_base));
        return static_cast<Item *>(set_addr(*target_, at->block_index, offset));
    }

  private:
    static constexpr std::int32_t most_parts = 4096;

    static std::uintptr_t address_of(const void *item) noexcept
    {
        return reinterpret_cast<std::uintptr_t>(item);
    }
    void cut(std::int32_t blocks) noexcept;

    std::uintptr_t lowest_ = UINTPTR_MAX; // of a pool without blocks, which has no items
    std::uintptr_t last_part_ = 0;
    int shift_ = 0;
    // The last block that begins at or below the begin of a part; behind the parts, the last of all.
    std::int32_t begins_[most_parts + 1];
};

class value_copier {
  public:
    value_copier(qek_pool *source_aux, qek_pool *target_aux, qek_clone_fn clone_value) noexcept;

    // Stores the word that stands for `value` in the copy: the word itself unless it is an item of a
    // pool that was copied. The callback runs once that is stored.
    void copy(qek_word value, const translation &values, qek_word &copied) const noexcept;

    // Whether the words are all that is copied: then nobody sees when, and what came along with the
    // items of a copied pool is as it ought to be.
    static bool copies_words(const translation &values) noexcept { return !values.is_made(); }

  private:
    qek_pool *source_aux_;
    qek_pool *target_aux_;
    qek_clone_fn clone_value_;
    translation aux_;
};

// Where the source only borrows a pool, its copy borrows the same one.
template <typename Flag>
void share_borrowed(qek_pool *source, Flag owned, qek_pool *&target) noexcept
{
    if (owned == 0) {
        target = source;
    }
}

} // namespace qek::pool
