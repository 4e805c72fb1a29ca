// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "containers.h"

#include <map>
#include <unordered_map>

namespace bench {
namespace {

template <typename Container> void copying(benchmark::State &state)
{
    const auto &source = standing<Container>(size_of(state));
    measure(
        state, size_of(state), [] { return std::unique_ptr<Container>(); },
        [&](std::unique_ptr<Container> &copy) {
            copy = std::make_unique<Container>(source);
            return static_cast<std::uint64_t>(copy->size());
        });
}

template <typename Ours, typename Peer> void add_rows(const std::string &family, const char *peer)
{
    add("clone_" + family, "ours", {1'000'000}, copying<Ours>);
    add("clone_" + family, peer, {1'000'000}, copying<mapped<typename Ours::key_type, Peer>>);
}

} // namespace

void register_rows()
{
    add_rows<our_hash, std::unordered_map<std::string, word>>("hash", "unordered_map");
    add_rows<our_hashd, std::unordered_map<std::uint32_t, word>>("hashd", "unordered_map");
    add_rows<our_btree, std::map<std::string, word>>("btree", "map");
    add_rows<our_btreed, std::map<std::int32_t, word>>("btreed", "map");
}

} // namespace bench
