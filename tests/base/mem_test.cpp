// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "support/allocations.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

namespace {

using qek_test::random_numbers;

constexpr auto lowest = std::numeric_limits<std::int32_t>::min();
constexpr auto highest = std::numeric_limits<std::int32_t>::max();

using arena = std::array<std::uint8_t, 160>;

arena numbered()
{
    arena bytes;
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

void told_copy(std::uint8_t *dest, const std::uint8_t *src, int size)
{
    for (int at = 0, step = 4; at < size; at += step) {
        step = size - at < 4 ? 1 : 4;
        std::memmove(dest + at, src + at, std::size_t(step));
    }
}

void told_move(std::uint8_t *dest, std::uint8_t *src, std::int32_t size)
{
    if (std::abs(dest - src) < 4) {
        std::memmove(dest, src, static_cast<std::size_t>(size));
        return;
    }
    told_copy(dest, src, size);
    const bool overlap = std::abs(dest - src) < size;
    std::uint8_t *vacated = overlap && src > dest ? dest + size : src;
    std::fill_n(vacated, overlap ? std::abs(dest - src) : size, std::uint8_t{0});
}

TEST(mem, copies_moves_and_zeroes_at_every_distance_size_and_alignment)
{
    random_numbers random;
    for (const std::int32_t src : random.each_between(48, 51)) {
        for (const std::int32_t dest : random.each_between(src - 44, src + 44)) {
            for (const std::int32_t size : random.each_between(0, 41)) {
                const auto check = [&](auto call, auto told) {
                    arena found = numbered();
                    arena expected = numbered();
                    call(&found[std::size_t(dest)], &found[std::size_t(src)], size);
                    told(&expected[std::size_t(dest)], &expected[std::size_t(src)], size);
                    ASSERT_EQ(found, expected) << src << "->" << dest << " of " << size;
                };
                check(qek_mem_copy, told_copy);
                check(qek_mem_move, told_move);
                check([](auto *to, auto *, auto count) { qek_mem_zero(to, count); },
                      [](auto *to, auto *, auto count) { std::fill_n(to, count, 0); });
                ASSERT_FALSE(HasFailure());
            }
        }
    }
}

TEST(mem, searches_as_a_naive_scan_does)
{
    random_numbers random;
    for (int step = 0; random.goes_on(step, 30000); ++step) {
        const bool is_long = random.one_in(8);
        std::vector<char> text(is_long ? 9 + random.below(70) : 9), needle(is_long ? 40 : 4);
        for (auto *block : {&text, &needle}) {
            for (char &each : *block) {
                each = random.one_of({'\0', '\xFF'});
            }
        }
        if (text.size() > needle.size() && random.one_in(2)) { // one that is there
            std::copy_n(text.end() - std::ssize(needle), needle.size(), needle.begin());
        }
        const char *hay = text.data() + 1;
        const int size = random.between(0, int(text.size()) - 2);
        const auto byte = static_cast<std::uint8_t>(needle[0]);
        const std::string range(hay, hay + size);
        ASSERT_EQ(qek_mem_chr(hay, size, byte), int(range.find(needle[0]))) << step;
        ASSERT_EQ(qek_mem_rchr(hay, size, byte), int(range.rfind(needle[0]))) << step;
        ASSERT_EQ(qek_mem_str(hay, size, needle.data(), 0),
                  int((range + hay[size]).find(needle[0])));
        for (std::size_t sought = 1; sought <= needle.size(); ++sought) {
            const auto hit = range.find(needle.data(), 0, sought);
            ASSERT_EQ(qek_mem_str(hay, size, needle.data(), int(sought)), int(hit)) << step;
        }
    }
    for (const int size : {-1, lowest}) {
        EXPECT_EQ(qek_mem_chr("a", size, 'a'), -1);
        EXPECT_EQ(qek_mem_rchr("a", size, 'a'), -1);
        EXPECT_EQ(qek_mem_str("a", size, "a", 0), -1);
    }
}

TEST(mem, orders_by_the_first_difference_at_every_place_and_alignment)
{
    random_numbers random;
    for (const auto shift : random.each_below<std::size_t>(64)) {
        for (const auto place : random.each_below<std::size_t>(26)) {
            const auto size = static_cast<std::int32_t>(place) + 2;
            std::vector<std::uint8_t> bytes_a(shift % 8 + place + 2,
                                              0x55); // blocks end with the bytes
            std::vector<std::uint8_t> bytes_b(shift / 8 + place + 2, 0x55);
            std::uint8_t *const a = bytes_a.data() + shift % 8;
            std::uint8_t *const b = bytes_b.data() + shift / 8;
            ASSERT_EQ(qek_mem_cmp(a, size, b, size), 0);
            ASSERT_EQ(qek_mem_cmp(a, size, b, size - 2), 2);
            a[place] = b[place + 1] = 0x90;
            b[place] = a[place + 1] = 0x60; // the next byte disagrees
            ASSERT_EQ(qek_mem_cmp(a, size, b, size - 1), 0x30);
            ASSERT_EQ(qek_mem_cmp(b, size - 1, a, size), -0x30);
            ASSERT_EQ(qek_mem_cmp(a, size - 2, b, size), -2);
        }
    }
}

TEST(mem, orders_long_runs_by_the_first_difference)
{
    random_numbers random;
    for (const int size : {63, 64, 65, 4095, 4096, 4097, 4200, 13000}) {
        for (int round = 0; random.goes_on(round, 20); ++round) {
            const auto place = random.below(static_cast<std::uint64_t>(size));
            std::string a(static_cast<std::size_t>(size), 'x'), b = a;
            ASSERT_EQ(qek_mem_cmp(a.data(), size, b.data(), size), 0);
            for (char &ch : a) {
                ch = random.one_of({'x', 'X', '@', '[', '\xE1', 'A', 'Z'});
            }
            b = a;
            for (char &ch : b) {
                ch = random.one_in(2)
                         ? ch
                         : static_cast<char>(std::tolower(static_cast<std::uint8_t>(ch)));
            }
            ASSERT_EQ(qek_mem_icmp(a.data(), size, b.data(), size), 0) << place;
            b = random.one_in(2) ? b : a;
            a[place] = random.one_of({'A', '['}), b[place] = random.one_of({'{', 'b'});
            const auto lowered = [&](const auto &text) {
                return std::tolower(static_cast<std::uint8_t>(text[place]));
            };
            ASSERT_EQ(qek_mem_icmp(a.data(), size, b.data(), size), lowered(a) - lowered(b));
            b = a;
            a[place] = 'A', b[place] = 'a';
            ASSERT_EQ(qek_mem_cmp(a.data(), size, b.data(), size), 'A' - 'a') << place;
            ASSERT_EQ(qek_mem_icmp(a.data(), size, b.data(), size - 1), 1) << place;
        }
    }
}

TEST(mem, orders_every_pair_of_bytes_and_then_the_sizes)
{
    const auto lower = [](int ch) { return ch >= 'A' && ch <= 'Z' ? ch + 32 : ch; };
    random_numbers random;
    for (const int a : random.each_below(256)) {
        for (const int b : random.each_below(256)) {
            const std::uint8_t left[] = {static_cast<std::uint8_t>(a), 'x'};
            const std::uint8_t right[] = {static_cast<std::uint8_t>(b), 'Z'};
            ASSERT_EQ(qek_mem_cmp(left, 2, right, 2), a == b ? 'x' - 'Z' : a - b);
            const int ordered = lower(a) - lower(b);
            ASSERT_EQ(qek_mem_icmp(left, 2, right, 2), ordered == 0 ? 'x' - 'z' : ordered);
        }
    }
    const std::int32_t table[][3] = {
        {3, 6, -3}, {6, 3, 3}, {0, 0, 0}, {-1, 2, -3}, {lowest, 1, highest}};
    for (const auto &[a_size, b_size, result] : table) {
        EXPECT_EQ(qek_mem_cmp("abcdef", a_size, "abcxyz", b_size), result);
        EXPECT_EQ(qek_mem_icmp("abcDEF", a_size, "ABCxyz", b_size), result);
    }
}

TEST(heap, hands_calls_to_the_runtime)
{
    const qek_test::allocations second_fails(2);
    void *block = qek_malloc(7);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(qek_malloc(0xFFFFFFFF), nullptr);
    EXPECT_THAT(second_fails.sizes(), testing::ElementsAre(7U, 0xFFFFFFFFU));
    qek_free(block);
    qek_free(nullptr);
}

} // namespace
