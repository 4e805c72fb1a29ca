/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * The index file: which words stand where.
 *
 * Fixed-width fields are little-endian. A "dword code" and an "lword code" are the compact integers
 * of the stream family; a "string" is a word with the length, then the bytes.
 *
 *     offset  field
 *          0  dword       magic, the bytes QWIX
 *          4  word        version, 2
 *          6  dword       size of the file
 *         10  dword       texts
 *         14  dword       distinct words
 *         18  dword       words in all
 *         22  dword       bytes of all texts
 *         26  for each text:
 *               string      name of the file
 *               dword code  bytes
 *             for each distinct word, in the order of their bytes:
 *               string      the word
 *               dword code  how often it occurs
 *               lword code  its first position
 *               lword code  for each further occurrence: the distance from the one before it
 *        end  dword       CRC-32 of all bytes before it
 *
 * A position is the number of bytes before the word, as if the texts stood in one row.
 */
#ifndef WORD_INDEX_INDEX_H
#define WORD_INDEX_INDEX_H

#include "table.h"

enum {
    index_magic = 0x58495751,
    index_version = 2,
    index_header_size = 26,
    index_checksum_size = 4,
    /* A position behind the longest string still fits in 32 bits. */
    index_longest = 0x7FF00000
};

struct index_summary {
    uint32_t texts;
    uint32_t distinct;
    uint32_t words;
    uint32_t text_bytes;
    uint32_t checksum;
    int64_t size;       /* of the file */
    int64_t fixed_size; /* of the same with dwords in place of the compact integers */
};

/* Whether a file may be put at the path: nothing stands there, or another index. Else 0, after a
 * complaint. */
int index_may_replace(const char *path);

/* Writes the table to the path: beside it first, so that there is the whole index or none. 1 on
 * success; 0 after a complaint. */
int index_write(const char *path, const struct word_table *table);

/* Reads an index and tests all of it. With a table of texts, also that it says the same; an empty
 * table gets its vocabulary. 1 on success; 0 after a complaint that says what is wrong. */
int index_check(const char *path, struct word_table *table, struct index_summary *summary);

#endif
