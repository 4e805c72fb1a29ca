// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "bench.h"
#include "data.h"
#include "qek_std.h"

#include <cctype>
#include <glib.h>
#include <memory>

namespace bench {
namespace {

std::int32_t our_length(std::string_view text) { return static_cast<std::int32_t>(text.size()); }

// Strings behind one interface. `replace` puts "thread" and a letter in the place of "needle".
constexpr char sought[] = "needle";
constexpr char instead[] = "threads";
constexpr std::string_view blanks = " \t\r\n";

struct ours {
    qek_string text;

    explicit ours(std::string_view from = {})
    {
        qek_string_init(&text);
        qek_string_copy(&text, from.data(), our_length(from));
    }
    ~ours() { qek_string_term(&text); }
    ours(const ours &) = delete;
    ours &operator=(const ours &) = delete;

    void append(char ch) { qek_string_append_char(&text, static_cast<std::uint8_t>(ch)); }
    void append(std::string_view piece)
    {
        qek_string_append(&text, piece.data(), our_length(piece));
    }
    void replace() { qek_string_replace(&text, sought, instead); }
    std::int64_t find(const std::string &what) const
    {
        return qek_string_find(&text, what.data(), our_length(what));
    }
    void trim() { qek_string_trim(&text); }
    void lower() { qek_string_make_lower(&text); }
    std::string_view view() const
    {
        return {reinterpret_cast<const char *>(text.data), static_cast<std::size_t>(text.length)};
    }
};

struct standard {
    std::string text;

    standard() = default;
    explicit standard(std::string_view from) : text(from) {}

    void append(char ch) { text.push_back(ch); }
    void append(std::string_view piece) { text.append(piece); }
    void replace()
    {
        std::string made;
        made.reserve(text.size());
        std::size_t begin = 0;
        for (auto at = text.find(sought); at != std::string::npos; at = text.find(sought, begin)) {
            made.append(text, begin, at - begin);
            made.append(instead);
            begin = at + sizeof sought - 1;
        }
        made.append(text, begin);
        text.swap(made);
    }
    std::int64_t find(const std::string &what) const
    {
        return static_cast<std::int64_t>(text.find(what));
    }
    void trim()
    {
        text.erase(text.find_last_not_of(blanks) + 1);
        text.erase(0, text.find_first_not_of(blanks));
    }
    void lower()
    {
        for (char &ch : text) {
            ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        }
    }
    std::string_view view() const { return text; }
};

struct glib {
    GString *text;

    explicit glib(std::string_view from = {})
        : text(g_string_new_len(from.data(), std::ssize(from)))
    {
    }
    ~glib() { g_string_free(text, TRUE); }
    glib(const glib &) = delete;
    glib &operator=(const glib &) = delete;

    // The function and not the macro of that name, which appends in place.
    void append(char ch) { (g_string_append_c)(text, ch); }
    void append(std::string_view piece)
    {
        (g_string_append_len)(text, piece.data(), std::ssize(piece));
    }
    void replace() { g_string_replace(text, sought, instead, 0); }
    std::int64_t find(const std::string &what) const
    {
        return g_strstr_len(text->str, -1, what.c_str()) - text->str;
    }
    void trim()
    {
        g_strstrip(text->str);
        text->len = std::strlen(text->str);
    }
    void lower() { g_string_ascii_down(text); }
    std::string_view view() const { return {text->str, text->len}; }
};

struct glib_bytes {
    GByteArray *bytes = g_byte_array_new();

    glib_bytes() = default;
    ~glib_bytes() { g_byte_array_free(bytes, TRUE); }
    glib_bytes(const glib_bytes &) = delete;
    glib_bytes &operator=(const glib_bytes &) = delete;

