// SPDX-License-Identifier: MIT
#include "abi/layout.h"

extern const int qek_layout_in_cxx;
const int qek_layout_in_cxx = 1;
