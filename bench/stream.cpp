// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "bench.h"
#include "data.h"
#include "qek_std.h"

#include <isa-l/crc.h>
#include <libdeflate.h>
#include <zlib.h>

namespace bench {
namespace {

struct stream {
    qek_stream record;
    std::int32_t position = 0;

    explicit stream(std::int64_t length)
    {
        qek_stream_init(&record);
        qek_stream_expand(&record, static_cast<std::int32_t>(length));
        qek_stream_shrink(&record, static_cast<std::int32_t>(length));
    }
    ~stream() { qek_stream_term(&record); }
    stream(const stream &) = delete;
    stream &operator=(const stream &) = delete;

    void rewind() { position = 0; }
};

// A group of fields is 15 bytes: a byte, a word, a dword and a lword.
constexpr std::int64_t group = 4;

struct our_fields : stream {
    explicit our_fields(std::int64_t count) : stream(count / group * 15) {}

    void write(std::uint64_t value)
    {
        qek_stream_set_byte(&record, &position, static_cast<std::uint8_t>(value));
        qek_stream_set_word(&record, &position, static_cast<std::uint16_t>(value));
        qek_stream_set_dword(&record, &position, static_cast<std::uint32_t>(value));
        qek_stream_set_lword(&record, &position, value);
    }
    std::uint64_t read()
    {
        std::uint64_t total = qek_stream_get_byte(&record, &position);
        total += qek_stream_get_word(&record, &position);
        total += qek_stream_get_dword(&record, &position);
        return total + qek_stream_get_lword(&record, &position);
    }
};

// A pointer that runs along a buffer, and a look at its end before each field.
struct pointer_fields {
    std::vector<std::uint8_t> bytes;
    std::uint8_t *at;
    std::uint8_t *end;

    explicit pointer_fields(std::int64_t count)
        : bytes(static_cast<std::size_t>(count / group * 15)), at(bytes.data()),
          end(bytes.data() + bytes.size())
    {
    }
    pointer_fields(const pointer_fields &) = delete;
    pointer_fields &operator=(const pointer_fields &) = delete;

    void rewind() { at = bytes.data(); }
    void write(std::uint64_t value)
    {
        std::uint8_t *to = at;
        put(to, static_cast<std::uint8_t>(value));
        put(to, static_cast<std::uint16_t>(value));
        put(to, static_cast<std::uint32_t>(value));
        put(to, value);
        at = to;
    }
    std::uint64_t read()
    {
        std::uint64_t total = get<std::uint8_t>();
        total += get<std::uint16_t>();
        total += get<std::uint32_t>();
        return total + get<std::uint64_t>();
    }

  private:
    template <typename Field> void put(std::uint8_t *&to, Field field) const
    {
        if (end - to >= static_cast<std::ptrdiff_t>(sizeof field)) {
            std::memcpy(to, &field, sizeof field);
        }
        to += sizeof field;
    }
    template <typename Field> Field get()
    {
        Field field{};
        if (end - at >= static_cast<std::ptrdiff_t>(sizeof field)) {
            std::memcpy(&field, at, sizeof field);
        }
        at += sizeof field;
        return field;
    }
};

// Compact codes of numbers below 2^30, of all lengths alike.
struct our_compact : stream {
    explicit our_compact(std::int64_t count) : stream(count * 5) {}

    void write(std::uint64_t value)
    {
        qek_stream_deflate_dword(&record, &position, static_cast<std::uint32_t>(small(value)));
    }
    std::uint64_t read() { return qek_stream_inflate_dword(&record, &position); }

    static std::uint64_t small(std::uint64_t value) { return (value >> 34) >> (value % 30); }
};

// LEB128, which tests the end of its buffer at each byte, as ours does at each code.
struct leb128 {
    std::vector<std::uint8_t> bytes;
    std::uint8_t *at;
    std::uint8_t *end;

    explicit leb128(std::int64_t count)
        : bytes(static_cast<std::size_t>(count * 5)), at(bytes.data()),
          end(bytes.data() + bytes.size())
    {
    }
    leb128(const leb128 &) = delete;
    leb128 &operator=(const leb128 &) = delete;

