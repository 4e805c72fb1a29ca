#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# check_demo.sh: the two commands and word_index as a user meets them, with bad input of all kinds.
set -euo pipefail
export LC_ALL=C

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/tally.sh
. "$root/scripts/tally.sh"
program=$root/build/demo/word_index/word_index
work=$root/build/demo/check
rm -rf "$work"
mkdir -p "$work/bin"

expect() { # STATUS TEXT COMMAND...: the command ends with the status and prints the text
    local wanted=$1 text=$2 status=0 output
    shift 2
    output=$("$@" 2>&1) || status=$?
    [[ $status -eq $wanted && $output == *"$text"* ]] && return
    printf 'expected status %s and "%s", got status %s from %s:\n%s\n' \
        "$wanted" "$text" "$status" "$*" "$output"
    return 1
}

check "demo on its own texts" expect 0 "both agree" "$root/demo.sh"
printf 'One word, two words: one TWO.\n' >"$work/a text"
printf 'caf\303\251 \0 one\377' >"$work/-dash"
head -c 200000 /dev/zero | tr '\0' w >"$work/long"
: >"$work/empty"
check "demo on given files" expect 0 "both agree" \
    "$root/demo.sh" "$work/a text" "$work/-dash" "$work/long" "$work/empty"
check "demo, words looked up" expect 0 $'occur:\n2 one\n1 one\377\n==' \
    "$root/demo.sh" --prefix On -- "$work/a text" "$work/-dash"
check "demo, a text that is a pipe" expect 0 "only once" "$root/demo.sh" <(echo one)
printf '#!/bin/sh\ncat >/dev/null; echo "      1 another"\n' >"$work/bin/uniq"
chmod +x "$work/bin/uniq"
check "demo, tools that count otherwise" expect 1 "count other words" \
    env PATH="$work/bin:$PATH" "$root/demo.sh" "$work/a text"
rm "$work/bin/uniq"
check "demo, no prefix" expect 2 "missing behind --prefix" "$root/demo.sh" --prefix
check "demo, unknown option" expect 2 "unknown option --nope" "$root/demo.sh" --nope
check "demo, unreadable file" expect 1 "$work/none" "$root/demo.sh" "$work/none"
check "test, unknown option" expect 2 "unknown argument --nope" "$root/test.sh" --nope

# A machine without compilers, with a user of our choice and an apt-get that notes what it is asked.
for tool in bash cat dirname mkdir find sort touch chmod; do
    ln -s "$(command -v "$tool")" "$work/bin/"
done
as_user() { # ID COMMAND...
    printf '#!/bin/sh\necho %s\n' "$1" >"$work/bin/id"
    chmod +x "$work/bin/id"
    PATH=$work/bin "${@:2}"
}
cat >"$work/bin/apt-get" <<END
#!/usr/bin/env bash
echo "asked for: \$*"
if [[ \$1 == update ]]; then exit 100; fi
for tool in gcc g++ cmake ctest ninja; do
    echo "#!/bin/sh" >"$work/bin/\$tool" && chmod +x "$work/bin/\$tool"
done
END
chmod +x "$work/bin/apt-get"
install="install -y --no-install-recommends g++ cmake ninja-build"
check "demo without compilers, a plain user" expect 3 "apt-get $install" as_user 1000 "$root/demo.sh"
check "test without compilers, a plain user" expect 3 "apt-get $install" as_user 1000 "$root/test.sh"
# shellcheck disable=SC2016 # expanded by the shell that is started
setup='. "$1"; require_packages "${packages_to_build[@]}"; echo goes on'
check "setup as root, no update" expect 0 "warning: apt-get update failed" \
    as_user 0 bash -c "$setup" setup "$root/scripts/setup.sh"
rm -f "$work"/bin/{gcc,g++,cmake,ctest,ninja}
check "setup as root" expect 0 "asked for: $install"$'\ngoes on' \
    as_user 0 bash -c "$setup" setup "$root/scripts/setup.sh"

