// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Compact integers: three codes, one for each width, that share nothing but the idea.
//
//   word    1 marker bit, 7 or 15 value bits, high byte first
//   dword   2 length bits, 6, 14, 22 or 30 value bits, high byte first
//   lword   leading ones count the bytes that follow; 7 to 64 value bits; the bytes of a whole
//           16-bit or 32-bit group stand low first, what is above them high first
//
// They also fail in different ways, and that is interface: the word and dword writers move the
// cursor whether or not the bytes fitted, so that a run over a short stream measures, and their
// readers test the first byte only; the lword writer and reader test every byte, and the reader
// answers all ones. A value above the range of the word or dword code loses its top bits in the
// marker.

#include "stream/cursor.h"

using namespace qek;

namespace {

constexpr std::uint64_t all_ones = ~std::uint64_t{0};

constexpr std::int32_t word_length(std::uint16_t value) noexcept { return value < 0x80 ? 1 : 2; }

constexpr std::int32_t dword_length(std::uint32_t value) noexcept
{
    return 1 + static_cast<std::int32_t>(value >= 0x40) +
           static_cast<std::int32_t>(value >= 0x4000) +
           static_cast<std::int32_t>(value >= 0x400000);
}

constexpr std::int32_t lword_length(std::uint64_t value) noexcept
{
    std::int32_t length = 1;
    while (length < 9 && value >> (7 * length) != 0) {
        ++length;
    }
    return length;
}

// At most four bytes, each in one store and without a branch: those beyond the length, which no
// processor can guess, are the last one again.
template <std::int32_t most>
void write_high_first(qek_stream &stream, std::int32_t &position, std::uint32_t code,
                      std::int32_t length) noexcept
{
    const std::int32_t from = position;
    if (cursor::fits(stream, from, length)) {
        std::uint8_t *bytes = stream.data + from;
        const auto put = [&](std::int32_t place) {
            const std::int32_t at = smaller(place, length - 1);
            bytes[at] = static_cast<std::uint8_t>(code >> (8 * (length - 1 - at)));
        };
        put(0);
        put(1);
        if constexpr (most > 2) {
            put(2);
            put(3);
        }
    }
    position = wrapping_sum(from, length);
}

// What is behind the buffer reads as zeros.
[[gnu::noinline]] std::uint32_t read_near_end(const qek_stream &stream, std::int32_t from,
                                              std::int32_t length) noexcept
{
    std::uint32_t code = 0;
    for (std::int32_t at = 0; at < length; ++at) {
        const bool held = wide(from) + at < stream.capacity;
        code = code << 8 | (held ? stream.data[from + at] : 0U);
    }
    return code;
}

// A form cut off by the length reads on into the bytes behind it.
std::uint32_t read_high_first(const qek_stream &stream, std::int32_t &position,
                              std::int32_t length) noexcept
{
    const std::int32_t from = position;
    const bool is_word_held = wide(from) + 4 <= stream.capacity;
    position = wrapping_sum(from, length);
    return is_word_held ? __builtin_bswap32(load_low_first<std::uint32_t>(stream.data + from)) >>
                              (32 - 8 * length)
                        : read_near_end(stream, from, length);
}

bool at_end(const qek_stream &stream, std::int32_t position) noexcept
{
    return !cursor::fits(stream, position, 1);
}

void deflate_word(qek_stream &stream, std::int32_t &position, std::uint16_t value) noexcept
{
    const std::int32_t length = word_length(value);
    write_high_first<2>(stream, position, length == 1 ? value : value | 0x8000U, length);
}

std::uint16_t inflate_word(const qek_stream &stream, std::int32_t &position) noexcept
{
    if (at_end(stream, position)) {
        return 0;
    }
    const std::int32_t length = stream.data[position] < 0x80 ? 1 : 2;
    return static_cast<std::uint16_t>(read_high_first(stream, position, length) & 0x7FFF);
}

void deflate_dword(qek_stream &stream, std::int32_t &position, std::uint32_t value) noexcept
{
    const std::int32_t length = dword_length(value);
    const std::uint32_t marker = static_cast<std::uint32_t>(length - 1) << (8 * length - 2);
    write_high_first<4>(stream, position, value | marker, length);
}

std::uint32_t inflate_dword(const qek_stream &stream, std::int32_t &position) noexcept
{
    if (at_end(stream, position)) {
        return 0;
    }
    const std::int32_t length = (stream.data[position] >> 6) + 1;
    const std::uint32_t value_bits = ~std::uint32_t{0} >> (34 - 8 * length);
    return read_high_first(stream, position, length) & value_bits;
}

constexpr std::uint8_t leading_ones(std::int32_t count) noexcept
{
    return static_cast<std::uint8_t>(0xFF00 >> count);
}

std::int32_t form_length(std::uint8_t first) noexcept
{
    std::int32_t length = 1;
    while (length < 9 && (first & (0x80 >> (length - 1))) != 0) {
        ++length;
    }
    return length;
}

// Where byte `at` of a form of `length` bytes stands in the value, as a shift. The rows are the
// forms of 1 to 8 bytes; the form of 9 keeps its value in 8 bytes, low first, behind the marker.
constexpr std::int8_t shifts[8][8] = {
    {0},
    {8, 0},
    {16, 0, 8},
    {24, 16, 0, 8},
    {32, 0, 8, 16, 24},
    {40, 32, 0, 8, 16, 24},
    {48, 32, 40, 0, 8, 16, 24},
    {56, 48, 32, 40, 0, 8, 16, 24},
};

void deflate_lword(qek_stream &stream, std::int32_t &position, std::uint64_t value) noexcept
{
    const std::int32_t length = lword_length(value);
    if (!cursor::fits(stream, position, length)) {
        return;
    }
    std::uint8_t *bytes = stream.data + position;
    if (length == 9) {
        bytes[0] = 0xFF;
        cursor::store_low_first<8>(bytes + 1, value);
    } else {
        for (std::int32_t at = 0; at < length; ++at) {
            bytes[at] = static_cast<std::uint8_t>(value >> shifts[length - 1][at]);
        }
        bytes[0] = static_cast<std::uint8_t>(bytes[0] | leading_ones(length - 1));
    }
    cursor::advance(position, length);
}

// Of a form that is cut off, the first byte stays read: the cursor has moved by one.
std::uint64_t inflate_lword(const qek_stream &stream, std::int32_t &position) noexcept
{
    if (at_end(stream, position)) {
        return all_ones;
    }
    const std::uint8_t *bytes = stream.data + position;
    const std::int32_t length = form_length(bytes[0]);
    if (!cursor::fits(stream, position, length)) {
        cursor::advance(position, 1);
        return all_ones;
    }
    cursor::advance(position, length);
    if (length == 9) {
        return cursor::load_low_first<8>(bytes + 1);
    }
    const auto top = static_cast<std::uint8_t>(bytes[0] & ~leading_ones(length));
    std::uint64_t value = static_cast<std::uint64_t>(top) << shifts[length - 1][0];
    for (std::int32_t at = 1; at < length; ++at) {
        value |= static_cast<std::uint64_t>(bytes[at]) << shifts[length - 1][at];
    }
    return value;
}

} // namespace

int32_t qek_stream_deflate_word_length(uint16_t value) { return word_length(value); }

void qek_stream_deflate_word(qek_stream *stream, int32_t *position, uint16_t value)
{
    deflate_word(*stream, *position, value);
}

uint16_t qek_stream_inflate_word(const qek_stream *stream, int32_t *position)
{
    return inflate_word(*stream, *position);
}

int32_t qek_stream_deflate_dword_length(uint32_t value) { return dword_length(value); }

void qek_stream_deflate_dword(qek_stream *stream, int32_t *position, uint32_t value)
{
    deflate_dword(*stream, *position, value);
}

uint32_t qek_stream_inflate_dword(const qek_stream *stream, int32_t *position)
{
    return inflate_dword(*stream, *position);
}

int32_t qek_stream_deflate_lword_length(uint64_t value) { return lword_length(value); }

void qek_stream_deflate_lword(qek_stream *stream, int32_t *position, uint64_t value)
{
    deflate_lword(*stream, *position, value);
}

uint64_t qek_stream_inflate_lword(const qek_stream *stream, int32_t *position)
{
    return inflate_lword(*stream, *position);
}
