/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 */
#include "table.h"

enum {
    items_per_block = 4096,
    most_counted = 0x100000
};

static void init_pool(qek_pool *pool, size_t item_size)
{
    qek_pool_init(pool);
    pool->item_size = (int32_t)item_size;
    pool->items_per_block = items_per_block;
}

void table_init(struct word_table *table)
{
    init_pool(&table->words, sizeof(struct word));
    init_pool(&table->occurrences, sizeof(struct occurrence));
    init_pool(&table->texts, sizeof(struct text));
    qek_hash_init(&table->counted, 1, 0);
    table->counted.entry_pool->items_per_block = items_per_block;
    qek_btree_init(&table->vocabulary, 1, 1, 0);
    table->vocabulary.node_pool->items_per_block = items_per_block;
    table->vocabulary.value_pool = &table->words;
    table->bytes = 0;
}

void table_term(struct word_table *table)
{
    qek_btree_term(&table->vocabulary);
    qek_hash_term(&table->counted);
    qek_pool_term(&table->texts);
    qek_pool_term(&table->occurrences);
    qek_pool_term(&table->words);
}

static void *item(const qek_pool *pool, uint32_t number)
{
    return qek_pool_set_addr(pool, (int32_t)(number / items_per_block),
                             number % items_per_block * (uint32_t)pool->item_size);
}

struct occurrence *table_occurrence(const struct word_table *table, uint32_t number)
{
    return (struct occurrence *)item(&table->occurrences, number);
}

struct text *table_text(const struct word_table *table, uint32_t number)
{
    return (struct text *)item(&table->texts, number);
}

const struct word *table_word(const qek_btree_node *node)
{
    return (const struct word *)node->value;
}

const uint8_t *table_chars(const struct word_table *table, const qek_btree_node *node)
{
    return table->vocabulary.keys.data + node->key_offset;
}

struct text *table_add_text(struct word_table *table, const char *name)
{
    struct text *text = (struct text *)qek_pool_new(&table->texts);
    text->name = name;
    return text;
}

/* The containers do not tell when the text of a new key finds no room, so room is made before. */
static int make_room(qek_stream *keys, int32_t length)
{
    return keys->length <= INT32_MAX - length && qek_stream_expand(keys, keys->length + length);
}

/* The word in the vocabulary, which it joins if it is new; null when memory runs out. */
static struct word *vocabulary_word(struct word_table *table, const uint8_t *chars, int32_t length)
{
    qek_word value;
    if (!make_room(&table->vocabulary.keys, length)) {
        return NULL;
    }
    qek_btree_set(&table->vocabulary, chars, length, &value, NULL);
    return (struct word *)value;
}

/* The same for a word that is often asked for. */
static struct word *counted_word(struct word_table *table, const uint8_t *chars, int32_t length)
{
    qek_hash_entry *entry;
    if (table->counted.entry_count == most_counted) {
        qek_hash_remove_all(&table->counted);
    }
    if (!make_room(&table->counted.keys, length)) {
        return NULL;
    }
    if (qek_hash_entry_set(&table->counted, chars, length, &entry)) {
        entry->value = (qek_word)vocabulary_word(table, chars, length);
    }
    return (struct word *)entry->value;
}

int table_add(struct word_table *table, const uint8_t *chars, int32_t length, uint32_t position)
{
    const uint32_t number = (uint32_t)table->occurrences.live_count;
    struct word *word = counted_word(table, chars, length);
    if (word == NULL) {
        return 0;
    }
    ((struct occurrence *)qek_pool_new(&table->occurrences))->position = position;
    if (word->count == 0) {
        word->first = number;
    } else {
        table_occurrence(table, word->last)->next = number;
    }
    word->last = number;
    ++word->count;
    return 1;
}

void table_close(struct word_table *table)
{
    qek_hash_term(&table->counted);
    qek_hash_init(&table->counted, 0, 0);
}

int table_add_counted(struct word_table *table, const uint8_t *chars, int32_t length,
                      uint32_t count)
{
    struct word *word = vocabulary_word(table, chars, length);
    if (word == NULL) {
        return 0;
    }
    word->count = count;
    return 1;
}
