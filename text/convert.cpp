// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The owned 8-bit text: numbers in and out, formatted writing, and the three substitutions.

#include "base/platform.h"
#include "base/rounding.h"
#include "text/format.h"
#include "text/number.h"
#include "text/owned.h"
#include "text/print.h"

#include <cstdio>
#include <cstdlib>
#include <limits>

using namespace qek;
using buffer::string_form;

namespace {

using number::decimal_text;
using number::integer_text;

template <typename Text, typename Number>
void end_growing(qek_string &string, std::int32_t from, Number value, std::int64_t end) noexcept;

// Puts the text of a number at `from`, where it ends the string.
template <typename Text, typename Number>
[[gnu::noinline]] void end_with(qek_string &string, std::int32_t from, Number value) noexcept
{
    const Text text(value);
    const std::int64_t end = wide(from) + text.length();
    if (string.capacity < end) {
        end_growing<Text>(string, from, value, end);
        return;
    }
    string.length = static_cast<std::int32_t>(end);
    text.write(string.data + from, wide(string.capacity) - from);
}

// Apart, so that a text that has room is written without the registers that this takes.
template <typename Text, typename Number>
[[gnu::noinline]] void end_growing(qek_string &string, std::int32_t from, Number value,
                                   std::int64_t end) noexcept
{
    if (buffer::grow<string_form>(string, end)) {
        end_with<Text>(string, from, value);
    }
}

void end_with_number(qek_string &string, std::int32_t from, std::int64_t value) noexcept
{
    end_with<integer_text>(string, from, value);
}

void end_with_number(qek_string &string, std::int32_t from, double value) noexcept
{
    end_with<decimal_text>(string, from, value);
}

const char *text_of(const qek_string &string) noexcept
{
    return reinterpret_cast<const char *>(string.data);
}

// The two that the runtime reads, up to a zero byte and not to the length: what plain texts answer
// is told at once, in half of its time. The buffer is looked at behind the zero byte too.

// What `atoi` answers.
int integer_of(const qek_string &string) noexcept
{
    constexpr std::int32_t safe_digits = 10;
    const std::int32_t negative = *string.data == '-' ? 1 : 0;
    const auto [value, end] = number::read_digits(string.data, string.capacity, negative);
    const std::int32_t count = end - negative;
    if (count == 0 || count > safe_digits || value > std::numeric_limits<std::int32_t>::max()) {
        return std::atoi(text_of(string));
    }
    return static_cast<int>(negative != 0 ? 0 - value : value);
}

// What `atof` answers. A plain decimal of up to fifteen digits is a quotient of two numbers that
// are exact, and one division rounds it as it should.
double decimal_of(const qek_string &string) noexcept
{
    constexpr std::int32_t exact_digits = 15;
    if (!platform::is_point_a_dot()) {     // GCOVR_EXCL_BR_LINE: where tests run, no locale has
        return std::atof(text_of(string)); // GCOVR_EXCL_LINE: another
    }
    const std::int32_t first = *string.data == '-' ? 1 : 0;
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const std::int32_t size = smaller(string.capacity, most - 1) + 1; // with the last zero byte
    number::digit_run run = number::read_digits(string.data, size, first);
    std::uint64_t digits = run.value;
    std::int32_t count = run.end - first;
    std::int32_t decimals = 0;
    if (count > 0 && string.data[run.end] == '.') {
        const std::int32_t behind_point = run.end + 1;
        run = number::read_digits(string.data, size, behind_point);
        decimals = run.end - behind_point;
        count += decimals;
        digits = digits * number::tens.of[decimals <= exact_digits ? decimals : 0] + run.value;
    }
    const int next = string.data[run.end] | 0x20; // a small letter, if it is a letter
    if (count == 0 || count > exact_digits || next == 'e' || next == 'x' || !rounds_to_nearest()) {
        return std::atof(text_of(string));
    }
    const double value = static_cast<double>(static_cast<std::int64_t>(digits)) /
                         static_cast<double>(static_cast<std::int64_t>(number::tens.of[decimals]));
    return number::with_sign(value, first != 0);
}

void match(qek_string &string, const void *marker, std::va_list &texts) noexcept
{
    text::substitute<string_form>(string, as_bytes(marker),
                                  [&](text::span<std::uint8_t> &inserted) {
                                      inserted.data = va_arg(texts, const std::uint8_t *);
                                      return inserted.data != nullptr;
                                  });
}

void write(qek_string &string, const char *format, std::va_list &arguments) noexcept
{
    std::va_list looked_at;
    va_copy(looked_at, arguments);
    const text::format_estimate estimate(format, looked_at);
    va_end(looked_at);
    text::rebuilding<string_form> result(string, estimate.room());
    if (!result.has_room()) {
        return;
    }
    qek_string &fresh = result.fresh();
    const auto room = fresh.data == nullptr ? 0 : static_cast<std::size_t>(fresh.capacity) + 1;
    const int written =
        std::vsnprintf(reinterpret_cast<char *>(fresh.data), room, format, arguments);
    buffer::shrink<string_form>(fresh, larger(written, 0));
}

} // namespace

void qek_string_copy_integer(qek_string *string, int32_t value)
{
    end_with_number(*string, 0, std::int64_t{value});
}

void qek_string_copy_long(qek_string *string, int64_t value) { end_with_number(*string, 0, value); }

void qek_string_copy_float(qek_string *string, float value)
{
    end_with_number(*string, 0, double{value});
}

void qek_string_copy_double(qek_string *string, double value)
{
    end_with_number(*string, 0, value);
}

void qek_string_append_integer(qek_string *string, int32_t value)
{
    end_with_number(*string, string->length, std::int64_t{value});
}

void qek_string_append_long(qek_string *string, int64_t value)
{
    end_with_number(*string, string->length, value);
}

void qek_string_append_float(qek_string *string, float value)
{
    end_with_number(*string, string->length, double{value});
}

void qek_string_append_double(qek_string *string, double value)
{
    end_with_number(*string, string->length, value);
}

// Two of the readers are the runtime's, which stop at a zero byte, and two our own, which stop at
// the length; that the two accept different texts is intended.
int32_t qek_string_get_integer(const qek_string *string, int32_t fallback)
{
    return buffer::is_empty(*string) ? fallback : integer_of(*string);
}

int64_t qek_string_get_long(const qek_string *string, int64_t fallback)
{
    return buffer::is_empty(*string) ? fallback
                                     : number::read_integer(string->data, string->length);
}

float qek_string_get_float(const qek_string *string, float fallback)
{
    return buffer::is_empty(*string) ? fallback : static_cast<float>(decimal_of(*string));
}

double qek_string_get_double(const qek_string *string, double fallback)
{
    return buffer::is_empty(*string) ? fallback
                                     : number::read_decimal(string->data, string->length);
}

int32_t qek_string_replace_char(qek_string *string, uint8_t old_ch, uint8_t new_ch)
{
    return text::replace_unit<string_form>(*string, old_ch, new_ch);
}

int32_t qek_string_replace(qek_string *string, const void *find, const void *replacement)
{
    return text::replace<string_form>(*string, as_bytes(find), as_bytes(replacement));
}

void qek_string_match(qek_string *string, const void *marker, ...)
{
    std::va_list texts;
    va_start(texts, marker);
    match(*string, marker, texts);
    va_end(texts);
}

void qek_string_format(qek_string *string, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    write(*string, format, arguments);
    va_end(arguments);
}
