// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// How a row is measured: the same way on all sides.
//
// A benchmark is named `row/side/size`; rows.py says which sides a row has. Its work runs on a fresh
// subject each time, and the clock runs for the work alone. Work yields a number that the compiler
// cannot know, and which must be the same for all sides of a row: report.py compares it, so a side
// that does less than its peer shows.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <string>
#include <vector>

namespace bench {

using word = std::uintptr_t;

// Each program has one of these.
void register_rows();

inline std::int64_t size_of(const benchmark::State &state) { return state.range(0); }

// Processor time of this thread, so that what else the machine does counts less.
inline double seconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Times `work(subject)` on what `prepare` makes. What is to be kept out of the figure and comes
// after the work goes into the subject's destructor.
template <typename Prepare, typename Work>
void measure(benchmark::State &state, std::int64_t operations, Prepare prepare, Work work)
{
    std::uint64_t result = 0;
    for ([[maybe_unused]] auto _ : state) {
        auto subject = prepare();
        benchmark::DoNotOptimize(&subject);
        benchmark::ClobberMemory();
        const double begin = seconds();
        result = work(subject);
        benchmark::ClobberMemory();
        state.SetIterationTime(seconds() - begin);
    }
    state.SetItemsProcessed(state.iterations() * operations);
    state.counters["result"] = static_cast<double>(result & 0xffffffffU);
}

// The same for work that leaves its subject as it was.
template <typename Subject, typename Work>
void repeat(benchmark::State &state, std::int64_t operations, Subject &subject, Work work)
{
    measure(
        state, operations, [&] { return &subject; }, [&](Subject *the) { return work(*the); });
}

inline double heap_bytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

// Heap bytes per entry of what `build` makes.
template <typename Build> void weigh(benchmark::State &state, Build build)
{
    for ([[maybe_unused]] auto _ : state) {
        const double before = heap_bytes();
        auto subject = build();
        state.counters["bytes"] = (heap_bytes() - before) / static_cast<double>(size_of(state));
        state.SetIterationTime(1e-9);
    }
}

using sizes = std::initializer_list<std::int64_t>;
using function = void (*)(benchmark::State &);

// QEK_BENCH_LARGEST leaves larger sizes out; a row that has no smaller one runs at that size.
inline benchmark::internal::Benchmark *register_row(const std::string &row, const char *side,
                                                    sizes of, function run)
{
    const char *largest = std::getenv("QEK_BENCH_LARGEST");
    const std::int64_t limit = largest != nullptr ? std::atoll(largest) : INT64_MAX;
    auto *added = benchmark::RegisterBenchmark((row + '/' + side).c_str(), run);
    bool any = false;
    for (const std::int64_t size : of) {
        if (size <= limit) {
            added->Arg(size);
            any = true;
        }
    }
    return (any ? added : added->Arg(limit))->UseManualTime();
}

// Weights are taken in a run of their own, where no peer keeps memory from what ran before.
inline bool weighs() { return std::getenv("QEK_BENCH_WEIGHTS") != nullptr; }

inline void add(const std::string &row, const char *side, sizes of, function run)
{
    if (!weighs()) {
        register_row(row, side, of, run);
    }
}

// For work that takes seconds and is not judged.
inline void add_once(const std::string &row, const char *side, sizes of, function run)
{
    if (!weighs()) {
        register_row(row, side, of, run)->Iterations(1)->Repetitions(1);
    }
}

inline void add_weight(const std::string &family, const char *side, function run)
{
    if (weighs()) {
        register_row(family + "_memory", side, {1'000'000}, run)->Iterations(1)->Repetitions(1);
    }
}

} // namespace bench
