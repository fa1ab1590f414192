#!/usr/bin/env bash
# check-install.sh BUILD_DIR SOURCE_DIR
# The hosts are built with $CXX and $CXXFLAGS when set, as the library was.
set -euo pipefail
build=$1
src=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"

cmake --install "$build" --prefix "$prefix" >/dev/null
for f in include/wxsupport/wxsupport.h include/wxsupport/config/inifile.h \
    lib/libwxsupport.so.0 lib/libvesk.so.0 lib/cmake/wxsupport/wxsupportConfig.cmake \
    lib/pkgconfig/wxsupport.pc share/locale/de/LC_MESSAGES/wxsupport.mo \
    bin/wxsupport-gallery share/locale/de/LC_MESSAGES/wxsupport-gallery.mo \
    share/wxsupport-gallery/sample.ini share/wxsupport-gallery/sample.xml; do
    [ -e "$prefix/$f" ] || { echo "missing in the installed tree: $f" >&2; exit 1; }
done

# The libraries and programs find each other through relative run paths.
runpath() { # file: its RUNPATH (or old-style RPATH) entry, empty when none
    readelf -d "$1" | sed -n 's/.*(\(RUNPATH\|RPATH\)).*\[\(.*\)\]$/\2/p'
}
expect_runpath() { # file, wanted run path
    local got
    got=$(runpath "$1")
    [ "$got" = "$2" ] || { echo "run path of ${1#"$prefix/"} is '$got', not '$2'" >&2; exit 1; }
}
expect_runpath "$prefix/lib/libwxsupport.so.0" '$ORIGIN'
expect_runpath "$prefix/lib/libvesk.so.0" '$ORIGIN'
while IFS= read -r program; do
    expect_runpath "$program" '$ORIGIN/../lib'
done < <(find "$prefix/bin" -type f -perm -u+x | sort)

# The installed gallery starts from the prefix alone: --version needs no
# display; its German tour needs its data files and both catalogues from
# share/, and fails without them. The tour gets a private Xvfb, so that it
# takes no focus from GUI tests running beside it.
echo "-- the installed gallery"
gallery=$prefix/bin/wxsupport-gallery
version=$(env -u LD_LIBRARY_PATH "$gallery" --version) ||
    { echo "the installed gallery doesn't start" >&2; exit 1; }
case $version in
"wxsupport-gallery "[0-9]*) echo "$version" ;;
*) echo "the installed gallery printed '$version' for --version" >&2; exit 1 ;;
esac
mkdir -p "$work/home"
if ! HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" env -u LD_LIBRARY_PATH -u DISPLAY \
    "$src/scripts/with-xvfb.sh" "$gallery" --tour --lang de --out "$work/tour" >"$work/tour.log" 2>&1; then
    cat "$work/tour.log" >&2
    echo "the installed gallery's German tour failed" >&2
    exit 1
fi
echo "German tour: $(find "$work/tour/de" -name '*.png' | wc -l) pictures"

# run_host program expected-output: starts a host the way a user would,
# without LD_LIBRARY_PATH, and compares what it prints.
run_host() {
    local out
    out=$(env -u LD_LIBRARY_PATH "$1" "$work") ||
        { echo "host ${1#"$work/"} failed" >&2; exit 1; }
    [ "$out" = "$2" ] || { echo "host ${1#"$work/"} printed '$out', not '$2'" >&2; exit 1; }
    echo "${1#"$work/"}: $out"
}

echo "-- CMake hosts"
cmake -S "$src/tests/consumer" -B "$work/cmake-build" -G Ninja \
    -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
run_host "$work/cmake-build/host" "host ok"
run_host "$work/cmake-build/ini_host" "ini host 640 1"

echo "-- pkg-config hosts"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
for program in host ini_host; do
    # shellcheck disable=SC2046
    ${CXX:-c++} -std=c++17 ${CXXFLAGS:-} "$src/tests/consumer/$program.cpp" -o "$work/$program-pc" \
        $(pkg-config --cflags --libs wxsupport) -Wl,-rpath,"$prefix/lib"
done
run_host "$work/host-pc" "host ok"
run_host "$work/ini_host-pc" "ini host 640 1"

echo "-- every public header on its own"
cflags=$(pkg-config --cflags wxsupport)
count=0
while IFS= read -r header; do
    rel=${header#"$prefix/include/"}
    printf '#include <%s>\nint main() { return 0; }\n' "$rel" >"$work/one.cpp"
    ${CXX:-c++} -std=c++17 -Wall -Wextra -Werror -fsyntax-only ${CXXFLAGS:-} $cflags "$work/one.cpp" ||
        { echo "header does not compile on its own: $rel" >&2; exit 1; }
    count=$((count + 1))
done < <(find "$prefix/include/wxsupport" -name '*.h' | sort)
echo "$count headers compile on their own"
