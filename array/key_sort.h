// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The sort of sort.h for keys that the library compares itself, so that nobody sees the steps.
//
// What must come out is the permutation that the literal procedure makes, equal keys included. Two
// things get there sooner:
//
//   Partition by blocks. The literal partition swaps the k-th slot above the pivot, counted from
//   the left, with the k-th not above it, counted from the right; the pivot itself counts as not
//   above. So the two sides can be read a block at a time, without a branch that depends on a key,
//   into lists of offsets, and the swaps follow from the lists. The last blocks take the literal
//   steps. Pairs with a number are read four at a time where the processor can (pairs.h).
//
//   Short runs on the stack. Where no two keys of a run are equal, there is one sorted order, and
//   any method finds it: ranks, each with its index in its lowest bits, are spread over buckets by
//   their upper bits and straightened by insertion. When two are equal, or agree in the bits that
//   are left of them, the run, still untouched, is divided as told.
//
// Together they take a quarter of the literal time for a million random keys. Nothing is allocated.
//
// `Keys` says of a slot: `rank`, an unsigned number; slots of different ranks stand as these do.
// `order(x, y)` decides all. With `ranks_decide`, slots of equal rank are equal. `near(slots,
// count)` yields the keys for a few slots, whose ranks may tell more of them apart; `fetch` is a
// hint that a rank will be asked for. With `are_pairs`, a slot is a pair with the number in front.
#pragma once

#include "array/pairs.h"
#include "array/sort.h"
#include "base/bytes.h"

#include <bit>
#include <cstdint>

namespace qek::array {

inline constexpr std::int32_t longest_run = 1024;
inline constexpr int index_bits = 10;

// Puts items about where they belong: by the upper bits of what tells them apart into as many
// buckets as there are items, and where many meet in one, that one again. Each time at least five
// bits less are left, so it goes down thirteen times at the most.
inline void spread(std::uint64_t *items, std::uint64_t *scratch, std::int32_t count) noexcept
{
    constexpr std::int32_t many = 32;
    std::uint64_t least = items[0];
    std::uint64_t most = least;
    for (std::int32_t at = 1; at < count; ++at) {
        least = items[at] < least ? items[at] : least;
        most = items[at] > most ? items[at] : most;
    }
    const auto bits = static_cast<int>(std::bit_width(static_cast<std::uint32_t>(count) - 1));
    const int shift = larger(static_cast<int>(std::bit_width(most - least)) - bits, 0);
    std::uint16_t ends[longest_run + 1];
    std::memset(ends, 0, (std::size_t{2} << bits) + 2);
    for (std::int32_t at = 0; at < count; ++at) {
        ++ends[((items[at] - least) >> shift) + 1];
    }
    std::int32_t largest = 0;
    for (std::int32_t bucket = 0; bucket < 1 << bits; ++bucket) {
        largest = larger<std::int32_t>(largest, ends[bucket + 1]);
        ends[bucket + 1] = static_cast<std::uint16_t>(ends[bucket + 1] + ends[bucket]);
    }
    for (std::int32_t at = 0; at < count; ++at) {
        scratch[ends[(items[at] - least) >> shift]++] = items[at];
    }
    std::memcpy(items, scratch, static_cast<std::size_t>(count) * sizeof *items);
    std::int32_t first = 0;
    for (std::int32_t bucket = 0; largest >= many && bucket < 1 << bits; ++bucket) {
        const std::int32_t size = ends[bucket] - first;
        if (size >= many) {
            spread(items + first, scratch, size);
        }
        first = ends[bucket];
    }
}

// Sorts up to `longest_run` items; false when two are equal but for their lowest `index_bits`.
inline bool sort_items(std::uint64_t *items, std::int32_t count) noexcept
{
    std::uint64_t scratch[longest_run];
    spread(items, scratch, count);
    std::uint64_t least_difference = ~std::uint64_t{0};
    for (std::int32_t at = 1; at < count; ++at) {
        const std::uint64_t item = items[at];
        std::int32_t to = at;
        for (; to > 0 && items[to - 1] > item; --to) {
            items[to] = items[to - 1];
        }
        items[to] = item;
    }
    for (std::int32_t at = 1; at < count; ++at) {
        const std::uint64_t difference = (items[at] >> index_bits) - (items[at - 1] >> index_bits);
        least_difference = difference < least_difference ? difference : least_difference;
    }
    return least_difference != 0;
}

template <typename Slot, typename Keys>
class key_sorting : private sorting<Slot, Keys, ascending_order> {
    using literal = sorting<Slot, Keys, ascending_order>;
    using typename literal::range;

