/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * key_shell: keys in order, each with a text, from a line that can be edited; `help` tells how. A
 * deleted key stays in the tree without a text until keys are loaded: taking it out would take
 * linear time, and end the links from node to node. A file is the bytes QKVS, each key and its text
 * with a NUL behind either, and as a dword the CRC-32 of all bytes before it.
 */
#include <editline/readline.h>
#include <qek_std.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void free_text(qek_word value) { qek_free((void *)value); }

/* Gives a key a text, or none; qek_str_dup frees the one that it had. */
static void set(qek_btree *keys, const char *key, const char *text)
{
    qek_btree_node *node;
    uint8_t *copy;
    qek_btree_node_set(keys, key, -1, &node);
    copy = (uint8_t *)node->value;
    qek_str_dup(&copy, text, -1);
    node->value = (qek_word)copy;
}

static const char *save(const qek_btree *keys, const char *path)
{
    const qek_btree_node *node = qek_btree_node_first(keys);
    qek_stream out;
    FILE *file;
    int32_t at, good;
    qek_stream_init(&out);
    good = qek_stream_insert(&out, 0, "QKVS", 4); /* unlike appending it tells of lack of memory */
    for (; good && node != NULL; node = node->next) {
        const uint8_t *key = keys->keys.data + node->key_offset, *text = (uint8_t *)node->value;
        good = text == NULL ||
               (qek_stream_insert(&out, out.length, key, node->key_length) &&
                qek_stream_insert(&out, out.length, "", 1) &&
                qek_stream_insert(&out, out.length, text, (int32_t)strlen((char *)text) + 1));
    }
    at = out.length;
    good = good && qek_stream_insert(&out, at, "\0\0\0", 4); /* as fields never grow a stream */
    qek_stream_set_dword(&out, &at, qek_stream_crc32(out.data, at));
    file = good ? fopen(path, "wb") : NULL;
    good = file != NULL && fwrite(out.data, (size_t)at, 1, file) == 1;
    good = file != NULL && fclose(file) == 0 && good;
    qek_stream_term(&out);
    return good ? NULL : "the file cannot be written";
}

static const char *fault_of(const qek_stream *in)
{
    const int32_t end = in->length - 4; /* where the checksum stands */
    int32_t at = 4, ends = 0;
    for (; at < end; at++) {
        ends += in->data[at] == 0;
    }
    if (end < 4 || qek_mem_cmp(in->data, 4, "QKVS", 4) != 0) {
        return "that is no file of key_shell";
    }
    if (qek_stream_get_dword(in, &at) != qek_stream_crc32(in->data, end)) {
        return "the file is damaged, its checksum is wrong";
    }
    return ends % 2 || (end > 4 && in->data[end - 1]) ? "the file is damaged, a text is cut" : NULL;
}

/* Takes the keys of a file for those that were there; if something is wrong these stay. */
static const char *load(qek_btree *keys, const char *path)
{
    FILE *file = fopen(path, "rb");
    const char *problem = "the file cannot be read", *key, *text, *end;
    uint8_t part[4096];
    qek_stream in;
    size_t got;
    if (file == NULL) {
        return problem;
    }
    qek_stream_init(&in);
    while ((got = fread(part, 1, sizeof part, file)) > 0) {
        qek_stream_append(&in, part, (int32_t)got);
    }
    problem = ferror(file) ? problem : fault_of(&in);
    if (problem == NULL) {
        qek_btree_free_all(keys, free_text);
        key = (const char *)in.data + 4;
        end = (const char *)in.data + in.length - 4;
        for (; key < end && (text = key + strlen(key) + 1) < end; key = text + strlen(text) + 1) {
            set(keys, key, text);
        }
    }
    qek_stream_term(&in);
    fclose(file);
    return problem;
}

/* Prints the keys from one on. Behind the last key bfind gives the last, which is before. */
static void show(const qek_btree *keys, const char *from)
{
    const qek_btree_node *node = qek_btree_node_bfind(keys, from, -1);
    for (; node != NULL; node = node->next) {
        const char *key = (const char *)keys->keys.data + node->key_offset;
        if (node->value && qek_mem_cmp(key, node->key_length, from, (int32_t)strlen(from)) >= 0) {
            printf("%.*s = %s\n", (int)node->key_length, key, (const char *)node->value);
        }
    }
}

/* Does what a line says, of which the first letter is enough; gives what is wrong, or null. */
static const char *obey(qek_btree *keys, char *line)
{
    const char *command = strtok(line, " "), *key = strtok(NULL, " "), *text = strtok(NULL, "");
    const char *found = (const char *)qek_btree_get(keys, key, -1);
    switch (command == NULL || (key == NULL && *command != 'k') ? '?' : *command) {
    case 'p':
        return text == NULL ? "put KEY what?" : (set(keys, key, text), NULL);
    case 'g':
        return found != NULL ? found : "no such key";
    case 'd':
        return found == NULL ? "no such key" : (set(keys, key, NULL), NULL);
    case 's':
        return save(keys, key);
    case 'l':
        return load(keys, key);
    case 'k':
        return show(keys, key == NULL ? "" : key), NULL;
    default:
        return "put KEY TEXT, get KEY, delete KEY, keys [FROM], save FILE, load FILE; ^D ends";
    }
}

int main(void)
{
    qek_btree keys;
    char *line;
    qek_btree_init(&keys, 1, 1, 0);
    for (; (line = readline(isatty(STDIN_FILENO) ? "> " : "")) != NULL; free(line)) {
        const char *answer;
        add_history(line);
        if ((answer = obey(&keys, line)) != NULL) {
            puts(answer);
        }
    }
    qek_btree_free_all(&keys, free_text);
    qek_btree_term(&keys);
    return 0;
}
