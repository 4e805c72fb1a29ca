// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Random numbers for tests that compare random operations with a model. The seed is printed before
// the first number is drawn, so that it is known also after an abort; QEK_TEST_SEED=<seed> replays
// the run, on every platform alike.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <random>

namespace qek_test {

class random_numbers {
  public:
    random_numbers()
    {
        const char *given = std::getenv("QEK_TEST_SEED");
        const auto seed = given == nullptr ? std::random_device{}()
                                           : static_cast<std::uint32_t>(std::strtoul(given, {}, 0));
        engine_.seed(seed);
        std::printf("[   SEED   ] QEK_TEST_SEED=%lu\n", static_cast<unsigned long>(seed));
        std::fflush(stdout);
    }

    std::uint32_t next() { return static_cast<std::uint32_t>(engine_()); }

    // From `least` to `most`, both included.
    std::int32_t between(std::int32_t least, std::int32_t most)
    {
        const auto choices = static_cast<std::uint64_t>(std::int64_t{most} - least + 1);
        return static_cast<std::int32_t>(least + static_cast<std::int64_t>(next() % choices));
    }

    bool one_in(std::int32_t count) { return between(1, count) == 1; }

    template <typename Item> Item one_of(std::initializer_list<Item> items)
    {
        return items.begin()[next() % items.size()];
    }

  private:
    std::mt19937 engine_;
};

} // namespace qek_test
