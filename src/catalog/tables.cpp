// Table listings, existence tests and the schemata of a connection.
#include "catalog/catalog_internal.h"
#include "internal/odbc_handles.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_diag.h>

#include <algorithm>
#include <cstring>
#include <strings.h>

namespace kodbc::catalog {
namespace {

constexpr SQLLEN kCatalogNameSize = 99;    // TABLE_CAT / TABLE_SCHEM / TABLE_NAME buffers
constexpr int kQualifiedNameSize = 200;    // "schema.table", at most 199 characters
constexpr int kExistenceListSize = 10000;
constexpr std::size_t kComparedNameLength = 99;
constexpr int kTypeListSize = 64;

SQLCHAR *Text(const char *text) { return reinterpret_cast<SQLCHAR *>(const_cast<char *>(text)); }

// One listing of SQLTables with the three name columns bound.
struct TableRow {
    char catalog[kCatalogNameSize] = {};
    char schema[kCatalogNameSize] = {};
    char name[kCatalogNameSize] = {};
    SQLLEN catalogIndicator = 0, schemaIndicator = 0, nameIndicator = 0;

    bool has_schema() const { return schemaIndicator != SQL_NULL_DATA && !IsBlank(schema); }
};

// Runs SQLTables and binds the row; shows the error and gives false on
// failure. typeList null passes no type list.
bool OpenTableListing(odbc::Statement &stmt, const char *schema, const char *typeList, TableRow &row) {
    SQLCHAR *schemaArg = IsBlank(schema) ? nullptr : Text(schema);
    SQLSMALLINT schemaLength = schemaArg ? static_cast<SQLSMALLINT>(std::strlen(schema)) : 0;
    SQLCHAR *typeArg = typeList ? Text(typeList) : nullptr;
    SQLSMALLINT typeLength = typeList ? static_cast<SQLSMALLINT>(SQL_NTS) : 0;
    SQLRETURN rc = KODBC_SQL(SQLTables, stmt.get(), static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0),
                             schemaArg, schemaLength, static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0),
                             typeArg, typeLength);
    if (odbc::succeeded(rc)) {
        rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(1), static_cast<SQLSMALLINT>(SQL_C_CHAR),
                       static_cast<SQLPOINTER>(row.catalog), kCatalogNameSize, &row.catalogIndicator);
        if (odbc::succeeded(rc))
            rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(2),
                           static_cast<SQLSMALLINT>(SQL_C_CHAR), static_cast<SQLPOINTER>(row.schema),
                           kCatalogNameSize, &row.schemaIndicator);
        if (odbc::succeeded(rc))
            rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(3),
                           static_cast<SQLSMALLINT>(SQL_C_CHAR), static_cast<SQLPOINTER>(row.name),
                           kCatalogNameSize, &row.nameIndicator);
    }
    if (odbc::succeeded(rc)) return true;
    Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
    return false;
}

// Fetches the next row. False at the end; an error is shown and reported
// through failed.
bool FetchRow(odbc::Statement &stmt, TableRow &row, bool &failed) {
    row.catalog[0] = row.schema[0] = row.name[0] = '\0';
    SQLRETURN rc = KODBC_SQL(SQLFetch, stmt.get());
    if (odbc::succeeded(rc)) {
        if (row.nameIndicator == SQL_NULL_DATA) row.name[0] = '\0';
        return true;
    }
    if (rc != SQL_NO_DATA) {
        Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
        failed = true;
    }
    return false;
}

// Whether the tab-separated list holds name (compared up to 99 characters,
// any case).
bool ListContains(std::string_view list, const char *name) {
    while (true) {
        std::size_t tab = list.find('\t');
        std::string_view item = list.substr(0, std::min(tab, kComparedNameLength));
        if (item.size() == std::strlen(name) && strncasecmp(item.data(), name, item.size()) == 0) return true;
        if (tab == std::string_view::npos) return false;
        list.remove_prefix(tab + 1);
    }
}

} // namespace

bool IsHiddenSystemTable(const char *name) noexcept {
    return std::strncmp(name, "USys", 4) == 0 || strcasecmp(name, "KorvelSysTable") == 0;
}

