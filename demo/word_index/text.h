/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * Reading a text and splitting it into words.
 *
 * A word is a run of ASCII letters and digits, in lower case, and of bytes from 0x80 up, so that
 * letters of UTF-8 stay together. Every other byte separates words. A run longer than the longest
 * word counts as several words.
 */
#ifndef WORD_INDEX_TEXT_H
#define WORD_INDEX_TEXT_H

#include "table.h"

/* Adds a file and its words to the table. 1 on success; 0 after a complaint. */
int text_read(struct word_table *table, const char *name);

/* Whether these are the bytes of a word, as text_read finds them. */
int text_is_word(const uint8_t *chars, int32_t length);

#endif
