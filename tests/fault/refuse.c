/* SPDX-License-Identifier: MIT */
/* SPDX-FileCopyrightText: 2026 The qek_std authors */

/* To be preloaded: refuses call number QEK_REFUSE of the library's calls of malloc, and with a `+`
 * behind the number all after it. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>

extern int qek_refused; /* so far, for the program to read */
int qek_refused;

void *malloc(size_t size)
{
    static void *(*next)(size_t);
    static long calls;
    const char *chosen = getenv("QEK_REFUSE");
    Dl_info from;
    if (next == NULL) {
        void *const symbol = dlsym(RTLD_NEXT, "malloc");
        memcpy(&next, &symbol, sizeof next);
    }
    if (chosen != NULL && dladdr(__builtin_return_address(0), &from) != 0 &&
        strstr(from.dli_fname, "libqek_std.so") != NULL) {
        char *end;
        const long number = strtol(chosen, &end, 10);
        ++calls;
        if (calls == number || (calls > number && *end == '+')) {
            ++qek_refused;
            return NULL;
        }
    }
    return next(size);
}
