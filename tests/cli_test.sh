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
expect "version: the library's" 0 "^kodbc [0-9]*\.[0-9]*\.[0-9]*\.[0-9]*$" "$kodbc" --version
# The help in German: none of CLI11's own English words, in no command's help.
checks=$((checks + 1))
for command in "" $("$kodbc" --help | sed -n '/^Befehle:/,$s/^  \([a-z-]*\) .*/\1/p') "selmask read" "alter x y add-pk"; do
  "$kodbc" $command --help 2>&1
done | grep -E "Usage|Options|Positionals|REQUIRED|Print this help|Subcommands|OPTIONS|SUBCOMMAND" >"$out" &&
  { echo "FAIL: English in the help: $(sort -u "$out" | head -5)"; failures=$((failures + 1)); }
# The parser's complaints in German too, with the names and values they are about.
for call in "" "tables" "tables a b c" "import d f --delimiter" "view d v bogus" "select d q -f x --expected-rows abc" \
  "-p a --password-file b info d"; do
  expect "usage error in German: kodbc $call" 2 "" "$kodbc" $call
  checks=$((checks + 1))
  if grep -E "required|not expected|Run with|Could not|excludes| not in " "$out.err" >/dev/null ||
    ! grep -q "^kodbc: " "$out.err"; then
    echo "FAIL: kodbc $call: $(cat "$out.err")"; failures=$((failures + 1))
  fi
done
expect "password: not both ways" 2 ""             "$kodbc" -p x --password-file /dev/null info kodbc_sqlite
expect "password file missing"  2 ""              "$kodbc" --password-file /nonexistent/pw info kodbc_sqlite
expect "info"                   0 "^Datenbank-System: *SQLite$" "$kodbc" info kodbc_sqlite
expect "info: delimiter line"   0 '^Delimiter für Namen:  Delimiter: "  (Dezimal 34   Hex 22)$' "$kodbc" info kodbc_sqlite
expect "unknown data source"    1 ""              "$kodbc" info kodbc_cli_missing
checks=$((checks + 1))
grep -q "IM002" "$out.err" || { echo "FAIL: the driver manager's diagnostics are not on stderr"; failures=$((failures + 1)); }
expect "create"                 0 ""              "$kodbc" sql kodbc_sqlite "CREATE TABLE cli_t (id INTEGER NOT NULL, name VARCHAR(20), \"Straße\" CHAR(4))"
expect "insert"                 0 ""              "$kodbc" sql kodbc_sqlite "INSERT INTO cli_t (id, name) VALUES (1, 'Größe')"
expect "select to stdout"       0 "1	Größe"      "$kodbc" sql kodbc_sqlite "SELECT id, name FROM cli_t"
expect "tables"                 0 "^cli_t$"       "$kodbc" tables kodbc_sqlite
expect "columns: type and length" 0 "^name    VarText (20)  *Ja" "$kodbc" columns kodbc_sqlite cli_t
expect "columns: padded by characters" 0 "^id      Ganzzahl.*  Nein" "$kodbc" columns kodbc_sqlite cli_t
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

