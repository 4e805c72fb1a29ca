// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The key tree with byte-string keys. The tree is tree.h, the key text stream/keys.h.

#include "btree/tree.h"
#include "stream/keys.h"

using namespace qek;

namespace {

struct text_policy {
    using tree = qek_btree;
    using page = qek_btree_page;
    using node = qek_btree_node;
    using key = keys::text;
    static constexpr std::int32_t page_slots = btree::usual_page_slots;

    static bool ignores_case(const tree &of) noexcept { return of.ignore_case != 0; }
    template <typename Element> static key key_of(const tree &of, const Element &element) noexcept
    {
        return keys::text_of(of.keys, element);
    }
    template <typename Element>
    static std::int32_t order(const tree &of, const Element &element, const key &sought) noexcept
    {
        return keys::sign_of_order(key_of(of, element), sought, ignores_case(of));
    }
    // As long as the first eight bytes differ, they alone decide, and a number is all that is looked
    // at: a quarter less in a tree of a thousand.
    //
    // In a tree that outgrew the caches every probe waits for memory, once for the child and again
    // for its text. So while one is looked at, both texts that may be next are sent for, and the
    // four children that may be behind them: half of the time at a hundred thousand keys. What is
    // probed stays the same.
    template <typename Element>
    [[gnu::noinline]] static array::place step_to(const tree &of, const qek_arrays &children,
                                                  const key &sought) noexcept
    {
        const std::int32_t count = array::slots_in_use(children);
        array::range left{0, count - 1};
        const auto child_at = [&](std::int32_t index) {
            return static_cast<const Element *>(pool::item_of(children.slots[index]));
        };
        const auto near = [&](std::int32_t low, std::int32_t high) {
            return child_at(larger(0, smaller(array::middle(low, high), count - 1)));
        };
        const auto fetch_below = [&](std::int32_t low, std::int32_t high) {
            const std::int32_t next = array::middle(low, high);
            __builtin_prefetch(near(low, next - 1));
            __builtin_prefetch(near(next + 1, high));
            __builtin_prefetch(of.keys.data + near(low, high)->key_offset);
        };
        const auto fetch_ahead = [&](std::int32_t index) {
            if (of.node_count >= 1 << 12) {
                fetch_below(left.low, index - 1);
                fetch_below(index + 1, left.high);
            }
        };
        const auto narrow = [&](std::int32_t index, bool is_behind) {
            if (is_behind) {
                left.high = index - 1;
            } else {
                left.low = index + 1;
            }
        };
        if (!ignores_case(of) && sought.length >= keys::head_size) {
            while (left.low <= left.high) {
                const std::int32_t mid = array::middle(left.low, left.high);
                fetch_ahead(mid);
                const key met = key_of(of, *child_at(mid));
                if (met.length < keys::head_size) {
                    break;
                }
                const std::uint64_t head = load_high_first(sought.bytes);
                const std::uint64_t met_head = load_high_first(met.bytes);
                if (met_head == head) {
                    break;
                }
                narrow(mid, met_head > head);
            }
        }
        return array::locate(left, false, [&](std::int32_t index) {
            fetch_ahead(index);
            const std::int32_t stands = order(of, *child_at(index), sought);
            narrow(index, stands > 0);
            return stands;
        });
    }
    template <typename Element>
    static bool same_high_key(const tree &of, const page &above, const Element &last) noexcept
    {
        return keys::equal(key_of(of, above), key_of(of, last), ignores_case(of));
    }
    // A high key is a second reference to a node's text; no text is stored twice.
    template <typename To, typename From> static void copy_key(To &to, const From &from) noexcept
    {
        to.key_offset = from.key_offset;
        to.key_length = from.key_length;
    }
    static void store(tree &of, node &at, const key &sought) noexcept
    {
        keys::store(of.keys, at, sought);
    }
    // Behind all page work, so that every search before it still reads whole text.
    static void forget(tree &of, const node &removed) noexcept
    {
        const keys::run gone = keys::run_of(removed);
        if (gone.length != 0) {
            const auto follow = [&](auto &holder) { keys::follow_removal(holder, gone); };
            keys::erase(of.keys, gone);
            btree::walk<node>(of.root, follow, follow);
        }
    }
};

void remove_all(qek_btree &tree) noexcept
{
    btree::remove_all<text_policy>(tree);
    buffer::shrink<buffer::stream_form>(tree.keys, 0);
}

void free_all(qek_btree &tree, qek_value_fn free_value) noexcept
{
    btree::free_all<text_policy>(tree, free_value);
    buffer::release(tree.keys);
}

void term(qek_btree &tree) noexcept
{
    btree::term<text_policy>(tree);
    buffer::release(tree.keys);
}

} // namespace

