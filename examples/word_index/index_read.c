/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * Nothing in an index is believed. The frame is tested first (magic, version, size, checksum), then
 * every field, since a file with a good checksum may still have been made by a faulty program.
 */
#include "index.h"
#include "report.h"

#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

struct reader {
    const char *path;
    qek_stream stream; /* without the checksum, once the frame is tested */
    int32_t position;
    struct index_summary *found;
    const struct word_table *expected; /* null: there is nothing to compare with */
    struct word_table seen;            /* without `expected`: the words met so far */
};

/* Grows the stream by chunks, so that the file may be a pipe as well. */
static int load_bytes(const char *path, FILE *file, qek_stream *stream)
{
    enum {
        chunk = 0x40000
    };
    size_t got;
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

static int read_string(struct reader *reader, qek_string *string)
{
    int32_t after = reader->position;
    qek_stream_get_string(&reader->stream, &after, string);
    if (after > reader->stream.length) {
        return refuse(reader, "a text runs past the end");
    }
    if (after != reader->position + 2 + string->length) {
        return complain("%s: out of memory", reader->path);
    }
    reader->position = after;
    return 1;
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
    const struct word_table *expected = reader->expected;
    found->texts = qek_stream_get_dword(&reader->stream, &reader->position);
    found->distinct = qek_stream_get_dword(&reader->stream, &reader->position);
    found->words = qek_stream_get_dword(&reader->stream, &reader->position);
    found->text_bytes = qek_stream_get_dword(&reader->stream, &reader->position);
    if (found->text_bytes > most_text_bytes || found->words > found->text_bytes ||
        found->distinct > found->words) {
        return refuse(reader, "the counts of the header do not go together");
    }
    return expected == NULL ||
           (found->texts == (uint32_t)expected->texts.live_count &&
            found->distinct == (uint32_t)expected->words.live_count &&
            found->words == (uint32_t)expected->occurrences.live_count &&
            found->text_bytes == expected->bytes) ||
           complain("%s differs from the texts: its counts are others", reader->path);
}

static int check_texts(struct reader *reader, qek_string *string)
{
    uint32_t left = reader->found->text_bytes;
    uint32_t number;
    for (number = 0; number < reader->found->texts; ++number) {
        uint32_t bytes;
        if (!read_string(reader, string) || !read_count(reader, left, &bytes)) {
            return 0;
        }
        left -= bytes;
        if (reader->expected != NULL) {
            const struct text *text = table_text(reader->expected, number);
            if (qek_string_compare(string, text->name, -1) != 0 || bytes != text->bytes) {
                return differs(reader, "the name or size of text", number);
            }
        }
    }
    return left == 0 || refuse(reader, "the texts are shorter than the header says");
}

static int check_word(struct reader *reader, const qek_string *string, uint32_t number)
{
    const struct word *word;
    if (reader->expected == NULL) {
        if (table_find_or_add(&reader->seen, string->data, string->length) == NULL) {
            return complain("%s: out of memory", reader->path);
        }
        return (uint32_t)reader->seen.words.live_count == number + 1 ||
               refuse(reader, "a word stands twice");
    }
    word = table_word(reader->expected, number);
    return qek_string_compare(string, table_chars(reader->expected, word), (int32_t)word->length) ==
               0 ||
           differs(reader, "the letters of word", number);
}

/* Reads the positions of a word, from the first one of the word before it on. */
static int check_positions(struct reader *reader, uint32_t number, uint32_t count, uint32_t most,
                           uint32_t *first)
{
    const struct word *word =
        reader->expected == NULL ? NULL : table_word(reader->expected, number);
    uint32_t next = word == NULL ? 0 : word->first;
    uint32_t position = *first;
    uint32_t at;
    if (word != NULL && word->count != count) {
        return differs(reader, "the count of word", number);
    }
    for (at = 0; at < count; ++at) {
        if (!read_position(reader, number > 0 || at > 0, most, &position)) {
            return 0;
        }
        if (word != NULL) {
            const struct occurrence *occurrence = table_occurrence(reader->expected, next);
            if (occurrence->position != position) {
                return differs(reader, "a position of word", number);
            }
            next = occurrence->next;
        }
        if (at == 0) {
            *first = position;
        }
    }
    return 1;
}

static int check_words(struct reader *reader, qek_string *string)
{
    const struct index_summary *found = reader->found;
    uint32_t left = found->words;
    uint32_t first = 0;
    uint32_t number;
    for (number = 0; number < found->distinct; ++number) {
        uint32_t count;
        if (!read_string(reader, string)) {
            return 0;
        }
        if (qek_string_is_empty(string) || (uint32_t)string->length > found->text_bytes) {
            return refuse(reader, "a word is empty, or longer than the texts");
        }
        if (!check_word(reader, string, number) || !read_count(reader, left, &count)) {
            return 0;
        }
        if (count == 0) {
            return refuse(reader, "a word never occurs");
        }
        if (!check_positions(reader, number, count, found->text_bytes - (uint32_t)string->length,
                             &first)) {
            return 0;
        }
        left -= count;
        show_progress("checked", number, "words");
    }
    if (left > 0) {
        return refuse(reader, "there are fewer words than the header says");
    }
    return reader->position == reader->stream.length ||
           refuse(reader, "there are bytes behind the last word");
}

int index_check(const char *path, const struct word_table *table, struct index_summary *summary)
{
    struct reader reader;
    qek_string string;
    int done;
    reader.path = path;
    reader.position = 0;
    reader.found = summary;
    reader.expected = table;
    qek_stream_init(&reader.stream);
    table_init(&reader.seen);
    qek_string_init(&string);
    done = load(path, &reader.stream) && check_identity(&reader) && check_frame(&reader) &&
           check_header(&reader) && check_texts(&reader, &string) && check_words(&reader, &string);
    qek_string_term(&string);
    table_term(&reader.seen);
    qek_stream_term(&reader.stream);
    return done;
}
