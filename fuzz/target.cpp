// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// Makes a fuzzer of one target, where nobody is there to set QEK_FUZZ_TARGET.

#include "fuzz/driver.h"

extern "C" int LLVMFuzzerInitialize(int * /*count*/, char *** /*arguments*/)
{
    qek_fuzz::target = QEK_FUZZ_TARGET;
    return 0;
}
