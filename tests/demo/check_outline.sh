#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_outline.sh: outline as a user meets it, with bad lines of all kinds. Expects the
# library in build/stage, where ./demo.sh puts it.
set -euo pipefail
export LC_ALL=C

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
program=$root/build/demo/outline/outline
work=$root/build/demo/check_outline
rm -rf "$work"
mkdir -p "$work"

expect() { # STATUS TEXT COMMAND...: ends with the status; prints the text, or else a result only
    local wanted=$1 text=$2 status=0 output
    shift 2
    output=$("$@" 2>"$work/errors") || status=$?
    [[ $status -eq 0 || -z $output ]] && [[ $status -eq $wanted ]] &&
        [[ $output$(<"$work/errors") == *"$text"* ]] && return
    printf 'expected status %s and "%s", got status %s from %s:\n%s\n' \
        "$wanted" "$text" "$status" "$*" "$output"
    cat "$work/errors"
    return 1
}

check "demo on the project" expect 0 "  tests/" "$root/scripts/demo_outline.sh"
check "demo on no directory" expect 1 "none is no directory" "$root/scripts/demo_outline.sh" none
check "demo, unknown option" expect 2 "usage" "$root/scripts/demo_outline.sh" --nope
cd "$work"

# The outline, taken apart again, against sums made of the list by other means, and in order.
same_as_list() { # LIST
    awk '{ size = $1; sub(/^[0-9]+ \/?/, ""); path = $0; gsub("/", "\001", path)
           do { sum[path] += size; files[path]++ }
           while (sub(/[^\001]+\001?$/, "", path) && path != "") }
         END { for (path in sum) print path "\t" sum[path] "\t" files[path] }' "$1" |
        sort | tr '\001' / >expected
    "$program" "$1" | tee whole | head -n -1 |
        awk '{ row = substr($0, 29); match(row, /^ */); depth = RLENGTH / 2
               name[depth] = substr(row, RLENGTH + 1); path = ""
               for (at = 0; at <= depth; ++at) path = path name[at]
               print path "\t" $1 "\t" $2 }' >got
    diff expected got && tail -n 1 whole | grep -qF "$2"
}
find "$root" -name .git -prune -o -type f -path '*/std*' -printf '%s %p\n' >absolute
find "$root/tests" -type f -printf '%s tests/%P\n' >found
cat >edges <<'END'
1 a-/y
2 a/y
4 a.b
8 a/a/a/y
16 a/b/a
32 b/a/a
0 b c/d e
999999999 a/b/c
END
awk 'BEGIN { srand(4); split("a b a- a.b c", names, " ")
    for (line = 0; line < 30000; ++line) {
        path = line % 2 ? "/" : ""
        for (steps = int(rand() * 7); steps > 0; --steps) path = path names[int(rand() * 5) + 1] "/"
        print int(rand() * 1000) " " path "file " line } }' >random
awk 'BEGIN { for (line = 0; line < 100000; ++line) print line " d" line "/x" }' >wide
check "absolute paths" same_as_list absolute " total, "
check "the project's tests" same_as_list found " $(wc -l <found)  total, "
check "names that begin alike, and names again" same_as_list edges " 8  total, 8 directories"
check "random paths" same_as_list random " 30000  total, "
check "100000 directories" same_as_list wide " 100000  total, 100000 directories"
check "nothing" expect 0 " 0  total, 0 directories" "$program" /dev/null
printf '5 a/b/c\n6 a/d' >deep
check "no line feed at the end" expect 0 " 11          2  a/" "$program" deep
only_two_levels() { [[ $("$program" --depth 2 deep | cut -c 29-) == $'a/\n  b/\n  d\n'* ]]; }
check "depth" only_two_levels

# Bad lines, each as the second of three; nothing of the good ones is printed.
bad_line() { # TEXT LINE: with printf's escapes
    printf '1 fine/one\n%b\n2 fine/two\n' "$2" >bad
    expect 1 "$1" "$program" bad
}
names=$(printf 'd/%.0s' {1..256})
while IFS='|' read -r text line; do
    check "bad line, '${line:0:30}'" bad_line "bad:$text" "$line"
done <<END
2: it does not begin with a size|
2: it does not begin with a size| 12 a
2: it does not begin with a size|path
2: it does not begin with a size|12
2: it does not begin with a size|-12 a
2: it does not begin with a size|12k a
2: the size has more than 18 digits|1234567890123456789 a
2: there is no path|12 
2: there is an empty name|12 /
2: there is an empty name|12 //a
2: there is an empty name|12 a//b
2: there is an empty name|12 a/
2: a name in the path begins or ends|12  a
2: a name in the path begins or ends|12 a /b
2: a name in the path begins or ends|12 a\\r
2: there is a NUL byte|12 a\\0b
2: the path is too deep|12 ${names}f
3: fine/two: line 2 has this path already|1 fine/two
2: fine/one/x: line 1 has a file where|1 /fine/one/x
END
check "256 names" expect 0 "1 " "$program" <(echo "1 ${names%d/}f")
for line in {1..10}; do echo "999999999999999999 f$line"; done >sum
check "a sum beyond 63 bits" expect 1 "sum:10: the sizes" "$program" sum

# The command line.
check "help" expect 0 "usage" "$program" --help
for call in "" "--nope" "deep deep" "--depth 0 deep" "--depth x deep" "--depth 1" "--depth 1000 deep"; do
    # shellcheck disable=SC2086 # as many words as there are
    check "call: $call" expect 2 "usage" "$program" $call
done
check "no file" expect 1 "cannot read none: No such" "$program" none
check "a directory" expect 1 "cannot read .: Is a" "$program" .
print_to_full() { "$program" deep >/dev/full; }
check "no space left" expect 1 "cannot write the result" print_to_full

close_tally
