// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "bench.h"
#include "data.h"
#include "qek_std.h"

#include <glib.h>
#include <memory>
#include <vector>

namespace bench {
namespace {

// What is sorted: random keys, a thousand different ones, or keys in order.
enum class shape {
    random,
    few,
    sorted
};

template <typename Key, shape of> std::vector<Key> numbers(std::int64_t count)
{
    const keys<Key> random(count);
    std::vector<Key> made(random.begin(), random.end());
    if (of == shape::few) {
        std::transform(made.begin(), made.end(), made.begin(),
                       [](Key key) { return static_cast<Key>(key % 1000U); });
    } else if (of == shape::sorted) {
        std::sort(made.begin(), made.end());
    }
    return made;
}

// Slots to start each sort from: some in one order after another, since the processor would learn
// the branches of a thousand slots that always stand in the same one.
template <typename Slot> class unsorted_slots {
  public:
    void assign(const Slot *slots, std::int64_t count, bool shuffled)
    {
        std::mt19937_64 random(seed);
        count_ = static_cast<std::size_t>(count);
        const std::size_t orders = shuffled ? 1 + 100'000 / count_ : 1;
        for (std::size_t order = 0; order < orders; ++order) {
            slots_.insert(slots_.end(), slots, slots + count);
            if (shuffled) {
                std::shuffle(slots_.end() - count, slots_.end(), random);
            }
        }
    }
    void restore(Slot *slots)
    {
        std::copy_n(slots_.data() + next_, count_, slots);
        next_ = (next_ + count_) % slots_.size();
    }

  private:
    std::vector<Slot> slots_;
    std::size_t count_ = 0;
    std::size_t next_ = 0;
};

// Our arrays, with their unsorted slots beside them.
template <typename Record, auto init, auto term> struct array {
    Record record;
    unsorted_slots<std::remove_pointer_t<decltype(Record::slots)>> unsorted;

    array() { init(&record, 0); }
    ~array() { term(&record); }
    array(const array &) = delete;
    array &operator=(const array &) = delete;

    void keep(bool shuffled) { unsorted.assign(record.slots, record.count, shuffled); }
    array *restored()
    {
        unsorted.restore(record.slots);
        return this;
    }
};
using arrayd = array<qek_arrayd, qek_arrayd_init, qek_arrayd_term>;
using arrayx = array<qek_arrayx, qek_arrayx_init, qek_arrayx_term>;
using arrays = array<qek_arrays, qek_arrays_init, qek_arrays_term>;
using array_of_text = array<qek_array, qek_array_init, qek_array_term>;

// The keys, each with the place where it stands.
template <typename Sequence> std::uint64_t checksum(std::int64_t count, Sequence key_at)
{
    std::uint64_t total = 0;
    for (std::int64_t at = 0; at < count; at += 1 + count / 16) {
        total = total * 31 + key_at(at);
    }
    return total;
}

template <typename Array, typename Key, auto append, auto sort, shape of>
void sorting(benchmark::State &state)
{
    Array array;
    word value = 0;
    for (const Key key : numbers<Key, of>(size_of(state))) {
        append(&array.record, key, ++value);
    }
    array.keep(of != shape::sorted);
    measure(
        state, size_of(state), [&] { return array.restored(); },
        [&](Array *unsorted) {
            sort(&unsorted->record, 1);
            return checksum(size_of(state),
                            [&](auto at) { return unsorted->record.slots[at].key; });
        });
}

template <typename Key, shape of> void std_sorting(benchmark::State &state)
{
    struct pair {
        Key key;
        word value;
    };
    std::vector<pair> pairs;
    word value = 0;
    for (const Key key : numbers<Key, of>(size_of(state))) {
        pairs.push_back({key, ++value});
    }
    unsorted_slots<pair> unsorted;
    unsorted.assign(pairs.data(), size_of(state), of != shape::sorted);
    measure(
        state, size_of(state),
        [&] {
            unsorted.restore(pairs.data());
            return pairs.data();
        },
        [&](pair *first) {
            std::sort(first, first + size_of(state),
                      [](const pair &a, const pair &b) { return a.key < b.key; });
            return checksum(size_of(state), [&](auto at) { return first[at].key; });
        });
}

void sorting_text(benchmark::State &state)
{
    array_of_text array;
    word value = 0;
    for (const std::string_view key : keys<std::string_view>(size_of(state))) {
        qek_array_append(&array.record, key.data(), static_cast<std::int32_t>(key.size()), ++value);
    }
    array.keep(true);
    measure(
        state, size_of(state), [&] { return array.restored(); },
        [&](array_of_text *unsorted) {
            qek_array_qsort(&unsorted->record, 1);
            return checksum(size_of(state),
                            [&](auto at) { return unsorted->record.slots[at].value; });
        });
}

void std_sorting_text(benchmark::State &state)
{
    struct pair {
        std::string_view key;
        word value;
    };
    const keys<std::string_view> texts(size_of(state));
    std::vector<pair> pairs;
    for (const std::string_view key : texts) {
        pairs.push_back({key, pairs.size() + 1});
    }
    unsorted_slots<pair> unsorted;
    unsorted.assign(pairs.data(), size_of(state), true);
    measure(
        state, size_of(state),
        [&] {
            unsorted.restore(pairs.data());
            return pairs.data();
        },
        [&](pair *first) {
            std::sort(first, first + size_of(state),
                      [](const pair &a, const pair &b) { return a.key < b.key; });
            return checksum(size_of(state), [&](auto at) { return first[at].value; });
        });
}

std::int32_t order_words(qek_word item, qek_word key, std::int32_t /*key_extra*/)
{
    return static_cast<std::int32_t>(item > key) - static_cast<std::int32_t>(item < key);
}

int order_addressed(const void *a, const void *b)
{
    return order_words(*static_cast<const word *>(a), *static_cast<const word *>(b), 0);
}

void sorting_words(benchmark::State &state)
{
    arrays array;
    for (const std::uint64_t key : keys<std::uint64_t>(size_of(state))) {
        qek_arrays_append(&array.record, key);
    }
    array.keep(true);
    measure(
        state, size_of(state), [&] { return array.restored(); },
        [&](arrays *unsorted) {
            qek_arrays_qsort(&unsorted->record, 1, order_words);
            return checksum(size_of(state), [&](auto at) { return unsorted->record.slots[at]; });
        });
}

void libc_sorting_words(benchmark::State &state)
{
    const keys<std::uint64_t> random(size_of(state));
    std::vector<word> words(random.begin(), random.end());
    unsorted_slots<word> unsorted;
    unsorted.assign(words.data(), size_of(state), true);
    measure(
        state, size_of(state),
        [&] {
            unsorted.restore(words.data());
            return words.data();
        },
        [&](word *first) {
            std::qsort(first, words.size(), sizeof(word), order_addressed);
            return checksum(size_of(state), [&](auto at) { return first[at]; });
        });
}

// Appending to an array that grows as it must, or that is told its size first; making that room is
// part of the work, because one side touches it when it is made and the other when it is filled.
template <typename Peer, bool expanded> void appending(benchmark::State &state)
{
    measure(
        state, size_of(state), [] { return std::make_unique<Peer>(); },
        [&](std::unique_ptr<Peer> &to) {
            if constexpr (expanded) {
                to->expand(size_of(state));
            }
            for (std::int64_t at = 0; at < size_of(state); ++at) {
                to->append(static_cast<word>(at));
            }
            return to->at(size_of(state) - 1) + to->at(size_of(state) / 2);
        });
}

struct our_words : arrays {
    void expand(std::int64_t count)
    {
        qek_arrays_expand(&record, static_cast<std::int32_t>(count));
    }
    void append(word value) { qek_arrays_append(&record, value); }
    word at(std::int64_t index) const
    {
        return qek_arrays_get_at(&record, static_cast<std::int32_t>(index));
    }
};

struct std_words {
    std::vector<word> words;
    void expand(std::int64_t count) { words.reserve(static_cast<std::size_t>(count)); }
    void append(word value) { words.push_back(value); }
    word at(std::int64_t index) const { return words[static_cast<std::size_t>(index)]; }
};

struct glib_words {
    GArray *words = g_array_new(FALSE, FALSE, sizeof(word));

