// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "qek_std.h"
#include "support/random.h"

#include <gmock/gmock.h>

static bool operator==(const qek_stringx &a, const qek_stringx &b)
{
    return a.data == b.data && a.offset == b.offset && a.length == b.length;
}

namespace {

constexpr std::int32_t least = INT32_MIN, most = INT32_MAX;
std::uint8_t text[] = "0123abcdefghij456789", other_text[] = "other";

// A cut from the left, the middle or the right; what the view becomes when it is cut in place;
// where a record is aimed. A size of 0 is no part: even a view on another text is aimed at it.
struct cut {
    char from;
    std::int32_t position, count, offset, length, start, size;
};

void expect_cut(const qek_stringx &view, const cut &row)
{
    SCOPED_TRACE(testing::Message()
                 << row.from << " " << row.position << ", " << row.count << " of " << view.length);
    qek_stringx kept = view, same{view.data, -7, -7}, other{other_text, -7, -7};
    qek_char slice{other_text, -7};
    if (row.from == 'm') {
        qek_stringx_mid(&kept, row.position, row.count);
        qek_stringx_mid_string(&view, row.position, row.count, &same);
        qek_stringx_mid_string(&view, row.position, row.count, &other);
        qek_stringx_mid_char(&view, row.position, row.count, &slice);
    } else {
        const bool left = row.from == 'l';
        const auto aim = left ? qek_stringx_left_string : qek_stringx_right_string;
        (left ? qek_stringx_left : qek_stringx_right)(&kept, row.count);
        aim(&view, row.count, &same);
        aim(&view, row.count, &other);
        (left ? qek_stringx_left_char : qek_stringx_right_char)(&view, row.count, &slice);
    }
    EXPECT_EQ(kept, (qek_stringx{view.data, row.offset, row.length}));
    EXPECT_EQ(same, (qek_stringx{view.data, row.start, row.size}));
    EXPECT_EQ(other, (row.size == 0 ? qek_stringx{other_text, row.start, 0}
                                    : qek_stringx{other_text, -7, -7}));
    // Far outside, the sum of the view's numbers wraps and the address does not.
    const bool is_far = row.position == least || row.position == most;
    const auto address = reinterpret_cast<std::uintptr_t>(view.data) +
                         static_cast<std::uintptr_t>(is_far ? view.offset : row.start) +
                         static_cast<std::uintptr_t>(is_far ? row.position : 0);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slice.data), address);
    EXPECT_EQ(slice.length, row.size);
}

TEST(stringx, is_cut_by_the_table)
{
    const cut of_ten_at_four[] = {
        {'l', 0, 3, 4, 3, 4, 3},      {'l', 0, most, 4, 10, 4, 10},
        {'l', 0, -1, 4, -1, 4, 0},    {'l', 0, least, 4, least, 4, 0},
        {'m', 3, 4, 7, 4, 7, 4},      {'m', 9, most, 13, 1, 13, 1},
        {'m', 3, least, 7, 0, 7, 0},  {'m', most, 3, least + 3, 0, least + 3, 0},
        {'m', 99, 1, 103, 0, 103, 0}, {'m', least, 3, 4, 10, least + 4, 0},
        {'r', 0, 3, 11, 3, 11, 3},    {'r', 0, most, 4, 10, 4, 10},
        {'r', 0, -1, 15, 0, 4, 0},    {'r', 0, least, least + 14, 0, 4, 0}};
    for (const cut &row : of_ten_at_four) {
        expect_cut({text, 4, 10}, row);
    }
    for (const qek_stringx &empty : {qek_stringx{text, 4, 0}, qek_stringx{nullptr, 4, 10}}) {
        for (const std::int32_t count : {3, 0, -1, 99}) {
            expect_cut(empty, {'l', 0, count, 4, empty.length, 4, 0});
            expect_cut(empty, {'m', 2, count, 4, empty.length, 6, 0});
            expect_cut(empty, {'m', -2, count, 4, empty.length, 2, 0});
            expect_cut(empty, {'r', 0, count, 4, empty.length, 4, 0});
        }
    }
    // A negative length is below every count that keeps something, and is not empty.
    const cut of_less_than_nothing[] = {{'l', 0, 2, 4, -3, 4, -3},
                                        {'l', 0, -5, 4, -5, 4, 0},
                                        {'m', 1, 2, 5, 0, 5, 0},
                                        {'r', 0, 2, 4, -3, 4, -3},
                                        {'r', 0, -4, 5, 0, 4, 0}};
    for (const cut &row : of_less_than_nothing) {
        expect_cut({text, 4, -3}, row);
    }
}

TEST(stringx, is_cut_as_a_text_is)
{
    qek_test::random_numbers random;
    for (int step = 0; random.goes_on(step, 3000) && !HasFailure(); ++step) {
        const std::int32_t offset = random.between(0, 8), length = random.between(1, 12);
        const std::int32_t position = random.between(-2, 14), count = random.between(-2, 14);
        const std::int32_t kept = std::min(count, length), rest = length - position;
        const std::int32_t part = position < 0 ? 0 : std::clamp(count, 0, std::max(rest, 0));
        const bool outside = position < 0;
        const qek_stringx view{text, offset, length};
        expect_cut(view, {'l', 0, count, offset, kept, offset, std::max(kept, 0)});
        expect_cut(view, {'m', position, count, offset + (outside ? 0 : position),
                          outside ? length : part, offset + position, part});
        expect_cut(view, {'r', 0, count, offset + length - kept, std::max(kept, 0),
                          kept > 0 ? offset + length - kept : offset, std::max(kept, 0)});
    }
}

TEST(stringx, is_aimed_at_texts_and_reads_its_span_only)
{
    const qek_string string{text, 20, 23};
    const qek_char slice{other_text, -1};
    qek_stringx view{text, 7, 7}, other;
    qek_stringx_init(&view);
    EXPECT_EQ(qek_stringx_trim(&view), 0) << "without a text, unlike an empty span of one";
    EXPECT_EQ(view, qek_stringx{});
    qek_stringx_copy_string(&view, &string);
    qek_stringx_copy(&other, &view);
    EXPECT_EQ(other, (qek_stringx{text, 0, 20}));
    qek_stringx_copy_char(&view, &slice);
    qek_stringx_swap(&view, &other);
    EXPECT_EQ(view, (qek_stringx{text, 0, 20}));
    EXPECT_EQ(other, (qek_stringx{other_text, 0, -1}));
    view = {text, 4, 3};
    for (const std::int32_t outside : {3, -1, least, most}) {
        EXPECT_EQ(qek_stringx_get_at(&view, outside), 0xFF) << outside;
    }
    EXPECT_EQ(qek_stringx_get_at(&view, 2), 'c');
    EXPECT_EQ(qek_stringx_is_empty(&view) + qek_stringx_is_empty(&other), 0);
    qek_stringx_shrink(&view);
    EXPECT_EQ(view, (qek_stringx{text, 0, 0}));
    EXPECT_EQ(qek_stringx_is_empty(&view), 1);
    view = {nullptr, 4, 3};
    EXPECT_EQ(qek_stringx_find_char(&view, 'a') + qek_stringx_compare(&view, "a", 1), -2);
    qek_stringx_term(&other);
    EXPECT_EQ(other, qek_stringx{});
}

} // namespace
