/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * What the program says: complaints and progress on standard error, the result on standard output.
 */
#ifndef WORD_INDEX_REPORT_H
#define WORD_INDEX_REPORT_H

#include "index.h"

/* Prints one line on standard error. Always 0, for `return complain(...)`. */
int complain(const char *format, ...);

/* Tells how far a step has come, about once a second, and only when the program runs longer. */
void show_progress(const char *step, uint32_t done, const char *unit);

/* Prints the result, with the most frequent words. 1 on success; 0 after a complaint if standard
 * output does not take it. */
int print_result(const char *path, const struct index_summary *summary,
                 const struct word_table *table);

/* Prints the words of the table that start with a prefix, in order: how often each occurs, a space,
 * the word. The result is as above. */
int print_words(const struct word_table *table, const char *prefix);

#endif
