// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The chained hash table, one core for four kinds of key.
//
// Shape. Bucket heads stand in an embedded array, entries are pool items linked oldest first:
//
//     buckets.slots --> [ head 0 | head 1 | ... ]      buckets.count = 0, or 4 * 2^k
//                           |
//                           `--> entry --> entry --> null
//
// Invariants:
//   entry_count   = entries on all chains, and below 2 * buckets.count between calls
//   bucket of e   = Policy::number(e) modulo buckets.count
//   a key occurs once; chains keep the order in which their entries came, also when they are split
//
// The table doubles when the mean chain length reaches 2 and never gets smaller but to nothing. A
// doubling splits chain i between buckets i and i + old, in order, and reads no key text.
//
// Cost. Everything by key is constant on average. Removing is the unlink alone, except where keys
// have text elsewhere: there every other entry is visited once (`Policy::forget`). That is the
// price of text without holes.
//
// No allocation is checked. Buckets are read and written within the array's capacity, so that a
// growth that failed loses entries and does not crash.
//
// A policy says what a key is: `table`, `entry`, `key` (how a sought key travels), `number` (of a
// key and of an entry), `matches` (a look-up), `same` (before a new entry is made), `store`,
// `forget`, `grow_ahead`. Turned down: open addressing, which would move entries that callers hold.
#pragma once

#include "array/storage.h"
#include "base/exchange.h"
#include "pool/owned.h"
#include "pool/translation.h"

#include <cstdint>

