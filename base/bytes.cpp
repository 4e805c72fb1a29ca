// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/bytes.h"

#include "base/letters.h"

#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qek {

namespace {

// The plain search.
std::int32_t find_plainly(const std::uint8_t *hay, std::int32_t hay_size,
                          const std::uint8_t *needle, std::int32_t needle_size) noexcept
{
    const auto rest = needle_size > 1 ? static_cast<std::size_t>(needle_size) - 1 : 0;
    const std::int32_t last = hay_size - larger(needle_size, 0);
    std::int32_t at = 0;
    while (at <= last) {
        const void *hit = std::memchr(hay + at, needle[0], static_cast<std::size_t>(last - at) + 1);
        if (hit == nullptr) {
            return -1;
        }
        at = distance(hay, hit);
        if (std::memcmp(hay + at + 1, needle + 1, rest) == 0) {
            return at;
        }
        ++at;
    }
    return -1;
}

#if defined(__SSE2__)

// The search by the first and the last byte of the needle at once, sixteen places at a time: few
// places are left to look at in full. Less than half of the plain search's time.
class search_by_ends {
  public:
    static constexpr std::int32_t places = 16;

    search_by_ends(const std::uint8_t *needle, std::int32_t size) noexcept
        : needle_(needle), size_(size), first_(_mm_set1_epi8(static_cast<char>(needle[0]))),
          last_(_mm_set1_epi8(static_cast<char>(needle[size - 1])))
    {
    }

    // Of the places from `at` on, one bit for each.
    std::uint32_t candidates(const std::uint8_t *at) const noexcept
    {
        const __m128i both = _mm_and_si128(_mm_cmpeq_epi8(load(at), first_),
                                           _mm_cmpeq_epi8(load(at + size_ - 1), last_));
        return static_cast<std::uint32_t>(_mm_movemask_epi8(both));
    }

    // The first of the candidates at `hay` where the needle stands, or -1.
    std::int32_t pick(const std::uint8_t *hay, std::uint32_t candidates) const noexcept
    {
        for (; candidates != 0; candidates &= candidates - 1) {
            const auto place = static_cast<std::int32_t>(std::countr_zero(candidates));
            if (std::memcmp(hay + place, needle_, static_cast<std::size_t>(size_)) == 0) {
                return place;
            }
        }
        return -1;
    }

  private:
    static __m128i load(const std::uint8_t *bytes) noexcept
    {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
    }

    const std::uint8_t *needle_;
    std::int32_t size_;
    __m128i first_;
    __m128i last_;
};

// For a needle of two bytes and more.
std::int32_t find_by_ends(const std::uint8_t *hay, std::int32_t hay_size,
                          const std::uint8_t *needle, std::int32_t needle_size) noexcept
{
    constexpr std::int32_t places = search_by_ends::places;
    const search_by_ends search(needle, needle_size);
    const std::int32_t starts = hay_size - needle_size + 1;
    if (starts < places) {
        if (hay_size > 2 * places) {
            return find_plainly(hay, hay_size, needle, needle_size);
        }
        std::uint8_t copied[4 * places] = {}; // so that whole blocks can be read
        std::memcpy(copied, hay, static_cast<std::size_t>(hay_size));
        return search.pick(hay, search.candidates(copied) & ((1U << starts) - 1));
    }
    std::int32_t at = 0;
    while (true) {
        const std::uint32_t candidates = search.candidates(hay + at);
        if (candidates != 0) {
            const std::int32_t place = search.pick(hay + at, candidates);
            if (place >= 0) {
                return at + place;
            }
        }
        if (at == starts - places) {
            return -1;
        }
        at = smaller(at + places, starts - places); // the last block overlaps the one before
    }
}

#else

std::int32_t find_by_ends(const std::uint8_t *hay, std::int32_t hay_size,
                          const std::uint8_t *needle, std::int32_t needle_size) noexcept
{
    return find_plainly(hay, hay_size, needle, needle_size);
}

#endif

constexpr std::int64_t least_to_skip = 128;

// Whether the locale maps the letters of ASCII as ASCII does.
bool are_letters_plain(const text::lower_case &lower) noexcept
{
    int different = 0;
    for (int letter = 'a'; letter <= 'z'; ++letter) {
        const int upper = letter - 'a' + 'A';
        different |= (lower.of(letter) ^ letter) | (lower.of(upper) ^ letter);
    }
    return different == 0;
}

#if defined(__SSE2__)

// How many bytes from the start, in whole blocks, are equal or the same plain letter. A seventh of
// the time of a look at each byte.
std::int64_t equal_but_for_case(const std::uint8_t *a, const std::uint8_t *b,
                                std::int64_t size) noexcept
{
    constexpr std::int64_t block = 16;
    const auto lowered = [](const std::uint8_t *bytes) {
        const __m128i of = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
        const __m128i from_lowest = _mm_sub_epi8(of, _mm_set1_epi8('A' - 128));
        const __m128i is_upper = _mm_cmplt_epi8(from_lowest, _mm_set1_epi8(26 - 128));
        return _mm_or_si128(of, _mm_and_si128(is_upper, _mm_set1_epi8('a' - 'A')));
    };
    std::int64_t at = 0;
    while (size - at >= block &&
           _mm_movemask_epi8(_mm_cmpeq_epi8(lowered(a + at), lowered(b + at))) == 0xFFFF) {
        at += block;
    }
    return at;
}

#else

std::int64_t equal_but_for_case(const std::uint8_t *, const std::uint8_t *, std::int64_t) noexcept
{
    return 0;
}

#endif

// The index of the first of eight bytes that differ, from the difference of the words.
std::int32_t first_of_word(std::uint64_t difference) noexcept
{
    return static_cast<std::int32_t>(std::countr_zero(difference) / 8);
}

constexpr std::int64_t word = 8;

std::uint64_t difference_at(const std::uint8_t *a, const std::uint8_t *b, std::int64_t at) noexcept
{
    return load_low_first<std::uint64_t>(a + at) ^ load_low_first<std::uint64_t>(b + at);
}

// Long equal stretches are the runtime's: it compares whole lines of the cache, and tells no more
// than whether there is a difference. The place is narrowed down by halves, and then looked for by
// words, the last of which overlaps the one before.
[[gnu::noinline]] std::int64_t long_mismatch(const std::uint8_t *a, const std::uint8_t *b,
                                             std::int64_t size) noexcept
{
    constexpr std::int64_t stretch = 4096;
    const auto are_equal = [=](std::int64_t from, std::int64_t count) {
        return std::memcmp(a + from, b + from, static_cast<std::size_t>(count)) == 0;
    };
    std::int64_t at = 0;
    while (size - at >= 8 * word) {
        std::int64_t count = smaller(size - at, stretch);
        if (are_equal(at, count)) {
            at += count;
            continue;
        }
        for (; count >= 16 * word; count -= count / 2) {
            at += are_equal(at, count / 2) ? count / 2 : 0;
        }
        break;
    }
    while (at < size) {
        at = smaller(at, size - word);
        const std::uint64_t difference = difference_at(a, b, at);
        if (difference != 0) {
            return at + first_of_word(difference);
        }
        at += word;
    }
    return size;
}

// Short keys are most of what is compared: two words that overlap.
inline std::int64_t find_mismatch(const std::uint8_t *a, const std::uint8_t *b,
                                  std::int64_t size) noexcept
{
    if (size > 2 * word) {
        return long_mismatch(a, b, size);
    }
    if (size < word) {
        const auto few = static_cast<std::int32_t>(size);
        const std::uint64_t difference = size <= 0 ? 0 : load_few(a, few) ^ load_few(b, few);
        return difference == 0 ? size : first_of_word(difference);
    }
    const std::uint64_t of_first = difference_at(a, b, 0);
    const std::uint64_t of_last = difference_at(a, b, size - word);
    return of_first != 0  ? first_of_word(of_first)
           : of_last != 0 ? size - word + first_of_word(of_last)
                          : size;
}

} // namespace

