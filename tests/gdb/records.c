/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * One record of each family, and damaged ones, for gdb to look at: it stops in look() and shows the
 * records of the caller. What it is to show stands in expected.txt.
 */
#include <qek_std.h>
#include <string.h>

#define COUNT(array) ((int32_t)(sizeof(array) / sizeof *(array)))

static volatile int looks;

static void look(void) { looks = looks + 1; }

static const char *const words[] = {"north", "south", "east", "west"};
static const uint8_t name[] = {'n', 'o', 'r', 't', 'h', '-', 's', 'e', 'a', 0};

static void fill_tree(qek_tree *tree)
{
    qek_tree_entry *outer, *at;
    int i;
    qek_tree_init(tree, 1, 0);
    outer = qek_tree_entry_new(tree);
    outer->value = 10;
    qek_tree_entry_append(tree, &tree->root, outer);
    for (i = 0; i < 3; i++) {
        at = qek_tree_entry_new(tree);
        at->value = (qek_word)(20 + i);
        qek_tree_entry_append(tree, i < 2 ? outer : &tree->root, at);
    }
}

static void fill_bitree(qek_bitree *bitree)
{
    static const int32_t sides[] = {-1, 0, 1};
    int i;
    qek_bitree_init(bitree, 1, 0);
    bitree->root.value = 5;
    for (i = 0; i < 3; i++) {
        qek_bitree_entry *made = qek_bitree_entry_new(bitree);
        made->value = (qek_word)(5 + sides[i]);
        qek_bitree_entry_add(bitree, &bitree->root, sides[i], made);
    }
}

static void fill_hash(qek_hash *table)
{
    int i;
    qek_hash_init(table, 1, 0);
    for (i = 0; i < COUNT(words); i++) {
        qek_hash_insert(table, words[i], -1, (qek_word)i);
    }
}

static void fill_btree(qek_btree *tree)
{
    int i;
    qek_btree_init(tree, 1, 1, 0);
    for (i = 0; i < COUNT(words); i++) {
        qek_btree_insert(tree, words[i], -1, (qek_word)i);
    }
}

static void fill_list(qek_list *list)
{
    int i;
    qek_list_init(list, 1, 0);
    for (i = 0; i < COUNT(words); i++) {
        qek_list_add_tail(list, words[i], -1, (qek_word)i);
    }
}

static void fill_lists(qek_lists *list)
{
    qek_word i;
    qek_lists_init(list, 1, 0);
    for (i = 1; i < 4; i++) {
        qek_lists_add_tail(list, i);
    }
}

static void fill_pool(qek_pool *pool)
{
    void *item = NULL;
    int i;
    qek_pool_init(pool);
    pool->item_size = 24;
    for (i = 0; i < 20; i++) {
        item = qek_pool_new(pool);
    }
    qek_pool_free(pool, item);
}

static void show_sound(void)
{
    qek_stream stream;
    qek_string string, none;
    qek_wchar wchar;
    qek_char slice = {(uint8_t *)name, 5}, unmeasured = {(uint8_t *)name, -1};
    qek_stringx view = {(uint8_t *)name, 6, 3};
    qek_pool pool;
    qek_pool_iter *iter;
    qek_arrays arrays;
    qek_arrayd arrayd;
    qek_array array;
    qek_arrayx arrayx;
    qek_arrayt arrayt;
    qek_bits bits;
    qek_hash hash;
    qek_hashd hashd;
    qek_hashx hashx;
    qek_hasht hasht;
    qek_btree btree;
    qek_btreed btreed, floats;
    qek_btreex btreex;
    qek_list list;
    qek_lists lists;
    qek_listx listx;
    qek_tree tree;
    qek_bitree bitree;
    uint32_t wide_key[4] = {1, 0, 0, 0x80000000U};
    float real = -2.5F;
    uint32_t i;

    qek_stream_init(&stream);
    qek_stream_append(&stream,
                      "\0\x7f\xff"
                      "ab",
                      5);
    qek_string_init(&none);
    qek_string_init(&string);
    qek_string_copy(&string, "a \"text\"\n\xC3\xA9", -1);
    qek_wchar_init(&wchar);
    qek_wchar_append_str(&wchar, "wide", -1);
    qek_wchar_append_char(&wchar, 0x20AC);
    fill_pool(&pool);
    iter = qek_pool_iter_new(&pool);
    qek_arrays_init(&arrays, 0);
    qek_arrayd_init(&arrayd, 0);
    qek_array_init(&array, 0);
    qek_arrayx_init(&arrayx, 0);
    qek_arrayt_init(&arrayt);
    qek_bits_init(&bits);
    fill_hash(&hash);
    qek_hashd_init(&hashd, 1, 0);
    qek_hashx_init(&hashx, 1, 0);
    qek_hasht_init(&hasht, 1, 0);
    fill_btree(&btree);
    qek_btreed_init(&btreed, 1, 1, 0);
    qek_btreed_init(&floats, 1, 1, 0);
    floats.key_type = 5;
    qek_btreex_init(&btreex, 1, 1, 0);
    btreex.key_type = 4;
    fill_list(&list);
    fill_lists(&lists);
    qek_listx_init(&listx, 1, 0);
    fill_tree(&tree);
    fill_bitree(&bitree);
    for (i = 0; i < 6; i++) {
        qek_arrayt_append(&arrayt, i * i);
    }
    for (i = 0; i < 40; i++) {
        qek_btreed_insert(&btreed, i - 20, i);
        qek_listx_add_tail(&listx, i);
    }
    for (i = 0; i < 3; i++) {
        qek_arrays_append(&arrays, 7 - i);
        qek_arrayd_append(&arrayd, 100 + i, i);
        qek_array_append(&array, words[i], -1, i);
        qek_arrayx_append(&arrayx, (uint64_t)i << 40, i);
        qek_bits_insert(&bits, 9 * i, 1);
        qek_hashd_insert(&hashd, 1000 + i, i);
        qek_hashx_insert(&hashx, (uint64_t)(i + 1) << 33, i);
        qek_btreex_insert(&btreex, ~(uint64_t)i, i);
        memcpy(wide_key, &real, sizeof real);
        qek_btreed_insert(&floats, wide_key[0], i);
        real += 1.25F;
    }
    wide_key[0] = 1;
    qek_hasht_insert(&hasht, wide_key, 9);
    look();
    qek_pool_iter_free(iter);
}

