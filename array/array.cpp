// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The array of pairs with a byte-string key.
//
// Slots hold an offset and a length; the text of all keys lies in one stream, one run behind the
// other and without holes:
//
//     slots --> [ {0,2} | {5,1} | {2,3} ]      keys.data --> [ a b | x y z | m ]
//
// Invariant: the runs of the slots in use do not overlap and fill `keys` exactly. Text stands in
// the order in which it came, which is not the order of the slots, so every fix-up looks at the
// offset of every slot. An insertion in front of a slot puts its text in front of that slot's text.
//
// An empty key cannot be inserted in front of a slot, because the stream refuses an empty
// insertion; it can only be appended. `set_at` moves a slot whose old key was empty past its own
// new text. Both are limits of the design, and intended.

#include "array/key_sort.h"
#include "array/keyed.h"
#include "stream/keys.h"
#include "text/separated.h"

#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

using namespace qek;
namespace keyed = array::keyed;

namespace {

using buffer::stream_form;

// Three rules for a length: `given` measures a negative one and takes null for the empty key;
// `append` and `set_at` measure without a look at null, and only after growth; `raw` takes it as it
// stands.
keys::text raw(const void *key, std::int32_t length) noexcept { return {as_bytes(key), length}; }

keys::text text_of(const qek_array &array, const qek_array_entry &slot) noexcept
{
    return keys::text_of(array.keys, slot);
}

std::uint32_t end_of(const qek_array_entry &slot) noexcept
{
    return slot.key_offset + static_cast<std::uint32_t>(slot.key_length);
}

// Text offsets at and behind a boundary move. Half of all slots are concerned, at random, so there
// is no branch; where a slot is as wide as a vector, it is changed as a whole, which takes two
// thirds of the time.
class offset_shift {
  public:
    offset_shift(std::uint32_t boundary, std::uint32_t by) noexcept : boundary_(boundary), by_(by)
    {
    }

#if defined(__SSE2__) && UINTPTR_MAX == UINT64_MAX
    void copy(const qek_array_entry &from, qek_array_entry &to) const noexcept
    {
        static_assert(sizeof from == sizeof(__m128i) && offsetof(qek_array_entry, key_offset) == 0);
        const __m128i sign = _mm_setr_epi32(INT32_MIN, 0, 0, 0); // the comparison is signed
        const __m128i slot = _mm_loadu_si128(reinterpret_cast<const __m128i *>(&from));
        const __m128i boundary = _mm_cvtsi32_si128(static_cast<int>(boundary_ ^ 0x80000000U));
        const __m128i is_before = _mm_cmpgt_epi32(boundary, _mm_xor_si128(slot, sign));
        const __m128i by = _mm_cvtsi32_si128(static_cast<int>(by_));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(&to),
                         _mm_add_epi32(slot, _mm_andnot_si128(is_before, by)));
    }
#else
    void copy(const qek_array_entry &from, qek_array_entry &to) const noexcept
    {
        to = from;
        to.key_offset += to.key_offset >= boundary_ ? by_ : 0U;
    }
#endif

    void run(qek_array_entry *slots, std::int32_t count) const noexcept
    {
        for (std::int32_t at = 0; at < count; ++at) {
            copy(slots[at], slots[at]);
        }
    }

  private:
    std::uint32_t boundary_;
    std::uint32_t by_;
};

struct policy {
    using record = qek_array;
    using key = keys::text;

    static std::int32_t order(const record &array, const qek_array_entry &slot,
                              const key &sought) noexcept
    {
        return keys::order(text_of(array, slot), sought, false);
    }
    static bool same(const record &array, const qek_array_entry &slot, const key &sought) noexcept
    {
        return keys::order(text_of(array, slot), sought, false) == 0;
    }
    [[gnu::noinline]] static void append(record &array, const key &added, qek_word value) noexcept
    {
        if (array::expand(array, wide(array.count) + 1)) {
            qek_array_entry &slot = array.slots[array.count];
            keys::store(array.keys, slot, keys::measured_strictly(added));
            slot.value = value;
            array::set_count(array, wide(array.count) + 1);
        }
    }
    [[gnu::noinline]] static void insert_at(record &array, std::int32_t index, const key &added,
                                            qek_word value) noexcept
    {
        if (index >= array.count) {
            append(array, added, value);
        } else if (index >= 0 && array::expand(array, wide(array.count) + 1)) {
            insert_before(array, index, added, value);
        }
    }
    template <typename Take>
    static void take_out(record &array, std::int32_t index, Take take) noexcept
    {
        const qek_array_entry removed = array::slot_at(array, index);
        keys::erase(array.keys, keys::run_of(removed));
        take(removed.value);
        const offset_shift shift(end_of(removed),
                                 0U - static_cast<std::uint32_t>(removed.key_length));
        qek_array_entry *const slots = array.slots;
        const std::int32_t in_use = array::slots_in_use(array);
        const std::int32_t first = smaller(index, in_use);
        shift.run(slots, first);
        for (std::int32_t at = first; at + 1 < in_use; ++at) {
            shift.copy(slots[at + 1], slots[at]);
        }
        if (first < in_use) {
            shift.run(slots + in_use - 1, 1); // stands on behind the count
        }
        array::set_count(array, wide(array.count) - 1);
    }

