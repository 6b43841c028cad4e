#!/bin/sh
# Without a handler a failed statement reaches stderr with every field of
# the diagnostics dialog, the driver's own text included.
#   default_messages.sh PROBE ODBC_DIR
set -u
export ODBCSYSINI=$2 ODBCINI=$2/odbc.ini LANG=C.UTF-8
export KODBC_REGISTRY_DIR=$(mktemp -d /tmp/kodbc-messages.XXXXXX)
err=$KODBC_REGISTRY_DIR/stderr
trap 'rm -rf "$KODBC_REGISTRY_DIR"' EXIT
"$1" kodbc_sqlite 2>"$err" || { echo "FAIL: probe exited $?"; cat "$err"; exit 1; }
failures=0
for pattern in '^Fehler beim ODBC-Datenbankzugriff: .*syntax error' '^  Fehlercode: *[0-9A-Z]\{5\}$' \
               '^  Hersteller: *SQLite$' '^  Komponente: .*near "SELEC": syntax error' '^  Datenquelle:' \
               '^  Fehlerbeschreibung:' '^  SQL-Befehl: *SELEC x FROM nowhere$'; do
    grep -q -- "$pattern" "$err" || { echo "FAIL: no line matches '$pattern'"; failures=$((failures + 1)); }
done
[ "$failures" -eq 0 ] || sed 's/^/  stderr: /' "$err"
[ "$failures" -eq 0 ]
