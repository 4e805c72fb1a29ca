/* SPDX-License-Identifier: MIT */
#include "qek_std.h"

extern const char *const qek_header_version;
const char *const qek_header_version = QEK_STD_VERSION;
