// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Choices for tests that compare operations with a model. They are random: the seed is printed before
// the first one is drawn, so that it is known also after an abort; QEK_TEST_SEED=<seed> replays the
// run, on every platform alike. Or they stand in given bytes, from which the same test runs one
// variant as far as the bytes reach (fuzz/driver.cpp).
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <numeric>
#include <random>
#include <span>
#include <vector>

namespace qek_test {

class random_numbers {
  public:
    static inline bool is_given = false;                 // the choices are those of `bytes`
    static inline std::span<const std::uint8_t> bytes{}; // a choice takes as few as can hold it
    static inline int length = 1;                        // of random runs, times the usual one
    static inline std::uint64_t operations = 0;          // done by all tests

    random_numbers()
    {
        if (is_given) {
            return;
        }
        const char *given = std::getenv("QEK_TEST_SEED");
        const auto seed = given == nullptr ? std::random_device{}()
                                           : static_cast<std::uint32_t>(std::strtoul(given, {}, 0));
        engine_.seed(seed);
        std::printf("[   SEED   ] QEK_TEST_SEED=%lu\n", static_cast<unsigned long>(seed));
        std::fflush(stdout);
    }

    // The condition of a loop over steps, each of which chooses.
    bool goes_on(int step, int usual_steps)
    {
        const bool goes = is_given ? !bytes.empty() : step / length < usual_steps;
        operations += goes;
        return goes;
    }
    // Whether a check is due that costs much more than the step before it.
    bool is_due(int step) const { return length == 1 || step % length == 0; }

    // All numbers of the range, or the one that the given bytes choose.
    template <typename Number = int>
    std::vector<Number> each_between(std::int32_t least, std::int32_t most)
    {
        std::vector<Number> each(is_given ? 1U : static_cast<unsigned>(most - least + 1));
        std::iota(each.begin(), each.end(),
                  static_cast<Number>(is_given ? between(least, most) : least));
        operations += each.size();
        return each;
    }
    template <typename Number = int> std::vector<Number> each_below(std::size_t count)
    {
        return each_between<Number>(0, static_cast<std::int32_t>(count) - 1);
    }

    std::uint32_t next() { return below(std::uint64_t{1} << 32); }

    std::uint32_t below(std::uint64_t choices)
    {
        std::uint64_t drawn = is_given ? 0 : engine_();
        bool draws = is_given;
        for (auto left = choices - 1; draws && !bytes.empty(); draws = (left >>= 8) > 0) {
            drawn = drawn << 8 | bytes.front();
            bytes = bytes.subspan(1);
        }
        return static_cast<std::uint32_t>(drawn % choices);
    }

    // From `least` to `most`, both included.
    std::int32_t between(std::int32_t least, std::int32_t most)
    {
        const auto choices = static_cast<std::uint64_t>(std::int64_t{most} - least + 1);
        return static_cast<std::int32_t>(least + std::int64_t{below(choices)});
    }

    bool one_in(std::int32_t count) { return between(1, count) == 1; }

    template <typename Item> Item one_of(std::initializer_list<Item> items)
    {
        return items.begin()[below(items.size())];
    }

  private:
    std::mt19937 engine_;
};

} // namespace qek_test
