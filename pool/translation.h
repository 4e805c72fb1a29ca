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

  private:
    const qek_pool *source_;
    const qek_pool *target_;
    qek_pool_map_entry *map_ = nullptr;
    bool made_;
};

class value_copier {
  public:
    value_copier(qek_pool *source_aux, qek_pool *target_aux, qek_clone_fn clone_value) noexcept;

    // Stores the word that stands for `value` in the copy: the word itself unless it is an item of a
    // pool that was copied. The callback runs once that is stored.
    void copy(qek_word value, const translation &values, qek_word &copied) const noexcept;

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
