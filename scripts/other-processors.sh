#!/usr/bin/env bash
# Builds test programs for other processors, and runs them emulated by qemu. arm64: the tests of the library. s390x,
# which is big-endian: those of the conversions. Wants to be root.
#   scripts/other-processors.sh [arm64|s390x]...      default: both
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh
. scripts/ccache.sh

CONVERSIONS=(kx_{catalogue,common,fdnwriter,formats,plain,resid,text}_tests)
# Left out: kx_fork_tests, which do not end in qemu; and the tests of the tool and the bindings, most of which start
# other programs.
LIBRARY=("${CONVERSIONS[@]}" kx_{allocation,churn,cost,device,exhaustion,failinghost,failingmemory}_tests
         kx_{failingsqlite,firstcall,frame,layout,lines,loadonce,oamlookup,platform,sample,standalone}_tests
         kx_{termination,thread}_tests)
LEFT_OUT='InventoryFile\.NeedsNoHardLinks'         # qemu refuses filters of system calls
LEFT_OUT+='|InterruptionsTest\.WaitUntilTheLast'   # qemu itself fails when a forked child starts a thread
LEFT_OUT+='|InventoryFileInJournalMode'            # on a busy machine the emulation may be too slow to get its lock

# make_root PROCESSOR ROOT: the headers and libraries of Debian for the processor.
make_root() {
    local packages
    mapfile -t packages < <(scripts/install-deps.sh --list tool test | grep -e '-dev$')
    scripts/debian-root.sh --of "$1" "$2" libstdc++-12-dev "${packages[@]}"
    # Emulated programs see the root's files in the place of this machine's.
    rm -rf --one-file-system "${2:?}"/{dev,etc,tmp,var}
}

# build PROCESSOR MACHINE TARGET...: MACHINE is the name that compilers and qemu have for the processor.
build() {
    local folder=build/$1 machine=$2 root=$PWD/build/root-$1
    export PKG_CONFIG_SYSROOT_DIR=$root
    export PKG_CONFIG_LIBDIR=$root/usr/lib/$machine-linux-gnu/pkgconfig:$root/usr/share/pkgconfig
    cmake --preset release -B "$folder" \
          -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR="$machine" -DCMAKE_SYSROOT="$root" \
          -DCMAKE_CXX_COMPILER="/usr/bin/$machine-linux-gnu-g++" \
          -DCMAKE_CROSSCOMPILING_EMULATOR="qemu-$machine;-L;$root" \
          -DCMAKE_FIND_ROOT_PATH_MODE_PROGRAM=NEVER -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY \
          -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY &&
        cmake --build "$folder" -j "$(nproc)" --target "${@:3}"
}

# build_and_test PROCESSOR MACHINE PROGRAM...
build_and_test() {
    local processor=$1 log=build/$1.log root=build/root-$1 bad
    if [ ! -d "$root" ]; then
        rm -rf "$root.new"
        make_root "$processor" "$root.new"
        mv "$root.new" "$root"
    fi
    echo "== $processor: build"
    if ! build "$@" >"$log" 2>&1; then
        tail -n 60 "$log"
        echo "== $processor: did not build (whole log: $log)"
        failed
        return
    fi
    echo "== $processor: test"
    ctest --test-dir "build/$processor" --output-on-failure -j "$(nproc)" -R "^($(IFS='|'; echo "${*:3}"))\." \
          -E "$LEFT_OUT" >>"$log" 2>&1 || true
    bad=$(sed -nE 's/.* ([0-9]+) tests failed out of [0-9]+$/\1/p' "$log")
    if [ "${bad:-1}" -gt 0 ]; then
        tail -n 60 "$log"
        echo "== $processor: failed (whole log: $log)"
    fi
    passed "$(grep -cE '^ *[0-9]+/[0-9]+ Test .* Passed ' "$log")"
    failed "${bad:-1}"
}

if [ $# -eq 0 ]; then
    set -- arm64 s390x
fi
if [[ ! "$*" =~ ^(arm64|s390x)(\ (arm64|s390x))*$ ]] || [ "$(id -u)" -ne 0 ]; then
    sed -n '2,4s/^# \?//p' "$0" >&2
    exit 2
fi
scripts/install-deps.sh tool test processors
for processor in "$@"; do
    case $processor in
    arm64) build_and_test arm64 aarch64 "${LIBRARY[@]}" ;;
    s390x) build_and_test s390x s390x "${CONVERSIONS[@]}" ;;
    esac
done
finish
