// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "support/allocations.h"
#include "support/random.h"

#include "qek_std.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

using namespace std::string_literals;
using qek_test::allocations;

constexpr std::int32_t least = INT32_MIN;
constexpr std::int32_t most = INT32_MAX;
std::uint8_t filler = 0;

std::size_t unsign(std::int32_t number) { return static_cast<std::size_t>(number); }

struct test_string : qek_string {
    test_string() : qek_string{&filler, 1, 1} { qek_string_init(this); }
    test_string(const test_string &) = delete;
    ~test_string() { qek_string_term(this); }
};

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
    test_string string;
    const allocations watch;
    for (int at = 0; at < 96; ++at) {
        qek_string_append_char(&string, 'a');
        EXPECT_EQ(string.capacity, watch.sizes().back() - 1);
    }
    EXPECT_THAT(watch.sizes(), testing::ElementsAre(16, 24, 40, 64, 96, 144));
}

TEST(string, stays_in_its_buffer_and_in_the_range_of_its_length)
{
    test_string string;
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

// A string as its buffer and its length. Every edit lays the new text over the front of the buffer;
// one that has to grow answers false and does nothing while there is no memory.
struct model {
    std::string buffer;
    std::int32_t length = 0, capacity = 0;
    bool is_starved = false;

    bool expand(std::int32_t wanted)
    {
        if (wanted > capacity && !is_starved) {
            capacity = std::max(capacity + std::max(length / 2, 8), wanted) | 7;
            buffer.resize(unsign(capacity) + 1);
        }
        return wanted <= capacity;
    }
    bool close(std::int32_t new_length)
    {
        if (!buffer.empty() && new_length >= 0) {
            length = std::min(new_length, capacity);
            buffer[unsign(length)] = '\0';
        }
        return true;
    }
    bool set(const std::string &text)
    {
        const auto new_length = static_cast<std::int32_t>(text.size());
        const bool has_room = expand(new_length);
        std::copy_n(text.begin(), has_room ? new_length : 0, buffer.begin());
        return has_room && close(new_length);
    }
};

std::string part(const std::string &text, std::int32_t position, std::int32_t count)
{
    const bool is_nothing = position < 0 || count <= 0 || position >= std::ssize(text);
    return is_nothing ? "" : text.substr(unsign(position), unsign(count));
}

std::string last_part(const std::string &text, std::int32_t count)
{
    return count <= 0 ? "" : text.substr(text.size() - std::min(unsign(count), text.size()));
}

std::string mapped(std::string text, int (*map)(int))
{
    std::transform(text.begin(), text.end(), text.begin(), map);
    return text;
}

std::string trimmed(const std::string &text)
{
    const auto first = text.find_first_not_of(" \t\n\r");
    const auto last = text.find_last_not_of(" \t\n\r\0"s);
    return first == text.npos || text[first] == 0 ? "" : text.substr(first, last - first + 1);
}

std::int32_t order(const std::string &a, const std::string &b)
{
    const auto [in_a, in_b] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return in_a == a.end() || in_b == b.end()
               ? static_cast<std::int32_t>(std::ssize(a) - std::ssize(b))
               : static_cast<std::uint8_t>(*in_a) - static_cast<std::uint8_t>(*in_b);
}

TEST(string, does_what_the_model_does)
{
    qek_test::random_numbers random;
    test_string s, t;
    model m, n;
    // The present text; a text that is given with the length `told`, and what is meant by it.
    std::string text, given, meant;
    std::int32_t told = 0, at = 0, count = 0;
    bool is_inside = false;
    std::uint8_t ch = 0;
    char letter = 0;
    const auto compared = [&](const std::string &a, const std::string &b) {
        return told == 0 ? !a.empty() : a.empty() ? -!b.empty() : order(a, b);
    };
    const auto index = [](std::int32_t start, std::size_t found) {
        return found == std::string::npos ? -1 : start + static_cast<std::int32_t>(found);
    };
    const std::function<void()> calls[] = {
        [&] { EXPECT_EQ(qek_string_expand(&s, at % 99), m.expand(at % 99)); },
        [&] { qek_string_shrink(&s, count), m.close(count); },
        [&] { qek_string_copy(&s, nullptr, told), m.close(0); },
        [&] { qek_string_copy(&s, given.data(), told), m.set(meant); },
        [&] { qek_string_copy_char(&s, ch), m.set(ch == 0 ? ""s : ""s + letter); },
        [&] { qek_string_append(&s, nullptr, count); },
        [&] { qek_string_append(&s, given.data(), told), m.set(text + meant); },
        [&] { qek_string_append_char(&s, ch), m.set(text + letter); },
        [&] {
            EXPECT_EQ(qek_string_insert(&s, at, nullptr, -1), 0);
            EXPECT_EQ(qek_string_insert(&s, at, given.data(), told),
                      is_inside && !meant.empty() && m.set(text.insert(unsign(at), meant)));
        },
        [&] {
            count = is_inside ? std::min(count, m.length - at) : count;
            EXPECT_EQ(qek_string_update(&s, at, count, nullptr, -1), 0);
            EXPECT_EQ(qek_string_update(&s, at, count, told == 0 ? nullptr : given.data(), told),
                      is_inside && count >= 0 &&
                          m.set(text.replace(unsign(at), unsign(count), meant)));
        },
        [&] {
            if (at >= 0 && count >= 0) {
                qek_string_delete(&s, at, count);
                is_inside ? m.set(text.erase(unsign(at), unsign(count))) : m.close(at);
            }
        },
        [&] { qek_string_left(&s, count), count < 0 || m.set(part(text, 0, count)); },
        [&] { qek_string_mid(&s, at, count), at < 0 || m.set(part(text, at, count)); },
        [&] { qek_string_right(&s, count), m.set(last_part(text, count)); },
        [&] { qek_string_left_string(&s, count, &t), n.set(part(text, 0, count)); },
        [&] { qek_string_mid_string(&s, at, count, &t), n.set(part(text, at, count)); },
        [&] { qek_string_right_string(&s, count, &t), n.set(last_part(text, count)); },
        [&] { qek_string_clone(&s, &t), n.expand(m.capacity) && n.set(text); },
        [&] {
            qek_string_term(&t), n = {"", 0, 0, n.is_starved};
        },
        [&] { qek_string_swap(&s, &t), std::swap(m, n); },
        [&] { EXPECT_EQ(qek_string_trim(&s), trimmed(text) != text && m.set(trimmed(text))); },
        [&] { qek_string_make_lower(&s), m.set(mapped(text, std::tolower)); },
        [&] { qek_string_make_upper(&s), m.set(mapped(text, std::toupper)); },
        [&] {
            qek_string_zero(&s, at, count);
            if (at >= 0 && at <= m.capacity && count <= m.capacity - at) {
                std::fill_n(m.buffer.begin() + at, std::max(count, 0), '\0');
            }
        },
        [&] {
            const bool is_byte = at >= 0 && at < m.capacity;
            char &byte = is_byte ? m.buffer[unsign(at)] : letter;
            EXPECT_EQ(qek_string_get_at(&s, at), is_byte ? std::uint8_t(byte) : 0xFF);
            if (at != m.length) { // the terminator
                qek_string_set_at(&s, at, ch), byte = letter;
            }
        },
        [&] {
            EXPECT_EQ(qek_string_compare(&s, given.data(), told), compared(text, meant));
            EXPECT_EQ(qek_string_icompare(&s, given.data(), told),
                      compared(mapped(text, std::tolower), mapped(meant, std::tolower)));
            EXPECT_EQ(qek_string_compare(&s, nullptr, told), !text.empty());
            EXPECT_EQ(qek_string_icompare(&s, nullptr, told), !text.empty());
        },
        [&] {
            const std::string rest = part(text, at, most);
            // With the length 0 the first byte is sought, also in the terminator.
            const auto found = rest.empty() ? rest.npos
                               : told == 0  ? (rest + '\0').find(letter)
                               : told < 0   ? std::string(rest.c_str()).find(meant)
                                            : rest.find(meant);
            EXPECT_EQ(qek_string_find_pos(&s, given.data(), told, at), index(at, found));
            EXPECT_TRUE(at != 0 || qek_string_find(&s, given.data(), told) == index(0, found));
            EXPECT_EQ(qek_string_find(&s, nullptr, told), -1);
        },
        [&] {
            const auto found = [&](std::int32_t start, std::size_t hit) {
                return ch == 0 ? -1 : index(start, hit);
            };
            EXPECT_EQ(qek_string_find_char_pos(&s, ch, at),
                      found(at, part(text, at, most).find(letter)));
            EXPECT_EQ(qek_string_find_char(&s, ch), found(0, text.find(letter)));
            EXPECT_EQ(qek_string_reverse_find(&s, ch), found(0, text.rfind(letter)));
            EXPECT_EQ(qek_string_is_empty(&s), text.empty());
        }};
    for (int step = 0; step < 20000 && !HasFailure(); ++step) {
        text = m.buffer.substr(0, unsign(m.length));
        given.resize(unsign(random.between(0, random.one_of({1, 3, 20}))));
        for (char &each : given) {
            each = random.one_of({' ', '\t', '\n', '\r', '\0', '\v', 'a', 'b', 'B', '\x80'});
        }
        letter = given.c_str()[0];
        ch = static_cast<std::uint8_t>(letter);
        told = random.one_in(2)   ? random.between(least, -1)
               : random.one_in(8) ? 0
                                  : static_cast<std::int32_t>(given.size());
        meant = told < 0 ? given.c_str() : given.substr(0, unsign(told));
        for (std::int32_t *number : {&at, &count}) {
            *number = random.one_in(8) ? random.one_of({least, most, m.capacity})
                                       : random.between(-2, m.length + 2);
        }
        is_inside = at >= 0 && at <= m.length;
        m.is_starved = n.is_starved = random.one_in(3);
        const auto chosen = random.next() % std::size(calls);
        const allocations faults(m.is_starved ? 1 : 0);
        calls[chosen]();
        EXPECT_LE(faults.count(), 1);
        for (const auto &[string, expected] : {std::pair(&s, &m), {&t, &n}}) {
            const auto *buffer = reinterpret_cast<const char *>(string->data);
            EXPECT_EQ(std::string(buffer, buffer == nullptr ? 0 : unsign(string->capacity) + 1),
                      expected->buffer)
                << "call " << chosen << ", step " << step;
            EXPECT_EQ(string->length, expected->length);
            EXPECT_EQ(string->capacity, expected->capacity);
        }
    }
}

} // namespace
