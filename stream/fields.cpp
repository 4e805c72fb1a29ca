// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Fields of the serialised form: fixed-width integers, low byte first, and runs with a length
// prefix.

#include "stream/buffer.h"
#include "stream/cursor.h"

using namespace qek;

namespace {

// The cursor is read once, and written before the bytes: for all that the compiler knows, they might
// lie upon it.
template <typename Value, int Width>
Value get_field(const qek_stream &stream, std::int32_t &position) noexcept
{
    const std::int32_t at = position;
    const bool fits = cursor::fits(stream, at, Width);
    position = wrapping_sum(at, Width);
    return fits ? static_cast<Value>(cursor::load_low_first<Width>(stream.data + at)) : Value{0};
}

template <int Width>
void set_field(qek_stream &stream, std::int32_t &position, std::uint64_t value) noexcept
{
    const std::int32_t at = position;
    const bool fits = cursor::fits(stream, at, Width);
    position = wrapping_sum(at, Width);
    if (fits) {
        cursor::store_low_first<Width>(stream.data + at, value);
    }
}

// The run behind a prefix, cut at the end of the stream. A prefix that reads as negative is wrong
// data: it leaves the target alone and moves the cursor back.
template <buffer::form Form>
void get_run(const qek_stream &stream, std::int32_t &position, std::int32_t size,
             typename Form::record &target) noexcept
{
    if (size >= 0) {
        const std::int32_t found = cursor::available(stream, position, size);
        buffer::mid_into<Form>(stream, position, found, target);
    }
    cursor::advance(position, size);
}

void set_run(qek_stream &stream, std::int32_t &position, const void *bytes,
             std::int32_t size) noexcept
{
    const std::int32_t written = cursor::available(stream, position, size);
    if (written > 0) {
        move_bytes(stream.data + position, bytes, written);
    }
    cursor::advance(position, size);
}

void point_at_run(const qek_stream &stream, std::int32_t &position, std::uint8_t *&bytes,
                  std::int32_t &size) noexcept
{
    const std::int32_t wanted = size;
    const bool inside = position >= 0 && position < stream.length;
    size = cursor::available(stream, position, wanted);
    bytes = inside ? stream.data + position : nullptr;
    cursor::advance(position, wanted);
}

} // namespace

uint8_t qek_stream_get_byte(const qek_stream *stream, int32_t *position)
{
    return get_field<uint8_t, 1>(*stream, *position);
}

void qek_stream_set_byte(qek_stream *stream, int32_t *position, uint8_t value)
{
    set_field<1>(*stream, *position, value);
}

uint16_t qek_stream_get_word(const qek_stream *stream, int32_t *position)
{
    return get_field<uint16_t, 2>(*stream, *position);
}

void qek_stream_set_word(qek_stream *stream, int32_t *position, uint16_t value)
{
    set_field<2>(*stream, *position, value);
}

uint32_t qek_stream_get_tword(const qek_stream *stream, int32_t *position)
{
    return get_field<uint32_t, 3>(*stream, *position);
}

void qek_stream_set_tword(qek_stream *stream, int32_t *position, uint32_t value)
{
    set_field<3>(*stream, *position, value);
}

uint32_t qek_stream_get_dword(const qek_stream *stream, int32_t *position)
{
    return get_field<uint32_t, 4>(*stream, *position);
}

void qek_stream_set_dword(qek_stream *stream, int32_t *position, uint32_t value)
{
    set_field<4>(*stream, *position, value);
}

uint64_t qek_stream_get_xword(const qek_stream *stream, int32_t *position)
{
    return get_field<uint64_t, 6>(*stream, *position);
}

void qek_stream_set_xword(qek_stream *stream, int32_t *position, uint64_t value)
{
    set_field<6>(*stream, *position, value);
}

uint64_t qek_stream_get_lword(const qek_stream *stream, int32_t *position)
{
    return get_field<uint64_t, 8>(*stream, *position);
}

void qek_stream_set_lword(qek_stream *stream, int32_t *position, uint64_t value)
{
    set_field<8>(*stream, *position, value);
}

void qek_stream_get_string(const qek_stream *stream, int32_t *position, qek_string *string)
{
    const std::int32_t size = qek_stream_get_word(stream, position);
    get_run<buffer::string_form>(*stream, *position, size, *string);
}

// The prefix holds the low 16 bits of the length, while the whole text is written: intended.
void qek_stream_set_string(qek_stream *stream, int32_t *position, const qek_string *string)
{
    qek_stream_set_word(stream, position, static_cast<uint16_t>(string->length));
    set_run(*stream, *position, string->data, string->length);
}

void qek_stream_get_stream(const qek_stream *stream, int32_t *position, qek_stream *target)
{
    const auto size = static_cast<std::int32_t>(qek_stream_get_dword(stream, position));
    get_run<buffer::stream_form>(*stream, *position, size, *target);
}

void qek_stream_set_stream(qek_stream *stream, int32_t *position, const qek_stream *source)
{
    qek_stream_set_dword(stream, position, static_cast<uint32_t>(source->length));
    set_run(*stream, *position, source->data, source->length);
}

void qek_stream_get_buffer(const qek_stream *stream, int32_t *position, uint8_t **bytes_out,
                           int32_t *size_in_out)
{
    point_at_run(*stream, *position, *bytes_out, *size_in_out);
}

void qek_stream_set_buffer(qek_stream *stream, int32_t *position, const void *bytes, int32_t size)
{
    set_run(*stream, *position, bytes, size);
}
