#!/usr/bin/env bash
# The gallery's test: runs the tour into a fresh folder and fails when the
# program fails (an assertion or a failed step), when fewer pictures than
# expected were written, when one is blank (fewer than 30 colours), or when
# the tour wrote settings into the user's configuration folder.
#
#   demo/check-tour.sh GALLERY-PROGRAM OUT-DIR
set -euo pipefail
program=$1
out=$2
expected=14
min_colours=30

rm -rf "$out"
mkdir -p "$out/home"
# A home of its own, to see that the tour keeps out of it.
HOME="$out/home" XDG_CONFIG_HOME="$out/home/.config" "$program" --tour --out "$out"

status=0
if [ -e "$out/home/.config/wxsupport-gallery" ]; then
    echo "check-tour: the tour wrote into the configuration folder" >&2
    status=1
fi
count=$(find "$out" -maxdepth 1 -name '[0-9][0-9]-*.png' | wc -l)
if [ "$count" -lt "$expected" ]; then
    echo "check-tour: $count pictures, $expected expected" >&2
    status=1
fi
for picture in "$out"/[0-9][0-9]-*.png; do
    [ -e "$picture" ] || continue
    colours=$(identify -format '%k' "$picture")
    if [ "$colours" -lt "$min_colours" ]; then
        echo "check-tour: $picture is blank ($colours colours)" >&2
        status=1
    fi
done
[ $status -eq 0 ] && echo "check-tour: $count pictures, none blank"
exit $status
