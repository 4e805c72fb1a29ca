/* SPDX-License-Identifier: MIT */
/* SPDX-FileCopyrightText: 2026 The qek_std authors */
#include "abi/layout.h"

extern const int qek_layout_in_c;
const int qek_layout_in_c = 1;
