#!/usr/bin/env bash
# Result set to a delimited file: the library (through `kodbc select` and
# the export wizard's `kodbc export`) next to the driver manager's own query
# tool (`isql -b -d,`) and the database's bulk export (`sqlite3 -csv`, and
# `psql \copy` when a PostgreSQL data source is given), on the same query
# and rows, in one run. Then the way back: the first IMPORT_ROWS lines of
# the exported file imported by `kodbc import` (in batches, its default, and
# --per-record) next to the database's bulk load (`sqlite3 .import`,
# `psql \copy ... FROM`, `LOAD DATA LOCAL INFILE`), with peak memory, once
# with the database's default durability and once with the disk wait off;
# and kodbc_bench_import's raw ODBC loop against the library, per record and
# in the same batches, on the same data source in the same run.
#
#   bench/rowset_tools.sh BUILD_DIR [ROWS [IMPORT_ROWS]]
#                                   (default ROWS 1000000, IMPORT_ROWS 100000)
#
# With ODBCINI/ODBCSYSINI from `scripts/servers.sh start DIR` in the
# environment, KODBC_BENCH_PG=kodbc_pg measures PostgreSQL as well and
# KODBC_BENCH_MARIA=kodbc_maria MariaDB (export against `mariadb -B`).
# KODBC_BENCH_IMPORT_MODES=batch and KODBC_BENCH_RAW_MODES=batch leave out
# the per-record runs, which at a million lines take many minutes each.
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

# The CLI import both ways against the bulk load's "seconds peak-KiB"
# (given), under a label for the durability; the table dropped by drop_cmd
# before each run, counted by count_cmd after.
import_modes() { # dsn label bulk drop_cmd count_cmd
  local dsn=$1 label=$2 bulk=$3 drop_cmd=$4 count_cmd=$5 mode t
  for mode in ${KODBC_BENCH_IMPORT_MODES:-batch per-record}; do
    eval "$drop_cmd" >/dev/null 2>&1 || true
    t=$(measure "$kodbc" import "$dsn" "$work/import.txt" --table imp_lib --delimiter , --decimal-mark point \
      $([[ $mode == per-record ]] && echo --per-record))
    report_import "kodbc import $mode ($label)" "$t"
    printf '  ratio to the bulk load %.3f\n' "$(echo "${bulk% *} / ${t% *}" | bc -l)"
    [[ $(eval "$count_cmd") -eq $import_rows ]] || { echo "import is short" >&2; exit 1; }
  done
}

# The raw ODBC loop against the library on the same data source, per
# record and in the same batches (6 columns of kodbc_bench_import's file);
# with the default durability in batches only, as record by record the disk
# alone would be measured, twice, for minutes.
raw_loops() { # dsn label [modes]
  echo "-- raw ODBC loop and library, $import_rows lines ($2):"
  KODBC_BENCH_DSN=$1 KODBC_BENCH_RUNS=1 KODBC_BENCH_MODES=${3:-${KODBC_BENCH_RAW_MODES:-}} "$build/bench/kodbc_bench_import" "$import_rows" |
    sed 's/^/  /'
}

# The import file's records (after its header; commas inside no value) as
# INSERTs of 500 records each in one transaction: numbers bare, texts
# quoted, empty values NULL, as the library's batches carry them.
psql_batches() { # import-file
  awk -F, 'BEGIN { print "BEGIN;" }
    NR == 1 { next }
    {
      row = "("
      for (i = 1; i <= NF; i++) {
        v = $i
        if (v == "") v = "NULL"
        else if (v !~ /^-?[0-9]+(\.[0-9]+)?$/) { gsub(/\047/, "\047\047", v); v = "\047" v "\047" }
        row = row (i > 1 ? "," : "") v
      }
      stmt = stmt (n++ ? "," : "INSERT INTO imp_lib VALUES ") row ")"
      if (n == 500) { print stmt ";"; stmt = ""; n = 0 }
    }
    END { if (n) print stmt ";"; print "COMMIT;" }' "$1"
}

