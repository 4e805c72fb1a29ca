// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Readers of bytes from elsewhere that are not tested with their families.

#include "array/keyed_check.h"
#include "list/list_check.h"
#include "support/random.h"

#include <gtest/gtest.h>

extern "C" {
#include "examples/word_index/index.h"
int complain(const char *format, ...); // of the example's report.c, silent here
void show_progress(const char *step, std::uint32_t done, const char *unit);
}

int complain(const char *, ...) { return 0; }
void show_progress(const char *, std::uint32_t, const char *) {}

namespace {

using qek_test::random_numbers;

struct index_file : word_table {
    std::string path = "readers." + std::to_string(std::random_device{}()) + ".index";

    index_file() : word_table{} { table_init(this); }
    ~index_file()
    {
        table_term(this);
        std::remove(path.c_str());
    }
    std::string content() const
    {
        std::string all(10000, '\0');
        std::FILE *file = std::fopen(path.c_str(), "rb");
        all.resize(std::fread(all.data(), 1, all.size(), file));
        std::fclose(file);
        return all;
    }
    void write(const std::string &all) const
    {
        std::FILE *file = std::fopen(path.c_str(), "wb");
        std::fwrite(all.data(), 1, all.size(), file);
        std::fclose(file);
    }
};

std::string sound_index()
{
    index_file file;
    std::uint32_t position = 0;
    for (const char *name : {"one", "", "three"}) {
        table_add_text(&file, name)->bytes = 40000;
        for (const char *word : {"harbour", "a", "\xC3\xA4", "a", name[0] == 0 ? "z" : name}) {
            table_add(&file, reinterpret_cast<const std::uint8_t *>(word), qek_str_chr(word, 0),
                      position += 7000);
        }
        file.bytes += 40000;
    }
    table_close(&file);
    EXPECT_EQ(index_write(file.path.c_str(), &file), 1);
    return file.content();
}

// A sound index, edited byte by byte. Its frame is mended mostly, so that the fields are looked at.
TEST(readers, index_of_any_bytes_is_taken_whole_or_not_at_all)
{
    static const std::string sound = sound_index();
    random_numbers random;
    std::string bytes = sound;
    for (int step = 0; random.goes_on(step, 2000); ++step) {
        bytes = random.one_in(8) || bytes.size() < 30 ? sound : bytes;
        const auto at = random.below(bytes.size());
        const auto byte = static_cast<char>(random.below(256));
        const auto edit = random.below(4);
        edit < 2 ? bytes.replace(at, 1, edit, byte) : bytes.insert(at, edit - 2, byte);
        if (!random.one_in(16)) {
            qek_stream frame{reinterpret_cast<std::uint8_t *>(bytes.data()),
                             static_cast<std::int32_t>(bytes.size()), 0};
            std::int32_t size_at = 6, end = frame.length - index_checksum_size;
            qek_stream_set_dword(&frame, &size_at, static_cast<std::uint32_t>(frame.length));
            qek_stream_set_dword(&frame, &end, qek_stream_crc32(frame.data, end));
        }
        index_file file;
        index_summary found{};
        file.write(bytes);
        std::uint32_t words = 0;
        const bool is_taken = index_check(file.path.c_str(), &file, &found) != 0;
        const auto *node = qek_btree_node_first(&file.vocabulary);
        for (; node != nullptr; node = node->next) {
            words += table_word(node)->count;
        }
        ASSERT_LE(words, found.words);
        ASSERT_TRUE(!is_taken || words == found.words);
        ASSERT_TRUE(is_taken || bytes != sound);
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
        const auto size = static_cast<std::int32_t>(list.size());
        qek_array texts;
        qek_list keys;
        qek_arrayd numbers;
        qek_arrayt elements;
        qek_string written{}, again{};
        qek_array_init(&texts, 0);
        qek_list_init(&keys, 1, 0);
        qek_arrayd_init(&numbers, 0);
        qek_arrayt_init(&elements);
        qek_array_from_string(&texts, ',', list.data(), size);
        qek_list_from_string(&keys, ',', list.data(), size);
        qek_arrayd_from_string(&numbers, ',', list.data(), size);
        qek_arrayt_from_string(&elements, ',', list.data(), size);
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
