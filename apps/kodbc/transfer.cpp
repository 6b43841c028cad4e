// Export (and later import) on the command line: the wizards' writers and
// readers with the wizards' defaults.
#include "commands.h"
#include "descriptor_file.h"
#include "terminal.h"

#include <cstdio>
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

} // namespace

int ExportTable(const Login &login, const ExportRequest &request) {
    KodbcExportOptions options = {};
    if (request.delimiter == "blank") {
        options.delimiter = KODBC_EXPORT_BLANK;
    } else if (request.delimiter != "tab") {
        if (request.delimiter.empty() || request.delimiter.size() > 9) {
            Error("--delimiter: tab, blank oder ein Text von 1 bis 9 Zeichen");
            return kExitUsage;
        }
        options.delimiter = KODBC_EXPORT_OTHER;
        options.otherDelimiter = request.delimiter.c_str();
    }
    if (request.decimalMark == "point") {
        options.decimal = KODBC_EXPORT_POINT;
    } else if (request.decimalMark != "comma") {
        if (request.decimalMark.size() != 1) {
            Error("--decimal-mark: comma, point oder ein Zeichen");
            return kExitUsage;
        }
        options.decimal = KODBC_EXPORT_OTHER;
        options.otherDecimal = request.decimalMark[0];
    }
    if (!request.brackets.empty()) {
        if (request.brackets.size() != 2) {
            Error("--brackets: zwei Zeichen, die linke und die rechte Klammer");
            return kExitUsage;
        }
        options.leftBracket = request.brackets[0];
        options.rightBracket = request.brackets[1];
    }
    options.flags = (request.ascii ? KODBC_EXPORT_ASCII : 0) | (request.noHeader ? KODBC_EXPORT_NO_HEADER : 0);
    const std::string fields = TabJoined(request.fields), skip = TabJoined(request.skip);
    options.fields = fields.c_str();
    options.skip = skip.c_str();

    std::string descriptor;
    if (!request.whereFile.empty() && !ReadDescriptor(request.whereFile, descriptor)) return kExitFailed;
    Connection connection(request.dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    if (!CheckFieldNames(connection.hdbc(), request.table, request)) return kExitFailed;
    long written = 0;
    const int rc = Kodbc_ExportTable(connection.hdbc(), request.table.c_str(), descriptor.c_str(), &options,
                                     request.file.c_str(), &written);
    if (rc == KODBC_FAILURE) return kExitFailed;
    std::printf("%ld Datensätze exportiert%s\n", written, rc == KODBC_EXPORT_CANCELLED ? " (abgebrochen)" : "");
    return rc == KODBC_SUCCESS ? kExitOk : kExitFailed;
}

} // namespace kodbc_cli
