#!/usr/bin/env bash
# Checks the translation catalogues of each text domain, the library's
# (po/) and the gallery's (demo/po/):
# - the template (po/wxsupport.pot, demo/po/wxsupport-gallery.pot) is what
#   scripts/update-pot.sh makes of the sources now (the POT-Creation-Date
#   header aside);
# - every LANG.po beside it translates exactly the template's texts, none fuzzy,
#   none left out, passes `msgfmt --check`, and each translation keeps the
#   % directives of its text (the uptime formats' %E %D %H %M %S, the crash
#   texts' %s), in any order.
# Exits non-zero and says why on the first catalogue that fails.
set -euo pipefail

# msgexec calls this script once per message: msgid in the environment,
# msgstr on standard input. Prints "msgid<TAB>directives of the msgid" and
# fails when the msgstr's directives differ.
if [ "${1:-}" = --entry ]; then
    directives() { grep -o '%[-+ #0-9.]*[A-Za-z%]' | LC_ALL=C sort | tr '\n' ' ' || true; }
    [ -n "$MSGEXEC_MSGID" ] || exit 0 # the header
    id=$(printf '%s' "$MSGEXEC_MSGID" | tr '\n\t' '\r\v')
    want=$(printf '%s' "$MSGEXEC_MSGID" | directives)
    got=$(directives)
    if [ "$want" != "$got" ]; then
        echo "directives [$want] of \"$id\" became [$got]" >&2
        exit 1
    fi
    printf '%s\t%s\n' "$id" "$want"
    exit 0
fi

cd "$(dirname "$0")/.."
self=$(pwd)/scripts/check-po.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "check-po: $*" >&2
    exit 1
}

check_domain() { # domain
    local domain=$1 pot dir count=0
    pot=$(scripts/update-pot.sh --where "$domain" | sed -n 1p)
    dir=$(dirname "$pot")
    scripts/update-pot.sh "$domain" "$work/fresh.pot"
    if ! diff -u <(grep -v '^"POT-Creation-Date:' "$pot") \
        <(grep -v '^"POT-Creation-Date:' "$work/fresh.pot") >"$work/pot.diff"; then
        cat "$work/pot.diff" >&2
        fail "$pot is out of date with the sources: run scripts/update-pot.sh"
    fi

    # The template's texts, one a line (newlines shown as carriage returns).
    msgexec -i "$pot" sh -c \
        '[ -z "$MSGEXEC_MSGID" ] || printf "%s\n" "$(printf "%s" "$MSGEXEC_MSGID" | tr "\n\t" "\r\v")"' |
        LC_ALL=C sort >"$work/template.ids"

    for po in "$dir"/*.po; do
        [ -e "$po" ] || continue
        msgfmt --check -o /dev/null "$po" || fail "$po: msgfmt --check failed"
        [ -z "$(msgattrib --only-fuzzy --no-obsolete "$po")" ] || fail "$po has fuzzy entries"
        [ -z "$(msgattrib --untranslated --no-obsolete "$po")" ] || fail "$po has untranslated entries"
        msgexec -i "$po" "$self" --entry >"$work/entries" || fail "$po: a translation lost or gained a % directive"
        cut -f1 "$work/entries" | LC_ALL=C sort >"$work/po.ids"
        if ! diff "$work/template.ids" "$work/po.ids" >"$work/ids.diff"; then
            sed 's/^</missing:/; s/^>/not in the template:/' "$work/ids.diff" | grep ':' >&2
            fail "$po doesn't translate exactly the template's texts: run msgmerge"
        fi
        count=$((count + 1))
    done
    echo "check-po: $pot up to date; $count catalogue(s) complete ($(wc -l <"$work/template.ids") texts)"
}

check_domain wxsupport
check_domain wxsupport-gallery
