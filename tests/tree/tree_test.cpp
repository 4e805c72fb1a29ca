// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "support/pools.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

using namespace qek_test;

namespace {

using entry = qek_tree_entry;

// Where an entry stands: 1 for the root, then its number among its siblings on each level. In this
// order entries stand in pre-order.
using way = std::vector<int>;

bool leads_over(const way &top, const way &to) // or ends there
{
    return std::ranges::mismatch(top, to).in1 == top.end();
}

int difference(const way &a, const way &b)
{
    const auto [left, right] = std::ranges::mismatch(a, b);
    const bool is_over = left == a.end() || right == b.end();
    return is_over ? static_cast<int>(std::ssize(a) - std::ssize(b)) : *left - *right;
}

// A value that leaves `b` when divided by `a` matches; the context is added first.
int is_residue(entry *at, qek_word a, qek_word b) { return at->value % a == b ? 0 : -3; }
int is_residue_x(entry *at, qek_word context, qek_word a, qek_word b)
{
    return (at->value + context) % a == b ? 0 : 3;
}

struct general_tree : testing::Test {
    qek_tree tree;
    std::map<const entry *, std::vector<entry *>> children; // the model
    std::map<way, entry *> places;                          // numbered anew after every change

    general_tree() { qek_tree_init(&tree, 1, 1); }
    ~general_tree() override { qek_tree_term(&tree); }

    void number(entry *at, way to)
    {
        places[to] = at;
        to.push_back(0);
        for (entry *child : children[at]) {
            ++to.back();
            number(child, to);
        }
    }
    entry *number_anew_and_choose(random_numbers &random)
    {
        places.clear();
        number(&tree.root, {1});
        const int last = static_cast<int>(places.size()) - 1;
        return std::next(places.begin(), random.between(0, last))->second;
    }
    void step(random_numbers &random)
    {
        entry *moved = number_anew_and_choose(random);
        if (moved == &tree.root || (places.size() < 25 && random.one_in(2))) {
            moved = qek_tree_entry_new(&tree);
            moved->value = places.size();
        } else {
            std::erase(children[moved->parent], moved);
            qek_tree_entry_remove(&tree, moved);
            ASSERT_TRUE(!moved->parent && !moved->prev && !moved->next);
        }
        entry *parent = number_anew_and_choose(random);
        auto &beside = children[parent];
        const auto place = beside.begin() + random.between(0, static_cast<int>(beside.size()));
        place == beside.end() ? qek_tree_entry_append(&tree, parent, moved)
                              : qek_tree_entry_insert(&tree, *place, moved);
        beside.insert(place, moved);
        number_anew_and_choose(random);
    }
    void check_links(const entry *each, way to)
    {
        const auto &below = children[each];
        ASSERT_EQ(each->first_child, below.empty() ? nullptr : below.front());
        ASSERT_EQ(qek_tree_entry_last(each), below.empty() ? nullptr : below.back());
        for (size_t child = 0; child < below.size(); ++child) {
            ASSERT_EQ(below[child]->parent, each);
            ASSERT_EQ(below[child]->next, below[(child + 1) % below.size()]);
            ASSERT_EQ(below[child]->next->prev, below[child]);
        }
        ++to.back();
        ASSERT_EQ(qek_tree_entry_next(each), places.contains(to) ? places[to] : nullptr);
        to.back() -= 2;
        ASSERT_EQ(qek_tree_entry_prev(each), places.contains(to) ? places[to] : nullptr);
    }

