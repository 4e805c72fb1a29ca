// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// How a container holds a pool: made by its `init` and ended with it, or borrowed from the caller.
//
// A container keeps a pointer and a flag. The flag set: the container made the pool, and empties it
// as a whole when it is emptied or ends itself, since all items die together then. A node that is
// removed alone goes back to it all the same, but for the trees of tree/; a value never does. The
// flag clear and the pointer set: the pool is borrowed, gets every item back one at a time, and is
// left in the field when the container ends. The flags have different widths in different records.
//
// A pool for nodes gets the node's size here; a pool for values gets its size from the caller.
#pragma once

#include "pool/pool.h"

namespace qek::pool {

inline qek_word word_of(const void *item) noexcept { return reinterpret_cast<qek_word>(item); }

inline void *item_of(qek_word word) noexcept { return reinterpret_cast<void *>(word); }

template <typename Flag>
void own(qek_pool *&pool, Flag &owns, std::int32_t wanted, std::size_t item_size) noexcept
{
    if (wanted != 0) {
        pool = made(item_size);
        owns = 1;
    }
}

inline constexpr std::size_t size_from_caller = 0;

template <typename Flag> void end_owned(qek_pool *&pool, Flag &owns) noexcept
{
    if (owns != 0) {
        empty(*pool);
        give_block(pool);
        pool = nullptr;
        owns = 0;
    }
}

template <typename Flag> void empty_owned(qek_pool *pool, Flag owns) noexcept
{
    if (owns != 0) {
        empty(*pool);
    }
}

// The pool that gets single items back, or null when none does.
template <typename Flag> qek_pool *borrowed(qek_pool *pool, Flag owns) noexcept
{
    return owns != 0 ? nullptr : pool;
}

// An item from a pool of such items, cleared also when it was used before; null when the pool gives
// none.
template <typename Item, auto take = pool::take> inline Item *cleared(qek_pool &pool) noexcept
{
    auto *item = static_cast<Item *>(take(pool));
    if (item != nullptr) {
        *item = {};
    }
    return item;
}

inline void give_to(qek_pool *borrowed_pool, void *item) noexcept
{
    if (borrowed_pool != nullptr) {
        give(*borrowed_pool, item);
    }
}

// The value of an element, or 0 where there is none.
template <typename Element> qek_word value_of(const Element *element) noexcept
{
    return element == nullptr ? 0 : element->value;
}

// As `value_of`, and `value` stands there afterwards.
template <typename Element> qek_word replace_value(Element *element, qek_word value) noexcept
{
    const qek_word old = value_of(element);
    if (element != nullptr) {
        element->value = value;
    }
    return old;
}

// A value item, prepared by the caller's callback if there is one.
qek_word new_value(qek_pool *pool, qek_value_fn init_value) noexcept;

// As `new_value`, for a caller who sees the item through `out` before it is prepared.
qek_word new_value(qek_pool *pool, qek_value_fn init_value, qek_word &out) noexcept;

// What happens to a value whose element is freed: the caller's callback, then the borrowed pool.
struct disposal {
    qek_value_fn free_value;
    qek_pool *borrowed_pool;

    bool does_something() const noexcept
    {
        return free_value != nullptr || borrowed_pool != nullptr;
    }

    void of(qek_word value) const noexcept;

    void of_nonzero(qek_word value) const noexcept
    {
        if (value != 0) {
            of(value);
        }
    }
};

template <typename Record>
disposal disposal_of(const Record &record, qek_value_fn free_value) noexcept
{
    return {free_value, borrowed(record.value_pool, record.owns_value_pool)};
}

} // namespace qek::pool
