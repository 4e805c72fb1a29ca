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

static void print_most_frequent(const struct word_table *table)
{
    enum {
        wanted = 5
    };
    const struct word *top[wanted];
    int held = 0;
    int at;
    int32_t number;
    for (number = 0; number < table->words.live_count; ++number) {
        const struct word *word = table_word(table, (uint32_t)number);
        if (held < wanted) {
            ++held;
        } else if (word->count <= top[wanted - 1]->count) {
            continue;
        }
        for (at = held - 1; at > 0 && top[at - 1]->count < word->count; --at) {
            top[at] = top[at - 1];
        }
        top[at] = word;
    }
    if (held > 0) {
        printf("most frequent\n");
    }
    for (at = 0; at < held; ++at) {
        printf("  %-40.*s %12" PRIu32 "\n", (int)top[at]->length,
               (const char *)table_chars(table, top[at]), top[at]->count);
    }
}

int print_result(const char *path, const struct index_summary *summary,
                 const struct word_table *table)
{
    print_summary(path, summary);
    print_most_frequent(table);
    puts(table->texts.live_count > 0 ? "The index was read back and says the same as the texts."
                                     : "The index is sound.");
    return (fflush(stdout) == 0 && !ferror(stdout)) || complain("cannot write the result");
}