# delete and update with descriptor files
printf 'ort\tBW\tB\t12\n' >"$out.where"
printf 'ort\tSCO\tHamburg\t12\n' >"$out.set"
expect "create for delete"      0 ""              "$kodbc" sql kodbc_sqlite "CREATE TABLE cli_d (nr INTEGER, ort VARCHAR(20))"
expect "insert for delete"      0 ""              "$kodbc" sql kodbc_sqlite "INSERT INTO cli_d VALUES (1, 'Berlin'), (2, 'Bonn'), (3, 'Essen')"
expect "delete refused without a terminal" 1 "insgesamt  2  " "$kodbc" delete kodbc_sqlite cli_d --where-file "$out.where"
expect "delete with --yes"      0 ""              "$kodbc" delete kodbc_sqlite cli_d --where-file "$out.where" --yes
expect "one record left"        0 "^1$"           "$kodbc" count kodbc_sqlite cli_d
expect "update prints the count" 0 "^1$"          "$kodbc" update kodbc_sqlite cli_d --set-file "$out.set"
expect "updated"                0 "^3	Hamburg$"  "$kodbc" sql kodbc_sqlite "SELECT nr, ort FROM cli_d"
expect "update matching nothing" 1 ""             "$kodbc" update kodbc_sqlite cli_d --set-file "$out.set" --where-file "$out.where"
expect "update without SET file" 2 ""             "$kodbc" update kodbc_sqlite cli_d
x=$(printf '%0180d' 0)
printf 'ort\tCT\t%s\t12\nort\tCT\t%s\t12\nort\tCT\t%s\t12\n' "$x" "$x" "$x" >"$out.long"
expect "delete refuses a condition too long for its statement" 1 "" "$kodbc" delete kodbc_sqlite cli_d --where-file "$out.long" --yes
expect "nothing deleted"        0 "^1$"           "$kodbc" count kodbc_sqlite cli_d
expect "delete all"             0 ""              "$kodbc" delete kodbc_sqlite cli_d --yes
expect "no record left"         0 "^0$"           "$kodbc" count kodbc_sqlite cli_d
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_d" >/dev/null 2>&1
rm -f "$out.where" "$out.set" "$out.long"

# add records from another table
"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_ar_src (id INTEGER, name VARCHAR(20), tag DATE)" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "INSERT INTO cli_ar_src VALUES (1, 'O''Neil', '2024-03-01'), (2, 'Meier', NULL)" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_ar_dst (id INTEGER, name VARCHAR(20), note VARCHAR(20), n INTEGER)" >/dev/null 2>&1
expect "add-records"            0 "^2 Datensätze gelesen, 2 geschrieben$" "$kodbc" add-records kodbc_sqlite cli_ar_dst --from kodbc_sqlite:cli_ar_src --value note=fest
expect "added records"          0 "^1	O'Neil	fest$" "$kodbc" sql kodbc_sqlite "SELECT id, name, note FROM cli_ar_dst ORDER BY id"
expect "add-records replacing"  0 "2 geschrieben" "$kodbc" add-records kodbc_sqlite cli_ar_dst --from kodbc_sqlite:cli_ar_src --replace-on id=id --map note=tag --empty name
expect "replaced (an empty field is left as it was)" 0 "^1	O'Neil	01.03.2024$" "$kodbc" sql kodbc_sqlite "SELECT id, name, note FROM cli_ar_dst ORDER BY id"
expect "replaced, not added"    0 "^2$"           "$kodbc" count kodbc_sqlite cli_ar_dst
expect "add-records: date into a number" 1 "" "$kodbc" add-records kodbc_sqlite cli_ar_dst --from kodbc_sqlite:cli_ar_src --map id=tag
checks=$((checks + 1))
grep -q "ergibt keinen Sinn" "$out.err" || { echo "FAIL: no type message on stderr"; failures=$((failures + 1)); }
expect "add-records: unknown field" 1 ""          "$kodbc" add-records kodbc_sqlite cli_ar_dst --from kodbc_sqlite:cli_ar_src --map nix=name
expect "add-records: bad --from" 2 ""             "$kodbc" add-records kodbc_sqlite cli_ar_dst --from cli_ar_src
"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_ar_num (id INTEGER, wert DOUBLE PRECISION)" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "INSERT INTO cli_ar_num VALUES (3, 1e20)" >/dev/null 2>&1
expect "add-records: a number into text" 0 "1 geschrieben" "$kodbc" add-records kodbc_sqlite cli_ar_dst --from kodbc_sqlite:cli_ar_num --map note=wert
checks=$((checks + 1))
grep -q "Hinweis: bei 1 Zahl(en) wurden Zeichen weggelassen, zuerst in Datensatz 1, Feld 'note'" "$out.err" ||
  { echo "FAIL: add-records does not tell the changed number"; sed 's/^/  err: /' "$out.err"; failures=$((failures + 1)); }
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_ar_num" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_ar_src" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_ar_dst" >/dev/null 2>&1

