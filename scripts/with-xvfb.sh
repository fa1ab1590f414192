#!/usr/bin/env bash
# Runs a command with an X display. When DISPLAY names a display that answers,
# that one is used; otherwise a private Xvfb server is started for the
# command and stopped afterwards. GTK is pinned to X11 either way.
set -euo pipefail

export GDK_BACKEND=x11
export NO_AT_BRIDGE=1
unset WAYLAND_DISPLAY

if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
    exec "$@"
fi

fifo_dir=$(mktemp -d)
trap 'rm -rf "$fifo_dir"' EXIT
mkfifo "$fifo_dir/fd"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$fifo_dir/fd" 2>"$fifo_dir/log" &
xvfb_pid=$!
stop_xvfb() {
    kill "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
    rm -rf "$fifo_dir"
}
trap stop_xvfb EXIT

display=""
read -r -t 20 display <"$fifo_dir/fd" || true
if [ -z "$display" ]; then
    echo "with-xvfb: Xvfb did not start" >&2
    cat "$fifo_dir/log" >&2 || true
    exit 1
fi
export DISPLAY=":$display"
for _ in $(seq 1 100); do
    xdpyinfo >/dev/null 2>&1 && break
    sleep 0.1
done

status=0
"$@" || status=$?
exit $status
