/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * The words of all texts, and the places of each.
 *
 * A hash table counts the words while the texts are read; a tree holds the same words in the order
 * of their bytes. The value of a word is the same item in both, so that the tree sees what is
 * counted and is asked for new words only. A text without end of new words would fill the memory
 * twice: so the hash table starts anew when it holds a million, and the tree knows them still.
 *
 *     counted:     "the" ---+
 *                           v
 *                         word: count 3, first --> occurrence 9 -> 14 -> 31 <-- last
 *                           ^
 *     vocabulary:  "the" ---+
 *
 * Occurrences are known by their number instead of by a pointer, which is half the size on a 64-bit
 * machine: nothing is ever given back to the pool, so the n-th item taken stands at slot n.
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
    uint32_t count; /* occurrences */
    uint32_t first; /* occurrence; of no meaning in a word that was read from an index */
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
    qek_hash counted;     /* values: a struct word */
    qek_btree vocabulary; /* the same */
    uint32_t bytes;       /* of all texts */
};

void table_init(struct word_table *table);
void table_term(struct word_table *table);

/* By their number, which must be below the pool's live_count. */
struct occurrence *table_occurrence(const struct word_table *table, uint32_t number);
struct text *table_text(const struct word_table *table, uint32_t number);

/* What stands at a node of the vocabulary. */
const struct word *table_word(const qek_btree_node *node);
const uint8_t *table_chars(const struct word_table *table, const qek_btree_node *node);

struct text *table_add_text(struct word_table *table, const char *name);

/* Notes that a word stands at a position. 1 on success, 0 when memory runs out. */
int table_add(struct word_table *table, const uint8_t *chars, int32_t length, uint32_t position);

/* Notes that all texts are read: releases what is needed to find words while they are counted. */
void table_close(struct word_table *table);

/* Adds a word that has been counted already, and is not in the vocabulary, without its places. 1 on
 * success, 0 when memory runs out. */
int table_add_counted(struct word_table *table, const uint8_t *chars, int32_t length,
                      uint32_t count);

#endif
