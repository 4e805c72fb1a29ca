// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The view: a span of text that somebody else owns, cut by arithmetic on two integers.

#include "base/blanks.h"
#include "base/exchange.h"
#include "base/search.h"
#include "stream/buffer.h"
#include "text/number.h"

using namespace qek;

namespace {

const std::uint8_t outside = 0xFF;

using buffer::is_empty;

text::span<std::uint8_t> span_of(const qek_stringx &view) noexcept
{
    return {view.data == nullptr ? nullptr : view.data + view.offset, view.length};
}

// The bytes for the number scanners, which look at none when the length is below 1.
const std::uint8_t *bytes_of(const qek_stringx &view) noexcept { return span_of(view).data; }

bool cut(qek_stringx &view, std::int32_t first, std::int32_t length) noexcept
{
    view.offset = first;
    view.length = length;
    return true;
}

// An empty span on a text answers that it changed, unlike the owned text: intended.
bool trim(qek_stringx &view) noexcept
{
    if (view.data == nullptr) {
        return false;
    }
    const std::int32_t end = wrapping_sum(view.offset, view.length);
    const text_between_blanks kept = find_text(view.data, view.offset, end);
    if (kept.is_nothing()) {
        return cut(view, view.offset, 0);
    }
    if (kept.length == view.length) {
        return false;
    }
    return cut(view, static_cast<std::int32_t>(kept.first), static_cast<std::int32_t>(kept.length));
}

std::uint8_t get_at(const qek_stringx &view, std::int32_t index) noexcept
{
    return index < 0 || index >= view.length ? outside : view.data[view.offset + index];
}

void keep_left(qek_stringx &view, std::int32_t count) noexcept
{
    if (!is_empty(view) && count < view.length) {
        view.length = count; // a negative count is stored as it stands: intended
    }
}

void keep_mid(qek_stringx &view, std::int32_t position, std::int32_t count) noexcept
{
    if (is_empty(view) || position < 0) {
        return;
    }
    const bool nothing = count <= 0 || position >= view.length;
    cut(view, wrapping_sum(view.offset, position),
        nothing ? 0 : smaller(count, view.length - position));
}

void keep_right(qek_stringx &view, std::int32_t count) noexcept
{
    if (!is_empty(view) && count < view.length) {
        const std::int32_t skipped = wrapping_difference(view.length, count);
        cut(view, wrapping_sum(view.offset, skipped), larger(count, 0));
    }
}

// A part of a view: where it starts behind the view's own start, and whether it is any part of it.
struct part {
    std::int32_t start;
    std::int32_t length;
    bool is_inside;
};

part left_of(const qek_stringx &view, std::int32_t count) noexcept
{
    const bool inside = !is_empty(view) && count > 0;
    return {0, inside ? smaller(count, view.length) : 0, inside};
}

part mid_of(const qek_stringx &view, std::int32_t position, std::int32_t count) noexcept
{
    const bool inside = !is_empty(view) && position >= 0 && count > 0 && position < view.length;
    return {position, inside ? smaller(count, view.length - position) : 0, inside};
}

part right_of(const qek_stringx &view, std::int32_t count) noexcept
{
    const part taken = left_of(view, count);
    return {taken.is_inside ? view.length - taken.length : 0, taken.length, taken.is_inside};
}

// A target on another text stays as it is, but a part that is none is written to it all the same:
// intended.
void aim(const qek_stringx &view, part at, qek_stringx &target) noexcept
{
    if (!at.is_inside || target.data == view.data) {
        cut(target, wrapping_sum(view.offset, at.start), at.length);
    }
}

void aim(const qek_stringx &view, part at, qek_char &target) noexcept
{
    const auto base = reinterpret_cast<std::uintptr_t>(view.data);
    const auto offset = static_cast<std::uintptr_t>(wide(view.offset) + at.start);
    target.data = reinterpret_cast<std::uint8_t *>(base + offset);
    target.length = at.length;
}

} // namespace

void qek_stringx_init(qek_stringx *view) { *view = {}; }

