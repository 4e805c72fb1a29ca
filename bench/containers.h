// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Keyed containers behind one interface - insert, find, remove, sum, size -, and the work that all of
// them do. Keys of text are copied by every side.
#pragma once

#include "bench.h"
#include "data.h"
#include "qek_std.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace bench {

// Hands a key to `call` in the form in which our functions take it.
template <typename Key, typename Call> decltype(auto) with_parts(const Key &key, Call call)
{
    if constexpr (std::is_same_v<Key, std::string_view>) {
        return call(static_cast<const void *>(key.data()), static_cast<std::int32_t>(key.size()));
    } else if constexpr (std::is_same_v<Key, id>) {
        return call(static_cast<const void *>(&key));
    } else {
        return call(static_cast<std::make_unsigned_t<Key>>(key));
    }
}

template <typename Key, typename Record, auto init, auto term, auto insert_pair, auto get,
          auto take_out, auto sum_values, auto count, auto clone>
struct ours {
    using key_type = Key;
    Record record;

    ours() { init(&record); }
    ~ours() { term(&record); }
    ours(const ours &other) : ours() { clone(&other.record, nullptr, &record, nullptr, nullptr); }
    ours &operator=(const ours &) = delete;

    void insert(const Key &key, word value)
    {
        with_parts(key, [&](auto... parts) { insert_pair(&record, parts..., value); });
    }
    word find(const Key &key) const
    {
        return with_parts(key, [&](auto... parts) { return get(&record, parts...); });
    }
    bool remove(const Key &key)
    {
        return with_parts(key, [&](auto... parts) { return take_out(&record, parts...); }) != 0;
    }
    word sum() const { return sum_values(record); }
    std::int64_t size() const { return count(record); }
};

inline constexpr auto entries = [](const auto &record) { return record.entry_count; };
inline constexpr auto nodes = [](const auto &record) { return record.node_count; };

template <auto init> inline constexpr auto table_init = [](auto *record) { init(record, 1, 0); };
template <auto init> inline constexpr auto tree_init = [](auto *record) { init(record, 1, 1, 0); };

template <auto first, auto next>
inline constexpr auto sum_of_table = [](const auto &record) {
    word total = 0;
    std::int32_t bucket = 0;
    for (auto *at = first(&record, &bucket); at != nullptr; at = next(&record, &bucket, at)) {
        total += at->value;
    }
    return total;
};
// This table has no walk of its own; its chains lie open.
inline constexpr auto sum_of_chains = [](const qek_hasht &record) {
    word total = 0;
    for (std::int32_t bucket = 0; bucket < record.buckets.count; ++bucket) {
        const auto *at = reinterpret_cast<const qek_hasht_entry *>(record.buckets.slots[bucket]);
        for (; at != nullptr; at = at->next) {
            total += at->value;
        }
    }
    return total;
};
template <auto first>
inline constexpr auto sum_of_nodes = [](const auto &record) {
    word total = 0;
    for (const auto *at = first(&record); at != nullptr; at = at->next) {
        total += at->value;
    }
    return total;
};

using our_hash =
    ours<std::string_view, qek_hash, table_init<qek_hash_init>, qek_hash_term, qek_hash_insert,
         qek_hash_get, qek_hash_remove, sum_of_table<qek_hash_entry_first, qek_hash_entry_next>,
         entries, qek_hash_clone>;
using our_hashd =
    ours<std::uint32_t, qek_hashd, table_init<qek_hashd_init>, qek_hashd_term, qek_hashd_insert,
         qek_hashd_get, qek_hashd_remove, sum_of_table<qek_hashd_entry_first, qek_hashd_entry_next>,
         entries, qek_hashd_clone>;
using our_hashx =
    ours<std::uint64_t, qek_hashx, table_init<qek_hashx_init>, qek_hashx_term, qek_hashx_insert,
         qek_hashx_get, qek_hashx_remove, sum_of_table<qek_hashx_entry_first, qek_hashx_entry_next>,
         entries, qek_hashx_clone>;
using our_hasht = ours<id, qek_hasht, table_init<qek_hasht_init>, qek_hasht_term, qek_hasht_insert,
                       qek_hasht_get, qek_hasht_remove, sum_of_chains, entries, qek_hasht_clone>;
