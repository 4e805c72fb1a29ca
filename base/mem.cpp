// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Counted byte runs in the caller's memory.

#include "base/bytes.h"
#include "qek_std.h"

using namespace qek;

namespace {

// Ascending by whole 32-bit words and then by bytes, whichever run lies higher: a destination that
// overlaps above its source repeats what was already written. That is intended.
void copy_ascending(std::uint8_t *dest, const std::uint8_t *src, std::int32_t size) noexcept
{
    std::int32_t at = 0;
    for (; size - at >= 4; at += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, src + at, sizeof word);
        std::memcpy(dest + at, &word, sizeof word);
    }
    for (; at < size; ++at) {
        dest[at] = src[at];
    }
}

bool repeats_itself(const std::uint8_t *dest, const std::uint8_t *src, std::int32_t size) noexcept
{
    const auto from = reinterpret_cast<std::uintptr_t>(src);
    const auto to = reinterpret_cast<std::uintptr_t>(dest);
    return size > 0 && to > from && to - from < static_cast<std::uintptr_t>(size);
}

void copy(std::uint8_t *dest, const std::uint8_t *src, std::int32_t size) noexcept
{
    if (repeats_itself(dest, src, size)) {
        copy_ascending(dest, src, size);
    } else {
        move_bytes(dest, src, size);
    }
}

void clear(std::uint8_t *dest, std::int64_t size) noexcept
{
    if (size != 0) {
        std::memset(dest, 0, static_cast<std::size_t>(size));
    }
}

// What is moved is gone from where it was. Within a distance of 3 bytes nothing is cleared, and an
// overlapping move upward repeats its first bytes as `copy` does; both are intended.
void move(std::uint8_t *dest, std::uint8_t *src, std::int32_t size) noexcept
{
    const auto from = reinterpret_cast<std::uintptr_t>(src);
    const auto to = reinterpret_cast<std::uintptr_t>(dest);
    const std::uintptr_t apart = from > to ? from - to : to - from;
    if (apart < 4) {
        move_bytes(dest, src, size);
        return;
    }
    copy(dest, src, size);
    if (apart >= static_cast<std::uintptr_t>(larger(size, 0))) {
        clear(src, size);
    } else if (from > to) {
        clear(dest + size, static_cast<std::int64_t>(apart));
    } else {
        clear(src, static_cast<std::int64_t>(apart));
    }
}

} // namespace

void qek_mem_zero(void *dest, int32_t size) { clear(static_cast<std::uint8_t *>(dest), size); }

void qek_mem_copy(void *dest, const void *src, int32_t size)
{
    copy(static_cast<std::uint8_t *>(dest), as_bytes(src), size);
}

void qek_mem_move(void *dest, void *src, int32_t size)
{
    move(static_cast<std::uint8_t *>(dest), static_cast<std::uint8_t *>(src), size);
}

int32_t qek_mem_chr(const void *bytes, int32_t size, uint8_t ch)
{
    return find_byte(bytes, size, ch);
}

int32_t qek_mem_rchr(const void *bytes, int32_t size, uint8_t ch)
{
    return find_last_byte(bytes, size, ch);
}

int32_t qek_mem_str(const void *hay, int32_t hay_size, const void *needle, int32_t needle_size)
{
    return find_bytes(hay, hay_size, needle, needle_size);
}

int32_t qek_mem_cmp(const void *a, int32_t a_size, const void *b, int32_t b_size)
{
    return order_bytes(a, a_size, b, b_size);
}

int32_t qek_mem_icmp(const void *a, int32_t a_size, const void *b, int32_t b_size)
{
    return order_bytes_ignoring_case(a, a_size, b, b_size);
}
