// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The tests as a program of their own. With files it gives their bytes to the fuzz target that
// QEK_FUZZ_TARGET names, or else to the one of each file's folder. With QEK_SOAK=<operations> it
// repeats the tests of all targets with random choices until that many are done.

#include "fuzz/driver.h"

#include "support/random.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using qek_test::random_numbers;

int replay(std::span<char *> paths)
{
    const bool is_told = !qek_fuzz::target.empty();
    for (const std::string path : paths) {
        const auto end = path.find_last_of('/'), start = path.find_last_of('/', end - 1) + 1;
        qek_fuzz::target = is_told ? qek_fuzz::target : path.substr(start, end - start);
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        std::printf("%s, %zu bytes\n", path.c_str(), bytes.size());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs replayed\n", paths.size());
    return 0;
}

// Longer runs than usual, in which costly checks are as many as usual. After each test all memory
// has to be back (support/allocations.cpp).
int soak(std::uint64_t operations)
{
    std::string filter;
    for (const auto &[name, tests] : qek_fuzz::targets) {
        for (const std::string &test : tests) {
            filter += name == "readers" ? "" : test + ':'; // which look at long texts in each step
        }
    }
    GTEST_FLAG_SET(filter, filter);
    random_numbers::length = 20;
    int result = 0;
    while (random_numbers::operations < operations && result == 0) {
        result = RUN_ALL_TESTS();
    }
    std::printf("%.0f operations done\n", static_cast<double>(random_numbers::operations));
    return result;
}

} // namespace

int main(int count, char **arguments)
{
    testing::InitGoogleMock(&count, arguments);
    const char *operations = std::getenv("QEK_SOAK");
    return operations != nullptr ? soak(std::strtoull(operations, nullptr, 10))
           : count > 1           ? replay({arguments + 1, arguments + count})
                                 : RUN_ALL_TESTS();
}
