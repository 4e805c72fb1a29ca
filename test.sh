#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
set -euo pipefail

usage() {
    cat <<'END'
usage: ./test.sh [--all]

Sets up what is missing, builds below build/, and runs every test. The last line counts the tests.

  --all   also the slower configurations: the second compiler, the sanitizers, 32 bits, the lint
          checks and the demo with damaged indexes; a table of them stands before the last line
  --help  print this text

A configuration that cannot run here is skipped, and the package that it lacks is named. With
QEK_SKIPS_FAIL=1 in the environment a skip is a failure.

Result: 0 if nothing failed; 1 if something failed; 2 if the call was wrong; 3 if packages are
missing and the user is not root.
END
}

all=0
for argument; do
    case $argument in
    --all) all=1 ;;
    --help)
        usage
        exit 0
        ;;
    *)
        echo "test.sh: unknown argument $argument" >&2
        echo "Try './test.sh --help'." >&2
        exit 2
        ;;
    esac
done

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$root/build
strict=${QEK_SKIPS_FAIL:-0}
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"

more=(clang libclang-rt-14-dev g++-12-multilib clang-format clang-tidy shellcheck)
if [[ $all -eq 0 ]]; then
    require_packages "${packages_to_test[@]}"
elif [[ $strict == 1 || -n $(missing_packages "${packages_to_test[@]}") ]]; then
    require_packages "${packages_to_test[@]}" "${more[@]}"
else
    request_packages "${more[@]}"
fi

export QEK_TALLY=$build/tally
mkdir -p "$build"
table=()

attribute() { # NAME FILE: a number of the head of a JUnit file
    sed -nE "0,/<testcase/s/.*$1=\"([0-9]+)\".*/\1/p" "$2" | head -n 1
}

run_preset() { # PRESET: builds and runs the tests; leaves the counts in QEK_TALLY
    local folder=$build/$1 report=$build/$1/junit.xml tests failures skips
    configure "$build/configure.log" -S "$root" --preset "$1" || return 1
    cmake --build "$folder" || return 1
    rm -f "$report"
    ctest --test-dir "$folder" --output-on-failure -j "$(nproc)" --output-junit "$report" || true
    [[ -f $report ]] || return 1
    tests=$(attribute tests "$report")
    failures=$(attribute failures "$report")
    skips=$(($(attribute skipped "$report") + $(attribute disabled "$report")))
    [[ $tests -gt 0 ]] || return 1
    grep -m 1 -o '[0-9]* of [0-9]* functions stand' "$report" || true
    echo "$((tests - failures - skips)) passed, $failures failed, $skips skipped" >"$QEK_TALLY"
}

row() { # NAME PACKAGES COMMAND...: runs the command, which leaves its counts in QEK_TALLY
    local name=$1 missing begin=$SECONDS counts=(0 1 0) result
    # shellcheck disable=SC2086 # one word per package
    missing=$(missing_packages $2)
    shift 2
    echo
    echo "== $name"
    if [[ -n $missing ]]; then
        result="skipped, needs $missing"
        echo "$result"
        counts=(0 0 1)
    else
        rm -f "$QEK_TALLY"
        "$@" || true
        if [[ -f $QEK_TALLY ]]; then
            read -ra counts < <(tr -dc '0-9 \n' <"$QEK_TALLY")
        fi
        result=passed
    fi
    if [[ $strict == 1 ]]; then
        counts=("${counts[0]}" $((counts[1] + counts[2])) 0)
    fi
    if [[ ${counts[1]} -gt 0 ]]; then
        result="FAILED${missing:+, needs $missing}"
    fi
    passed=$((passed + counts[0]))
    failed=$((failed + counts[1]))
    skipped=$((skipped + counts[2]))
    table+=("$(printf '%-16s %8d %8d %8d %8d  %s' "$name" "${counts[@]}" $((SECONDS - begin)) "$result")")
}

row default "" run_preset default
if [[ $all -eq 1 ]]; then
    row clang clang run_preset clang
    row sanitize "" run_preset sanitize
    row clang-sanitize "clang libclang-rt-14-dev" run_preset clang-sanitize
    row m32 g++-12-multilib run_preset m32
    row m32-sanitize g++-12-multilib run_preset m32-sanitize
    row lint "clang g++-12-multilib clang-format clang-tidy shellcheck" "$root/scripts/lint.sh"
    row demo "" "$root/tests/demo/check_demo.sh"
    row outline "" "$root/tests/demo/check_outline.sh"
    echo
    printf '%-16s %8s %8s %8s %8s  %s\n' configuration passed failed skipped seconds result
    printf '%s\n' "${table[@]}"
fi

echo
unset QEK_TALLY
close_tally
