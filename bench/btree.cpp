// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "containers.h"

#include <absl/container/btree_map.h>
#include <absl/strings/string_view.h>
#include <glib.h>
#include <map>

namespace bench {
namespace {

struct text_order {
    using is_transparent = void;
    bool operator()(absl::string_view a, absl::string_view b) const { return a < b; }
};

using absl_text =
    mapped<std::string_view, absl::btree_map<std::string, word, text_order>, absl::string_view>;

struct glib_text {
    using key_type = std::string_view;
    GTree *tree = g_tree_new_full(order, nullptr, g_free, nullptr);

    glib_text() = default;
    glib_text(const glib_text &) = delete;
    glib_text &operator=(const glib_text &) = delete;
    ~glib_text() { g_tree_destroy(tree); }

    void insert(std::string_view key, word value)
    {
        g_tree_insert(tree, g_strndup(key.data(), key.size()), GSIZE_TO_POINTER(value));
    }
    word find(std::string_view key) const
    {
        return GPOINTER_TO_SIZE(g_tree_lookup(tree, key.data()));
    }
    word sum() const
    {
        word total = 0;
        for (auto *at = g_tree_node_first(tree); at != nullptr; at = g_tree_node_next(at)) {
            total += GPOINTER_TO_SIZE(g_tree_node_value(at));
        }
        return total;
    }
    std::int64_t size() const { return g_tree_nnodes(tree); }

  private:
    static gint order(gconstpointer a, gconstpointer b, gpointer)
    {
        return std::strcmp(static_cast<const char *>(a), static_cast<const char *>(b));
    }
};

template <typename Container> void add_rows(const std::string &family, const char *side)
{
    const sizes all{1'000, 100'000, 1'000'000};
    add(family + "_find", side, all, finding<Container, choice::probes>);
    add(family + "_insert", side, all, inserting<Container>);
    add_weight(family, side, weighing<Container>);
    if (family == "btree") {
        add(family + "_iterate", side, all, walking<Container>);
    }
}

template <typename Ours> void add_numbers(const std::string &family)
{
    using key = typename Ours::key_type;
    add_rows<Ours>(family, "ours");
    add_rows<mapped<key, std::map<key, word>>>(family, "map");
    add_rows<mapped<key, absl::btree_map<key, word>>>(family, "absl");
}

} // namespace

void register_rows()
{
    add_rows<our_btree>("btree", "ours");
    add_rows<absl_text>("btree", "absl");
    add_rows<glib_text>("btree", "glib");
    add_numbers<our_btreed>("btreed");
    add_numbers<our_btreex>("btreex");
}

} // namespace bench
