#!/usr/bin/env bash
# Result set to a delimited file: the library (through `kodbc select`) next
# to the driver manager's own query tool (`isql -b -d,`) and the database's
# bulk export (`sqlite3 -csv`, and `psql \copy` when a PostgreSQL data
# source is given), on the same query and rows, in one run.
#
#   bench/rowset_tools.sh BUILD_DIR [ROWS]      (default ROWS 1000000)
#
# With ODBCINI/ODBCSYSINI from `scripts/servers.sh start DIR` in the
# environment and KODBC_BENCH_PG=kodbc_pg, PostgreSQL is measured as well.
set -euo pipefail

build=${1:?usage: rowset_tools.sh BUILD_DIR [ROWS]}
rows=${2:-1000000}
kodbc=$build/apps/kodbc/kodbc
work=$(mktemp -d /tmp/kodbc-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

columns="id, code, name, qty, price, stamp, note, flag"
query="SELECT $columns FROM bench_rows"
create="CREATE TABLE bench_rows (id INTEGER, code CHAR(8), name VARCHAR(40), qty INTEGER, price DOUBLE PRECISION,
        stamp TIMESTAMP, note VARCHAR(100), flag SMALLINT)"

# Seconds taken by a command, its output discarded.
seconds() {
  local start end
  start=$(date +%s.%N)
  "$@" >/dev/null 2>&1
  end=$(date +%s.%N)
  echo "$end - $start" | bc -l
}

report() { # name seconds
  printf '%-34s %8.2f s  %10.0f rows/s\n' "$1" "$2" "$(echo "$rows / $2" | bc -l)"
}

# --- SQLite: a private data source on a database filled by sqlite3 itself.
sqlite_db=$work/bench.sqlite
sqlite3 "$sqlite_db" <<SQL
$create;
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $rows)
INSERT INTO bench_rows SELECT i, printf('C%07d', i), 'Name ' || i, i % 1000, i * 0.25,
       datetime('2024-01-01', '+' || (i % 100000) || ' seconds'), 'Bemerkung zu Zeile ' || i, i % 2 FROM n;
SQL
driver=$(dpkg -L libsqliteodbc | grep 'libsqlite3odbc.so$' | head -n1)
mkdir -p "$work/odbc"
printf '[SQLite3]\nDriver=%s\n' "$driver" >"$work/odbc/odbcinst.ini"
printf '[bench_sqlite]\nDriver=SQLite3\nDatabase=%s\nStepAPI=1\n' "$sqlite_db" >"$work/odbc/odbc.ini"

echo "== SQLite, $rows rows x 8 columns"
lib=$(ODBCSYSINI=$work/odbc ODBCINI=$work/odbc/odbc.ini seconds "$kodbc" select bench_sqlite "$query" -f "$work/lib.txt" --field-separator ,)
report "kodbc select (library)" "$lib"
isql_s=$(ODBCSYSINI=$work/odbc ODBCINI=$work/odbc/odbc.ini seconds sh -c "echo '$query' | isql -b -d, bench_sqlite > '$work/isql.txt'")
report "isql -b -d," "$isql_s"
native=$(seconds sqlite3 -csv "$sqlite_db" "$query" -cmd ".output $work/sqlite.csv")
report "sqlite3 -csv" "$native"
printf 'ratios: library/isql %.2fx faster, library/sqlite3 %.2f of its speed\n' \
  "$(echo "$isql_s / $lib" | bc -l)" "$(echo "$native / $lib" | bc -l)"
[[ $(wc -l <"$work/lib.txt") -ge $((rows - 1)) ]] || { echo "library file is short" >&2; exit 1; }

# --- PostgreSQL, when the test servers' data source is given.
if [[ -n ${KODBC_BENCH_PG:-} ]]; then
  ini=${ODBCINI:?ODBCINI must point at the odbc.ini of the test servers}
  get() { awk -F= -v s="[$KODBC_BENCH_PG]" -v k="$1" '$0==s{f=1;next} /^\[/{f=0} f&&$1==k{print $2}' "$ini"; }
  export PGHOST=$(get Servername) PGPORT=$(get Port) PGDATABASE=$(get Database) PGUSER=$(get Username) PGPASSWORD=$(get Password)
  psql -q -v ON_ERROR_STOP=1 <<SQL
DROP TABLE IF EXISTS bench_rows;
$create;
INSERT INTO bench_rows SELECT i, 'C' || lpad(i::text, 7, '0'), 'Name ' || i, i % 1000, i * 0.25,
       timestamp '2024-01-01' + (i % 100000) * interval '1 second', 'Bemerkung zu Zeile ' || i, (i % 2)::smallint
FROM generate_series(1, $rows) AS i;
SQL
  echo "== PostgreSQL, $rows rows x 8 columns"
  lib=$(seconds "$kodbc" select "$KODBC_BENCH_PG" "$query" -f "$work/lib_pg.txt" --field-separator ,)
  report "kodbc select (library)" "$lib"
  isql_s=$(seconds sh -c "echo '$query' | isql -b -d, '$KODBC_BENCH_PG' > '$work/isql_pg.txt'")
  report "isql -b -d," "$isql_s"
  native=$(seconds psql -q -c "\\copy ($query) TO '$work/pg.csv' CSV")
  report "psql \\copy ... TO" "$native"
  printf 'ratios: library/isql %.2fx faster, library/psql %.2f of its speed\n' \
    "$(echo "$isql_s / $lib" | bc -l)" "$(echo "$native / $lib" | bc -l)"
  psql -q -c 'DROP TABLE bench_rows'
fi
