// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What tables and trees have in common, as one suite for all of them.
//
// A family is the functions of one of them by one set of names, and what the suite has to know of
// it: the `key` for a small number, which keys `are_same`, where the caller writes an `order`, how
// pools are lent, and `walk`, which gives elements and pages in the order in which a
// whole-container operation visits them. `fault` names the first invariant that does not hold
// against a model.
#pragma once

#include "support/allocations.h"
#include "support/pools.h"
#include "support/random.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <type_traits>

namespace qek_test {

// The bytes of a key; it passes as what the functions of a family take.
struct any_key {
    std::string bytes;

    template <typename Number> static any_key of(const Number &number)
    {
        return {{reinterpret_cast<const char *>(&number), sizeof number}};
    }
    template <typename Number> Number as() const
    {
        Number number = 0;
        std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }
    operator std::uint32_t() const { return as<std::uint32_t>(); }
    operator std::uint64_t() const { return as<std::uint64_t>(); }
    operator const void *() const { return bytes.data(); }
    bool operator==(const any_key &) const = default;
};

// Literals of the tests stand for words.
constexpr auto as_argument(auto argument)
{
    if constexpr (std::is_same_v<decltype(argument), int>) {
        return static_cast<qek_word>(argument);
    } else {
        return argument;
    }
}

// A key as a caller gives it, who may leave the length to be measured.
struct given_key {
    const char *bytes;
    std::int32_t length;
};

// A function with the key as second argument, or as second and third.
template <auto Function>
constexpr auto keyed = [](auto *of, const auto &key, auto... rest) {
    if constexpr (std::is_same_v<decltype(key), const given_key &>) {
        return Function(of, key.bytes, key.length, as_argument(rest)...);
    } else if constexpr (std::is_invocable_v<decltype(Function), decltype(of), any_key,
                                             decltype(rest)...>) {
        return Function(of, key, as_argument(rest)...);
    } else {
        return Function(of, key, static_cast<std::int32_t>(key.bytes.size()), as_argument(rest)...);
    }
};

// The functions that tables and trees have alike.
#define QEK_KEYED_FUNCTIONS(name, item)                                                            \
    using container = qek_##name;                                                                  \
    using element = qek_##name##_##item;                                                           \
    static constexpr auto initialise = qek_##name##_init;                                          \
    static constexpr auto term = qek_##name##_term;                                                \
    static constexpr auto swap = qek_##name##_swap;                                                \
    static constexpr auto clone = qek_##name##_clone;                                              \
    static constexpr auto element_set = keyed<qek_##name##_##item##_set>;                          \
    static constexpr auto element_get = keyed<qek_##name##_##item##_get>;                          \
    static constexpr auto set = keyed<qek_##name##_set>;                                           \
    static constexpr auto get = keyed<qek_##name##_get>;                                           \
    static constexpr auto insert = keyed<qek_##name##_insert>;                                     \
    static constexpr auto update = keyed<qek_##name##_update>;                                     \
    static constexpr auto find = keyed<qek_##name##_find>;                                         \
    static constexpr auto remove = keyed<qek_##name##_remove>;                                     \
    static constexpr auto remove_all = qek_##name##_remove_all;                                    \
    static constexpr auto free_all = qek_##name##_free_all

template <typename Container> struct text_keys {
    static constexpr std::int16_t orders[] = {0, 1};
    static std::int16_t &order(Container &of) { return of.ignore_case; }
    // From 0 up ascending keys of one length; below 0 short ones, the first of them empty, and ones
    // of about eight bytes that open alike.
    static any_key key(const Container &, int n)
    {
        std::string bytes = n < 0 && n % 2 == 0 ? "bAbAbA" : "";
        for (int rest = -1 - n; rest > 0; rest = (rest - 1) / 5) {
            bytes += "\0aAb\xFF"[(rest - 1) % 5];
        }
        for (int digit = 0; n >= 0 && digit < 4; ++digit) {
            bytes += static_cast<char>('a' + (n >> (12 - 4 * digit)) % 16);
        }
        return {bytes};
    }
    static std::string folded(const Container &of, std::string bytes)
    {
        for (char &byte : bytes) {
            byte = of.ignore_case != 0 && byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32)
                                                                     : byte;
        }
        return bytes;
    }
    static bool are_same(const Container &of, const any_key &a, const any_key &b)
    {
        return folded(of, a.bytes) == folded(of, b.bytes);
    }
};

