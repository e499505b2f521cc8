#!/usr/bin/env bash
# Installs the packages in /with/debs in a bare Debian, one after the other as their users would, and uses each.
#   scripts/bare.sh --with build/packages/debs tests/package/packages_test.sh
set -euo pipefail
. scripts/count.sh
work=$(mktemp -d)
chmod 755 "$work"
cd "$work"
log=$work/log
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

# install PACKAGE...: with all that they need.
install() {
    if ! apt-get install -y -q --no-install-recommends "$@" >"$log" 2>&1; then
        cat "$log"
        echo "packages: cannot install $*"
        failed
        finish
    fi
    passed
}
# try WHAT EXPECTED COMMAND...: the command succeeds and prints this.
try() {
    local printed
    if printed=$("${@:3}" 2>&1) && [ "$printed" = "$2" ]; then
        passed
    else
        echo "packages: $1: printed: $printed"
        failed
    fi
}

echo "deb [trusted=yes] file:/with/debs ./" >/etc/apt/sources.list.d/kx.list
apt-get update -q >"$log" 2>&1

# The tool alone: neither headers nor a compiler come along.
install kxdu man-db
try "no development packages" "" bash -c "dpkg-query -W -f '\${Package}\n' | grep -E '^(libkx.*-dev|g\\+\\+)\$' || true"
try "kxdu decodes" '{"fdn":"NE=7","type":"NEIndex","record":{"reserved":0,"neId":7}}' \
    bash -c 'echo NE=7 | kxdu decode'
try "there and back" same \
    bash -c 'kxdu sample --ne 20 -o n.fdn --inventory-csv csv && kxdu inventory init n.db >log &&
             kxdu inventory import n.db csv >log && kxdu decode n.fdn | kxdu encode --inventory n.db | cmp - n.fdn &&
             echo same'
for page in kxdu kxdu-decode kxdu-inventory-list; do
    try "man $page" 1 bash -c "MANWIDTH=100 man $page 2>&1 | grep -c '^NAME\$'"
done
/clone/tests/package/completion_test.sh /usr/share/bash-completion/completions/kxdu kxdu && passed || failed
install zsh fish
try "zsh takes its completions" "" zsh -n /usr/share/zsh/vendor-completions/_kxdu
try "fish completes a verb" $'decode' \
    fish -c "complete -C 'kxdu dec' | string split -f1 \t"
try "fish completes the words of an option" $'csv' \
    fish -c "complete -C 'kxdu decode --format cs' | string split -f1 \t"

# Programs in C++ and C.
install libkx-domain-util-dev libkx-c-dev g++ gcc cmake make pkg-config
examples=/usr/share/doc/kx_domain_util/examples
numbers=$'NE=7,S=0,CP=-1,PP=||4294967295|\n41180004'
cmake -S /clone/tests/package/outside -B outside -DEXAMPLES=$examples >"$log" 2>&1 &&
    cmake --build outside >>"$log" 2>&1 || cat "$log"
try "a program built by CMake" "$numbers" outside/outside
# shellcheck disable=SC2046
g++ -std=c++20 /clone/tests/package/outside/main.cpp -o main $(pkg-config --cflags --libs kx_domain_util)
try "a program built by pkg-config" "$numbers" ./main
# shellcheck disable=SC2046
gcc -std=c11 $examples/c_reader.c -o c_reader $(pkg-config --cflags --libs kx_c)
/clone/tests/package/example_test.sh ./c_reader $examples/c_reader.c && passed || failed

# The databases and Python.
install kx-sqlite sqlite3
try "SQLite" 12 sqlite3 :memory: '.load kx_sqlite' "SELECT fdn_ne('NE=12,FR=1')"
install python3-kx-domain-util
try "Python" "NEIndex [1 2]" \
    python3 -c 'import kx_domain_util as kx; print(kx.type("NE=7"), kx.columns(["NE=1", "NE=2"], ["NE"])["NE"])'
install postgresql-15-kx-fdn
runuser -u postgres -- pg_ctlcluster 15 main start >"$log" 2>&1 || cat "$log"
try "PostgreSQL" $'CREATE EXTENSION\n12' \
    runuser -u postgres -- psql -qAt -c '\unset QUIET' -c 'CREATE EXTENSION kx_fdn' -c "SELECT fdn_ne('NE=12,FR=1')"
runuser -u postgres -- pg_ctlcluster 15 main stop >"$log" 2>&1 || true

# Nothing of ours works without its libraries, so nothing of ours stays without them.
apt-get remove -y -q libkx-platform1 >"$log" 2>&1
try "all depends on the platform" "" \
    bash -c "dpkg-query -W -f '\${db:Status-Abbrev}\${Package}\n' | grep -E '^ii .*kx' || true"
finish
