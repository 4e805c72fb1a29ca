// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Sessions of each family in which every allocation fails once, and from each one on all fail.

#include "qek_std.h"
#include "support/allocations.h"
#include "support/platform.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using namespace qek_test;

namespace {

// clang-format off
#define FAMILIES(X) X(stream) X(string) X(wchar) X(char) X(arrays) X(arrayd) X(array) X(arrayx) \
    X(arrayt) X(bits) X(hash) X(hashd) X(hashx) X(hasht) X(btree) X(btreed) X(btreex) X(list) \
    X(lists) X(listx) X(tree) X(bitree) X(pool)
#define TWO(name) qek_##name name##_[2];
#define END(name) qek_##name##_term(of.name##_), qek_##name##_term(of.name##_ + 1);
// clang-format on

struct records { // two of each, for what goes from one to the other
    FAMILIES(TWO)
    void *pointer;
    qek_word word;
    uint8_t *block;
};

void term(records &of)
{
    FAMILIES(END)
    qek_free(of.block);
}

// The records and all that is in their buffers.
std::string bytes_of(const records &of)
{
    std::string all(reinterpret_cast<const char *>(&of), sizeof of);
    const auto add = [&](const auto *units, auto count) {
        all.append(reinterpret_cast<const char *>(units),
                   units == nullptr ? 0 : static_cast<size_t>(count) * sizeof *units);
    };
    for (int at = 0; at < 2; ++at) {
        add(of.stream_[at].data, of.stream_[at].capacity);
        add(of.string_[at].data, of.string_[at].capacity);
        add(of.wchar_[at].data, of.wchar_[at].capacity);
        add(of.arrays_[at].slots, of.arrays_[at].capacity);
        add(of.arrayd_[at].slots, of.arrayd_[at].capacity);
        add(of.array_[at].slots, of.array_[at].capacity);
        add(of.array_[at].keys.data, of.array_[at].keys.capacity);
        add(of.arrayx_[at].slots, of.arrayx_[at].capacity);
        add(of.arrayt_[at].overflow, of.arrayt_[at].capacity - 4);
        add(of.bits_[at].data, of.bits_[at].size);
    }
    return all;
}

int64_t as_answer(auto call)
{
    if constexpr (std::is_void_v<decltype(call())>) {
        return call(), 0;
    } else if constexpr (std::is_pointer_v<decltype(call())>) {
        return call() != nullptr;
    } else {
        return static_cast<int64_t>(call());
    }
}

// What happens when the n-th allocation of an operation fails, a letter for each:
//   u  nothing is changed, bit for bit, and the answer is 0, null or none,
//   s  the operation goes on and leaves less, as it is told to; all goes on with that,
//   l  as s, but pages are lost, with their slots: what is left is good for `term` alone,
//   F  as l, but if all others fail, too, it faults,
//   f  it faults.
struct operation {
    const char *letters;
    int64_t (*run)(records &r, int n);
    int from = 0, to = 1; // runs for these n
    int64_t attempt(records &r) const
    {
        int64_t answers = 0;
        for (int n = from; n < to; ++n) {
            answers += run(r, n);
        }
        return answers;
    }
};

struct session {
    const char *family;
    std::vector<operation> operations;
};

constexpr char text[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr uint16_t wide[] = {'1', ',', '2', ',', '3', ',', '4', ',', '5', ',', '6', ',', '7', 0};

// clang-format off
#define CALL(...) \
    [](records &r, [[maybe_unused]] int n) { return as_answer([&] { return __VA_ARGS__; }); }
#define INIT(name, letters, ...) {letters, CALL(qek_##name##_init(r.name##_ + n, __VA_ARGS__)), 0, 2}
#define COPY(name, letters, ...) \
    {letters, CALL(qek_##name##_clone(r.name##_, __VA_ARGS__ r.name##_ + 1, nullptr, nullptr))}
#define QEK_TEXT(name, bytes) \
    {#name, {{"u", CALL(qek_##name##_expand(r.name##_ + 1, 3))}, \
             {"u", CALL(qek_##name##_append(r.name##_, bytes, 13))}, \
             {"u", CALL(qek_##name##_insert(r.name##_, 2, bytes, 13))}, \
             {"u", CALL(qek_##name##_update(r.name##_, 1, 0, bytes, 13))}, \
             {"u", CALL(qek_##name##_clone(r.name##_, r.name##_ + 1))}}}
#define QEK_ARRAY(name, one, some, made, all, copy, ...) \
    {#name, {INIT(name, "ff", 1), \
             {"u", CALL(qek_##name##_expand(r.name##_ + 1, 3))}, \
             {one, CALL(qek_##name##_append(r.name##_, __VA_ARGS__ 1))}, \
             {some, CALL(qek_##name##_append(r.name##_, __VA_ARGS__ 1)), 1, 6}, \
             {made, CALL(r.name##_->pool->item_size = 4, \
                         qek_##name##_append_new(r.name##_, __VA_ARGS__ nullptr))}, \
             {all, CALL(qek_##name##_append_array(r.name##_, r.name##_))}, \
             {"u", CALL(qek_##name##_expand(r.name##_, 30))}, \
             COPY(name, copy, nullptr,)}}
#define QEK_KEYED(name, initialised, number, many, copy, ...) \
    {#name, {initialised, \
             {many, CALL(qek_##name##_insert(r.name##_, __VA_ARGS__, 1)), 0, number}, \
             {"fff", CALL(r.name##_->value_pool->item_size = 4, \
                        qek_##name##_set(r.name##_, __VA_ARGS__, &r.word, nullptr)), 40, 41}, \
             COPY(name, copy, nullptr,), \
             {"ff", CALL(qek_##name##_remove(r.name##_, __VA_ARGS__))}}}
#define QEK_HASH(name, ...) QEK_KEYED(name, INIT(name, "ffff", 1, 1), 16, __VA_ARGS__)
#define QEK_BTREE(name, ...) QEK_KEYED(name, INIT(name, "sfffsfff", 1, 1, 1), 32, __VA_ARGS__)
#define QEK_LIST(name, add, ...) \
    {#name, {INIT(name, "ffff", 1, 1), \
             {add, CALL(qek_##name##_add_tail(r.name##_, __VA_ARGS__ 1))}, \
             {"ff", CALL(r.name##_->value_pool->item_size = 4, \
                         qek_##name##_add_head_new(r.name##_, __VA_ARGS__ nullptr))}, \
             {"ff", CALL(qek_##name##_remove_tail(r.name##_), qek_##name##_remove_tail(r.name##_))}}}
#define QEK_TREE(name, ...) \
    {#name, {INIT(name, "ffff", 1, 1), {"ff", CALL(__VA_ARGS__)}, COPY(name, "fff", nullptr,)}}
// clang-format on

const session sessions[] = {
    QEK_TEXT(stream, text),
    QEK_TEXT(string, text),
    QEK_TEXT(wchar, wide),
    {"string, wchar",
     {{"u", CALL(qek_string_format(r.string_, "%s", text))},
      {"uss", CALL(qek_string_replace(r.string_, "a", text))},
      {"u", CALL(qek_wchar_copy(r.wchar_, wide, 13))},
      {"us", CALL(qek_wchar_replace(r.wchar_, wide + 12, wide))}}},
    {"char, str",
     {{"ff", CALL(qek_char_copy(r.char_ + n, text, 9 * n)), 0, 2},
      {"f", CALL(qek_str_dup(&r.block, text, -1))}}},
    QEK_ARRAY(arrays, "u", "", "ff", "u", "fffs", ),
    QEK_ARRAY(arrayd, "u", "", "ff", "u", "fffs", static_cast<uint32_t>(n), ),
    QEK_ARRAY(array, "us", "ss", "ffs", "us", "fffss", text + n, 4, ),
    QEK_ARRAY(arrayx, "u", "", "ff", "u", "fffs", static_cast<uint64_t>(n), ),
    {"arrayt",
     {{"", CALL(qek_arrayt_init(r.arrayt_ + n)), 0, 2},
      {"u", CALL(qek_arrayt_expand(r.arrayt_, 5))},
      {"s", CALL(qek_arrayt_append(r.arrayt_, 7)), 0, 13},
      {"u", CALL(qek_arrayt_append_array(r.arrayt_, r.arrayt_))},
      {"f", CALL(qek_arrayt_qsort(r.arrayt_, 0, 0))},
      {"u", CALL(qek_arrayt_clone(r.arrayt_, r.arrayt_ + 1))}}},
    {"bits",
     {{"u", CALL(qek_bits_expand(r.bits_, 1))}, {"u", CALL(qek_bits_insert(r.bits_, 9999, 1))}}},
    QEK_HASH(hash, "ssffsss", "ssfffffff", text + n, 4),
    QEK_HASH(hashd, "sffs", "sfffffff", static_cast<uint32_t>(n)),
    QEK_HASH(hashx, "sffs", "sfffffff", static_cast<uint64_t>(n)),
    QEK_HASH(hasht, "sffs", "sfffffff", text + n),
    QEK_BTREE(btree, "ffsssssfssffFl", "sfffffffffffll", text + n, 4),
    QEK_BTREE(btreed, "fffffFl", "fffffffffffll", static_cast<uint32_t>(n)),
    QEK_BTREE(btreex, "fffffFl", "fffffffffffll", static_cast<uint64_t>(n)),
    QEK_LIST(list, "ffs", text, 4, ),
    QEK_LIST(lists, "ff", ),
    QEK_LIST(listx, "ff", ),
    QEK_TREE(tree, qek_tree_entry_append(r.tree_, &r.tree_->root, qek_tree_entry_new(r.tree_))),
    QEK_TREE(bitree,
             qek_bitree_entry_add(r.bitree_, &r.bitree_->root, 1, qek_bitree_entry_new(r.bitree_))),
    {"pool",
     {{"", CALL(qek_pool_init(r.pool_ + n), r.pool_[n].item_size = 8), 0, 2},
      {"fffffff", CALL(r.pointer = qek_pool_new(r.pool_)), 0, 65},
      {"ff", CALL(qek_pool_free(r.pool_, r.pointer))},
      {"ff", CALL(qek_pool_iter_free(qek_pool_iter_new(r.pool_)))},
      {"f", CALL(r.pointer = qek_pool_map(r.pool_))},
      {"ffffffff",
       CALL(qek_pool_clone(r.pool_, static_cast<qek_pool_map_entry *>(r.pointer), r.pool_ + 1))},
      {"", CALL(qek_pool_umap(static_cast<qek_pool_map_entry *>(r.pointer)))}}},
};

char outcome(const session &of, size_t number, int nth, bool and_later, char told)
{
    const auto &chosen = of.operations[number];
    records r;
    const auto reach = [&] {
        std::memset(&r, 0, sizeof r);
        for (size_t at = 0; at < number; ++at) {
            of.operations[at].attempt(r);
        }
    };
    const auto attempt = [&] {
        const allocations failing(nth, and_later);
        return chosen.attempt(r);
    };
    if (can_fork ? faults([&] { reach(), attempt(), term(r); }) : told == 'f') {
        return 'f';
    }
    if (told == 'l' || told == 'F') {
        return told; // what is lost would be found as a leak
    }
    const long live = allocations::live();
    reach();
    const std::string before = bytes_of(r);
    const bool is_unchanged = attempt() == 0 && bytes_of(r) == before;
    for (size_t at = number + !is_unchanged; at < of.operations.size(); ++at) {
        of.operations[at].attempt(r);
    }
    term(r);
    EXPECT_EQ(allocations::live(), live) << "leaks";
    return is_unchanged ? 'u' : 's';
}

template <typename Record, typename... Flags>
void expect_inside(const char *name, void (*init)(Record *, Flags...), void (*term)(Record *))
{
    struct {
        uint64_t before;
        Record record;
        uint64_t behind;
    } guarded;
    std::memset(&guarded, 0xA5, sizeof guarded);
    const allocations watch;
    init(&guarded.record, Flags{1}...);
    auto sizes = watch.sizes();
    std::erase(sizes, 32 * sizeof(qek_word)); // of a tree's root
    EXPECT_EQ(sizes, std::vector(sizeof...(Flags), sizeof(qek_pool))) << name;
    const Record &of = guarded.record;
    if constexpr (requires { of.value_pool; }) {
        EXPECT_EQ(of.value_pool->item_size, 0) << name;
    } else if constexpr (requires { of.pool; }) {
        EXPECT_EQ(of.pool->item_size, 0) << name;
    }
    if constexpr (requires { of.head; }) {
        EXPECT_EQ(of.node_pool->item_size, int{sizeof *of.head}) << name;
    } else if constexpr (requires { of.page_pool; }) {
        EXPECT_EQ(of.page_pool->item_size, int{sizeof of.root}) << name;
    } else if constexpr (requires { of.root; }) {
        EXPECT_EQ(of.entry_pool->item_size, int{sizeof of.root}) << name;
    }
    term(&guarded.record);
    constexpr uint64_t guard = 0xA5A5A5A5A5A5A5A5;
    EXPECT_EQ(std::pair(guarded.before, guarded.behind), std::pair(guard, guard)) << name;
}
#define INSIDE(name) expect_inside(#name, qek_##name##_init, qek_##name##_term);

TEST(record, is_initialised_and_ended_within_its_bounds) { FAMILIES(INSIDE); }

TEST(allocation_DeathTest, does_what_is_told_when_it_fails_and_leaks_nothing)
{
    for (const session &each : sessions) {
        records r{};
        for (size_t number = 0; number < each.operations.size(); ++number) {
            const allocations watch;
            each.operations[number].attempt(r);
            const std::string told = each.operations[number].letters;
            ASSERT_EQ(std::ssize(told), watch.count()) << each.family << ", operation " << number;
            std::string once, later, told_later;
            for (int nth = 1; nth <= std::ssize(told); ++nth) {
                const auto at = static_cast<size_t>(nth) - 1;
                const char ending = told[std::min(told.find_first_of("ufF", at), told.size())];
                told_later += ending == 'F' ? 'f' : ending == 0 ? told[at] : ending;
                once += outcome(each, number, nth, false, told[at]);
                later += outcome(each, number, nth, true, told_later.back());
            }
            EXPECT_EQ(std::pair(once, later), std::pair(told, told_later))
                << each.family << ", operation " << number;
        }
        term(r);
    }
}

} // namespace
