// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "bench.h"
#include "data.h"
#include "qek_std.h"

#include <cstring>
#include <strings.h>

namespace bench {
namespace {

// Pieces of `size` bytes, 16 KiB of them or one. What is searched stands at the far end of each: a
// byte that occurs nowhere else, or the piece's last bytes; `other` differs in the last byte.
struct pieces {
    std::size_t size;
    std::size_t needle;
    std::string text;
    std::string other;
    static constexpr char mark = '#';

    pieces(std::int64_t piece, char *(*end_of)(char *first, std::size_t size))
        : size(static_cast<std::size_t>(piece)), needle(std::min<std::size_t>(8, size / 4)),
          text(prose(std::max<std::int64_t>(piece, 16'384))), other(text)
    {
        for (std::size_t at = 0; at < text.size(); at += size) {
            *end_of(text.data() + at, size) = mark;
            other[at + size - 1] = '!';
        }
    }
    std::int64_t calls() const
    {
        return static_cast<std::int64_t>(std::max<std::size_t>(4, 65'536 / size));
    }
};

char *last(char *first, std::size_t size) { return first + size - 1; }
char *first(char *first, std::size_t) { return first; }

std::uint64_t index_in(const char *piece, const void *found)
{
    return static_cast<std::uint64_t>(static_cast<const char *>(found) - piece);
}

template <auto call, auto end = last> void calling(benchmark::State &state)
{
    pieces made(size_of(state), end);
    repeat(state, made.calls(), made, [](const pieces &of) {
        std::uint64_t total = 0;
        std::size_t at = 0;
        for (std::int64_t left = of.calls(); left > 0; --left) {
            total += static_cast<std::uint64_t>(call(of, at));
            at = at + of.size < of.text.size() ? at + of.size : 0;
        }
        return total;
    });
}

constexpr auto our_size = [](const pieces &of) { return static_cast<std::int32_t>(of.size); };

constexpr auto our_chr = [](const pieces &of, std::size_t at) {
    return qek_mem_chr(of.text.data() + at, our_size(of), pieces::mark);
};
constexpr auto libc_chr = [](const pieces &of, std::size_t at) {
    const char *piece = of.text.data() + at;
    return index_in(piece, std::memchr(piece, pieces::mark, of.size));
};
constexpr auto our_rchr = [](const pieces &of, std::size_t at) {
    return qek_mem_rchr(of.text.data() + at, our_size(of), pieces::mark);
};
constexpr auto libc_rchr = [](const pieces &of, std::size_t at) {
    const char *piece = of.text.data() + at;
    return index_in(piece, memrchr(piece, pieces::mark, of.size));
};
constexpr auto our_str = [](const pieces &of, std::size_t at) {
    const char *piece = of.text.data() + at;
    return qek_mem_str(piece, our_size(of), piece + of.size - of.needle,
                       static_cast<std::int32_t>(of.needle));
};
constexpr auto libc_str = [](const pieces &of, std::size_t at) {
    const char *piece = of.text.data() + at;
    return index_in(piece, memmem(piece, of.size, piece + of.size - of.needle, of.needle));
};
constexpr auto our_cmp = [](const pieces &of, std::size_t at) {
    return qek_mem_cmp(of.text.data() + at, our_size(of), of.other.data() + at, our_size(of)) > 0;
};
constexpr auto libc_cmp = [](const pieces &of, std::size_t at) {
    return std::memcmp(of.text.data() + at, of.other.data() + at, of.size) > 0;
};
constexpr auto our_icmp = [](const pieces &of, std::size_t at) {
    return qek_mem_icmp(of.text.data() + at, our_size(of), of.other.data() + at, our_size(of)) > 0;
};
constexpr auto libc_icmp = [](const pieces &of, std::size_t at) {
    return strncasecmp(of.text.data() + at, of.other.data() + at, of.size) > 0;
};

} // namespace

void register_rows()
{
    const sizes lengths{16, 1024, 1 << 20};
    add("mem_chr", "ours", lengths, calling<our_chr>);
    add("mem_chr", "memchr", lengths, calling<libc_chr>);
    add("mem_rchr", "ours", lengths, calling<our_rchr, first>);
    add("mem_rchr", "memrchr", lengths, calling<libc_rchr, first>);
    add("mem_str", "ours", lengths, calling<our_str>);
    add("mem_str", "memmem", lengths, calling<libc_str>);
    add("mem_cmp", "ours", lengths, calling<our_cmp>);
    add("mem_cmp", "memcmp", lengths, calling<libc_cmp>);
    add("mem_icmp", "ours", lengths, calling<our_icmp>);
    add("mem_icmp", "strncasecmp", lengths, calling<libc_icmp>);
}

} // namespace bench
