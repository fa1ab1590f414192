#!/usr/bin/env bash
# Builds the benchmarks in a Release build (build-bench/) and runs each.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DWXSUPPORT_BUILD_BENCH=ON \
    -DWXSUPPORT_BUILD_TESTS=OFF >/dev/null
cmake --build build-bench -j "$(nproc)"
for b in ini xml; do
    if [ -x "build-bench/bench/$b/$b" ]; then
        echo "== bench/$b"
        "build-bench/bench/$b/$b" "$@"
    fi
done
