/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * key_shell: keys in order, each with a text, from a line that can be edited; `help` tells how. A
 * file is the dwords magic, count; for each entry the dword code of a length and the bytes, of the
 * key and of the text; and as a dword the CRC-32 of all bytes before it.
 */
#include <editline/readline.h>
#include <qek_std.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum {
    magic = 0x53564B51,
    longest = 0x3FFFFFFF
};

static void free_text(qek_word value) { qek_free((void *)value); }

static void set(qek_btree *keys, const void *key, int32_t key_size, const void *text, int32_t size)
{
    uint8_t *copy = NULL;
    qek_str_dup(&copy, text, size);
    if (!qek_btree_insert(keys, key, key_size, (qek_word)copy)) {
        free_text(qek_btree_update(keys, key, key_size, (qek_word)copy));
    }
}

/* Once a key was removed the links between nodes are not to be followed. But the node behind this
 * one is the first from its key with a zero byte added; at the end it is this one again. */
static const qek_btree_node *after(const qek_btree *keys, const qek_btree_node *node)
{
    const qek_btree_node *next;
    qek_string key;
    qek_string_init(&key);
    qek_string_copy(&key, keys->keys.data + node->key_offset, node->key_length);
    qek_string_append_char(&key, 0);
    next = qek_btree_node_bfind(keys, key.data, key.length);
    qek_string_term(&key);
    return next == node ? NULL : next;
}

/* Fields never grow a stream: room is made before, and `length` set behind it. */
static void put(qek_stream *stream, int32_t *at, const void *bytes, int32_t size)
{
    qek_stream_expand(stream, *at + size + 8); /* 4 at most for the length, 4 for the checksum */
    qek_stream_shrink(stream, *at + size + 8);
    qek_stream_deflate_dword(stream, at, (uint32_t)size);
    qek_stream_set_buffer(stream, at, bytes, size);
}

static const char *save(const qek_btree *keys, const char *path)
{
    const qek_btree_node *node = qek_btree_node_first(keys);
    int32_t at = 8, head = 0;
    qek_stream stream;
    FILE *file = NULL;
    int good = 0;
    qek_stream_init(&stream);
    qek_stream_expand(&stream, 12);
    qek_stream_shrink(&stream, 12); /* magic, count, checksum */
    for (; node != NULL; node = after(keys, node)) {
        put(&stream, &at, keys->keys.data + node->key_offset, node->key_length);
        put(&stream, &at, (void *)node->value, (int32_t)strlen((const char *)node->value));
    }
    if (at + 4 <= stream.length) { /* else memory ran out, and fields were lost */
        qek_stream_set_dword(&stream, &head, magic);
        qek_stream_set_dword(&stream, &head, (uint32_t)keys->node_count);
        qek_stream_set_dword(&stream, &at, qek_stream_crc32(stream.data, at));
        file = fopen(path, "wb");
    }
    if (file != NULL) {
        good = fwrite(stream.data, (size_t)at, 1, file) == 1;
        good = fclose(file) == 0 && good;
    }
    qek_stream_term(&stream);
    return good ? NULL : "the file cannot be written";
}

/* Moves on behind a key or a text that ends by `end`; null if there is none. */
static const uint8_t *take(const qek_stream *stream, int32_t *at, int32_t end, int32_t *size)
{
    *size = *at < end ? (int32_t)qek_stream_inflate_dword(stream, at) : longest;
    *at = *at <= end && *size <= end - *at ? *at + *size : longest;
    return *at == longest ? NULL : stream->data + *at - *size;
}

static const char *take_all(qek_btree *keys, const qek_stream *stream)
{
    const int32_t end = stream->length - 4; /* where the checksum stands */
    int32_t at = 0, sum_at = end, key_size, size;
    uint32_t count;
    if (end < 8 || qek_stream_get_dword(stream, &at) != magic) {
        return "that is no file of key_shell";
    }
    if (qek_stream_get_dword(stream, &sum_at) != qek_stream_crc32(stream->data, end)) {
        return "the file is damaged, its checksum is wrong";
    }
    for (count = qek_stream_get_dword(stream, &at); count > 0; count--) {
        const uint8_t *key = take(stream, &at, end, &key_size);
        const uint8_t *text = key == NULL ? NULL : take(stream, &at, end, &size);
        if (text == NULL) {
            return "the file is damaged, an entry runs past its end";
        }
        set(keys, key, key_size, text, size);
    }
    return at == end ? NULL : "the file is damaged, there is more behind its entries";
}

static const char *load(qek_btree *keys, const char *path)
{
    FILE *file = fopen(path, "rb");
    const char *problem = NULL;
    uint8_t part[4096];
    qek_stream stream;
    qek_btree loaded;
    size_t got;
    if (file == NULL) {
        return "the file cannot be opened";
    }
    qek_stream_init(&stream);
    qek_btree_init(&loaded, 1, 1, 0);
    while ((got = fread(part, 1, sizeof part, file)) > 0) {
        qek_stream_append(&stream, part, (int32_t)got);
    }
    qek_stream_expand(&stream, stream.length + 3); /* a code that is cut is read on behind it */
    problem = ferror(file) ? "the file cannot be read" : take_all(&loaded, &stream);
    if (problem == NULL) {
        qek_btree_swap(keys, &loaded);
    }
    qek_btree_free_all(&loaded, free_text);
    qek_btree_term(&loaded);
    qek_stream_term(&stream);
    fclose(file);
    return problem;
}

/* Behind the last key there is the last again, which is before `from`. */
static void show(const qek_btree *keys, const qek_btree_node *node, const char *from)
{
    const char *key = (const char *)keys->keys.data + node->key_offset;
    if (from == NULL || qek_mem_cmp(key, node->key_length, from, (int32_t)strlen(from)) >= 0) {
        printf("%.*s = %s\n", (int)node->key_length, key, (const char *)node->value);
    }
}

/* Does what a line says, of which the first letter is enough; gives what is wrong, or null. */
static const char *obey(qek_btree *keys, char *line)
{
    const char *command = strtok(line, " "), *key = strtok(NULL, " "), *text = strtok(NULL, "");
    const char *missing = key != NULL && qek_btree_find(keys, key, -1) ? NULL : "no such key";
    const qek_btree_node *node =
        key == NULL ? qek_btree_node_first(keys) : qek_btree_node_bfind(keys, key, -1);
    switch (command == NULL ? 0 : key == NULL && *command != 'k' ? '?' : *command) {
    case 0:
        return NULL;
    case 'p':
        return text == NULL ? "put KEY what?" : (set(keys, key, -1, text, -1), NULL);
    case 'g':
        return missing != NULL ? missing : (show(keys, node, NULL), NULL);
    case 'd':
        return free_text(qek_btree_remove(keys, key, -1)), missing;
    case 's':
        return save(keys, key);
    case 'l':
        return load(keys, key);
    case 'k':
        for (; node != NULL; node = after(keys, node)) {
            show(keys, node, key);
        }
        return NULL;
    default:
        return "put KEY TEXT, get KEY, delete KEY, keys [FROM], save FILE, load FILE; ^D ends";
    }
}

int main(void)
{
    const char *prompt = isatty(STDIN_FILENO) ? "> " : "";
    qek_btree keys;
    char *line;
    qek_btree_init(&keys, 1, 1, 0);
    while ((line = readline(prompt)) != NULL) {
        const char *problem;
        add_history(line);
        problem = obey(&keys, line);
        printf("%s%s", problem == NULL ? "" : problem, problem == NULL ? "" : "\n");
        free(line);
    }
    qek_btree_free_all(&keys, free_text);
    qek_btree_term(&keys);
    return 0;
}
