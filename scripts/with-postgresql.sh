#!/usr/bin/env bash
# Starts PostgreSQL clusters that know the extension kx_fdn as it was built, runs a command beside them, and takes all
# of it away again. Nothing is installed: the clusters run from a copy of the server's tree in a temporary folder, and
# listen on Unix sockets there. The command finds the first cluster by PGHOST and PGPORT; the next ones have the next
# ports. `pg_ctlcluster 15 NAME start|stop` starts and stops one, as Debian's does.
#   scripts/with-postgresql.sh BUILD_FOLDER CLUSTER... -- COMMAND...
#   scripts/with-postgresql.sh build/release main -- psql
set -euo pipefail

build=$(realpath "$1")
shift
clusters=()
while [ "$1" != -- ]; do
    clusters+=("$1")
    shift
done
shift

# PostgreSQL does not run as root.
as_server=()
if [ "$(id -u)" -eq 0 ]; then
    as_server=(runuser -u nobody --)
fi

folder=$(mktemp -d)
chmod 755 "$folder"
mkdir -p "$folder"/{bin,data,log,sockets,tree,work}
cleanup() {
    local cluster
    for cluster in "$folder"/data/*/postmaster.pid; do
        [ ! -e "$cluster" ] || "$folder/bin/pg_ctlcluster" 15 "$(basename "$(dirname "$cluster")")" stop || true
    done
    rm -rf "$folder"
}
trap cleanup EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# The server finds its parts by their places relative to its program, so the copy keeps those places. Only programs
# must be copies; the rest are links.
pg_config=$(sed -n 's/^KX_PG_CONFIG:[A-Z]*=//p' "$build/CMakeCache.txt")
programs=$("$pg_config" --bindir)
modules=$("$pg_config" --pkglibdir)
shared=$("$pg_config" --sharedir)
tree=$folder/tree
mkdir -p "$tree$programs" "$tree$modules" "$tree$(dirname "$shared")"
cp "$programs"/{initdb,pg_ctl,postgres} "$tree$programs"
ln -s "$modules"/* "$tree$modules"
cp -rs "$shared" "$tree$shared"

root=$shared  # what server and extension have in common
while [[ $modules != "$root"/* ]]; do
    root=$(dirname "$root")
done
rm -f "$tree$modules/kx_fdn.so" "$tree$shared/extension/kx_fdn"*  # an installed one
cmake --install "$build" --component postgresql --prefix "$tree$root" >"$folder/log/install"
mkdir "$tree/lib"
cp -a "$build"/lib/libkx_*.so* "$tree/lib"

cat >"$folder/bin/pg_ctlcluster" <<END
#!/usr/bin/env bash
# pg_ctlcluster VERSION NAME start|stop
cd "$folder/work"
exec ${as_server[*]} env LD_LIBRARY_PATH="$tree/lib" PGHOST="$folder/sockets" \\
    "$tree$programs/pg_ctl" -D "$folder/data/\$2" -l "$folder/data/\$2.log" -m fast -w -s "\$3"
END
chmod +x "$folder/bin/pg_ctlcluster"

if [ ${#as_server[@]} -gt 0 ]; then
    chown nobody "$folder"/{data,sockets,work}
fi
cd "$folder/work"
"${as_server[@]}" "$tree$programs/initdb" -D "$folder/data/.first" -U postgres --auth=trust --no-sync --encoding=UTF8 \
    --locale=C >"$folder/log/initdb" 2>&1 || { cat "$folder/log/initdb" >&2; exit 1; }
port=5432
for cluster in "${clusters[@]}"; do
    cp -a "$folder/data/.first" "$folder/data/$cluster"
    cat >>"$folder/data/$cluster/postgresql.conf" <<END
port = $port
listen_addresses = ''
unix_socket_directories = '$folder/sockets'
fsync = off
autovacuum = off  # so that plans do not change by themselves
END
    "$folder/bin/pg_ctlcluster" 15 "$cluster" start || { cat "$folder/data/$cluster.log" >&2; exit 1; }
    port=$((port + 1))
done

export PATH=$folder/bin:$programs:$PATH PGHOST=$folder/sockets PGPORT=5432 PGUSER=postgres
export PSQLRC=/dev/null
unset PGDATABASE PGOPTIONS PGSERVICE
cd "$OLDPWD"
"$@"
