#!/usr/bin/env bash
# Runs a command in a bare Debian 12 that has git and nothing else. It starts in /clone, a clean clone of the last
# commit. The machine's own package sources are used. Nothing is left of it afterwards. Wants to be root.
#   scripts/bare.sh [--with PATH]... COMMAND [ARGUMENT...]      --with PATH: copies a file or folder into /with
set -euo pipefail
cd "$(dirname "$0")/.."

given=()
while [ "${1-}" = --with ]; do
    given+=("$2")
    shift 2
done
if [ $# -eq 0 ] || [ "$(id -u)" -ne 0 ]; then
    sed -n '2,4s/^# \?//p' "$0" >&2
    exit 2
fi

scripts/install-deps.sh bare
root=$(mktemp -d /var/tmp/kx-bare.XXXXXX)
trap 'rm -rf --one-file-system "$root"' EXIT

scripts/debian-root.sh "$root" git ca-certificates
git clone -q --no-hardlinks . "$root/clone"
mkdir "$root/with"
if [ ${#given[@]} -gt 0 ]; then
    cp -a -- "${given[@]}" "$root/with/"
fi

# Mounts and processes live in namespaces of their own, so they end with the command, however it ends.
# shellcheck disable=SC2016
unshare --mount --pid --fork --kill-child --propagation private bash -euc '
    root=$1
    mount -t proc proc "$root/proc"
    mount --bind /dev "$root/dev"
    mount --bind /dev/pts "$root/dev/pts"
    exec chroot "$root" env -i HOME=/root LANG=C.UTF-8 TERM="${TERM:-dumb}" PATH=/usr/sbin:/usr/bin:/sbin:/bin \
         ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
         bash -c '\''cd /clone && exec "$@"'\'' bash "${@:2}"
' bash "$root" "$@"