bool ListSchemata(SQLHDBC hdbc, std::vector<std::string> &schemata) {
    schemata.clear();
    if (!hdbc) return false;
    odbc::Statement stmt(hdbc);
    if (!stmt.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return false;
    }
    TableRow row;
    if (!OpenTableListing(stmt, nullptr, "'TABLE'", row)) return false;
    bool failed = false;
    while (FetchRow(stmt, row, failed)) {
        if (!row.has_schema()) continue;
        if (std::find(schemata.begin(), schemata.end(), row.schema) == schemata.end())
            schemata.emplace_back(row.schema);
    }
    return !failed;
}

} // namespace kodbc::catalog

using namespace kodbc;
using namespace kodbc::catalog;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_GetTablesExtended(SQLHDBC hdbc, int typeFlags, const char *schema, int nameFlags,
                                                 char *out, int outSize, const char *separator) {
    if (!out || outSize < 1) return -1;
    korvel::BoundedText list(out, outSize);
    if (!hdbc) return -1;
    if (!separator) separator = ",";
    const bool usesSchemata = Kodbc_GetSchemaUsage(hdbc) > 0;

    odbc::Statement stmt(hdbc);
    if (!stmt.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return -1;
    }
    // 0x10 asks for every kind of object: no type list at all.
    char types[kTypeListSize];
    TableTypeList(typeFlags, types, sizeof types);
    const char *typeList = (typeFlags & KODBC_OBJECT_ALL) ? nullptr : types;
    TableRow row;
    if (!OpenTableListing(stmt, schema, typeList, row)) return -1;

    const std::size_t separatorLength = std::strlen(separator);
    bool failed = false;
    bool first = true;
    while (FetchRow(stmt, row, failed)) {
        // The room test counts the bare name, even where the item will be
        // qualified; the writer cuts whatever still does not fit.
        if (std::strlen(row.name) + separatorLength >= list.room() + 1) break;
        if (!(typeFlags & KODBC_OBJECT_SYSTEM) && IsHiddenSystemTable(row.name)) continue;

        char item[kQualifiedNameSize];
        korvel::BoundedText itemText(item, sizeof item);
        if (usesSchemata && (nameFlags & KODBC_TABLES_QUALIFY) && row.has_schema()) {
            itemText.append(row.schema);
            itemText.append('.');
        }
        itemText.append(row.name);

        if (!first) list.append(separator);
        list.append(itemText.view());
        first = false;
    }
    return failed ? -1 : 0;
}

KODBC_API int KODBC_CALL Kodbc_GetTables(SQLHDBC hdbc, int typeFlags, char *out, int outSize,
                                         const char *separator) {
    return Kodbc_GetTablesExtended(hdbc, typeFlags, nullptr, 0, out, outSize, separator);
}

KODBC_API int KODBC_CALL Kodbc_DoesTableExist(SQLHDBC hdbc, int typeFlags, const char *name) {
    char list[kExistenceListSize];
    if (Kodbc_GetTables(hdbc, typeFlags, list, sizeof list, "\t") != 0) return -1;
    if (!name) return 0;
    return ListContains(list, name) ? 1 : 0;
}

KODBC_API int KODBC_CALL Kodbc_DoesTableExistExtended(SQLHDBC hdbc, int typeFlags, const char *schema,
                                                      const char *name) {
    char list[kExistenceListSize];
    if (Kodbc_GetTablesExtended(hdbc, typeFlags, schema, KODBC_TABLES_QUALIFY, list, sizeof list, "\t") != 0)
        return -1;
    if (!name) return 0;
    return ListContains(list, name) ? 1 : 0;
}

KODBC_API void KODBC_CALL Kodbc_ObjectTypeToName(int type, char *out, int outSize) {
    const char *name = "";
    switch (type) {
    case KODBC_OBJECT_TABLE: name = "TABLE"; break;
    case KODBC_OBJECT_VIEW: name = "VIEW"; break;
    case KODBC_OBJECT_FORM: name = "FORM"; break;
    case KODBC_OBJECT_REPORT: name = "REPORT"; break;
    default: break;
    }
    korvel::BoundedText text(out, outSize);
    text.append(name);
}

} // extern "C"