    glib_words() = default;
    glib_words(const glib_words &) = delete;
    glib_words &operator=(const glib_words &) = delete;
    ~glib_words() { g_array_free(words, TRUE); }

    void append(word value) { g_array_append_vals(words, &value, 1); }
    word at(std::int64_t index) const { return g_array_index(words, word, index); }
};

// A sorted array of texts in which pairs come and go in the middle; the texts lie in the order in
// which they came. `loop_middle` does what ours does with a plain
// loop over the slots, which moves the text offsets one by one.
struct our_middle : array_of_text {
    void insert(std::int32_t index, std::string_view key)
    {
        qek_array_insert_at(&record, index, key.data(), static_cast<std::int32_t>(key.size()), 1);
    }
    void remove(std::int32_t index) { qek_array_remove_at(&record, index); }
};

struct loop_middle : array_of_text {
    void insert(std::int32_t index, std::string_view key)
    {
        const auto length = static_cast<std::int32_t>(key.size());
        qek_array_expand(&record, record.count + 1);
        qek_stream_expand(&record.keys, record.keys.length + length);
        const std::uint32_t position = record.slots[index].key_offset;
        std::uint8_t *text = record.keys.data + position;
        std::memmove(text + length, text,
                     static_cast<std::uint32_t>(record.keys.length) - position);
        std::memcpy(text, key.data(), key.size());
        record.keys.length += length;
        for (std::int32_t at = record.count; at > index; --at) {
            record.slots[at] = record.slots[at - 1];
        }
        ++record.count;
        move_offsets(position, static_cast<std::uint32_t>(length));
        record.slots[index] = {position, length, 1};
    }
    void remove(std::int32_t index)
    {
        const qek_array_entry gone = record.slots[index];
        const auto length = static_cast<std::uint32_t>(gone.key_length);
        const std::uint32_t behind = gone.key_offset + length;
        std::memmove(record.keys.data + gone.key_offset, record.keys.data + behind,
                     static_cast<std::uint32_t>(record.keys.length) - behind);
        record.keys.length -= gone.key_length;
        --record.count;
        for (std::int32_t at = index; at < record.count; ++at) {
            record.slots[at] = record.slots[at + 1];
        }
        move_offsets(behind, 0U - length);
    }

