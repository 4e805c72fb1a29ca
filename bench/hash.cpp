// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "containers.h"

#include <absl/container/flat_hash_map.h>
#include <apr_hash.h>
#include <apr_pools.h>
#include <apr_strings.h>
#include <glib.h>
#include <unordered_map>
#include <uthash.h>
#include <zlib.h>

namespace bench {

template <typename H> H AbslHashValue(H state, const id &key)
{
    return H::combine(std::move(state), key.halves[0], key.halves[1]);
}

namespace {

using absl_text =
    mapped<std::string_view, absl::flat_hash_map<std::string, word>, absl::string_view>;
using std_text =
    mapped<std::string_view, std::unordered_map<std::string, word, text_hash, std::equal_to<>>>;

struct glib_text {
    using key_type = std::string_view;
    GHashTable *table = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, nullptr);

    glib_text() = default;
    glib_text(const glib_text &) = delete;
    glib_text &operator=(const glib_text &) = delete;
    ~glib_text() { g_hash_table_destroy(table); }

    void insert(std::string_view key, word value)
    {
        g_hash_table_insert(table, g_strndup(key.data(), key.size()), GSIZE_TO_POINTER(value));
    }
    word find(std::string_view key) const
    {
        return GPOINTER_TO_SIZE(g_hash_table_lookup(table, key.data()));
    }
    bool remove(std::string_view key) { return g_hash_table_remove(table, key.data()) != 0; }
    word sum() const
    {
        word total = 0;
        GHashTableIter at;
        g_hash_table_iter_init(&at, table);
        for (gpointer value = nullptr; g_hash_table_iter_next(&at, nullptr, &value) != 0;) {
            total += GPOINTER_TO_SIZE(value);
        }
        return total;
    }
    std::int64_t size() const { return g_hash_table_size(table); }
};

struct apr_text {
    using key_type = std::string_view;
    apr_pool_t *pool = nullptr;
    apr_hash_t *table = nullptr;

    apr_text()
    {
        apr_pool_create_unmanaged_ex(&pool, nullptr, nullptr);
        table = apr_hash_make(pool);
    }
    apr_text(const apr_text &) = delete;
    apr_text &operator=(const apr_text &) = delete;
    ~apr_text() { apr_pool_destroy(pool); }

    void insert(std::string_view key, word value)
    {
        apr_hash_set(table, apr_pstrmemdup(pool, key.data(), key.size()), std::ssize(key),
                     GSIZE_TO_POINTER(value));
    }
    std::int64_t size() const { return apr_hash_count(table); }
};

// Keys of fixed width, in entries that come from malloc one by one.
template <typename Key> struct ut {
    using key_type = Key;
    struct entry {
        Key key;
        word value;
        UT_hash_handle hh;
    };
    entry *head = nullptr;

    ut() = default;
    ut(const ut &) = delete;
    ut &operator=(const ut &) = delete;
    ~ut()
    {
        entry *at = nullptr;
        entry *next = nullptr;
        HASH_ITER(hh, head, at, next) { take_out(at); }
    }

    entry *at(const Key &key) const
    {
        entry *found = nullptr;
        HASH_FIND(hh, head, &key, sizeof key, found);
        return found;
    }
    void insert(const Key &key, word value)
    {
        if (at(key) == nullptr) {
            auto *made = static_cast<entry *>(std::malloc(sizeof(entry)));
            made->key = key;
            made->value = value;
            HASH_ADD(hh, head, key, sizeof(Key), made);
        }
    }
    word find(const Key &key) const
    {
        const entry *found = at(key);
        return found != nullptr ? found->value : 0;
    }
    bool remove(const Key &key)
    {
        entry *found = at(key);
        if (found != nullptr) {
            take_out(found);
        }
        return found != nullptr;
    }
    word sum() const
    {
        word total = 0;
        for (auto *at = head; at != nullptr; at = static_cast<entry *>(at->hh.next)) {
            total += at->value;
        }
        return total;
    }
    std::int64_t size() const { return HASH_COUNT(head); }

  private:
    void take_out(entry *at)
    {
        HASH_DEL(head, at);
        std::free(at);
    }
};

// Our table, with a removal that walks all chains in turn to move the text offsets.
struct walking_hash : our_hash {
    bool remove(std::string_view key)
    {
        const std::uint32_t number =
            qek_hash_key(key.data(), static_cast<std::int32_t>(key.size()), 0);
        const auto buckets = static_cast<std::uint32_t>(record.buckets.count);
        qek_hash_entry *previous = nullptr;
        qek_hash_entry *at = head(number % buckets);
        for (; at != nullptr && !is(*at, number, key); at = at->next) {
            previous = at;
        }
        if (at == nullptr) {
            return false;
        }
        if (previous != nullptr) {
            previous->next = at->next;
        } else {
            record.buckets.slots[number % buckets] = reinterpret_cast<word>(at->next);
        }
        const std::uint32_t gone = at->key_offset;
        const auto length = static_cast<std::uint32_t>(at->key_length);
        const std::uint32_t behind = static_cast<std::uint32_t>(record.keys.length) - gone - length;
        std::memmove(record.keys.data + gone, record.keys.data + gone + length, behind);
        record.keys.length -= at->key_length;
        for (std::uint32_t bucket = 0; bucket < buckets; ++bucket) {
            for (auto *other = head(bucket); other != nullptr; other = other->next) {
                if (other->key_offset > gone) {
                    other->key_offset -= length;
                }
            }
        }
        --record.entry_count;
        qek_pool_free(record.entry_pool, at);
        return true;
    }

