/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * key_shell: keys in order, each with a text, from a line that can be edited; `help` tells how. The
 * result is 1 if a command failed, `load` adds to what is there, and a deleted key stays with an empty
 * text: taking it out would end the links from node to node. A file is the bytes QKVS; for each key
 * the lengths of it and of its text, in the lword code of compact integers, and both; at the end, as
 * a dword, the CRC-32 of that.
 */
#include <editline/readline.h>
#include <errno.h>
#include <qek_std.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int complain(const char *what) { return fprintf(stderr, "key_shell: %s\n", what), 1; }
static void end_text(qek_word value) { qek_string_term((qek_string *)value); }

static int set(qek_btree *keys, const void *key, int32_t length, const void *text, int32_t size)
{
    qek_word value = 0;
    qek_btree_set(keys, key, length, &value, NULL); /* a fresh item is zero, an empty string */
    return qek_string_copy((qek_string *)value, text, size), 0;
}

/* Adds a key and its text; 0 if memory runs out. Codes never grow a stream, so room is made first. */
static int32_t add(qek_stream *out, const uint8_t *key, int32_t length, const qek_string *text)
{
    int32_t at = out->length, codes = qek_stream_deflate_lword_length((uint64_t)length), good;
    codes += qek_stream_deflate_lword_length((uint64_t)text->length);
    good = qek_stream_insert(out, at, "123456789123456789", codes);
    qek_stream_deflate_lword(out, &at, (uint64_t)length);
    qek_stream_deflate_lword(out, &at, (uint64_t)text->length);
    good = good && qek_stream_insert(out, at, key, length);
    return good && qek_stream_insert(out, out->length, text->data, text->length);
}

static int save(const qek_btree *keys, const char *path)
{
    const qek_btree_node *node = qek_btree_node_first(keys);
    qek_stream out;
    FILE *file;
    int32_t at, good;
    qek_stream_init(&out);
    for (good = qek_stream_insert(&out, 0, "QKVS", 4); good && node != NULL; node = node->next) {
        const qek_string *text = (const qek_string *)node->value;
        good = text->length == 0 ||
               add(&out, keys->keys.data + node->key_offset, node->key_length, text);
    }
    at = out.length;
    errno = ENOMEM; /* unless it is the file that fails */
    file = good && qek_stream_insert(&out, at, "1234", 4) ? fopen(path, "wb") : NULL;
    qek_stream_set_dword(&out, &at, qek_stream_crc32(out.data, at));
    good = file != NULL && fwrite(out.data, (size_t)at, 1, file) == 1;
    good = file != NULL && fclose(file) == 0 && good;
    qek_stream_term(&out);
    return good ? 0 : complain(strerror(errno));
}

static int load(qek_btree *keys, FILE *file)
{
    const char *problem = NULL;
    int32_t at, end;
    uint8_t part[4096];
    qek_stream in;
    size_t got;
    qek_stream_init(&in);
    while ((got = fread(part, 1, sizeof part, file)) > 0 &&
           qek_stream_insert(&in, in.length, part, (int32_t)got)) {
    }
    at = end = in.length - 4;
    if (!feof(file)) {
        problem = strerror(errno);
    } else if (end < 4 || qek_mem_cmp(in.data, 4, "QKVS", 4) != 0) {
        problem = "that is no file of key_shell";
    } else if (qek_stream_get_dword(&in, &at) != qek_stream_crc32(in.data, end)) {
        problem = "the file is damaged or cut, its checksum is wrong";
    }
    qek_stream_shrink(&in, end); /* so that a code that is cut reads as all ones */
    for (at = 4; problem == NULL && at < end;) {
        const uint64_t length = qek_stream_inflate_lword(&in, &at);
        const uint64_t size = qek_stream_inflate_lword(&in, &at), left = (uint64_t)(end - at);
        if (length > left || size > left - length) {
            problem = "the file is wrong from a key on, although its checksum is right";
        } else {
            set(keys, in.data + at, (int32_t)length, in.data + at + length, (int32_t)size);
            at += (int32_t)(length + size);
        }
    }
    qek_stream_term(&in);
    fclose(file);
    return problem == NULL ? 0 : complain(problem);
}

/* Prints the keys from one on. Behind the last key bfind gives the last, which is before. */
static int show(const qek_btree *keys, const char *from)
{
    const qek_btree_node *node = qek_btree_node_bfind(keys, from, -1);
    for (; node != NULL; node = node->next) {
        const char *key = (const char *)keys->keys.data + node->key_offset;
        const qek_string *text = (const qek_string *)node->value;
        if (text->length && qek_mem_cmp(key, node->key_length, from, (int32_t)strlen(from)) >= 0) {
            printf("%.*s = %s\n", (int)node->key_length, key, (const char *)text->data);
        }
    }
    return 0;
}

static int obey(qek_btree *keys, char *line)
{
    const char *command = strtok(line, " "), *key = strtok(NULL, " "), *text = strtok(NULL, "");
    FILE *file = NULL;
    const qek_string *found = (const qek_string *)qek_btree_get(keys, key, -1);
    switch (command == NULL || (key == NULL && *command != 'k') ? '?' : *command) {
    case 'p':
        return text == NULL ? complain("put KEY what?") : set(keys, key, -1, text, -1);
    case 'g':
        return found && found->length ? puts((char *)found->data) < 0 : complain("no such key");
    case 'd':
        return found ? set(keys, key, -1, NULL, 0) : complain("no such key");
    case 's':
        return save(keys, key);
    case 'l':
        file = fopen(key, "rb");
        return file == NULL ? complain(strerror(errno)) : load(keys, file);
    case 'k':
        return show(keys, key == NULL ? "" : key);
    default:
        return complain("put KEY TEXT, get KEY, delete KEY, keys [FROM], save FILE, load FILE");
    }
}

int main(void)
{
    qek_btree keys;
    int result = 0;
    char *line;
    qek_btree_init(&keys, 1, 1, 1);
    keys.value_pool->item_size = sizeof(qek_string);
    for (; (line = readline(isatty(STDIN_FILENO) ? "> " : "")) != NULL; free(line)) {
        add_history(line);
        result |= obey(&keys, line);
    }
    qek_btree_free_all(&keys, end_text);
    qek_btree_term(&keys);
    return result;
}
