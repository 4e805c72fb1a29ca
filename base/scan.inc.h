// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Searching and comparing by vectors of any width. bytes.cpp includes this once for each set of
// instructions, in a namespace that has `width`, in bytes, and `mask_of`, a bit for each byte of a
// vector from its highest one; QEK_INSTRUCTIONS is the attribute that allows those instructions.

using vector [[gnu::vector_size(width)]] = std::uint8_t;

constexpr std::uint32_t all = ~std::uint32_t{0} >> (32 - width);

QEK_INSTRUCTIONS inline vector load(const std::uint8_t *bytes) noexcept
{
    vector loaded;
    std::memcpy(&loaded, bytes, sizeof loaded);
    return loaded;
}

// All ones where the units are equal, and zero elsewhere.
template <typename Unit> QEK_INSTRUCTIONS inline vector equal(vector a, vector b) noexcept
{
    using units [[gnu::vector_size(width)]] = Unit;
    return reinterpret_cast<vector>(reinterpret_cast<units>(a) == reinterpret_cast<units>(b));
}

template <typename Unit> QEK_INSTRUCTIONS inline vector splat(const std::uint8_t *unit) noexcept
{
    using units [[gnu::vector_size(width)]] = Unit;
    Unit value = 0;
    std::memcpy(&value, unit, sizeof value);
    return reinterpret_cast<vector>(units{} + value);
}

// All ones at the places where a unit is `first` and the one `ahead` bytes on is `last`.
template <typename Unit>
QEK_INSTRUCTIONS inline vector hits(const std::uint8_t *at, std::int64_t ahead, vector first,
                                    vector last) noexcept
{
    return equal<Unit>(load(at), first) & equal<Unit>(load(at + ahead), last);
}

template <typename Unit>
constexpr std::uint32_t one_a_unit = sizeof(Unit) == 1 ? all : all / 3; // its lowest byte counts

// The first of the places where the needle really stands, or -1.
QEK_INSTRUCTIONS inline std::int64_t pick(const std::uint8_t *hay, std::uint32_t places,
                                          const std::uint8_t *needle,
                                          std::int64_t needle_size) noexcept
{
    for (; places != 0; places &= places - 1) {
        const int place = std::countr_zero(places);
        if (std::memcmp(hay + place, needle, static_cast<std::size_t>(needle_size)) == 0) {
            return place;
        }
    }
    return -1;
}

// Looks for the first and the last unit of the needle at once, four blocks at a time where nothing
// is near: few places are left to look at in full. `hay_size` and `needle_size` are in bytes. A
// fifth of the plain search's time.
template <typename Unit>
QEK_INSTRUCTIONS std::int64_t find(const std::uint8_t *hay, std::int64_t hay_size,
                                   const std::uint8_t *needle, std::int64_t needle_size) noexcept
{
    const std::int64_t ahead = needle_size - std::int64_t{sizeof(Unit)};
    const vector first = splat<Unit>(needle);
    const vector last = splat<Unit>(needle + ahead);
    const std::int64_t end = hay_size - ahead; // of the places where it could stand
    std::int64_t at = 0;
    while (true) {
        for (; end - at >= 4 * width; at += 4 * width) {
            const std::uint8_t *const from = hay + at;
            if (mask_of(hits<Unit>(from, ahead, first, last) |
                        hits<Unit>(from + width, ahead, first, last) |
                        hits<Unit>(from + 2 * width, ahead, first, last) |
                        hits<Unit>(from + 3 * width, ahead, first, last)) != 0) {
                break;
            }
        }
        for (std::int32_t blocks = 0; blocks < 4; ++blocks) {
            at = smaller(at, end - width); // the last block overlaps the one before
            const std::uint32_t places =
                mask_of(hits<Unit>(hay + at, ahead, first, last)) & one_a_unit<Unit>;
            const std::int64_t place = pick(hay + at, places, needle, needle_size);
            if (place >= 0) {
                return at + place;
            }
            at += width;
            if (at == end) {
                return -1;
            }
        }
    }
}

QEK_INSTRUCTIONS inline vector same(const std::uint8_t *a, const std::uint8_t *b) noexcept
{
    return equal<std::uint8_t>(load(a), load(b));
}

// The index of the first byte that differs, or `size`, which is `width` at least.
QEK_INSTRUCTIONS std::int64_t mismatch(const std::uint8_t *a, const std::uint8_t *b,
                                       std::int64_t size) noexcept
{
    std::int64_t at = 0;
    for (; size - at >= 4 * width; at += 4 * width) {
        const std::uint8_t *const of_a = a + at;
        const std::uint8_t *const of_b = b + at;
        if (mask_of(same(of_a, of_b) & same(of_a + width, of_b + width) &
                    same(of_a + 2 * width, of_b + 2 * width) &
                    same(of_a + 3 * width, of_b + 3 * width)) != all) {
            break;
        }
    }
    while (true) {
        at = smaller(at, size - width); // the last block overlaps the one before
        const std::uint32_t equal_bytes = mask_of(same(a + at, b + at));
        if (equal_bytes != all) {
            return at + std::countr_one(equal_bytes);
        }
        at += width;
        if (at == size) {
            return size;
        }
    }
}

// All ones where a byte is one of the 26 from `first` on.
QEK_INSTRUCTIONS inline vector letters_from(std::uint8_t first, vector bytes) noexcept
{
    return reinterpret_cast<vector>(bytes - first < 26);
}

QEK_INSTRUCTIONS inline vector lowered(vector bytes) noexcept
{
    return bytes | (letters_from('A', bytes) & ('a' - 'A'));
}

// How many bytes from the start, in whole blocks, are equal or the same plain letter. A seventh of
// the time of a look at each byte.
QEK_INSTRUCTIONS std::int64_t equal_but_for_case(const std::uint8_t *a, const std::uint8_t *b,
                                                 std::int64_t size) noexcept
{
    std::int64_t at = 0;
    while (size - at >= width &&
           mask_of(equal<std::uint8_t>(lowered(load(a + at)), lowered(load(b + at)))) == all) {
        at += width;
    }
    return at;
}

// Turns the case of the plain letters from `first` on, in whole blocks; says how many bytes those
// are.
QEK_INSTRUCTIONS std::int64_t turn_case(std::uint8_t first, std::uint8_t *bytes,
                                        std::int64_t size) noexcept
{
    std::int64_t at = 0;
    for (; size - at >= width; at += width) {
        const vector turned =
            load(bytes + at) ^ (letters_from(first, load(bytes + at)) & ('a' - 'A'));
        std::memcpy(bytes + at, &turned, sizeof turned);
    }
    return at;
}
