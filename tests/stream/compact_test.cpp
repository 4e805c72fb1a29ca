// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <bit>
#include <limits>
#include <sstream>
#include <string>
#include <utility>

namespace {

constexpr auto lowest = std::numeric_limits<int>::min();
constexpr auto highest = std::numeric_limits<int>::max();

template <typename Value, auto Length, auto Deflate, auto Inflate> struct code {
    std::uint64_t carried; // the bits of a value that survive
    std::uint64_t at_end;  // what a read at the end answers
    bool strict;           // a write that does not fit, and a read that is cut, stop

    void deflates(Value value, int length, int at, const std::string &after, int behind) const
    {
        qek_stream found{};
        qek_stream_copy(&found, std::string(size_t(length), '.').data(), length);
        Deflate(&found, &at, value);
        EXPECT_EQ(std::string(found.data, found.data + length), after);
        EXPECT_EQ(at, behind);
        qek_stream_term(&found);
    }

    void inflates(const std::string &bytes, int length, int at, std::uint64_t value,
                  int behind) const
    {
        qek_stream found{};
        qek_stream_copy(&found, bytes.data(), int(bytes.size()));
        qek_stream_shrink(&found, length);
        EXPECT_EQ(Inflate(&found, &at), value) << testing::PrintToString(bytes) << " of " << length;
        EXPECT_EQ(at, behind) << testing::PrintToString(bytes) << " of " << length;
        qek_stream_term(&found);
    }

    // The table is of values and the bytes of their code, both in hexadecimal.
    void check_table(std::istringstream table) const
    {
        std::uint64_t given = 0;
        for (std::string digits; table >> std::hex >> given >> digits;) {
            const auto value = static_cast<Value>(given);
            const int size = int(digits.size() / 2);
            std::string bytes;
            for (int at = 0; at < size; ++at) {
                bytes += char(std::stoi(digits.substr(size_t(2 * at), 2), nullptr, 16));
            }
            EXPECT_EQ(Length(value), size) << given;
            deflates(value, size + 2, 1, "." + bytes + ".", 1 + size);
            inflates("." + bytes, 1 + size, 1, value & carried, 1 + size);
            for (const int at : {1, size, highest - 8, highest, lowest, -1}) {
                const int behind = int(std::int64_t{at} + size); // wraps
                deflates(value, size, at, std::string(size_t(size), '.'), strict ? at : behind);
                inflates(bytes, at == 1 ? 1 : size, at, at_end, at);
            }
            for (int cut = 1; cut < size; ++cut) {
                inflates(bytes, cut, 0, strict ? at_end : value & carried, strict ? 1 : size);
            }
        }
        inflates("", 0, 0, at_end, 0);
        deflates(1, 0, 0, "", strict ? 0 : 1);
    }

    // Any first byte, also of a form that is not the shortest, up to 10 bytes in front of the end
    // of the block: nothing behind it is read. `form` tells the size and the value bits of the
    // byte.
    template <typename Form> void check_any_bytes(Form form) const
    {
        qek_test::random_numbers random;
        for (const int number : random.each_below(256 * 10)) {
            const int left = number % 10 + 1;
            const auto first = static_cast<std::uint8_t>(number / 10);
            const auto [size, value_bits] = form(first);
            std::uint64_t value = first & value_bits;
            for (int at = 1; at < size; ++at) {
                value = value << 8 | (at < left);
            }
            const bool cut = strict && size > left;
            const std::string bytes = std::string(size_t(16 - left), '.') + char(first) +
                                      std::string(size_t(left - 1), '\1');
            inflates(bytes, 16, 16 - left, cut ? at_end : value, 16 - left + (cut ? 1 : size));
        }
    }
};

TEST(compact, word_code)
{
    const code<uint16_t, qek_stream_deflate_word_length, qek_stream_deflate_word,
               qek_stream_inflate_word>
        word{0x7FFF, 0, false};
    word.check_table(
        std::istringstream("0 00  7F 7F  80 8080  1234 9234  7FFF FFFF  8000 8000  FFFF FFFF"));
    word.check_any_bytes([](int first) { return std::pair(1 + (first >> 7), 0x7F); });
}

TEST(compact, dword_code)
{
    const code<uint32_t, qek_stream_deflate_dword_length, qek_stream_deflate_dword,
               qek_stream_inflate_dword>
        dword{0x3FFFFFFF, 0, false};
    dword.check_table(std::istringstream(
        "0 00  3F 3F  40 4040  3FFF 7FFF  4000 804000  3FFFFF BFFFFF  400000 C0400000 "
        "12345678 D2345678  3FFFFFFF FFFFFFFF  40000000 C0000000  80000000 C0000000 "
        "FFFFFFFF FFFFFFFF"));
    dword.check_any_bytes([](int first) { return std::pair(1 + (first >> 6), 0x3F); });
}

TEST(compact, lword_code)
{
    const code<uint64_t, qek_stream_deflate_lword_length, qek_stream_deflate_lword,
               qek_stream_inflate_lword>
        lword{~uint64_t{0}, ~uint64_t{0}, true};
    lword.check_table(std::istringstream(
        "0 00  7F 7F  80 8080  3FFF BFFF  4000 C00040  123456 D25634  1FFFFF DFFFFF "
        "200000 E0200000  1234567 E1236745  FFFFFFF EFFFFFFF  10000000 F000000010 "
        "723456789 F789674523  7FFFFFFFF F7FFFFFFFF  800000000 F80800000000 "
        "23456789ABC FA34BC9A7856  3FFFFFFFFFF FBFFFFFFFFFF  40000000000 FC000400000000 "
        "123456789ABCD FD4523CDAB8967  1FFFFFFFFFFFF FDFFFFFFFFFFFF "
        "2000000000000 FE02000000000000  123456789ABCDE FE125634DEBC9A78 "
        "FFFFFFFFFFFFFF FEFFFFFFFFFFFFFF  100000000000000 FF0000000000000001 "
        "123456789ABCDEF0 FFF0DEBC9A78563412  FFFFFFFFFFFFFFFF FFFFFFFFFFFFFFFFFF"));
    lword.check_any_bytes([](std::uint8_t first) {
        return std::pair(1 + std::countl_one(first), 0x7F >> std::countl_one(first));
    });
}

} // namespace
