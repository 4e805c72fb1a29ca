/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * The examples of the header, which use every family, in two threads at the same time. Each call
 * works on records of its own, and the library has nothing else that threads could share.
 */
#include <pthread.h>
#include <stddef.h>

int run_examples(void);

static void *run_often(void *unused)
{
    int time;
    for (time = 0; time < 100; ++time) {
        run_examples();
    }
    return unused;
}

int main(void)
{
    pthread_t other;
    if (pthread_create(&other, NULL, run_often, NULL) != 0) {
        return 1;
    }
    run_often(NULL);
    return pthread_join(other, NULL);
}
