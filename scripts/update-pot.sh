#!/usr/bin/env bash
# Regenerates the templates of translatable texts, one per text domain:
#   wxsupport            po/wxsupport.pot, from the library (src/, include/)
#   wxsupport-gallery    demo/po/wxsupport-gallery.pot, from the gallery (demo/)
#
#   scripts/update-pot.sh                 writes both templates
#   scripts/update-pot.sh DOMAIN [FILE]   writes DOMAIN's template, or FILE
#                                         instead (scripts/check-po.sh)
#   scripts/update-pot.sh --where DOMAIN  prints the template's path and the
#                                         folders of its sources, one a line
#
# The keywords are the ones wxWidgets itself marks texts with. Source
# references name the file only, and the files go in sorted order, so the
# template changes only when a translatable text does. The charset is set to
# UTF-8, the sources' own, so that the gettext tools read the template as it is.
set -euo pipefail
cd "$(dirname "$0")/.."

where() { # domain: template, then source folders
    case $1 in
    wxsupport) printf '%s\n' po/wxsupport.pot src include ;;
    wxsupport-gallery) printf '%s\n' demo/po/wxsupport-gallery.pot demo ;;
    *)
        echo "update-pot: unknown domain '$1' (wxsupport or wxsupport-gallery)" >&2
        return 1
        ;;
    esac
}

title() { # domain
    case $1 in
    wxsupport) echo "Translatable texts of the wxsupport library." ;;
    wxsupport-gallery) echo "Translatable texts of the wxsupport gallery." ;;
    esac
}

generate() { # domain [file]
    local domain=$1 places template sources=()
    places=$(where "$domain")
    template=$(head -n 1 <<<"$places")
    local out=${2:-$template}
    while IFS= read -r f; do
        sources+=("$f")
    done < <(tail -n +2 <<<"$places" | xargs -I{} find {} -type f \( -name '*.cpp' -o -name '*.h' \) |
        LC_ALL=C sort)

    xgettext --language=C++ --from-code=UTF-8 \
        --keyword --keyword=_ --keyword=wxGetTranslation --keyword=wxTRANSLATE \
        --keyword=wxPLURAL:1,2 --add-location=file \
        --package-name="$domain" --copyright-holder="the wxsupport authors" \
        --msgid-bugs-address="wxsupport developers" \
        --output=- "${sources[@]}" |
        sed -e "1s/^# SOME DESCRIPTIVE TITLE\.\$/# $(title "$domain")/" \
            -e 's/charset=CHARSET/charset=UTF-8/' >"$out"
}

case ${1:-} in
"")
    generate wxsupport
    generate wxsupport-gallery
    ;;
--where) where "${2:?--where needs a domain}" ;;
*) generate "$1" "${2:-}" ;;
esac
