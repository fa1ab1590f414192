#!/usr/bin/env bash
# Regenerates po/wxsupport.pot, the template of the library's translatable
# texts, from the sources under src/ and include/.
#
#   scripts/update-pot.sh          writes po/wxsupport.pot
#   scripts/update-pot.sh FILE     writes FILE instead (scripts/check-po.sh)
#
# The keywords are the ones wxWidgets itself marks texts with. Source
# references name the file only, and the files go in sorted order, so the
# template changes only when a translatable text does. The charset is set to
# UTF-8, the sources' own, so that the gettext tools read the template as it is.
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:-po/wxsupport.pot}

sources=()
while IFS= read -r f; do
    sources+=("$f")
done < <(find src include -type f \( -name '*.cpp' -o -name '*.h' \) | LC_ALL=C sort)

xgettext --language=C++ --from-code=UTF-8 \
    --keyword --keyword=_ --keyword=wxGetTranslation --keyword=wxTRANSLATE \
    --keyword=wxPLURAL:1,2 --add-location=file \
    --package-name=wxsupport --copyright-holder="the wxsupport authors" \
    --msgid-bugs-address="wxsupport developers" \
    --output=- "${sources[@]}" |
    sed -e '1s/^# SOME DESCRIPTIVE TITLE\.$/# Translatable texts of the wxsupport library./' \
        -e 's/charset=CHARSET/charset=UTF-8/' >"$out"