  public:
    key_sorting(Slot *slots, const Keys &keys) noexcept : literal(slots, keys), keys_(keys) {}

    void run(std::int32_t count) noexcept
    {
        range next{0, count - 1};
        while (true) {
            const std::int32_t size = next.high - next.low + 1;
            if (size > longest_run || !sort_run(next)) {
                if (size <= 2 * block) {
                    literal::run(next);
                } else if (divide(next)) {
                    continue;
                }
            }
            if (this->depth_ == 0) {
                return;
            }
            next = this->stack_[--this->depth_];
        }
    }

  private:
    bool sort_run(range in) noexcept
    {
        Slot *const slots = this->slots_ + in.low;
        const std::int32_t count = in.high - in.low + 1;
        const Keys keys = keys_.near(slots, count);
        std::uint64_t items[longest_run];
        std::uint64_t least = ~std::uint64_t{0};
        std::uint64_t most = 0;
        for (std::int32_t at = 0; at < count; ++at) {
            const std::uint64_t rank = keys.rank(slots[at]);
            items[at] = rank;
            least = rank < least ? rank : least;
            most = rank > most ? rank : most;
        }
        if (most - least < static_cast<std::uint32_t>(count - 1)) {
            return false; // more keys than numbers
        }
        const int dropped =
            larger(static_cast<int>(std::bit_width(most - least)) + index_bits - 64, 0);
        for (std::int32_t at = 0; at < count; ++at) {
            items[at] =
                (items[at] - least) >> dropped << index_bits | static_cast<std::uint32_t>(at);
        }
        if (!sort_items(items, count)) {
            return false;
        }
        Slot copied[longest_run];
        move_units(copied, slots, count);
        for (std::int32_t at = 0; at < count; ++at) {
            slots[at] = copied[items[at] % (1U << index_bits)];
        }
        return true;
    }

    // `divide` of the literal procedure, with the same outcome.
    bool divide(range &next) noexcept
    {
        const auto [low, high] = next;
        std::int32_t mid = this->median(next);
        const Slot pivot = this->slots_[mid];
        std::int32_t up = low;
        std::int32_t down = high;
        swap_blocks(up, down, mid, pivot);
        const auto rank = keys_.rank(pivot);
        while (true) {
            do {
                ++up;
            } while (up <= high && !is_above(keys_, this->slots_[up], pivot, rank));
            do {
                --down;
            } while (down > mid && is_above(keys_, this->slots_[down], pivot, rank));
            if (down < up) {
                break;
            }
            this->swap(up, down);
            if (mid == down) {
                mid = up;
            }
        }
        return this->settle(next, up, down, mid);
    }

    static bool is_above(const Keys &keys, const Slot &slot, const Slot &pivot,
                         typename Keys::number rank) noexcept
    {
        const auto of_slot = keys.rank(slot);
        if constexpr (!Keys::ranks_decide) {
            if (of_slot == rank) {
                return keys(slot, pivot) > 0;
            }
        }
        return of_slot > rank;
    }

    // Lists the places in a block of the slots above the pivot, or of those not above it. The block
    // `ahead` slots from there will be asked for next.
    template <bool wants_above>
    [[gnu::always_inline]] static std::size_t list(const Slot *first, const Keys &keys,
                                                   const Slot &pivot, std::int32_t ahead,
                                                   std::uint8_t *places) noexcept
    {
        const auto rank = keys.rank(pivot);
#if defined(QEK_CHOOSES_AT_LOAD)
        if constexpr (Keys::template are_pairs<Slot>()) {
            constexpr std::uint64_t kept = static_cast<typename Keys::number>(-1);
            return list_pairs(reinterpret_cast<const std::uint8_t *>(first),
                              {kept, keys.mask, rank, wants_above},
                              ahead * std::ptrdiff_t{pair_size}, places);
        }
#endif
        std::size_t count = 0;
#pragma GCC unroll 2
        for (std::int32_t at = 0; at < block; ++at) {
            keys.fetch(first[at + ahead]);
            places[count] = static_cast<std::uint8_t>(at);
            count += is_above(keys, first[at], pivot, rank) == wants_above ? 1U : 0U;
        }
        return count;
    }

