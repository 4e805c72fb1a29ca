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

// The bits of a mask where a unit starts.
constexpr std::uint64_t starts_of(std::int64_t unit) noexcept
{
    return unit == 1 ? ~std::uint64_t{0} : ~std::uint64_t{0} / 3;
}

constexpr std::int64_t far = 1 << 15; // more than the first cache holds

// The first of the places where the needle really stands, or null.
inline const std::uint8_t *pick(sighting seen, const std::uint8_t *needle,
                                std::int64_t needle_size) noexcept
{
    for (std::uint64_t places = seen.places; places != 0; places &= places - 1) {
        const std::uint8_t *const place = seen.block + std::countr_zero(places);
        if (std::memcmp(place, needle, static_cast<std::size_t>(needle_size)) == 0) {
            return place;
        }
    }
    return nullptr;
}

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
inline sighting sighting_in_few(const std::uint8_t *hay, std::int64_t hay_size,
                                const std::uint8_t *needle, std::int64_t to_last,
                                std::uint64_t starts) noexcept
{
    const std::int64_t count = hay_size - to_last;
    const bool is_short = hay_size < width;
    const vector head = is_short ? load_some(hay, static_cast<std::int32_t>(hay_size)) : load(hay);
    const vector tail = is_short ? head : load(hay + hay_size - width);
    const std::uint32_t firsts = mask_of(equal(head, vector{} + needle[0]));
    const std::uint32_t lasts = mask_of(equal(tail, vector{} + needle[to_last]));
    const std::uint32_t places = firsts & lasts >> (is_short ? to_last : width - count);
    return {hay, places & ((1U << count) - 1) & starts};
}

// The low 8 bits of sixteen numbers.
inline vector low_bytes(const std::int32_t *numbers) noexcept
{
    const auto four = [numbers](int at) {
        return _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i *>(numbers + at)),
                             _mm_set1_epi32(0xFF));
    };
    return reinterpret_cast<vector>(
        _mm_packus_epi16(_mm_packs_epi32(four(0), four(4)), _mm_packs_epi32(four(8), four(12))));
}

constinit const set functions = {width, next_sighting, mismatch, equal_but_for_case, turn_case};

} // namespace of_16

} // namespace

bool turns_plain_letters(const std::int32_t *table, std::uint8_t first) noexcept
{
    using of_16::vector;
    vector bytes = {0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87,
                    0x88, 0x89, 0x8A, 0x8B, 0x8C, 0x8D, 0x8E, 0x8F};
    vector different{};
    for (int at = -128; at < 128; at += of_16::width, bytes += of_16::width) {
        different |= of_16::turned(first, bytes) ^ of_16::low_bytes(table + at);
    }
    return of_16::mask_of(of_16::equal(different, vector{})) == of_16::all;
}

const set &by_16() noexcept { return of_16::functions; }

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

constinit const set functions = {width, next_sighting, mismatch, equal_but_for_case, turn_case};

const set &get() noexcept { return functions; }

} // namespace of_32

} // namespace

using getter = const set &() noexcept;
using comparer = std::int64_t(const std::uint8_t *, const std::uint8_t *, std::int64_t) noexcept;

QEK_AT_LOAD inline bool has_32() noexcept
{
    return (processor::skills() & processor::has_vectors_of_32) != 0;
}

// GCOVR_EXCL_BR_START: one processor
QEK_AT_LOAD [[gnu::used]] getter *choose_set() noexcept { return has_32() ? of_32::get : by_16; }

QEK_AT_LOAD [[gnu::used]] sighter *choose_sighter() noexcept
{
    return has_32() ? of_32::next_sighting : of_16::next_sighting;
}

QEK_AT_LOAD [[gnu::used]] comparer *choose_mismatch() noexcept
{
    return has_32() ? of_32::mismatch : of_16::mismatch;
}
// GCOVR_EXCL_BR_STOP

[[gnu::ifunc("_ZN3qek4scan10choose_setEv")]] getter best;
// Those that are called for little get there without a look into the set: a tenth of the time.
[[gnu::ifunc("_ZN3qek4scan14choose_sighterEv")]] sighter best_sighter;
[[gnu::ifunc("_ZN3qek4scan15choose_mismatchEv")]] comparer best_mismatch;

#else

const set &best() noexcept { return by_16(); }

constexpr auto best_sighter = of_16::next_sighting;
constexpr auto best_mismatch = of_16::mismatch;

#endif

namespace {

constexpr std::int64_t many = 64; // from here on the wider vectors are worth it

} // namespace

std::int64_t find_by(sighter *next, const std::uint8_t *hay, std::int64_t hay_size,
                     const std::uint8_t *needle, std::int64_t needle_size,
                     std::int64_t unit) noexcept
{
    const std::int64_t to_last = needle_size - unit;
    const std::int64_t to_middle = needle_size / 2 & -unit;
    const std::uint8_t *const end = hay + hay_size - to_last; // of the places where it could stand
    const std::uint8_t *at = hay;
    const std::uint8_t *place = nullptr;
    while (place == nullptr && at < end) {
        place =
            pick(next(at, end, needle, to_middle, to_last, starts_of(unit)), needle, needle_size);
    }
    return place == nullptr ? -1 : place - hay;
}

std::int64_t find(const std::uint8_t *hay, std::int64_t hay_size, const std::uint8_t *needle,
                  std::int64_t needle_size, std::int64_t unit) noexcept
{
    const std::int64_t places = hay_size - needle_size;
    if (places >= of_16::width) {
        return find_by(places >= many ? best_sighter : of_16::next_sighting, hay, hay_size, needle,
                       needle_size, unit);
    }
    const std::uint8_t *const place =
        pick(of_16::sighting_in_few(hay, hay_size, needle, needle_size - unit, starts_of(unit)),
             needle, needle_size);
    return place == nullptr ? -1 : place - hay;
}

std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept
{
    return (size >= many ? best_mismatch : of_16::mismatch)(a, b, size);
}

} // namespace qek::scan

#endif
