// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "support/allocations.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>

using namespace std::string_literals;

namespace {

constexpr auto lowest = std::numeric_limits<int>::min();
constexpr auto highest = std::numeric_limits<int>::max();

// A record that holds the given bytes. The block of a stream ends with them if they are 8k.
template <typename Record, auto Copy, auto Term> struct filled : Record {
    explicit filled(const std::string &text) : Record{}
    {
        Copy(this, text.data(), int(text.size()));
    }
    filled(const filled &) = delete;
    ~filled() { Term(this); }
    std::string content() const { return {this->data, this->data + this->length}; }
};
using stream = filled<qek_stream, qek_stream_copy, qek_stream_term>;
using string = filled<qek_string, qek_string_copy, qek_string_term>;

int moved(int at, std::int64_t by) { return static_cast<int>(at + by); } // it wraps

template <auto Get, auto Set>
void check_number(const std::string &bytes, std::uint64_t given, std::uint64_t read)
{
    const int width = int(bytes.size());
    const std::string before(16, '\xEE');
    for (const int at :
         {0, 3, 16 - width, 17 - width, 16, highest - width + 1, highest, lowest, -1}) {
        const bool fits = at >= 0 && at <= 16 - width;
        stream found(before);
        int position = at;
        Set(&found, &position, static_cast<decltype(Get(&found, &position))>(given));
        EXPECT_EQ(position, moved(at, width)) << at;
        EXPECT_EQ(found.content(),
                  fits ? std::string(before).replace(size_t(at), bytes.size(), bytes) : before);
        position = at;
        EXPECT_EQ(Get(&found, &position), fits ? read : 0) << at;
        EXPECT_EQ(position, moved(at, width)) << at;
    }
    const stream none("");
    int position = 0;
    EXPECT_EQ(Get(&none, &position), 0U);
    EXPECT_EQ(position, width);
}

TEST(fields, numbers_stand_low_byte_first_and_whole_or_not_at_all)
{
    check_number<qek_stream_get_byte, qek_stream_set_byte>("\xAB", 0xAB, 0xAB);
    check_number<qek_stream_get_word, qek_stream_set_word>("\x34\x92", 0x9234, 0x9234);
    check_number<qek_stream_get_tword, qek_stream_set_tword>("\x56\x34\x92", 0xFF923456, 0x923456);
    check_number<qek_stream_get_dword, qek_stream_set_dword>("xV4\x92", 0x92345678, 0x92345678);
    check_number<qek_stream_get_xword, qek_stream_set_xword>("\xBC\x9AxV4\x92", 0xFFFF923456789ABC,
                                                             0x923456789ABC);
    check_number<qek_stream_get_lword, qek_stream_set_lword>(
        "\xEF\xCD\xAB\x89gE#\x91", 0x9123456789ABCDEF, 0x9123456789ABCDEF);
}

// A text or a stream is written as a number and a buffer, and read the same way.
template <auto Set, auto Get, auto SetNumber, auto GetNumber, typename Record>
void check_run(const std::string &bytes, const std::string &text, int start, bool no_memory)
{
    stream found(bytes);
    stream told(bytes);
    const Record run(text);
    int at = start;
    int told_at = start;
    Set(&found, &at, &run);
    SetNumber(&told, &told_at, static_cast<decltype(GetNumber(&told, &told_at))>(run.length));
    qek_stream_set_buffer(&told, &told_at, run.data, run.length);
    EXPECT_EQ(found.content(), told.content());
    EXPECT_EQ(at, told_at);

    const stream source(bytes);
    Record read("old");
    at = told_at = start;
    const auto number = static_cast<int>(GetNumber(&source, &told_at));
    int size = number;
    std::uint8_t *data = nullptr;
    qek_stream_get_buffer(&source, &told_at, &data, &size);
    const qek_test::allocations watch(no_memory ? 1 : 0);
    const bool kept = number < 0 || (no_memory && size > read.capacity);
    Get(&source, &at, &read);
    EXPECT_EQ(read.content(), kept ? "old" : std::string(data, data + size));
    EXPECT_EQ(at, told_at);
}

// The bytes are hostile: any number may stand in front of a run, also one that reads as negative.
TEST(fields, runs_are_cut_at_the_end_at_any_position_of_any_bytes)
{
    qek_test::random_numbers random;
    for (int step = 0; random.goes_on(step, 20000) && !HasFailure(); ++step) {
        std::string bytes(size_t(8 * random.between(0, 3)), 0);
        for (char &byte : bytes) {
            byte = random.one_of({'\0', '\0', '\0', '\1', '\7', '\x12', '\x80', '\xFF'});
        }
        const int length = int(bytes.size());
        const int start = random.one_in(8) ? random.one_of({lowest, -1, highest - 3, highest})
                                           : random.between(0, length + 1);
        const std::string text(size_t(random.between(0, 20)), 'x');
        SCOPED_TRACE(testing::Message() << step << " at " << start);
        check_run<qek_stream_set_string, qek_stream_get_string, qek_stream_set_word,
                  qek_stream_get_word, string>(bytes, text, start, random.one_in(2));
        check_run<qek_stream_set_stream, qek_stream_get_stream, qek_stream_set_dword,
                  qek_stream_get_dword, stream>(bytes, text, start, random.one_in(2));

        const bool inside = start >= 0 && start < length;
        const auto count = inside ? std::min(text.size(), size_t(length - start)) : 0;
        stream found(bytes);
        int at = start;
        qek_stream_set_buffer(&found, &at, text.data(), int(text.size()));
        EXPECT_EQ(found.content(), bytes.replace(inside ? size_t(start) : 0, count, count, 'x'));
        EXPECT_EQ(at, moved(start, ssize(text)));
        auto *data = found.data;
        int size = int(text.size());
        qek_stream_get_buffer(&found, &(at = start), &data, &size);
        EXPECT_EQ(data, inside ? found.data + start : nullptr);
        EXPECT_EQ(size_t(size), count);
        EXPECT_EQ(at, moved(start, ssize(text)));
    }
}

TEST(fields, runs_as_worked_by_hand)
{
    stream target(std::string(10, '.'));
    const string text("abc");
    int position = 0;
    qek_stream_set_string(&target, &position, &text);
    qek_stream_set_buffer(&target, &position, "\1\2\3", 3);
    qek_stream_set_buffer(&target, &position, "abc", -3); // not measured
    EXPECT_EQ(position, 5);
    EXPECT_EQ(target.content(), "\3\0abc\1\2\3.."s);
    const string longer(std::string(70000, 'l'));
    stream large(std::string(70003, '.'));
    position = 0;
    qek_stream_set_string(&large, &position, &longer);
    EXPECT_EQ(large.content(), "\x70\x11" + longer.content() + ".");
    EXPECT_EQ(position, 70002);
}

} // namespace