# The program's own command line.
cd "$work"
check "no text" expect 2 "no text" "$program"
check "unknown option" expect 2 "unknown option --nope" "$program" --nope
check "option without its file" expect 2 "--index" "$program" --index
check "directory as text" expect 1 "cannot read ." "$program" --index words .
check "folder that is not there" expect 1 "cannot write none/words" \
    "$program" --index none/words "a text"
print_to_full() { "$program" --index full "a text" >/dev/full; }
check "no space left" expect 1 "cannot write the result" print_to_full
check "a text in the index's place" expect 1 "is not replaced" "$program" --index "a text" "a text"
nothing_left() { [[ ! -e words && ! -e words.part ]]; }
check "nothing half-written" nothing_left
check "empty text" expect 0 "says the same" "$program" --index empty.index empty
check "write" expect 0 "says the same" "$program" --index words "a text" -- -dash
cp words again
check "replace" expect 0 "says the same" "$program" --index again "a text" -- -dash
check "same bytes again" cmp words again
check "verify" expect 0 "is sound" "$program" --check words
counts() { # TEXT ARGUMENT...: the program prints this text and no more
    [[ $("$program" "${@:2}") == "$1" ]]
}
all_words=$'1 caf\303\251\n2 one\n1 one\377\n2 two\n1 word\n1 words'
check "counts of an index" counts "$all_words" --check words --counts
check "counts of texts" counts "$all_words" --check words --counts "a text" -- -dash
check "counts of no words" counts "" --check empty.index --counts
check "prefix" counts $'1 word\n1 words' --check words --prefix WORD
check "prefix that is a word" counts "1 words" --check words --prefix words
check "prefix behind all words" counts "" --check words --prefix x
check "prefix between words" counts "" --check words --prefix onf
check "other text" expect 1 "differs from the texts" "$program" --check words "a text"
check "word beyond the longest" expect 0 "says the same" "$program" --index long.index long

# Damage. The trailer of gzip is the same checksum, so that a damaged file can get a good one.
size=$(stat -c %s words)
patched() { # OFFSET BYTE: the index with another byte there
    head -c "$1" words
    printf '%b' "\\0$(printf %o "$2")"
    tail -c +"$(($1 + 2))" words
}
with_checksum() { # what stands on standard input, with a new checksum in place of its last 4 bytes
    head -c -4 >body
    cat body
    gzip -c body | tail -c 8 | head -c 4
}
byte_at() { od -An -tu1 -j "$1" -N 1 words; }
refuses() { # OFFSET BYTE TEXT: a byte replaced and the checksum made good
    patched "$1" "$2" | with_checksum >bad
    expect 1 "$3" "$program" --check bad
}
each_byte_counts() {
    local at
    for ((at = 0; at < size; ++at)); do
        patched "$at" $(($(byte_at "$at") ^ 1)) >bad
        expect 1 bad "$program" --check bad || return 1
    done
}
each_byte_means_something() {
    local at value
    for ((at = 0; at < size - 4; ++at)); do
        for value in $(($(byte_at "$at") ^ 1)) 255; do
            [[ $value -ne $(byte_at "$at") ]] || continue
            patched "$at" "$value" | with_checksum >bad
            expect 1 bad "$program" --check bad "a text" -- -dash || return 1
        done
    done
}
each_length_is_refused() {
    local length
    for ((length = 0; length < size; ++length)); do
        head -c "$length" words >bad
        expect 1 bad "$program" --check bad || return 1
    done
}
check "one bit wrong, at each byte" each_byte_counts
check "one byte wrong, checksum good, at each byte" each_byte_means_something
check "truncated, to each length" each_length_is_refused
(cat words && echo) >longer
check "bytes behind the end" expect 1 "bytes behind its end" "$program" --check longer
check "another magic" refuses 0 0 "is not a word index"
check "another version" refuses 4 3 "has version 3"
check "more bytes than there are" refuses 6 255 "is truncated: it has $size of 255 bytes"
check "more words than bytes" refuses 20 255 "counts of the header do not go together"
check "damaged bytes" expect 1 "is damaged: its checksum" "$program" --check <(patched 40 0)
check "damaged text length" refuses 27 255 "a text runs past the end"
check "a text for an index" expect 1 "is not a word index" "$program" --check "a text"

close_tally
