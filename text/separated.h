// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Lists as text: items joined by one separator byte, with no quoting and no escape.
//
// The two directions are not exact inverses. Reading trims every item and drops the last one if it
// is empty then. Writing puts a separator in front of an item when there is text so far, so that
// empty items at the front leave no mark.
#pragma once

#include "base/bytes.h"
#include "qek_std.h"
#include "stream/buffer.h"

#include <cstdint>

namespace qek::text {

template <typename Add>
void for_each_item(std::uint8_t separator, const void *text, std::int32_t length, Add add) noexcept
{
    auto *rest = const_cast<std::uint8_t *>(as_bytes(text)); // a slice never writes through it here
    while (true) {
        const std::int32_t end = find_byte(rest, length, separator);
        qek_char item{rest, end < 0 ? length : end};
        qek_char_trim(&item);
        if (end >= 0 || qek_char_is_empty(&item) == 0) {
            add(item);
        }
        if (end < 0) {
            return;
        }
        rest += end + 1;
        length -= end + 1;
    }
}

// `append_item(index)` adds one item behind the separator. `items_size` is room made beforehand, a
// separator for each item but one on top.
template <typename AppendItem>
void join(qek_string &target, std::uint8_t separator, std::int32_t count, std::int64_t items_size,
          AppendItem append_item) noexcept
{
    const std::int64_t size = items_size + (count > 0 ? count - 1 : 0);
    qek_string_shrink(&target, 0);
    buffer::expand<buffer::string_form>(target, size);
    for (std::int32_t at = 0; at < count; ++at) {
        if (qek_string_is_empty(&target) == 0) {
            qek_string_append_char(&target, separator);
        }
        append_item(at);
    }
}

} // namespace qek::text
