#!/bin/sh
# The tool's Unix habits on every data source of the run (KODBC_TEST_DSNS,
# ODBCINI as the test command sets them). CSV and the NULL text: values
# that break a naive reader (delimiters, quotes, line breaks, outer
# blanks, 5000 characters, umlauts, NULL against the empty text) go out
# through a pipe, come back from standard input and go out again with the
# same bytes; Python's csv module reads the file (and what select --csv
# writes) as it was meant; the wizards' format keeps NULL and the empty
# text apart with --null too; sql --json and --csv give what Python's
# json and csv modules read. Passwords come from the environment, a file
# or the terminal's prompt where the data source checks them.
# Skipped (77) without data sources.
set -u
kodbc=$1
[ -n "${KODBC_TEST_DSNS:-}" ] && [ -n "${ODBCINI:-}" ] || { echo "no data sources given"; exit 77; }
work=$(mktemp -d /tmp/kodbc-unix.XXXXXX)
trap 'rm -rf "$work"' EXIT
export KODBC_REGISTRY_DIR=$work/registry LANG=C.UTF-8
mkdir -p "$KODBC_REGISTRY_DIR"
failures=0

fail() { echo "FAIL: $dsn: $1"; failures=$((failures + 1)); }

# Runs a command on a pseudo-terminal and types KEYS when it asks for a
# password; the terminal's output is printed, with a note when the echo
# was on while typing or is off at the end; the exit status returned.
on_terminal() { # KEYS command...
  python3 -c '
import os, pty, select, sys, termios, time
pid, fd = pty.fork()
if pid == 0:
    os.execvp(sys.argv[2], sys.argv[2:])
seen, typed, end = b"", 0, time.time() + 30
while time.time() < end:
    if not select.select([fd], [], [], 0.5)[0]: continue
    try: chunk = os.read(fd, 4096)
    except OSError: break
    if not chunk: break
    seen += chunk
    if seen.count(b"Kennwort f") > typed:
        time.sleep(0.2)
        if termios.tcgetattr(fd)[3] & termios.ECHO: seen += b"\n(echo on)\n"
        os.write(fd, sys.argv[1].encode()); typed += 1
status = os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1])
if not termios.tcgetattr(fd)[3] & termios.ECHO: seen += b"\n(echo left off)\n"
sys.stdout.write(seen.decode(errors="replace"))
sys.exit(status)' "$@"
}

# The texts of the note column, row by row (NULL for row 7); Python reads
# the same through the environment.
N1=$(printf 'a,b;c\td')
N2=$(printf 'Er sagte "hi" und %sbye%s' "'" "'")
N3=$(printf 'Zeile1\r\nZeile2\nZeile3')
N4='  außen blank  '
N5=$(printf '%4999s' '' | tr ' ' 'x')ä
N6='Größe Ä ö ü ß'
N8=''
N9='NULL'
export N1 N2 N3 N4 N5 N6 N8 N9
sqltext() { printf '%s' "$1" | sed "s/'/''/g"; }

