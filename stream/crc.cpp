// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "stream/crc.h"

#ifdef QEK_CHOOSES_AT_LOAD

#include <immintrin.h>

// What runs on a processor that can do it, and where it runs it is one with its caller.
#define QEK_BY_128_BITS [[gnu::target("pclmul,sse4.1"), gnu::always_inline]] inline
#define QEK_BY_512_BITS                                                                            \
    [[gnu::target("pclmul,sse4.1,avx512f,vpclmulqdq"), gnu::always_inline]] inline

namespace qek {

namespace {

using run_of_crc = std::uint32_t(std::uint32_t, const std::uint8_t *, std::int32_t) noexcept;

// Bit 0 of a register is its highest power of x. The product of two registers of 64 bits is one of
// 127, so that x^n is written one bit further up than it stands in 32 bits.
constexpr std::int64_t power_of_x(int power) noexcept
{
    std::uint32_t rest = 0x80000000;
    for (; power > 0; --power) {
        rest = (rest >> 1) ^ ((rest & 1) != 0 ? 0xEDB88320U : 0U);
    }
    return static_cast<std::int64_t>(std::uint64_t{rest} << 1);
}

// What the halves of a register are multiplied with to stand so many bytes further along.
struct step {
    std::int64_t low;
    std::int64_t high;
};

constexpr step step_by(int bytes) noexcept
{
    return {power_of_x(8 * bytes + 32), power_of_x(8 * bytes - 32)};
}

QEK_BY_128_BITS __m128i load(const std::uint8_t *bytes) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
}

template <int bytes> QEK_BY_128_BITS __m128i moved(__m128i bits) noexcept
{
    constexpr step by = step_by(bytes);
    const __m128i both = _mm_set_epi64x(by.high, by.low);
    return _mm_xor_si128(_mm_clmulepi64_si128(bits, both, 0x00),
                         _mm_clmulepi64_si128(bits, both, 0x11));
}

// The remainder of 96 bits by the polynomial. The quotient is a product with the reciprocal, as
// Barrett found, and what it leaves of the last 32 bits is the remainder.
QEK_BY_128_BITS std::uint32_t remainder_of_96(__m128i bits) noexcept
{
    constexpr auto reciprocal = static_cast<std::int64_t>(0xB4E5B025F7011641);
    constexpr std::int64_t polynomial = 0x1DB710641;
    const __m128i by = _mm_set_epi64x(polynomial, reciprocal);
    const __m128i quotient = _mm_clmulepi64_si128(bits, by, 0x00);
    const __m128i rest = _mm_xor_si128(bits, _mm_clmulepi64_si128(quotient, by, 0x10));
    return static_cast<std::uint32_t>(_mm_extract_epi32(rest, 2));
}

// The remainder of a register with 32 zeros behind it: the first half is brought down to 32 bits
// beyond the second.
QEK_BY_128_BITS std::uint32_t remainder_of(__m128i bits) noexcept
{
    const __m128i half = _mm_cvtsi64_si128(power_of_x(96));
    return remainder_of_96(
        _mm_xor_si128(_mm_clmulepi64_si128(bits, half, 0x00), _mm_srli_si128(bits, 8)));
}

// Less than 16 bytes, put at the end of a register: zeros in front of a zero register change
// nothing.
QEK_BY_128_BITS std::uint32_t crc_of_few(std::uint32_t crc, const std::uint8_t *bytes,
                                         std::int32_t size) noexcept
{
    if (size > 8) {
        const std::int32_t head = size - 8;
        const std::uint64_t first = (load_low_first<std::uint64_t>(bytes) ^ crc) << (64 - 8 * head);
        const std::uint64_t second =
            load_low_first<std::uint64_t>(bytes + head) ^ std::uint64_t{crc} >> (8 * head);
        return remainder_of(
            _mm_set_epi64x(static_cast<std::int64_t>(second), static_cast<std::int64_t>(first)));
    }
    if (size <= 0) {
        return crc;
    }
    const std::uint64_t all =
        size < 8 ? load_few(bytes, size) : load_low_first<std::uint64_t>(bytes);
    const std::uint64_t last = (all ^ crc) << (64 - 8 * size);
    return remainder_of_96(_mm_cvtsi64_si128(static_cast<std::int64_t>(last))) ^
           static_cast<std::uint32_t>(std::uint64_t{crc} >> (4 * size) >> (4 * size));
}

// The bytes behind the register `bits`, up to `end`. Of the last ones, less than a register, as
// many bytes of `bits` are moved along as there are, and the others go in front of them.
QEK_BY_128_BITS std::uint32_t crc_to_end(__m128i bits, const std::uint8_t *at,
                                         const std::uint8_t *end) noexcept
{
    for (; end - at >= 16; at += 16) {
        bits = _mm_xor_si128(moved<16>(bits), load(at));
    }
    if (at != end) {
        static constexpr std::int8_t places[48] = {
            -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, //
            0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, //
            -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
        const auto *from = reinterpret_cast<const std::uint8_t *>(places) + (end - at);
        const __m128i up = load(from);        // -1 in front of the first bytes
        const __m128i down = load(from + 16); // the others, and -1 behind them
        const __m128i last = _mm_blendv_epi8(_mm_shuffle_epi8(bits, down), load(end - 16), down);
        bits = _mm_xor_si128(moved<16>(_mm_shuffle_epi8(bits, up)), last);
    }
    return remainder_of(bits);
}

QEK_BY_128_BITS __m128i first_of(std::uint32_t crc, const std::uint8_t *bytes) noexcept
{
    return _mm_xor_si128(load(bytes), _mm_cvtsi32_si128(static_cast<int>(crc)));
}

QEK_BY_128_BITS std::uint32_t crc_by_128_bits(std::uint32_t crc, const std::uint8_t *at,
                                              std::int32_t size) noexcept
{
    if (size < 16) {
        return crc_of_few(crc, at, size);
    }
    const std::uint8_t *const end = at + size;
    __m128i a = first_of(crc, at);
    if (size < 64) {
        return crc_to_end(a, at + 16, end);
    }
    __m128i b = load(at + 16);
    __m128i c = load(at + 32);
    __m128i d = load(at + 48);
    for (at += 64; end - at >= 64; at += 64) {
        a = _mm_xor_si128(moved<64>(a), load(at));
        b = _mm_xor_si128(moved<64>(b), load(at + 16));
        c = _mm_xor_si128(moved<64>(c), load(at + 32));
        d = _mm_xor_si128(moved<64>(d), load(at + 48));
    }
    a = _mm_xor_si128(_mm_xor_si128(moved<48>(a), moved<32>(b)), _mm_xor_si128(moved<16>(c), d));
    return crc_to_end(a, at, end);
}

// GCOVR_EXCL_START: as with the function that it serves
QEK_BY_512_BITS __m512i load_wide(const std::uint8_t *bytes) noexcept
{
    return _mm512_loadu_si512(bytes);
}

// Moves a register along, onto `onto`.
template <int bytes> QEK_BY_512_BITS __m512i moved_onto(__m512i bits, __m512i onto) noexcept
{
    constexpr step by = step_by(bytes);
    constexpr int xor_of_three = 0x96;
    const __m512i both =
        _mm512_set_epi64(by.high, by.low, by.high, by.low, by.high, by.low, by.high, by.low);
    return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(bits, both, 0x00),
                                     _mm512_clmulepi64_epi128(bits, both, 0x11), onto,
                                     xor_of_three);
}

template <int part> QEK_BY_512_BITS __m128i part_of(__m512i bits) noexcept
{
    return _mm512_maskz_extracti32x4_epi32(static_cast<__mmask8>(-1), bits, part);
}

// The four parts of a register, moved along to where the last one stands.
QEK_BY_512_BITS __m128i joined(__m512i bits) noexcept
{
    return _mm_xor_si128(_mm_xor_si128(moved<48>(part_of<0>(bits)), moved<32>(part_of<1>(bits))),
                         _mm_xor_si128(moved<16>(part_of<2>(bits)), part_of<3>(bits)));
}
// GCOVR_EXCL_STOP

} // namespace

