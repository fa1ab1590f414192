#!/usr/bin/env bash
# Fails when clang-format would change any C or C++ source of the project.
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' '*.c')
[ -z "$files" ] && exit 0
if ! echo "$files" | xargs clang-format --dry-run --Werror 2>/tmp/wxsupport-format.$$; then
    grep -E '^[^ ].*(warning|error):' /tmp/wxsupport-format.$$ | cut -d: -f1 | sort -u |
        sed 's/^/clang-format would change: /' >&2
    rm -f /tmp/wxsupport-format.$$
    echo "run ./run format" >&2
    exit 1
fi
rm -f /tmp/wxsupport-format.$$
