// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The data of all rows. Everything follows from fixed seeds, so that all sides of a row get the same.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace bench {

inline constexpr std::uint64_t seed = 0x5eed'0f'be4c4;

// One to one, so that what is made from different numbers differs.
constexpr std::uint64_t mix(std::uint64_t number)
{
    number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9U;
    number = (number ^ (number >> 27)) * 0x94d049bb133111ebU;
    return number ^ (number >> 31);
}

constexpr std::uint32_t mix(std::uint32_t number)
{
    number = (number ^ (number >> 16)) * 0x85ebca6bU;
    number = (number ^ (number >> 13)) * 0xc2b2ae35U;
    return number ^ (number >> 16);
}

// A key of 16 bytes.
struct id {
    std::uint64_t halves[2];
    friend bool operator==(const id &, const id &) = default;
};

enum class choice {
    stored, // in the order in which they are stored
    probes, // the same keys in another order
    absent, // as many that are not stored
};

// `count` keys. Texts stand one behind the other, each with a zero byte behind it.
template <typename Key> class keys {
  public:
    explicit keys(std::int64_t count, choice which = choice::stored)
    {
        const auto wanted = static_cast<std::size_t>(count);
        std::vector<std::uint32_t> numbers(wanted);
        std::iota(numbers.begin(), numbers.end(), which == choice::absent ? 1'000'000'000U : 0U);
        if (which == choice::probes) {
            std::shuffle(numbers.begin(), numbers.end(), std::mt19937_64(seed));
        }
        keys_.reserve(wanted);
        text_.reserve(std::is_same_v<Key, std::string_view> ? wanted * 25 : 0);
        for (const std::uint32_t number : numbers) {
            keys_.push_back(make(number));
        }
    }
    keys(const keys &) = delete;
    keys &operator=(const keys &) = delete;

    auto begin() const { return keys_.begin(); }
    auto end() const { return keys_.end(); }
    std::int64_t size() const { return static_cast<std::int64_t>(keys_.size()); }
    const Key &operator[](std::size_t index) const { return keys_[index]; }

  private:
    Key make(std::uint32_t number)
    {
        const std::uint64_t random = mix(seed + number);
        if constexpr (std::is_same_v<Key, std::string_view>) {
            return text(random);
        } else if constexpr (std::is_same_v<Key, id>) {
            return {random, mix(random)};
        } else if constexpr (sizeof(Key) == 4) {
            return static_cast<Key>(mix(static_cast<std::uint32_t>(seed) + number));
        } else {
            return static_cast<Key>(random);
        }
    }
    // 8 to 24 letters, which 64 bits give 10 at a time.
    std::string_view text(std::uint64_t random)
    {
        static constexpr char letters[] =
            "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
        const std::size_t begin = text_.size();
        const std::size_t length = 8 + random % 17;
        for (std::size_t at = 0; at < length; ++at) {
            random = at % 10 == 0 ? mix(random + 1) : random >> 6;
            text_ += letters[random % 64];
        }
        text_ += '\0';
        return {text_.data() + begin, length};
    }

    std::vector<Key> keys_;
    std::string text_;
};

// One copy of the same keys for all benchmarks of a program.
template <typename Key> const keys<Key> &shared(std::int64_t count, choice which = choice::stored)
{
    static std::map<std::pair<std::int64_t, choice>, keys<Key>> all;
    const std::pair name(count, which);
    return all.try_emplace(name, count, which).first->second;
}

// Words of letters between blanks; `size` bytes in all. One word in 16 is "needle".
inline std::string prose(std::int64_t size)
{
    std::mt19937_64 random(seed);
    std::string made;
    while (std::ssize(made) < size) {
        if (random() % 16 == 0) {
            made += "needle";
        } else {
            for (auto left = 2 + random() % 8; left > 0; --left) {
                made += static_cast<char>((random() % 8 == 0 ? 'A' : 'a') + random() % 26);
            }
        }
        made += ' ';
    }
    made.resize(static_cast<std::size_t>(size));
    return made;
}

} // namespace bench
