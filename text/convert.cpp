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
#include <cstring>

using namespace qek;
using buffer::string_form;

namespace {

// Puts the text of a number at `from`, where it ends the string.
template <typename Text>
void end_with_text(qek_string &string, std::int32_t from, const Text &text) noexcept
{
    const std::int64_t end = wide(from) + text.length();
    if (buffer::expand<string_form>(string, end)) {
        text.write(string.data + from, wide(string.capacity) + 1 - from);
        string.length = static_cast<std::int32_t>(end);
    }
}

void end_with_number(qek_string &string, std::int32_t from, std::int64_t value) noexcept
{
    end_with_text(string, from, number::integer_text(value));
}

void end_with_number(qek_string &string, std::int32_t from, double value) noexcept
{
    end_with_text(string, from, number::decimal_text(value));
}

const char *text_of(const qek_string &string) noexcept
{
    return reinterpret_cast<const char *>(string.data);
}

// What `atoi` answers, which is asked for all but short plain numbers: those are read at once in
// half of its time.
int integer_of(const char *text) noexcept
{
    constexpr int safe_digits = 9;
    const bool negative = *text == '-';
    const std::uint8_t *digits = as_bytes(text) + (negative ? 1 : 0);
    int value = 0;
    int count = 0;
    for (; count <= safe_digits && number::is_digit(digits[count]); ++count) {
        value = count < safe_digits ? value * 10 + (digits[count] - '0') : 0;
    }
    if (count == 0 || count > safe_digits) {
        return std::atoi(text);
    }
    return negative ? -value : value;
}

// What `atof` answers. A plain decimal of up to fifteen digits is a quotient of two numbers that
// are exact, and one division rounds it as it should.
double decimal_of(const char *text) noexcept
{
    constexpr std::uint64_t tens[] = {
        1,           10,           100,           1000,           10000,
        100000,      1000000,      10000000,      100000000,      1000000000,
        10000000000, 100000000000, 1000000000000, 10000000000000, 100000000000000};
    constexpr int exact_digits = 15;
    const bool negative = *text == '-';
    const std::uint8_t *at = as_bytes(text) + (negative ? 1 : 0);
    std::uint64_t digits = 0;
    int count = 0;
    int decimals = 0;
    bool is_behind_point = false;
    for (; number::is_digit(*at) || (*at == '.' && count > 0 && !is_behind_point); ++at) {
        if (*at == '.') {
            is_behind_point = true;
        } else if (++count <= exact_digits) {
            digits = digits * 10 + (*at - std::uint64_t{'0'});
            decimals += is_behind_point ? 1 : 0;
        }
    }
    const bool may_go_on = std::strchr("eExX", *at) != nullptr && *at != 0;
    if (count == 0 || count > exact_digits || may_go_on || !rounds_to_nearest()) {
        return std::atof(text);
    }
    if (!platform::is_point_a_dot()) { // GCOVR_EXCL_BR_LINE: where tests run, no locale has another
        return std::atof(text);        // GCOVR_EXCL_LINE: the same
    }
    const double value = static_cast<double>(digits) / static_cast<double>(tens[decimals]);
    return negative ? -value : value;
}

void match(qek_string &string, const void *marker, std::va_list &texts) noexcept
{
    text::substitute<string_form>(string, as_bytes(marker), [&](const std::uint8_t *&inserted) {
        inserted = va_arg(texts, const std::uint8_t *);
        return inserted != nullptr;
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
    return buffer::is_empty(*string) ? fallback : integer_of(text_of(*string));
}

int64_t qek_string_get_long(const qek_string *string, int64_t fallback)
{
    return buffer::is_empty(*string) ? fallback
                                     : number::read_integer(string->data, string->length);
}

float qek_string_get_float(const qek_string *string, float fallback)
{
    return buffer::is_empty(*string) ? fallback : static_cast<float>(decimal_of(text_of(*string)));
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
