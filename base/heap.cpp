// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/heap.h"

#include "qek_std.h"

void *qek_malloc(uint32_t size) { return qek::take_block(size); }

void qek_free(void *block) { qek::give_block(block); }
