// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "list/list_check.h"
#include "support/allocations.h"
#include "support/platform.h"
#include "support/pools.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <tuple>

using namespace std::string_literals;
using namespace qek_test;

namespace {

// clang-format off
enum call { init, term, swap_with, clone, add_head, add_tail, add_head_new, add_tail_new,
            add_head_list, add_tail_list, insert_before, insert_after, head_position, tail_position,
            get_head, get_tail, get_prev, get_next, get_at, remove_head, remove_tail, remove_at,
            remove_all };
template <typename List> constexpr auto calls = std::make_tuple(
    qek_list_init, qek_list_term, qek_list_swap, qek_list_clone, qek_list_add_head,
    qek_list_add_tail, qek_list_add_head_new, qek_list_add_tail_new, qek_list_add_head_list,
    qek_list_add_tail_list, qek_list_insert_before, qek_list_insert_after,
    qek_list_get_head_position, qek_list_get_tail_position, qek_list_get_head, qek_list_get_tail,
    qek_list_get_prev, qek_list_get_next, qek_list_get_at, qek_list_remove_head,
    qek_list_remove_tail, qek_list_remove_at, qek_list_remove_all);
template <> constexpr auto calls<qek_lists> = std::make_tuple(
    qek_lists_init, qek_lists_term, qek_lists_swap, qek_lists_clone, qek_lists_add_head,
    qek_lists_add_tail, qek_lists_add_head_new, qek_lists_add_tail_new, qek_lists_add_head_list,
    qek_lists_add_tail_list, qek_lists_insert_before, qek_lists_insert_after,
    qek_lists_get_head_position, qek_lists_get_tail_position, qek_lists_get_head,
    qek_lists_get_tail, qek_lists_get_prev, qek_lists_get_next, qek_lists_get_at,
    qek_lists_remove_head, qek_lists_remove_tail, qek_lists_remove_at, qek_lists_remove_all);
// clang-format on

// `run` calls one of these functions, `add` with a key and `read` with outputs for one as far as
// the list has keys.
template <typename List> constexpr bool has_keys = std::is_same_v<List, qek_list>;
using element = std::pair<std::string, qek_word>;

template <call Which, typename List, typename... At> auto run(List &list, At... at)
{
    return std::get<Which>(calls<List>)(&list, at...);
}
template <call Which, typename List, typename Value, typename... At>
auto add(List &list, const std::string &key, Value value, At... at)
{
    if constexpr (has_keys<List>) {
        const bool is_measured = value == Value{} && key.find('\0') == key.npos;
        const auto length = is_measured ? -7 : static_cast<int>(key.size());
        const char *bytes = key.empty() && !is_measured ? nullptr : key.data();
        return run<Which>(list, at..., bytes, length, value);
    } else {
        return run<Which>(list, at..., value);
    }
}
template <call Which, typename List, typename... At> element read(List &list, At... at)
{
    if constexpr (has_keys<List>) {
        uint8_t *key = nullptr;
        int length = -9;
        const auto value = run<Which>(list, at..., &key, &length);
        return {std::string(key, key + length), value};
    } else {
        return {"", run<Which>(list, at...)};
    }
}
std::vector<qek_word> words_of(const auto &list)
{
    std::vector<qek_word> words;
    for (const auto *at = list.head; at != nullptr; at = at->next) {
        if constexpr (requires { at->items; }) {
            words.insert(words.end(), at->items, at->items + at->used);
        } else {
            words.push_back(at->value);
        }
    }
    return words;
}
int next_number = 0;
void write_next(qek_word value) { *item<int>(value) = ++next_number; }

template <typename List> struct modelled {
    List list;
    std::vector<element> model;

    auto *at(int64_t index) const
    {
        auto *found = list.head;
        for (; index > 0; --index) {
            found = found->next;
        }
        return found;
    }
    void step(random_numbers &random)
    {
        const int size = static_cast<int>(model.size()), any = random.between(0, size - (size > 0));
        const auto key = has_keys<List> ? random.one_of({""s, "a"s, "ab"s, "b"s, "a\0c"s}) : "";
        const qek_word value = random.below(4);
        const auto added = [&](int index, qek_word held, const void *node) {
            model.insert(model.begin() + index, {key, held});
            ASSERT_TRUE(node == at(index) || node == &list);
        };
        const auto removed = [&](int index, qek_word held) {
            ASSERT_EQ(held, model[size_t(index)].second);
            model.erase(model.begin() + index);
        };
        const std::function<void()> actions[] = {
            [&] { added(0, value, add<add_head>(list, key, value)); },
            [&] { added(size, value, add<add_tail>(list, key, value)); },
            [&] { added(0, word(add<add_head_new>(list, key, write_next)), &list); },
            [&] { added(size, word(add<add_tail_new>(list, key, write_next)), &list); },
            [&] { added(any, value, add<insert_before>(list, key, value, at(any))); },
            [&] { added(any + 1, value, add<insert_after>(list, key, value, at(any))); },
            [&] { removed(0, run<remove_head>(list)); },
            [&] { removed(size - 1, run<remove_tail>(list)); },
            [&] { removed(any, run<remove_at>(list, at(any))); },
        };
        actions[size == 0 ? random.between(0, 3) : random.between(size > 20 ? 6 : 0, 8)]();
    }
    template <call Get> void check_walk(auto *position, const std::vector<element> &elements)
    {
        for (const element &each : elements) {
            ASSERT_EQ(read<get_at>(list, position), each);
            ASSERT_EQ(read<Get>(list, &position), each);
        }
        ASSERT_EQ(read<Get>(list, &position), read<get_at>(list, position));
        ASSERT_EQ(read<get_at>(list, position), element());
    }
    void check()
    {
        ASSERT_EQ(list_fault(list), "");
        check_walk<get_next>(run<head_position>(list), model);
        check_walk<get_prev>(run<tail_position>(list), {model.rbegin(), model.rend()});
        ASSERT_EQ(read<get_head>(list), model.empty() ? element() : model.front());
        ASSERT_EQ(read<get_tail>(list), model.empty() ? element() : model.back());
        const auto place = std::ranges::find_if(model, [&](const element &held) {
            return has_keys<List> ? held.first == "a\0c"s : held.second == 1;
        });
        const auto *told = place == model.end() ? nullptr : at(place - model.begin());
        if constexpr (has_keys<List>) {
            ASSERT_EQ(qek_list_find(&list, "a\0c", 3), told);
        } else {
            ASSERT_EQ(qek_lists_find_at(&list, 1), told);
        }
    }
};

template <typename List> struct lists : testing::Test {
    lent_pool nodes{sizeof(*List::head)}, values{sizeof(int)};

    void init_list(List &list, bool own_nodes, bool own_values)
    {
        run<init>(list, own_nodes, own_values);
        list.node_pool = own_nodes ? list.node_pool : &nodes;
        list.value_pool = own_values ? list.value_pool : &values;
        list.value_pool->item_size = sizeof(int);
    }
};
using list_families = testing::Types<qek_list, qek_lists>;
TYPED_TEST_SUITE(lists, list_families);

TYPED_TEST(lists, behave_as_a_model)
{
    random_numbers random;
    for (const bool own : random.each_below(2)) {
        modelled<TypeParam> tested;
        TypeParam &list = tested.list, other;
        this->init_list(list, own, own);
        for (int step = 0; random.goes_on(step, 1500); ++step) {
            ASSERT_NO_FATAL_FAILURE(tested.step(random));
            ASSERT_NO_FATAL_FAILURE(tested.check());
        }
        EXPECT_EQ(list.node_pool->live_count, list.count);
        auto words = words_of(list), twice = words;
        twice.push_back(9);
        twice.insert(twice.end(), words.begin(), words.end());
        run<init>(other, 1, 0);
        run<add_head_list>(list, &other);
        add<add_tail>(other, "", qek_word{9});
        run<add_head_list>(other, &list);
        run<add_tail_list>(other, &list);
        run<swap_with>(list, &other);
        EXPECT_EQ(words_of(list), twice);
        EXPECT_EQ(list_fault(list), "");
        run<term>(list);
        run<swap_with>(list, &other);
        ASSERT_NO_FATAL_FAILURE(tested.check());
        run<term>(list);
        EXPECT_TRUE(own ? list.node_pool == nullptr && list.value_pool == nullptr
                        : list.node_pool == &this->nodes && list.value_pool == &this->values);
        EXPECT_EQ(list.owns_node_pool + list.owns_value_pool, 0);
    }
}

// A pool without item size gives none: no node is nothing at all, no item is a node with 0.
TYPED_TEST(lists, take_what_the_pools_give)
{
    TypeParam list;
    run<init>(list, 1, 1);
    EXPECT_EQ(add<add_head_new>(list, "key", write_next), nullptr);
    EXPECT_EQ(add<add_tail_new>(list, "key", write_next), nullptr);
    EXPECT_TRUE(list.count == 2 && list.head->value == 0 && list.tail->value == 0);
    list.value_pool->item_size = sizeof(int);
    EXPECT_NE(add<add_tail_new>(list, "key", qek_value_fn{}), nullptr);
    auto *position = list.head;
    list.node_pool->item_size = 0;
    EXPECT_EQ(add<add_head_new>(list, "key", write_next), nullptr);
    EXPECT_EQ(add<add_head>(list, "key", qek_word{5}), nullptr);
    EXPECT_EQ(add<insert_after>(list, "key", qek_word{5}, position), nullptr);
    EXPECT_EQ(run<remove_at>(list, position->prev), 0U);
    EXPECT_TRUE(list.count == 3 && list.value_pool->live_count == 1 && list_fault(list).empty());
    run<remove_all>(list);
    EXPECT_EQ(list.value_pool->live_count, has_keys<TypeParam> ? 1 : 0);
    EXPECT_EQ(run<remove_head>(list) + run<remove_tail>(list), 0U);
    EXPECT_EQ(run<remove_at>(list, position), 0U) << "not looked at in an empty list";
    run<term>(list);
}

TYPED_TEST(lists, fault_at_a_null_position_and_where_no_copy_can_be_made)
{
    if (!can_fork) {
        GTEST_SKIP() << "needs fork";
    }
    TypeParam list, copy;
    this->init_list(list, false, true);
    run<init>(copy, 0, 1);
    auto *none = list.head;
    add<add_tail>(list, "key", qek_word{5});
    EXPECT_DEATH(add<insert_before>(list, "key", qek_word{6}, none), "");
    EXPECT_DEATH(add<insert_after>(list, "key", qek_word{6}, none), "");
    EXPECT_DEATH(run<clone>(list, nullptr, &copy, nullptr, nullptr), "");
    run<remove_all>(list);
    run<term>(list);
    run<term>(copy);
}

// Own pools are copied with the holes in them, lent ones shared. Only an empty list is copied whose
// nodes are lent or have keys.
TYPED_TEST(lists, clone)
{
    for (const int own : {0, 1, 2, 3}) {
        const bool own_nodes = own & 1, own_values = own & 2;
        TypeParam from, to;
        lent_pool beside(1), beside_copy(0);
        qek_pool_new(&beside);
        run<init>(to, own_nodes, own_values);
        this->init_list(from, own_nodes, own_values);
        for (int count = 0; count < 80; ++count) {
            add<add_head_new>(from, "key", write_next);
            qek_pool_free(from.value_pool, item(count % 2 == 0 ? 0 : run<remove_tail>(from)));
        }
        add<add_tail>(from, "", qek_word{0});
        if (has_keys<TypeParam> || !own_nodes) {
            run<remove_all>(from);
        }
        copied.clear();
        run<clone>(from, &beside, &to, &beside_copy, note_copy);
        const auto source = words_of(from), target = words_of(to);
        decltype(copied) told;
        for (size_t at = 0; at < source.size(); ++at) {
            told.emplace_back(source[at], target.at(at));
            EXPECT_EQ(source[at] == target[at], !own_values || source[at] == 0);
            EXPECT_TRUE(source[at] == 0 || *item<int>(source[at]) == *item<int>(target[at]));
        }
        EXPECT_EQ(copied, own_values ? told : decltype(told)());
        EXPECT_EQ(to.node_pool == from.node_pool, !own_nodes);
        EXPECT_EQ(to.value_pool == from.value_pool, !own_values);
        EXPECT_EQ(to.value_pool->live_count, from.value_pool->live_count);
        EXPECT_EQ(beside_copy.live_count, 1);
        run<term>(from);
        add<add_head>(to, "key", qek_word{0}); // takes no node that is in use
        EXPECT_EQ(list_fault(to), "");
        run<term>(to);
    }
}

// 70 words, three blocks of the unrolled list. They stand for items, into which no release looks.
template <typename List, typename Add, typename Release>
void check_release(void (*init_list)(List *, int, int), Add add_word, Release release,
                   void (*end)(List *), bool frees = false, int own_nodes = 0, int own_values = 0)
{
    List list;
    lent_pool nodes(sizeof *list.head), values(1);
    init_list(&list, own_nodes, own_values);
    list.node_pool = own_nodes ? list.node_pool : &nodes;
    list.value_pool = own_values ? list.value_pool : &values;
    list.value_pool->item_size = 1;
    for (qek_word value = 0; value < 70; ++value) {
        add_word(&list, value % 5);
    }
    std::vector<qek_word> told_nodes, told_values = words_of(list);
    std::erase(told_values, 0);
    for (auto *at = list.head; at != nullptr && !own_nodes; at = at->next) {
        told_nodes.push_back(word(at));
    }
    freed.clear();
    qek_pool_new(list.value_pool);
    release(&list);
    EXPECT_EQ(nodes.given_back(), told_nodes);
    EXPECT_EQ(values.given_back(), frees && !own_values ? told_values : none);
    EXPECT_TRUE(freed.empty() || freed == told_values);
    EXPECT_TRUE(list.head == nullptr && list.tail == nullptr && list.count == 0);
    EXPECT_EQ(list.node_pool->live_count + (own_values ? list.value_pool->live_count : 0), 0);
    end(&list);
}

void add_keyed(qek_list *list, qek_word value) { qek_list_add_head(list, "key", 2, value); }

TEST(released_lists, give_back_from_head_to_tail)
{
    check_release(qek_list_init, add_keyed, qek_list_term, qek_list_term);
    check_release(qek_list_init, add_keyed, qek_list_remove_all, qek_list_term);
    check_release(qek_lists_init, qek_lists_add_head, qek_lists_term, qek_lists_term);
    check_release(qek_lists_init, qek_lists_add_head, qek_lists_remove_all, qek_lists_term);
    check_release(qek_listx_init, qek_listx_add_head, qek_listx_term, qek_listx_term);
    check_release(qek_listx_init, qek_listx_add_head, qek_listx_remove_all, qek_listx_term);
    for (int way = 0; way < 8; ++way) {
        const auto free_all = [=](auto function) {
            return [=](auto *list) {
                using node = std::remove_pointer_t<decltype(list->head)>;
                list->head = way == 7 ? item<node>(1) : list->head; // nothing to do: not looked at
                function(list, way < 4 ? note_free : nullptr);
                EXPECT_EQ(freed.empty(), way >= 4);
            };
        };
        check_release(qek_lists_init, qek_lists_add_head, free_all(qek_lists_free_all),
                      qek_lists_term, true, way & 1, way & 2);
        check_release(qek_listx_init, qek_listx_add_head, free_all(qek_listx_free_all),
                      qek_listx_term, true, way & 1, way & 2);
    }
}

TEST(plain_list, hands_the_probe_to_the_comparison)
{
    qek_lists list;
    qek_lists_init(&list, 1, 0);
    qek_lists_add_tail(&list, 1);
    const auto *second = qek_lists_add_tail(&list, 20);
    const auto by = [](qek_word value, qek_word probe) { return value - probe == 11 ? 0 : -1; };
    const auto by_x = [](qek_word x, qek_word value, qek_word probe) {
        return value + 3 * x - probe == 35 ? 0 : 1;
    };
    EXPECT_EQ(qek_lists_find(&list, 9, by), second);
    EXPECT_EQ(qek_lists_find_x(&list, 8, 9, by_x), second);
    EXPECT_EQ(qek_lists_find(&list, 8, by), nullptr);
    EXPECT_EQ(qek_lists_find(&list, 9, nullptr), nullptr);
    EXPECT_EQ(qek_lists_find_x(&list, 8, 9, nullptr), nullptr);
    qek_lists_term(&list);
}

struct keyed_list : testing::Test {
    qek_list list;

