#!/usr/bin/env bash
# Builds the libFuzzer targets in build-fuzz/ with clang (AddressSanitizer and
# UBSan in the library and the targets) and runs each one for SECONDS on a
# scratch copy of its seed corpus in fuzz/corpus/<target>/; the committed
# corpus is never written. Prints executions, time and coverage per target
# and fails when any target finds a crash, a leak or a broken property; the
# failing inputs are kept in build-fuzz/artifacts/.
#
#   fuzz/run.sh [SECONDS] [TARGET...]    default 20 seconds, every target
#   FUZZ_JOBS=N                          targets run at once (default: cores, at most 2)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
seconds=${1:-20}
shift || true
all_targets=(fuzz_ini_parse fuzz_ini_ops fuzz_wxini_names fuzz_xml fuzz_text)
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=("${all_targets[@]}")
cores=$(nproc 2>/dev/null || echo 2)
jobs=${FUZZ_JOBS:-$((cores < 2 ? cores : 2))}

build=$root/build-fuzz
CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DWXSUPPORT_BUILD_FUZZ=ON -DWXSUPPORT_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j "$cores" --target "${targets[@]}"

# Scratch space in memory when there is some: the INI targets save files, and
# fsync on a real disk would slow them down a hundredfold.
scratch_base=${TMPDIR:-/tmp}
if [ -d /dev/shm ] && [ -w /dev/shm ]; then
    scratch_base=/dev/shm
fi
scratch=$(mktemp -d "$scratch_base/wxsupport-fuzz-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$build/artifacts"

export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1:strict_string_checks=1:detect_stack_use_after_return=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$root/tests/lsan.supp:print_suppressions=0"

run_one() { # target
    local t=$1 work=$scratch/$1
    mkdir -p "$work/corpus" "$work/tmp"
    if [ -d "fuzz/corpus/$t" ]; then
        cp -R "fuzz/corpus/$t/." "$work/corpus/"
    fi
    local status=0 start=$SECONDS
    TMPDIR=$work/tmp "$build/fuzz/$t" -max_total_time="$seconds" -print_final_stats=1 \
        -timeout=120 -rss_limit_mb=2048 -artifact_prefix="$build/artifacts/$t-" \
        "$work/corpus" >"$work/log" 2>&1 || status=$?
    echo "$status" >"$work/status"
    echo $((SECONDS - start)) >"$work/seconds"
}

# Run up to $jobs targets at a time.
running=0
for t in "${targets[@]}"; do
    run_one "$t" &
    running=$((running + 1))
    if [ "$running" -ge "$jobs" ]; then
        wait -n || true
        running=$((running - 1))
    fi
done
wait || true

failed=0
printf '%-18s %12s %8s %8s %8s %7s  %s\n' target executions exec/s seconds cov ft result
for t in "${targets[@]}"; do
    log=$scratch/$t/log
    status=$(cat "$scratch/$t/status" 2>/dev/null || echo 1)
    execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
    cov=$( (grep -oE 'cov: [0-9]+' "$log" || true) | tail -1 | cut -d' ' -f2)
    ft=$( (grep -oE 'ft: [0-9]+' "$log" || true) | tail -1 | cut -d' ' -f2)
    time=$(cat "$scratch/$t/seconds" 2>/dev/null || echo '?')
    result=ok
    if [ "$status" -ne 0 ]; then
        result="FAILED (exit $status)"
        failed=1
    fi
    printf '%-18s %12s %8s %8s %8s %7s  %s\n' "$t" "${execs:-?}" "${rate:-?}" "${time:-?}" \
        "${cov:-?}" "${ft:-?}" "$result"
done
for t in "${targets[@]}"; do
    status=$(cat "$scratch/$t/status" 2>/dev/null || echo 1)
    if [ "$status" -ne 0 ]; then
        echo "== $t: last lines of its output"
        tail -n 60 "$scratch/$t/log"
        cp "$scratch/$t/log" "$build/artifacts/$t.log"
    fi
done
if [ "$failed" -ne 0 ]; then
    echo "fuzz: failures; inputs and logs in $build/artifacts/" >&2
    exit 1
fi
