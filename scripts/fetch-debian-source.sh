#!/usr/bin/env bash
# Fetches and unpacks the Debian bookworm source package PACKAGE into DIR with
# `apt-get source`, and prints the unpacked folder's path. apt works on a
# state of its own below DIR (source list, indexes, cache): the system's apt
# configuration and state are read, never changed. The mirror is the one the
# system uses for bookworm (from /etc/apt/sources.list*). An unpacked folder
# that is there already is used as it is, without network.
#
#   scripts/fetch-debian-source.sh PACKAGE DIR
set -euo pipefail

package=$1
dir=$2
suite=bookworm

mkdir -p "$dir"
dir=$(cd "$dir" && pwd)

unpacked() {
    find "$dir" -maxdepth 1 -mindepth 1 -type d -name "$package-[0-9]*" | sort | tail -n 1
}
existing=$(unpacked)
if [ -n "$existing" ]; then
    echo "$existing"
    exit 0
fi

# The first URI that serves the suite itself (not -updates or -security), in
# one-line (.list) or deb822 (.sources) form; deb.debian.org when none does.
find_mirror() {
    local f
    for f in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$f" ] || continue
        awk -v suite="$suite" '
            $1 == "deb" || $1 == "deb-src" {
                i = 2
                if ($i ~ /^\[/) { while ($i !~ /\]$/) i++; i++ }
                if ($(i + 1) == suite) { print $i; exit }
            }' "$f"
    done
    for f in /etc/apt/sources.list.d/*.sources; do
        [ -f "$f" ] || continue
        awk -v suite="$suite" '
            function flush() {
                if (uri != "" && suites ~ ("(^| )" suite "( |$)")) { print uri; found = 1 }
                uri = ""; suites = ""
            }
            /^[ \t]*$/ { flush(); if (found) exit; next }
            /^[ \t]*#/ { next }
            tolower($1) == "uris:" { uri = $2 }
            tolower($1) == "suites:" { $1 = ""; suites = $0; sub(/^ +/, "", suites) }
            END { if (!found) flush() }' "$f"
    done
}
mirror=$(find_mirror | head -n 1)
mirror=${mirror:-http://deb.debian.org/debian}
mirror=${mirror%/}

state=$dir/apt
mkdir -p "$state/lists/partial" "$state/cache/archives/partial" "$state/sources.list.d"
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
options=""
[ -f "$keyring" ] && options="[signed-by=$keyring] "
echo "deb-src ${options}$mirror $suite main" >"$state/sources.list"

apt_options=(
    -o "Dir::Etc::SourceList=$state/sources.list"
    -o "Dir::Etc::SourceParts=$state/sources.list.d"
    -o "Dir::State::Lists=$state/lists"
    -o "Dir::Cache=$state/cache"
    -o "Dir::Cache::pkgcache=" -o "Dir::Cache::srcpkgcache="
    -o "APT::Sandbox::User=$(id -un)"
)
echo "fetch: $package from $mirror $suite" >&2
apt-get "${apt_options[@]}" -qq update >&2
(cd "$dir" && apt-get "${apt_options[@]}" -qq source "$package" >&2)
result=$(unpacked)
if [ -z "$result" ]; then
    echo "fetch: no unpacked $package in $dir" >&2
    exit 1
fi
echo "$result"