for dsn in $(echo "$KODBC_TEST_DSNS" | tr ',' ' '); do
  case $dsn in
    kodbc_pg) stamp=TIMESTAMP; keep_date= ;;
    *) stamp=DATETIME; keep_date=--type=stamp=Datum/Zeit ;;
  esac
  for t in csv_src csv_back txt_back; do "$kodbc" sql "$dsn" "DROP TABLE $t" >/dev/null 2>&1; done
  "$kodbc" sql "$dsn" "CREATE TABLE csv_src (nr INTEGER, preis DOUBLE PRECISION, stamp $stamp, kurz VARCHAR(20), note VARCHAR(6000))" \
    >/dev/null 2>&1 || { fail "cannot create the table"; continue; }
  for i in 1 2 3 4 5 6 7 8 9; do
    case $i in
      7) note=NULL ;;
      *) eval "note=\"'\$(sqltext \"\$N$i\")'\"" ;;
    esac
    case $i in
      1) rest="1234.5, '2024-03-15 10:00:00', ''" ;;
      2) rest="-2.5e-7, NULL, NULL" ;;
      3) rest="NULL, '1999-12-31 23:59:59', 'x y'" ;;
      *) rest="$i, NULL, 'k$i'" ;;
    esac
    "$kodbc" sql "$dsn" "INSERT INTO csv_src VALUES ($i, $rest, $note)" >/dev/null 2>"$work/err" ||
      fail "cannot insert row $i: $(cat "$work/err")"
  done

  # Out through a pipe, back from standard input, out again.
  "$kodbc" export "$dsn" csv_src -f - --csv --null NULL 2>"$work/err" | gzip -c >"$work/src.csv.gz" ||
    { fail "export: $(cat "$work/err")"; continue; }
  grep -q "^9 Datensätze exportiert$" "$work/err" || fail "the count on stderr: $(cat "$work/err")"
  gunzip -c "$work/src.csv.gz" >"$work/src.csv"
  gunzip -c "$work/src.csv.gz" | "$kodbc" import "$dsn" - --csv --null NULL --table csv_back --type nr=Ganzzahl \
    --type preis=Gleitkommazahl --type note=VarText:6000 $keep_date >"$work/out" 2>"$work/err" ||
    { fail "import: $(cat "$work/err")"; continue; }
  grep -q "^9 Datensätze importiert$" "$work/out" || fail "import count: $(cat "$work/out")"
  "$kodbc" export "$dsn" csv_back -f "$work/back.csv" --csv --null NULL >/dev/null 2>"$work/err" ||
    fail "export again: $(cat "$work/err")"
  cmp -s "$work/src.csv" "$work/back.csv" ||
    fail "the values changed on the way: $(diff "$work/src.csv" "$work/back.csv" | cut -c1-200 | head -20)"
  head -c 40 "$work/src.csv" | grep -q '^nr,preis,stamp,kurz,note' || fail "the header: $(head -c 60 "$work/src.csv")"
  grep -q '^1,1234.5,2024-03-15 10:00:00,,"a,b;c	d"' "$work/src.csv" || fail "row 1: $(grep '^1,' "$work/src.csv")"

  # select writes the same notes (a value cut at its 4998 bytes); the
  # driver's dates and numbers may differ.
  "$kodbc" select "$dsn" "SELECT nr, kurz, note FROM csv_src ORDER BY nr" -f - --csv --header --null NULL \
    >"$work/select.csv" 2>"$work/err" || fail "select: $(cat "$work/err")"
  for csv in src.csv:3:4:0 select.csv:1:2:4998; do
    python3 -c '
import csv, os, sys
rows = list(csv.reader(open(sys.argv[1], newline="", encoding="utf-8")))
kurz, note, limit = int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4]) or None
want = [os.environ["N%d" % i].encode()[:limit].decode() if i != 7 else "NULL" for i in range(1, 10)]
got = [row[note] for row in rows[1:]]
if got != want or [row[kurz] for row in rows[1:4]] != ["", "NULL", "x y"] or rows[0][note] != "note":
    sys.exit("python reads %r" % [g[:40] for g in got])
' "$work/${csv%%:*}" $(echo "${csv#*:}" | tr ':' ' ') || fail "Python's csv module reads another table from ${csv%%:*}"
  done

  # sql --json and --csv for scripts: the same notes, numbers as numbers.
  "$kodbc" sql "$dsn" "SELECT nr, preis, note FROM csv_src ORDER BY nr" --json >"$work/sql.json" 2>"$work/err" ||
    fail "sql --json: $(cat "$work/err")"
  "$kodbc" sql "$dsn" "SELECT nr, preis, note FROM csv_src ORDER BY nr" --csv >"$work/sql.csv" 2>"$work/err" ||
    fail "sql --csv: $(cat "$work/err")"
  python3 -c '
import csv, json, os, sys
want = [os.environ["N%d" % i].encode()[:4998].decode() if i != 7 else None for i in range(1, 10)]
rows = json.load(open(sys.argv[1], encoding="utf-8"))
if [r["note"] for r in rows] != want or rows[0]["nr"] != 1 or rows[0]["preis"] != 1234.5 or rows[2]["preis"] is not None:
    sys.exit("json: %r" % rows[:3])
rows = list(csv.reader(open(sys.argv[2], newline="", encoding="utf-8")))
if rows[0] != ["nr", "preis", "note"] or [r[2] for r in rows[1:]] != [w if w is not None else "" for w in want]:
    sys.exit("csv: %r" % rows[:3])
