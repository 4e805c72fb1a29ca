// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "support/allocations.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>
#include <tuple>

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
    qek_test::random_numbers random;
    for (const auto number : random.each_below<std::uint32_t>(1U << 12)) {
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

// Bytes are unsigned in an order and signed in a search; null is below all texts, and has nothing.
TEST(str, answers_as_a_naive_scan_does)
{
    qek_test::random_numbers random;
    const auto lowered = [](std::string text) {
        for (char &ch : text) {
            ch = static_cast<char>(ch >= 'A' && ch <= 'Z' ? ch + 32 : ch);
        }
        return text;
    };
    for (int step = 0; random.goes_on(step, 20000) && !HasFailure(); ++step) {
        std::string texts[2];
        const char *given[2];
        for (int at : {0, 1}) {
            texts[at].resize(random.below(random.one_in(4) ? 40 : 4));
            for (char &ch : texts[at]) {
                ch = random.one_of({'a', 'A', 'b', 'B', '_', '\x7F', '\x80', '\xFF'});
            }
            given[at] = random.one_in(12) ? nullptr : texts[at].c_str();
        }
        const char *const a = given[0], *const b = given[1];
        const std::string &text = texts[0], &other = texts[1];
        const auto ch = random.one_of<std::int8_t>({0, 'a', 'B', -1, -128, 'c'});
        const auto end = text.size() + 1; // the terminator is found, too
        SCOPED_TRACE(testing::PrintToString(std::tuple(a != nullptr, text, b != nullptr, other)));
        EXPECT_EQ(qek_str_chr(a, ch), a ? int(std::string(a, end).find(char(ch))) : -1) << +ch;
        EXPECT_EQ(qek_str_rchr(a, ch), a ? int(std::string(a, end).rfind(char(ch))) : -1) << +ch;
        EXPECT_EQ(qek_str_str(a, b), a && b ? int(text.find(other)) : -1);
        const auto sign = [&](int order) {
            return a && b ? (order > 0) - (order < 0) : (a != nullptr) - (b != nullptr);
        };
        EXPECT_EQ(qek_str_cmp(a, b), sign(text.compare(other)));
        const int blind = qek_str_icmp(a, b), told = sign(lowered(text).compare(lowered(other)));
#if defined(_WIN32) // whose runtime and that of wine differ in the order of high bytes
        EXPECT_EQ(blind == 0, told == 0);
#else
        EXPECT_EQ((blind > 0) - (blind < 0), told);
#endif
    }
}

} // namespace
