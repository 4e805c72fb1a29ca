// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The slice, and what the view has in common with it: both read a span of somebody else's text.

#include "support/allocations.h"
#include "support/owned_text.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cfenv>
#include <cstring>
#include <numeric>
#include <string>

namespace {

using namespace qek_test;
using qek_test::index; // not the runtime's

struct of_char {
    static constexpr bool is_view = false;
    static qek_char on(std::uint8_t *text, int length) { return {text + 1, length}; }
    static auto start(const qek_char &slice) { return slice.data; }
    static constexpr auto trim = [](auto *slice) { return qek_char_trim(slice), -1; };
    static constexpr auto is_long = qek_char_is_long, is_float = qek_char_is_float;
    static constexpr auto get_long = qek_char_get_long;
    static constexpr auto get_float = qek_char_get_float;
    static constexpr auto find_char = qek_char_find_char, reverse_find = qek_char_reverse_find;
    static constexpr auto find_char_pos = qek_char_find_char_pos;
    static constexpr auto find = qek_char_find, order = qek_char_compare,
                          iorder = qek_char_icompare;
    static constexpr auto find_pos = qek_char_find_pos;
};

struct of_stringx {
    static constexpr bool is_view = true;
    static qek_stringx on(std::uint8_t *text, int length) { return {text, 1, length}; }
    static auto start(const qek_stringx &view) { return view.data + view.offset; }
    static constexpr auto trim = qek_stringx_trim;
    static constexpr auto is_long = qek_stringx_is_long, is_float = qek_stringx_is_float;
    static constexpr auto get_long = qek_stringx_get_long;
    static constexpr auto get_float = qek_stringx_get_float;
    static constexpr auto find_char = qek_stringx_find_char,
                          reverse_find = qek_stringx_reverse_find;
    static constexpr auto find_char_pos = qek_stringx_find_char_pos;
    static constexpr auto find = qek_stringx_find, order = qek_stringx_compare,
                          iorder = qek_stringx_icompare;
    static constexpr auto find_pos = qek_stringx_find_pos;
};

template <typename Face> struct slice : testing::Test {
};
using faces = testing::Types<of_char, of_stringx>;
TYPED_TEST_SUITE(slice, faces);

bool is_digit(char ch) { return ch >= '0' && ch <= '9'; }

// Both scanners: the one of whole numbers stops at the point. Every intermediate result is stored,
// so that nothing is computed in more than double.
std::pair<std::int64_t, double> number_by_steps(const std::string &text)
{
    bool negative = false, digit = false;
    int decimals = -1; // before the point
    std::uint64_t whole = 0;
    volatile double sum = 0.0;
    for (const char ch : text) {
        if (ch == '-' && digit && !negative) {
            break;
        } else if (ch == '.' && digit && decimals < 0) {
            decimals = 0;
        } else if (is_digit(ch) && decimals < 0) {
            digit = true;
            whole = whole * 10 + static_cast<std::uint64_t>(ch - '0');
            sum = sum * 10.0;
            sum = sum + static_cast<double>(ch);
            sum = sum - 48.0;
        } else if (is_digit(ch)) {
            volatile double term = ch - '0';
            ++decimals;
            for (int k = 0; k < decimals; ++k) {
                term = term * 0.1;
            }
            sum = sum + term;
        } else if (ch == '-' && !negative) {
            negative = true;
        } else {
            break;
        }
    }
    return {static_cast<std::int64_t>(negative ? 0 - whole : whole), negative ? -sum : sum};
}

bool is_float_by_rule(const std::string &text)
{
    const std::string digits = "0123456789", rest = text.substr(text.substr(0, 1) == "-");
    const auto end = std::min(rest.find_first_not_of(digits), rest.size());
    const bool is_point = rest.substr(end, 1) == ".";
    return end > 0 && rest.find_first_not_of(digits, end + is_point) == rest.npos;
}

template <typename Face> void expect_numbers(const std::string &text)
{
    // Behind what would change the number, and in front of it or at the end of the block.
    const std::string all = "9" + text + (text.size() % 2 != 0 ? "9" : "");
    std::vector<std::uint8_t> block(all.begin(), all.end());
    const auto span = Face::on(block.data(), index(text.size()));
    const bool is_float = is_float_by_rule(text);
    const auto &[whole, decimal] = number_by_steps(text);
    ASSERT_EQ(Face::is_float(&span), is_float) << text;
    ASSERT_EQ(Face::is_long(&span), is_float && text.find('.') == text.npos) << text;
    ASSERT_EQ(Face::get_long(&span), whole) << text;
    const double got = Face::get_float(&span);
    ASSERT_EQ(std::memcmp(&got, &decimal, sizeof got), 0) << text << " gives " << got;
}

TYPED_TEST(slice, reads_all_short_numbers)
{
    for (unsigned size = 0; size <= 6; ++size) {
        for (unsigned each = 0; each < 1U << 2 * size; ++each) {
            std::string text(size, ' ');
            for (unsigned at = 0; at < size; ++at) {
                text[at] = "-.7x"[each >> 2 * at & 3];
            }
            expect_numbers<TypeParam>(text);
        }
    }
}

TYPED_TEST(slice, reads_numbers_step_by_step_to_the_last_bit)
{
    random_numbers random;
    const auto digits = [&](unsigned most) {
        std::string text(random.below(random.one_in(99) ? 340 : most), '0');
        for (char &ch : text) {
            ch = static_cast<char>(random.between('0', '9'));
        }
        return text;
    };
    for (int round = 0; random.goes_on(round, 5000) && !this->HasFatalFailure(); ++round) {
        const std::string sign = random.one_in(3) ? "-" : "";
        const auto *const between = random.one_of({".", ".", "", "-", "\xB5", " "});
        const std::string text = sign + digits(25) + between + digits(40);
        std::fesetround(random.one_in(4) ? FE_DOWNWARD : FE_TONEAREST);
        expect_numbers<TypeParam>(text);
        std::fesetround(FE_TONEAREST);
    }
}

TYPED_TEST(slice, compares_finds_and_trims)
{
    random_numbers random;
    const auto any_text = [&](unsigned longest, const std::u16string &units) {
        std::u16string text(random.below(longest + 1), ' ');
        for (char16_t &each : text) {
            each = units[random.below(units.size())];
        }
        return text;
    };
    const std::u16string letters(u"abA\xE1\0", 5), blanks(u" \t\n\r\v\xA0\1a\0", 9);
    for (int round = 0; random.goes_on(round, 30000) && !this->HasFailure(); ++round) {
        const std::u16string text = any_text(8, random.one_in(2) ? letters : blanks);
        const std::u16string all = u'#' + text + random.one_of({u'a', u'\0'});
        auto block = units_of<std::uint8_t>(all, false);
        auto span = TypeParam::on(block.data(), index(text.size()));
        const std::u16string other = any_text(3, letters);
        const auto given = units_of<std::uint8_t>(other);
        const auto told = random.one_in(2) ? index(other.size()) : random.one_of({-1, INT32_MIN});
        const std::u16string meant = told < 0 ? other.c_str() : other;
        const std::int32_t start = random.between(TypeParam::is_view ? -2 : 0, 10);
        SCOPED_TRACE(testing::PrintToString(std::tuple(text, other, told, start)));

        // A slice does not measure what an empty one is compared with.
        const bool are_nothing = meant.empty() && (told == 0 || TypeParam::is_view);
        const auto compared = [&](int step) {
            return told == 0      ? !text.empty()
                   : text.empty() ? are_nothing - 1
                                  : order(mapped(text, 'A', step), mapped(meant, 'A', step));
        };
        EXPECT_EQ(TypeParam::order(&span, given.data(), told), compared(0));
        EXPECT_EQ(TypeParam::iorder(&span, given.data(), told), compared(32));
        EXPECT_EQ(TypeParam::order(&span, nullptr, told), !text.empty());
        EXPECT_EQ(TypeParam::iorder(&span, nullptr, told), !text.empty());

        // An empty text is found where its first byte stands, also right behind the span.
        const auto found = [&](bool is_place, std::int32_t from) {
            const auto hit = meant.empty() ? all.substr(1).find(given[0], unsign(from))
                                           : text.find(meant, unsign(from));
            return is_place ? index(hit) : -1;
        };
        const bool is_place = start >= 0 && start < std::ssize(text);
        EXPECT_EQ(TypeParam::find(&span, given.data(), told),
                  found(!text.empty() || !TypeParam::is_view, 0));
        EXPECT_EQ(TypeParam::find(&span, nullptr, told), -1);
        EXPECT_EQ(TypeParam::find_pos(&span, given.data(), told, start), found(is_place, start));
        EXPECT_EQ(TypeParam::find_pos(&span, nullptr, told, start), -1);
        const std::uint8_t ch = given[0];
        const auto unless_zero = [&](std::size_t hit) { return ch == 0 ? -1 : index(hit); };
        EXPECT_EQ(TypeParam::find_char(&span, ch), unless_zero(text.find(ch)));
        EXPECT_EQ(TypeParam::reverse_find(&span, ch), unless_zero(text.rfind(ch)));
        EXPECT_EQ(TypeParam::find_char_pos(&span, ch, start),
                  is_place ? unless_zero(text.find(ch, unsign(start))) : -1);

        span.length = text.empty() ? -random.between(0, 1) : span.length;
        const auto [first, kept] = trimmed(text);
        const bool changes = text.empty() || kept != text;
        EXPECT_EQ(TypeParam::trim(&span), TypeParam::is_view ? changes : -1);
        EXPECT_EQ(TypeParam::start(span), block.data() + 1 + first);
        EXPECT_EQ(span.length, index(kept.size()));
    }
}

TEST(char_slice, is_measured_when_asked)
{
    std::uint8_t text[] = "7bc";
    qek_char slice{text, -7}, nothing{nullptr, -1};
    EXPECT_EQ(qek_char_is_empty(&slice) + qek_char_is_long(&slice) + qek_char_is_float(&slice), 0);
    EXPECT_EQ(qek_char_get_long(&slice), 0);
    EXPECT_EQ(qek_char_get_float(&slice), 0);
    EXPECT_EQ(qek_char_compare(&slice, "7bc", 3), -10);
    EXPECT_EQ(qek_char_find(&slice, "7", -1), -1);
    qek_char_make_upper(&slice);
    EXPECT_EQ(qek_char_length(&slice), 3);
    EXPECT_EQ(text[1], 'b');
    text[1] = 0;
    EXPECT_EQ(qek_char_length(&slice), 3) << "measured once";
    qek_char_shrink(&slice, 1000);
    qek_char_shrink(&slice, -1);
    EXPECT_EQ(slice.length, 1000);
    qek_char_trim(&nothing);
    qek_char_shrink(&nothing, 5);
    EXPECT_EQ(nothing.length, -1);
    EXPECT_EQ(qek_char_is_empty(&nothing), 1);
    EXPECT_EQ(qek_char_compare(&nothing, nullptr, 5), 0);
    EXPECT_EQ(qek_char_find_char_pos(&nothing, 'a', -2), -1);
    EXPECT_EQ(qek_char_find(&nothing, "a", 1), -1);
    EXPECT_EQ(qek_char_length(&nothing), 0);
    EXPECT_EQ(nothing.length, 0);
}

TEST(char_slice, maps_letters_in_long_texts_as_in_short_ones)
{
    std::string text(3001, ' ');
    std::iota(text.begin(), text.end(), '\0');
    for (const bool up : {false, true}) {
        std::string mapped = text;
        std::transform(text.begin(), text.end(), mapped.begin(), [=](char ch) {
            return static_cast<char>(up ? std::toupper(ch) : std::tolower(ch));
        });
        qek_char slice{reinterpret_cast<std::uint8_t *>(text.data()), 3001};
        (up ? qek_char_make_upper : qek_char_make_lower)(&slice);
        EXPECT_EQ(text, mapped);
    }
}

TEST(char_slice, owns_one_copy_and_maps_its_ascii_letters)
{
    qek_char record{nullptr, 99};
    qek_char_init(&record);
    EXPECT_EQ(record.length, 0);
    const allocations watch;
    qek_char_copy(&record, nullptr, 3);
    qek_char_copy(&record, "aZ\0\xE1[", 5);
    qek_char_copy(&record, "second", -1);
    EXPECT_THAT(watch.sizes(), testing::ElementsAre(6));
    EXPECT_EQ(record.length, 5);
    qek_char_make_lower(&record);
    record.length = 1;
    qek_char_make_upper(&record);
    EXPECT_EQ(std::memcmp(record.data, "Az\0\xE1[", 6), 0);
    qek_char_term(&record);
    EXPECT_EQ(record.data, nullptr);
    qek_char_copy(&record, "third", -1);
    EXPECT_EQ(record.length, 5);
    qek_char_term(&record);
    EXPECT_EQ(record.length, 0);
    qek_char_term(&record);
}

} // namespace