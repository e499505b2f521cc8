#!/usr/bin/env bash
# Runs examples/many_hosts.sh with two hosts that share nothing but ssh: two Debian systems with our packages, in
# namespaces of their own, without a network. Each ssh connection starts an sshd there. Wants to be root.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh

if [ "$(id -u)" -ne 0 ]; then
    echo "many-hosts: wants to be root" >&2
    exit 2
fi
scripts/install-deps.sh hosts
scripts/packages.sh --only-make >/dev/null
work=$(mktemp -d /var/tmp/kx-hosts.XXXXXX)
trap 'rm -rf --one-file-system "$work"' EXIT

scripts/debian-root.sh "$work/alpha" openssh-server parallel
cp -r build/packages/debs "$work/alpha/debs"
echo "deb [trusted=yes] file:/debs ./" >"$work/alpha/etc/apt/sources.list.d/kx.list"
log=build/many-hosts.log
if ! chroot "$work/alpha" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
     sh -ec 'apt-get update -q; apt-get install -y -q --no-install-recommends kxdu' >"$log" 2>&1; then
    cat "$log" >&2
    echo "many-hosts: could not install the packages" >&2
    exit 1
fi
ssh-keygen -q -t ed25519 -N '' -f "$work/key"
install -m 644 "$work/key.pub" "$work/alpha/etc/ssh/known_users"
mkdir -p "$work/alpha/run/sshd"
cp -a "$work/alpha" "$work/beta"

cat >"$work/sshd" <<'END'
#!/bin/sh
# sshd ROOT NAME: a host for one connection.
# shellcheck disable=SC2016
exec unshare --mount --uts --ipc --net --pid --fork --kill-child --propagation private sh -euc '
    mount -t proc proc "$1/proc"
    mount --rbind /dev "$1/dev"
    hostname "$2"
    exec chroot "$1" /usr/sbin/sshd -i -o UsePAM=no -o AuthorizedKeysFile=/etc/ssh/known_users
' sh "$@"
END
chmod +x "$work/sshd"
for host in alpha beta; do
    chroot "$work/$host" sh -c 'rm -f /etc/ssh/ssh_host_*; ssh-keygen -A >/dev/null'
    cat <<END
Host $host
    User root
    IdentityFile $work/key
    IdentitiesOnly yes
    BatchMode yes
    StrictHostKeyChecking accept-new
    UserKnownHostsFile $work/known_hosts
    ProxyCommand $work/sshd $work/$host $host
    LogLevel ERROR
END
done >"$work/config"

export HOSTS=alpha,beta PARALLEL_SSH="ssh -F $work/config"
for host in alpha beta; do
    if [ "$(ssh -F "$work/config" "$host" hostname)" = "$host" ]; then
        passed
    else
        failed
    fi
done
if PARALLEL="--joblog $work/jobs" tests/package/many_hosts_test.sh \
        "$PWD/build/packages/bin/kxdu" "$PWD/examples/many_hosts.sh"; then
    passed
else
    failed
fi
# Each host had a share of the last run.
if [ "$(awk 'NR > 1 { print $2 }' "$work/jobs" | sort -u | xargs)" = "alpha beta" ]; then
    passed
else
    cat "$work/jobs"
    failed
fi
finish
