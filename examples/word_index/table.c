/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 */
#include "table.h"

enum {
    items_per_block = 8192,
    first_bucket_count = 1024
};

#define NO_WORD UINT32_MAX

static void init_pool(qek_pool *pool, size_t item_size)
{
    qek_pool_init(pool);
    pool->item_size = (int32_t)item_size;
    pool->items_per_block = items_per_block;
}

static void *item(const qek_pool *pool, uint32_t number)
{
    return qek_pool_set_addr(pool, (int32_t)(number / items_per_block),
                             number % items_per_block * (uint32_t)pool->item_size);
}

void table_init(struct word_table *table)
{
    init_pool(&table->words, sizeof(struct word));
    init_pool(&table->occurrences, sizeof(struct occurrence));
    init_pool(&table->texts, sizeof(struct text));
    qek_stream_init(&table->chars);
    table->buckets = NULL;
    table->bucket_count = 0;
    table->bytes = 0;
}

void table_term(struct word_table *table)
{
    qek_pool_term(&table->words);
    qek_pool_term(&table->occurrences);
    qek_pool_term(&table->texts);
    qek_stream_term(&table->chars);
    qek_free(table->buckets);
    table->buckets = NULL;
}

struct word *table_word(const struct word_table *table, uint32_t number)
{
    return (struct word *)item(&table->words, number);
}

struct occurrence *table_occurrence(const struct word_table *table, uint32_t number)
{
    return (struct occurrence *)item(&table->occurrences, number);
}

struct text *table_text(const struct word_table *table, uint32_t number)
{
    return (struct text *)item(&table->texts, number);
}

const uint8_t *table_chars(const struct word_table *table, const struct word *word)
{
    return table->chars.data + word->text_at;
}

struct text *table_add_text(struct word_table *table, const char *name)
{
    struct text *text = (struct text *)qek_pool_new(&table->texts);
    text->name = name;
    return text;
}

/* Looking words up: chained buckets, a power of two of them, at most one word a bucket on average. */

static uint32_t *bucket_of(const struct word_table *table, uint32_t hash)
{
    return &table->buckets[hash & (table->bucket_count - 1)];
}

static void link_word(struct word_table *table, uint32_t number)
{
    struct word *word = table_word(table, number);
    uint32_t *bucket = bucket_of(table, word->hash);
    word->next_in_bucket = *bucket;
    *bucket = number;
}

/* When memory runs out the table keeps the buckets that it has, and only gets slower. */
static int grow_buckets(struct word_table *table)
{
    const uint32_t word_count = (uint32_t)table->words.live_count;
    const uint32_t count = table->bucket_count == 0 ? first_bucket_count : table->bucket_count * 2;
    uint32_t *buckets = (uint32_t *)qek_malloc(count * (uint32_t)sizeof *buckets);
    uint32_t at;
    if (buckets == NULL) {
        return table->buckets != NULL;
    }
    for (at = 0; at < count; ++at) {
        buckets[at] = NO_WORD;
    }
    qek_free(table->buckets);
    table->buckets = buckets;
    table->bucket_count = count;
    for (at = 0; at < word_count; ++at) {
        link_word(table, at);
    }
    return 1;
}

static struct word *find(const struct word_table *table, const uint8_t *chars, int32_t length,
                         uint32_t hash)
{
    uint32_t number = *bucket_of(table, hash);
    while (number != NO_WORD) {
        struct word *word = table_word(table, number);
        if (word->hash == hash &&
            qek_mem_cmp(table_chars(table, word), (int32_t)word->length, chars, length) == 0) {
            return word;
        }
        number = word->next_in_bucket;
    }
    return NULL;
}

static int keep_chars(qek_stream *kept, const uint8_t *chars, int32_t length)
{
    if (kept->length > INT32_MAX - length || !qek_stream_expand(kept, kept->length + length)) {
        return 0;
    }
    qek_stream_append(kept, chars, length);
    return 1;
}

struct word *table_find_or_add(struct word_table *table, const uint8_t *chars, int32_t length)
{
    const uint32_t hash = qek_stream_crc32(chars, length);
    const uint32_t number = (uint32_t)table->words.live_count;
    struct word *word;
    if (number >= table->bucket_count && !grow_buckets(table)) {
        return NULL;
    }
    word = find(table, chars, length, hash);
    if (word != NULL || !keep_chars(&table->chars, chars, length)) {
        return word;
    }
    word = (struct word *)qek_pool_new(&table->words);
    word->text_at = (uint32_t)(table->chars.length - length);
    word->length = (uint32_t)length;
    word->hash = hash;
    link_word(table, number);
    return word;
}

int table_add(struct word_table *table, const uint8_t *chars, int32_t length, uint32_t position)
{
    const uint32_t number = (uint32_t)table->occurrences.live_count;
    struct word *word = table_find_or_add(table, chars, length);
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
