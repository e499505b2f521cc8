#!/usr/bin/env bash
# Installs what building and testing needs, from Debian's packages. Asks nothing, and does nothing when all is there.
set -euo pipefail

build=(cmake g++ git ninja-build pkg-config)
libraries=(libace-dev libcli11-dev liblzma-dev libsqlitecpp-dev libsqlite3-dev libspdlog-dev libtbb-dev
           libtomlplusplus-dev libzstd-dev rapidjson-dev zlib1g-dev)
tests=(abigail-tools ccache clang-14 clang-format-14 clang-tidy-14 cppcheck libbenchmark-dev libclang-rt-14-dev
       gcovr libgmock-dev libgtest-dev mawk parallel python3 time valgrind xz-utils zstd)

missing=()
for package in "${build[@]}" "${libraries[@]}" "${tests[@]}"; do
    if ! dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    echo "install-deps: all packages are installed"
    exit 0
fi

echo "install-deps: installing ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update -q &&
       "${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "install-deps: could not install the packages" >&2
    exit 1
fi
echo "install-deps: done"