    keyed_list() { qek_list_init(&list, 1, 0); }
    ~keyed_list() override { qek_list_term(&list); }
};

// An empty key stored before the removed one, at the same place, stays there.
TEST_F(keyed_list, moves_the_keys_behind_a_removed_one_down)
{
    qek_list_from_string(&list, ',', "x,,yz,,v", 8);
    auto *removed = qek_list_find(&list, "yz", 2);
    qek_list_remove_at(&list, removed);
    EXPECT_TRUE(removed->key_offset == 0 && removed->key_length == 0);
    std::vector<uint32_t> offsets;
    for (const auto *at = list.head; at != nullptr; at = at->next) {
        offsets.push_back(at->key_offset);
    }
    EXPECT_THAT(offsets, testing::ElementsAre(0, 1, 1, 1));
}

TEST_F(keyed_list, is_read_from_text_and_written_as_text)
{
    const std::string all = "a|a|a|a|a|a|a|a|a|a|a|a|a|a|a|a"; // that fits the buffer
    const std::tuple<char, std::string, std::vector<std::string>, std::string> cases[] = {
        {',', "a, b ,,c,", {"a", "b", "", "c"}, "a,b,,c"},
        {',', "", {}, ""},
        {',', ",\t\r\n , a", {"", "", "a"}, "a"},
        {',', "a,, ", {"a", ""}, "a,"},
        {',', "\v, \0b,c,\0d"s, {"\v", "", "c"}, "\v,,c"},
        {'a', "a", {""}, ""},
        {'\0', "a\0b"s, {"a", "b"}, "a\0b"s},
        {'|', all, std::vector<std::string>(16, "a"), all},
    };
    for (const auto &[letter, text, keys, written] : cases) {
        const auto separator = static_cast<uint8_t>(letter);
        qek_list_from_string(&list, separator, text.data(), static_cast<int>(text.size()));
        qek_list_from_string(&list, separator, text.data(), -1); // not measured: adds nothing
        std::vector<std::string> found;
        for (auto *at = list.head; at != nullptr;) {
            EXPECT_EQ(at->value, 0U);
            found.push_back(read<get_next>(list, &at).first);
        }
        EXPECT_EQ(found, keys) << text;
        qek_string target;
        qek_string_init(&target);
        qek_string_append(&target, "old", 3);
        const allocations watch;
        qek_list_to_string(&list, separator, &target);
        EXPECT_LE(watch.count(), 1);
        EXPECT_LE(target.capacity, std::max<int>(15, static_cast<int>(written.size()) | 7));
        EXPECT_EQ(std::string(target.data, target.data + target.length), written);
        qek_string_term(&target);
        qek_list_remove_all(&list);
    }
}

TEST_F(keyed_list, is_rejected_when_broken)
{
    qek_list_from_string(&list, ',', "a,,bc", 5);
    auto &head = *list.head, &middle = *head.next;
    const auto fault_with = [this](auto &field, std::remove_reference_t<decltype(field)> value) {
        std::swap(field, value);
        const auto fault = list_fault(list);
        field = value;
        return fault;
    };
    EXPECT_EQ(fault_with(middle.prev, list.tail), "prev");
    EXPECT_EQ(fault_with(list.tail, &middle), "tail");
    EXPECT_EQ(fault_with(list.count, 4), "count");
    EXPECT_EQ(fault_with(head.key_offset, 1), "gap or overlap");
    EXPECT_EQ(fault_with(middle.key_offset, 4), "empty key");
    EXPECT_EQ(fault_with(middle.key_length, -1), "empty key");
    EXPECT_EQ(fault_with(list.keys.length, 4), "keys.length");
    EXPECT_EQ(list_fault(list), "");
}

} // namespace
