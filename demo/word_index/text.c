/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 */
#include "text.h"

#include "report.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>

enum {
    chunk = 0x40000,
    separator = ' '
};

/* In a text that is in lower case. */
static int is_word_byte(uint8_t byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte >= 0x80;
}

int text_is_word(const uint8_t *chars, int32_t length)
{
    int32_t at = 0;
    while (at < length && is_word_byte(chars[at])) {
        ++at;
    }
    return length > 0 && at == length;
}

static void blank_separators(qek_string *text)
{
    int32_t at;
    for (at = 0; at < text->length; ++at) {
        if (!is_word_byte(text->data[at])) {
            text->data[at] = separator;
        }
    }
}

static int add_run(struct word_table *table, const uint8_t *run, int32_t length, uint32_t position)
{
    int32_t at;
    for (at = 0; at < length; at += longest_word) {
        const int32_t left = length - at;
        if (!table_add(table, run + at, left < longest_word ? left : longest_word,
                       position + (uint32_t)at)) {
            return 0;
        }
    }
    return 1;
}

/* Adds the words that end in the window, whose first byte stands at a position, and leaves in it
 * what may go on in the next chunk. */
static int add_words(struct word_table *table, qek_string *window, uint32_t position)
{
    int32_t start = 0;
    int32_t end;
    qek_string_make_lower(window);
    blank_separators(window);
    while ((end = qek_string_find_char_pos(window, separator, start)) >= 0) {
        if (!add_run(table, window->data + start, end - start, position + (uint32_t)start)) {
            return 0;
        }
        start = end + 1;
    }
    for (; window->length - start >= longest_word; start += longest_word) {
        if (!add_run(table, window->data + start, longest_word, position + (uint32_t)start)) {
            return 0;
        }
    }
    qek_string_right(window, window->length - start);
    return 1;
}

static int read_words(struct word_table *table, struct text *text, FILE *file, qek_string *window)
{
    size_t got;
    do {
        if (!qek_string_expand(window, window->length + chunk)) {
            return complain("%s: out of memory", text->name);
        }
        got = fread(window->data + window->length, 1, chunk, file);
        if (ferror(file)) {
            return complain("cannot read %s: %s", text->name, strerror(errno));
        }
        if (got > most_text_bytes - table->bytes) {
            return complain("%s: more than 1 GiB of text in all", text->name);
        }
        qek_string_shrink(window, window->length + (int32_t)got);
        table->bytes += (uint32_t)got;
        text->bytes += (uint32_t)got;
        if (got == 0) {
            qek_string_append_char(window, separator);
        }
        if (!add_words(table, window,
                       table->bytes + (uint32_t)(got == 0) - (uint32_t)window->length)) {
            return complain("%s: out of memory", text->name);
        }
        show_progress("read", table->bytes, "bytes");
    } while (got > 0);
    return 1;
}

int text_read(struct word_table *table, const char *name)
{
    FILE *file = fopen(name, "rb");
    qek_string window;
    int done;
    if (file == NULL) {
        return complain("cannot read %s: %s", name, strerror(errno));
    }
    qek_string_init(&window);
    done = read_words(table, table_add_text(table, name), file, &window);
    qek_string_term(&window);
    fclose(file);
    return done;
}
