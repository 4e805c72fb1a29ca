/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 */
#include "index.h"
#include "report.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>

struct writer {
    qek_stream stream;
    int32_t position;
};

/* Fields never grow a stream, so room is made before they are written. */
static int make_room(struct writer *writer, int32_t bytes)
{
    const int32_t wanted = writer->position + bytes;
    if (wanted > index_longest) {
        return complain("the index would be longer than %d bytes", index_longest);
    }
    if (!qek_stream_expand(&writer->stream, wanted)) {
        return complain("out of memory for the index");
    }
    qek_stream_shrink(&writer->stream, wanted);
    return 1;
}

static int write_string(struct writer *writer, const void *chars, int32_t length)
{
    if (!make_room(writer, 2 + length)) {
        return 0;
    }
    qek_stream_set_word(&writer->stream, &writer->position, (uint16_t)length);
    qek_stream_set_buffer(&writer->stream, &writer->position, chars, length);
    return 1;
}

static int write_count(struct writer *writer, uint32_t count)
{
    if (!make_room(writer, qek_stream_deflate_dword_length(count))) {
        return 0;
    }
    qek_stream_deflate_dword(&writer->stream, &writer->position, count);
    return 1;
}

static int write_distance(struct writer *writer, uint32_t distance)
{
    if (!make_room(writer, qek_stream_deflate_lword_length(distance))) {
        return 0;
    }
    qek_stream_deflate_lword(&writer->stream, &writer->position, distance);
    return 1;
}

/* Growing step by step would hold the index twice; so what it will need is guessed first. */
static void guess_size(struct writer *writer, const struct word_table *table)
{
    const int64_t guess = (int64_t)table->vocabulary.keys.length +
                          (int64_t)table->vocabulary.node_count * 6 +
                          (int64_t)table->occurrences.live_count * 3;
    qek_stream_expand(&writer->stream, guess < index_longest ? (int32_t)guess : index_longest);
}

static int write_header(struct writer *writer, const struct word_table *table)
{
    if (!make_room(writer, index_header_size)) {
        return 0;
    }
    qek_stream_set_dword(&writer->stream, &writer->position, index_magic);
    qek_stream_set_word(&writer->stream, &writer->position, index_version);
    qek_stream_set_dword(&writer->stream, &writer->position, 0); /* the size, known at the end */
    qek_stream_set_dword(&writer->stream, &writer->position, (uint32_t)table->texts.live_count);
    qek_stream_set_dword(&writer->stream, &writer->position,
                         (uint32_t)table->vocabulary.node_count);
    qek_stream_set_dword(&writer->stream, &writer->position,
                         (uint32_t)table->occurrences.live_count);
    qek_stream_set_dword(&writer->stream, &writer->position, table->bytes);
    return 1;
}

static int write_texts(struct writer *writer, const struct word_table *table)
{
    int32_t number;
    for (number = 0; number < table->texts.live_count; ++number) {
        const struct text *text = table_text(table, (uint32_t)number);
        if (!write_string(writer, text->name, (int32_t)strlen(text->name)) ||
            !write_count(writer, text->bytes)) {
            return 0;
        }
    }
    return 1;
}

static int write_positions(struct writer *writer, const struct word_table *table,
                           const struct word *word)
{
    uint32_t number = word->first;
    uint32_t from = 0;
    uint32_t left;
    for (left = word->count; left > 0; --left) {
        const struct occurrence *occurrence = table_occurrence(table, number);
        if (!write_distance(writer, occurrence->position - from)) {
            return 0;
        }
        from = occurrence->position;
        number = occurrence->next;
    }
    return 1;
}

static int write_words(struct writer *writer, const struct word_table *table)
{
    const qek_btree_node *node = qek_btree_node_first(&table->vocabulary);
    uint32_t number = 0;
    for (; node != NULL; node = node->next) {
        if (!write_string(writer, table_chars(table, node), node->key_length) ||
            !write_count(writer, table_word(node)->count) ||
            !write_positions(writer, table, table_word(node))) {
            return 0;
        }
        show_progress("indexed", ++number, "words");
    }
    return 1;
}

static int write_trailer(struct writer *writer)
{
    int32_t size_at = 6;
    if (!make_room(writer, index_checksum_size)) {
        return 0;
    }
    qek_stream_set_dword(&writer->stream, &size_at, (uint32_t)writer->stream.length);
    qek_stream_set_dword(&writer->stream, &writer->position,
                         qek_stream_crc32(writer->stream.data, writer->position));
    return 1;
}

static int save_bytes(const char *path, const qek_stream *stream)
{
    const size_t size = (size_t)stream->length;
    FILE *file = fopen(path, "wb");
    int done;
    if (file == NULL) {
        return complain("cannot write %s: %s", path, strerror(errno));
    }
    done = fwrite(stream->data, 1, size, file) == size;
    done = (fclose(file) == 0) && done;
    return done || complain("cannot write %s: %s", path, strerror(errno));
}

static int save(const char *path, const qek_stream *stream)
{
    const size_t length = strlen(path);
    qek_string string;
    const char *beside;
    int done;
    qek_string_init(&string);
    qek_string_copy(&string, path, -1);
    qek_string_append(&string, ".part", -1);
    if ((size_t)string.length != length + 5) {
        qek_string_term(&string);
        return complain("out of memory");
    }
    beside = (const char *)string.data;
    done = save_bytes(beside, stream);
    if (done && rename(beside, path) != 0) {
        done = complain("cannot write %s: %s", path, strerror(errno));
    }
    if (!done) {
        remove(beside);
    }
    qek_string_term(&string);
    return done;
}

int index_write(const char *path, const struct word_table *table)
{
    struct writer writer;
    int done;
    qek_stream_init(&writer.stream);
    writer.position = 0;
    guess_size(&writer, table);
    done = write_header(&writer, table) && write_texts(&writer, table) &&
           write_words(&writer, table) && write_trailer(&writer) && save(path, &writer.stream);
    qek_stream_term(&writer.stream);
    return done;
}

int index_may_replace(const char *path)
{
    FILE *file = fopen(path, "rb");
    uint8_t head[4];
    size_t got;
    if (file == NULL) {
        return 1; /* what else is wrong with the path shows when it is written */
    }
    got = fread(head, 1, sizeof head, file);
    fclose(file);
    return (got == sizeof head && qek_mem_cmp(head, 4, "QWIX", 4) == 0) ||
           complain("%s exists and is not a word index; it is not replaced", path);
}
