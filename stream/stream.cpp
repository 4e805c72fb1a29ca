// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The byte stream: a growable buffer with no terminator. The editing is buffer.h; fields, compact
// integers and checksums have sources of their own.

#include "base/search.h"
#include "stream/buffer.h"

using namespace qek;
using buffer::stream_form;
using buffer::string_form;

namespace {

const std::uint8_t nothing = 0;

} // namespace

void qek_stream_init(qek_stream *stream) { buffer::reset(*stream); }

void qek_stream_term(qek_stream *stream) { buffer::release(*stream); }

int32_t qek_stream_is_empty(const qek_stream *stream) { return buffer::is_empty(*stream); }

void qek_stream_zero(qek_stream *stream, int32_t position, int32_t count)
{
    buffer::zero(*stream, position, count);
}

int32_t qek_stream_expand(qek_stream *stream, int32_t wanted)
{
    return buffer::expand<stream_form>(*stream, wanted);
}

void qek_stream_shrink(qek_stream *stream, int32_t new_length)
{
    buffer::shrink<stream_form>(*stream, new_length);
}

void qek_stream_swap(qek_stream *first, qek_stream *second) { buffer::swap(*first, *second); }

void qek_stream_swap_string(qek_stream *stream, qek_string *string)
{
    buffer::swap(*stream, *string);
}

void qek_stream_clone(const qek_stream *source, qek_stream *target)
{
    buffer::clone<stream_form>(*source, *target);
}

// Alone among the forms that write a string, this one prepares its target.
void qek_stream_clone_string(const qek_stream *source, qek_string *target)
{
    buffer::reset(*target);
    buffer::clone<string_form>(*source, *target);
}

uint8_t qek_stream_get_at(const qek_stream *stream, int32_t index)
{
    return buffer::get_at(*stream, index, nothing);
}

void qek_stream_set_at(qek_stream *stream, int32_t index, uint8_t value)
{
    buffer::set_at(*stream, index, value);
}

void qek_stream_copy(qek_stream *stream, const void *bytes, int32_t size)
{
    buffer::copy<stream_form>(*stream, as_bytes(bytes), size);
}

void qek_stream_append(qek_stream *stream, const void *bytes, int32_t size)
{
    buffer::append<stream_form>(*stream, as_bytes(bytes), size);
}

int32_t qek_stream_insert(qek_stream *stream, int32_t position, const void *bytes, int32_t size)
{
    return buffer::insert<stream_form>(*stream, position, as_bytes(bytes), measured(bytes, size));
}

int32_t qek_stream_update(qek_stream *stream, int32_t position, int32_t old_size, const void *bytes,
                          int32_t size)
{
    return buffer::update_measured<stream_form>(*stream, position, old_size, as_bytes(bytes), size);
}

void qek_stream_delete(qek_stream *stream, int32_t position, int32_t size)
{
    buffer::remove_inside<stream_form>(*stream, position, size);
}

void qek_stream_left(qek_stream *stream, int32_t size) { buffer::left<stream_form>(*stream, size); }

void qek_stream_mid(qek_stream *stream, int32_t position, int32_t size)
{
    buffer::mid<stream_form>(*stream, position, size);
}

void qek_stream_right(qek_stream *stream, int32_t size)
{
    buffer::right<stream_form>(*stream, size);
}

int32_t qek_stream_find(const qek_stream *stream, uint8_t ch)
{
    return text::find_unit_in(text::span_of(*stream), ch, 0);
}

int32_t qek_stream_find_pos(const qek_stream *stream, uint8_t ch, int32_t start)
{
    return text::find_unit_in(text::span_of(*stream), ch, start);
}

void qek_stream_left_stream(const qek_stream *stream, int32_t size, qek_stream *target)
{
    buffer::left_into<stream_form>(*stream, size, *target);
}

void qek_stream_mid_stream(const qek_stream *stream, int32_t position, int32_t size,
                           qek_stream *target)
{
    buffer::mid_into<stream_form>(*stream, position, size, *target);
}

void qek_stream_right_stream(const qek_stream *stream, int32_t size, qek_stream *target)
{
    buffer::right_into<stream_form>(*stream, size, *target);
}

void qek_stream_left_string(const qek_stream *source, int32_t count, qek_string *target)
{
    buffer::left_into<string_form>(*source, count, *target);
}

void qek_stream_mid_string(const qek_stream *source, int32_t position, int32_t count,
                           qek_string *target)
{
    buffer::mid_into<string_form>(*source, position, count, *target);
}

void qek_stream_right_string(const qek_stream *source, int32_t count, qek_string *target)
{
    buffer::right_into<string_form>(*source, count, *target);
}
