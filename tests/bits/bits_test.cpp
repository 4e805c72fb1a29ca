// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "support/allocations.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace {

TEST(bits, of_a_byte_are_numbered_from_the_most_significant)
{
    for (const unsigned byte : {0x00U, 0xFFU, 0xA5U}) {
        for (const unsigned bit : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 31U, 32U, 0x80000000U}) {
            const unsigned mask = bit < 8 ? 0x80U >> bit : 0;
            const auto given = static_cast<uint8_t>(byte);
            EXPECT_EQ(qek_bits_get(given, bit), byte & mask);
            EXPECT_EQ(qek_bits_set(given, bit, -1), byte | mask);
            EXPECT_EQ(qek_bits_set(given, bit, 0), byte & ~mask);
        }
    }
}

TEST(bits, grow_by_1024_bytes_or_to_the_byte_needed)
{
    qek_bits bits{nullptr, 9, 77}, target{nullptr, 0, 0};
    qek_bits_insert(&bits, 3, 1); // into bytes that are not there
    EXPECT_TRUE(bits.data == nullptr && bits.size == 9 && qek_bits_find(&bits, 3) == 0);
    qek_bits_init(&bits);
    qek_bits_zero(&bits);
    EXPECT_EQ(qek_bits_expand(&bits, 0), 1);
    EXPECT_TRUE(bits.data == nullptr && bits.size == 0 && bits.size_copy == 77);
    for (const auto &[bit, size] : {std::pair(0U, 1024U),
                                    {8191, 1024},
                                    {8192, 2048},
                                    {40000, 5001},
                                    {48192, 6025},
                                    {56392, 7050}}) {
        EXPECT_EQ(qek_bits_find(&bits, bit), 0U);
        qek_bits_insert(&bits, bit, 0); // clearing grows it too
        EXPECT_EQ(bits.size, size);
    }
    EXPECT_EQ(qek_bits_expand(&bits, 7051), 1);
    EXPECT_EQ(bits.size, 8074U);
    qek_bits_swap(&bits, &target); // one way
    EXPECT_TRUE(target.data == bits.data && target.size == 8074 && target.size_copy == 8074);
    EXPECT_TRUE(bits.size == 8074 && bits.size_copy == 77);
    qek_bits_term(&target);
    EXPECT_TRUE(target.data == nullptr && target.size == 0 && target.size_copy == 8074);
}

TEST(bits, are_those_of_a_set_of_numbers)
{
    qek_test::random_numbers random;
    std::vector<bool> model(71'000);
    qek_bits bits;
    qek_bits_init(&bits);
    for (int step = 0; random.goes_on(step, 300); ++step) {
        const auto bit = random.below(70'000);
        const auto on = random.one_of({1, -1, 256, 0});
        const auto size = bits.size;
        const qek_test::allocations failing(random.one_in(4) ? 1 : 0);
        qek_bits_insert(&bits, bit, on);
        if (failing.any_failed()) {
            ASSERT_EQ(bits.size, size);
        } else {
            model[bit] = on != 0;
        }
        ASSERT_EQ(qek_bits_find(&bits, bit), model[bit] ? 0x80U >> bit % 8 : 0);
        for (uint32_t each = step % 50 == 49 ? 0 : 70'900; each < 71'000; ++each) {
            ASSERT_EQ(qek_bits_find(&bits, each), model[each] ? 0x80U >> each % 8 : 0);
        }
    }
    qek_bits_zero(&bits);
    EXPECT_EQ(std::count(bits.data, bits.data + bits.size, 0), bits.size);
    qek_bits_term(&bits);
    qek_bits_term(&bits);
}

} // namespace
