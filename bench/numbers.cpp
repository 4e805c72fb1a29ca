// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Numbers to text and back. Texts of all lengths alike: a number's digits are cut to a random count.

#include "bench.h"
#include "data.h"
#include "qek_std.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace bench {
namespace {

constexpr std::int64_t count = 10'000;

template <typename Number> std::vector<Number> numbers()
{
    std::vector<Number> made;
    for (const std::uint64_t key : keys<std::uint64_t>(count)) {
        const int bits = std::is_same_v<Number, std::int32_t> ? 31 : 63;
        const auto whole = static_cast<std::int64_t>((key >> (64 - bits)) >> (key % 32));
        const std::int64_t cut = key % 7 < 3 ? -whole : whole;
        if constexpr (std::is_same_v<Number, double>) {
            made.push_back(static_cast<double>(cut % 1'000'000'000'000) / 1e6);
        } else {
            made.push_back(static_cast<Number>(cut));
        }
    }
    return made;
}

// A side makes the text of a number, and tells its length.
struct our_text {
    qek_string text;

    our_text() { qek_string_init(&text); }
    ~our_text() { qek_string_term(&text); }
    our_text(const our_text &) = delete;
    our_text &operator=(const our_text &) = delete;

    std::int64_t print(std::int32_t number)
    {
        qek_string_copy_integer(&text, number);
        return text.length;
    }
    std::int64_t print(std::int64_t number)
    {
        qek_string_copy_long(&text, number);
        return text.length;
    }
    std::int64_t print(double number)
    {
        qek_string_copy_double(&text, number);
        return text.length;
    }
};

struct libc_text {
    char text[512];

    std::int64_t print(std::int32_t number)
    {
        return std::snprintf(text, sizeof text, "%d", number);
    }
    std::int64_t print(std::int64_t number)
    {
        return std::snprintf(text, sizeof text, "%ld", number);
    }
    std::int64_t print(double number) { return std::snprintf(text, sizeof text, "%f", number); }
};

struct std_text {
    char text[512];

    template <typename Integer> std::int64_t print(Integer number)
    {
        return std::to_chars(text, text + sizeof text, number).ptr - text;
    }
    std::int64_t print(double number)
    {
        return std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, 6).ptr -
               text;
    }
};

template <typename Side, typename Number> void printing(benchmark::State &state)
{
    const std::vector<Number> all = numbers<Number>();
    Side side;
    repeat(state, count, side, [&](Side &by) {
        std::int64_t total = 0;
        for (const Number number : all) {
            total += by.print(number);
            benchmark::ClobberMemory();
        }
        return static_cast<std::uint64_t>(total);
    });
}

// The texts of the numbers, as our records and with a zero byte behind each.
template <typename Number> struct texts {
    std::vector<qek_string> all;

    texts()
    {
        our_text printer;
        for (const Number number : numbers<Number>()) {
            printer.print(number);
            qek_string_init(&all.emplace_back());
            qek_string_clone(&printer.text, &all.back());
        }
    }
    ~texts()
    {
        for (qek_string &text : all) {
            qek_string_term(&text);
        }
    }
    texts(const texts &) = delete;
    texts &operator=(const texts &) = delete;
};

template <typename Number, auto read> void reading(benchmark::State &state)
{
    texts<Number> made;
    repeat(state, count, made, [](const texts<Number> &from) {
        decltype(read(from.all[0])) total = 0;
        for (const qek_string &text : from.all) {
            total += read(text);
        }
        return static_cast<std::uint64_t>(std::llround(static_cast<double>(total)));
    });
}

const char *begin(const qek_string &text) { return reinterpret_cast<const char *>(text.data); }

// The rows of the runtime's grammar (blanks, plus sign, exponent) and of our own.
constexpr auto our_integer = [](const qek_string &text) {
    return static_cast<std::int64_t>(qek_string_get_integer(&text, 0));
};
constexpr auto our_long = [](const qek_string &text) { return qek_string_get_long(&text, 0); };
constexpr auto our_float = [](const qek_string &text) {
    return static_cast<double>(qek_string_get_float(&text, 0));
};
constexpr auto our_double = [](const qek_string &text) { return qek_string_get_double(&text, 0); };
constexpr auto libc_long = [](const qek_string &text) {
    return std::int64_t{std::strtol(begin(text), nullptr, 10)};
};
constexpr auto libc_float = [](const qek_string &text) {
    return static_cast<double>(static_cast<float>(std::strtod(begin(text), nullptr)));
};
constexpr auto libc_double = [](const qek_string &text) {
    return std::strtod(begin(text), nullptr);
};

template <typename Number> Number from_chars(const qek_string &text)
{
    Number number{};
    std::from_chars(begin(text), begin(text) + text.length, number);
    return number;
}
constexpr auto std_integer = [](const qek_string &text) {
    return std::int64_t{from_chars<std::int32_t>(text)};
};
constexpr auto std_float = [](const qek_string &text) {
    return static_cast<double>(static_cast<float>(from_chars<double>(text)));
};

template <typename Number> void add_printing(const std::string &row)
{
    add(row, "ours", {count}, printing<our_text, Number>);
    add(row, "snprintf", {count}, printing<libc_text, Number>);
    add(row, "to_chars", {count}, printing<std_text, Number>);
}

template <typename Number, auto ours, auto libc, auto standard>
void add_reading(const std::string &row, const char *libc_name)
{
    add(row, "ours", {count}, reading<Number, ours>);
    add(row, libc_name, {count}, reading<Number, libc>);
    add(row, "from_chars", {count}, reading<Number, standard>);
}

} // namespace

void register_rows()
{
    add_printing<std::int32_t>("print_integer");
    add_printing<std::int64_t>("print_long");
    add_printing<double>("print_double");
    add_reading<std::int32_t, our_integer, libc_long, std_integer>("read_integer", "strtol");
    add_reading<std::int64_t, our_long, libc_long, from_chars<std::int64_t>>("read_long", "strtol");
    add_reading<double, our_float, libc_float, std_float>("read_float", "strtod");
    add_reading<double, our_double, libc_double, from_chars<double>>("read_double", "strtod");
}

} // namespace bench