  private:
    static void insert_before(record &array, std::int32_t index, const key &added,
                              qek_word value) noexcept
    {
        const std::uint32_t position = array.slots[index].key_offset;
        if (buffer::insert<stream_form>(array.keys, static_cast<std::int32_t>(position),
                                        added.bytes, measured(added.bytes, added.length))) {
            const offset_shift shift(position, static_cast<std::uint32_t>(added.length));
            qek_array_entry *const slots = array.slots;
            for (std::int32_t at = array.count; at > index; --at) {
                shift.copy(slots[at - 1], slots[at]);
            }
            shift.run(slots, index);
            slots[index] = {position, added.length, value};
            array::set_count(array, wide(array.count) + 1);
        }
    }
};

void append_all(qek_array &array, const qek_array &source) noexcept
{
    const std::int32_t added = array::slots_in_use(source);
    if (array::expand(array, wide(array.count) + added) &&
        buffer::expand<stream_form>(array.keys, wide(array.keys.length) + source.keys.length)) {
        for (std::int32_t at = 0; at < added; ++at) {
            policy::append(array, text_of(source, source.slots[at]), source.slots[at].value);
        }
    }
}

qek_word get_pair(const qek_array &array, std::int32_t index, std::uint8_t *&key,
                  std::int32_t &length) noexcept
{
    const qek_array_entry slot = array::slot_at(array, index);
    key = array::is_allocated(array, index) ? array.keys.data + slot.key_offset : nullptr;
    length = slot.key_length;
    return slot.value;
}

qek_word get_used_pair(const qek_array &array, std::int32_t index, std::uint8_t *&key,
                       std::int32_t &length) noexcept
{
    return get_pair(array, array.count < 1 ? -1 : index, key, length);
}

qek_word set_pair(qek_array &array, std::int32_t index, const void *key, std::int32_t key_length,
                  qek_word value) noexcept
{
    if (!array::is_allocated(array, index)) {
        return 0;
    }
    const keys::text text = keys::measured_strictly(raw(key, key_length));
    qek_array_entry &slot = array.slots[index];
    if (!buffer::update<stream_form>(array.keys, static_cast<std::int32_t>(slot.key_offset),
                                     slot.key_length, text.bytes, text.length)) {
        return 0;
    }
    const qek_word old = slot.value;
    slot.value = value;
    if (text.length != slot.key_length) {
        offset_shift(end_of(slot), static_cast<std::uint32_t>(text.length) -
                                       static_cast<std::uint32_t>(slot.key_length))
            .run(array.slots, array::slots_in_use(array));
        slot.key_length = text.length;
    }
    return old;
}

// The text of keys that go stays allocated here, and is released by `free_all`.
void remove_all(qek_array &array) noexcept
{
    array::remove_all(array);
    buffer::shrink<stream_form>(array.keys, 0);
}

void free_all(qek_array &array, qek_value_fn free_value) noexcept
{
    array::free_all(array, free_value);
    buffer::release(array.keys);
}

void term(qek_array &array) noexcept
{
    array::term(array);
    buffer::release(array.keys);
}

void swap(qek_array &a, qek_array &b) noexcept
{
    array::swap_slots(a, b);
    buffer::swap(a.keys, b.keys);
}

void clone(const qek_array &source, qek_array &target, qek_pool *source_aux, qek_pool *target_aux,
           qek_clone_fn clone_value) noexcept
{
    array::clone(source, source_aux, target, target_aux, clone_value,
                 [&] { buffer::clone<stream_form>(source.keys, target.keys); });
}

