// kodbc — the library's services for scripts and the terminal.
#include "commands.h"
#include "terminal.h"
#include "usage_errors.h"

#include <CLI/CLI.hpp>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <utility>

namespace {

// "\t" and "\n" typed on a command line mean tab and line feed.
std::string Unescape(const std::string &text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            char c = text[++i];
            out += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
        } else {
            out += text[i];
        }
    }
    return out;
}

// CLI11's own words in German, for the help and the usage lines; the
// commands inherit them.
void GermanHelp(CLI::App &app) {
    auto formatter = app.get_formatter();
    const std::pair<const char *, const char *> words[] = {
        {"Usage", "Aufruf"},     {"Positionals", "Argumente"}, {"REQUIRED", "PFLICHT"},
        {"OPTIONS", "OPTIONEN"}, {"SUBCOMMAND", "BEFEHL"},      {"SUBCOMMANDS", "BEFEHLE"},
        {"Env", "Umgebung"},     {"Needs", "braucht"},          {"Excludes", "schließt aus"},
        {"INT", "ZAHL"},         {"UINT", "ZAHL"},              {"FLOAT", "ZAHL"}};
    for (const auto &[word, german] : words)
        formatter->label(word, german);
    app.option_defaults()->group("Optionen");
    app.set_help_flag("-h,--help", "diese Hilfe zeigen und beenden");
    app.failure_message([](const CLI::App *, const CLI::Error &e) {
        return "kodbc: " + kodbc_cli::GermanUsageError(e.what()) + "\nmehr dazu mit --help\n";
    });
}

// The first line of file, without its line end. False after a message.
bool ReadPasswordFile(const std::string &file, std::string &password) {
    std::ifstream in(file, std::ios::binary);
    if (!in || !std::getline(in, password)) {
        kodbc_cli::Error("--password-file: die Datei kann nicht gelesen werden: " + file);
        return false;
    }
    if (!password.empty() && password.back() == '\r') password.pop_back();
    return true;
}

} // namespace

