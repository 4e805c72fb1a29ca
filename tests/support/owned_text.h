// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What the tests of texts say about a text, and a model of the owned ones. Units are char16_t here,
// which serves bytes and 16-bit units.
#pragma once

#include "qek_std.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace qek_test {

inline std::size_t unsign(std::int32_t number) { return static_cast<std::size_t>(number); }
inline int index(std::size_t found) { return static_cast<int>(found); } // npos: -1

// The text with the 26 units from `first` on moved by `step`: ('A', 32) lowers the letters.
inline std::u16string mapped(std::u16string text, char16_t first, int step)
{
    for (char16_t &unit : text) {
        unit = static_cast<char16_t>(unit >= first && unit < first + 26 ? unit + step : unit);
    }
    return text;
}

inline int order(const std::u16string &a, const std::u16string &b)
{
    const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return x == a.end() || y == b.end() ? index(a.size()) - index(b.size()) : *x - *y;
}

// The text between its blanks, and in front of it the blanks that go, unless nothing is left.
inline std::pair<std::size_t, std::u16string> trimmed(const std::u16string &text)
{
    const std::u16string front = u" \t\n\r", back(u" \t\n\r\0", 5);
    const auto first = text.find_first_not_of(front), last = text.find_last_not_of(back);
    const bool is_nothing = first == text.npos || text[first] == 0;
    return is_nothing ? std::pair(0, u"") : std::pair(first, text.substr(first, last - first + 1));
}

// The units of a text in a block that ends with them, to be given to the library.
template <typename Unit>
std::vector<Unit> units_of(const std::u16string &text, bool is_terminated = true)
{
    return {text.c_str(), text.c_str() + text.size() + is_terminated};
}

template <typename Record> struct owned : Record {
    owned() : Record{} {}
    ~owned() { qek_free(this->data); }
    owned(const owned &) = delete;
    owned &operator=(const owned &) = delete;
};

// An owned text as its buffer and its length. Every edit lays the new text over the front of the
// buffer. What has to grow while there is no memory does nothing and answers false.
struct owned_model {
    std::u16string buffer; // `capacity + 1` units
    std::int32_t length = 0, capacity = 0;

    static inline int failing = 0; // the number of the growth that fails, as for `allocations`

    std::u16string text() const { return buffer.substr(0, unsign(length)); }

    bool expand(std::int32_t wanted)
    {
        if (wanted <= capacity || --failing == 0) {
            return wanted <= capacity;
        }
        capacity = std::max(capacity + std::max(length / 2, 8), wanted) / 8 * 8 + 7;
        buffer.resize(unsign(capacity) + 1);
        return true;
    }
    bool close(std::int32_t new_length)
    {
        if (!buffer.empty() && new_length >= 0) {
            length = std::min(new_length, capacity);
            buffer[unsign(length)] = 0;
        }
        return true;
    }
    bool set(const std::u16string &text)
    {
        const bool has_room = expand(index(text.size()));
        std::copy_n(text.begin(), has_room ? text.size() : 0, buffer.begin());
        return has_room && close(index(text.size()));
    }
    bool append(const std::u16string &added) { return set(text() + added); }

    // The search for terminated text, which a zero unit stops.
    std::int32_t find(const std::u16string &sought, std::int32_t start) const
    {
        const bool is_place = start >= 0 && start < length;
        const std::u16string rest = is_place ? text().c_str() + start : u"";
        const int hit = is_place ? index(rest.find(sought)) : -1;
        return hit < 0 ? -1 : start + hit;
    }
    template <typename Record> static std::u16string buffer_of(const Record &record)
    {
        return {record.data, record.data + (record.data == nullptr ? 0 : record.capacity + 1)};
    }
    template <typename Record> bool is_like(const Record &record) const
    {
        return buffer_of(record) == buffer && record.length == length &&
               record.capacity == capacity;
    }
};

} // namespace qek_test