namespace qek::hash {

inline constexpr std::int32_t first_bucket_count = 4;
inline constexpr std::int64_t buckets_ahead = 8;

template <typename Entry> Entry *head_of(const qek_arrays &buckets, std::int32_t bucket) noexcept
{
    return static_cast<Entry *>(pool::item_of(array::slot_at(buckets, bucket)));
}

// A walk over all buckets waits for memory at every entry. So while it stands at a bucket, a head
// far ahead is sent for, and nearer by what follows the entries that came since. At a million
// entries that takes two thirds of the time. Inlined by order, as the compiler drops functions
// that do nothing but fetch.
template <typename Entry>
[[gnu::always_inline]] inline void fetch_ahead(const qek_arrays &buckets,
                                               std::int32_t bucket) noexcept
{
    const std::int64_t far = std::int64_t{static_cast<std::uint32_t>(bucket)} + 3 * buckets_ahead;
    if (far >= array::slots_in_use(buckets)) {
        return;
    }
    const qek_word *const slots = buckets.slots + bucket;
    __builtin_prefetch(pool::item_of(slots[3 * buckets_ahead]));
    if (const auto *first = static_cast<const Entry *>(pool::item_of(slots[2 * buckets_ahead]))) {
        __builtin_prefetch(first->next);
    }
    const auto *first = static_cast<const Entry *>(pool::item_of(slots[buckets_ahead]));
    if (first != nullptr && first->next != nullptr) {
        __builtin_prefetch(first->next->next);
    }
}

inline void set_head(qek_arrays &buckets, std::int32_t bucket, const void *entry) noexcept
{
    array::set_slot(buckets, bucket, pool::word_of(entry));
}

// The count is a power of two, so the remainder is a mask.
inline std::int32_t bucket_of(std::uint64_t number, std::int32_t count) noexcept
{
    return static_cast<std::int32_t>(number & static_cast<std::uint64_t>(count - 1));
}

// Runs `visit(entry)` over all entries, buckets ascending and each chain from its head. An entry
// may be given away in its visit.
template <typename Entry, typename Visit>
void for_each(const qek_arrays &buckets, Visit visit) noexcept
{
    const std::int32_t count = array::slots_in_use(buckets);
    for (std::int32_t bucket = 0; bucket < count; ++bucket) {
        fetch_ahead<Entry>(buckets, bucket);
        for (auto *entry = head_of<Entry>(buckets, bucket); entry != nullptr;) {
            Entry *next = entry->next;
            visit(*entry);
            entry = next;
        }
    }
}

template <typename Policy> struct link {
    typename Policy::entry *entry;    // the entry found, or null
    typename Policy::entry *previous; // the one before it, or the last of the chain
};

template <typename Policy, typename Matches>
[[gnu::always_inline]] inline link<Policy> walk(const typename Policy::table &table,
                                                std::int32_t bucket, Matches matches) noexcept
{
    typename Policy::entry *previous = nullptr;
    auto *entry = head_of<typename Policy::entry>(table.buckets, bucket);
    while (entry != nullptr && !matches(*entry)) {
        previous = entry;
        entry = entry->next;
    }
    return {entry, previous};
}

template <typename Policy>
void set_next(typename Policy::table &table, std::int32_t bucket, typename Policy::entry *previous,
              typename Policy::entry *entry) noexcept
{
    if (previous != nullptr) {
        previous->next = entry;
    } else {
        set_head(table.buckets, bucket, entry);
    }
}

// Inlined by order into every function that looks up, since a call costs as much as the walk.
template <typename Policy>
[[gnu::always_inline]] inline typename Policy::entry *find(const typename Policy::table &table,
                                                           const typename Policy::key &key) noexcept
{
    if (table.buckets.count < 1) {
        return nullptr;
    }
    const std::uint64_t number = Policy::number(table, key);
    return walk<Policy>(
               table, bucket_of(number, table.buckets.count),
               [&](const auto &entry) { return Policy::matches(table, entry, key, number); })
        .entry;
}

inline void set_bucket_count(qek_arrays &buckets, std::int32_t count) noexcept
{
    array::expand(buckets, count);
    buckets.count = count;
}

template <typename Entry> class chain {
  public:
    void append(Entry *entry) noexcept
    {
        (last_ == nullptr ? head_ : last_->next) = entry;
        last_ = entry;
        entry->next = nullptr;
    }
    Entry *head() const noexcept { return head_; }

  private:
    Entry *head_ = nullptr;
    Entry *last_ = nullptr;
};

template <typename Policy> void rehash(typename Policy::table &table) noexcept
{
    using entry = typename Policy::entry;
    const std::int32_t old = table.buckets.count;
    Policy::grow_ahead(table, wide(old) * 32);
    set_bucket_count(table.buckets, old * 2);
    for (std::int32_t bucket = 0; bucket < old; ++bucket) {
        fetch_ahead<entry>(table.buckets, bucket);
        chain<entry> low;
        chain<entry> high;
        for (auto *at = head_of<entry>(table.buckets, bucket); at != nullptr;) {
            entry *next = at->next;
            const bool stays = bucket_of(Policy::number(*at), table.buckets.count) == bucket;
            (stays ? low : high).append(at);
            at = next;
        }
        set_head(table.buckets, bucket, low.head());
        set_head(table.buckets, bucket + old, high.head());
    }
}

template <typename Policy> struct found_or_made {
    typename Policy::entry *entry; // null when the entry pool gave nothing
    bool is_new;                   // also then: the mark is set before the pool answers
};

template <typename Policy>
found_or_made<Policy> find_or_make(typename Policy::table &table,
                                   const typename Policy::key &key) noexcept
{
    if (table.buckets.count == 0) {
        Policy::grow_ahead(table, 64);
        set_bucket_count(table.buckets, first_bucket_count);
    }
    const std::uint64_t number = Policy::number(table, key);
    const std::int32_t bucket = bucket_of(number, table.buckets.count);
    const auto [found, last] = walk<Policy>(
        table, bucket, [&](const auto &entry) { return Policy::same(table, entry, key); });
    if (found != nullptr) {
        return {found, false};
    }
    auto *made = static_cast<typename Policy::entry *>(pool::take(*table.entry_pool));
    if (made == nullptr) {
        return {nullptr, true};
    }
    set_next<Policy>(table, bucket, last, made);
    made->next = nullptr;
    made->value = 0;
    Policy::store(table, *made, key, number);
    ++table.entry_count;
    if (table.entry_count >= wide(table.buckets.count) * 2) {
        rehash<Policy>(table);
    }
    return {made, true};
}

template <typename Policy>
bool entry_set(typename Policy::table &table, const typename Policy::key &key,
               typename Policy::entry *&out) noexcept
{
    const auto [entry, is_new] = find_or_make<Policy>(table, key);
    out = entry;
    return is_new && entry != nullptr;
}

template <typename Policy>
bool set(typename Policy::table &table, const typename Policy::key &key, qek_word &value,
         qek_value_fn init_value) noexcept
{
    value = 0;
    const auto [entry, is_new] = find_or_make<Policy>(table, key);
    if (entry == nullptr) {
        return false;
    }
    if (is_new) {
        entry->value = pool::new_value(table.value_pool, init_value, value);
    } else {
        value = entry->value;
    }
    return is_new;
}

// Answers that the key was new also when the entry pool gave nothing and nothing was stored:
// intended.
template <typename Policy>
bool insert(typename Policy::table &table, const typename Policy::key &key, qek_word value) noexcept
{
    const auto [entry, is_new] = find_or_make<Policy>(table, key);
    if (is_new && entry != nullptr) {
        entry->value = value;
    }
    return is_new;
}

template <typename Policy>
qek_word get(const typename Policy::table &table, const typename Policy::key &key) noexcept
{
    return pool::value_of(find<Policy>(table, key));
}

template <typename Policy>
qek_word update(typename Policy::table &table, const typename Policy::key &key,
                qek_word value) noexcept
{
    return pool::replace_value(find<Policy>(table, key), value);
}

template <typename Policy>
typename Policy::entry *unlink(typename Policy::table &table,
                               const typename Policy::key &key) noexcept
{
    if (table.buckets.count < 1) {
        return nullptr;
    }
    const std::uint64_t number = Policy::number(table, key);
    const std::int32_t bucket = bucket_of(number, table.buckets.count);
    const auto [entry, previous] = walk<Policy>(table, bucket, [&](const auto &candidate) {
        return Policy::matches(table, candidate, key, number);
    });
    if (entry != nullptr) {
        set_next<Policy>(table, bucket, previous, entry->next);
        entry->next = nullptr;
        Policy::forget(table, *entry);
    }
    return entry;
}

template <typename Table, typename Entry> void give_back(Table &table, Entry *entry) noexcept
{
    pool::give(*table.entry_pool, entry);
    --table.entry_count;
}

template <typename Policy>
qek_word remove(typename Policy::table &table, const typename Policy::key &key) noexcept
{
    auto *entry = unlink<Policy>(table, key);
    if (entry == nullptr) {
        return 0;
    }
    const qek_word value = entry->value;
    give_back(table, entry);
    return value;
}

// A value of 0 is disposed of too here, and is passed over by `free_all`: intended.
template <typename Policy>
void free(typename Policy::table &table, const typename Policy::key &key,
          qek_value_fn free_value) noexcept
{
    auto *entry = unlink<Policy>(table, key);
    if (entry != nullptr) {
        pool::disposal_of(table, free_value).of(entry->value);
        give_back(table, entry);
    }
}

template <typename Entry>
Entry *first_from(const qek_arrays &buckets, std::int32_t bucket, std::int32_t &found) noexcept
{
    for (; bucket < buckets.count; ++bucket) {
        fetch_ahead<Entry>(buckets, bucket);
        if (auto *entry = head_of<Entry>(buckets, bucket)) {
            found = bucket;
            return entry;
        }
    }
    return nullptr;
}

template <typename Entry, typename Table>
Entry *first(const Table &table, std::int32_t &bucket) noexcept
{
    bucket = 0;
    return table.entry_count == 0 ? nullptr : first_from<Entry>(table.buckets, 0, bucket);
}

template <typename Entry, typename Table>
Entry *next(const Table &table, std::int32_t &bucket, const Entry *entry) noexcept
{
    return entry->next != nullptr
               ? entry->next
               : first_from<Entry>(table.buckets, wrapping_sum(bucket, 1), bucket);
}

template <typename Entry, typename Table>
void init(Table &table, std::int32_t own_entry_pool, std::int32_t own_value_pool) noexcept
{
    table = {};
    pool::own(table.entry_pool, table.owns_entry_pool, own_entry_pool, sizeof(Entry));
    pool::own(table.value_pool, table.owns_value_pool, own_value_pool, pool::size_from_caller);
    table.buckets.pool = table.entry_pool;
}

// The buckets go first, so that entries of a borrowed pool are not given back: intended.
template <typename Table> void term(Table &table) noexcept
{
    array::term(table.buckets);
    pool::end_owned(table.entry_pool, table.owns_entry_pool);
    pool::end_owned(table.value_pool, table.owns_value_pool);
    table.entry_count = 0;
}

template <typename Table> void release_entries(Table &table) noexcept
{
    array::remove_all(table.buckets);
    pool::empty_owned(table.entry_pool, table.owns_entry_pool);
    pool::empty_owned(table.value_pool, table.owns_value_pool);
    table.entry_count = 0;
}

template <typename Entry, typename Table> void remove_all(Table &table) noexcept
{
    if (qek_pool *borrowed = pool::borrowed(table.entry_pool, table.owns_entry_pool)) {
        for_each<Entry>(table.buckets, [&](Entry &entry) { pool::give(*borrowed, &entry); });
    }
    release_entries(table);
}

template <typename Entry, typename Table>
void free_all(Table &table, qek_value_fn free_value) noexcept
{
    const pool::disposal dispose = pool::disposal_of(table, free_value);
    qek_pool *borrowed = pool::borrowed(table.entry_pool, table.owns_entry_pool);
    if (dispose.does_something() || borrowed != nullptr) {
        for_each<Entry>(table.buckets, [&](Entry &entry) {
            dispose.of_nonzero(entry.value);
            pool::give_to(borrowed, &entry);
        });
    }
    release_entries(table);
}

// Whether every slot of the entry pool that was handed out stands on one of the table's chains. As
// many links as entries says so: a chain that got lost has no head.
template <typename Entry, typename Table> bool fills_its_pool(const Table &table) noexcept
{
    const qek_pool &pool = *table.entry_pool;
    if (pool.item_size != std::int32_t{sizeof(Entry)} || pool.items.used == 0 ||
        pool::slots_handed_out(pool) != table.entry_count) {
        return false;
    }
    std::int64_t links = 0;
    for (std::int32_t bucket = 0; bucket < array::slots_in_use(table.buckets); ++bucket) {
        links += table.buckets.slots[bucket] != 0 ? 1 : 0;
    }
    pool::for_each_slot<const Entry>(
        pool, [&](const Entry &entry) { links += entry.next != nullptr ? 1 : 0; });
    return links == table.entry_count;
}

// Items keep block and offset in the copied pool, so an entry's own fields arrive with the pool and
// only its links and its value are written here. `copy_keys()` runs once, for a family with keys
// elsewhere.
template <typename Entry, typename Table, typename CopyKeys>
void clone(const Table &source, qek_pool *source_aux, Table &target, qek_pool *target_aux,
           qek_clone_fn clone_value, CopyKeys copy_keys) noexcept
{
    pool::share_borrowed(source.entry_pool, source.owns_entry_pool, target.entry_pool);
    pool::share_borrowed(source.value_pool, source.owns_value_pool, target.value_pool);
    const pool::value_copier copier(source_aux, target_aux, clone_value);
    copy_keys();
    array::expand(target.buckets, source.buckets.capacity);
    target.buckets.count = source.buckets.count;
    const pool::translation_of_nodes entries(source.owns_entry_pool != 0, source.entry_pool,
                                             target.entry_pool);
    const pool::translation values(source.owns_value_pool != 0, source.value_pool,
                                   target.value_pool);
    if (entries.is_made() && copier.copies_words(values) && fills_its_pool<Entry>(source)) {
        pool::for_each_slot<Entry>(*target.entry_pool,
                                   [&](Entry &copy) { copy.next = entries.of(copy.next); });
        for (std::int32_t bucket = 0; bucket < source.buckets.count; ++bucket) {
            set_head(target.buckets, bucket, entries.of(head_of<Entry>(source.buckets, bucket)));
        }
        target.entry_count = source.entry_count;
        return;
    }
    for (std::int32_t bucket = 0; bucket < source.buckets.count; ++bucket) {
        chain<Entry> copied;
        for (const auto *entry = head_of<Entry>(source.buckets, bucket); entry != nullptr;
             entry = entry->next) {
            Entry *copy = entries.of(entry);
            copier.copy(entry->value, values, copy->value);
            copied.append(copy);
        }
        set_head(target.buckets, bucket, copied.head());
    }
    target.entry_count = source.entry_count;
}

} // namespace qek::hash
