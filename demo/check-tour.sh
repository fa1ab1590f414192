#!/usr/bin/env bash
# The gallery's test: runs the tour into a fresh folder, once in English
# (OUT-DIR) and once in German (OUT-DIR/de), and fails when the program fails
# (an assertion, a failed step or, in German, a missing catalogue), when fewer
# pictures than expected were written, when one is blank (fewer than 30
# colours), or when the tour wrote settings into the user's configuration
# folder.
#
#   demo/check-tour.sh GALLERY-PROGRAM OUT-DIR
set -euo pipefail
program=$1
out=$2
expected=14
min_colours=30

rm -rf "$out"
mkdir -p "$out/home"
status=0

check_pictures() { # folder
    local count colours picture
    count=$(find "$1" -maxdepth 1 -name '[0-9][0-9]-*.png' | wc -l)
    if [ "$count" -lt "$expected" ]; then
        echo "check-tour: $count pictures in $1, $expected expected" >&2
        status=1
    fi
    for picture in "$1"/[0-9][0-9]-*.png; do
        [ -e "$picture" ] || continue
        colours=$(identify -format '%k' "$picture")
        if [ "$colours" -lt "$min_colours" ]; then
            echo "check-tour: $picture is blank ($colours colours)" >&2
            status=1
        fi
    done
    echo "check-tour: $count pictures in $1"
}

for lang in en de; do
    echo "check-tour: the tour in $lang"
    # A home of its own, to see that the tour keeps out of it.
    HOME="$out/home" XDG_CONFIG_HOME="$out/home/.config" \
        "$program" --tour --out "$out" --lang "$lang" || status=1
done

if [ -e "$out/home/.config/wxsupport-gallery" ]; then
    echo "check-tour: the tour wrote into the configuration folder" >&2
    status=1
fi
check_pictures "$out"
check_pictures "$out/de"
[ $status -eq 0 ] && echo "check-tour: both tours passed, no picture blank"
exit $status
