// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// What the tests ask of the platform.
#pragma once

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <csignal>

namespace qek_test {

// Faults are seen in a forked child. Where there is none, the test is skipped.
#if defined(_WIN32)
constexpr bool can_fork = false;
bool faults(auto) { return false; }
#else
constexpr bool can_fork = true;
bool faults(auto act)
{
    const pid_t child = fork();
    if (child == 0) {
        close(STDERR_FILENO);
        std::signal(SIGSEGV, SIG_DFL); // and no sanitizer's report
        act();
        _exit(0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status != 0;
}
#endif

// Leaves 256 KiB to the stack while it lives, where the platform can change that.
class small_stack {
  public:
#if defined(_WIN32)
    small_stack() {}
#else
    small_stack()
    {
        getrlimit(RLIMIT_STACK, &before_);
        const rlimit small{256 * 1024, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_STACK, &small), 0);
    }
    ~small_stack() { EXPECT_EQ(setrlimit(RLIMIT_STACK, &before_), 0); }

  private:
    rlimit before_{};
#endif
};

} // namespace qek_test
