#!/usr/bin/env bash
# Installs the Debian packages of some groups, if they are missing. Asks nothing.
#   scripts/install-deps.sh [--list] [GROUP...]      default: tool; --list: prints the names, and installs nothing
set -euo pipefail

declare -A groups=(
    # Builds the libraries and kxdu.
    [tool]="cmake g++ git ninja-build pkg-config libace-dev libcli11-dev libsqlitecpp-dev libsqlite3-dev libspdlog-dev
            liblzma-dev libsimdjson-dev libtbb-dev libtomlplusplus-dev libzstd-dev zlib1g-dev"
    # Builds and runs the tests, together with "tool".
    [test]="libgmock-dev libgtest-dev man-db mawk parallel python3 rapidjson-dev sqlite3 time xz-utils zstd"
    # Builds and tests the extension for PostgreSQL.
    [postgresql]="postgresql-15 postgresql-server-dev-15 python3 sqlite3"
    # Builds and tests the package for Python.
    [python]="libpython3-dev mypy pybind11-dev python3 python3-numpy python3-pytest"
    # Uses the page of kxdu report.
    [browser]="chromium fonts-dejavu-core python3"
    # The rest is for those who work on the sources.
    [abi]="abigail-tools"
    [bare]="mmdebstrap"
    [hosts]="mmdebstrap openssh-client parallel"
    [bench]="jq libbenchmark-dev mawk python3 sqlite3 time valgrind"
    [ccache]="ccache"
    [clang]="clang-14 libclang-rt-14-dev"
    [coverage]="gcovr"
    [fuzz]="clang-14 libclang-rt-14-dev libgtest-dev python3 xz-utils zstd"
    [packages]="dpkg-dev file lintian"
    [processors]="g++-aarch64-linux-gnu g++-s390x-linux-gnu mmdebstrap qemu-user"
    [lint]="clang-14 clang-format-14 clang-tidy-14 cppcheck"
    [rsyslog]="procps rsyslog"
)

list=false
if [ "${1-}" = --list ]; then
    list=true
    shift
fi
missing=()
for group in "${@:-tool}"; do
    if [ -z "${groups[$group]-}" ]; then
        echo "usage: scripts/install-deps.sh [--list] [GROUP...], of: ${!groups[*]}" >&2
        exit 2
    fi
    for package in ${groups[$group]}; do
        if $list; then
            echo "$package"
        elif ! dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed; then
            missing+=("$package")
        fi
    done
done
if [ ${#missing[@]} -eq 0 ]; then
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