expect "create-table: proposed name" 0 "^Tabelle Neue_Tabelle angelegt$" "$kodbc" create-table kodbc_sqlite --kind address
expect "create-table: name taken" 1 ""             "$kodbc" create-table kodbc_sqlite Neue_Tabelle --kind address
expect "create-table: no auto-increment" 1 ""      "$kodbc" create-table kodbc_sqlite cli_ct --kind autoinc
expect "create-table: copy needs --from" 2 ""      "$kodbc" create-table kodbc_sqlite cli_ct --kind copy
expect "create-table: the address columns" 0 "^Plz  *VarText (20)" "$kodbc" columns kodbc_sqlite Neue_Tabelle
"$kodbc" sql kodbc_sqlite "DROP TABLE Neue_Tabelle" >/dev/null 2>&1

"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_alt (id INTEGER NOT NULL, a VARCHAR(5), b VARCHAR(5))" >/dev/null 2>&1
expect "alter: length missing"  1 ""               "$kodbc" alter kodbc_sqlite cli_alt add-column plz VarText
expect "alter: unknown type"    2 ""               "$kodbc" alter kodbc_sqlite cli_alt add-column plz Textur 5
expect "alter: add-column"      0 ""               "$kodbc" alter kodbc_sqlite cli_alt add-column plz varText 5
expect "alter: SQL type names"  0 ""               "$kodbc" alter kodbc_sqlite cli_alt add-column kurz Varchar 8
expect "alter: SQL type names"  0 ""               "$kodbc" alter kodbc_sqlite cli_alt add-column betrag double
expect "alter: VARCHAR is VarText" 0 "^kurz  *VarText (8)" "$kodbc" columns kodbc_sqlite cli_alt
expect "alter: DOUBLE is Gleitkommazahl" 0 "^betrag  *Gleitkommazahl" "$kodbc" columns kodbc_sqlite cli_alt
expect "alter: drop asks, no terminal says no" 1 "^0 Spalte" "$kodbc" alter kodbc_sqlite cli_alt drop-column a b
expect "alter: drop with --yes" 0 "^2 Spalte"      "$kodbc" --yes alter kodbc_sqlite cli_alt drop-column a b
expect "alter: what is left"    0 "^plz  *VarText (5)  *Nein" "$kodbc" columns kodbc_sqlite cli_alt
expect "alter: no auto-increment here" 1 ""        "$kodbc" alter kodbc_sqlite cli_alt add-autoinc nr
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_alt" >/dev/null 2>&1

"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_ex (nr INTEGER, preis REAL, name VARCHAR(20))" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "INSERT INTO cli_ex VALUES (1, 2.5, 'Größe'), (2, NULL, '')" >/dev/null 2>&1
expect "export: the wizard's defaults" 0 "^2 Datensätze exportiert$" "$kodbc" export kodbc_sqlite cli_ex -f "$out.txt"
checks=$((checks + 1))
[ "$(od -An -c "$out.txt" | tr -s ' ' | tr -d '\n')" = "$(printf 'nr\tpreis\tname\r\n1\t2,5\tGröße\r\n2\t\t\r\n' | od -An -c | tr -s ' ' | tr -d '\n')" ] ||
    { echo "FAIL: export file: $(od -c "$out.txt")"; failures=$((failures + 1)); }