struct stored_key {
    any_key key;
    qek_word value;
    const void *element;
};
using stored_keys = std::vector<stored_key>;
using words = std::vector<qek_word>;

inline int live(const qek_pool *pool) { return pool == nullptr ? -1 : pool->live_count; }

// A container over pools of its own or over lent ones, with the model beside it.
template <typename Family> struct modelled : Family::container {
    using record = typename Family::container;
    lent_pool lent_elements{sizeof(typename Family::element)};
    lent_pool lent_pages{Family::page_size};
    lent_pool lent_values{sizeof(qek_word)};
    stored_keys model{};   // oldest first
    bool is_intact = true; // nothing was removed since it was empty

    explicit modelled(bool owns = true, bool owns_values = true, std::size_t order = 0)
    {
        std::memset(static_cast<record *>(this), 0xA5, sizeof(record));
        Family::init(this, owns, owns_values);
        EXPECT_EQ(fault(), "");
        EXPECT_EQ(Family::order(*this), Family::orders[0]);
        Family::order(*this) = Family::orders[order];
        EXPECT_TRUE(!owns ||
                    Family::pool(*this)->item_size == int{sizeof(typename Family::element)});
        owns ? void() : Family::lend(*this, lent_elements, lent_pages);
        this->value_pool = owns_values ? this->value_pool : &lent_values;
        this->value_pool->item_size = sizeof(qek_word);
    }
    ~modelled() { Family::term(this); }
    modelled(const modelled &) = delete;
    modelled &operator=(const modelled &) = delete;

    any_key key(int n) const { return Family::key(*this, n); }
    void remember(const any_key &key, qek_word value)
    {
        model.push_back({key, value, Family::element_get(this, key)});
    }
    void store(int from, int to) // with value items
    {
        for (int n = from; n < to; ++n) {
            qek_word value = 0;
            ASSERT_EQ(Family::set(this, key(n), &value, nullptr), 1);
            remember(key(n), value);
        }
    }
    words values() const
    {
        words found;
        for (const qek_word each : Family::walk(*this).first) {
            found.push_back(item<typename Family::element>(each)->value);
        }
        return found;
    }
    std::string fault() const { return Family::fault(*this, model, is_intact); }
};

template <typename Family> struct keyed_suite : testing::Test {
    void SetUp() override { freed.clear(), copied.clear(); }
};
TYPED_TEST_SUITE_P(keyed_suite);

TYPED_TEST_P(keyed_suite, does_what_the_model_does)
{
    using family = TypeParam;
    random_numbers random;
    for (const auto order : random.each_below<std::size_t>(std::size(family::orders))) {
        modelled<family> tested(true, false, order);
        tested.value_pool = nullptr; // values are plain words
        auto &model = tested.model;
        for (int step = 0; random.goes_on(step, 1500); ++step) {
            const int range = random.one_of({10, family::most_keys});
            const any_key key = tested.key(random.between(-range, range));
            const auto at = std::find_if(model.begin(), model.end(), [&](const auto &each) {
                return family::are_same(tested, each.key, key);
            });
            const bool is_known = at != model.end();
            const qek_word old = is_known ? at->value : 0;
            const qek_word value = random.below(4);
            const int choice = random.between(1, 400);
            if (choice == 1) {
                random.one_in(2) ? family::remove_all(&tested) : family::free_all(&tested, nullptr);
                model.clear();
                tested.is_intact = true;
            } else if (choice <= 40) {
                ASSERT_EQ(family::find(&tested, key), is_known);
                ASSERT_EQ(family::get(&tested, key), old);
                ASSERT_EQ(family::element_get(&tested, key), is_known ? at->element : nullptr);
            } else if (choice <= 80) {
                ASSERT_EQ(family::update(&tested, key, value), old);
                is_known ? void(at->value = value) : void();
            } else if (choice <= (step / 500 % 2 == 0 ? 320 : 180)) {
                typename family::element *element = nullptr;
                const bool is_bare = choice % 2 == 0;
                ASSERT_EQ(is_bare ? family::element_set(&tested, key, &element)
                                  : family::insert(&tested, key, value),
                          !is_known);
                ASSERT_EQ(element, is_bare ? family::element_get(&tested, key) : nullptr);
                is_known ? void() : tested.remember(key, is_bare ? 0 : value);
            } else {
                ASSERT_EQ(family::remove(&tested, key), old);
                model.erase(at, at + is_known);
                tested.is_intact &= !is_known;
            }
            ASSERT_EQ(random.is_due(step) ? tested.fault() : "", "") << "step " << step;
            ASSERT_EQ(live(family::pool(tested)), std::ssize(model));
        }
    }
}

