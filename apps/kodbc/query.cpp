// Tables, columns, keys and statements, through the library's own services.
#include "commands.h"
#include "pipes.h"
#include "terminal.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace kodbc_cli {
namespace {

constexpr int kListSize = 1 << 20;

// Prints a separated list one item per line.
void PrintList(const std::string &list, char separator) {
    std::size_t start = 0;
    while (start < list.size()) {
        std::size_t end = list.find(separator, start);
        if (end == std::string::npos) end = list.size();
        std::printf("%.*s\n", static_cast<int>(end - start), list.c_str() + start);
        start = end + 1;
    }
}

bool ReturnsRows(const std::string &statement) {
    std::size_t i = 0;
    while (i < statement.size() && (std::isspace(static_cast<unsigned char>(statement[i])) || statement[i] == '('))
        ++i;
    std::string word;
    while (i < statement.size() && std::isalpha(static_cast<unsigned char>(statement[i])))
        word += static_cast<char>(std::toupper(static_cast<unsigned char>(statement[i++])));
    return word == "SELECT" || word == "WITH" || word == "VALUES" || word == "SHOW" || word == "PRAGMA";
}

// The result goes through a file of its own; the library writes no pipes.
std::string TemporaryFile() {
    std::error_code error;
    std::string path = (std::filesystem::temp_directory_path(error) / "kodbc-sql-XXXXXX").string();
#ifdef _WIN32
    return _mktemp_s(path.data(), path.size() + 1) == 0 ? path : std::string();
#else
    int fd = mkstemp(path.data());
    if (fd < 0) return {};
    close(fd);
    return path;
#endif
}

bool CopyToStdout(const std::string &path) {
    std::FILE *in = std::fopen(path.c_str(), "rb");
    if (!in) return false;
    char chunk[65536];
    std::size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, in)) > 0) std::fwrite(chunk, 1, n, stdout);
    std::fclose(in);
    return true;
}

bool AppendText(const std::string &path, const std::string &text) {
    std::FILE *out = std::fopen(path.c_str(), "ab");
    const bool ok = out && std::fwrite(text.data(), 1, text.size(), out) == text.size();
    if (out && std::fclose(out) != 0) return false;
    if (!ok) Error("die Datei kann nicht geschrieben werden: " + path);
    return ok;
}

} // namespace

int ListTables(const std::string &dsn, const Login &login) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    std::string list(kListSize, '\0');
    if (Kodbc_GetTablesExtended(connection.hdbc(), KODBC_OBJECT_TABLE | KODBC_OBJECT_VIEW, nullptr, 1, list.data(),
                                kListSize, "\n") != 0)
        return kExitFailed;
    list.resize(std::char_traits<char>::length(list.c_str()));
    PrintList(list, '\n');
    return kExitOk;
}

int ListColumns(const std::string &dsn, const Login &login, const std::string &table) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    std::string list(kListSize, '\0');
    if (Kodbc_GetColumnDescriptions(connection.hdbc(), table.c_str(), list.data(), kListSize) != KODBC_SUCCESS)
        return kExitFailed;
    list.resize(std::char_traits<char>::length(list.c_str()));
    // The table administration's columns, without the remark when no column has one.
    std::vector<std::vector<std::string>> rows{{"Spalte", "Datentyp", "Leer erlaubt", "Vorbesetzung", "Kommentar"}};
    bool remarks = false;
    for (const std::string &line : Split(list, '\n')) {
        std::vector<std::string> row = Split(line, '\t');
        row.resize(5);
        remarks = remarks || !row[4].empty();
        rows.push_back(std::move(row));
    }
    if (!remarks)
        for (auto &row : rows) row.pop_back();
    PrintAligned(rows);
    return kExitOk;
}

int ListKeys(const std::string &dsn, const Login &login, const std::string &table) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    char columns[4096], name[256];
    if (Kodbc_GetPrimaryKeyColumns(connection.hdbc(), table.c_str(), 0, "\n", columns, sizeof columns) != 1) {
        Error("der Treiber nennt keine Primärschlüssel");
        return kExitFailed;
    }
    Kodbc_GetPrimaryKeyName(connection.hdbc(), table.c_str(), 0, name, sizeof name);
    if (name[0]) std::printf("Schlüssel: %s\n", name);
    PrintList(columns, '\n');
    return kExitOk;
}

