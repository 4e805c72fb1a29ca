#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
set -euo pipefail

usage() {
    cat <<'END'
usage: ./demo.sh [FILE...]

Sets up what is missing, builds and installs the library below build/, builds the example
word_index against that installation, and indexes the words of the files: by default of all texts
under /usr/share/common-licenses, or else of the project's own documents.

  --help  print this text
  --      what follows is a file, even if it starts with a dash

Result: 0 if all went well; 1 if a step failed; 2 if the call was wrong; 3 if packages are missing
and the user is not root.
END
}

files=()
while [[ $# -gt 0 ]]; do
    case $1 in
    --help)
        usage
        exit 0
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
step "configuring the example" \
    configure "$log" -S "$root/examples/word_index" -B "$build/demo/word_index" -G Ninja \
    -DCMAKE_C_COMPILER=gcc -DCMAKE_BUILD_TYPE=Release "-DCMAKE_PREFIX_PATH=$build/stage" \
    -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
step "building the example" cmake --build "$build/demo/word_index"

echo "== indexing ${#files[@]} texts" >&2
"$build/demo/word_index/word_index" --index "$build/demo/words.index" -- "${files[@]}"
