// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The owned texts of both widths against one model, then what stands at the ends of their range.

#include "support/allocations.h"
#include "support/owned_text.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <functional>
#include <tuple>

using namespace qek_test;

namespace {

using qek_test::index; // not the runtime's

constexpr std::int32_t least = INT32_MIN, most = INT32_MAX;
std::uint8_t filler = 0;

// clang-format off
enum call { init, term, is_empty, swap, zero, expand, trim, shrink, clone, make_lower, make_upper,
            copy, copy_char, append, append_char, get_at, set_at, compare, icompare, find_char,
            find_char_pos, reverse_find, find, find_pos, insert, update, erase, left, mid, right,
            left_into, mid_into, right_into };
template <typename Record> constexpr auto calls = std::make_tuple(
    qek_string_init, qek_string_term, qek_string_is_empty, qek_string_swap, qek_string_zero,
    qek_string_expand, qek_string_trim, qek_string_shrink, qek_string_clone,
    qek_string_make_lower, qek_string_make_upper, qek_string_copy, qek_string_copy_char,
    qek_string_append, qek_string_append_char, qek_string_get_at, qek_string_set_at,
    qek_string_compare, qek_string_icompare, qek_string_find_char, qek_string_find_char_pos,
    qek_string_reverse_find, qek_string_find, qek_string_find_pos, qek_string_insert,
    qek_string_update, qek_string_delete, qek_string_left, qek_string_mid, qek_string_right,
    qek_string_left_string, qek_string_mid_string, qek_string_right_string);
template <> constexpr auto calls<qek_wchar> = std::make_tuple(
    qek_wchar_init, qek_wchar_term, qek_wchar_is_empty, qek_wchar_swap, qek_wchar_zero,
    qek_wchar_expand, qek_wchar_trim, qek_wchar_shrink, qek_wchar_clone,
    qek_wchar_make_lower, qek_wchar_make_upper, qek_wchar_copy, qek_wchar_copy_char,
    qek_wchar_append, qek_wchar_append_char, qek_wchar_get_at, qek_wchar_set_at,
    qek_wchar_compare, qek_wchar_icompare, qek_wchar_find_char, qek_wchar_find_char_pos,
    qek_wchar_reverse_find, qek_wchar_find, qek_wchar_find_pos, qek_wchar_insert,
    qek_wchar_update, qek_wchar_delete, qek_wchar_left, qek_wchar_mid, qek_wchar_right,
    qek_wchar_left_wchar, qek_wchar_mid_wchar, qek_wchar_right_wchar);
// clang-format on

template <call Which, typename Record, typename... At> auto run(Record &text, At... at)
{
    return std::get<Which>(calls<Record>)(&text, at...);
}

template <typename Record> struct owned_text : testing::Test {
};
using texts = testing::Types<qek_string, qek_wchar>;
TYPED_TEST_SUITE(owned_text, texts);

std::u16string part(const std::u16string &text, std::int32_t position, std::int32_t count)
{
    const bool is_nothing = position < 0 || count <= 0 || position >= std::ssize(text);
    return is_nothing ? u"" : text.substr(unsign(position), unsign(count));
}

std::u16string last_part(const std::u16string &text, std::int32_t count)
{
    return count <= 0 ? u"" : text.substr(text.size() - std::min(unsign(count), text.size()));
}

TYPED_TEST(owned_text, does_what_the_model_does)
{
    using record = TypeParam;
    using unit = std::remove_pointer_t<decltype(record::data)>;
    constexpr bool is_wide = std::is_same_v<record, qek_wchar>;
    random_numbers random;
    owned<record> owned_s, owned_t;
    record &s = owned_s, &t = owned_t;
    owned_model m, n;
    // The present text; a text that is given with the length `told`, and what is meant by it; for
    // wide text bytes given with the same length, and what they are widened to.
    std::u16string text, given, meant, widened;
    std::vector<unit> units;
    std::vector<std::uint8_t> bytes;
    std::int32_t told = 0, at = 0, count = 0;
    bool is_inside = false;
    unit ch = 0;
    const auto found = [](std::int32_t start, std::size_t hit) {
        return hit == std::string::npos ? -1 : start + index(hit);
    };
    std::vector<std::function<void()>> actions{
        [&] { EXPECT_EQ(run<expand>(s, at % 99), m.expand(at % 99)); },
        [&] { run<shrink>(s, count), m.close(count); },
        [&] { run<copy>(s, nullptr, told), m.close(0); },
        [&] { run<copy>(s, units.data(), told), m.set(meant); },
        [&] { run<copy_char>(s, ch), m.set(ch == 0 ? u"" : std::u16string{ch}); },
        [&] { run<append>(s, nullptr, count); },
        [&] { run<append>(s, units.data(), told), m.append(meant); },
        [&] { run<append_char>(s, ch), m.append(std::u16string{ch}); },
        [&] { // wide text refuses a negative length here
            EXPECT_EQ(run<insert>(s, at, nullptr, -1), 0);
            EXPECT_EQ(run<insert>(s, at, units.data(), told),
                      is_inside && (!is_wide || told > 0) && !meant.empty() &&
                          m.set(text.insert(unsign(at), meant)));
        },
        [&] {
            count = is_inside ? std::min(count, m.length - at) : count;
            EXPECT_EQ(run<update>(s, at, count, nullptr, -1), 0);
            EXPECT_EQ(run<update>(s, at, count, told == 0 ? nullptr : units.data(), told),
                      is_inside && (!is_wide || told >= 0) && count >= 0 &&
                          m.set(text.replace(unsign(at), unsign(count), meant)));
        },
        [&] {
            if (at >= 0 && count >= 0) {
                run<erase>(s, at, count);
                is_inside ? m.set(text.erase(unsign(at), unsign(count))) : m.close(at);
            }
        },
        [&] { run<left>(s, count), count < 0 || m.set(part(text, 0, count)); },
        [&] { run<mid>(s, at, count), at < 0 || m.set(part(text, at, count)); },
        [&] { run<right>(s, count), m.set(last_part(text, count)); },
        [&] { run<left_into>(s, count, &t), n.set(part(text, 0, count)); },
        [&] { run<mid_into>(s, at, count, &t), n.set(part(text, at, count)); },
        [&] { run<right_into>(s, count, &t), n.set(last_part(text, count)); },
        [&] { run<clone>(s, &t), n.expand(m.capacity) && n.set(text); },
        [&] { run<swap>(s, &t), std::swap(m, n); },
        [&] {
            run<term>(t), n = {};
            EXPECT_TRUE(n.is_like(t));
            t = {&ch, 1, 1}, run<init>(t);
        },
        [&] {
            const std::u16string kept = trimmed(text).second;
            EXPECT_EQ(run<trim>(s), kept != text && m.set(kept));
        },
        [&] { run<make_lower>(s), m.set(mapped(text, 'A', 32)); },
        [&] { run<make_upper>(s), m.set(mapped(text, 'a', -32)); },
        [&] {
            run<zero>(s, at, count);
            if (at >= 0 && at <= m.capacity && count <= m.capacity - at) {
                std::fill_n(m.buffer.begin() + at, std::max(count, 0), u'\0');
            }
        },
        [&] {
            const bool is_unit = at >= 0 && at < m.capacity;
            EXPECT_EQ(run<get_at>(s, at), is_unit ? m.buffer[unsign(at)] : is_wide ? 0 : 0xFF);
            if (at != m.length) { // the terminator
                run<set_at>(s, at, ch);
                m.buffer.replace(is_unit ? unsign(at) : 0, is_unit, std::u16string(is_unit, ch));
            }
        },
        [&] {
            const auto compared = [&](int step) {
                return told == 0      ? !text.empty()
                       : text.empty() ? -!meant.empty()
                                      : order(mapped(text, 'A', step), mapped(meant, 'A', step));
            };
            EXPECT_EQ(run<compare>(s, units.data(), told), compared(0));
            EXPECT_EQ(run<icompare>(s, units.data(), told), compared(32));
            EXPECT_EQ(run<compare>(s, nullptr, told), !text.empty());
            EXPECT_EQ(run<icompare>(s, nullptr, told), !text.empty());
        },
        [&] { // with the length 0 the first unit is sought, also in the terminator
            for (const std::int32_t start : {0, at}) {
                const std::u16string rest = part(text, start, most);
                const auto sought = told == 0 ? (rest + u'\0').find(ch) : rest.find(meant);
                const auto hit = told < 0 ? m.find(meant, start)
                                          : found(start, rest.empty() ? rest.npos : sought);
                EXPECT_EQ(run<find_pos>(s, units.data(), told, start), hit);
                EXPECT_EQ(run<find_pos>(s, nullptr, told, start), -1);
                EXPECT_TRUE(start != 0 || run<find>(s, units.data(), told) == hit);
            }
            EXPECT_EQ(run<find>(s, nullptr, told), -1);
        },
        [&] {
            const auto unless_zero = [&](int hit) { return ch == 0 ? -1 : hit; };
            EXPECT_EQ(run<find_char>(s, ch), unless_zero(found(0, text.find(ch))));
            EXPECT_EQ(run<reverse_find>(s, ch), unless_zero(found(0, text.rfind(ch))));
            EXPECT_EQ(run<find_char_pos>(s, ch, at),
                      unless_zero(found(at, part(text, at, most).find(ch))));
            EXPECT_EQ(run<is_empty>(s), text.empty());
        }};
    if constexpr (is_wide) {
        actions.insert(actions.end(),
                       {[&] { qek_wchar_copy_str(&s, nullptr, told), m.close(0); },
                        [&] { qek_wchar_copy_str(&s, bytes.data(), told), m.set(widened); },
                        [&] { qek_wchar_append_str(&s, nullptr, count); },
                        [&] { qek_wchar_append_str(&s, bytes.data(), told), m.append(widened); }});
    }
    const auto in_its_length = [&](const std::u16string &all) {
        return told < 0 ? all.c_str() : all.substr(0, unsign(told));
    };
    for (int step = 0; random.goes_on(step, 20000) && !testing::Test::HasFailure(); ++step) {
        text = m.text();
        given.resize(unsign(random.between(0, random.one_of({1, 3, 20}))));
        for (char16_t &each : given) {
            each = static_cast<unit>(
                random.one_of<char16_t>({' ', '\t', '\n', '\r', '\0', '\v', 'a', 'b', 'B', 0x80,
                                         0xC4, 0xA0, 0x2003, 0x0120, 0x0142, 0xFFC4}));
        }
        if (random.one_in(4)) { // the end of the text, and perhaps of its buffer
            given = last_part(text, random.between(0, 20)) + std::u16string(random.below(2), u'\0');
        }
        ch = static_cast<unit>(given.c_str()[0]);
        told = random.one_in(2)   ? random.between(least, -1)
               : random.one_in(8) ? 0
                                  : index(given.size());
        meant = in_its_length(given);
        units = units_of<unit>(given, told <= 0);
        bytes = units_of<std::uint8_t>(given, told <= 0);
        widened = in_its_length({bytes.begin(), bytes.end()});
        for (char16_t &each : widened) {
            each = static_cast<char16_t>(each < 0x80 ? each : 0xFF00 | each);
        }
        for (std::int32_t *number : {&at, &count}) {
            *number = random.one_in(8) ? random.one_of({least, most, m.capacity})
                                       : random.between(-2, m.length + 2);
        }
        is_inside = at >= 0 && at <= m.length;
        owned_model::failing = random.one_in(3);
        const auto chosen = random.below(actions.size());
        const allocations faults(owned_model::failing);
        actions[chosen]();
        EXPECT_LE(faults.count(), 1);
        ASSERT_TRUE(m.is_like(s) && n.is_like(t)) << "call " << chosen << ", step " << step;
    }
}

TEST(string, grows_by_the_rule)
{
    const std::tuple<std::int32_t, std::int32_t, std::int32_t, std::size_t> cases[] = {
        {0, 0, least, 0},
        {0, 0, 16, 24},
        {3, 15, 15, 0},
        {0x1000010, 0x1000017, 0x1000018, 0x1800018},
        {most - 16, most - 16, most - 15, 0x80000000},
        {0, 15, most, 0x80000000}};
    for (const auto &[length, capacity, wanted, bytes] : cases) {
        qek_string string{capacity == 0 ? nullptr : &filler, length, capacity};
        const allocations faults(1);
        EXPECT_EQ(qek_string_expand(&string, wanted), bytes == 0) << wanted;
        EXPECT_EQ(faults.sizes(), std::vector(bytes == 0 ? 0 : 1, bytes));
    }
    owned<qek_string> string;
    const allocations watch;
    for (int at = 0; at < 96; ++at) {
        qek_string_append_char(&string, 'a');
        EXPECT_EQ(string.capacity, watch.sizes().back() - 1);
    }
    EXPECT_THAT(watch.sizes(), testing::ElementsAre(16, 24, 40, 64, 96, 144));
}

TEST(string, stays_in_its_buffer_and_in_the_range_of_its_length)
{
    owned<qek_string> string;
    qek_string_copy(&string, "abcdef", -1);
    qek_string_delete(&string, -1, 2);
    qek_string_delete(&string, 1, -3);
    qek_string_delete(&string, 10, -10);
    EXPECT_STREQ(reinterpret_cast<char *>(string.data), "abcdef");
    EXPECT_EQ(qek_string_update(&string, 5, 2, "xy", 2), 1) << "as long as what it replaces";
    EXPECT_EQ(string.length, 6);
    EXPECT_STREQ(reinterpret_cast<char *>(string.data), "abcdexy");
    qek_string_set_at(&string, 14, 'z');
    qek_string_zero(&string, 1, 15);
    EXPECT_EQ(qek_string_get_at(&string, 14), 'z');
    qek_string_zero(&string, 1, 14);
    EXPECT_EQ(qek_string_get_at(&string, 14), 0);
    qek_string full{&filler, most - 2, most};
    const allocations watch;
    qek_string_append(&full, "abc", 3);
    EXPECT_EQ(qek_string_insert(&full, 0, "abc", 3), 0);
    EXPECT_EQ(qek_string_update(&full, 1, 1, "abcd", 4), 0);
    EXPECT_EQ(watch.count(), 0);
    full.data = nullptr;
    EXPECT_EQ(qek_string_is_empty(&full), 1);
}

} // namespace
