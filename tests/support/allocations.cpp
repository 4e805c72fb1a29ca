// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "support/allocations.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

struct watch {
    bool on = false;
    bool and_later = false;
    bool failed = false;
    int fail_from = 0;
    int count = 0;
    std::array<std::size_t, 64> sizes{};
};

watch current;

// All calls of the whole run, told at its end for whoever compares two runs, and the blocks that were
// not given back, of which no test may leave any.
std::uint64_t calls, digest;
long blocks;
struct report : testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo &) override
    {
        EXPECT_EQ(std::exchange(blocks, 0), 0) << "blocks are left";
    }
    void OnEnvironmentsTearDownEnd(const testing::UnitTest &) override
    {
        if (!qek_test::random_numbers::is_given) {
            std::printf("[ LIBRARY  ] %" PRIu64 " allocations, digest %016" PRIX64 "\n", calls,
                        digest);
        }
    }
};
const bool is_reported = (testing::UnitTest::GetInstance()->listeners().Append(new report), true);

void *taken(void *block)
{
    blocks += block != nullptr;
    return block;
}

} // namespace

extern "C" void *watched_malloc(std::size_t size);
extern "C" void watched_free(void *block);

extern "C" void *watched_malloc(std::size_t size)
{
    ++calls;
    digest = (digest ^ size) * 0x100000001B3;
    if (!current.on) {
        return taken(std::malloc(size));
    }
    if (static_cast<std::size_t>(current.count) < current.sizes.size()) {
        current.sizes[static_cast<std::size_t>(current.count)] = size;
    }
    ++current.count;
    const bool chosen =
        current.and_later ? current.count >= current.fail_from : current.count == current.fail_from;
    if (current.fail_from > 0 && chosen) {
        current.failed = true;
        return nullptr;
    }
    return taken(std::malloc(size));
}

extern "C" void watched_free(void *block)
{
    blocks -= block != nullptr;
    std::free(block);
}

namespace qek_test {

allocations::allocations(int fail_from, bool and_later)
{
    current = {};
    current.fail_from = fail_from;
    current.and_later = and_later;
    current.on = true;
}

allocations::~allocations() { current.on = false; }

int allocations::count() const { return current.count; }

bool allocations::any_failed() const { return current.failed; }

long allocations::live() { return blocks; }

std::vector<std::size_t> allocations::sizes() const
{
    const auto kept = std::min(static_cast<std::size_t>(current.count), current.sizes.size());
    return {current.sizes.begin(), current.sizes.begin() + static_cast<std::ptrdiff_t>(kept)};
}

} // namespace qek_test
