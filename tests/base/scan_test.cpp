// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/scan.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace {

namespace scan = qek::scan;
using qek_test::random_numbers;
using bytes = std::vector<std::uint8_t>;

std::int64_t found_in(const bytes &hay, const bytes &needle, int unit)
{
    for (auto at = hay.begin(); hay.end() - at >= std::ssize(needle); at += unit) {
        if (std::equal(needle.begin(), needle.end(), at)) {
            return at - hay.begin();
        }
    }
    return -1;
}

std::uint8_t lowered(std::uint8_t ch)
{
    return ch >= 'A' && ch <= 'Z' ? static_cast<std::uint8_t>(ch + 32) : ch;
}

void change_one(random_numbers &random, bytes &in, int by)
{
    std::uint8_t &changed = in[random.below(in.size())];
    changed = static_cast<std::uint8_t>(changed ^ by);
}

// The functions of a set, on blocks of exactly the size told, against plain loops.
void compare_with_loops(random_numbers &random, const scan::set &by)
{
    const auto in_blocks = [&](std::int64_t size) { return size - size % by.width; };
    const int longest = random.one_in(500) ? 80'000 : random.one_of({40, 400});
    bytes a(static_cast<std::size_t>(random.between(2, longest)));
    const bool has_letters = random.one_in(2);
    std::generate(a.begin(), a.end(), [&] {
        return static_cast<std::uint8_t>(has_letters ? random.between(0, 255)
                                                     : random.one_of({'a', 'a', 'a', 'b'}));
    });
    const std::int64_t size = std::ssize(a);

    bytes b = a;
    change_one(random, b, random.one_of({0, 1, 0x20}));
    const auto same = std::mismatch(a.begin(), a.end(), b.begin()).first - a.begin();
    const auto alike = std::mismatch(a.begin(), a.end(), b.begin(),
                                     [](auto x, auto y) { return lowered(x) == lowered(y); })
                           .first -
                       a.begin();
    if (size >= by.width) {
        EXPECT_EQ(by.mismatch(a.data(), b.data(), size), same);
    }
    EXPECT_EQ(by.equal_but_for_case(a.data(), b.data(), size), in_blocks(alike));
    const std::int64_t turned = by.turn_case('A', b.data(), size);
    EXPECT_EQ(turned, in_blocks(size));
    EXPECT_TRUE(std::all_of(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(turned),
                            [](auto ch) { return lowered(ch) == ch; }));

    for (const int unit : {1, 2}) {
        const bytes hay(a.begin(), a.end() - std::ssize(a) % unit);
        const auto units = static_cast<int>(hay.size()) / unit;
        const int count = random.between(2, std::max(2, random.one_of({units, 5})));
        const int told = units - random.one_of({0, 1}); // what stands behind is not found
        if (told < count) {
            continue;
        }
        const int from = random.one_of({random.between(0, units - count), units - count}) * unit;
        bytes needle(hay.begin() + from, hay.begin() + from + count * unit);
        change_one(random, needle, random.one_of({0, 0, 3}));
        const int size_told = told * unit;
        const std::int64_t place = found_in({hay.begin(), hay.begin() + size_told}, needle, unit);
        if ((told - count + 1) * unit >= by.width) {
            EXPECT_EQ(scan::find_by(by.next_sighting, hay.data(), size_told, needle.data(),
                                    std::ssize(needle), unit),
                      place);
        }
        EXPECT_EQ(scan::find(hay.data(), size_told, needle.data(), std::ssize(needle), unit),
                  place);
    }
}

TEST(scan, finds_and_compares_as_plain_loops_do_in_each_set)
{
    if constexpr (scan::is_there) {
        random_numbers random;
        for (int round = 0; random.goes_on(round, 20000) && !HasFailure(); ++round) {
            compare_with_loops(random, scan::by_16());
            compare_with_loops(random, scan::best());
        }
    }
}

TEST(scan, takes_no_table_for_plain_that_differs_anywhere_in_the_low_8_bits)
{
    if constexpr (scan::is_there) {
        for (const std::uint8_t first : {std::uint8_t{'A'}, std::uint8_t{'a'}}) {
            std::int32_t table[256];
            for (int ch = -128; ch < 128; ++ch) {
                table[ch + 128] = (ch >= first && ch < first + 26 ? ch ^ 32 : ch) ^ (ch & 3) << 8;
            }
            const auto is_plain = [&] { return scan::turns_plain_letters(table + 128, first); };
            EXPECT_TRUE(is_plain());
            for (int &entry : table) {
                const int bit = 1 << (&entry - table) % 8;
                entry ^= bit;
                EXPECT_FALSE(is_plain()) << &entry - table;
                entry ^= bit;
            }
        }
    }
}

} // namespace
