// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "pool/owned.h"

namespace qek::pool {

qek_word new_value(qek_pool *pool, qek_value_fn init_value, qek_word &out) noexcept
{
    void *item = take(*pool);
    out = word_of(item);
    if (init_value != nullptr && item != nullptr) {
        init_value(word_of(item));
    }
    return word_of(item);
}

qek_word new_value(qek_pool *pool, qek_value_fn init_value) noexcept
{
    qek_word item = 0;
    return new_value(pool, init_value, item);
}

void disposal::of(qek_word value) const noexcept
{
    if (free_value != nullptr) {
        free_value(value);
    }
    give_to(borrowed_pool, item_of(value));
}

} // namespace qek::pool