void qek_stringx_term(qek_stringx *view) { *view = {}; }

int32_t qek_stringx_is_empty(const qek_stringx *view) { return is_empty(*view); }

int32_t qek_stringx_trim(qek_stringx *view) { return trim(*view); }

void qek_stringx_shrink(qek_stringx *view) { cut(*view, 0, 0); }

void qek_stringx_copy(qek_stringx *view, const qek_stringx *other) { *view = *other; }

void qek_stringx_copy_string(qek_stringx *view, const qek_string *string)
{
    *view = {string->data, 0, string->length};
}

void qek_stringx_copy_char(qek_stringx *view, const qek_char *record)
{
    *view = {record->data, 0, record->length};
}

void qek_stringx_swap(qek_stringx *a, qek_stringx *b) { exchange(*a, *b); }

int32_t qek_stringx_is_long(const qek_stringx *view)
{
    return number::is_integer(bytes_of(*view), view->length);
}

int64_t qek_stringx_get_long(const qek_stringx *view)
{
    return number::read_integer(bytes_of(*view), view->length);
}

int32_t qek_stringx_is_float(const qek_stringx *view)
{
    return number::is_decimal(bytes_of(*view), view->length);
}

double qek_stringx_get_float(const qek_stringx *view)
{
    return number::read_decimal(bytes_of(*view), view->length);
}

uint8_t qek_stringx_get_at(const qek_stringx *view, int32_t index) { return get_at(*view, index); }

int32_t qek_stringx_compare(const qek_stringx *view, const void *text, int32_t text_length)
{
    return text::compare(span_of(*view), as_bytes(text), text_length);
}

int32_t qek_stringx_icompare(const qek_stringx *view, const void *text, int32_t text_length)
{
    return text::compare_ignoring_case(span_of(*view), as_bytes(text), text_length);
}

int32_t qek_stringx_find_char(const qek_stringx *view, uint8_t ch)
{
    return text::find_unit_in(span_of(*view), ch, 0);
}

int32_t qek_stringx_find_char_pos(const qek_stringx *view, uint8_t ch, int32_t start)
{
    return text::find_unit_in(span_of(*view), ch, start);
}

int32_t qek_stringx_reverse_find(const qek_stringx *view, uint8_t ch)
{
    return text::find_last(span_of(*view), ch);
}

int32_t qek_stringx_find(const qek_stringx *view, const void *text, int32_t text_length)
{
    return text::find_text_in(span_of(*view), as_bytes(text), text_length, 0);
}

int32_t qek_stringx_find_pos(const qek_stringx *view, const void *text, int32_t text_length,
                             int32_t start)
{
    return text::find_text_in(span_of(*view), as_bytes(text), text_length, start);
}

void qek_stringx_left(qek_stringx *view, int32_t count) { keep_left(*view, count); }

void qek_stringx_mid(qek_stringx *view, int32_t position, int32_t count)
{
    keep_mid(*view, position, count);
}

void qek_stringx_right(qek_stringx *view, int32_t count) { keep_right(*view, count); }

void qek_stringx_left_string(const qek_stringx *view, int32_t count, qek_stringx *target)
{
    aim(*view, left_of(*view, count), *target);
}

void qek_stringx_mid_string(const qek_stringx *view, int32_t position, int32_t count,
                            qek_stringx *target)
{
    aim(*view, mid_of(*view, position, count), *target);
}

void qek_stringx_right_string(const qek_stringx *view, int32_t count, qek_stringx *target)
{
    aim(*view, right_of(*view, count), *target);
}

void qek_stringx_left_char(const qek_stringx *view, int32_t count, qek_char *target)
{
    aim(*view, left_of(*view, count), *target);
}

void qek_stringx_mid_char(const qek_stringx *view, int32_t position, int32_t count,
                          qek_char *target)
{
    aim(*view, mid_of(*view, position, count), *target);
}

void qek_stringx_right_char(const qek_stringx *view, int32_t count, qek_char *target)
{
    aim(*view, right_of(*view, count), *target);
}