saved_sysini=${ODBCSYSINI:-} saved_ini=${ODBCINI:-}

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
printf '[bench_sqlite_sync]\nDriver=SQLite3\nDatabase=%s\nStepAPI=1\n' "$sqlite_db" >>"$work/odbc/odbc.ini"

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
native_import=$(measure sqlite3 "$sqlite_db" ".import --csv --skip 1 $work/import.txt imp_native")
report_import "sqlite3 .import --csv" "$native_import"
export ODBCSYSINI=$work/odbc ODBCINI=$work/odbc/odbc.ini
# KODBC_BENCH_SQLITE_SYNC_MODES=batch leaves out the slowest run of all (one
# disk wait per record).
KODBC_BENCH_IMPORT_MODES=${KODBC_BENCH_SQLITE_SYNC_MODES:-} import_modes bench_sqlite_sync "default durability" "$native_import" \
  "sqlite3 '$sqlite_db' 'DROP TABLE IF EXISTS imp_lib'" "sqlite3 '$sqlite_db' 'SELECT COUNT(*) FROM imp_lib'"
import_modes bench_sqlite "SyncPragma=OFF" "$native_import" \
  "sqlite3 '$sqlite_db' 'DROP TABLE IF EXISTS imp_lib'" "sqlite3 '$sqlite_db' 'SELECT COUNT(*) FROM imp_lib'"
raw_loops bench_sqlite_sync "default durability" batch
raw_loops bench_sqlite "SyncPragma=OFF"
unset ODBCSYSINI ODBCINI
export ODBCSYSINI=$saved_sysini ODBCINI=$saved_ini

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
  native_import=$(measure psql -q -c "\\copy imp_native FROM '$work/import.txt' CSV HEADER")
  report_import "psql \\copy ... FROM" "$native_import"
  import_modes "$KODBC_BENCH_PG" "default durability" "$native_import" "psql -q -c 'DROP TABLE IF EXISTS imp_lib'" \
    "psql -Atq -c 'SELECT COUNT(*) FROM imp_lib'"
  raw_loops "$KODBC_BENCH_PG" "default durability" batch
  # The server's own cost for multi-row INSERTs: the same lines as 500-row
  # statements in one transaction, sent by psql without any driver between.
  # Where this stays far below \copy, no client of INSERT statements can
  # come closer.
  psql_batches "$work/import.txt" >"$work/batches.sql"
  psql -q -c 'DROP TABLE IF EXISTS imp_lib' -c "${create/bench_rows/imp_lib}"
  t=$(measure psql -q -v ON_ERROR_STOP=1 -f "$work/batches.sql")
  report_import "psql -f, 500-row INSERTs" "$t"
  printf '  ratio to the bulk load %.3f\n' "$(echo "${native_import% *} / ${t% *}" | bc -l)"
  [[ $(psql -Atq -c 'SELECT COUNT(*) FROM imp_lib') -eq $import_rows ]] || { echo "psql -f is short" >&2; exit 1; }
  # As SyncPragma=OFF on SQLite: a commit does not wait for the disk.
  psql -q -c "ALTER DATABASE $PGDATABASE SET synchronous_commit = off"
  import_modes "$KODBC_BENCH_PG" "synchronous_commit=off" "$native_import" "psql -q -c 'DROP TABLE IF EXISTS imp_lib'" \
    "psql -Atq -c 'SELECT COUNT(*) FROM imp_lib'"
  raw_loops "$KODBC_BENCH_PG" "synchronous_commit=off"
  psql -q -c "ALTER DATABASE $PGDATABASE RESET synchronous_commit"
  psql -q -c 'DROP TABLE bench_rows' -c 'DROP TABLE imp_lib' -c 'DROP TABLE imp_native'
fi

