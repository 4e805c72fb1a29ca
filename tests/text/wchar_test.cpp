// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "support/allocations.h"
#include "support/owned_text.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <functional>

namespace {

using namespace qek_test;
using qek_test::index; // not the runtime's

constexpr std::int32_t least = INT32_MIN, most = INT32_MAX;

std::u16string part(const std::u16string &text, std::int32_t position, std::int32_t count)
{
    const bool is_nothing = position < 0 || count <= 0 || position >= std::ssize(text);
    return is_nothing ? u"" : text.substr(unsign(position), unsign(count));
}

std::u16string last_part(const std::u16string &text, std::int32_t count)
{
    return count <= 0 ? u"" : text.substr(text.size() - std::min(unsign(count), text.size()));
}

TEST(wchar, does_what_the_model_does)
{
    random_numbers random;
    owned<qek_wchar> s, t;
    owned_model m, n;
    // The present text; a text that is given with the length `told`, and what is meant by it; bytes
    // given with the same length, and what they are widened to.
    std::u16string text, given, meant, widened;
    std::vector<std::uint16_t> units;
    std::vector<std::uint8_t> bytes;
    std::int32_t told = 0, at = 0, count = 0;
    bool is_inside = false;
    std::uint16_t ch = 0;
    const auto found = [](std::int32_t start, std::size_t hit) {
        return hit == std::string::npos ? -1 : start + index(hit);
    };
    const std::function<void()> calls[] = {
        [&] { EXPECT_EQ(qek_wchar_expand(&s, at % 99), m.expand(at % 99)); },
        [&] { qek_wchar_shrink(&s, count), m.close(count); },
        [&] { qek_wchar_copy(&s, nullptr, told), m.close(0); },
        [&] { qek_wchar_copy(&s, units.data(), told), m.set(meant); },
        [&] { qek_wchar_copy_char(&s, ch), m.set(ch == 0 ? u"" : std::u16string{ch}); },
        [&] { qek_wchar_copy_str(&s, nullptr, told), m.close(0); },
        [&] { qek_wchar_copy_str(&s, bytes.data(), told), m.set(widened); },
        [&] { qek_wchar_append(&s, nullptr, count), qek_wchar_append_str(&s, nullptr, count); },
        [&] { qek_wchar_append(&s, units.data(), told), m.append(meant); },
        [&] { qek_wchar_append_char(&s, ch), m.append(std::u16string{ch}); },
        [&] { qek_wchar_append_str(&s, bytes.data(), told), m.append(widened); },
        [&] { // a negative length is refused here
            EXPECT_EQ(qek_wchar_insert(&s, at, units.data(), told),
                      is_inside && told > 0 && m.set(text.insert(unsign(at), meant)));
        },
        [&] {
            count = is_inside ? std::min(count, m.length - at) : count;
            EXPECT_EQ(qek_wchar_update(&s, at, count, told == 0 ? nullptr : units.data(), told),
                      is_inside && count >= 0 && told >= 0 &&
                          m.set(text.replace(unsign(at), unsign(count), meant)));
        },
        [&] {
            if (at >= 0 && count >= 0) {
                qek_wchar_delete(&s, at, count);
                is_inside ? m.set(text.erase(unsign(at), unsign(count))) : m.close(at);
            }
        },
        [&] { qek_wchar_left(&s, count), count < 0 || m.set(part(text, 0, count)); },
        [&] { qek_wchar_mid(&s, at, count), at < 0 || m.set(part(text, at, count)); },
        [&] { qek_wchar_right(&s, count), m.set(last_part(text, count)); },
        [&] { qek_wchar_left_wchar(&s, count, &t), n.set(part(text, 0, count)); },
        [&] { qek_wchar_mid_wchar(&s, at, count, &t), n.set(part(text, at, count)); },
        [&] { qek_wchar_right_wchar(&s, count, &t), n.set(last_part(text, count)); },
        [&] { qek_wchar_clone(&s, &t), n.expand(m.capacity) && n.set(text); },
        [&] { qek_wchar_swap(&s, &t), std::swap(m, n); },
        [&] {
            qek_wchar_term(&t), n = {};
            EXPECT_TRUE(n.is_like(t));
            static_cast<qek_wchar &>(t) = {&ch, 1, 1}, qek_wchar_init(&t);
        },
        [&] {
            const auto [first, kept] = trimmed(text);
            EXPECT_EQ(qek_wchar_trim(&s), kept != text && m.set(kept));
        },
        [&] { qek_wchar_make_lower(&s), m.set(mapped(text, 'A', 32)); },
        [&] { qek_wchar_make_upper(&s), m.set(mapped(text, 'a', -32)); },
        [&] {
            qek_wchar_zero(&s, at, count);
            if (at >= 0 && at <= m.capacity && count <= m.capacity - at) {
                std::fill_n(m.buffer.begin() + at, std::max(count, 0), u'\0');
            }
        },
        [&] {
            const bool is_unit = at >= 0 && at < m.capacity;
            EXPECT_EQ(qek_wchar_get_at(&s, at), is_unit ? m.buffer[unsign(at)] : 0);
            if (at != m.length) { // the terminator
                qek_wchar_set_at(&s, at, ch);
                m.buffer.replace(is_unit ? unsign(at) : 0, is_unit, std::u16string(is_unit, ch));
            }
        },
        [&] {
            const auto compared = [&](int step) {
                return told == 0      ? !text.empty()
                       : text.empty() ? -!meant.empty()
                                      : order(mapped(text, 'A', step), mapped(meant, 'A', step));
            };
            EXPECT_EQ(qek_wchar_compare(&s, units.data(), told), compared(0));
            EXPECT_EQ(qek_wchar_icompare(&s, units.data(), told), compared(32));
            EXPECT_EQ(qek_wchar_compare(&s, nullptr, told), !text.empty());
            EXPECT_EQ(qek_wchar_icompare(&s, nullptr, told), !text.empty());
        },
        [&] { // with the length 0 the first unit is sought, also in the terminator
            for (const std::int32_t start : {0, at}) {
                const std::u16string rest = part(text, start, most);
                const auto sought = told == 0 ? (rest + u'\0').find(ch) : rest.find(meant);
                const auto hit = told < 0 ? m.find(meant, start)
                                          : found(start, rest.empty() ? rest.npos : sought);
                EXPECT_EQ(qek_wchar_find_pos(&s, units.data(), told, start), hit);
                EXPECT_EQ(qek_wchar_find_pos(&s, nullptr, told, start), -1);
                if (start == 0) {
                    EXPECT_EQ(qek_wchar_find(&s, units.data(), told), hit);
                    EXPECT_EQ(qek_wchar_find(&s, nullptr, told), -1);
                }
            }
        },
        [&] {
            const auto unless_zero = [&](int hit) { return ch == 0 ? -1 : hit; };
            EXPECT_EQ(qek_wchar_find_char(&s, ch), unless_zero(found(0, text.find(ch))));
            EXPECT_EQ(qek_wchar_reverse_find(&s, ch), unless_zero(found(0, text.rfind(ch))));
            EXPECT_EQ(qek_wchar_find_char_pos(&s, ch, at),
                      unless_zero(found(at, part(text, at, most).find(ch))));
            EXPECT_EQ(qek_wchar_is_empty(&s), text.empty());
        }};
    for (int step = 0; step < 20000 && !HasFailure(); ++step) {
        text = m.text();
        given.resize(unsign(random.between(0, random.one_of({1, 3, 20}))));
        for (char16_t &each : given) {
            each = random.one_of<char16_t>({' ', '\t', '\n', '\r', '\0', '\v', 'a', 'b', 'B', 0x80,
                                            0xC4, 0xA0, 0x2003, 0x0120, 0x0142, 0xFFC4});
        }
        ch = given.c_str()[0];
        told = random.one_in(2) ? random.between(least, -1) : index(given.size());
        meant = told < 0 ? given.c_str() : given;
        units = units_of<std::uint16_t>(given, told <= 0);
        bytes = units_of<std::uint8_t>(given, told <= 0);
        widened.clear();
        for (std::size_t each = 0; each < given.size() && (told >= 0 || bytes[each] != 0); ++each) {
            widened +=
                static_cast<char16_t>(bytes[each] < 0x80 ? bytes[each] : 0xFF00 | bytes[each]);
        }
        for (std::int32_t *number : {&at, &count}) {
            *number =
                random.one_in(8) ? random.one_of({least, most}) : random.between(-2, m.length + 2);
        }
        is_inside = at >= 0 && at <= m.length;
        owned_model::failing = random.one_in(3);
        const auto chosen = random.next() % std::size(calls);
        const allocations faults(owned_model::failing);
        calls[chosen]();
        ASSERT_TRUE(m.is_like(s) && n.is_like(t)) << "call " << chosen << ", step " << step;
    }
}

} // namespace
