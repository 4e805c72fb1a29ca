// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Bit sets, and trees that the caller arranges.

#include "bench.h"
#include "data.h"
#include "qek_std.h"

#include <boost/dynamic_bitset.hpp>
#include <glib.h>
#include <map>
#include <memory>

namespace bench {
namespace {

// Bits at random places among eight times as many.
struct our_bits {
    qek_bits bits;

    explicit our_bits(std::int64_t count)
    {
        qek_bits_init(&bits);
        qek_bits_expand(&bits, static_cast<std::uint32_t>(count));
    }
    ~our_bits() { qek_bits_term(&bits); }
    our_bits(const our_bits &) = delete;
    our_bits &operator=(const our_bits &) = delete;

    void insert(std::uint32_t bit) { qek_bits_insert(&bits, bit, 1); }
    bool find(std::uint32_t bit) const { return qek_bits_find(&bits, bit) != 0; }
};

struct boost_bits {
    boost::dynamic_bitset<> bits;

    explicit boost_bits(std::int64_t count) : bits(static_cast<std::size_t>(count * 8)) {}
    void insert(std::uint32_t bit) { bits.set(bit); }
    bool find(std::uint32_t bit) const { return bits.test(bit); }
};

std::vector<std::uint32_t> places(std::int64_t count)
{
    std::vector<std::uint32_t> made;
    for (const std::uint32_t key : keys<std::uint32_t>(count)) {
        made.push_back(key % static_cast<std::uint32_t>(count * 8));
    }
    return made;
}

template <typename Bits>
std::uint64_t count_found(const Bits &in, const std::vector<std::uint32_t> &of)
{
    std::uint64_t found = 0;
    for (const std::uint32_t place : of) {
        found += in.find(place / 2) ? 1U : 0U;
    }
    return found;
}

template <typename Bits> void inserting(benchmark::State &state)
{
    const std::vector<std::uint32_t> all = places(size_of(state));
    measure(
        state, size_of(state), [&] { return std::make_unique<Bits>(size_of(state)); },
        [&](std::unique_ptr<Bits> &into) {
            for (const std::uint32_t place : all) {
                into->insert(place);
            }
            return std::uint64_t{into->find(all[0])};
        });
}

template <typename Bits> void testing(benchmark::State &state)
{
    const std::vector<std::uint32_t> all = places(size_of(state));
    Bits bits(size_of(state));
    for (const std::uint32_t place : all) {
        bits.insert(place);
    }
    repeat(state, size_of(state), bits, [&](const Bits &in) { return count_found(in, all); });
}

// A tree in which each entry has eight children, made level by level.
struct our_tree {
    qek_tree tree;

    our_tree() { qek_tree_init(&tree, 1, 0); }
    ~our_tree() { qek_tree_term(&tree); }
    our_tree(const our_tree &) = delete;
    our_tree &operator=(const our_tree &) = delete;

    qek_tree_entry *top() { return &tree.root; }
    qek_tree_entry *add(qek_tree_entry *parent, word value)
    {
        qek_tree_entry *made = qek_tree_entry_new(&tree);
        made->value = value;
        qek_tree_entry_append(&tree, parent, made);
        return made;
    }
    word sum() const
    {
        word total = 0;
        const qek_tree_entry *at = &tree.root;
        while ((at = qek_tree_entry_iter_next(&tree.root, at)) != nullptr) {
            total += at->value;
        }
        return total;
    }
    void clear() { qek_tree_free_all(&tree, nullptr); }
};

struct glib_tree {
    GNode *root = g_node_new(nullptr);

    glib_tree() = default;
    ~glib_tree() { g_node_destroy(root); }
    glib_tree(const glib_tree &) = delete;
    glib_tree &operator=(const glib_tree &) = delete;

    GNode *top() { return root; }
    static GNode *add(GNode *parent, word value)
    {
        return g_node_append_data(parent, GSIZE_TO_POINTER(value));
    }
    word sum() const
    {
        word total = 0;
        g_node_traverse(root, G_PRE_ORDER, G_TRAVERSE_ALL, -1, add_value, &total);
        return total;
    }
    void clear()
    {
        g_node_destroy(root);
        root = g_node_new(nullptr);
    }

  private:
    static gboolean add_value(GNode *node, gpointer total)
    {
        *static_cast<word *>(total) += GPOINTER_TO_SIZE(node->data);
        return FALSE;
    }
};

// A binary tree of random keys, which the caller puts in order; `map` keeps itself balanced.
struct our_bitree {
    qek_bitree tree;

