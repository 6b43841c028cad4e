// The system table: small named values of the applications, kept in the
// user's own database. Every statement on it tolerates every SQLSTATE, so
// a missing row or a racing writer never reaches the user; only creating
// the table can show an error.
#include "catalog/catalog_internal.h"
#include "internal/driver_info.h"
#include "internal/string_literal.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_exec.h>
#include <kodbc/kodbc_systable.h>

#include <memory>
#include <new>
#include <string_view>
#include <strings.h>

namespace kodbc {
namespace {

using catalog::IsBlank;

constexpr const char *kTable = KODBC_SYSTABLE_NAME;
constexpr int kStatementSize = 1000;
constexpr int kEncodedSize = 10000;
constexpr const char *kEveryState = "*";

const char *ItemValueType(int databaseType) {
    switch (databaseType) {
    case KODBC_DBTYPE_SQLSERVER: return "VARCHAR (5000)";
    case KODBC_DBTYPE_ACCESS: return "MEMO";
    default: return "BLOB";
    }
}

// 1 when the table is there or has just been created; else the creation's
// failure (shown).
int EnsureSystemTable(SQLHDBC hdbc) {
    if (OdbcEh_DoesTableExist(nullptr, hdbc, KODBC_OBJECT_TABLE, nullptr, kTable, 0) == KODBC_EXISTS)
        return KODBC_SUCCESS;
    return Kodbc_CreateSystemTable(hdbc);
}

// "<verb> KorvelSysTable WHERE Object='…' AND Type='…'" and, when itemName
// is given, " AND ItemName='…'". The names go in as they are.
void ItemStatement(korvel::BoundedText &sql, std::string_view verb, const char *object, const char *type,
                   const char *itemName) {
    sql.append(verb);
    sql.append(kTable);
    sql.append(" WHERE Object='");
    sql.append(object);
    sql.append("' AND Type='");
    sql.append(type);
    if (itemName) {
        sql.append("' AND ItemName='");
        sql.append(itemName);
        sql.append("'");
    } else {
        // Kept as the applications have always sent it, trailing blank and all.
        sql.append("' ");
    }
}

} // namespace
} // namespace kodbc

using namespace kodbc;
using kodbc::catalog::IsBlank;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_CreateSystemTable(SQLHDBC hdbc) {
    if (!hdbc) return KODBC_FAILURE;
    char sql[kStatementSize];
    korvel::BoundedText text(sql, sizeof sql);
    text.append("CREATE TABLE ");
    text.append(kTable);
    text.append(" (Object VARCHAR (100) NOT NULL, Type VARCHAR (50) NOT NULL, ItemName VARCHAR (50) NOT NULL, "
                "ItemValue ");
    text.append(ItemValueType(Kodbc_GetDatabaseType(hdbc)));
    text.append(")");
    return OdbcEh_PerformSqlStatement(nullptr, hdbc, sql, nullptr);
}

KODBC_API int KODBC_CALL Kodbc_ReadSysTableString(SQLHDBC hdbc, const char *object, const char *type,
                                                  const char *itemName, const char *defaultValue, char *out,
                                                  int outSize) {
    const bool haveOut = out && outSize >= 1;
    if (haveOut) KorvelCopyString(out, defaultValue, outSize);
    if (IsBlank(object) || IsBlank(type)) return KODBC_SUCCESS;
    if (!haveOut) return 0;

    int ready = EnsureSystemTable(hdbc);
    if (ready != KODBC_SUCCESS) return ready;

    char sql[kStatementSize];
    korvel::BoundedText text(sql, sizeof sql);
    text.append("SELECT ItemValue FROM ");
    ItemStatement(text, "", object, type, itemName ? itemName : "");
    // A failed read leaves an empty text, so the default is copied in again.
    if (OdbcEh_SelectRowSetToBuffer(nullptr, hdbc, sql, "\t", "\t", out, outSize, kEveryState, 0) != KODBC_SUCCESS)
        out[0] = '\0';
    if (IsBlank(out)) KorvelCopyString(out, defaultValue, outSize);
    return Korvel_DecodeString(out);
}

KODBC_API int KODBC_CALL Kodbc_WriteSysTableString(SQLHDBC hdbc, const char *object, const char *type,
                                                   const char *itemName, const char *value) {
    if (IsBlank(object) || IsBlank(type) || IsBlank(itemName)) return KODBC_SUCCESS;
    int ready = EnsureSystemTable(hdbc);
    if (ready != KODBC_SUCCESS) return ready;

    char sql[kStatementSize];
    korvel::BoundedText text(sql, sizeof sql);
    ItemStatement(text, "DELETE FROM ", object, type, itemName);
    int result = OdbcEh_PerformSqlStatement(nullptr, hdbc, sql, kEveryState);
    if (result != KODBC_SUCCESS || IsBlank(value)) return result;

    std::unique_ptr<char[]> encoded(new (std::nothrow) char[kEncodedSize]);
    if (!encoded) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
    Korvel_EncodeString(value, encoded.get(), kEncodedSize, 0);

    text.clear();
    text.append("INSERT INTO ");
    text.append(kTable);
    text.append(" (Object,Type,ItemName,ItemValue) VALUES ('");
    text.append(object);
    text.append("','");
    text.append(type);
    text.append("','");
    text.append(itemName);
    text.append("','");
    // The value gives way so that the literal and the statement stay closed;
    // a doubled character goes in whole or not at all.
    constexpr std::string_view kClose = "')";
    AppendLiteralBody(text, encoded.get(), kClose.size(), LiteralsTakeBackslashEscapes(hdbc));
    text.append(kClose);
    return OdbcEh_PerformSqlStatement(nullptr, hdbc, sql, kEveryState);
}

KODBC_API int KODBC_CALL Kodbc_DeleteSysTableItem(SQLHDBC hdbc, const char *object, const char *type,
                                                  const char *itemName) {
    if (IsBlank(object) || IsBlank(type)) return KODBC_SUCCESS;
    if (OdbcEh_DoesTableExist(nullptr, hdbc, KODBC_OBJECT_TABLE, nullptr, kTable, 0) != KODBC_EXISTS) return 0;
    char sql[kStatementSize];
    korvel::BoundedText text(sql, sizeof sql);
    ItemStatement(text, "DELETE FROM ", object, type, IsBlank(itemName) ? nullptr : itemName);
    return OdbcEh_PerformSqlStatement(nullptr, hdbc, sql, kEveryState);
}

} // extern "C"