int SelectToFile(const std::string &dsn, const Login &login, const SelectOptions &options) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    unsigned flags = options.flags;
    if (isatty(STDERR_FILENO)) flags |= KODBC_ROWSET_PROGRESS;
    long rows = options.expectedRows;
    if (rows == 0 && (flags & KODBC_ROWSET_PROGRESS)) rows = OdbcEh_CountRows(nullptr, connection.hdbc(), options.statement.c_str());
    StreamFile file(options.file);
    if (file.name().empty()) return kExitFailed;
    if (OdbcEh_SelectRowSetToFileWithNull(nullptr, connection.hdbc(), options.statement.c_str(),
                                          options.fieldSeparator.c_str(), options.recordSeparator.c_str(),
                                          options.nullText ? options.nullText->c_str() : nullptr,
                                          file.name().c_str(), &rows, nullptr, flags) != 1)
        return kExitFailed;
    // CSV readers expect the last record ended like the others.
    if (options.csv && rows > 0 && !AppendText(file.name(), options.recordSeparator)) return kExitFailed;
    if (file.isStream() && !file.WriteStandardOutput()) return kExitFailed;
    std::fprintf(stderr, "%ld Zeilen nach %s geschrieben\n", rows,
                 file.isStream() ? "der Standardausgabe" : options.file.c_str());
    return kExitOk;
}

int RunSql(const std::string &dsn, const Login &login, const std::string &statement, const std::string &format) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    if (!ReturnsRows(statement))
        return OdbcEh_PerformSqlStatement(nullptr, connection.hdbc(), statement.c_str(), nullptr) == 1 ? kExitOk
                                                                                                        : kExitFailed;
    std::string path = TemporaryFile();
    if (path.empty()) {
        Error("keine temporäre Datei");
        return kExitFailed;
    }
    long rows = 0;
    const bool csv = format == "csv", json = format == "json";
    const unsigned flags = json ? KODBC_ROWSET_JSON : KODBC_ROWSET_HEADER | (csv ? KODBC_ROWSET_CSV : 0);
    int rc = OdbcEh_SelectRowSetToFile(nullptr, connection.hdbc(), statement.c_str(), csv ? "," : "\t",
                                       csv ? "\r\n" : "\n", path.c_str(), &rows, nullptr, flags);
    bool ok = rc == 1 && CopyToStdout(path);
    std::remove(path.c_str());
    if (!ok) return kExitFailed;
    // The last record is ended like the others (JSON ends itself).
    if (!json) std::printf(csv ? "\r\n" : "\n");
    std::fprintf(stderr, "(%ld Zeilen)\n", json ? rows : rows > 0 ? rows - 1 : 0);
    return kExitOk;
}

int QuoteNames(const std::string &dsn, const Login &login, const std::vector<std::string> &names) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    for (const std::string &name : names) {
        char out[512];
        Kodbc_PrepareNameForSql92(connection.hdbc(), name.c_str(), out, sizeof out);
        std::printf("%s\n", out);
    }
    return kExitOk;
}

int FormatStatement(const std::string &dsn, const Login &login, const std::string &sqlTemplate,
                    const std::vector<std::string> &args) {
    if (args.size() > 7) {
        Error("höchstens sieben Argumente");
        return kExitUsage;
    }
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    const char *a[8] = {};
    for (std::size_t i = 0; i < args.size(); ++i) a[i] = args[i].c_str();
    std::vector<char> out(65536);
    Kodbc_SprintfSqlStatement(connection.hdbc(), out.data(), static_cast<int>(out.size()), sqlTemplate.c_str(), a[0],
                              a[1], a[2], a[3], a[4], a[5], a[6], a[7]);
    std::printf("%s\n", out.data());
    return kExitOk;
}

} // namespace kodbc_cli
