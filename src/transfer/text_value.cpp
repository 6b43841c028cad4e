#include "transfer/text_value.h"

#include "internal/odbc_call.h"

namespace kodbc::transfer {
namespace {

// Most values are short. Some drivers fill the whole length they are given
// (10000 bytes a value, most of it padding), so a value is read into a
// small first part of the buffer and only a longer one read on into the
// rest.
constexpr SQLLEN kFirstRead = 256;

} // namespace

SQLRETURN ReadTextValue(SQLHSTMT handle, SQLUSMALLINT column, char *text, SQLLEN size, SQLLEN *indicator) noexcept {
    const SQLLEN first = size < kFirstRead ? size : kFirstRead;
    SQLRETURN rc = KODBC_SQL(SQLGetData, handle, column, SQLSMALLINT{SQL_C_CHAR}, text, first, indicator);
    if (rc != SQL_SUCCESS_WITH_INFO || first == size || *indicator == SQL_NULL_DATA ||
        (*indicator != SQL_NO_TOTAL && *indicator < first))
        return rc;
    SQLLEN rest = 0;
    rc = KODBC_SQL(SQLGetData, handle, column, SQLSMALLINT{SQL_C_CHAR}, text + first - 1, size - first + 1, &rest);
    return rc == SQL_NO_DATA ? SQL_SUCCESS : rc;
}

} // namespace kodbc::transfer