using our_btree = ours<std::string_view, qek_btree, tree_init<qek_btree_init>, qek_btree_term,
                       qek_btree_insert, qek_btree_get, qek_btree_remove,
                       sum_of_nodes<qek_btree_node_first>, nodes, qek_btree_clone>;
using our_btreed = ours<std::int32_t, qek_btreed, tree_init<qek_btreed_init>, qek_btreed_term,
                        qek_btreed_insert, qek_btreed_get, qek_btreed_remove,
                        sum_of_nodes<qek_btreed_node_first>, nodes, qek_btreed_clone>;
using our_btreex = ours<std::int64_t, qek_btreex, tree_init<qek_btreex_init>, qek_btreex_term,
                        qek_btreex_insert, qek_btreex_get, qek_btreex_remove,
                        sum_of_nodes<qek_btreex_node_first>, nodes, qek_btreex_clone>;

// Maps of the standard library's shape. Text is looked up as a `Probe`, without a copy.
template <typename Key, typename Map, typename Probe = Key> struct mapped {
    using key_type = Key;
    Map map;

    void insert(const Key &key, word value) { map.try_emplace(typename Map::key_type(key), value); }
    word find(const Key &key) const
    {
        const auto at = map.find(probe(key));
        return at != map.end() ? at->second : 0;
    }
    bool remove(const Key &key)
    {
        const auto at = map.find(probe(key));
        const bool found = at != map.end();
        if (found) {
            map.erase(at);
        }
        return found;
    }
    word sum() const
    {
        word total = 0;
        for (const auto &pair : map) {
            total += pair.second;
        }
        return total;
    }
    std::int64_t size() const { return static_cast<std::int64_t>(map.size()); }

  private:
    static Probe probe(const Key &key)
    {
        if constexpr (std::is_same_v<Key, std::string_view>) {
            return {key.data(), key.size()};
        } else {
            return key;
        }
    }
};

struct text_hash : std::hash<std::string_view> {
    using is_transparent = void;
};
struct id_hash {
    std::size_t operator()(const id &key) const { return key.halves[0] ^ key.halves[1]; }
};

template <typename Container>
void fill(Container &into, const keys<typename Container::key_type> &of)
{
    word value = 0;
    for (const auto &key : of) {
        into.insert(key, ++value);
    }
}

template <typename Container>
std::unique_ptr<Container> filled(const keys<typename Container::key_type> &with)
{
    auto made = std::make_unique<Container>();
    fill(*made, with);
    return made;
}

// A filled container that stays: look-ups and walks leave it as it was.
template <typename Container> const Container &standing(std::int64_t size)
{
    static std::map<std::int64_t, std::unique_ptr<Container>> all;
    auto &at = all[size];
    if (at == nullptr) {
        at = filled<Container>(shared<typename Container::key_type>(size));
    }
    return *at;
}

template <typename Container> void inserting(benchmark::State &state)
{
    const auto &stored = shared<typename Container::key_type>(size_of(state));
    measure(
        state, stored.size(), [] { return Container(); },
        [&](Container &into) {
            fill(into, stored);
            return static_cast<std::uint64_t>(into.size());
        });
}

template <typename Container, choice which> void finding(benchmark::State &state)
{
    const auto &in = standing<Container>(size_of(state));
    const auto &probes = shared<typename Container::key_type>(size_of(state), which);
    repeat(state, probes.size(), in, [&](const Container &from) {
        word total = 0;
        for (const auto &probe : probes) {
            total += from.find(probe);
        }
        return total;
    });
}

template <typename Container> void removing(benchmark::State &state)
{
    const auto &stored = shared<typename Container::key_type>(size_of(state));
    const auto &probes = shared<typename Container::key_type>(size_of(state), choice::probes);
    measure(
        state, probes.size(), [&] { return filled<Container>(stored); },
        [&](std::unique_ptr<Container> &from) {
            std::uint64_t removed = 0;
            for (const auto &probe : probes) {
                removed += from->remove(probe) ? 1U : 0U;
            }
            return removed;
        });
}

template <typename Container> void walking(benchmark::State &state)
{
    const auto &in = standing<Container>(size_of(state));
    repeat(state, size_of(state), in, [](const Container &of) { return of.sum(); });
}

template <typename Container> void weighing(benchmark::State &state)
{
    const auto &stored = shared<typename Container::key_type>(size_of(state));
    weigh(state, [&] { return filled<Container>(stored); });
}

} // namespace bench
