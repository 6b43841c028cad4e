#!/usr/bin/env bash
# Starts or stops the database servers of a test run, all inside DIR:
#
#   scripts/servers.sh start DIR   PostgreSQL and MariaDB on free loopback
#                                  ports, a SQLite file, and DIR/odbcinst.ini
#                                  + DIR/odbc.ini naming them; prints the
#                                  export lines that point ODBC at DIR.
#   scripts/servers.sh stop DIR    stops what start started.
#
# Data sources: kodbc_sqlite, kodbc_pg, kodbc_maria. Each carries server,
# port, database, user and password, so a connection with an empty user
# and password works. kodbc_broken is listed too but never connects (its
# database would lie in a folder that does not exist), for tests that need
# a choice that fails. The user's own ODBC configuration is never read or
# written. Starting twice reuses servers that still run.
set -euo pipefail

readonly DB=kodbc USER_NAME=kodbc PASSWORD='kodbc-test-pw'
readonly DSNS=kodbc_sqlite,kodbc_pg,kodbc_maria

usage() { echo "usage: $0 start|stop DIR" >&2; exit 2; }
log() { echo "servers: $*" >&2; }
die() { log "$*"; exit 1; }

(($# == 2)) || usage
action=$1
mkdir -p "$2"
dir=$(cd "$2" && pwd)

free_port() {
  python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}

driver_path() {  # package, library file name
  local path
  path=$(dpkg -L "$1" 2>/dev/null | grep "/$2\$" | head -n1) || true
  [[ -n $path ]] || die "$2 not found (package $1 installed?)"
  echo "$path"
}

# ---------------------------------------------------------------- PostgreSQL

pg_bin() {
  local bin
  bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n1)
  [[ -x $bin/pg_ctl ]] || die "PostgreSQL server binaries not found"
  echo "$bin"
}

# initdb and pg_ctl refuse to run as root, so the cluster belongs to the
# postgres account. It lives in DIR when that account can reach DIR, else
# in a folder of its own under /tmp that DIR/pg.root points to.
pg_root() {
  if [[ -f $dir/pg.root ]]; then
    cat "$dir/pg.root"
    return
  fi
  local root
  if ((!as_root)); then
    root=$dir/pg
    mkdir -p "$root"
  elif runuser -u postgres -- test -x "$dir" 2>/dev/null; then
    root=$dir/pg
    mkdir -p "$root"
  else
    root=$(mktemp -d /tmp/kodbc-pg.XXXXXX)
  fi
  ((!as_root)) || chown postgres: "$root"
  echo "$root" >"$dir/pg.root"
  echo "$root"
}

# Without root the servers simply run as the calling user.
as_root=$(( $(id -u) == 0 ))
as_postgres() { if ((as_root)); then runuser -u postgres -- "$@"; else "$@"; fi; }
root_user=()
((!as_root)) || root_user=(--user=root)

pg_running() {
  local root=$1
  [[ -f $root/data/postmaster.pid ]] && as_postgres "$(pg_bin)/pg_ctl" -D "$root/data" status >/dev/null 2>&1
}

start_postgres() {
  local bin root port
  bin=$(pg_bin)
  root=$(pg_root)
  if pg_running "$root"; then
    port=$(cat "$dir/pg.port")
    log "PostgreSQL already running on port $port"
    echo "$port"
    return
  fi
  port=$(free_port)
  echo "$port" >"$dir/pg.port"
  if [[ ! -f $root/data/PG_VERSION ]]; then
    # Loopback clients must give the password; the socket (only for the
    # set-up below) trusts the server's own account.
    as_postgres "$bin/initdb" -D "$root/data" -U postgres -E UTF8 --locale=C.UTF-8 \
      --auth-local=trust --auth-host=scram-sha-256 >"$root/initdb.log" 2>&1 ||
      { cat "$root/initdb.log" >&2; die "initdb failed"; }
  fi
  as_postgres "$bin/pg_ctl" -D "$root/data" -l "$root/server.log" -w -t 60 \
    -o "-p $port -k $root -c listen_addresses=127.0.0.1" start >/dev/null ||
    { tail -n 20 "$root/server.log" >&2; die "PostgreSQL did not start"; }
  local psql=("$bin/psql" -X -q -h "$root" -p "$port" -U postgres -v ON_ERROR_STOP=1)
  as_postgres "${psql[@]}" -d postgres >&2 <<SQL
DO \$\$ BEGIN
  IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = '$USER_NAME') THEN
    CREATE ROLE $USER_NAME LOGIN PASSWORD '$PASSWORD';
  END IF;
END \$\$;
SQL
  if [[ -z $(as_postgres "${psql[@]}" -d postgres -tAc "SELECT 1 FROM pg_database WHERE datname = '$DB'") ]]; then
    as_postgres "${psql[@]}" -d postgres -c "CREATE DATABASE $DB OWNER $USER_NAME ENCODING 'UTF8'" >&2
  fi
  log "PostgreSQL on 127.0.0.1:$port"
  echo "$port"
}

stop_postgres() {
  [[ -f $dir/pg.root ]] || return 0
  local root
  root=$(cat "$dir/pg.root")
  if pg_running "$root"; then
    as_postgres "$(pg_bin)/pg_ctl" -D "$root/data" -m fast -w stop >/dev/null && log "PostgreSQL stopped"
  fi
  # A cluster outside DIR is ours alone (made by pg_root): remove it.
  if [[ $root == /tmp/kodbc-pg.* ]]; then
    rm -rf "$root"
    rm -f "$dir/pg.root"
  fi
}