TYPED_TEST_P(keyed_suite, makes_value_items)
{
    using family = TypeParam;
    static qek_word value;
    static const modelled<family> *seen;
    for (const bool owns_values : {true, false}) {
        freed.clear();
        modelled<family> tested(true, owns_values);
        seen = &tested;
        const any_key key = tested.key(1);
        const auto init = [](qek_word made) {
            EXPECT_EQ(value, made) << "stored for the caller, not yet in the element";
            EXPECT_EQ(family::get(seen, seen->key(1)), 0U);
            note_free(made);
        };
        EXPECT_EQ(family::set(&tested, key, &value, init), 1);
        const qek_word made = std::exchange(value, 7);
        EXPECT_EQ(family::set(&tested, key, &value, init) + family::insert(&tested, key, 5), 0);
        EXPECT_EQ(std::pair(value, family::get(&tested, key)), std::pair(made, made));
        tested.value_pool->item_size = 0;
        EXPECT_EQ(family::set(&tested, tested.key(2), &value, init), 1);
        EXPECT_EQ(value + family::remove(&tested, tested.key(2)), 0U);
        EXPECT_EQ(family::remove(&tested, key), made);
        EXPECT_EQ(tested.value_pool->live_count, 1) << "passes to the caller";
        EXPECT_EQ(freed, words{made});
    }
}

// On a hundred keys with a value item and a last one with a value of 0.
TYPED_TEST_P(keyed_suite, gives_back_what_is_borrowed_and_calls_for_values)
{
    using family = TypeParam;
    struct way_out {
        void (*go)(modelled<family> *);
        int lent, own, lent_values, own_values; // items left; -1: the pool is gone
        std::size_t calls;
        bool keeps_text;
    };
    std::vector<way_out> ways{
        {[](auto *of) { family::remove(of, of->key(3)); }, 100, 100, 100, 100, 0, true},
        {[](auto *of) { family::remove_all(of); }, 0, 0, 100, 0, 0, true},
        {[](auto *of) { family::free_all(of, note_free); }, 0, 0, 0, 0, 100, false},
        {[](auto *of) { family::free_all(of, nullptr); }, 0, 0, 0, 0, 0, false},
        {[](auto *of) { family::term(of); }, family::left_by_term * 101, -1, 100, -1, 0, false},
    };
    if constexpr (requires { family::free; }) {
        static const modelled<family> *seen;
        static const auto free = [](auto *of, int n) {
            seen = of;
            family::free(of, of->key(n), [](qek_word value) {
                EXPECT_EQ(seen->entry_count, 101) << "before the entry goes";
                note_free(value);
            });
        };
        ways.push_back({[](auto *of) { free(of, 3); }, 100, 100, 99, 100, 1, true});
        ways.push_back({[](auto *of) { free(of, 100); }, 100, 100, 100, 100, 1, true});
        ways.push_back({[](auto *of) { free(of, 101); }, 101, 101, 100, 100, 0, true});
    }
    for (std::size_t at = 0; at < 4 * ways.size(); ++at) {
        SCOPED_TRACE(at);
        const way_out &way = ways[at / 4];
        const bool owns = at % 2 != 0;
        const bool owns_values = at / 2 % 2 != 0;
        modelled<family> tested(owns, owns_values);
        tested.store(0, 100);
        family::insert(&tested, tested.key(100), 0);
        const auto [elements, pages] = family::walk(tested);
        words values = tested.values();
        values.erase(std::find(values.begin(), values.end(), 0));
        freed.clear();
        way.go(&tested);
        EXPECT_EQ(live(family::pool(tested)), owns ? way.own : way.lent);
        EXPECT_EQ(live(tested.value_pool), owns_values ? way.own_values : way.lent_values);
        EXPECT_EQ(freed.size(), way.calls);
        EXPECT_EQ(way.calls == 100 ? freed : values, values);
        if constexpr (requires { tested.keys; }) {
            EXPECT_EQ(tested.keys.capacity > 0, way.keeps_text);
        }
        if (way.own <= 0) { // all went
            const bool are_left = owns || way.lent > 0;
            EXPECT_EQ(tested.lent_elements.given_back(), are_left ? none : elements);
            EXPECT_EQ(tested.lent_pages.given_back(), are_left ? none : pages);
            EXPECT_EQ(tested.lent_values.given_back(),
                      owns_values || way.lent_values > 0 ? none : values);
            EXPECT_EQ(family::slots_of(tested).capacity, 0);
            tested.model.clear();
            EXPECT_EQ(tested.fault(), "");
            way.own == 0 ? tested.store(0, 50) : void(); // on items that hold what they held
            EXPECT_EQ(tested.fault(), "");
        }
    }
}

