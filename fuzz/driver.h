// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What fuzzing consists of: for each target the tests whose choices bytes can make, as the filters
// of the test framework name them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace qek_fuzz {

extern const std::map<std::string, std::vector<std::string>> targets;

// The one that is run. For a fuzzer, which tells nothing but bytes, QEK_FUZZ_TARGET names it.
extern std::string target;

} // namespace qek_fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
