// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// One suite for the simple array, in both forms of its calls, and the three arrays of pairs; then
// what the arrays of pairs have alone.

#include "array/array_model.h"
#include "array/keyed_check.h"
#include "support/allocations.h"
#include "support/pools.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <limits>
#include <tuple>

namespace {

using namespace qek_test;
using namespace std::string_literals;
using std::tuple;

// The functions of a family. Those from `insert` to `sort` take a comparison in the simple array.
// It has none of those behind, but its `set_at` does for `update_at`.

// clang-format off
enum name {
    init, term, expand, swap, clone, append_array, free_at, remove_all, free_all, get_at, get_first,
    get_last, remove_at, append, append_new, insert_at, set_at,
    insert, insert_new, update, remove_key, free_key, find, find_index, bfind, bfind_index, sort,
    update_at, afind, afind_index, entry_insert, entry_find, sort_by_value
};
#define PLAIN(of)                                                                                  \
    of##_init, of##_term, of##_expand, of##_swap, of##_clone, of##_append_array, of##_free_at,     \
    of##_remove_all, of##_free_all, of##_get_at, of##_get_first, of##_get_last, of##_remove_at,    \
    of##_append, of##_append_new, of##_insert_at, of##_set_at
#define ORDERED(of, x)                                                                             \
    of##_insert##x, of##_insert_new##x, of##_update##x, of##_remove##x, of##_free##x,              \
    of##_find##x, of##_find_index##x, of##_bfind##x, of##_bfind_index##x, of##_qsort##x
#define PAIRS(of)                                                                                  \
    PLAIN(of), ORDERED(of, ), of##_update_at, of##_afind, of##_afind_index, of##_entry_insert,     \
    of##_entry_find, of##_qsort_x
// clang-format on

// An item of the simple array is its own key. What a comparison was asked is kept.
struct item_key {
    qek_word item;
    bool operator==(const item_key &) const = default;
};
std::vector<std::array<qek_word, 3>> probes;
qek_word *out = nullptr; // where `insert_new` puts an item before it is prepared; 0 until then

std::int32_t ordered(qek_word item, qek_word key, std::int32_t extra)
{
    probes.push_back({item, key, static_cast<qek_word>(extra)});
    EXPECT_EQ(out == nullptr ? 0 : *out, 0U);
    return item == key ? 0 : item > key ? std::numeric_limits<std::int32_t>::max() : -1;
}
std::int32_t ordered_x(void *context, qek_word item, qek_word key, std::int32_t extra)
{
    EXPECT_EQ(context, &probes);
    return ordered(item, key, extra);
}
// Of items by what the place of the heap does not change.
std::int32_t order_values(qek_word x, qek_word y) { return ordered(x % 4096 % 5, y % 4096 % 5, 0); }

template <typename Record, typename Key, auto... Functions> struct functions {
    using record = Record;
    using key = Key;
    static constexpr auto all = std::make_tuple(Functions...);
};
#define ITEMS(x) PLAIN(qek_arrays), ORDERED(qek_arrays, x), qek_arrays_set_at
struct words : functions<qek_arrays, item_key, ITEMS()> {};
struct words_x : functions<qek_arrays, item_key, ITEMS(_x)> {};
struct numbers : functions<qek_arrayd, std::uint32_t, PAIRS(qek_arrayd)> {};
struct wide_numbers : functions<qek_arrayx, std::uint64_t, PAIRS(qek_arrayx)> {};
struct texts : functions<qek_array, std::string, PAIRS(qek_array)> {};

template <typename Functions> struct family : Functions::record {
    using key_type = typename Functions::key;
    static constexpr bool has_text = std::is_same_v<key_type, std::string>;
    static constexpr bool has_pairs = !std::is_same_v<key_type, item_key>;
    struct slot {
        key_type key{};
        qek_word value = 0;
        bool operator==(const slot &) const = default;
    };

    explicit family(int use_pool = 0) { call<init>(use_pool); }
    ~family() { call<term>(); }
    family(const family &) = delete;
    family &operator=(const family &) = delete;

    template <name Name, typename... Arguments> auto call(Arguments... arguments)
    {
        typename Functions::record *self = this;
        void *context = &probes;
        const auto apply = [&](auto in_front, auto behind) {
            return std::apply(std::get<Name>(Functions::all),
                              std::tuple_cat(in_front, passed<Name>(arguments)..., behind));
        };
        if constexpr (has_pairs || Name < insert || Name > sort) {
            return apply(tuple(self), tuple());
        } else if constexpr (std::is_same_v<Functions, words_x>) {
            return apply(tuple(self, context), tuple(&ordered_x));
        } else {
            return apply(tuple(self), tuple(&ordered));
        }
    }
    // The slot that a function tells of. The key of a text that is removed is looked up before.
    template <name Name, typename... Index> slot fetch(Index... index)
    {
        slot got;
        if constexpr (!has_pairs) {
            got.value = call<Name>(index...);
            got.key.item = got.value;
        } else if constexpr (!has_text) {
            got.value = call<Name>(index..., &got.key);
        } else if constexpr (Name == remove_at) {
            const bool is_used = ((index >= 0 && index < this->count) && ...);
            got = is_used ? fetch<get_at>(index...) : got;
            EXPECT_EQ(call<Name>(index...), got.value);
        } else {
            std::uint8_t *bytes = nullptr;
            std::int32_t length = -1;
            got.value = call<Name>(index..., &bytes, &length);
            got.key.assign(bytes, bytes + length);
        }
        return got;
    }

    static auto order(const slot &at, const key_type &key, std::int32_t extra = -7)
    {
        if constexpr (!has_pairs) {
            return ordered(at.value, key.item, extra);
        } else if constexpr (has_text) {
            return at.key.compare(key);
        } else {
            return static_cast<std::make_signed_t<key_type>>(at.key - key);
        }
    }
    static std::int32_t compare(const slot &x, const slot &y)
    {
        if constexpr (has_pairs) {
            return static_cast<int>(x.key > y.key) - static_cast<int>(x.key < y.key);
        }
        return static_cast<std::int32_t>(order(x, y.key, 0));
    }
    static qek_word word(const slot &at) { return at.value; }
    static void clear(slot &at) { at.key = has_pairs ? key_type{} : at.key; }

  private:
    template <name Name, typename Argument> static auto passed(const Argument &argument)
    {
        constexpr bool is_key = std::is_same_v<Argument, item_key>;
        if constexpr (std::is_same_v<Argument, std::string>) {
            return tuple(argument.data(), static_cast<std::int32_t>(argument.size()));
        } else if constexpr (is_key && Name >= insert) {
            return tuple(argument.item, -7);
        } else if constexpr (is_key || (!has_pairs && (Name == insert || Name == update))) {
            return tuple(); // the item is said once
        } else {
            return tuple(argument);
        }
    }
};

// An item, or one of sixteen keys: as differences all over the range, as texts the empty one,
// prefixes of others, and some that differ in case only.
template <typename Key> Key key_of(std::uint32_t number, qek_word item)
{
    if constexpr (std::is_same_v<Key, item_key>) {
        return {item};
    } else if constexpr (std::is_same_v<Key, std::string>) {
        std::string text;
        for (std::uint32_t rest = number % 16 + 1; rest > 1; rest /= 2) {
            text += rest % 2 != 0 ? "z" : rest == 2 ? "Z" : "\xE9\xE9";
        }
        return text;
    } else {
        return (Key{number / 4 % 4} << (8 * sizeof(Key) - 2)) + number % 4;
    }
}

void prepare(qek_word item)
{
    EXPECT_EQ(out == nullptr ? item : *out, item);
    told.push_back(item);
}

enum pool_state {
    without,
    owned,
    borrowed
};

template <typename Functions> struct session {
    using family_type = family<Functions>;
    using slot = typename family_type::slot;
    using key_type = typename Functions::key;
    static constexpr bool has_text = family_type::has_text, has_pairs = family_type::has_pairs;

    random_numbers &random;
    pool_state state;
    lent_pool lender{8, 8192}; // no block is opened in the middle of a call
    family_type array{state == owned ? 1 : 0};
    array_model<slot, family_type> m{};
    decltype(probes) path{};

    session(random_numbers &numbers_to_draw, pool_state state_of_pool, bool reversed)
        : random(numbers_to_draw), state(state_of_pool)
    {
        if (state == owned) {
            *array.pool = lender;
        }
        array.pool = state == borrowed ? &lender : array.pool;
        array.reversed = reversed ? 2 : 0;
        told.clear();
        probes.clear();
        m.reversed = reversed;
        m.lends = state == borrowed;
        if constexpr (has_text) {
            m.room = [this](int bytes) {
                const qek_stream &keys = array.keys;
                return keys.length + (bytes < 0 ? keys.length : bytes) <= keys.capacity ||
                       m.allocate();
            };
        }
    }

    qek_word draw_value()
    {
        const bool is_fresh = state != without && !random.one_in(4);
        m.live += is_fresh ? 1 : 0;
        return is_fresh           ? word(qek_pool_new(array.pool))
               : state == without ? random.below(24)
               : has_pairs        ? 0
                                  : m.get_at(random.between(0, m.count)).value;
    }
    slot slot_of(const key_type &key, qek_word value) const
    {
        return {has_pairs ? key : key_of<key_type>(0, value), value};
    }
    qek_word replace(int index, qek_word value)
    {
        return m.set_at(index, slot_of(m.get_at(index).key, value));
    }
    qek_word make(int index, const key_type &key)
    {
        told.push_back(m.next);
        ++m.live;
        m.insert_at(index, slot_of(key, m.next));
        return m.next;
    }

    template <name Name, typename Expected, typename... Arguments>
    void both(const Expected &expected, Arguments... arguments)
    {
        constexpr bool sorts = Name == sort || Name == sort_by_value;
        constexpr bool searches = !has_pairs && Name >= insert && Name < sort;
        const auto expected_calls = std::exchange(told, {});
        const auto expected_probes = std::exchange(probes, {});
        const allocations faults(m.fail_from, true);
        if constexpr (std::is_same_v<Expected, slot>) {
            EXPECT_EQ(array.template fetch<Name>(arguments...), expected);
        } else if constexpr (!has_pairs && Name > update_at) {
            return;
        } else if constexpr (requires { array.template call<Name>(arguments...) == expected; }) {
            EXPECT_EQ(array.template call<Name>(arguments...), expected);
        } else {
            array.template call<Name>(arguments...);
        }
        EXPECT_EQ(told, expected_calls);
        EXPECT_EQ(probes, sorts ? expected_probes : searches ? path : decltype(path)());
    }

    void check_clone()
    {
        family_type target(state == owned ? 1 : 0);
        copied.clear();
        array.template call<clone>(nullptr, &target, nullptr, note_copy);
        EXPECT_EQ(tuple(target.capacity, array_fault(target)), tuple(m.capacity(), ""));
        EXPECT_EQ(copied.size(), state == owned ? static_cast<std::size_t>(m.count) : 0U);
        EXPECT_EQ(target.pool == array.pool, state != owned);
        for (int at = 0; at < m.count; ++at) {
            const auto [key, value] = target.template fetch<get_at>(at);
            const bool is_moved = state == owned && value != 0;
            EXPECT_EQ(slot_of(key, is_moved ? m.at(at).value : value), m.at(at));
        }
    }
    int sort_model(bool ascending, auto compare)
    {
        return 0 * static_cast<int>(reference_sort(m.slots, m.count, ascending, compare));
    }
    void check_swap() // of pairs, pools stay where they are
    {
        family_type other;
        const auto *pool = array.pool;
        array.template call<swap>(&other);
        EXPECT_EQ(tuple(array.count, array.capacity, other.count), tuple(0, 0, m.count));
        EXPECT_EQ(tuple(array.pool, other.pool == pool),
                  has_pairs ? tuple(pool, !pool) : tuple(nullptr, true));
        EXPECT_EQ(tuple(array.owns_pool + other.owns_pool, array.reversed != 0, other.reversed),
                  tuple(state == owned ? 1 : 0, m.reversed, 0));
        array.template call<swap>(&other);
    }

    void step()
    {
        const qek_word value = draw_value();
        const auto key = key_of<key_type>(random.below(16), value);
        if (state != without) { // the pool has its blocks then
            m.next = word(qek_pool_new(array.pool));
            qek_pool_free(array.pool, item<void>(m.next));
        }
        m.allocations = 0;
        m.fail_from = random.one_in(4) ? random.between(1, 2) : 0;
        told.clear();
        probes.clear();
        const int found = m.search(key).first;
        path = std::exchange(probes, {});
        const int position = m.search(key).second, near = std::min(position, m.count - 1);
        const int index = random.between(-2, m.count + 3), want = random.between(-1, m.count + 24);
        const int first = m.first_index(key), up = want % 2;
        const bool is_stale = has_text && index >= m.count && index < m.capacity();
        const qek_value_fn gone = random.one_in(4) ? nullptr : tell_value;
        const auto at = [&](int place) { return m.get_at(place).value; };
        qek_word made = 99;
        probes.clear();
        const std::function<void()> operations[] = {
            [&] { both<append>(m.append(slot_of(key, value)), key, value); },
            [&] { both<insert_at>(m.insert_at(index, slot_of(key, value)), index, key, value); },
            [&] { both<remove_at>(m.remove_at(index), index); },
            [&] { both<free_at>(m.free_at(index, gone), index, gone); },
            [&] { is_stale ? void() : both<get_at>(m.get_at(index), index); },
            [&] { both<get_first>(m.get_first()); },
            [&] { both<get_last>(m.get_last()); },
            [&] { both<expand>(m.expand(want), want); },
            [&] { both<sort>(sort_model(up != 0, family_type::compare), up); },
            [&] { m.count < 40 ? both<append_array>(m.append_itself(), &array) : void(); },
            [&] { random.one_in(9) ? both<remove_all>(m.remove_all()) : void(); },
            [&] { random.one_in(9) ? both<free_all>(m.free_all(gone), gone) : void(); },
            [&] { both<update>(replace(found, value), key, value); },
            [&] { both<update_at>(replace(index, value), index, value); },
            [&] { both<remove_key>(m.remove_at(found).value, key); },
            [&] { both<free_key>(m.free_at(found, gone), key, gone); },
            [&] { both<find>(at(found), key); },
            [&] { both<find_index>(found, key); },
            [&] { both<bfind>(at(near), key); },
            [&] { both<bfind_index>(near, key); },
            [&] { both<afind>(at(first), key); },
            [&] { both<afind_index>(first, key); },
            [&] { both<entry_find>(found < 0 ? nullptr : array.slots + found, key); },
            [&] { check_clone(); },
            [&] { check_swap(); },
            [&] {
                const int added = found < 0 ? 1 + m.insert_at(position, slot_of(key, value)) : 0;
                both<insert>(added, key, value);
            },
            [&] {
                if (state != without) {
                    const qek_word item = found >= 0 ? at(found) : make(position, key);
                    const bool is_lost = !has_pairs && m.count == 0; // the last index, then
                    out = &made;
                    both<insert_new>(found >= 0 || is_lost ? -1 : position, key, out, prepare);
                    EXPECT_EQ(made, item);
                    out = nullptr;
                }
            },
            [&] {
                if (state != without) {
                    const bool grows = m.expand(m.count + 1) != 0;
                    both<append_new>(grows ? make(m.count, key) : 0, key, prepare);
                }
            },
            [&] {
                bool stores = true;
                if constexpr (has_text) {
                    const auto old = m.get_at(index).key;
                    if (is_stale || (index >= 0 && index < m.count && old.empty())) {
                        return; // such a slot does not keep its place
                    }
                    stores = key.size() <= old.size() || index < 0 || index >= m.count ||
                             m.room(static_cast<int>(key.size() - old.size()));
                }
                both<set_at>(stores ? m.set_at(index, slot_of(key, value)) : 0, index, key, value);
            },
            [&] {
                const auto by_value = [](auto &x, auto &y) {
                    return order_values(x.value, y.value);
                };
                if constexpr (has_pairs) {
                    both<sort_by_value>(sort_model(up != 0, by_value), up, order_values);
                }
            },
            [&] {
                if constexpr (has_pairs) {
                    found < 0 ? m.insert_at(position, {key, 0}) : 0;
                    const allocations faults(m.fail_from, true);
                    const auto *entry = array.template call<entry_insert>(key);
                    EXPECT_EQ(entry, array.slots + position);
                }
            },
        };
        const auto chosen = random.below(std::size(operations));
        const int count = m.count;
        operations[chosen]();
        if constexpr (has_text) { // what a removed one leaves behind the count
            EXPECT_TRUE(m.count != count - 1 || m.capacity() == 0 ||
                        static_cast<int>(array.slots[m.count].key_offset) <= array.keys.length);
        }
        check("operation " + std::to_string(chosen));
    }
    void check(const std::string &place)
    {
        const int live = state == without ? 0 : array.pool->live_count;
        ASSERT_EQ(tuple(array_fault(array), array.count, array.capacity, live),
                  tuple("", m.count, m.capacity(), m.live));
        for (int at = 0; at < (has_text ? m.count : m.capacity()); ++at) { // stale slots, too
            ASSERT_EQ(array.template fetch<get_at>(at), m.at(at)) << place << ", slot " << at;
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << place;
    }
};

template <typename Functions> struct array_families : testing::Test {
};
using families = testing::Types<words, words_x, numbers, wide_numbers, texts>;
TYPED_TEST_SUITE(array_families, families);

TYPED_TEST(array_families, follow_the_model_slot_by_slot)
{
    random_numbers random;
    for (const int state : random.each_below(3)) {
        for (const bool reversed : random.each_below(2)) {
            session<TypeParam> run(random, pool_state(state), reversed);
            for (int step = 0; random.goes_on(step, 3000); ++step) {
                ASSERT_NO_FATAL_FAILURE(run.step()) << "step " << step << ", pool " << state;
            }
        }
    }
}

TYPED_TEST(array_families, sort_longer_arrays_in_the_told_steps)
{
    random_numbers random;
    for (const int size : {9, 30, 1000, 1001}) {
        session<TypeParam> run(random, without, false);
        while (run.m.count < size) {
            const auto key = key_of<typename TypeParam::key>(random.below(16), random.below(64));
            const auto mark = static_cast<qek_word>(run.m.count);
            run.template both<append>(run.m.append(run.slot_of(key, mark)), key, mark);
        }
        run.template both<sort>(run.sort_model(size % 2 != 0, run.array.compare), -(size % 2));
        run.check("sorted");
    }
}

TYPED_TEST(array_families, keep_the_count_of_a_clone_that_found_no_memory)
{
    using array = family<TypeParam>;
    array source, target;
    for (const std::uint32_t value : {9U, 8U, 7U}) {
        source.template call<append>(key_of<typename TypeParam::key>(value, value),
                                     qek_word{value});
    }
    if constexpr (array::has_pairs) {
        source.template call<sort_by_value>(1, nullptr); // changes nothing
        EXPECT_EQ(source.template fetch<get_first>().value, 9U);
    }
    {
        const allocations faults(1, true);
        source.template call<clone>(nullptr, &target, nullptr, nullptr);
    }
    EXPECT_EQ(tuple(target.count, target.slots == nullptr), tuple(3, true));
    EXPECT_EQ(target.template fetch<remove_at>(1).value, 0U);
    EXPECT_EQ(target.count, 0);
}

std::string text_of(const auto &stream) { return {stream.data, stream.data + stream.length}; }

TEST(arrays_of_texts, measure_lengths_by_three_rules)
{
    family<texts> array;
    qek_array_append(&array, "abc", -1, 1);
    qek_array_insert_at(&array, 0, "defgh", 2, 2);
    qek_array_set_at(&array, 0, "xyz", -1, 3);
    qek_array_append(&array, "", -1, 4);
    EXPECT_EQ(tuple(text_of(array.keys), array.slots[2].key_length), tuple("xyzabc", 0));
    EXPECT_EQ(qek_array_afind_index(&array, nullptr, -1), 2);
    EXPECT_EQ(qek_array_afind_index(&array, "abcd", 3), 1);
    qek_array_qsort(&array, 1);
    EXPECT_EQ(qek_array_entry_find(&array, "xyzz", 3)->value, 3U);
    EXPECT_EQ(qek_array_remove(&array, nullptr, -1), 4U);
    qek_array_remove_all(&array);
    EXPECT_EQ(tuple(array.keys.length, array.keys.capacity), tuple(0, 8))
        << "kept for the next keys";
    qek_array_free_all(&array, nullptr);
    EXPECT_EQ(array.keys.data, nullptr);
}

// The slot itself is not spared when offsets move behind the end of an empty key.
TEST(arrays_of_texts, move_a_slot_whose_empty_key_is_replaced)
{
    family<texts> array;
    for (const auto *key : {"ab", "", "cd"}) {
        qek_array_append(&array, key, -1, 5);
    }
    {
        const allocations faults(1, true);
        EXPECT_EQ(qek_array_set_at(&array, 1, std::string(99, 'z').c_str(), 99, 6), 0U);
    }
    EXPECT_EQ(qek_array_set_at(&array, 1, "xyz", 3, 6), 5U);
    EXPECT_EQ(tuple(text_of(array.keys), array_fault(array)), tuple("abxyzcd", "hole"));
    EXPECT_EQ(tuple(array.slots[1].key_offset, array.slots[1].key_length), tuple(5U, 3));
    EXPECT_EQ(array.slots[2].key_offset, 5U);
}

// Lists of keys, how many keys they give, and how these are written as texts and as numbers.
TEST(arrays_of_keys, read_and_write_lists)
{
    const std::string digits = "1,2,3,4,5,6,7,8,1,2,3,4,5,6,7,8"; // all that fits the buffer
    const struct {
        std::string list;
        int count;
        std::string texts, numbers;
    } cases[] = {
        {"", 0, "", ""},
        {" \t", 0, "", ""},
        {",", 1, "", "0"},
        {"12, 13 ", 2, "12,13", "12,13"},
        {",, a", 3, "a", "0,0,0"},
        {"7,,-1,\r\n", 3, "7,,-1", "7,0,-1"},
        {"5x,1 2,--3", 3, "5x,1 2,--3", "5,1,0"},
        {"4294967295,2147483648,", 2, "4294967295,2147483648", "-1,-2147483648"},
        {digits, 16, digits, digits},
    };
    for (const auto &[list, count, as_texts, as_numbers] : cases) {
        family<texts> text_keys;
        family<numbers> number_keys;
        qek_arrayt elements;
        qek_string string{}, one_more{};
        const auto length = static_cast<std::int32_t>(list.size());
        qek_array_from_string(&text_keys, ',', list.data(), length);
        qek_string_copy(&string, "old", 3), qek_string_copy(&one_more, "old", 3);
        qek_array_to_string(&text_keys, ',', &string);
        EXPECT_EQ(tuple(text_of(string), array_fault(text_keys)), tuple(as_texts, ""));
        EXPECT_LE(string.capacity, std::max<int>(15, static_cast<int>(as_texts.size()) | 7));
        qek_arrayd_from_string(&number_keys, ',', list.data(), length);
        qek_string_term(&string);
        qek_string_copy(&string, "old", 3);
        qek_arrayd_to_string(&number_keys, ',', &string);
        EXPECT_EQ(text_of(string), as_numbers);
        qek_arrayt_init(&elements);
        qek_arrayt_from_string(&elements, ',', list.data(), length);
        qek_arrayt_to_string(&elements, ',', &one_more);
        EXPECT_EQ(tuple(text_of(one_more), one_more.capacity), tuple(as_numbers, string.capacity));
        EXPECT_EQ(tuple(text_keys.count, number_keys.count, elements.count),
                  tuple(count, count, count));
        for (int at = 0; at < count; ++at) {
            EXPECT_EQ(text_keys.slots[at].value + number_keys.slots[at].value, 0U);
        }
        qek_arrayt_term(&elements);
        qek_string_term(&string);
        qek_string_term(&one_more);
    }
}

TEST(array_check, rejects_what_is_broken)
{
    const std::pair<const char *, void (*)(qek_array &)> cases[] = {
        {"", [](qek_array &) {}},
        {"count", [](qek_array &a) { a.count = 5; }},
        {"capacity", [](qek_array &a) { a.capacity = 3; }},
        {"slots", [](qek_array &a) { a.capacity = 0; }},
        {"pool", [](qek_array &a) { a.owns_pool = 1; }},
        {"negative length", [](qek_array &a) { a.slots[2].key_length = -1; }},
        {"overlap", [](qek_array &a) { a.slots[1].key_offset = 1; }},
        {"hole", [](qek_array &a) { a.slots[1].key_offset = 3; }},
        {"length of keys", [](qek_array &a) { a.keys.length = 3; }},
        {"capacity of keys", [](qek_array &a) { a.keys.capacity = 4; }},
    };
    for (const auto &[fault, corrupt] : cases) {
        std::uint8_t text[8]{};
        qek_array_entry slots[4]{{2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {0, 0, 0}};
        qek_array array{slots, 3, 4, {text, 4, 8}, nullptr, 0, 0};
        corrupt(array);
        EXPECT_EQ(array_fault(array), fault);
    }
}

} // namespace
