// Names of tables and columns as the execution functions need them: the
// columns of a table, and whether a table or column is there, down to a
// table name that is still free.
#include "internal/table_types.h"
#include "internal/text.h"
#include "internal/execution.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_exec.h>

#include <charconv>
#include <cstring>
#include <string>
#include <string_view>
#include <strings.h>

namespace kodbc {
namespace {


constexpr int kNameBufferSize = 100;        // names read from SQLColumns and SQLTables
constexpr int kCompareBufferSize = 99;      // names compared by the existence tests
constexpr std::size_t kUniqueNameLimit = 99;
constexpr int kColumnNameColumn = 4;        // COLUMN_NAME of SQLColumns
constexpr int kTableNameColumn = 3;         // TABLE_NAME of SQLTables

SQLCHAR *Text(const char *text) { return reinterpret_cast<SQLCHAR *>(const_cast<char *>(text)); }

// The schema argument of a catalogue call: none when blank.
SQLCHAR *SchemaArgument(const char *schema) { return IsBlank(schema) ? nullptr : Text(schema); }

SQLRETURN ListColumns(SQLHSTMT statement, const char *schema, const char *table) {
    SQLCHAR *s = SchemaArgument(schema);
    return KODBC_SQL(SQLColumns, statement, static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0), s,
                     static_cast<SQLSMALLINT>(s ? SQL_NTS : 0), Text(table), static_cast<SQLSMALLINT>(SQL_NTS),
                     static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0));
}

SQLRETURN ListTables(SQLHSTMT statement, int types, const char *schema) {
    char typeList[64];
    bool all = types & KODBC_OBJECT_ALL;
    if (!all) TableTypeList(types, typeList, sizeof typeList);
    SQLCHAR *s = SchemaArgument(schema);
    return KODBC_SQL(SQLTables, statement, static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0), s,
                     static_cast<SQLSMALLINT>(s ? SQL_NTS : 0), static_cast<SQLCHAR *>(nullptr),
                     static_cast<SQLSMALLINT>(0), all ? static_cast<SQLCHAR *>(nullptr) : Text(typeList),
                     static_cast<SQLSMALLINT>(all ? 0 : SQL_NTS));
}

// Fetches each row and reads one text column of it (NULL as empty) into
// buffer; `row` returns false to stop. Returns the first failing return
// code, or SQL_NO_DATA when the rows ran out, SQL_SUCCESS when stopped.
template <class Row>
SQLRETURN ForEachName(SQLHSTMT statement, SQLUSMALLINT column, char *buffer, SQLLEN size, Row row) {
    while (true) {
        SQLRETURN rc = KODBC_SQL(SQLFetch, statement);
        if (rc == SQL_NO_DATA) return rc;
        if (!odbc::succeeded(rc)) return rc;
        SQLLEN indicator = 0;
        rc = KODBC_SQL(SQLGetData, statement, column, static_cast<SQLSMALLINT>(SQL_C_CHAR),
                       static_cast<SQLPOINTER>(buffer), size, &indicator);
        if (!odbc::succeeded(rc)) return rc;
        if (indicator == SQL_NULL_DATA) buffer[0] = '\0';
        buffer[size - 1] = '\0';
        if (!row(std::string_view(buffer))) return SQL_SUCCESS;
    }
}

// Whether a catalogue listing holds `wanted` in `column`, ignoring case.
int ListingHolds(SQLHDBC hdbc, const char *wanted, SQLUSMALLINT column,
                 SQLRETURN (*list)(SQLHSTMT, const void *), const void *arguments) {
    odbc::Statement statement(hdbc);
    if (!statement.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_NO_STATEMENT;
    }
    SQLRETURN rc = list(statement, arguments);
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement, nullptr);
        return KODBC_DOES_NOT_EXIST;
    }
    bool found = false;
    char name[kCompareBufferSize];
    rc = ForEachName(statement, column, name, sizeof name, [&](std::string_view n) {
        found = strncasecmp(n.data(), wanted, sizeof name - 1) == 0 && std::strlen(wanted) == n.size();
        return !found;
    });
    if (rc != SQL_NO_DATA && !odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement, nullptr);
        return KODBC_DOES_NOT_EXIST;
    }
    return found ? KODBC_EXISTS : KODBC_DOES_NOT_EXIST;
}