expect "export: chosen fields, brackets" 0 "" "$kodbc" export kodbc_sqlite cli_ex -f "$out.txt" --field nr=Nummer --field name --brackets "<>" --delimiter ";" --no-header
checks=$((checks + 1))
[ "$(cat "$out.txt")" = "$(printf '<1>;<Größe>\r\n<2>;<>\r')" ] || { echo "FAIL: export with options: $(od -c "$out.txt")"; failures=$((failures + 1)); }
expect "export: unknown field"  1 ""               "$kodbc" export kodbc_sqlite cli_ex -f "$out.txt" --field nix
expect "export: full disk"      1 ""               "$kodbc" export kodbc_sqlite cli_ex -f /dev/full
expect "export: bad delimiter"  2 ""               "$kodbc" export kodbc_sqlite cli_ex -f "$out.txt" --delimiter 0123456789
"$kodbc" export kodbc_sqlite cli_ex -f "$out.txt" >/dev/null 2>&1
mkdir -p "$out.d" && cp "$out.txt" "$out.d/cli_imp.txt"
expect "import: an exported file with no options" 0 "^2 Datensätze importiert$" "$kodbc" import kodbc_sqlite "$out.d/cli_imp.txt" --type nr=integer --type preis=Gleitkommazahl
expect "import: the table is named after the file" 0 "^1	2.5	Größe$" "$kodbc" sql kodbc_sqlite "SELECT nr, preis, name FROM cli_imp ORDER BY nr"
expect "import: from a table, dry run" 0 "^INSERT INTO cli_im (nr,name) VALUES (1,'Größe')$" "$kodbc" import kodbc_sqlite --from kodbc_sqlite:cli_ex --table cli_im --skip preis --dry-run
expect "import: unknown field"  1 ""               "$kodbc" import kodbc_sqlite "$out.d/cli_imp.txt" --table cli_im --skip nix
expect "import: a text file is no SDI file" 1 ""  "$kodbc" import kodbc_sqlite "$out.d/cli_imp.txt" --kind sdi
printf 'SDI\r\nx\r\nx\r\nx\r\n2\r\nADR.NAME\r\nADR.PLZ FORMAT=NG5\r\n\r\nM\201ller\t12345\r\n' >"$out.d/cli_sdi.sdi"
expect "import: an SDI file, dry run" 0 "^INSERT INTO cli_sdi (NAME,PLZ) VALUES ('Müller',12345)$" "$kodbc" import kodbc_sqlite "$out.d/cli_sdi.sdi" --kind sdi --dry-run
printf 'Kopf\r\n1,1\r\n1,C,Ort,C20\r\n K\224ln \r\n' >"$out.d/cli_sel.sel"
expect "import: a SEL file, dry run" 0 "^INSERT INTO cli_sel (Ort) VALUES ('Köln')$" "$kodbc" import kodbc_sqlite "$out.d/cli_sel.sel" --kind sel --dry-run
expect "import: a selection file is no table" 2 "" "$kodbc" import kodbc_sqlite --from kodbc_sqlite:cli_ex --table cli_im --kind sel
printf 'n\tnotiz\r\n4.10\t%0120d\r\n5\tkurz\r\n' 0 >"$out.d/cli_notes.txt"
expect "import: the rules' losses told" 0 "^2 Datensätze importiert$" "$kodbc" import kodbc_sqlite "$out.d/cli_notes.txt" --type n=Ganzzahl
checks=$((checks + 1))
grep -q "Hinweis: 1 Wert(e) auf 99 Zeichen gekürzt" "$out.err" &&
  grep -q "Hinweis: bei 1 Zahl(en) wurden Zeichen weggelassen, zuerst in Zeile 2, Feld 'n': \"4.10\" wurde 410" "$out.err" ||
  { echo "FAIL: no summary of the import's losses"; sed 's/^/  err: /' "$out.err"; failures=$((failures + 1)); }
"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_lt (nr INTEGER, notiz TEXT)" >/dev/null 2>&1
expect "import: a LangText column left out" 0 "" "$kodbc" import kodbc_sqlite --from kodbc_sqlite:cli_lt --table cli_lt2
checks=$((checks + 1))
grep -q "Hinweis: Feld 'notiz' nicht importiert (LangText" "$out.err" ||
  { echo "FAIL: the LangText field is not named"; sed 's/^/  err: /' "$out.err"; failures=$((failures + 1)); }
printf 'a;;b\r\n1;2;3\r\n' >"$out.d/cli_leer.txt"
expect "import: a field without a name" 1 "" "$kodbc" import kodbc_sqlite "$out.d/cli_leer.txt" --delimiter ";"
checks=$((checks + 1))
grep -q "keinen Namen" "$out.err" || { echo "FAIL: no message for the empty name"; failures=$((failures + 1)); }
expect "import: no field imported" 1 "" "$kodbc" import kodbc_sqlite --from kodbc_sqlite:cli_ex --table cli_im --skip nr --skip preis --skip name
checks=$((checks + 1))
grep -q "kein Feld zum Importieren" "$out.err" || { echo "FAIL: no message for an empty field list"; failures=$((failures + 1)); }
expect "import: refused, nothing created" 0 "" "$kodbc" tables kodbc_sqlite
checks=$((checks + 1))
! grep -q -e "^cli_leer$" -e "^cli_im$" "$out" || { echo "FAIL: a refused import created its table"; failures=$((failures + 1)); }
for t in cli_notes cli_lt cli_lt2; do "$kodbc" sql kodbc_sqlite "DROP TABLE $t" >/dev/null 2>&1; done
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_imp" >/dev/null 2>&1
rm -rf "$out.d"
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_ex" >/dev/null 2>&1

