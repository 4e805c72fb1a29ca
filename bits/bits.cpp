// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The bit set: numbered bits in a byte buffer that grows when one is written.
//
// Bit n lies in byte n / 8, the most significant first: bit 0 is 0x80 of byte 0. Reading outside of
// the buffer reads 0; writing there grows it by 1024 bytes, or to just the byte needed when that is
// further, also when the bit is cleared.

#include "base/arith.h"
#include "base/heap.h"
#include "qek_std.h"

using namespace qek;

namespace {

constexpr std::uint32_t growth = 1024;

constexpr std::uint8_t mask(std::uint32_t bit) noexcept
{
    return bit > 7 ? std::uint8_t{0} : static_cast<std::uint8_t>(0x80 >> bit);
}

std::uint32_t mask_of(std::uint8_t byte, std::uint32_t bit) noexcept
{
    return static_cast<std::uint32_t>(byte & mask(bit));
}

std::uint8_t with_bit(std::uint8_t byte, std::uint32_t bit, std::int32_t on) noexcept
{
    return static_cast<std::uint8_t>(on != 0 ? byte | mask(bit) : byte & ~mask(bit));
}

// `size_copy` is written by `hand_over` alone.
void init(qek_bits &bits) noexcept
{
    bits.data = nullptr;
    bits.size = 0;
}

void term(qek_bits &bits) noexcept
{
    give_block(bits.data);
    init(bits);
}

bool expand(qek_bits &bits, std::uint32_t wanted) noexcept
{
    if (bits.size >= wanted) {
        return true;
    }
    const std::uint32_t size = larger(bits.size + growth, wanted); // wraps near the far end
    auto *fresh = regrown_units(bits.data, bits.size, std::int64_t{size});
    if (fresh == nullptr) {
        return false;
    }
    bits.data = fresh;
    bits.size = size;
    return true;
}

void clear(qek_bits &bits) noexcept
{
    if (bits.data != nullptr) {
        std::memset(bits.data, 0, bits.size);
    }
}

// One way: both records then hold the buffer, and what the target held is dropped. Intended.
void hand_over(const qek_bits &source, qek_bits &target) noexcept
{
    target = {source.data, source.size, source.size};
}

// Apart, so that a bit that is there is set without the registers that this takes.
[[gnu::noinline]] void insert_growing(qek_bits &bits, std::uint32_t index, std::int32_t on) noexcept
{
    const std::uint32_t at = index >> 3;
    if (expand(bits, at + 1) && bits.data != nullptr) {
        bits.data[at] = with_bit(bits.data[at], index & 7, on);
    }
}

void insert(qek_bits &bits, std::uint32_t index, std::int32_t on) noexcept
{
    const std::uint32_t at = index >> 3;
    if (at < bits.size && bits.data != nullptr) {
        bits.data[at] = with_bit(bits.data[at], index & 7, on);
    } else {
        insert_growing(bits, index, on);
    }
}

std::uint32_t find(const qek_bits &bits, std::uint32_t index) noexcept
{
    const std::uint32_t at = index >> 3;
    return bits.data == nullptr || at >= bits.size ? 0 : mask_of(bits.data[at], index & 7);
}

} // namespace

uint32_t qek_bits_get(uint8_t byte, uint32_t bit) { return mask_of(byte, bit); }

uint8_t qek_bits_set(uint8_t byte, uint32_t bit, int32_t on) { return with_bit(byte, bit, on); }

void qek_bits_init(qek_bits *bits) { init(*bits); }

void qek_bits_term(qek_bits *bits) { term(*bits); }

int32_t qek_bits_expand(qek_bits *bits, uint32_t wanted) { return expand(*bits, wanted); }

void qek_bits_zero(qek_bits *bits) { clear(*bits); }

void qek_bits_swap(const qek_bits *source, qek_bits *target) { hand_over(*source, *target); }

void qek_bits_insert(qek_bits *bits, uint32_t index, int32_t on) { insert(*bits, index, on); }

uint32_t qek_bits_find(const qek_bits *bits, uint32_t index) { return find(*bits, index); }