    // What there is to ask about `place` within `top`.
    void check_walks(const way &top_way, std::map<way, entry *>::iterator place, qek_word a,
                     qek_word b)
    {
        const entry *top = places[top_way], *each = place->second;
        const auto end_of = [&](const way &over) {
            return std::find_if(place, places.end(),
                                [&](const auto &other) { return !leads_over(over, other.first); });
        };
        const auto end = end_of(top_way), after = top == each ? end : end_of(place->first);
        const auto entry_at = [&](auto at) { return at == end ? nullptr : at->second; };
        ASSERT_EQ(qek_tree_entry_iter_next(top, each), entry_at(++place));
        ASSERT_EQ(qek_tree_entry_find_next(top, each), entry_at(after));
        if (top == &tree.root) { // which ends what no other top does
            ASSERT_EQ(qek_tree_entry_find_next(nullptr, each), entry_at(after));
        }
        while (place != end && place->second->value % a != b) {
            ++place;
        }
        const qek_word c = (b + 1) % a;
        ASSERT_EQ(qek_tree_entry_find(top, each, a, b, is_residue), entry_at(place));
        ASSERT_EQ(qek_tree_entry_find_x(top, each, 1, a, c, is_residue_x), entry_at(place));
        const entry *above = each->parent;
        while (above != nullptr && above != top && above->value % a != b) {
            above = above->parent;
        }
        above = above == top ? nullptr : above;
        ASSERT_EQ(qek_tree_entry_find_parent(top, each, a, b, is_residue), above);
        ASSERT_EQ(qek_tree_entry_find_parent_x(top, each, 1, a, c, is_residue_x), above);
    }
};

TEST_F(general_tree, is_walked_searched_and_ordered_as_its_model)
{
    random_numbers random;
    for (int round = 0; random.goes_on(round, 80); ++round) {
        ASSERT_NO_FATAL_FAILURE(step(random));
        ASSERT_EQ(tree.entry_count, std::ssize(places) - 1);
        const qek_word a = random.below(4) + 1, b = random.below(a);
        for (auto place = places.begin(); place != places.end(); ++place) {
            const auto &[to, each] = *place;
            ASSERT_NO_FATAL_FAILURE(check_links(each, to));
            for (const auto &[top_way, top] : places) {
                const bool is_within = leads_over(top_way, to);
                ASSERT_EQ(qek_tree_entry_find_child(top, each), is_within && top != each);
                ASSERT_EQ(qek_tree_entry_compare(top, each), difference(top_way, to));
                if (is_within) {
                    ASSERT_NO_FATAL_FAILURE(check_walks(top_way, place, a, b));
                }
            }
        }
    }
}

TEST_F(general_tree, leaves_alone_what_is_not_attached)
{
    entry *loose = qek_tree_entry_new(&tree), *below = qek_tree_entry_new(&tree);
    qek_tree_entry_insert(&tree, nullptr, loose);
    qek_tree_entry_remove(&tree, nullptr);
    qek_tree_entry_remove(&tree, loose);
    EXPECT_TRUE(tree.entry_count == 0 && loose->parent == nullptr);
    qek_tree_entry_append(&tree, loose, below);
    qek_tree_entry_append(&tree, &tree.root, loose);
    qek_tree_entry_remove(&tree, loose);
    EXPECT_TRUE(tree.entry_count == 1 && loose->first_child == below) << "goes along uncounted";
    tree.entry_pool->item_size = 0;
    EXPECT_EQ(qek_tree_entry_new(&tree), nullptr);
}

// Each letter of a path is a key. An entry has its letter in its value item.
char next_letter;
void write_letter(qek_word value)
{
    freed.push_back(value);
    *item<char>(value) = next_letter;
}
int has_letter(entry *at, qek_word key, qek_word length)
{
    return length == 1 && at->value != 0 && *item<char>(at->value) == *item<char>(key) ? 0 : 1;
}
int has_letter_x(entry *at, qek_word context, qek_word key, qek_word length)
{
    return context == 42 ? has_letter(at, key, length) : 1;
}

TEST_F(general_tree, finds_and_builds_paths)
{
    // Path, entries made for it, and the letters down to the last one, . for an entry without.
    const std::tuple<std::string, int, std::string> cases[] = {
        {"", 0, ""},       {"a", 1, "a"},    {"a", 0, "a"},     {"ab", 1, "ab"},  {"b", 0, "ab"},
        {"abc", 1, "abc"}, {"ac", 0, "abc"}, {"bd", 1, "abd"},  {"xy", 2, ".y"},  {"y", 0, ".y"},
        {"xy", 2, ".y"},   {"ay", 1, "ay"},  {"aba", 1, "aba"}, {"cb", 1, "abcb"}};
    tree.value_pool->item_size = 1;
    for (const bool has_context : {false, true}) {
        for (const auto &[letters, made, told] : cases) {
            qek_array path;
            qek_array_init(&path, 0);
            for (const char &letter : letters) {
                qek_array_append(&path, &letter, 1, 0);
                next_letter = letter;
            }
            freed.clear();
            const auto count = tree.entry_count + made;
            const auto *found = has_context ? qek_tree_find_x(&tree, &path, 42, has_letter_x)
                                            : qek_tree_find(&tree, &path, has_letter);
            const auto *at = has_context
                                 ? qek_tree_insert_x(&tree, &path, 42, write_letter, has_letter_x)
                                 : qek_tree_insert(&tree, &path, write_letter, has_letter);
            EXPECT_EQ(found, made > 0 ? nullptr : at) << letters;
            EXPECT_EQ(freed, made > 0 ? std::vector{at->value} : none) << letters;
            EXPECT_EQ(tree.entry_count, count) << letters;
            std::string place;
            for (; at != nullptr && at != &tree.root; at = at->parent) {
                place.insert(0, 1, at->value == 0 ? '.' : *item<char>(at->value));
            }
            EXPECT_EQ(place, told) << letters;
            qek_array_term(&path);
        }
        qek_tree_remove_all(&tree);
    }
}

// Links from outside keep naming the same records.
TEST_F(general_tree, exchanges_two_records_and_settles_their_children)
{
    entry *root = &tree.root, *a, *b, *c, *d, *e;
    for (auto [made, parent] : {std::pair(&a, &root), {&b, &root}, {&c, &a}, {&d, &b}, {&e, &b}}) {
        *made = qek_tree_entry_new(&tree);
        qek_tree_entry_append(&tree, *parent, *made);
    }
    b->value = 2;
    qek_tree_entry_swap(b, c);
    EXPECT_TRUE(c->parent == root && c->first_child == d && c->prev == a && c->next == a);
    EXPECT_TRUE(b->parent == a && b->first_child == nullptr && b->prev == c && b->next == c);
    EXPECT_TRUE(c->value == 2 && b->value == 0 && d->parent == c && e->parent == c);
    EXPECT_TRUE(a->first_child == c && a->next == b && a->prev == b && d->next == e);
}

} // namespace
