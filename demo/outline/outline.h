/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * The list of files and the tree that is made of it. The text of the list is read once and stays
 * where it is; whatever is cut out of it is a view or a slice.
 */
#ifndef OUTLINE_OUTLINE_H
#define OUTLINE_OUTLINE_H

#include <qek_std.h>

enum {
    most_text_bytes = 0x3FFFFFFF,
    most_names = 256 /* in one path */
};

struct line {
    qek_stringx path; /* no '/' in front; no name is empty or begins or ends with white space */
    int64_t size;
    int32_t number; /* from 1 */
};

struct lines {
    const char *file; /* its name, borrowed */
    qek_string text;
    qek_arrays sorted; /* struct line, by path; what is in a directory stands together */
};

/* What the value of every entry points at, also of the root, which stands for the whole list. */
struct node {
    qek_char name; /* in the text of the lines */
    int64_t size;  /* in bytes; of a directory, of all files in it */
    int32_t files; /* 1 for a file */
    int32_t line;  /* of a file; 0: a directory */
    int32_t depth; /* 0: not in a directory */

    /* The children that wait for their directory to be closed, each with the one before it. */
    qek_tree_entry *last_closed;
    qek_tree_entry *closed_before;
};

/* These two give 1 on success, and 0 after a complaint. `lines` is to be ended in both cases. */
int lines_read(struct lines *lines, const char *file);
int outline_build(qek_tree *tree, const struct lines *lines);
void lines_term(struct lines *lines);

struct node *node_of(const qek_tree_entry *entry);

/* Prints one line on standard error. Always 0, for `return complain(...)`. */
int complain(const char *format, ...);

#endif
