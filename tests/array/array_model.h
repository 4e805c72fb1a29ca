// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What an array is told to do, done naively over a std::vector: slot for slot, also behind the
// count, with a heap that refuses where the test says so.
#pragma once

#include "array/reference_sort.h"
#include "qek_std.h"

#include <cstdint>
#include <functional>
#include <type_traits>

namespace qek_test {

inline std::vector<qek_word> told; // what callbacks on values were called with
inline void tell_value(qek_word value) { told.push_back(value); }

// `Family` says of its slots: `order` against a key, `word` of one, and how one that is taken out
// is `clear`ed.
template <typename Slot, typename Family> struct array_model {
    std::vector<Slot> slots{}; // the whole storage, with what is behind the count
    std::size_t inside = 0;    // slots in the record itself
    int count = 0;
    bool reversed = false;
    bool lends = false;                 // whether values go back to a borrowed pool
    qek_word next = 0;                  // the item that the pool gives next
    int live = 0;                       // items that the pool has given
    int fail_from = 0, allocations = 0; // the heap refuses from this call on; 0: never
    std::function<bool(int)> room{};    // for a key of so many bytes; below 0: for all keys twice

    bool allocate() { return ++allocations < fail_from || fail_from == 0; }
    int capacity() const { return static_cast<int>(slots.size()); }
    Slot &at(int index) { return slots.at(static_cast<std::size_t>(index)); }
    bool is_allocated(int index) const { return index >= 0 && index < capacity(); }

    int expand(int want)
    {
        slots.resize(std::max(slots.size(), inside));
        const int least = std::max(capacity() + std::clamp(count / 2, 8, 65536), want);
        if (want > capacity() && allocate()) {
            slots.resize(static_cast<std::size_t>(least + 3) / 4 * 4);
        }
        return want <= capacity() ? 1 : 0;
    }
    int insert_at(int index, Slot slot)
    {
        if (index < 0 || !expand(count + 1)) {
            return 0;
        }
        if constexpr (requires { slot.key.size(); }) {
            const bool fits = room(static_cast<int>(slot.key.size()));
            if (index < count && (slot.key.empty() || !fits)) {
                return 0;
            }
            slot.key.resize(fits ? slot.key.size() : 0);
        }
        slots.erase(slots.begin() + count);
        slots.insert(slots.begin() + std::min(index, count++), slot);
        return 0;
    }
    int append(const Slot &slot) { return insert_at(count, slot); }
    int append_itself()
    {
        if (expand(2 * count) && (!room || room(-1))) {
            for (int end = count; count < end * 2; ++count) {
                at(count) = at(count - end);
            }
        }
        return 0;
    }
    Slot get_at(int index) { return is_allocated(index) ? at(index) : Slot{}; }
    Slot get_first() { return get_at(count > 0 ? 0 : -1); }
    Slot get_last() { return get_at(count - 1); }
    qek_word set_at(int index, const Slot &slot)
    {
        return is_allocated(index) ? Family::word(std::exchange(at(index), slot)) : 0;
    }
    Slot remove_at(int index)
    {
        if (index < 0 || index >= count) {
            return {};
        }
        const Slot taken = at(index);
        Family::clear(at(index));
        slots.insert(slots.begin() + count, at(count - 1)); // the last one stays where it was
        slots.erase(slots.begin() + index);
        --count;
        return taken;
    }
    void release(const Slot &slot, qek_value_fn free_value)
    {
        const qek_word word = Family::word(slot);
        if (word != 0 && free_value != nullptr) {
            free_value(word);
        }
        live -= word != 0 && lends ? 1 : 0;
    }
    int free_at(int index, qek_value_fn free_value)
    {
        release(remove_at(index), free_value);
        return 0;
    }
    int remove_all()
    {
        slots.clear();
        count = 0;
        live = lends ? live : 0;
        return 0;
    }
    int free_all(qek_value_fn free_value)
    {
        for (int index = 0; index < count; ++index) {
            release(at(index), free_value);
        }
        return remove_all();
    }

    template <typename Key> int first_index(const Key &key)
    {
        int first = 0;
        while (first < count && at(first).key != key) {
            ++first;
        }
        return first < count ? first : -1;
    }
    // The index of a slot that equals the key, or -1, and where the key would go.
    template <typename Key> std::pair<int, int> search(const Key &key)
    {
        int low = 0, high = count - 1, position = 0;
        while (low <= high) {
            const int mid = (low + high) / 2;
            auto c = Family::order(at(mid), key);
            using bits = std::make_unsigned_t<decltype(c)>;
            c = reversed ? static_cast<decltype(c)>(bits{} - static_cast<bits>(c)) : c;
            if (c == 0) {
                return {mid, mid};
            }
            position = c > 0 ? mid : mid + 1;
            (c > 0 ? high : low) = c > 0 ? mid - 1 : mid + 1;
        }
        return {-1, position};
    }
};

} // namespace qek_test
