// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "bench.h"
#include "qek_std.h"

#include <deque>
#include <glib.h>
#include <list>
#include <memory>

namespace bench {
namespace {

template <typename Record, auto init, auto term, auto add_tail, auto remove_head, auto remove_tail>
struct ours {
    Record record;

    ours() { init(&record, 1, 0); }
    ~ours() { term(&record); }
    ours(const ours &) = delete;
    ours &operator=(const ours &) = delete;

    void push(word value) { add_tail(&record, value); }
    word pop_front() { return remove_head(&record); }
    word pop_back() { return remove_tail(&record); }
};

// Without a key: with one, a removal moves key text.
constexpr auto add_without_key = [](qek_list *list, word value) {
    qek_list_add_tail(list, nullptr, 0, value);
};
using our_list = ours<qek_list, qek_list_init, qek_list_term, add_without_key, qek_list_remove_head,
                      qek_list_remove_tail>;
using our_lists = ours<qek_lists, qek_lists_init, qek_lists_term, qek_lists_add_tail,
                       qek_lists_remove_head, qek_lists_remove_tail>;
using our_listx = ours<qek_listx, qek_listx_init, qek_listx_term, qek_listx_add_tail,
                       qek_listx_remove_head, qek_listx_remove_tail>;

template <typename Sequence> struct standard {
    Sequence sequence;

    void push(word value) { sequence.push_back(value); }
    word pop_front()
    {
        const word value = sequence.front();
        sequence.pop_front();
        return value;
    }
    word pop_back()
    {
        const word value = sequence.back();
        sequence.pop_back();
        return value;
    }
};

struct glib {
    GQueue *queue = g_queue_new();

    glib() = default;
    glib(const glib &) = delete;
    glib &operator=(const glib &) = delete;
    ~glib() { g_queue_free(queue); }

    void push(word value) { g_queue_push_tail(queue, GSIZE_TO_POINTER(value)); }
    word pop_front() { return GPOINTER_TO_SIZE(g_queue_pop_head(queue)); }
    word pop_back() { return GPOINTER_TO_SIZE(g_queue_pop_tail(queue)); }
};

template <typename List, bool from_front> void passing_through(benchmark::State &state)
{
    measure(
        state, size_of(state), [] { return std::make_unique<List>(); },
        [&](std::unique_ptr<List> &list) {
            for (std::int64_t at = 0; at < size_of(state); ++at) {
                list->push(static_cast<word>(at));
            }
            word total = 0;
            for (std::int64_t at = 0; at < size_of(state); ++at) {
                total = total * 31 + (from_front ? list->pop_front() : list->pop_back());
            }
            return total;
        });
}

template <typename List> void weighing(benchmark::State &state)
{
    weigh(state, [&] {
        auto made = std::make_unique<List>();
        for (std::int64_t at = 0; at < size_of(state); ++at) {
            made->push(static_cast<word>(at));
        }
        return made;
    });
}

template <typename List> void add_rows(const std::string &family, const char *side)
{
    const sizes of{1'000, 1'000'000};
    add(family + "_queue", side, of, passing_through<List, true>);
    add(family + "_stack", side, of, passing_through<List, false>);
    if (family != "lists" || side == std::string("ours")) {
        add_weight(family, side, weighing<List>);
    }
}

} // namespace

void register_rows()
{
    add_rows<our_list>("list", "ours");
    add_rows<our_lists>("lists", "ours");
    add_rows<our_listx>("listx", "ours");
    for (const char *family : {"list", "lists"}) {
        add_rows<standard<std::list<word>>>(family, "std");
        add_rows<glib>(family, "glib");
    }
    add_rows<standard<std::deque<word>>>("listx", "deque");
}

} // namespace bench
