// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The sort of the array families.
//
// An iterative quicksort: median of three, a selection sort for ranges of 8 and less, the larger
// range left on a stack and the smaller done next, which bounds the stack by the logarithm of the
// count. Not stable; nothing is allocated.
//
// The sequence of comparisons and swaps is interface. Callbacks see the arguments in exactly this
// order, and where equal slots end up follows from it, so no step may be merged, skipped or
// reordered, not even the swap of a slot with itself at the end of a selection pass. Both
// directions call the comparison with the same slots in the same order and differ in the sense of
// `more` alone.
//
// `order(x, y)` is the comparison of two slots; `more(order)` is its direction.
#pragma once

#include <cstdint>

namespace qek::array {

struct ascending_order {
    static constexpr bool more(auto stands) noexcept { return stands > 0; }
};

struct either_order {
    bool ascending;

    constexpr bool more(auto stands) const noexcept { return ascending ? stands > 0 : stands < 0; }
};

template <typename Slot, typename Order, typename Direction> class sorting {
  public:
    sorting(Slot *slots, Order order, Direction direction = {}) noexcept
        : slots_(slots), order_(order), direction_(direction)
    {
    }

    void run(std::int32_t count) noexcept { run(range{0, count - 1}); }

  protected:
    struct range {
        std::int32_t low;
        std::int32_t high;
    };

    // Sorts one range, while others wait on the stack.
    void run(range next) noexcept
    {
        const std::int32_t waiting = depth_;
        while (true) {
            if (next.high - next.low + 1 <= selection_cutoff) {
                select(next);
            } else if (divide(next)) {
                continue;
            }
            if (depth_ == waiting) {
                return;
            }
            next = stack_[--depth_];
        }
    }

    static constexpr std::int32_t selection_cutoff = 8;
    static constexpr std::int32_t stack_size = 30;

    bool more(std::int32_t x, std::int32_t y) noexcept
    {
        return direction_.more(order_(slots_[x], slots_[y]));
    }

    bool same(std::int32_t x, std::int32_t y) noexcept { return order_(slots_[x], slots_[y]) == 0; }

    void swap(std::int32_t x, std::int32_t y) noexcept
    {
        const Slot kept = slots_[x];
        slots_[x] = slots_[y];
        slots_[y] = kept;
    }

    void swap_if_more(std::int32_t x, std::int32_t y) noexcept
    {
        if (more(x, y)) {
            swap(x, y);
        }
    }

    void select(range in) noexcept
    {
        for (std::int32_t high = in.high; high > in.low; --high) {
            std::int32_t best = in.low;
            for (std::int32_t at = in.low + 1; at <= high; ++at) {
                if (more(at, best)) {
                    best = at;
                }
            }
            swap(best, high);
        }
    }

    void scan_up(std::int32_t &up, std::int32_t mid, std::int32_t high) noexcept
    {
        if (mid > up) {
            do {
                ++up;
            } while (up < mid && !more(up, mid));
        }
        if (mid <= up) {
            do {
                ++up;
            } while (up <= high && !more(up, mid));
        }
    }

    void scan_down(std::int32_t &down, std::int32_t mid) noexcept
    {
        do {
            --down;
        } while (down > mid && more(down, mid));
    }

    void skip_equal(std::int32_t &down, std::int32_t mid, std::int32_t low) noexcept
    {
        while (down > mid && same(down, mid)) {
            --down;
        }
        if (mid >= down) {
            do {
                --down;
            } while (down > low && same(down, mid));
        }
    }

    // Partitions `next`, leaves the larger part on the stack and makes `next` the smaller one.
    // False when there is no smaller part to go on with.
    bool divide(range &next) noexcept
    {
        const auto [low, high] = next;
        std::int32_t mid = median(next);
        std::int32_t up = low;
        std::int32_t down = high;
        while (true) {
            scan_up(up, mid, high);
            scan_down(down, mid);
            if (down < up) {
                break;
            }
            swap(up, down);
            if (mid == down) {
                mid = up;
            }
        }
        return settle(next, up, down, mid);
    }

    // The middle slot, with a slot not above it at the low end and one not below it at the high.
    std::int32_t median(range in) noexcept
    {
        const std::int32_t mid = in.low + (in.high - in.low + 1) / 2;
        swap_if_more(in.low, mid);
        swap_if_more(in.low, in.high);
        swap_if_more(mid, in.high);
        return mid;
    }

    bool settle(range &next, std::int32_t up, std::int32_t down, std::int32_t mid) noexcept
    {
        skip_equal(down, mid, next.low);
        const range below{next.low, down};
        const range above{up, next.high};
        const bool below_is_larger = down - next.low >= next.high - up;
        const range larger_part = below_is_larger ? below : above;
        const range smaller_part = below_is_larger ? above : below;
        if (larger_part.low < larger_part.high) {
            stack_[depth_++] = larger_part;
        }
        next = smaller_part;
        return smaller_part.low < smaller_part.high;
    }

    Slot *slots_;
    Order order_;
    [[no_unique_address]] Direction direction_;
    std::int32_t depth_ = 0;
    range stack_[stack_size];
};

template <typename Slot, typename Order>
void sort(Slot *slots, std::int32_t count, bool ascending, Order order) noexcept
{
    if (count >= 2) {
        sorting<Slot, Order, either_order>(slots, order, {ascending}).run(count);
    }
}

} // namespace qek::array
