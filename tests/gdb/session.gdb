# SPDX-License-Identifier: MIT
break look
run
up
info locals
print *iter
continue
up
info locals