    our_bitree() { qek_bitree_init(&tree, 1, 0); }
    ~our_bitree() { qek_bitree_term(&tree); }
    our_bitree(const our_bitree &) = delete;
    our_bitree &operator=(const our_bitree &) = delete;

    void add(word key)
    {
        qek_bitree_entry *made = qek_bitree_entry_new(&tree);
        made->value = key;
        qek_bitree_entry *at = &tree.root;
        while (true) {
            qek_bitree_entry *below = key < at->value ? at->less : at->greater;
            if (below == nullptr) {
                break;
            }
            at = below;
        }
        qek_bitree_entry_add(&tree, at, key < at->value ? -1 : 1, made);
    }
    // In order, by the links to the parents.
    word sum() const
    {
        word total = 0;
        const qek_bitree_entry *at = least(&tree.root);
        while (at != nullptr) {
            total = total * 31 + at->value;
            if (at->greater != nullptr) {
                at = least(at->greater);
            } else {
                const qek_bitree_entry *below = at;
                do {
                    below = at;
                    at = at->parent;
                } while (at != nullptr && at->greater == below);
            }
        }
        return total;
    }
    void clear() { qek_bitree_free_all(&tree, nullptr); }

  private:
    static const qek_bitree_entry *least(const qek_bitree_entry *at)
    {
        while (at->less != nullptr) {
            at = at->less;
        }
        return at;
    }
};

struct std_map {
    std::map<word, word> map;

    std_map() { map.emplace(0, 0); }
    void add(word key) { map.emplace(key, key); }
    word sum() const
    {
        word total = 0;
        for (const auto &pair : map) {
            total = total * 31 + pair.second;
        }
        return total;
    }
    void clear() { map.clear(); }
};

using numbers = keys<std::uint64_t>;

template <typename Tree> void build(Tree &tree, const numbers &of)
{
    if constexpr (requires { tree.top(); }) {
        std::vector<decltype(tree.top())> made{tree.top()};
        made.reserve(static_cast<std::size_t>(of.size()) + 1);
        for (const std::uint64_t number : of) {
            made.push_back(tree.add(made[(made.size() - 1) / 8], number));
        }
    } else {
        for (const std::uint64_t number : of) {
            tree.add(number);
        }
    }
}

template <typename Tree> void building(benchmark::State &state)
{
    const numbers &all = shared<std::uint64_t>(size_of(state));
    measure(
        state, size_of(state), [] { return std::make_unique<Tree>(); },
        [&](std::unique_ptr<Tree> &tree) {
            build(*tree, all);
            return std::uint64_t{0};
        });
}

template <typename Tree> std::unique_ptr<Tree> built(std::int64_t count)
{
    auto tree = std::make_unique<Tree>();
    build(*tree, shared<std::uint64_t>(count));
    return tree;
}

template <typename Tree> void walking(benchmark::State &state)
{
    static std::map<std::int64_t, std::unique_ptr<Tree>> standing;
    auto &tree = standing[size_of(state)];
    if (tree == nullptr) {
        tree = built<Tree>(size_of(state));
    }
    repeat(state, size_of(state), *tree, [](const Tree &of) { return of.sum(); });
}

template <typename Tree> void freeing(benchmark::State &state)
{
    measure(
        state, size_of(state), [&] { return built<Tree>(size_of(state)); },
        [](std::unique_ptr<Tree> &tree) {
            tree->clear();
            return std::uint64_t{0};
        });
}

template <typename Tree> void weighing(benchmark::State &state)
{
    weigh(state, [&] { return built<Tree>(size_of(state)); });
}

template <typename Bits> void add_bits(const char *side)
{
    add("bits_insert", side, {1'000'000}, inserting<Bits>);
    add("bits_find", side, {1'000'000}, testing<Bits>);
}

template <typename Tree> void add_tree(const std::string &family, const char *side)
{
    const sizes of{1'000, 1'000'000};
    add(family + "_build", side, of, building<Tree>);
    add(family + "_walk", side, of, walking<Tree>);
    add(family + "_free", side, of, freeing<Tree>);
    add_weight(family, side, weighing<Tree>);
}

} // namespace

void register_rows()
{
    add_bits<our_bits>("ours");
    add_bits<boost_bits>("boost");
    add_tree<our_tree>("tree", "ours");
    add_tree<glib_tree>("tree", "gnode");
    add_tree<our_bitree>("bitree", "ours");
    add_tree<std_map>("bitree", "map");
}

} // namespace bench
