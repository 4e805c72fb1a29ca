// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The hash table with byte-string keys. The chains are chain.h, the key text stream/keys.h.

#include "hash/chain.h"
#include "hash/key.h"

using namespace qek;

namespace {

struct text_policy {
    using table = qek_hash;
    using entry = qek_hash_entry;
    using key = keys::text;

    static bool ignores_case(const table &of) noexcept { return of.ignore_case != 0; }
    static std::uint64_t number(const table &of, const key &sought) noexcept
    {
        return hash::of_text(sought, ignores_case(of));
    }
    static std::uint64_t number(const entry &at) noexcept { return at.hash; }

    // A look-up asks the stored hash first; the walk before a new entry is made does not. The two
    // differ where `ignore_case` was written after keys had gone in.
    static bool matches(const table &of, const entry &at, const key &sought,
                        std::uint64_t number) noexcept
    {
        return at.hash == number && same(of, at, sought);
    }
    static bool same(const table &of, const entry &at, const key &sought) noexcept
    {
        return keys::equal(keys::text_of(of.keys, at), sought, ignores_case(of));
    }
    static void store(table &of, entry &at, const key &sought, std::uint64_t number) noexcept
    {
        at.hash = static_cast<std::uint32_t>(number);
        keys::store(of.keys, at, sought);
    }
    static void forget(table &of, entry &removed) noexcept
    {
        const keys::run gone = keys::run_of(removed);
        if (gone.length == 0) {
            return;
        }
        keys::erase(of.keys, gone);
        if (!fills_its_pool(of) || !has_few_freed(of) || !sweep_pool(*of.entry_pool, gone)) {
            hash::for_each<entry>(of.buckets,
                                  [&](entry &other) { keys::follow_removal(other, gone); });
        }
    }
    static void grow_ahead(table &of, std::int64_t bytes) noexcept
    {
        buffer::expand<buffer::stream_form>(of.keys, bytes);
    }

  private:
    // Whether the live items of the pool are the entries of this table and no others, one behind the
    // other. Without all buckets some may have got lost, which no chain leads to; a caller may have
    // asked for larger items, with room for something of its own behind each entry.
    static bool fills_its_pool(const table &of) noexcept
    {
        return of.owns_entry_pool != 0 && of.buckets.count <= of.buckets.capacity &&
               of.entry_pool->live_count == of.entry_count &&
               of.entry_pool->item_size == std::int32_t{sizeof(entry)};
    }

    // The freed items are scattered and touched twice, so with many of them the chains are the
    // shorter way: by twenty times where one slot in sixteen is live.
    static bool has_few_freed(const table &of) noexcept
    {
        return pool::slots_handed_out(*of.entry_pool) <= of.entry_count + wide(of.entry_count) / 2;
    }

    // What the walk along the chains does, in the order of memory, and an eighth of its time at a
    // hundred thousand entries. Freed items lie between the entries and must come out as they went
    // in, so meanwhile they stand with an offset below that of any text. False, and nothing done, if
    // one has such an offset already, which somebody else left.
    static bool sweep_pool(const qek_pool &pool, keys::run gone) noexcept
    {
        constexpr std::uint32_t below = 0x80000000U;
        constexpr auto turn = [](entry &freed) { freed.key_offset ^= below; };
        std::uint32_t turned = below;
        pool::for_each_freed<entry>(pool, [&](entry &freed) {
            turn(freed);
            turned &= freed.key_offset;
        });
        if (turned != 0) {
            // Of the keys that are not empty, only the removed one starts where it did, and empty
            // ones stay there: so no length has to be looked at.
            const auto offset = static_cast<std::int32_t>(gone.offset);
            const auto length = static_cast<std::uint32_t>(gone.length);
            pool::for_each_slot<entry>(pool, [=](entry &at) {
                at.key_offset -= static_cast<std::int32_t>(at.key_offset) > offset ? length : 0U;
            });
        }
        pool::for_each_freed<entry>(pool, turn);
        return turned != 0;
    }
};

void remove_all(qek_hash &table) noexcept
{
    buffer::shrink<buffer::stream_form>(table.keys, 0);
    hash::remove_all<qek_hash_entry>(table);
}

void free_all(qek_hash &table, qek_value_fn free_value) noexcept
{
    hash::free_all<qek_hash_entry>(table, free_value);
    buffer::release(table.keys);
}

void term(qek_hash &table) noexcept
{
    buffer::release(table.keys);
    hash::term(table);
}

[[gnu::noinline]] std::uint32_t measured_number(const void *key, std::int32_t length,
                                                bool ignore_case) noexcept
{
    return hash::of_text(keys::given(key, length), ignore_case);
}

// In two, so that the common way is a jump to the sum.
std::uint32_t number_of(const void *key, std::int32_t length, bool ignore_case) noexcept
{
    return length >= 0 && !ignore_case ? hash::of_bytes(as_bytes(key), length)
                                       : measured_number(key, length, ignore_case);
}

} // namespace

