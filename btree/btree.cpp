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
        return keys::order(key_of(of, element), sought, ignores_case(of));
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
