// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Exchanging what two records hold, field for field.
#pragma once

namespace qek {

template <typename Record> void exchange(Record &a, Record &b) noexcept
{
    const Record kept = a;
    a = b;
    b = kept;
}

// For records with a field that the caller sets and that stays where it is.
template <typename Record, typename Field>
void exchange_all_but(Record &a, Record &b, Field Record::*stays) noexcept
{
    exchange(a, b);
    exchange(a.*stays, b.*stays);
}

} // namespace qek
