// Properties of single columns and the primary key of a table.
#include "catalog/catalog_internal.h"
#include "internal/odbc_handles.h"
#include "sqltext/column_name.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_sqltext.h>

#include <cstring>

namespace kodbc::catalog {
namespace {

constexpr int kStatementSize = 300;
constexpr int kKeyTableSize = 100;      // table name, at most 99 characters
constexpr int kKeyNameSize = 100;       // COLUMN_NAME / PK_NAME buffers
// What drivers answer for a column attribute they do not support (ODBC 3
// and ODBC 2 states).
constexpr const char *kRefusalStates = "HY091,HYC00,S1091,S1C00";

// A statement holding "SELECT field FROM table", prepared only: the driver
// describes the column without a row ever being read.
class PreparedColumn {
public:
    // A catalogue column is one name; a field as callers give it may be
    // qualified.
    PreparedColumn(SQLHDBC hdbc, const char *table, const char *field, bool catalogueColumn = false) {
        if (!hdbc || IsBlank(table) || IsBlank(field)) return;
        if (catalogueColumn) {
            char column[kStatementSize];
            sqltext::PrepareColumnName(hdbc, field, column, sizeof column);
            Kodbc_SprintfSqlStatement(hdbc, sql_, sizeof sql_, "SELECT %s FROM %t", column, table, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr);
        } else {
            Kodbc_SprintfSqlStatement(hdbc, sql_, sizeof sql_, "SELECT %f FROM %t", field, table, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr);
        }
        odbc::Statement stmt(hdbc);
        if (!stmt.ok()) {
            Kodbc_DisplayErrorHdbc(hdbc);
            return;
        }
        SQLRETURN rc = KODBC_SQL(SQLPrepare, stmt.get(), reinterpret_cast<SQLCHAR *>(sql_),
                                 static_cast<SQLINTEGER>(SQL_NTS));
        if (!odbc::succeeded(rc)) {
            Kodbc_DisplayErrorHstmt(stmt.get(), sql_);
            return;
        }
        stmt_ = std::move(stmt);
    }

    bool ok() const { return stmt_.ok(); }

    enum class Answer { Given, Refused, Failed };

    // A numeric attribute of column 1. A driver that does not know the
    // attribute refuses it; any other error is shown.
    Answer attribute(SQLUSMALLINT which, SQLLEN &value) {
        value = 0;
        SQLRETURN rc = KODBC_SQL(SQLColAttributes, stmt_.get(), static_cast<SQLUSMALLINT>(1), which,
                                 static_cast<SQLPOINTER>(nullptr), static_cast<SQLSMALLINT>(0),
                                 static_cast<SQLSMALLINT *>(nullptr), &value);
        if (odbc::succeeded(rc)) return Answer::Given;
        value = 0;
        if (Kodbc_IsLastErrorInList(KODBC_HANDLE_STMT, stmt_.get(), kRefusalStates, rc)) return Answer::Refused;
        Kodbc_DisplayErrorHstmt(stmt_.get(), sql_);
        return Answer::Failed;
    }

private:
    char sql_[kStatementSize] = {};
    odbc::Statement stmt_;
};

// One attribute through a prepared column; fallback on any failure.
SQLLEN ColumnAttribute(SQLHDBC hdbc, const char *table, const char *field, SQLUSMALLINT which, SQLLEN fallback) {
    PreparedColumn column(hdbc, table, field);
    if (!column.ok()) return fallback;
    SQLLEN value = 0;
    return column.attribute(which, value) == PreparedColumn::Answer::Given ? value : fallback;
}

bool SupportsPrimaryKeys(SQLHDBC hdbc) {
    SQLUSMALLINT supported = SQL_FALSE;
    SQLRETURN rc = KODBC_SQL(SQLGetFunctions, hdbc, static_cast<SQLUSMALLINT>(SQL_API_SQLPRIMARYKEYS), &supported);
    return odbc::succeeded(rc) && supported == SQL_TRUE;
}

// SQLPrimaryKeys for the table (no catalogue, no schema) with one text
// column bound. False after an error (shown).
bool OpenPrimaryKey(odbc::Statement &stmt, SQLHDBC hdbc, const char *table, SQLUSMALLINT column, char *value,
                    SQLLEN size, SQLLEN &indicator) {
    char name[kKeyTableSize];
    korvel::BoundedText nameText(name, sizeof name);
    nameText.append(table);
    if (Kodbc_GetDatabaseType(hdbc) == KODBC_DBTYPE_MYSQL) Kodbc_PrepareNameForSql92(hdbc, name, name, sizeof name);

    if (!stmt.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return false;
    }
    SQLRETURN rc = KODBC_SQL(SQLPrimaryKeys, stmt.get(), static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0),
                             static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0),
                             reinterpret_cast<SQLCHAR *>(name), static_cast<SQLSMALLINT>(SQL_NTS));
    if (odbc::succeeded(rc))
        rc = KODBC_SQL(SQLBindCol, stmt.get(), column, static_cast<SQLSMALLINT>(SQL_C_CHAR),
                       static_cast<SQLPOINTER>(value), size, &indicator);
    if (odbc::succeeded(rc)) return true;
    Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
    return false;
}