uint32_t qek_hash_key(const void *key, int32_t length, int32_t ignore_case)
{
    return number_of(key, length, ignore_case != 0);
}

void qek_hash_init(qek_hash *hash, int32_t own_entry_pool, int32_t own_value_pool)
{
    hash::init<qek_hash_entry>(*hash, own_entry_pool, own_value_pool);
}

void qek_hash_term(qek_hash *hash) { term(*hash); }

void qek_hash_swap(qek_hash *a, qek_hash *b) { exchange_all_but(*a, *b, &qek_hash::ignore_case); }

void qek_hash_clone(const qek_hash *source, qek_pool *source_aux_pool, qek_hash *target,
                    qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    hash::clone<qek_hash_entry>(
        *source, source_aux_pool, *target, target_aux_pool, clone_value,
        [=] { buffer::clone<buffer::stream_form>(source->keys, target->keys); });
}

int32_t qek_hash_entry_set(qek_hash *hash, const void *key, int32_t length,
                           qek_hash_entry **entry_out)
{
    return hash::entry_set<text_policy>(*hash, keys::given(key, length), *entry_out);
}

qek_hash_entry *qek_hash_entry_get(const qek_hash *hash, const void *key, int32_t length)
{
    return hash::find<text_policy>(*hash, keys::given(key, length));
}

qek_hash_entry *qek_hash_entry_first(const qek_hash *hash, int32_t *bucket_out)
{
    return hash::first<qek_hash_entry>(*hash, *bucket_out);
}

qek_hash_entry *qek_hash_entry_next(const qek_hash *hash, int32_t *bucket_inout,
                                    const qek_hash_entry *entry)
{
    return hash::next(*hash, *bucket_inout, entry);
}

int32_t qek_hash_set(qek_hash *hash, const void *key, int32_t length, qek_word *value_out,
                     qek_value_fn init_value)
{
    return hash::set<text_policy>(*hash, keys::given(key, length), *value_out, init_value);
}

qek_word qek_hash_get(const qek_hash *hash, const void *key, int32_t length)
{
    return hash::get<text_policy>(*hash, keys::given(key, length));
}

int32_t qek_hash_insert(qek_hash *hash, const void *key, int32_t length, qek_word value)
{
    return hash::insert<text_policy>(*hash, keys::given(key, length), value);
}

qek_word qek_hash_update(qek_hash *hash, const void *key, int32_t length, qek_word value)
{
    return hash::update<text_policy>(*hash, keys::given(key, length), value);
}

int32_t qek_hash_find(const qek_hash *hash, const void *key, int32_t length)
{
    return hash::find<text_policy>(*hash, keys::given(key, length)) != nullptr;
}

qek_word qek_hash_remove(qek_hash *hash, const void *key, int32_t length)
{
    return hash::remove<text_policy>(*hash, keys::given(key, length));
}

void qek_hash_free(qek_hash *hash, const void *key, int32_t length, qek_value_fn free_value)
{
    hash::free<text_policy>(*hash, keys::given(key, length), free_value);
}

void qek_hash_remove_all(qek_hash *hash) { remove_all(*hash); }

void qek_hash_free_all(qek_hash *hash, qek_value_fn free_value) { free_all(*hash, free_value); }
