// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "pool/translation.h"

namespace qek::pool {

translation::translation(bool wanted, const qek_pool *source, qek_pool *target) noexcept
    : source_(source), target_(target), made_(wanted)
{
    if (made_) {
        map_ = map(*source);
        clone(*source, map_, *target);
    }
}

translation_of_nodes::translation_of_nodes(bool wanted, const qek_pool *source,
                                           qek_pool *target) noexcept
    : translation(wanted, source, target)
{
    if (wanted && source->items.used > 0) {
        cut(source->items.used);
    }
}

// As many parts as blocks, so that a small pool pays little.
void translation_of_nodes::cut(std::int32_t blocks) noexcept
{
    const auto begin_of = [&](std::int32_t block) { return address_of(map_[block].block_base); };
    const std::int32_t parts = smaller(blocks, most_parts);
    lowest_ = begin_of(0);
    last_part_ = static_cast<std::uintptr_t>(parts - 1);
    while ((begin_of(blocks - 1) - lowest_) >> shift_ > last_part_) {
        ++shift_;
    }
    std::int32_t at = 0;
    for (std::uintptr_t part = 0; part <= last_part_; ++part) {
        while (at + 1 < blocks && (begin_of(at + 1) - lowest_) <= part << shift_) {
            ++at;
        }
        begins_[part] = at;
    }
    begins_[last_part_ + 1] = blocks - 1;
}

value_copier::value_copier(qek_pool *source_aux, qek_pool *target_aux,
                           qek_clone_fn clone_value) noexcept
    : source_aux_(source_aux), target_aux_(target_aux), clone_value_(clone_value),
      aux_(source_aux != nullptr && target_aux != nullptr && clone_value != nullptr, source_aux,
           target_aux)
{
}

void value_copier::copy(qek_word value, const translation &values, qek_word &copied) const noexcept
{
    if (!values.is_made()) {
        copied = value;
        return;
    }
    copied = word_of(values.of(item_of(value)));
    if (clone_value_ != nullptr) {
        clone_value_(aux_.map_word(), value, source_aux_, copied, target_aux_);
    }
}

} // namespace qek::pool
