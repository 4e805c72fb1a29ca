// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The growth rule of every contiguous buffer but the bit set's, which grows by 1024 bytes.
//
// A buffer grows by half of what is in use, at least `least` and at most `most` units, added to the
// capacity; a request above that is taken as it is; the sum is then rounded to the family's form of
// capacity. The step follows the use and not the capacity, so that a buffer that was reserved far
// ahead and filled a little does not double. The constants are interface: callers read `capacity`.
//
//   family            least   most        form of a capacity
//   stream            8       0x800000    8k
//   string, wchar     8       0x800000    8k + 7, with one more unit for the terminator
//   arrays            8       65536       4k
//   pool tables       4       no bound    4k
//
// The sum is formed in 64 bits. A result beyond int32_t is for the caller to refuse, as it refuses
// an allocation that fails.
#pragma once

#include "base/arith.h"

#include <cstdint>
#include <limits>

namespace qek {

struct growth_steps {
    std::int32_t least;
    std::int32_t most;
};

inline constexpr growth_steps buffer_steps{8, 0x800000};
inline constexpr growth_steps array_steps{8, 65536};
inline constexpr growth_steps pool_table_steps{4, std::numeric_limits<std::int32_t>::max()};

constexpr std::int64_t grown(std::int32_t in_use, std::int32_t capacity, std::int64_t wanted,
                             growth_steps steps) noexcept
{
    const std::int32_t room = std::numeric_limits<std::int32_t>::max() - capacity;
    const std::int32_t half = smaller(larger(in_use / 2, steps.least), steps.most);
    return larger(wide(capacity) + smaller(half, room), wanted);
}

constexpr std::int64_t rounded_up(std::int64_t units, std::int64_t multiple) noexcept
{
    return (units - 1) / multiple * multiple + multiple;
}

constexpr std::int64_t rounded_to_terminated(std::int64_t units) noexcept
{
    return units / 8 * 8 + 7;
}

constexpr bool is_capacity(std::int64_t units) noexcept
{
    return units <= std::numeric_limits<std::int32_t>::max();
}

} // namespace qek