// Ranks for sort.h's quick sibling: the eight bytes of a key behind those that all keys share, as a
// number. Slots move, text stays.
class text_ranks {
  public:
    static constexpr bool ranks_decide = false;
    template <typename Slot> static constexpr bool are_pairs() { return false; }
    using number = std::uint64_t;

    text_ranks(const qek_stream &keys, bool ascending) noexcept
        : keys_(&keys), mask_(ascending ? 0 : ~number{0})
    {
    }

    std::uint64_t rank(const qek_array_entry &slot) const noexcept
    {
        const std::int64_t offset = std::int64_t{slot.key_offset} + shared_;
        const std::int32_t length = slot.key_length - shared_;
        std::uint64_t bytes = 0;
        if (offset + 8 <= keys_->capacity) {
            bytes = load_high_first(keys_->data + offset);
            bytes = length <= 0   ? 0
                    : length >= 8 ? bytes
                                  : bytes >> (64 - 8 * length) << (64 - 8 * length);
        } else {
            for (std::int32_t at = 0; at < 8; ++at) {
                bytes = bytes << 8 | (at < length ? keys_->data[offset + at] : 0U);
            }
        }
        return bytes ^ mask_;
    }
    std::int32_t operator()(const qek_array_entry &left,
                            const qek_array_entry &right) const noexcept
    {
        const std::int32_t stands =
            keys::order(keys::text_of(*keys_, left), keys::text_of(*keys_, right), false);
        return mask_ == 0 ? stands : array::negated(stands);
    }
    text_ranks near(const qek_array_entry *slots, std::int32_t count) const noexcept
    {
        const keys::text first = keys::text_of(*keys_, slots[0]);
        std::int32_t shared = larger(first.length, 0);
        for (std::int32_t at = 1; at < count && shared > 0; ++at) {
            const keys::text other = keys::text_of(*keys_, slots[at]);
            shared = static_cast<std::int32_t>(
                mismatch(first.bytes, other.bytes, smaller(shared, larger(other.length, 0))));
        }
        text_ranks ranks = *this;
        ranks.shared_ = shared;
        return ranks;
    }
    void fetch(const qek_array_entry &slot) const noexcept
    {
        __builtin_prefetch(keys_->data + slot.key_offset);
    }

  private:
    const qek_stream *keys_;
    std::uint64_t mask_;
    std::int32_t shared_ = 0; // bytes that all keys open with
};

void sort_by_key(qek_array &array, std::int32_t ascending) noexcept
{
    array::sort_by_keys(array.slots, array::slots_in_use(array),
                        text_ranks(array.keys, ascending != 0));
}

void read_keys(qek_array &array, std::uint8_t separator, const void *text,
               std::int32_t length) noexcept
{
    text::for_each_item(separator, text, length, [&](const qek_char &item) {
        policy::append(array, {item.data, item.length}, 0);
    });
}

void write_keys(const qek_array &array, std::uint8_t separator, qek_string &target) noexcept
{
    text::join(target, separator, array::slots_in_use(array), array.keys.length,
               [&](std::int32_t at) {
                   const keys::text key = text_of(array, array.slots[at]);
                   qek_string_append(&target, key.bytes, key.length);
               });
}

} // namespace

void qek_array_init(qek_array *record, int32_t use_pool) { array::init(*record, use_pool); }

void qek_array_term(qek_array *record) { term(*record); }

int32_t qek_array_expand(qek_array *record, int32_t want) { return array::expand(*record, want); }

void qek_array_swap(qek_array *record, qek_array *other) { swap(*record, *other); }

void qek_array_clone(const qek_array *source, qek_pool *source_aux_pool, qek_array *target,
                     qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    clone(*source, *target, source_aux_pool, target_aux_pool, clone_value);
}

void qek_array_append(qek_array *record, const void *key, int32_t key_length, qek_word value)
{
    policy::append(*record, raw(key, key_length), value);
}

qek_word qek_array_append_new(qek_array *record, const void *key, int32_t key_length,
                              qek_value_fn init_value)
{
    return keyed::append_new<policy>(*record, raw(key, key_length), init_value);
}

void qek_array_append_array(qek_array *record, const qek_array *source)
{
    append_all(*record, *source);
}

qek_word qek_array_get_at(const qek_array *record, int32_t index, uint8_t **key_out,
                          int32_t *length_out)
{
    return get_pair(*record, index, *key_out, *length_out);
}

qek_word qek_array_set_at(qek_array *record, int32_t index, const void *key, int32_t key_length,
                          qek_word value)
{
    return set_pair(*record, index, key, key_length, value);
}

