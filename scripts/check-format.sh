#!/usr/bin/env bash
# Fails when a tracked C++ file differs from what .clang-format makes of it,
# naming the files. `scripts/check-format.sh --fix` rewrites them instead.
set -euo pipefail
cd "$(dirname "$0")/.."

clang_format=clang-format-14
mapfile -t files < <(git ls-files '*.cpp' '*.h')

if [ "${1:-}" = "--fix" ]; then
    "$clang_format" -i "${files[@]}"
    exit 0
fi

drifted=()
for file in "${files[@]}"; do
    if ! "$clang_format" --dry-run --Werror "$file" >/dev/null 2>&1; then
        drifted+=("$file")
    fi
done

if [ ${#drifted[@]} -gt 0 ]; then
    echo "format: ${#drifted[@]} file(s) differ from .clang-format (scripts/check-format.sh --fix rewrites them):" >&2
    printf '  %s\n' "${drifted[@]}" >&2
    exit 1
fi
echo "format: ${#files[@]} files match .clang-format"