// Fetches the next key row; an error is shown and reported through failed.
bool FetchKeyRow(odbc::Statement &stmt, char *value, SQLLEN &indicator, bool &failed) {
    value[0] = '\0';
    SQLRETURN rc = KODBC_SQL(SQLFetch, stmt.get());
    if (odbc::succeeded(rc)) {
        if (indicator == SQL_NULL_DATA) value[0] = '\0';
        return true;
    }
    if (rc != SQL_NO_DATA) {
        Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
        failed = true;
    }
    return false;
}

// The properties of the prepared column; a property the driver refuses
// stays 0, any other error ends the query.
int ReadColumnProperties(PreparedColumn &column, ColumnPropertiesRecord &record) {
    struct Property {
        SQLUSMALLINT which;
        int32_t ColumnPropertiesRecord::*field;
        int32_t (*convert)(SQLLEN);
    };
    static constexpr Property kProperties[] = {
        {SQL_COLUMN_TYPE, &ColumnPropertiesRecord::SqlDataType, [](SQLLEN v) { return static_cast<int32_t>(v); }},
        {SQL_COLUMN_AUTO_INCREMENT, &ColumnPropertiesRecord::AutoIncrement, [](SQLLEN v) { return int32_t{v != 0}; }},
        {SQL_COLUMN_CASE_SENSITIVE, &ColumnPropertiesRecord::CaseSensitive, [](SQLLEN v) { return int32_t{v != 0}; }},
        {SQL_COLUMN_LENGTH, &ColumnPropertiesRecord::Length, [](SQLLEN v) { return static_cast<int32_t>(v); }},
        {SQL_COLUMN_NULLABLE, &ColumnPropertiesRecord::Nullable,
         [](SQLLEN v) { return int32_t{v != SQL_NO_NULLS}; }},
        {SQL_COLUMN_UPDATABLE, &ColumnPropertiesRecord::Updatable,
         [](SQLLEN v) { return int32_t{v != SQL_ATTR_READONLY}; }},
    };
    for (const Property &property : kProperties) {
        SQLLEN value = 0;
        switch (column.attribute(property.which, value)) {
        case PreparedColumn::Answer::Given: record.*property.field = property.convert(value); break;
        case PreparedColumn::Answer::Refused: break;
        case PreparedColumn::Answer::Failed: return KODBC_FAILURE;
        }
    }
    return KODBC_SUCCESS;
}

} // namespace

int CatalogColumnProperties(SQLHDBC hdbc, const char *table, const char *column, ColumnPropertiesRecord *record) {
    if (!record) return KODBC_FAILURE;
    std::memset(record, 0, sizeof *record);
    PreparedColumn prepared(hdbc, table, column, true);
    return prepared.ok() ? ReadColumnProperties(prepared, *record) : KODBC_FAILURE;
}

} // namespace kodbc::catalog

