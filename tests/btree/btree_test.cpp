// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The three trees, and one with small pages, which is deep with few keys: their families for the
// suite of all keyed containers, then what trees have alone.

#include "btree/btree_check.h"
#include "btree/number_keyed.h"
#include "support/allocations.h"
#include "support/platform.h"

#include <bit>
#include <cmath>
#include <limits>

namespace {

using namespace qek_test;
namespace core = qek::btree;

template <typename Keys> struct tree_of : Keys {
    using tree = typename Keys::container;
    using node = typename Keys::element;
    static constexpr std::size_t page_size = sizeof(typename Keys::page);
    static constexpr int most_keys = Keys::slots == 32 ? 1000 : 200;
    static constexpr int left_by_term = 0;
    static void init(tree *to, bool owns, bool owns_values)
    {
        Keys::initialise(to, owns, owns, owns_values);
        EXPECT_EQ(to->root.children.capacity, std::max(Keys::slots, 8));
    }
    static void lend(tree &to, lent_pool &nodes, lent_pool &pages)
    {
        to.page_pool = &pages;
        to.node_pool = to.root.children.pool = &nodes;
    }
    static qek_pool *pool(const tree &of) { return of.node_pool; }
    static const qek_arrays &slots_of(const tree &of) { return of.root.children; }
    static std::pair<words, words> walk(const tree &of)
    {
        const tree_look<Keys> look(of);
        return {look.nodes, look.pages};
    }
    static std::string fault(const tree &of, const stored_keys &model, bool is_intact)
    {
        const tree_look<Keys> look(of);
        auto nodes = look.nodes;
        std::sort(nodes.begin(), nodes.end());
        const bool is_known = std::all_of(model.begin(), model.end(), [&](const stored_key &each) {
            const auto *at = static_cast<const node *>(each.element);
            return std::binary_search(nodes.begin(), nodes.end(), word(at)) &&
                   at->value == each.value && Keys::key_of(of, *at) == each.key;
        });
        const bool has_pages =
            of.page_pool == nullptr || live(of.page_pool) == std::ssize(look.pages);
        return !look.fault.empty()                         ? look.fault
               : nodes.size() != model.size() || !is_known ? "model"
               : is_intact && !look.is_chained()           ? "chain"
               : !has_pages                                ? "pages"
                                                           : "";
    }
};

// The functions that trees have in addition.
#define QEK_TREE_FUNCTIONS(name)                                                                   \
    QEK_KEYED_FUNCTIONS(name, node);                                                               \
    using page = qek_##name##_page;                                                                \
    static constexpr int slots = 32;                                                               \
    static constexpr auto first = qek_##name##_node_first;                                         \
    static constexpr auto last = qek_##name##_node_last;                                           \
    static constexpr auto bfind = keyed<qek_##name##_node_bfind>;                                  \
    static constexpr auto node_find = keyed<qek_##name##_node_find>

struct text_trees : text_keys<qek_btree> {
    QEK_TREE_FUNCTIONS(btree);
    static any_key key_of(const qek_btree &of, const auto &at)
    {
        const auto *from = reinterpret_cast<const char *>(of.keys.data) + at.key_offset;
        return {{from, static_cast<std::size_t>(at.key_length)}};
    }
    static bool refer_to_one(const auto &above, const auto &below)
    {
        return above.key_offset == below.key_offset && above.key_length == below.key_length;
    }
    static bool precedes(const qek_btree &of, const any_key &left, const any_key &right)
    {
        return folded(of, left.bytes) < folded(of, right.bytes); // as unsigned bytes
    }
};

template <typename Tree, typename Key, typename Real, std::int32_t... Orders> struct number_keys {
    static constexpr std::int32_t orders[] = {Orders...}; // signed, unsigned, in floating point
    static std::int32_t &order(Tree &of) { return of.key_type; }
    // From 0 up ascending in any order, two by two far apart. In floating point, 0 and -1 are one key
    // with two patterns.
    static any_key key(const Tree &of, int n)
    {
        if (of.key_type >= 5) {
            const auto real = static_cast<Real>(n < 0 ? n + 1 : n);
            return any_key::of(std::bit_cast<Key>(std::copysign(real, static_cast<Real>(n))));
        }
        const auto number = static_cast<Key>(n), last = static_cast<Key>(number & 1);
        return any_key::of(static_cast<Key>((number ^ last) << (sizeof(Key) * 4 - 1) | last));
    }
    static any_key key_of(const Tree &, const auto &at) { return any_key::of(at.key); }
    static bool refer_to_one(const auto &above, const auto &last) { return above.key == last.key; }
    static bool precedes(const Tree &of, const any_key &left, const any_key &right)
    {
        const auto is_less = [&](auto zero) {
            return left.as<decltype(zero)>() < right.as<decltype(zero)>();
        };
        return of.key_type == orders[0] ? is_less(std::make_signed_t<Key>{})
               : of.key_type >= 5       ? is_less(Real{})
                                        : is_less(Key{});
    }
    static bool are_same(const Tree &of, const any_key &left, const any_key &right)
    {
        return !precedes(of, left, right) && !precedes(of, right, left);
    }
};

struct dword_trees : number_keys<qek_btreed, std::uint32_t, float, 1, 2, 5> {
    QEK_TREE_FUNCTIONS(btreed);
};

struct qword_trees : number_keys<qek_btreex, std::uint64_t, double, 3, 4, 6> {
    QEK_TREE_FUNCTIONS(btreex);
};

// Pages of four slots. Only what makes pages knows of their size.
struct small_trees : dword_trees {
    struct policy : core::number_policy<container, page, element, 1, 2, 5> {
        static constexpr std::int32_t page_slots = 4;
    };
    static constexpr std::int32_t orders[] = {1};
    static constexpr int slots = policy::page_slots;
    static void initialise(container *of, bool own_pages, bool own_nodes, bool own_values)
    {
        core::init_numbers<policy>(*of, own_pages, own_nodes, own_values);
    }
    static int element_set(container *of, any_key key, element **out)
    {
        return core::node_set<policy>(*of, key, *out);
    }
    static int set(container *of, any_key key, qek_word *out, qek_value_fn init_value)
    {
        return core::set<policy>(*of, key, *out, init_value);
    }
    static int insert(container *of, any_key k, qek_word v)
    {
        return core::insert<policy>(*of, k, v);
    }
};

using text = tree_of<text_trees>;
using dword = tree_of<dword_trees>;
using qword = tree_of<qword_trees>;
using families = testing::Types<text, dword, qword, tree_of<small_trees>>;

} // namespace

