// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "fuzz/driver.h"

#include "support/random.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace qek_fuzz {

const std::map<std::string, std::vector<std::string>> targets{
    {"array", {"array_families/4.follow*"}},
    {"arrayd", {"array_families/2.follow*"}},
    {"arrays", {"array_families/0.follow*", "array_families/1.follow*"}},
    {"arrayt", {"arrayt.follow*"}},
    {"arrayx", {"array_families/3.follow*"}},
    {"bitree", {"trees/1.release*", "trees/1.clone*"}},
    {"bits", {"bits.are*"}},
    {"btree", {"btree/keyed_suite/0.does*", "btree_suite/0.finds*"}},
    {"btreed",
     {"btree/keyed_suite/1.does*", "btree/keyed_suite/3.does*", "btree_suite/1.finds*",
      "btree_suite/3.finds*"}},
    {"btreex", {"btree/keyed_suite/2.does*", "btree_suite/2.finds*"}},
    {"char", {"slice/0.compares*", "slice/0.reads_numbers*"}},
    {"hash", {"hash/keyed_suite/0.does*"}},
    {"hashd", {"hash/keyed_suite/1.does*"}},
    {"hasht", {"hash/keyed_suite/3.does*"}},
    {"hashx", {"hash/keyed_suite/2.does*"}},
    {"list", {"lists/0.behave*"}},
    {"lists", {"lists/1.behave*"}},
    {"listx", {"unrolled_list.packs*"}},
    {"mem", {"mem.copies*", "mem.searches*", "mem.orders_by*", "mem.orders_every*"}},
    {"pool", {"pool.does*", "pool_iteration.meets*"}},
    {"readers",
     {"readers.index*", "readers.lists*", "fields.runs_are*", "compact.*", "slice/0.reads_numbers*",
      "slice/1.reads_numbers*"}},
    {"str", {"str.answers*", "str.trims*"}},
    {"stream", {"stream.random*"}},
    {"string", {"owned_text/0.does*", "convert.replaces_as*", "convert.matches*"}},
    {"stringx", {"slice/1.compares*", "slice/1.reads_numbers*", "stringx.is_cut_as*"}},
    {"tree", {"general_tree.is_walked*", "trees/0.release*", "trees/0.clone*"}},
    {"wchar", {"owned_text/1.does*", "convert.replaces_wide*"}},
};

std::string target =
    std::getenv("QEK_FUZZ_TARGET") == nullptr ? "" : std::getenv("QEK_FUZZ_TARGET");

namespace {

struct abort_on_failure : testing::EmptyTestEventListener {
    void OnTestPartResult(const testing::TestPartResult &result) override
    {
        if (result.failed()) {
            const char *file = result.file_name() == nullptr ? "?" : result.file_name();
            std::fprintf(stderr, "%s:%d: %s\n", file, result.line_number(), result.message());
            std::abort();
        }
    }
};

[[noreturn]] void complain(const char *what)
{
    std::fprintf(stderr, "QEK_FUZZ_TARGET=%s: %s\n", target.c_str(), what);
    std::exit(2);
}

void get_ready()
{
    testing::InitGoogleTest();
    auto &listeners = testing::UnitTest::GetInstance()->listeners();
    delete listeners.Release(listeners.default_result_printer());
    listeners.Append(new abort_on_failure);
    qek_test::random_numbers::is_given = true;
}

} // namespace
} // namespace qek_fuzz

// With more than one test the first byte chooses.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    [[maybe_unused]] static const bool is_ready = (qek_fuzz::get_ready(), true);
    const auto found = qek_fuzz::targets.find(qek_fuzz::target);
    if (found == qek_fuzz::targets.end()) {
        qek_fuzz::complain("not the name of a target; the folders of fuzz/corpus are");
    }
    const auto &tests = found->second;
    qek_test::random_numbers::bytes = {data, size};
    const std::size_t chosen =
        tests.size() == 1 ? 0 : qek_test::random_numbers().below(tests.size());
    GTEST_FLAG_SET(filter, tests[chosen]);
    if (RUN_ALL_TESTS() != 0 || testing::UnitTest::GetInstance()->successful_test_count() == 0) {
        qek_fuzz::complain(tests[chosen].c_str());
    }
    return 0;
}
