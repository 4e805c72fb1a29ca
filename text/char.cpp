// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The slice: a pointer and a length, most often into somebody else's text.

#include "base/blanks.h"
#include "base/heap.h"
#include "base/letters.h"
#include "base/search.h"
#include "stream/buffer.h"
#include "text/number.h"

using namespace qek;

namespace {

using text::span_of;

void trim(qek_char &slice) noexcept
{
    if (slice.data == nullptr) {
        return;
    }
    const text_between_blanks kept = find_text(slice.data, 0, slice.length);
    if (kept.is_nothing()) {
        slice.length = 0;
    } else {
        slice.data += kept.first;
        slice.length = static_cast<std::int32_t>(kept.length);
    }
}

std::int32_t length_of(qek_char &slice) noexcept
{
    slice.length = measured(slice.data, slice.length);
    return slice.length;
}

void copy(qek_char &slice, const void *text, std::int32_t length) noexcept
{
    if (text == nullptr || slice.data != nullptr) {
        return;
    }
    slice.length = measured(text, length);
    slice.data = static_cast<std::uint8_t *>(take_block(block_size(wide(slice.length) + 1)));
    move_bytes(slice.data, text, slice.length);
    slice.data[slice.length] = 0;
}

// Against an empty slice a negative length is not measured: any text given ranks above. Intended.
std::int32_t order_from_empty(const void *text, std::int32_t length) noexcept
{
    return text == nullptr || length == 0 ? 0 : -1;
}

std::int32_t compare(const qek_char &slice, const void *text, std::int32_t length) noexcept
{
    return buffer::is_empty(slice) ? order_from_empty(text, length)
                                   : text::compare(span_of(slice), as_bytes(text), length);
}

std::int32_t compare_ignoring_case(const qek_char &slice, const void *text,
                                   std::int32_t length) noexcept
{
    return buffer::is_empty(slice)
               ? order_from_empty(text, length)
               : text::compare_ignoring_case(span_of(slice), as_bytes(text), length);
}

// A negative start is not refused: what stands in front of a slice is often the same text.
bool has_place(const qek_char &slice, std::int32_t start) noexcept { return start < slice.length; }

std::int32_t find_byte(const qek_char &slice, std::uint8_t ch, std::int32_t start) noexcept
{
    return slice.data == nullptr ? -1 : text::find_unit_from(span_of(slice), ch, start);
}

std::int32_t find_text(const qek_char &slice, const void *text, std::int32_t length,
                       std::int32_t start) noexcept
{
    return slice.data == nullptr || text == nullptr
               ? -1
               : text::find_text_from(span_of(slice), as_bytes(text), length, start);
}

} // namespace

void qek_char_init(qek_char *record) { *record = {}; }

void qek_char_term(qek_char *record)
{
    give_block(record->data);
    *record = {};
}

void qek_char_trim(qek_char *record) { trim(*record); }

void qek_char_shrink(qek_char *record, int32_t length)
{
    record->length = record->data == nullptr || length < 0 ? record->length : length;
}

int32_t qek_char_is_empty(const qek_char *record) { return buffer::is_empty(*record); }

int32_t qek_char_length(qek_char *record) { return length_of(*record); }

void qek_char_make_lower(qek_char *record)
{
    text::map_units(record->data, record->length, text::byte_map<text::lower_case>{});
}

void qek_char_make_upper(qek_char *record)
{
    text::map_units(record->data, record->length, text::byte_map<text::upper_case>{});
}

void qek_char_copy(qek_char *record, const void *text, int32_t text_length)
{
    copy(*record, text, text_length);
}

int32_t qek_char_is_long(const qek_char *record)
{
    return number::is_integer(record->data, record->length);
}

int64_t qek_char_get_long(const qek_char *record)
{
    return number::read_integer(record->data, record->length);
}

int32_t qek_char_is_float(const qek_char *record)
{
    return number::is_decimal(record->data, record->length);
}

double qek_char_get_float(const qek_char *record)
{
    return number::read_decimal(record->data, record->length);
}

int32_t qek_char_compare(const qek_char *record, const void *text, int32_t text_length)
{
    return compare(*record, text, text_length);
}

int32_t qek_char_icompare(const qek_char *record, const void *text, int32_t text_length)
{
    return compare_ignoring_case(*record, text, text_length);
}

int32_t qek_char_find_char(const qek_char *record, uint8_t ch) { return find_byte(*record, ch, 0); }

int32_t qek_char_find_char_pos(const qek_char *record, uint8_t ch, int32_t start)
{
    return has_place(*record, start) ? find_byte(*record, ch, start) : -1;
}

int32_t qek_char_reverse_find(const qek_char *record, uint8_t ch)
{
    return text::find_last(span_of(*record), ch);
}

int32_t qek_char_find(const qek_char *record, const void *text, int32_t text_length)
{
    return find_text(*record, text, text_length, 0);
}

int32_t qek_char_find_pos(const qek_char *record, const void *text, int32_t text_length,
                          int32_t start)
{
    return has_place(*record, start) ? find_text(*record, text, text_length, start) : -1;
}
