#!/usr/bin/env bash
# Compares the exported symbols of the two libraries with the lists in abi/, and their types with those of the newest
# release. libkx_standalone is left out: programs are built together with it.
# If old programs no longer run after a change, KX_SOVERSION goes up.
#   scripts/abi.sh [--update]      --update: writes the lists
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh

libraries=(kx_domain_util kx_platform)
scripts/install-deps.sh tool
if ! scripts/build.sh abi; then
    failed
    finish
fi

# Left out: instances of the standard library's templates, to which nobody links.
symbols_of() {
    nm --dynamic --defined-only --format=posix "$1" | cut -d' ' -f1 |
        grep -vE '^_ZZ?(T[VIS]|G[VR])?(N[VKRO]*)?S[tabsiod]|^_ZN[VKRO]*9__gnu_cxx' | c++filt |
        sed 's/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g' |
        LC_ALL=C sort -u
}

for library in "${libraries[@]}"; do
    list=abi/$library.txt
    symbols=build/abi/$library.txt
    symbols_of "build/abi/lib/lib$library.so" >"$symbols"
    if [ "${1-}" = --update ]; then
        cp "$symbols" "$list"
    fi
    if diff -u "$list" "$symbols"; then
        passed
    else
        echo "abi: lib$library.so does not export what $list lists; if that is meant: scripts/abi.sh --update"
        failed
    fi
done

# soversion_in FOLDER
soversion_in() {
    sed -n 's/^set(KX_SOVERSION \([0-9]*\))$/\1/p' "$1/CMakeLists.txt"
}

# build_release TAG FOLDER: the libraries of a release, with what the debugger knows of their types.
build_release() {
    mkdir -p "$2"
    git archive "$1" | tar -x -C "$2"
    if [ "$(soversion_in "$2")" != "$(soversion_in .)" ]; then
        return
    fi
    cmake -S "$2" -B "$2/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-g -DBUILD_TESTING=OFF \
          -DKX_BUILD_TOOL=OFF >"$2.log" && cmake --build "$2/build" --target "${libraries[@]}" >>"$2.log"
}

if ! release=$(git describe --tags --abbrev=0 --match 'v[0-9]*' 2>/dev/null); then
    echo "abi: there is no release yet whose types could be compared"
    finish
fi
scripts/install-deps.sh abi
folder=build/abi-$release
if [ ! -e "$folder/built" ]; then
    rm -rf "$folder"
    build_release "$release" "$folder"
    touch "$folder/built"
fi
if [ "$(soversion_in "$folder")" != "$(soversion_in .)" ]; then
    echo "abi: since $release KX_SOVERSION has gone up: types may differ"
    finish
fi
for library in "${libraries[@]}"; do
    if abidiff --suppressions abi/suppressions.ini \
               "$folder/build/lib/lib$library.so" "build/abi/lib/lib$library.so"; then
        passed
    else
        echo "abi: types of lib$library.so are not those of $release"
        failed
    fi
done
finish
