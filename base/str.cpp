// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// NUL-terminated text in the caller's memory.

#include "base/blanks.h"
#include "base/bytes.h"
#include "base/heap.h"
#include "base/platform.h"
#include "qek_std.h"

using namespace qek;

namespace {

const char *as_text(const void *text) noexcept { return static_cast<const char *>(text); }

void duplicate(std::uint8_t *&out, const void *src, std::int32_t size) noexcept
{
    const std::int32_t copied = measured(src, size);
    if (out != nullptr) {
        give_block(out);
        out = nullptr;
    }
    if (src == nullptr) {
        return;
    }
    const auto bytes = static_cast<std::size_t>(copied);
    out = static_cast<std::uint8_t *>(take_block(bytes + 1));
    std::strncpy(reinterpret_cast<char *>(out), as_text(src), bytes);
    out[bytes] = 0;
}

// A size of 0 or less empties the text, whatever it holds, and is not measured: the last index is
// taken from the size as it was passed. That is intended; callers pass the true length.
void trim(std::uint8_t *text, std::int32_t size) noexcept
{
    if (size <= 0) {
        text[0] = 0;
        return;
    }
    const text_between_blanks kept = find_text(text, 0, size);
    if (kept.met_terminator()) {
        return;
    }
    if (kept.is_nothing()) {
        text[0] = 0;
    } else if (kept.first > 0) {
        move_bytes(text, text + kept.first, kept.length);
        text[kept.length] = 0;
    } else if (kept.length < size) {
        text[kept.length] = 0;
    }
}

std::int32_t index_in(const void *text, const char *hit) noexcept
{
    return hit == nullptr ? -1 : distance(text, hit);
}

// Null is the lowest text, below the empty one.
std::int32_t order_nulls(const void *a, const void *b) noexcept
{
    return static_cast<std::int32_t>(a != nullptr) - static_cast<std::int32_t>(b != nullptr);
}

std::int32_t order_texts(const std::uint8_t *a, const std::uint8_t *b) noexcept
{
    while (*a == *b && *a != 0) {
        ++a;
        ++b;
    }
    return static_cast<std::int32_t>(*a > *b) - static_cast<std::int32_t>(*a < *b);
}

} // namespace

void qek_str_dup(uint8_t **out, const void *src, int32_t size) { duplicate(*out, src, size); }

void qek_str_trim(void *text, int32_t size) { trim(static_cast<std::uint8_t *>(text), size); }

int32_t qek_str_chr(const void *text, int8_t ch)
{
    return text == nullptr ? -1 : index_in(text, std::strchr(as_text(text), ch));
}

int32_t qek_str_rchr(const void *text, int8_t ch)
{
    return text == nullptr ? -1 : index_in(text, std::strrchr(as_text(text), ch));
}

int32_t qek_str_str(const void *text, const void *needle)
{
    return text == nullptr || needle == nullptr
               ? -1
               : index_in(text, std::strstr(as_text(text), as_text(needle)));
}

int32_t qek_str_cmp(const void *a, const void *b)
{
    return a == nullptr || b == nullptr ? order_nulls(a, b) : order_texts(as_bytes(a), as_bytes(b));
}

int32_t qek_str_icmp(const void *a, const void *b)
{
    return a == nullptr || b == nullptr ? order_nulls(a, b)
                                        : platform::compare_ignoring_case(as_text(a), as_text(b));
}
