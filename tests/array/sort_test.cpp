// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "array/pairs.h"
#include "array/reference_sort.h"
#include "qek_std.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <bit>
#include <cstring>
#include <functional>
#include <numeric>
#include <string>
#include <string_view>

namespace {

using qek_test::reference_sort;
using words = std::vector<qek_word>;

// A word has a key in front, and behind it a mark that tells it from its equals.
constexpr int mark_bits = 17;

std::uint64_t asked = 0; // a digest of what callbacks were called with, in order
bool no_order = false;   // answers that contradict each other

std::int32_t compare(qek_word x, qek_word y)
{
    asked = (asked * 31 + x) * 31 + y;
    const auto left = x >> mark_bits, right = y >> mark_bits;
    return no_order       ? static_cast<std::int32_t>(x * 7 + y * 13) % 3 - 1
           : left < right ? -3
                          : static_cast<std::int32_t>(left - right);
}

std::int32_t compare_words(qek_word x, qek_word y, std::int32_t extra)
{
    EXPECT_EQ(extra, 0);
    return compare(x, y);
}

std::int32_t compare_in_context(void *context, qek_word x, qek_word y, std::int32_t extra)
{
    EXPECT_EQ(context, &asked);
    return compare_words(x, y, extra);
}

std::int32_t size_of(const auto &items) { return static_cast<std::int32_t>(items.size()); }

// Call for call and slot for slot: descending with a context and ascending without one.
void check(const words &given)
{
    for (const int up : {0, -1}) {
        words expected = given;
        asked = 0;
        const auto depth = reference_sort(expected, size_of(given), up != 0, compare);
        const auto expected_calls = std::exchange(asked, 0);
        ASSERT_LE(depth, std::bit_width(given.size()));
        words sorted = given;
        qek_arrays array{sorted.data(), size_of(given), size_of(given), nullptr, 0, 2};
        up != 0 ? qek_arrays_qsort(&array, up, compare_words)
                : qek_arrays_qsort_x(&array, &asked, up, compare_in_context);
        ASSERT_TRUE(sorted == expected && asked == expected_calls && array.reversed == 2)
            << given.size() << " words, ascending " << up;
    }
}

TEST(sort, all_short_arrays_of_three_keys)
{
    for (std::size_t length = 0, all = 1; length < 10; ++length, all *= 3) {
        for (std::size_t number = 0; number < all; ++number) {
            words given;
            for (std::size_t rest = number; given.size() < length; rest /= 3) {
                given.push_back(rest % 3 << mark_bits | given.size());
            }
            ASSERT_NO_FATAL_FAILURE(check(given)) << number;
        }
    }
}

TEST(sort, long_arrays)
{
    qek_test::random_numbers random;
    for (const std::size_t size : {8U, 9U, 10U, 17U, 30U, 31U, 100U, 1000U, 1001U, 100000U}) {
        const std::function<std::size_t(std::size_t)> shapes[] = {
            [&](std::size_t) { return random.below(32768); },
            [&](std::size_t at) { return at * 8 / (size / 4096 + 1); },
            [&](std::size_t at) { return (size - at) * 8 / (size / 4096 + 1); },
            [&](std::size_t) { return 5; },
            [&](std::size_t at) { return std::min(at, size - at) % 32768; },
            [&](std::size_t) { return random.below(4); },
        };
        for (const auto &key : shapes) {
            words given(size);
            for (std::size_t at = 0; at < size; ++at) {
                given[at] = key(at) << mark_bits | at;
            }
            ASSERT_NO_FATAL_FAILURE(check(given));
            no_order = size <= 1001; // answers that contradict each other, in the same steps
            ASSERT_NO_FATAL_FAILURE(no_order ? check(given) : void());
            no_order = false;
        }
    }
}

// The families that compare their keys themselves take other steps, and must end as if they had
// taken the literal ones: with the same slot at each place, also among equals.
struct keyed_slot {
    std::uint64_t key;
    std::string text;
    std::size_t mark;
};

template <typename Key> std::int32_t order_of(const Key &x, const Key &y)
{
    return x < y ? -1 : static_cast<std::int32_t>(y < x);
}

template <typename Array, typename Key>
void check_numbers(const std::vector<keyed_slot> &given, const words &expected, int up,
                   void (*sort)(Array *, std::int32_t))
{
    std::vector<std::remove_pointer_t<decltype(Array::slots)>> slots;
    for (const auto &slot : given) {
        slots.push_back({static_cast<Key>(slot.key), slot.mark});
    }
    Array array{slots.data(), size_of(slots), size_of(slots), nullptr, 0, 0};
    sort(&array, up);
    for (std::size_t at = 0; at < slots.size(); ++at) {
        ASSERT_EQ(slots[at].value, expected[at]) << "of " << given.size() << " at " << at;
    }
}

void check_texts(const std::vector<keyed_slot> &given, const words &expected, int up)
{
    qek_array array;
    qek_array_init(&array, 0);
    for (const auto &slot : given) {
        qek_array_append(&array, slot.text.data(), size_of(slot.text), slot.mark);
    }
    qek_array_qsort(&array, up);
    for (std::size_t at = 0; at < given.size(); ++at) {
        const auto *found = array.slots + at;
        const auto &text = given[expected[at]].text;
        ASSERT_EQ(found->value, expected[at]) << "of " << given.size() << " at " << at;
        ASSERT_EQ(std::memcmp(array.keys.data + found->key_offset, text.data(), text.size()), 0);
    }
    qek_array_term(&array);
}

void check_bare(const std::vector<keyed_slot> &given, int up)
{
    std::vector<std::uint32_t> keys;
    qek_arrayt array;
    qek_arrayt_init(&array);
    for (const auto &slot : given) {
        keys.push_back(static_cast<std::uint32_t>(slot.key));
        qek_arrayt_append(&array, keys.back());
    }
    std::sort(keys.begin(), keys.end(), [=](auto x, auto y) { return up != 0 ? x < y : y < x; });
    qek_arrayt_qsort(&array, up, 0);
    for (std::size_t at = 0; at < keys.size(); ++at) {
        ASSERT_EQ(qek_arrayt_get_at(&array, static_cast<std::int32_t>(at)), keys[at]) << at;
    }
    qek_arrayt_term(&array);
}

template <typename Key> words literally(const std::vector<keyed_slot> &given, int up, Key key)
{
    words marks(given.size());
    std::iota(marks.begin(), marks.end(), 0);
    reference_sort(marks, size_of(marks), up != 0,
                   [&](auto x, auto y) { return order_of(key(given[x]), key(given[y])); });
    return marks;
}

TEST(sort, keys_of_its_own_end_where_the_literal_steps_put_them)
{
    qek_test::random_numbers random;
    for (const std::size_t size : {2U, 9U, 33U, 256U, 257U, 390U, 1024U, 1025U, 3000U, 20000U}) {
        const auto noise = [&](std::size_t below) { return random.below(below); };
        const std::function<std::uint64_t(std::size_t)> shapes[] = {
            [&](std::size_t) { return std::uint64_t{noise(1U << 31)} << 33 | noise(1U << 31); },
            [&](std::size_t at) { return at; },
            [&](std::size_t at) { return ~at; },
            [&](std::size_t at) { return at / 3; },
            [&](std::size_t at) { return (size - at) / 3; },
            [&](std::size_t at) { return std::min(at, size - at); },
            [&](std::size_t at) { return at % 2 * 0x10000000 + at; },
            [&](std::size_t at) { return at + noise(20) * noise(2) * noise(2); },
            [&](std::size_t) { return noise(size); },
            [&](std::size_t) { return noise(17); },
            [&](std::size_t) { return noise(2); },
            [&](std::size_t) { return 0xFFFFFFFFU; },
        };
        for (const auto &shape : shapes) {
            const char *const openings[] = {"", "key-", "a long opening that all keys have "};
            const std::string opening = openings[noise(3)];
            std::vector<keyed_slot> given(size);
            for (std::size_t at = 0; at < size; ++at) {
                const auto key = shape(at);
                const std::string digits = std::to_string(key % 100000000);
                given[at] = {key, opening + (key % 5 ? digits : digits + '\0' + digits), at};
                given[at].text.resize(key % 13 == 4 ? 0 : given[at].text.size());
            }
            for (const int up : {0, 1}) {
                ASSERT_NO_FATAL_FAILURE((check_numbers<qek_arrayd, std::uint32_t>(
                    given,
                    literally(given, up,
                              [](auto &slot) { return static_cast<std::uint32_t>(slot.key); }),
                    up, qek_arrayd_qsort)));
                ASSERT_NO_FATAL_FAILURE((check_numbers<qek_arrayx, std::uint64_t>(
                    given, literally(given, up, [](auto &slot) { return slot.key; }), up,
                    qek_arrayx_qsort)));
                ASSERT_NO_FATAL_FAILURE(check_texts(
                    given,
                    literally(given, up, [](auto &slot) { return std::string_view(slot.text); }),
                    up));
                ASSERT_NO_FATAL_FAILURE(check_bare(given, up));
            }
        }
    }
}

#if defined(QEK_CHOOSES_AT_LOAD)
TEST(sort, places_of_pairs_are_listed_alike_on_every_processor)
{
    using namespace qek::array;
    qek_test::random_numbers random;
    for (int step = 0; step < 500; ++step) {
        std::vector<std::uint64_t> halves(2 * block);
        std::generate(halves.begin(), halves.end(),
                      [&] { return random.below(3) * 0x7FFFFFFF80000000U + random.below(5); });
        const pair_test test{step % 2 ? ~std::uint64_t{0} : 0xFFFFFFFF, 0 - (random.next() % 2),
                             halves[2 * random.below(block)] ^ 2, random.one_in(2)};
        const auto *first = reinterpret_cast<const std::uint8_t *>(halves.data());
        std::vector<std::uint8_t> places(block), expected(block);
        places.resize(list_pairs(first, test, 0, places.data()));
        expected.resize(list_pairs_one_by_one(first, test, 0, expected.data()));
        ASSERT_EQ(places, expected);
    }
}
#endif

TEST(sort, a_million_sorted_slots_keep_the_stacks_low)
{
    std::vector<std::uint32_t> keys(1000000);
    std::iota(keys.begin(), keys.end(), 0xFFF80000U); // on both sides of 0
    std::rotate(keys.begin(), keys.begin() + 0x80000, keys.end());
    for (const auto *given : {"against the direction", "sorted"}) {
        std::vector<qek_arrayd_entry> slots;
        for (const auto key : keys) {
            slots.push_back({key, 0});
        }
        qek_arrayd array{slots.data(), size_of(slots), size_of(slots), nullptr, 0, 0};
        qek_arrayd_qsort(&array, 0);
        const auto compare_keys = [](auto x, auto y) { return x < y ? -1 : x > y ? 1 : 0; };
        EXPECT_LE(reference_sort(keys, size_of(keys), false, compare_keys), 20);
        EXPECT_TRUE(std::equal(keys.begin(), keys.end(), slots.begin(),
                               [](auto key, const auto &slot) { return key == slot.key; }))
            << given;
        EXPECT_EQ(std::pair(keys[0], keys[999999]), std::pair(0xFFFFFFFFU, 0U));
    }
}

} // namespace
