// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The four tables: their families for the suite of all keyed containers, then what tables have
// alone.

#include "hash/hash_check.h"
#include "support/allocations.h"
#include "support/platform.h"

namespace {

using namespace qek_test;

// CRC-32 bit by bit, from 0 and not inverted.
std::uint32_t hash_of(const std::string &bytes)
{
    std::uint32_t rest = 0;
    for (const char byte : bytes) {
        rest ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            rest = rest >> 1 ^ (rest % 2 != 0 ? 0xEDB88320U : 0U);
        }
    }
    return rest;
}

template <typename Keys> struct table_of : Keys {
    using table = typename Keys::container;
    using entry = typename Keys::element;
    static constexpr std::size_t page_size = 0;
    static constexpr int most_keys = 200;
    static constexpr int left_by_term = 1;
    static void init(table *to, bool owns, bool owns_values)
    {
        Keys::initialise(to, owns, owns_values);
        EXPECT_EQ(to->buckets.pool, to->entry_pool);
    }
    static void lend(table &to, lent_pool &entries, lent_pool &) { to.entry_pool = &entries; }
    static qek_pool *pool(const table &of) { return of.entry_pool; }
    static const qek_arrays &slots_of(const table &of) { return of.buckets; }
    static std::pair<words, words> walk(const table &of) // each chain from its head
    {
        std::pair<words, words> found;
        for (int bucket = 0; bucket < of.buckets.count; ++bucket) {
            for (auto *at = item<entry>(of.buckets.slots[bucket]); at != nullptr; at = at->next) {
                found.first.push_back(word(at));
            }
        }
        return found;
    }
    static std::string fault(const table &of, const stored_keys &oldest_first, bool)
    {
        return hash_fault<Keys>(of, oldest_first);
    }
};

#define QEK_ITERATED_HASH_FUNCTIONS(name)                                                          \
    QEK_KEYED_FUNCTIONS(name, entry);                                                              \
    static constexpr auto free = keyed<qek_##name##_free>;                                         \
    static constexpr auto first = qek_##name##_entry_first;                                        \
    static constexpr auto next = qek_##name##_entry_next

struct text_hashes : text_keys<qek_hash> {
    QEK_ITERATED_HASH_FUNCTIONS(hash);
    static std::uint64_t number(const container &of, const any_key &key)
    {
        return hash_of(folded(of, key.bytes));
    }
};

// There is no order to choose. The low bits spread at random.
template <typename Table, typename Number, Number Factor> struct exact_keys {
    static constexpr int orders[] = {0};
    static int &order(const Table &) { return no_order; }
    static bool are_same(const Table &, const any_key &a, const any_key &b) { return a == b; }
    static any_key key(const Table &, int n)
    {
        const Number product = Factor * static_cast<Number>(n);
        return any_key::of(product ^ product >> sizeof(Number) * 4);
    }
    static std::uint64_t number(const Table &, const any_key &key) { return key.as<Number>(); }

  private:
    static inline int no_order = 0;
};

struct dword_hashes : exact_keys<qek_hashd, std::uint32_t, 0x9E3779B1> {
    QEK_ITERATED_HASH_FUNCTIONS(hashd);
};

struct qword_hashes : exact_keys<qek_hashx, std::uint64_t, 0x9E3779B97F4A7C15> {
    QEK_ITERATED_HASH_FUNCTIONS(hashx);
};

// Keys that differ in their last bytes, often in the very last alone.
struct block_hashes : exact_keys<qek_hasht, std::uint32_t, 0> {
    QEK_KEYED_FUNCTIONS(hasht, entry);
    static constexpr auto free = keyed<qek_hasht_free>;
    static any_key key(const container &, int n)
    {
        return {"fourteen bytes" + std::string{static_cast<char>(n >> 8), static_cast<char>(n)}};
    }
    static std::uint64_t number(const container &, const any_key &key)
    {
        return hash_of(key.bytes);
    }
};

using text = table_of<text_hashes>;
using dword = table_of<dword_hashes>;
using qword = table_of<qword_hashes>;
using families = testing::Types<text, dword, qword, table_of<block_hashes>>;

} // namespace

namespace qek_test {
INSTANTIATE_TYPED_TEST_SUITE_P(hash, keyed_suite, families);
INSTANTIATE_TYPED_TEST_SUITE_P(hash, text_keyed_suite, text);
} // namespace qek_test

