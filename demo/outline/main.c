/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * outline: reads a list of files with their sizes, and prints it as an indented outline.
 */
#include "outline.h"

#include <inttypes.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

static const char *const usage =
    "usage: outline [--depth N] LIST\n"
    "\n"
    "Prints the files of a list as an outline of directories, sorted by name, with the bytes and\n"
    "the number of files in each. A line of the list is a size in bytes, a space and a path, as\n"
    "this prints it: find DIR -type f -printf '%s %p\\n'\n"
    "\n"
    "  --depth N  print N levels at most; what lies deeper is counted all the same\n"
    "  --help     print this text\n"
    "\n"
    "Result: 0 if all went well; 1 if something failed, and if that is a bad line, nothing is\n"
    "printed; 2 if the call was wrong.\n";

int complain(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    fputs("outline: ", stderr);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
    return 0;
}

static int print(const qek_tree *tree, int32_t depth)
{
    const qek_tree_entry *top = &tree->root;
    const qek_tree_entry *entry = qek_tree_entry_iter_next(top, top);
    int32_t directories;
    while (entry != NULL) {
        const struct node *node = node_of(entry);
        printf("%15" PRId64 " %10" PRId32 "  %*s%.*s%s\n", node->size, node->files,
               2 * (int)node->depth, "", (int)node->name.length, (const char *)node->name.data,
               node->line == 0 ? "/" : "");
        entry = node->depth + 1 < depth ? qek_tree_entry_iter_next(top, entry)
                                        : qek_tree_entry_find_next(top, entry);
    }
    directories = tree->entry_count - node_of(top)->files;
    printf("%15" PRId64 " %10" PRId32 "  total, %" PRId32 " director%s\n", node_of(top)->size,
           node_of(top)->files, directories, directories == 1 ? "y" : "ies");
    return (fflush(stdout) == 0 && !ferror(stdout)) || complain("cannot write the result");
}

/* The number that --depth is told; 0 if it is none. */
static int32_t depth_of(char *argument)
{
    qek_char number;
    number.data = (uint8_t *)argument;
    number.length = -1;
    if (qek_char_length(&number) > 3 || !qek_char_is_long(&number)) {
        return 0;
    }
    return (int32_t)qek_char_get_long(&number);
}

static int run(const char *file, int32_t depth)
{
    struct lines lines;
    qek_tree tree;
    int done;
    qek_tree_init(&tree, 1, 1);
    done = lines_read(&lines, file) && outline_build(&tree, &lines) && print(&tree, depth);
    qek_tree_term(&tree);
    lines_term(&lines);
    return done;
}

int main(int argc, char **argv)
{
    const int has_depth = argc == 4 && strcmp(argv[1], "--depth") == 0;
    const int32_t depth = has_depth ? depth_of(argv[2]) : most_names;
    if (argc == 2 && strcmp(argv[1], "--help") == 0) {
        fputs(usage, stdout);
        return 0;
    }
    if ((argc != 2 && !has_depth) || argv[argc - 1][0] == '-' || depth < 1) {
        fputs(usage, stderr);
        return 2;
    }
    return run(argv[argc - 1], depth) ? 0 : 1;
}
