#!/usr/bin/env bash
# Refreshes the README's screenshots in docs/images/ from the gallery's tour:
# builds, runs the tour under a private Xvfb (same size and fonts on every
# machine), in English whatever the locale, and keeps a smaller copy of each
# picture.
#
#   scripts/update-screenshots.sh
set -euo pipefail
cd "$(dirname "$0")/.."

./run build >/dev/null
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
# Always a private server: a desktop's theme and fonts would differ.
env -u DISPLAY scripts/with-xvfb.sh build/bin/wxsupport-gallery --tour --lang en --out "$out" >/dev/null

mkdir -p docs/images
rm -f docs/images/[0-9][0-9]-*.png
for picture in "$out"/[0-9][0-9]-*.png; do
    # Half size at most 640 pixels wide, in 256 colours: small enough for git.
    convert "$picture" -resize '640x640>' -strip -colors 256 PNG8:"docs/images/$(basename "$picture")"
done
ls -l docs/images
