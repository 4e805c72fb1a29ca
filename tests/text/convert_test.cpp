// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Numbers in and out of both owned texts, substitution, and formatted writing.

#include "base/rounding.h"
#include "support/allocations.h"
#include "support/owned_text.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <bit>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <functional>

namespace {

using namespace std::string_literals;
using namespace qek_test;
using qek_test::index; // not the runtime's
using string = owned<qek_string>;

template <typename Record, typename Value>
void expect_number(void (*copy)(Record *, Value), void (*append)(Record *, Value), Value value)
{
    const std::string text = std::to_string(value);
    const std::u16string wide(text.begin(), text.end());
    for (const int failing : {0, 1, 2}) {
        owned<Record> record;
        owned_model model;
        owned_model::failing = failing;
        const allocations faults(failing);
        copy(&record, value), model.set(wide);
        EXPECT_TRUE(model.is_like(record)) << text;
        append(&record, value), model.append(wide);
        append(&record, value), model.append(wide);
        EXPECT_TRUE(model.is_like(record)) << text;
    }
}

TEST(convert, writes_numbers)
{
    for (const std::int64_t value :
         {INT64_MIN, std::int64_t{INT32_MIN}, std::int64_t{0}, INT64_MAX}) {
        const auto narrow = static_cast<std::int32_t>(value);
        expect_number(qek_string_copy_integer, qek_string_append_integer, narrow);
        expect_number(qek_wchar_copy_integer, qek_wchar_append_integer, narrow);
        expect_number(qek_string_copy_long, qek_string_append_long, value);
        expect_number(qek_wchar_copy_long, qek_wchar_append_long, value);
    }
    for (const float value : {-0.0F, 1.5F, 1e8F / 3, -FLT_MAX, HUGE_VALF}) {
        expect_number(qek_string_copy_float, qek_string_append_float, value);
        expect_number(qek_wchar_copy_float, qek_wchar_append_float, value);
    }
    for (const double value : {-0.0, 1.5, 1e8 / 3, -DBL_MAX, HUGE_VAL}) {
        expect_number(qek_string_copy_double, qek_string_append_double, value);
        expect_number(qek_wchar_copy_double, qek_wchar_append_double, value);
    }
    string text;
    qek_string_append_float(&text, 16777216.1F);
    qek_string_append_long(&text, -7);
    std::string expected = "16777216.000000-7";
    for (int number = -99; number < 99; ++number) { // at all distances from the end of the buffer
        qek_string_append_integer(&text, number);
        expected += std::to_string(number);
        ASSERT_EQ(reinterpret_cast<const char *>(text.data), expected);
    }
}

// In the runtime's words, whoever writes them: over all exponents, at the ties of the last decimal,
// where a round-up runs through to the front, and in another rounding direction.
TEST(convert, writes_numbers_as_the_runtime_does)
{
    random_numbers random;
    const auto word = [&] { return std::uint64_t{random.next()} << 32 | random.next(); };
    string text;
    const auto check = [&](auto copy, auto value) {
        copy(&text, value);
        ASSERT_EQ(reinterpret_cast<const char *>(text.data), std::to_string(value));
    };
    for (int round = 0; random.goes_on(round, 3000) && !HasFatalFailure(); ++round) {
        const int bits = random.between(0, 63);
        check(qek_string_copy_long, static_cast<std::int64_t>(word() >> bits));
        check(qek_string_copy_integer, static_cast<std::int32_t>(word() >> bits));
        const double ties = static_cast<double>(random.below(1U << 20)) / 128;
        const double halves = (random.below(1000) + 0.5) / 1e6;
        const double nines = std::pow(10, random.between(0, 12)) - std::pow(0.1, bits % 10);
        const double small =
            std::ldexp(static_cast<double>(word() >> 11), random.between(-130, 11));
        std::fesetround(random.one_in(3) ? FE_UPWARD : FE_TONEAREST);
        if (qek::rounds_to_nearest() == (std::fegetround() == FE_TONEAREST)) {
            const auto any = std::bit_cast<double>(word());
            for (const double value :
                 {std::isnan(any) ? 5e-324 : any, ties, halves, nines, small, -small}) {
                check(qek_string_copy_double, value);
                check(qek_string_copy_float, static_cast<float>(ties));
                const std::string digits = std::to_string(value / 1e9);
                qek_string_copy(&text, digits.data(), -1);
                ASSERT_EQ(qek_string_get_float(&text, 0),
                          static_cast<float>(std::atof(digits.c_str())));
            }
        }
        std::fesetround(FE_TONEAREST);
    }
}

TEST(convert, reads_numbers_by_two_parsers)
{
    const struct {
        std::string text;
        std::int32_t integer;
        std::int64_t whole;
        float single;
        double decimal;
    } cases[] = {
        {" 12", 12, 0, 12.0F, 0.0},
        {"+5", 5, 0, 5.0F, 0.0},
        {"1e3", 1, 1, 1000.0F, 1.0},
        {".5", 0, 0, 0.5F, 0.0},
        {",5", 0, 0, 0.0F, 0.0},
        {"12abc", 12, 12, 12.0F, 12.0},
        {"abc", 0, 0, 0.0F, 0.0},
        {"-.5", 0, 0, -0.5F, -0.0},
        {"1.5.5", 1, 1, 1.5F, 1.5},
        {"1-2", 1, 1, 1.0F, 1.0},
        {"-12-3", -12, -12, -12.0F, -12.0},
        {"--5", 0, 0, 0.0F, -0.0},
        {"3\0004"s, 3, 3, 3.0F, 3.0},
        {"\0004"s, 0, 0, 0.0F, 0.0},
        {"", 77, 77, 77.0F, 77.0},
        {"1.5e1", 1, 1, 15.0F, 1.5},
        {"0x10", 0, 0, static_cast<float>(std::atof("0x10")), 0.0}, // not hex everywhere
        {"0.1", 0, 0, 0.1F, 0.1},
        {"-2.", -2, -2, -2.0F, -2.0},
        {"-1234567", -1234567, -1234567, -1234567.0F, -1234567.0},
        {"-0123456789", -123456789, -123456789, -123456789.0F, -123456789.0},
        {"-987654321:", -987654321, -987654321, -987654321.0F, -987654321.0},
        {"2147483647", 2147483647, 2147483647, 2147483648.0F, 2147483647.0},
        {"2147483648", std::atoi("2147483648"), 2147483648, 2147483648.0F, 2147483648.0},
        {"34359738368", std::atoi("34359738368"), 34359738368, 34359738368.0F, 34359738368.0},
        {"18446744073709551617", std::atoi("18446744073709551617"), 1, 0x1p64F,
         0x1.0000000000001p+64},
        {"1.00000000000000000", 1, 1, 1.0F, 1.0}};
    for (const auto &row : cases) {
        string text;
        EXPECT_EQ(qek_string_get_integer(&text, 9), 9) << "without a buffer";
        EXPECT_EQ(qek_string_get_long(&text, INT64_MIN), INT64_MIN);
        EXPECT_EQ(qek_string_get_float(&text, 0.5F), 0.5F);
        EXPECT_EQ(qek_string_get_double(&text, 0.1), 0.1);
        qek_string_copy(&text, "999999999", -1);
        qek_string_copy(&text, row.text.data(), static_cast<std::int32_t>(row.text.size()));
        EXPECT_EQ(qek_string_get_integer(&text, 77), row.integer) << row.text;
        EXPECT_EQ(qek_string_get_long(&text, 77), row.whole) << row.text;
        EXPECT_EQ(qek_string_get_float(&text, 77), row.single) << row.text;
        EXPECT_EQ(qek_string_get_double(&text, 77), row.decimal) << row.text;
    }
    string wrapping;
    qek_string_copy(&wrapping, "9223372036854775808", -1);
    EXPECT_EQ(qek_string_get_long(&wrapping, 77), INT64_MIN);
}

// A decimal just above the middle of two floats, with the point at every place.
TEST(convert, reads_decimals_to_the_last_bit)
{
    double scale = 1;
    for (int decimals = 0; decimals < 15; ++decimals, scale *= 10) {
        const auto below = static_cast<float>(3e14 / scale);
        const float above = std::nextafter(below, HUGE_VALF);
        const double middle = (double{below} + double{above}) / 2;
        std::string digits = std::to_string(static_cast<std::int64_t>(middle * scale) + 1);
        digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
        string text;
        qek_string_copy(&text, digits.data(), -1);
        EXPECT_EQ(qek_string_get_float(&text, 0), above) << digits;
    }
}

// Both substitutions: what is found gives way to what `next` gives, until that is null.
std::int32_t substitute(owned_model &model, const std::u16string *find,
                        const std::function<const std::u16string *()> &next)
{
    owned_model fresh;
    if (!fresh.expand(model.length)) {
        return 0;
    }
    const std::u16string text = model.text();
    std::int32_t last = 0, count = 0, hit = 0;
    const std::u16string *given = nullptr;
    const auto is_hit = [&] { return (hit = find == nullptr ? -1 : model.find(*find, last)) >= 0; };
    while (is_hit() && (given = next()) != nullptr) {
        ++count;
        fresh.append(text.substr(unsign(last), unsign(hit - last)));
        fresh.append(*given);
        last = hit + index(find->size());
    }
    fresh.append(text.substr(unsign(last)));
    model = fresh;
    return count;
}

// Random texts in random strings. What is given may be null or lie in the string, and memory may
// run out at any point.
template <typename Record, typename Unit, typename Call>
void substitute_at_random(void (*copy)(Record *, const Unit *, std::int32_t), Call call)
{
    random_numbers random;
    for (int round = 0; random.goes_on(round, 10000) && !testing::Test::HasFailure(); ++round) {
        owned<Record> record;
        std::vector<std::vector<Unit>> blocks;
        const auto any_text = [&](std::int32_t longest) {
            std::u16string text(random.below(unsign(longest + 1)), u'a');
            for (char16_t &each : text) {
                each = random.one_of({u'a', u'b', static_cast<char16_t>(Unit(0x6161))});
            }
            return blocks.emplace_back(units_of<Unit>(text)).data();
        };
        for (const std::int32_t longest : {random.between(0, 70), random.one_of({0, 2, 12, 60})}) {
            Unit *text = any_text(longest);
            const auto length = index(blocks.back().size() - 1);
            text[random.between(0, length)] *= random.one_in(2); // a zero inside, or the last one
            copy(&record, text, length);
        }
        const Unit *given[4] = {};
        std::u16string texts[4];
        for (int at = 0; at < 4; ++at) {
            const bool is_own = record.length > 0 && random.one_in(3);
            given[at] = random.one_in(8) ? nullptr
                        : is_own         ? record.data + random.between(0, record.length - 1)
                                         : any_text(at == 0 ? 3 : 9);
            for (const Unit *unit = given[at]; unit != nullptr && *unit != 0; ++unit) {
                texts[at] += *unit;
            }
        }
        owned_model model{owned_model::buffer_of(record), record.length, record.capacity};
        owned_model::failing = random.one_in(2) ? random.between(1, 5) : 0;
        const allocations faults(owned_model::failing);
        call(record, given, model, texts);
        ASSERT_TRUE(model.is_like(record)) << testing::PrintToString(texts);
    }
}

void copy_bytes(qek_string *record, const std::uint8_t *text, std::int32_t length)
{
    qek_string_copy(record, text, length);
}

constexpr auto replacing_by = [](auto replace, auto replace_unit) {
    return [=](auto &record, auto &given, owned_model &model, auto &texts) {
        if (given[0] == nullptr || !texts[0].empty()) { // else it does not return
            const auto count = replace(&record, given[0], given[1]);
            EXPECT_EQ(count, substitute(model, given[0] == nullptr ? nullptr : texts,
                                        [&] { return &texts[1]; }));
        }
        const auto end = model.buffer.begin() + model.length;
        for (const char16_t old_unit : {u'a', u'\0', u'c'}) {
            EXPECT_EQ(replace_unit(&record, static_cast<std::uint8_t>(old_unit), 'c'),
                      std::count(model.buffer.begin(), end, old_unit));
            std::replace(model.buffer.begin(), end, old_unit, u'c');
        }
    };
};

TEST(convert, replaces_as_told_also_by_its_own_text_and_without_memory)
{
    substitute_at_random(copy_bytes, replacing_by(qek_string_replace, qek_string_replace_char));
}

TEST(convert, replaces_up_to_the_length_when_the_end_was_overwritten)
{
    string text;
    qek_string_copy(&text, "ab", 2);
    qek_string_set_at(&text, 2, 'a');
    qek_string_set_at(&text, 3, 'b');
    EXPECT_EQ(qek_string_replace(&text, "ab", "x"), 1);
    EXPECT_STREQ(reinterpret_cast<const char *>(text.data), "x");
}

TEST(convert, replaces_wide_text_likewise)
{
    substitute_at_random(qek_wchar_copy, replacing_by(qek_wchar_replace, qek_wchar_replace_char));
}

TEST(convert, matches_as_told_also_by_its_own_text_and_without_memory)
{
    substitute_at_random(copy_bytes, [](auto &record, auto &given, auto &model, auto &texts) {
        int at = 0;
        const auto next = [&] { return ++at == 4 || given[at] == nullptr ? nullptr : &texts[at]; };
        qek_string_match(&record, given[0], given[1], given[2], given[3], nullptr);
        substitute(model, given[0] == nullptr ? nullptr : texts, next);
    });
}

// The compiler is not to judge the formats below.
const auto write = static_cast<void (*)(qek_string *, const char *, ...)>(qek_string_format);
const auto print = static_cast<int (*)(char *, std::size_t, const char *, ...)>(std::snprintf);

// `extra` is what the estimate adds to the length of the format; -1 where that is not fixed. Eight
// lengths of padding in front show it to the byte through a capacity that is rounded to eights.
template <typename... Arguments>
void expect_format(std::int32_t extra, const std::string &format, Arguments... arguments)
{
    SCOPED_TRACE(format);
    for (std::size_t padding = 0; padding < 8; ++padding) {
        const std::string padded = std::string(padding, '_') + format;
        char expected[400] = "";
        const int length = print(expected, sizeof expected, padded.c_str(), arguments...);
        string text;
        qek_string_copy(&text, "before", -1);
        for (const bool is_starved : {true, false}) {
            const allocations faults(is_starved);
            write(&text, padded.c_str(), arguments...);
            EXPECT_EQ(faults.count(), 1);
            EXPECT_EQ(owned_model::buffer_of(text).starts_with(u"before"), is_starved);
        }
        const auto estimate = static_cast<std::int32_t>(padded.size()) + extra;
        EXPECT_EQ(text.capacity, extra < 0 ? text.capacity : std::max(estimate, 8) / 8 * 8 + 7);
        EXPECT_EQ(text.length, std::min(std::max(length, 0), text.capacity));
        EXPECT_EQ(reinterpret_cast<const char *>(text.data),
                  std::string(expected, unsign(text.length)));
    }
}

TEST(convert, formats_in_the_room_of_its_estimate)
{
    expect_format(0, "plain", 0);
    expect_format(5, "%s=%s;", "ab", "cde");
    expect_format(0, "%s", "");
    expect_format(1, "%S", L"a");
    expect_format(34, "%5d|%s", 42, "ab");
    expect_format(34, "%ld|%s", 42L, "ab");
    expect_format(34, "%zu|%s", std::size_t{42}, "ab");
    expect_format(34, "%-40s|%s", "ab", "cd");
    expect_format(32 + 4, "%.2s|%s", "abcdef", "tail");
    expect_format(4 * 32 + 4, "%lld %f %zu %p %s", 1LL << 40, 2.5, std::size_t{7}, nullptr, "tail");
    expect_format(6 * 32 + 8, "%jd %td %ld %hhx %Lf %s %lf %s", std::intmax_t{1}, std::ptrdiff_t{2},
                  3L, 5, 4.5L, "head", 5.5, "tail");
    expect_format(3 * 32 + 4, "%*d|%.*f|%-*.*s|%s", 5, 42, 2, 1.5, 6, 1, "ab", "tail");
    expect_format(3 * 32 + 8, "%*d|%s%lld%lld|%s", 5, 42, "head", 1LL, 2LL, "tail");
    expect_format(4 * 32 + 4, "%+c% i%#x%07o%s", 'c', 3, 4, 5, "tail");
    expect_format(18 * 32 + 4, "%d%d%d%d%d%ld%zu%lld%p%f%f%f%f%f%f%f%f%f%s", 1, 2, 3, 4, 5, 6L,
                  std::size_t{7}, 8LL, nullptr, 1., 2., 3., 4., 5., 6., 7., 8., 9., "tail");
    expect_format(2 * 32, "%2$s %1$s", "first", "second");
    expect_format(3 * 32, "%d%% of", 5);
    expect_format(2 * 32, "%d%%", 5);
    expect_format(3 * 32, "%%%d", 5);
    // What needs more room than it gets is cut.
    expect_format(32, "%60d|", 1);
    expect_format(32, "%-60s|", "ab");
    expect_format(32 + 2, "%300d%s", 1, "ab");
    // Texts behind a literal sign.
    expect_format(-1, "%%s", 0);
    expect_format(-1, "%%%s", "ab");
    expect_format(-1, "%%S %s", "ab");
    expect_format(-1, "%%%%s%s %s", "ab", "cd");
#if !defined(QEK_SANITIZED)               // which ends the program at what it does not know
    expect_format(2 * 32, "%y|%s", "ab"); // behind what is not known, no text is measured
    expect_format(32, "%5", 0);
#endif
    // What the runtime refuses leaves an empty text.
    expect_format(0, "%", 0);
    expect_format(3, "ab%s%", "abc");
    expect_format(32, "ab%lc", 0x7FFFFFFF);
}

TEST(convert, formats_its_own_text_and_nothing_into_nothing)
{
    string text;
    qek_string_copy(&text, "%s,%s", -1);
    const auto *own = text.data;
    write(&text, reinterpret_cast<const char *>(own), own, own + 3);
    EXPECT_STREQ(reinterpret_cast<const char *>(text.data), "%s,%s,%s");
    write(&text, "", 0);
    EXPECT_EQ(text.data, nullptr) << "an empty format makes no buffer";
    EXPECT_EQ(text.length + text.capacity, 0);
}

} // namespace
