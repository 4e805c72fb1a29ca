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
//   steps.
//
//   Short runs on the stack. Where no two keys of a run are equal, there is one sorted order, and
//   any method finds it: the ranks are spread over buckets by their upper bits and straightened by
//   insertion, in a copy. On the first equal pair the copy is dropped and the run, still untouched,
//   takes the literal steps.
//
// Together they take a third of the literal time for a million random keys. Nothing is allocated.
//
// `Keys` says of a slot: `rank`, an unsigned number; slots of different ranks stand as these do.
// `order(x, y)` decides all. With `ranks_decide`, slots of equal rank are equal. `near(slots,
// count)` yields the keys for a few slots, whose ranks may tell more of them apart; `fetch` is a
// hint that a rank will be asked for.
#pragma once

#include "array/sort.h"
#include "base/bytes.h"

#include <bit>
#include <cstdint>

namespace qek::array {

struct ranked {
    std::uint64_t rank;
    std::uint32_t index;
};

inline constexpr std::int32_t longest_run = 256;

// Sorts up to `longest_run` ranks that are all different; false when two are equal.
inline bool sort_ranks(ranked *items, std::int32_t count) noexcept
{
    std::uint64_t least = items[0].rank;
    std::uint64_t most = least;
    for (std::int32_t at = 1; at < count; ++at) {
        least = items[at].rank < least ? items[at].rank : least;
        most = items[at].rank > most ? items[at].rank : most;
    }
    const auto bits = static_cast<int>(std::bit_width(static_cast<std::uint32_t>(count) - 1));
    const auto width = static_cast<int>(std::bit_width(most - least));
    const int shift = width > bits ? width - bits : 0;
    const auto bucket_of = [&](const ranked &item) { return (item.rank - least) >> shift; };
    std::uint16_t ends[longest_run + 1];
    std::memset(ends, 0, (std::size_t{2} << bits) + 2);
    for (std::int32_t at = 0; at < count; ++at) {
        ++ends[bucket_of(items[at]) + 1];
    }
    for (std::int32_t bucket = 0; bucket < 1 << bits; ++bucket) {
        ends[bucket + 1] = static_cast<std::uint16_t>(ends[bucket + 1] + ends[bucket]);
    }
    ranked spread[longest_run];
    for (std::int32_t at = 0; at < count; ++at) {
        spread[ends[bucket_of(items[at])]++] = items[at];
    }
    for (std::int32_t at = 0; at < count; ++at) {
        const ranked item = spread[at];
        std::int32_t to = at;
        for (; to > 0 && items[to - 1].rank > item.rank; --to) {
            items[to] = items[to - 1];
        }
        items[to] = item;
        if (to > 0 && items[to - 1].rank == item.rank) {
            return false;
        }
    }
    return true;
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
            if (next.high - next.low < longest_run) {
                if (!sort_run(next)) {
                    literal::run(next);
                }
            } else if (divide(next)) {
                continue;
            }
            if (this->depth_ == 0) {
                return;
            }
            next = this->stack_[--this->depth_];
        }
    }

  private:
    static constexpr std::int32_t block = 64;

    bool sort_run(range in) noexcept
    {
        Slot *const slots = this->slots_ + in.low;
        const std::int32_t count = in.high - in.low + 1;
        const Keys keys = keys_.near(slots, count);
        ranked items[longest_run];
        std::int32_t rising = 1;
        for (std::int32_t at = 0; at < count; ++at) {
            items[at] = {keys.rank(slots[at]), static_cast<std::uint32_t>(at)};
            rising += at > 0 && items[at - 1].rank < items[at].rank ? 1 : 0;
        }
        if (rising >= count) {
            return true;
        }
        if (!sort_ranks(items, count)) {
            return false;
        }
        Slot copied[longest_run];
        move_units(copied, slots, count);
        for (std::int32_t at = 0; at < count; ++at) {
            slots[at] = copied[items[at].index];
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
            } while (up <= high && !is_above(up, pivot, rank));
            do {
                --down;
            } while (down > mid && is_above(down, pivot, rank));
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

    bool is_above(std::int32_t at, const Slot &pivot, typename Keys::number rank) const noexcept
    {
        const Slot &slot = this->slots_[at];
        const auto of_slot = keys_.rank(slot);
        if constexpr (!Keys::ranks_decide) {
            if (of_slot == rank) {
                return keys_(slot, pivot) > 0;
            }
        }
        return of_slot > rank;
    }

    // Swaps while two whole blocks lie between `up` and `down`. Then everything up to `up` is not
    // above the pivot, and everything from `down` on is.
    void swap_blocks(std::int32_t &up, std::int32_t &down, std::int32_t &mid,
                     const Slot &pivot) noexcept
    {
        const auto rank = keys_.rank(pivot);
        std::uint8_t lefts[block];
        std::uint8_t rights[block];
        std::int32_t left = 0, left_end = 0;
        std::int32_t right = 0, right_end = 0;
        while (down - up > 2 * block) {
            if (left == left_end) {
                left = left_end = 0;
                for (std::int32_t at = 0; at < block; ++at) {
                    keys_.fetch(this->slots_[up + 1 + at + block]);
                    lefts[left_end] = static_cast<std::uint8_t>(at);
                    left_end += is_above(up + 1 + at, pivot, rank) ? 1 : 0;
                }
            }
            if (right == right_end) {
                right = right_end = 0;
                for (std::int32_t at = 0; at < block; ++at) {
                    keys_.fetch(this->slots_[down - 1 - at - block]);
                    rights[right_end] = static_cast<std::uint8_t>(at);
                    right_end += is_above(down - 1 - at, pivot, rank) ? 0 : 1;
                }
            }
            for (; left < left_end && right < right_end; ++left, ++right) {
                const std::int32_t above = up + 1 + lefts[left];
                const std::int32_t not_above = down - 1 - rights[right];
                this->swap(above, not_above);
                mid = mid == not_above ? above : mid;
            }
            up += left == left_end ? block : 0;
            down -= right == right_end ? block : 0;
        }
        up += left < left_end ? lefts[left] : 0;
        down -= right < right_end ? rights[right] : 0;
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
