/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * Nothing in an index is believed. The frame is tested first (magic, version, size, checksum), then
 * every field, since a file with a good checksum may still have been made by a faulty program.
 */
#include "index.h"
#include "report.h"
#include "text.h"

#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

struct reader {
    const char *path;
    qek_stream stream; /* without the checksum, once the frame is tested */
    int32_t position;
    struct index_summary *found;
    struct word_table *table;
    int compares;               /* the table is of texts; else it gets the vocabulary */
    const qek_btree_node *node; /* if it compares: the word that is due */
};

/* A text in the stream. */
struct run {
    uint8_t *chars;
    int32_t length;
};

/* Grows the stream by chunks where the size is not known: the file may be a pipe as well. */
static int load_bytes(const char *path, FILE *file, qek_stream *stream)
{
    enum {
        chunk = 0x40000
    };
    size_t got;
    if (fseek(file, 0, SEEK_END) == 0) {
        const long size = ftell(file);
        rewind(file);
        qek_stream_expand(stream, size < index_longest ? (int32_t)size + chunk : 0);
    }
    do {
        const int32_t length = stream->length;
        if (length > index_longest) {
            return complain("%s is longer than any index", path);
        }
        if (!qek_stream_expand(stream, length + chunk)) {
            return complain("%s: out of memory", path);
        }
        got = fread(stream->data + length, 1, chunk, file);
        qek_stream_shrink(stream, length + (int32_t)got);
    } while (got > 0);
    return !ferror(file) || complain("cannot read %s: %s", path, strerror(errno));
}

static int load(const char *path, qek_stream *stream)
{
    FILE *file = fopen(path, "rb");
    int done;
    if (file == NULL) {
        return complain("cannot read %s: %s", path, strerror(errno));
    }
    done = load_bytes(path, file, stream);
    fclose(file);
    return done;
}

static int check_identity(struct reader *reader)
{
    const int32_t length = reader->stream.length;
    uint32_t version;
    if (length >= 4 && qek_stream_get_dword(&reader->stream, &reader->position) != index_magic) {
        return complain("%s is not a word index", reader->path);
    }
    if (length < index_header_size + index_checksum_size) {
        return complain("%s is truncated: %" PRId32 " bytes do not hold the header", reader->path,
                        length);
    }
    version = qek_stream_get_word(&reader->stream, &reader->position);
    return version == index_version ||
           complain("%s has version %" PRIu32 "; this program reads version %d", reader->path,
                    version, index_version);
}

static int check_frame(struct reader *reader)
{
    const int32_t length = reader->stream.length;
    const int32_t end = length - index_checksum_size;
    int32_t checksum_at = end;
    const uint32_t size = qek_stream_get_dword(&reader->stream, &reader->position);
    const uint32_t checksum = qek_stream_get_dword(&reader->stream, &checksum_at);
    const uint32_t computed = qek_stream_crc32(reader->stream.data, end);
    if ((uint32_t)length < size) {
        return complain("%s is truncated: it has %" PRId32 " of %" PRIu32 " bytes", reader->path,
                        length, size);
    }
    if ((uint32_t)length > size) {
        return complain("%s has bytes behind its end: it has %" PRId32 ", and should have %" PRIu32,
                        reader->path, length, size);
    }
    if (checksum != computed) {
        return complain("%s is damaged: its checksum is %08" PRIX32 ", and should be %08" PRIX32,
                        reader->path, computed, checksum);
    }
    reader->found->checksum = checksum;
    reader->found->size = length;
    reader->found->fixed_size = length;
    /* From here on a field that reaches into the checksum is a field that does not fit. */
    qek_stream_shrink(&reader->stream, end);
    return 1;
}

/* What is wrong with an index whose checksum is right. */
static int refuse(const struct reader *reader, const char *what)
{
    return complain("%s is wrong at byte %" PRId32 ": %s", reader->path, reader->position, what);
}

static int read_string(struct reader *reader, struct run *run)
{
    const int32_t length = qek_stream_get_word(&reader->stream, &reader->position);
    run->length = length;
    qek_stream_get_buffer(&reader->stream, &reader->position, &run->chars, &run->length);
    return run->length == length || refuse(reader, "a text runs past the end");
}

static int same(const struct run *run, const void *chars, int32_t length)
{
    return qek_mem_cmp(run->chars, run->length, chars, length) == 0;
}

/* A code that is cut is read on from behind the stream's length: there the checksum stands, as long
 * as the longest dword code is. The position tells. */
static int read_count(struct reader *reader, uint32_t most, uint32_t *count)
{
    int32_t after = reader->position;
    *count = qek_stream_inflate_dword(&reader->stream, &after);
    if (after > reader->stream.length || after == reader->position) {
        return refuse(reader, "a count runs past the end");
    }
    if (*count > most) {
        return refuse(reader, "a count is larger than the header allows");
    }
    reader->found->fixed_size += 4 - (after - reader->position);
    reader->position = after;
    return 1;
}

