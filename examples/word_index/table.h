/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * The words of all texts, in the order in which they first occur, and the places of each.
 *
 * Words and occurrences are records of a fixed size, in two pools. Nothing is ever given back to
 * them, so the n-th item taken stands at slot n, and a record is known by its number instead of by
 * a pointer: half the size on a 64-bit machine. The characters of all words stand in one stream.
 *
 *     buckets[hash] -> word 7 -> word 2           chars:  ...the...licence...
 *                        | first      | last                    ^ text_at, length
 *                        v            v
 *                  occurrence 9 -> ... -> occurrence 31
 */
#ifndef WORD_INDEX_TABLE_H
#define WORD_INDEX_TABLE_H

#include <qek_std.h>

/* What a position and a count may reach: the 30 bits that a compact dword carries. */
enum {
    most_text_bytes = 0x3FFFFFFF
};

/* What the length of a word may reach: its prefix in the index is a 16-bit word. */
enum {
    longest_word = 0xFFFF
};

struct word {
    uint32_t text_at; /* where in `chars` */
    uint32_t length;
    uint32_t hash;
    uint32_t next_in_bucket;
    uint32_t count; /* occurrences */
    uint32_t first; /* occurrence */
    uint32_t last;
};

struct occurrence {
    uint32_t position; /* in bytes, as if the texts stood in one row */
    uint32_t next;     /* occurrence of the same word; of no meaning in the last one */
};

struct text {
    const char *name; /* of the file, borrowed */
    uint32_t bytes;
};

struct word_table {
    qek_pool words;
    qek_pool occurrences;
    qek_pool texts;
    qek_stream chars;
    uint32_t *buckets; /* numbers of words */
    uint32_t bucket_count;
    uint32_t bytes; /* of all texts */
};

void table_init(struct word_table *table);
void table_term(struct word_table *table);

/* Records by their number, which must be below the pool's live_count. */
struct word *table_word(const struct word_table *table, uint32_t number);
struct occurrence *table_occurrence(const struct word_table *table, uint32_t number);
struct text *table_text(const struct word_table *table, uint32_t number);
const uint8_t *table_chars(const struct word_table *table, const struct word *word);

struct text *table_add_text(struct word_table *table, const char *name);

/* The word with these characters, which is added if it is new; null when memory runs out. */
struct word *table_find_or_add(struct word_table *table, const uint8_t *chars, int32_t length);

/* Notes that the word stands at a position. 1 on success, 0 when memory runs out. */
int table_add(struct word_table *table, const uint8_t *chars, int32_t length, uint32_t position);

#endif
