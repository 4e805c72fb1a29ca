/* SPDX-License-Identifier: MIT */
/* SPDX-FileCopyrightText: 2026 The qek_std authors */

/* Grows each kind of buffer while refuse.c is at work: what is refused is answered with 0 and leaves
 * record and buffer bit for bit. Prints how much was refused. With an argument, makes a pool. */
#define _GNU_SOURCE
#include "qek_std.h"

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const int *refused;

static void expect(int holds, const char *kind, int wanted)
{
    if (!holds) {
        printf("%s, expanded to %d\n", kind, wanted);
        exit(1);
    }
}

/* Each growth is tried twice. */
#define GROW(kind, number, initialise, buffer, room)                                               \
    do {                                                                                           \
        int turn;                                                                                  \
        qek_##kind record, before;                                                                 \
        memset(&record, 0, sizeof record);                                                         \
        initialise;                                                                                \
        for (turn = 2; turn < 16; ++turn) {                                                        \
            const int wanted = 1 << turn / 2 * 2, refused_before = *refused;                       \
            size_t at, size = (size_t)(room) * sizeof *record.buffer;                              \
            memcpy(&before, &record, sizeof record);                                               \
            if (qek_##kind##_expand(&record, (number)wanted) == (*refused > refused_before)) {     \
                expect(0, #kind, wanted);                                                          \
            }                                                                                      \
            expect(*refused == refused_before || memcmp(&before, &record, sizeof record) == 0,     \
                   #kind, wanted);                                                                 \
            for (at = 0; at < size; ++at) {                                                        \
                expect(((unsigned char *)record.buffer)[at] == 0x5A, #kind, wanted);               \
            }                                                                                      \
            if ((room) > 0) {                                                                      \
                memset(record.buffer, 0x5A, (size_t)(room) * sizeof *record.buffer);               \
            }                                                                                      \
        }                                                                                          \
        qek_##kind##_term(&record);                                                                \
    } while (0)
#define GROW_TEXT(kind) GROW(kind, int, qek_##kind##_init(&record), data, record.capacity)
#define GROW_ARRAY(kind) GROW(kind, int, qek_##kind##_init(&record, 0), slots, record.capacity)

int main(int count, char **arguments)
{
    refused = (const int *)dlsym(RTLD_DEFAULT, "qek_refused");
    expect(refused != NULL, "refuse.c", 0);
    if (count > 1) {
        qek_hash hash;
        qek_hash_init(&hash, 1, 1);
        qek_hash_insert(&hash, arguments[1], -1, 1);
        qek_hash_term(&hash);
    }
    GROW_TEXT(stream);
    GROW_TEXT(string);
    GROW_TEXT(wchar);
    GROW_ARRAY(arrays);
    GROW_ARRAY(arrayd);
    GROW_ARRAY(array);
    GROW_ARRAY(arrayx);
    GROW(arrayt, int, qek_arrayt_init(&record), overflow, record.capacity - 4);
    GROW(bits, unsigned, qek_bits_init(&record), data, record.size);
    printf("%d\n", *refused);
    return 0;
}
