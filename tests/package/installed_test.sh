#!/usr/bin/env bash
# Installs the build into a folder and moves that, since a package must not know where it was built. Builds the outside
# programs against it, once by CMake and once by pkg-config, and runs them and kxdu without LD_LIBRARY_PATH.
#   installed_test.sh BUILD_FOLDER SOURCE_FOLDER COMPILER
set -euo pipefail
unset LD_LIBRARY_PATH KX_INVENTORY KX_CONFIG_DIR

build=$1
source=$2
compiler=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# prints EXPECTED COMMAND...: the command succeeds and prints this.
prints() {
    local printed
    printed=$("${@:2}")
    if [ "$printed" != "$1" ]; then
        echo "${*:2} printed: $printed" >&2
        exit 1
    fi
}

cmake --install "$build" --prefix "$work/first" >"$work/log"
mv "$work/first" "$work/prefix"
libraries=$(dirname "$(find "$work/prefix" -name libkx_domain_util.so)")
"$work/prefix/bin/kxdu" --version >>"$work/log"
[ -s "$work/prefix/share/doc/kx_domain_util/docs/guide.md" ]
[ -x "$work/prefix/share/doc/kx_domain_util/examples/many_hosts.sh" ]

numbers=$'NE=7,S=0,CP=-1,PP=||4294967295|\n41180004'
examples=$work/prefix/share/doc/kx_domain_util/examples

cmake -G Ninja -S "$source/tests/package/outside" -B "$work/outside" -DCMAKE_CXX_COMPILER="$compiler" \
      -DCMAKE_PREFIX_PATH="$work/prefix" -DEXAMPLES="$examples" >>"$work/log"
cmake --build "$work/outside" >>"$work/log"
prints "$numbers" "$work/outside/outside"
"$source/tests/package/example_test.sh" "$work/outside/outside_standalone" "$examples/standalone_host.cpp"
"$source/tests/package/example_test.sh" "$work/outside/outside_readme" "$examples/read_and_write_a_port.cpp"

export PKG_CONFIG_PATH=$libraries/pkgconfig
# by_pkg_config SOURCE PACKAGE: makes $work/by_pkg_config.
by_pkg_config() {
    # shellcheck disable=SC2046
    "$compiler" -std=c++20 "$1" -o "$work/by_pkg_config" \
        $(pkg-config --cflags --libs "$2") -Wl,-rpath,"$libraries"
}
by_pkg_config "$source/tests/package/outside/main.cpp" kx_domain_util
prints "$numbers" "$work/by_pkg_config"
by_pkg_config "$examples/standalone_host.cpp" kx_standalone
"$source/tests/package/example_test.sh" "$work/by_pkg_config" "$examples/standalone_host.cpp"

find "$work/prefix" -name '*.cmake' -o -name '*.pc' | while read -r file; do
    if grep -qF "$source" "$file"; then
        echo "$file names the build folder" >&2
        exit 1
    fi
done