[[gnu::target("pclmul,sse4.1")]] std::uint32_t
crc_by_multiplication(std::uint32_t crc, const std::uint8_t *bytes, std::int32_t size) noexcept
{
    return crc_by_128_bits(crc, bytes, size);
}

// GCOVR_EXCL_START: where the tests run, the processor may not have it
[[gnu::target("pclmul,sse4.1,avx512f,vpclmulqdq")]] std::uint32_t
crc_by_wide_multiplication(std::uint32_t crc, const std::uint8_t *bytes, std::int32_t size) noexcept
{
    constexpr std::int32_t least = 256;
    if (size < least) {
        return crc_by_128_bits(crc, bytes, size);
    }
    const std::uint8_t *at = bytes;
    const std::uint8_t *const end = bytes + size;
    const __m512i start =
        _mm512_inserti32x4(_mm512_setzero_si512(), _mm_cvtsi32_si128(static_cast<int>(crc)), 0);
    __m512i a = _mm512_xor_si512(load_wide(at), start);
    __m512i b = load_wide(at + 64);
    __m512i c = load_wide(at + 128);
    __m512i d = load_wide(at + 192);
    for (at += 256; end - at >= 256; at += 256) {
        a = moved_onto<256>(a, load_wide(at));
        b = moved_onto<256>(b, load_wide(at + 64));
        c = moved_onto<256>(c, load_wide(at + 128));
        d = moved_onto<256>(d, load_wide(at + 192));
    }
    a = moved_onto<192>(a, moved_onto<64>(c, moved_onto<128>(b, d)));
    for (; end - at >= 64; at += 64) {
        a = moved_onto<64>(a, load_wide(at));
    }
    return crc_to_end(joined(a), at, end);
}
// GCOVR_EXCL_STOP

QEK_AT_LOAD [[gnu::used]] run_of_crc *choose_crc() noexcept
{
    // GCOVR_EXCL_START: one processor
    const unsigned int skills = processor::skills();
    return (skills & processor::multiplies_in_vectors_of_64) != 0 ? crc_by_wide_multiplication
           : (skills & processor::multiplies_without_carry) != 0  ? crc_by_multiplication
                                                                  : crc_by_words;
    // GCOVR_EXCL_STOP
}

[[gnu::ifunc("_ZN3qek10choose_crcEv")]] run_of_crc crc_after;

} // namespace qek

#endif
