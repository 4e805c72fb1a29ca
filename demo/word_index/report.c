/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 */
#include "report.h"

#include <inttypes.h>
#include <stdarg.h>
#include <stdio.h>
#include <time.h>

int complain(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    fputs("word_index: ", stderr);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
    return 0;
}

void show_progress(const char *step, uint32_t done, const char *unit)
{
    static clock_t shown;
    const clock_t now = clock();
    if (now - shown >= CLOCKS_PER_SEC) {
        shown = now;
        fprintf(stderr, "word_index: %s %" PRIu32 " %s\n", step, done, unit);
    }
}

static void print_row(const char *label, int64_t value, const char *unit)
{
    printf("  %-40s %12" PRId64 "%s\n", label, value, unit);
}

static void print_summary(const char *path, const struct index_summary *summary)
{
    const int64_t saved = summary->fixed_size - summary->size;
    printf("%s\n", path);
    print_row("texts", summary->texts, "");
    print_row("bytes of text", summary->text_bytes, "");
    print_row("words", summary->words, "");
    print_row("distinct words", summary->distinct, "");
    print_row("bytes of the index", summary->size, "");
    print_row("bytes with fixed-width counts, positions", summary->fixed_size, "");
    print_row("bytes saved by the compact coding", saved, "");
    if (summary->fixed_size > 0) {
        print_row("saved", saved * 100 / summary->fixed_size, " %");
    }
    printf("  %-40s     %08" PRIX32 "\n", "checksum", summary->checksum);
}

/* The order of two nodes: the more frequent first, and of two as frequent the lesser word. */
static int32_t by_frequency(void *context, qek_word left, qek_word right, int32_t unused)
{
    const struct word_table *table = (const struct word_table *)context;
    const qek_btree_node *a = (const qek_btree_node *)left;
    const qek_btree_node *b = (const qek_btree_node *)right;
    const uint32_t count_a = table_word(a)->count;
    const uint32_t count_b = table_word(b)->count;
    (void)unused;
    if (count_a != count_b) {
        return count_a > count_b ? -1 : 1;
    }
    return qek_mem_cmp(table_chars(table, a), a->key_length, table_chars(table, b), b->key_length);
}

/* Sorts a batch at a time and keeps the best of it: there may be millions of words. */
static int print_most_frequent(const struct word_table *table)
{
    enum {
        wanted = 5,
        batch = 4096
    };
    const qek_btree_node *node = qek_btree_node_first(&table->vocabulary);
    qek_arrays nodes;
    int32_t at;
    qek_arrays_init(&nodes, 0);
    if (!qek_arrays_expand(&nodes, batch)) {
        return complain("out of memory for the most frequent words");
    }
    for (; node != NULL; node = node->next) {
        qek_arrays_append(&nodes, (qek_word)node);
        if (nodes.count == batch || node->next == NULL) {
            qek_arrays_qsort_x(&nodes, (void *)table, 1, by_frequency);
            nodes.count = nodes.count < wanted ? nodes.count : wanted;
        }
    }
    puts("most frequent");
    for (at = 0; at < nodes.count; ++at) {
        node = (const qek_btree_node *)qek_arrays_get_at(&nodes, at);
        printf("  %-40.*s %12" PRIu32 "\n", (int)node->key_length,
               (const char *)table_chars(table, node), table_word(node)->count);
    }
    qek_arrays_term(&nodes);
    return 1;
}

static int end_output(void)
{
    return (fflush(stdout) == 0 && !ferror(stdout)) || complain("cannot write the result");
}

int print_result(const char *path, const struct index_summary *summary,
                 const struct word_table *table)
{
    print_summary(path, summary);
    if (table->vocabulary.node_count > 0 && !print_most_frequent(table)) {
        return 0;
    }
    puts(table->texts.live_count > 0 ? "The index was read back and says the same as the texts."
                                     : "The index is sound.");
    return end_output();
}

int print_words(const struct word_table *table, const char *prefix)
{
    const qek_btree_node *node;
    qek_string start;
    qek_string_init(&start);
    qek_string_copy(&start, prefix, -1);
    qek_string_make_lower(&start);
    node = qek_btree_node_bfind(&table->vocabulary, start.data, start.length);
    while (node != NULL && node->key_length >= start.length &&
           qek_mem_cmp(table_chars(table, node), start.length, start.data, start.length) == 0) {
        printf("%" PRIu32 " %.*s\n", table_word(node)->count, (int)node->key_length,
               (const char *)table_chars(table, node));
        node = node->next;
    }
    qek_string_term(&start);
    return end_output();
}
