// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Readers of bytes from elsewhere that are not tested with their families.

#include "array/keyed_check.h"
#include "list/list_check.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

extern "C" {
#include "demo/word_index/index.h"
int complain(const char *format, ...); // of the program's report.c, silent here
void show_progress(const char *step, std::uint32_t done, const char *unit);
}

int complain(const char *, ...) { return 0; }
void show_progress(const char *, std::uint32_t, const char *) {}

namespace {

using qek_test::random_numbers;

struct index_file : word_table {
    // As long in every run, so that room for it is the same.
    std::string path = "readers." + std::to_string(std::random_device{}() | 1U << 31) + ".index";

    index_file() : word_table{} { table_init(this); }
    ~index_file()
    {
        table_term(this);
        std::remove(path.c_str());
    }
};

std::string sound_index()
{
    index_file file;
    std::uint32_t position = 0;
    for (const char *word : {"harbour", "a", "\xC3\xA4", "a", "z", "harbour"}) {
        table_add_text(&file, word)->bytes = 8000;
        table_add(&file, reinterpret_cast<const std::uint8_t *>(word), qek_str_chr(word, 0),
                  position += 7000);
        file.bytes += 8000;
    }
    EXPECT_EQ(index_write(file.path.c_str(), &file), 1);
    std::ifstream stream(file.path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// A sound index, edited byte by byte. Its frame is mended mostly, so that the fields are looked at.
TEST(readers, index_of_any_bytes_is_taken_whole_or_not_at_all)
{
    static const std::string sound = sound_index();
    random_numbers random;
    std::string bytes = sound;
    for (int step = 0; random.goes_on(step, 2000); ++step) {
        bytes = random.one_in(8) || bytes.size() < 30 ? sound : bytes;
        const auto at = random.below(bytes.size()), edit = random.below(4);
        bytes.replace(at, edit < 2, edit % 2, static_cast<char>(random.below(256)));
        if (!random.one_in(16)) {
            qek_stream frame{reinterpret_cast<std::uint8_t *>(bytes.data()),
                             static_cast<std::int32_t>(bytes.size()), 0};
            std::int32_t size_at = 6, end = frame.length - index_checksum_size;
            qek_stream_set_dword(&frame, &size_at, static_cast<std::uint32_t>(frame.length));
            qek_stream_set_dword(&frame, &end, qek_stream_crc32(frame.data, end));
        }
        index_file file;
        index_summary found{};
        std::ofstream(file.path, std::ios::binary) << bytes;
        const bool is_taken = index_check(file.path.c_str(), &file, &found) != 0;
        std::uint32_t words = 0;
        const auto *node = qek_btree_node_first(&file.vocabulary);
        for (; node != nullptr; node = node->next) {
            words += table_word(node)->count;
        }
        ASSERT_TRUE(is_taken ? words == found.words : words <= found.words && bytes != sound);
    }
}

// The families agree on how many elements a list has, and numbers that were written are read back.
TEST(readers, lists_of_any_bytes_give_sound_containers)
{
    random_numbers random;
    for (int step = 0; random.goes_on(step, 5000) && !HasFailure(); ++step) {
        std::vector<char> list(random.below(40));
        for (char &each : list) {
            each = random.one_of({',', ',', ' ', '-', '0', '9', 'x', '.', '\0', '\n', '\xFF'});
        }
        qek_array texts{};
        qek_list keys;
        qek_arrayd numbers{};
        qek_arrayt elements;
        qek_string written{}, again{};
        qek_list_init(&keys, 1, 0);
        qek_arrayt_init(&elements);
        const auto read_list = [&](auto function, auto &into) {
            function(&into, ',', list.data(), static_cast<std::int32_t>(list.size()));
        };
        read_list(qek_array_from_string, texts);
        read_list(qek_list_from_string, keys);
        read_list(qek_arrayd_from_string, numbers);
        read_list(qek_arrayt_from_string, elements);
        EXPECT_EQ(qek_test::array_fault(texts) + qek_test::array_fault(numbers), "");
        EXPECT_EQ(qek_test::list_fault(keys), "");
        EXPECT_TRUE(texts.count == numbers.count && elements.count == numbers.count);
        qek_arrayd_to_string(&numbers, ',', &written);
        qek_arrayt_remove_all(&elements);
        qek_arrayt_from_string(&elements, ',', written.data, written.length);
        qek_arrayt_to_string(&elements, ',', &again);
        EXPECT_EQ(qek_string_compare(&again, written.data, written.length), 0);
        qek_array_to_string(&texts, ',', &again);
        qek_list_to_string(&keys, ',', &again);
        qek_array_term(&texts);
        qek_list_term(&keys);
        qek_arrayd_term(&numbers);
        qek_arrayt_term(&elements);
        qek_string_term(&written);
        qek_string_term(&again);
    }
}

} // namespace
