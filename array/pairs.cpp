// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "array/pairs.h"

#if defined(QEK_CHOOSES_AT_LOAD)

#include "base/bytes.h"

#include <array>
#include <bit>
#include <cstring>
#include <immintrin.h>

namespace qek::array {

namespace {

// The places of up to four pairs, a byte each, by the mask of those pairs. The two halves of a
// vector are joined word by word, so the second pair has the third bit.
constexpr auto places_by_mask = [] {
    std::array<std::uint32_t, 16> made{};
    for (std::uint32_t mask = 0; mask < made.size(); ++mask) {
        int count = 0;
        for (const std::uint32_t place : {0U, 1U, 2U, 3U}) {
            const std::uint32_t bit = place == 0 || place == 3 ? place : 3 - place;
            if ((mask >> bit & 1) != 0) {
                made[mask] |= place << 8 * count++;
            }
        }
    }
    return made;
}();

[[gnu::target("avx2,popcnt")]] std::size_t list_pairs_by_four(const std::uint8_t *first,
                                                              const pair_test &test,
                                                              std::ptrdiff_t ahead,
                                                              std::uint8_t *list) noexcept
{
    constexpr std::uint64_t sign = std::uint64_t{1} << 63; // vectors compare numbers with one
    const __v4du kept = __v4du{} + test.kept;
    const __v4du turned = __v4du{} + (test.turned ^ sign);
    const __v4du pivot = __v4du{} + (test.pivot ^ sign);
    const unsigned int but = test.wants_above ? 0 : 0xF;
    std::size_t count = 0;
    for (std::uint32_t at = 0; at < block; at += 4, first += 4 * pair_size) {
        __m256i low, high;
        std::memcpy(&low, first, sizeof low);
        std::memcpy(&high, first + 2 * pair_size, sizeof high);
        __builtin_prefetch(first + ahead);
        const auto keys =
            (reinterpret_cast<__v4du>(_mm256_unpacklo_epi64(low, high)) & kept) ^ turned;
        const __m256i above =
            _mm256_cmpgt_epi64(reinterpret_cast<__m256i>(keys), reinterpret_cast<__m256i>(pivot));
        const auto mask =
            static_cast<unsigned int>(_mm256_movemask_pd(reinterpret_cast<__m256d>(above))) ^ but;
        const std::uint32_t places = places_by_mask[mask] + at * 0x01010101U;
        std::memcpy(list + count, &places, sizeof places);
        count += static_cast<unsigned int>(std::popcount(mask));
    }
    return count;
}

} // namespace

std::size_t list_pairs_one_by_one(const std::uint8_t *first, const pair_test &test,
                                  std::ptrdiff_t /*ahead*/, std::uint8_t *list) noexcept
{
    std::size_t count = 0;
    for (std::uint32_t at = 0; at < block; ++at, first += pair_size) {
        list[count] = static_cast<std::uint8_t>(at);
        const auto number = load_low_first<std::uint64_t>(first);
        const bool is_above = ((number & test.kept) ^ test.turned) > test.pivot;
        count += is_above == test.wants_above ? 1 : 0;
    }
    return count;
}

using lister = decltype(list_pairs);

QEK_AT_LOAD [[gnu::used]] lister *choose_lister() noexcept
{
    // GCOVR_EXCL_START: one processor
    return (processor::skills() & processor::has_vectors_of_32) != 0 ? list_pairs_by_four
                                                                     : list_pairs_one_by_one;
    // GCOVR_EXCL_STOP
}

[[gnu::ifunc("_ZN3qek5array13choose_listerEv")]] lister list_pairs;

} // namespace qek::array

#endif
