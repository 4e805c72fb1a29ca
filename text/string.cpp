// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The owned 8-bit text. Lengths and positions are stream/buffer.h, blanks and single units owned.h,
// letters base/letters.h, comparing and searching search.h.

#include "base/letters.h"
#include "base/search.h"
#include "text/owned.h"

using namespace qek;
using buffer::string_form;

namespace {

const std::uint8_t outside = 0xFF;

using text::span_of;

} // namespace

void qek_string_init(qek_string *string) { buffer::reset(*string); }

void qek_string_term(qek_string *string) { buffer::release(*string); }

int32_t qek_string_is_empty(const qek_string *string) { return buffer::is_empty(*string); }

void qek_string_zero(qek_string *string, int32_t position, int32_t count)
{
    buffer::zero(*string, position, count);
}

int32_t qek_string_expand(qek_string *string, int32_t capacity)
{
    return buffer::expand<string_form>(*string, capacity);
}

void qek_string_shrink(qek_string *string, int32_t length)
{
    buffer::shrink<string_form>(*string, length);
}

void qek_string_swap(qek_string *a, qek_string *b) { buffer::swap(*a, *b); }

void qek_string_clone(const qek_string *source, qek_string *target)
{
    buffer::clone<string_form>(*source, *target);
}

uint8_t qek_string_get_at(const qek_string *string, int32_t index)
{
    return buffer::get_at(*string, index, outside);
}

void qek_string_set_at(qek_string *string, int32_t index, uint8_t ch)
{
    buffer::set_at(*string, index, ch);
}

void qek_string_copy(qek_string *string, const void *text, int32_t length)
{
    buffer::copy<string_form>(*string, as_bytes(text), length);
}

void qek_string_copy_char(qek_string *string, uint8_t ch)
{
    text::copy_unit<string_form>(*string, ch);
}

void qek_string_append(qek_string *string, const void *text, int32_t length)
{
    buffer::append<string_form>(*string, as_bytes(text), length);
}

void qek_string_append_char(qek_string *string, uint8_t ch)
{
    text::append_unit<string_form>(*string, ch);
}

int32_t qek_string_insert(qek_string *string, int32_t position, const void *text, int32_t length)
{
    return buffer::insert<string_form>(*string, position, as_bytes(text), measured(text, length));
}

int32_t qek_string_update(qek_string *string, int32_t position, int32_t old_length,
                          const void *text, int32_t text_length)
{
    return buffer::update_measured<string_form>(*string, position, old_length, as_bytes(text),
                                                text_length);
}

void qek_string_delete(qek_string *string, int32_t position, int32_t count)
{
    text::remove<string_form>(*string, position, count);
}

void qek_string_left(qek_string *string, int32_t count)
{
    buffer::left<string_form>(*string, count);
}

void qek_string_mid(qek_string *string, int32_t position, int32_t count)
{
    buffer::mid<string_form>(*string, position, count);
}

void qek_string_right(qek_string *string, int32_t count)
{
    buffer::right<string_form>(*string, count);
}

int32_t qek_string_trim(qek_string *string) { return text::trim<string_form>(*string); }

void qek_string_make_lower(qek_string *string)
{
    text::map_units(string->data, string->length, text::byte_map<text::lower_case>{});
}

void qek_string_make_upper(qek_string *string)
{
    text::map_units(string->data, string->length, text::byte_map<text::upper_case>{});
}

int32_t qek_string_compare(const qek_string *string, const void *text, int32_t length)
{
    return text::compare(span_of(*string), as_bytes(text), length);
}

int32_t qek_string_icompare(const qek_string *string, const void *text, int32_t length)
{
    return text::compare_ignoring_case(span_of(*string), as_bytes(text), length);
}

int32_t qek_string_find_char(const qek_string *string, uint8_t ch)
{
    return text::find_unit_in(span_of(*string), ch, 0);
}

int32_t qek_string_find_char_pos(const qek_string *string, uint8_t ch, int32_t start)
{
    return text::find_unit_in(span_of(*string), ch, start);
}

int32_t qek_string_reverse_find(const qek_string *string, uint8_t ch)
{
    return text::find_last(span_of(*string), ch);
}

int32_t qek_string_find(const qek_string *string, const void *text, int32_t length)
{
    return text::find_in_owned(span_of(*string), as_bytes(text), length, 0);
}

int32_t qek_string_find_pos(const qek_string *string, const void *text, int32_t length,
                            int32_t start)
{
    return text::find_in_owned(span_of(*string), as_bytes(text), length, start);
}

void qek_string_left_string(const qek_string *source, int32_t count, qek_string *target)
{
    buffer::left_into<string_form>(*source, count, *target);
}

void qek_string_mid_string(const qek_string *source, int32_t position, int32_t count,
                           qek_string *target)
{
    buffer::mid_into<string_form>(*source, position, count, *target);
}

void qek_string_right_string(const qek_string *source, int32_t count, qek_string *target)
{
    buffer::right_into<string_form>(*source, count, *target);
}