    void rewind() { at = bytes.data(); }
    void write(std::uint64_t value)
    {
        auto left = static_cast<std::uint32_t>(our_compact::small(value));
        std::uint8_t *to = at;
        std::uint8_t *const last = end;
        for (; left >= 0x80 && to < last; left >>= 7) {
            *to++ = static_cast<std::uint8_t>(left | 0x80);
        }
        if (to < last) {
            *to++ = static_cast<std::uint8_t>(left);
        }
        at = to;
    }
    std::uint64_t read()
    {
        std::uint32_t value = 0;
        for (std::uint32_t shift = 0; at < end; shift += 7) {
            const std::uint8_t byte = *at++;
            value |= (byte & 0x7fU) << shift;
            if (byte < 0x80) {
                break;
            }
        }
        return value;
    }
};

template <typename Fields> void write_all(Fields &to, const keys<std::uint64_t> &values)
{
    to.rewind();
    for (const std::uint64_t value : values) {
        to.write(value);
    }
}

template <typename Fields> std::uint64_t read_all(Fields &from, std::int64_t count)
{
    std::uint64_t total = 0;
    from.rewind();
    for (std::int64_t at = 0; at < count; ++at) {
        total = total * 31 + from.read();
    }
    return total;
}

template <typename Fields, std::int64_t fields_at_once> void writing(benchmark::State &state)
{
    const keys<std::uint64_t> values(size_of(state) / fields_at_once);
    Fields fields(size_of(state));
    repeat(state, size_of(state), fields, [&](Fields &to) {
        write_all(to, values);
        return 0U;
    });
    state.counters["result"] = static_cast<double>(read_all(fields, values.size()) & 0xffffffffU);
}

template <typename Fields, std::int64_t fields_at_once> void reading(benchmark::State &state)
{
    const keys<std::uint64_t> values(size_of(state) / fields_at_once);
    Fields fields(size_of(state));
    write_all(fields, values);
    repeat(state, size_of(state), fields,
           [&](Fields &from) { return read_all(from, values.size()); });
}

std::uint32_t our_crc(const std::uint8_t *bytes, std::size_t size)
{
    return qek_stream_crc32(bytes, static_cast<std::int32_t>(size));
}
std::uint32_t deflate_crc(const std::uint8_t *bytes, std::size_t size)
{
    return libdeflate_crc32(0, bytes, size);
}
std::uint32_t isal_crc(const std::uint8_t *bytes, std::size_t size)
{
    return crc32_gzip_refl(0, bytes, size);
}
std::uint32_t zlib_crc(const std::uint8_t *bytes, std::size_t size)
{
    return static_cast<std::uint32_t>(crc32(0, bytes, static_cast<uInt>(size)));
}

// The size 64 stands for all lengths from 8 to 64 in turn.
template <auto crc> void summing(benchmark::State &state)
{
    const std::int64_t calls = std::max<std::int64_t>(4, 262'144 / size_of(state));
    const std::string text = prose(size_of(state) + calls);
    repeat(state, calls, text, [&](const std::string &from) {
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(from.data());
        std::uint64_t total = 0;
        for (std::int64_t at = 0; at < calls; ++at) {
            const std::int64_t size = size_of(state) == 64 ? 8 + at * 29 % 57 : size_of(state);
            total += crc(bytes + at, static_cast<std::size_t>(size));
        }
        return total;
    });
}

template <typename Fields, std::int64_t fields_at_once = 1>
void add_fields(const std::string &row, const char *side)
{
    add(row + "_write", side, {1'000'000}, writing<Fields, fields_at_once>);
    add(row + "_read", side, {1'000'000}, reading<Fields, fields_at_once>);
}

} // namespace

void register_rows()
{
    add_fields<our_fields, group>("stream_fields", "ours");
    add_fields<pointer_fields, group>("stream_fields", "pointer");
    add_fields<our_compact>("stream_compact", "ours");
    add_fields<leb128>("stream_compact", "leb128");
    const sizes lengths{64, 1024, 1 << 20};
    add("crc32", "ours", lengths, summing<our_crc>);
    add("crc32", "libdeflate", lengths, summing<deflate_crc>);
    add("crc32", "isa-l", lengths, summing<isal_crc>);
    add("crc32", "zlib", lengths, summing<zlib_crc>);
}

} // namespace bench