struct ColumnQuery {
    const char *schema;
    const char *table;
};
struct TableQuery {
    int types;
    const char *schema;
};

} // namespace
} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL OdbcEh_GetColumnNames(HWND, SQLHDBC hdbc, const char *table, const char *schema, int,
                                               const char *separator, const char *tolerated, char *out, int size) {
    korvel::BoundedText names(out, size);
    if (!names.valid() || !hdbc || IsBlank(table)) return KODBC_FAILURE;
    if (!separator || !*separator) separator = "\t";

    odbc::Statement statement(hdbc);
    if (!statement.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_FAILURE;
    }
    SQLRETURN rc = ListColumns(statement, schema, table);
    if (!odbc::succeeded(rc)) return ReportStatementError(statement, rc, nullptr, tolerated) ? KODBC_SUCCESS
                                                                                            : KODBC_FAILURE;
    char name[kNameBufferSize];
    bool first = true;
    rc = ForEachName(statement, kColumnNameColumn, name, sizeof name, [&](std::string_view n) {
        if (!first) names.append(separator);
        names.append(n);
        first = false;
        return true;
    });
    if (rc != SQL_NO_DATA && !odbc::succeeded(rc)) {
        names.clear();
        return ReportStatementError(statement, rc, nullptr, tolerated) ? KODBC_SUCCESS : KODBC_FAILURE;
    }
    return KODBC_SUCCESS;
}

KODBC_API int KODBC_CALL OdbcEh_DoesColumnExist(HWND, SQLHDBC hdbc, const char *table, const char *schema,
                                                const char *column) {
    if (IsBlank(table) || IsBlank(column) || !hdbc) return KODBC_DOES_NOT_EXIST;
    ColumnQuery query{schema, table};
    return ListingHolds(hdbc, column, kColumnNameColumn,
                        [](SQLHSTMT s, const void *a) {
                            auto *q = static_cast<const ColumnQuery *>(a);
                            return ListColumns(s, q->schema, q->table);
                        },
                        &query);
}

KODBC_API int KODBC_CALL OdbcEh_DoesTableExist(HWND, SQLHDBC hdbc, int types, const char *schema, const char *table,
                                               int) {
    if (IsBlank(table) || !hdbc) return KODBC_DOES_NOT_EXIST;
    TableQuery query{types, schema};
    return ListingHolds(hdbc, table, kTableNameColumn,
                        [](SQLHSTMT s, const void *a) {
                            auto *q = static_cast<const TableQuery *>(a);
                            return ListTables(s, q->types, q->schema);
                        },
                        &query);
}

KODBC_API int KODBC_CALL OdbcEh_GetTablesExtended(HWND, SQLHDBC hdbc, int types, const char *schema, int,
                                                  char *out, int size, const char *separator) {
    korvel::BoundedText names(out, size);
    if (!names.valid() || !hdbc) return -1;
    std::string_view sep = separator && *separator ? separator : ",";

    odbc::Statement statement(hdbc);
    if (!statement.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_NO_STATEMENT;
    }
    SQLRETURN rc = ListTables(statement, types, schema);
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement, nullptr);
        return -1;
    }
    char name[kNameBufferSize];
    bool first = true;
    rc = ForEachName(statement, kTableNameColumn, name, sizeof name, [&](std::string_view n) {
        // A separator's worth of room is kept for every name, the first
        // included, so a name that only just fits is left out.
        if (n.size() + sep.size() > names.room()) return false;
        if (!first) names.append(sep);
        names.append(n);
        first = false;
        return true;
    });
    if (rc != SQL_NO_DATA && !odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement, nullptr);
        return -1;
    }
    return 0;
}

KODBC_API int KODBC_CALL OdbcEh_CreateUniqueTableName(HWND owner, SQLHDBC hdbc, const char *schema, char *name,
                                                      int size, int) {
    if (!name || size < 1 || !hdbc) return KODBC_FAILURE;
    std::string_view base(name, strnlen(name, static_cast<std::size_t>(size) - 1));
    char candidate[kUniqueNameLimit + 1];
    if (!base.empty()) {
        KorvelCopyString(candidate, std::string(base).c_str(), sizeof candidate);
        int found = OdbcEh_DoesTableExist(owner, hdbc, KODBC_OBJECT_ALL, schema, candidate, 0);
        if (found == KODBC_NO_STATEMENT) return KODBC_FAILURE;
        if (found == KODBC_DOES_NOT_EXIST) return KODBC_SUCCESS;
    }
    for (int number = 1; number > 0; ++number) {
        char digits[16];
        auto [end, ec] = std::to_chars(digits, digits + sizeof digits, number);
        std::string_view suffix(digits, end - digits);
        // The number always survives: the base gives way to it.
        std::string_view stem = base.substr(0, kUniqueNameLimit - 1 - suffix.size());
        korvel::BoundedText text(candidate, sizeof candidate);
        text.append(stem);
        text.append('_');
        text.append(suffix);
        int found = OdbcEh_DoesTableExist(owner, hdbc, KODBC_OBJECT_ALL, schema, candidate, 0);
        if (found == KODBC_NO_STATEMENT) return KODBC_FAILURE;
        if (found == KODBC_DOES_NOT_EXIST) {
            KorvelCopyString(name, candidate, size);
            return KODBC_SUCCESS;
        }
    }
    return KODBC_FAILURE;
}

} // extern "C"
