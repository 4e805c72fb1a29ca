/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * log_rates [--live]: reads a log from standard input as it grows, and counts the lines and the
 * errors of the last minutes. A line is `2026-03-01T12:00:05 LEVEL anything`, an error is one of
 * level ERROR. With --live the table is drawn afresh whenever lines came in (tail -f LOG | ...).
 */
#include <qek_std.h>
#include <stdio.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

enum {
    minutes_shown = 5,
    minutes_per_day = 1440
};

struct minute {
    uint32_t lines, errors;
};

struct rates {
    qek_hashx minutes; /* minutes since 1970 -> struct minute, items of the table's own pool */
    qek_bits days;     /* days since 1970 */
    int64_t newest;    /* minute; -1 before the first line */
    uint32_t lines, errors, day_count, unknown;
};

/* The minute that a time stamp is in; -1 if it is none. */
static int64_t minute_of(const qek_stringx *stamp)
{
    static const struct {
        int32_t at, width, low, high;
        uint8_t mark; /* behind it */
    } fields[] = {{0, 4, 1970, 2199, '-'}, {5, 2, 1, 12, '-'},  {8, 2, 1, 31, 'T'},
                  {11, 2, 0, 23, ':'},     {14, 2, 0, 59, ':'}, {17, 2, 0, 60, 0xFF}};
    int64_t values[6], years, months, days; /* which begin with March */
    qek_stringx digits;
    int i;
    qek_stringx_copy(&digits, stamp);
    for (i = 0; i < 6; i++) {
        qek_stringx_mid_string(stamp, fields[i].at, fields[i].width, &digits);
        values[i] = qek_stringx_is_long(&digits) ? qek_stringx_get_long(&digits) : -1;
        if (digits.length != fields[i].width || values[i] < fields[i].low ||
            values[i] > fields[i].high ||
            qek_stringx_get_at(stamp, fields[i].at + fields[i].width) != fields[i].mark) {
            return -1; /* past the end get_at gives 0xFF */
        }
    }
    years = values[1] > 2 ? values[0] : values[0] - 1;
    months = (values[1] + 9) % 12;
    days = years * 365 + years / 4 - years / 100 + years / 400 + (153 * months + 2) / 5 + values[2];
    return (days - 719469) * minutes_per_day + values[3] * 60 + values[4];
}

static void draw(const struct rates *rates, int clear)
{
    char text[20];
    int64_t at = rates->newest < 0 ? 0 : rates->newest - minutes_shown + 1;
    printf("%sminute              lines  errors\n", clear ? "\033[H\033[J" : "");
    for (; at <= rates->newest; at++) {
        const struct minute *found =
            (const struct minute *)qek_hashx_get(&rates->minutes, (uint64_t)at);
        const time_t seconds = (time_t)(at * 60);
        strftime(text, sizeof text, "%Y-%m-%d %H:%M", gmtime(&seconds));
        printf("%s %8u %7u\n", text, found ? found->lines : 0, found ? found->errors : 0);
    }
    printf("lines: %u, errors: %u, days: %u, not understood: %u\n", rates->lines, rates->errors,
           rates->day_count, rates->unknown);
    fflush(stdout);
}

static void count(struct rates *rates, qek_stringx *line)
{
    qek_stringx stamp, level;
    qek_word value = 0;
    uint32_t day, error;
    int64_t minute;
    qek_stringx_trim(line);
    qek_stringx_copy(&stamp, line); /* these look at the same text, and are aimed at its parts */
    qek_stringx_copy(&level, line);
    qek_stringx_left_string(line, qek_stringx_find_char(line, ' '), &stamp);
    minute = minute_of(&stamp);
    if (minute < 0) {
        rates->unknown++;
        return;
    }
    qek_stringx_mid_string(line, stamp.length, line->length, &level);
    qek_stringx_trim(&level);
    if (qek_stringx_find_char(&level, ' ') >= 0) {
        qek_stringx_left(&level, qek_stringx_find_char(&level, ' '));
    }
    qek_hashx_set(&rates->minutes, (uint64_t)minute, &value, NULL); /* a fresh item is zero */
    error = qek_stringx_compare(&level, "ERROR", -1) == 0;
    ((struct minute *)value)->lines++;
    ((struct minute *)value)->errors += error;
    rates->lines++;
    rates->errors += error;
    day = (uint32_t)(minute / minutes_per_day);
    rates->day_count += qek_bits_find(&rates->days, day) == 0;
    qek_bits_insert(&rates->days, day, 1);
    rates->newest = minute > rates->newest ? minute : rates->newest;
}

/* Counts the lines that are whole, and keeps what is behind them. */
static void count_lines(struct rates *rates, qek_string *text)
{
    qek_stringx rest, line;
    int32_t length;
    qek_stringx_copy_string(&rest, text);
    while ((length = qek_stringx_find_char(&rest, '\n')) >= 0) {
        qek_stringx_copy(&line, &rest);
        qek_stringx_left(&line, length);
        count(rates, &line);
        qek_stringx_mid(&rest, length + 1, rest.length);
    }
    qek_string_right(text, rest.length);
}

int main(int argc, char **argv)
{
    const int live = argc == 2 && strcmp(argv[1], "--live") == 0;
    struct rates rates = {.newest = -1};
    qek_string text;
    char part[65536];
    ssize_t got = 1;
    if (argc > 1 && !live) {
        fprintf(stderr, "usage: log_rates [--live] <LOG\n");
        return 2;
    }
    qek_hashx_init(&rates.minutes, 1, 1);
    rates.minutes.value_pool->item_size = sizeof(struct minute);
    qek_bits_init(&rates.days);
    qek_string_init(&text);
    while (got > 0) {
        got = read(STDIN_FILENO, part, sizeof part); /* unlike fread it gives what is there */
        qek_string_append(&text, got > 0 ? part : "\n", got > 0 ? (int32_t)got : text.length > 0);
        count_lines(&rates, &text);
        if (live || got <= 0) {
            draw(&rates, live);
        }
    }
    qek_string_term(&text);
    qek_bits_term(&rates.days);
    qek_hashx_term(&rates.minutes);
    return got < 0 ? 1 : 0;
}
