/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * hot ROW: does the work of one row once, for bench/instructions.sh. Only what happens inside of
 * counted() is counted; `hot` alone lists the rows.
 */
#include "qek_std.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum {
    count = 10000,
    text_size = 65536
};

static uint32_t random_number(void)
{
    static uint32_t state = 2026;
    state = state * 1664525U + 1013904223U;
    return state >> 8;
}

static char keys[count][16];
static uint8_t text[text_size + 1];
static qek_hash hash;
static qek_hashd hashd;
static qek_btreed tree;
static qek_arrayd numbers;
static qek_array texts;
static qek_pool pool;
static qek_string string;
static qek_stream stream;
static volatile qek_word total; /* so that no result is unused */

static void make_data(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        snprintf(keys[at], sizeof keys[at], "%08x-%05d", (unsigned)random_number(), (int)at);
    }
    for (at = 0; at < text_size; ++at) {
        text[at] = (uint8_t)(random_number() % 8 == 0 ? ' ' : 'a' + random_number() % 26);
    }
    qek_hash_init(&hash, 1, 0);
    qek_hashd_init(&hashd, 1, 0);
    qek_btreed_init(&tree, 1, 1, 0);
    qek_arrayd_init(&numbers, 0);
    qek_array_init(&texts, 0);
    qek_pool_init(&pool);
    pool.item_size = 32;
    qek_string_init(&string);
    qek_stream_init(&stream);
}

static void hash_insert(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        qek_hash_insert(&hash, keys[at], -1, (qek_word)at + 1);
    }
}

static void hash_find(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        total += qek_hash_get(&hash, keys[at], -1);
    }
}

static void fill_hashd(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        qek_hashd_insert(&hashd, random_number(), 1);
    }
}

static void hashd_find(void)
{
    uint32_t at;
    for (at = 0; at < count; ++at) {
        total += qek_hashd_get(&hashd, at * 1664525U);
    }
}

static void fill_tree(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        qek_btreed_insert(&tree, random_number(), 1);
    }
}

static void btreed_find(void)
{
    uint32_t at;
    for (at = 0; at < count; ++at) {
        total += qek_btreed_get(&tree, at * 1677U);
    }
}

static void fill_numbers(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        qek_arrayd_append(&numbers, random_number(), 1);
    }
}

static void arrayd_sort(void) { qek_arrayd_qsort(&numbers, 1); }

static void fill_texts(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        qek_array_append(&texts, keys[at], -1, 1);
    }
}

static void array_sort(void) { qek_array_qsort(&texts, 1); }

static void pool_pair(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        qek_pool_free(&pool, qek_pool_new(&pool));
    }
}

static void string_append(void)
{
    int32_t at;
    for (at = 0; at < count; ++at) {
        qek_string_append(&string, keys[at], 13);
    }
}

static void mem_search(void) { total += (qek_word)qek_mem_str(text, text_size, "seven le", 8); }

static void make_stream(void)
{
    qek_stream_expand(&stream, 4 * count);
    qek_stream_shrink(&stream, 4 * count);
}

static void stream_fields(void)
{
    int32_t position = 0;
    while (position < 4 * count) {
        qek_stream_set_dword(&stream, &position, random_number());
    }
    for (position = 0; position < 4 * count;) {
        total += qek_stream_get_dword(&stream, &position);
    }
}

static const struct row {
    const char *name;
    void (*prepare)(void);
    void (*work)(void);
} rows[] = {
    {"hash_insert", NULL, hash_insert},
    {"hash_find", hash_insert, hash_find},
    {"hashd_find", fill_hashd, hashd_find},
    {"btreed_find", fill_tree, btreed_find},
    {"arrayd_sort", fill_numbers, arrayd_sort},
    {"array_sort", fill_texts, array_sort},
    {"pool_pair", NULL, pool_pair},
    {"string_append", NULL, string_append},
    {"mem_str", NULL, mem_search},
    {"stream_fields", make_stream, stream_fields},
};

/* The counter is switched on here, by name. */
__attribute__((noinline)) void counted(void (*work)(void));
void counted(void (*work)(void)) { work(); }

int main(int argc, char **argv)
{
    size_t at;
    for (at = 0; at < sizeof rows / sizeof *rows; ++at) {
        const struct row *row = &rows[at];
        if (argc < 2) {
            puts(row->name);
        } else if (strcmp(argv[1], row->name) == 0) {
            make_data();
            if (row->prepare != NULL) {
                row->prepare();
            }
            counted(row->work);
            return 0;
        }
    }
    return argc < 2 ? 0 : 2;
}
