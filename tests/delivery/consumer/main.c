/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * A user's first program: prints the version that it was compiled with, as text and as numbers, and
 * the words that it was given, once each and in order.
 */
#include <qek_std.h>
#include <stdio.h>

int main(int count, char **arguments)
{
    qek_btree words;
    const qek_btree_node *node;
    int at;

    qek_btree_init(&words, 1, 1, 0);
    for (at = 1; at < count; ++at) {
        qek_btree_insert(&words, arguments[at], -1, 1);
    }
    printf("%s %d.%d.%d", QEK_STD_VERSION, QEK_STD_VERSION_MAJOR, QEK_STD_VERSION_MINOR,
           QEK_STD_VERSION_PATCH);
    for (node = qek_btree_node_first(&words); node != NULL; node = node->next) {
        printf(" %.*s", (int)node->key_length, (const char *)words.keys.data + node->key_offset);
    }
    printf("\n");
    qek_btree_term(&words);
    return 0;
}
