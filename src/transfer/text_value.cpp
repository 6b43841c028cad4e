#include "transfer/text_value.h"

#include "internal/binary_text.h"
#include "internal/odbc_call.h"

#include <cstring>

namespace kodbc::transfer {
namespace {

// Most values are short. Some drivers fill the whole length they are given
// (10000 bytes a value, most of it padding), so a value is read into a
// small first part of the buffer and only a longer one read on into the
// rest.
constexpr SQLLEN kFirstRead = 256;

// Whether a part read into `room` bytes was cut: a known length that fits
// was not.
bool Cut(SQLRETURN rc, SQLLEN indicator, SQLLEN room) noexcept {
    return rc == SQL_SUCCESS_WITH_INFO && indicator != SQL_NULL_DATA &&
           (indicator == SQL_NO_TOTAL || indicator >= room);
}

} // namespace

SQLRETURN ReadTextValue(SQLHSTMT handle, SQLUSMALLINT column, char *text, SQLLEN size, SQLLEN *indicator,
                        SQLLEN sqlType) noexcept {
    if (size < 1) return SQL_ERROR;
    if (IsBinarySqlType(sqlType)) return ReadBinaryAsHex(handle, column, text, size, indicator);
    const SQLLEN first = size < kFirstRead ? size : kFirstRead;
    SQLRETURN rc = KODBC_SQL(SQLGetData, handle, column, SQLSMALLINT{SQL_C_CHAR}, text, first, indicator);
    if (first == size || !Cut(rc, *indicator, first)) return rc;
    // Each next part goes where the text so far ends: a driver may hand over
    // fewer bytes than the room it was given (a character it would have to
    // split, digits of a byte), and the terminator stands behind what came.
    for (;;) {
        const SQLLEN received = static_cast<SQLLEN>(strnlen(text, static_cast<std::size_t>(size)));
        const SQLLEN room = size - received;
        if (room <= 1) return rc;
        SQLLEN part = 0;
        rc = KODBC_SQL(SQLGetData, handle, column, SQLSMALLINT{SQL_C_CHAR}, text + received, room, &part);
        if (rc == SQL_NO_DATA) return SQL_SUCCESS;
        if (!Cut(rc, part, room)) return rc;
        // A part that brought nothing would bring nothing again.
        if (strnlen(text, static_cast<std::size_t>(size)) == static_cast<std::size_t>(received)) return rc;
    }
}

} // namespace kodbc::transfer
