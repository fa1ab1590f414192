#!/usr/bin/env bash
# Runs the GUI and unit test programs of a build under valgrind's memcheck,
# with an X display (a private Xvfb when none answers), and fails on any
# memory error or definite leak that tests/valgrind.supp doesn't suppress.
# The suppressions cover GTK's, GLib's and fontconfig's own reports only.
#
#   scripts/valgrind.sh [BUILD_DIR] [TEST_REGEX]    default: build, every test
#
# Left out: the fault-injection tests (config_wxinifile_save_test), which
# time killed child processes, and console_window_test, whose children check
# the process's standard streams and a real terminal: valgrind's slowness and
# its own descriptors make them fail without any memory matter. Logs go to
# BUILD_DIR/valgrind/<test>.log.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
build=${1:-build}
filter=${2:-.}

if [ -z "${WXS_VALGRIND_DISPLAY:-}" ]; then
    export WXS_VALGRIND_DISPLAY=1
    exec scripts/with-xvfb.sh "$0" "$@"
fi

command -v valgrind >/dev/null || { echo "valgrind: not installed (scripts/setup.sh)" >&2; exit 1; }
logs=$build/valgrind
mkdir -p "$logs"

# name<TAB>command of each test, from CTest.
mapfile -t tests < <(ctest --test-dir "$build" -N -V 2>/dev/null |
    awk '/Test command:/ { cmd = $0; sub(/.*Test command: /, "", cmd) }
         /^ *Test +#[0-9]+:/ { name = $3; print name "\t" cmd }')

# GLib: plain malloc, so that memcheck sees each block.
export G_SLICE=always-malloc G_DEBUG=gc-friendly
# glibc's AVX2/EVEX string functions compare in whole vectors past the end of
# a block, which memcheck takes for invalid reads: use the plain versions.
export GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-AVX512F,-AVX512BW,-EVEX
failed=0
printf '%-28s %8s %14s %16s %10s  %s\n' test errors definitely indirectly possibly result
for entry in "${tests[@]}"; do
    name=${entry%%$'\t'*}
    cmd=${entry#*$'\t'}
    cmd=${cmd//\"/}
    # GUI tests start through with-xvfb.sh; this script already has a display.
    case ${cmd%% *} in */with-xvfb.sh) cmd=${cmd#* } ;; esac
    [[ $name =~ $filter ]] || continue
    [ -n "$cmd" ] && [ -x "${cmd%% *}" ] || continue # not built
    case $name in config_wxinifile_save_test | console_window_test) continue ;; esac
    case $name in install* | consumer* | symbols* | format*) continue ;; esac
    log=$logs/$name.log
    status=0
    # shellcheck disable=SC2086 # the command is a plain path without blanks
    valgrind --tool=memcheck --leak-check=full --show-leak-kinds=definite,indirect \
        --errors-for-leak-kinds=definite --error-exitcode=99 --num-callers=40 \
        --suppressions="$root/tests/valgrind.supp" --log-file="$log" \
        $cmd >"$log.out" 2>&1 || status=$?
    errors=$(sed -n 's/.*ERROR SUMMARY: \([0-9,]*\) errors.*/\1/p' "$log" | tail -1)
    definite=$(sed -n 's/.*definitely lost: \([0-9,]*\) bytes in \([0-9,]*\) blocks.*/\1 B \/ \2/p' "$log" | tail -1)
    indirect=$(sed -n 's/.*indirectly lost: \([0-9,]*\) bytes in \([0-9,]*\) blocks.*/\1 B \/ \2/p' "$log" | tail -1)
    possible=$(sed -n 's/.*possibly lost: \([0-9,]*\) bytes in \([0-9,]*\) blocks.*/\1 B/p' "$log" | tail -1)
    result=ok
    if [ "$status" -ne 0 ]; then
        result="FAILED (exit $status, see $log)"
        failed=1
    fi
    printf '%-28s %8s %14s %16s %10s  %s\n' "$name" "${errors:-?}" "${definite:-0 B / 0}" \
        "${indirect:-0 B / 0}" "${possible:-0 B}" "$result"
done
if [ "$failed" -ne 0 ]; then
    echo "valgrind: memory errors or definite leaks; logs in $logs/" >&2
    exit 1
fi
