// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The allocation seam: the only place of the library that calls malloc and free.
//
// The test programs link with malloc wrapped, so that the n-th call from here can be made to fail;
// nothing in the library knows of that.
//
// `regrown` is the one way in which a contiguous buffer grows. It always takes a fresh block, so
// that on failure the old one is still whole, and it never resizes in place: a caller who holds a
// pointer into the old block and reads it after a growth is wrong on every run, not on some.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace qek {

inline void *take_block(std::size_t bytes) noexcept { return std::malloc(bytes); }

inline void give_block(void *block) noexcept { std::free(block); }

// A size that no heap can meet stands for every size that does not fit a size_t.
constexpr std::size_t block_size(std::int64_t bytes) noexcept
{
    const auto wanted = static_cast<std::uint64_t>(bytes);
    return wanted > SIZE_MAX ? SIZE_MAX : static_cast<std::size_t>(wanted);
}

// A block of zero bytes. It is not checked: exhaustion faults here.
void *take_zeroed(std::int64_t bytes) noexcept;

// A block of `bytes`, opening with the first `kept` bytes of `old` and zero behind them; `old` is
// given back. Null, with `old` untouched, when there is no memory for it.
void *regrown(void *old, std::int64_t kept, std::int64_t bytes) noexcept;

template <typename Unit>
Unit *regrown_units(Unit *old, std::int64_t kept, std::int64_t units) noexcept
{
    constexpr auto unit_size = static_cast<std::int64_t>(sizeof(Unit));
    return static_cast<Unit *>(regrown(old, kept * unit_size, units * unit_size));
}

} // namespace qek
