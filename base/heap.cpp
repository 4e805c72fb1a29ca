// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/heap.h"

#include "qek_std.h"

namespace qek {

void *take_zeroed(std::int64_t bytes) noexcept
{
    void *block = take_block(block_size(bytes));
    std::memset(block, 0, block_size(bytes));
    return block;
}

void *regrown(void *old, std::int64_t kept, std::int64_t bytes) noexcept
{
    void *fresh = take_block(block_size(bytes));
    if (fresh == nullptr) {
        return nullptr;
    }
    const std::int64_t filled = old == nullptr ? 0 : kept;
    if (filled > 0) {
        std::memcpy(fresh, old, block_size(filled));
    }
    std::memset(static_cast<std::uint8_t *>(fresh) + filled, 0, block_size(bytes - filled));
    give_block(old);
    return fresh;
}

} // namespace qek

void *qek_malloc(uint32_t size) { return qek::take_block(size); }

void qek_free(void *block) { qek::give_block(block); }
