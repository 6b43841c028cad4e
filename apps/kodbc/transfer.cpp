// Export and import on the command line: the wizards' writers and readers
// with the wizards' defaults.
#include "commands.h"
#include "descriptor_file.h"
#include "pipes.h"
#include "terminal.h"

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>
#include <set>

namespace kodbc_cli {
namespace {

std::string TabJoined(const std::vector<std::string> &names) {
    std::string joined;
    for (const std::string &name : names) joined += (joined.empty() ? "" : "\t") + name;
    return joined;
}

// Names the table does not have, so the user hears which one.
bool CheckFieldNames(SQLHDBC hdbc, const std::string &table, const ExportRequest &request) {
    std::vector<char> list(30000);
    if (Kodbc_GetFields(hdbc, table.c_str(), 0, "\t", list.data(), static_cast<int>(list.size())) != 1) return false;
    std::set<std::string> known;
    for (const std::string &name : Split(list.data(), '\t')) known.insert(name);
    std::vector<std::string> named = request.skip;
    for (const std::string &field : request.fields) named.push_back(field.substr(0, field.find('=')));
    for (const std::string &name : named) {
        if (known.count(name)) continue;
        Error("die Tabelle " + table + " hat kein Feld '" + name + "'");
        return false;
    }
    return true;
}

// --delimiter, --decimal-mark and --brackets into the options of either
// direction (their members are named alike). False after a usage error
// (said).
template <class Options>
bool ParseTextFormat(const std::string &delimiter, const std::string &decimalMark, const std::string &brackets,
                     Options &options) {
    if (delimiter == "blank") {
        options.delimiter = KODBC_EXPORT_BLANK;
    } else if (delimiter != "tab") {
        if (delimiter.empty() || delimiter.size() > 9) {
            Error("--delimiter: tab, blank oder ein Text von 1 bis 9 Zeichen");
            return false;
        }
        options.delimiter = KODBC_EXPORT_OTHER;
        options.otherDelimiter = delimiter.c_str();
    }
    if (decimalMark == "point") {
        options.decimal = KODBC_EXPORT_POINT;
    } else if (decimalMark != "comma") {
        if (decimalMark.size() != 1) {
            Error("--decimal-mark: comma, point oder ein Zeichen");
            return false;
        }
        options.decimal = KODBC_EXPORT_OTHER;
        options.otherDecimal = decimalMark[0];
    }
    if (!brackets.empty()) {
        if (brackets.size() != 2) {
            Error("--brackets: zwei Zeichen, die linke und die rechte Klammer");
            return false;
        }
        options.leftBracket = brackets[0];
        options.rightBracket = brackets[1];
    }
    return true;
}

// What CSV leaves out: brackets and delimiters of more than one character.
bool CheckCsv(bool csv, const std::string &delimiter, const std::string &brackets) {
    if (!csv) return true;
    if (!brackets.empty()) {
        Error("--brackets gilt nicht mit --csv");
        return false;
    }
    if (delimiter != "tab" && delimiter != "blank" && delimiter.size() != 1) {
        Error("--delimiter mit --csv: tab, blank oder ein Zeichen");
        return false;
    }
    return true;
}

// "left=right" with a non-empty left side.
bool SplitAssignment(const std::string &text, std::string &left, std::string &right) {
    const std::size_t at = text.find('=');
    if (at == std::string::npos || at == 0) return false;
    left = text.substr(0, at);
    right = text.substr(at + 1);
    return true;
}

// The per-field choices of an import, by the field's name in the source.
// False after a usage error (said).
bool CollectImportFields(const ImportRequest &request, std::map<std::string, KodbcImportField> &choices,
                         std::deque<std::string> &texts) {
    auto choice = [&](const std::string &name) -> KodbcImportField & {
        KodbcImportField &field = choices[name];
        if (!field.name) field.name = texts.emplace_back(name).c_str();
        return field;
    };
    std::string field, value;
    for (const std::string &as : request.as) {
        if (!SplitAssignment(as, field, value) || value.empty()) {
            Error("--as erwartet FELD=NAME: " + as);
            return false;
        }
        choice(field).targetName = texts.emplace_back(value).c_str();
    }
    for (const std::string &type : request.types) {
        if (!SplitAssignment(type, field, value)) {
            Error("--type erwartet FELD=TYP[:LÄNGE]: " + type);
            return false;
        }
        const std::size_t colon = value.find(':');
        const int code = TypeCode(value.substr(0, colon));
        const int length = colon == std::string::npos ? 0 : std::atoi(value.c_str() + colon + 1);
        if (!code || (colon != std::string::npos && length <= 0)) {
            Error("--type: unbekannter Datentyp oder ungültige Länge: " + type);
            return false;
        }
        choice(field).targetType = code;
        choice(field).targetLength = length;
    }
    for (const std::string &name : request.skip) choice(name).flags |= KODBC_IMPORT_SKIP;
    if (!request.autoinc.empty()) choice(request.autoinc).flags |= KODBC_IMPORT_AUTOINC;
    return true;
}

// What the import's rules dropped or cut, on stderr; the run's outcome is
// not changed by it.
void SayImportNotes(const KodbcImportResult &result) {
    for (const std::string &line : Split(result.notImported, '\n')) {
        const std::size_t tab = line.find('\t');
        const std::string name = line.substr(0, tab), why = tab == std::string::npos ? "" : line.substr(tab + 1);
        std::fprintf(stderr, "kodbc: Hinweis: Feld '%s' nicht importiert (%s)\n", name.c_str(),
                     why.empty() ? "ausgelassen"
                                 : (why + "; mit --type " + name + "=VarText:LÄNGE wird es übernommen").c_str());
    }
    NoteCutValues(result.valuesCut, "99 Zeichen");
    if (result.linesCut > 0)
        std::fprintf(stderr, "kodbc: Hinweis: %ld überlange Zeile(n) gekürzt, ihr Rest wurde nicht gelesen\n",
                     result.linesCut);
    NoteChangedNumbers(result.numbersChanged,
                       (result.firstNumberInLine ? "Zeile " : "Datensatz ") + std::to_string(result.firstNumberAt),
                       result.firstNumberField, result.firstNumber, result.firstNumberAs);
}

} // namespace

int ExportTable(const Login &login, const ExportRequest &request) {
    KodbcExportOptions options = {};
    if (!ParseTextFormat(request.delimiter, request.decimalMark, request.brackets, options)) return kExitUsage;
    options.flags = (request.ascii ? KODBC_EXPORT_ASCII : 0) | (request.noHeader ? KODBC_EXPORT_NO_HEADER : 0);
    if (!CheckCsv(request.csv, request.delimiter, request.brackets)) return kExitUsage;
    if (request.csv) options.flags |= KODBC_EXPORT_CSV | (request.germanDates ? KODBC_EXPORT_GERMAN_DATES : 0);
    if (request.nullText) options.nullText = request.nullText->c_str();
    const std::string fields = TabJoined(request.fields), skip = TabJoined(request.skip);
    options.fields = fields.c_str();
    options.skip = skip.c_str();

    std::string descriptor;
    if (!request.whereFile.empty() && !ReadDescriptor(request.whereFile, descriptor)) return kExitFailed;
    Connection connection(request.dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    if (!CheckFieldNames(connection.hdbc(), request.table, request)) return kExitFailed;
    StreamFile file(request.file);
    if (file.name().empty()) return kExitFailed;
    long written = 0;
    const int rc = Kodbc_ExportTable(connection.hdbc(), request.table.c_str(), descriptor.c_str(), &options,
                                     file.name().c_str(), &written);
    if (rc == KODBC_FAILURE) return kExitFailed;
    if (file.isStream() && !file.WriteStandardOutput()) return kExitFailed;
    // The count does not mix with the data when that goes to standard output.
    std::fprintf(file.isStream() ? stderr : stdout, "%ld Datensätze exportiert%s\n", written,
                 rc == KODBC_EXPORT_CANCELLED ? " (abgebrochen)" : "");
    return rc == KODBC_SUCCESS ? kExitOk : kExitFailed;
}

int ImportData(const Login &login, const ImportRequest &request) {
    const int kind = request.kind == "text" ? KODBC_IMPORT_KIND_TEXT
                     : request.kind == "sdi" ? KODBC_IMPORT_KIND_SDI
                     : request.kind == "sel" ? KODBC_IMPORT_KIND_SEL
                                             : -1;
    if (kind < 0) {
        Error("--kind: text, sdi oder sel");
        return kExitUsage;
    }
    if (request.file.empty() == request.from.empty()) {
        Error("entweder eine Datei oder --from DATENQUELLE:TABELLE");
        return kExitUsage;
    }
    if (kind != KODBC_IMPORT_KIND_TEXT && !request.from.empty()) {
        Error("--kind " + request.kind + " liest eine Datei, keine Tabelle");
        return kExitUsage;
    }
    std::string sourceDsn, sourceTable;
    if (!request.from.empty()) {
        const std::size_t colon = request.from.find(':');
        if (colon == std::string::npos || colon == 0 || colon + 1 == request.from.size() || request.table.empty()) {
            Error("--from erwartet DATENQUELLE:TABELLE, dazu --table NAME");
            return kExitUsage;
        }
        sourceDsn = request.from.substr(0, colon);
        sourceTable = request.from.substr(colon + 1);
    }
    if (request.file == "-" && request.table.empty()) {
        Error("die Standardeingabe (-) braucht --table NAME");
        return kExitUsage;
    }
    KodbcImportOptions options = {};
    if (!ParseTextFormat(request.delimiter, request.decimalMark, request.brackets, options)) return kExitUsage;
    if (!CheckCsv(request.csv, request.delimiter, request.brackets)) return kExitUsage;
    options.flags = (request.ascii ? KODBC_IMPORT_ASCII : 0) | (request.numberedNames ? KODBC_IMPORT_NUMBERED_NAMES : 0) |
                    (request.dryRun ? KODBC_IMPORT_DRY_RUN : 0) | (request.csv ? KODBC_IMPORT_CSV : 0);
    if (request.nullText) options.nullText = request.nullText->c_str();
    options.kind = kind;
    std::map<std::string, KodbcImportField> choices;
    std::deque<std::string> texts;  // the choices point into it
    if (!CollectImportFields(request, choices, texts)) return kExitUsage;
    std::vector<KodbcImportField> fields;
    for (const auto &entry : choices) fields.push_back(entry.second);
    options.fields = fields.data();
    options.fieldCount = static_cast<int>(fields.size());

    StreamFile file(request.file);
    if (file.isStream() && (file.name().empty() || !file.ReadStandardInput())) return kExitFailed;
    Connection connection(request.dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    // All or nothing, on the import's own connection.
    const bool batch = !request.dryRun && !request.perRecord && connection.AutoCommitOff();
    if (batch) options.flags |= KODBC_IMPORT_BATCH;
    std::vector<char> create(30000), insert(30000);
    KodbcImportResult result = {};
    result.createStatement = create.data();
    result.createSize = static_cast<int>(create.size());
    result.firstInsert = insert.data();
    result.insertSize = static_cast<int>(insert.size());
    int rc;
    if (request.from.empty()) {
        rc = Kodbc_ImportTextFile(connection.hdbc(), request.table.c_str(), file.name().c_str(), &options, &result);
    } else {
        // The source has a connection of its own; the library reads it on the
        // destination's where that one can serve both sides.
        Connection other(sourceDsn, login.user, login.password);
        if (!other.ok()) return kExitFailed;
        SQLHDBC source = other.hdbc();
        rc = Kodbc_ImportTable(connection.hdbc(), request.table.c_str(), source, sourceTable.c_str(), &options,
                               &result);
    }
    if (rc == KODBC_IMPORT_NO_SUCH_FIELD) {
        Error("die Quelle hat kein Feld '" + std::string(fields[static_cast<std::size_t>(result.badField)].name) + "'");
        return kExitFailed;
    }
    if (request.dryRun && rc == KODBC_SUCCESS) {
        std::printf("%s\n%s\n", create.data(), insert.data());
        return kExitOk;
    }
    // A failed batch run said what became of it.
    if (rc == KODBC_FAILURE && result.written == 0 && (!create[0] || batch)) return kExitFailed;
    std::printf("%ld Datensätze importiert%s\n", result.written, rc == KODBC_IMPORT_CANCELLED ? " (abgebrochen)" : "");
    std::fflush(stdout);
    SayImportNotes(result);
    return rc == KODBC_SUCCESS ? kExitOk : kExitFailed;
}

} // namespace kodbc_cli
