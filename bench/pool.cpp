// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "bench.h"
#include "qek_std.h"

#include <boost/pool/pool.hpp>

namespace bench {
namespace {

constexpr std::int32_t item_size = 32;

struct ours {
    qek_pool pool;

    ours()
    {
        qek_pool_init(&pool);
        pool.item_size = item_size;
    }
    ~ours() { qek_pool_term(&pool); }
    ours(const ours &) = delete;
    ours &operator=(const ours &) = delete;

    void *take() { return qek_pool_new(&pool); }
    void give(void *item) { qek_pool_free(&pool, item); }
};

struct heap {
    static void *take() { return std::malloc(item_size); }
    static void give(void *item) { std::free(item); }
};

struct boosted {
    boost::pool<> pool{item_size};

    void *take() { return pool.malloc(); }
    void give(void *item) { pool.free(item); }
};

word touched(void *item, word number)
{
    *static_cast<word *>(item) = number;
    benchmark::DoNotOptimize(item);
    return *static_cast<word *>(item);
}

// All items taken, and then all given back; the pool keeps its memory from one time to the next.
template <typename Pool> void batch(benchmark::State &state)
{
    Pool pool;
    std::vector<void *> items(static_cast<std::size_t>(size_of(state)));
    repeat(state, size_of(state), pool, [&](Pool &of) {
        word total = 0;
        for (void *&item : items) {
            item = of.take();
            total += touched(item, total + 1);
        }
        for (void *item : items) {
            of.give(item);
        }
        return total;
    });
}

template <typename Pool> void pair(benchmark::State &state)
{
    Pool pool;
    repeat(state, size_of(state), pool, [&](Pool &of) {
        word total = 0;
        for (std::int64_t at = 0; at < size_of(state); ++at) {
            void *item = of.take();
            total += touched(item, static_cast<word>(at));
            of.give(item);
        }
        return total;
    });
}

template <typename Pool> void add_rows(const char *side)
{
    add("pool_batch", side, {1'000, 1'000'000}, batch<Pool>);
    add("pool_pair", side, {1'000'000}, pair<Pool>);
}

} // namespace

void register_rows()
{
    add_rows<ours>("ours");
    add_rows<heap>("malloc");
    add_rows<boosted>("boost");
}

} // namespace bench
