/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * log_rates [--live]: reads a log from standard input as it grows, and counts the lines and the
 * errors of the last minutes. A line is `2026-03-01T12:00:05 LEVEL anything`, an error is one of
 * level ERROR. With --live the table is drawn afresh with each new minute (tail -f LOG | ...).
 */
#include <qek_std.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

enum {
    minutes_shown = 5,
    minutes_per_day = 1440,
    longest_bar = 40,
    last_year = 2199
};

struct minute {
    uint32_t lines, errors;
};

struct rates {
    qek_hashx minutes; /* minutes since 1970 -> struct minute, items of the table's own pool */
    qek_bits days;     /* days since 1970 */
    int64_t newest;    /* minute; -1 before the first line */
    uint32_t lines, errors, unknown;
};

static int64_t days_since_1970(int64_t year, int64_t month, int64_t day)
{
    const int64_t years = month > 2 ? year : year - 1; /* those that end with February */
    const int64_t months = month > 2 ? month - 3 : month + 9;
    return years * 365 + years / 4 - years / 100 + years / 400 + (months * 153 + 2) / 5 + day -
           719469;
}

/* The minute that a time stamp is in; -1 if it is none. */
static int64_t minute_of(const qek_stringx *stamp)
{
    static const struct {
        int32_t at, width, low, high;
        uint8_t mark; /* behind it */
    } fields[] = {{0, 4, 1970, 2199, '-'}, {5, 2, 1, 12, '-'},  {8, 2, 1, 31, 'T'},
                  {11, 2, 0, 23, ':'},     {14, 2, 0, 59, ':'}, {17, 2, 0, 60, 0xFF}};
    int64_t values[6];
    int i;
    for (i = 0; i < 6; i++) {
        qek_stringx digits;
        qek_stringx_copy(&digits, stamp);
        qek_stringx_mid(&digits, fields[i].at, fields[i].width);
        values[i] = qek_stringx_is_long(&digits) ? qek_stringx_get_long(&digits) : -1;
        if (digits.length != fields[i].width || values[i] < fields[i].low ||
            values[i] > fields[i].high ||
            qek_stringx_get_at(stamp, fields[i].at + fields[i].width) != fields[i].mark) {
            return -1; /* past the end get_at gives 0xFF */
        }
    }
    return days_since_1970(values[0], values[1], values[2]) * minutes_per_day + values[3] * 60 +
           values[4];
}

static void draw(const struct rates *rates, int clear)
{
    char text[20];
    uint32_t day, days = 0;
    int64_t at = rates->newest < 0 ? 0 : rates->newest - minutes_shown + 1;
    for (day = 0; day < rates->days.size * 8; day++) {
        days += qek_bits_find(&rates->days, day) != 0;
    }
    printf("%sminute              lines  errors\n", clear ? "\033[H\033[J" : "");
    for (; at <= rates->newest; at++) {
        const struct minute *found =
            (const struct minute *)qek_hashx_get(&rates->minutes, (uint64_t)at);
        const time_t seconds = (time_t)(at * 60);
        strftime(text, sizeof text, "%Y-%m-%d %H:%M", gmtime(&seconds));
        printf("%s %8u %7u\n", text, found ? found->lines : 0, found ? found->errors : 0);
    }
    printf("lines: %u, errors: %u, days: %u, not understood: %u\n", rates->lines, days,
           rates->errors, rates->unknown);
    fflush(stdout);
}

/* Counts a line; 1 if it is the first of a minute that is newer than all before. */
static int count(struct rates *rates, const qek_string *text)
{
    qek_stringx stamp, level;
    qek_word value = 0;
    const int64_t was = rates->newest;
    int64_t minute;
    int32_t space;
    qek_stringx_copy_string(&level, text);
    qek_stringx_trim(&level);
    qek_stringx_copy(&stamp, &level);
    space = qek_stringx_find_char(&level, ' ');
    qek_stringx_left(&stamp, space);
    minute = space < 0 ? -1 : minute_of(&stamp);
    if (minute < 0) {
        rates->unknown++;
        return 0;
    }
    qek_stringx_mid(&level, space + 1, level.length);
    qek_stringx_trim(&level);
    space = qek_stringx_find_char(&level, ' ');
    qek_stringx_left(&level, space < 0 ? level.length : space);
    qek_hashx_set(&rates->minutes, (uint64_t)minute, &value, NULL); /* a fresh item is zero */
    ((struct minute *)value)->lines++;
    rates->lines++;
    if (qek_stringx_compare(&level, "ERROR", -1) == 0) {
        ((struct minute *)value)->errors++;
        rates->errors++;
    }
    qek_bits_insert(&rates->days, (uint32_t)(minute / minutes_per_day), 1);
    rates->newest = minute > was ? minute : was;
    return minute > was;
}

int main(int argc, char **argv)
{
    const int live = argc == 2 && strcmp(argv[1], "--live") == 0;
    struct rates rates = {.newest = -1};
    qek_string line;
    char part[256];
    if (argc > 1 && !live) {
        fprintf(stderr, "usage: log_rates [--live] <LOG\n");
        return 2;
    }
    qek_hashx_init(&rates.minutes, 1, 1);
    rates.minutes.value_pool->item_size = sizeof(struct minute);
    qek_bits_init(&rates.days);
    qek_string_init(&line);
    while (fgets(part, sizeof part, stdin) != NULL) {
        qek_string_append(&line, part, -1);
        if (qek_string_reverse_find(&line, '\n') < 0 && !feof(stdin)) {
            continue; /* there is more of it */
        }
        if (count(&rates, &line) && live) {
            draw(&rates, 1);
        }
        qek_string_shrink(&line, 0);
    }
    draw(&rates, live);
    qek_string_term(&line);
    qek_bits_term(&rates.days);
    qek_hashx_term(&rates.minutes);
    return ferror(stdin) ? 1 : 0;
}
