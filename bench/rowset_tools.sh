#!/usr/bin/env bash
# Result set to a delimited file: the library (through `kodbc select` and
# the export wizard's `kodbc export`) next to the driver manager's own query
# tool (`isql -b -d,`) and the database's bulk export (`sqlite3 -csv`, and
# `psql \copy` when a PostgreSQL data source is given), on the same query
# and rows, in one run. Then the way back: the first IMPORT_ROWS lines of
# the exported file imported by `kodbc import` next to the database's bulk
# load (`sqlite3 .import`, `psql \copy ... FROM`), with peak memory.
#
#   bench/rowset_tools.sh BUILD_DIR [ROWS [IMPORT_ROWS]]
#                                   (default ROWS 1000000, IMPORT_ROWS 100000)
#
# With ODBCINI/ODBCSYSINI from `scripts/servers.sh start DIR` in the
# environment and KODBC_BENCH_PG=kodbc_pg, PostgreSQL is measured as well.
set -euo pipefail

build=${1:?usage: rowset_tools.sh BUILD_DIR [ROWS]}
rows=${2:-1000000}
import_rows=${3:-100000}
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

report() { # name seconds [rows]
  printf '%-34s %8.2f s  %10.0f rows/s\n' "$1" "$2" "$(echo "${3:-$rows} / $2" | bc -l)"
}

# "seconds peak-KiB" of a command, its output discarded.
measure() {
  /usr/bin/time -f '%e %M' -o "$work/time.txt" "$@" >/dev/null 2>&1
  cat "$work/time.txt"
}

# The exported file's header and first IMPORT_ROWS records, as the import's input.
import_input() { # exported-file
  head -n $((import_rows + 1)) "$1" >"$work/import.txt"
}

report_import() { # name "seconds peak-KiB"
  local t=${2% *} kib=${2#* }
  printf '%-34s %8.2f s  %10.0f rows/s  peak %6.1f MB\n' "$1" "$t" "$(echo "$import_rows / $t" | bc -l)" \
    "$(echo "$kib / 1024" | bc -l)"
}

# --- SQLite: a private data source on a database filled by sqlite3 itself.
sqlite_db=$work/bench.sqlite
sqlite3 "$sqlite_db" <<SQL
$create;
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $rows)
INSERT INTO bench_rows SELECT i, printf('C%07d', i), 'Name ' || i, i % 1000, i * 0.25,
       datetime('2024-01-01', '+' || (i % 100000) || ' seconds'), 'Bemerkung zu Zeile ' || i, i % 2 FROM n;
SQL
# The import sends one INSERT per record in autocommit, as the wizard does;
# without SyncPragma=OFF every record would wait for the disk, and the
# figure would measure the disk.
driver=$(dpkg -L libsqliteodbc | grep 'libsqlite3odbc.so$' | head -n1)
mkdir -p "$work/odbc"
printf '[SQLite3]\nDriver=%s\n' "$driver" >"$work/odbc/odbcinst.ini"
printf '[bench_sqlite]\nDriver=SQLite3\nDatabase=%s\nStepAPI=1\nSyncPragma=OFF\n' "$sqlite_db" >"$work/odbc/odbc.ini"

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
export_s=$(ODBCSYSINI=$work/odbc ODBCINI=$work/odbc/odbc.ini seconds "$kodbc" export bench_sqlite bench_rows \
  -f "$work/export.txt" --delimiter , --decimal-mark point)
report "kodbc export (library)" "$export_s"
printf 'ratio: export/sqlite3 %.2f of its speed\n' "$(echo "$native / $export_s" | bc -l)"
[[ $(wc -l <"$work/export.txt") -eq $((rows + 1)) ]] || { echo "exported file is short" >&2; exit 1; }

echo "== SQLite import, $import_rows lines x 8 columns"
import_input "$work/export.txt"
lib_import=$(ODBCSYSINI=$work/odbc ODBCINI=$work/odbc/odbc.ini measure "$kodbc" import bench_sqlite "$work/import.txt" \
  --table imp_lib --delimiter , --decimal-mark point)
report_import "kodbc import (library)" "$lib_import"
native_import=$(measure sqlite3 "$sqlite_db" ".import --csv --skip 1 $work/import.txt imp_native")
report_import "sqlite3 .import --csv" "$native_import"
printf 'ratio: import/sqlite3 %.2f of its speed\n' "$(echo "${native_import% *} / ${lib_import% *}" | bc -l)"
[[ $(sqlite3 "$sqlite_db" 'SELECT COUNT(*) FROM imp_lib') -eq $import_rows ]] || { echo "import is short" >&2; exit 1; }

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
  export_s=$(seconds "$kodbc" export "$KODBC_BENCH_PG" bench_rows -f "$work/export_pg.txt" --delimiter , --decimal-mark point)
  report "kodbc export (library)" "$export_s"
  printf 'ratio: export/psql %.2f of its speed\n' "$(echo "$native / $export_s" | bc -l)"
  [[ $(wc -l <"$work/export_pg.txt") -eq $((rows + 1)) ]] || { echo "exported file is short" >&2; exit 1; }

  echo "== PostgreSQL import, $import_rows lines x 8 columns"
  import_input "$work/export_pg.txt"
  psql -q -c 'DROP TABLE IF EXISTS imp_lib' -c 'DROP TABLE IF EXISTS imp_native' -c "${create/bench_rows/imp_native}"
  # As SyncPragma=OFF on SQLite: a record's commit does not wait for the disk.
  psql -q -c "ALTER DATABASE $PGDATABASE SET synchronous_commit = off"
  lib_import=$(measure "$kodbc" import "$KODBC_BENCH_PG" "$work/import.txt" --table imp_lib --delimiter , --decimal-mark point)
  report_import "kodbc import (library)" "$lib_import"
  native_import=$(measure psql -q -c "\\copy imp_native FROM '$work/import.txt' CSV HEADER")
  report_import "psql \\copy ... FROM" "$native_import"
  printf 'ratio: import/psql %.2f of its speed\n' "$(echo "${native_import% *} / ${lib_import% *}" | bc -l)"
  [[ $(psql -Atq -c 'SELECT COUNT(*) FROM imp_lib') -eq $import_rows ]] || { echo "import is short" >&2; exit 1; }
  psql -q -c "ALTER DATABASE $PGDATABASE RESET synchronous_commit"
  psql -q -c 'DROP TABLE bench_rows' -c 'DROP TABLE imp_lib' -c 'DROP TABLE imp_native'
fi
