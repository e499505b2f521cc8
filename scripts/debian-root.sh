#!/usr/bin/env bash
# Makes a bare Debian 12 with some packages in a new folder. The machine's own package sources are used. Wants to be
# root.
#   scripts/debian-root.sh [--of PROCESSOR] ROOT PACKAGE...
# --of: the packages of another processor and what they need, to compile and link with; nothing is set up to run there
set -euo pipefail

how=(--variant=minbase)
if [ "${1-}" = --of ]; then
    how=(--variant=extract --architectures="${2-}")
    shift $(($# < 2 ? $# : 2))
fi
if [ $# -lt 2 ] || [ "$(id -u)" -ne 0 ]; then
    sed -n '2,5s/^# \?//p' "$0" >&2
    exit 2
fi
root=$1
shift

# Sources of other packages would want keys that a bare Debian does not have.
release=bookworm
mapfile -t sources < <(grep -lrE "(^|[[:space:]])$release([[:space:]]|$)" --include='*.list' --include='*.sources' \
                            /etc/apt)
log=$root.log
if ! mmdebstrap "${how[@]}" --include="$(IFS=,; echo "$*")" --dpkgopt=force-unsafe-io "$release" "$root" \
                "${sources[@]}" >"$log" 2>&1; then
    cat "$log" >&2
    echo "debian-root: could not make a Debian $release" >&2
    exit 1
fi
rm -f "$log"
apt-config dump | grep -iE '^Acquire::https?::(Proxy|No-Cache)' >"$root/etc/apt/apt.conf.d/90machine" || true
cp /etc/resolv.conf /etc/hosts "$root/etc/"
chmod 755 "$root"
