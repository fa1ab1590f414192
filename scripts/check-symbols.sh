#!/usr/bin/env bash
# Symbol safety of the shared libraries in a build directory:
#  1. no strong symbol that libwxsupport.so or libvesk.so exports is also
#     exported by a wxWidgets library loaded with them (ldd's whole list,
#     so that libraries pulled in indirectly count too, and the qa library
#     with its own list: it is part of our link interface, but the linker
#     drops it from DT_NEEDED while no symbol of it is used, and it brings
#     wxWidgets' XML library, home of wx's own wxXmlNode);
#  2. libvesk.so exports its C interface and nothing else.
set -euo pipefail
build=${1:-build}
wxs=$(find "$build" -name 'libwxsupport.so.0' | head -n 1)
vesk=$(find "$build" -name 'libvesk.so.0' | head -n 1)
[ -n "$wxs" ] && [ -n "$vesk" ] || { echo "check-symbols: libraries not found in $build" >&2; exit 1; }

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

# Strong defined dynamic symbols: weak (W, V) and unique (u) ones may legally
# appear in several libraries, and so may the linker's own section markers;
# everything else must not.
strong() {
    nm -D --defined-only "$1" | awk '$2 !~ /^[wWvVuU]$/ {print $3}' | sed 's/@.*//' |
        grep -vxE '__bss_start|_edata|_end|_init|_fini' | sort -u
}

strong "$wxs" >"$tmp/ours"
strong "$vesk" >>"$tmp/ours"
sort -u -o "$tmp/ours" "$tmp/ours"

: >"$tmp/wx"
wxlibs=$( (ldd "$wxs"; ldd "$vesk") | awk '/=>/ {print $3}' | grep '/libwx_' | sort -u)
wxbase=$(echo "$wxlibs" | grep '/libwx_baseu-' | head -n 1)
if [ -n "$wxbase" ]; then
    qa=$(ls "$(dirname "$wxbase")"/libwx_*u_qa-"${wxbase##*/libwx_baseu-}" 2>/dev/null | head -n 1 || true)
    if [ -n "$qa" ]; then
        wxlibs=$( (echo "$wxlibs"; echo "$qa"; ldd "$qa" | awk '/=>/ {print $3}' | grep '/libwx_') | sort -u)
    fi
fi
for lib in $wxlibs; do
    strong "$lib" >>"$tmp/wx"
done
sort -u -o "$tmp/wx" "$tmp/wx"

status=0
clash=$(comm -12 "$tmp/ours" "$tmp/wx")
if [ -n "$clash" ]; then
    echo "check-symbols: symbols exported by our libraries and by wxWidgets:" >&2
    echo "$clash" | c++filt | sed 's/^/  /' >&2
    status=1
fi

extra=$(strong "$vesk" | grep -vE '^(inifile_|pderror_|pd_strdup$)' || true)
if [ -n "$extra" ]; then
    echo "check-symbols: libvesk.so exports more than its C interface:" >&2
    echo "$extra" | c++filt | sed 's/^/  /' >&2
    status=1
fi

if [ $status -eq 0 ]; then
    echo "check-symbols: $(wc -l <"$tmp/ours") exported symbols, none shared with $(echo "$wxlibs" | wc -w) wxWidgets libraries"
fi
exit $status
