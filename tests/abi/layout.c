/* SPDX-License-Identifier: MIT */
#include "abi/layout.h"

extern const int qek_layout_in_c;
const int qek_layout_in_c = 1;