std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b, std::int64_t size) noexcept
{
    return find_mismatch(a, b, size);
}

std::int32_t find_last_byte(const void *bytes, std::int32_t size, std::uint8_t ch) noexcept
{
#if defined(__GLIBC__)
    if (size <= 0) {
        return -1;
    }
    const void *hit = memrchr(bytes, ch, static_cast<std::size_t>(size));
    return hit == nullptr ? -1 : distance(bytes, hit);
#else
    std::int32_t at = size;
    while (at > 0) {
        --at;
        if (as_bytes(bytes)[at] == ch) {
            return at;
        }
    }
    return -1;
#endif
}

std::int32_t find_bytes(const void *hay, std::int32_t hay_size, const void *needle,
                        std::int32_t needle_size) noexcept
{
    if (hay_size < needle_size) {
        return -1;
    }
    return needle_size < 2 ? find_plainly(as_bytes(hay), hay_size, as_bytes(needle), needle_size)
                           : find_by_ends(as_bytes(hay), hay_size, as_bytes(needle), needle_size);
}

std::int32_t order_bytes(const void *a, std::int32_t a_size, const void *b,
                         std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    const std::int64_t at = find_mismatch(as_bytes(a), as_bytes(b), common);
    return at < common ? as_bytes(a)[at] - as_bytes(b)[at] : wrapping_difference(a_size, b_size);
}

// Bytes that are equal are so in either case, so the letters are looked at from a mismatch on only.
std::int32_t order_bytes_ignoring_case(const void *a, std::int32_t a_size, const void *b,
                                       std::int32_t b_size) noexcept
{
    const std::int32_t common = smaller(a_size, b_size);
    const text::lower_case lower;
    std::int64_t at = mismatch(as_bytes(a), as_bytes(b), common);
    bool skips = common - at >= least_to_skip;
    skips = skips && are_letters_plain(lower); // GCOVR_EXCL_BR_LINE: always, in the locale of tests
    while (at < common) {
        at += skips ? equal_but_for_case(as_bytes(a) + at, as_bytes(b) + at, common - at) : 0;
        for (const std::int64_t end = smaller<std::int64_t>(at + 16, common); at < end; ++at) {
            const int lowered_a = lower.of(as_bytes(a)[at]);
            const int lowered_b = lower.of(as_bytes(b)[at]);
            if (lowered_a != lowered_b) {
                return lowered_a - lowered_b;
            }
        }
    }
    return wrapping_difference(a_size, b_size);
}

} // namespace qek
