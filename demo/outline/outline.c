/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * A step of a path is looked for in the whole subtree of the step before it. In a tree of many
 * entries that may find a name too far down, and takes quadratic time for names that are not there.
 * So the tree holds one path only while it grows, the open one:
 *
 *     root -- tests -- list -- list_test.cpp        waiting: for root, array and base;
 *                                                            for list, list_check.h
 *
 * As the lines are sorted, what the next path does not share is complete. It is closed, from its end
 * upwards: a closed entry takes back the children that wait for it, adds its sums to its parent, is
 * taken off the tree, and waits for its parent to be closed.
 */
#include "outline.h"

#include <inttypes.h>

struct node *node_of(const qek_tree_entry *entry) { return (struct node *)entry->value; }

static int32_t match_name(qek_tree_entry *entry, qek_word key, qek_word length)
{
    return qek_char_compare(&node_of(entry)->name, (const void *)key, (int32_t)length);
}

static void take_back_children(qek_tree *tree, qek_tree_entry *directory)
{
    qek_tree_entry *child = node_of(directory)->last_closed;
    for (; child != NULL; child = node_of(child)->closed_before) {
        if (directory->first_child == NULL) {
            qek_tree_entry_append(tree, directory, child);
        } else {
            qek_tree_entry_insert(tree, directory->first_child, child);
        }
    }
}

/* Closes the end of the open path. The entry above it, which is the end now. */
static qek_tree_entry *close_last(qek_tree *tree, qek_tree_entry *last)
{
    qek_tree_entry *parent = last->parent;
    struct node *above = node_of(parent);
    take_back_children(tree, last);
    above->size += node_of(last)->size;
    above->files += node_of(last)->files;
    node_of(last)->closed_before = above->last_closed;
    above->last_closed = last;
    qek_tree_entry_remove(tree, last);
    return parent;
}

/* The last entry of the open path that is on the new path too. */
static qek_tree_entry *find_shared(qek_tree *tree, const qek_array *path)
{
    qek_tree_entry *entry = &tree->root;
    int32_t step;
    for (step = 0; step < path->count && entry->first_child != NULL; ++step) {
        uint8_t *key;
        int32_t length;
        qek_array_get_at(path, step, &key, &length);
        if (match_name(entry->first_child, (qek_word)key, (qek_word)length) != 0) {
            break;
        }
        entry = entry->first_child;
    }
    return entry;
}

/* Adds what is missing of a path below an entry of it. The entry of the file. */
static qek_tree_entry *add_file(qek_tree *tree, const qek_tree_entry *shared,
                                const struct line *line, const qek_array *path)
{
    qek_tree_entry *file = qek_tree_insert(tree, path, NULL, match_name);
    qek_tree_entry *entry = file;
    int32_t step = path->count - 1;
    for (; entry != shared; entry = entry->parent, --step) {
        const qek_array_entry *slot = &path->slots[step];
        if (entry->value == 0) { /* a directory on the way */
            entry->value = (qek_word)qek_pool_new(tree->value_pool);
        }
        node_of(entry)->depth = step;
        /* The keys stand densely; in the line there is a '/' before each but the first. */
        qek_stringx_mid_char(&line->path, (int32_t)slot->key_offset + step, slot->key_length,
                             &node_of(entry)->name);
    }
    node_of(file)->size = line->size;
    node_of(file)->files = 1;
    node_of(file)->line = line->number;
    return file;
}

/* Goes on from the end of the open path to the file of a line; null after a complaint. */
static qek_tree_entry *open_path(qek_tree *tree, qek_tree_entry *last, const struct line *line,
                                 const struct lines *lines)
{
    const uint8_t *text = line->path.data + line->path.offset;
    qek_tree_entry *shared;
    qek_array path;
    qek_array_init(&path, 0);
    qek_array_from_string(&path, '/', text, line->path.length);
    shared = find_shared(tree, &path);
    if (path.keys.length + path.count - 1 != line->path.length) {
        complain("%s: out of memory", lines->file);
        last = NULL;
    } else if (node_of(shared)->line != 0) {
        complain("%s:%" PRId32 ": %.*s: line %" PRId32 " has %s", lines->file, line->number,
                 (int)line->path.length, (const char *)text, node_of(shared)->line,
                 node_of(shared)->depth + 1 == path.count ? "this path already"
                                                          : "a file where a directory must be");
        last = NULL;
    } else {
        while (last != shared) {
            last = close_last(tree, last);
        }
        last = add_file(tree, shared, line, &path);
    }
    qek_array_term(&path);
    return last;
}

int outline_build(qek_tree *tree, const struct lines *lines)
{
    qek_tree_entry *last = &tree->root;
    int32_t at;
    tree->value_pool->item_size = (int32_t)sizeof(struct node);
    tree->value_pool->items_per_block = 1024;
    last->value = (qek_word)qek_pool_new(tree->value_pool);
    for (at = 0; at < lines->sorted.count; ++at) {
        const struct line *line = (const struct line *)qek_arrays_get_at(&lines->sorted, at);
        last = open_path(tree, last, line, lines);
        if (last == NULL) {
            return 0;
        }
    }
    while (last != &tree->root) {
        last = close_last(tree, last);
    }
    take_back_children(tree, last);
    return 1;
}
