#!/bin/sh
# The command-line tool as scripts use it: output, exit codes 0/1/2 and
# one-line errors, against the test build's private SQLite data source.
set -u
kodbc=$1
export ODBCSYSINI=$2 ODBCINI=$2/odbc.ini LANG=C.UTF-8
export KODBC_REGISTRY_DIR=$(mktemp -d /tmp/kodbc-cli-registry.XXXXXX)
out=$(mktemp /tmp/kodbc-cli.XXXXXX)
trap 'rm -rf "$out" "$out.err" "$out.txt" "$KODBC_REGISTRY_DIR"' EXIT
failures=0
checks=0

expect() { # description, expected exit code, grep pattern for stdout or '', command...
  what=$1 code=$2 pattern=$3
  checks=$((checks + 1))
  shift 3
  "$@" >"$out" 2>"$out.err" </dev/null
  got=$?
  if [ "$got" -ne "$code" ] || { [ -n "$pattern" ] && ! grep -q -- "$pattern" "$out"; }; then
    echo "FAIL: $what (exit $got, expected $code; pattern '$pattern')"
    sed 's/^/  out: /' "$out"; sed 's/^/  err: /' "$out.err"
    failures=$((failures + 1))
  fi
}

expect "usage error"            2 ""              "$kodbc" no-such-command
expect "info"                   0 "DBMS: *SQLite" "$kodbc" info kodbc_sqlite
expect "unknown data source"    1 ""              "$kodbc" info kodbc_cli_missing
checks=$((checks + 1))
grep -q "IM002" "$out.err" || { echo "FAIL: the driver manager's diagnostics are not on stderr"; failures=$((failures + 1)); }
expect "create"                 0 ""              "$kodbc" sql kodbc_sqlite "CREATE TABLE cli_t (id INTEGER, name VARCHAR(20))"
expect "insert"                 0 ""              "$kodbc" sql kodbc_sqlite "INSERT INTO cli_t VALUES (1, 'Größe')"
expect "select to stdout"       0 "1	Größe"      "$kodbc" sql kodbc_sqlite "SELECT id, name FROM cli_t"
expect "tables"                 0 "^cli_t$"       "$kodbc" tables kodbc_sqlite
expect "columns"                0 "^name "        "$kodbc" columns kodbc_sqlite cli_t
expect "count"                  0 "^1$"           "$kodbc" count kodbc_sqlite cli_t
expect "select to file"         0 ""              "$kodbc" select kodbc_sqlite "SELECT id, name FROM cli_t" -f "$out.txt" --header --quote --field-separator ";"
checks=$((checks + 1))
[ "$(cat "$out.txt")" = "$(printf "id;name\n1;'Größe'")" ] || { echo "FAIL: result file: $(cat "$out.txt")"; failures=$((failures + 1)); }
expect "full disk"              1 ""              "$kodbc" select kodbc_sqlite "SELECT id FROM cli_t" -f /dev/full
expect "quote"                  0 '^"Mein Feld"$' "$kodbc" quote kodbc_sqlite "Mein Feld"
expect "format"                 0 'SELECT "a b" FROM cli_t' "$kodbc" format kodbc_sqlite "SELECT %f FROM %t" "a b" cli_t
expect "systable set"           0 ""              "$kodbc" systable set kodbc_sqlite Maske FORM Titel "Kunden 'A'"
expect "systable get"           0 "^Kunden 'A'$"  "$kodbc" systable get kodbc_sqlite Maske FORM Titel
expect "bad SQL"                1 ""              "$kodbc" sql kodbc_sqlite "SELEKT 1"
expect "drop refused without a terminal" 1 ""     "$kodbc" drop kodbc_sqlite cli_t
expect "table still there"      0 "^cli_t$"       "$kodbc" tables kodbc_sqlite
expect "drop with --yes"        0 ""              "$kodbc" drop kodbc_sqlite cli_t --yes
expect "drop of a missing table" 1 ""             "$kodbc" drop kodbc_sqlite cli_t --yes

"$kodbc" sql kodbc_sqlite "DROP TABLE KorvelSysTable" >/dev/null 2>&1
echo "$((checks - failures)) passed, $failures failed"
[ "$failures" -eq 0 ]
