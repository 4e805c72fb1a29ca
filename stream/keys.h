// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The shared store of key text that containers embed: all keys of a container in one stream.
//
//     keys.data --> [ key of A | key of C | key of B ]          in the order in which they came
//                     ^ offset, length in A's record
//
// A record that holds a key is any structure with `key_offset` and `key_length`. Runs do not
// overlap and leave no holes: removing a key closes the stream up at once, and every other holder
// whose run lay behind moves down. Offsets, not pointers, so that the stream may move when it
// grows.
//
// A length is measured as what the stream really grew by, so that a growth that fails leaves an
// empty key and no holder that points at foreign bytes.
#pragma once

#include "stream/buffer.h"

#include <cstdint>

namespace qek::keys {

struct run {
    std::uint32_t offset;
    std::int32_t length;
};

// A sought key: bytes from the caller, their length measured.
struct text {
    const std::uint8_t *bytes;
    std::int32_t length;
};

inline text given(const void *key, std::int32_t length) noexcept
{
    return {as_bytes(key), measured(key, length)};
}

// The rule where a key is to be stored without a look at null: it faults when it has to be
// measured.
inline text measured_strictly(text key) noexcept
{
    return {key.bytes, key.length < 0 ? text_length(key.bytes) : key.length};
}

template <typename Holder> text text_of(const qek_stream &keys, const Holder &holder) noexcept
{
    return {keys.data + holder.key_offset, holder.key_length};
}

template <typename Holder> run run_of(const Holder &holder) noexcept
{
    return {holder.key_offset, holder.key_length};
}

template <typename Holder> void store(qek_stream &keys, Holder &holder, text key) noexcept
{
    holder.key_offset = static_cast<std::uint32_t>(keys.length);
    if (key.bytes != nullptr) { // saves elements without a key the call
        buffer::append<buffer::stream_form>(keys, key.bytes, key.length);
    }
    holder.key_length = keys.length - static_cast<std::int32_t>(holder.key_offset);
}

inline void erase(qek_stream &keys, run removed) noexcept
{
    buffer::remove_inside<buffer::stream_form>(keys, static_cast<std::int32_t>(removed.offset),
                                               removed.length);
}

// Moves a holder down after `removed` is gone. An empty key at exactly the removed place may have
// been stored before the removed one, and stays: intended.
template <typename Holder> void follow_removal(Holder &holder, run removed) noexcept
{
    const auto offset = static_cast<std::int32_t>(holder.key_offset);
    const auto of_removed = static_cast<std::int32_t>(removed.offset);
    const bool behind = offset >= of_removed + static_cast<std::int32_t>(holder.key_length == 0);
    holder.key_offset -= behind ? static_cast<std::uint32_t>(removed.length) : 0U;
}

// Most keys are short, and for them a call takes longer than the comparison: words of 8 bytes, the
// last of which ends with the key.
inline bool equal(text a, text b) noexcept
{
    constexpr std::int32_t word = 8;
    if (a.length != b.length || a.length <= 0) {
        return a.length == b.length;
    }
    if (a.length < word || a.length > 4 * word) {
        return std::memcmp(a.bytes, b.bytes, static_cast<std::size_t>(a.length)) == 0;
    }
    const auto difference = [=](std::int32_t at) {
        return load_high_first(a.bytes + at) ^ load_high_first(b.bytes + at);
    };
    std::uint64_t differences = difference(a.length - word);
    for (std::int32_t at = 0; at < a.length - word; at += word) {
        differences |= difference(at);
    }
    return differences == 0;
}

inline std::int32_t order(text a, text b, bool ignore_case) noexcept
{
    return ignore_case ? order_bytes_ignoring_case(a.bytes, a.length, b.bytes, b.length)
                       : order_bytes(a.bytes, a.length, b.bytes, b.length);
}

// Bytes that make a number.
inline constexpr std::int32_t head_size = 8;

// Where the first eight bytes differ, as they do in nearly all pairs, their order is that of two
// numbers. For those who ask for no more than the sign.
inline std::int32_t sign_of_order(text a, text b, bool ignore_case) noexcept
{
    if (!ignore_case && a.length >= head_size && b.length >= head_size) {
        const std::uint64_t head_a = load_high_first(a.bytes);
        const std::uint64_t head_b = load_high_first(b.bytes);
        if (head_a != head_b) {
            return head_a < head_b ? -1 : 1;
        }
    }
    return order(a, b, ignore_case);
}

inline bool equal(text a, text b, bool ignore_case) noexcept
{
    return ignore_case ? order(a, b, true) == 0 : equal(a, b);
}

} // namespace qek::keys
