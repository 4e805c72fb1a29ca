#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
set -euo pipefail

usage() {
    cat <<'END'
usage: ./test.sh [--all | --trust | --soak | --platform NAME]

Sets up what is missing, builds below build/, and runs every test. The last line counts the tests.

  --all            every row that can run here, but for those that only --trust has; a table of them
                   stands before the last line
  --trust          the rows that say how far the library can be trusted; the table shows what was
                   found, what was aimed at, and the command (docs/testing.md explains each)
  --soak           200 million random operations over all families, by hand, as it takes long
  --platform NAME  that row alone:
                     default, clang                    Linux, 64 bits, with g++ and with clang
                     m32, m32-clang                    Linux, 32 bits
                     sanitize, clang-sanitize,         the same with the address and undefined-
                       m32-sanitize                      behaviour sanitizers
                     windows, windows-i686             DLLs for 64 and for 32 bits, run by wine
                     s390x, powerpc, aarch64           run by qemu; the first two big-endian
                     levels                            every level of optimisation alike
                     allocations                       each allocation refused in turn
                     limits, depth                     sizes near the end of int32_t; a million deep
                     coverage                          lines and branches that the tests reach
                     memory, valgrind                  reads of what was never written
                     thread                            two threads on separate records
                     fuzz                              each fuzz target for a minute
                     mutants                           a sample of changed instructions
                     abi                               the interface against the one written down
                     soak                              a hundredth of what --soak does
                     lint                              format, static analysis, scripts, header
                     delivery                          packages and installations, as users have them
                     bench                             that the benchmarks run and do equal work
                     demo, outline                     the commands and examples, with bad input
  --help           print this text

With --all, a row whose tools are missing is skipped, and the packages that it lacks are named; with
QEK_SKIPS_FAIL=1 in the environment that is a failure. A single test that needs what a platform
does not have is skipped there, and counted.

Result: 0 if nothing failed; 1 if something failed; 2 if the call was wrong; 3 if packages are
missing and the user is not root.
END
}

wrong() {
    echo "test.sh: $1" >&2
    echo "Try './test.sh --help'." >&2
    exit 2
}

# The rows of the table. Each name is followed by the packages that it needs beyond those of the
# default row.
rows=(default clang sanitize clang-sanitize m32 m32-clang m32-sanitize
    windows windows-i686 s390x powerpc aarch64 levels
    coverage memory valgrind thread fuzz mutants abi lint delivery bench demo outline)
trust=(default allocations limits depth sanitize clang-sanitize m32-sanitize
    coverage memory valgrind thread fuzz mutants levels abi soak)
declare -A needs=(
    [clang]=clang
    [clang-sanitize]="clang libclang-rt-14-dev"
    [m32]=g++-12-multilib
    [m32-clang]="clang g++-12-multilib"
    [m32-sanitize]=g++-12-multilib
    [windows]="g++-mingw-w64-x86-64 wine64"
    [windows-i686]="g++-mingw-w64-i686 debootstrap"
    [s390x]="g++-s390x-linux-gnu qemu-user"
    [powerpc]="g++-powerpc-linux-gnu qemu-user"
    [aarch64]="g++-aarch64-linux-gnu qemu-user"
    [levels]=clang
    [coverage]=gcovr
    [memory]="clang libclang-rt-14-dev"
    [valgrind]=valgrind
    [fuzz]="clang libclang-rt-14-dev"
    [mutants]=python3
    [abi]="abigail-tools g++-12-multilib"
    [delivery]="debhelper dpkg-dev lintian pkg-config python3 reuse
        doxygen gdb libedit-dev libxml2-utils"
    [lint]="clang g++-12-multilib clang-format clang-tidy shellcheck libedit-dev"
)

# What the rows of --trust aim at.
declare -A aims=(
    [coverage]="lines 100 %, branches 100 %"
    [soak]="0 findings in 200 million"
    [mutants]="95 % killed"
)

chosen=(default)
shows_trust=0
while [[ $# -gt 0 ]]; do
    case $1 in
    --all) chosen=("${rows[@]}") ;;
    --trust)
        chosen=("${trust[@]}")
        shows_trust=1
        ;;
    --platform)
        [[ $# -gt 1 ]] || wrong "a name is missing behind --platform"
        [[ " ${rows[*]} ${trust[*]} " == *" $2 "* ]] || wrong "unknown platform $2"
        chosen=("$2")
        shift
        ;;
    --soak) exec "$(dirname "${BASH_SOURCE[0]}")/fuzz/soak.sh" ;;
    --help)
        usage
        exit 0
        ;;
    *) wrong "unknown argument $1" ;;
    esac
    shift
done

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$root/build
strict=${QEK_SKIPS_FAIL:-0}
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
needs[bench]=${packages_to_bench[*]}

packages=("${packages_to_test[@]}")
for name in "${chosen[@]}"; do
    # shellcheck disable=SC2206 # one word per package
    packages+=(${needs[$name]:-})