namespace {

template <typename Family> struct hash_suite : testing::Test {
};
TYPED_TEST_SUITE(hash_suite, families);

template <typename Table> std::array<int, 3> shape(const Table &table)
{
    return {table.entry_count, table.buckets.count, table.buckets.capacity};
}

TYPED_TEST(hash_suite, doubles_at_two_entries_a_bucket)
{
    using family = TypeParam;
    modelled<family> table;
    {
        const allocations watch;
        const any_key key = table.key(1);
        EXPECT_EQ(family::get(&table, key) + family::update(&table, key, 1), 0U);
        EXPECT_EQ(family::remove(&table, key), 0U);
        EXPECT_EQ(family::find(&table, key), 0);
        family::free(&table, key, note_free);
        EXPECT_EQ(watch.count() + table.buckets.count, 0);
    }
    const std::pair<std::array<int, 3>, int> cases[] = {
        {{1, 4, 8}, 64},     {{7, 4, 8}, 64},     {{8, 8, 8}, 128},    {{15, 8, 8}, 128},
        {{16, 16, 16}, 256}, {{31, 16, 16}, 256}, {{32, 32, 32}, 512},
    };
    for (const auto &[expected, key_capacity] : cases) {
        table.store(table.entry_count, expected[0]);
        EXPECT_EQ(shape(table), expected);
        if constexpr (requires { table.keys; }) {
            EXPECT_EQ(table.keys.capacity, key_capacity) << "grown ahead";
        }
    }
    for (int n = 0; n < 32; ++n) {
        const stored_key &gone = table.model.at(static_cast<std::size_t>(n * 7 % 32));
        EXPECT_NE(family::remove(&table, gone.key), 0U);
        EXPECT_EQ(static_cast<const typename family::element *>(gone.element)->next, nullptr);
    }
    EXPECT_EQ(shape(table), (std::array{0, 32, 32}));
}

TYPED_TEST(hash_suite, stores_nothing_when_the_pool_gives_no_entry)
{
    using family = TypeParam;
    modelled<family> table(false);
    table.lent_elements.item_size = 0;
    qek_word value = 7;
    typename family::element entry{};
    auto *out = &entry;
    EXPECT_EQ(family::element_set(&table, table.key(1), &out), 0);
    EXPECT_EQ(family::set(&table, table.key(1), &value, note_free), 0);
    EXPECT_EQ(family::insert(&table, table.key(1), 5), 1) << "says new all the same";
    EXPECT_TRUE(out == nullptr && value == 0 && live(table.value_pool) == 0);
    EXPECT_EQ(table.fault(), "");
}

// Offsets of other keys are put right in the blocks of the pool, where freed entries lie as well.
TEST(hash, leaves_freed_entries_as_they_were)
{
    for (const int own : {0, 24}) {
        modelled<text> table;
        table.entry_pool->item_size += own; // a caller's bytes behind each entry
        table.store(0, 60);
        std::vector<std::pair<const qek_hash_entry *, qek_hash_entry>> freed;
        for (const std::size_t at : {50U, 3U, 20U, 7U, 0U}) {
            if (at == 0) { // and what was freed last, once it is somebody else's
                ASSERT_EQ(qek_pool_new(table.entry_pool), freed.back().first);
                qek_pool_new(table.entry_pool); // the one with such bytes
            }
            if (at == 7) { // with bytes that no entry has
                void *item = qek_pool_new(table.entry_pool);
                std::memset(item, 0xFF, sizeof(qek_hash_entry));
                qek_pool_free(table.entry_pool, item);
                std::memset(&freed.back().second, 0xFF, sizeof(qek_hash_entry));
            }
            const stored_key removed = table.model.at(at);
            const auto *entry = static_cast<const qek_hash_entry *>(removed.element);
            freed.emplace_back(entry, *entry);
            freed.back().second.next = nullptr;
            text::remove(&table, removed.key);
            table.model.erase(table.model.begin() + static_cast<std::ptrdiff_t>(at));
            ASSERT_EQ(table.fault(), "");
            for (const auto &[now, before] : freed) {
                ASSERT_EQ(std::memcmp(now, &before, sizeof before), 0);
            }
        }
    }
}

// Only the sixteenth entry asks for memory that the table does not have yet.
TYPED_TEST(hash_suite, loses_entries_when_buckets_do_not_grow)
{
    using family = TypeParam;
    modelled<family> table, empty;
    qek_pool_free(empty.entry_pool, qek_pool_new(empty.entry_pool));
    table.store(0, 15);
    {
        const allocations faults(1, true);
        table.store(15, 16);
        EXPECT_EQ(family::insert(&empty, empty.key(1), 5), 1);
    }
    EXPECT_EQ(shape(table), (std::array{16, 16, 8}));
    for (int n = 0; n < 16; ++n) {
        const bool is_kept = family::number(table, table.key(n)) % 16 < 8;
        EXPECT_EQ(family::find(&table, table.key(n)), is_kept) << n;
    }
    std::vector<std::pair<const typename family::element *, typename family::element>> lost;
    for (int n = 15; n >= 0; --n) { // so that text goes in front of what was lost
        const void *element = table.model.at(static_cast<std::size_t>(n)).element;
        if (element != nullptr && family::remove(&table, table.key(n)) == 0) {
            lost.emplace_back(static_cast<const typename family::element *>(element),
                              *static_cast<const typename family::element *>(element));
        }
        for (const auto &[now, before] : lost) {
            ASSERT_EQ(std::memcmp(now, &before, sizeof before), 0) << n;
        }
    }
    EXPECT_EQ(shape(empty), (std::array{1, 4, 0}));
    EXPECT_EQ(family::find(&empty, empty.key(1)), 0);
}

// With long runs of empty buckets, as all walks look ahead.
TYPED_TEST(hash_suite, walks_over_the_few_entries_of_a_large_table)
{
    using family = TypeParam;
    for (const int way : {0, 1, 2}) {
        modelled<family> table(way == 0, false), copy(true, false);
        table.store(0, 300);
        for (int n = 0; n < 300; ++n) {
            n % 37 != 0 ? family::remove(&table, table.key(n)) : 0;
        }
        if (way == 0) {
            family::clone(&table, nullptr, &copy, nullptr, nullptr);
            EXPECT_EQ(copy.values(), table.values());
        }
        freed.clear();
        const words values = table.values();
        way == 2 ? family::remove_all(&table) : family::free_all(&table, note_free);
        EXPECT_EQ(std::pair(freed, values.size()),
                  std::pair(way == 2 ? none : values, std::size_t{9}));
        EXPECT_EQ(live(family::pool(table)), 0);
    }
}

template <typename Family> struct hash_iteration : testing::Test {
};
using iterated_families = testing::Types<text, dword, qword>;
TYPED_TEST_SUITE(hash_iteration, iterated_families);

TYPED_TEST(hash_iteration, goes_by_bucket_and_oldest_first)
{
    using family = TypeParam;
    modelled<family> table;
    for (const int keys : {0, 1, 2, 7, 300, 0}) {
        while (keys == 0 && !table.model.empty()) {
            const stored_key oldest = table.model.front();
            family::remove(&table, oldest.key);
            table.model.erase(table.model.begin());
        }
        table.store(table.entry_count, keys);
        words found;
        std::int32_t bucket = 99;
        std::int32_t last = 0;
        for (auto *at = family::first(&table, &bucket); at != nullptr;
             at = family::next(&table, &bucket, at)) {
            found.push_back(word(at));
            const auto *head = item<typename family::element>(table.buckets.slots[bucket]);
            EXPECT_TRUE(bucket == last || at == head);
            last = bucket;
        }
        EXPECT_EQ(found, family::walk(table).first);
        EXPECT_EQ(bucket, last) << "0 without entries, unchanged at the end";
    }
}

TEST(hash, key_functions_run_the_crc_without_inversion)
{
    const std::tuple<const char *, int, int, std::uint32_t> cases[] = {
        {"abc", 3, 0, 0xCA6598D0},  {"abc", -1, 0, 0xCA6598D0},
        {"abcd", 3, 0, 0xCA6598D0}, {"aBC", 3, 1, 0xCA6598D0},
        {"AbC", -7, 9, 0xCA6598D0}, {"a", 1, 0, 0x3AB551CE},
        {"A", 1, -1, 0x3AB551CE},   {"x", 0, 1, 0},
        {nullptr, -1, 1, 0},
    };
    for (const auto &[key, length, ignore_case, hash] : cases) {
        EXPECT_EQ(qek_hash_key(key, length, ignore_case), hash);
    }
    qek_hash folding{};
    folding.ignore_case = 1;
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    EXPECT_EQ(qek_hash_key(bytes.data(), 256, 0), hash_of(bytes));
    EXPECT_EQ(qek_hash_key(bytes.data(), 256, 1), hash_of(text::folded(folding, bytes)));
    EXPECT_EQ(qek_hashd_key(0xFF030201), hash_of("\x01\x02\x03\xFF"));
    EXPECT_EQ(qek_hashx_key(0xFF07060504030201), hash_of("\x01\x02\x03\x04\x05\x06\x07\xFF"));
    EXPECT_EQ(qek_hasht_key("fourteen bytes.\xFF"), hash_of("fourteen bytes.\xFF"));
}

// Look-ups ask the stored hash first, and a store compares text alone. The two letters share a
// bucket.
TEST(hash, shows_a_change_of_case_rules_in_look_ups_only)
{
    modelled<text> table;
    EXPECT_EQ(qek_hash_insert(&table, "Q", 1, 3), 1);
    table.ignore_case = 1;
    ASSERT_EQ(hash_of("Q") % 4, hash_of("q") % 4);
    EXPECT_EQ(qek_hash_find(&table, "Q", 1) + qek_hash_insert(&table, "q", 1, 4), 0);
}

// Entries that no chain leads to, as after a growth that failed, are copied as they stand.
TYPED_TEST(hash_suite, copies_what_got_lost_as_it_is)
{
    using family = TypeParam;
    using element = typename family::element;
    for (int round = 6; round < 100; ++round) { // one or two chains get lost
        const int keys = round / 2;
        modelled<family> source(true, false), copy(true, false);
        source.store(0, keys);
        const auto *first = static_cast<const element *>(source.entry_pool->items.blocks[0]);
        const auto *end = first + std::min(keys, 16);
        const auto *lost = std::find_if(first, end, [](auto &entry) { return entry.next; });
        qek_word nowhere = 0, *const slots = source.buckets.slots;
        const auto bucket = std::find(slots, slots + source.buckets.count, word(lost)) - slots;
        auto &head = lost == end ? nowhere : slots[bucket];
        const qek_word kept = std::exchange(head, 0);
        auto *const past = slots + source.buckets.count;
        auto *const other = std::find_if(slots, past, [](qek_word each) { return each != 0; });
        auto &second = round % 2 == 0 || other == past ? nowhere : *other;
        const qek_word kept_too = std::exchange(second, 0);
        family::clone(&source, nullptr, &copy, nullptr, nullptr);
        const auto *copied = static_cast<const element *>(copy.entry_pool->items.blocks[0]);
        EXPECT_TRUE(lost == end ||
                    (copied[lost - first].next == lost->next && copy.buckets.slots[bucket] == 0));
        second = kept_too;
        head = kept;
    }
    modelled<family> roomy(true, false), its_copy(true, false);
    roomy.entry_pool->item_size += 8;
    roomy.store(0, 100);
    family::clone(&roomy, nullptr, &its_copy, nullptr, nullptr);
    EXPECT_EQ(its_copy.values(), roomy.values());
    for (const stored_key &each : roomy.model) {
        EXPECT_NE(family::element_get(&its_copy, each.key), each.element);
    }
}

TEST(hash_DeathTest, missing_pools_fault)
{
    if (!can_fork) {
        GTEST_SKIP() << "needs fork";
    }
    qek_hash table;
    qek_hash_init(&table, 1, 0);
    qek_word value = 0;
    EXPECT_DEATH(qek_hash_set(&table, "", 0, &value, nullptr), "");
    qek_hash_term(&table);
    EXPECT_DEATH(qek_hash_insert(&table, "", 0, 1), "");
}

TEST(hash_check, rejects_each_broken_invariant)
{
    using table = modelled<text>;
    static const auto newest = [](table &of) { return qek_hash_entry_get(&of, of.key(9), 4); };
    const std::pair<const char *, void (*)(table &)> cases[] = {
        {"bucket count", [](table &of) { of.buckets.count = 6; }},
        {"bucket count", [](table &of) { of.buckets.count = 2; }},
        {"bucket capacity", [](table &of) { of.buckets.capacity = 4; }},
        {"entry_count", [](table &of) { ++of.entry_count; }},
        {"load", [](table &of) { of.buckets.count = 4; }},
        {"chain", [](table &of) { std::swap(of.buckets.slots[0], of.buckets.slots[1]); }},
        {"chain end", [](table &of) { newest(of)->next = newest(of); }},
        {"value", [](table &of) { ++newest(of)->value; }},
        {"key_offset", [](table &of) { ++newest(of)->key_offset; }},
        {"key_length", [](table &of) { ++newest(of)->key_length; }},
        {"hash", [](table &of) { ++newest(of)->hash; }},
        {"key text", [](table &of) { ++of.keys.data[0]; }},
        {"keys length", [](table &of) { ++of.keys.length; }},
    };
    for (const auto &[fault, corrupt] : cases) {
        table sound;
        sound.store(0, 10);
        ASSERT_EQ(sound.fault(), "");
        const qek_hash kept = sound;
        corrupt(sound);
        EXPECT_EQ(sound.fault(), fault);
        static_cast<qek_hash &>(sound) = kept;
    }
    modelled<dword> numbers;
    numbers.store(0, 1);
    qek_hashd_entry_get(&numbers, 0)->key = 4;
    EXPECT_EQ(numbers.fault(), "key");
}

} // namespace
