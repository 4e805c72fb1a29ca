// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/scan.h"

#if defined(__SSE2__)

#include "base/bytes.h"
#include "base/processor.h"

#include <bit>
#include <cstring>
#include <immintrin.h>

namespace qek::scan {

namespace {

namespace of_16 {

#define QEK_INSTRUCTIONS
constexpr std::int64_t width = 16;

inline std::uint32_t mask_of(__v16qu bytes) noexcept
{
    return static_cast<std::uint32_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(bytes)));
}

#include "base/scan.inc"
#undef QEK_INSTRUCTIONS

// Fewer bytes than a block, and zeros behind them.
inline vector load_some(const std::uint8_t *bytes, std::int32_t size) noexcept
{
    const std::uint64_t head =
        size < 8 ? load_few(bytes, size) : load_low_first<std::uint64_t>(bytes);
    const std::uint64_t tail =
        size <= 8 ? 0 : load_low_first<std::uint64_t>(bytes + size - 8) >> (8 * (16 - size));
    return reinterpret_cast<vector>(__v2du{head, tail});
}

// For fewer places than a block has: one look at where the needle would start, and one at where it
// would end.
template <typename Unit>
std::int64_t find_in_few(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                         std::int64_t needle_size) noexcept
{
    const std::int64_t ahead = needle_size - std::int64_t{sizeof(Unit)};
    const std::int64_t end = hay_size - ahead;
    const bool is_short = hay_size < width;
    const vector head = is_short ? load_some(hay, static_cast<std::int32_t>(hay_size)) : load(hay);
    const vector tail = is_short ? head : load(hay + hay_size - width);
    const std::uint32_t starts = mask_of(equal<Unit>(head, splat<Unit>(needle)));
    const std::uint32_t ends = mask_of(equal<Unit>(tail, splat<Unit>(needle + ahead)));
    const std::uint32_t places =
        starts & ends >> (is_short ? ahead : width - end) & ((1U << end) - 1) & one_a_unit<Unit>;
    return pick(hay, places, needle, needle_size);
}

constinit const set functions = {width,    find<std::uint8_t>, find<std::uint16_t>,
                                 mismatch, equal_but_for_case, turn_case};

} // namespace of_16

const set &set_for(std::int64_t size) noexcept { return size < 64 ? of_16::functions : best(); }

template <typename Find, typename FindInFew>
std::int64_t find(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                  std::int64_t needle_size, Find set::*find, FindInFew find_in_few) noexcept
{
    const std::int64_t places = hay_size - needle_size;
    return places < of_16::width ? find_in_few(hay, hay_size, needle, needle_size)
                                 : (set_for(places).*find)(hay, hay_size, needle, needle_size);
}

} // namespace

const set &by_16() noexcept { return of_16::functions; }

std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept
{
    return set_for(size).mismatch(a, b, size);
}

std::int64_t find_bytes(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                        std::int64_t needle_size) noexcept
{
    return find(hay, hay_size, needle, needle_size, &set::find_bytes,
                of_16::find_in_few<std::uint8_t>);
}

std::int64_t find_pairs(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                        std::int64_t needle_size) noexcept
{
    return find(hay, hay_size, needle, needle_size, &set::find_pairs,
                of_16::find_in_few<std::uint16_t>);
}

#if defined(QEK_CHOOSES_AT_LOAD)

namespace {

namespace of_32 {

#define QEK_INSTRUCTIONS [[gnu::target("avx2")]]
constexpr std::int64_t width = 32;

QEK_INSTRUCTIONS inline std::uint32_t mask_of(__v32qu bytes) noexcept
{
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(reinterpret_cast<__m256i>(bytes)));
}

#include "base/scan.inc"
#undef QEK_INSTRUCTIONS

constinit const set functions = {width,    find<std::uint8_t>, find<std::uint16_t>,
                                 mismatch, equal_but_for_case, turn_case};

const set &get() noexcept { return functions; }

} // namespace of_32

} // namespace

using getter = const set &() noexcept;

QEK_AT_LOAD [[gnu::used]] getter *choose_set() noexcept
{
    const bool has_32 = (processor::skills() & processor::has_vectors_of_32) != 0;
    return has_32 ? of_32::get : by_16; // GCOVR_EXCL_BR_LINE: one processor
}

[[gnu::ifunc("_ZN3qek4scan10choose_setEv")]] getter best;

#else

const set &best() noexcept { return by_16(); }

#endif

} // namespace qek::scan

#endif