TYPED_TEST_P(keyed_suite, clones_own_pools_and_translates_values)
{
    using family = TypeParam;
    const std::size_t last_order = std::size(family::orders) - 1;
    for (const bool with_aux : {true, false}) {
        modelled<family> source(true, true, last_order), copy;
        lent_pool aux(4), aux_copy(0);
        qek_pool_new(&aux);
        source.store(0, 100);
        family::remove(&source, source.key(7));
        source.model.erase(source.model.begin() + 7);
        family::insert(&source, source.key(100), 0);
        source.remember(source.key(100), 0);
        family::clone(&source, with_aux ? &aux : nullptr, &copy, with_aux ? &aux_copy : nullptr,
                      note_copy);
        EXPECT_EQ(aux_copy.live_count, with_aux);
        EXPECT_EQ(family::order(copy), family::orders[0]) << "stays with its record";
        family::order(copy) = family::orders[last_order];
        const words from = source.values();
        const words to = copy.values();
        for (std::size_t at = 0; at < 100; ++at) {
            EXPECT_EQ(copied.at(at), std::pair(from[at], to.at(at)));
            EXPECT_EQ(from[at] == to[at], from[at] == 0);
        }
        for (const stored_key &each : source.model) {
            copy.remember(each.key, family::get(&copy, each.key));
            EXPECT_NE(copy.model.back().element, each.element);
        }
        source.is_intact = copy.is_intact = false;
        EXPECT_EQ(source.fault() + copy.fault(), "");
        copied.clear();
    }
    for (const auto &[stored, removed] : {std::pair(0, 0), {7, 0}, {700, 0}, {700, 1}}) {
        modelled<family> source(true, false), copy(true, false);
        source.store(0, stored);
        if (removed != 0) {
            family::remove(&source, source.key(7));
            source.model.erase(source.model.begin() + 7);
        }
        family::clone(&source, &source.lent_values, &copy, nullptr, note_copy);
        EXPECT_EQ(copy.value_pool, &source.lent_values);
        EXPECT_EQ(copy.values(), source.values());
        EXPECT_EQ(family::slots_of(copy).capacity, family::slots_of(source).capacity);
        EXPECT_EQ(copied.size(), 0U);
        for (const stored_key &each : source.model) {
            copy.remember(each.key, family::get(&copy, each.key));
            EXPECT_NE(copy.model.back().element, each.element);
        }
        source.is_intact = copy.is_intact = false;
        EXPECT_EQ(source.fault() + copy.fault(), "");
    }
    modelled<family> lent(false, false), copy(false, false); // can be copied while it is empty
    family::clone(&lent, nullptr, &copy, nullptr, nullptr);
    EXPECT_EQ(copy.fault(), "");
}

TYPED_TEST_P(keyed_suite, swaps_all_but_the_order)
{
    using family = TypeParam;
    const std::size_t last_order = std::size(family::orders) - 1;
    for (const auto &[own_keys, lent_keys] : {std::pair(0, 600), {5, 0}, {600, 5}, {40, 700}}) {
        modelled<family> own, lent(false, false, last_order);
        own.store(0, own_keys);
        lent.store(1000, 1000 + lent_keys);
        for (const bool is_back : {false, true}) {
            family::swap(&own, &lent);
            std::swap(own.model, lent.model);
            EXPECT_EQ(family::pool(own) == &lent.lent_elements, !is_back);
            EXPECT_EQ(own.value_pool == &lent.lent_values, !is_back);
            EXPECT_TRUE(own.owns_value_pool == is_back && lent.owns_value_pool != is_back);
            EXPECT_EQ(family::order(own), family::orders[0]);
            EXPECT_EQ(family::order(lent), family::orders[last_order]);
            for (auto *each : {&own, &lent}) {
                EXPECT_EQ(each->fault(), "");
                each->store(is_back ? 2000 : 3000, is_back ? 2100 : 3100);
                EXPECT_EQ(each->fault(), "");
            }
        }
    }
}

REGISTER_TYPED_TEST_SUITE_P(keyed_suite, does_what_the_model_does, makes_value_items,
                            gives_back_what_is_borrowed_and_calls_for_values,
                            clones_own_pools_and_translates_values, swaps_all_but_the_order);

