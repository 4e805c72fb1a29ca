// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The unrolled list: a chain of blocks of up to 32 words, filled and drained at its ends.
//
//     head --> [ 3 used: a b c ] <--> [ 32 used ] <--> [ 7 used ] <-- tail      count = words in all
//
// Words stand packed at the front of their block, at both ends of the list, so that a reader goes
// through a block with one loop; adding and removing at the front pay for that with a move of at
// most 31 words. A linked block is never empty. Links are linked.h.

#include "base/bytes.h"
#include "list/linked.h"

using namespace qek;

namespace {

using block = qek_listx_node;

constexpr std::int32_t block_words = 32;

bool has_room(const block *at) noexcept { return at != nullptr && at->used < block_words; }

// The block that a word goes into: the one at that end, or a new one, still empty and not linked.
block *with_room(qek_listx &list, block *end) noexcept
{
    return has_room(end) ? end : list::new_node(list);
}

void put_first(qek_listx &list, block *at, qek_word value) noexcept
{
    if (at->used == 0) {
        list::link_head(list, at);
    }
    move_units(at->items + 1, at->items, at->used);
    at->items[0] = value;
    ++at->used;
    ++list.count;
}

void put_last(qek_listx &list, block *at, qek_word value) noexcept
{
    if (at->used == 0) {
        list::link_tail(list, at);
    }
    at->items[at->used] = value;
    ++at->used;
    ++list.count;
}

// `put(list, at, value)` puts a word into the block `at`, which is null when the pool gave none.
template <typename Put> void add(qek_listx &list, block *at, qek_word value, Put put) noexcept
{
    if (at != nullptr) {
        put(list, at, value);
    }
}

template <typename Put>
void *add_new(qek_listx &list, block *at, qek_value_fn init_value, Put put) noexcept
{
    if (at == nullptr) {
        return nullptr;
    }
    const qek_word value = pool::new_value(list.value_pool, init_value);
    put(list, at, value);
    return pool::item_of(value);
}

// Takes one word off a block's count, and the block out of the list with its last word.
void take_one(qek_listx &list, block *at) noexcept
{
    --list.count;
    if (at->used != 1) {
        --at->used;
        return;
    }
    list::unlink(list, at);
    pool::give(*list.node_pool, at);
}

qek_word remove_head(qek_listx &list) noexcept
{
    block *at = list.head;
    if (at == nullptr || at->used == 0) {
        return 0;
    }
    const qek_word value = at->items[0];
    at->items[0] = 0;
    move_units(at->items, at->items + 1, at->used - 1);
    take_one(list, at);
    return value;
}

qek_word remove_tail(qek_listx &list) noexcept
{
    block *at = list.tail;
    if (at == nullptr || at->used == 0) {
        return 0;
    }
    const qek_word value = at->items[at->used - 1];
    at->items[at->used - 1] = 0;
    take_one(list, at);
    return value;
}

void free_all(qek_listx &list, qek_value_fn free_value) noexcept
{
    list::free_all(list, free_value, [](const block &in, const pool::disposal &dispose) {
        for (std::int32_t at = 0; at < in.used; ++at) {
            dispose.of_nonzero(in.items[at]);
        }
    });
}

} // namespace

void qek_listx_init(qek_listx *list, int32_t own_node_pool, int32_t own_value_pool)
{
    list::init(*list, own_node_pool, own_value_pool);
}

void qek_listx_term(qek_listx *list) { list::term(*list); }

void qek_listx_add_head(qek_listx *list, qek_word value)
{
    add(*list, with_room(*list, list->head), value, put_first);
}

void qek_listx_add_tail(qek_listx *list, qek_word value)
{
    add(*list, with_room(*list, list->tail), value, put_last);
}

void *qek_listx_add_head_new(qek_listx *list, qek_value_fn init_value)
{
    return add_new(*list, with_room(*list, list->head), init_value, put_first);
}

void *qek_listx_add_tail_new(qek_listx *list, qek_value_fn init_value)
{
    return add_new(*list, with_room(*list, list->tail), init_value, put_last);
}

qek_word qek_listx_remove_head(qek_listx *list) { return remove_head(*list); }

qek_word qek_listx_remove_tail(qek_listx *list) { return remove_tail(*list); }

void qek_listx_remove_all(qek_listx *list) { list::remove_all_with_values(*list); }

void qek_listx_free_all(qek_listx *list, qek_value_fn free_value) { free_all(*list, free_value); }
