/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 */
#include <qek_std.h>
#include <stdio.h>

int main(void)
{
    qek_string text;
    qek_string_init(&text);
    qek_string_append(&text, QEK_STD_VERSION, -1);
    printf("qek_std %s\n", (const char *)text.data);
    qek_string_term(&text);
    return 0;
}