# ------------------------------------------------------------------- MariaDB

maria_pid() { [[ -f $dir/maria/mariadbd.pid ]] && cat "$dir/maria/mariadbd.pid"; }

maria_running() {
  local pid
  pid=$(maria_pid) || return 1
  kill -0 "$pid" 2>/dev/null
}

maria_sql() {
  mariadb --no-defaults --protocol=socket --socket="$dir/maria/mariadbd.sock" -uroot "$@"
}

start_mariadb() {
  local root=$dir/maria port
  if maria_running; then
    port=$(cat "$dir/maria.port")
    log "MariaDB already running on port $port"
    echo "$port"
    return
  fi
  mkdir -p "$root"
  port=$(free_port)
  echo "$port" >"$dir/maria.port"
  if [[ ! -d $root/data/mysql ]]; then
    mariadb-install-db --no-defaults "${root_user[@]}" --datadir="$root/data" \
      --auth-root-authentication-method=normal --skip-test-db >"$root/install.log" 2>&1 ||
      { cat "$root/install.log" >&2; die "mariadb-install-db failed"; }
  fi
  # setsid: the server must not die with the shell that started it, nor
  # take the caller's terminal signals.
  setsid mariadbd --no-defaults "${root_user[@]}" --datadir="$root/data" \
    --socket="$root/mariadbd.sock" --pid-file="$root/mariadbd.pid" \
    --port="$port" --bind-address=127.0.0.1 --log-error="$root/server.log" \
    --skip-log-bin --innodb-buffer-pool-size=32M --character-set-server=utf8mb4 \
    </dev/null >/dev/null 2>&1 &
  local waited=0
  until maria_sql -e 'SELECT 1' >/dev/null 2>&1; do
    sleep 0.5
    waited=$((waited + 1))
    if ((waited > 120)); then
      tail -n 20 "$root/server.log" >&2
      die "MariaDB did not start"
    fi
  done
  maria_sql >&2 <<SQL
CREATE DATABASE IF NOT EXISTS $DB CHARACTER SET utf8mb4;
CREATE USER IF NOT EXISTS '$USER_NAME'@'127.0.0.1' IDENTIFIED BY '$PASSWORD';
CREATE USER IF NOT EXISTS '$USER_NAME'@'localhost' IDENTIFIED BY '$PASSWORD';
GRANT ALL ON $DB.* TO '$USER_NAME'@'127.0.0.1';
GRANT ALL ON $DB.* TO '$USER_NAME'@'localhost';
SQL
  log "MariaDB on 127.0.0.1:$port"
  echo "$port"
}

stop_mariadb() {
  maria_running || return 0
  local pid
  pid=$(maria_pid)
  kill "$pid"
  for _ in $(seq 1 120); do
    kill -0 "$pid" 2>/dev/null || { log "MariaDB stopped"; return 0; }
    sleep 0.5
  done
  kill -9 "$pid" 2>/dev/null || true
  log "MariaDB killed"
}

# ---------------------------------------------------------------------- ODBC

write_odbc_ini() {
  local pg_port=$1 maria_port=$2
  # DontDLClose keeps drivers mapped until exit, so sanitizer reports can
  # still name their frames.
  cat >"$dir/odbcinst.ini" <<EOF
[SQLite3]
Driver=$(driver_path libsqliteodbc libsqlite3odbc.so)
Threading=2
DontDLClose=1

[PostgreSQL]
Driver=$(driver_path odbc-postgresql psqlodbca.so)
DontDLClose=1

[MariaDB]
Driver=$(driver_path odbc-mariadb libmaodbc.so)
DontDLClose=1
EOF
  cat >"$dir/odbc.ini" <<EOF
[kodbc_sqlite]
Driver=SQLite3
Database=$dir/kodbc.sqlite
StepAPI=1

[kodbc_pg]
Driver=PostgreSQL
Servername=127.0.0.1
Port=$pg_port
Database=$DB
Username=$USER_NAME
Password=$PASSWORD

[kodbc_maria]
Driver=MariaDB
Server=127.0.0.1
Port=$maria_port
Database=$DB
User=$USER_NAME
Password=$PASSWORD
Charset=utf8mb4

[kodbc_broken]
Driver=SQLite3
Database=$dir/no-such-folder/kodbc_broken.db
EOF
}

check_dsns() {
  local dsn
  for dsn in ${DSNS//,/ }; do
    echo 'SELECT 1' | ODBCSYSINI=$dir ODBCINI=$dir/odbc.ini isql -b "$dsn" >/dev/null ||
      die "data source $dsn does not answer (isql -b $dsn)"
  done
  log "data sources answer: $DSNS"
}

case $action in
start)
  pg_port=$(start_postgres)
  maria_port=$(start_mariadb)
  write_odbc_ini "$pg_port" "$maria_port"
  check_dsns
  echo "export ODBCSYSINI=$dir ODBCINI=$dir/odbc.ini KODBC_TEST_DSNS=$DSNS"
  ;;
stop)
  status=0
  stop_mariadb || status=1
  stop_postgres || status=1
  exit $status
  ;;
*)
  usage
  ;;
esac
