// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

#include "base/platform.h"

#include <cstring>

#if defined(_WIN32)

#include <clocale>

#include <windows.h>

#if defined(QEK_STD_BUILD) // the DLL, and not the static library inside of somebody else's
// The library keeps nothing per thread, so it asks not to be told of threads that start and stop.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
#endif

int qek::platform::compare_ignoring_case(const char *a, const char *b) noexcept
{
    return _stricmp(a, b);
}

bool qek::platform::is_point_a_dot() noexcept
{
    return std::strcmp(std::localeconv()->decimal_point, ".") == 0;
}

#else

#include <langinfo.h>
#include <strings.h>

int qek::platform::compare_ignoring_case(const char *a, const char *b) noexcept
{
    return strcasecmp(a, b);
}

bool qek::platform::is_point_a_dot() noexcept
{
    const char *point = nl_langinfo(RADIXCHAR);
    return point[0] == '.' && point[1] == 0; // GCOVR_EXCL_BR_LINE: where tests run, it is one
}

#endif