  private:
    void move_offsets(std::uint32_t from, std::uint32_t by)
    {
        // The empty statement keeps the compiler from making vectors of the loop.
        for (std::int32_t at = 0; at < record.count; ++at) {
            if (record.slots[at].key_offset >= from) {
                record.slots[at].key_offset += by;
                asm volatile("");
            }
        }
    }
};

template <typename Array, bool inserts> void changing_middle(benchmark::State &state)
{
    static constexpr std::int64_t some = 16;
    Array array;
    for (const std::string_view key : keys<std::string_view>(size_of(state))) {
        qek_array_append(&array.record, key.data(), static_cast<std::int32_t>(key.size()), 1);
    }
    qek_array_qsort(&array.record, 1);
    const keys<std::string_view> added(some, choice::absent);
    const std::int32_t middle = array.record.count / 2;
    const auto insert = [&] {
        for (const std::string_view key : added) {
            array.insert(middle, key);
        }
    };
    const auto remove = [&] {
        for (std::int64_t at = 0; at < some; ++at) {
            array.remove(middle);
        }
    };
    bool full = false;
    measure(
        state, some,
        [&] {
            if (full) {
                remove();
            }
            if (!inserts) {
                insert();
            }
            full = inserts;
            return &array;
        },
        [&](Array *to) {
            inserts ? insert() : remove();
            return static_cast<std::uint64_t>(to->record.keys.length);
        });
}

template <typename Array, typename Key, auto append, auto sort>
void add_sorts(const std::string &family)
{
    add(family + "_sort_random", "ours", {1'000, 1'000'000},
        sorting<Array, Key, append, sort, shape::random>);
    add(family + "_sort_random", "std", {1'000, 1'000'000}, std_sorting<Key, shape::random>);
    add(family + "_sort_few", "ours", {1'000'000}, sorting<Array, Key, append, sort, shape::few>);
    add(family + "_sort_few", "std", {1'000'000}, std_sorting<Key, shape::few>);
    add(family + "_sort_sorted", "ours", {1'000'000},
        sorting<Array, Key, append, sort, shape::sorted>);
    add(family + "_sort_sorted", "std", {1'000'000}, std_sorting<Key, shape::sorted>);
}

template <typename Array> void weighing(benchmark::State &state)
{
    weigh(state, [&] {
        auto made = std::make_unique<Array>();
        for (std::int64_t at = 0; at < size_of(state); ++at) {
            made->append(static_cast<word>(at));
        }
        return made;
    });
}

} // namespace

void register_rows()
{
    add_sorts<arrayd, std::uint32_t, qek_arrayd_append, qek_arrayd_qsort>("arrayd");
    add_sorts<arrayx, std::uint64_t, qek_arrayx_append, qek_arrayx_qsort>("arrayx");
    add("array_sort", "ours", {1'000, 1'000'000}, sorting_text);
    add("array_sort", "std", {1'000, 1'000'000}, std_sorting_text);
    add("arrays_sort", "ours", {1'000'000}, sorting_words);
    add("arrays_sort", "qsort", {1'000'000}, libc_sorting_words);
    add("arrays_append", "ours", {1'000, 100'000}, appending<our_words, false>);
    add("arrays_append", "glib", {1'000, 100'000}, appending<glib_words, false>);
    add("arrays_append", "vector", {1'000, 100'000}, appending<std_words, false>);
    add_once("arrays_append_far", "ours", {10'000'000}, appending<our_words, false>);
    add_once("arrays_append_far", "vector", {10'000'000}, appending<std_words, false>);
    add("arrays_append_expanded", "ours", {10'000'000}, appending<our_words, true>);
    add("arrays_append_expanded", "vector", {10'000'000}, appending<std_words, true>);
    add("array_insert_middle", "ours", {100'000}, changing_middle<our_middle, true>);
    add("array_insert_middle", "loop", {100'000}, changing_middle<loop_middle, true>);
    add("array_remove_middle", "ours", {100'000}, changing_middle<our_middle, false>);
    add("array_remove_middle", "loop", {100'000}, changing_middle<loop_middle, false>);
    add_weight("arrays", "ours", weighing<our_words>);
    add_weight("arrays", "vector", weighing<std_words>);
    add_weight("arrays", "glib", weighing<glib_words>);
}

} // namespace bench
