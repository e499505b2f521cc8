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

# Sources of other packages would want keys that a bare Debian does not have.
release=bookworm
mapfile -t sources < <(grep -lrE "(^|[[:space:]])$release([[:space:]]|$)" --include='*.list' --include='*.sources' \
                            /etc/apt)
log=$root.log
if ! mmdebstrap --variant=minbase --include=git,ca-certificates --dpkgopt=force-unsafe-io "$release" "$root" \
                "${sources[@]}" >"$log" 2>&1; then
    cat "$log" >&2
    echo "bare: could not make a Debian $release" >&2
    exit 1
fi
rm -f "$log"
apt-config dump | grep -iE '^Acquire::https?::(Proxy|No-Cache)' >"$root/etc/apt/apt.conf.d/90machine" || true
cp /etc/resolv.conf /etc/hosts "$root/etc/"
chmod 755 "$root"

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
