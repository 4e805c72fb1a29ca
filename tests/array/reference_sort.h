// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The sort of the arrays written down a second time, in one piece and with nothing shared with the
// library: callers can tell in which order it compares, and where equal slots end.
#pragma once

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

namespace qek_test {

// `compare(x, y)` takes two slots. Returns how many ranges waited at most.
template <typename Slot, typename Compare>
std::size_t reference_sort(std::vector<Slot> &slots, int count, bool ascending, Compare compare)
{
    Slot *const a = slots.data();
    const auto same = [&](int x, int y) { return compare(a[x], a[y]) == 0; };
    const auto more = [&](int x, int y) {
        const auto result = compare(a[x], a[y]);
        return ascending ? result > 0 : result < 0;
    };
    std::vector<std::pair<int, int>> waiting;
    std::size_t deepest = 0;
    auto [low, high] = std::pair(0, count - 1);
    while (count >= 2) {
        if (high - low + 1 > 8) {
            int mid = low + (high - low + 1) / 2, up = low, down = high;
            for (const auto &[x, y] : {std::pair(low, mid), {low, high}, {mid, high}}) {
                if (more(x, y)) {
                    std::swap(a[x], a[y]);
                }
            }
            while (true) {
                while (mid > up && ++up < mid && !more(up, mid)) {
                }
                while (mid <= up && ++up <= high && !more(up, mid)) {
                }
                while (--down > mid && more(down, mid)) {
                }
                if (down < up) {
                    break;
                }
                std::swap(a[up], a[down]);
                mid = mid == down ? up : mid;
            }
            ++down;
            while (mid < down && --down > mid && same(down, mid)) {
            }
            while (mid >= down && --down > low && same(down, mid)) {
            }
            std::pair next(up, high), later(low, down);
            if (down - low < high - up) {
                std::swap(next, later);
            }
            if (later.first < later.second) {
                waiting.push_back(later);
                deepest = std::max(deepest, waiting.size());
            }
            std::tie(low, high) = next;
            if (low < high) {
                continue;
            }
        }
        for (; high > low; --high) {
            int best = low;
            for (int at = low + 1; at <= high; ++at) {
                best = more(at, best) ? at : best;
            }
            std::swap(a[best], a[high]);
        }
        if (waiting.empty()) {
            break;
        }
        std::tie(low, high) = waiting.back();
        waiting.pop_back();
    }
    return deepest;
}

} // namespace qek_test