done
if [[ ${#chosen[@]} -eq 1 || $strict == 1 ]]; then
    require_packages "${packages[@]}"
else
    require_packages "${packages_to_test[@]}"
    request_packages "${packages[@]}"
fi

export QEK_TALLY=$build/tally QEK_FIGURE=$build/figure
mkdir -p "$build"
table=() regrets=

attribute() { # NAME FILE: a number of the head of a JUnit file
    sed -nE "0,/<testcase/s/.*$1=\"([0-9]+)\".*/\1/p" "$2" | head -n 1
}

configure_preset() { # PRESET
    configure "$build/configure.log" -S "$root" --preset "$1"
}

# Builds and runs the tests, or only those of the pattern; leaves the counts in QEK_TALLY.
run_preset() { # PRESET [PATTERN [TARGET...]]
    local folder=$build/$1 report=$build/$1/junit.xml tests failures skips
    configure_preset "$1" || return 1
    cmake --build "$folder" ${3:+--target "${@:3}"} || return 1
    rm -f "$report"
    ctest --test-dir "$folder" ${2:+-R "$2"} --output-on-failure -j "$(nproc)" \
        --output-junit "$report" || true
    [[ -f $report ]] || return 1
    tests=$(attribute tests "$report")
    failures=$(attribute failures "$report")
    skips=$(($(attribute skipped "$report") + $(attribute disabled "$report")))
    [[ $tests -gt 0 ]] || return 1
    echo "$((tests - failures - skips)) passed, $failures failed, $skips skipped" >"$QEK_TALLY"
}

run_windows_i686() {
    if ! "$root/scripts/wine32.sh"; then
        echo "windows-i686: there is no wine for 32 bits here, so the programs are not run"
        rm -rf "$build/wine32"
    fi
    run_preset windows-i686
}

run() { # ROW
    local demo=$root/tests/demo
    case $1 in
    windows-i686) run_windows_i686 ;;
    levels) "$root/tests/platform/check_levels.sh" ;;
    delivery) "$root/scripts/check_delivery.sh" ;;
    bench) "$root/tests/bench/check_bench.sh" ;;
    coverage | valgrind | mutants) "$root/scripts/$1.sh" ;;
    memory | thread) run_preset "$1" 'header|demo' qek_header_examples qek_threads qek_word_index ;;
    allocations) run_preset default 'allocation|memory|preload|missing_pools' ;;
    limits) run_preset default 'limits\.' ;;
    depth) run_preset default 'deep|a_million' ;;
    fuzz) "$root/fuzz/run.sh" ;;
    soak) "$root/fuzz/soak.sh" 2000000 ;;
    abi) "$root/tests/abi/check_abi.sh" ;;
    lint) configure_preset default && "$root/scripts/lint.sh" ;;
    demo) "$demo/check_demo.sh" ;;
    outline) "$demo/check_outline.sh" ;;
    *) run_preset "$1" ;;
    esac
}

# What went wrong in a row: the tests that failed with what they printed, or else the row's end.
failures() { # FILE
    awk '/^FAILED  |\*\*\*/ && !/\*\*\*(Skipped|Not Run)/ { shows = 1; shown = 0; print; next }
         /^ok  |^== |^ *Start +[0-9]|Test +#[0-9]/ { shows = 0 }
         shows && ++shown <= 100' "$1" | grep . || tail -n 40 "$1"
}

row() { # NAME: runs the row, which leaves its counts in QEK_TALLY
    local name=$1 missing begin=$SECONDS counts=(0 1 0) result=passed
    # shellcheck disable=SC2086 # one word per package
    missing=$(missing_packages ${needs[$1]:-})
    echo
    echo "== $name"
    if [[ -n $missing ]]; then
        result="skipped, needs $missing"
        counts=(0 "$strict" $((1 - strict)))
    else
        rm -f "$QEK_TALLY" "$QEK_FIGURE"
        { run "$name" || true; } 2>&1 | tee "$build/row.log"
        if [[ -f $QEK_TALLY ]]; then
            read -ra counts < <(tr -dc '0-9 \n' <"$QEK_TALLY")
        fi
    fi
    if [[ ${counts[1]} -gt 0 ]]; then
        result="FAILED${missing:+, needs $missing}"
        [[ -n $missing ]] || regrets+=$(printf '\n== %s failed\n' "$name" && failures "$build/row.log")
    fi
    passed=$((passed + counts[0]))
    failed=$((failed + counts[1]))
    skipped=$((skipped + counts[2]))
    echo "== $name: ${counts[0]} passed, ${counts[1]} failed, ${counts[2]} skipped, $result"
    if [[ $shows_trust -eq 1 ]]; then
        local figure="${counts[1]} findings in $((counts[0] + counts[1])) tests" aim="0 findings"
        [[ ! -s $QEK_FIGURE ]] || figure=$(<"$QEK_FIGURE")
        [[ -n $missing ]] && figure=$result
        table+=("$(printf '%-15s %-36s %-28s %s' "$name" "$figure" "${aims[$name]:-$aim}" \
            "./test.sh --platform $name")")
        return
    fi
    table+=("$(printf '%-16s %8d %8d %8d %8d  %s' "$name" "${counts[@]}" $((SECONDS - begin)) "$result")")
}

for name in "${chosen[@]}"; do
    row "$name"
done
# Again what failed, since the end is what stays of a long log.
[[ ${#chosen[@]} -eq 1 || -z $regrets ]] || printf '%s\n' "$regrets"
if [[ $shows_trust -eq 1 ]]; then
    echo
    printf '%-15s %-36s %-28s %s\n' what figure target command
    printf '%s\n' "${table[@]}"
elif [[ ${#chosen[@]} -gt 1 ]]; then
    echo
    printf '%-16s %8s %8s %8s %8s  %s\n' configuration passed failed skipped seconds result
    printf '%s\n' "${table[@]}"
fi

echo
unset QEK_TALLY QEK_FIGURE
close_tally