' "$work/sql.json" "$work/sql.csv" || fail "sql --json or --csv reads another table"

  # The wizards' format: the empty text and NULL apart through --null.
  "$kodbc" export "$dsn" csv_src -f "$work/src.txt" --field nr --field kurz --null '(null)' >/dev/null 2>"$work/err" ||
    fail "text export: $(cat "$work/err")"
  "$kodbc" import "$dsn" "$work/src.txt" --null '(null)' --table txt_back >/dev/null 2>"$work/err" ||
    fail "text import: $(cat "$work/err")"
  "$kodbc" export "$dsn" txt_back -f "$work/back.txt" --null '(null)' >/dev/null 2>"$work/err" ||
    fail "text export again: $(cat "$work/err")"
  cmp -s "$work/src.txt" "$work/back.txt" || fail "the text file changed: $(diff "$work/src.txt" "$work/back.txt")"
  grep -q "^1	$(printf '\r')\$" "$work/src.txt" && grep -q "^2	(null)$(printf '\r')\$" "$work/src.txt" ||
    fail "NULL and the empty text in the text file: $(od -c "$work/src.txt" | head -5)"
  for t in csv_src csv_back txt_back; do "$kodbc" sql "$dsn" "DROP TABLE $t" >/dev/null 2>&1; done

  # The data sources carry their password; a wrong one given must fail.
  [ "$dsn" = kodbc_sqlite ] && continue
  pw=$(sed -n "/^\[$dsn\]/,/^\[/s/^Password *= *//p" "$ODBCINI")
  user=$(sed -n "/^\[$dsn\]/,/^\[/s/^User\(name\)\{0,1\} *= *//p" "$ODBCINI")
  KODBC_PASSWORD=wrong "$kodbc" -u "$user" tables "$dsn" >/dev/null 2>&1 && fail "a wrong KODBC_PASSWORD connects"
  KODBC_PASSWORD=$pw "$kodbc" -u "$user" tables "$dsn" >/dev/null 2>"$work/err" || fail "KODBC_PASSWORD: $(cat "$work/err")"
  printf 'wrong\n' >"$work/pw"
  "$kodbc" -u "$user" --password-file "$work/pw" tables "$dsn" >/dev/null 2>&1 && fail "a wrong password file connects"
  printf '%s\r\n' "$pw" >"$work/pw"
  "$kodbc" -u "$user" --password-file "$work/pw" tables "$dsn" >/dev/null 2>"$work/err" ||
    fail "--password-file: $(cat "$work/err")"
  KODBC_PASSWORD=wrong "$kodbc" -u "$user" --password-file "$work/pw" tables "$dsn" >/dev/null 2>"$work/err" ||
    fail "the file comes before the environment: $(cat "$work/err")"

  # Without a password anywhere a data source that wants one is answered on
  # the terminal, echo off; the prompt stays off stdout. Without a terminal
  # there is no prompt, only the refusal and how to give the password.
  sed '/^Password/d' "$ODBCINI" >"$work/nopw.ini"
  ODBCINI=$work/nopw.ini on_terminal "$pw
" sh -c "'$kodbc' select $dsn 'SELECT 1' -f - >'$work/out'" >"$work/tty" 2>&1 ||
    fail "prompt: $(cat "$work/tty")"
  grep -q "^Kennwort für $dsn: " "$work/tty" && ! grep -q "(echo" "$work/tty" || fail "prompt: $(cat "$work/tty")"
  [ "$(cat "$work/out")" = 1 ] || fail "prompt: stdout is not the result: $(cat "$work/out")"
  # A command with two connections to the data source asks once.
  "$kodbc" sql "$dsn" "CREATE TABLE pw_t (n INTEGER)" >/dev/null 2>&1
  "$kodbc" sql "$dsn" "INSERT INTO pw_t VALUES (1)" >/dev/null 2>&1
  ODBCINI=$work/nopw.ini on_terminal "$pw
" "$kodbc" add-records "$dsn" pw_t --from "$dsn:pw_t" >"$work/tty" 2>&1 || fail "add-records after the prompt: $(cat "$work/tty")"
  [ "$(grep -c "Kennwort für" "$work/tty")" = 1 ] || fail "asked more than once: $(cat "$work/tty")"
  "$kodbc" sql "$dsn" "DROP TABLE pw_t" >/dev/null 2>&1
  ODBCINI=$work/nopw.ini "$kodbc" tables "$dsn" </dev/null >/dev/null 2>"$work/err" && fail "connects without a password"
  grep -q "verlangt ein Kennwort" "$work/err" && ! grep -q Kennwort: "$work/err" || fail "no tty: $(cat "$work/err")"
  # Ctrl+C at the prompt leaves the terminal echoing.
  ODBCINI=$work/nopw.ini on_terminal "$(printf '\003')" "$kodbc" tables "$dsn" >"$work/tty" 2>&1 &&
    fail "Ctrl+C at the prompt did not stop the command"
  grep -q "^Kennwort für" "$work/tty" && ! grep -q "(echo" "$work/tty" || fail "Ctrl+C at the prompt: $(cat "$work/tty")"
done
echo "$failures failed"
[ "$failures" -eq 0 ]
