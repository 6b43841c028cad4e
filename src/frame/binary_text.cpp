#include "internal/binary_text.h"

#include "internal/odbc_call.h"

namespace kodbc {

bool IsBinarySqlType(SQLLEN sqlType) noexcept {
    return sqlType == SQL_BINARY || sqlType == SQL_VARBINARY || sqlType == SQL_LONGVARBINARY;
}

SQLRETURN ReadBinaryAsHex(SQLHSTMT handle, SQLUSMALLINT column, char *text, SQLLEN size, SQLLEN *indicator) noexcept {
    if (!text || size < 1) return SQL_ERROR;
    // The bytes land at the front and are spread into digits from the back,
    // so no digit overwrites a byte not yet turned.
    const SQLLEN room = (size - 1) / 2;
    text[0] = '\0';
    SQLRETURN rc = KODBC_SQL(SQLGetData, handle, column, SQLSMALLINT{SQL_C_BINARY}, text, room, indicator);
    if (!SQL_SUCCEEDED(rc) || *indicator == SQL_NULL_DATA) return rc;
    // A cut value fills the room; a whole one says how long it is.
    const bool cut = rc == SQL_SUCCESS_WITH_INFO && (*indicator == SQL_NO_TOTAL || *indicator >= room);
    const SQLLEN bytes = cut || *indicator > room ? room : *indicator < 0 ? 0 : *indicator;
    static constexpr char kDigits[] = "0123456789ABCDEF";
    for (SQLLEN i = bytes; i-- > 0;) {
        const unsigned char byte = static_cast<unsigned char>(text[i]);
        text[2 * i] = kDigits[byte >> 4];
        text[2 * i + 1] = kDigits[byte & 0x0F];
    }
    text[2 * bytes] = '\0';
    *indicator = 2 * bytes;
    return rc;
}

} // namespace kodbc
