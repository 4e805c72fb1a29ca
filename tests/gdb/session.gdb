# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
break look
run
up
info locals
print *iter
continue
up
info locals