void qek_btree_init(qek_btree *btree, int32_t own_page_pool, int32_t own_node_pool,
                    int32_t own_value_pool)
{
    btree::init<text_policy>(*btree, own_page_pool, own_node_pool, own_value_pool);
}

void qek_btree_term(qek_btree *btree) { term(*btree); }

void qek_btree_swap(qek_btree *a, qek_btree *b) { btree::swap(*a, *b, &qek_btree::ignore_case); }

void qek_btree_clone(const qek_btree *source, qek_pool *source_aux_pool, qek_btree *target,
                     qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    btree::clone<text_policy>(*source, source_aux_pool, *target, target_aux_pool, clone_value, [=] {
        buffer::clone<buffer::stream_form>(source->keys, target->keys);
    });
}

int32_t qek_btree_node_set(qek_btree *btree, const void *key, int32_t length,
                           qek_btree_node **node_out)
{
    return btree::node_set<text_policy>(*btree, keys::given(key, length), *node_out);
}

qek_btree_node *qek_btree_node_get(const qek_btree *btree, const void *key, int32_t length)
{
    return btree::find<text_policy>(*btree, keys::given(key, length));
}

qek_btree_node *qek_btree_node_first(const qek_btree *btree)
{
    return btree::first_node<qek_btree_node>(btree->root);
}

qek_btree_node *qek_btree_node_last(const qek_btree *btree)
{
    return btree::last_node<qek_btree_node>(btree->root);
}

qek_btree_node *qek_btree_node_bfind(const qek_btree *btree, const void *key, int32_t length)
{
    return btree::find_nearest<text_policy>(*btree, keys::given(key, length));
}

qek_btree_node *qek_btree_node_find(const qek_btree *btree, const void *key, int32_t length)
{
    return btree::find<text_policy>(*btree, keys::given(key, length));
}

int32_t qek_btree_set(qek_btree *btree, const void *key, int32_t length, qek_word *value_out,
                      qek_value_fn init_value)
{
    return btree::set<text_policy>(*btree, keys::given(key, length), *value_out, init_value);
}

qek_word qek_btree_get(const qek_btree *btree, const void *key, int32_t length)
{
    return btree::get<text_policy>(*btree, keys::given(key, length));
}

int32_t qek_btree_insert(qek_btree *btree, const void *key, int32_t length, qek_word value)
{
    return btree::insert<text_policy>(*btree, keys::given(key, length), value);
}

qek_word qek_btree_update(qek_btree *btree, const void *key, int32_t length, qek_word value)
{
    return btree::update<text_policy>(*btree, keys::given(key, length), value);
}

int32_t qek_btree_find(const qek_btree *btree, const void *key, int32_t length)
{
    return btree::find<text_policy>(*btree, keys::given(key, length)) != nullptr;
}

qek_word qek_btree_remove(qek_btree *btree, const void *key, int32_t length)
{
    return btree::remove<text_policy>(*btree, keys::given(key, length));
}

void qek_btree_remove_all(qek_btree *btree) { remove_all(*btree); }

void qek_btree_free_all(qek_btree *btree, qek_value_fn free_value) { free_all(*btree, free_value); }