static void show_damaged(void)
{
    qek_hash never_made, no_buckets, odd_buckets, miscounted, cyclic, lost_keys, far_entry;
    qek_btree bad_page, misordered, crowded;
    qek_btreed bad_type;
    qek_list cut, looped;
    qek_lists no_tail, odd_prev;
    qek_listx overfull;
    qek_string no_data, too_long, open_end, far_text;
    qek_stream negative;
    qek_char far_slice = {(uint8_t *)64, -1};
    qek_stringx backwards = {(uint8_t *)name, 0, -3};
    qek_arrays absurd, null_slots;
    qek_array bad_key;
    qek_arrayt overflowing;
    qek_bits no_bytes;
    qek_pool miscounted_pool, no_blocks;
    qek_pool_iter no_pool = {0, -1, NULL, NULL};
    qek_tree open_ring, strange_parent;
    qek_bitree knotted;

    memset(&never_made, 0xA5, sizeof never_made);
    fill_hash(&no_buckets);
    no_buckets.buckets.slots = NULL;
    fill_hash(&odd_buckets);
    odd_buckets.buckets.count = 3;
    fill_hash(&miscounted);
    miscounted.entry_count = 5;
    fill_hash(&cyclic);
    qek_hash_entry_get(&cyclic, "west", -1)->next = qek_hash_entry_get(&cyclic, "west", -1);
    fill_hash(&lost_keys);
    lost_keys.keys.length = 4;
    fill_hash(&far_entry);
    far_entry.buckets.slots[0] = 64;
    fill_btree(&bad_page);
    bad_page.root.level = 1;
    fill_btree(&misordered);
    memcpy(misordered.keys.data, "zorth", 5);
    fill_btree(&crowded);
    crowded.root.children.count = 32;
    qek_btreed_init(&bad_type, 1, 1, 0);
    bad_type.key_type = 99;
    fill_list(&cut);
    cut.head->next->next = NULL;
    fill_list(&looped);
    looped.tail->next = looped.head;
    fill_lists(&no_tail);
    no_tail.tail = NULL;
    fill_lists(&odd_prev);
    odd_prev.tail->prev = odd_prev.head;
    qek_listx_init(&overfull, 1, 0);
    qek_listx_add_tail(&overfull, 1);
    overfull.head->used = 33;
    memset(&no_data, 0, sizeof no_data);
    no_data.capacity = 15;
    qek_string_init(&too_long);
    qek_string_copy(&too_long, "text", -1);
    open_end = far_text = too_long;
    too_long.length = 16;
    open_end.length = 3;
    far_text.data = (uint8_t *)64;
    qek_stream_init(&negative);
    negative.length = -1;
    qek_arrays_init(&absurd, 0);
    null_slots = absurd;
    absurd.count = absurd.capacity = 0x7FFFFFFF;
    null_slots.capacity = 4;
    qek_array_init(&bad_key, 0);
    qek_array_append(&bad_key, "key", -1, 1);
    bad_key.slots[0].key_length = -3;
    qek_arrayt_init(&overflowing);
    overflowing.count = overflowing.capacity = 8;
    memset(overflowing.inline_slots, 0, sizeof overflowing.inline_slots);
    qek_bits_init(&no_bytes);
    no_bytes.size = 8;
    fill_pool(&miscounted_pool);
    miscounted_pool.live_count = -1;
    fill_pool(&no_blocks);
    no_blocks.items.blocks = NULL;
    fill_tree(&open_ring);
    open_ring.root.first_child->next->next = NULL;
    fill_tree(&strange_parent);
    strange_parent.root.first_child->parent = NULL;
    fill_bitree(&knotted);
    knotted.root.less->greater = knotted.root.less;
    look();
}

int main(void)
{
    show_sound();
    show_damaged();
    return 0;
}
