/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * outline [--find PATH] [FILE]: reads an outline from a file or from standard input, and prints it
 * with numbers. A line is a title. One that is indented by more spaces than the line before is
 * below it, and lines below the same one are indented alike. With --find only what PATH leads to is
 * printed: its steps are titles with a `/` between them, and a step is the first entry of that title
 * at any depth below the step before.
 *
 *     Harbour                1 Harbour
 *       Ships                  1.1 Ships
 *         Sails      -->         1.1.1 Sails      outline --find Harbour/Sails finds this one
 */
#include <errno.h>
#include <qek_std.h>
#include <stdio.h>
#include <string.h>

struct line {
    int32_t indent; /* spaces before the title */
    int32_t place;  /* among those below the same line, from 1 */
    uint8_t *title; /* NUL-terminated, of the library's heap */
};

static struct line *line_of(const qek_tree_entry *entry) { return (struct line *)entry->value; }

static void free_line(qek_word value) { qek_free(((struct line *)value)->title); }

static int32_t match_title(qek_tree_entry *entry, qek_word key, qek_word length)
{
    const char *title = (const char *)line_of(entry)->title;
    return qek_mem_cmp(title, (int32_t)strlen(title), (const void *)key, (int32_t)length);
}

/* Adds what a line says behind the entry that was added last. What is wrong with it, or null. */
static const char *add(qek_tree *tree, qek_tree_entry **last, const qek_string *text)
{
    qek_tree_entry *entry, *above = *last, *before = NULL;
    qek_stringx title;
    if (qek_mem_chr(text->data, text->length, 0) >= 0) {
        return "there is a NUL byte";
    }
    qek_stringx_copy_string(&title, text);
    qek_stringx_trim(&title);
    if (qek_stringx_is_empty(&title)) {
        return NULL;
    }
    if (qek_mem_chr(text->data, title.offset, '\t') >= 0) {
        return "there is a tab where spaces are to indent it";
    }
    for (; above != &tree->root && line_of(above)->indent >= title.offset; above = above->parent) {
        before = above;
    }
    if (before != NULL && line_of(before)->indent != title.offset) {
        return "it is indented less than the line before, but as no line above it";
    }
    entry = qek_tree_entry_new(tree);
    entry->value = (qek_word)qek_pool_new(tree->value_pool); /* a fresh item is zero */
    line_of(entry)->indent = title.offset;
    line_of(entry)->place = before == NULL ? 1 : line_of(before)->place + 1;
    qek_str_dup(&line_of(entry)->title, title.data + title.offset, title.length);
    qek_tree_entry_append(tree, above, entry);
    *last = entry;
    return NULL;
}

/* 1 if all lines are in the tree; 0 after a complaint. */
static int read_lines(qek_tree *tree, FILE *file, const char *name)
{
    qek_tree_entry *last = &tree->root;
    const char *problem = NULL;
    int32_t number = 0;
    qek_string text;
    int byte = 0;
    qek_string_init(&text);
    while (problem == NULL && byte != EOF) {
        qek_string_shrink(&text, 0);
        while ((byte = getc(file)) != EOF && byte != '\n') {
            qek_string_append_char(&text, (uint8_t)byte);
        }
        problem = ferror(file) ? strerror(errno) : add(tree, &last, &text);
        number++;
    }
    if (problem != NULL) {
        fprintf(stderr, "outline: %s:%d: %s\n", name, number, problem);
    }
    qek_string_term(&text);
    return problem == NULL;
}

/* Prints an entry, but not the root, and what is below it; 0 if it cannot be written. */
static int print(const qek_tree_entry *top)
{
    const qek_tree_entry *entry = top->parent != NULL ? top : qek_tree_entry_iter_next(top, top);
    qek_string numbers;
    qek_string_init(&numbers);
    for (; entry != NULL; entry = qek_tree_entry_iter_next(top, entry)) {
        const qek_tree_entry *step = entry;
        int depth = -1;
        qek_string_shrink(&numbers, 0);
        for (; step->parent != NULL; step = step->parent, depth++) {
            char part[16];
            snprintf(part, sizeof part, depth < 0 ? "%d" : "%d.", line_of(step)->place);
            qek_string_insert(&numbers, 0, part, -1);
        }
        printf("%*s%s %s\n", 2 * depth, "", (char *)numbers.data, (char *)line_of(entry)->title);
    }
    qek_string_term(&numbers);
    return fflush(stdout) == 0 && !ferror(stdout);
}

int main(int argc, char **argv)
{
    const char *path = argc > 2 && strcmp(argv[1], "--find") == 0 ? argv[2] : NULL;
    const int named = path != NULL ? 3 : 1;
    const char *name = argc > named ? argv[named] : "standard input";
    const qek_tree_entry *found;
    FILE *file = stdin;
    qek_array steps;
    qek_tree tree;
    int result = 1;
    if (argc > named + 1 || (argc > named && name[0] == '-')) {
        fprintf(stderr, "usage: outline [--find PATH] [FILE]\n");
        return 2;
    }
    if (argc > named && (file = fopen(name, "rb")) == NULL) {
        fprintf(stderr, "outline: %s: %s\n", name, strerror(errno));
        return 1;
    }
    qek_tree_init(&tree, 1, 1);
    tree.value_pool->item_size = sizeof(struct line);
    qek_array_init(&steps, 0);
    if (read_lines(&tree, file, name)) {
        qek_array_from_string(&steps, '/', path, path == NULL ? 0 : (int32_t)strlen(path));
        found = path == NULL ? &tree.root : qek_tree_find(&tree, &steps, match_title);
        if (found == NULL) {
            fprintf(stderr, "outline: %s: there is no %s\n", name, path);
        } else if (print(found)) {
            result = 0;
        } else {
            fprintf(stderr, "outline: cannot write: %s\n", strerror(errno));
        }
    }
    qek_array_term(&steps);
    qek_tree_free_all(&tree, free_line);
    qek_tree_term(&tree);
    fclose(file);
    return result;
}
