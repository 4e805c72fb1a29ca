// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The invariants of a pool, as the head of pool/pool.h states them, looked at from outside.
#pragma once

#include "qek_std.h"

#include <string>

namespace qek_test {

// Names the first invariant that does not hold; empty for a sound pool.
std::string pool_fault(const qek_pool &pool);

} // namespace qek_test
