#!/usr/bin/env bash
# usage: consumer.sh BUILD_DIR SOURCE_DIR: installs into a scratch prefix, moves it, builds
# tests/consumer against it by the CMake package and by pkg-config, and runs both.
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_RUNTIME_DIR=$work HOME=$work

# grep reads to the end: leaving early would break the pipe, and with it the script
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
prefix=$work/moved
library=$(find "$prefix" -name 'libtql_wnd.so' -printf '%h\n')

objdump -p "$library/libtql_wnd.so" | grep 'SONAME *libtql_wnd.so.0$' >/dev/null
if nm -DC --defined-only "$library/libtql_wnd.so" | grep -E ' T (QWidget|GDAL|OGR|proj_)'; then
    echo "the library exports what is not its own" >&2
    exit 1
fi

cmake -S "$source/tests/consumer" -B "$work/by-cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/by-cmake" >/dev/null
"$work/by-cmake/consumer" "$source/data/sample/L7_ETMs.tif" "$work/cmake.png"

export PKG_CONFIG_PATH=$library/pkgconfig
g++ "$source/tests/consumer/Main.cpp" -o "$work/by-pkg-config" \
    $(pkg-config --cflags --libs tql_wnd) -Wl,-rpath,"$library"
"$work/by-pkg-config" "$source/data/sample/L7_ETMs.tif" "$work/pkg.png"

cmp "$work/cmake.png" "$work/pkg.png"
if "$work/by-cmake/consumer" "$work/absent.tif" "$work/none.png" 2>"$work/refusal"; then
    echo "a missing file was not refused" >&2
    exit 1
fi
grep -q 'absent.tif' "$work/refusal"

"$prefix/bin/tqlview" --version | grep 'tqlview 0\.1' >/dev/null
echo "the installed library serves a host of its own"
