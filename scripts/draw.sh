#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
# draw.sh: makes the drawings in docs/ from their sources. Needs `dot`, of the package graphviz.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

if ! type dot >/dev/null 2>&1; then
    echo "dot is missing. As root, run this line, and then this command again:" >&2
    echo "apt-get install -y --no-install-recommends graphviz" >&2
    exit 3
fi

# Into place only when it is whole.
for source in docs/*.dot; do
    drawing=${source%.dot}.svg
    trap 'rm -f "$drawing.new"' EXIT
    dot -Tsvg "$source" -o "$drawing.new"
    mv "$drawing.new" "$drawing"
    echo "$drawing"
done
