// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The owned text of 16-bit units. It is the 8-bit text over another unit; what it has for itself is
// the widening of bytes, which keeps their sign. Negative lengths are measured everywhere but in
// `insert` and `update`, which refuse them.

#include "base/letters.h"
#include "text/owned.h"
#include "text/print.h"

#include <cctype>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

using namespace qek;

namespace {

using wide_form = buffer::terminated_form<qek_wchar, std::uint16_t>;

const std::uint16_t outside = 0;

std::uint16_t widened(std::uint8_t byte) noexcept
{
    return static_cast<std::uint16_t>(static_cast<std::int8_t>(byte));
}

// Sixteen at a time where that is known to take three instructions, and eight elsewhere: an eighth
// and a fifth of the time.
void widen(const std::uint8_t *bytes, std::int32_t count, std::uint16_t *units) noexcept
{
    using narrow_units [[gnu::vector_size(8)]] = std::int8_t;
    using wide_units [[gnu::vector_size(16)]] = std::int16_t;
    std::int32_t at = 0;
#if defined(__SSE2__)
    for (; count - at >= 16; at += 16) {
        __m128i sixteen;
        std::memcpy(&sixteen, bytes + at, sizeof sixteen);
        const __m128i signs = _mm_cmplt_epi8(sixteen, _mm_setzero_si128());
        const __m128i first = _mm_unpacklo_epi8(sixteen, signs);
        const __m128i second = _mm_unpackhi_epi8(sixteen, signs);
        std::memcpy(units + at, &first, sizeof first);
        std::memcpy(units + at + 8, &second, sizeof second);
    }
#endif
    for (; count - at >= 8; at += 8) {
        narrow_units eight;
        std::memcpy(&eight, bytes + at, sizeof eight);
        const auto widened_units = __builtin_convertvector(eight, wide_units);
        std::memcpy(units + at, &widened_units, sizeof widened_units);
    }
    for (; at < count; ++at) {
        units[at] = widened(bytes[at]);
    }
}

// Writes the bytes behind the first `kept` units.
void put_bytes(qek_wchar &string, std::int32_t kept, const std::uint8_t *bytes,
               std::int32_t count) noexcept
{
    const std::int64_t length = wide(kept) + count;
    if (buffer::expand<wide_form>(string, length)) {
        widen(bytes, count, string.data + kept);
        buffer::shrink<wide_form>(string, length);
    }
}

void copy_bytes(qek_wchar &string, const void *text, std::int32_t length) noexcept
{
    if (text == nullptr) {
        buffer::shrink<wide_form>(string, 0);
    } else {
        put_bytes(string, 0, as_bytes(text), measured(text, length));
    }
}

void append_bytes(qek_wchar &string, const void *text, std::int32_t length) noexcept
{
    if (text != nullptr) {
        put_bytes(string, string.length, as_bytes(text), measured(text, length));
    }
}

template <typename Text>
void end_with_text(qek_wchar &string, std::int32_t from, const Text &text) noexcept
{
    std::uint8_t bytes[number::longest_text];
    store_low_first(bytes, std::uint64_t{0}); // a short text is written into what is there
    text.write(bytes, sizeof bytes);
    put_bytes(string, from, bytes, text.length());
}

void end_with_number(qek_wchar &string, std::int32_t from, std::int64_t value) noexcept
{
    end_with_text(string, from, number::integer_text(value));
}

void end_with_number(qek_wchar &string, std::int32_t from, double value) noexcept
{
    end_with_text(string, from, number::decimal_text(value));
}

} // namespace

void qek_wchar_init(qek_wchar *string) { buffer::reset(*string); }

void qek_wchar_term(qek_wchar *string) { buffer::release(*string); }

int32_t qek_wchar_is_empty(const qek_wchar *string) { return buffer::is_empty(*string); }

void qek_wchar_swap(qek_wchar *a, qek_wchar *b) { buffer::swap(*a, *b); }

void qek_wchar_zero(qek_wchar *string, int32_t position, int32_t count)
{
    buffer::zero(*string, position, count);
}

int32_t qek_wchar_expand(qek_wchar *string, int32_t capacity)
{
    return buffer::expand<wide_form>(*string, capacity);
}

int32_t qek_wchar_trim(qek_wchar *string) { return text::trim<wide_form>(*string); }

void qek_wchar_shrink(qek_wchar *string, int32_t length)
{
    buffer::shrink<wide_form>(*string, length);
}

void qek_wchar_clone(const qek_wchar *source, qek_wchar *target)
{
    buffer::clone<wide_form>(*source, *target);
}

void qek_wchar_make_lower(qek_wchar *string)
{
    text::map_units(string->data, string->length, text::unit_map<text::lower_case>{});
}

void qek_wchar_make_upper(qek_wchar *string)
{
    text::map_units(string->data, string->length, text::unit_map<text::upper_case>{});
}

void qek_wchar_copy(qek_wchar *string, const uint16_t *text, int32_t text_length)
{
    buffer::copy<wide_form>(*string, text, text_length);
}

