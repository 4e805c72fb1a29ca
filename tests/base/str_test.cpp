// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "support/allocations.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>

using namespace std::string_literals;

namespace {

constexpr auto lowest = std::numeric_limits<std::int32_t>::min();

TEST(str, duplicates_what_strncpy_copies)
{
    const struct {
        std::string source;
        std::int32_t size;
        std::string block;
    } table[] = {
        {"abc", -1, "abc\0"s}, {"abc", lowest, "abc\0"s},     {"abc", 2, "ab\0"s},
        {"abc", 3, "abc\0"s},  {"abc", 5, "abc\0\0\0"s},      {"abc", 0, "\0"s},
        {"", -1, "\0"s},       {"ab\0cd"s, 5, "ab\0\0\0\0"s},
    };
    std::uint8_t *out = nullptr;
    for (const auto &row : table) {
        const qek_test::allocations made;
        qek_str_dup(&out, row.source.c_str(), row.size);
        ASSERT_THAT(made.sizes(), testing::ElementsAre(row.block.size()));
        EXPECT_EQ(std::string(out, out + row.block.size()), row.block) << row.size;
    }
    const qek_test::allocations made;
    for (const std::int32_t size : {-1, 3}) {
        qek_str_dup(&out, nullptr, size);
        EXPECT_EQ(out, nullptr);
        qek_str_dup(&out, size < 0 ? "kept" : nullptr, size);
    }
    EXPECT_EQ(made.count(), 1);
}

std::string trimmed(std::string text, std::int32_t size)
{
    qek_str_trim(&text[0], size);
    return text;
}

// As the manual words it, on the whole buffer; `size` is the true length or less.
std::string told_trim(std::string text, std::int32_t size)
{
    const auto end = static_cast<std::size_t>(std::max(size, 0));
    const auto first = std::min(text.find_first_not_of(" \t\n\r"), end);
    const auto last = text.substr(0, end).find_last_not_of(" \t\n\r\0"s) + 1;
    if (first < end && text[first] == 0) {
        return text;
    }
    const std::string kept = first < last ? text.substr(first, last - first) : "";
    return kept.size() == end && end > 0 ? text : text.replace(0, kept.size() + 1, kept + '\0');
}

TEST(str, trims_every_short_text)
{
    for (std::uint32_t number = 0; number < 1U << 12; ++number) {
        std::string text = "......|\0"s;
        for (std::size_t at = 0; at < 6; ++at) {
            text[at] = " a\0\n"[number >> (2 * at) & 3];
        }
        for (std::int32_t size = -1; size <= 6; ++size) {
            ASSERT_EQ(trimmed(text, size), told_trim(text, size)) << number << " size " << size;
        }
    }
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text{'a', 'x', static_cast<char>(byte), static_cast<char>(byte)};
        const bool blank = byte == 0 || byte == 9 || byte == 10 || byte == 13 || byte == 32;
        EXPECT_EQ(trimmed(text, 4), blank ? "ax\0"s + text[3] : text) << byte;
    }
    EXPECT_EQ(trimmed("  ab  ", 6), "ab\0b  "s);
    EXPECT_EQ(trimmed("  ab  ", -1), "\0 ab  "s);
    EXPECT_EQ(trimmed("ab  ", 4), "ab\0 "s);
    EXPECT_EQ(trimmed(" \0ab"s, 4), " \0ab"s);
}

TEST(str, finds_characters_and_texts)
{
    const struct {
        const char *text;
        std::int8_t ch;
        std::int32_t first, last;
    } characters[] = {{"a/b/c", '/', 1, 3}, {"abc", 0, 3, 3},       {"", 0, 0, 0},
                      {"abc", 'd', -1, -1}, {nullptr, 'a', -1, -1}, {"\xFE\xFF-\xFF", -1, 1, 3}};
    for (const auto &[text, ch, first, last] : characters) {
        EXPECT_EQ(qek_str_chr(text, ch), first) << ch;
        EXPECT_EQ(qek_str_rchr(text, ch), last) << ch;
    }
    const struct {
        const char *text, *needle;
        std::int32_t index;
    } texts[] = {{"abcabd", "abd", 3}, {"abc", "", 0},       {"", "", 0},  {"abc", "abcd", -1},
                 {nullptr, "a", -1},   {"abc", nullptr, -1}, {"", "a", -1}};
    for (const auto &row : texts) {
        EXPECT_EQ(qek_str_str(row.text, row.needle), row.index) << row.needle;
    }
}

TEST(str, orders_texts_with_null_below_all)
{
    // In ascending order by bytes; each text stands against each.
    const char *const texts[] = {nullptr, "", "AB", "Ab", "a", "ab", "abc", "b", "\x7F", "\x80"};
    for (std::size_t a = 0; a < std::size(texts); ++a) {
        for (std::size_t b = 0; b < std::size(texts); ++b) {
            EXPECT_EQ(qek_str_cmp(texts[a], texts[b]), (a > b) - (a < b)) << a << " " << b;
        }
    }
    const struct {
        const char *a, *b;
        std::int32_t sign;
    } table[] = {{nullptr, nullptr, 0}, {nullptr, "", -1}, {"", nullptr, 1}, {"aBC", "AbC", 0},
                 {"a", "B", -1},        {"C", "b", 1},     {"ab", "A", 1},   {"_", "A", -1}};
    for (const auto &row : table) {
        const std::int32_t found = qek_str_icmp(row.a, row.b);
        EXPECT_EQ((found > 0) - (found < 0), row.sign) << row.a << " " << row.b;
    }
}

} // namespace
