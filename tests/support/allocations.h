// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Watching and failing the library's calls of malloc. The copy of the library that the tests link
// with calls `watched_malloc` and `watched_free` instead; while no `allocations` object lives, every
// call goes straight on.
#pragma once

#include <cstddef>
#include <vector>

namespace qek_test {

class allocations {
  public:
    // Fails call number `fail_from` (from 1) and, if `and_later`, all calls behind it; 0 fails
    // none.
    explicit allocations(int fail_from = 0, bool and_later = false);
    ~allocations();
    allocations(const allocations &) = delete;
    allocations &operator=(const allocations &) = delete;

    int count() const;                      // calls since the object was made
    bool any_failed() const;                // whether one of them was failed
    std::vector<std::size_t> sizes() const; // the sizes asked for, at most the first 64
    static long live();                     // blocks taken in the whole run and not given back
};

} // namespace qek_test
