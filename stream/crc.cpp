// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "stream/crc.h"

#include "base/processor.h"

#if defined(QEK_CHOOSES_AT_LOAD)

#include <immintrin.h>

namespace qek {

namespace {

using run_of_crc = std::uint32_t(std::uint32_t, const std::uint8_t *, std::int32_t) noexcept;

[[gnu::target("pclmul")]] inline __m128i load(const std::uint8_t *bytes) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
}

// Moves a register along by the distance that the pair of constants stands for, onto `onto`.
[[gnu::target("pclmul")]] inline __m128i folded(__m128i bits, __m128i by, __m128i onto) noexcept
{
    return _mm_xor_si128(
        _mm_xor_si128(_mm_clmulepi64_si128(bits, by, 0x00), _mm_clmulepi64_si128(bits, by, 0x11)),
        onto);
}

// The remainder of 128 bits by the polynomial, in Barrett's way.
[[gnu::target("pclmul")]] inline std::uint32_t reduced(__m128i bits, __m128i by_16) noexcept
{
    const __m128i low_halves = _mm_setr_epi32(-1, 0, -1, 0);
    const __m128i by_4 = _mm_set_epi64x(0, 0x163CD6124);
    const __m128i polynomial = _mm_set_epi64x(0x1F7011641, 0x1DB710641);
    bits = _mm_xor_si128(_mm_srli_si128(bits, 8), _mm_clmulepi64_si128(bits, by_16, 0x10));
    bits = _mm_xor_si128(_mm_srli_si128(bits, 4),
                         _mm_clmulepi64_si128(_mm_and_si128(bits, low_halves), by_4, 0x00));
    __m128i rest = _mm_clmulepi64_si128(_mm_and_si128(bits, low_halves), polynomial, 0x10);
    rest = _mm_clmulepi64_si128(_mm_and_si128(rest, low_halves), polynomial, 0x00);
    return static_cast<std::uint32_t>(
        static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_xor_si128(bits, rest))) >> 32);
}

[[gnu::target("pclmul")]] std::uint32_t
crc_by_multiplication(std::uint32_t crc, const std::uint8_t *bytes, std::int32_t size) noexcept
{
    const __m128i by_64 = _mm_set_epi64x(0x1C6E41596, 0x154442BD4);
    const __m128i by_16 = _mm_set_epi64x(0x0CCAA009E, 0x1751997D0);
    __m128i a = _mm_xor_si128(load(bytes), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i b = load(bytes + 16);
    __m128i c = load(bytes + 32);
    __m128i d = load(bytes + 48);
    const std::uint8_t *at = bytes + 64;
    std::int32_t left = size - 64;
    for (; left >= 64; at += 64, left -= 64) {
        a = folded(a, by_64, load(at));
        b = folded(b, by_64, load(at + 16));
        c = folded(c, by_64, load(at + 32));
        d = folded(d, by_64, load(at + 48));
    }
    a = folded(folded(folded(a, by_16, b), by_16, c), by_16, d);
    for (; left >= 16; at += 16, left -= 16) {
        a = folded(a, by_16, load(at));
    }
    return crc_by_words(reduced(a, by_16), at, left);
}

} // namespace

QEK_AT_LOAD [[gnu::used]] run_of_crc *choose_crc() noexcept
{
    const bool multiplies = (processor::skills() & processor::multiplies_without_carry) != 0;
    return multiplies ? crc_by_multiplication : crc_by_words; // GCOVR_EXCL_BR_LINE: one processor
}

[[gnu::ifunc("_ZN3qek10choose_crcEv")]] run_of_crc crc_of_long_run;

} // namespace qek

#else

std::uint32_t qek::crc_of_long_run(std::uint32_t crc, const std::uint8_t *bytes,
                                   std::int32_t size) noexcept
{
    return crc_by_words(crc, bytes, size);
}

#endif
