// The columns of a table as a reader wants them: name, type with length,
// whether empty values are allowed, default and remark, in catalogue order.
// The table administration's list and the command-line tool show the same.
#include "catalog/catalog_internal.h"
#include "internal/datatypes.h"
#include "internal/library.h"
#include "internal/odbc_handles.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_diag.h>

namespace kodbc::catalog {
namespace {

constexpr SQLLEN kNameSize = 100;
constexpr SQLLEN kValueSize = 300;   // defaults and remarks, longer ones cut

SQLCHAR *Text(const char *text) { return reinterpret_cast<SQLCHAR *>(const_cast<char *>(text)); }

} // namespace

int ForEachColumnDescription(SQLHDBC hdbc, const char *table,
                             const std::function<void(const ColumnDescription &)> &visit) {
    if (!hdbc) return KODBC_FAILURE;
    if (IsBlank(table)) return KODBC_SUCCESS;
    odbc::Statement stmt(hdbc);
    if (!stmt.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_FAILURE;
    }
    SQLRETURN rc = KODBC_SQL(SQLColumns, stmt.get(), static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0),
                             static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0), Text(table),
                             static_cast<SQLSMALLINT>(SQL_NTS), static_cast<SQLCHAR *>(nullptr),
                             static_cast<SQLSMALLINT>(0));
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(stmt.get(), table);
        return KODBC_FAILURE;
    }
    char name[kNameSize] = {}, remark[kValueSize] = {}, defaultValue[kValueSize] = {};
    SQLSMALLINT sqlType = 0, nullable = SQL_NULLABLE_UNKNOWN;
    SQLINTEGER size = 0;
    SQLLEN nameInd = 0, typeInd = 0, sizeInd = 0, nullableInd = 0, remarkInd = 0, defaultInd = 0;
    KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(4), static_cast<SQLSMALLINT>(SQL_C_CHAR),
              static_cast<SQLPOINTER>(name), kNameSize, &nameInd);
    KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(5), static_cast<SQLSMALLINT>(SQL_C_SSHORT),
              static_cast<SQLPOINTER>(&sqlType), static_cast<SQLLEN>(0), &typeInd);
    KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(7), static_cast<SQLSMALLINT>(SQL_C_SLONG),
              static_cast<SQLPOINTER>(&size), static_cast<SQLLEN>(0), &sizeInd);
    KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(11), static_cast<SQLSMALLINT>(SQL_C_SSHORT),
              static_cast<SQLPOINTER>(&nullable), static_cast<SQLLEN>(0), &nullableInd);
    KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(12), static_cast<SQLSMALLINT>(SQL_C_CHAR),
              static_cast<SQLPOINTER>(remark), kValueSize, &remarkInd);
    KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(13), static_cast<SQLSMALLINT>(SQL_C_CHAR),
              static_cast<SQLPOINTER>(defaultValue), kValueSize, &defaultInd);
    char type[kNameSize];
    while (true) {
        rc = KODBC_SQL(SQLFetch, stmt.get());
        if (rc == SQL_NO_DATA) return KODBC_SUCCESS;
        if (!odbc::succeeded(rc)) {
            Kodbc_DisplayErrorHstmt(stmt.get(), table);
            return KODBC_FAILURE;
        }
        auto text = [](const char *value, SQLLEN indicator) { return indicator == SQL_NULL_DATA ? "" : value; };
        const int code = Kodbc_SqlDataTypeToKodbcDataType(typeInd == SQL_NULL_DATA ? 0 : sqlType);
        DataTypeText(code, sizeInd == SQL_NULL_DATA ? 0 : size, type, sizeof type);
        // Only a driver that says "no nulls" forbids empty values; unknown allows them.
        visit({text(name, nameInd), type, nullableInd == SQL_NULL_DATA || nullable != SQL_NO_NULLS,
               text(defaultValue, defaultInd), text(remark, remarkInd), typeInd == SQL_NULL_DATA ? 0 : sqlType,
               sizeInd == SQL_NULL_DATA ? 0 : static_cast<int>(size)});
    }
}

} // namespace kodbc::catalog

using namespace kodbc;

extern "C" KODBC_API int KODBC_CALL Kodbc_GetColumnDescriptions(SQLHDBC hdbc, const char *table, char *out,
                                                                int outSize) {
    korvel::BoundedText list(out, outSize);
    if (!list.valid()) return KODBC_FAILURE;
    char yes[20], no[20];
    LoadLibraryString(LibraryInstance(), msg::YES, yes, sizeof yes);
    LoadLibraryString(LibraryInstance(), msg::NO, no, sizeof no);
    try {
        return catalog::ForEachColumnDescription(hdbc, table, [&](const catalog::ColumnDescription &column) {
            if (list.length() != 0) list.append('\n');
            for (const char *field : {column.name, column.type, static_cast<const char *>(column.nullable ? yes : no), column.defaultValue}) {
                list.append(field);
                list.append('\t');
            }
            list.append(column.remark);
        });
    } catch (...) {
        return KODBC_FAILURE;
    }
}
