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
    lib/pkgconfig/wxsupport.pc; do
    [ -e "$prefix/$f" ] || { echo "missing in the installed tree: $f" >&2; exit 1; }
done

echo "-- CMake host"
cmake -S "$src/tests/consumer" -B "$work/cmake-build" -G Ninja \
    -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
"$work/cmake-build/host" "$work"

echo "-- pkg-config host"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
# shellcheck disable=SC2046
${CXX:-c++} -std=c++17 ${CXXFLAGS:-} "$src/tests/consumer/host.cpp" -o "$work/host-pc" \
    $(pkg-config --cflags --libs wxsupport) -Wl,-rpath,"$prefix/lib"
"$work/host-pc" "$work"

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