qek_word qek_array_update_at(qek_array *record, int32_t index, qek_word value)
{
    return keyed::update_at(*record, index, value);
}

qek_word qek_array_get_first(const qek_array *record, uint8_t **key_out, int32_t *length_out)
{
    return get_used_pair(*record, 0, *key_out, *length_out);
}

qek_word qek_array_get_last(const qek_array *record, uint8_t **key_out, int32_t *length_out)
{
    return get_used_pair(*record, record->count - 1, *key_out, *length_out);
}

int32_t qek_array_insert(qek_array *record, const void *key, int32_t key_length, qek_word value)
{
    return keyed::insert<policy>(*record, keys::given(key, key_length), value);
}

int32_t qek_array_insert_new(qek_array *record, const void *key, int32_t key_length,
                             qek_word *value_out, qek_value_fn init_value)
{
    return keyed::insert_new<policy>(*record, keys::given(key, key_length), *value_out, init_value);
}

qek_word qek_array_update(qek_array *record, const void *key, int32_t key_length, qek_word value)
{
    return keyed::update_at(
        *record, keyed::find_index<policy>(*record, keys::given(key, key_length)), value);
}

qek_word qek_array_remove(qek_array *record, const void *key, int32_t key_length)
{
    return keyed::remove_at<policy>(
        *record, keyed::find_index<policy>(*record, keys::given(key, key_length)));
}

void qek_array_free(qek_array *record, const void *key, int32_t key_length, qek_value_fn free_value)
{
    keyed::free_at<policy>(
        *record, keyed::find_index<policy>(*record, keys::given(key, key_length)), free_value);
}

qek_word qek_array_find(const qek_array *record, const void *key, int32_t key_length)
{
    return keyed::value_at(*record,
                           keyed::find_index<policy>(*record, keys::given(key, key_length)));
}

int32_t qek_array_find_index(const qek_array *record, const void *key, int32_t key_length)
{
    return keyed::find_index<policy>(*record, keys::given(key, key_length));
}

qek_word qek_array_afind(const qek_array *record, const void *key, int32_t key_length)
{
    return keyed::value_at(*record,
                           keyed::first_index<policy>(*record, keys::given(key, key_length)));
}

int32_t qek_array_afind_index(const qek_array *record, const void *key, int32_t key_length)
{
    return keyed::first_index<policy>(*record, keys::given(key, key_length));
}

qek_word qek_array_bfind(const qek_array *record, const void *key, int32_t key_length)
{
    return keyed::value_at(*record,
                           keyed::nearest_index<policy>(*record, keys::given(key, key_length)));
}

int32_t qek_array_bfind_index(const qek_array *record, const void *key, int32_t key_length)
{
    return keyed::nearest_index<policy>(*record, keys::given(key, key_length));
}

qek_array_entry *qek_array_entry_insert(qek_array *record, const void *key, int32_t key_length)
{
    return keyed::entry_insert<policy>(*record, raw(key, key_length));
}

qek_array_entry *qek_array_entry_find(const qek_array *record, const void *key, int32_t key_length)
{
    return keyed::entry_find<policy>(*record, raw(key, key_length));
}

void qek_array_insert_at(qek_array *record, int32_t index, const void *key, int32_t key_length,
                         qek_word value)
{
    policy::insert_at(*record, index, raw(key, key_length), value);
}

qek_word qek_array_remove_at(qek_array *record, int32_t index)
{
    return keyed::remove_at<policy>(*record, index);
}

void qek_array_free_at(qek_array *record, int32_t index, qek_value_fn free_value)
{
    keyed::free_at<policy>(*record, index, free_value);
}

void qek_array_remove_all(qek_array *record) { remove_all(*record); }

void qek_array_free_all(qek_array *record, qek_value_fn free_value)
{
    free_all(*record, free_value);
}

void qek_array_qsort(qek_array *record, int32_t ascending) { sort_by_key(*record, ascending); }

void qek_array_qsort_x(qek_array *record, int32_t ascending, qek_value_compare_fn compare)
{
    keyed::sort_by_value(*record, ascending, compare);
}

void qek_array_from_string(qek_array *record, uint8_t separator, const void *text, int32_t length)
{
    read_keys(*record, separator, text, length);
}

void qek_array_to_string(const qek_array *record, uint8_t separator, qek_string *string)
{
    write_keys(*record, separator, *string);
}
