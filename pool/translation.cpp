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
