/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * word_index [--prefix TEXT] [FILE...]: prints the words of texts, or of standard input, in order:
 * how often each occurs and in which lines, as `harbour 3: a.txt:1 a.txt:7`. With --prefix only
 * those that begin with TEXT. A word is a run of ASCII letters and digits, in lower case, and of
 * bytes from 0x80 up, so that letters of UTF-8 stay together; behind 255 bytes a new one begins.
 * If a text cannot be read nothing is printed. demo/word_index goes on from here: it saves its index,
 * and believes nothing of one that it reads.
 */
#include <ctype.h>
#include <errno.h>
#include <qek_std.h>
#include <stdio.h>
#include <string.h>

enum {
    longest_word = 255
};

struct place {
    const char *file; /* borrowed */
    unsigned long line;
};

struct word {
    unsigned long count;
    qek_arrays places; /* of struct place, in a pool that all words share */
};

struct word_index {
    qek_btree words; /* values: struct word, items of the tree's own pool */
    qek_pool places;
};

static void init_word(qek_word value) { qek_arrays_init(&((struct word *)value)->places, 0); }

static void free_word(qek_word value) { qek_arrays_term(&((struct word *)value)->places); }

/* Notes that a word stands in a line; 0 if memory runs out. A tree does not tell when the text of a
 * new key finds no room, so room is made before. */
static int add(struct word_index *index, const void *chars, int32_t length, struct place at)
{
    qek_stream *keys = &index->words.keys;
    struct place *place;
    struct word *word;
    qek_word value;
    if (keys->length > INT32_MAX - length || !qek_stream_expand(keys, keys->length + length)) {
        return 0;
    }
    qek_btree_set(&index->words, chars, length, &value, init_word); /* a fresh item is zero */
    word = (struct word *)value;
    word->count++;
    word->places.pool = &index->places;
    place = (struct place *)qek_arrays_get_last(&word->places);
    if (place == NULL || place->line != at.line || place->file != at.file) {
        place = (struct place *)qek_arrays_append_new(&word->places, NULL);
        if (place == NULL) {
            return 0;
        }
        *place = at;
    }
    return 1;
}

/* What went wrong, or null. */
static const char *read_text(struct word_index *index, FILE *text, const char *name)
{
    uint8_t word[longest_word];
    struct place at = {name, 1};
    int32_t length = 0;
    int room = 1, byte = 0;
    while (room && byte != EOF) {
        const int belongs = (byte = getc(text)) >= 0x80 || isalnum(byte);
        if (length > 0 && (!belongs || length == longest_word)) {
            room = add(index, word, length, at);
            length = 0;
        }
        if (belongs) {
            word[length++] = (uint8_t)tolower(byte);
        }
        at.line += byte == '\n';
    }
    return ferror(text) ? strerror(errno) : room ? NULL : "out of memory";
}

/* Prints the words that begin with a prefix. They stand in a row, from the first that is not before
 * it; and as no word is ever removed, the links between nodes may be followed. */
static void print(const struct word_index *index, const char *prefix)
{
    const int32_t size = (int32_t)strlen(prefix);
    const qek_btree_node *node = qek_btree_node_bfind(&index->words, prefix, size);
    for (; node != NULL; node = node->next) {
        const struct word *word = (const struct word *)node->value;
        const char *chars = (const char *)index->words.keys.data + node->key_offset;
        int32_t i;
        if (node->key_length < size || qek_mem_cmp(chars, size, prefix, size) != 0) {
            break; /* or the last word, where all are before the prefix */
        }
        printf("%.*s %lu:", (int)node->key_length, chars, word->count);
        for (i = 0; i < word->places.count; i++) {
            const struct place *place = (const struct place *)word->places.slots[i];
            printf(" %s:%lu", place->file, place->line);
        }
        printf("\n");
    }
}

int main(int argc, char **argv)
{
    const int chosen = argc > 2 && strcmp(argv[1], "--prefix") == 0;
    const char *problem = NULL, *name = "standard input";
    int at = chosen ? 3 : 1;
    struct word_index index;
    if (at < argc && argv[at][0] == '-') {
        fprintf(stderr, "usage: word_index [--prefix TEXT] [FILE...]\n");
        return 2;
    }
    qek_btree_init(&index.words, 1, 1, 1);
    index.words.value_pool->item_size = sizeof(struct word);
    qek_pool_init(&index.places);
    index.places.item_size = sizeof(struct place);
    if (at == argc) {
        problem = read_text(&index, stdin, "-");
    }
    for (; at < argc && problem == NULL; at++) {
        FILE *text = fopen(name = argv[at], "rb");
        problem = text == NULL ? strerror(errno) : read_text(&index, text, name);
        if (text != NULL) {
            fclose(text);
        }
    }
    if (problem == NULL) {
        print(&index, chosen ? argv[2] : "");
        name = "standard output";
        problem = fflush(stdout) != 0 || ferror(stdout) ? strerror(errno) : NULL;
    }
    if (problem != NULL) {
        fprintf(stderr, "word_index: %s: %s\n", name, problem);
    }
    qek_btree_free_all(&index.words, free_word);
    qek_btree_term(&index.words);
    qek_pool_term(&index.places);
    return problem == NULL ? 0 : 1;
}
