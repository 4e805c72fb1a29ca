// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "stream/crc.h"
#include "support/allocations.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

using namespace std::string_literals;
using qek_test::allocations;

namespace {

constexpr auto lowest = std::numeric_limits<int>::min();
constexpr auto highest = std::numeric_limits<int>::max();

// What a buffer is told to do, byte for byte, also behind its length.
struct model {
    int spare = 0;                // 1 for a string, which has room for a terminator
    std::vector<uint8_t> bytes{}; // the whole block
    int64_t length = 0;
    int64_t capacity = 0;
    static inline bool no_memory = false;

    bool expand(int64_t wanted)
    {
        const auto step = std::clamp<int64_t>(length / 2, 8, 0x800000);
        const auto least = std::max(wanted, std::min<int64_t>(capacity + step, highest));
        const auto grown = spare > 0 ? least / 8 * 8 + 7 : (least + 7) / 8 * 8;
        if (wanted > capacity && !no_memory && grown <= highest) {
            bytes.resize(size_t(capacity)); // the terminator is not carried along
            bytes.resize(size_t(grown + spare));
            capacity = grown;
        }
        return wanted <= capacity;
    }
    void shrink(int64_t new_length)
    {
        if (capacity > 0 && new_length >= 0) {
            length = std::min(new_length, capacity);
            std::fill_n(bytes.data() + length, spare, uint8_t{0});
        }
    }
    void edit(int64_t wanted, int64_t at, std::span<const uint8_t> part, int64_t new_length)
    {
        if (expand(wanted)) {
            for (const uint8_t byte : part) {
                bytes[size_t(at++)] = byte;
            }
            shrink(new_length);
        }
    }
    void put(int64_t at, std::span<const uint8_t> part)
    {
        edit(at + ssize(part), at, part, at + ssize(part));
    }
    void fill(int64_t at, int64_t count, uint8_t byte)
    {
        if (at >= 0 && count > 0 && at + count <= capacity) {
            std::fill_n(bytes.data() + at, count, byte);
        }
    }
    std::vector<uint8_t> slice(int64_t position, int64_t count) const
    {
        const bool found = position >= 0 && position < length && count > 0;
        const uint8_t *first = bytes.data() + (found ? position : 0);
        return {first, first + (found ? std::min(count, length - position) : 0)};
    }
    std::vector<uint8_t> last(int64_t n) const { return slice(std::max(length - n, int64_t{}), n); }
};

size_t measured(const uint8_t *text, int size)
{
    return text == nullptr ? 0 : size >= 0 ? size_t(size) : std::string((const char *)text).size();
}

// The operations under the names of the library, so that one call is run on records and on models.
int qek_stream_expand(model *m, int wanted) { return m->expand(wanted); }
void qek_stream_shrink(model *m, int length) { m->shrink(length); }
void qek_stream_term(model *m) { *m = {m->spare}; }
void qek_string_term(model *m) { *m = {m->spare}; }
void qek_stream_swap(model *m, model *other) { std::swap(*m, *other); }
void qek_stream_zero(model *m, int p, int n) { m->fill(p, n, 0); }
void qek_stream_set_at(model *m, int p, uint8_t byte) { m->fill(p, 1, byte); }
void qek_stream_copy(model *m, const uint8_t *b, int n) { m->put(0, {b, measured(b, n)}); }
void qek_stream_append(model *m, const uint8_t *b, int n)
{
    m->put(m->length, {b, measured(b, n)});
}
int qek_stream_update(model *m, int64_t p, int64_t old, const uint8_t *b, int n)
{
    const int64_t count = b == nullptr ? n : int64_t(measured(b, n));
    const int64_t length = m->length - old + count;
    const auto tail = m->slice(p + old, highest);
    if (p < 0 || old < 0 || count < 0 || p > m->length || !m->expand(length)) {
        return 0;
    }
    m->edit(0, p, {b, m->slice(p, count).size()}, m->length);
    m->edit(0, p + count, tail, length);
    m->edit(0, p, {b, m->slice(p, count).size()}, m->length);
    return 1;
}
int qek_stream_insert(model *m, int p, const uint8_t *b, int n)
{
    return measured(b, n) > 0 && qek_stream_update(m, p, 0, b, n);
}
void qek_stream_delete(model *m, int64_t p, int64_t n)
{
    const int64_t end = p + n;
    if (end == m->length) {
        m->shrink(p);
    } else if (end < m->length && p >= 0 && end >= 0 && m->length - n <= m->capacity) {
        m->edit(0, p, m->slice(end, highest), m->length - n);
    }
}
void qek_stream_left(model *m, int n) { m->put(0, m->slice(0, n < 0 ? highest : n)); }
void qek_stream_mid(model *m, int p, int n) { p < 0 ? void() : m->put(0, m->slice(p, n)); }
void qek_stream_right(model *m, int n) { m->put(0, m->last(n)); }
void qek_stream_left_stream(model *m, int n, model *to) { to->put(0, m->slice(0, n)); }
void qek_stream_mid_stream(model *m, int p, int n, model *to) { to->put(0, m->slice(p, n)); }
void qek_stream_right_stream(model *m, int n, model *to) { to->put(0, m->last(n)); }
void qek_stream_left_string(model *m, int n, model *to) { to->put(0, m->slice(0, n)); }
void qek_stream_mid_string(model *m, int p, int n, model *to) { to->put(0, m->slice(p, n)); }
void qek_stream_right_string(model *m, int n, model *to) { to->put(0, m->last(n)); }
void qek_stream_clone(model *m, model *to)
{
    to->edit(m->capacity, 0, m->slice(0, highest), m->length);
}
void qek_stream_clone_string(model *m, model *to) { qek_stream_clone(m, to); }

struct records {
    qek_stream a{}, b{};
    qek_string s{};
    ~records() { qek_stream_term(&a), qek_stream_term(&b), qek_string_term(&s); }
};
struct models {
    model a, b, s{1};
};
struct arguments {
    int p, old, n;
    const uint8_t *bytes; // terminated, and followed by far more than a buffer holds
    uint8_t byte() const { return n & 7; }
};
using in = const arguments &;

struct operation {
    template <typename Call> operation(const char *n, Call c) : name(n), call(c), told(c) {}
    const char *name;
    int (*call)(records &, in);
    int (*told)(models &, in);
};
const operation operations[] = {
    {"copy", [](auto &r, in x) { return qek_stream_copy(&r.a, x.bytes, x.n), 0; }},
    {"append", [](auto &r, in x) { return qek_stream_append(&r.a, x.bytes, x.n), 0; }},
    {"term", [](auto &r, in) { return qek_stream_term(&r.a), 0; }},
    {"expand", [](auto &r, in x) { return qek_stream_expand(&r.a, x.n); }},
    {"shrink", [](auto &r, in x) { return qek_stream_shrink(&r.a, x.n), 0; }},
    {"swap", [](auto &r, in) { return qek_stream_swap(&r.a, &r.b), 0; }},
    {"zero", [](auto &r, in x) { return qek_stream_zero(&r.a, x.p, x.n), 0; }},
    {"set_at", [](auto &r, in x) { return qek_stream_set_at(&r.a, x.p, x.byte()), 0; }},
    {"update", [](auto &r, in x) { return qek_stream_update(&r.a, x.p, x.old, x.bytes, x.n); }},
    {"insert", [](auto &r, in x) { return qek_stream_insert(&r.a, x.p, x.bytes, x.n); }},
    {"delete", [](auto &r, in x) { return qek_stream_delete(&r.a, x.p, x.n), 0; }},
    {"left", [](auto &r, in x) { return qek_stream_left(&r.a, x.n), 0; }},
    {"mid", [](auto &r, in x) { return qek_stream_mid(&r.a, x.p, x.n), 0; }},
    {"right", [](auto &r, in x) { return qek_stream_right(&r.a, x.n), 0; }},
    {"left_stream", [](auto &r, in x) { return qek_stream_left_stream(&r.a, x.n, &r.b), 0; }},
    {"mid_stream", [](auto &r, in x) { return qek_stream_mid_stream(&r.a, x.p, x.n, &r.b), 0; }},
    {"right_stream", [](auto &r, in x) { return qek_stream_right_stream(&r.a, x.n, &r.b), 0; }},
    {"left_string", [](auto &r, in x) { return qek_stream_left_string(&r.a, x.n, &r.s), 0; }},
    {"mid_string", [](auto &r, in x) { return qek_stream_mid_string(&r.a, x.p, x.n, &r.s), 0; }},
    {"right_string", [](auto &r, in x) { return qek_stream_right_string(&r.a, x.n, &r.s), 0; }},
    {"clone", [](auto &r, in) { return qek_stream_clone(&r.a, &r.b), 0; }},
    {"clone_string",
     [](auto &r, in) { return qek_string_term(&r.s), qek_stream_clone_string(&r.a, &r.s), 0; }},
};

template <typename Record> void expect_same(const Record &found, const model &told)
{
    ASSERT_EQ(found.length, told.length);
    ASSERT_EQ(found.capacity, told.capacity);
    ASSERT_EQ(found.data == nullptr, told.bytes.empty());
    ASSERT_EQ(std::vector(found.data, found.data + told.bytes.size()), told.bytes);
}

// Runs one operation on both sides, compares everything, and tells whether an allocation failed.
bool run(const operation &op, records &found, models &told, in x, bool no_memory)
{
    const std::array before{found.a, found.b};
    const allocations watch(no_memory ? 1 : 0, true);
    const int result = op.call(found, x);
    const std::array after{found.a, found.b};
    model::no_memory = no_memory;
    EXPECT_EQ(result, op.told(told, x));
    EXPECT_TRUE(!watch.any_failed() || std::memcmp(&before, &after, sizeof after) == 0);
    expect_same(found.a, told.a);
    expect_same(found.b, told.b);
    expect_same(found.s, told.s);
    EXPECT_EQ(qek_stream_is_empty(&found.a), told.a.length == 0);
    const bool held = x.p >= 0 && x.p < told.a.capacity;
    EXPECT_EQ(qek_stream_get_at(&found.a, x.p), held ? told.a.bytes[size_t(x.p)] : 0);
    const auto hit = [&](int at) {
        const auto rest = told.a.slice(at, highest);
        const auto index = std::find(rest.begin(), rest.end(), x.byte()) - rest.begin();
        return x.byte() == 0 || index == ssize(rest) ? -1 : at + int(index);
    };
    EXPECT_EQ(qek_stream_find(&found.a, x.byte()), hit(0));
    EXPECT_EQ(qek_stream_find_pos(&found.a, x.byte(), x.p), hit(x.p));
    return watch.any_failed();
}

TEST(stream, random_operations_at_any_position_match_the_model_with_and_without_memory)
{
    qek_test::random_numbers random;
    std::vector<uint8_t> source(4096);
    for (uint32_t at = 0; at < source.size(); ++at) {
        const uint32_t mixed = at * 2654435761U >> 16;
        source[at] = static_cast<uint8_t>(mixed % 40 == 0 ? 0 : 1 + mixed % 7);
    }
    std::set<std::string> failed;
    records found;
    models told;
    for (int step = 0; random.goes_on(step, 60000); ++step) {
        const auto [data, length, capacity] = found.a;
        const bool far = random.one_in(4);
        const auto any = [&, held = length, room = capacity] {
            const int near = random.between(0, 40);
            return far && random.one_in(2)
                       ? random.one_of({lowest + near / 8, highest - near / 8, near - 20})
                       : random.one_of({-1, 0, 1, held - 1, held, held + 1, room, near});
        };
        arguments x{any(), any(), any(), source.data() + random.between(0, 1000)};
        size_t number = capacity > 800 ? 2 : random.below(std::size(operations));
        const bool refill = length < 20 && !random.one_in(4); // most operations take bytes away
        if (refill) {
            number = 1;
            x.n = random.between(0, 40);
        } else if (random.one_in(8) && (x.n <= 0 || number < 2)) { // others may fault then
            x.bytes = nullptr;
        }
        const auto &op = operations[number];
        if (run(op, found, told, x, !refill && (far || random.one_in(4)))) {
            failed.insert(op.name);
        }
        ASSERT_FALSE(HasFailure()) << step << ": " << op.name << " " << x.p << " " << x.old << " "
                                   << x.n << (far ? " without memory" : "");
    }
    const std::set<std::string> growing{
        "append",      "clone",      "clone_string", "copy",       "expand",
        "insert",      "update",     "left_stream",  "mid_stream", "right_stream",
        "left_string", "mid_string", "right_string"};
    EXPECT_EQ(random.is_given ? growing : failed, growing);
}

// A growth that is made to fail needs no memory: the sizes asked for are seen up to the far end.
TEST(stream, asks_for_capacities_by_the_growth_rule)
{
    const struct {
        int length, capacity, wanted;
        size_t asked; // 0 if none; where rounding up passes the range, nothing is asked for
    } table[] = {{0, 0, lowest, 0},
                 {0, 0, 1, 8},
                 {17, 24, 25, 32},
                 {18, 24, 25, 40},
                 {1000, 1000, 1001, 1504},
                 {0x1000002, 0x1000008, 0x1000009, 0x1800008},
                 {0x2000000, 0x2000000, 0x2000001, 0x2800000},
                 {0, 0, 0x7FFFFFF9, 0},
                 {0, 0x7FFFFFF0, 0x7FFFFFF1, 0x7FFFFFF8},
                 {0x2000000, 0x7F800000, 0x7F800001, 0},
                 {0x2000000, 0x7F7FFFF8, 0x7F7FFFF9, 0x7FFFFFF8}};
    for (const auto &[length, capacity, wanted, asked] : table) {
        uint8_t block = 0;
        const qek_stream before{capacity > 0 ? &block : nullptr, length, capacity};
        qek_stream after = before;
        const allocations none(1);
        EXPECT_EQ(qek_stream_expand(&after, wanted), wanted <= capacity) << wanted;
        EXPECT_THAT(none.sizes(), testing::ElementsAreArray(&asked, asked > 0)) << wanted;
        EXPECT_EQ(std::memcmp(&before, &after, sizeof after), 0) << wanted;
    }
    const qek_stream large{nullptr, 0, 0x7FFFFFF8};
    qek_string text;
    const allocations none(1);
    qek_stream_clone_string(&large, &text);
    EXPECT_THAT(none.sizes(), testing::ElementsAre(0x80000000U)); // with the terminator
}

TEST(stream, updates_past_the_end_as_worked_by_hand)
{
    const auto updated = [](int position, int old, const char *bytes) {
        records found;
        qek_stream_copy(&found.a, "0123456789", -1);
        EXPECT_EQ(qek_stream_update(&found.a, position, old, bytes, -1), 1);
        return std::string(found.a.data, found.a.data + found.a.length);
    };
    EXPECT_EQ(updated(8, 5, "abcde"), "01234567ab");
    EXPECT_EQ(updated(8, 5, "ab"), "0123456");
    EXPECT_EQ(updated(8, 3, "abcd"), "01234567abc");
    EXPECT_EQ(updated(0, 20, "x"), "x123456789");
}

TEST(stream, starts_without_a_look_and_trades_buffers_with_a_string)
{
    qek_stream stream;
    qek_string text;
    std::memset(&stream, 0xA5, sizeof stream);
    std::memset(&text, 0xA5, sizeof text);
    qek_stream_init(&stream);
    expect_same(stream, {});
    qek_stream_clone_string(&stream, &text);
    expect_same(text, {});
    qek_string_copy(&text, "text", -1);
    const qek_string before = text;
    qek_stream_swap_string(&stream, &text);
    EXPECT_EQ(std::memcmp(&stream, &before, sizeof before), 0);
    expect_same(text, {});
    qek_stream_swap_string(&stream, &text);
    EXPECT_EQ(std::memcmp(&text, &before, sizeof before), 0);
    qek_stream_swap_string(&stream, &text);
    qek_stream_term(&stream);
    qek_stream_term(&stream);
    expect_same(stream, {});
}

// Every way to run the register ends where the steps by bytes end.
TEST(stream, checksums_are_those_by_bytes_at_every_size)
{
    qek_test::random_numbers random;
    std::vector<std::uint8_t> bytes(5000);
    for (auto &byte : bytes) {
        byte = static_cast<std::uint8_t>(random.below(256));
    }
    std::vector<decltype(&qek::crc_after)> ways{qek::crc_by_words, qek::crc_after};
#ifdef QEK_CHOOSES_AT_LOAD
    const unsigned int skills = qek::processor::skills();
    if ((skills & qek::processor::multiplies_without_carry) != 0) {
        ways.push_back(qek::crc_by_multiplication);
    }
    if ((skills & qek::processor::multiplies_in_vectors_of_64) != 0) {
        ways.push_back(qek::crc_by_wide_multiplication);
    }
#endif
    for (std::int32_t size = -1; size < 4500; size += size < 600 ? 1 : 97) {
        const std::uint8_t *start = bytes.data() + random.below(64);
        for (const std::uint32_t crc : {0U, ~0U, 0x80U, 0x12345678U}) {
            const std::uint32_t expected = qek::crc_by_bytes(crc, start, size);
            for (const auto way : ways) {
                ASSERT_EQ(way(crc, start, size), expected) << size;
            }
        }
        ASSERT_EQ(qek_stream_crc32(start, size), ~qek::crc_by_bytes(~0U, start, size));
    }
}

TEST(stream, checksums_as_worked_by_hand)
{
    alignas(256) const char block[] = "123456789\xFF";
    EXPECT_EQ(qek_stream_crc32(block, 9), 0xCBF43926);
    EXPECT_EQ(qek_stream_check(block, 9), 0x31);
    EXPECT_EQ(qek_stream_crc32(block + 9, 1), 0xFF000000);
    EXPECT_EQ(qek_stream_check(block + 9, 1), 0xFF);
    for (const int size : {lowest, -1, 0, 2}) {
        EXPECT_EQ(qek_stream_crc32(block + 3, std::min(size, 0)), 0U);
        EXPECT_EQ(qek_stream_check(block + 3, std::min(size, 0)), size < 0 ? 3 : 0); // the address
        EXPECT_EQ(qek_stream_crc32(nullptr, size), 0U);
        EXPECT_EQ(qek_stream_check(nullptr, size), 0);
    }
}

} // namespace
