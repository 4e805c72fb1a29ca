#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
set -euo pipefail

usage() {
    cat <<'END'
usage: ./demo.sh [--prefix TEXT] [FILE...]

Sets up what is missing, builds and installs the library below build/, builds the program
word_index against that installation, and indexes the words of the files: by default of all texts
under /usr/share/common-licenses, or else of the project's own documents. Counts the words with the
system's own tools as well, and says whether both agree. Looks up the words that start with a text.
Then builds the program outline in the same way, and prints two levels of an outline of the project's
own files by size.

  --prefix TEXT  what the words that are looked up start with; "licen" if not told
  --help         print this text
  --             what follows is a file, even if it starts with a dash

Result: 0 if all went well; 1 if a step failed; 2 if the call was wrong; 3 if packages are missing
and the user is not root.
END
}

files=()
prefix=licen
while [[ $# -gt 0 ]]; do
    case $1 in
    --help)
        usage
        exit 0
        ;;
    --prefix)
        if [[ $# -lt 2 ]]; then
            echo "demo.sh: a text is missing behind --prefix" >&2
            exit 2
        fi
        prefix=$2
        shift
        ;;
    --)
        files+=("${@:2}")
        break
        ;;
    -*)
        echo "demo.sh: unknown option $1" >&2
        echo "Try './demo.sh --help'." >&2
        exit 2
        ;;
    *) files+=("$1") ;;
    esac
    shift
done
for file in "${files[@]}"; do
    if [[ -d $file || ! -r $file ]]; then
        echo "demo.sh: cannot read $file: no readable file" >&2
        exit 1
    fi
done

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$root/build
# shellcheck source=scripts/setup.sh
. "$root/scripts/setup.sh"
require_packages "${packages_to_build[@]}"

if [[ ${#files[@]} -eq 0 && -d /usr/share/common-licenses ]]; then
    mapfile -t files < <(find /usr/share/common-licenses -type f | LC_ALL=C sort)
fi
if [[ ${#files[@]} -eq 0 ]]; then
    files=("$root"/*.md)
fi

mkdir -p "$build/demo"
step() { # LABEL COMMAND...
    echo "== $1" >&2
    if ! "${@:2}" >&2; then
        echo "demo.sh: failed: $1" >&2
        exit 1
    fi
}
log=$build/demo/configure.log

step "configuring the library" \
    configure "$log" -S "$root" --preset default -B "$build/demo/library" -DQEK_TESTS=OFF \
    -DCMAKE_INSTALL_MESSAGE=LAZY
step "building the library" cmake --build "$build/demo/library"
step "installing it to $build/stage" \
    cmake --install "$build/demo/library" --prefix "$build/stage"
step "configuring the program" \
    configure "$log" -S "$root/demo/word_index" -B "$build/demo/word_index" -G Ninja \
    -DCMAKE_C_COMPILER=gcc -DCMAKE_BUILD_TYPE=Release "-DCMAKE_PREFIX_PATH=$build/stage" \
    -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
step "building the program" cmake --build "$build/demo/word_index"

word_index=$build/demo/word_index/word_index
index=$build/demo/words.index
echo "== indexing ${#files[@]} texts" >&2
"$word_index" --index "$index" -- "${files[@]}"

echo "Words that start with \"$prefix\", and how often they occur:"
"$word_index" --check "$index" --prefix "$prefix"

# The counts of the index in words of the system's tools. A word is what demo/word_index/text.h
# says; a text ends its last word, and a run beyond the longest word is several.
count_with_tools() {
    local file
    for file in "${files[@]}"; do
        cat -- "$file"
        echo
    done | tr '[:upper:]' '[:lower:]' | tr -cs 'a-z0-9\200-\377' '\n' | fold -b -w 65535 |
        sed '/^$/d' | sort -S 256M -T "$build/demo" | uniq -c | sed 's/^ *//'
}
compare_with_tools() {
    local tool file
    for tool in tr fold sed sort uniq cmp; do
        if ! type "$tool" >/dev/null 2>&1; then
            echo "Not compared with the system's tools: there is no $tool."
            return
        fi
    done
    for file in "${files[@]}"; do
        if [[ ! -f $file ]]; then
            echo "Not compared with the system's tools: $file can be read only once."
            return
        fi
    done
    echo "== counting with the system's tools" >&2
    local -x LC_ALL=C
    "$word_index" --check "$index" --counts >"$build/demo/words.counts"
    count_with_tools >"$build/demo/tools.counts"
    if ! cmp "$build/demo/words.counts" "$build/demo/tools.counts" >&2; then
        echo "demo.sh: failed: the system's tools count other words than the index" >&2
        return 1
    fi
    echo "tr, sort and uniq -c count the same words as often: both agree."
}

compare_with_tools || exit 1

"$root/scripts/demo_outline.sh"