printf 'KORVEL-SMSname\tEQ\tAnna\t12\n\v' > "$out.sms"
"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_sms (name VARCHAR(10))" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "INSERT INTO cli_sms VALUES ('Anna'), ('Bert')" >/dev/null 2>&1
expect "count with a selection mask" 0 "^1$"  "$kodbc" count kodbc_sqlite cli_sms --where-file "$out.sms"
"$kodbc" sql kodbc_sqlite "DROP TABLE cli_sms" >/dev/null 2>&1
expect "selmask read"           0 "^name	EQ	Anna	12$" "$kodbc" selmask read "$out.sms"
# Written from a descriptor file and printed back as that same file.
printf 'ort\tBW\tB\t12\n\vnr\tGT\t5\t4\n\v\v\v\n' >"$out.desc"
expect "selmask write"          0 ""              "$kodbc" selmask write "$out.sms" --descriptor-file "$out.desc"
checks=$((checks + 1))
printf 'KORVEL-SMSort\tBW\tB\t12\n\vnr\tGT\t5\t4\n\v\v\v' | cmp -s - "$out.sms" ||
    { echo "FAIL: the mask file is not the magic and the descriptor"; failures=$((failures + 1)); }
expect "selmask read back"      0 ""              "$kodbc" selmask read "$out.sms"
checks=$((checks + 1))
cmp -s "$out" "$out.desc" || { echo "FAIL: the mask does not read back as its descriptor file"; failures=$((failures + 1)); }
printf 'korvel-smsname\tEQ\tAnna\t12\n\v' >"$out.sms"
expect "selmask read: lower-case magic" 1 ""      "$kodbc" selmask read "$out.sms"
checks=$((checks + 1))
grep -q "keine Selektionsmaske" "$out.err" || { echo "FAIL: no message for a file without the magic"; failures=$((failures + 1)); }
rm -f "$out.sms" "$out.desc"

# Queries from the designer's descriptors, and stored views
printf 'cli_q\tq\t\t\t\t\ncli_o\to\tlj\tGT\tq.nr\to.nr\n' >"$out.tables"
printf 'q.nr\tNummer\no.ort\t\n' >"$out.columns"
printf 'q.nr\tdesc\nort\tasc\n' >"$out.sort"
printf 'o.ort\tBW\tB\t12\n' >"$out.where"
expect "query without a data source" 0 '^SELECT q.nr AS Nummer, o.ort FROM cli_q AS q LEFT JOIN cli_o AS o ON q.nr < o.nr ORDER BY q.nr desc, ort$' \
       "$kodbc" query --tables-file "$out.tables" --columns-file "$out.columns" --sort-file "$out.sort"
expect "query: --test needs a data source" 2 ""   "$kodbc" query --tables-file "$out.tables" --test
expect "query: all columns without a column file" 0 '^SELECT \* FROM cli_q AS q LEFT JOIN' "$kodbc" query --tables-file "$out.tables"
"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_q (nr INTEGER, ort VARCHAR(20))" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "CREATE TABLE cli_o (nr INTEGER, ort VARCHAR(20))" >/dev/null 2>&1
"$kodbc" sql kodbc_sqlite "INSERT INTO cli_q VALUES (1, 'Berlin'), (2, 'Essen')" >/dev/null 2>&1
expect "query with a selection, tested" 0 "^SELECT q.nr AS Nummer, o.ort FROM .* WHERE .*ort.* LIKE 'B%'" \
       "$kodbc" query kodbc_sqlite --tables-file "$out.tables" --columns-file "$out.columns" --where-file "$out.where" --view --test
