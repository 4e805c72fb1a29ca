/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * word_index: reads texts, writes an index of their words, reads it back and compares.
 */
#include "index.h"
#include "report.h"
#include "text.h"

#include <stdio.h>
#include <string.h>

static const char *const usage =
    "usage: word_index [--index FILE] [--prefix TEXT | --counts] TEXT...\n"
    "       word_index --check FILE [--prefix TEXT | --counts] [TEXT...]\n"
    "\n"
    "Writes an index of the words of all texts, then reads it back, verifies it, compares\n"
    "it with what is in memory, and prints what it found.\n"
    "\n"
    "  --index FILE   the index to write; words.index if not told\n"
    "  --check FILE   write nothing: verify this index, and compare it with the texts if\n"
    "                 there are any, which must be named as they were when it was written\n"
    "  --prefix TEXT  print only the words that start with TEXT, in order, one on a line:\n"
    "                 how often it occurs, a space, the word\n"
    "  --counts       the same for all words\n"
    "  --help         print this text\n"
    "  --             what follows is a text, even if it starts with a dash\n"
    "\n"
    "Result: 0 if all went well, 1 if something failed, 2 if the call was wrong.\n";

struct options {
    const char *index;
    const char *check;  /* null: the index is to be written */
    const char *prefix; /* null: the result is to be printed */
    char **texts;
    int text_count;
};

enum outcome {
    go_on,
    ended_well,
    called_wrongly
};

static enum outcome wrong(const char *what, const char *argument)
{
    complain("%s%s", what, argument);
    fputs("Try 'word_index --help'.\n", stderr);
    return called_wrongly;
}

/* Where the argument of an option goes; null if there is no such option. */
static const char **argument_of(struct options *options, const char *option)
{
    return strcmp(option, "--index") == 0    ? &options->index
           : strcmp(option, "--check") == 0  ? &options->check
           : strcmp(option, "--prefix") == 0 ? &options->prefix
                                             : NULL;
}

/* Texts and options may be mixed; the texts are gathered at the front of `arguments`. */
static enum outcome parse(int count, char **arguments, struct options *options)
{
    int only_texts = 0;
    int at;
    options->index = NULL;
    options->check = NULL;
    options->prefix = NULL;
    options->texts = arguments;
    options->text_count = 0;
    for (at = 0; at < count; ++at) {
        char *argument = arguments[at];
        if (only_texts || argument[0] != '-') {
            options->texts[options->text_count++] = argument;
        } else if (strcmp(argument, "--") == 0) {
            only_texts = 1;
        } else if (strcmp(argument, "--help") == 0) {
            fputs(usage, stdout);
            return ended_well;
        } else if (strcmp(argument, "--counts") == 0) {
            options->prefix = "";
        } else if (argument_of(options, argument) == NULL) {
            return wrong("unknown option ", argument);
        } else if (++at == count) {
            return wrong("something is missing behind ", argument);
        } else {
            *argument_of(options, argument) = arguments[at];
        }
    }
    if (options->index != NULL && options->check != NULL) {
        return wrong("--index and --check exclude each other", "");
    }
    if (options->check == NULL && options->text_count == 0) {
        return wrong("no text to read", "");
    }
    return go_on;
}

static int read_texts(struct word_table *table, const struct options *options)
{
    int at;
    for (at = 0; at < options->text_count; ++at) {
        if (!text_read(table, options->texts[at])) {
            return 0;
        }
    }
    table_close(table);
    return 1;
}

static int run(struct word_table *table, const struct options *options)
{
    const char *path = options->check;
    struct index_summary summary;
    if (path == NULL) {
        path = options->index == NULL ? "words.index" : options->index;
        if (!index_may_replace(path) || !read_texts(table, options) || !index_write(path, table)) {
            return 0;
        }
    } else if (!read_texts(table, options)) {
        return 0;
    }
    return index_check(path, table, &summary) &&
           (options->prefix != NULL ? print_words(table, options->prefix)
                                    : print_result(path, &summary, table));
}

int main(int argc, char **argv)
{
    struct options options;
    struct word_table table;
    int done;
    switch (parse(argc - 1, argv + 1, &options)) {
    case ended_well:
        return 0;
    case called_wrongly:
        return 2;
    case go_on:
        break;
    }
    table_init(&table);
    done = run(&table, &options);
    table_term(&table);
    return done ? 0 : 1;
}