    // Swaps while two whole blocks lie between `up` and `down`. Then everything up to `up` is not
    // above the pivot, and everything from `down` on is.
    void swap_blocks(std::int32_t &up, std::int32_t &down, std::int32_t &mid,
                     const Slot &pivot) noexcept
    {
        Slot *const slots = this->slots_; // which bytes written to a list could be part of
        const Keys keys = keys_;
        std::uint8_t lefts[block];
        std::uint8_t rights[block];
        std::size_t left = 0, left_end = 0;
        std::size_t right_end = 0; // the rightmost is the last of a list
        while (down - up > 2 * block) {
            if (left == left_end) {
                left = 0;
                left_end = list<true>(slots + up + 1, keys, pivot, block, lefts);
            }
            if (right_end == 0) {
                right_end = list<false>(slots + down - block, keys, pivot, -block, rights);
            }
            const std::size_t pairs = smaller(left_end - left, right_end);
            for (std::size_t at = 0; at < pairs; ++at) {
                const std::int32_t above = up + 1 + lefts[left + at];
                const std::int32_t not_above = down - block + rights[right_end - 1 - at];
                const Slot kept = slots[above];
                slots[above] = slots[not_above];
                slots[not_above] = kept;
                mid = mid == not_above ? above : mid;
            }
            left += pairs;
            right_end -= pairs;
            up += left == left_end ? block : 0;
            down -= right_end == 0 ? block : 0;
        }
        up += left < left_end ? lefts[left] : 0;
        down -= right_end > 0 ? block - 1 - rights[right_end - 1] : 0;
    }

    Keys keys_;
};

// Whether every slot ranks above the one in front of it, or all below it: then the one sorted order
// is there, or is the reverse.
template <typename Slot, typename Keys>
bool sort_monotonous(Slot *slots, std::int32_t count, const Keys &keys) noexcept
{
    std::int32_t rising = 1;
    while (rising < count && keys(slots[rising - 1], slots[rising]) < 0) {
        ++rising;
    }
    std::int32_t falling = 1;
    while (falling < count && keys(slots[falling - 1], slots[falling]) > 0) {
        ++falling;
    }
    if (falling == count) {
        for (std::int32_t low = 0, high = count - 1; low < high; ++low, --high) {
            const Slot kept = slots[low];
            slots[low] = slots[high];
            slots[high] = kept;
        }
    }
    return rising == count || falling == count;
}

template <typename Slot, typename Keys>
void sort_by_keys(Slot *slots, std::int32_t count, const Keys &keys) noexcept
{
    if (count >= 2 && !sort_monotonous(slots, count, keys)) {
        key_sorting<Slot, Keys>(slots, keys.near(slots, count)).run(count);
    }
}

// Slots with a number as key, in unsigned order; a mask of all ones turns the direction.
template <typename Key> struct number_ranks {
    static constexpr bool ranks_decide = true;
    template <typename Slot> static constexpr bool are_pairs() { return sizeof(Slot) == 16; }
    using number = Key;

    Key mask;

    static Key key_of(Key slot) noexcept { return slot; }
    template <typename Slot> static Key key_of(const Slot &slot) noexcept { return slot.key; }

    template <typename Slot> Key rank(const Slot &slot) const noexcept
    {
        return key_of(slot) ^ mask;
    }
    template <typename Slot> int operator()(const Slot &x, const Slot &y) const noexcept
    {
        return static_cast<int>(rank(x) > rank(y)) - static_cast<int>(rank(x) < rank(y));
    }
    template <typename Slot> number_ranks near(const Slot *, std::int32_t) const noexcept
    {
        return *this;
    }
    template <typename Slot> static void fetch(const Slot &) noexcept {}
};

template <typename Key, typename Slot>
void sort_by_numbers(Slot *slots, std::int32_t count, bool ascending) noexcept
{
    sort_by_keys(slots, count, number_ranks<Key>{ascending ? Key{0} : static_cast<Key>(~Key{0})});
}

} // namespace qek::array
