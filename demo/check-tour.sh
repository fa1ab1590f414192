#!/usr/bin/env bash
# The gallery's test: runs the tour into a fresh folder and fails when the
# program fails (an assertion or a failed step), when fewer pictures than
# expected were written, or when one is blank (fewer than 30 colours).
#
#   demo/check-tour.sh GALLERY-PROGRAM OUT-DIR
set -euo pipefail
program=$1
out=$2
expected=14
min_colours=30

rm -rf "$out"
mkdir -p "$out"
"$program" --tour --out "$out"

status=0
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
