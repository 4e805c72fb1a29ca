// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "array/array_model.h"
#include "support/allocations.h"
#include "support/random.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <set>
#include <tuple>

namespace {

using namespace qek_test;
using std::tuple;
using numbers = std::vector<std::uint32_t>;

struct tiny : qek_arrayt {
    tiny() : qek_arrayt{{1, 2, 3, 4}, nullptr, 5, 6, 7} { qek_arrayt_init(this); }
    ~tiny() { qek_arrayt_term(this); }
    tiny(const tiny &) = delete;
    tiny &operator=(const tiny &) = delete;

    numbers storage() const // in one piece, with what is behind the count
    {
        numbers all(inline_slots, inline_slots + std::min(capacity, 4));
        all.insert(all.end(), overflow, overflow + std::max(capacity - 4, 0));
        return all;
    }
};

struct element {
    static std::int32_t order(std::uint32_t slot, std::uint32_t value)
    {
        return static_cast<std::int32_t>(slot - value);
    }
    static qek_word word(std::uint32_t slot) { return slot; }
    static void clear(std::uint32_t &slot) { slot = 0; }
};

// Elements lie in the record and in a block, and are one run for all operations.
TEST(arrayt, follows_the_model_element_by_element)
{
    random_numbers random;
    tiny array;
    array_model<std::uint32_t, element> m;
    m.inside = 4;
    m.slots = array.storage();
    for (int step = 0; random.goes_on(step, 12000); ++step) {
        const std::uint32_t value = random.below(8) << 29 | random.below(2);
        const int index = random.between(-2, m.count + 2), want = random.between(-1, m.count + 9);
        const int up = random.between(-1, 1), unique = random.one_in(3) ? 1 : 0;
        const int found = m.search(value).first, position = m.search(value).second;
        m.fail_from = random.one_in(5) ? 1 : 0;
        m.allocations = 0;
        const auto both = [&](auto expected, auto function, auto... arguments) {
            const allocations faults(m.fail_from, true);
            if constexpr (std::is_void_v<decltype(function(&array, arguments...))>) {
                function(&array, arguments...);
            } else {
                EXPECT_EQ(function(&array, arguments...), expected);
            }
        };
        const bool doubles = m.count < 20;
        const auto stored = [&](int place) { return place < m.count ? m.set_at(place, value) : 0; };
        const auto at = [&](int place) { return place < m.count ? m.get_at(place) : 0; };
        const std::function<void()> operations[] = {
            [&] { both(m.append(value), qek_arrayt_append, value); },
            [&] { both(m.insert_at(index, value), qek_arrayt_insert_at, index, value); },
            [&] { both(m.remove_at(index), qek_arrayt_remove_at, index); },
            [&] { both(m.expand(want), qek_arrayt_expand, want); },
            [&] { both(stored(index), qek_arrayt_set_at, index, value); },
            [&] { both(at(index), qek_arrayt_get_at, index); },
            [&] { both(at(0), qek_arrayt_get_first); },
            [&] { both(at(m.count - 1), qek_arrayt_get_last); },
            [&] { both(found >= 0 ? 1 : 0, qek_arrayt_find, value); },
            [&] { both((m.remove_at(found), found >= 0), qek_arrayt_remove, value); },
            [&] { doubles ? both(m.append_itself(), qek_arrayt_append_array, &array) : void(); },
            [&] { random.one_in(9) ? both(m.remove_all(), qek_arrayt_remove_all) : void(); },
            [&] {
                const int added = found < 0 ? 1 + m.insert_at(position, value) : 0;
                both(added, qek_arrayt_insert, value);
            },
            [&] {
                tiny other;
                qek_arrayt_append(&other, value);
                qek_arrayt_swap(&array, &other);
                EXPECT_EQ(tuple(array.count, other.count, other.reversed), tuple(1, m.count, 0));
                const bool fits = m.capacity() <= 4 || m.allocate();
                both(0, [&](auto *target) { qek_arrayt_clone(&other, target); });
                EXPECT_EQ(array.capacity, fits ? std::max(m.capacity(), 4) : 4);
                EXPECT_EQ(qek_arrayt_get_last(&array), fits ? at(m.count - 1) : value);
                qek_arrayt_swap(&array, &other);
            },
            [&] {
                std::multiset<std::uint32_t> all(m.slots.begin(), m.slots.begin() + m.count);
                numbers sorted(all.begin(), all.end());
                if (unique != 0) {
                    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
                }
                up != 0 ? void() : std::reverse(sorted.begin(), sorted.end());
                std::copy(sorted.begin(), sorted.end(), m.slots.begin());
                m.count = static_cast<int>(sorted.size());
                qek_arrayt_qsort(&array, up, unique);
            },
        };
        const auto chosen = random.below(std::size(operations));
        operations[chosen]();
        ASSERT_EQ(array.storage(), m.slots) << "step " << step << ", operation " << chosen;
        ASSERT_EQ(tuple(array.count, array.overflow == nullptr), tuple(m.count, m.capacity() <= 4));
        ASSERT_FALSE(testing::Test::HasFailure()) << "step " << step << ", operation " << chosen;
        m.reversed = m.reversed != random.one_in(50);
        array.reversed = m.reversed ? 1 : 0;
    }
}

TEST(arrayt, takes_no_memory_for_four_elements)
{
    tiny array;
    const allocations watch;
    for (int round = 0; round < 2; ++round) {
        for (const std::uint32_t value : {8U, 6U, 4U, 2U}) {
            qek_arrayt_insert(&array, value);
        }
        EXPECT_EQ(array.storage(), (numbers{2, 4, 6, 8}));
        round == 0 ? qek_arrayt_remove_all(&array) : void();
    }
    EXPECT_EQ(qek_arrayt_expand(&array, INT32_MAX), 0) << "rounds up beyond every capacity";
    EXPECT_EQ(watch.count(), 0);
    qek_arrayt_insert(&array, 5);
    qek_arrayt_qsort(&array, 1, 0);
    EXPECT_THAT(watch.sizes(), testing::ElementsAre(32, 20)); // the latter for a copy of all
    EXPECT_EQ(array.storage(), (numbers{2, 4, 5, 6, 8, 0, 0, 0, 0, 0, 0, 0}));
    qek_arrayt_term(&array);
    EXPECT_EQ(tuple(array.storage(), array.count), tuple(numbers{2, 4, 5, 6}, 0));
}

TEST(arrayt, has_nothing_behind_the_fourth_element_without_a_block)
{
    qek_arrayt array{{1, 2, 3, 4}, nullptr, 5, 8, 0};
    qek_arrayt_set_at(&array, 4, 9);
    EXPECT_EQ(tuple(qek_arrayt_get_at(&array, 4), qek_arrayt_remove_at(&array, 4)), tuple(0U, 0U));
    EXPECT_EQ(tuple(qek_arrayt_remove_at(&array, 0), array.count), tuple(1U, 4));
    EXPECT_EQ(numbers(array.inline_slots, array.inline_slots + 4), (numbers{0, 2, 3, 4}));
}

} // namespace