void qek_wchar_copy_char(qek_wchar *string, uint16_t ch)
{
    text::copy_unit<wide_form>(*string, ch);
}

void qek_wchar_copy_str(qek_wchar *string, const void *text, int32_t text_length)
{
    copy_bytes(*string, text, text_length);
}

void qek_wchar_copy_integer(qek_wchar *string, int32_t value)
{
    end_with_number(*string, 0, std::int64_t{value});
}

void qek_wchar_copy_long(qek_wchar *string, int64_t value) { end_with_number(*string, 0, value); }

void qek_wchar_copy_float(qek_wchar *string, float value)
{
    end_with_number(*string, 0, double{value});
}

void qek_wchar_copy_double(qek_wchar *string, double value) { end_with_number(*string, 0, value); }

void qek_wchar_append(qek_wchar *string, const uint16_t *text, int32_t text_length)
{
    buffer::append<wide_form>(*string, text, text_length);
}

void qek_wchar_append_char(qek_wchar *string, uint16_t ch)
{
    text::append_unit<wide_form>(*string, ch);
}

void qek_wchar_append_str(qek_wchar *string, const void *text, int32_t text_length)
{
    append_bytes(*string, text, text_length);
}

void qek_wchar_append_integer(qek_wchar *string, int32_t value)
{
    end_with_number(*string, string->length, std::int64_t{value});
}

void qek_wchar_append_long(qek_wchar *string, int64_t value)
{
    end_with_number(*string, string->length, value);
}

void qek_wchar_append_float(qek_wchar *string, float value)
{
    end_with_number(*string, string->length, double{value});
}

void qek_wchar_append_double(qek_wchar *string, double value)
{
    end_with_number(*string, string->length, value);
}

uint16_t qek_wchar_get_at(const qek_wchar *string, int32_t index)
{
    return buffer::get_at(*string, index, outside);
}

void qek_wchar_set_at(qek_wchar *string, int32_t index, uint16_t ch)
{
    buffer::set_at(*string, index, ch);
}

int32_t qek_wchar_compare(const qek_wchar *string, const uint16_t *text, int32_t text_length)
{
    return text::compare(text::span_of(*string), text, text_length);
}

int32_t qek_wchar_icompare(const qek_wchar *string, const uint16_t *text, int32_t text_length)
{
    return text::compare_ignoring_case(text::span_of(*string), text, text_length);
}

int32_t qek_wchar_find_char(const qek_wchar *string, uint16_t ch)
{
    return text::find_unit_in(text::span_of(*string), ch, 0);
}

int32_t qek_wchar_find_char_pos(const qek_wchar *string, uint16_t ch, int32_t start)
{
    return text::find_unit_in(text::span_of(*string), ch, start);
}

int32_t qek_wchar_reverse_find(const qek_wchar *string, uint16_t ch)
{
    return text::find_last(text::span_of(*string), ch);
}

int32_t qek_wchar_find(const qek_wchar *string, const uint16_t *text, int32_t text_length)
{
    return text::find_in_owned(text::span_of(*string), text, text_length, 0);
}

int32_t qek_wchar_find_pos(const qek_wchar *string, const uint16_t *text, int32_t text_length,
                           int32_t start)
{
    return text::find_in_owned(text::span_of(*string), text, text_length, start);
}

int32_t qek_wchar_replace_char(qek_wchar *string, uint16_t old_ch, uint16_t new_ch)
{
    return text::replace_unit<wide_form>(*string, old_ch, new_ch);
}

int32_t qek_wchar_replace(qek_wchar *string, const uint16_t *find, const uint16_t *replacement)
{
    return text::replace<wide_form>(*string, find, replacement);
}

int32_t qek_wchar_insert(qek_wchar *string, int32_t position, const uint16_t *text,
                         int32_t text_length)
{
    return buffer::insert<wide_form>(*string, position, text, text_length);
}

int32_t qek_wchar_update(qek_wchar *string, int32_t position, int32_t old_length,
                         const uint16_t *text, int32_t text_length)
{
    return buffer::update<wide_form>(*string, position, old_length, text, text_length);
}

void qek_wchar_delete(qek_wchar *string, int32_t position, int32_t count)
{
    text::remove<wide_form>(*string, position, count);
}

void qek_wchar_left(qek_wchar *string, int32_t count) { buffer::left<wide_form>(*string, count); }

void qek_wchar_mid(qek_wchar *string, int32_t position, int32_t count)
{
    buffer::mid<wide_form>(*string, position, count);
}

void qek_wchar_right(qek_wchar *string, int32_t count) { buffer::right<wide_form>(*string, count); }

void qek_wchar_left_wchar(const qek_wchar *source, int32_t count, qek_wchar *target)
{
    buffer::left_into<wide_form>(*source, count, *target);
}

void qek_wchar_mid_wchar(const qek_wchar *source, int32_t position, int32_t count,
                         qek_wchar *target)
{
    buffer::mid_into<wide_form>(*source, position, count, *target);
}

void qek_wchar_right_wchar(const qek_wchar *source, int32_t count, qek_wchar *target)
{
    buffer::right_into<wide_form>(*source, count, *target);
}