# --- MariaDB, when the test servers' data source is given.
if [[ -n ${KODBC_BENCH_MARIA:-} ]]; then
  ini=${ODBCINI:?ODBCINI must point at the odbc.ini of the test servers}
  mget() { awk -F= -v s="[$KODBC_BENCH_MARIA]" -v k="$1" '$0==s{f=1;next} /^\[/{f=0} f&&$1==k{print $2}' "$ini"; }
  maria() { mariadb --no-defaults -h "$(mget Server)" -P "$(mget Port)" -u "$(mget User)" -p"$(mget Password)" \
    --local-infile=1 "$(mget Database)" "$@"; }
  # The server's own account, for the durability setting (the test servers' script starts it so).
  maria_root() { mariadb --no-defaults --protocol=socket --socket="$(dirname "$ini")/maria/mariadbd.sock" -uroot "$@"; }
  maria -e "DROP TABLE IF EXISTS bench_rows; ${create/DOUBLE PRECISION/DOUBLE}; INSERT INTO bench_rows
    SELECT seq, CONCAT('C', LPAD(seq, 7, '0')), CONCAT('Name ', seq), seq % 1000, seq * 0.25,
      TIMESTAMP '2024-01-01 00:00:00' + INTERVAL (seq % 100000) SECOND, CONCAT('Bemerkung zu Zeile ', seq), seq % 2
    FROM seq_1_to_$rows"
  echo "== MariaDB, $rows rows x 8 columns"
  native=$(seconds sh -c "mariadb --no-defaults -h '$(mget Server)' -P '$(mget Port)' -u '$(mget User)' \
    -p'$(mget Password)' -B -e '$query' '$(mget Database)' > '$work/maria.tsv'")
  report "mariadb -B" "$native"
  export_s=$(seconds "$kodbc" export "$KODBC_BENCH_MARIA" bench_rows -f "$work/export_maria.txt" --delimiter , \
    --decimal-mark point)
  report "kodbc export (library)" "$export_s"
  printf 'ratio: export/mariadb -B %.2f of its speed\n' "$(echo "$native / $export_s" | bc -l)"
  [[ $(wc -l <"$work/export_maria.txt") -eq $((rows + 1)) ]] || { echo "exported file is short" >&2; exit 1; }

  echo "== MariaDB import, $import_rows lines x 8 columns"
  import_input "$work/export_maria.txt"
  maria -e "DROP TABLE IF EXISTS imp_lib; DROP TABLE IF EXISTS imp_native; $(echo "${create/bench_rows/imp_native}" | sed 's/DOUBLE PRECISION/DOUBLE/')"
  native_import=$(measure mariadb --no-defaults -h "$(mget Server)" -P "$(mget Port)" -u "$(mget User)" \
    -p"$(mget Password)" --local-infile=1 "$(mget Database)" -e "LOAD DATA LOCAL INFILE '$work/import.txt' INTO TABLE imp_native
    FIELDS TERMINATED BY ',' IGNORE 1 LINES")
  report_import "LOAD DATA LOCAL INFILE" "$native_import"
  [[ $(maria -N -e 'SELECT COUNT(*) FROM imp_native') -eq $import_rows ]] || { echo "LOAD DATA is short" >&2; exit 1; }
  import_modes "$KODBC_BENCH_MARIA" "default durability" "$native_import" "maria -e 'DROP TABLE IF EXISTS imp_lib'" \
    "maria -N -e 'SELECT COUNT(*) FROM imp_lib'"
  raw_loops "$KODBC_BENCH_MARIA" "default durability" batch
  if maria_root -e 'SET GLOBAL innodb_flush_log_at_trx_commit = 2' 2>/dev/null; then
    import_modes "$KODBC_BENCH_MARIA" "flush_log_at_trx_commit=2" "$native_import" \
      "maria -e 'DROP TABLE IF EXISTS imp_lib'" "maria -N -e 'SELECT COUNT(*) FROM imp_lib'"
    raw_loops "$KODBC_BENCH_MARIA" "flush_log_at_trx_commit=2"
    maria_root -e 'SET GLOBAL innodb_flush_log_at_trx_commit = 1'
  else
    echo "(the disk wait cannot be switched off without the server's own account)"
  fi
  maria -e 'DROP TABLE bench_rows; DROP TABLE imp_lib; DROP TABLE imp_native'
fi