    void append(char ch) { append(std::string_view(&ch, 1)); }
    void append(std::string_view piece)
    {
        g_byte_array_append(bytes, reinterpret_cast<const guint8 *>(piece.data()),
                            static_cast<guint>(piece.size()));
    }
    std::string_view view() const
    {
        return {reinterpret_cast<const char *>(bytes->data), bytes->len};
    }
};

std::uint64_t checksum(std::string_view text)
{
    std::uint64_t total = text.size();
    for (std::size_t at = 0; at < text.size(); at += 1 + text.size() / 16) {
        total = total * 31 + static_cast<unsigned char>(text[at]);
    }
    return total;
}

template <typename Text, std::size_t width> void appending(benchmark::State &state)
{
    const std::string source = prose(4096 + 16);
    measure(
        state, size_of(state), [] { return std::make_unique<Text>(); },
        [&](std::unique_ptr<Text> &to) {
            for (std::int64_t at = 0; at < size_of(state); ++at) {
                const char *piece = source.data() + at % 4096;
                if constexpr (width == 1) {
                    to->append(*piece);
                } else {
                    to->append(std::string_view(piece, width));
                }
            }
            return checksum(to->view());
        });
}

constexpr auto replacing = [](auto &text) { text.replace(); };
constexpr auto trimming = [](auto &text) { text.trim(); };
constexpr auto lowering = [](auto &text) { text.lower(); };

// Changes fresh strings of one size, 64 KiB of them or one.
template <typename Text, auto change> void changing(benchmark::State &state)
{
    std::string source = prose(size_of(state));
    std::fill_n(source.begin(), 8, ' ');
    std::fill_n(source.rbegin(), 8, ' ');
    const auto count = static_cast<std::size_t>(std::max<std::int64_t>(1, 65'536 / size_of(state)));
    measure(
        state, static_cast<std::int64_t>(count),
        [&] {
            std::vector<std::unique_ptr<Text>> texts(count);
            for (auto &text : texts) {
                text = std::make_unique<Text>(source);
            }
            return texts;
        },
        [](std::vector<std::unique_ptr<Text>> &texts) {
            for (const auto &text : texts) {
                change(*text);
            }
            return checksum(texts.back()->view());
        });
}

template <typename Text> void finding(benchmark::State &state)
{
    const std::string source = prose(size_of(state) - 8) + "#at last";
    const std::string what = "at last";
    const std::int64_t calls = std::max<std::int64_t>(1, 65'536 / size_of(state));
    Text text(source);
    repeat(state, calls, text, [&](const Text &in) {
        std::int64_t total = 0;
        for (std::int64_t at = 0; at < calls; ++at) {
            total += in.find(what);
            benchmark::ClobberMemory();
        }
        return static_cast<std::uint64_t>(total);
    });
}

template <typename Text> void add_rows(const char *side)
{
    const sizes of{1024, 1 << 20};
    add("string_replace", side, of, changing<Text, replacing>);
    add("string_find", side, of, finding<Text>);
    add("string_trim", side, of, changing<Text, trimming>);
    add("string_lower", side, of, changing<Text, lowering>);
}

template <typename Text> void add_appends(const char *side)
{
    add("string_append_char", side, {1'000, 100'000}, appending<Text, 1>);
    add("string_append_16", side, {1'000, 100'000}, appending<Text, 16>);
}

// Wide text.
struct our_wide {
    qek_wchar text;

    our_wide() { qek_wchar_init(&text); }
    ~our_wide() { qek_wchar_term(&text); }
    our_wide(const our_wide &) = delete;
    our_wide &operator=(const our_wide &) = delete;

    void widen(std::string_view from) { qek_wchar_copy_str(&text, from.data(), our_length(from)); }
    std::int64_t find(const our_wide &what) const
    {
        return qek_wchar_find(&text, what.text.data, what.text.length);
    }
    bool above(const our_wide &other) const
    {
        return qek_wchar_compare(&text, other.text.data, other.text.length) > 0;
    }
    std::uint64_t last() const { return text.data[text.length - 1]; }
};

struct std_wide {
    std::u16string text;

    void widen(std::string_view from) { text.assign(from.begin(), from.end()); }
    std::int64_t find(const std_wide &what) const
    {
        return static_cast<std::int64_t>(text.find(what.text));
    }
    bool above(const std_wide &other) const { return text.compare(other.text) > 0; }
    std::uint64_t last() const { return text.back(); }
};

enum class wide_work {
    find,
    compare,
    widen
};

template <typename Text, wide_work work> void widely(benchmark::State &state)
{
    const std::string source = prose(size_of(state) - 8) + "#at last";
    const std::string other_source = source.substr(0, source.size() - 1) + '!';
    const std::int64_t calls = std::max<std::int64_t>(1, 65'536 / size_of(state));
    Text text;
    Text what;
    text.widen(source);
    what.widen(work == wide_work::find ? std::string("at last") : other_source);
    repeat(state, calls, text, [&](Text &in) {
        std::uint64_t total = 0;
        for (std::int64_t at = 0; at < calls; ++at) {
            if constexpr (work == wide_work::find) {
                total += static_cast<std::uint64_t>(in.find(what));
            } else if constexpr (work == wide_work::compare) {
                total += in.above(what) ? 1U : 0U;
            } else {
                in.widen(source);
                total += in.last();
            }
            benchmark::ClobberMemory();
        }
        return total;
    });
}

template <typename Text> void add_wide(const char *side)
{
    const sizes of{1024, 1 << 20};
    add("wide_find", side, of, widely<Text, wide_work::find>);
    add("wide_compare", side, of, widely<Text, wide_work::compare>);
    add("wide_widen", side, of, widely<Text, wide_work::widen>);
}

} // namespace

void register_rows()
{
    add_appends<ours>("ours");
    add_appends<glib>("gstring");
    add_appends<glib_bytes>("gbytearray");
    add_rows<ours>("ours");
    add_rows<standard>("std");
    add_rows<glib>("gstring");
    add_wide<our_wide>("ours");
    add_wide<std_wide>("u16string");
}

} // namespace bench
