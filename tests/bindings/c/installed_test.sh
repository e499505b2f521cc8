#!/usr/bin/env bash
# Installs the build, moves it, and builds the example in C against it, without a compiler for C++: found once by CMake
# and once by pkg-config. What is built starts as it lies there.
#   installed_test.sh BUILD_FOLDER SOURCE_FOLDER
set -euo pipefail
unset LD_LIBRARY_PATH

build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/first" >"$work/log"
mv "$work/first" "$work/prefix"
libraries=$(dirname "$(find "$work/prefix" -name libkx_c.so)")
examples=$work/prefix/share/doc/kx_domain_util/examples
# runs PROGRAM: it prints what the example says.
runs() {
    "$source/tests/package/example_test.sh" "$1" "$examples/c_reader.c"
}

cmake -G Ninja -S "$source/tests/bindings/c/outside" -B "$work/outside" -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DEXAMPLES="$examples" >>"$work/log"
cmake --build "$work/outside" >>"$work/log"
runs "$work/outside/outside"

export PKG_CONFIG_PATH=$libraries/pkgconfig
[ "$(pkg-config --modversion kx_c)" = 1.0.0 ]
# shellcheck disable=SC2046
gcc -std=c11 "$examples/c_reader.c" -o "$work/by_pkg_config" $(pkg-config --cflags --libs kx_c) \
    -Wl,-rpath,"$libraries"
runs "$work/by_pkg_config"


# The program of the guide, with its commands.
guide=$source/docs/c.md
mkdir "$work/guide"
# block LANGUAGE: what the guide's blocks of this language hold.
block() {
    sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$guide"
}
block c >"$work/guide/slot.c"
block console | sed -n 's/^\$ //p' >"$work/guide/commands"
[ -s "$work/guide/commands" ]
diff <(block console | sed '/^\$ /d') \
     <(cd "$work/guide" && LD_LIBRARY_PATH=$libraries bash -euo pipefail commands 2>&1)