expect "query: a failing test"  1 ""              "$kodbc" query kodbc_sqlite --tables-file "$out.columns" --test
expect "view create from SQL"   0 ""              "$kodbc" view create kodbc_sqlite cli_v --sql "SELECT nr FROM cli_q WHERE nr > 1"
expect "view: in the catalogue" 0 "^cli_v$"       "$kodbc" tables kodbc_sqlite
expect "view: its rows"         0 "^2$"           "$kodbc" sql kodbc_sqlite "SELECT * FROM cli_v"
expect "view show"              0 "^SELECT nr FROM cli_q WHERE nr > 1$" "$kodbc" view show kodbc_sqlite cli_v
expect "view show: columns default" 0 '^\*$'      "$kodbc" view show kodbc_sqlite cli_v
expect "view test: the stored SQL" 0 ""           "$kodbc" view test kodbc_sqlite cli_v
expect "view test: bad SQL"     1 ""              "$kodbc" view test kodbc_sqlite cli_v --sql "SELEKT nr FROM cli_q"
expect "view test: no such column" 1 ""          "$kodbc" view test kodbc_sqlite cli_v --sql "SELECT nosuch FROM cli_q"
expect "view create: name taken" 1 ""             "$kodbc" view create kodbc_sqlite cli_v --sql "SELECT nr FROM cli_q"
expect "view create: no SQL"    2 ""              "$kodbc" view create kodbc_sqlite cli_v2
expect "view create from the design" 0 ""         "$kodbc" view create kodbc_sqlite cli_v2 --tables-file "$out.tables" --columns-file "$out.columns"
expect "view show: the design kept" 0 "^cli_o	o	LJ	GT	q.nr	o.nr$" "$kodbc" view show kodbc_sqlite cli_v2
expect "view show: generated SQL" 0 "^SELECT q.nr AS Nummer, o.ort FROM cli_q AS q LEFT JOIN" "$kodbc" view show kodbc_sqlite cli_v2
"$kodbc" sql kodbc_sqlite "CREATE VIEW cli_v3 AS SELECT nr FROM cli_q" >/dev/null 2>&1
expect "view show: made elsewhere" 1 ""           "$kodbc" view show kodbc_sqlite cli_v3
checks=$((checks + 1))
grep -q "cli_v3" "$out.err" || { echo "FAIL: no message about a view the system table lacks"; failures=$((failures + 1)); }
for v in cli_v cli_v2; do expect "view drop $v" 0 "" "$kodbc" view drop kodbc_sqlite $v; done
expect "view drop: gone"        1 ""              "$kodbc" view drop kodbc_sqlite cli_v
expect "view drop: design gone" 1 ""              "$kodbc" view show kodbc_sqlite cli_v2
expect "view: not in the catalogue" 0 "^cli_q$"   "$kodbc" tables kodbc_sqlite
checks=$((checks + 1))
grep -q "^cli_v2\?$" "$out" && { echo "FAIL: dropped views still listed"; failures=$((failures + 1)); }
for t in "VIEW cli_v3" "TABLE cli_q" "TABLE cli_o"; do "$kodbc" sql kodbc_sqlite "DROP $t" >/dev/null 2>&1; done
rm -f "$out.tables" "$out.columns" "$out.sort" "$out.where"

# The demo's data source streams its results (a private copy of the configuration).
demo=$(mktemp -d /tmp/kodbc-cli-demo.XXXXXX)
cp "$2/odbc.ini" "$demo/odbc.ini"
expect "demo"                   0 "kodbc_demo"    env ODBCINI="$demo/odbc.ini" XDG_DATA_HOME="$demo" "$kodbc" demo
checks=$((checks + 1))
sed -n '/^\[kodbc_demo\]/,/^\[/p' "$demo/odbc.ini" | grep -q '^StepAPI *= *1' ||
    { echo "FAIL: the demo's data source does not stream its results"; sed 's/^/  ini: /' "$demo/odbc.ini"; failures=$((failures + 1)); }
rm -rf "$demo"

"$kodbc" sql kodbc_sqlite "DROP TABLE KorvelSysTable" >/dev/null 2>&1
echo "$((checks - failures)) passed, $failures failed"
[ "$failures" -eq 0 ]
