#!/usr/bin/env bash
# Installs the build into a folder of its own and builds the outside program against it, found once by CMake and once by
# pkg-config; the folder is moved first, since a package may not know where it was built.
#   installed_test.sh BUILD_FOLDER SOURCE_FOLDER COMPILER
set -euo pipefail

build=$1
source=$2
compiler=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/first" >"$work/log"
mv "$work/first" "$work/prefix"
libraries=$(dirname "$(find "$work/prefix" -name libkx_domain_util.so)")
export LD_LIBRARY_PATH=$libraries

expected=$'NE=7,S=0,CP=-1,PP=||4294967295|\n41180004'

cmake -S "$source/tests/package/outside" -B "$work/outside" -DCMAKE_CXX_COMPILER="$compiler" \
      -DCMAKE_PREFIX_PATH="$work/prefix" >>"$work/log"
cmake --build "$work/outside" >>"$work/log"
[ "$("$work/outside/outside")" = "$expected" ]
[ "$("$work/outside/outside_standalone" "$work/inventory.db")" = "NE=12,S=3,CP=-1,SS=-1,SC=-1" ]

export PKG_CONFIG_PATH=$libraries/pkgconfig
# shellcheck disable=SC2046
"$compiler" -std=c++20 "$source/tests/package/outside/main.cpp" -o "$work/by_pkg_config" \
    $(pkg-config --cflags --libs kx_domain_util)
[ "$("$work/by_pkg_config")" = "$expected" ]

"$work/prefix/bin/kxdu" --version >>"$work/log"
find "$work/prefix" -name '*.cmake' -o -name '*.pc' | while read -r file; do
    if grep -qF "$source" "$file"; then
        echo "$file names the build folder" >&2
        exit 1
    fi
done