/* Moves a position on by a coded distance: by at least `least`, and to at most `most`. */
static int read_position(struct reader *reader, uint32_t least, uint32_t most, uint32_t *position)
{
    int32_t after = reader->position;
    const uint64_t distance = qek_stream_inflate_lword(&reader->stream, &after);
    if (distance == UINT64_MAX) {
        return refuse(reader, "a position runs past the end");
    }
    if (distance < least) {
        return refuse(reader, "a position does not ascend");
    }
    if (*position > most || distance > most - *position) {
        return refuse(reader, "a word does not fit in the texts");
    }
    reader->found->fixed_size += 4 - (after - reader->position);
    reader->position = after;
    *position += (uint32_t)distance;
    return 1;
}

static int differs(const struct reader *reader, const char *what, uint32_t number)
{
    return complain("%s differs from the texts: %s of %" PRIu32, reader->path, what, number);
}

static int check_header(struct reader *reader)
{
    struct index_summary *found = reader->found;
    const struct word_table *table = reader->table;
    found->texts = qek_stream_get_dword(&reader->stream, &reader->position);
    found->distinct = qek_stream_get_dword(&reader->stream, &reader->position);
    found->words = qek_stream_get_dword(&reader->stream, &reader->position);
    found->text_bytes = qek_stream_get_dword(&reader->stream, &reader->position);
    if (found->text_bytes > most_text_bytes || found->words > found->text_bytes ||
        found->distinct > found->words) {
        return refuse(reader, "the counts of the header do not go together");
    }
    return !reader->compares ||
           (found->texts == (uint32_t)table->texts.live_count &&
            found->distinct == (uint32_t)table->vocabulary.node_count &&
            found->words == (uint32_t)table->occurrences.live_count &&
            found->text_bytes == table->bytes) ||
           complain("%s differs from the texts: its counts are others", reader->path);
}

static int check_texts(struct reader *reader)
{
    uint32_t left = reader->found->text_bytes;
    uint32_t number;
    for (number = 0; number < reader->found->texts; ++number) {
        struct run name;
        uint32_t bytes;
        if (!read_string(reader, &name) || !read_count(reader, left, &bytes)) {
            return 0;
        }
        left -= bytes;
        if (reader->compares) {
            const struct text *text = table_text(reader->table, number);
            if (!same(&name, text->name, (int32_t)strlen(text->name)) || bytes != text->bytes) {
                return differs(reader, "the name or size of text", number);
            }
        }
    }
    return left == 0 || refuse(reader, "the texts are shorter than the header says");
}

static int check_positions(struct reader *reader, uint32_t number, uint32_t count, uint32_t most)
{
    uint32_t next = reader->compares ? table_word(reader->node)->first : 0;
    uint32_t position = 0;
    uint32_t at;
    for (at = 0; at < count; ++at) {
        if (!read_position(reader, at > 0, most, &position)) {
            return 0;
        }
        if (reader->compares) {
            const struct occurrence *occurrence = table_occurrence(reader->table, next);
            if (occurrence->position != position) {
                return differs(reader, "a position of word", number);
            }
            next = occurrence->next;
        }
    }
    return 1;
}

/* Reads a word, which must come behind the one before it. */
static int check_word(struct reader *reader, uint32_t number, struct run *word, uint32_t *left)
{
    const struct run before = *word;
    const uint32_t text_bytes = reader->found->text_bytes;
    uint32_t count;
    if (!read_string(reader, word)) {
        return 0;
    }
    if (!text_is_word(word->chars, word->length) || (uint32_t)word->length > text_bytes) {
        return refuse(reader, "a word is none, or longer than the texts");
    }
    if (qek_mem_cmp(word->chars, word->length, before.chars, before.length) <= 0) {
        return refuse(reader, "the words do not ascend");
    }
    if (!read_count(reader, *left, &count)) {
        return 0;
    }
    if (count == 0) {
        return refuse(reader, "a word never occurs");
    }
    *left -= count;
    if (!reader->compares) {
        if (!table_add_counted(reader->table, word->chars, word->length, count)) {
            return complain("%s: out of memory", reader->path);
        }
    } else if (!same(word, table_chars(reader->table, reader->node), reader->node->key_length) ||
               count != table_word(reader->node)->count) {
        return differs(reader, "the letters or the count of word", number);
    }
    return check_positions(reader, number, count, text_bytes - (uint32_t)word->length);
}

static int check_words(struct reader *reader)
{
    struct run word = {NULL, 0};
    uint32_t left = reader->found->words;
    uint32_t number;
    for (number = 0; number < reader->found->distinct; ++number) {
        if (!check_word(reader, number, &word, &left)) {
            return 0;
        }
        if (reader->compares) {
            reader->node = reader->node->next;
        }
        show_progress("checked", number, "words");
    }
    if (left > 0) {
        return refuse(reader, "there are fewer words than the header says");
    }
    return reader->position == reader->stream.length ||
           refuse(reader, "there are bytes behind the last word");
}

int index_check(const char *path, struct word_table *table, struct index_summary *summary)
{
    struct reader reader;
    int done;
    reader.path = path;
    reader.position = 0;
    reader.found = summary;
    reader.table = table;
    reader.compares = table->texts.live_count > 0;
    reader.node = qek_btree_node_first(&table->vocabulary);
    qek_stream_init(&reader.stream);
    done = load(path, &reader.stream) && check_identity(&reader) && check_frame(&reader) &&
           check_header(&reader) && check_texts(&reader) && check_words(&reader);
    qek_stream_term(&reader.stream);
    return done;
}
