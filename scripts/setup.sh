#!/usr/bin/env bash
# Installs the Debian packages that building, testing, fuzzing and the
# benchmarks need. Idempotent: when everything is present it only checks.
#
#   scripts/setup.sh            packages for build and tests
#   scripts/setup.sh bench      ... and the peer libraries of the benchmarks
#   scripts/setup.sh windows    ... and the Windows cross-build: MinGW-w64, Wine
#                               (wine64 alone only recommends the launcher),
#                               dpkg-dev to unpack Debian source packages
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config binutils procps git
    libwxgtk3.2-dev libxml2-dev libutf8proc-dev
    googletest libgtest-dev
    clang libclang-rt-14-dev clang-format valgrind
    xvfb xauth x11-utils xterm imagemagick fonts-dejavu-core tzdata locales
    gettext wx3.2-i18n doxygen
)
if [ "${1:-}" = bench ]; then
    packages+=(libinih-dev libsimpleini-dev)
fi
if [ "${1:-}" = windows ]; then
    packages+=(g++-mingw-w64-x86-64-posix wine wine64 dpkg-dev debian-archive-keyring)
fi

# A German locale: a decimal comma, for the tests that numbers ignore it, and
# the German dialogs of the translation test.
ensure_comma_locale() {
    locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$' && return 0
    command -v localedef >/dev/null || return 0
    echo "setup: generating the de_DE.UTF-8 locale"
    $sudo localedef -i de_DE -c -f UTF-8 de_DE.UTF-8 || true
}

sudo=""
if [ "$(id -u)" -ne 0 ]; then
    sudo=sudo
fi

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
    [ "$status" = "install ok installed" ] || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "setup: installing ${missing[*]}"
    if [ -n "$sudo" ] && ! command -v sudo >/dev/null; then
        echo "setup: need root or sudo to install packages" >&2
        exit 1
    fi
    export DEBIAN_FRONTEND=noninteractive
    $sudo apt-get update -qq
    $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
ensure_comma_locale
