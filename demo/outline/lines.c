/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * Reads the lines of the list: a size in bytes, a space and a path.
 */
#include "outline.h"

#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

enum {
    chunk = 0x40000,
    most_digits = 18 /* more may not fit into an int64_t */
};

void lines_term(struct lines *lines)
{
    qek_arrays_term(&lines->sorted);
    qek_string_term(&lines->text);
}

static int read_text(const char *name, FILE *file, qek_string *text)
{
    size_t got;
    do {
        if (text->length > most_text_bytes - chunk) {
            return complain("%s is too long: it has 1 GiB or more", name);
        }
        if (!qek_string_expand(text, text->length + chunk)) {
            return complain("%s: out of memory", name);
        }
        got = fread(text->data + text->length, 1, chunk, file);
        if (ferror(file)) {
            return complain("cannot read %s: %s", name, strerror(errno));
        }
        qek_string_shrink(text, text->length + (int32_t)got);
    } while (got > 0);
    return 1;
}

/* What is wrong with a path, or null. The keys of a path are trimmed, so that a name that is not its
 * own trimmed form would become another. */
static const char *fault_of_path(const qek_stringx *path)
{
    int32_t names = 0;
    int32_t start = 0;
    int32_t end;
    if (qek_mem_chr(path->data + path->offset, path->length, 0) >= 0) {
        return "there is a NUL byte in the path";
    }
    do {
        qek_char name;
        int32_t length;
        end = qek_stringx_find_char_pos(path, '/', start);
        end = end < 0 ? path->length : end;
        qek_stringx_mid_char(path, start, end - start, &name);
        length = name.length;
        qek_char_trim(&name);
        if (length == 0) {
            return "there is an empty name in the path";
        }
        if (name.length != length) {
            return "a name in the path begins or ends with white space";
        }
        if (++names > most_names) {
            return "the path is too deep, it has more than 256 names";
        }
        start = end + 1;
    } while (end < path->length);
    return NULL;
}

/* Reads what a span of the text says. What is wrong with it, or null. */
static const char *parse(const qek_stringx *span, struct line *line)
{
    const int32_t space = qek_stringx_find_char(span, ' ');
    qek_char size;
    qek_stringx_left_char(span, space, &size);
    if (!qek_char_is_long(&size) || size.data[0] == '-') {
        return "it does not begin with a size in bytes and a space";
    }
    if (size.length > most_digits) {
        return "the size has more than 18 digits";
    }
    line->size = qek_char_get_long(&size);
    line->path = *span;
    qek_stringx_mid(&line->path, space + 1, span->length);
    if (qek_stringx_is_empty(&line->path)) {
        return "there is no path behind the size";
    }
    if (qek_stringx_get_at(&line->path, 0) == '/') {
        qek_stringx_mid(&line->path, 1, line->path.length);
    }
    return fault_of_path(&line->path);
}

/* Cuts the text into lines and reads them. */
static int split(struct lines *lines)
{
    qek_stringx text;
    qek_stringx span;
    int64_t total = 0;
    int32_t start = 0;
    qek_stringx_copy_string(&text, &lines->text);
    span = text;
    while (start < text.length) {
        struct line *line = (struct line *)qek_arrays_append_new(&lines->sorted, NULL);
        const int32_t found = qek_stringx_find_char_pos(&text, '\n', start);
        const int32_t end = found < 0 ? text.length : found;
        const char *fault;
        if (line == NULL) {
            return complain("%s: out of memory", lines->file);
        }
        line->number = lines->sorted.count;
        qek_stringx_mid_string(&text, start, end - start, &span);
        fault = parse(&span, line);
        if (fault == NULL && line->size > INT64_MAX - total) {
            fault = "the sizes up to here are more than 63 bits hold";
        }
        if (fault != NULL) {
            return complain("%s:%" PRId32 ": %s", lines->file, line->number, fault);
        }
        total += line->size;
        start = end + 1;
    }
    return 1;
}

/* A '/' goes before every other byte: what is in a directory stands together right behind it. */
static int32_t rank(uint8_t byte) { return byte == '/' ? 0 : byte; }

static int32_t compare_lines(qek_word left, qek_word right, int32_t unused)
{
    const struct line *a = (const struct line *)left;
    const struct line *b = (const struct line *)right;
    const uint8_t *a_path = a->path.data + a->path.offset;
    const uint8_t *b_path = b->path.data + b->path.offset;
    const int32_t shorter = a->path.length < b->path.length ? a->path.length : b->path.length;
    int32_t at = 0;
    (void)unused;
    while (at < shorter && a_path[at] == b_path[at]) {
        ++at;
    }
    if (at < shorter) {
        return rank(a_path[at]) - rank(b_path[at]);
    }
    return a->path.length != b->path.length ? a->path.length - b->path.length
                                            : a->number - b->number;
}

int lines_read(struct lines *lines, const char *file)
{
    FILE *stream = fopen(file, "rb");
    int done;
    lines->file = file;
    qek_string_init(&lines->text);
    qek_arrays_init(&lines->sorted, 1);
    lines->sorted.pool->item_size = (int32_t)sizeof(struct line);
    lines->sorted.pool->items_per_block = 1024;
    if (stream == NULL) {
        return complain("cannot read %s: %s", file, strerror(errno));
    }
    done = read_text(file, stream, &lines->text) && split(lines);
    fclose(stream);
    qek_arrays_qsort(&lines->sorted, 1, compare_lines);
    return done;
}