namespace qek_test {
INSTANTIATE_TYPED_TEST_SUITE_P(btree, keyed_suite, families);
INSTANTIATE_TYPED_TEST_SUITE_P(btree, text_keyed_suite, text);
} // namespace qek_test

namespace {

template <typename Family> struct btree_suite : testing::Test {
};
TYPED_TEST_SUITE(btree_suite, families);

TYPED_TEST(btree_suite, finds_the_key_or_the_next_or_the_last)
{
    using family = TypeParam;
    random_numbers random;
    for (const auto order : random.each_below<std::size_t>(std::size(family::orders))) {
        modelled<family> tree(true, false, order);
        EXPECT_TRUE(family::first(&tree) == nullptr && family::last(&tree) == nullptr);
        EXPECT_EQ(family::bfind(&tree, tree.key(1)), nullptr);
        family::insert(&tree, tree.key(1), 0);
        EXPECT_TRUE(family::first(&tree) != nullptr && family::first(&tree) == family::last(&tree));
        const auto probes = random.each_between(-1001, 1001);
        for (int n = 0; random.goes_on(n, 700) || n == 0; ++n) {
            family::insert(&tree, tree.key(random.between(-1000, 1000)), 0);
        }
        const tree_look<family> look(tree);
        EXPECT_EQ(word(family::first(&tree)), look.nodes.front());
        EXPECT_EQ(word(family::last(&tree)), look.nodes.back());
        const auto key_at = [&](std::size_t at) { return family::key_of(tree, *look.node_at(at)); };
        for (const int n : probes) {
            const any_key key = tree.key(n);
            std::size_t at = 0;
            while (at + 1 < look.nodes.size() && family::precedes(tree, key_at(at), key)) {
                ++at;
            }
            const bool is_there = family::are_same(tree, key_at(at), key);
            ASSERT_EQ(word(family::bfind(&tree, key)), look.nodes[at]);
            ASSERT_EQ(word(family::node_find(&tree, key)), is_there ? look.nodes[at] : 0);
        }
    }
}

// At 2h keys, then at 2h^2, 2h^3 and so on, with h half of a page, when keys come in either order.
TYPED_TEST(btree_suite, splits_full_pages_into_halves_and_grows_at_the_root)
{
    using family = TypeParam;
    constexpr int keys = 8300;
    constexpr int half = family::slots / 2;
    for (const bool ascending : {true, false}) {
        modelled<family> tree;
        const auto key = [&](int n) { return tree.key(ascending ? n : keys - n); };
        int level = 0;
        for (int n = 0, full = 2 * half; n < keys; ++n) {
            ASSERT_EQ(family::insert(&tree, key(n), 1), 1);
            if (n + 1 == full) {
                const tree_look<family> look(tree);
                ASSERT_EQ(look.fault, "");
                ASSERT_TRUE(look.is_chained());
                ASSERT_EQ(tree.root.children.count, 2);
                ASSERT_EQ(item<typename family::page>(look.pages[0])->children.count, half);
                ++level;
                full *= half;
            }
            ASSERT_EQ(tree.root.level, level);
        }
        ASSERT_EQ(tree_look<family>(tree).fault, "");
        const bool has_text = requires { tree.keys; };
        const int removed = has_text ? 1000 : keys; // with text, each visits all
        for (int n = 0; n < removed; ++n) {
            ASSERT_EQ(tree.root.level, level) << "the height stays to the last";
            ASSERT_EQ(family::remove(&tree, key(n)), 1U);
        }
        ASSERT_EQ(tree_look<family>(tree).fault, "");
        ASSERT_EQ(tree.root.level, tree.node_count == 0 ? 0 : level);
    }
}

// The first page above the leaves loses all its keys. Its leaves go one by one, the last one behind
// it.
TYPED_TEST(btree_suite, drops_empty_pages_the_topmost_first)
{
    using family = TypeParam;
    constexpr int half = family::slots / 2;
    modelled<family> tree(false);
    tree.store(0, 2 * half * half);
    const auto [nodes, pages] = family::walk(tree);
    for (int n = 0; n < half * half; ++n) {
        family::remove(&tree, tree.key(n));
    }
    EXPECT_EQ(tree_look<family>(tree).fault, "");
    EXPECT_EQ(tree.lent_elements.given_back(),
              std::vector(nodes.begin(), nodes.begin() + half * half));
    std::vector dropped(pages.begin(), pages.begin() + half + 1);
    std::swap(dropped[half - 1], dropped[half]);
    EXPECT_EQ(tree.lent_pages.given_back(), dropped);
    EXPECT_EQ(item<typename family::page>(dropped[0])->children.slots, nullptr);
    for (int n = half * half; n < 2 * half * half; ++n) {
        family::remove(&tree, tree.key(n));
    }
    EXPECT_EQ(tree_look<family>(tree).fault, "");
    EXPECT_EQ(tree.root.level, 0);
}

TYPED_TEST(btree_suite, leaves_the_chain_alone_when_it_removes_or_clones)
{
    using family = TypeParam;
    modelled<family> tree, copy;
    tree.store(1, 4);
    const tree_look<family> look(tree);
    family::clone(&tree, nullptr, &copy, nullptr, nullptr);
    const tree_look<family> copied_look(copy);
    family::remove(&tree, tree.key(2));
    for (const auto &each : {look, copied_look}) {
        EXPECT_EQ(word(each.node_at(0)->next), look.nodes[1]);
        EXPECT_EQ(word(each.node_at(1)->next), look.nodes[2]);
        EXPECT_EQ(word(each.node_at(2)->prev), look.nodes[1]);
    }
    EXPECT_TRUE(family::refer_to_one(typename family::element{}, *look.node_at(1)));
}

TYPED_TEST(btree_suite, grows_the_root_again_by_the_rule_of_arrays)
{
    using family = TypeParam;
    modelled<family> tree, copy;
    tree.store(0, 100);
    family::remove_all(&tree);
    tree.model.clear();
    EXPECT_EQ(tree.root.level, 0);
    EXPECT_TRUE(family::refer_to_one(tree.root, typename family::element{}));
    for (int n = 1; n < family::slots; ++n) {
        tree.store(n, n + 1);
        ASSERT_EQ(tree.root.children.capacity, n > 24 ? 36 : (n + 7) / 8 * 8);
    }
    family::clone(&tree, nullptr, &copy, nullptr, nullptr);
    EXPECT_EQ(tree_look<family>(copy).fault, "");
    tree.store(100, 700);
    EXPECT_EQ(tree.fault(), "");
    EXPECT_EQ(tree.root.children.capacity, std::max(family::slots, 8));
}

// Whatever they had: branches at every level, and leaves not.
TYPED_TEST(btree_suite, tells_branches_their_pool_when_it_swaps)
{
    using family = TypeParam;
    modelled<family> tree, other;
    tree.store(0, family::slots * family::slots);
    const tree_look<family> look(tree);
    const auto page_of = [](qek_word at) { return item<typename family::page>(at); };
    for (const qek_word at : look.pages) {
        page_of(at)->children.pool = nullptr;
    }
    family::swap(&tree, &other);
    for (const qek_word at : look.pages) {
        EXPECT_EQ(page_of(at)->children.pool, page_of(at)->level > 0 ? other.page_pool : nullptr);
    }
}

TEST(btree_DeathTest, missing_pools_fault)
{
    if (!can_fork) {
        GTEST_SKIP() << "needs fork";
    }
    modelled<text> tree(false, false);
    const auto insert = [&] { qek_btree_insert(&tree, "z", 1, 1); };
    tree.lent_elements.item_size = 0;
    EXPECT_DEATH(insert(), "");
    tree.lent_elements.item_size = sizeof(qek_btree_node);
    tree.store(0, 31);
    tree.page_pool = nullptr;
    EXPECT_DEATH(insert(), "");
}

template <typename Family> struct btree_key_types : testing::Test {
};
using number_families = testing::Types<dword, qword>;
TYPED_TEST_SUITE(btree_key_types, number_families);

TYPED_TEST(btree_key_types, order_a_nan_as_less_on_either_side)
{
    using family = TypeParam;
    modelled<family> tree(true, true, 2);
    const any_key nan = any_key::of(decltype(family::element::key){0} - 1);
    const any_key keys[] = {tree.key(1), nan, nan, tree.key(2)};
    for (const any_key &each : keys) {
        EXPECT_EQ(family::insert(&tree, each, 5), 1);
    }
    const tree_look<family> look(tree);
    for (std::size_t at = 0; at < 4; ++at) {
        EXPECT_EQ(any_key::of(look.node_at(at)->key), keys[at]);
    }
    EXPECT_EQ(family::find(&tree, nan), 0);
    EXPECT_EQ(family::remove(&tree, nan), 0U);
    EXPECT_EQ(word(family::bfind(&tree, nan)), look.nodes[3]);
    EXPECT_EQ(family::find(&tree, tree.key(2)), 1);
    for (int more = 0; more < 100; ++more) {
        EXPECT_EQ(family::insert(&tree, nan, 6), 1);
    }
    EXPECT_EQ(family::walk(tree).first.size(), 104U);
    EXPECT_EQ(tree.root.level, 1);
}

TYPED_TEST(btree_key_types, make_all_keys_equal_when_unknown)
{
    using family = TypeParam;
    for (const int type : {0, -1, 7, family::orders[0] ^ 2}) { // the last: of the other family
        modelled<family> tree;
        const any_key first = tree.key(5);
        tree.key_type = type;
        EXPECT_EQ(family::insert(&tree, first, 1) + family::insert(&tree, tree.key(9), 2), 1);
        EXPECT_EQ(family::update(&tree, tree.key(3), 3), 1U);
        EXPECT_EQ(any_key::of(family::bfind(&tree, tree.key(0))->key), first);
        EXPECT_EQ(family::remove(&tree, tree.key(0)), 3U);
        EXPECT_EQ(tree.node_count, 0);
    }
}

// After a swap of trees of two orders, say: what halving meets in each page counts. Of eight keys in a
// leaf, each number is low; then there are many, first in heaps.
TYPED_TEST(btree_key_types, search_by_halves_in_an_order_that_is_not_the_trees)
{
    using family = TypeParam;
    using key = decltype(family::element::key);
    const key lowest = key{1} << (sizeof(key) * 8 - 1); // of signed numbers
    random_numbers random;
    for (int low = 0; low <= 10; ++low) {
        modelled<family> tree(true, true, 1);
        std::vector<key> keys;
        for (int n = 0; n < (low < 9 ? 8 : 100'000); ++n) {
            keys.push_back(low == 10  ? static_cast<key>(random.next() * (~key{0} / 0xFFFFFFFF))
                           : low == 9 ? static_cast<key>(random.below(64) +
                                                         random.below(8192) * (lowest >> 12))
                                      : static_cast<key>(2 * n + 1) + (n < low ? 0 : lowest));
            family::insert(&tree, any_key::of(keys.back()), 5);
        }
        ASSERT_EQ(tree_look<family>(tree).fault, "");
        ASSERT_EQ(family::bfind(&tree, any_key::of(~key{0})), family::last(&tree));
        for (int n = 0; n < 2000; ++n) {
            tree.key_type = n % 2 != 0 ? family::orders[0] : 7; // the latter: all are equal
            const key sought = keys[random.below(keys.size())] + random.below(3) - 1;
            const auto *page = &tree.root;
            bool is_found = false;
            const auto go_down = [&] {
                const qek_arrays &of = page->children;
                int first = 0, last = of.count - 1;
                for (is_found = false; first <= last && !is_found;) {
                    const int mid = (first + last) / 2;
                    const qek_word slot = of.slots[mid];
                    const key at = page->level > 0 ? item<typename family::page>(slot)->key
                                                   : item<typename family::element>(slot)->key;
                    const bool is_less = (at ^ lowest) < (sought ^ lowest);
                    is_found = at == sought || tree.key_type == 7;
                    first = is_found ? mid : is_less ? mid + 1 : first;
                    last = is_less ? last : mid - 1;
                }
                return of.slots[std::min(first, of.count - 1)];
            };
            while (page->level > 0) {
                page = item<typename family::page>(go_down());
            }
            ASSERT_EQ(word(family::bfind(&tree, any_key::of(sought))), go_down()) << sought;
            ASSERT_EQ(family::find(&tree, any_key::of(sought)), is_found) << sought;
        }
    }
}

// A page whose last key is the empty one, which stands where the removed one stood.
TEST(btree, keeps_the_place_of_an_empty_high_key)
{
    modelled<text> tree;
    tree.store(-1, 40);
    tree.is_intact = false;
    for (int n = 14; n >= 0; --n) {
        EXPECT_NE(text::remove(&tree, tree.key(n)), 0U);
        tree.model.erase(tree.model.begin() + 1 + n);
        EXPECT_EQ(tree.fault(), "");
    }
}

// An empty root that cannot grow answers as if the key were there; one with nodes, as if it were
// not.
TYPED_TEST(btree_suite, loses_a_node_when_the_root_does_not_grow)
{
    using family = TypeParam;
    for (const int keys : {0, family::slots / 4 & 8}) {
        modelled<family> tree;
        tree.store(0, 20);
        family::remove_all(&tree);
        qek_pool_free(tree.node_pool, qek_pool_new(tree.node_pool));
        tree.store(0, keys);
        const allocations faults(1, true);
        EXPECT_EQ(family::insert(&tree, tree.key(30), 5), keys > 0);
        EXPECT_EQ(tree.node_count, keys == 0 ? 0 : keys + 1);
        EXPECT_EQ(tree.root.children.count, keys);
        EXPECT_EQ(family::find(&tree, tree.key(30)), 0);
    }
}

TEST(btree_check, rejects_each_broken_invariant)
{
    using tree = modelled<text>;
    static const auto leaf = [](const qek_btree &of, int slot) {
        return item<qek_btree_page>(of.root.children.slots[slot]);
    };
    static const auto node = [](const qek_btree &of, int slot) {
        return item<qek_btree_node>(leaf(of, 0)->children.slots[slot]);
    };
    const std::pair<const char *, void (*)(tree &)> cases[] = {
        {"parent", [](tree &of) { leaf(of, 1)->parent = leaf(of, 0); }},
        {"level", [](tree &of) { leaf(of, 0)->level = 1; }},
        {"count", [](tree &of) { leaf(of, 1)->children.count = 0; }},
        {"count", [](tree &of) { leaf(of, 1)->children.count = 32; }},
        {"capacity", [](tree &of) { leaf(of, 1)->children.capacity = 28; }},
        {"pool", [](tree &of) { leaf(of, 0)->children.pool = of.page_pool; }},
        {"pool", [](tree &of) { leaf(of, 0)->children.reversed = 1; }},
        {"high key", [](tree &of) { ++leaf(of, 0)->key_offset; }},
        {"high key", [](tree &of) { --leaf(of, 1)->key_length; }},
        {"node_count", [](tree &of) { ++of.node_count; }},
        {"key place", [](tree &of) { ++node(of, 3)->key_offset; }},
        {"keys length", [](tree &of) { --of.keys.length; }},
        {"order", [](tree &of) { std::swap(node(of, 3)->key_offset, node(of, 4)->key_offset); }},
        {"order", [](tree &of) { of.keys.data[3] = 'z'; }},
        {"model", [](tree &of) { ++node(of, 3)->value; }},
        {"model", [](tree &of) { of.keys.data[0] = ' '; }},
        {"chain", [](tree &of) { node(of, 3)->next = nullptr; }},
        {"pages", [](tree &of) { ++of.page_pool->live_count; }},
    };
    for (const auto &[fault, corrupt] : cases) {
        tree sound;
        sound.store(0, 40);
        ASSERT_EQ(sound.fault(), "");
        const qek_btree kept = sound;
        const qek_btree_page leaves[] = {*leaf(sound, 0), *leaf(sound, 1)};
        corrupt(sound);
        EXPECT_EQ(sound.fault(), fault);
        static_cast<qek_btree &>(sound) = kept;
        *leaf(sound, 0) = leaves[0];
        *leaf(sound, 1) = leaves[1];
    }
    modelled<dword> numbers;
    numbers.store(0, 40);
    ++item<qek_btreed_page>(numbers.root.children.slots[1])->key;
    EXPECT_EQ(numbers.fault(), "high key");
}

} // namespace
