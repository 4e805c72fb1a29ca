// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The tests as a program of their own. With files it gives their bytes to the fuzz target that
// QEK_FUZZ_TARGET names, or else to the one of each file's folder. With QEK_SOAK=<operations> it
// repeats the tests of all targets with random choices until that many are done.

#include "fuzz/driver.h"

#include "support/random.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using qek_test::random_numbers;

int replay(int count, char **paths)
{
    for (int number = 0; number < count; ++number) {
        const std::string path = paths[number];
        const auto end = path.find_last_of('/'), start = path.find_last_of('/', end - 1);
        if (std::getenv("QEK_FUZZ_TARGET") == nullptr) {
            qek_fuzz::target = path.substr(start + 1, end - start - 1);
        }
        std::FILE *file = std::fopen(path.c_str(), "rb");
        if (file == nullptr) {
            std::perror(path.c_str());
            return 1;
        }
        std::printf("%s\n", path.c_str());
        std::fflush(stdout);
        std::vector<std::uint8_t> bytes(1 << 20);
        bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
        bytes.shrink_to_fit(); // a read behind them is to show
        std::fclose(file);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%d files replayed\n", count);
    return 0;
}

// Longer runs than usual, in which costly checks are as many as usual. After each test all memory
// has to be back (support/allocations.cpp).
int soak(std::uint64_t operations)
{
    std::string filter;
    for (const auto &[name, tests] : qek_fuzz::targets) {
        for (const std::string &test : tests) {
            filter += test + ':';
        }
    }
    GTEST_FLAG_SET(filter, filter);
    GTEST_FLAG_SET(brief, true);
    random_numbers::length = 20;
    const auto begin = std::chrono::steady_clock::now();
    int passes = 0;
    for (; random_numbers::operations < operations; ++passes) {
        if (RUN_ALL_TESTS() != 0) {
            return 1;
        }
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    std::printf("%llu operations in %.0f seconds, %d passes\n",
                static_cast<unsigned long long>(random_numbers::operations), took.count(), passes);
    return 0;
}

} // namespace

int main(int count, char **arguments)
{
    testing::InitGoogleMock(&count, arguments);
    const char *operations = std::getenv("QEK_SOAK");
    return operations != nullptr ? soak(std::strtoull(operations, nullptr, 10))
           : count > 1           ? replay(count - 1, arguments + 1)
                                 : RUN_ALL_TESTS();
}
