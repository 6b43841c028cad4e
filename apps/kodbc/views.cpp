// Stored views and queries put together from the designer's descriptors.
#include "commands.h"
#include "descriptor_file.h"
#include "terminal.h"

#include <cstdio>
#include <memory>
#include <vector>

namespace kodbc_cli {
namespace {

constexpr int kItemSize = 5000;
constexpr int kStatementSize = 10000;

struct QueryDeleter {
    void operator()(SelFact *query) const { Kodbc_SelFact_Destroy(query); }
};

// Reads the descriptor files that were named into the query's parts;
// without a column file the query has all columns, as a new view does.
bool LoadParts(SelFact *query, const QueryRequest &request) {
    Kodbc_SelFact_SetDescriptor(query, SELFACT_COLUMNS, "*", 0);
    const struct {
        int part;
        const std::string &file;
    } parts[] = {{SELFACT_TABLES, request.tablesFile},
                 {SELFACT_COLUMNS, request.columnsFile},
                 {SELFACT_SELECTION, request.whereFile},
                 {SELFACT_SORT, request.sortFile}};
    for (const auto &part : parts) {
        if (part.file.empty()) continue;
        std::string text;
        if (!ReadDescriptor(part.file, text)) return false;
        Kodbc_SelFact_SetDescriptor(query, part.part, text.c_str(), 0);
    }
    return true;
}

struct Design {
    std::string sql, tables, columns, selection;
};

std::string Part(SelFact *query, int part) {
    std::vector<char> text(kItemSize);
    Kodbc_SelFact_GetDescriptor(query, part, text.data(), kItemSize, 0);
    return text.data();
}

// The statement and the descriptors as the query object reads them back
// (join keys in capitals, fields cut where the designer cuts them).
bool Generate(SQLHDBC hdbc, const QueryRequest &request, bool asView, Design &design) {
    SelFact *raw = nullptr;
    if (Kodbc_SelFact_Create(&raw, hdbc, request.schema.c_str(), asView ? SELFACT_VIEW : 0) != SELFACT_OK) {
        Kodbc_SelFact_DisplayError(SELFACT_NO_MEMORY);
        return false;
    }
    std::unique_ptr<SelFact, QueryDeleter> query(raw);
    if (!LoadParts(query.get(), request)) return false;
    std::vector<char> sql(kStatementSize);
    Kodbc_SelFact_CreateSql(query.get(), sql.data(), kStatementSize, 0);
    design.sql = sql.data();
    design.tables = Part(query.get(), SELFACT_TABLES);
    design.columns = Part(query.get(), SELFACT_COLUMNS);
    design.selection = Part(query.get(), SELFACT_SELECTION);
    return true;
}

bool ReadSqlText(const ViewRequest &request, std::string &sql) {
    if (!request.sqlFile.empty()) return ReadDescriptor(request.sqlFile, sql);
    sql = request.sql;
    return true;
}

void PrintItem(const char *heading, const char *text) {
    std::printf("%s:\n", heading);
    if (*text) std::printf("%s\n", text);
}

} // namespace

int Query(const std::string &dsn, const Login &login, const QueryRequest &request) {
    if (request.test && dsn.empty()) {
        Error("--test braucht eine Datenquelle");
        return kExitUsage;
    }
    // Without a data source nothing is quoted and the wildcard is "%".
    std::unique_ptr<Connection> connection;
    if (!dsn.empty()) {
        connection = std::make_unique<Connection>(dsn, login.user, login.password);
        if (!connection->ok()) return kExitFailed;
    }
    SQLHDBC hdbc = connection ? connection->hdbc() : nullptr;
    Design design;
    if (!Generate(hdbc, request, request.view, design)) return kExitFailed;
    const std::string &sql = design.sql;
    std::printf("%s\n", sql.c_str());
    if (!request.test) return kExitOk;
    const int tested = request.view ? Kodbc_View_Test(hdbc, request.schema.c_str(), sql.c_str())
                                    : OdbcEh_PerformSqlStatement(nullptr, hdbc, sql.c_str(), nullptr);
    if (tested != KODBC_VIEW_OK) return kExitFailed;
    std::fprintf(stderr, "%s\n", request.view ? "Die Abfrage wurde erfolgreich getestet."
                                              : "Der SELECT-Befehl wurde erfolgreich getestet");
    return kExitOk;
}

int View(const std::string &dsn, const Login &login, const ViewRequest &request) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    SQLHDBC hdbc = connection.hdbc();
    const char *schema = request.design.schema.c_str();
    const char *name = request.name.c_str();
    if (request.action == "drop")
        return Kodbc_View_Drop(hdbc, schema, name, request.ifExists ? KODBC_VIEW_TOLERATE_MISSING : 0) == KODBC_VIEW_OK
                   ? kExitOk
                   : kExitFailed;
    if (request.action == "show") {
        std::vector<char> items(4 * kItemSize);
        char *sql = items.data(), *tables = sql + kItemSize, *columns = tables + kItemSize,
             *selection = columns + kItemSize;
        const int loaded = Kodbc_View_Load(hdbc, schema, name, sql, kItemSize, tables, kItemSize, columns, kItemSize,
                                           selection, kItemSize, 0);
        if (loaded != KODBC_VIEW_OK) return kExitFailed;
        PrintItem("Sql", sql);
        PrintItem("Tables", tables);
        PrintItem("Columns", columns);
        PrintItem("Selection", selection);
        return kExitOk;
    }

    // create and test take the SQL text, or make it from the design.
    std::string sql;
    if (!ReadSqlText(request, sql)) return kExitFailed;
    Design design{{}, {}, "*", {}};
    const bool designed = !request.design.tablesFile.empty() || !request.design.columnsFile.empty() ||
                          !request.design.whereFile.empty();
    if (designed && !Generate(hdbc, request.design, true, design)) return kExitFailed;
    if (sql.empty() && !request.design.tablesFile.empty()) sql = design.sql;
    if (request.action == "test") {
        if (sql.empty()) {
            // The stored view's own definition.
            std::vector<char> stored(kItemSize);
            if (Kodbc_View_Load(hdbc, schema, name, stored.data(), kItemSize, nullptr, 0, nullptr, 0, nullptr, 0, 0) !=
                KODBC_VIEW_OK)
                return kExitFailed;
            sql = stored.data();
        }
        if (Kodbc_View_Test(hdbc, schema, sql.c_str()) != KODBC_VIEW_OK) return kExitFailed;
        std::fprintf(stderr, "Die Abfrage wurde erfolgreich getestet.\n");
        return kExitOk;
    }
    if (sql.empty()) {
        Error("ein SQL-Befehl muß angegeben werden (--sql, --sql-file oder --tables-file)");
        return kExitUsage;
    }
    return Kodbc_View_Create(hdbc, schema, name, sql.c_str(), design.tables.c_str(), design.columns.c_str(),
                             design.selection.c_str()) ==
                   KODBC_VIEW_OK
               ? kExitOk
               : kExitFailed;
}

} // namespace kodbc_cli
