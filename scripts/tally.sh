# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# Sourced by scripts that check one thing after the other and count.

passed=0 failed=0 skipped=0

check() { # NAME COMMAND...: what the command prints is shown only if it fails
    local name=$1 output
    shift
    if output=$("$@" 2>&1); then
        echo "ok      $name"
        passed=$((passed + 1))
    else
        echo "FAILED  $name"
        printf '%s\n' "$output"
        failed=$((failed + 1))
    fi
}

# Ends a script. The line goes to the file that QEK_TALLY names, if it names one.
close_tally() {
    local line="$passed passed, $failed failed, $skipped skipped"
    if [[ -n ${QEK_TALLY:-} ]]; then
        echo "$line" >"$QEK_TALLY"
    else
        echo "$line"
    fi
    [[ $failed -eq 0 ]]
}
