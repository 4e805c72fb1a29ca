# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# A 32-bit x86 build on a 64-bit machine. The kernel's headers stand in the folder of the 64-bit
# architecture only; it is searched last, so that nothing else is taken from there.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CROSSCOMPILING FALSE) # what is built runs here, and its tests do
foreach(language C CXX)
    set(CMAKE_${language}_FLAGS_INIT "-m32 -idirafter /usr/include/x86_64-linux-gnu")
endforeach()