int main(int argc, char **argv) {
    std::setlocale(LC_ALL, "");
    CLI::App app{"kodbc — Datenbankzugriff über ODBC"};
    GermanHelp(app);
    app.require_subcommand(1);
    app.add_flag_callback(
        "--version",
        [] {
            char version[64] = {};
            Kodbc_GetVersion(version, sizeof version);
            std::printf("kodbc %s\n", version);
            throw CLI::Success();
        },
        "die Version der Bibliothek zeigen");
    // Global options may also follow the command: "kodbc drop DSN T --yes".
    app.fallthrough();

    kodbc_cli::Login login;
    bool assumeYes = false;
    app.add_option("-u,--user", login.user, "Benutzer für die Verbindung");
    std::string passwordFile;
    auto *password = app.add_option("-p,--password", login.password,
                                    "Kennwort für die Verbindung; besser KODBC_PASSWORD oder --password-file, denn "
                                    "die Befehlszeile sehen andere Benutzer (ps) und die Shell merkt sie sich");
    app.add_option("--password-file", passwordFile, "Datei, deren erste Zeile das Kennwort ist")->excludes(password);
    app.add_flag("-y,--yes", assumeYes, "Rückfragen mit Ja beantworten");
    app.footer("Kennwort: zuerst -p, sonst --password-file, sonst KODBC_PASSWORD; ohne sie fragt kodbc am Terminal "
               "(ohne Echo), wenn die Datenquelle die Verbindung mangels Kennwort ablehnt.");

    std::string dsn, statement, table, sqlTemplate;
    std::vector<std::string> names, args;
    kodbc_cli::SelectOptions select;
    bool header = false, quote = false, zero = false, compactDates = false, encode = false;

    auto *datasources = app.add_subcommand("datasources", "Datenquellen des Treibermanagers auflisten");

    auto *info = app.add_subcommand("info", "Treiber- und Datenbankinformationen einer Datenquelle");
    info->add_option("DSN", dsn, "Datenquelle")->required();

    auto *tables = app.add_subcommand("tables", "Tabellen und Sichten einer Datenquelle");
    tables->add_option("DSN", dsn, "Datenquelle")->required();

    auto *columns = app.add_subcommand("columns", "Felder einer Tabelle mit ihren Datentypen");
    columns->add_option("DSN", dsn, "Datenquelle")->required();
    columns->add_option("TABLE", table, "Tabelle")->required();

    auto *keys = app.add_subcommand("keys", "Primärschlüssel einer Tabelle");
    keys->add_option("DSN", dsn, "Datenquelle")->required();
    keys->add_option("TABLE", table, "Tabelle")->required();

    auto *sql = app.add_subcommand("sql", "eine SQL-Anweisung ausführen (SELECT: Ergebnis ausgeben)");
    sql->add_option("DSN", dsn, "Datenquelle")->required();
    sql->add_option("STATEMENT", statement, "SQL-Anweisung")->required();
    bool sqlCsv = false, sqlJson = false;
    auto *sqlCsvFlag = sql->add_flag("--csv", sqlCsv, "Ergebnis als CSV nach RFC 4180 (Komma, CR LF, Kopfzeile)");
    sql->add_flag("--json", sqlJson, "Ergebnis als JSON: ein Feld von Objekten, NULL als null, Zahlen als Zahlen")
        ->excludes(sqlCsvFlag);

    auto *selectCmd = app.add_subcommand("select", "Ergebnis einer Abfrage in eine Textdatei schreiben");
    selectCmd->add_option("DSN", dsn, "Datenquelle")->required();
    selectCmd->add_option("STATEMENT", select.statement, "SELECT-Anweisung")->required();
    selectCmd->add_option("-f,--file", select.file, "Zieldatei; - für die Standardausgabe")->required();
    selectCmd->add_option("--field-separator", select.fieldSeparator, "Feldtrenner (Vorgabe: Tabulator)");
    selectCmd->add_option("--record-separator", select.recordSeparator, "Satztrenner (Vorgabe: Zeilenende)");
    selectCmd->add_flag("--header", header, "erste Zeile: die Spaltennamen");
    selectCmd->add_flag("--quote", quote, "Texte in ' mit verdoppelten '");
    selectCmd->add_flag("--zero-for-null", zero, "leere Zahlen als 0");
    selectCmd->add_flag("--compact-dates", compactDates, "Datumswerte als jjjjmmtthhmmss");
    selectCmd->add_flag("--encode", encode, "Texte mit der Zeichenkodierung der Bibliothek");
    selectCmd->add_option("--expected-rows", select.expectedRows, "erwartete Zeilenzahl (Fortschrittsanzeige)");
    std::string selectNull;
    selectCmd->add_flag("--csv", select.csv,
                        "CSV nach RFC 4180: Komma und CR LF (oder --field-separator, --record-separator), Werte bei "
                        "Bedarf in \" mit verdoppelten \"");
    selectCmd->add_option("--null", selectNull, "TEXT für NULL schreiben (ohne: nichts, wie ein leerer Text)");

    auto *quoteCmd = app.add_subcommand("quote", "Namen für die Datenquelle aufbereiten");
    quoteCmd->add_option("DSN", dsn, "Datenquelle")->required();
    quoteCmd->add_option("NAME", names, "Namen")->required();

    auto *format = app.add_subcommand("format", "SQL-Anweisung aus Vorlage (%t %f %s %.) erzeugen");
    format->add_option("DSN", dsn, "Datenquelle")->required();
    format->add_option("TEMPLATE", sqlTemplate, "Vorlage")->required();
    format->add_option("ARGS", args, "Argumente (höchstens sieben)");

    std::string whereFile, newName;
    kodbc_cli::SystemTableRequest sys;
    auto *count = app.add_subcommand("count", "Datensätze einer Tabelle zählen");
    count->add_option("DSN", dsn, "Datenquelle")->required();
    count->add_option("TABLE", table, "Tabelle")->required();
    count->add_option("--where-file", whereFile, "Datei mit einer Selektionsbeschreibung (Bedingungen)");

    auto *where = app.add_subcommand("where", "WHERE-Bedingung aus einer Selektionsbeschreibung erzeugen");
    where->add_option("DSN", dsn, "Datenquelle")->required();
    where->add_option("--descriptor-file", whereFile, "Datei mit der Selektionsbeschreibung")->required();

    std::string maskFile;
    auto *selmask = app.add_subcommand("selmask", "Selektionsmasken (.sms) lesen und schreiben");
    selmask->require_subcommand(1);
    auto *selmaskRead = selmask->add_subcommand("read", "die Selektionsbeschreibung einer Selektionsmaske ausgeben");
    selmaskRead->add_option("FILE", maskFile, "Selektionsmaske")->required();
    auto *selmaskWrite = selmask->add_subcommand("write", "eine Selektionsbeschreibung als Selektionsmaske speichern");
    selmaskWrite->add_option("FILE", maskFile, "Selektionsmaske (wird ersetzt)")->required();
    selmaskWrite->add_option("--descriptor-file", whereFile, "Datei mit der Selektionsbeschreibung")->required();

    auto *systable = app.add_subcommand("systable", "Einträge der Systemtabelle lesen, schreiben, löschen");
    systable->add_option("ACTION", sys.action, "get, set oder delete")->required();
    systable->add_option("DSN", dsn, "Datenquelle")->required();
    systable->add_option("OBJECT", sys.object, "Objekt")->required();
    systable->add_option("TYPE", sys.type, "Typ")->required();
    systable->add_option("ITEM", sys.item, "Eintrag (delete: leer für alle)")->required();
    systable->add_option("VALUE", sys.value, "Wert (set)");

    std::string setFile;
    auto *deleteCmd =
        app.add_subcommand("delete", "Datensätze löschen, die einer Bedingung genügen (fragt nach, außer mit --yes)");
    deleteCmd->add_option("DSN", dsn, "Datenquelle")->required();
    deleteCmd->add_option("TABLE", table, "Tabelle")->required();
    deleteCmd->add_option("--where-file", whereFile, "Datei mit einer Selektionsbeschreibung (ohne: alle Datensätze)");

    auto *update = app.add_subcommand("update", "Felder in den Datensätzen ändern, die einer Bedingung genügen");
    update->add_option("DSN", dsn, "Datenquelle")->required();
    update->add_option("TABLE", table, "Tabelle")->required();
    update->add_option("--set-file", setFile, "Datei mit den Zuweisungen (SET-Beschreibung)")->required();
    update->add_option("--where-file", whereFile, "Datei mit einer Selektionsbeschreibung (ohne: alle Datensätze)");

    auto *drop = app.add_subcommand("drop", "Tabelle löschen (fragt nach, außer mit --yes)");
    drop->add_option("DSN", dsn, "Datenquelle")->required();
    drop->add_option("TABLE", table, "Tabelle")->required();

    auto *rename = app.add_subcommand("rename", "Tabelle durch Kopieren umbenennen");
    rename->add_option("DSN", dsn, "Datenquelle")->required();
    rename->add_option("OLD", table, "bisheriger Name")->required();
    rename->add_option("NEW", newName, "neuer Name")->required();

    std::string kind, from;
    auto *createTable = app.add_subcommand("create-table", "neue Tabelle anlegen wie der Assistent \"Neue Tabelle anlegen\"");
    createTable->add_option("DSN", dsn, "Datenquelle")->required();
    createTable->add_option("NAME", table, "Name der neuen Tabelle (ohne: \"Neue_Tabelle\", eindeutig gemacht)");
    createTable->add_option("--kind", kind, "Struktur: autoinc (eine selbsthochzählende Spalte), copy (Struktur von --from), address (Adressentabelle)")
        ->required()
        ->check(CLI::IsMember({"autoinc", "copy", "address"}));
    createTable->add_option("--from", from, "Tabelle, deren Struktur übernommen wird (--kind copy)");

    kodbc_cli::AlterRequest alter;
    auto *alterCmd = app.add_subcommand("alter", "Struktur einer Tabelle ändern wie die Tabellenverwaltung");
    alterCmd->add_option("DSN", alter.dsn, "Datenquelle")->required();
    alterCmd->add_option("TABLE", alter.table, "Tabelle")->required();
    alterCmd->require_subcommand(1);
    auto *addColumn = alterCmd->add_subcommand("add-column", "Spalte hinzufügen");
    addColumn->add_option("NAME", alter.column, "Name der Spalte")->required();
    addColumn->add_option("TYPE", alter.type, "Datentyp: FixText, VarText, LangText, Datum/Zeit, Ganzzahl, Gleitkommazahl, Binärdaten")
        ->required();
    addColumn->add_option("LENGTH", alter.length, "Länge (FixText, VarText: nötig)");
    auto *dropColumn = alterCmd->add_subcommand("drop-column", "Spalten entfernen (fragt je Spalte, außer mit --yes)");
    dropColumn->add_option("NAME", alter.columns, "Spalten")->required();
    auto *addAutoinc = alterCmd->add_subcommand("add-autoinc", "selbsthochzählende Spalte hinzufügen");
    addAutoinc->add_option("NAME", alter.column, "Name der Spalte")->required();
    auto *addPk = alterCmd->add_subcommand("add-pk", "Primärschlüssel anlegen");
    addPk->add_option("COLUMN", alter.columns, "Spalten des Schlüssels, in ihrer Reihenfolge")->required();
    auto *dropPk = alterCmd->add_subcommand("drop-pk", "Primärschlüssel löschen (fragt nach, außer mit --yes)");

    kodbc_cli::ExportRequest exportRequest;
    auto *exportCmd = app.add_subcommand("export", "Datensätze einer Tabelle in eine Textdatei exportieren wie der Export-Assistent");
    exportCmd->add_option("DSN", exportRequest.dsn, "Datenquelle")->required();
    exportCmd->add_option("TABLE", exportRequest.table, "Tabelle")->required();
    exportCmd->add_option("-f,--file", exportRequest.file, "Exportdatei (wird ersetzt); - für die Standardausgabe")->required();
    exportCmd->add_option("--where-file", exportRequest.whereFile, "Datei mit einer Selektionsbeschreibung (ohne: alle Datensätze)");
    exportCmd->add_option("--field", exportRequest.fields, "NAME[=ÜBERSCHRIFT]: nur diese Felder exportieren");
    exportCmd->add_option("--skip", exportRequest.skip, "NAME: Feld nicht exportieren");
    exportCmd->add_option("--delimiter", exportRequest.delimiter, "tab, blank oder ein anderer Trenner (bis 9 Zeichen)");
    exportCmd->add_option("--decimal-mark", exportRequest.decimalMark, "comma, point oder ein anderes Zeichen");
    exportCmd->add_option("--brackets", exportRequest.brackets, "LR: linke und rechte Klammer um Namen und Werte");
    exportCmd->add_flag("--ascii", exportRequest.ascii, "Namen und Werte in der OEM-Codepage (ASCII) schreiben");
    exportCmd->add_flag("--no-header", exportRequest.noHeader, "keine Zeile mit den Feldnamen");
    std::string exportNull, importNull;
    exportCmd->add_flag("--csv", exportRequest.csv,
                        "CSV nach RFC 4180: Komma (oder --delimiter), Werte bei Bedarf in \" mit verdoppelten \", "
                        "Dezimalpunkt, Datum als jjjj-mm-tt hh:mm:ss");
    exportCmd->add_flag("--german-dates", exportRequest.germanDates, "mit --csv: Datum als tt.mm.jjjj");
    exportCmd->add_option("--null", exportNull, "TEXT für NULL schreiben (ohne: nichts, wie ein leerer Text)");

    kodbc_cli::ImportRequest importRequest;
    auto *importCmd = app.add_subcommand("import", "Eine neue Tabelle aus einer Textdatei oder einer Tabelle einer anderen Datenquelle anlegen und füllen wie der Import-Assistent");
    importCmd->add_option("DSN", importRequest.dsn, "Datenquelle der neuen Tabelle")->required();
    importCmd->add_option("FILE", importRequest.file, "Textdatei (ohne --from); - für die Standardeingabe (mit --table)");
    importCmd->add_option("--from", importRequest.from, "Quelle als DATENQUELLE:TABELLE statt einer Datei");
    importCmd->add_option("--table", importRequest.table, "Name der neuen Tabelle (ohne: der Dateiname ohne Ordner und Endung)");
    importCmd->add_option("--kind", importRequest.kind, "Art der Datei: text, sdi oder sel");
    importCmd->add_option("--delimiter", importRequest.delimiter, "tab, blank oder ein anderer Trenner (das erste Zeichen zählt)");
    importCmd->add_option("--decimal-mark", importRequest.decimalMark, "comma, point oder ein anderes Zeichen");
    importCmd->add_option("--brackets", importRequest.brackets, "LR: linke und rechte Klammer um Werte");
    importCmd->add_flag("--numbered-names", importRequest.numberedNames, "die erste Zeile enthält Werte; die Felder heißen F0, F1, ...");
    importCmd->add_flag("--ascii", importRequest.ascii, "die Datei ist in der OEM-Codepage (ASCII)");
    importCmd->add_option("--as", importRequest.as, "FELD=NAME: Name in der neuen Tabelle");
    importCmd->add_option("--type", importRequest.types, "FELD=TYP[:LÄNGE]: Datentyp in der neuen Tabelle");
    importCmd->add_option("--skip", importRequest.skip, "FELD: nicht importieren");
    importCmd->add_option("--autoinc", importRequest.autoinc, "FELD: selbsthochzählend");
    importCmd->add_flag("--dry-run", importRequest.dryRun, "nur CREATE TABLE und das erste INSERT zeigen");
    importCmd->add_flag("--csv", importRequest.csv,
                        "CSV nach RFC 4180: Komma (oder --delimiter), Werte in \" auch über Zeilen, Dezimalpunkt, "
                        "keine Kürzung");
    importCmd->add_option("--null", importNull, "TEXT als NULL lesen, ein leerer Wert ist dann ein leerer Text");
    importCmd->add_flag("--per-record", importRequest.perRecord,
                        "ein INSERT je Datensatz, jedes gleich gültig (wie der Assistent); ohne: alles oder nichts");

    kodbc_cli::AddRecordsRequest addRecords;
    auto *addRecordsCmd = app.add_subcommand("add-records", "Datensätze aus einer anderen Tabelle hinzufügen");
    addRecordsCmd->add_option("DSN", addRecords.dsn, "Datenquelle der Zieltabelle")->required();
    addRecordsCmd->add_option("TABLE", addRecords.table, "Zieltabelle")->required();
    addRecordsCmd->add_option("--from", addRecords.from, "Quelle als DATENQUELLE:TABELLE")->required();
    addRecordsCmd->add_option("--map", addRecords.maps, "ZIELFELD=QUELLFELD: Inhalt eines Quellfelds");
    addRecordsCmd->add_option("--value", addRecords.values, "ZIELFELD=TEXT: fester Wert");
    addRecordsCmd->add_option("--empty", addRecords.empties, "ZIELFELD: Feld leer lassen");
    addRecordsCmd->add_option("--replace-on", addRecords.replaceOn,
                              "ZIELFELD=QUELLFELD: Sätze mit gleichem Kennfeld ersetzen, sonst hinzufügen");
    addRecordsCmd->add_flag("--per-record", addRecords.perRecord,
                            "ein Befehl je Datensatz, jeder gleich gültig (wie der Assistent); ohne: alles oder "
                            "nichts");

    kodbc_cli::QueryRequest queryRequest;
    auto *queryCmd = app.add_subcommand("query", "SELECT-Befehl aus den Beschreibungen des Abfrage-Assistenten erzeugen");
    queryCmd->add_option("DSN", dsn, "Datenquelle (ohne: keine Verbindung, Namen wie angegeben)");
    queryCmd->add_option("--tables-file", queryRequest.tablesFile,
                         "Datei mit den Tabellen (je Zeile: Name, Alias, LJ/IJ/RJ, EQ/NE/GT/GE/LT/LE, Operand, Operand; Tabulator dazwischen)")
        ->required();
    queryCmd->add_option("--columns-file", queryRequest.columnsFile, "Datei mit den Spalten (je Zeile: Ausdruck, Alias)");
    queryCmd->add_option("--where-file", queryRequest.whereFile, "Datei mit einer Selektionsbeschreibung (Bedingungen)");
    queryCmd->add_option("--sort-file", queryRequest.sortFile, "Datei mit der Sortierung (je Zeile: Spalte, ASC/DESC)");
    queryCmd->add_option("--schema", queryRequest.schema, "Schema der Tabellen und der Testabfrage");
    queryCmd->add_flag("--view", queryRequest.view, "Rumpf einer Abfrage (Sicht): der Test legt eine Sicht an");
    queryCmd->add_flag("--test", queryRequest.test, "den Befehl testen (braucht DSN)");

    kodbc_cli::ViewRequest viewRequest;
    auto *viewCmd = app.add_subcommand("view", "gespeicherte Abfragen (Sichten mit ihrem Entwurf in der Systemtabelle)");
    viewCmd->add_option("ACTION", viewRequest.action, "create, drop, test oder show")
        ->required()
        ->check(CLI::IsMember({"create", "drop", "test", "show"}));
    viewCmd->add_option("DSN", dsn, "Datenquelle")->required();
    viewCmd->add_option("NAME", viewRequest.name, "Name der Abfrage")->required();
    auto *viewSql = viewCmd->add_option("--sql", viewRequest.sql, "SQL-Befehl (create, test)");
    viewCmd->add_option("--sql-file", viewRequest.sqlFile, "Datei mit dem SQL-Befehl (create, test)")->excludes(viewSql);
    viewCmd->add_option("--tables-file", viewRequest.design.tablesFile,
                        "Entwurf: Datei mit den Tabellen (ohne SQL-Befehl: der Befehl wird daraus erzeugt)");
    viewCmd->add_option("--columns-file", viewRequest.design.columnsFile, "Entwurf: Datei mit den Spalten");
    viewCmd->add_option("--where-file", viewRequest.design.whereFile, "Entwurf: Datei mit einer Selektionsbeschreibung");
    viewCmd->add_option("--schema", viewRequest.design.schema, "Schema der Abfrage");
    viewCmd->add_flag("--if-exists", viewRequest.ifExists, "drop: eine fehlende Abfrage ist kein Fehler");

    auto *demo = app.add_subcommand("demo", "Beispieldatenbank anlegen (falls nötig) und vorführen");

    // A command's help flag was made before its options took the German group.
    for (CLI::App *command : app.get_subcommands({})) {
        command->group("Befehle")->set_help_flag("-h,--help", "diese Hilfe zeigen und beenden");
        for (CLI::App *action : command->get_subcommands({}))
            action->group("Befehle")->set_help_flag("-h,--help", "diese Hilfe zeigen und beenden");
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &e) {
        int code = app.exit(e);
        return code == 0 ? kodbc_cli::kExitOk : kodbc_cli::kExitUsage;
    }

    kodbc_cli::InstallMessageHandler(assumeYes);
    // The password from the first of: option, file, environment; else the prompt.
    if (password->count() == 0) {
        if (app.count("--password-file") != 0) {
            if (!ReadPasswordFile(passwordFile, login.password)) return kodbc_cli::kExitUsage;
        } else if (const char *fromEnvironment = std::getenv("KODBC_PASSWORD")) {
            login.password = fromEnvironment;
        } else {
            kodbc_cli::NoPasswordGiven();
        }
    }
    using namespace kodbc_cli;
    if (*datasources) return ListDataSources();
    if (*info) return ShowInfo(dsn, login);
    if (*tables) return ListTables(dsn, login);
    if (*columns) return ListColumns(dsn, login, table);
    if (*keys) return ListKeys(dsn, login, table);
    if (*sql) return RunSql(dsn, login, statement, sqlCsv ? "csv" : sqlJson ? "json" : "");
    if (*selectCmd) {
        if (select.csv && !selectCmd->count("--field-separator")) select.fieldSeparator = ",";
        if (select.csv && !selectCmd->count("--record-separator")) select.recordSeparator = "\\r\\n";
        if (selectCmd->count("--null")) select.nullText = selectNull;
        select.fieldSeparator = Unescape(select.fieldSeparator);
        select.recordSeparator = Unescape(select.recordSeparator);
        select.flags = (header ? KODBC_ROWSET_HEADER : 0) | (quote ? KODBC_ROWSET_QUOTE_TEXT : 0) |
                       (zero ? KODBC_ROWSET_NUMERIC_ZERO : 0) | (compactDates ? KODBC_ROWSET_COMPACT_DATES : 0) |
                       (encode ? KODBC_ROWSET_ENCODE_TEXT : 0) | (select.csv ? KODBC_ROWSET_CSV : 0);
        return SelectToFile(dsn, login, select);
    }
    if (*quoteCmd) return QuoteNames(dsn, login, names);
    if (*format) return FormatStatement(dsn, login, sqlTemplate, args);
    if (*count) return CountRecords(dsn, login, table, whereFile);
    if (*where) return PrintWhere(dsn, login, whereFile);
    if (*selmaskRead) return PrintSelectionMask(maskFile);
    if (*selmaskWrite) return WriteSelectionMask(maskFile, whereFile);
    if (*systable) return SystemTable(dsn, login, sys);
    if (*deleteCmd) return DeleteRecords(dsn, login, table, whereFile, assumeYes);
    if (*update) return UpdateRecords(dsn, login, table, setFile, whereFile);
    if (*drop) return DropTable(dsn, login, table, assumeYes);
    if (*rename) return RenameTable(dsn, login, table, newName);
    if (*addRecordsCmd) return AddRecords(login, addRecords);
    // CSV has its own defaults: the comma between values, the point in numbers.
    if (*exportCmd) {
        if (exportRequest.csv && !exportCmd->count("--delimiter")) exportRequest.delimiter = ",";
        if (exportRequest.csv && !exportCmd->count("--decimal-mark")) exportRequest.decimalMark = "point";
        if (exportCmd->count("--null")) exportRequest.nullText = exportNull;
        return ExportTable(login, exportRequest);
    }
    if (*importCmd) {
        if (importRequest.csv && !importCmd->count("--delimiter")) importRequest.delimiter = ",";
        if (importRequest.csv && !importCmd->count("--decimal-mark")) importRequest.decimalMark = "point";
        if (importCmd->count("--null")) importRequest.nullText = importNull;
        return ImportData(login, importRequest);
    }
    if (*createTable) return CreateTable(dsn, login, table, kind, from);
    if (*alterCmd) {
        alter.action = *addColumn ? "add-column" : *dropColumn ? "drop-column" : *addAutoinc ? "add-autoinc"
                       : *addPk    ? "add-pk"
                       : *dropPk   ? "drop-pk"
                                   : "";
        return AlterTable(login, alter);
    }
    if (*queryCmd) return Query(dsn, login, queryRequest);
    if (*viewCmd) return View(dsn, login, viewRequest);
    if (*demo) return RunDemo();
    return kExitUsage;
}