using namespace kodbc;
using namespace kodbc::catalog;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_GetColumnDataType(SQLHDBC hdbc, const char *table, const char *field) {
    return static_cast<int>(ColumnAttribute(hdbc, table, field, SQL_COLUMN_TYPE, 0));
}

KODBC_API int KODBC_CALL Kodbc_GetColumnLength(SQLHDBC hdbc, const char *table, const char *field) {
    return static_cast<int>(ColumnAttribute(hdbc, table, field, SQL_COLUMN_LENGTH, -1));
}

KODBC_API int KODBC_CALL Kodbc_IsColumnAutoIncrement(SQLHDBC hdbc, const char *table, const char *field) {
    return ColumnAttribute(hdbc, table, field, SQL_COLUMN_AUTO_INCREMENT, 0) != 0 ? 1 : 0;
}

KODBC_API int KODBC_CALL Kodbc_IsColumnUpdateable(SQLHDBC hdbc, const char *table, const char *field) {
    return ColumnAttribute(hdbc, table, field, SQL_COLUMN_UPDATABLE, 0) != 0 ? 1 : 0;
}

KODBC_API int KODBC_CALL Kodbc_GetColumnProperties(SQLHDBC hdbc, const char *table, const char *field,
                                                   ColumnPropertiesRecord *record) {
    if (!record) return KODBC_FAILURE;
    std::memset(record, 0, sizeof *record);
    PreparedColumn column(hdbc, table, field);
    if (!column.ok()) return KODBC_FAILURE;
    return ReadColumnProperties(column, *record);
}

KODBC_API int KODBC_CALL Kodbc_GetPrimaryKeyColumns(SQLHDBC hdbc, const char *table, int flags,
                                                    const char *separator, char *out, int outSize) {
    if (!out || outSize < 1) return KODBC_FAILURE;
    korvel::BoundedText list(out, outSize);
    if (!hdbc || !SupportsPrimaryKeys(hdbc)) return KODBC_FAILURE;
    if (IsBlank(table)) return KODBC_SUCCESS;
    if (!separator) separator = "\t";

    odbc::Statement stmt(hdbc);
    char name[kKeyNameSize] = {};
    SQLLEN indicator = 0;
    if (!OpenPrimaryKey(stmt, hdbc, table, 4, name, sizeof name, indicator)) return KODBC_FAILURE;
    bool failed = false;
    bool first = true;
    while (FetchKeyRow(stmt, name, indicator, failed)) {
        if (flags & KODBC_PK_QUOTE) Kodbc_PrepareNameForSql92(hdbc, name, name, sizeof name);
        if (!first) list.append(separator);
        list.append(name);
        first = false;
    }
    return failed ? KODBC_FAILURE : KODBC_SUCCESS;
}

KODBC_API int KODBC_CALL Kodbc_GetPrimaryKeyName(SQLHDBC hdbc, const char *table, int flags, char *out,
                                                 int outSize) {
    if (!out || outSize < 1) return KODBC_FAILURE;
    korvel::BoundedText result(out, outSize);
    if (!hdbc || !SupportsPrimaryKeys(hdbc)) return KODBC_FAILURE;
    if (IsBlank(table)) return KODBC_SUCCESS;

    odbc::Statement stmt(hdbc);
    char name[kKeyNameSize] = {};
    SQLLEN indicator = 0;
    if (!OpenPrimaryKey(stmt, hdbc, table, 6, name, sizeof name, indicator)) return KODBC_FAILURE;
    bool failed = false;
    if (!FetchKeyRow(stmt, name, indicator, failed)) return failed ? KODBC_FAILURE : KODBC_SUCCESS;
    if ((flags & KODBC_PK_QUOTE) && name[0]) Kodbc_PrepareNameForSql92(hdbc, name, name, sizeof name);
    result.append(name);
    return KODBC_SUCCESS;
}

} // extern "C"