// For those with byte strings as keys.
template <typename Family> struct text_keyed_suite : testing::Test {
};
TYPED_TEST_SUITE_P(text_keyed_suite);

TYPED_TEST_P(text_keyed_suite, takes_keys_with_zeros_and_without_a_length)
{
    using family = TypeParam;
    using key = given_key;
    modelled<family> of;
    EXPECT_EQ(family::insert(&of, key{"a\0b", 3}, 1) + family::insert(&of, key{"a\0b", -1}, 2), 2);
    EXPECT_EQ(family::insert(&of, key{nullptr, -5}, 3) + family::insert(&of, key{"x", 0}, 4), 1);
    EXPECT_EQ(family::update(&of, key{"a", 1}, 5), 2U);
    EXPECT_EQ(family::get(&of, key{"a\0c", -1}), 5U);
    EXPECT_EQ(family::find(&of, key{"a\0c", 3}), 0);
    if constexpr (requires { family::bfind; }) {
        EXPECT_EQ(family::bfind(&of, key{"a\0a", 3})->value, 1U);
        EXPECT_EQ(family::node_find(&of, key{"a\0c", 3}), nullptr);
    }
    EXPECT_EQ(of.keys.length, 4);
}

TYPED_TEST_P(text_keyed_suite, stores_an_empty_key_when_its_text_finds_no_room)
{
    using family = TypeParam;
    modelled<family> of;
    of.store(0, 7);
    typename family::element *element = nullptr;
    const any_key key{std::string(100, 'z')};
    const allocations faults(1, true);
    EXPECT_EQ(family::element_set(&of, key, &element), 1);
    EXPECT_EQ(static_cast<std::int32_t>(element->key_offset), of.keys.length);
    EXPECT_EQ(element->key_length, 0);
    EXPECT_EQ(family::find(&of, key), 0);
    if constexpr (requires { family::last; }) {
        EXPECT_EQ(family::last(&of), element);
    } else {
        EXPECT_EQ(element->hash, family::number(of, key));
    }
}

// Each key differs from the plain one of its length in a single byte. Where there are few keys, many
// of those pairs share a bucket, and a store compares the text alone.
TYPED_TEST_P(text_keyed_suite, tells_keys_apart_by_each_byte)
{
    using family = TypeParam;
    std::vector<any_key> all;
    for (const std::size_t length : {1U, 7U, 8U, 9U, 15U, 16U, 17U, 31U, 32U, 33U, 40U}) {
        all.push_back({std::string(length, 'k')});
        for (std::size_t at = 0; at < length; ++at) {
            for (const char other : "\xF0mnopqrst") {
                all.push_back({std::string(length, 'k')});
                all.back().bytes[at] = other;
            }
        }
    }
    for (const std::int16_t order : family::orders) {
        modelled<family> of, few;
        family::order(of) = family::order(few) = order;
        qek_word value = 0;
        for (const any_key &key : all) {
            const bool is_plain = key.bytes == std::string(key.bytes.size(), 'k');
            EXPECT_EQ(family::insert(&of, key, ++value), 1) << key.bytes;
            EXPECT_EQ(family::insert(&of, key, 0), 0) << key.bytes;
            EXPECT_EQ(family::insert(&few, key, 1), 1) << key.bytes;
            EXPECT_TRUE(is_plain || family::remove(&few, key) == 1) << key.bytes;
            of.remember(key, value);
        }
        EXPECT_EQ(of.fault(), "");
        value = 0;
        for (any_key key : all) {
            const std::string longer = key.bytes + '\xFF'; // of which only the key is looked at
            const given_key given{longer.data(), static_cast<std::int32_t>(key.bytes.size())};
            EXPECT_EQ(family::get(&of, given), ++value) << key.bytes;
            key.bytes.back() = key.bytes.back() == 'k' ? 'K' : key.bytes.back();
            const bool is_same = order != 0 || key.bytes.back() != 'K';
            EXPECT_EQ(family::get(&of, key), is_same ? value : 0) << key.bytes;
            key.bytes.front() = key.bytes.front() == 'k' ? 'K' : key.bytes.front();
            EXPECT_TRUE(order == 0 || family::get(&of, key) == value) << key.bytes;
        }
    }
}

REGISTER_TYPED_TEST_SUITE_P(text_keyed_suite, tells_keys_apart_by_each_byte,
                            takes_keys_with_zeros_and_without_a_length,
                            stores_an_empty_key_when_its_text_finds_no_room);

} // namespace qek_test