  private:
    qek_hash_entry *head(std::uint32_t bucket) const
    {
        return reinterpret_cast<qek_hash_entry *>(record.buckets.slots[bucket]);
    }
    bool is(const qek_hash_entry &at, std::uint32_t number, std::string_view key) const
    {
        return at.hash == number && static_cast<std::size_t>(at.key_length) == key.size() &&
               std::memcmp(record.keys.data + at.key_offset, key.data(), key.size()) == 0;
    }
};

// Takes 32 keys at a time out of a full table; they are put back while the clock stands.
template <typename Container> void removing_some(benchmark::State &state)
{
    static constexpr std::int64_t some = 32;
    Container table;
    fill(table, keys<std::string_view>(size_of(state)));
    const keys<std::string_view> probes(size_of(state), choice::probes);
    std::size_t begin = 0;
    const auto each = [&](auto visit) {
        for (std::size_t at = begin; at < begin + some; ++at) {
            visit(probes[at % static_cast<std::size_t>(probes.size())]);
        }
    };
    measure(
        state, some,
        [&] {
            each([&](std::string_view key) { table.insert(key, 1); });
            begin += some;
            return &table;
        },
        [&](Container *from) {
            std::uint64_t removed = 0;
            each([&](std::string_view key) { removed += from->remove(key) ? 1U : 0U; });
            return removed;
        });
}

template <auto number> void numbering(benchmark::State &state)
{
    static constexpr std::int64_t calls = 4096;
    const std::string text = prose(calls + 64);
    repeat(state, calls, text, [&](const std::string &from) {
        std::uint32_t total = 0;
        for (std::int64_t at = 0; at < calls; ++at) {
            total += number(from.data() + at, size_of(state));
        }
        benchmark::DoNotOptimize(total);
        return 0U;
    });
}

std::uint32_t our_number(const char *bytes, std::int64_t size)
{
    return qek_hash_key(bytes, static_cast<std::int32_t>(size), 0);
}
std::uint32_t zlib_number(const char *bytes, std::int64_t size)
{
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef *>(bytes), static_cast<uInt>(size)));
}

template <typename Container> void add_numbers(const std::string &family, const char *side)
{
    const sizes of{1'000, 1'000'000};
    add(family + "_insert", side, of, inserting<Container>);
    add(family + "_find", side, of, finding<Container, choice::probes>);
    add(family + "_remove", side, of, removing<Container>);
    add(family + "_iterate", side, of, walking<Container>);
    add_weight(family, side, weighing<Container>);
}

template <typename Ours> void add_all_numbers(const std::string &family)
{
    using key = typename Ours::key_type;
    using hasher = std::conditional_t<std::is_same_v<key, id>, id_hash, std::hash<key>>;
    using wide = std::conditional_t<std::is_same_v<key, id>, id, std::uint64_t>;
    add_numbers<Ours>(family, "ours");
    add_numbers<mapped<key, absl::flat_hash_map<wide, word>>>(family, "absl");
    add_numbers<mapped<key, std::unordered_map<key, word, hasher>>>(family, "unordered_map");
    add_numbers<ut<key>>(family, "uthash");
}

} // namespace

void register_rows()
{
    apr_pool_initialize();
    const sizes all{1'000, 100'000, 1'000'000};
    add("hash_insert", "ours", all, inserting<our_hash>);
    add("hash_insert", "absl", all, inserting<absl_text>);
    add("hash_insert", "apr", all, inserting<apr_text>);
    add("hash_find_hit", "ours", all, finding<our_hash, choice::probes>);
    add("hash_find_hit", "glib", all, finding<glib_text, choice::probes>);
    add("hash_find_hit", "absl", all, finding<absl_text, choice::probes>);
    add("hash_find_miss", "ours", all, finding<our_hash, choice::absent>);
    add("hash_find_miss", "unordered_map", all, finding<std_text, choice::absent>);
    add("hash_iterate", "ours", all, walking<our_hash>);
    add("hash_iterate", "glib", all, walking<glib_text>);
    const sizes small{1'000, 10'000, 100'000};
    add("hash_remove", "ours", small, removing_some<our_hash>);
    add("hash_remove", "walk", small, removing_some<walking_hash>);
    add("hash_remove", "absl", small, removing_some<absl_text>);
    add_weight("hash", "ours", weighing<our_hash>);
    add_weight("hash", "absl", weighing<absl_text>);
    add_weight("hash", "glib", weighing<glib_text>);
    add_weight("hash", "unordered_map", weighing<std_text>);
    add_all_numbers<our_hashd>("hashd");
    add_all_numbers<our_hashx>("hashx");
    add_all_numbers<our_hasht>("hasht");
    add("hash_key", "ours", {8, 16, 24}, numbering<our_number>);
    add("hash_key", "zlib", {8, 16, 24}, numbering<zlib_number>);
}

} // namespace bench
